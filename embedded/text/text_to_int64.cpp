// The number that a text spells, as the nearest int64.
#include "embedded/text/integer_part.h"

#include <bcast/codes.h>
#include <services/text.h>

namespace embedded {

namespace {

// Any literal: the first digit behind the point rounds.
[[gnu::noinline]] int32_t literal_to_int64(const char *text, int32_t length, int64_t *result)
{
    integer_part part;
    if (!read_integer_part(text, length, &part))
        return ERR_BAD_CONVERSION;
    return part.fits && give_int64(part.negative, part.magnitude + part.rounds_up, result) ? 0 : ERR_OVERFLOW;
}

template <level at> ALWAYS_INLINE int32_t text_to_int64(const char *text, int32_t length, int64_t *result)
{
    if (read_short_integer<at>(text, length, result)) [[likely]]
        return 0;
    return literal_to_int64(text, length, result);
}

} // namespace

} // namespace embedded

PICKED_AT_LOAD(str2int64, embedded::text_to_int64);
