// Decimals from text, rounded into their shape.
#include "embedded/decimal/plain_decimal.h"
#include "embedded/text/bare_number.h"
#include "embedded/text/decimal_literal.h"

#include <services/decimal.h>

namespace embedded {

namespace {

// Any literal. The first digit that finds no room rounds; it tells how, for ties go away from zero.
int32_t literal_to_decimal(const bare_number &number, shape room, xdec *out)
{
    decimal_literal literal;
    if (!read_decimal_literal(number, &literal))
        return ERR_BAD_CONVERSION;
    const size_t count = literal.digit_count();
    const size_t first = literal.behind_zeros(0);
    if (first == count)
        return write_fitting({}, room, out);

    const int64_t before_point = int64_t(literal.whole_count) - int64_t(first) + literal.exponent;
    if (before_point > room.whole_digits)
        return ERR_OVERFLOW;
    const int64_t scale = std::min<int64_t>(room.scale, decimal_digits_max - std::max<int64_t>(before_point, 0));
    const int64_t fitting = before_point + scale;
    if (fitting < 0)
        return write_fitting({}, room, out);
    // Behind the digits there are zeros, of which those before the point count.
    const int64_t kept = std::min(fitting, std::max(before_point, int64_t(count - first)));
    decimal value = {literal.negative, uint32_t(kept - before_point), literal.value(first, size_t(kept))};
    const size_t next = first + size_t(kept);
    value.coefficient += next < count && literal.digit(next) >= '5';
    cut_zeros(&value);
    return write_fitting(value, room, out);
}

// What the exponent makes of a few digits, if it leaves them below 10^38.
bool read_with_exponent(const bare_number &number, decimal *value)
{
    constexpr auto zeros_max = int32_t(decimal_digits_max - plain_digits_max);

    short_number read;
    if (!read_short_with_exponent(number, &read) || read.scale < -zeros_max)
        return false;
    *value = {number.negative, 0, read.digits};
    if (read.scale < 0) {
        value->coefficient *= wide_powers_of_ten[size_t(-read.scale)];
    } else {
        value->scale = uint32_t(read.scale);
        cut_zeros(value);
    }
    return true;
}

// A number of which something was cut off.
template <level at> bool read_plain(const bare_number &number, size_t size, decimal *value)
{
    if (!plain_decimals<at>::read_long(number.text, size, value))
        return false;
    value->negative = number.negative;
    return true;
}

template <level at>
[[gnu::noinline]] int32_t other_text_to_decimal(const char *text, size_t size, int32_t len, int32_t prec, xdec *out)
{
    const shape room = shape_of(len, prec);
    decimal value;
    const bool has_blanks = size > 0 && (is_blank(text[0]) || is_blank(text[size - 1]));
    if constexpr (plain_decimals<at>::long_max > plain_decimal_max + 1) {
        if (!has_blanks && plain_decimals<at>::read_long(text, size, &value))
            return write_rounded(value, room, out);
    }
    const bare_number number = bare_number_of(text, size);
    const size_t plain = plain_size(number);
    if ((number.negative + plain < size && read_plain<at>(number, plain, &value)) || read_with_exponent(number, &value))
        return write_rounded(value, room, out);
    return literal_to_decimal(number, room, out);
}

template <level at>
ALWAYS_INLINE int32_t text_to_decimal(const char *text, uint16_t length, int32_t len, int32_t prec, xdec *out)
{
    const size_t size = length;
    decimal value;
    // A size of 0 counts as a large one.
    if (size - 1 > plain_decimal_max || !plain_decimals<at>::read_short(text, size, &value))
        return other_text_to_decimal<at>(text, size, len, prec, out);
    return write_rounded(value, shape_of(len, prec), out);
}

} // namespace

} // namespace embedded

PICKED_AT_LOAD(xdec_from_char_with_len_prec, embedded::text_to_decimal);
