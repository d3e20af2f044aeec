// Text into decimals of a shape: a service reads and fits the number, and its code is the row's. The element is written
// as a whole, and only where it succeeds. The service gets the low 16 bits of a length and no more than
// BCAST_NUMBER_TEXT_MAX bytes, from varchar too, whose casts to integers hand over the whole length.

#include "src/character/sources.h"
#include "src/frame/decimal_element.h"
#include "src/frame/decimal_shape.h"
#include "src/frame/scratch.h"

#include <bcast/casts.h>
#include <services/decimal.h>

namespace {

auto decimal_reader(int32_t length, bdta3_col *dst)
{
    const decimal_shape shape(length);
    return [shape, to = elements<xdec>(dst)](const bdta3_str &text, uint32_t i) {
        return make_decimal(to + i, [&](xdec *out) {
            return xdec_from_char_with_len_prec(text.text, parsed_length(text), shape.len, shape.prec, out);
        });
    };
}

} // namespace

int32_t bcast_char_to_dec(void *, void *, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return from_char(src, dst, rows, decimal_reader(length, dst));
}

int32_t bcast_varchar_to_dec(void *, void *, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows,
                             int32_t *err_codes, uint16_t *err_count)
{
    return from_varchar(src, dst, rows, {err_codes, err_count}, decimal_reader(length, dst));
}

int32_t bcast_varchar2_to_dec(void *, void *, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return from_varchar2(src, dst, rows, decimal_reader(length, dst));
}
