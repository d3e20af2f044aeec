// Memory that is handed out piece by piece and given back as a whole.
#pragma once

#include <cstddef>

namespace embedded {

// From the start of every piece at least this many bytes may be written, however
// short the piece, so that a short copy may store whole words. What stands
// there belongs to later pieces.
inline constexpr size_t arena_slack = 32;

struct arena_block {
    arena_block *next;
    size_t size; // bytes behind this record, without the slack
};

// Zero-initialised, an arena is empty. Its blocks stand in the order of their
// making; at and end are in current.
struct arena {
    char *at;
    char *end;
    arena_block *first;
    arena_block *current;
    size_t total; // size of all blocks
};

// arena_take where the current block has no room left.
char *arena_take_elsewhere(arena &from, size_t size);

// size bytes, at least 1, without alignment; or null when memory ran out. While
// all sizes are multiples of 16, all pieces are aligned to 16.
inline char *arena_take(arena &from, size_t size)
{
    if (size > size_t(from.end - from.at))
        return arena_take_elsewhere(from, size);
    char *piece = from.at;
    from.at += size;
    return piece;
}

// Takes all pieces back and keeps the blocks.
void arena_empty(arena &which);

void arena_free(arena &which);

} // namespace embedded
