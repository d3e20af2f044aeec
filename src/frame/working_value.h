// A value on its way into a column through an nstr.
#pragma once

#include <bcast/column.h>

inline void set_up(nstr &value)
{
    value.first_word = 0;
    value.length = 0;
    value.outline = value.inline_bytes;
    value.outline_state = 0;
}

inline const char *bytes_of(const nstr &value)
{
    const char *outline = value.outline; // read in any case, so that no branch is needed
    return value.length > NSTR_INLINE_MAX ? outline : value.inline_bytes;
}
