// Hexadecimal text into bytes, and bytes into hexadecimal text.
#include "embedded/binary/hex.h"

#include <bcast/codes.h>
#include <services/binary.h>

namespace embedded {

namespace {

static_assert(NBIN_MAX >= hex_decode_room);

// The length is judged before the digits: a text that is too long is not read.
template <level at> ALWAYS_INLINE int32_t decode(const char *text, uint32_t text_len, nbin *out, int32_t has_prefix)
{
    const uint32_t prefix = has_prefix != 0 ? 2 : 0;
    const uint32_t count = text_len - prefix;
    if (count > 2 * NBIN_MAX)
        return ERR_TRUNCATED;
    if (!hex_text<at>::decode(text + prefix, count, out->bytes))
        return ERR_BAD_CONVERSION;
    out->length = int32_t((count + 1) / 2);
    return 0;
}

template <level at> ALWAYS_INLINE int32_t encode(const void *bytes, uint32_t len, char *buf, int32_t)
{
    hex_text<at>::encode(static_cast<const uint8_t *>(bytes), len, buf);
    return 0;
}

} // namespace

} // namespace embedded

PICKED_AT_LOAD(nbin_from_char_ex, embedded::decode);
PICKED_AT_LOAD(nbin_to_char_ex, embedded::encode);
