// Integers to their bytes, most significant first. A varbinary target gets at most the width of the type; a binary
// target gets the bytes right-aligned behind zeros. A value is never refused for its size: it loses its high bytes.
//
// The low 16 bits of length decide how many bytes are kept; what is stored and filled goes by all 32.

#include "machine/short_store.h"
#include "src/frame/alias.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/column.h>
#include <services/numeric.h>

#include <algorithm>

namespace {

// The low `count` bytes of value, at most 8.
void put_bytes(uint8_t *out, uint32_t count, int64_t value)
{
    uint64_t low = uint64_t(value);
    for (uint32_t k = count; k > 0; k--, low >>= 8)
        out[k - 1] = uint8_t(low);
}

// How many bytes of a value so wide a target of that length keeps.
uint32_t kept_bytes(uint32_t width, int32_t length) { return std::min<uint32_t>(width, uint16_t(length)); }

int32_t unchecked(int64_t) { return 0; }

// Asks a service about the value, and stops where it says just ERR_OVERFLOW.
int32_t refuse_overflow(int64_t value)
{
    return ntype_is_lint_overflow(value) == ERR_OVERFLOW ? int32_t(ERR_OVERFLOW) : 0;
}
using check_rule = int32_t(int64_t value);

template <uint32_t width, class Element, check_rule check> struct to_varbinary {
    template <machine::level level>
    ALWAYS_INLINE static int32_t at(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                    uint16_t rows)
    {
        const Element *from = elements<Element>(src);
        const uint32_t kept = kept_bytes(width, length);
        const int32_t stored = kept < width ? length : int32_t(width);
        const uint32_t shift = 64 - 8 * std::max(kept, 1U);
        scratch<uint8_t[machine::short_store_size]> bytes;

        copy_no_null(src, dst);
        return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) INLINED {
            const int32_t status = check(from[r]);
            if (status < 0)
                return fail_clearing_flag(dst, i, status);
            machine::short_stores<level>::store(bytes, __builtin_bswap64(uint64_t(from[r]) << shift), 0, 0);
            bdta3_col_assign_bin(env, heap, dst, int32_t(i), bytes, stored);
            return 0;
        });
    }
};

} // namespace

int32_t bin_from_int_low(uint8_t *out, uint16_t width, uint16_t target_len, int64_t value)
{
    if (width > sizeof value)
        return ERR_OVERFLOW;
    put_bytes(out, std::min(width, target_len), value);
    return 0;
}

int32_t bcast_int64_to_varbinary(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                 uint16_t rows)
{
    return machine::at_best_level<to_varbinary<8, int64_t, unchecked>>(env, heap, src, length, dst, rows);
}

int32_t bcast_int_to_varbinary(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                               uint16_t rows)
{
    return machine::at_best_level<to_varbinary<4, int32_t, unchecked>>(env, heap, src, length, dst, rows);
}

int32_t bcast_smallint_to_varbinary(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                    uint16_t rows)
{
    return machine::at_best_level<to_varbinary<2, int32_t, unchecked>>(env, heap, src, length, dst, rows);
}

// The one that asks a service about the value.
int32_t bcast_tinyint_to_varbinary(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                   uint16_t rows)
{
    return machine::at_best_level<to_varbinary<1, int32_t, refuse_overflow>>(env, heap, src, length, dst, rows);
}

// Always four bytes of a value, also for smallint and tinyint, and always stored at the target's length.
int32_t bcast_int_to_binary(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    constexpr uint32_t width = 4;
    const int32_t *from = elements<int32_t>(src);
    const uint32_t kept = kept_bytes(width, length);
    scratch<uint8_t[BCAST_BINARY_MAX]> image;
    // The zeros in front are the same for every row.
    uint8_t *at = image;
    if (uint16_t(length) > width) {
        memset(image, 0, size_t(length) - width);
        at += length - int32_t(width);
    }

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        put_bytes(at, kept, from[r]);
        bdta3_col_assign_bin(env, heap, dst, int32_t(i), image, length);
        return 0;
    });
}
bcast_length_fn bcast_smallint_to_binary ALIAS_OF(bcast_int_to_binary);
bcast_length_fn bcast_tinyint_to_binary ALIAS_OF(bcast_int_to_binary);

// Right-aligned like the others, but that only the first eight bytes are stored, and counted: of a target longer than
// that the front of the image, which loses low bytes, and from 16 bytes on is all zeros.
int32_t bcast_int64_to_binary(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                              uint16_t rows)
{
    constexpr int32_t width = 8;
    const int64_t *from = elements<int64_t>(src);
    const bool fills = uint16_t(length) >= width;
    const int32_t zeros = fills ? std::min(length - width, width) : 0;
    const uint32_t kept = kept_bytes(width, length);
    scratch<uint8_t[2 * width]> image{};

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        put_bytes(image + zeros, kept, from[r]);
        bdta3_col_assign_bin(env, heap, dst, int32_t(i), image, fills ? width : length);
        return 0;
    });
}
