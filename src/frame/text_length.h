// The length of a text that a service wrote.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

// The buffer must be one that has text_length_room bytes. Most texts end in them, and to look there costs less than to
// call.
constexpr uint32_t text_length_room = 32;

inline int32_t text_length(const char *text)
{
#ifdef __SSE2__
    const auto zeros = [text](uint32_t at) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(text + at));
        return uint32_t(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_setzero_si128())));
    };
    const uint32_t ends = zeros(0) | zeros(16) << 16;
    if (ends != 0) [[likely]]
        return std::countr_zero(ends);
#endif
    return int32_t(strlen(text));
}

// Of the hexadecimal text of a value: two digits a byte, unless the service says otherwise. To see that costs less than
// to look for the NUL, which was just written by itself, with a wide load.
inline int32_t hex_text_length(const char *text, uint32_t value_size)
{
    const size_t expected = 2 * size_t(value_size);
    if (text[expected] == '\0' && (expected == 0 || !memchr(text, '\0', expected)))
        return int32_t(expected);
    return int32_t(strlen(text));
}
