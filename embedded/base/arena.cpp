// Blocks of memory that are given back together: the slow half, where a block is taken.
#include "embedded/base/arena.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace embedded {

namespace {

constexpr size_t first_block_size = 4096;

static_assert(sizeof(arena_block) % 16 == 0, "pieces start behind it, aligned to 16");

void open_block(arena &in, arena_block *block)
{
    in.current = block;
    in.at = reinterpret_cast<char *>(block + 1);
    in.end = in.at + block->size;
}

arena_block *new_block(size_t size)
{
    auto *block = static_cast<arena_block *>(malloc(sizeof(arena_block) + size + arena_slack));
    if (block != nullptr)
        *block = {nullptr, size};
    return block;
}

} // namespace

char *arena_take_elsewhere(arena &from, size_t size)
{
    if (size > PTRDIFF_MAX / 4)
        return nullptr;
    // After arena_empty, blocks of an earlier filling stand behind the current one.
    arena_block *last = from.current;
    arena_block *next = last != nullptr ? last->next : nullptr;
    while (next != nullptr && next->size < size) {
        last = next;
        next = next->next;
    }
    if (next == nullptr) {
        // As much again as there is doubles the whole.
        next = new_block(std::max({first_block_size, from.total, size}));
        if (next == nullptr)
            return nullptr;
        from.total += next->size;
        (last != nullptr ? last->next : from.first) = next;
    }
    open_block(from, next);
    return arena_take(from, size);
}

void arena_empty(arena &which)
{
    if (which.first != nullptr)
        open_block(which, which.first);
}

void arena_free(arena &which)
{
    for (arena_block *block = which.first; block != nullptr;) {
        arena_block *next = block->next;
        free(block);
        block = next;
    }
    which = {};
}

} // namespace embedded
