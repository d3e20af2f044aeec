// How an interval gets into its element.
#pragma once

#include <bcast/column.h>

// Field by field, as services write them: a wider load of what was just written would wait for the stores to end. The
// empty asm keeps compilers from joining the fields.

inline void store_interval(const ivym &from, ivym *to)
{
    ivym all = from;
    asm("" : "+r"(all.year), "+r"(all.month), "+r"(all.iv_word));
    *to = all;
}

inline void store_interval(const ivdt &from, ivdt *to)
{
    ivdt all = from;
    asm("" : "+r"(all.day), "+r"(all.hour), "+r"(all.minute), "+r"(all.second), "+r"(all.fraction), "+r"(all.iv_word));
    *to = all;
}
