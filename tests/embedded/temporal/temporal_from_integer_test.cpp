#include "tests/embedded/temporal/temporal_support.h"

#include <vector>

namespace bcast::test {

namespace {

using conversion = int32_t(int64_t, vqtime *);

// Whole text with TZ_NO_SHIFT shown as no zone, or the status.
std::string result_of(conversion *convert, int64_t number)
{
    guarded<vqtime> value(1);
    value[0] = unwritten_value();
    const int32_t status = convert(number, value.data());
    if (status == 0) {
        EXPECT_EQ(vqtime_get_tz(value.data()), TZ_NO_SHIFT) << number;
        return text_of_datetime(value[0]);
    }
    EXPECT_TRUE(same_bytes(value[0], unwritten_value())) << number << " failed and wrote its result";
    return std::to_string(status);
}

const std::string bad = std::to_string(ERR_BAD_DATETIME);

struct number_case {
    int64_t number;
    std::string expected;
};

} // namespace

TEST(temporal_from_integer, a_date_is_year_month_day)
{
    const std::vector<number_case> cases = {
        {20230714, "2023-07-14 00:00:00"}, {20240229, "2024-02-29 00:00:00"}, {10101, "0001-01-01 00:00:00"},
        {9990101, "0999-01-01 00:00:00"},  {99991231, "9999-12-31 00:00:00"},
    };
    for (const number_case &c : cases)
        EXPECT_EQ(result_of(vqtime_from_long, c.number), c.expected) << c.number;
    for (const int64_t number : {int64_t{0},
                                 int64_t{1},
                                 int64_t{-1},
                                 int64_t{101},
                                 int64_t{1231},
                                 int64_t{9999},
                                 int64_t{10100},
                                 int64_t{20230229},
                                 int64_t{20231301},
                                 int64_t{20230700},
                                 int64_t{20230732},
                                 int64_t{20230014},
                                 int64_t{99991232},
                                 int64_t{100000101},
                                 int64_t{120230714},
                                 int64_t{-20230714},
                                 int64_t{20230714000000},
                                 (int64_t{1} << 32) + 20230714,
                                 -(int64_t{1} << 32) + 20230714,
                                 (int64_t{1} << 32) * 3 + 20230714,
                                 INT64_MAX,
                                 INT64_MIN})
        EXPECT_EQ(result_of(vqtime_from_long, number), bad) << number;
}

TEST(temporal_from_integer, every_day_is_a_date)
{
    for_each_day([&](std::chrono::year_month_day date) {
        const temporal_reading expected = {
            .year = int(date.year()), .month = int(unsigned(date.month())), .day = int(unsigned(date.day()))};
        vqtime value;
        const int number = expected.year * 10000 + expected.month * 100 + expected.day;
        ASSERT_EQ(vqtime_from_long(number, &value), 0) << number;
        ASSERT_EQ(reading_of(value), expected) << number;
        if (expected.year >= 1000) {
            ASSERT_EQ(time_from_long(number, &value), 0) << number;
            ASSERT_EQ(reading_of(value), expected) << number;
        }
    });
}

TEST(temporal_from_integer, other_numbers_of_the_first_years_are_no_dates)
{
    for (int number = 0; number < 100000 * 100; number++) {
        const auto date = std::chrono::year(number / 10000) / (number / 100 % 100) / (number % 100);
        vqtime value;
        ASSERT_EQ(vqtime_from_long(number, &value) == 0, number >= 10000 && date.ok()) << number;
    }
}

TEST(temporal_from_integer, up_to_six_digits_are_a_time_of_the_first_day_of_1900)
{
    for (int number = 0; number < 1000000; number++) {
        const int hour = number / 10000, minute = number / 100 % 100, second = number % 100;
        const bool good = hour < 24 && minute < 60 && second < 60;
        vqtime value = unwritten_value();
        ASSERT_EQ(time_from_long(number, &value), good ? 0 : ERR_BAD_DATETIME) << number;
        if (good) {
            const temporal_reading expected = {.hour = hour, .minute = minute, .second = second};
            ASSERT_EQ(reading_of(value), expected) << number;
        } else {
            ASSERT_TRUE(same_bytes(value, unwritten_value())) << number;
        }
    }
}

TEST(temporal_from_integer, eight_digits_are_midnight_and_fourteen_a_datetime)
{
    const std::vector<number_case> cases = {
        {20230714, "2023-07-14 00:00:00"},       {10000101, "1000-01-01 00:00:00"},
        {99991231, "9999-12-31 00:00:00"},       {20230714123456, "2023-07-14 12:34:56"},
        {20230714000000, "2023-07-14 00:00:00"}, {20240229235959, "2024-02-29 23:59:59"},
        {10000101000000, "1000-01-01 00:00:00"}, {99991231235959, "9999-12-31 23:59:59"},
    };
    for (const number_case &c : cases)
        EXPECT_EQ(result_of(time_from_long, c.number), c.expected) << c.number;
    for (const int64_t number :
         {int64_t{20230229}, int64_t{20231301}, int64_t{20230700}, int64_t{99991232}, int64_t{20230229123456},
          int64_t{20230714240000}, int64_t{20230714126000}, int64_t{20230714123460}, int64_t{99991232000000},
          int64_t{20230014000000}, (int64_t{1} << 32) * 1000000 + 20230714000000})
        EXPECT_EQ(result_of(time_from_long, number), bad) << number;
}

TEST(temporal_from_integer, other_counts_of_digits_are_no_time)
{
    for (const int64_t number :
         {int64_t{1000000}, int64_t{1010101}, int64_t{9990101}, int64_t{9999999}, int64_t{100000000},
          int64_t{202307141}, int64_t{2023071412}, int64_t{20230714123}, int64_t{10101000000}, int64_t{202307141234},
          int64_t{2023071412345}, int64_t{9990101000000}, int64_t{9991231235959}, int64_t{100000101000000},
          int64_t{202307141234567}, INT64_MAX})
        EXPECT_EQ(result_of(time_from_long, number), bad) << number;
    for (const int64_t number : {int64_t{-1}, int64_t{-123456}, int64_t{-20230714}, int64_t{-20230714123456},
                                 -(int64_t{1} << 32) + 123456, -(int64_t{1} << 32) + 20230714, INT64_MIN})
        EXPECT_EQ(result_of(time_from_long, number), bad) << number;
}

} // namespace bcast::test
