// Temporal values and intervals.

#include "bench/with_services.h"

#include <services/decimal.h>
#include <services/interval.h>
#include <services/temporal.h>

#include <cstdio>

namespace {

using namespace bench;

// Datetimes of the years 1970 to 2069, with so many fraction digits, with a zone or without; or dates alone.
enum class shape { date, datetime, datetime_tz };

auto temporal_texts(shape which)
{
    return [which] {
        std::mt19937 random(16);
        const auto below = [&](unsigned limit) { return unsigned(random() % limit); };
        return texts(36, [&](uint32_t, char *text) {
            int len = std::snprintf(text, 36, "%04u-%02u-%02u", 1970 + below(100), 1 + below(12), 1 + below(28));
            if (which != shape::date)
                len += std::snprintf(text + len, 36 - size_t(len), " %02u:%02u:%02u.%06u", below(24), below(60),
                                     below(60), below(1000000));
            if (which == shape::datetime_tz)
                len += std::snprintf(text + len, 36 - size_t(len), "%c%02u:%02u", "+-"[below(2)], below(14),
                                     15 * below(4));
            return len;
        });
    };
}

auto temporal_values(shape which, bcast_temporal_type type)
{
    return [=] {
        const auto from = temporal_texts(which)();
        return numbers([&](uint32_t r) {
            vqtime value;
            int32_t unused;
            must_succeed(vqtime_from_char_ex2(from.values[r].text, from.values[r].length,
                                              which == shape::date ? TYPE_DATE : TYPE_DATETIME, &value, &unused));
            vqtime_reset(&value, type);
            return value;
        });
    };
}

const auto dates = temporal_values(shape::date, TYPE_DATE);
const auto times = temporal_values(shape::datetime, TYPE_TIME);
const auto datetimes = temporal_values(shape::datetime, TYPE_DATETIME);
const auto datetimes_tz = temporal_values(shape::datetime_tz, TYPE_DATETIME_TZ);

// The embedded parsers need no NUL: the bare call takes the text where it stands.
void read_staged(const batch &b)
{
    auto *to = target_elements<vqtime>(b);
    each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
        must_succeed(char_to_date_simple_with_alen(from.text, from.length, nullptr, 0, to + row, 0));
        vqtime_glgl_adjust_ignore(to + row);
    });
}

// The same, and the question for the zone, which none of these texts has.
void read_staged_zone(const batch &b)
{
    auto *to = target_elements<vqtime>(b);
    each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
        must_succeed(char_to_date_simple_with_alen(from.text, from.length, nullptr, 0, to + row, 0));
        if (vqtime_get_tz(to + row) != TZ_NO_SHIFT)
            std::abort();
        vqtime_glgl_adjust_ignore(to + row);
    });
}

void read_dates(const batch &b)
{
    auto *to = target_elements<vqtime>(b);
    each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
        int32_t unused;
        must_succeed(vqtime_from_char_ex2(from.text, from.length, TYPE_DATE, to + row, &unused));
        vqtime_glgl_adjust_ignore(to + row);
    });
}

constexpr int16_t two_hours = 120;

void read_local_datetimes(const batch &b)
{
    auto *to = target_elements<vqtime>(b);
    each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
        int32_t unused;
        must_succeed(vqtime_from_char_ex2(from.text, from.length, TYPE_DATETIME, to + row, &unused));
        const auto zone = int16_t(vqtime_get_tz(to + row));
        if (zone != TZ_NO_SHIFT)
            vqtime_add_by_fmt(to + row, FIELD_MINUTE, two_hours - zone, to + row);
        vqtime_glgl_adjust_ignore(to + row);
    });
}

void write_date(const vqtime &value, char *text)
{
    vqdt_decoded decoded;
    vqdt_date_encode_fast(&value, &decoded);
    vq_date_to_char(&decoded, text);
}

void write_time(const vqtime &value, char *text)
{
    vqdt_decoded decoded;
    vqdt_time_encode_fast(&value, &decoded);
    vq_time_to_char(&decoded, text, 0);
}

void write_datetime(const vqtime &value, char *text)
{
    vqdt_decoded decoded;
    vqdt_encode_fast(&value, &decoded);
    vqdt_to_char(&decoded, text, 0);
}

