// The elements of selected rows, moved and blended as words.
#include "src/frame/block_walk.h"

namespace {

// Elements are moved as words, whatever their type.
using word4 __attribute__((may_alias)) = uint32_t;
using word8 __attribute__((may_alias)) = uint64_t;

// Four rows at a time in scalar code, and no RUN: vector gathers are slower than these loads and stores.
template <class Take> ALWAYS_INLINE void take_rows(const uint16_t *sel, uint32_t n, Take take)
{
    uint32_t k = 0;
    for (; k + 4 <= n; k += 4) {
        const uint32_t a = sel[k], b = sel[k + 1], c = sel[k + 2], d = sel[k + 3];
        take(k, a);
        take(k + 1, b);
        take(k + 2, c);
        take(k + 3, d);
    }
    for (; k < n; k++)
        take(k, sel[k]);
}

template <class Word> ALWAYS_INLINE void zero(const uint8_t *flags, const Word *from, Word *to, uint32_t n)
{
    for (uint32_t k = 0; k < n; k++) {
        const Word present = Word(flags[k] == 0) - 1;
        to[k] = from[k] & present;
    }
}

RUN void zero4(const uint8_t *__restrict flags, const word4 *from, word4 *to, uint32_t n) { zero(flags, from, to, n); }
RUN void zero8(const uint8_t *__restrict flags, const word8 *from, word8 *to, uint32_t n) { zero(flags, from, to, n); }

RUN void unknown4(const uint8_t *__restrict flags, int32_t *__restrict to, uint32_t n)
{
    for (uint32_t k = 0; k < n; k++) {
        const int32_t truth = to[k];
        to[k] = flags[k] ? truth : BOOL_UNKNOWN;
    }
}

template <class Word>
void take(const uint16_t *__restrict sel, const uint8_t *__restrict flags, const Word *__restrict values, uint32_t n,
          uint8_t *__restrict to_flags, Word *__restrict to)
{
    take_rows(sel, n, [=](uint32_t k, uint32_t r) {
        to_flags[k] = flags[r];
        to[k] = values[r];
    });
}

template <class Word>
void take(const uint16_t *__restrict sel, const Word *__restrict values, uint32_t n, Word *__restrict to)
{
    take_rows(sel, n, [=](uint32_t k, uint32_t r) { to[k] = values[r]; });
}

} // namespace

void take_selected(size_t width, const uint16_t *sel, const uint8_t *flags, const void *values, uint32_t n,
                   uint8_t *to_flags, void *to)
{
    switch (width) {
    case sizeof(word4):
        return take(sel, flags, static_cast<const word4 *>(values), n, to_flags, static_cast<word4 *>(to));
    case sizeof(word8):
        return take(sel, flags, static_cast<const word8 *>(values), n, to_flags, static_cast<word8 *>(to));
    case sizeof(vqtime):
        return take(sel, flags, static_cast<const vqtime *>(values), n, to_flags, static_cast<vqtime *>(to));
    }
}

void take_selected_values(size_t width, const uint16_t *sel, const void *values, uint32_t n, void *to)
{
    switch (width) {
    case sizeof(word4):
        return take(sel, static_cast<const word4 *>(values), n, static_cast<word4 *>(to));
    case sizeof(word8):
        return take(sel, static_cast<const word8 *>(values), n, static_cast<word8 *>(to));
    case sizeof(vqtime):
        return take(sel, static_cast<const vqtime *>(values), n, static_cast<vqtime *>(to));
    }
}

void zero_nulls(size_t width, const uint8_t *flags, const void *from, void *to, uint32_t n)
{
    if (width == sizeof(word8))
        machine::at_best_level<zero8>(flags, static_cast<const word8 *>(from), static_cast<word8 *>(to), n);
    else
        machine::at_best_level<zero4>(flags, static_cast<const word4 *>(from), static_cast<word4 *>(to), n);
}

void set_unknown(const uint8_t *flags, int32_t *to, uint32_t n) { machine::at_best_level<unknown4>(flags, to, n); }
