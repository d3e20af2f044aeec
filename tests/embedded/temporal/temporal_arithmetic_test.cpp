#include "tests/embedded/temporal/temporal_support.h"

#include <array>
#include <map>
#include <optional>
#include <random>
#include <vector>

namespace bcast::test {

namespace {

// An operation on a value beside its result, and in place, where both have to give the same.
struct outcome {
    int32_t status;
    vqtime value;
};

template <typename Operation> outcome apply(const vqtime &value, Operation operation)
{
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        guarded<vqtime> from(1, edge), to(1, edge);
        from[0] = value;
        from.make_read_only();
        operation(from.data(), to.data());
        EXPECT_TRUE(to.slack_untouched()) << whole(value);
    }
    vqtime in_place = value, beside = unwritten_value();
    const int32_t status = operation(&value, &beside);
    EXPECT_EQ(operation(&in_place, &in_place), status) << whole(value);
    EXPECT_TRUE(same_bytes(in_place, beside))
        << whole(value) << " gives " << whole(beside) << ", and in place " << whole(in_place);
    return {status, beside};
}

outcome shift(const vqtime &value, int64_t amount, int32_t field = FIELD_MINUTE)
{
    return apply(value, [&](const vqtime *from, vqtime *to) { return vqtime_add_by_fmt(from, field, amount, to); });
}

outcome round_to(const vqtime &value, uint16_t digits)
{
    return apply(value, [&](const vqtime *from, vqtime *to) { return vqtime_round_by_prec(from, digits, to); });
}

// Without guards: for many.
std::string shifted(const vqtime &value, int64_t amount)
{
    vqtime result = unwritten_value();
    const int32_t status = vqtime_add_by_fmt(&value, FIELD_MINUTE, amount, &result);
    return status == 0 ? whole(result) : "status " + std::to_string(status) + ", " + whole(result);
}

std::string rounded(const vqtime &value, uint16_t digits)
{
    vqtime result = unwritten_value();
    const int32_t status = vqtime_round_by_prec(&value, digits, &result);
    return status == 0 ? whole(result) : "status " + std::to_string(status) + ", " + whole(result);
}

std::string text_of(const std::optional<temporal_reading> &reading, const vqtime &before)
{
    if (!reading)
        return "status " + std::to_string(ERR_BAD_DATETIME) + ", " + whole(before);
    return whole(record_of(*reading));
}

std::string slow_shifted(const vqtime &value, int64_t amount)
{
    const temporal_reading reading = reading_of(value);
    return text_of(reading_at(instant_of(reading) + std::chrono::minutes(amount), reading.zone), value);
}

std::string slow_rounded(const vqtime &value, uint16_t digits)
{
    using namespace std::chrono;
    const temporal_reading reading = reading_of(value);
    int64_t unit = 1;
    for (int i = digits; i < 6; i++)
        unit *= 10;
    const slow_instant instant = instant_of(reading);
    const int64_t rest = reading.millionths % unit;
    const int64_t up = rest * 2 >= unit && rest > 0 ? unit : 0;
    return text_of(reading_at(instant - microseconds(rest) + microseconds(up), reading.zone), value);
}

vqtime random_value(std::mt19937_64 &random)
{
    const auto first = instant_of({.year = 1}), last = instant_of({.year = 9999, .month = 12, .day = 31});
    const auto span = static_cast<uint64_t>((last - first).count());
    return record_of(*reading_at(first + std::chrono::microseconds(random() % span), int(random() % 1681) - 840));
}

} // namespace

// ---- Zones ---------------------------------------------------------------------

TEST(temporal_zone, every_zone_is_kept_and_nothing_else_changes)
{
    const vqtime before = value_from("2023-07-14 12:34:56.123456-05:00");
    for (int zone = INT16_MIN; zone <= INT16_MAX; zone++) {
        for (const int32_t argument : {zone, zone & 0xFFFF, int32_t(uint32_t(zone & 0xFFFF) | 0x12340000u)}) {
            vqtime value = before;
            vqtime_set_tz(&value, argument);
            ASSERT_EQ(static_cast<int16_t>(vqtime_get_tz(&value)), zone) << "set as " << argument;
            ASSERT_EQ(std::memcmp(value.bytes + 2, before.bytes + 2, 10), 0) << "zone " << zone;
        }
    }
}

TEST(temporal_zone, sets_and_gets_within_the_record)
{
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        guarded<vqtime> value(1, edge);
        value[0] = value_from("12:34:56");
        vqtime_set_tz(value.data(), 60);
        EXPECT_EQ(vqtime_get_tz(value.data()), 60);
        vqtime_reset(value.data(), TYPE_DATETIME);
        EXPECT_EQ(vqtime_get_tz(value.data()), TZ_NO_SHIFT);
        EXPECT_TRUE(value.slack_untouched());
    }
}

