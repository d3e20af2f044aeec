// The three families of character sources, as casts to numbers treat them:
//
//     source     flags                          a row that fails
//     char       not read where no_null is set  ends the cast
//     varchar    always read                    is captured, if err_codes is given
//     varchar2   always read                    ends the cast
//
// In all three an empty text is a null, by the whole length word, and no_null is copied ahead of the walk. Blanks that
// a value only counts are not read. A row that fails keeps its flag.
//
// `read(text, i)` makes output row i from the element of a text that is not empty, and returns a negative
// code if it fails.
#pragma once

#include "src/frame/row_walk.h"

#include <bcast/values.h>

#include <algorithm>

template <class Read> auto unless_empty(const bdta3_col *src, bdta3_col *dst, Read read)
{
    return [dst, from = elements<bdta3_str>(src), read](uint32_t r, uint32_t i) mutable -> int32_t {
        return from[r].length == 0 ? turn_null(dst, i) : read(from[r], i);
    };
}

template <class Read> int32_t from_char(const bdta3_col *src, bdta3_col *dst, uint16_t rows, Read read)
{
    copy_no_null(src, dst);
    return walk_filling_flags(src, dst, rows, stop{}, unless_empty(src, dst, read));
}

template <class Read>
int32_t from_varchar(const bdta3_col *src, bdta3_col *dst, uint16_t rows, capture failures, Read read)
{
    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, failures, unless_empty(src, dst, read));
}

template <class Read> int32_t from_varchar2(const bdta3_col *src, bdta3_col *dst, uint16_t rows, Read read)
{
    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, unless_empty(src, dst, read));
}

// How much of a text the parsers of decimals and floating numbers get: the low 16 bits of its length, and no more than
// BCAST_NUMBER_TEXT_MAX bytes. What stands behind is not looked at.
inline uint16_t parsed_length(const bdta3_str &text)
{
    return std::min<uint16_t>(uint16_t(text.length), BCAST_NUMBER_TEXT_MAX);
}
