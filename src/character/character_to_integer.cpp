// Text into integers. One service reads the number; the three families of sources differ in everything around it:
//
//     source     flags                          length handed to the service   a row that fails
//     char       not read where no_null is set  low 16 bits                    ends the cast
//     varchar    always read                    all 32 bits                    is captured, if err_codes is given
//     varchar2   always read                    low 16 bits                    ends the cast
//
// In all three an empty text is a null, by the whole length word, and no_null is copied ahead of the walk. Blanks that
// a value only counts are not read. A row that fails keeps its flag.

#include "src/frame/integer_range.h"
#include "src/frame/row_walk.h"

#include "services/text.h"

#include <bcast/casts.h>
#include <bcast/codes.h>

namespace {

int32_t whole(int32_t length) { return length; }
int32_t low_16_bits(int32_t length) { return uint16_t(length); }
using length_rule = int32_t(int32_t length);

template <int bits> using element_of = std::conditional_t<bits == 64, int64_t, int32_t>;

// The conversion of one present row to an integer of so many bits.
template <int bits, length_rule length_of> auto integer_reader(const bdta3_col *src, bdta3_col *dst)
{
    return [dst, from = elements<bdta3_str>(src), to = elements<element_of<bits>>(dst)](uint32_t r, uint32_t i) {
        if (from[r].length == 0)
            return turn_null(dst, i);
        int64_t value;
        const int32_t status = str2int64(from[r].text, length_of(from[r].length), &value);
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

template <int bits> int32_t from_char(const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    copy_no_null(src, dst);
    return walk_filling_flags(src, dst, rows, stop{}, integer_reader<bits, low_16_bits>(src, dst));
}

template <int bits>
int32_t from_varchar(const bdta3_col *src, bdta3_col *dst, uint16_t rows, int32_t *err_codes, uint16_t *err_count)
{
    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, capture{err_codes, err_count}, integer_reader<bits, whole>(src, dst));
}

template <int bits> int32_t from_varchar2(const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, integer_reader<bits, low_16_bits>(src, dst));
}

} // namespace

int32_t bcast_char_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_char<8>(src, dst, rows);
}

int32_t bcast_char_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_char<16>(src, dst, rows);
}

int32_t bcast_char_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_char<32>(src, dst, rows);
}

int32_t bcast_char_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_char<64>(src, dst, rows);
}

int32_t bcast_varchar_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                 int32_t *err_codes, uint16_t *err_count)
{
    return from_varchar<8>(src, dst, rows, err_codes, err_count);
}

int32_t bcast_varchar_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                  int32_t *err_codes, uint16_t *err_count)
{
    return from_varchar<16>(src, dst, rows, err_codes, err_count);
}

int32_t bcast_varchar_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, int32_t *err_codes,
                             uint16_t *err_count)
{
    return from_varchar<32>(src, dst, rows, err_codes, err_count);
}

int32_t bcast_varchar_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, int32_t *err_codes,
                               uint16_t *err_count)
{
    return from_varchar<64>(src, dst, rows, err_codes, err_count);
}

int32_t bcast_varchar2_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_varchar2<8>(src, dst, rows);
}

int32_t bcast_varchar2_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_varchar2<16>(src, dst, rows);
}

int32_t bcast_varchar2_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_varchar2<32>(src, dst, rows);
}

int32_t bcast_varchar2_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return from_varchar2<64>(src, dst, rows);
}
