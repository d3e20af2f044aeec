// Decimals from integers, into integers, and from one shape into another.
#include "embedded/decimal/decimal.h"

#include <services/decimal.h>

namespace embedded {

int32_t write_cut(bool negative, uint32_t scale, uint128 coefficient, shape room, xdec *to)
{
    decimal value = {negative, room.scale, cut_digits(coefficient, scale - room.scale)};
    cut_zeros(&value);
    return write_fitting(value, room, to);
}

} // namespace embedded

int32_t xdec_from_int64_with_len_prec(int64_t value, int32_t len, int32_t prec, xdec *out)
{
    const uint64_t negative = value < 0;
    const uint64_t magnitude = (uint64_t(value) ^ (0 - negative)) + negative;
    return embedded::write_fitting({negative != 0, 0, magnitude}, embedded::shape_of(len, prec), out);
}

int32_t xdec_from_xdec_with_len_prec(const xdec *src, int32_t len, int32_t prec, xdec *out)
{
    return embedded::write_rounded(embedded::read_decimal(src), embedded::shape_of(len, prec), out);
}

int32_t xdec_get_int64(const xdec *src, int64_t *out)
{
    const embedded::decimal value = embedded::read_decimal(src);
    const embedded::uint128 whole = embedded::cut_digits(value.coefficient, value.scale);
    if (whole > uint64_t(INT64_MAX) + value.negative)
        return ERR_OVERFLOW;
    const auto magnitude = uint64_t(whole);
    *out = int64_t(value.negative ? 0 - magnitude : magnitude);
    return 0;
}
