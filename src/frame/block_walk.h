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

// By the width of an element, 4, 8 or 12 bytes: the flags and elements of n selected rows; the elements alone. By that
// of 4 or 8: the elements of n rows, with those of null rows zeroed (from may be to).
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

// Source rows of a block, dense: in place, or taken into the buffers where there is a selection.
template <class From> struct source_block {
    uint32_t n;
    const From *values;
    const uint8_t *flags; // not set by take_values

    // Rows i to the end of the block, of a batch of count rows.
    void take(const bdta3_col *src, uint32_t i, uint32_t count)
    {
        if (const uint16_t *sel = src->sel) {
            n = rows_in_block(i, count);
            take_selected(sizeof(From), sel + i, src->data->flags, elements<From>(src), n, taken_flags, taken);
            values = taken;
            flags = taken_flags;
        } else {
            take_values(src, i, count);
            flags = src->data->flags + i;
        }
    }

    void take_values(const bdta3_col *src, uint32_t i, uint32_t count)
    {
        n = rows_in_block(i, count);
        if (const uint16_t *sel = src->sel) {
            take_selected_values(sizeof(From), sel + i, elements<From>(src), n, taken);
            values = taken;
        } else {
            values = elements<From>(src) + i;
        }
    }

    void zero_nulls()
    {
        ::zero_nulls(sizeof(From), flags, values, taken, n);
        values = taken;
    }

private:
    static uint32_t rows_in_block(uint32_t i, uint32_t count)
    {
        return count - i < block_rows ? count - i : block_rows;
    }

    alignas(64) From taken[block_rows];
    uint8_t taken_flags[block_rows];
};

// Converts a block that has a present row which does not fit, up to that row: its flag is copied, its element not
// written.
template <auto run, class From, class To>
void convert_up_to_unfit(const source_block<From> &block, To *to, uint8_t *to_flags)
{
    for (uint32_t k = 0; k < block.n; k++) {
        to_flags[k] = block.flags[k];
        if (block.flags[k] && !run(block.values + k, nullptr, to + k, 1))
            return;
    }
}

// Flag-driven: every flag is copied, the elements of present rows are converted, those of null rows stay. The first
// present row that does not fit ends the walk with ERR_OVERFLOW. no_null is copied behind the walk.
template <auto run> int32_t walk_blocks(const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    using traits = run_traits<decltype(run)>;
    const uint32_t count = row_count(rows);
    source_block<typename traits::from> block;

    for (uint32_t i = 0; i < count; i += block_rows) {
        block.take(src, i, count);
        auto *to = elements<typename traits::to>(dst) + i;
        uint8_t *to_flags = dst->data->flags + i;
        const bool some_null = memchr(block.flags, 0, block.n) != nullptr;
        const uint8_t *nulls = some_null ? block.flags : nullptr;

        if constexpr (!traits::can_fail) {
            machine::at_best_level<run>(block.values, nulls, to, block.n);
        } else if (!machine::at_best_level<run>(block.values, nulls, to, block.n)) {
            // It may have been the slot of a null row.
            if (some_null)
                block.zero_nulls();
            if (!some_null || !machine::at_best_level<run>(block.values, nulls, to, block.n)) {
                convert_up_to_unfit<run>(block, to, to_flags);
                return ERR_OVERFLOW;
            }
        }
        memcpy(to_flags, block.flags, block.n); // last, so that a stop leaves the flags behind it
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
    static_assert(!traits::can_fail);
    const uint32_t count = row_count(rows);
    source_block<typename traits::from> block;

    for (uint32_t i = 0; i < count; i += block_rows) {
        uint8_t *to_flags = dst->data->flags + i;
        if (flags == flags_are::filled) {
            block.take_values(src, i, count);
            memset(to_flags, 1, block.n);
        } else {
            block.take(src, i, count);
            memcpy(to_flags, block.flags, block.n);
        }
        machine::at_best_level<run>(block.values, nullptr, elements<typename traits::to>(dst) + i, block.n);
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
    static_assert(!traits::can_fail);
    const uint32_t count = row_count(rows);
    source_block<typename traits::from> block;

    dst->no_null = 1;
    for (uint32_t i = 0; i < count; i += block_rows) {
        int32_t *to = elements<int32_t>(dst) + i;
        if (src->no_null)
            block.take_values(src, i, count);
        else
            block.take(src, i, count);
        memset(dst->data->flags + i, 1, block.n);
        machine::at_best_level<run>(block.values, nullptr, to, block.n);
        if (!src->no_null)
            set_unknown(block.flags, to, block.n);
    }
    return 0;
}
