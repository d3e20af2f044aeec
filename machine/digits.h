// Decimal digits of integers in words, a character a byte, the first in the lowest: without a branch on how many there
// are or on the sign, which are as good as random.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace machine {

inline constexpr uint64_t eight_zeros = 0x3030303030303030; // the characters "00000000"
inline constexpr uint32_t ten_to_8 = 100'000'000;

// The digits of a value below 10^8, as numbers: divides both fours by 100, then all pairs by 10. The multipliers are
// exact in that range.
inline uint64_t eight_digits(uint32_t value)
{
    const uint64_t fours = value / 10000 | uint64_t{value % 10000} << 32;
    const uint64_t hundreds = ((fours * 10486) >> 20) & 0x0000007F0000007F;
    const uint64_t pairs = hundreds | (fours - hundreds * 100) << 16;
    const uint64_t tens = ((pairs * 103) >> 10) & 0x000F000F000F000F;
    return tens | (pairs - tens * 10) << 8;
}

#ifdef __SSE2__

// The characters of the 16 digits of a value below 10^16: the steps of eight_digits, with all at once.
inline __m128i sixteen_characters(uint64_t value)
{
    const __m128i eights = _mm_set_epi64x(int64_t(value % ten_to_8), int64_t(value / ten_to_8));
    const __m128i heads = _mm_srli_epi64(_mm_mul_epu32(eights, _mm_set1_epi64x(3518437209)), 45);
    const __m128i fours =
        _mm_or_si128(heads, _mm_slli_epi64(_mm_sub_epi64(eights, _mm_mul_epu32(heads, _mm_set1_epi64x(10000))), 32));
    const __m128i hundreds = _mm_srli_epi16(_mm_mulhi_epu16(fours, _mm_set1_epi32(5243)), 3);
    const __m128i pairs = _mm_or_si128(
        hundreds, _mm_slli_epi32(_mm_sub_epi16(fours, _mm_mullo_epi16(hundreds, _mm_set1_epi32(100))), 16));
    const __m128i tens = _mm_srli_epi16(_mm_mullo_epi16(pairs, _mm_set1_epi16(103)), 10);
    const __m128i digits =
        _mm_or_si128(tens, _mm_slli_epi16(_mm_sub_epi16(pairs, _mm_mullo_epi16(tens, _mm_set1_epi16(10))), 8));
    return _mm_or_si128(digits, _mm_set1_epi8('0'));
}

#endif

// The same in words.
struct sixteen_digits {
    uint64_t first, second;

    explicit sixteen_digits(uint64_t value)
    {
#ifdef __SSE2__
        const __m128i characters = sixteen_characters(value);
        first = uint64_t(_mm_cvtsi128_si64(characters));
        second = uint64_t(_mm_cvtsi128_si64(_mm_shuffle_epi32(characters, 0xEE)));
#else
        first = eight_digits(uint32_t(value / ten_to_8)) | eight_zeros;
        second = eight_digits(uint32_t(value % ten_to_8)) | eight_zeros;
#endif
    }
};

// How many digits a value has; 0 has one.
inline uint32_t digit_count(uint64_t value)
{
    static constexpr auto powers_of_ten = [] {
        std::array<uint64_t, 20> powers{};
        uint64_t power = 1;
        for (uint64_t &each : powers) {
            each = power;
            power *= 10;
        }
        return powers;
    }();
    const uint32_t least = uint32_t(std::bit_width(value | 1)) * 1233 >> 12; // log10(2) is 1233 / 4096
    return least + ((value | 1) >= powers_of_ten[least]);
}

// 16 characters but the first `skipped`, which are at most 15.
inline unsigned __int128 characters_behind(int skipped, uint64_t first, uint64_t second)
{
    return (first | static_cast<unsigned __int128>(second) << 64) >> 8 * skipped;
}

// What makes a minus of a zero.
inline constexpr uint64_t zero_to_minus = '0' ^ '-';

// The text of a magnitude of at most 15 digits, with a minus where negative is 1. There are NULs behind it.
struct short_decimal_text {
    uint64_t first, second;
    int32_t len;

    short_decimal_text(uint64_t magnitude, uint64_t negative)
    {
        const sixteen_digits all(magnitude);
        len = int32_t(digit_count(magnitude) + negative);
        // A minus takes the place of the last zero skipped, of which there is one at least.
        const unsigned __int128 both = characters_behind(16 - len, all.first, all.second);
        first = uint64_t(both) ^ negative * zero_to_minus;
        second = uint64_t(both >> 64);
    }
};

} // namespace machine
