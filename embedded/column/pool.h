// The pool record behind `heap`.
#pragma once

#include "embedded/base/arena.h"

#include <bcast/embedded.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>

struct bcast_pool {
    int16_t time_zone; // first, for casts read it through heap
    embedded::arena memory;
    void *free_blocks[32]; // per size, a power of two, a list linked through the blocks
};

namespace embedded {

// Of a block. Constants of large objects with short values fit the smallest.
inline constexpr size_t pool_block_min = 128;

// A block of at least size bytes, aligned to 16, or null when memory ran out.
// *capacity gets its size.
inline char *pool_take(bcast_pool &pool, size_t size, size_t *capacity)
{
    const auto order = size_t(std::bit_width(std::max(size, pool_block_min) - 1));
    if (order >= std::size(pool.free_blocks))
        return nullptr;
    *capacity = size_t{1} << order;
    void *block = pool.free_blocks[order];
    if (block == nullptr)
        return arena_take(pool.memory, *capacity);
    pool.free_blocks[order] = *static_cast<void **>(block);
    return static_cast<char *>(block);
}

// A block of pool_block_min bytes that was given back, or null when there is none.
inline char *pool_take_smallest(bcast_pool &pool)
{
    void *&list = pool.free_blocks[std::bit_width(pool_block_min - 1)];
    void *block = list;
    if (block != nullptr)
        list = *static_cast<void **>(block);
    return static_cast<char *>(block);
}

// Gives a block back, for the next one of that capacity.
inline void pool_give_back(bcast_pool &pool, char *block, size_t capacity)
{
    void *&list = pool.free_blocks[std::countr_zero(capacity)];
    *reinterpret_cast<void **>(block) = list;
    list = block;
}

} // namespace embedded
