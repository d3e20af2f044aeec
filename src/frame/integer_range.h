// Whether an integer fits into fewer bits.
#pragma once

#include <type_traits>

// Zero if a signed value fits into `bits` bits.
template <int bits, class V> constexpr std::make_unsigned_t<V> excess_of(V value)
{
    using U = std::make_unsigned_t<V>;
    return (U(value) + (U(1) << (bits - 1))) >> bits;
}
