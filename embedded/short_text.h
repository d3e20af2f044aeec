// The two things done to nearly every text of a batch, while it is short: copy
// it, and read it as a number. Neither reads a byte outside the text, and neither
// branches on its length beyond "longer than eight": lengths are as good as
// random, and a mispredicted branch costs as much as all the rest.
//
// One struct for each kind of machine; their functions do the same.
#pragma once

#include <stddef.h>
#include <stdint.h>

// Not where the build fixes an instruction set without it.
#if defined(__x86_64__) && (!defined(BCAST_ONE_ISA) || (defined(__AVX512BW__) && defined(__AVX512VL__)))
#define BCAST_HAS_AVX512_MACHINE 1
#include <immintrin.h>
#endif

#include "embedded/words.h"

namespace embedded {

inline constexpr size_t plain_digits_max = 16;
inline constexpr uint64_t eight_zeros = 0x3030303030303030; // the characters "00000000"

struct any_machine {
    // ~0 where yes, else 0.
    static uint64_t mask(bool yes) { return 0 - static_cast<uint64_t>(yes); }

    // The word at from where wanted is ~0, and 0 where it is 0. The address is
    // chosen with arithmetic, since compilers make a branch of anything else.
    template <typename W> static uint64_t load_if(uint64_t wanted, const char *from)
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
};

#if defined(BCAST_HAS_AVX512_MACHINE)

// With AVX-512 a load under a mask does not touch a byte outside it.
#define BCAST_AVX512 __attribute__((target("avx512bw,avx512vl,bmi2")))

struct avx512_machine {
    static constexpr size_t copy_max = 32;

    BCAST_AVX512 static void copy(char *to, const char *from, size_t size)
    {
        const __mmask32 mask = _bzhi_u32(~0u, static_cast<unsigned>(size));
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(to), _mm256_maskz_loadu_epi8(mask, from));
    }

    BCAST_AVX512 static bool read_digits(const char *from, size_t count, uint64_t *value)
    {
        const auto mask = static_cast<__mmask16>(0xFFFFu << (16 - count));
        const __m128i characters = _mm_maskz_loadu_epi8(mask, from + count - 16);
        const __m128i digits = _mm_maskz_sub_epi8(mask, characters, _mm_set1_epi8('0'));
        const __m128i pairs = _mm_maddubs_epi16(digits, _mm_set1_epi16(10 + (1 << 8)));
        const __m128i fours = _mm_madd_epi16(pairs, _mm_set1_epi32(100 + (1 << 16)));
        const __m128i eights = _mm_madd_epi16(_mm_packus_epi32(fours, fours), _mm_set1_epi32(10000 + (1 << 16)));
        const auto both = static_cast<uint64_t>(_mm_cvtsi128_si64(eights));
        *value = (both & 0xFFFFFFFF) * 100000000 + (both >> 32);
        return _mm_cmpgt_epu8_mask(digits, _mm_set1_epi8(9)) == 0;
    }
};

// Set while the library is loaded; until then any_machine does.
inline const bool has_avx512 = [] {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("bmi2");
}();

#else

#define BCAST_AVX512
using avx512_machine = any_machine;
inline constexpr bool has_avx512 = false;

#endif

} // namespace embedded
