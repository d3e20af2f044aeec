// Binary values into characters, as hexadecimal text. Two kinds that differ in more than their names: to char and
// varchar an error of the service counts, to hex_char and hex_varchar it does not, and their text is trimmed.

#include "src/frame/alias.h"
#include "src/frame/blanks.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"
#include "src/frame/text_length.h"
#include "src/frame/working_value.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/binary.h>
#include <services/column.h>

namespace {

constexpr size_t text_room = 65536; // the text of the longest value and a NUL

enum class too_long { fails, is_cut };

// A value above BCAST_HEX_VALUE_MAX fails in all forms: only its text can be cut.
template <too_long rule, blanks_rule blanks, class Failures>
int32_t show_rows(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows,
                  Failures failures)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    scratch<char[text_room]> text;

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, failures, [&](uint32_t r, uint32_t i) {
        const auto size = uint32_t(from[r].length);
        if (size > BCAST_HEX_VALUE_MAX)
            return fail_clearing_flag(dst, i, ERR_TRUNCATED);
        const int32_t status = nbin_to_char_ex(from[r].text, size, text, 0);
        if (status < 0)
            return fail_clearing_flag(dst, i, status);
        int32_t len = hex_text_length(text, size);
        if (len > length) {
            if constexpr (rule == too_long::fails)
                return fail_clearing_flag(dst, i, ERR_TRUNCATED);
            len = length;
        }
        bdta3_col_assign_str(env, heap, dst, int32_t(i), text, len, blanks(length, len));
        return 0;
    });
}

// What is left of a text, and the blanks that it ended in.
struct trimmed {
    int32_t len;
    int32_t blanks = 0;

    // NULs go first and do not count; blanks only in front of them.
    trimmed(const char *text, uint32_t size) : len(int32_t(size))
    {
        while (len > 0 && text[len - 1] == '\0')
            len--;
        for (; len > 0 && text[len - 1] == ' '; blanks++)
            len--;
    }
};

int32_t trimmed_up_to_length(int32_t length, const trimmed &text) { return up_to_length(length, text.len); }
int32_t blanks_trimmed(int32_t, const trimmed &text) { return text.blanks; }
using trimmed_blanks_rule = int32_t(int32_t length, const trimmed &text);

int32_t fail_keeping_flag(bdta3_col *, uint32_t, int32_t code) { return code; }
using failing_row = int32_t(bdta3_col *dst, uint32_t i, int32_t code);

// One working value serves the batch. It is not cleared between rows, and not where a row fails: what it holds then is
// left to the pool.
template <trimmed_blanks_rule blanks, failing_row fail_too_long>
int32_t show_hex_rows(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    scratch<char[text_room]> text;
    scratch<nstr> working;
    set_up(working);

    copy_no_null(src, dst);
    const walk_outcome walk = walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        const auto size = uint32_t(from[r].length);
        if (size > BCAST_HEX_VALUE_MAX)
            return fail_too_long(dst, i, ERR_TRUNCATED);
        nbin_to_char_ex(from[r].text, size, text, 0);
        working.first_word = 0;
        nstr_assign_const(env, heap, &working, text);
        if (int32_t(working.length) > length)
            return fail_clearing_flag(dst, i, ERR_TRUNCATED);
        const trimmed shown(working.outline, working.length);
        bdta3_col_assign_str(env, heap, dst, int32_t(i), working.outline, shown.len, blanks(length, shown));
        return 0;
    });
    if (walk.reached_end)
        nstr_clear(env, heap, &working);
    return walk;
}

} // namespace

int32_t bcast_varbinary_to_char(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                uint16_t rows, int32_t *err_codes, uint16_t *err_count)
{
    return show_rows<too_long::fails, up_to_length>(env, heap, src, length, dst, rows, capture{err_codes, err_count});
}
bcast_length_capture_fn bcast_varbinary_to_varchar2 ALIAS_OF(bcast_varbinary_to_char);
bcast_length_capture_fn bcast_binary_to_char ALIAS_OF(bcast_varbinary_to_char);
bcast_length_capture_fn bcast_binary_to_varchar2 ALIAS_OF(bcast_varbinary_to_char);

int32_t bcast_varbinary_to_varchar(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                   uint16_t rows, int32_t *err_codes, uint16_t *err_count)
{
    return show_rows<too_long::fails, no_blanks>(env, heap, src, length, dst, rows, capture{err_codes, err_count});
}
bcast_length_capture_fn bcast_binary_to_varchar ALIAS_OF(bcast_varbinary_to_varchar);

int32_t bcast_varbinary_to_char_explicit(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                         uint16_t rows)
{
    return show_rows<too_long::is_cut, up_to_length>(env, heap, src, length, dst, rows, stop{});
}

int32_t bcast_varbinary_to_varchar_explicit(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                            uint16_t rows)
{
    return show_rows<too_long::is_cut, no_blanks>(env, heap, src, length, dst, rows, stop{});
}

// A value above BCAST_HEX_VALUE_MAX leaves the flag set here, and clears it in the other one. A text above length
// clears it in both.
int32_t bcast_varbinary_to_hex_char(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                    uint16_t rows)
{
    return show_hex_rows<trimmed_up_to_length, fail_keeping_flag>(env, heap, src, length, dst, rows);
}
bcast_length_fn bcast_varbinary_to_hex_varchar2 ALIAS_OF(bcast_varbinary_to_hex_char);
bcast_length_fn bcast_binary_to_hex_char ALIAS_OF(bcast_varbinary_to_hex_char);
bcast_length_fn bcast_binary_to_hex_varchar2 ALIAS_OF(bcast_varbinary_to_hex_char);

int32_t bcast_varbinary_to_hex_varchar(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                       uint16_t rows)
{
    return show_hex_rows<blanks_trimmed, fail_clearing_flag>(env, heap, src, length, dst, rows);
}
bcast_length_fn bcast_binary_to_hex_varchar ALIAS_OF(bcast_varbinary_to_hex_varchar);
