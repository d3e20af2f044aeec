// Bytes into the arena of a column.
#pragma once

#include "embedded/column/record.h"
#include "machine/short_copy.h"

namespace embedded {

// A copy of size bytes in the column's arena, with one NUL behind it, or null
// when memory ran out.
char *keep_bytes(bcast_column &column, const void *bytes, size_t size);

// The same, but null also when the bytes are many or the arena has to grow:
// keep_bytes knows then.
template <level at> ALWAYS_INLINE char *keep_short(bcast_column &column, const char *bytes, size_t size)
{
    using copies = short_copies<at>;
    static_assert(copies::copy_max <= arena_slack);
    char *copy = column.bytes.at;
    if (size > copies::copy_blocks_max || size >= size_t(column.bytes.end - copy))
        return nullptr;
    column.bytes.at += size + 1;
    copies::copy_blocks(copy, bytes, size);
    copy[size] = '\0';
    return copy;
}

} // namespace embedded