void write_datetime_tz(const vqtime &value, char *text) { vqtime_tz_to_char(&value, TYPE_DATETIME_TZ, 6, text); }

using writer = void(const vqtime &value, char *text);

template <writer write> void write_large_objects(const batch &b)
{
    large_object object;
    each_present<vqtime>(b, [&](const vqtime &value, int32_t row) {
        char text[BCAST_TEXT_ROOM];
        write(value, text);
        object.store(b, row, text, int32_t(std::strlen(text)));
        object.clear(b);
    });
}

// `change(element)` is what happens to a copy.
template <class Change> auto change_each(Change change)
{
    return [change](const batch &b) {
        auto *to = target_elements<vqtime>(b);
        each_present<vqtime>(b, [&](const vqtime &value, int32_t row) {
            to[row] = value;
            change(to + row);
        });
    };
}

// Beside the bytes that a copy moves.
void add_copy(const char *what, bcast_plain_fn *cast)
{
    for (const series &s : dense_series(what)) {
        add_run(s, "cast", BCAST_DATETIME, datetimes, stopping(cast));
        add_run(s, "memcpy", BCAST_DATETIME, datetimes, [](const batch &b) {
            std::memcpy(b.dst->data->values, b.src->data->values, b.rows * sizeof(vqtime));
            std::memcpy(b.dst->data->flags, b.src->data->flags, b.rows);
        });
    }
}

// Numbers that read as dates, YYYYMMDD, or as datetimes, YYYYMMDDHHMMSS.
template <class Int> auto temporal_numbers(shape which)
{
    return [which] {
        return numbers([which, random = std::mt19937(19)](uint32_t) mutable {
            const auto below = [&](uint32_t limit) { return Int(random() % limit); };
            Int number = 1970 + below(100);
            number = number * 100 + 1 + below(12);
            number = number * 100 + 1 + below(28);
            if (which == shape::date)
                return number;
            for (uint32_t limit : {24u, 60u, 60u})
                number = number * 100 + below(limit);
            return number;
        });
    };
}

template <class Int, int32_t (*read)(int64_t, vqtime *)> void read_numbers(const batch &b)
{
    auto *to = target_elements<vqtime>(b);
    each_present<Int>(b, [&](Int value, int32_t row) { must_succeed(read(value, to + row)); });
}

// Nine digits of the leading field, six of the fraction.
constexpr uint16_t shape_of(bcast_interval_shape shape) { return BCAST_IV_WORD(shape, 9, 6); }
constexpr uint16_t year_to_month = shape_of(IV_YEAR_TO_MONTH), day_to_second = shape_of(IV_DAY_TO_SECOND),
                   seconds = shape_of(IV_SECOND);

source<bdta3_str> month_texts()
{
    return texts(32, [random = std::mt19937(20)](uint32_t, char *text) mutable {
        const auto months = unsigned(random() % 1200);
        return std::snprintf(text, 32, "%u-%u", months / 12, months % 12);
    });
}

source<bdta3_str> second_texts()
{
    return texts(32, [random = std::mt19937(21)](uint32_t, char *text) mutable {
        const auto below = [&](unsigned limit) { return unsigned(random() % limit); };
        return std::snprintf(text, 32, "%u %02u:%02u:%02u.%06u", below(100), below(24), below(60), below(60),
                             below(1000000));
    });
}

source<ivym> months()
{
    return numbers([from = month_texts()](uint32_t r) {
        ivym value;
        must_succeed(vq_interval_ym_from_char(nullptr, from.values[r].text, &value, year_to_month));
        return value;
    });
}

source<ivdt> days_and_times()
{
    return numbers([from = second_texts()](uint32_t r) {
        ivdt value;
        must_succeed(vq_interval_dt_from_char(nullptr, from.values[r].text, &value, day_to_second));
        return value;
    });
}

// The texts have a NUL behind them: the bare call takes them where they stand.
template <class Interval, int32_t (*parse)(void *, const char *, Interval *, uint16_t), uint16_t word>
void read_intervals(const batch &b)
{
    auto *to = target_elements<Interval>(b);
    each_present<bdta3_str>(
        b, [&](const bdta3_str &from, int32_t row) { must_succeed(parse(nullptr, from.text, to + row, word)); });
}

