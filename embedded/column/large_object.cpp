// The value in a large-object constant, found again.
#include "embedded/column/large_object.h"

#include <bcast/embedded.h>

// The one header that is right for this size is compared as a whole.
int32_t bcast_lob_read(const void *constant, uint32_t size, const char **value, uint32_t *value_len)
{
    if (size < LOB_HEADER_SIZE)
        return ERR_BAD_CONVERSION;
    const uint32_t len = size - LOB_HEADER_SIZE;
    embedded::lob_header expected;
    embedded::write_lob_header(&expected, len);
    if (memcmp(constant, &expected, sizeof expected) != 0)
        return ERR_BAD_CONVERSION;
    *value = static_cast<const char *>(constant) + LOB_HEADER_SIZE;
    *value_len = len;
    return 0;
}
