// Intervals into another shape, into characters, and not into numbers.

#include "src/frame/alias.h"
#include "src/frame/blanks.h"
#include "src/frame/interval_element.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"
#include "src/frame/text_length.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/column.h>
#include <services/interval.h>

namespace {

int32_t reshape(ivym *result, const ivym *from) { return cast_interval_ym(result, from, 1); }
int32_t reshape(ivdt *result, const ivdt *from) { return cast_interval_dt(result, from, 1); }

template <class Interval> int32_t reshape_rows(const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t iv_word)
{
    const Interval *from = elements<Interval>(src);
    Interval *to = elements<Interval>(dst);

    return walk_then_copy_no_null(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        scratch<Interval> interval;
        interval.iv_word = iv_word; // all that the service is told
        const int32_t status = reshape(&interval, from + r);
        if (status >= 0)
            store_interval(interval, to + i);
        return status;
    });
}

int32_t write(const ivym *from, char *text, uint16_t word) { return vq_interval_ym_to_char(from, text, word); }
int32_t write(const ivdt *from, char *text, uint16_t word) { return vq_interval_dt_to_char(from, text, word); }

// A text that is too long is refused, or, where compat_mode is BCAST_MODE_CUT_INTERVALS, cut.
template <class Interval, blanks_rule blanks>
int32_t to_characters(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t iv_word,
                      int32_t length)
{
    const Interval *from = elements<Interval>(src);
    scratch<char[BCAST_TEXT_ROOM]> text;

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        if (write(from + r, text, iv_word) == 0)
            return fail_clearing_flag(dst, i, ERR_TO_CHAR);
        const int32_t len = text_length(text);
        if (len <= length)
            bdta3_col_assign_str(env, heap, dst, int32_t(i), text, len, blanks(length, len));
        else if (global_bcast_var.compat_mode == BCAST_MODE_CUT_INTERVALS)
            bdta3_col_assign_str(env, heap, dst, int32_t(i), text, length, 0);
        else
            return fail_clearing_flag(dst, i, ERR_TARGET_TOO_SHORT);
        return 0;
    });
}

} // namespace

int32_t bcast_iv_ym_to_ym(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t, uint16_t,
                          uint16_t, uint16_t dst_scale)
{
    return reshape_rows<ivym>(src, dst, rows, dst_scale);
}

int32_t bcast_iv_dt_to_dt(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t, uint16_t,
                          uint16_t, uint16_t dst_scale)
{
    return reshape_rows<ivdt>(src, dst, rows, dst_scale);
}

int32_t bcast_iv_ym_to_char(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                            uint16_t src_scale, uint16_t dst_prec)
{
    return to_characters<ivym, up_to_length>(env, heap, src, dst, rows, src_scale, dst_prec);
}
bcast_scaled_text_fn bcast_iv_ym_to_varchar2 ALIAS_OF(bcast_iv_ym_to_char);

int32_t bcast_iv_ym_to_varchar(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                               uint16_t src_scale, uint16_t dst_prec)
{
    return to_characters<ivym, no_blanks>(env, heap, src, dst, rows, src_scale, dst_prec);
}

int32_t bcast_iv_dt_to_char(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                            uint16_t src_scale, uint16_t dst_prec)
{
    return to_characters<ivdt, up_to_length>(env, heap, src, dst, rows, src_scale, dst_prec);
}
bcast_scaled_text_fn bcast_iv_dt_to_varchar2 ALIAS_OF(bcast_iv_dt_to_char);

int32_t bcast_iv_dt_to_varchar(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                               uint16_t src_scale, uint16_t dst_prec)
{
    return to_characters<ivdt, no_blanks>(env, heap, src, dst, rows, src_scale, dst_prec);
}

int32_t bcast_iv_ym_to_tinyint(void *, void *, const bdta3_col *, bdta3_col *, uint16_t, uint16_t, uint16_t, uint16_t,
                               uint16_t)
{
    return BCAST_NO_SUCH_CAST;
}

int32_t bcast_iv_ym_to_smallint(void *, void *, const bdta3_col *, bdta3_col *, uint16_t, uint16_t, uint16_t, uint16_t,
                                uint16_t)
{
    return BCAST_NO_SUCH_CAST;
}

int32_t bcast_iv_ym_to_int(void *, void *, const bdta3_col *, bdta3_col *, uint16_t, uint16_t, uint16_t, uint16_t,
                           uint16_t)
{
    return BCAST_NO_SUCH_CAST;
}

int32_t bcast_iv_ym_to_int64(void *, void *, const bdta3_col *, bdta3_col *, uint16_t, uint16_t, uint16_t, uint16_t,
                             uint16_t)
{
    return BCAST_NO_SUCH_CAST;
}

int32_t bcast_iv_ym_to_dec(void *, void *, const bdta3_col *, bdta3_col *, uint16_t, uint16_t, uint16_t, uint16_t,
                           uint16_t)
{
    return BCAST_NO_SUCH_CAST;
}

int32_t bcast_iv_dt_to_tinyint(void *, void *, const bdta3_col *, bdta3_col *, uint16_t, uint16_t, uint16_t, uint16_t,
                               uint16_t)
{
    return BCAST_NO_SUCH_CAST;
}

int32_t bcast_iv_dt_to_smallint(void *, void *, const bdta3_col *, bdta3_col *, uint16_t, uint16_t, uint16_t, uint16_t,
                                uint16_t)
{
    return BCAST_NO_SUCH_CAST;
}

int32_t bcast_iv_dt_to_int(void *, void *, const bdta3_col *, bdta3_col *, uint16_t, uint16_t, uint16_t, uint16_t,
                           uint16_t)
{
    return BCAST_NO_SUCH_CAST;
}

int32_t bcast_iv_dt_to_int64(void *, void *, const bdta3_col *, bdta3_col *, uint16_t, uint16_t, uint16_t, uint16_t,
                             uint16_t)
{
    return BCAST_NO_SUCH_CAST;
}

int32_t bcast_iv_dt_to_dec(void *, void *, const bdta3_col *, bdta3_col *, uint16_t, uint16_t, uint16_t, uint16_t,
                           uint16_t)
{
    return BCAST_NO_SUCH_CAST;
}
