// A *run* is a cast between fixed-width elements that calls no service, as a function over n dense elements which knows
// nothing of selections and leaves null rows out if it is given flags:
//
//     RUN bool int64_in_32_bits(const int64_t *from, const uint8_t *flags, int32_t *to, uint32_t n)
//     {
//         return convert_run(from, flags, to, n, excess<32>, low<int32_t>);
//     }
//
// A run that returns bool tests all n values first, those of null rows included, and returns false, with nothing
// written, if one does not fit. Zero has to fit. A run that cannot fail returns void and has to be defined for any
// bits, since a null row's slot may hold any.
//
// It is called by machine::at_best_level<run> (machine/pick.h), which has it compiled for each level.
#pragma once

#include "machine/pick.h"
#include "src/frame/integer_range.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#define RUN ALWAYS_INLINE

template <size_t width> struct word_of_width;
template <> struct word_of_width<4> {
    using type = uint32_t;
};
template <> struct word_of_width<8> {
    using type = uint64_t;
};
template <class V> using word_of = typename word_of_width<sizeof(V)>::type; // unsigned, as wide as V

// Moves n elements, or the present ones of them if there are flags. The choice is written with bits: as a condition it
// would become a branch per row where the CPU cannot convert or blend in vectors.
template <class From, class To, class Move>
ALWAYS_INLINE void convert_run(const From *__restrict from, const uint8_t *__restrict flags, To *__restrict to,
                               uint32_t n, Move move)
{
    if (!flags) {
        for (uint32_t k = 0; k < n; k++)
            to[k] = move(from[k]);
    } else {
        for (uint32_t k = 0; k < n; k++) {
            const word_of<To> keep = word_of<To>(flags[k] != 0) - 1; // all ones for a null row
            const To moved = move(from[k]);
            const auto fresh = std::bit_cast<word_of<To>>(moved);
            const auto old = std::bit_cast<word_of<To>>(to[k]);
            to[k] = std::bit_cast<To>((fresh & ~keep) | (old & keep));
        }
    }
}

// The same behind a test. `excess` gives zero for a value that fits and anything else for one that does not; it is
// gathered in a word of the source's width, for only then the compiler makes vector code of the loop.
template <class From, class To, class Excess, class Move>
ALWAYS_INLINE bool convert_run(const From *__restrict from, const uint8_t *__restrict flags, To *__restrict to,
                               uint32_t n, Excess excess, Move move)
{
    word_of<From> bad = 0;
    for (uint32_t k = 0; k < n; k++)
        bad |= word_of<From>(excess(from[k]));
    if (bad != 0)
        return false;
    convert_run(from, flags, to, n, move);
    return true;
}

// The test of integers.
template <int bits> constexpr auto excess = [](auto value) { return excess_of<bits>(value); };

// The low bits of a value; where T is wider, the value.
template <class T> constexpr auto low = [](auto value) { return T(value); };
