// A short text made in registers, stored for a service to read at once: in one store, which a service's load right
// behind it need not wait for, where the level can.
#pragma once

#include "machine/pick.h"

#include <cstdint>
#include <cstring>

namespace machine {

constexpr uint32_t short_store_size = 32;

template <level at> struct short_stores : short_stores<below(at)> {};

template <> struct short_stores<level::any> {
    // Three words, of which the first stands first, and eight zeros behind them.
    static void store(void *to, uint64_t first, uint64_t second, uint64_t third)
    {
        const uint64_t words[] = {first, second, third, 0};
        static_assert(sizeof words == short_store_size);
        memcpy(to, words, sizeof words);
    }
};

#if defined(MACHINE_IS_X86_64)

template <> struct short_stores<level::avx2> {
    CODE_FOR_AVX2 static void store(void *to, uint64_t first, uint64_t second, uint64_t third)
    {
        const __m256i all = _mm256_set_epi64x(0, int64_t(third), int64_t(second), int64_t(first));
        _mm256_storeu_si256(static_cast<__m256i *>(to), all);
    }
};

#endif

} // namespace machine
