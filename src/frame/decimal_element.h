// How a decimal gets into its element.
#pragma once

#include "src/frame/scratch.h"

#include <bcast/column.h>

#include <cstdint>
#include <cstring>

// In words, as services write the record: one that was just written is read at once in the pieces that it was written
// in, while a wider load would wait for the stores to end. The empty asm keeps compilers from joining the words.
inline void store_decimal(const xdec &from, xdec *to)
{
    uint64_t first, second, third;
    uint32_t fourth;
    uint16_t last;
    memcpy(&first, from.bytes, sizeof first);
    memcpy(&second, from.bytes + 8, sizeof second);
    memcpy(&third, from.bytes + 16, sizeof third);
    memcpy(&fourth, from.bytes + 24, sizeof fourth);
    memcpy(&last, from.bytes + 28, sizeof last);
    asm("" : "+r"(first), "+r"(second), "+r"(third), "+r"(fourth), "+r"(last));
    memcpy(to->bytes, &first, sizeof first);
    memcpy(to->bytes + 8, &second, sizeof second);
    memcpy(to->bytes + 16, &third, sizeof third);
    memcpy(to->bytes + 24, &fourth, sizeof fourth);
    memcpy(to->bytes + 28, &last, sizeof last);
}

// Makes an element by `make(out)`, a service, beside the column: it is written as a whole, and only where that
// succeeds.
template <class Make> inline int32_t make_decimal(xdec *to, Make make)
{
    scratch<xdec> value;
    const int32_t status = make(&value);
    if (status >= 0)
        store_decimal(value, to);
    return status;
}
