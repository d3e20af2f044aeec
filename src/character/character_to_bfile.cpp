// Text into a bfile locator: a copy of what a service finds valid. A locator that is too long is as bad as one that is
// malformed, by code; the flag of a row that fails stays.

#include "src/frame/row_walk.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/column.h>
#include <services/text.h>

int32_t bcast_varchar_to_bfile(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                               uint16_t rows, int32_t *err_codes, uint16_t *err_count)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    bdta3_str *to = elements<bdta3_str>(dst);

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, capture{err_codes, err_count}, [&](uint32_t r, uint32_t i) {
        auto len = uint32_t(from[r].length);
        int32_t is_null;
        // The service says how much of the text to store, and also what an empty one means.
        if (len > uint32_t(length) || utl_is_valid_bfile_str(from[r].text, &len, &is_null) == 0)
            return int32_t(ERR_BAD_BFILE);
        if (is_null)
            return turn_null(dst, i);
        to[i].length = int32_t(len);
        to[i].pad_len = 0;
        // Whether there was space is not tested: running out of it has no code here, and is left to the service.
        to[i].text = static_cast<char *>(bdta3_col_space_alloc(env, heap, dst->data, int32_t(len)));
        if (len > 0)
            memcpy(to[i].text, from[r].text, len);
        return 0;
    });
}
