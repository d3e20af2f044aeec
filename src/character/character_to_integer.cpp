// Text into integers: one service reads the number. How much of the text it gets differs by source: all 32 bits of the
// length from varchar, the low 16 from the others. What else differs by source, sources.h has.

#include "src/character/sources.h"
#include "src/frame/integer_range.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/text.h>

namespace {

int32_t whole(int32_t length) { return length; }
int32_t low_16_bits(int32_t length) { return uint16_t(length); }
using length_rule = int32_t(int32_t length);

template <int bits> using element_of = std::conditional_t<bits == 64, int64_t, int32_t>;

// Reads a text as an integer of so many bits.
template <int bits, length_rule length_of> auto integer_reader(bdta3_col *dst)
{
    return [to = elements<element_of<bits>>(dst)](const bdta3_str &text, uint32_t i) {
        int64_t value;
        const int32_t status = str2int64(text.text, length_of(text.length), &value);
        if (status < 0)
            return status;
        if constexpr (bits < 64) {
            if (excess_of<bits>(value) != 0)
                return int32_t(ERR_OVERFLOW);
        }
        to[i] = element_of<bits>(value);
        return 0;
    };
}

} // namespace

int32_t bcast_char_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_char(src, dst, rows, integer_reader<8, low_16_bits>(dst));
}

int32_t bcast_char_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_char(src, dst, rows, integer_reader<16, low_16_bits>(dst));
}

int32_t bcast_char_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_char(src, dst, rows, integer_reader<32, low_16_bits>(dst));
}

int32_t bcast_char_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_char(src, dst, rows, integer_reader<64, low_16_bits>(dst));
}

int32_t bcast_varchar_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                 int32_t *err_codes, uint16_t *err_count)
{
    return from_varchar(src, dst, rows, {err_codes, err_count}, integer_reader<8, whole>(dst));
}

int32_t bcast_varchar_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                  int32_t *err_codes, uint16_t *err_count)
{
    return from_varchar(src, dst, rows, {err_codes, err_count}, integer_reader<16, whole>(dst));
}

int32_t bcast_varchar_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, int32_t *err_codes,
                             uint16_t *err_count)
{
    return from_varchar(src, dst, rows, {err_codes, err_count}, integer_reader<32, whole>(dst));
}

int32_t bcast_varchar_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, int32_t *err_codes,
                               uint16_t *err_count)
{
    return from_varchar(src, dst, rows, {err_codes, err_count}, integer_reader<64, whole>(dst));
}

int32_t bcast_varchar2_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_varchar2(src, dst, rows, integer_reader<8, low_16_bits>(dst));
}

int32_t bcast_varchar2_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_varchar2(src, dst, rows, integer_reader<16, low_16_bits>(dst));
}

int32_t bcast_varchar2_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_varchar2(src, dst, rows, integer_reader<32, low_16_bits>(dst));
}

int32_t bcast_varchar2_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_varchar2(src, dst, rows, integer_reader<64, low_16_bits>(dst));
}
