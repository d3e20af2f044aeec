// The walks of the casts that call a service, or do more than a machine instruction or two, for each row. Casts between
// fixed-width elements that call none have the block walk.
//
// `convert(r, i)` makes output row i from source row r and returns a negative code when the row fails. It is
// called for the rows that the walk takes to be present, in ascending order, behind the row's target flag.
//
// Walks are always inlined, for that is done first of all: the variables of a cast that its `convert` refers to then
// become registers, where they would else be read through two pointers for each row.
#pragma once

#include "machine/inlining.h"
#include "src/frame/column.h"
#include "src/frame/failures.h"

#include <cstring>

// Calls walk with the function from output row to source row, so that each of the two is compiled into a loop of its
// own.
template <class Walk> ALWAYS_INLINE walk_outcome with_source_rows(const bdta3_col *src, Walk &&walk)
{
    if (const uint16_t *sel = src->sel)
        return walk([sel](uint32_t i) -> uint32_t { return sel[i]; });
    return walk([](uint32_t i) { return i; });
}

// Flag-driven ("each" in the table of casts.h): every row's flag is copied as it stands, and tells whether the row is
// converted. no_null is not looked at.
template <class Failures, class Convert>
ALWAYS_INLINE walk_outcome walk_present_rows(const bdta3_col *src, bdta3_col *dst, uint16_t rows, Failures failures,
                                             Convert &&convert)
{
    const uint32_t n = row_count(rows);
    const uint8_t *src_flags = src->data->flags;
    uint8_t *dst_flags = dst->data->flags;

    return with_source_rows(src, [&](auto source_row) INLINED {
        for (uint32_t i = 0; i < n; i++) {
            const uint32_t r = source_row(i);
            const uint8_t flag = src_flags[r];
            dst_flags[i] = flag;
            if (flag == 0)
                continue;
            const row_outcome row = convert(r, i);
            if (row.code < 0 && (row.ends_cast || !failures.captured(i, row.code)))
                return walk_outcome{row.code, false};
        }
        return walk_outcome{failures.status(), true};
    });
}

// Every row is converted, whatever its flag; flags are not touched.
template <class Failures, class Convert>
ALWAYS_INLINE walk_outcome walk_all_rows(const bdta3_col *src, uint16_t rows, Failures failures, Convert &&convert)
{
    const uint32_t n = row_count(rows);

    return with_source_rows(src, [&](auto source_row) INLINED {
        for (uint32_t i = 0; i < n; i++) {
            const row_outcome row = convert(source_row(i), i);
            if (row.code < 0 && (row.ends_cast || !failures.captured(i, row.code)))
                return walk_outcome{row.code, false};
        }
        return walk_outcome{failures.status(), true};
    });
}

// Filling ("fill"): where the source says that no row is null, its flags are not read; all target flags become 1 ahead
// of the first row and all rows are converted. Otherwise flag-driven.
template <class Failures, class Convert>
ALWAYS_INLINE walk_outcome walk_filling_flags(const bdta3_col *src, bdta3_col *dst, uint16_t rows, Failures failures,
                                              Convert &&convert)
{
    if (!src->no_null)
        return walk_present_rows(src, dst, rows, failures, convert);
    memset(dst->data->flags, 1, row_count(rows));
    return walk_all_rows(src, rows, failures, convert);
}

// Flag-driven, but that without a selection ("block") all flags are copied as one block ahead of the first row: a
// failure that ends the cast then leaves the flags of the rows behind it copied.
template <class Failures, class Convert>
ALWAYS_INLINE walk_outcome walk_copying_flags_ahead(const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                                    Failures failures, Convert &&convert)
{
    if (src->sel)
        return walk_present_rows(src, dst, rows, failures, convert);
    const uint8_t *flags = dst->data->flags;
    memcpy(dst->data->flags, src->data->flags, row_count(rows));
    return walk_all_rows(src, rows, failures,
                         [&](uint32_t r, uint32_t i) INLINED { return flags[i] == 0 ? 0 : convert(r, i); });
}

// Behind a walk: no_null is copied if it reached its end. Gives the walk's status on.
inline int32_t copy_no_null_behind(const bdta3_col *src, bdta3_col *dst, walk_outcome walk)
{
    if (walk.reached_end)
        copy_no_null(src, dst);
    return walk.status;
}

// The walk of most casts between numbers: flag-driven, with no_null copied behind it.
template <class Failures, class Convert>
ALWAYS_INLINE int32_t walk_then_copy_no_null(const bdta3_col *src, bdta3_col *dst, uint16_t rows, Failures failures,
                                             Convert &&convert)
{
    return copy_no_null_behind(src, dst, walk_present_rows(src, dst, rows, failures, convert));
}
