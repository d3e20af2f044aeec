// Numbers with a fraction into integers: the fraction is cut off, what lies outside becomes the limit, a NaN 0: what a
// conversion of the language leaves undefined.
#pragma once

#include <limits>

template <class Int, class Floating> Int cut_to(Floating value)
{
    using limits = std::numeric_limits<Int>;
    constexpr Floating lowest = Floating(limits::min()), too_large = -lowest; // powers of two
    if (value != value)
        return 0;
    return value >= too_large ? limits::max() : value < lowest ? limits::min() : Int(value);
}
