// The pool record behind `heap`.
#pragma once

#include <cstddef>
#include <cstdint>

#include <bcast/embedded.h>

#include "embedded/arena.h"

struct bcast_pool {
    int16_t time_zone; // first, for casts read it through heap
    embedded::arena memory;
    void *free_blocks[32]; // per size, a power of two, a list linked through the blocks
};

namespace embedded {

// A block of at least size bytes, aligned to 16, or null when memory ran out.
// *capacity gets its size.
char *pool_take(bcast_pool &pool, size_t size, size_t *capacity);

// Gives a block back, for the next one of that capacity.
void pool_give_back(bcast_pool &pool, char *block, size_t capacity);

} // namespace embedded
