// A short text made in registers, stored for a service to read at once.
#pragma once

#include "src/frame/isa.h" // BCAST_ONE_ISA

#include <cstdint>
#include <cstring>

#ifdef __AVX2__
#include <immintrin.h>
#endif

constexpr uint32_t short_store_size = 32;

// Stores three words, of which the first stands first, and eight zeros behind them: in one store, which a service's
// load right behind it need not wait for, where the machine can. For one batch.
class short_store {
public:
    void operator()(void *to, uint64_t first, uint64_t second, uint64_t third) const;

private:
    struct block {
        uint64_t words[4];
    };

    static void store_words(void *to, uint64_t first, uint64_t second, uint64_t third)
    {
        const block all = {{first, second, third, 0}};
        memcpy(to, &all, sizeof all);
    }

#if defined(__x86_64__) && !defined(BCAST_ONE_ISA)
    bool at_once_ = __builtin_cpu_supports("avx2");
#endif
};

#if defined(__AVX2__)

inline void short_store::operator()(void *to, uint64_t first, uint64_t second, uint64_t third) const
{
    const __m256i all = _mm256_set_epi64x(0, int64_t(third), int64_t(second), int64_t(first));
    _mm256_storeu_si256(static_cast<__m256i *>(to), all);
}

#elif defined(__x86_64__) && !defined(BCAST_ONE_ISA)

// Assembler, since a function for another machine than the casts' is not put into their loops.
inline void short_store::operator()(void *to, uint64_t first, uint64_t second, uint64_t third) const
{
    if (!at_once_) [[unlikely]]
        return store_words(to, first, second, third);
    asm("vmovq %[first], %%xmm0\n\t"
        "vpinsrq $1, %[second], %%xmm0, %%xmm0\n\t"
        "vmovq %[third], %%xmm1\n\t"
        "vinserti128 $1, %%xmm1, %%ymm0, %%ymm0\n\t"
        "vmovdqu %%ymm0, %[to]\n\t"
        "vzeroupper"
        : [to] "=m"(*static_cast<block *>(to))
        : [first] "r"(first), [second] "r"(second), [third] "r"(third)
        : "xmm0", "xmm1");
}

#else

inline void short_store::operator()(void *to, uint64_t first, uint64_t second, uint64_t third) const
{
    store_words(to, first, second, third);
}

#endif
