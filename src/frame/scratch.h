// What a service writes and a cast hands on, or the other way round. It starts a cache line: bytes that lie across two
// of them, or even across pages, are slow to read right behind the store that wrote them. It is not cleared.
//
//     scratch<xdec> value;
//     scratch<char[BCAST_TEXT_ROOM]> text;
#pragma once

#include <cstddef>

constexpr size_t cache_line = 64;

template <class T> struct alignas(cache_line) scratch : T {};

// An array, and a pointer to its first element like one.
template <class Element, size_t count> struct alignas(cache_line) scratch<Element[count]> {
    static constexpr size_t size = count; // sizeof may be more

    operator Element *() { return elements; }

private:
    Element elements[count];
};
