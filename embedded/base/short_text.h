// The two things done to nearly every text of a batch, while it is short: copy
// it, and read it as a number. Neither reads a byte outside the text, and neither
// branches on its length beyond "longer than eight": lengths are as good as
// random, and a mispredicted branch costs as much as all the rest.
//
// One struct for each kind of machine; their functions do the same.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Not where the build fixes an instruction set without it.
#if defined(__x86_64__) && (!defined(BCAST_ONE_ISA) || (defined(__AVX512BW__) && defined(__AVX512VL__)))
#define BCAST_HAS_AVX512_MACHINE 1
#include <immintrin.h>
#endif

#include "embedded/base/powers_of_ten.h"
#include "embedded/base/words.h"
#include "src/frame/digits.h"

namespace embedded {

inline constexpr size_t plain_digits_max = 16;
inline constexpr size_t plain_decimal_max = plain_digits_max + 1; // with a point

struct any_machine {
    // ~0 where yes, else 0.
    static uint64_t mask(bool yes) { return 0 - uint64_t(yes); }

    // The word at from where wanted is ~0, and 0 where it is 0. The address is
    // chosen with arithmetic, since compilers make a branch of anything else.
    template <class W> static uint64_t load_if(uint64_t wanted, const char *from)
    {
        static constexpr char nothing[sizeof(W)] = {};
        const auto none = reinterpret_cast<uintptr_t>(nothing);
        return load<W>(reinterpret_cast<const char *>(none ^ ((none ^ reinterpret_cast<uintptr_t>(from)) & wanted)));
    }

    // 1 to 8 bytes, the first in the lowest byte, zeros behind them.
    static uint64_t load_bytes(const char *from, size_t size)
    {
        const uint64_t four = mask(size >= 4);
        const size_t last = size - 1, last_four = (size - 4) & four;
        return load_if<uint32_t>(four, from) | load_if<uint16_t>(mask(size >= 2), from) |
               load_if<uint32_t>(four, from + last_four) << 8 * last_four |
               uint64_t{load<uint8_t>(from + last)} << 8 * last;
    }

    // 0 to copy_max bytes; may write copy_max bytes.
    static constexpr size_t copy_max = 16;

    static void copy(char *to, const char *from, size_t size)
    {
        if (size > 8) {
            const auto head = load<uint64_t>(from), tail = load<uint64_t>(from + size - 8);
            store(to, head);
            store(to + size - 8, tail);
        } else if (size > 0) {
            store(to, load_bytes(from, size));
        }
    }

    // 0 to copy_blocks_max bytes; may write up to a multiple of copy_max.
    static constexpr size_t copy_blocks_max = 4 * copy_max;

    static void copy_blocks(char *to, const char *from, size_t size)
    {
        if (size <= copy_max) [[likely]]
            copy(to, from, size);
        else
            for_blocks<copy_max>(size, [&](size_t at) { memcpy(to + at, from + at, copy_max); });
    }

    // Eight digit values in a word, the first in the lowest byte: is one above 9?
    static bool has_no_digit(uint64_t digits)
    {
        return (((digits + 0x7676767676767676) | digits) & 0x8080808080808080) != 0;
    }

    // Joins digits to pairs, pairs to fours, fours to the value.
    static uint64_t value_of_eight(uint64_t digits)
    {
        digits = digits * 10 + (digits >> 8);
        const uint64_t pairs_0_2 = digits & 0x000000FF000000FF, pairs_1_3 = (digits >> 16) & 0x000000FF000000FF;
        return (pairs_0_2 * (100 + (uint64_t{1000000} << 32)) + pairs_1_3 * (1 + (uint64_t{10000} << 32))) >> 32;
    }

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

#if defined(BCAST_HAS_AVX512_MACHINE)

// With AVX-512 a load under a mask does not touch a byte outside it.
#define BCAST_AVX512 __attribute__((target("avx512bw,avx512vl,bmi2")))

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

struct avx512_machine {
    static constexpr size_t copy_max = 32, copy_blocks_max = 4 * copy_max;

    // In halves, for a text that was just written in halves.
    BCAST_AVX512 static void copy(char *to, const char *from, size_t size)
    {
        const __mmask32 mask = _bzhi_u32(~0u, unsigned(size));
        const __m128i head = _mm_maskz_loadu_epi8(__mmask16(mask), from);
        const __m128i tail = _mm_maskz_loadu_epi8(__mmask16(mask >> 16), from + 16);
        _mm_storeu_si128(reinterpret_cast<__m128i *>(to), head);
        _mm_storeu_si128(reinterpret_cast<__m128i *>(to + 16), tail);
    }

    // Larger ones in blocks one behind the other, as large objects are written.
    BCAST_AVX512 static void copy_blocks(char *to, const char *from, size_t size)
    {
        if (size <= copy_max)
            return copy(to, from, size);
        for (size_t at = 0; at < size; at += copy_max) {
            const __mmask32 mask = _bzhi_u32(~0u, unsigned(size - at));
            _mm256_storeu_si256(reinterpret_cast<__m256i *>(to + at), _mm256_maskz_loadu_epi8(mask, from + at));
        }
    }

    // The last count of the 16 characters before end; above 16 all of them. The others read as '0'.
    BCAST_AVX512 static __m128i load_last(const char *end, size_t count)
    {
        const auto mask = __mmask16(0xFFFFFFFF0000 >> count);
        return _mm_mask_loadu_epi8(_mm_set1_epi8('0'), mask, end - 16);
    }

    // The value of 16 characters; false when one is no digit.
    BCAST_AVX512 static bool value_of_sixteen(__m128i characters, uint64_t *value)
    {
        const __m128i digits = _mm_xor_si128(characters, _mm_set1_epi8('0'));
        const __m128i pairs = _mm_maddubs_epi16(digits, _mm_set1_epi16(10 + (1 << 8)));
        const __m128i fours = _mm_madd_epi16(pairs, _mm_set1_epi32(100 + (1 << 16)));
        const __m128i eights = _mm_madd_epi16(_mm_packus_epi32(fours, fours), _mm_set1_epi32(10000 + (1 << 16)));
        const auto both = uint64_t(_mm_cvtsi128_si64(eights));
        *value = (both & 0xFFFFFFFF) * 100000000 + (both >> 32);
        return _mm_cmpgt_epu8_mask(digits, _mm_set1_epi8(9)) == 0;
    }

    BCAST_AVX512 static bool read_digits(const char *from, size_t count, uint64_t *value)
    {
        return value_of_sixteen(load_last(from + count, count), value);
    }

    // Takes the point out of the count characters: they become the last of 16, and '0' stands before them. The digits
    // before the point move up by one, over the point: they are taken from what is loaded one byte before. False when
    // less than one or more than 16 remain.
    BCAST_AVX512 static bool take_point_out(const char *from, size_t count, __m128i *digits, size_t *behind_point)
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

    BCAST_AVX512 static bool read_decimal(const char *from, size_t count, uint64_t *value, size_t *behind_point)
    {
        __m128i digits;
        return take_point_out(from, count, &digits, behind_point) && value_of_sixteen(digits, value);
    }
};

// Uses nothing that has to be ready.
[[gnu::always_inline]] inline bool machine_has_avx512()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("bmi2");
}

// For what is not a service by itself. Set while the library is loaded; until then any_machine does.
inline const bool has_avx512 = machine_has_avx512();

#else

#define BCAST_AVX512
using avx512_machine = any_machine;
inline constexpr bool has_avx512 = false;
constexpr bool machine_has_avx512() { return has_avx512; }

#endif

} // namespace embedded
