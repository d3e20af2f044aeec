// Text of one length into text of another, and binary values into varbinary. The plain forms refuse what is too long;
// the explicit forms cut it. A char target counts blanks up to its length; a varchar target keeps those that its source
// counted, as far as they fit.

#include "src/frame/alias.h"
#include "src/frame/row_walk.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/column.h>
#include <services/text.h>

namespace {

int32_t blanks_up_to(int32_t length, const bdta3_str &text) { return length - text.length; }
int32_t blanks_kept(int32_t length, const bdta3_str &text)
{
    const auto with_blanks = int32_t(uint32_t(text.length) + uint32_t(text.pad_len));
    return with_blanks > length ? length - text.length : text.pad_len;
}
using source_blanks_rule = int32_t(int32_t length, const bdta3_str &text);

// Makes output row i an element of `len` bytes, which stand in space of its own and are not written yet. Gives the
// pointer to them, null if there was no space.
char *make_element(void *env, void *heap, bdta3_col *dst, uint32_t i, int32_t len, int32_t pad_len)
{
    bdta3_str &to = elements<bdta3_str>(dst)[i];
    to.length = len;
    to.pad_len = pad_len;
    return to.text = static_cast<char *>(bdta3_col_space_alloc(env, heap, dst->data, len));
}

void copy_text(char *to, const char *text, int32_t len)
{
    if (len != 0) // space for no bytes may be nowhere
        memcpy(to, text, size_t(len));
}

// Plain forms: the source copies its text itself, and is asked by output row, for it goes through sel by itself. It may
// write the whole element, so the blanks come behind it. That it fails is no matter of the row.
template <source_blanks_rule blanks>
walk_outcome copy_rows(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows,
                       capture failures)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    bdta3_str *to = elements<bdta3_str>(dst);

    return walk_present_rows(src, dst, rows, failures, [&](uint32_t r, uint32_t i) -> row_outcome {
        if (from[r].length > length)
            return fail_clearing_flag(dst, i, ERR_TRUNCATED);
        const int32_t status = src->data->copy_row(env, heap, src, i, dst, i, nullptr, 1);
        if (status < 0)
            return end_of_cast(status);
        to[i].pad_len = blanks(length, from[r]);
        return 0;
    });
}

// Explicit forms: a text that is too long is cut behind its last whole character that fits, and stripped of the blanks
// that it then ends in. Those alone are its count of blanks: it is not topped up. If not even one character fits, the
// row is empty, or null where compat_mode is BCAST_MODE_EMPTY_IS_NULL; one that is left with blanks alone is empty in
// every mode.
template <source_blanks_rule blanks>
int32_t cut_rows(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    const bool empty_is_null = global_bcast_var.compat_mode == BCAST_MODE_EMPTY_IS_NULL;
    const int32_t mode2 = global_bcast_var.compat_mode2;
    // As the service numbers them.
    const int32_t charset = mode2 == BCAST_CUT_BY_CHARSET_1 ? 1 : mode2 == BCAST_CUT_BY_CHARSET_6 ? 6 : 10;

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        const bdta3_str &text = from[r];
        int32_t len = text.length;
        int32_t pad_len;
        if (len <= length) {
            pad_len = blanks(length, text);
        } else {
            uint32_t chars, bytes;
            vq_get_valid_chars(text.text, length, charset, &chars, &bytes);
            if (bytes == 0 && empty_is_null)
                return turn_null(dst, i);
            len = int32_t(bytes);
            while (len > 0 && text.text[len - 1] == ' ')
                len--;
            pad_len = int32_t(bytes) - len;
        }
        char *copy = make_element(env, heap, dst, i, len, pad_len);
        if (!copy && len != 0)
            return int32_t(ERR_NO_MEMORY);
        copy_text(copy, text.text, len);
        return 0;
    });
}

} // namespace

// With err_codes, what is too long is captured; a failing copy ends these two all the same. no_null is copied behind
// the walk.

int32_t bcast_varchar_to_char(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                              uint16_t rows, int32_t *err_codes, uint16_t *err_count)
{
    return copy_no_null_behind(src, dst,
                               copy_rows<blanks_up_to>(env, heap, src, length, dst, rows, {err_codes, err_count}));
}
bcast_length_capture_fn bcast_varchar_to_varchar2 ALIAS_OF(bcast_varchar_to_char);
bcast_length_capture_fn bcast_char_to_char ALIAS_OF(bcast_varchar_to_char);
bcast_length_capture_fn bcast_char_to_varchar2 ALIAS_OF(bcast_varchar_to_char);
bcast_length_capture_fn bcast_varchar2_to_char ALIAS_OF(bcast_varchar_to_char);
bcast_length_capture_fn bcast_varchar2_to_varchar2 ALIAS_OF(bcast_varchar_to_char);

// Without a selection the cast copies the texts itself. It does not test whether it got the space: running out of it
// has no code here, and is left to the service.
int32_t bcast_varchar_to_varchar(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                 uint16_t rows, int32_t *err_codes, uint16_t *err_count)
{
    const capture failures = {err_codes, err_count};
    if (src->sel)
        return copy_no_null_behind(src, dst, copy_rows<blanks_kept>(env, heap, src, length, dst, rows, failures));

    const bdta3_str *from = elements<bdta3_str>(src);
    return walk_then_copy_no_null(src, dst, rows, failures, [&](uint32_t r, uint32_t i) {
        const bdta3_str &text = from[r];
        if (text.length > length)
            return fail_clearing_flag(dst, i, ERR_TRUNCATED);
        copy_text(make_element(env, heap, dst, i, text.length, blanks_kept(length, text)), text.text, text.length);
        return 0;
    });
}
bcast_length_capture_fn bcast_char_to_varchar ALIAS_OF(bcast_varchar_to_varchar);
bcast_length_capture_fn bcast_varchar2_to_varchar ALIAS_OF(bcast_varchar_to_varchar);
bcast_length_capture_fn bcast_binary_to_varbinary ALIAS_OF(bcast_varchar_to_varchar);
bcast_length_capture_fn bcast_varbinary_to_varbinary ALIAS_OF(bcast_varchar_to_varchar);

int32_t bcast_varchar_to_char_explicit(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                       uint16_t rows)
{
    return cut_rows<blanks_up_to>(env, heap, src, length, dst, rows);
}

int32_t bcast_varchar_to_varchar_explicit(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                          uint16_t rows)
{
    return cut_rows<blanks_kept>(env, heap, src, length, dst, rows);
}
