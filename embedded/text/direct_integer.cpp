// The number that a text spells, cut toward zero, for a comparison with integers.
#include "embedded/text/integer_part.h"

#include <bcast/codes.h>
#include <services/text.h>

namespace embedded {

namespace {

// The number is not whole: *result is it cut toward zero.
constexpr int32_t was_cut = 1;

[[gnu::noinline]] int32_t literal_to_int64_directly(const char *text, int32_t length, int64_t *result, char *sign)
{
    integer_part part;
    if (!read_integer_part(text, length, &part))
        return ERR_BAD_CONVERSION;
    if (!part.fits || !give_int64(part.negative, part.magnitude, result))
        return part.negative ? ERR_BELOW_RANGE : ERR_ABOVE_RANGE;
    if (part.is_whole)
        return 0;
    *sign = part.negative ? '-' : '+'; // a value cut to 0 has none
    return was_cut;
}

template <level at>
ALWAYS_INLINE int32_t text_to_int64_directly(const char *text, int32_t length, int64_t *result, char *sign)
{
    if (read_short_integer<at>(text, length, result)) [[likely]]
        return 0;
    return literal_to_int64_directly(text, length, result, sign);
}

} // namespace

} // namespace embedded

PICKED_AT_LOAD(str2int64_directly, embedded::text_to_int64_directly);
