// Integers to float and double: one machine conversion, which rounds by the current mode and cannot fail.

#include "src/frame/block_walk.h"
#include "src/frame/common_runs.h"

#include <bcast/casts.h>

namespace {

RUN void int64_to_float(const int64_t *from, const uint8_t *flags, float *to, uint32_t n)
{
    convert_run(from, flags, to, n, low<float>);
}
RUN void int64_to_double(const int64_t *from, const uint8_t *flags, double *to, uint32_t n)
{
    convert_run(from, flags, to, n, low<double>);
}

} // namespace

int32_t bcast_tinyint_to_float(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int_to_float>(src, dst, rows);
}

int32_t bcast_smallint_to_float(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int_to_float>(src, dst, rows);
}

int32_t bcast_int_to_float(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int_to_float>(src, dst, rows);
}

int32_t bcast_int64_to_float(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int64_to_float>(src, dst, rows);
}

int32_t bcast_tinyint_to_double(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int_to_double>(src, dst, rows);
}

int32_t bcast_smallint_to_double(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int_to_double>(src, dst, rows);
}

int32_t bcast_int_to_double(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int_to_double>(src, dst, rows);
}

int32_t bcast_int64_to_double(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int64_to_double>(src, dst, rows);
}
