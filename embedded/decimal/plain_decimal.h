// The decimals that texts hold as a rule: a sign or none, and digits with at most one point. What is not read here is
// for the reader of literals. The scale that is given is the smallest, and may be too large for a room.
#pragma once

#include "embedded/base/characters.h"
#include "embedded/decimal/decimal.h"
#include "embedded/text/plain_number.h"

namespace embedded {

template <level at> struct plain_decimals : plain_decimals<below(at)> {};

template <> struct plain_decimals<level::any> {
    // Up to 16 digits.
    static bool read_short(const char *text, size_t size, decimal *value)
    {
        const size_t sign = is_sign(text[0]);
        uint64_t coefficient;
        size_t scale;
        if (!plain_numbers<level::any>::read_decimal(text + sign, size - sign, &coefficient, &scale))
            return false;
        *value = {text[0] == '-', uint32_t(scale), coefficient};
        cut_zeros(value);
        return true;
    }

    // Up to so many bytes; at this level the same.
    static constexpr size_t long_max = plain_decimal_max + 1;

    static bool read_long(const char *text, size_t size, decimal *value)
    {
        return size - 1 < long_max && read_short(text, size, value);
    }
};

#if defined(MACHINE_IS_X86_64)

// Takes zeros off the end of a number that has them: multiplies by what is 1 with 5^zeros in 64 bits.
inline uint64_t without_zeros(uint64_t value, uint32_t zeros)
{
    static constexpr auto inverses = [] {
        std::array<uint64_t, 16> inverses_of_powers_of_5{1};
        for (size_t i = 1; i < inverses_of_powers_of_5.size(); i++)
            inverses_of_powers_of_5[i] = inverses_of_powers_of_5[i - 1] * 0xCCCCCCCCCCCCCCCD;
        return inverses_of_powers_of_5;
    }();
    return value * inverses[zeros] >> zeros;
}

template <> struct plain_decimals<level::avx512> {
    using numbers = plain_numbers<level::avx512>;

    CODE_FOR_AVX512 static bool read_short(const char *text, size_t size, decimal *value)
    {
        const bool negative = text[0] == '-';
        __m128i digits;
        size_t behind_point;
        uint64_t coefficient;
        if (!numbers::take_point_out(text + negative, size - negative, &digits, &behind_point) ||
            !numbers::value_of_sixteen(digits, &coefficient))
            return false;
        const auto zeros = uint32_t(_mm_movemask_epi8(_mm_cmpeq_epi8(digits, _mm_set1_epi8('0'))));
        const auto before_point = 15 - uint32_t(behind_point); // the place of the digit that stands there
        const uint32_t last = 31 - uint32_t(__builtin_clz((zeros ^ 0xFFFF) | 1u << before_point));
        *value = {negative, last - before_point, without_zeros(coefficient, 15 - last)};
        return true;
    }

    static constexpr size_t long_max = 32;

    // What is loaded is the digits before the point, and behind them those up to the last that is not 0.
    CODE_FOR_AVX512 static bool read_long(const char *text, size_t size, decimal *value)
    {
        if (size - 1 >= long_max)
            return false;
        const uint64_t behind_text = uint64_t{1} << size;
        const auto in_text = uint32_t(behind_text - 1);
        const __m256i characters = _mm256_maskz_loadu_epi8(in_text, text);
        const __m256i zero = _mm256_set1_epi8('0');
        const uint32_t points = _mm256_cmpeq_epi8_mask(characters, _mm256_set1_epi8('.'));
        const uint32_t not_zeros = _mm256_mask_cmpneq_epi8_mask(in_text, characters, zero);

        // The point, or where none is, one behind the text. Another one is no digit.
        const uint32_t sign = is_sign(text[0]);
        const auto point = uint32_t(std::countr_zero(points | behind_text));
        const auto last = uint32_t(std::bit_width(not_zeros | uint64_t{1} << point)) - 1;
        const uint32_t scale = last - point;
        if (sign + (point < size) == size)
            return false;

        // The digits before the point are loaded from one byte before, and so close the gap.
        const auto fraction = uint32_t(~uint64_t{0} << (32 - scale));
        const auto all = uint32_t(~uint64_t{0} << (32 + sign - last));
        const char *block = text + last - 31;
        const __m256i joined =
            _mm256_mask_loadu_epi8(_mm256_maskz_loadu_epi8(fraction, block), all ^ fraction, block - 1);
        const __m256i values = _mm256_maskz_sub_epi8(all, joined, zero);
        if (_mm256_cmpgt_epu8_mask(values, _mm256_set1_epi8(9)) != 0)
            return false;

        const __m256i pairs = _mm256_maddubs_epi16(values, _mm256_set1_epi16(10 + (1 << 8)));
        const __m256i fours = _mm256_madd_epi16(pairs, _mm256_set1_epi32(100 + (1 << 16)));
        const __m256i eights =
            _mm256_madd_epi16(_mm256_packus_epi32(fours, fours), _mm256_set1_epi32(10000 + (1 << 16)));
        const auto sixteen = [](__m128i two) {
            const auto both = uint64_t(_mm_cvtsi128_si64(two));
            return (both & 0xFFFFFFFF) * 100000000 + (both >> 32);
        };
        const uint64_t head = sixteen(_mm256_castsi256_si128(eights)),
                       tail = sixteen(_mm256_extracti128_si256(eights, 1));
        *value = {text[0] == '-', scale, uint128{head} * powers_of_ten[16] + tail};
        return true;
    }
};

#endif

} // namespace embedded