template <class Interval, int32_t (*write)(const Interval *, char *, uint16_t), uint16_t word>
void write_intervals(const batch &b)
{
    each_present<Interval>(b, [&](const Interval &value, int32_t row) {
        char text[BCAST_TEXT_ROOM];
        write(&value, text, word);
        bdta3_col_assign_str(nullptr, b.heap, b.dst, row, text, int32_t(std::strlen(text)), 0);
    });
}

auto stopping(bcast_scaled_fn *cast, uint16_t word)
{
    return [=](const batch &b) { must_succeed(cast(nullptr, b.heap, b.src, b.dst, b.rows, 0, word, 0, word)); };
}

auto stopping(bcast_scaled_capture_fn *cast, uint16_t src_scale, uint16_t dst_scale)
{
    return [=](const batch &b) {
        must_succeed(cast(nullptr, b.heap, b.src, b.dst, b.rows, 0, src_scale, 0, dst_scale, nullptr, nullptr));
    };
}

auto stopping(bcast_scaled_text_fn *cast, uint16_t word, uint16_t length)
{
    return [=](const batch &b) { must_succeed(cast(nullptr, b.heap, b.src, b.dst, b.rows, 0, word, length)); };
}

using bench::stopping;

void add_texts()
{
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
        read_staged_zone);
    add_beside_bare("varchar2_to_date", BCAST_DATE, temporal_texts(shape::date), stopping(bcast_varchar2_to_date),
                    read_dates);
    const auto to_local = [](const batch &b) {
        must_succeed(bcast_varchar_to_timestamp_local_time_zone(nullptr, b.heap, b.src, b.dst, b.rows, nullptr, nullptr,
                                                                two_hours));
    };
    add_beside_bare("varchar_to_timestamp_local_time_zone", BCAST_DATETIME, temporal_texts(shape::datetime), to_local,
                    read_local_datetimes);
    add_beside_bare("varchar_to_timestamp_local_time_zone, moved", BCAST_DATETIME, temporal_texts(shape::datetime_tz),
                    to_local, read_local_datetimes);

    add_selected_beside_bare("date_to_text", BCAST_TEXT, dates, stopping(bcast_date_to_text),
                             write_large_objects<write_date>);
    add_beside_bare("time_to_text", BCAST_TEXT, times, stopping(bcast_time_to_text), write_large_objects<write_time>);
    add_beside_bare("datetime_to_text", BCAST_TEXT, datetimes, stopping(bcast_datetime_to_text),
                    write_large_objects<write_datetime>);
    add_beside_bare("datetime_tz_to_text", BCAST_TEXT, datetimes_tz, stopping(bcast_datetime_tz_to_text),
                    write_large_objects<write_datetime_tz>);
    add_beside_bare("datetime_to_varchar_ex", BCAST_VARCHAR, datetimes, stopping(bcast_datetime_to_varchar_ex, 32),
                    [](const batch &b) {
                        each_present<vqtime>(b, [&](const vqtime &value, int32_t row) {
                            char text[BCAST_TEXT_ROOM];
                            write_datetime(value, text);
                            bdta3_col_assign_str(nullptr, b.heap, b.dst, row, text, int32_t(std::strlen(text)), 0);
                        });
                    });
}

void add_values()
{
    add_beside_bare("int_to_date", BCAST_DATE, temporal_numbers<int32_t>(shape::date), stopping(bcast_int_to_date),
                    read_numbers<int32_t, vqtime_from_long>);
    add_beside_bare("int64_to_datetime", BCAST_DATETIME, temporal_numbers<int64_t>(shape::datetime),
                    stopping(bcast_int64_to_datetime), read_numbers<int64_t, time_from_long>);

    add_beside_bare("datetime_to_date", BCAST_DATE, datetimes, stopping(bcast_datetime_to_date),
                    change_each([](vqtime *value) { vqtime_reset(value, TYPE_DATE); }));
    add_beside_bare("date_to_datetime_tz", BCAST_DATETIME_TZ, dates, stopping(bcast_date_to_datetime_tz),
                    change_each([](vqtime *value) { vqtime_set_tz(value, 0); }));
    add_beside_bare("precise_datetime_to_datetime, 6 to 3 digits", BCAST_DATETIME, datetimes,
                    stopping(bcast_precise_datetime_to_datetime, 6, 3), [](const batch &b) {
                        auto *to = target_elements<vqtime>(b);
                        each_present<vqtime>(b, [&](const vqtime &value, int32_t row) {
                            must_succeed(vqtime_round_by_prec(&value, 3, to + row));
                            vqtime_reset(to + row, TYPE_DATETIME);
                        });
                    });
    // To zone 0, which the pool has.
    add_beside_bare("precise_datetime_tz_to_tltz", BCAST_DATETIME_TZ, datetimes_tz,
                    stopping(bcast_precise_datetime_tz_to_tltz, 6, 6), [](const batch &b) {
                        auto *to = target_elements<vqtime>(b);
                        each_present<vqtime>(b, [&](const vqtime &value, int32_t row) {
                            const auto zone = int16_t(vqtime_get_tz(&value));
                            must_succeed(vqtime_add_by_fmt(&value, FIELD_MINUTE, -zone, to + row));
                        });
                    });
    add_copy("date_to_datetime", bcast_date_to_datetime);
}

