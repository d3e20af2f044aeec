// The column record, and what its operations share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <bcast/embedded.h>

#include "embedded/arena.h"
#include "embedded/short_text.h"

struct bcast_column {
    bdta3_col_data data; // first, so that services get from it to the column
    bdta3_col vector;
    embedded::arena bytes; // of string elements
    bcast_type type;
    uint32_t rows;
    uint32_t capacity; // rows that flags and values have room for
    uint16_t *sel;     // what vector.sel is at while there is a selection; the column's own
};

namespace embedded {

inline bcast_column &column_of(bdta3_col_data *data) { return *reinterpret_cast<bcast_column *>(data); }

inline bdta3_str *string_elements(const bdta3_col_data &data) { return static_cast<bdta3_str *>(data.values); }

// A copy of size bytes in the column's arena, with one NUL behind it, or null
// when memory ran out.
char *keep_bytes(bcast_column &column, const void *bytes, size_t size);

// The same, but null also when the bytes are many or the arena has to grow:
// keep_bytes knows then.
template <typename Machine>
[[gnu::always_inline]] inline char *keep_short(bcast_column &column, const char *bytes, size_t size)
{
    static_assert(Machine::copy_max <= arena_slack);
    char *copy = column.bytes.at;
    if (size > Machine::copy_blocks_max || size >= static_cast<size_t>(column.bytes.end - copy))
        return nullptr;
    column.bytes.at += size + 1;
    Machine::copy_blocks(copy, bytes, size);
    copy[size] = '\0';
    return copy;
}

// The copy_row operation of a column of that type.
bdta3_copy_row_fn *copy_row_of(bcast_type type);

} // namespace embedded
