// Text into float and double: a service reads the number, always as a double. What it may be then differs: a float has
// to pass its predicate; of the casts to double only the one from varchar asks, the others store what was read. The
// service gets the low 16 bits of a length and no more than BCAST_NUMBER_TEXT_MAX bytes, from varchar too.

#include "src/character/sources.h"

#include <bcast/casts.h>
#include <services/numeric.h>
#include <services/text.h>

namespace {

int32_t not_asked(double) { return 0; }
using predicate = int32_t(double value);

// One double takes every parse of a batch: a parser that succeeds without storing leaves the row before.
template <class Element, predicate is_overflow> auto number_reader(bdta3_col *dst)
{
    return [to = elements<Element>(dst), value = 0.0](const bdta3_str &text, uint32_t i) mutable {
        int32_t status = utl_digit_from_char(text.text, parsed_length(text), &value);
        if (status < 0)
            return status;
        status = is_overflow(value);
        if (status < 0)
            return status;
        to[i] = Element(value);
        return 0;
    };
}

} // namespace

int32_t bcast_char_to_float(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_char(src, dst, rows, number_reader<float, ntype_is_float_overflow>(dst));
}

int32_t bcast_char_to_double(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_char(src, dst, rows, number_reader<double, not_asked>(dst));
}

int32_t bcast_varchar_to_float(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, int32_t *err_codes,
                               uint16_t *err_count)
{
    return from_varchar(src, dst, rows, {err_codes, err_count}, number_reader<float, ntype_is_float_overflow>(dst));
}

int32_t bcast_varchar_to_double(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, int32_t *err_codes,
                                uint16_t *err_count)
{
    return from_varchar(src, dst, rows, {err_codes, err_count}, number_reader<double, ntype_is_double_overflow>(dst));
}

int32_t bcast_varchar2_to_float(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_varchar2(src, dst, rows, number_reader<float, ntype_is_float_overflow>(dst));
}

int32_t bcast_varchar2_to_double(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_varchar2(src, dst, rows, number_reader<double, not_asked>(dst));
}