void add_intervals()
{
    add_beside_bare("varchar_to_ivym", BCAST_IVYM, month_texts, stopping(bcast_varchar_to_ivym, 0, year_to_month),
                    read_intervals<ivym, vq_interval_ym_from_char, year_to_month>);
    add_beside_bare("varchar_to_ivdt", BCAST_IVDT, second_texts, stopping(bcast_varchar_to_ivdt, 0, day_to_second),
                    read_intervals<ivdt, vq_interval_dt_from_char, day_to_second>);
    add_beside_bare("iv_ym_to_varchar", BCAST_VARCHAR, months, stopping(bcast_iv_ym_to_varchar, year_to_month, 32),
                    write_intervals<ivym, vq_interval_ym_to_char, year_to_month>);
    add_beside_bare("iv_dt_to_varchar", BCAST_VARCHAR, days_and_times,
                    stopping(bcast_iv_dt_to_varchar, day_to_second, 32),
                    write_intervals<ivdt, vq_interval_dt_to_char, day_to_second>);
    add_beside_bare("iv_dt_to_dt, to seconds", BCAST_IVDT, days_and_times, stopping(bcast_iv_dt_to_dt, seconds),
                    [](const batch &b) {
                        auto *to = target_elements<ivdt>(b);
                        each_present<ivdt>(b, [&](const ivdt &value, int32_t row) {
                            to[row].iv_word = seconds;
                            must_succeed(cast_interval_dt(to + row, &value, 1));
                        });
                    });
    constexpr uint16_t month_count = shape_of(IV_MONTH);
    add_beside_bare(
        "int_to_ivym", BCAST_IVYM,
        [] { return numbers([random = std::mt19937(22)](uint32_t) mutable { return int32_t(random() % 1200); }); },
        stopping(bcast_int_to_ivym, month_count),
        [](const batch &b) {
            auto *to = target_elements<ivym>(b);
            each_present<int32_t>(b, [&](int32_t value, int32_t row) {
                vqdt_clear_interval_ym_info(to + row);
                to[row].month = value;
                to[row].iv_word = month_count;
                must_succeed(interval_ym_validate(to + row, month_count));
            });
        });
    // Up to a thousand seconds with six digits behind the point.
    add_beside_bare(
        "dec_to_ivdt, seconds", BCAST_IVDT,
        [] {
            return numbers([random = std::mt19937(23)](uint32_t) mutable {
                xdec made;
                must_succeed(xdec_from_double_with_len_prec(double(random() % 1000000000) / 1e6, 18, 6, &made));
                return made;
            });
        },
        stopping(bcast_dec_to_ivdt, seconds),
        [](const batch &b) {
            auto *to = target_elements<ivdt>(b);
            each_present<xdec>(b, [&](const xdec &value, int32_t row) {
                int32_t status;
                const double number = xdec_get_double(&value, &status);
                must_succeed(status);
                int64_t whole;
                must_succeed(xdec_get_int64(&value, &whole));
                vqdt_clear_interval_dt_info(to + row);
                const auto millionths = int32_t(number * 1e6);
                to[row].second = millionths / 1000000;
                to[row].fraction = millionths % 1000000;
                to[row].iv_word = seconds;
                must_succeed(interval_dt_validate(to + row, seconds));
            });
        });
}

const bool added = [] {
    add_texts();
    add_values();
    add_intervals();
    return true;
}();

} // namespace
