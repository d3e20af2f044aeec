// The run (src/frame/run.h) that copies temporal values.
#pragma once

#include "src/frame/run.h"

#include <bcast/column.h>

#include <cstring>

// Four values are three vectors of four words; a row's flag has to reach all three of its words, which no compiler
// finds a shuffle for by itself.
using four_flags = uint8_t __attribute__((vector_size(4)));
using four_words = uint32_t __attribute__((vector_size(16)));

ALWAYS_INLINE void blend_words(const vqtime *from, vqtime *to, size_t vector, four_words keep)
{
    four_words fresh, old;
    memcpy(&fresh, reinterpret_cast<const char *>(from) + vector * sizeof fresh, sizeof fresh);
    memcpy(&old, reinterpret_cast<char *>(to) + vector * sizeof old, sizeof old);
    fresh = (fresh & ~keep) | (old & keep);
    memcpy(reinterpret_cast<char *>(to) + vector * sizeof fresh, &fresh, sizeof fresh);
}

ALWAYS_INLINE void blend_values(const vqtime *__restrict from, const uint8_t *__restrict flags, vqtime *__restrict to,
                                uint32_t n)
{
    uint32_t k = 0;
    for (; k + 4 <= n; k += 4) {
        four_flags present;
        memcpy(&present, flags + k, sizeof present);
        const auto keep = four_words(__builtin_convertvector(present, four_words) == 0);
        blend_words(from + k, to + k, 0, __builtin_shufflevector(keep, keep, 0, 0, 0, 1));
        blend_words(from + k, to + k, 1, __builtin_shufflevector(keep, keep, 1, 1, 2, 2));
        blend_words(from + k, to + k, 2, __builtin_shufflevector(keep, keep, 2, 3, 3, 3));
    }
    for (; k < n; k++)
        if (flags[k])
            to[k] = from[k];
}

RUN void copy_values(const vqtime *from, const uint8_t *flags, vqtime *to, uint32_t n)
{
    if (flags)
        blend_values(from, flags, to, n);
    else
        memcpy(to, from, n * sizeof(vqtime));
}

#if defined(MACHINE_IS_X86_64)

// Sixteen values are three vectors of sixteen words, stored under a mask that has each row's bit three times: what is
// not stored need not be read either.
CODE_FOR_AVX512 inline void copy_values_avx512(const vqtime *__restrict from, const uint8_t *__restrict flags,
                                               vqtime *__restrict to, uint32_t n)
{
    if (!flags) {
        memcpy(to, from, n * sizeof(vqtime));
        return;
    }
    for (uint32_t k = 0; k < n; k += 16) {
        const uint32_t rows = n - k < 16 ? (1u << (n - k)) - 1 : 0xFFFF;
        const __m128i present = _mm_maskz_loadu_epi8(__mmask16(rows), flags + k);
        const uint64_t words = 7 * _pdep_u64(_mm_test_epi8_mask(present, present), 0x249249249249);
        const auto *source = reinterpret_cast<const char *>(from + k);
        auto *target = reinterpret_cast<char *>(to + k);
        for (int third = 0; third < 3; third++) {
            const auto mask = __mmask16(words >> 16 * third);
            _mm512_mask_storeu_epi32(target + 64 * third, mask, _mm512_maskz_loadu_epi32(mask, source + 64 * third));
        }
    }
}

template <> inline constexpr auto machine::way_of<copy_values, machine::level::avx512> = copy_values_avx512;

#endif
