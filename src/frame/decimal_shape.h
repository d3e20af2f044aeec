// The shape of a dec target, as casts to dec have it in `length`.
#pragma once

#include <cstdint>

struct decimal_shape {
    int32_t len;
    int32_t prec;

    explicit decimal_shape(int32_t length) : len(uint8_t(length >> 8)), prec(uint8_t(length)) {}
};
