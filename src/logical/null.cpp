// Casts to and from null: all rows of the target become null, without a look at the source.

#include "src/frame/alias.h"
#include "src/frame/column.h"

#include <bcast/casts.h>

#include <cstring>

namespace {

void clear_flags(bdta3_col *dst, uint16_t rows) { memset(dst->data->flags, 0, row_count(rows)); }

int32_t make_null(bdta3_col *dst, uint16_t rows)
{
    clear_flags(dst, rows);
    dst->no_null = 0;
    return 0;
}

} // namespace

int32_t bcast_char_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_varchar_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}
bcast_plain_fn bcast_varchar2_to_null ALIAS_OF(bcast_varchar_to_null);

int32_t bcast_tinyint_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_smallint_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_int_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_int64_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_float_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_double_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_dec_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_bit_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_boolean_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_null_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_binary_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_varbinary_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_text_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_blob_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_date_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_datetime_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_time_tz_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_iv_ym_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_iv_dt_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

// These two leave no_null as it was.

int32_t bcast_time_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    clear_flags(dst, rows);
    return 0;
}

int32_t bcast_datetime_tz_to_null(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    clear_flags(dst, rows);
    return 0;
}

int32_t bcast_null_to_char(void *, void *, const bdta3_col *, int32_t, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}
bcast_length_fn bcast_null_to_varchar ALIAS_OF(bcast_null_to_char);
bcast_length_fn bcast_null_to_varchar2 ALIAS_OF(bcast_null_to_char);
bcast_length_fn bcast_null_to_binary ALIAS_OF(bcast_null_to_char);
bcast_length_fn bcast_null_to_varbinary ALIAS_OF(bcast_null_to_char);
bcast_length_fn bcast_null_to_text ALIAS_OF(bcast_null_to_char);
bcast_length_fn bcast_null_to_blob ALIAS_OF(bcast_null_to_char);

int32_t bcast_null_to_dec(void *, void *, const bdta3_col *, int32_t, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_null_to_int(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}
bcast_plain_fn bcast_null_to_tinyint ALIAS_OF(bcast_null_to_int);
bcast_plain_fn bcast_null_to_smallint ALIAS_OF(bcast_null_to_int);

int32_t bcast_null_to_int64(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_null_to_float(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_null_to_double(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_null_to_bit(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_null_to_date(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}
bcast_plain_fn bcast_null_to_time ALIAS_OF(bcast_null_to_date);
bcast_plain_fn bcast_null_to_time_tz ALIAS_OF(bcast_null_to_date);
bcast_plain_fn bcast_null_to_datetime ALIAS_OF(bcast_null_to_date);
bcast_plain_fn bcast_null_to_datetime_tz ALIAS_OF(bcast_null_to_date);

int32_t bcast_null_to_ivym(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}

int32_t bcast_null_to_ivdt(void *, void *, const bdta3_col *, bdta3_col *dst, uint16_t rows)
{
    return make_null(dst, rows);
}
