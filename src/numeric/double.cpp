// double into numbers, characters and text. Each cast asks something of the value first. What a value that is refused
// fails with depends on the target: the predicate's own code for float, int64 and dec, ERR_OVERFLOW for all others.

#include "src/frame/alias.h"
#include "src/frame/decimal_element.h"
#include "src/frame/decimal_shape.h"
#include "src/frame/integer_range.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"
#include "src/numeric/floating_to_text.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/decimal.h>
#include <services/numeric.h>

namespace {

// `convert(value, element)` makes an element of a present row's value and returns a negative
// code if it fails.
template <class Element, class Convert>
int32_t convert_rows(const bdta3_col *src, bdta3_col *dst, uint16_t rows, Convert convert)
{
    const double *from = elements<double>(src);
    Element *to = elements<Element>(dst);

    return walk_then_copy_no_null(src, dst, rows, stop{},
                                  [&](uint32_t r, uint32_t i) { return convert(from[r], to[i]); });
}

// Into an integer of so many bits, below 64. The limits themselves fit and nothing beyond does, whatever the service
// would round it to. A NaN passes them: the service decides.
template <int bits> int32_t to_narrow_integer(const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    constexpr auto limit = double(int64_t(1) << (bits - 1));
    return convert_rows<int32_t>(src, dst, rows, [](double value, int32_t &to) {
        if (value > limit - 1 || value < -limit)
            return int32_t(ERR_OVERFLOW);
        int64_t whole;
        const int32_t status = dou2int64(value, &whole);
        if (status < 0)
            return status;
        if (excess_of<bits>(whole) != 0)
            return int32_t(ERR_OVERFLOW);
        to = int32_t(whole);
        return 0;
    });
}

constexpr auto refuse_overflow = [](double value) {
    return ntype_is_double_overflow(value) < 0 ? int32_t(ERR_OVERFLOW) : 0;
};

} // namespace

int32_t bcast_double_to_double(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return convert_rows<double>(src, dst, rows, [](double value, double &to) {
        const int32_t code = refuse_overflow(value);
        if (code >= 0)
            to = value;
        return code;
    });
}

int32_t bcast_double_to_float(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return convert_rows<float>(src, dst, rows, [](double value, float &to) {
        const int32_t status = ntype_is_float_overflow(value);
        if (status < 0)
            return status;
        to = float(value);
        return 0;
    });
}

int32_t bcast_double_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_narrow_integer<8>(src, dst, rows);
}

int32_t bcast_double_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_narrow_integer<16>(src, dst, rows);
}

int32_t bcast_double_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_narrow_integer<32>(src, dst, rows);
}

int32_t bcast_double_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return convert_rows<int64_t>(src, dst, rows, [](double value, int64_t &to) {
        int32_t status = ntype_is_lint64_overflow(value);
        if (status < 0)
            return status;
        int64_t whole;
        status = dou2int64(value, &whole);
        if (status >= 0)
            to = whole;
        return status;
    });
}

int32_t bcast_double_to_dec(void *, void *, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    const decimal_shape shape(length);
    return convert_rows<xdec>(src, dst, rows, [shape](double value, xdec &to) {
        const int32_t status = ntype_is_double_overflow(value);
        if (status < 0)
            return status;
        return make_decimal(
            &to, [&](xdec *out) { return xdec_from_double_with_len_prec(value, shape.len, shape.prec, out); });
    });
}

int32_t bcast_double_to_char(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return floating_to_characters<double, up_to_length>(env, heap, src, length, dst, rows, refuse_overflow);
}
bcast_length_fn bcast_double_to_varchar2 ALIAS_OF(bcast_double_to_char);

int32_t bcast_double_to_varchar(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                uint16_t rows)
{
    return floating_to_characters<double, no_blanks>(env, heap, src, length, dst, rows, refuse_overflow);
}

int32_t bcast_double_to_text(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return floating_to_text<double>(env, heap, src, dst, rows, refuse_overflow);
}
