// Temporal values.

#include "bench/with_services.h"

#include "services/column.h"
#include "services/temporal.h"

#include <cstdio>

namespace {

using namespace bench;

// Datetimes of the years 1970 to 2069, with so many fraction digits, or dates alone.
enum class shape { date, datetime };

auto temporal_texts(shape which)
{
    return [which] {
        std::mt19937 random(16);
        const auto below = [&](unsigned limit) { return unsigned(random() % limit); };
        return texts(32, [&](uint32_t, char *text) {
            int len = std::snprintf(text, 32, "%04u-%02u-%02u", 1970 + below(100), 1 + below(12), 1 + below(28));
            if (which == shape::datetime)
                len += std::snprintf(text + len, 32 - size_t(len), " %02u:%02u:%02u.%06u", below(24), below(60),
                                     below(60), below(1000000));
            return len;
        });
    };
}

auto temporal_values(shape which)
{
    return [which] {
        const auto from = temporal_texts(which)();
        return numbers([&](uint32_t r) {
            vqtime value;
            int32_t unused;
            must_succeed(vqtime_from_char_ex2(from.values[r].text, from.values[r].length,
                                              which == shape::date ? TYPE_DATE : TYPE_DATETIME, &value, &unused));
            return value;
        });
    };
}

vqtime *element(const bare_row &to) { return static_cast<vqtime *>(to.dst->data->values) + to.row; }

// The embedded parsers need no NUL: the bare call takes the text where it stands.
void read_staged(const bdta3_str &from, const bare_row &to)
{
    vqtime value;
    must_succeed(char_to_date_simple_with_alen(from.text, from.length, nullptr, 0, &value, 0));
    vqtime_glgl_adjust_ignore(&value);
    *element(to) = value;
}

void store_large_object(const char *text, const bare_row &to)
{
    static nstr working;
    if (to.row == 0)
        working.outline = working.inline_bytes;
    working.first_word = 0;
    must_succeed(nblob_assign_const(nullptr, to.heap, &working, text, int32_t(std::strlen(text))));
    bdta3_col_assign_bin(nullptr, to.heap, to.dst, to.row, working.outline, int32_t(working.length));
    nstr_clear(nullptr, to.heap, &working);
}

// Beside the bytes that a copy moves.
void add_copy(const char *what, bcast_plain_fn *cast)
{
    for (const series &s : dense_series(what)) {
        const auto pool = [=] {
            return std::make_shared<service_pool<vqtime>>(s, BCAST_DATETIME, temporal_values(shape::datetime)());
        };
        add(s, "cast", [=] {
            return [p = pool(), cast] {
                p->each_batch([cast](const batch &b) { must_succeed(cast(nullptr, b.heap, b.src, b.dst, b.rows)); });
            };
        });
        add(s, "memcpy", [=] {
            return [p = pool()] {
                p->each_batch([](const batch &b) {
                    std::memcpy(b.dst->data->values, b.src->data->values, b.rows * sizeof(vqtime));
                    std::memcpy(b.dst->data->flags, b.src->data->flags, b.rows);
                });
            };
        });
    }
}

const bool added = [] {
    add_beside_bare(
        "char_to_date_fast", BCAST_DATE, temporal_texts(shape::date),
        [](const batch &b) {
            must_succeed(bcast_char_to_date_fast(nullptr, b.heap, b.src, b.dst, 0, nullptr, b.rows, nullptr, nullptr));
        },
        read_staged);
    add_beside_bare(
        "char_to_tltz_fast", BCAST_DATETIME, temporal_texts(shape::datetime),
        [](const batch &b) {
            must_succeed(
                bcast_char_to_tltz_fast(nullptr, b.heap, b.src, b.dst, 0, nullptr, b.rows, nullptr, nullptr, 0));
        },
        read_staged);
    add_beside_bare(
        "date_to_text", BCAST_TEXT, temporal_values(shape::date),
        [](const batch &b) { must_succeed(bcast_date_to_text(nullptr, b.heap, b.src, b.dst, b.rows)); },
        [](const vqtime &value, const bare_row &to) {
            vqdt_decoded decoded;
            char text[504];
            vqdt_date_encode_fast(&value, &decoded);
            vq_date_to_char(&decoded, text);
            store_large_object(text, to);
        });
    add_beside_bare(
        "datetime_to_text", BCAST_TEXT, temporal_values(shape::datetime),
        [](const batch &b) { must_succeed(bcast_datetime_to_text(nullptr, b.heap, b.src, b.dst, b.rows)); },
        [](const vqtime &value, const bare_row &to) {
            vqdt_decoded decoded;
            char text[504];
            vqdt_encode_fast(&value, &decoded);
            vqdt_to_char(&decoded, text, 0);
            store_large_object(text, to);
        });
    add_beside_bare(
        "datetime_to_date", BCAST_DATE, temporal_values(shape::datetime),
        [](const batch &b) { must_succeed(bcast_datetime_to_date(nullptr, b.heap, b.src, b.dst, b.rows)); },
        [](const vqtime &value, const bare_row &to) {
            *element(to) = value;
            vqtime_reset(element(to), TYPE_DATE);
        });
    add_beside_bare(
        "precise_datetime_to_datetime, 6 to 3 digits", BCAST_DATETIME, temporal_values(shape::datetime),
        [](const batch &b) {
            must_succeed(bcast_precise_datetime_to_datetime(nullptr, b.heap, b.src, b.dst, b.rows, 0, 6, 0, 3, nullptr,
                                                            nullptr));
        },
        [](const vqtime &value, const bare_row &to) {
            must_succeed(vqtime_round_by_prec(&value, 3, element(to)));
            vqtime_reset(element(to), TYPE_DATETIME);
        });
    add_copy("date_to_datetime", bcast_date_to_datetime);
    return true;
}();

} // namespace
