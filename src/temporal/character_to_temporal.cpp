// Text into dates, and into timestamps that are moved to a local zone. There are two parsers. The _fast casts give
// theirs a terminated copy, with two arguments of the caller, and refuse text of BCAST_DATE_TEXT_LIMIT bytes or more;
// the others give the element's own text.

#include "machine/short_copy.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/temporal.h>

namespace {

// Gives what the parser gave, or refuses what it may not get.
template <machine::level level> auto staging_parser(uint16_t parse_word, void *parse_ptr, char *staged)
{
    using copies = machine::short_copies<level>;
    return [=](const bdta3_str &text, vqtime *value) INLINED -> int32_t {
        const int32_t length = text.length;
        const auto len = uint32_t(length);
        if (copies::fills(len + 1)) [[likely]] {
            copies::copy_filled(staged, text.text, len);
        } else if (len < BCAST_DATE_TEXT_LIMIT) {
            memcpy(staged, text.text, len);
            staged[len] = '\0';
        } else {
            return ERR_BAD_DATETIME;
        }
        return char_to_date_simple_with_alen(staged, length, parse_ptr, parse_word, value, 0);
    };
}

template <bcast_temporal_type type> int32_t parse_in_place(const bdta3_str &text, vqtime *value)
{
    int32_t unused;
    return vqtime_from_char_ex2(text.text, text.length, type, value, &unused);
}

struct leave_zone {
    void operator()(vqtime *) const {}
};

// Moves a value to the zone, but for one whose zone reads TZ_NO_SHIFT. That the shift fails is no failure of the row:
// the value is what the service left.
struct move_to {
    int16_t local_tz;

    void operator()(vqtime *value) const
    {
        const auto zone = int16_t(vqtime_get_tz(value));
        if (zone != TZ_NO_SHIFT)
            vqtime_add_by_fmt(value, FIELD_MINUTE, local_tz - zone, value);
    }
};

// The conversion of a present row. Empty text is a null, and so is what the parser says
// denotes no value. One record takes every parse of a batch.
template <class Parse, class Move>
auto row_reader(const bdta3_col *src, bdta3_col *dst, Parse parse, Move move, vqtime *value)
{
    return [=, from = elements<bdta3_str>(src), to = elements<vqtime>(dst)](uint32_t r, uint32_t i) INLINED {
        if (from[r].length == 0)
            return turn_null(dst, i);
        const int32_t status = parse(from[r], value);
        if (status < 0)
            return status;
        if (status == PARSE_NULL)
            return turn_null(dst, i);
        move(value);
        vqtime_glgl_adjust_ignore(value);
        to[i] = *value;
        return 0;
    };
}

// The _fast casts, which differ in what becomes of a value's zone.
template <class Move> struct read_staged_rows {
    template <machine::level level>
    ALWAYS_INLINE static int32_t at(const bdta3_col *src, bdta3_col *dst, uint16_t parse_word, void *parse_ptr,
                                    uint16_t rows, capture failures, Move move)
    {
        // Not cleared: a row writes what the parser reads.
        scratch<char[BCAST_DATE_TEXT_LIMIT]> staged;
        const auto parse = staging_parser<level>(parse_word, parse_ptr, staged);
        scratch<vqtime> value{};

        copy_no_null(src, dst);
        return walk_filling_flags(src, dst, rows, failures, row_reader(src, dst, parse, move, &value));
    }
};

} // namespace

int32_t bcast_char_to_date_fast(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t parse_word,
                                void *parse_ptr, uint16_t rows, int32_t *err_codes, uint16_t *err_count)
{
    return machine::at_best_level<read_staged_rows<leave_zone>>(src, dst, parse_word, parse_ptr, rows,
                                                                capture{err_codes, err_count}, leave_zone{});
}

int32_t bcast_varchar2_to_date(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    scratch<vqtime> value{};

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{},
                             row_reader(src, dst, parse_in_place<TYPE_DATE>, leave_zone{}, &value));
}

int32_t bcast_char_to_tltz_fast(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t parse_word,
                                void *parse_ptr, uint16_t rows, int32_t *err_codes, uint16_t *err_count,
                                int16_t local_tz)
{
    return machine::at_best_level<read_staged_rows<move_to>>(src, dst, parse_word, parse_ptr, rows,
                                                             capture{err_codes, err_count}, move_to{local_tz});
}

int32_t bcast_varchar_to_timestamp_local_time_zone(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                                   int32_t *err_codes, uint16_t *err_count, int16_t local_tz)
{
    scratch<vqtime> value{};

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, capture{err_codes, err_count},
                             row_reader(src, dst, parse_in_place<TYPE_DATETIME>, move_to{local_tz}, &value));
}