// ---- Shifting --------------------------------------------------------------------

TEST(temporal_shift, every_zone_shifts_there_and_back)
{
    for (const std::string text :
         {"2023-07-14 12:34:56.123456Z", "2024-03-01 00:00:00Z", "2024-02-29 23:59:59.999999Z", "2023-03-01 13:59:00Z",
          "2023-12-31 23:59:00Z", "2024-01-01 00:00:00Z", "1900-03-01 00:01:00Z", "12:34:56Z", "0001-01-02 00:00:00Z",
          "9999-12-30 23:59:59Z"}) {
        const vqtime value = value_from(text);
        for (int zone = -840; zone <= 840; zone++) {
            const outcome there = shift(value, zone);
            ASSERT_EQ(there.status, 0) << text << " by " << zone;
            ASSERT_EQ(whole(there.value), slow_shifted(value, zone)) << text << " by " << zone;
            const outcome back = shift(there.value, -zone);
            ASSERT_EQ(back.status, 0) << text << " by " << zone << " and back";
            ASSERT_TRUE(same_bytes(back.value, value))
                << text << " by " << zone << " and back gives " << whole(back.value);
        }
    }
}

TEST(temporal_shift, carries_as_the_date_requires)
{
    struct shift_case {
        const char *before;
        int64_t amount;
        const char *after;
    };
    const shift_case cases[] = {
        {"2023-07-14 12:34:56.5-05:00", 0, "2023-07-14 12:34:56.5-05:00"},
        {"2023-07-14 12:34:56.5-05:00", 25, "2023-07-14 12:59:56.5-05:00"},
        {"2023-07-14 12:34:56.5-05:00", 26, "2023-07-14 13:00:56.5-05:00"},
        {"2023-07-14 12:34:56+00:00", -35, "2023-07-14 11:59:56+00:00"},
        {"2023-07-14 23:30:00+00:00", 30, "2023-07-15 00:00:00+00:00"},
        {"2023-07-14 00:00:00+00:00", -1, "2023-07-13 23:59:00+00:00"},
        {"2023-07-31 23:59:00+00:00", 1, "2023-08-01 00:00:00+00:00"},
        {"2023-08-01 00:00:00+00:00", -1, "2023-07-31 23:59:00+00:00"},
        {"2024-02-28 23:59:00+00:00", 1, "2024-02-29 00:00:00+00:00"},
        {"2023-02-28 23:59:00+00:00", 1, "2023-03-01 00:00:00+00:00"},
        {"2100-03-01 00:00:00+00:00", -1, "2100-02-28 23:59:00+00:00"},
        {"2000-03-01 00:00:00+00:00", -1, "2000-02-29 23:59:00+00:00"},
        {"2023-12-31 12:00:00+00:00", 720, "2024-01-01 00:00:00+00:00"},
        {"2000-01-01 00:00:00+00:00", -1, "1999-12-31 23:59:00+00:00"},
        {"1900-01-01 00:00:00+00:00", -421, "1899-12-31 16:59:00+00:00"},
        {"0001-01-01 00:00:00+00:00", 5258964959, "9999-12-31 23:59:00+00:00"},
        {"9999-12-31 23:59:59.999999+00:00", -5258964959, "0001-01-01 00:00:59.999999+00:00"},
    };
    for (const shift_case &c : cases) {
        const outcome result = shift(value_from(c.before), c.amount);
        EXPECT_EQ(result.status, 0) << c.before << " by " << c.amount;
        EXPECT_EQ(whole(result.value), c.after) << c.before << " by " << c.amount;
    }
}

TEST(temporal_shift, leaving_the_calendar_fails_and_gives_the_value)
{
    struct shift_case {
        const char *before;
        int64_t amount;
    };
    const shift_case cases[] = {
        {"9999-12-31 23:59:59.999999+02:00", 1},
        {"9999-12-31 12:00:00+02:00", 720},
        {"0001-01-01 00:00:00+02:00", -1},
        {"0001-01-01 11:59:59.999999-02:00", -720},
        {"0001-01-01 00:00:00+02:00", 5258964960},
        {"9999-12-31 23:59:00+02:00", -5258964960},
        {"2023-07-14 00:00:00+02:00", 5258964960},
        {"2023-07-14 00:00:00+02:00", INT64_MAX},
        {"2023-07-14 12:34:56+02:00", INT64_MIN},
        {"9999-12-31 23:59:59+02:00", INT64_MAX},
        {"0001-01-01 00:00:00+02:00", INT64_MIN},
        {"2023-07-14 12:34:56+02:00", int64_t{1} << 32 << 24},
        {"2023-07-14 12:34:56+02:00", -(int64_t{1} << 32 << 16)},
    };
    for (const shift_case &c : cases) {
        const outcome result = shift(value_from(c.before), c.amount);
        EXPECT_EQ(result.status, ERR_BAD_DATETIME) << c.before << " by " << c.amount;
        EXPECT_EQ(whole(result.value), c.before) << c.before << " by " << c.amount;
    }
}

