// The whole part of every text that is a number.
#include "embedded/text/integer_part.h"

#include "embedded/base/powers_of_ten.h"

#include <algorithm>

namespace embedded {

namespace {

// 17 to 19 plain digits, which an int64 may hold and the readers of short numbers do not read.
bool read_long_integer(const bare_number &number, integer_part *part)
{
    uint64_t head, tail;
    if (number.size < 17 || number.size > 19 ||
        !plain_numbers<level::any>::read_digits(number.text, number.size - 16, &head) ||
        !plain_numbers<level::any>::read_digits(number.text + number.size - 16, 16, &tail))
        return false;
    *part = {number.negative, true, head * powers_of_ten[16] + tail, false, true};
    return true;
}

bool read_short_number(const bare_number &number, integer_part *part)
{
    constexpr auto scale_max = int32_t(power_max);

    short_number value;
    if (!read_short(number.text, plain_size(number), &value) && !read_short_with_exponent(number, &value))
        return false;
    if (value.scale < -scale_max || value.scale > scale_max)
        return false;
    *part = {number.negative, true, value.digits, false, true};
    if (value.scale < 0) {
        part->fits = !__builtin_mul_overflow(value.digits, powers_of_ten[size_t(-value.scale)], &part->magnitude);
    } else if (value.scale > 0) {
        const uint64_t one = powers_of_ten[size_t(value.scale)], rest = value.digits % one;
        part->magnitude = value.digits / one;
        part->rounds_up = rest >= one - rest;
        part->is_whole = rest == 0;
    }
    return true;
}

} // namespace

bool read_integer_part(const char *text, int32_t length, integer_part *part)
{
    const bare_number number = bare_number_of(text, size_t(std::max(length, 0)));
    if (read_long_integer(number, part) || read_short_number(number, part))
        return true;
    decimal_literal literal;
    if (!read_decimal_literal(number, &literal))
        return false;
    *part = integer_part_of(literal);
    return true;
}

integer_part integer_part_of(const decimal_literal &literal)
{
    constexpr int64_t most_digits = 19; // of an int64

    const size_t count = literal.digit_count();
    const size_t first = literal.behind_zeros(0);
    if (first == count)
        return {literal.negative, true, 0, false, true};
    const int64_t before_point = int64_t(literal.whole_count) - int64_t(first) + literal.exponent;
    if (before_point < 0)
        return {literal.negative, true, 0, false, false};
    if (before_point > most_digits)
        return {literal.negative, false, 0, false, false};
    const size_t point = first + size_t(before_point);
    const auto magnitude = uint64_t(literal.value(first, size_t(before_point)));
    const bool is_whole = literal.behind_zeros(point) == count;
    return {literal.negative, true, magnitude, point < count && literal.digit(point) >= '5', is_whole};
}

} // namespace embedded
