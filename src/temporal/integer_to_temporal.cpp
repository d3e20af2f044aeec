// Integers into dates and times. One service reads a number as a date, another as a time or a datetime, which are made
// alike.

#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"

#include <bcast/casts.h>
#include <services/temporal.h>

namespace {

using reader = int32_t(int64_t number, vqtime *result);

template <class Element, reader read> int32_t to_temporal(const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const Element *from = elements<Element>(src);
    vqtime *to = elements<vqtime>(dst);

    return walk_then_copy_no_null(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        scratch<vqtime> value;
        const int32_t status = read(from[r], &value);
        if (status >= 0)
            to[i] = value;
        return status;
    });
}

} // namespace

int32_t bcast_tinyint_to_date(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_temporal<int32_t, vqtime_from_long>(src, dst, rows);
}

int32_t bcast_tinyint_to_time(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_temporal<int32_t, time_from_long>(src, dst, rows);
}

int32_t bcast_tinyint_to_datetime(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_temporal<int32_t, time_from_long>(src, dst, rows);
}

int32_t bcast_smallint_to_date(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_temporal<int32_t, vqtime_from_long>(src, dst, rows);
}

int32_t bcast_smallint_to_time(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_temporal<int32_t, time_from_long>(src, dst, rows);
}

int32_t bcast_smallint_to_datetime(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_temporal<int32_t, time_from_long>(src, dst, rows);
}

int32_t bcast_int_to_date(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_temporal<int32_t, vqtime_from_long>(src, dst, rows);
}

int32_t bcast_int_to_time(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_temporal<int32_t, time_from_long>(src, dst, rows);
}

int32_t bcast_int_to_datetime(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_temporal<int32_t, time_from_long>(src, dst, rows);
}

int32_t bcast_int64_to_date(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_temporal<int64_t, vqtime_from_long>(src, dst, rows);
}

int32_t bcast_int64_to_time(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_temporal<int64_t, time_from_long>(src, dst, rows);
}

int32_t bcast_int64_to_datetime(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_temporal<int64_t, time_from_long>(src, dst, rows);
}
