// Integers and bit to dec: a service makes the decimal, and its code is the row's. The element is written as a whole,
// and only where it succeeds.

#include "src/frame/decimal_element.h"
#include "src/frame/decimal_shape.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"

#include <bcast/casts.h>
#include <services/decimal.h>

namespace {

template <class Element> auto decimal_maker(const bdta3_col *src, int32_t length, bdta3_col *dst)
{
    const decimal_shape shape(length);
    return [shape, from = elements<Element>(src), to = elements<xdec>(dst)](uint32_t r, uint32_t i) {
        return make_decimal(
            to + i, [&](xdec *out) { return xdec_from_int64_with_len_prec(from[r], shape.len, shape.prec, out); });
    };
}

template <class Element> int32_t to_decimal(const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return walk_then_copy_no_null(src, dst, rows, stop{}, decimal_maker<Element>(src, length, dst));
}

} // namespace

int32_t bcast_tinyint_to_dec(void *, void *, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return to_decimal<int32_t>(src, length, dst, rows);
}

// The one that copies flags ahead where there is no selection, so that those behind a row that fails are copied too.
int32_t bcast_smallint_to_dec(void *, void *, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    const walk_outcome walk =
        walk_copying_flags_ahead(src, dst, rows, stop{}, decimal_maker<int32_t>(src, length, dst));
    return copy_no_null_behind(src, dst, walk);
}

int32_t bcast_int_to_dec(void *, void *, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return to_decimal<int32_t>(src, length, dst, rows);
}

int32_t bcast_int64_to_dec(void *, void *, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return to_decimal<int64_t>(src, length, dst, rows);
}

int32_t bcast_bit_to_dec(void *, void *, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return to_decimal<int32_t>(src, length, dst, rows);
}
