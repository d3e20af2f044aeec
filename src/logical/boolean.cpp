// Casts to and from boolean, and the zero tests of binary text. A boolean keeps its null in the element: every row of a
// boolean target is present.

#include "src/frame/block_walk.h"
#include "src/frame/common_runs.h"
#include "src/frame/row_walk.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/numeric.h>

namespace {

void make_all_present(bdta3_col *dst, uint16_t rows)
{
    dst->no_null = 1;
    memset(dst->data->flags, 1, row_count(rows));
}

// Row by row, for sources that no run suits. `truth(r)` is asked for present rows, and cannot fail.
template <class Truth> int32_t walk_to_boolean(const bdta3_col *src, bdta3_col *dst, uint16_t rows, Truth truth)
{
    const uint8_t *flags = src->data->flags;
    int32_t *to = elements<int32_t>(dst);

    make_all_present(dst, rows);
    if (src->no_null)
        return walk_all_rows(src, rows, stop{}, [&](uint32_t r, uint32_t i) {
            to[i] = truth(r);
            return 0;
        });
    return walk_all_rows(src, rows, stop{}, [&](uint32_t r, uint32_t i) {
        to[i] = flags[r] ? truth(r) : int32_t(BOOL_UNKNOWN);
        return 0;
    });
}

// Length and blanks, which lie side by side: neither the text nor a word in it is looked at.
int32_t has_text_or_blanks(const bdta3_str &element)
{
    uint64_t both;
    memcpy(&both, &element, sizeof both);
    return both != 0;
}

// A temporal value or interval is true.
int32_t present_is_true(const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_to_boolean(src, dst, rows, [](uint32_t) { return 1; });
}

// Binary in its text form, behind a prefix of two bytes: zero if all that follows is the digit 0.
template <class Length> int32_t is_zero(const char *text, Length length)
{
    for (Length k = 2; k < length; k++)
        if (text[k] != '0')
            return 0;
    return 1;
}

} // namespace

int32_t bcast_tinyint_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_to_boolean<int_is_true>(src, dst, rows);
}

int32_t bcast_smallint_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_to_boolean<int_is_true>(src, dst, rows);
}

int32_t bcast_int_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_to_boolean<int_is_true>(src, dst, rows);
}

int32_t bcast_int64_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_to_boolean<int64_is_true>(src, dst, rows);
}

int32_t bcast_bit_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_to_boolean<int_is_true>(src, dst, rows);
}

int32_t bcast_float_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_to_boolean<float_is_true>(src, dst, rows);
}

// The one that can fail: the first present value that the predicate refuses ends the cast with ERR_OVERFLOW, whatever
// the predicate's code.
int32_t bcast_double_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const uint8_t *flags = src->data->flags;
    const double *from = elements<double>(src);
    int32_t *to = elements<int32_t>(dst);
    const auto truth = [&](uint32_t r, uint32_t i) {
        if (ntype_is_double_overflow(from[r]) < 0)
            return int32_t(ERR_OVERFLOW);
        to[i] = from[r] != 0;
        return 0;
    };

    make_all_present(dst, rows);
    if (src->no_null)
        return walk_all_rows(src, rows, stop{}, truth);
    return walk_all_rows(src, rows, stop{}, [&](uint32_t r, uint32_t i) {
        if (flags[r])
            return truth(r, i);
        to[i] = BOOL_UNKNOWN;
        return 0;
    });
}

// By byte 1, where bcast_dec_to_bit goes by byte 0.
int32_t bcast_dec_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_to_boolean(src, dst, rows,
                           [from = elements<xdec>(src)](uint32_t r) { return int32_t(from[r].bytes[1] != 0); });
}

int32_t bcast_char_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_to_boolean(src, dst, rows,
                           [from = elements<bdta3_str>(src)](uint32_t r) { return has_text_or_blanks(from[r]); });
}

// Alone among all casts it takes the flag of the output row, while the value is the source row's.
int32_t bcast_varchar_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const uint8_t *flags = src->data->flags;
    const bdta3_str *from = elements<bdta3_str>(src);
    int32_t *to = elements<int32_t>(dst);
    const bool no_null = src->no_null != 0;

    make_all_present(dst, rows);
    return walk_all_rows(src, rows, stop{}, [&](uint32_t r, uint32_t i) {
        to[i] = no_null || flags[i] ? has_text_or_blanks(from[r]) : int32_t(BOOL_UNKNOWN);
        return 0;
    });
}

int32_t bcast_varbinary_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_to_boolean(src, dst, rows, [from = elements<bdta3_str>(src)](uint32_t r) {
        return int32_t(!is_zero(from[r].text, from[r].length));
    });
}

int32_t bcast_date_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return present_is_true(src, dst, rows);
}

int32_t bcast_time_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return present_is_true(src, dst, rows);
}

int32_t bcast_datetime_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return present_is_true(src, dst, rows);
}

int32_t bcast_iv_ym_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return present_is_true(src, dst, rows);
}

int32_t bcast_iv_dt_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return present_is_true(src, dst, rows);
}

// The one cast from null that writes elements.
int32_t bcast_null_to_boolean(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    int32_t *to = elements<int32_t>(dst);
    const uint32_t count = row_count(rows);
    make_all_present(dst, rows);
    for (uint32_t i = 0; i < count; i++)
        to[i] = BOOL_UNKNOWN;
    return 0;
}

// Copies every element; the source's flags and no_null do not count.
int32_t bcast_boolean_to_boolean(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    walk_all_blocks<copy4, flags_are::filled>(src, dst, rows);
    dst->no_null = 1;
    return 0;
}

// From boolean. This one goes by the flags alone, its kin by no_null.
int32_t bcast_boolean_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<low8>(src, dst, rows);
}

int32_t bcast_boolean_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_by_no_null<low16>(src, dst, rows);
}

int32_t bcast_boolean_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_by_no_null<copy4>(src, dst, rows);
}

int32_t bcast_boolean_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_by_no_null<widen>(src, dst, rows);
}

int32_t bcast_varbinary_is_zero(const nstr *value) { return is_zero(value->outline, value->length); }

int32_t bcast_varbinary_is_zero2(const bdta3_str *value) { return is_zero(value->text, value->length); }
