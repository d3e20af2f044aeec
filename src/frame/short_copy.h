// A short value, copied into scratch for a service to read at once.
#pragma once

#include "src/frame/isa.h"

#include <cstdint>
#include <cstring>

#if defined(__x86_64__) && (!defined(BCAST_ONE_ISA) || (defined(__AVX512BW__) && defined(__AVX512VL__)))
#define HAS_MASKED_COPY 1
#include <immintrin.h>
#endif

constexpr uint32_t short_copy_max = 32;

// Copies len bytes, at most short_copy_max, to `to`, and zeros behind them up to short_copy_max.
using short_copy = void(void *to, const void *from, uint32_t len);

inline void copy_in_pieces(void *to, const void *from, uint32_t len)
{
    memset(to, 0, short_copy_max);
    if (len > 0)
        memcpy(to, from, len);
}

#ifdef HAS_MASKED_COPY

// In one load and one store, which a service's load right behind it need not wait for.
__attribute__((target("avx512bw,avx512vl,bmi2"))) inline void copy_at_once(void *to, const void *from, uint32_t len)
{
    _mm256_storeu_si256(static_cast<__m256i *>(to), _mm256_maskz_loadu_epi8(_bzhi_u32(~0U, len), from));
}

inline short_copy *best_short_copy()
{
    const bool can =
        __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("bmi2");
    return can ? copy_at_once : copy_in_pieces;
}

#else

inline short_copy *best_short_copy() { return copy_in_pieces; }

#endif
