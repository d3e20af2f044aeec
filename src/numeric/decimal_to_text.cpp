// Decimals into characters and text. A service writes the digits; into characters it is told the shape that the source
// column declares, so that 1.50 stays 1.50.

#include "src/frame/alias.h"
#include "src/frame/blanks.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"
#include "src/frame/working_value.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/column.h>
#include <services/decimal.h>

namespace {

// `length` of the casts to characters: the target's length in the low half, the source's shape in the high one.
struct text_shape {
    int32_t target_length;
    uint16_t len = 0;
    int32_t prec = 0;

    explicit text_shape(int32_t length) : target_length(uint16_t(length))
    {
        const uint8_t declared_prec = bcast_dec_prec(length >> 16);
        if (global_bcast_var.compat_mode == BCAST_MODE_EMPTY_IS_NULL || declared_prec == BCAST_DEC_NO_SHAPE)
            return;
        prec = declared_prec;
        len = uint16_t(int8_t(bcast_dec_len(length >> 16))); // signed, where the len of a dec target is not
    }
};

template <blanks_rule blanks>
int32_t to_characters(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    const text_shape shape(length);
    const xdec *from = elements<xdec>(src);
    scratch<char[400]> text;
    int32_t len = 0;

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        const int32_t status = xdec_to_char_with_zero(from + r, text, text.size, shape.len, shape.prec, &len);
        if (status < 0)
            return fail_clearing_flag(dst, i, status);
        if (len > shape.target_length)
            return fail_clearing_flag(dst, i, ERR_TRUNCATED);
        bdta3_col_assign_str(env, heap, dst, int32_t(i), text, len, blanks(shape.target_length, len));
        return 0;
    });
}

} // namespace

int32_t bcast_dec_to_char(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return to_characters<up_to_length>(env, heap, src, length, dst, rows);
}
bcast_length_fn bcast_dec_to_varchar2 ALIAS_OF(bcast_dec_to_char);

int32_t bcast_dec_to_varchar(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return to_characters<no_blanks>(env, heap, src, length, dst, rows);
}

// Without a shape in every mode. Whether the large object could be made is not asked, and it is taken from where
// outline points, be it short or not: so it is not stored as others are (store_large_object).
int32_t bcast_dec_to_text(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const xdec *from = elements<xdec>(src);
    scratch<char[500]> text;
    int32_t len = 0;
    scratch<nstr> working;
    set_up(working);

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        const int32_t status = xdec_to_char_with_zero(from + r, text, text.size, 0, 0, &len);
        if (status < 0)
            return fail_clearing_flag(dst, i, status);
        working.first_word = 0;
        nblob_assign_const(env, heap, &working, text, len);
        bdta3_col_assign_bin(env, heap, dst, int32_t(i), working.outline, int32_t(working.length));
        nstr_clear(env, heap, &working);
        return 0;
    });
}
