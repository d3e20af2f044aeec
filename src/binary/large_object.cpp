// Text and binary values into text and blob: a service puts the header of a large object in front of the value. text
// and blob hold the same bytes; only a binary source differs between them, for text shows it as hexadecimal digits.

#include "src/frame/alias.h"
#include "src/frame/large_object_element.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"
#include "src/frame/text_length.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/binary.h>
#include <services/column.h>

namespace {

// The source copies the batch itself, flags included.
int32_t copy_batch(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const int32_t status = src->data->copy_row(env, heap, src, 0, dst, 0, nullptr, row_count(rows));
    if (status < 0)
        return status;
    copy_no_null(src, dst);
    return 0;
}

} // namespace

// A row that fails leaves the working value as it is: what it holds then is left to the pool.

// The blanks that a char source counts become bytes of the value. The stored length is reckoned from the value's, not
// taken from the working value as store_large_object does. A text with its blanks may have BCAST_BINARY_MAX bytes; the
// cast does not test it.
int32_t bcast_varchar_to_blob(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                              int32_t *err_codes, uint16_t *err_count)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    scratch<char[BCAST_BINARY_MAX]> padded;
    scratch<nstr> working;
    set_up(working);

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, capture{err_codes, err_count}, [&](uint32_t r, uint32_t i) {
        const char *value = from[r].text;
        int32_t len = from[r].length;
        if (const int32_t blanks = from[r].pad_len) {
            if (len > 0)
                memcpy(padded, value, size_t(len));
            memset(padded + len, ' ', size_t(blanks));
            value = padded;
            len += blanks;
        }
        working.first_word = 0;
        const int32_t status = nblob_assign_const(env, heap, &working, value, len);
        if (status < 0)
            return fail_clearing_flag(dst, i, status);
        bdta3_col_assign_bin(env, heap, dst, int32_t(i), bytes_of(working), len + LOB_HEADER_SIZE);
        nstr_clear(env, heap, &working);
        return 0;
    });
}
bcast_capture_fn bcast_varchar_to_text ALIAS_OF(bcast_varchar_to_blob);

int32_t bcast_binary_to_blob(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    scratch<nstr> working;
    set_up(working);

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        working.first_word = 0;
        const int32_t status = nblob_assign_const(env, heap, &working, from[r].text, from[r].length);
        if (status < 0)
            return fail_clearing_flag(dst, i, status);
        bdta3_col_assign_bin(env, heap, dst, int32_t(i), bytes_of(working), from[r].length + LOB_HEADER_SIZE);
        nstr_clear(env, heap, &working);
        return 0;
    });
}

// The stored length is that of the working value here. A value may have BCAST_HEX_VALUE_MAX bytes; the cast does not
// test it.
int32_t bcast_binary_to_text(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    scratch<char[65536]> text;
    scratch<nstr> working;
    set_up(working);

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        const int32_t status = nbin_to_char_ex(from[r].text, uint32_t(from[r].length), text, 0);
        if (status < 0)
            return fail_clearing_flag(dst, i, status);
        return store_large_object(env, heap, dst, i, text, hex_text_length(text, uint32_t(from[r].length)), working);
    });
}

int32_t bcast_text_to_text(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return copy_batch(env, heap, src, dst, rows);
}

int32_t bcast_blob_to_blob(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return copy_batch(env, heap, src, dst, rows);
}

// Not allowed, whatever the batch.
int32_t bcast_text_to_blob(void *, void *, const bdta3_col *, bdta3_col *, uint16_t) { return ERR_BAD_CONVERSION; }
