// The header in front of the value in a large-object constant.
#pragma once

#include "embedded/base/machine.h"

#include <bcast/column.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace embedded {

// As it lies in memory; see bcast_lob_read for the meaning.
struct lob_header {
    char magic[4] = {'L', 'O', 'B', 'C'};
    uint8_t version[2] = {1, 0};
    uint8_t value_len[4] = {};
    uint8_t zeros[33] = {};
};

static_assert(sizeof(lob_header) == LOB_HEADER_SIZE);

// The longest value whose constant has a length that fits an element.
inline constexpr uint32_t lob_value_max = INT32_MAX - LOB_HEADER_SIZE;

// Writes the header of a value of value_len bytes.
inline void write_lob_header(void *to, uint32_t value_len)
{
    static constexpr lob_header header;
    memcpy(to, &header, sizeof header);
    memcpy(static_cast<char *>(to) + offsetof(lob_header, value_len), &value_len, sizeof value_len);
}

#if defined(MACHINE_IS_X86_64)

// The constant of a value of at most value_max bytes, in blocks of 32 bytes. Each is written in one store, for a reader
// right behind it that takes such blocks: it would have to wait for smaller ones.
struct short_lob {
    static constexpr uint32_t value_max = 32;
    static constexpr size_t block = 32, front_room = 2 * block, room = 3 * block;

    __m256i header, middle, rest;

    CODE_FOR_AVX512 short_lob(const char *value, uint32_t len)
    {
        // The header's second block is zeros, and so is its first behind the length.
        constexpr size_t header_end = LOB_HEADER_SIZE % block, value_at = 16 - header_end;
        static constexpr lob_header empty;
        const uint64_t start = load<uint64_t>(&empty) | uint64_t{len} << 8 * offsetof(lob_header, value_len);
        const __m256i bytes = _mm256_maskz_loadu_epi8(_bzhi_u32(~0u, len), value);
        const __m256i moved = _mm256_permute2x128_si256(bytes, bytes, 0x08); // up by 16
        header = _mm256_zextsi128_si256(_mm_cvtsi64_si128(int64_t(start)));
        middle = _mm256_alignr_epi8(bytes, moved, value_at);
        rest = _mm256_zextsi128_si256(_mm_srli_si128(_mm256_extracti128_si256(bytes, 1), value_at));
    }

    // The part that has values of up to 21 bytes as a whole; writes front_room bytes.
    CODE_FOR_AVX512 void write_front(char *to) const
    {
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(to), header);
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(to + block), middle);
    }

    // Writes room bytes.
    CODE_FOR_AVX512 void write(char *to) const
    {
        write_front(to);
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(to + front_room), rest);
    }
};

#endif

} // namespace embedded
