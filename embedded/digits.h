// Decimal digits of unsigned numbers, without a branch on how many there are.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <array>
#include <bit>

#include "embedded/short_text.h"
#include "embedded/words.h"

namespace embedded {

// For the digit count of a value below 2^32 without a branch: the sum of the value
// and the entry at its bit width has the count in its upper half.
inline constexpr auto digit_count_table = [] {
    std::array<uint64_t, 33> table{};
    uint64_t count = 1, next_power = 10;
    for (int width = 0; width <= 32; width++) {
        const uint64_t last = (uint64_t{1} << width) - 1;
        const bool grows = last >= next_power; // at next_power, among the values of this width
        table[static_cast<size_t>(width)] = grows ? ((count + 1) << 32) - next_power : count << 32;
        if (grows) {
            count++;
            next_power *= 10;
        }
    }
    return table;
}();

inline size_t digit_count(uint32_t value)
{
    return (value + digit_count_table[static_cast<size_t>(std::bit_width(value | 1))]) >> 32;
}

inline size_t digit_count(uint64_t value)
{
    const auto least = static_cast<size_t>(std::bit_width(value | 1) * 1233 >> 12); // log10(2) is 1233 / 4096
    return least + ((value | 1) >= powers_of_ten[least]);
}

// The digits of a value below 10^8, the first in the lowest byte: divides both
// fours by 100, then all pairs by 10. The multipliers are exact in that range.
inline uint64_t eight_digits(uint32_t value)
{
    const uint64_t fours = value / 10000 | uint64_t{value % 10000} << 32;
    const uint64_t hundreds = ((fours * 10486) >> 20) & 0x0000007F0000007F;
    const uint64_t pairs = hundreds | (fours - hundreds * 100) << 16;
    const uint64_t tens = ((pairs * 103) >> 10) & 0x000F000F000F000F;
    return tens | (pairs - tens * 10) << 8;
}

// The 16 characters of a value below 10^16, for each kind of machine.
struct any_digits {
    uint64_t head, tail;

    explicit any_digits(uint64_t value)
        : head(eight_digits(static_cast<uint32_t>(value / 100000000)) | eight_zeros),
          tail(eight_digits(static_cast<uint32_t>(value % 100000000)) | eight_zeros)
    {}

    // Writes those behind the first skipped ones, and may write 16 bytes. None are to be read if 16 are skipped.
    void write_from(size_t skipped, char *to) const
    {
        const unsigned __int128 both = head | static_cast<unsigned __int128>(tail) << 64;
        store(to, both >> 8 * (skipped % 16));
    }
};

#if defined(BCAST_HAS_AVX512_MACHINE)

struct avx512_digits {
    static constexpr auto places = [] {
        std::array<uint8_t, 32> all{};
        for (uint8_t i = 0; i < all.size(); i++)
            all[i] = i;
        return all;
    }();

    __m128i characters;

    // The steps of eight_digits, with all 16 at once.
    BCAST_AVX512 explicit avx512_digits(uint64_t value)
    {
        const __m128i eights =
            _mm_set_epi64x(static_cast<int64_t>(value % 100000000), static_cast<int64_t>(value / 100000000));
        const __m128i heads = _mm_srli_epi64(_mm_mul_epu32(eights, _mm_set1_epi64x(3518437209)), 45);
        const __m128i fours = _mm_or_si128(
            heads, _mm_slli_epi64(_mm_sub_epi64(eights, _mm_mul_epu32(heads, _mm_set1_epi64x(10000))), 32));
        const __m128i hundreds = _mm_srli_epi16(_mm_mulhi_epu16(fours, _mm_set1_epi32(5243)), 3);
        const __m128i pairs = _mm_or_si128(
            hundreds, _mm_slli_epi32(_mm_sub_epi16(fours, _mm_mullo_epi16(hundreds, _mm_set1_epi32(100))), 16));
        const __m128i tens = _mm_srli_epi16(_mm_mullo_epi16(pairs, _mm_set1_epi16(103)), 10);
        const __m128i digits =
            _mm_or_si128(tens, _mm_slli_epi16(_mm_sub_epi16(pairs, _mm_mullo_epi16(tens, _mm_set1_epi16(10))), 8));
        characters = _mm_or_si128(digits, _mm_set1_epi8('0'));
    }

    BCAST_AVX512 void write_from(size_t skipped, char *to) const
    {
        const __m128i from = _mm_loadu_si128(reinterpret_cast<const __m128i *>(&places[skipped]));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(to), _mm_shuffle_epi8(characters, from));
    }

    // Writes a minus or none, the last `count` of them, and a point ahead of the last `scale`, or none where that is 0.
    // Writes 32 bytes, in one store, for a reader right behind it to find the text at once.
    BCAST_AVX512 void write_number(bool negative, size_t count, size_t scale, char *to) const
    {
        const size_t point = scale > 0 ? negative + count - scale : places.size() - 1;
        const auto behind_point = static_cast<__mmask32>(~uint64_t{1} << point);
        const auto first = static_cast<char>(16 - count - negative); // -1 where a minus stands before 16 digits
        const __m256i place = _mm256_add_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i *>(places.data())),
                                              _mm256_set1_epi8(first));
        const __m256i from = _mm256_mask_sub_epi8(place, behind_point, place, _mm256_set1_epi8(1));
        __m256i text = _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(characters), from);
        text = _mm256_mask_mov_epi8(text, __mmask32{1} << point, _mm256_set1_epi8('.'));
        text = _mm256_mask_mov_epi8(text, __mmask32{negative}, _mm256_set1_epi8('-'));
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(to), text);
    }
};

#else

using avx512_digits = any_digits;

#endif

} // namespace embedded
