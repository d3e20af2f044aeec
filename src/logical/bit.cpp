// Casts to bit, and from bit to numbers; those to characters and dec stand with the integers. A number becomes a bit by
// a test for zero, a text by a scan of its digits.

#include "src/frame/alias.h"
#include "src/frame/block_walk.h"
#include "src/frame/common_runs.h"
#include "src/frame/row_walk.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/numeric.h>

namespace {

// Decimal digits, any number of them, with blanks behind: no sign, no blank in front. 1 if one of them is not 0; blanks
// alone are 0. False at a byte that is no digit, with what the digits before it make.
bool scan_bit(const bdta3_str &from, int32_t &bit)
{
    int32_t last = from.length - 1;
    while (last >= 0 && from.text[last] == ' ')
        last--;
    bit = 0;
    for (int32_t k = 0; k <= last; k++) {
        if (from.text[k] < '0' || from.text[k] > '9')
            return false;
        if (from.text[k] != '0')
            bit = 1;
    }
    return true;
}

} // namespace

int32_t bcast_tinyint_to_bit(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int_is_true>(src, dst, rows);
}

int32_t bcast_smallint_to_bit(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int_is_true>(src, dst, rows);
}

int32_t bcast_int_to_bit(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int_is_true>(src, dst, rows);
}
bcast_plain_fn bcast_int_to_varbit ALIAS_OF(bcast_int_to_bit);

int32_t bcast_int64_to_bit(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<int64_is_true>(src, dst, rows);
}

int32_t bcast_float_to_bit(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<float_is_true>(src, dst, rows);
}

// A value that the predicate refuses is ERR_OVERFLOW, whatever the predicate's code.
int32_t bcast_double_to_bit(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const double *from = elements<double>(src);
    int32_t *to = elements<int32_t>(dst);

    return walk_then_copy_no_null(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        if (ntype_is_double_overflow(from[r]) < 0)
            return int32_t(ERR_OVERFLOW);
        to[i] = from[r] != 0;
        return 0;
    });
}

// By byte 0, which is 0x80 for zero, where bcast_dec_to_boolean goes by byte 1.
int32_t bcast_dec_to_bit(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const xdec *from = elements<xdec>(src);
    int32_t *to = elements<int32_t>(dst);

    return walk_then_copy_no_null(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        to[i] = from[r].bytes[0] != 0x80;
        return 0;
    });
}

// An empty text is a null whose element becomes 0, in all three casts from text; they differ in what they do to
// no_null. Here it is copied ahead of the walk, and an empty text clears it.
int32_t bcast_char_to_bit(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    int32_t *to = elements<int32_t>(dst);

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        if (from[r].length == 0) {
            to[i] = 0;
            return turn_null(dst, i);
        }
        int32_t bit;
        if (!scan_bit(from[r], bit))
            return int32_t(ERR_BAD_CONVERSION);
        to[i] = bit;
        return 0;
    });
}

// Here no_null is not copied, and an empty text clears it. A captured failure writes the element with the bit as it
// stood at the bad byte.
int32_t bcast_varchar_to_bit(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, int32_t *err_codes,
                             uint16_t *err_count)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    int32_t *to = elements<int32_t>(dst);

    return walk_present_rows(src, dst, rows, capture{err_codes, err_count}, [&](uint32_t r, uint32_t i) {
        if (from[r].length == 0) {
            to[i] = 0;
            return turn_null(dst, i);
        }
        int32_t bit;
        const bool good = scan_bit(from[r], bit);
        if (good || err_codes)
            to[i] = bit;
        return good ? 0 : int32_t(ERR_BAD_CONVERSION);
    });
}

// Here no_null is not written at all, not even for an empty text.
int32_t bcast_varchar2_to_bit(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    int32_t *to = elements<int32_t>(dst);

    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        if (from[r].length == 0) {
            to[i] = 0;
            dst->data->flags[i] = 0;
            return 0;
        }
        int32_t bit;
        if (!scan_bit(from[r], bit))
            return int32_t(ERR_BAD_CONVERSION);
        to[i] = bit;
        return 0;
    });
}

// From bit. Nothing makes 0 or 1 of a slot that holds something else.

int32_t bcast_bit_to_bit(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_by_no_null<copy4>(src, dst, rows);
}

int32_t bcast_bit_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_by_no_null<low8>(src, dst, rows);
}

int32_t bcast_bit_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_by_no_null<low16>(src, dst, rows);
}

int32_t bcast_bit_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_by_no_null<copy4>(src, dst, rows);
}

int32_t bcast_bit_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_by_no_null<widen>(src, dst, rows);
}

int32_t bcast_bit_to_float(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_by_no_null<int_to_float>(src, dst, rows);
}

int32_t bcast_bit_to_double(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks_by_no_null<int_to_double>(src, dst, rows);
}
