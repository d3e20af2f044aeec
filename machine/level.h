// What the processor can do, asked in one place.
//
// A level is a set of instructions that code is written or compiled for beyond what the build takes for granted:
//
//     level    code for it        processors
//     any                         all that the build is for
//     avx2     CODE_FOR_AVX2      with AVX2, BMI and BMI2 (x86-64-v3): servers and laptops since about 2014
//     avx512   CODE_FOR_AVX512    with AVX-512 F, BW, DQ and VL besides (x86-64-v4)
//
// Each has all of the one before it. CODE_FOR_... stands in front of a function, or behind a lambda's parameters: its
// body then may use the level's intrinsics, and the compiler its instructions.
//
// A build that fixes the instruction set (BCAST_ONE_LEVEL) has code for the highest level that its compiler flags allow
// and for none above; nothing is asked then. Any other build has code for all, of which pick.h takes the best.
#pragma once

#if defined(__x86_64__)
#include <immintrin.h>
#define MACHINE_IS_X86_64 1
#define CODE_FOR_AVX2 __attribute__((target("avx2,bmi,bmi2")))
#define CODE_FOR_AVX512 __attribute__((target("avx2,bmi,bmi2,avx512f,avx512bw,avx512dq,avx512vl")))
#endif

namespace machine {

enum class level { any, avx2, avx512 };

constexpr const char *name_of(level at)
{
    return at == level::avx512 ? "AVX-512" : at == level::avx2 ? "AVX2" : "any processor";
}

#if defined(__AVX512BW__) && defined(__AVX512DQ__) && defined(__AVX512VL__) && defined(__BMI2__)
inline constexpr level lowest = level::avx512;
#elif defined(__AVX2__) && defined(__BMI__) && defined(__BMI2__)
inline constexpr level lowest = level::avx2;
#else
inline constexpr level lowest = level::any;
#endif

#if defined(MACHINE_IS_X86_64) && !defined(BCAST_ONE_LEVEL)
inline constexpr level highest = level::avx512;
#else
inline constexpr level highest = lowest;
#endif

// Whether the build has code for a level above the lowest, and the processor runs it.
[[gnu::always_inline]] inline bool has(level wanted)
{
#if defined(MACHINE_IS_X86_64)
    if (wanted <= lowest || wanted > highest)
        return wanted <= lowest;
    const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2");
    if (wanted == level::avx2)
        return avx2;
    return avx2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
           __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
#else
    return wanted <= lowest;
#endif
}

} // namespace machine
