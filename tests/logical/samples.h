// What bits and booleans are made of, and what is made of them.
#pragma once

#include "tests/support/row_cast.h"

#include <algorithm>

namespace bcast::test {

template <class Source> sample becomes(const Source &from, int32_t to) { return {image_of(from), image_of(to)}; }

inline std::string low_8_bits(int32_t value) { return image_of(int32_t{static_cast<int8_t>(value)}); }
inline std::string low_16_bits(int32_t value) { return image_of(int32_t{static_cast<int16_t>(value)}); }
inline std::string as_it_is(int32_t value) { return image_of(value); }
inline std::string as_int64(int32_t value) { return image_of(int64_t{value}); }

// A decimal of which the first two bytes count, if any.
inline xdec dec(uint8_t first, uint8_t second, uint8_t rest)
{
    xdec d;
    std::ranges::fill(d.bytes, rest);
    d.bytes[0] = first;
    d.bytes[1] = second;
    return d;
}

// The same cast of doubles, which asks the predicate about each value and refuses what that refuses.
inline row_cast asking_for_overflow(row_cast c)
{
    c.convert = [convert = c.convert](const row_input &input) {
        row_outcome outcome = convert(input);
        outcome.steps = {{judges_double(input.as<double>()), service_failure::is_overflow}};
        return outcome;
    };
    return c;
}

} // namespace bcast::test
