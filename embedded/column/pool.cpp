// Pools, as a program makes and empties them.
#include "embedded/column/pool.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

bcast_pool *bcast_pool_new(void) { return static_cast<bcast_pool *>(calloc(1, sizeof(bcast_pool))); }

void bcast_pool_reset(bcast_pool *pool)
{
    std::fill(std::begin(pool->free_blocks), std::end(pool->free_blocks), nullptr);
    embedded::arena_empty(pool->memory);
}

void bcast_pool_set_time_zone(bcast_pool *pool, int16_t minutes) { pool->time_zone = minutes; }

void bcast_pool_free(bcast_pool *pool)
{
    if (pool == nullptr)
        return;
    embedded::arena_free(pool->memory);
    free(pool);
}
