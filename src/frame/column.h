// What a cast takes out of its column arguments.
#pragma once

#include <bcast/column.h>

#include <cstdint>

// The elements of a source are indexed by row number, those of a target by output row.
template <class Element> const Element *elements(const bdta3_col *src)
{
    return static_cast<const Element *>(src->data->values);
}
template <class Element> Element *elements(bdta3_col *dst) { return static_cast<Element *>(dst->data->values); }

// The row count of a batch. Only its low 16 bits count, but some compilers take a 16-bit argument to be widened by the
// caller; the empty asm makes them widen it here.
inline uint32_t row_count(uint16_t rows)
{
    asm("" : "+r"(rows));
    return rows;
}

inline void copy_no_null(const bdta3_col *src, bdta3_col *dst) { dst->no_null = src->no_null; }

// Makes output row i null although its source row is not; the status of such a row.
inline int32_t turn_null(bdta3_col *dst, uint32_t i)
{
    dst->data->flags[i] = 0;
    dst->no_null = 0;
    return 0;
}

// Clears the flag of output row i, which fails with `code`; the status of such a row. A row that fails otherwise keeps
// the flag that the walk gave it.
inline int32_t fail_clearing_flag(bdta3_col *dst, uint32_t i, int32_t code)
{
    dst->data->flags[i] = 0;
    return code;
}
