// Runs that casts of several types share: moves and truth tests, which ask nothing of a value.
#pragma once

#include "src/frame/run.h"

RUN void copy4(const int32_t *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    convert_run(from, flags, to, n, low<int32_t>);
}
RUN void copy8(const int64_t *from, const uint8_t *flags, int64_t *to, uint32_t n)
{
    convert_run(from, flags, to, n, low<int64_t>);
}
RUN void widen(const int32_t *from, const uint8_t *flags, int64_t *to, uint32_t n)
{
    convert_run(from, flags, to, n, low<int64_t>);
}
// The low bits with their sign: a value that does not fit is cut.
RUN void low8(const int32_t *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    convert_run(from, flags, to, n, low<int8_t>);
}
RUN void low16(const int32_t *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    convert_run(from, flags, to, n, low<int16_t>);
}

// 1 for a value that is not zero, a NaN included, else 0.
template <class From> ALWAYS_INLINE void truth_run(const From *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    convert_run(from, flags, to, n, [](From value) { return int32_t(value != 0); });
}
RUN void int_is_true(const int32_t *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    truth_run(from, flags, to, n);
}
RUN void int64_is_true(const int64_t *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    truth_run(from, flags, to, n);
}
RUN void float_is_true(const float *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    truth_run(from, flags, to, n);
}

// The machine's conversion, which rounds by the current mode.
RUN void int_to_float(const int32_t *from, const uint8_t *flags, float *to, uint32_t n)
{
    convert_run(from, flags, to, n, low<float>);
}
RUN void int_to_double(const int32_t *from, const uint8_t *flags, double *to, uint32_t n)
{
    convert_run(from, flags, to, n, low<double>);
}
