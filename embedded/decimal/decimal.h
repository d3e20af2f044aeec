// Decimals: 38 digits, of which any number may stand behind the point.
//
// An xdec is
//
//     byte  0         0x80 for zero, 1 for a positive value, 2 for a negative one
//     byte  1         0 for zero, else the scale and 1 more
//     bytes 2 to 7    0
//     bytes 8 to 23   the coefficient, below 10^38, little-endian
//     bytes 24 to 29  0
//
// with the value coefficient * 10^-scale. The scale is the smallest from 0 to 38
// that the value has: zeros at the end are cut off behind the point, and there
// alone. So equal values have equal bytes. The coefficient stands in whole words
// of the record, for a copy in words to read what was just written as one.
//
// A shape of len and prec has room for len digits, prec of them behind the point.
// A len above 38 counts as 38, and a prec above len as len. Where both are 0 there
// is no shape: 38 digits wherever the point is. A len of 0 with a prec has room for
// zero alone. What has more digits behind the point is rounded, ties away from
// zero; what has more before it then fails with ERR_OVERFLOW.
//
// A text shows prec digits behind the point, and all that are before it; without a
// shape all digits. Zero has no sign. A text longer than the buffer fails with
// ERR_TRUNCATED, and nothing is written.
#pragma once

#include "embedded/base/machine.h"
#include "embedded/base/powers_of_ten.h"

#include <bcast/codes.h>
#include <bcast/column.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace embedded {

inline constexpr uint32_t decimal_digits_max = 38;

struct decimal {
    bool negative; // of no meaning for zero
    uint32_t scale;
    uint128 coefficient;
};

inline bool is_short(uint128 value) { return value >> 64 == 0; }

inline bool is_negative(const xdec *from) { return (from->bytes[0] >> 1 & 1) != 0; }
inline uint32_t scale_of(const xdec *from) { return from->bytes[1] - uint32_t{from->bytes[1] != 0}; }

// A record that these services did not make has some value; its scale is within the tables.
inline decimal read_decimal(const xdec *from)
{
    return {is_negative(from), std::min(scale_of(from), decimal_digits_max), load<uint128>(from->bytes + 8)};
}

// The scale has to be the smallest.
inline void write_decimal(const decimal &value, xdec *to)
{
    const uint32_t not_zero = 1 + uint32_t{value.negative} + ((value.scale + 1) << 8);
    store(to->bytes, uint64_t{value.coefficient == 0 ? 0x80 : not_zero});
    store(to->bytes + 8, uint64_t(value.coefficient));
    store(to->bytes + 16, uint64_t(value.coefficient >> 64));
    store(to->bytes + 24, uint32_t{0});
    store(to->bytes + 28, uint16_t{0});
}

// ---- Shapes ----------------------------------------------------------------

// Without a declared shape both counts are 38, and a value that has digits before
// the point leaves less room behind it.
struct shape {
    uint32_t whole_digits;
    uint32_t scale;
};

inline bool has_shape(int32_t len, int32_t prec) { return (len | prec) != 0; }

inline shape shape_of(int32_t len, int32_t prec)
{
    if (uint32_t(len) - 1 < decimal_digits_max && uint32_t(prec) <= uint32_t(len)) [[likely]]
        return {uint32_t(len - prec), uint32_t(prec)};
    if (!has_shape(len, prec))
        return {decimal_digits_max, decimal_digits_max};
    const uint32_t digits = std::min(uint32_t(len), decimal_digits_max);
    const uint32_t scale = std::min(uint32_t(prec), digits);
    return {digits - scale, scale};
}

// ---- Arithmetic ------------------------------------------------------------

// value / 10^digits, ties up.
template <class T> T divide_rounded(T value, uint32_t digits)
{
    const T divisor = T(wide_powers_of_ten[digits]);
    const T quotient = value / divisor, rest = value % divisor;
    return quotient + (rest >= divisor - rest); // not twice the rest, which may not fit
}

// value * 10^-digits, ties up, for any count of digits.
inline uint128 cut_digits(uint128 value, uint32_t digits)
{
    if (is_short(value))
        return digits <= power_max ? divide_rounded(uint64_t(value), digits) : 0;
    return digits <= wide_power_max ? divide_rounded(value, digits) : 0;
}

// Makes the scale of value * 10^-scale the smallest.
template <class T> void cut_zeros(T *value, uint32_t *scale)
{
    while (*scale > 0 && *value % 10 == 0) {
        *value /= 10;
        --*scale;
    }
}

inline void cut_zeros(decimal *value)
{
    if (!is_short(value->coefficient))
        return cut_zeros(&value->coefficient, &value->scale);
    auto coefficient = uint64_t(value->coefficient);
    if (coefficient != 0)
        cut_zeros(&coefficient, &value->scale);
    value->coefficient = coefficient;
}

// ---- Fitting ---------------------------------------------------------------

// The first coefficient that has more digits than that, or more than 38.
inline constexpr auto coefficient_limits = [] {
    std::array<uint128, 2 * decimal_digits_max + 1> limits{};
    for (size_t digits = 0; digits < limits.size(); digits++)
        limits[digits] = wide_powers_of_ten[std::min(digits, wide_power_max)];
    return limits;
}();

// A value whose scale is the smallest and within the room.
inline int32_t write_fitting(const decimal &value, shape room, xdec *to)
{
    if (value.coefficient >= coefficient_limits[room.whole_digits + value.scale]) [[unlikely]]
        return ERR_OVERFLOW;
    write_decimal(value, to);
    return 0;
}

// Rounds a value whose scale is above that of the room. Where it is above 38,
// the coefficient has less than 39 digits.
int32_t write_cut(bool negative, uint32_t scale, uint128 coefficient, shape room, xdec *to);

inline int32_t write_rounded(const decimal &value, shape room, xdec *to)
{
    if (value.scale > room.scale) [[unlikely]]
        return write_cut(value.negative, value.scale, value.coefficient, room, to);
    return write_fitting(value, room, to);
}

} // namespace embedded
