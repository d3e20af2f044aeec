// Values that casts hand over to a column, and space for those that they write themselves.
#include "embedded/base/out_of_memory.h"
#include "embedded/column/keep_bytes.h"

#include <services/column.h>

namespace embedded {

namespace {

[[gnu::noinline]] void assign_long(bdta3_col *col, int32_t row, const char *bytes, int32_t len, int32_t pad)
{
    // A negative length is more than any memory holds.
    char *copy = keep_bytes(column_of(col->data), bytes, size_t(len));
    if (copy == nullptr)
        out_of_memory("a column value", size_t(len));
    string_elements(*col->data)[row] = {len, pad, copy};
}

template <level at> ALWAYS_INLINE void assign(bdta3_col *col, int32_t row, const char *bytes, int32_t len, int32_t pad)
{
    char *copy = keep_short<at>(column_of(col->data), bytes, size_t(len));
    if (copy == nullptr)
        return assign_long(col, row, bytes, len, pad);
    string_elements(*col->data)[row] = {len, pad, copy};
}

template <level at>
ALWAYS_INLINE void assign_text(void *, void *, bdta3_col *col, int32_t row, const char *text, int32_t len, int32_t pad)
{
    assign<at>(col, row, text, len, pad);
}

template <level at>
ALWAYS_INLINE void assign_bytes(void *, void *, bdta3_col *col, int32_t row, const void *bytes, int32_t len)
{
    assign<at>(col, row, static_cast<const char *>(bytes), len, 0);
}

} // namespace

} // namespace embedded

PICKED_AT_LOAD(bdta3_col_assign_str, embedded::assign_text);
PICKED_AT_LOAD(bdta3_col_assign_bin, embedded::assign_bytes);

void *bdta3_col_space_alloc(void *, void *, bdta3_col_data *coldata, int32_t size)
{
    if (size < 0)
        return nullptr;
    const auto bytes = size_t(size);
    char *space = embedded::arena_take(embedded::column_of(coldata).bytes, bytes + 1);
    if (space != nullptr)
        space[bytes] = '\0';
    return space;
}
