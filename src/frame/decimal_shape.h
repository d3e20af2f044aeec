// The shape of a dec target, as casts to dec have it in `length`.
#pragma once

#include <bcast/values.h>

#include <cstdint>

struct decimal_shape {
    int32_t len;
    int32_t prec;

    explicit decimal_shape(int32_t length) : len(bcast_dec_len(length)), prec(bcast_dec_prec(length)) {}
};
