// The reader of every text that is a number.
#include "embedded/text/decimal_literal.h"

#include "embedded/base/characters.h"
#include "embedded/text/plain_number.h"

#include <algorithm>

namespace embedded {

namespace {

const char *behind_digits(const char *at, const char *end)
{
    while (end - at >= 8 && !has_no_digit(load<uint64_t>(at) ^ eight_zeros))
        at += 8;
    return std::find_if_not(at, end, is_digit);
}

// What is left of the text.
struct cursor {
    const char *at;
    const char *end;

    bool takes(char c)
    {
        const bool there = at != end && *at == c;
        at += there;
        return there;
    }

    size_t takes_digits()
    {
        const char *first = at;
        at = behind_digits(at, end);
        return size_t(at - first);
    }

    // True for minus.
    bool takes_sign()
    {
        if (takes('-'))
            return true;
        takes('+');
        return false;
    }
};

int64_t exponent_value(const char *first, const char *last)
{
    int64_t value = 0;
    for (; first != last && value < exponent_max; first++)
        value = value * 10 + (*first - '0');
    return std::min(value, exponent_max);
}

// The value of digits that are no more than 38 behind leading zeros.
uint128 value_of_digits(const char *from, size_t count)
{
    uint128 value = 0;
    while (count > 0) {
        const size_t some = std::min(count, plain_digits_max);
        uint64_t next;
        plain_numbers<level::any>::read_digits(from, some, &next);
        value = value * powers_of_ten[some] + next;
        from += some;
        count -= some;
    }
    return value;
}

} // namespace

bool read_decimal_literal(const bare_number &number, decimal_literal *literal)
{
    cursor rest = {number.text, number.text + number.size};
    literal->negative = number.negative;
    literal->whole = rest.at;
    literal->whole_count = rest.takes_digits();
    const bool point = rest.takes('.');
    literal->fraction = rest.at;
    literal->fraction_count = point ? rest.takes_digits() : 0;
    if (literal->digit_count() == 0)
        return false;
    literal->exponent = 0;
    if (rest.takes('e') || rest.takes('E')) {
        const bool negative = rest.takes_sign();
        const char *first = rest.at;
        if (rest.takes_digits() == 0)
            return false;
        const int64_t value = exponent_value(first, rest.at);
        literal->exponent = negative ? -value : value;
    }
    return rest.at == rest.end;
}

size_t decimal_literal::behind_zeros(size_t i) const
{
    if (i < whole_count)
        i = size_t(embedded::behind_zeros(whole + i, whole + whole_count) - whole);
    if (i < whole_count || i >= digit_count())
        return std::min(i, digit_count());
    const char *from = fraction + (i - whole_count);
    return i + size_t(embedded::behind_zeros(from, fraction + fraction_count) - from);
}

uint128 decimal_literal::value(size_t first, size_t count) const
{
    const size_t end = std::min(first + count, digit_count());
    uint128 value = 0;
    if (first < whole_count)
        value = value_of_digits(whole + first, std::min(end, whole_count) - first);
    if (end > whole_count) {
        const size_t behind_point = end - std::max(first, whole_count);
        value = value * wide_powers_of_ten[behind_point] +
                value_of_digits(fraction + (end - whole_count - behind_point), behind_point);
    }
    return value * wide_powers_of_ten[first + count - end];
}

} // namespace embedded
