// The current time zone in minutes, which the first 16 bits behind heap hold.
#pragma once

#include <cstdint>
#include <cstring>

inline int16_t current_zone(const void *heap)
{
    int16_t zone;
    memcpy(&zone, heap, sizeof zone);
    return zone;
}
