#include "tests/embedded/temporal/temporal_support.h"

#include <random>

namespace bcast::test {

namespace {

temporal_reading moment(int hour, int minute, int second, int millionths, int zone = TZ_NO_SHIFT)
{
    return {.year = 2023,
            .month = 7,
            .day = 14,
            .hour = hour,
            .minute = minute,
            .second = second,
            .millionths = millionths,
            .zone = zone};
}

} // namespace

TEST(temporal_to_text, shows_dates_times_and_both)
{
    const vqtime value = value_from("2023-07-14T12:34:56.789012-05:30");
    EXPECT_EQ(text_of_date(value), "2023-07-14");
    EXPECT_EQ(text_of_time(value), "12:34:56.789012");
    EXPECT_EQ(text_of_datetime(value), "2023-07-14 12:34:56.789012");
    EXPECT_EQ(text_with_zone(value, TYPE_TIME_TZ, 0), "12:34:56-05:30");
    EXPECT_EQ(text_with_zone(value, TYPE_DATETIME_TZ, 6), "2023-07-14 12:34:56.789012-05:30");
}

TEST(temporal_to_text, shows_all_digits_of_small_numbers)
{
    const vqtime value = value_from("0001-02-03 04:05:06.000007");
    EXPECT_EQ(text_of_date(value), "0001-02-03");
    EXPECT_EQ(text_of_time(value), "04:05:06.000007");
    EXPECT_EQ(text_of_datetime(value), "0001-02-03 04:05:06.000007");
}

TEST(temporal_to_text, every_day_reads_back)
{
    for_each_day([&](std::chrono::year_month_day date) {
        const temporal_reading reading = {
            .year = int(date.year()), .month = int(unsigned(date.month())), .day = int(unsigned(date.day()))};
        const std::string expected = slow_date_text(reading);
        const vqtime value = record_of(reading);
        ASSERT_EQ(text_of_date(value), expected);
        ASSERT_EQ(text_of_datetime(value), expected + " 00:00:00");
        ASSERT_TRUE(same_bytes(value_from(expected), value)) << expected;
    });
}

TEST(temporal_to_text, every_second_of_a_day_reads_back)
{
    for (int i = 0; i < 24 * 60 * 60; i++) {
        const temporal_reading reading = moment(i / 3600, i / 60 % 60, i % 60, 0);
        const vqtime value = record_of(reading);
        ASSERT_EQ(text_of_time(value), slow_time_text(reading));
        ASSERT_EQ(text_of_datetime(value), slow_datetime_text(reading));
        ASSERT_TRUE(same_bytes(value_from(text_of_datetime(value)), value)) << whole(value);
    }
}

TEST(temporal_to_text, a_fraction_has_no_zeros_at_its_end_and_reads_back)
{
    for (int millionths = 0; millionths < 1000000; millionths++) {
        const temporal_reading reading = moment(12, 34, 50, millionths);
        const vqtime value = record_of(reading);
        ASSERT_EQ(text_of_time(value), slow_time_text(reading));
        ASSERT_EQ(text_of_datetime(value), slow_datetime_text(reading));
        ASSERT_TRUE(same_bytes(value_from(text_of_datetime(value)), value)) << whole(value);
    }
}

TEST(temporal_to_text, digits_beyond_the_count_are_cut)
{
    for (const int millionths : {0, 1, 10, 999999, 999990, 500000, 123456, 100000, 900009, 9, 90, 99000, 100001}) {
        const temporal_reading reading = moment(23, 59, 50, millionths, 0);
        const vqtime value = record_of(reading);
        for (int digits = 0; digits <= 6; digits++) {
            const auto shown = static_cast<size_t>(digits);
            EXPECT_EQ(text_with_zone(value, TYPE_TIME_TZ, digits), slow_time_text(reading, shown) + "+00:00");
            EXPECT_EQ(text_with_zone(value, TYPE_DATETIME_TZ, digits), slow_datetime_text(reading, shown) + "+00:00");
        }
    }
    const vqtime value = record_of(moment(23, 59, 59, 999999, 0));
    EXPECT_EQ(text_with_zone(value, TYPE_TIME_TZ, 0), "23:59:59+00:00");
    EXPECT_EQ(text_with_zone(value, TYPE_TIME_TZ, -1), "23:59:59+00:00");
    EXPECT_EQ(text_with_zone(value, TYPE_TIME_TZ, -250), "23:59:59+00:00");
    EXPECT_EQ(text_with_zone(value, TYPE_TIME_TZ, INT32_MIN), "23:59:59+00:00");
    EXPECT_EQ(text_with_zone(value, TYPE_TIME_TZ, 7), "23:59:59.999999+00:00");
    EXPECT_EQ(text_with_zone(value, TYPE_TIME_TZ, INT32_MAX), "23:59:59.999999+00:00");
}

TEST(temporal_to_text, shows_every_zone_that_a_record_can_hold)
{
    for (int zone = INT16_MIN; zone <= INT16_MAX; zone++) {
        for (const int millionths : {0, 500000, 123456}) {
            const temporal_reading reading = moment(12, 34, 50, millionths, zone);
            const vqtime value = record_of(reading);
            const std::string shown = slow_zone_text(zone);
            ASSERT_EQ(text_with_zone(value, TYPE_TIME_TZ, 0), "12:34:50" + shown);
            ASSERT_EQ(text_with_zone(value, TYPE_TIME_TZ, 6), slow_time_text(reading) + shown);
            const std::string all = text_with_zone(value, TYPE_DATETIME_TZ, 6);
            ASSERT_EQ(all, slow_datetime_text(reading) + shown);
            if (zone >= -840 && zone <= 840) {
                ASSERT_TRUE(same_bytes(value_from(all), value)) << all;
            }
        }
    }
}

TEST(temporal_to_text, random_values_read_back)
{
    std::mt19937_64 random(5);
    for (int i = 0; i < 200000; i++) {
        const auto first = instant_of({.year = 1}), last = instant_of({.year = 9999, .month = 12, .day = 31});
        const auto span = static_cast<uint64_t>((last - first).count());
        const int zone = static_cast<int>(random() % 1681) - 840;
        const auto reading = reading_at(first + std::chrono::microseconds(random() % span), zone);
        ASSERT_TRUE(reading.has_value());
        const vqtime value = record_of(*reading);
        const std::string text = text_with_zone(value, TYPE_DATETIME_TZ, 6);
        ASSERT_EQ(text, slow_datetime_text(*reading) + slow_zone_text(zone));
        ASSERT_TRUE(same_bytes(value_from(text), value)) << text;
        ASSERT_EQ(text_of_datetime(value), slow_datetime_text(*reading));
        ASSERT_EQ(text_of_time(value), slow_time_text(*reading));
        ASSERT_EQ(text_of_date(value), slow_date_text(*reading));
    }
}

// The value may touch what cannot be read, and the text ends with its room.
TEST(temporal_to_text, reads_the_record_and_writes_the_room_alone)
{
    const temporal_reading reading = moment(12, 34, 56, 123456, -300);
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        guarded<vqtime> value(1, edge);
        value[0] = record_of(reading);
        value.make_read_only();
        guarded<vqdt_decoded> decoded(1, edge);
        guarded<char> text(BCAST_TEXT_ROOM, edge);
        vqdt_encode_fast(value.data(), decoded.data());
        EXPECT_NE(vqdt_to_char(decoded.data(), text.data(), 0), 0);
        EXPECT_STREQ(text.data(), "2023-07-14 12:34:56.123456");
        vqdt_date_encode_fast(value.data(), decoded.data());
        EXPECT_NE(vq_date_to_char(decoded.data(), text.data()), 0);
        EXPECT_STREQ(text.data(), "2023-07-14");
        vqdt_time_encode_fast(value.data(), decoded.data());
        EXPECT_NE(vq_time_to_char(decoded.data(), text.data(), 0), 0);
        EXPECT_STREQ(text.data(), "12:34:56.123456");
        EXPECT_NE(vqtime_tz_to_char(value.data(), TYPE_DATETIME_TZ, 6, text.data()), 0);
        EXPECT_STREQ(text.data(), "2023-07-14 12:34:56.123456-05:00");
        EXPECT_NE(vqtime_tz_to_char(value.data(), TYPE_TIME_TZ, 0, text.data()), 0);
        EXPECT_STREQ(text.data(), "12:34:56-05:00");
        EXPECT_TRUE(decoded.slack_untouched());
        EXPECT_TRUE(text.slack_untouched());
    }
}

// What a cast leaves in a row that failed may be anything.
TEST(temporal_to_text, a_record_of_any_bytes_has_some_short_text)
{
    std::mt19937 random(7);
    for (int i = 0; i < 100000; i++) {
        vqtime value;
        for (uint8_t &byte : value.bytes)
            byte = i < 256 ? static_cast<uint8_t>(i) : static_cast<uint8_t>(random());
        ASSERT_EQ(text_of_date(value).size(), 10u);
        ASSERT_LE(text_of_time(value).size(), 15u);
        ASSERT_LE(text_of_datetime(value).size(), 26u);
        ASSERT_LE(text_with_zone(value, TYPE_DATETIME_TZ, 6).size(), 33u);
        ASSERT_LE(text_with_zone(value, TYPE_TIME_TZ, 6).size(), 22u);
    }
}

} // namespace bcast::test
