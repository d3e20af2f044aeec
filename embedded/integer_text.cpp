#include "embedded/integer_text.h"

namespace embedded {

namespace {

// 17 to 19 plain digits, which an int64 may hold and read_short_integer does not read.
bool read_long_integer(const char *text, int32_t length, integer_part *part)
{
    if (length < 17 || length > 20)
        return false;
    const bool negative = text[0] == '-';
    const char *digits = text + negative;
    const size_t count = static_cast<size_t>(length) - negative;
    uint64_t head, tail;
    if (count < 17 || count > 19 || !any_machine::read_digits(digits, count - 16, &head) ||
        !any_machine::read_digits(digits + count - 16, 16, &tail))
        return false;
    *part = {negative, true, head * 10000000000000000 + tail, '0', true};
    return true;
}

} // namespace

bool read_integer_part(const char *text, int32_t length, integer_part *part)
{
    if (read_long_integer(text, length, part))
        return true;
    decimal_literal literal;
    if (length <= 0 || !read_decimal_literal(text, static_cast<size_t>(length), &literal))
        return false;
    *part = integer_part_of(literal);
    return true;
}

integer_part integer_part_of(const decimal_literal &literal)
{
    constexpr int64_t most_digits = 19; // of an int64

    const size_t count = literal.digit_count();
    const auto zeros_end = [&](size_t i) {
        while (i < count && literal.digit(i) == '0')
            i++;
        return i;
    };
    const size_t first = zeros_end(0);
    if (first == count)
        return {literal.negative, true, 0, '0', true};
    const int64_t before_point =
        static_cast<int64_t>(literal.whole_count) - static_cast<int64_t>(first) + literal.exponent;
    if (before_point < 0)
        return {literal.negative, true, 0, '0', false};
    if (before_point > most_digits)
        return {literal.negative, false, 0, '0', false};
    const size_t point = first + static_cast<size_t>(before_point);
    uint64_t magnitude = 0;
    for (size_t i = first; i < point; i++)
        magnitude = magnitude * 10 + (i < count ? static_cast<uint64_t>(literal.digit(i) - '0') : 0);
    const bool is_whole = zeros_end(point) >= count;
    return {literal.negative, true, magnitude, point < count ? literal.digit(point) : '0', is_whole};
}

} // namespace embedded
