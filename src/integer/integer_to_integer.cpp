// Integers among themselves. tinyint, smallint and int all sit in an int32 element and a tinyint is signed, so casts
// among them differ in their range test only, and those that cannot fail copy the element as it stands.

#include "src/frame/block_walk.h"
#include "src/frame/common_runs.h"

#include <bcast/casts.h>

namespace {

RUN bool int_in_8_bits(const int32_t *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    return convert_run(from, flags, to, n, excess<8>, low<int32_t>);
}
RUN bool int_in_16_bits(const int32_t *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    return convert_run(from, flags, to, n, excess<16>, low<int32_t>);
}
RUN bool int64_in_8_bits(const int64_t *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    return convert_run(from, flags, to, n, excess<8>, low<int32_t>);
}
RUN bool int64_in_16_bits(const int64_t *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    return convert_run(from, flags, to, n, excess<16>, low<int32_t>);
}
RUN bool int64_in_32_bits(const int64_t *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    return convert_run(from, flags, to, n, excess<32>, low<int32_t>);
}

} // namespace

int32_t bcast_tinyint_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<copy4>(src, dst, rows);
}

// Alone among the casts from tinyint it takes the low 16 bits only: a slot that holds no tinyint is cut, not copied.
int32_t bcast_tinyint_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<low16>(src, dst, rows);
}

int32_t bcast_tinyint_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<copy4>(src, dst, rows);
}

int32_t bcast_tinyint_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<widen>(src, dst, rows);
}

int32_t bcast_smallint_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int_in_8_bits>(src, dst, rows);
}

int32_t bcast_smallint_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<copy4>(src, dst, rows);
}

int32_t bcast_smallint_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<copy4>(src, dst, rows);
}

int32_t bcast_smallint_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<widen>(src, dst, rows);
}

int32_t bcast_int_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int_in_8_bits>(src, dst, rows);
}

int32_t bcast_int_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int_in_16_bits>(src, dst, rows);
}

int32_t bcast_int_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<copy4>(src, dst, rows);
}

// Alone among its kin it widens the elements of null rows too, and does not read the source's flags where no_null is
// set.
int32_t bcast_int_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return src->no_null ? walk_all_blocks<widen, flags_are::filled>(src, dst, rows)
                        : walk_all_blocks<widen, flags_are::copied>(src, dst, rows);
}

int32_t bcast_int64_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int64_in_8_bits>(src, dst, rows);
}

int32_t bcast_int64_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int64_in_16_bits>(src, dst, rows);
}

int32_t bcast_int64_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int64_in_32_bits>(src, dst, rows);
}

int32_t bcast_int64_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<copy8>(src, dst, rows);
}
