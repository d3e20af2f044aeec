// The grammar of numbers in text, one for all parsers:
//
//     blanks  [+ or -]  digits with at most one point, at least one digit
//     [e or E  [+ or -]  digits]  blanks
//
// Blanks are the bytes 9 to 13 and 32. A bare number has neither blanks nor the first sign.
#pragma once

#include "embedded/base/powers_of_ten.h"
#include "embedded/text/bare_number.h"

#include <cstddef>
#include <cstdint>

namespace embedded {

struct decimal_literal {
    bool negative;
    const char *whole; // digits before the point
    size_t whole_count;
    const char *fraction; // digits behind the point
    size_t fraction_count;
    int64_t exponent; // one beyond exponent_max in size counts as exponent_max

    size_t digit_count() const { return whole_count + fraction_count; }
    char digit(size_t i) const { return i < whole_count ? whole[i] : fraction[i - whole_count]; }

    // From the digit i to the next that is not 0; digit_count() where none is.
    size_t behind_zeros(size_t i) const;

    // The value of count digits from the first on, with zeros behind the last: below 10^38.
    uint128 value(size_t first, size_t count) const;
};

// More than all the digits that a text can hold can shift back.
inline constexpr int64_t exponent_max = int64_t{1} << 40;

// False when it is no number; the literal is not to be used then. Its pointers are into the text.
bool read_decimal_literal(const bare_number &number, decimal_literal *literal);

} // namespace embedded
