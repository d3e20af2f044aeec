// Decimals from doubles, and doubles from decimals.
#include "embedded/base/powers_of_ten.h"
#include "embedded/decimal/decimal.h"
#include "embedded/text/plain_number.h"

#include <services/decimal.h>

#include <bit>
#include <charconv>
#include <cmath>

namespace embedded {

namespace {

// ---- From double -----------------------------------------------------------

// The value in units of the room's last digit, by one multiplication, where that is what its shortest decimal rounds
// to. The decimal is at most a 2^53rd part away from the value, and the product a 2^52nd part from the exact one in any
// rounding mode. So both lie on the same side of a tie which is further away than a 2^51st part. Subnormal values,
// whose decimals may be further away, have no tie near.
bool scales_clearly(double magnitude, uint32_t scale, uint64_t *units)
{
    if (scale > exact_power_max)
        return false;
    const double product = magnitude * exact_powers_of_ten[scale];
    if (!(product < 0x1p51)) // NaN is not
        return false;
    const auto nearest = int64_t(product + 0.5);
    *units = uint64_t(nearest);
    return std::fabs(product - double(nearest)) + product * 0x1p-51 < 0.5;
}

// By the text d.ddde-xx, whose point and digits behind the first may be missing.
[[gnu::noinline]] int32_t shortest_to_decimal(double value, shape room, xdec *out)
{
    if (!std::isfinite(value))
        return ERR_OVERFLOW;
    char text[32];
    const char *end = std::to_chars(text, text + sizeof text, std::fabs(value), std::chars_format::scientific).ptr;
    const char *e = end - (end[-4] == 'e' ? 4 : 5); // an exponent has two digits, or three
    int exponent = 0;
    std::from_chars(e + 1 + (e[1] == '+'), end, exponent);

    const auto behind_first = size_t(std::max<ptrdiff_t>(e - text - 2, 0));
    uint64_t rest = 0;
    if (behind_first > 0)
        plain_numbers<level::any>::read_digits(text + 2, behind_first, &rest);
    const auto first = uint64_t(text[0] - '0');
    decimal result = {std::signbit(value), 0, first * powers_of_ten[behind_first] + rest};

    const int scale = int(behind_first) - exponent;
    if (scale >= 0) {
        result.scale = uint32_t(scale);
        return write_rounded(result, room, out);
    }
    if (exponent >= int(decimal_digits_max))
        return ERR_OVERFLOW;
    result.coefficient *= wide_powers_of_ten[size_t(-scale)];
    return write_fitting(result, room, out);
}

// ---- To double -------------------------------------------------------------

double with_sign(double magnitude, bool negative)
{
    return std::bit_cast<double>(std::bit_cast<uint64_t>(magnitude) | uint64_t{negative} << 63);
}

// Divides to a quotient of 63 or 64 bits, which are more than a double has, and marks in its last bit that there is a
// rest. So its conversion rounds as the exact quotient would, and the power of two rounds nothing.
double divide_exactly(uint64_t dividend, uint64_t divisor)
{
    const int dividend_shift = std::countl_zero(dividend), divisor_shift = std::countl_zero(divisor);
    const uint128 high = uint128{dividend << dividend_shift} << 63;
    const uint64_t low = divisor << divisor_shift;
    const auto quotient = uint64_t(high / low);
    const bool rest = uint128{quotient} * low != high;
    return std::ldexp(double(quotient | rest), divisor_shift - dividend_shift - 63);
}

[[gnu::noinline]] double wide_to_double(const xdec *src)
{
    const decimal value = read_decimal(src);
    if (is_short(value.coefficient) && value.scale <= power_max)
        return with_sign(divide_exactly(uint64_t(value.coefficient), powers_of_ten[value.scale]), value.negative);
    char text[64];
    int32_t size;
    xdec_to_char_with_zero(src, text, sizeof text, 0, 0, &size);
    double result = 0;
    std::from_chars(text, text + size, result);
    return result;
}

} // namespace

} // namespace embedded

int32_t xdec_from_double_with_len_prec(double value, int32_t len, int32_t prec, xdec *out)
{
    const embedded::shape room = embedded::shape_of(len, prec);
    uint64_t units;
    if (!embedded::scales_clearly(std::fabs(value), room.scale, &units))
        return embedded::shortest_to_decimal(value, room, out);
    embedded::decimal result = {std::signbit(value), room.scale, units};
    embedded::cut_zeros(&result);
    return embedded::write_fitting(result, room, out);
}

double xdec_get_double(const xdec *src, int32_t *status)
{
    *status = 0;
    const auto coefficient = embedded::load<embedded::uint128>(src->bytes + 8);
    const uint32_t scale = embedded::scale_of(src);
    // Both are exact doubles: the one division rounds as the value itself would.
    if (embedded::is_short(coefficient) && uint64_t(coefficient) >> 53 == 0 && scale <= embedded::exact_power_max)
        [[likely]]
        return embedded::with_sign(double(int64_t(coefficient)) / embedded::exact_powers_of_ten[scale],
                                   embedded::is_negative(src));
    return embedded::wide_to_double(src);
}
