// What the parsers of integers share, before one rounds and another cuts.
#pragma once

#include "embedded/text/decimal_literal.h"
#include "embedded/text/plain_number.h"

namespace embedded {

// 1 to plain_digits_max digits with or without a minus, as nearly all texts are.
// False for any other text, and for a length below 1.
template <level at> ALWAYS_INLINE bool read_short_integer(const char *text, int32_t length, int64_t *result)
{
    // The minus is one more; a length below 1 counts as a large one.
    if (uint32_t(length) - 1 > plain_digits_max)
        return false;
    const uint64_t negative = text[0] == '-';
    const size_t count = size_t(length) - negative;
    uint64_t magnitude;
    if (count - 1 >= plain_digits_max || !plain_numbers<at>::read_digits(text + negative, count, &magnitude))
        return false;
    *result = int64_t((magnitude ^ (0 - negative)) + negative);
    return true;
}

// The part of a number before its point, and what stands behind it.
struct integer_part {
    bool negative;
    bool fits; // its magnitude in 64 bits; otherwise negative alone is to be read
    uint64_t magnitude;
    bool rounds_up; // the first digit behind the point is 5 or more
    bool is_whole;  // all behind the point are 0
};

// Of any text; false when it is no number.
bool read_integer_part(const char *text, int32_t length, integer_part *part);

// Of a literal of any length and exponent, in time linear in the length.
integer_part integer_part_of(const decimal_literal &literal);

// False when the value lies outside of int64.
inline bool give_int64(bool negative, uint64_t magnitude, int64_t *result)
{
    if (magnitude > uint64_t(INT64_MAX) + negative)
        return false;
    *result = int64_t(negative ? 0 - magnitude : magnitude);
    return true;
}

} // namespace embedded
