// What a service writes and a cast hands on, or the other way round, is declared
//
//     alignas(scratch_alignment) ...
//
// Bytes that lie across two cache lines, or even pages, are slow to read right behind the store that wrote them.
#pragma once

#include <cstddef>

constexpr size_t scratch_alignment = 64; // a cache line
