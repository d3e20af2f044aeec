// Doubles as floats and floats as doubles, by hand and by bits, so that no conversion of the machine vouches for
// itself.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace bcast::test {

// Rounded to the nearest, of two as near to the even one.
struct narrowed_double {
    double from;
    float to;
};

inline constexpr narrowed_double narrowed_doubles[] = {
    {0.0, 0.0F},
    {-0.0, -0.0F},
    {0.5, 0.5F},
    {-1234.5, -1234.5F},
    {0.1, 0x1.99999ap-4F},
    {1 + 0x1p-24, 1.0F},                   // in the middle: down to the even one
    {1 + 0x1p-24 + 0x1p-50, 1 + 0x1p-23F}, // just above the middle
    {1 + 0x3p-24, 1 + 0x1p-22F},           // in the middle: up to the even one
    {-(1 + 0x3p-24), -(1 + 0x1p-22F)},
    {16777217.0, 16777216.0F},
    {0x1p-126, 0x1p-126F}, // the least normal float
    {0x1p-149, 0x1p-149F}, // the least subnormal one
    {0x1p-150, 0.0F},
    {-0x1p-150, -0.0F},
    {0x1.8p-150, 0x1p-149F},
    {0x3p-150, 0x1p-148F},
    {5e-324, 0.0F},
    {0x1.fffffep127, 0x1.fffffep127F}, // the greatest float
    {0x1.fffffefffffffp127, 0x1.fffffep127F},
    {0x1.ffffffp127, std::numeric_limits<float>::infinity()}, // in the middle between it and the next power of two
    {1e300, std::numeric_limits<float>::infinity()},
    {-std::numeric_limits<double>::infinity(), -std::numeric_limits<float>::infinity()},
    {std::bit_cast<double>(0xFFF8000020000000), std::bit_cast<float>(0xFFC00001)},
};

// The double of a float's bits. A signalling NaN becomes a quiet one.
inline double widened(uint32_t bits)
{
    const uint64_t sign = uint64_t{bits >> 31} << 63;
    const uint64_t exponent = bits >> 23 & 0xFF, mantissa = bits & 0x7FFFFF;
    if (exponent == 0)
        return std::copysign(std::ldexp(static_cast<double>(mantissa), -149), sign ? -1.0 : 1.0);
    if (exponent == 0xFF)
        return std::bit_cast<double>(sign | 0x7FF0000000000000 | (mantissa ? 0x8000000000000 | mantissa << 29 : 0));
    return std::bit_cast<double>(sign | (exponent - 127 + 1023) << 52 | mantissa << 29);
}

// Floats that a cast may stumble over.
inline constexpr float odd_floats[] = {
    0.0F,
    -0.0F,
    0x1p-149F,
    -0x1p-149F,
    0x1.fffffcp-127F, // the greatest subnormal one
    0x1p-126F,
    0x1.fffffep127F,
    -0x1.fffffep127F,
    std::numeric_limits<float>::infinity(),
    -std::numeric_limits<float>::infinity(),
    std::bit_cast<float>(0x7FC00000),
    std::bit_cast<float>(0xFFC12345),
    std::bit_cast<float>(0x7F800001), // a signalling NaN
    std::bit_cast<float>(0xFFBFFFFF), // another
};

inline constexpr double odd_doubles[] = {
    0.0,
    -0.0,
    5e-324,
    -5e-324,
    0x0.fffffffffffffp-1022, // the greatest subnormal one
    0x1.fffffffffffffp1023,
    -0x1.fffffffffffffp1023,
    std::numeric_limits<double>::infinity(),
    -std::numeric_limits<double>::infinity(),
    std::bit_cast<double>(0x7FF8000000000000),
    std::bit_cast<double>(0xFFF8123456789ABC),
    std::bit_cast<double>(0x7FF0000000000001), // a signalling NaN
    std::bit_cast<double>(0xFFF7FFFFFFFFFFFF), // another
};

} // namespace bcast::test
