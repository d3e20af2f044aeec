#include <services/decimal.h>

#include "embedded/decimal_literal.h"
#include "embedded/plain_decimal.h"

namespace embedded {

namespace {

// The value of count digits of the literal, from the first on, with zeros behind its last.
uint128 value_of_digits(const decimal_literal &literal, size_t first, size_t count)
{
    char digits[48];
    std::fill(std::begin(digits), std::end(digits), '0');
    char *to = std::end(digits) - count;
    for (size_t i = first; i < std::min(first + count, literal.digit_count()); i++)
        *to++ = literal.digit(i);

    uint128 value = 0;
    for (const char *at = digits; at != std::end(digits); at += 16) {
        uint64_t sixteen;
        any_machine::read_digits(at, 16, &sixteen);
        value = value * powers_of_ten[16] + sixteen;
    }
    return value;
}

// Any literal. The first digit that finds no room rounds; it tells how, for ties go away from zero.
int32_t literal_to_decimal(const char *text, size_t size, shape room, xdec *out)
{
    decimal_literal literal;
    if (!read_decimal_literal(text, size, &literal))
        return ERR_BAD_CONVERSION;
    const size_t count = literal.digit_count();
    size_t first = 0; // digit that is not 0
    while (first < count && literal.digit(first) == '0')
        first++;
    if (first == count)
        return write_fitting({}, room, out);

    const int64_t before_point =
        static_cast<int64_t>(literal.whole_count) - static_cast<int64_t>(first) + literal.exponent;
    if (before_point > room.whole_digits)
        return ERR_OVERFLOW;
    const int64_t scale = std::min<int64_t>(room.scale, decimal_digits_max - std::max<int64_t>(before_point, 0));
    const int64_t fitting = before_point + scale;
    if (fitting < 0)
        return write_fitting({}, room, out);
    // Behind the digits there are zeros, of which those before the point count.
    const int64_t kept = std::min(fitting, std::max(before_point, static_cast<int64_t>(count - first)));
    decimal value = {literal.negative, static_cast<uint32_t>(kept - before_point),
                     value_of_digits(literal, first, static_cast<size_t>(kept))};
    const size_t next = first + static_cast<size_t>(kept);
    value.coefficient += next < count && literal.digit(next) >= '5';
    cut_zeros(&value);
    return write_fitting(value, room, out);
}

[[gnu::noinline]] int32_t other_text_to_decimal(const char *text, size_t size, int32_t len, int32_t prec, xdec *out)
{
    const shape room = shape_of(len, prec);
    decimal value;
    if (has_avx512 && read_long_decimal(text, size, &value))
        return write_rounded(value, room, out);
    return literal_to_decimal(text, size, room, out);
}

template <typename Machine>
[[gnu::always_inline]] inline int32_t text_to_decimal(const char *text, size_t size, int32_t len, int32_t prec,
                                                      xdec *out)
{
    decimal value;
    // A size of 0 counts as a large one.
    if (size - 1 > plain_decimal_max || !read_short_decimal(Machine(), text, size, &value))
        return other_text_to_decimal(text, size, len, prec, out);
    return write_rounded(value, shape_of(len, prec), out);
}

BCAST_AVX512 int32_t text_to_decimal_avx512(const char *text, size_t size, int32_t len, int32_t prec, xdec *out)
{
    return text_to_decimal<avx512_machine>(text, size, len, prec, out);
}

// Not inlined, or what it saves on the stack is saved before the machine is known.
[[gnu::noinline]] int32_t text_to_decimal_any(const char *text, size_t size, int32_t len, int32_t prec, xdec *out)
{
    return text_to_decimal<any_machine>(text, size, len, prec, out);
}

} // namespace

} // namespace embedded

int32_t xdec_from_char_with_len_prec(const char *text, uint16_t text_len, int32_t len, int32_t prec, xdec *out)
{
    if (embedded::has_avx512)
        return embedded::text_to_decimal_avx512(text, text_len, len, prec, out);
    return embedded::text_to_decimal_any(text, text_len, len, prec, out);
}