TEST(temporal_shift, minutes_are_the_one_field)
{
    const vqtime value = value_from("2023-07-14 12:34:56+02:00");
    for (const int32_t field : {0, 1, 2, 3, 4, 6, 7, -1, INT32_MAX, INT32_MIN}) {
        const outcome result = shift(value, 1, field);
        EXPECT_EQ(result.status, ERR_BAD_DATETIME) << "field " << field;
        EXPECT_TRUE(same_bytes(result.value, value)) << "field " << field;
    }
}

TEST(temporal_shift, every_midnight_is_crossed_both_ways)
{
    for_each_day([&](std::chrono::year_month_day date) {
        temporal_reading reading = {
            .year = int(date.year()), .month = int(unsigned(date.month())), .day = int(unsigned(date.day()))};
        const vqtime midnight = record_of(reading);
        ASSERT_EQ(shifted(midnight, -1), slow_shifted(midnight, -1)) << whole(midnight);
        reading.hour = 23;
        reading.minute = 59;
        const vqtime late = record_of(reading);
        ASSERT_EQ(shifted(late, 1), slow_shifted(late, 1)) << whole(late);
    });
}

TEST(temporal_shift, random_shifts_are_those_of_the_clock)
{
    std::mt19937_64 random(11);
    for (int i = 0; i < 200000; i++) {
        const vqtime value = random_value(random);
        const int64_t range = int64_t{1} << (random() % 34);
        const int64_t amount = static_cast<int64_t>(random() % static_cast<uint64_t>(2 * range)) - range;
        ASSERT_EQ(shifted(value, amount), slow_shifted(value, amount)) << whole(value) << " by " << amount;
    }
}

// ---- Rounding --------------------------------------------------------------------

TEST(temporal_round, keeps_so_many_digits_ties_up)
{
    struct round_case {
        const char *before;
        uint16_t digits;
        const char *after;
    };
    const round_case cases[] = {
        {"12:34:56.123456+01:00", 6, "1900-01-01 12:34:56.123456+01:00"},
        {"12:34:56.123456+01:00", 5, "1900-01-01 12:34:56.12346+01:00"},
        {"12:34:56.123454+01:00", 5, "1900-01-01 12:34:56.12345+01:00"},
        {"12:34:56.123455+01:00", 5, "1900-01-01 12:34:56.12346+01:00"},
        {"12:34:56.000005+01:00", 5, "1900-01-01 12:34:56.00001+01:00"},
        {"12:34:56.0005+01:00", 3, "1900-01-01 12:34:56.001+01:00"},
        {"12:34:56.000499+01:00", 3, "1900-01-01 12:34:56+01:00"},
        {"12:34:56.05+01:00", 1, "1900-01-01 12:34:56.1+01:00"},
        {"12:34:56.5+01:00", 0, "1900-01-01 12:34:57+01:00"},
        {"12:34:56.499999+01:00", 0, "1900-01-01 12:34:56+01:00"},
        {"12:34:59.5+01:00", 0, "1900-01-01 12:35:00+01:00"},
        {"12:59:59.95+01:00", 1, "1900-01-01 13:00:00+01:00"},
        {"23:59:59.5+01:00", 0, "1900-01-02 00:00:00+01:00"},
        {"12:34:56.123456+01:00", 7, "1900-01-01 12:34:56.123456+01:00"},
        {"12:34:56.123456+01:00", 65535, "1900-01-01 12:34:56.123456+01:00"},
    };
    for (const round_case &c : cases) {
        const outcome result = round_to(value_from(c.before), c.digits);
        EXPECT_EQ(result.status, 0) << c.before << " to " << c.digits;
        EXPECT_EQ(whole(result.value), c.after) << c.before << " to " << c.digits;
    }
}

TEST(temporal_round, the_last_millionth_carries_through_to_the_date)
{
    const std::pair<const char *, const char *> days[] = {
        {"2023-07-14", "2023-07-15"}, {"2023-07-31", "2023-08-01"}, {"2023-12-31", "2024-01-01"},
        {"2023-02-28", "2023-03-01"}, {"2024-02-28", "2024-02-29"}, {"2024-02-29", "2024-03-01"},
        {"1900-02-28", "1900-03-01"}, {"2000-02-28", "2000-02-29"}, {"1999-12-31", "2000-01-01"},
        {"0001-12-31", "0002-01-01"}, {"9999-12-30", "9999-12-31"},
    };
    for (const auto &[before, after] : days) {
        const vqtime value = value_from(std::string(before) + " 23:59:59.999999-03:00");
        for (uint16_t digits = 0; digits < 6; digits++) {
            const outcome result = round_to(value, digits);
            EXPECT_EQ(result.status, 0) << before << " to " << digits;
            EXPECT_EQ(whole(result.value), std::string(after) + " 00:00:00-03:00") << before << " to " << digits;
        }
        EXPECT_TRUE(same_bytes(round_to(value, 6).value, value)) << before;
    }
}

