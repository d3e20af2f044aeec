// Text into intervals, through the parsers. no_null is not copied: it is what the caller has put there, and 0 once a
// row has turned null.

#include "src/frame/alias.h"
#include "src/frame/interval_element.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/interval.h>

namespace {

// Not 11 and 12.
bool is_blank(char c) { return c == ' ' || c == 7 || c == 9 || c == 10 || c == 13; }

// One text at a time with a NUL behind it, or as far as a NUL in it; "0" for one that is all blank. The count of blanks
// does not look at the length: if more blanks follow the text in memory it is larger, and an all-blank text is taken as
// it stands. Whether the buffer is long enough is not tested.
struct staged_text {
    scratch<char[32768 + 1]> bytes;

    void take(const bdta3_str &text)
    {
        int32_t blanks = 0;
        while (is_blank(text.text[blanks]))
            blanks++;
        if (blanks == text.length) {
            strcpy(bytes, "0");
        } else {
            strncpy(bytes, text.text, size_t(text.length));
            bytes[text.length] = '\0';
        }
    }
};

int32_t parse(void *env, const char *text, ivym *interval, uint16_t word)
{
    return vq_interval_ym_from_char(env, text, interval, word);
}
int32_t parse(void *env, const char *text, ivdt *interval, uint16_t word)
{
    return vq_interval_dt_from_char(env, text, interval, word);
}

// `code_of` turns the parser's code into the row's.
template <class Interval, class CodeOf>
int32_t to_interval(void *env, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t iv_word, capture failures,
                    CodeOf code_of)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    Interval *to = elements<Interval>(dst);
    staged_text staged;

    return walk_filling_flags(src, dst, rows, failures, [&](uint32_t r, uint32_t i) {
        if (from[r].length == 0)
            return turn_null(dst, i);
        staged.take(from[r]);
        scratch<Interval> interval;
        const int32_t status = parse(env, staged.bytes, &interval, iv_word);
        if (status < 0)
            return code_of(status);
        store_interval(interval, to + i);
        return 0;
    });
}

} // namespace

int32_t bcast_char_to_ivym(void *env, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t, uint16_t,
                           uint16_t, uint16_t dst_scale, int32_t *err_codes, uint16_t *err_count)
{
    return to_interval<ivym>(env, src, dst, rows, dst_scale, {err_codes, err_count}, [](int32_t code) { return code; });
}
bcast_scaled_capture_fn bcast_varchar_to_ivym ALIAS_OF(bcast_char_to_ivym);
bcast_scaled_capture_fn bcast_varchar2_to_ivym ALIAS_OF(bcast_char_to_ivym);

// Without a selection, in a batch that may hold nulls, the code is always ERR_BAD_INTERVAL; in any other the parser's.
int32_t bcast_char_to_ivdt(void *env, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t, uint16_t,
                           uint16_t, uint16_t dst_scale, int32_t *err_codes, uint16_t *err_count)
{
    const bool own_code = !src->sel && !src->no_null;
    return to_interval<ivdt>(env, src, dst, rows, dst_scale, {err_codes, err_count},
                             [own_code](int32_t code) { return own_code ? int32_t(ERR_BAD_INTERVAL) : code; });
}
bcast_scaled_capture_fn bcast_varchar_to_ivdt ALIAS_OF(bcast_char_to_ivdt);
bcast_scaled_capture_fn bcast_varchar2_to_ivdt ALIAS_OF(bcast_char_to_ivdt);
