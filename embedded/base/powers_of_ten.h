// The powers of ten that each kind of number holds exactly.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace embedded {

using uint128 = unsigned __int128;

template <class Number, size_t Largest> constexpr std::array<Number, Largest + 1> powers_of_ten_to()
{
    std::array<Number, Largest + 1> powers{1};
    for (size_t i = 1; i < powers.size(); i++)
        powers[i] = powers[i - 1] * 10;
    return powers;
}

inline constexpr size_t power_max = 19, wide_power_max = 38, exact_power_max = 22;

inline constexpr auto powers_of_ten = powers_of_ten_to<uint64_t, power_max>();
inline constexpr auto wide_powers_of_ten = powers_of_ten_to<uint128, wide_power_max>();
inline constexpr auto exact_powers_of_ten = powers_of_ten_to<double, exact_power_max>();

} // namespace embedded
