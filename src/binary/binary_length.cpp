// Binary values into a binary target, which holds just its length in every row: a short value is filled up with zeros
// that are stored. The casts to varbinary are those of text, which know no filling.

#include "machine/short_copy.h"
#include "src/frame/alias.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/binary.h>
#include <services/column.h>

#include <algorithm>

namespace {

// Stores the first `len` bytes of a value, which are at most `length`, and zeros up to that.
template <machine::level level> class zero_filler {
public:
    ALWAYS_INLINE void store(void *env, void *heap, bdta3_col *dst, uint32_t i, const char *bytes, int32_t len,
                             int32_t length)
    {
        const void *filled = bytes;
        if (len < length) {
            if (copies::fills(uint32_t(length))) [[likely]] {
                copies::copy_filled(pad_, bytes, uint32_t(len));
            } else {
                if (len > 0)
                    memcpy(pad_, bytes, size_t(len));
                memset(pad_ + len, 0, size_t(length) - size_t(len));
            }
            filled = pad_;
        }
        bdta3_col_assign_bin(env, heap, dst, int32_t(i), filled, length);
    }

private:
    using copies = machine::short_copies<level>;

    // Not cleared: a row writes what it stores; a length above is not tested for.
    scratch<uint8_t[NBIN_MAX]> pad_;
};

struct fill_rows {
    template <machine::level level>
    ALWAYS_INLINE static int32_t at(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                    uint16_t rows, capture failures)
    {
        const bdta3_str *from = elements<bdta3_str>(src);
        zero_filler<level> filler;

        copy_no_null(src, dst);
        return walk_present_rows(src, dst, rows, failures, [&](uint32_t r, uint32_t i) INLINED {
            if (from[r].length > length)
                return fail_clearing_flag(dst, i, ERR_TRUNCATED);
            filler.store(env, heap, dst, i, from[r].text, from[r].length, length);
            return 0;
        });
    }
};

// Cuts what is too long: nothing can fail.
struct cut_and_fill_rows {
    template <machine::level level>
    ALWAYS_INLINE static int32_t at(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                    uint16_t rows)
    {
        const bdta3_str *from = elements<bdta3_str>(src);
        zero_filler<level> filler;

        copy_no_null(src, dst);
        return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) INLINED {
            filler.store(env, heap, dst, i, from[r].text, std::min(from[r].length, length), length);
            return 0;
        });
    }
};

} // namespace

int32_t bcast_varbinary_to_binary(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                  uint16_t rows, int32_t *err_codes, uint16_t *err_count)
{
    return machine::at_best_level<fill_rows>(env, heap, src, length, dst, rows, capture{err_codes, err_count});
}
bcast_length_capture_fn bcast_binary_to_binary ALIAS_OF(bcast_varbinary_to_binary);

int32_t bcast_varbinary_to_binary_explicit(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                           uint16_t rows)
{
    return machine::at_best_level<cut_and_fill_rows>(env, heap, src, length, dst, rows);
}
