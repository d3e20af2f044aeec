// The column record, and what its operations share.
#pragma once

#include "embedded/base/arena.h"
#include "embedded/base/machine.h"

#include <bcast/embedded.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

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

} // namespace embedded
