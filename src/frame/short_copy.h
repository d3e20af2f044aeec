// A short value, copied into scratch for a service to read at once.
#pragma once

#include "src/frame/isa.h" // BCAST_ONE_ISA

#include <cstdint>
#include <cstring>

#if defined(__AVX512BW__) && defined(__AVX512VL__)
#include <immintrin.h>
#endif

constexpr uint32_t short_copy_max = 32;

// Copies a value in one load and one store, which a service's load right behind it need not wait for, where the machine
// can. For one batch.
class short_copy {
public:
    // Whether it fills so many bytes: 1 to short_copy_max, or none on another machine.
    bool fills(uint32_t size) const { return size - 1 < size_max_; }

    // Copies len bytes and puts zeros behind them up to short_copy_max. Needs a size of at least len that it fills.
    void operator()(void *to, const void *from, uint32_t len) const;

private:
#if defined(__AVX512BW__) && defined(__AVX512VL__)
    uint32_t size_max_ = short_copy_max;
#elif defined(__x86_64__) && !defined(BCAST_ONE_ISA)
    uint32_t size_max_ = __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") ? short_copy_max : 0;
#else
    uint32_t size_max_ = 0;
#endif
};

// A masked load touches no byte outside the mask.
#if defined(__AVX512BW__) && defined(__AVX512VL__)

inline void short_copy::operator()(void *to, const void *from, uint32_t len) const
{
    const auto mask = uint32_t((uint64_t{1} << len) - 1);
    _mm256_storeu_si256(static_cast<__m256i *>(to), _mm256_maskz_loadu_epi8(mask, from));
}

#elif defined(__x86_64__) && !defined(BCAST_ONE_ISA)

// Assembler, since a function for another machine than the casts' is not put into their loops, and the call would cost
// more than the copy. k1 is none of the registers that the compiler knows here.
inline void short_copy::operator()(void *to, const void *from, uint32_t len) const
{
    struct block {
        char bytes[short_copy_max];
    };
    const auto mask = uint32_t((uint64_t{1} << len) - 1);
    asm("kmovd %[mask], %%k1\n\t"
        "vmovdqu8 %[from], %%ymm0%{%%k1%}%{z%}\n\t"
        "vmovdqu %%ymm0, %[to]\n\t"
        "vzeroupper"
        : [to] "=m"(*static_cast<block *>(to))
        : [from] "m"(*static_cast<const block *>(from)), [mask] "r"(mask)
        : "xmm0");
}

#else

inline void short_copy::operator()(void *to, const void *from, uint32_t len) const
{
    memset(to, 0, short_copy_max);
    memcpy(to, from, len);
}

#endif
