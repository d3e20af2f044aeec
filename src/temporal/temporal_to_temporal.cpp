// Between temporal types at the precision that the value has. All types have one record, so a cast is a copy of it. Two
// change something in the copy: bcast_datetime_to_date alone clears what its target does not hold, and
// bcast_date_to_datetime_tz sets the current zone.

#include "src/frame/alias.h"
#include "src/frame/block_walk.h"
#include "src/frame/current_zone.h"
#include "src/frame/row_walk.h"
#include "src/temporal/copy_run.h"

#include <bcast/casts.h>
#include <services/temporal.h>

namespace {

template <class Change> int32_t copy_changed(const bdta3_col *src, bdta3_col *dst, uint16_t rows, Change change)
{
    const vqtime *from = elements<vqtime>(src);
    vqtime *to = elements<vqtime>(dst);

    return walk_then_copy_no_null(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        to[i] = from[r];
        change(to + i);
        return 0;
    });
}

} // namespace

int32_t bcast_date_to_date(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<copy_values>(src, dst, rows);
}
bcast_plain_fn bcast_date_to_time ALIAS_OF(bcast_date_to_date);
bcast_plain_fn bcast_date_to_datetime ALIAS_OF(bcast_date_to_date);
bcast_plain_fn bcast_datetime_tz_to_date ALIAS_OF(bcast_date_to_date);

int32_t bcast_datetime_to_date(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return copy_changed(src, dst, rows, [](vqtime *value) { vqtime_reset(value, TYPE_DATE); });
}

// The digits stay; the zone is the current one.
int32_t bcast_date_to_datetime_tz(void *, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const auto zone = uint16_t(current_zone(heap));
    return copy_changed(src, dst, rows, [zone](vqtime *value) { vqtime_set_tz(value, zone); });
}
