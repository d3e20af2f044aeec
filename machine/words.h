// Unaligned words in byte arrays, and the blocks that long arrays are taken in.
#pragma once

#include "machine/inlining.h"

#include <cstddef>
#include <cstring>

namespace machine {

template <class W> W load(const void *from)
{
    W word;
    memcpy(&word, from, sizeof word);
    return word;
}

template <class W> void store(void *to, W word) { memcpy(to, &word, sizeof word); }

// Calls block(at) for blocks of Size that cover size bytes, of which there are at
// least Size. The last block overlaps the one before it, if it has to.
template <size_t Size, class Block> ALWAYS_INLINE void for_blocks(size_t size, Block block)
{
    for (size_t at = 0; at + Size < size; at += Size)
        block(at);
    block(size - Size);
}

} // namespace machine
