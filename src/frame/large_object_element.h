// How the text of a value gets into a text element.
#pragma once

#include "src/frame/column.h"
#include "src/frame/working_value.h"

#include <services/column.h>

// Makes a large object of a text, stores it as output row i and clears the working value, which is set up. A row that
// fails loses its flag and leaves the working value as it is: what it holds then is left to the pool.
inline int32_t store_large_object(void *env, void *heap, bdta3_col *dst, uint32_t i, const char *text, int32_t len,
                                  nstr &working)
{
    working.first_word = 0;
    const int32_t status = nblob_assign_const(env, heap, &working, text, len);
    if (status < 0)
        return fail_clearing_flag(dst, i, status);
    bdta3_col_assign_bin(env, heap, dst, int32_t(i), bytes_of(working), int32_t(working.length));
    nstr_clear(env, heap, &working);
    return 0;
}
