// Hexadecimal text, with or without 0x in front, into binary and varbinary. All character sources go this way. A binary
// target is filled up with zeros, behind the decoded bytes and in their buffer, so that length may be BCAST_BINARY_MAX
// at most; that is not tested. The plain forms refuse a value that is too long, the explicit forms cut it.

#include "machine/short_copy.h"
#include "src/frame/alias.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/binary.h>
#include <services/column.h>

namespace {

int32_t has_prefix(const char *text, uint32_t len) { return len >= 2 && text[0] == '0' && (text[1] & 0xDF) == 'X'; }

enum class too_long { fails, is_cut };
enum class too_short { stays, is_filled };

template <too_long rule_above, too_short rule_below> struct decode_rows {
    template <machine::level level>
    ALWAYS_INLINE static int32_t at(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                    uint16_t rows, capture failures)
    {
        using copies = machine::short_copies<level>;
        const bdta3_str *from = elements<bdta3_str>(src);
        const bool empty_is_null =
            rule_below == too_short::stays && global_bcast_var.compat_mode == BCAST_MODE_EMPTY_IS_NULL;
        scratch<nbin> value;

        copy_no_null(src, dst);
        return walk_present_rows(src, dst, rows, failures, [&](uint32_t r, uint32_t i) INLINED {
            const char *text = from[r].text;
            const auto text_len = uint32_t(from[r].length);
            if (empty_is_null && text_len == 0)
                return turn_null(dst, i);
            const int32_t status = nbin_from_char_ex(text, text_len, &value, has_prefix(text, text_len));
            if (status < 0)
                return fail_clearing_flag(dst, i, status);

            int32_t len = value.length;
            if (len > length) {
                if constexpr (rule_above == too_long::fails)
                    return fail_clearing_flag(dst, i, ERR_TRUNCATED);
                len = length;
            } else if (rule_below == too_short::is_filled && len < length) {
                if (copies::fills(uint32_t(length)))
                    copies::copy_filled(value.bytes, value.bytes,
                                        uint32_t(len)); // in place: what is behind becomes zeros
                else
                    memset(value.bytes + len, 0, size_t(length) - size_t(len));
                len = length;
            }
            bdta3_col_assign_bin(env, heap, dst, int32_t(i), value.bytes, len);
            return 0;
        });
    }
};

} // namespace

int32_t bcast_hex_varchar_to_binary(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                    uint16_t rows, int32_t *err_codes, uint16_t *err_count)
{
    return machine::at_best_level<decode_rows<too_long::fails, too_short::is_filled>>(env, heap, src, length, dst, rows,
                                                                                      capture{err_codes, err_count});
}
bcast_length_capture_fn bcast_hex_char_to_binary ALIAS_OF(bcast_hex_varchar_to_binary);
bcast_length_capture_fn bcast_varchar_to_binary ALIAS_OF(bcast_hex_varchar_to_binary);
bcast_length_capture_fn bcast_char_to_binary ALIAS_OF(bcast_hex_varchar_to_binary);
bcast_length_capture_fn bcast_varchar2_to_binary ALIAS_OF(bcast_hex_varchar_to_binary);

int32_t bcast_hex_varchar_to_binary_explicit(void *env, void *heap, const bdta3_col *src, int32_t length,
                                             bdta3_col *dst, uint16_t rows, int32_t *err_codes, uint16_t *err_count)
{
    return machine::at_best_level<decode_rows<too_long::is_cut, too_short::is_filled>>(
        env, heap, src, length, dst, rows, capture{err_codes, err_count});
}

// Into varbinary an empty text is a null where compat_mode is BCAST_MODE_EMPTY_IS_NULL. Into binary it never is.

int32_t bcast_hex_varchar_to_varbinary(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                       uint16_t rows, int32_t *err_codes, uint16_t *err_count)
{
    return machine::at_best_level<decode_rows<too_long::fails, too_short::stays>>(env, heap, src, length, dst, rows,
                                                                                  capture{err_codes, err_count});
}
bcast_length_capture_fn bcast_hex_char_to_varbinary ALIAS_OF(bcast_hex_varchar_to_varbinary);
bcast_length_capture_fn bcast_varchar_to_varbinary ALIAS_OF(bcast_hex_varchar_to_varbinary);
bcast_length_capture_fn bcast_char_to_varbinary ALIAS_OF(bcast_hex_varchar_to_varbinary);
bcast_length_capture_fn bcast_varchar2_to_varbinary ALIAS_OF(bcast_hex_varchar_to_varbinary);

int32_t bcast_hex_varchar_to_varbinary_explicit(void *env, void *heap, const bdta3_col *src, int32_t length,
                                                bdta3_col *dst, uint16_t rows, int32_t *err_codes, uint16_t *err_count)
{
    return machine::at_best_level<decode_rows<too_long::is_cut, too_short::stays>>(env, heap, src, length, dst, rows,
                                                                                   capture{err_codes, err_count});
}
