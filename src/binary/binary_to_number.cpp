// Binary values into numbers: a service reads the bytes as an integer. From binary a row that fails ends the cast; from
// varbinary it is captured, if err_codes is given. Its flag stays, and no_null is copied behind the walk, captured
// failures or not.

#include "src/frame/decimal_element.h"
#include "src/frame/decimal_shape.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"

#include <bcast/casts.h>
#include <services/binary.h>
#include <services/decimal.h>
#include <services/numeric.h>

namespace {

int32_t read_bytes(const bdta3_str &from, int64_t *value)
{
    return nbin_to_lint64(from.text, uint32_t(from.length), value);
}

// Reads an integer as wide as Int, and stores it with its sign.
template <class Int, class Element> auto integer_reader(const bdta3_col *src, bdta3_col *dst)
{
    return [from = elements<bdta3_str>(src), to = elements<Element>(dst)](uint32_t r, uint32_t i) {
        Int value;
        const int32_t status =
            nbin_to_int_by_ntype_len(from[r].text, uint32_t(from[r].length), int32_t(sizeof value), &value);
        if (status >= 0)
            to[i] = value;
        return status;
    };
}

auto decimal_reader(const bdta3_col *src, int32_t length, bdta3_col *dst)
{
    const decimal_shape shape(length);
    return [shape, from = elements<bdta3_str>(src), to = elements<xdec>(dst)](uint32_t r, uint32_t i) {
        int64_t value;
        const int32_t status = read_bytes(from[r], &value);
        if (status < 0)
            return status;
        return make_decimal(
            to + i, [&](xdec *out) { return xdec_from_int64_with_len_prec(value, shape.len, shape.prec, out); });
    };
}

} // namespace

int32_t bcast_binary_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_then_copy_no_null(src, dst, rows, stop{}, integer_reader<int8_t, int32_t>(src, dst));
}

int32_t bcast_binary_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_then_copy_no_null(src, dst, rows, stop{}, integer_reader<int16_t, int32_t>(src, dst));
}

int32_t bcast_binary_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_then_copy_no_null(src, dst, rows, stop{}, integer_reader<int32_t, int32_t>(src, dst));
}

int32_t bcast_binary_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_then_copy_no_null(src, dst, rows, stop{}, integer_reader<int64_t, int64_t>(src, dst));
}

int32_t bcast_binary_to_double(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    double *to = elements<double>(dst);
    return walk_then_copy_no_null(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        int64_t value;
        const int32_t status = read_bytes(from[r], &value);
        if (status >= 0)
            to[i] = double(value);
        return status;
    });
}

// The predicate is asked about the double; the float is made of the integer, so that it is rounded once.
int32_t bcast_binary_to_float(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    float *to = elements<float>(dst);
    return walk_then_copy_no_null(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        int64_t value;
        int32_t status = read_bytes(from[r], &value);
        if (status < 0)
            return status;
        status = ntype_is_float_overflow(double(value));
        if (status < 0)
            return status;
        to[i] = float(value);
        return 0;
    });
}

int32_t bcast_binary_to_dec(void *, void *, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return walk_then_copy_no_null(src, dst, rows, stop{}, decimal_reader(src, length, dst));
}

int32_t bcast_varbinary_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                   int32_t *err_codes, uint16_t *err_count)
{
    return walk_then_copy_no_null(src, dst, rows, capture{err_codes, err_count},
                                  integer_reader<int8_t, int32_t>(src, dst));
}

int32_t bcast_varbinary_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                    int32_t *err_codes, uint16_t *err_count)
{
    return walk_then_copy_no_null(src, dst, rows, capture{err_codes, err_count},
                                  integer_reader<int16_t, int32_t>(src, dst));
}

int32_t bcast_varbinary_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, int32_t *err_codes,
                               uint16_t *err_count)
{
    return walk_then_copy_no_null(src, dst, rows, capture{err_codes, err_count},
                                  integer_reader<int32_t, int32_t>(src, dst));
}

int32_t bcast_varbinary_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                 int32_t *err_codes, uint16_t *err_count)
{
    return walk_then_copy_no_null(src, dst, rows, capture{err_codes, err_count},
                                  integer_reader<int64_t, int64_t>(src, dst));
}

int32_t bcast_varbinary_to_dec(void *, void *, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows,
                               int32_t *err_codes, uint16_t *err_count)
{
    return walk_then_copy_no_null(src, dst, rows, capture{err_codes, err_count}, decimal_reader(src, length, dst));
}
