#include "embedded/pool.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <iterator>

namespace embedded {

namespace {

constexpr size_t smallest_block = 128;

} // namespace

char *pool_take(bcast_pool &pool, size_t size, size_t *capacity)
{
    const auto order = static_cast<size_t>(std::bit_width(std::max(size, smallest_block) - 1));
    if (order >= std::size(pool.free_blocks))
        return nullptr;
    *capacity = size_t{1} << order;
    void *block = pool.free_blocks[order];
    if (block == nullptr)
        return arena_take(pool.memory, *capacity);
    pool.free_blocks[order] = *static_cast<void **>(block);
    return static_cast<char *>(block);
}

void pool_give_back(bcast_pool &pool, char *block, size_t capacity)
{
    void *&list = pool.free_blocks[std::countr_zero(capacity)];
    *reinterpret_cast<void **>(block) = list;
    list = block;
}

} // namespace embedded

bcast_pool *bcast_pool_new(void) { return static_cast<bcast_pool *>(std::calloc(1, sizeof(bcast_pool))); }

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
    std::free(pool);
}
