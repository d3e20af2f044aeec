// float into numbers, characters and text. Less is asked of a value than of a double: the narrow integers compare with
// limits of their own and cut the fraction off by themselves, dec and the texts ask nothing.

#include "src/frame/alias.h"
#include "src/frame/block_walk.h"
#include "src/frame/common_runs.h"
#include "src/frame/cut.h"
#include "src/frame/decimal_element.h"
#include "src/frame/decimal_shape.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"
#include "src/numeric/floating_to_text.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/decimal.h>
#include <services/numeric.h>

namespace {

// Both limits fit, and so does a NaN.
template <int32_t lowest, int64_t highest>
constexpr auto outside = [](float value) { return uint32_t(value > float(highest)) | uint32_t(value < float(lowest)); };

// The fraction is cut off; a NaN becomes 0. For values that are known to lie between the limits: so the loop becomes
// vector code, which it does not with cut_to.
constexpr auto cut = [](float value) { return int32_t(value == value ? value : 0.0F); };

// The same, but that 2^31, the one value above all integers that is let through, becomes the largest.
constexpr auto cut_saturating = [](float value) {
    constexpr float too_large = 2147483648.0F;
    return value == too_large ? INT32_MAX : cut(value == too_large ? 0.0F : value);
};

RUN bool float_to_tinyint(const float *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    return convert_run(from, flags, to, n, outside<INT8_MIN, INT8_MAX>, cut);
}
RUN bool float_to_smallint(const float *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    return convert_run(from, flags, to, n, outside<INT16_MIN, INT16_MAX>, cut);
}
// There is no float 2147483647: the limit is the next one above.
RUN bool float_to_int(const float *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    return convert_run(from, flags, to, n, outside<INT32_MIN, int64_t(INT32_MAX) + 1>, cut_saturating);
}
RUN void float_to_double(const float *from, const uint8_t *flags, double *to, uint32_t n)
{
    convert_run(from, flags, to, n, low<double>);
}

constexpr auto refuse_nothing = [](float) { return 0; };

} // namespace

// These two convert null rows as well, for nothing can come of it.

int32_t bcast_float_to_float(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_all_blocks<copy4, flags_are::copied>(src, dst, rows); // as bits, so that a NaN stays what it is
}

int32_t bcast_float_to_double(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_all_blocks<float_to_double, flags_are::copied>(src, dst, rows);
}

int32_t bcast_float_to_tinyint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<float_to_tinyint>(src, dst, rows);
}

int32_t bcast_float_to_smallint(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<float_to_smallint>(src, dst, rows);
}

int32_t bcast_float_to_int(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return walk_blocks<float_to_int>(src, dst, rows);
}

// The predicate is asked, but its code is not given on. Whatever it lets pass is converted.
int32_t bcast_float_to_int64(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const float *from = elements<float>(src);
    int64_t *to = elements<int64_t>(dst);

    return walk_then_copy_no_null(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        if (ntype_is_lint64_overflow(from[r]) < 0)
            return int32_t(ERR_OVERFLOW);
        to[i] = cut_to<int64_t>(from[r]);
        return 0;
    });
}

// The service refuses infinity and NaN.
int32_t bcast_float_to_dec(void *, void *, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    const decimal_shape shape(length);
    const float *from = elements<float>(src);
    xdec *to = elements<xdec>(dst);

    return walk_then_copy_no_null(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        return make_decimal(
            to + i, [&](xdec *out) { return xdec_from_double_with_len_prec(from[r], shape.len, shape.prec, out); });
    });
}

int32_t bcast_float_to_char(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return floating_to_characters<float, up_to_length>(env, heap, src, length, dst, rows, refuse_nothing);
}
bcast_length_fn bcast_float_to_varchar2 ALIAS_OF(bcast_float_to_char);

int32_t bcast_float_to_varchar(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                               uint16_t rows)
{
    return floating_to_characters<float, no_blanks>(env, heap, src, length, dst, rows, refuse_nothing);
}

int32_t bcast_float_to_text(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    return floating_to_text<float>(env, heap, src, dst, rows, refuse_nothing);
}