TEST(temporal_round, leaving_the_calendar_fails_and_gives_the_value)
{
    const vqtime value = value_from("9999-12-31 23:59:59.999999-03:00");
    for (uint16_t digits = 0; digits < 6; digits++) {
        const outcome result = round_to(value, digits);
        EXPECT_EQ(result.status, ERR_BAD_DATETIME) << digits;
        EXPECT_TRUE(same_bytes(result.value, value)) << digits << " gives " << whole(result.value);
    }
    EXPECT_EQ(round_to(value, 6).status, 0);
}

TEST(temporal_round, every_fraction_to_every_count)
{
    for (int millionths = 0; millionths < 1000000; millionths++) {
        const temporal_reading reading = {
            .year = 2024, .month = 2, .day = 29, .hour = 23, .minute = 59, .second = 59, .millionths = millionths};
        const vqtime value = record_of(reading);
        int unit = 1000000;
        for (uint16_t digits = 0; digits <= 6; digits++, unit /= 10) {
            const int kept = (2 * millionths + unit) / (2 * unit) * unit;
            temporal_reading expected = {.year = 2024, .month = 3, .day = 1};
            if (kept < 1000000) {
                expected = reading;
                expected.millionths = kept;
            }
            vqtime result = unwritten_value();
            ASSERT_EQ(vqtime_round_by_prec(&value, digits, &result), 0) << whole(value) << " to " << digits;
            ASSERT_EQ(reading_of(result), expected) << whole(value) << " to " << digits;
        }
    }
}

TEST(temporal_round, random_values_round_as_the_clock_does)
{
    std::mt19937_64 random(13);
    for (int i = 0; i < 100000; i++) {
        const vqtime value = random_value(random);
        for (uint16_t digits = 0; digits <= 7; digits++)
            ASSERT_EQ(rounded(value, digits), slow_rounded(value, digits)) << whole(value) << " to " << digits;
    }
}

// ---- Resetting -------------------------------------------------------------------

TEST(temporal_reset, what_a_type_does_not_hold_is_as_if_unsaid)
{
    const std::map<int32_t, const char *> expected = {
        {TYPE_DATE, "2023-07-14"},
        {TYPE_TIME, "12:34:56.123456"},
        {TYPE_DATETIME, "2023-07-14 12:34:56.123456"},
        {TYPE_TIME_TZ, "12:34:56.123456-05:00"},
        {TYPE_DATETIME_TZ, "2023-07-14 12:34:56.123456-05:00"},
    };
    const vqtime before = value_from("2023-07-14 12:34:56.123456-05:00");
    for (const auto &[type, text] : expected) {
        vqtime value = before;
        vqtime_reset(&value, type);
        EXPECT_TRUE(same_bytes(value, value_from(text))) << "type " << type << ": " << whole(value);
        vqtime_reset(&value, type);
        EXPECT_TRUE(same_bytes(value, value_from(text))) << "type " << type << " twice: " << whole(value);
    }
}

TEST(temporal_reset, a_type_that_is_none_holds_all)
{
    const vqtime before = value_from("2023-07-14 12:34:56.123456-05:00");
    for (const int32_t type : {-1, 0, 13, 17, 18, 19, 20, 21, 24, 255, INT32_MAX, INT32_MIN}) {
        vqtime value = before;
        vqtime_reset(&value, type);
        EXPECT_TRUE(same_bytes(value, before)) << "type " << type << ": " << whole(value);
    }
}

// ---- Records that no service made ----------------------------------------------------

TEST(temporal_arithmetic, a_record_of_any_bytes_does_no_harm)
{
    std::mt19937_64 random(17);
    for (int i = 0; i < 100000; i++) {
        vqtime value;
        for (uint8_t &byte : value.bytes)
            byte = i < 256 ? static_cast<uint8_t>(i) : static_cast<uint8_t>(random());
        const int64_t amount = static_cast<int64_t>(random()) >> (random() % 64);
        vqtime result = unwritten_value();
        if (vqtime_add_by_fmt(&value, FIELD_MINUTE, amount, &result) < 0) {
            ASSERT_TRUE(same_bytes(result, value));
        }
        if (vqtime_round_by_prec(&value, static_cast<uint16_t>(random() % 8), &result) < 0) {
            ASSERT_TRUE(same_bytes(result, value));
        }
        vqtime_reset(&value, static_cast<int32_t>(random() % 10) + 14);
    }
}

} // namespace bcast::test
