// Copies of a few bytes, as most texts and binary values have. None reads a byte outside of them, and none branches on
// how many there are beyond "more than a block": lengths are as good as random, and a mispredicted branch costs as much
// as all the rest.
#pragma once

#include "machine/pick.h"
#include "machine/words.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace machine {

// ~0 where yes, else 0.
inline uint64_t mask_if(bool yes) { return 0 - uint64_t(yes); }

// The word at from where wanted is ~0, and 0 where it is 0. The address is
// chosen with arithmetic, since compilers make a branch of anything else.
template <class W> uint64_t load_if(uint64_t wanted, const char *from)
{
    static constexpr char nothing[sizeof(W)] = {};
    const auto none = reinterpret_cast<uintptr_t>(nothing);
    return load<W>(reinterpret_cast<const char *>(none ^ ((none ^ reinterpret_cast<uintptr_t>(from)) & wanted)));
}

// 1 to 8 bytes, the first in the lowest byte, zeros behind them.
inline uint64_t load_bytes(const char *from, size_t size)
{
    const uint64_t four = mask_if(size >= 4);
    const size_t last = size - 1, last_four = (size - 4) & four;
    return load_if<uint32_t>(four, from) | load_if<uint16_t>(mask_if(size >= 2), from) |
           load_if<uint32_t>(four, from + last_four) << 8 * last_four |
           uint64_t{load<uint8_t>(from + last)} << 8 * last;
}

template <level at> struct short_copies : short_copies<below(at)> {};

template <> struct short_copies<level::any> {
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

    // A copy of some bytes with zeros behind them up to filled_size, stored as one, which a service's load right behind
    // it need not wait for. Fills no size at this level, and else 1 to filled_size.
    static constexpr uint32_t filled_size = 32;

    static bool fills(uint32_t) { return false; }
    static void copy_filled(void *, const void *, uint32_t) {}
};

#if defined(MACHINE_IS_X86_64)

// A load under a mask does not touch a byte outside it.
template <> struct short_copies<level::avx512> {
    static constexpr size_t copy_max = 32, copy_blocks_max = 4 * copy_max;

    // In halves, for a text that was just written in halves.
    CODE_FOR_AVX512 static void copy(char *to, const char *from, size_t size)
    {
        const __mmask32 mask = _bzhi_u32(~0u, unsigned(size));
        const __m128i head = _mm_maskz_loadu_epi8(__mmask16(mask), from);
        const __m128i tail = _mm_maskz_loadu_epi8(__mmask16(mask >> 16), from + 16);
        _mm_storeu_si128(reinterpret_cast<__m128i *>(to), head);
        _mm_storeu_si128(reinterpret_cast<__m128i *>(to + 16), tail);
    }

    // Larger ones in blocks one behind the other, as large objects are written.
    CODE_FOR_AVX512 static void copy_blocks(char *to, const char *from, size_t size)
    {
        if (size <= copy_max)
            return copy(to, from, size);
        for (size_t at = 0; at < size; at += copy_max) {
            const __mmask32 mask = _bzhi_u32(~0u, unsigned(size - at));
            _mm256_storeu_si256(reinterpret_cast<__m256i *>(to + at), _mm256_maskz_loadu_epi8(mask, from + at));
        }
    }

    static constexpr uint32_t filled_size = 32;

    static bool fills(uint32_t size) { return size - 1 < filled_size; }

    CODE_FOR_AVX512 static void copy_filled(void *to, const void *from, uint32_t size)
    {
        const __mmask32 mask = _bzhi_u32(~0u, size);
        _mm256_storeu_si256(static_cast<__m256i *>(to), _mm256_maskz_loadu_epi8(mask, from));
    }
};

#endif

} // namespace machine
