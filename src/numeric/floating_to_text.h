// float and double into characters and text. What tells them apart is whether a value is asked about first:
// `refuse(value)` returns 0 or the code that the row fails with.
#pragma once

#include "src/frame/blanks.h"
#include "src/frame/large_object_element.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"

#include <bcast/codes.h>
#include <services/column.h>
#include <services/numeric.h>

template <class Element> struct floating_text {
    scratch<char[BCAST_TEXT_ROOM]> bytes;
    int32_t len;

    void write(Element value)
    {
        constexpr int32_t kind = sizeof value == sizeof(double) ? BCAST_WAS_DOUBLE : BCAST_WAS_FLOAT;
        len = vq_dou2char(kind, value, bytes);
    }
};

template <class Element, blanks_rule blanks, class Refuse>
int32_t floating_to_characters(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                               uint16_t rows, Refuse refuse)
{
    const Element *from = elements<Element>(src);
    floating_text<Element> text;

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        const int32_t code = refuse(from[r]);
        if (code < 0)
            return fail_clearing_flag(dst, i, code);
        text.write(from[r]);
        if (text.len > length)
            return fail_clearing_flag(dst, i, ERR_TRUNCATED);
        bdta3_col_assign_str(env, heap, dst, int32_t(i), text.bytes, text.len, blanks(length, text.len));
        return 0;
    });
}

template <class Element, class Refuse>
int32_t floating_to_text(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows, Refuse refuse)
{
    const Element *from = elements<Element>(src);
    floating_text<Element> text;
    scratch<nstr> working;
    set_up(working);

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        const int32_t code = refuse(from[r]);
        if (code < 0)
            return fail_clearing_flag(dst, i, code);
        text.write(from[r]);
        return store_large_object(env, heap, dst, i, text.bytes, text.len, working);
    });
}
