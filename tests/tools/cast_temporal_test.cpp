// bcast cast from and to dates, times and intervals.
#include "trials.h"

#include <bcast/codes.h>

#include <gtest/gtest.h>

namespace bcast::test {
namespace {

constexpr std::int32_t no_date = ERR_BAD_DATETIME, no_interval = ERR_BAD_INTERVAL, overflow = ERR_OVERFLOW,
                       no_field = ERR_INTERVAL_FIELD, too_short = ERR_TARGET_TOO_SHORT;

void expect_refused(const std::vector<std::string> &arguments, const std::string &message)
{
    const run_result run = run_bcast(arguments);
    EXPECT_EQ(run.exit_status, 2) << run.how;
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "bcast: " + message + "\n");
}

TEST(cast_temporal, characters_to_dates_and_times)
{
    for (const char *from : {"char", "varchar", "varchar2", "char(40)", "varchar2(40)"})
        expect_all({{from, "date", "2023-07-14", "2023-07-14"},
                    {from, "date", "2023-02-29", "", no_date},
                    {from, "time", "12:34", "12:34:00"},
                    {from, "time(0)", "23:59:59.5", "00:00:00"},
                    {from, "time_tz", "12:00+02:00", "10:00:00+00:00"},
                    {from, "datetime", "2023-07-14 12:00+02:00", "2023-07-14 10:00:00"},
                    {from, "datetime(0)", "2023-07-14 23:59:59.5", "2023-07-15 00:00:00"},
                    {from, "datetime_tz", "2023-07-14T12:00", "2023-07-14 12:00:00+00:00"},
                    {from, "datetime", "x", "", no_date},
                    {from, "datetime", "", "NULL"},
                    {from, "interval day to second", "5 1:2:3", "5 01:02:03"},
                    {from, "interval year to month", "x", "", no_interval},
                    {from, "interval day(2)", "100", "", overflow}});
}

TEST(cast_temporal, order_and_zone_are_those_asked_for)
{
    expect_all({{"varchar", "date", "14.07.2023", "2023-07-14"},
                {"char", "datetime", "14/07/2023 12:00Z", "2023-07-14 07:00:00"},
                {"datetime", "date", "14/07/2023 02:00Z", "2023-07-13"},
                {"varchar", "time_tz", "12:00", "12:00:00-05:00"},
                {"date", "datetime_tz", "14/07/2023", "2023-07-14 00:00:00-05:00"},
                {"time", "time_tz", "12:00", "12:00:00-05:00"}},
               {"--date-order", "dmy", "--local-zone", "-05:00"});
}

TEST(cast_temporal, casts_that_read_the_year_first_refuse_another_order)
{
    for (const auto &[from, to, name] : std::vector<std::array<std::string, 3>>{
             {"varchar2", "date", "bcast_varchar2_to_date"},
             {"varchar", "timestamp_local_time_zone", "bcast_varchar_to_timestamp_local_time_zone"}}) {
        expect_refused({"cast", "--from", from, "--to", to, "--date-order", "dmy", "14.07.2023"},
                       "--date-order: " + name + " reads dates with the year first");
        EXPECT_EQ(run_bcast({"cast", "--from", from, "--to", to, "--date-order", "ymd", "2023-07-14"}).exit_status, 0);
    }
}

// What a type lacks, another gets as it is in a text that does not say it.
TEST(cast_temporal, dates_and_times_among_themselves)
{
    const std::string value = "2023-07-14 12:34:56.789";
    expect_all({{"date", "date", value, "2023-07-14"},
                {"date", "time", value, "00:00:00"},
                {"date", "datetime", value, "2023-07-14 00:00:00"},
                {"date", "datetime_tz", value, "2023-07-14 00:00:00+00:00"},
                {"time", "time(1)", value, "12:34:56.8"},
                {"time", "datetime", value, "1900-01-01 12:34:56.789"},
                {"time", "time_tz(0)", value, "12:34:57+00:00"},
                {"time", "datetime_tz(0)", value, "1900-01-01 12:34:57+00:00"},
                {"time_tz", "time", value, "12:34:56.789"},
                {"time_tz", "time_tz(0)", value, "12:34:57+00:00"},
                {"time_tz", "datetime(2)", value, "1900-01-01 12:34:56.79"},
                {"time_tz", "tltz(0)", value, "1900-01-01 12:34:57"},
                {"datetime", "date", value, "2023-07-14"},
                {"datetime", "time", value, "12:34:56.789"},
                {"datetime", "datetime(2)", value, "2023-07-14 12:34:56.79"},
                {"datetime", "time_tz", value, "12:34:56+00:00"},
                {"datetime", "datetime_tz(1)", value, "2023-07-14 12:34:56.8+00:00"},
                {"datetime_tz", "date", value, "2023-07-14"},
                {"datetime_tz", "time(0)", value, "12:34:57"},
                {"datetime_tz", "datetime", value, "2023-07-14 12:34:56.789"},
                {"datetime_tz", "datetime_tz(0)", value, "2023-07-14 12:34:57+00:00"},
                {"datetime_tz", "tltz", value, "2023-07-14 12:34:56.789"},
                {"datetime(0)", "datetime", value, "2023-07-14 12:34:57"},
                {"datetime", "datetime(0)", "9999-12-31 23:59:59.5", "", no_date},
                {"datetime", "time", "", "NULL"}});
}

TEST(cast_temporal, local_timestamps_are_shown_without_a_zone)
{
    expect_all({{"char", "tltz", "2023-07-14 12:00+02:00", "2023-07-14 15:30:00"},
                {"varchar", "timestamp_local_time_zone", "2023-07-14 12:00+02:00", "2023-07-14 15:30:00"},
                {"varchar", "timestamp_local_time_zone", "x", "", no_date}},
               {"--local-zone", "+05:30"});
}

TEST(cast_temporal, integers_are_digits_of_dates_and_times)
{
    expect_all({{"int", "date", "20230714", "2023-07-14"},
                {"int", "date", "20230229", "", no_date},
                {"int", "time", "123456", "12:34:56"},
                {"smallint", "time", "930", "00:09:30"},
                {"tinyint", "time", "60", "", no_date},
                {"int", "datetime", "20230714", "2023-07-14 00:00:00"},
                {"int64", "datetime", "20230714123456", "2023-07-14 12:34:56"},
                {"int64", "datetime", "-1", "", no_date},
                {"int", "date", "", "NULL"}});
}

TEST(cast_temporal, dates_and_times_as_text_and_booleans)
{
    expect_all({{"date", "text", "2023-07-14", "2023-07-14"},
                {"time", "text", "12:34:56.5", "12:34:56.5"},
                {"time_tz", "text", "12:34:56.5", "12:34:56+00:00"},
                {"datetime", "text", "2023-07-14 12:34", "2023-07-14 12:34:00"},
                {"datetime_tz", "text", "2023-07-14 12:34", "2023-07-14 12:34:00+00:00"},
                {"datetime", "varchar(19)", "2023-07-14 12:34", "2023-07-14 12:34:00"},
                {"datetime", "varchar(18)", "2023-07-14 12:34", "", too_short},
                {"date", "boolean", "2023-07-14", "1"},
                {"time", "boolean", "00:00", "1"},
                {"datetime", "boolean", "", "NULL"}});
}

TEST(cast_temporal, numbers_fill_the_one_field_of_an_interval)
{
    expect_all({{"int", "interval year", "-7", "-7"},
                {"smallint", "interval month", "47", "47"},
                {"tinyint", "interval day", "100", "100"},
                {"int", "interval day(2)", "100", "", overflow},
                {"int64", "interval hour", "25", "25"},
                {"int64", "interval minute", "2147483648", "", overflow},
                {"dec(6,3)", "interval second(4,2)", "90.125", "90.125"},
                {"dec(6,3)", "interval hour", "2.5", "2"},
                {"int", "ivym", "1", "", no_field},
                {"int", "interval day to second", "1", "", no_field},
                {"int", "interval second", "", "NULL"}});
}

TEST(cast_temporal, intervals_of_another_shape)
{
    expect_all({{"interval year to month", "interval month", "3-11", "47"},
                {"interval year to month", "interval year", "3-11", "3"},
                {"interval month", "ivym", "-13", "-1-1"},
                {"interval year", "interval month(2)", "9", "", overflow},
                {"interval day to second", "interval hour", "5 12:30:07", "132"},
                {"interval day to second", "interval day to second(1)", "5 12:30:07.25", "5 12:30:07.3"},
                {"interval second", "interval minute to second", "90.5", "1:30.5"},
                {"interval hour", "interval day(1) to hour", "240", "", overflow}});
}

TEST(cast_temporal, intervals_as_characters_and_booleans)
{
    expect_all({{"interval year to month", "char(6)", "3-11", "3-11  "},
                {"interval year to month", "varchar(4)", "3-11", "3-11"},
                {"interval year to month", "varchar(3)", "3-11", "", too_short},
                {"interval day to second", "varchar2(12)", "5 1:2:3", "5 01:02:03  "},
                {"interval second(4,1)", "char(4)", "90.25", "90.3"},
                {"ivdt", "boolean", "5", "1"},
                {"ivym", "boolean", "", "NULL"}});
}

TEST(cast_temporal, text_is_no_value_of_the_source)
{
    const run_result run = run_bcast({"cast", "--from", "interval day(1)", "--to", "boolean", "10", "x", "7"});
    EXPECT_EQ(run.exit_status, 1) << run.how;
    EXPECT_EQ(run.output, "1\n");
    EXPECT_EQ(run.errors, "\"10\" is no value of interval day(1): " + told(overflow) +
                              "\"x\" is no value of interval day(1): " + told(no_interval));
    EXPECT_EQ(run_bcast({"cast", "--from", "time(0)", "--to", "text", "25:00"}).errors,
              "\"25:00\" is no value of time(0): " + told(no_date));
}

// The library has names for them that do nothing.
TEST(cast_temporal, intervals_do_not_become_numbers)
{
    for (const char *to : {"tinyint", "smallint", "int", "int64", "dec"}) {
        const std::string message = "there is no cast from ";
        expect_refused({"cast", "--from", "interval year to month", "--to", to, "1"},
                       message + "interval year to month to \"" + to +
                           "\"; from interval year to month there are casts to boolean, interval year to month, char, "
                           "varchar, varchar2");
        expect_refused({"cast", "--from", "interval hour(3)", "--to", to, "1"},
                       message + "interval hour(3) to \"" + to +
                           "\"; from interval hour(3) there are casts to boolean, interval day to second, char, "
                           "varchar, varchar2");
    }
}

TEST(cast_temporal, there_is_no_such_cast)
{
    expect_refused({"cast", "--from", "time_tz(3)", "--to", "datetime_tz", "12:00"},
                   "there is no cast from time_tz to \"datetime_tz\"; from time_tz there are casts to datetime, time, "
                   "time_tz, tltz, text");
    expect_refused({"cast", "--from", "ivym", "--to", "interval hour", "1"},
                   "there is no cast from interval year to month to \"interval hour\"; from interval year to month "
                   "there are casts to boolean, interval year to month, char, varchar, varchar2");
    expect_refused({"cast", "--from", "date", "--to", "null", "2023-07-14"},
                   "the library has bcast_date_to_null, but values of these types cannot be tried from the command "
                   "line");
    expect_refused({"cast", "--cut", "--from", "ivdt", "--to", "char(2)", "1"},
                   "--cut: there is no cast from interval day to second to char that cuts");
    expect_refused({"cast", "--from", "int", "--to", "interval", "1"},
                   "--to \"interval\": there is no interval \"\"; there are interval year, year to month, month, day, "
                   "day to hour, day to minute, day to second, hour, hour to minute, hour to second, minute, minute to "
                   "second, second");
    expect_refused({"cast", "--from", "int", "--to", "time(7)", "1"},
                   "--to time(7): behind the second of time stand 0 to 6 digits");
    const run_result run = run_bcast({"cast", "--from", "varchar", "--to", "sometype", "1"});
    EXPECT_NE(run.errors.find("interval year to month, interval day to second, date, time, time_tz, datetime, "
                              "datetime_tz\n"),
              std::string::npos)
        << run.errors;
}

} // namespace
} // namespace bcast::test
