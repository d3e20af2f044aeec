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

RUN void copy_values(const vqtime *__restrict from, const uint8_t *__restrict flags, vqtime *__restrict to, uint32_t n)
{
    if (!flags) {
        memcpy(to, from, n * sizeof(vqtime));
        return;
    }
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
