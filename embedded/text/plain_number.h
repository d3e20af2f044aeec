// The value of a few digits, with a point among them or without one. No function reads a byte outside the text, and
// none branches on its length beyond "longer than eight": lengths are as good as random, and a mispredicted branch
// costs as much as all the rest.
#pragma once

#include "embedded/base/machine.h"
#include "embedded/base/powers_of_ten.h"
#include "machine/digits.h"
#include "machine/short_copy.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace embedded {

inline constexpr size_t plain_digits_max = 16;
inline constexpr size_t plain_decimal_max = plain_digits_max + 1; // with a point

// Eight digit values in a word, the first in the lowest byte: is one above 9?
inline bool has_no_digit(uint64_t digits)
{
    return (((digits + 0x7676767676767676) | digits) & 0x8080808080808080) != 0;
}

// Joins digits to pairs, pairs to fours, fours to the value.
inline uint64_t value_of_eight(uint64_t digits)
{
    digits = digits * 10 + (digits >> 8);
    const uint64_t pairs_0_2 = digits & 0x000000FF000000FF, pairs_1_3 = (digits >> 16) & 0x000000FF000000FF;
    return (pairs_0_2 * (100 + (uint64_t{1000000} << 32)) + pairs_1_3 * (1 + (uint64_t{10000} << 32))) >> 32;
}

template <level at> struct plain_numbers : plain_numbers<below(at)> {};

template <> struct plain_numbers<level::any> {
    // The value of 1 to plain_digits_max characters; false when one is no digit.
    static bool read_digits(const char *from, size_t count, uint64_t *value)
    {
        if (count <= 8) [[likely]] {
            const uint64_t digits = (load_bytes(from, count) ^ eight_zeros) << 8 * (8 - count);
            *value = value_of_eight(digits);
            return !has_no_digit(digits);
        }
        const uint64_t head = (load<uint64_t>(from) ^ eight_zeros) << 8 * (16 - count);
        const uint64_t tail = load<uint64_t>(from + count - 8) ^ eight_zeros;
        *value = value_of_eight(head) * 100000000 + value_of_eight(tail);
        return !has_no_digit(head) && !has_no_digit(tail);
    }

    // The value of 1 to plain_digits_max digits, and how many stand behind the point, which need not be there: fewer
    // than plain_digits_max. False when the count characters are anything else.
    static bool read_decimal(const char *from, size_t count, uint64_t *value, size_t *behind_point)
    {
        const auto *point = static_cast<const char *>(memchr(from, '.', count));
        const size_t before = point == nullptr ? count : size_t(point - from);
        *behind_point = point == nullptr ? 0 : count - before - 1;
        uint64_t head = 0, tail = 0;
        if (before + *behind_point - 1 >= plain_digits_max || *behind_point == plain_digits_max ||
            (before > 0 && !read_digits(from, before, &head)) ||
            (*behind_point > 0 && !read_digits(point + 1, *behind_point, &tail)))
            return false;
        *value = head * powers_of_ten[*behind_point] + tail;
        return true;
    }
};

#if defined(MACHINE_IS_X86_64)

// For the place of the point among 16 characters: ~0 for those behind it. Without a point, which is place 16, for all.
struct alignas(16) sixteen_bytes {
    uint8_t bytes[16];
};
inline constexpr auto behind_point_masks = [] {
    std::array<sixteen_bytes, 17> masks{};
    for (size_t point = 0; point <= 16; point++) {
        for (size_t i = 0; i < 16; i++)
            masks[point].bytes[i] = i > point || point == 16 ? 0xFF : 0;
    }
    return masks;
}();

template <> struct plain_numbers<level::avx512> {
    // The last count of the 16 characters before end; above 16 all of them. The others read as '0'.
    CODE_FOR_AVX512 static __m128i load_last(const char *end, size_t count)
    {
        const auto mask = __mmask16(0xFFFFFFFF0000 >> count);
        return _mm_mask_loadu_epi8(_mm_set1_epi8('0'), mask, end - 16);
    }

    // The value of 16 characters; false when one is no digit.
    CODE_FOR_AVX512 static bool value_of_sixteen(__m128i characters, uint64_t *value)
    {
        const __m128i digits = _mm_xor_si128(characters, _mm_set1_epi8('0'));
        const __m128i pairs = _mm_maddubs_epi16(digits, _mm_set1_epi16(10 + (1 << 8)));
        const __m128i fours = _mm_madd_epi16(pairs, _mm_set1_epi32(100 + (1 << 16)));
        const __m128i eights = _mm_madd_epi16(_mm_packus_epi32(fours, fours), _mm_set1_epi32(10000 + (1 << 16)));
        const auto both = uint64_t(_mm_cvtsi128_si64(eights));
        *value = (both & 0xFFFFFFFF) * 100000000 + (both >> 32);
        return _mm_cmpgt_epu8_mask(digits, _mm_set1_epi8(9)) == 0;
    }

    CODE_FOR_AVX512 static bool read_digits(const char *from, size_t count, uint64_t *value)
    {
        return value_of_sixteen(load_last(from + count, count), value);
    }

    // Takes the point out of the count characters: they become the last of 16, and '0' stands before them. The digits
    // before the point move up by one, over the point: they are taken from what is loaded one byte before. False when
    // less than one or more than 16 remain.
    CODE_FOR_AVX512 static bool take_point_out(const char *from, size_t count, __m128i *digits, size_t *behind_point)
    {
        if (count - 1 >= plain_decimal_max)
            return false;
        const char *end = from + count;
        const __m128i as_is = load_last(end, count), moved = load_last(end - 1, count - 1);
        const auto points = uint32_t(_mm_movemask_epi8(_mm_cmpeq_epi8(as_is, _mm_set1_epi8('.'))));
        const auto point = uint32_t(std::countr_zero(points | 1 << 16));
        const uint32_t none = point / 16;
        *behind_point = 15 - point + none;
        const __m128i behind = _mm_load_si128(reinterpret_cast<const __m128i *>(&behind_point_masks[point]));
        *digits = _mm_ternarylogic_epi64(behind, as_is, moved, 0xCA); // bits of behind choose as_is
        return count - 2 + none < plain_digits_max;
    }

    CODE_FOR_AVX512 static bool read_decimal(const char *from, size_t count, uint64_t *value, size_t *behind_point)
    {
        __m128i digits;
        return take_point_out(from, count, &digits, behind_point) && value_of_sixteen(digits, value);
    }
};

#endif

} // namespace embedded
