// The walks of the casts between fixed-width elements that call no service: a run (run.h) over blocks of rows.
//
// They do what a walk row by row would do, and stop as it would. What makes them fast: a selection is resolved into
// buffers on the stack first, so that the run has dense elements; a block without nulls is told by one search; where
// there are nulls, the run writes a null row's old bytes back in place of a branch.
#pragma once

#include "src/frame/column.h"
#include "src/frame/run.h"

#include <bcast/codes.h>

#include <cstring>

// Rows that are worked on at a time, so that source, target and buffers stay in the first-level cache.
constexpr uint32_t block_rows = 1024;

// By the width of an element, 4 or 8 bytes: the flags and elements of n selected rows; the elements alone; the elements
// of n rows, with those of null rows zeroed (from may be to).
void take_selected(size_t width, const uint16_t *sel, const uint8_t *flags, const void *values, uint32_t n,
                   uint8_t *to_flags, void *to);
void take_selected_values(size_t width, const uint16_t *sel, const void *values, uint32_t n, void *to);
void zero_nulls(size_t width, const uint8_t *flags, const void *from, void *to, uint32_t n);

// Makes the booleans of null rows BOOL_UNKNOWN.
void set_unknown(const uint8_t *flags, int32_t *to, uint32_t n);

template <class Run> struct run_traits;
template <class Result, class From, class To>
struct run_traits<Result (*)(const From *, const uint8_t *, To *, uint32_t)> {
    using from = From;
    using to = To;
    static constexpr bool can_fail = !std::is_void_v<Result>;
};

// Converts a block row by row, up to the row that fails; its flag is copied, its element not written. False if there
// was such a row.
template <auto run, class From, class To>
bool convert_one_by_one(const From *from, const uint8_t *flags, To *to, uint8_t *to_flags, uint32_t n)
{
    for (uint32_t k = 0; k < n; k++) {
        to_flags[k] = flags[k];
        if (flags[k] && !run(from + k, nullptr, to + k, 1))
            return false;
    }
    return true;
}

// Flag-driven: every flag is copied, the elements of present rows are converted, those of null rows stay. The first
// present row that does not fit ends the walk with ERR_OVERFLOW. no_null is copied behind the walk.
template <auto run> int32_t walk_blocks(const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    using traits = run_traits<decltype(run)>;
    using From = typename traits::from;
    using To = typename traits::to;

    const uint32_t count = row_count(rows);
    const uint16_t *sel = src->sel;
    const uint8_t *src_flags = src->data->flags;
    const From *src_values = elements<From>(src);
    uint8_t *dst_flags = dst->data->flags;
    To *dst_values = elements<To>(dst);
    alignas(64) From taken[block_rows];
    uint8_t taken_flags[block_rows];

    for (uint32_t i = 0; i < count; i += block_rows) {
        const uint32_t n = count - i < block_rows ? count - i : block_rows;
        const uint8_t *flags = src_flags + i;
        const From *from = src_values + i;
        To *to = dst_values + i;

        if (sel) {
            take_selected(sizeof(From), sel + i, src_flags, src_values, n, taken_flags, taken);
            flags = taken_flags;
            from = taken;
        }
        const bool some_null = memchr(flags, 0, n) != nullptr;
        const uint8_t *nulls = some_null ? flags : nullptr;
        if constexpr (!traits::can_fail) {
            run(from, nulls, to, n);
        } else if (!run(from, nulls, to, n)) {
            // It may have been the slot of a null row.
            bool moved = false;
            if (some_null) {
                zero_nulls(sizeof(From), flags, from, taken, n);
                from = taken;
                moved = run(from, nulls, to, n);
            }
            if (!moved) {
                if (!convert_one_by_one<run>(from, flags, to, dst_flags + i, n))
                    return ERR_OVERFLOW;
                continue;
            }
        }
        memcpy(dst_flags + i, flags, n); // last, so that a stop leaves the flags behind it
    }
    copy_no_null(src, dst);
    return 0;
}

// Where the target's flags come from in a walk that does not look at them.
enum class flags_are { copied, filled };

// Converts the elements of all rows, null or not, by a run that cannot fail. The flags are copied as they stand, or all
// become 1 and the source's are not read. no_null is copied.
template <auto run, flags_are flags> int32_t walk_all_blocks(const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    using traits = run_traits<decltype(run)>;
    using From = typename traits::from;
    static_assert(!traits::can_fail);

    const uint32_t count = row_count(rows);
    const uint16_t *sel = src->sel;
    const From *src_values = elements<From>(src);
    uint8_t *dst_flags = dst->data->flags;
    auto *dst_values = elements<typename traits::to>(dst);
    alignas(64) From taken[block_rows];

    if (flags == flags_are::filled)
        memset(dst_flags, 1, count);
    else if (!sel)
        memcpy(dst_flags, src->data->flags, count);
    for (uint32_t i = 0; i < count; i += block_rows) {
        const uint32_t n = count - i < block_rows ? count - i : block_rows;
        const From *from = src_values + i;
        if (sel) {
            if (flags == flags_are::filled)
                take_selected_values(sizeof(From), sel + i, src_values, n, taken);
            else
                take_selected(sizeof(From), sel + i, src->data->flags, src_values, n, dst_flags + i, taken);
            from = taken;
        }
        run(from, nullptr, dst_values + i, n);
    }
    copy_no_null(src, dst);
    return 0;
}

// By no_null: flags are copied in any case; where the source says that no row is null, all rows are converted, else the
// present ones.
template <auto run> int32_t walk_blocks_by_no_null(const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return src->no_null ? walk_all_blocks<run, flags_are::copied>(src, dst, rows) : walk_blocks<run>(src, dst, rows);
}

// To boolean: all rows of the target are present and no_null is 1; a null row becomes BOOL_UNKNOWN. The source's flags
// are read only where it may hold a null.
template <auto run> int32_t walk_blocks_to_boolean(const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    using traits = run_traits<decltype(run)>;
    using From = typename traits::from;
    static_assert(!traits::can_fail);

    const uint32_t count = row_count(rows);
    const uint16_t *sel = src->sel;
    const uint8_t *src_flags = src->data->flags;
    const From *src_values = elements<From>(src);
    int32_t *dst_values = elements<int32_t>(dst);
    alignas(64) From taken[block_rows];
    uint8_t taken_flags[block_rows];

    dst->no_null = 1;
    memset(dst->data->flags, 1, count);
    for (uint32_t i = 0; i < count; i += block_rows) {
        const uint32_t n = count - i < block_rows ? count - i : block_rows;
        const uint8_t *flags = src_flags + i;
        const From *from = src_values + i;
        if (sel) {
            if (src->no_null)
                take_selected_values(sizeof(From), sel + i, src_values, n, taken);
            else
                take_selected(sizeof(From), sel + i, src_flags, src_values, n, taken_flags, taken);
            flags = taken_flags;
            from = taken;
        }
        run(from, nullptr, dst_values + i, n);
        if (!src->no_null)
            set_unknown(flags, dst_values + i, n);
    }
    return 0;
}
