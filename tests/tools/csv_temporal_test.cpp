// Columns of dates, times and intervals.
#include "fields.h"
#include "plain_csv.h"

#include <gtest/gtest.h>

namespace bcast::test {
namespace {

// ---- Dates and times

TEST(csv_temporal, date_is_a_day_of_the_calendar)
{
    const std::string blanks(245, ' ');
    expect_fields("date", {as_it_is("2023-07-14"),
                           gives("2023/07/14", "2023-07-14"),
                           gives("20230714", "2023-07-14"),
                           gives(" 2024-02-29 ", "2024-02-29"),
                           as_it_is("0001-01-01"),
                           as_it_is("9999-12-31"),
                           gives("2023-07-14 12:34", "2023-07-14"),
                           gives("2023-07-14T23:00-05:00", "2023-07-14"),
                           gives("12:34", "1900-01-01"),
                           gives("2023-07-14" + blanks, "2023-07-14"),
                           is_no_date("2023-07-14 " + blanks),
                           is_no_date("2023-02-29"),
                           is_no_date("1900-02-29"),
                           is_no_date("2023-13-01"),
                           is_no_date("2023-00-01"),
                           is_no_date("0000-01-01"),
                           is_no_date("2023-7-14"),
                           is_no_date("2023-07-14x"),
                           is_no_date("14.07.2023"),
                           is_no_date("14/07/2023"),
                           is_no_date("today"),
                           null(""),
                           null("  ")});
}

TEST(csv_temporal, date_order_tells_which_field_stands_first)
{
    const auto iso = as_it_is("2023-07-14");
    expect_fields("date", {iso, is_no_date("07/14/2023")}, {"--date-order", "ymd"});
    expect_fields("date",
                  {iso, gives("14.07.2023", "2023-07-14"), gives("14/07/2023", "2023-07-14"),
                   gives("01/02/2023", "2023-02-01"), is_no_date("07/14/2023"), is_no_date("14-07-2023")},
                  {"--date-order", "dmy"});
    expect_fields("date",
                  {iso, gives("07/14/2023", "2023-07-14"), gives("01/02/2023", "2023-01-02"), is_no_date("14/07/2023"),
                   is_no_date("07.14.2023")},
                  {"--date-order", "mdy"});
    expect_fields("datetime", {gives("14.07.2023 12:34", "2023-07-14 12:34:00")}, {"--date-order", "dmy"});
}

TEST(csv_temporal, time_is_that_of_a_day)
{
    expect_fields("time", {as_it_is("12:34:56"),
                           gives("12:34", "12:34:00"),
                           gives(" 00:00 ", "00:00:00"),
                           as_it_is("23:59:59.999999"),
                           gives("12:34:56.500", "12:34:56.5"),
                           gives("2023-07-14 12:34:56", "12:34:56"),
                           gives("2023-07-14", "00:00:00"),
                           gives("12:00+02:00", "10:00:00"),
                           gives("01:00+02:00", "23:00:00"),
                           gives("12:00:00.0000005", "12:00:00.000001"),
                           is_no_date("24:00:00"),
                           is_no_date("12:60"),
                           is_no_date("12:34:60"),
                           is_no_date("12"),
                           is_no_date("1:00"),
                           is_no_date("12:34:56."),
                           is_no_date("12:34 PM"),
                           is_no_date("noon"),
                           null(""),
                           null(" ")});
}

// Half a digit rounds up.
TEST(csv_temporal, time_is_rounded_to_its_digits)
{
    expect_fields("time(0)", {gives("12:00:00.4", "12:00:00"), gives("12:00:00.5", "12:00:01"),
                              gives("12:59:59.5", "13:00:00"), gives("23:59:59.5", "00:00:00")});
    expect_fields("time(3)", {gives("12:00:00.0004", "12:00:00"), gives("12:00:00.0005", "12:00:00.001"),
                              gives("12:00:00.9995", "12:00:01"), as_it_is("12:00:00.123")});
    expect_fields("time(6)", {as_it_is("12:00:00.123456")});
}

TEST(csv_temporal, datetime_is_rounded_through_to_the_date)
{
    expect_fields("datetime(0)", {gives("2023-07-14 23:59:59.5", "2023-07-15 00:00:00"),
                                  gives("2023-12-31 23:59:59.999999", "2024-01-01 00:00:00"),
                                  gives("2024-02-28T23:59:59.5", "2024-02-29 00:00:00"),
                                  gives("2023-07-14 23:59:59.499999", "2023-07-14 23:59:59"),
                                  gives("9999-12-31 23:59:59.4", "9999-12-31 23:59:59"),
                                  is_no_date("9999-12-31 23:59:59.5"), null("")});
    expect_fields("datetime(2)", {gives("2023-07-14 12:00:00.125", "2023-07-14 12:00:00.13")});
    expect_fields("datetime", {as_it_is("2023-07-14 12:00:00.123456"), gives("2023-07-14", "2023-07-14 00:00:00"),
                               gives("12:34", "1900-01-01 12:34:00"), is_no_date("2023-07-14  12:00"),
                               is_no_date("2023-07-14 12:00 +02:00"), is_no_date("2023-07-14 25:00")});
}

TEST(csv_temporal, datetime_with_a_zone_is_moved_to_the_local_one)
{
    expect_fields("datetime",
                  {gives("2023-07-14 12:00", "2023-07-14 12:00:00"), gives("2023-07-14 12:00Z", "2023-07-14 12:00:00"),
                   gives("2023-07-14 12:00+02", "2023-07-14 10:00:00"),
                   gives("2023-07-14 20:00-0530", "2023-07-15 01:30:00"), is_no_date("2023-07-14 12:00+14:01"),
                   is_no_date("2023-07-14 12:00+2")});
    const std::vector<field> in_new_york = {gives("2023-07-14 12:00", "2023-07-14 12:00:00"),
                                            gives("2023-07-14 12:00Z", "2023-07-14 07:00:00"),
                                            gives("2023-01-01 00:00+02:00", "2022-12-31 17:00:00")};
    expect_fields("datetime", in_new_york, {"--local-zone", "-05:00"});
    expect_fields("datetime", in_new_york, {"--local-zone=-05:00"});
    expect_fields("datetime", {gives("2023-07-14 12:00-01:00", "2023-07-14 13:00:00")}, {"--local-zone", "Z"});
}

// In a value the zone +08:00 and none are the same.
TEST(csv_temporal, zone_of_eight_hours_is_taken_for_none)
{
    expect_fields("datetime", {gives("2023-07-14 12:00+08:00", "2023-07-14 12:00:00")});
    expect_fields(
        "datetime",
        {gives("2023-07-14 12:00+08:00", "2023-07-14 12:00:00"), gives("2023-07-14 12:00Z", "2023-07-14 20:00:00")},
        {"--local-zone", "+08:00"});
}

TEST(csv_temporal, types_with_a_zone_have_the_local_one)
{
    expect_fields("datetime_tz", {gives("2023-07-14 12:00+02:00", "2023-07-14 10:00:00+00:00"),
                                  gives("2023-07-14 12:00:00.25", "2023-07-14 12:00:00.25+00:00"),
                                  is_no_date("2023-07-14 12:00+02:0"), null("")});
    expect_fields("datetime_tz(0)",
                  {gives("2023-07-14 12:00+02:00", "2023-07-14 15:30:00+05:30"),
                   gives("2023-07-14 12:00", "2023-07-14 12:00:00+05:30"),
                   gives("2023-07-14 23:59:59.5", "2023-07-15 00:00:00+05:30")},
                  {"--local-zone", "+05:30"});
    expect_fields(
        "time_tz",
        {gives("12:00+02:00", "05:00:00-05:00"), gives("12:00", "12:00:00-05:00"), is_no_date("12:00+2"), null("")},
        {"--local-zone", "-05:00"});
}

// The library's text of a time_tz has no fraction, but rounding is not left out.
TEST(csv_temporal, time_tz_shows_whole_seconds)
{
    expect_fields("time_tz(1)", {gives("12:00:00.5", "12:00:00+00:00"), gives("12:00:00.96", "12:00:01+00:00")});
    expect_fields("time_tz(0)", {gives("23:59:59.5", "00:00:00+00:00")});
}

TEST(csv_temporal, precision_is_none)
{
    const auto expect_refused = [](const std::string &type, const std::string &message) {
        const temporary_directory directory;
        const run_result run = run_bcast({"csv", directory.write("in.csv", "v\n12:00\n"), "--column", "v:" + type});
        EXPECT_EQ(run.exit_status, 2) << run.how;
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "bcast: --column \"v:" + type + "\": " + message + "\n");
    };
    expect_refused("date(3)", "date takes no length");
    for (const std::string type : {"time", "time_tz", "datetime", "datetime_tz"}) {
        expect_refused(type + "(7)", "behind the second of " + type + " stand 0 to 6 digits");
        expect_refused(type + "(3,3)", type + " takes one number, as in " + type + "(3)");
    }
    expect_refused("interval day(10)", "the leading field of an interval has from 1 to 9 digits");
    expect_refused("ivdt(3)", "ivdt takes no length");
}

TEST(csv_temporal, options_are_wrong)
{
    const temporary_directory directory;
    const std::string file = directory.write("in.csv", "v\n12:00\n");
    const auto expect_refused = [&](const std::string &option, const std::string &value, const std::string &expected) {
        for (const std::vector<std::string> &command :
             {std::vector<std::string>{"csv", file, "--column", "v:time"},
              std::vector<std::string>{"cast", "--from", "varchar", "--to", "time", "12:00"}}) {
            std::vector<std::string> arguments = command;
            arguments.insert(arguments.end(), {option, value});
            const run_result run = run_bcast(arguments);
            EXPECT_EQ(run.exit_status, 2) << run.how;
            EXPECT_EQ(run.output, "");
            EXPECT_EQ(run.errors, "bcast: " + option + " \"" + value + "\": expected " + expected + "\n");
        }
    };
    for (const char *order : {"", "iso", "DMY", "ydm", "0"})
        expect_refused("--date-order", order, "ymd, dmy or mdy");
    for (const char *zone :
         {"", "z", "2", "02:00", "+2:00", "+02", "+0200", "+02:60", "+14:01", "-15:00", "+02:00 ", "UTC", "+xx:00"})
        expect_refused("--local-zone", zone, "Z, or a zone from -14:00 to +14:00, as in +02:00");
}

TEST(csv_temporal, farthest_zones_are_zones)
{
    expect_fields("datetime_tz", {gives("2023-07-14 12:00Z", "2023-07-15 02:00:00+14:00")}, {"--local-zone", "+14:00"});
    expect_fields("datetime_tz", {gives("2023-07-14 12:00Z", "2023-07-13 22:00:00-14:00")}, {"--local-zone", "-14:00"});
}

// ---- Intervals

TEST(csv_temporal, interval_of_years_and_months)
{
    for (const char *type : {"interval year to month", "interval year(9) to month"})
        expect_fields(type, {as_it_is("3-11"), gives("+3-01", "3-1"), as_it_is("-3-1"), gives(" - 0-5 ", "-0-5"),
                             gives("7", "7-0"), gives("  ", "0-0"), as_it_is("999999999-11"), is_no_interval("3-12"),
                             is_no_interval("3-"), is_no_interval("3 11"), is_no_interval("x"), is_no_interval("3-1-1"),
                             overflows("1000000000"), null("")});
    expect_fields("interval year(2)", {as_it_is("99"), as_it_is("-99"), overflows("100"), is_no_interval("3-1")});
    expect_fields("interval month", {as_it_is("47"), as_it_is("-1")});
}

TEST(csv_temporal, interval_of_days_and_less)
{
    expect_fields("interval day(3) to second(2)",
                  {as_it_is("5 12:30:07.25"), gives("5 12:30:07.255", "5 12:30:07.26"),
                   gives("5 23:59:59.995", "6 00:00:00"), gives("-5  1:2:3", "-5 01:02:03"), gives("5", "5 00:00:00"),
                   gives("-0 00:00:01", "-0 00:00:01"), as_it_is("999 23:59:59.99"), overflows("999 23:59:59.995"),
                   overflows("1000"), is_no_interval("1 24:00:00"), is_no_interval("1 12:30"),
                   is_no_interval("1 12:60:00"), is_no_interval("1,12:30:00"), is_no_interval("one"),
                   gives(" ", "0 00:00:00"), null("")});
    expect_fields("interval day to hour", {as_it_is("5 12"), is_no_interval("5 12:00")});
    expect_fields("interval day to minute", {as_it_is("5 12:30")});
    expect_fields("interval hour", {as_it_is("25"), as_it_is("-7"), is_no_interval("1.5")});
    expect_fields("interval hour to minute", {as_it_is("100:05"), gives("2", "2:00")});
    expect_fields("interval hour to second(0)", {gives("1:59:59.5", "2:00:00")});
    expect_fields("interval minute", {as_it_is("90")});
    expect_fields("interval minute to second", {as_it_is("90:07.123456"), gives("1:07.1234565", "1:07.123457")});
    expect_fields("interval second(4,2)",
                  {as_it_is("90.5"), gives("90.126", "90.13"), gives("7.", "7"), overflows("9999.995")});
}

// The casts read such a text up to the NUL, or beyond their room for it.
TEST(csv_temporal, interval_text_is_refused_where_its_end_would_not_be_read)
{
    using namespace std::string_literals;
    const std::string blanks(32766, ' ');
    for (const char *type : {"interval year", "interval second"})
        expect_fields(type, {gives(blanks + "7", "7"), is_too_long(blanks + " 7"), is_too_long("7\0x"s),
                             is_too_long("\0"s), as_it_is("8")});
}

TEST(csv_temporal, short_names_of_intervals)
{
    const loaded l = load("v\n3-11\n", {"v:ivym"});
    EXPECT_EQ(l.table, "v\n3-11\n");
    EXPECT_EQ(l.run.errors, "column  type                    rows  nulls  failed\n"
                            "v       interval year to month     1      0       0\n");
    EXPECT_EQ(load("v\n5 1:2:3\n", {"v:IVDT"}).table, "v\n5 01:02:03\n");
}

// ---- Many rows

TEST(csv_temporal, failures_of_many_batches_are_each_told)
{
    std::string text = "d\n", table = "d,d,d\n", failures = no_failures;
    for (int row = 1; row <= 9000; row++) {
        const bool bad = row % 4096 <= 1 || row % 1000 == 7;
        const std::string year = std::to_string(1000 + row % 5000);
        const std::string date = year + (bad ? "-02-30" : "-02-28");
        text += date + "\n";
        table += bad ? ",,\n" : date + "," + date + " 00:00:00," + date + " 00:00:00+00:00\n";
        for (int column = 0; bad && column < 3; column++)
            failures += std::to_string(row) + ",d," + date + ",-6118,ERR_BAD_DATETIME\n";
    }
    const loaded l = load(text, {"d:date", "d:datetime(0)", "d:datetime_tz"});
    EXPECT_EQ(l.run.exit_status, 1) << l.run.how << l.run.errors;
    EXPECT_TRUE(l.table == table);
    EXPECT_TRUE(l.failures == failures);
}

// ---- Files of the world

TEST(csv_temporal, days_of_an_index_and_flights_are_dates)
{
    expect_loaded(load_file(index_file, {"date:date"}), expect_column(index_file, "date", as_it_is));
    expect_loaded(load_file(strikes_file, {"Flight Date:date"}), expect_column(strikes_file, "Flight Date", as_it_is));
}

TEST(csv_temporal, days_of_an_index_begin_at_midnight)
{
    expect_loaded(load_file(index_file, {"date:datetime"}),
                  expect_column(index_file, "date", [](const auto &text) { return gives(text, text + " 00:00:00"); }));
    expect_loaded(
        load_file(index_file, {"date:datetime_tz(3)"}, {"--local-zone", "-05:00"}),
        expect_column(index_file, "date", [](const auto &text) { return gives(text, text + " 00:00:00-05:00"); }));
}

// The dates of the index as a file in another order: 2000-01-31 as 31/01/2000 or 01/31/2000.
std::string reordered(bool day_first)
{
    const plain_csv csv = read_plainly(content_of(index_file), false);
    std::string text = "date\n";
    for (std::size_t row = 1; row < csv.records.size(); row++) {
        const std::string &date = csv.records[row].fields[0];
        const std::string year = date.substr(0, 4), month = date.substr(5, 2), day = date.substr(8, 2);
        text += (day_first ? day + "/" + month : month + "/" + day) + "/" + year + "\n";
    }
    return text;
}

TEST(csv_temporal, days_of_an_index_in_another_order_are_the_same_dates)
{
    const expectation expected = expect_column(index_file, "date", as_it_is);
    expect_loaded(load(reordered(true), {"date:date"}, {"--date-order", "dmy"}), expected);
    expect_loaded(load(reordered(false), {"date:date"}, {"--date-order", "mdy"}), expected);
}

TEST(csv_temporal, days_of_an_index_read_in_the_wrong_order_fail_or_change)
{
    const temporary_directory directory;
    const std::string file = directory.write("in.csv", reordered(false));
    const expectation expected = expect_column(file, "date", [](const std::string &text) {
        const std::string month = text.substr(0, 2), day = text.substr(3, 2), year = text.substr(6);
        return day > "12" ? is_no_date(text) : gives(text, year + "-" + day + "-" + month);
    });
    EXPECT_GT(expected.failed, 1000u);
    expect_loaded(load_file(file, {"date:date"}, {"--date-order", "dmy"}), expected);
}

// Day, Night, Dusk and Dawn.
TEST(csv_temporal, times_of_day_that_are_words_all_fail)
{
    const expectation expected = expect_column(strikes_file, "Time of day", is_no_date);
    EXPECT_EQ(expected.failed, 10000u);
    expect_loaded(load_file(strikes_file, {"Time of day:time"}), expected);
}

} // namespace
} // namespace bcast::test
