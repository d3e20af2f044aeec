#include "embedded/decimal_literal.h"

#include <algorithm>

#include "embedded/characters.h"

namespace embedded {

namespace {

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
        at = std::find_if_not(at, end, is_digit);
        return static_cast<size_t>(at - first);
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

} // namespace

bool read_decimal_literal(const char *text, size_t size, decimal_literal *literal)
{
    cursor rest = {text, text + size};
    rest.at = std::find_if_not(rest.at, rest.end, is_blank);
    literal->negative = rest.takes_sign();
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
    return std::all_of(rest.at, rest.end, is_blank);
}

} // namespace embedded
