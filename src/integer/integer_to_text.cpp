// Integers and bit in decimal, into characters and text. Into characters there are two ways, which agree neither in who
// formats nor in the code of a text that does not fit: int and smallint leave digits and limit to a service, tinyint,
// int64 and bit do not. A value is never cut.

#include "machine/digits.h"
#include "machine/short_store.h"
#include "src/frame/alias.h"
#include "src/frame/blanks.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"
#include "src/frame/working_value.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/column.h>
#include <services/text.h>

namespace {

// The text of any integer in words. More than 15 digits take one word more, and are the one thing branched on.
struct decimal_text {
    uint64_t first, second, third = 0;
    int32_t len;

    explicit decimal_text(int64_t value)
    {
        constexpr uint64_t ten_to_15 = 1'000'000'000'000'000, ten_to_16 = 10 * ten_to_15;
        const uint64_t negative = uint64_t(value) >> 63;
        const uint64_t magnitude = (uint64_t(value) ^ (0 - negative)) + negative;
        if (magnitude < ten_to_15) [[likely]] {
            const machine::short_decimal_text text(magnitude, negative);
            first = text.first, second = text.second, len = text.len;
            return;
        }
        const uint64_t head = machine::eight_digits(uint32_t(magnitude / ten_to_16)) | machine::eight_zeros;
        const machine::sixteen_digits rest(magnitude % ten_to_16);
        len = int32_t(machine::digit_count(magnitude) + negative);
        const int skipped = 24 - len;
        first = uint64_t(machine::characters_behind(skipped, head, rest.first)) ^ negative * machine::zero_to_minus;
        second = uint64_t(machine::characters_behind(skipped, rest.first, rest.second));
        third = uint64_t(machine::characters_behind(skipped, rest.second, 0));
    }
};

// int and smallint: a service formats and compares with the target's length, and the code is its own.
template <blanks_rule blanks>
int32_t by_service(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    const int32_t *values = elements<int32_t>(src);
    scratch<char[INT_TEXT_ROOM]> text;

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        int32_t len;
        const int32_t status = str_from_int(values[r], length, text, &len);
        if (status < 0)
            return fail_clearing_flag(dst, i, status);
        bdta3_col_assign_str(env, heap, dst, int32_t(i), text, len, blanks(length, len));
        return 0;
    });
}

// tinyint, int64 and bit: formatted here, and refused here when longer than the target.
template <class Element, blanks_rule blanks> struct formatted_here {
    template <machine::level level>
    ALWAYS_INLINE static int32_t at(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                    uint16_t rows)
    {
        const Element *values = elements<Element>(src);
        scratch<char[machine::short_store_size]> text;

        copy_no_null(src, dst);
        return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) INLINED {
            const decimal_text value(values[r]);
            if (length < value.len)
                return fail_clearing_flag(dst, i, ERR_TARGET_TOO_SHORT);
            machine::short_stores<level>::store(text, value.first, value.second, value.third);
            bdta3_col_assign_str(env, heap, dst, int32_t(i), text, value.len, blanks(length, value.len));
            return 0;
        });
    }
};

// text: a large-object constant. One working value serves the whole batch and is not cleared, as it is by
// store_large_object: what it holds outline at the end is left to the pool.
template <class Element> struct into_text {
    template <machine::level level>
    ALWAYS_INLINE static int32_t at(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                    capture failures)
    {
        const Element *values = elements<Element>(src);
        scratch<char[machine::short_store_size]> text;
        scratch<nstr> working;
        set_up(working);

        copy_no_null(src, dst);
        return walk_present_rows(src, dst, rows, failures, [&](uint32_t r, uint32_t i) INLINED {
            const decimal_text value(values[r]);
            machine::short_stores<level>::store(text, value.first, value.second, value.third);
            working.first_word = 0;
            const int32_t status = nblob_assign_const(env, heap, &working, text, value.len);
            if (status < 0)
                return fail_clearing_flag(dst, i, status);
            bdta3_col_assign_bin(env, heap, dst, int32_t(i), bytes_of(working), int32_t(working.length));
            return 0;
        });
    }
};

} // namespace

int32_t bcast_int_to_char(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return by_service<up_to_length>(env, heap, src, length, dst, rows);
}
bcast_length_fn bcast_int_to_varchar2 ALIAS_OF(bcast_int_to_char);
bcast_length_fn bcast_smallint_to_char ALIAS_OF(bcast_int_to_char);
bcast_length_fn bcast_smallint_to_varchar2 ALIAS_OF(bcast_int_to_char);

int32_t bcast_int_to_varchar(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return by_service<no_blanks>(env, heap, src, length, dst, rows);
}
bcast_length_fn bcast_smallint_to_varchar ALIAS_OF(bcast_int_to_varchar);

int32_t bcast_tinyint_to_char(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                              uint16_t rows)
{
    return machine::at_best_level<formatted_here<int32_t, up_to_length>>(env, heap, src, length, dst, rows);
}
bcast_length_fn bcast_tinyint_to_varchar2 ALIAS_OF(bcast_tinyint_to_char);

int32_t bcast_tinyint_to_varchar(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                 uint16_t rows)
{
    return machine::at_best_level<formatted_here<int32_t, no_blanks>>(env, heap, src, length, dst, rows);
}

int32_t bcast_int64_to_char(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return machine::at_best_level<formatted_here<int64_t, up_to_length>>(env, heap, src, length, dst, rows);
}
bcast_length_fn bcast_int64_to_varchar2 ALIAS_OF(bcast_int64_to_char);

int32_t bcast_int64_to_varchar(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                               uint16_t rows)
{
    return machine::at_best_level<formatted_here<int64_t, no_blanks>>(env, heap, src, length, dst, rows);
}

int32_t bcast_bit_to_char(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return machine::at_best_level<formatted_here<int32_t, up_to_length>>(env, heap, src, length, dst, rows);
}
bcast_length_fn bcast_bit_to_varchar2 ALIAS_OF(bcast_bit_to_char);

int32_t bcast_bit_to_varchar(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst, uint16_t rows)
{
    return machine::at_best_level<formatted_here<int32_t, no_blanks>>(env, heap, src, length, dst, rows);
}

int32_t bcast_int_to_text(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                          int32_t *err_codes, uint16_t *err_count)
{
    return machine::at_best_level<into_text<int32_t>>(env, heap, src, dst, rows, capture{err_codes, err_count});
}
bcast_capture_fn bcast_smallint_to_text ALIAS_OF(bcast_int_to_text);
bcast_capture_fn bcast_tinyint_to_text ALIAS_OF(bcast_int_to_text);

int32_t bcast_int64_to_text(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                            int32_t *err_codes, uint16_t *err_count)
{
    return machine::at_best_level<into_text<int64_t>>(env, heap, src, dst, rows, capture{err_codes, err_count});
}
