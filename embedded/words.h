// Unaligned words in byte arrays.
#pragma once

#include <cstring>

namespace embedded {

template <typename W> W load(const void *from)
{
    W word;
    std::memcpy(&word, from, sizeof word);
    return word;
}

template <typename W> void store(void *to, W word) { std::memcpy(to, &word, sizeof word); }

} // namespace embedded
