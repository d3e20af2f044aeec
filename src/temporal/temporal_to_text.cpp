// Temporal values into text, and a datetime into varchar. Services write the characters: date, time and datetime are
// unpacked first, the types with a zone are not.

#include "src/frame/large_object_element.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"
#include "src/frame/text_length.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/column.h>
#include <services/temporal.h>

namespace {

// Writes a value with a NUL behind it; 0 if it has no text.
using writer = int32_t(const vqtime *value, char *text);

int32_t write_date(const vqtime *value, char *text)
{
    scratch<vqdt_decoded> decoded;
    vqdt_date_encode_fast(value, &decoded);
    return vq_date_to_char(&decoded, text);
}

int32_t write_time(const vqtime *value, char *text)
{
    scratch<vqdt_decoded> decoded;
    vqdt_time_encode_fast(value, &decoded);
    return vq_time_to_char(&decoded, text, 0);
}

int32_t write_datetime(const vqtime *value, char *text)
{
    scratch<vqdt_decoded> decoded;
    vqdt_encode_fast(value, &decoded);
    return vqdt_to_char(&decoded, text, 0);
}

// No fraction is shown of a time_tz.
int32_t write_time_tz(const vqtime *value, char *text) { return vqtime_tz_to_char(value, TYPE_TIME_TZ, 0, text); }

int32_t write_datetime_tz(const vqtime *value, char *text)
{
    return vqtime_tz_to_char(value, TYPE_DATETIME_TZ, 6, text);
}

template <writer write> int32_t to_text(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const vqtime *from = elements<vqtime>(src);
    scratch<char[BCAST_TEXT_ROOM]> text;
    scratch<nstr> working;
    set_up(working);

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        if (write(from + r, text) == 0)
            return fail_clearing_flag(dst, i, ERR_TO_CHAR);
        return store_large_object(env, heap, dst, i, text, text_length(text), working);
    });
}

} // namespace

int32_t bcast_date_to_text(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_text<write_date>(env, heap, src, dst, rows);
}

int32_t bcast_time_to_text(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_text<write_time>(env, heap, src, dst, rows);
}

int32_t bcast_datetime_to_text(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_text<write_datetime>(env, heap, src, dst, rows);
}

int32_t bcast_time_tz_to_text(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_text<write_time_tz>(env, heap, src, dst, rows);
}

int32_t bcast_datetime_tz_to_text(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return to_text<write_datetime_tz>(env, heap, src, dst, rows);
}

// Never cut, in any mode.
int32_t bcast_datetime_to_varchar_ex(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                     uint16_t rows)
{
    const vqtime *from = elements<vqtime>(src);
    scratch<char[BCAST_TEXT_ROOM]> text;

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        if (write_datetime(from + r, text) == 0)
            return fail_clearing_flag(dst, i, ERR_TO_CHAR);
        const int32_t len = text_length(text);
        if (length < len)
            return fail_clearing_flag(dst, i, ERR_TARGET_TOO_SHORT);
        bdta3_col_assign_str(env, heap, dst, int32_t(i), text, len, 0);
        return 0;
    });
}
