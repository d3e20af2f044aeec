// Bytes into the arena of a column, however many.
#include "embedded/column/keep_bytes.h"

#include <cstdint>
#include <cstring>

char *embedded::keep_bytes(bcast_column &column, const void *bytes, size_t size)
{
    char *copy = size < PTRDIFF_MAX ? arena_take(column.bytes, size + 1) : nullptr;
    if (copy == nullptr)
        return nullptr;
    if (size != 0)
        memcpy(copy, bytes, size);
    copy[size] = '\0';
    return copy;
}
