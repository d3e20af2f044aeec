// Decimals into numbers. A service gives the value, and its code is the row's. A row that fails keeps its flag, and
// its element stays as it was.

#include "src/frame/decimal_element.h"
#include "src/frame/decimal_shape.h"
#include "src/frame/integer_range.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/decimal.h>
#include <services/numeric.h>

namespace {

// Into an integer of so many bits. What does not fit fails here, but for int64, which the service fits itself.
template <int bits, class Element> int32_t to_integer(const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const xdec *from = elements<xdec>(src);
    Element *to = elements<Element>(dst);

    return walk_then_copy_no_null(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        int64_t value;
        const int32_t status = xdec_get_int64(from + r, &value);
        if (status < 0)
            return status;
        if constexpr (bits < 64) {
            if (excess_of<bits>(value) != 0)
                return int32_t(ERR_OVERFLOW);
        }
        to[i] = Element(value);
        return 0;
    });
}

} // namespace

int32_t bcast_dec_to_dec(void *, void *, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    const decimal_shape shape(length);
    const xdec *from = elements<xdec>(src);
    xdec *to = elements<xdec>(dst);

    return walk_then_copy_no_null(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        return make_decimal(
            to + i, [&](xdec *out) { return xdec_from_xdec_with_len_prec(from + r, shape.len, shape.prec, out); });
    });
}

int32_t bcast_dec_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_integer<8, int32_t>(src, dst, rows);
}

int32_t bcast_dec_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_integer<16, int32_t>(src, dst, rows);
}

int32_t bcast_dec_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_integer<32, int32_t>(src, dst, rows);
}

int32_t bcast_dec_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_integer<64, int64_t>(src, dst, rows);
}

int32_t bcast_dec_to_double(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const xdec *from = elements<xdec>(src);
    double *to = elements<double>(dst);

    return walk_then_copy_no_null(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        int32_t status;
        const double value = xdec_get_double(from + r, &status);
        if (status >= 0)
            to[i] = value;
        return status;
    });
}

// By way of a double, with the predicate's code where that is no float.
int32_t bcast_dec_to_float(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const xdec *from = elements<xdec>(src);
    float *to = elements<float>(dst);

    return walk_then_copy_no_null(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        int32_t status;
        const double value = xdec_get_double(from + r, &status);
        if (status < 0)
            return status;
        status = ntype_is_float_overflow(value);
        if (status < 0)
            return status;
        to[i] = float(value);
        return 0;
    });
}
