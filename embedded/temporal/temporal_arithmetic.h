// Sums that carry through to the date. False where they leave the calendar, with
// the value as it was.
#pragma once

#include "embedded/temporal/temporal.h"

#include <cstdint>

namespace embedded {

[[nodiscard]] bool add_minutes(temporal_words *value, int64_t amount);

// Gives a value another fraction, up to 1000000, which is a second.
[[nodiscard]] inline bool set_millionths(temporal_words *value, uint32_t amount)
{
    const uint32_t carry = amount >= 1000000; // for half of the values that lose their fraction
    amount -= carry * 1000000;
    temporal_words sum = {value->head, (value->tail & 0xFF) + carry};
    if (sum.tail == 60) [[unlikely]] {
        sum.tail = 0;
        if (!add_minutes(&sum, 1))
            return false;
    }
    sum.tail |= amount / 10000 << 8 | amount / 100 % 100 << 16 | amount % 100 << 24;
    *value = sum;
    return true;
}

} // namespace embedded
