// The double that is nearest to the number that a text spells.
#include "embedded/base/powers_of_ten.h"
#include "embedded/text/bare_number.h"
#include "embedded/text/integer_part.h"

#include <bcast/codes.h>
#include <services/text.h>

#include <array>
#include <charconv>
#include <cmath>

namespace embedded {

namespace {

constexpr uint64_t exact_max = uint64_t{1} << 53;

// Exact, and behind them the same with a minus.
constexpr auto powers_by_sign = [] {
    std::array<std::array<double, plain_digits_max>, 2> powers{};
    for (size_t i = 0; i < plain_digits_max; i++) {
        powers[0][i] = exact_powers_of_ten[i];
        powers[1][i] = -exact_powers_of_ten[i];
    }
    return powers;
}();

// Any literal. std::from_chars reads 5. and .5 as the grammar does.
int32_t literal_to_double(const bare_number &number, double *result)
{
    decimal_literal literal;
    if (!read_decimal_literal(number, &literal))
        return ERR_BAD_CONVERSION;
    double magnitude = 0; // stays so where the number is too close to 0
    const auto read = std::from_chars(number.text, number.text + number.size, magnitude);
    // Too close to 0 is out of range as well.
    if (read.ec != std::errc() && !integer_part_of(literal).fits)
        return ERR_OVERFLOW;
    *result = literal.negative ? -magnitude : magnitude;
    return 0;
}

// Both the mantissa and the power are exact doubles, so the one division rounds as the number itself would. The sign
// goes through the power, for 0 as well: signs are as good as random, and this takes no branch.
double exact_quotient(uint64_t mantissa, bool negative, size_t behind_point)
{
    return double(int64_t(mantissa)) / powers_by_sign[negative][behind_point];
}

// What std::from_chars takes of a bare number to its end is a literal of the grammar, or infinity or NaN.
[[gnu::noinline]] int32_t other_text_to_double(const char *text, size_t size, double *result)
{
    const bare_number number = bare_number_of(text, size);
    const size_t plain = plain_size(number);
    short_number value;
    if (number.negative + plain < size && read_short(number.text, plain, &value) && value.digits <= exact_max) {
        *result = exact_quotient(value.digits, number.negative, size_t(value.scale));
        return 0;
    }
    double magnitude = 0;
    const char *end = number.text + number.size;
    const auto read = std::from_chars(number.text, end, magnitude);
    if (read.ec != std::errc() || read.ptr != end || !std::isfinite(magnitude))
        return literal_to_double(number, result);
    *result = number.negative ? -magnitude : magnitude;
    return 0;
}

// A few digits with at most one point.
template <level at> ALWAYS_INLINE int32_t text_to_double(const char *text, uint16_t size, double *result)
{
    const size_t length = size;
    // The minus is one more; a length of 0 counts as a large one.
    if (length - 1 > plain_decimal_max)
        return other_text_to_double(text, length, result);
    const size_t negative = text[0] == '-';
    uint64_t mantissa;
    size_t behind_point;
    if (!plain_numbers<at>::read_decimal(text + negative, length - negative, &mantissa, &behind_point) ||
        mantissa > exact_max)
        return other_text_to_double(text, length, result);
    *result = exact_quotient(mantissa, negative, behind_point);
    return 0;
}

} // namespace

} // namespace embedded

PICKED_AT_LOAD(utl_digit_from_char, embedded::text_to_double);
