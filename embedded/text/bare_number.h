// A number without what may stand around it: blanks at both ends, a sign, zeros in front of another digit. The readers
// of plain numbers get it where they refuse a text as it is, and the reader of literals where they refuse that too.
#pragma once

#include "embedded/base/characters.h"
#include "embedded/text/plain_number.h"

#include <cstddef>
#include <cstdint>

namespace embedded {

// It is a number just where the text is one. No sign stands at its start; nothing is left where a second one follows.
struct bare_number {
    bool negative;
    const char *text;
    size_t size;
};

// From a blank or zero at the start, or at the end, to the other end of their run.
const char *behind_blanks(const char *at, const char *end);
const char *before_blanks(const char *at, const char *end);
const char *behind_zeros(const char *at, const char *end);

inline bare_number bare_number_of(const char *text, size_t size)
{
    const char *at = text, *end = text + size;
    if (at != end && is_blank(*at))
        at = behind_blanks(at, end);
    if (at != end && is_blank(end[-1]))
        end = before_blanks(at, end);
    if (at == end)
        return {false, at, 0};
    const bool negative = *at == '-';
    at += is_sign(*at);
    if (at == end || is_sign(*at))
        return {negative, at, 0};
    if (*at == '0') {
        at = behind_zeros(at, end);
        at -= at == end || !is_digit(*at);
    }
    return {negative, at, size_t(end - at)};
}

// The size without zeros at the end that stand behind a point. For readers that take no exponent: its zeros count.
size_t size_without_last_zeros(const bare_number &number);

inline size_t plain_size(const bare_number &number)
{
    if (number.size <= plain_decimal_max || number.text[number.size - 1] != '0')
        return number.size;
    return size_without_last_zeros(number);
}

// digits * 10^-scale, of up to plain_digits_max digits.
struct short_number {
    uint64_t digits;
    int32_t scale;
};

// Digits with or without a point. size is the plain size. False for any other number.
bool read_short(const char *text, size_t size, short_number *value);

// The same with an exponent of a few digits.
bool read_short_with_exponent(const bare_number &number, short_number *value);

} // namespace embedded
