#include "tests/embedded/temporal/temporal_support.h"

#include <random>
#include <set>
#include <vector>

namespace bcast::test {

namespace {

const temporal_reading bad = failed_reading(ERR_BAD_DATETIME);
const temporal_reading none = failed_reading(PARSE_NULL);

constexpr uint16_t orders[] = {0, 1, 2};

struct text_case {
    std::string text;
    temporal_reading expected;
};

void expect_all(const std::vector<text_case> &cases, uint16_t parse_word = BCAST_YEAR_FIRST)
{
    guarded_text guard;
    for (const text_case &c : cases) {
        EXPECT_EQ(read_simple(guard.at_end(c.text), c.text.size(), parse_word), c.expected) << "\"" << c.text << "\"";
        EXPECT_EQ(slow_read_temporal(c.text, parse_word), c.expected) << "\"" << c.text << "\" by the slow reading";
    }
}

void expect_bad(const std::vector<std::string> &texts, uint16_t parse_word = BCAST_YEAR_FIRST)
{
    for (const std::string &text : texts)
        expect_all({{text, bad}}, parse_word);
}

constexpr temporal_reading on(int year, int month, int day) { return {.year = year, .month = month, .day = day}; }

constexpr temporal_reading at(int hour, int minute, int second = 0, int millionths = 0)
{
    return {.hour = hour, .minute = minute, .second = second, .millionths = millionths};
}

constexpr temporal_reading at(temporal_reading date, int hour, int minute, int second = 0, int millionths = 0)
{
    date.hour = hour;
    date.minute = minute;
    date.second = second;
    date.millionths = millionths;
    return date;
}

constexpr temporal_reading in_zone(temporal_reading reading, int zone)
{
    reading.zone = zone;
    return reading;
}

// Texts that take every road through the readers.
const std::vector<std::string> good_texts = {
    "2023-07-14",
    "2024-02-29",
    "2023/07/14",
    "20230714",
    "12:34",
    "12:34:56",
    "12:34:56.7",
    "12:34:56.123456",
    "12:34:56.1234567",
    "23:59:59.9999995",
    "2023-07-14 12:34",
    "2023-07-14T12:34:56",
    "2023-07-14 12:34:56",
    "2023-07-14 12:34:56.1",
    "2023-07-14 12:34:56.12",
    "2023-07-14 12:34:56.123",
    "2023-07-14 12:34:56.1234",
    "2023-07-14 12:34:56.12345",
    "2023-07-14 12:34:56.123456",
    "2023-07-14T12:34:56.123456",
    "2023-12-31 23:59:59.99999951",
    "9999-12-31 23:59:59.9999994",
    "2023/07/14 12:34:56.123456",
    "20230714T12:34:56.5",
    "2023-07-14Z",
    "2023-07-14-05:30",
    "2023-07-14T12:34Z",
    "2023-07-14 12:34:56.123456+14:00",
    "2023-07-14 12:34:56-0930",
    "12:34:56+09",
    " 2023-07-14 12:34:56 ",
    "14.07.2023",
    "14/07/2023 12:34:56.5",
    "07/14/2023T12:34Z",
};

} // namespace

// ---- Forms ---------------------------------------------------------------------

TEST(temporal_from_text, reads_dates_with_the_year_first_under_every_order)
{
    for (const uint16_t order :
         std::initializer_list<uint16_t>{BCAST_YEAR_FIRST, BCAST_DAY_FIRST, BCAST_MONTH_FIRST, 3, 65535}) {
        expect_all({{"2023-07-14", on(2023, 7, 14)},
                    {"2023/07/14", on(2023, 7, 14)},
                    {"20230714", on(2023, 7, 14)},
                    {"0001-01-01", on(1, 1, 1)},
                    {"99991231", on(9999, 12, 31)},
                    {"2023-07-14 12:34:56", at(on(2023, 7, 14), 12, 34, 56)}},
                   order);
    }
}

TEST(temporal_from_text, reads_dates_with_the_day_first_when_told_so)
{
    expect_all({{"14.07.2023", on(2023, 7, 14)},
                {"14/07/2023", on(2023, 7, 14)},
                {"02/03/2023", on(2023, 3, 2)},
                {"14.07.2023 12:34:56.5Z", in_zone(at(on(2023, 7, 14), 12, 34, 56, 500000), 0)}},
               BCAST_DAY_FIRST);
    expect_bad({"14-07-2023", "14.07/2023", "14/07.2023", "07/14/2023", "14072023", "14.07.23", "4.7.2023"},
               BCAST_DAY_FIRST);
}

TEST(temporal_from_text, reads_dates_with_the_month_first_when_told_so)
{
    expect_all({{"07/14/2023", on(2023, 7, 14)},
                {"02/03/2023", on(2023, 2, 3)},
                {"07/14/2023T12:34", at(on(2023, 7, 14), 12, 34)}},
               BCAST_MONTH_FIRST);
    expect_bad({"07.14.2023", "14/07/2023", "07-14-2023", "7/14/2023", "14.07.2023"}, BCAST_MONTH_FIRST);
}

TEST(temporal_from_text, other_orders_know_no_date_with_the_year_last)
{
    for (const uint16_t order : std::initializer_list<uint16_t>{BCAST_YEAR_FIRST, 3, 256, 257, 65535})
        expect_bad({"14.07.2023", "14/07/2023", "07/14/2023", "01/01/2023", "01.01.2023"}, order);
}

TEST(temporal_from_text, separators_are_two_of_one_kind)
{
    expect_bad({"2023-07/14", "2023/07-14", "2023.07.14", "2023 07 14", "2023:07:14", "2023-0714", "202307-14",
                "2023--07-14", "2023-07--14", "-2023-07-14", "2023-07-14-", "2023-07-", "2023-07", "2023", "2023-"});
}

TEST(temporal_from_text, numbers_have_all_their_digits)
{
    expect_bad({"2023-7-14", "2023-07-4", "23-07-14", "02023-07-14", "2023-007-14", "2023-07-014", "230714", "2023714",
                "020230714", "1:34", "12:3", "12:34:5", "012:34", "12:034", "12:34:056", "2023-07-14 1:34",
                "20230714123456", "123456", "1234"});
}

TEST(temporal_from_text, a_time_alone_has_the_first_day_of_1900)
{
    expect_all({{"00:00", at(0, 0)},
                {"12:34", at(12, 34)},
                {"12:34:56", at(12, 34, 56)},
                {"12:34:56.789012", at(12, 34, 56, 789012)},
                {"12:34:56.5+02:00", in_zone(at(12, 34, 56, 500000), 120)},
                {"12:34Z", in_zone(at(12, 34), 0)}});
}

TEST(temporal_from_text, a_date_alone_has_midnight_and_no_zone)
{
    expect_all({{"2023-07-14", {.year = 2023, .month = 7, .day = 14, .zone = TZ_NO_SHIFT}}});
}

TEST(temporal_from_text, one_blank_or_a_capital_t_joins_date_and_time)
{
    const temporal_reading expected = at(on(2023, 7, 14), 12, 34, 56);
    for (const std::string joint : {" ", "T", "\t", "\n", "\v", "\f", "\r"})
        expect_all({{"2023-07-14" + joint + "12:34:56", expected}, {"20230714" + joint + "12:34:56", expected}});
    for (const std::string joint : {"", "t", "  ", " T", "T ", "TT", "_", "-", "+", ":", "Z "})
        expect_bad({"2023-07-14" + joint + "12:34:56", "20230714" + joint + "12:34:56"});
    expect_bad({"2023-07-14T", "2023-07-14TZ", "2023-07-14 Z", "2023-07-14 +02:00", "T12:34", "12:34T",
                "12:34 2023-07-14", "2023-07-14 2023-07-14", "12:34 12:34"});
    expect_bad({std::string("2023-07-14\0 12:34", 17), std::string("2023-07-14\0", 11), std::string("\0", 1)});
}

TEST(temporal_from_text, blanks_may_stand_around)
{
    const std::string all = "\t\n\v\f\r ";
    expect_all({{" 2023-07-14", on(2023, 7, 14)},
                {"2023-07-14 ", on(2023, 7, 14)},
                {all + "2023-07-14 12:34" + all, at(on(2023, 7, 14), 12, 34)},
                {std::string(300, ' ') + "12:34" + std::string(300, ' '), at(12, 34)}});
    for (int c = 0; c < 256; c++) {
        const bool blank = (c >= 9 && c <= 13) || c == ' ';
        const bool zone = c == 'Z';
        const std::string byte(1, static_cast<char>(c));
        EXPECT_EQ(read_simple(byte + "2023-07-14"), blank ? on(2023, 7, 14) : bad) << "byte " << c << " before";
        if (!zone) {
            EXPECT_EQ(read_simple("2023-07-14" + byte), blank ? on(2023, 7, 14) : bad) << "byte " << c << " behind";
        }
    }
}

TEST(temporal_from_text, nothing_but_blanks_is_no_value)
{
    for (const std::string text : {" ", "          ", "\t\n\v\f\r ", "                          "})
        expect_all({{text, none}});
    expect_all({{std::string(255, ' '), none}, {std::string(3000, ' '), none}});
    for (const int32_t type : {TYPE_DATE, TYPE_DATETIME})
        EXPECT_EQ(read_typed("   ", type), none);
}

TEST(temporal_from_text, a_length_below_0_is_no_text)
{
    guarded_text guard;
    const char *text = guard.at_start("2023-07-14");
    for (const int32_t length : {-1, -2, -26, INT32_MIN}) {
        EXPECT_EQ(read_typed(text, static_cast<size_t>(length), TYPE_DATE), bad) << length;
        EXPECT_EQ(read_simple(text, static_cast<size_t>(length), 0), bad) << length;
    }
    EXPECT_EQ(read_simple(""), none);
}

TEST(temporal_from_text, the_length_ends_the_text)
{
    EXPECT_EQ(read_simple("2023-07-14 12:34:56", 10, 0), on(2023, 7, 14));
    EXPECT_EQ(read_simple("2023-07-14 12:34:56", 16, 0), at(on(2023, 7, 14), 12, 34));
    EXPECT_EQ(read_simple("2023-07-14 12:34:56", 11, 0), on(2023, 7, 14));
    EXPECT_EQ(read_simple("2023-07-14x", 10, 0), on(2023, 7, 14));
}

TEST(temporal_from_text, a_fraction_has_a_digit)
{
    expect_bad({"12:34:56.", "2023-07-14 12:34:56.", "12:34.5", "12:34:56.Z", "12:34:56,5", "12:34:.5", "12.5",
                "12:34:56.5.5", "12:34:56.-5"});
}

// ---- Zones -----------------------------------------------------------------------

TEST(temporal_from_text, reads_zones)
{
    const temporal_reading noon = at(on(2023, 7, 14), 12, 0);
    expect_all({{"2023-07-14 12:00Z", in_zone(noon, 0)},
                {"2023-07-14 12:00+00", in_zone(noon, 0)},
                {"2023-07-14 12:00-00", in_zone(noon, 0)},
                {"2023-07-14 12:00-0000", in_zone(noon, 0)},
                {"2023-07-14 12:00-00:00", in_zone(noon, 0)},
                {"2023-07-14 12:00+0530", in_zone(noon, 330)},
                {"2023-07-14 12:00-03:30", in_zone(noon, -210)},
                {"2023-07-14 12:00+14:00", in_zone(noon, 840)},
                {"2023-07-14 12:00-14:00", in_zone(noon, -840)},
                {"2023-07-14 12:00+08:00", in_zone(noon, TZ_NO_SHIFT)},
                {"2023-07-14 12:00:00.5-14", in_zone(at(on(2023, 7, 14), 12, 0, 0, 500000), -840)}});
    expect_bad({"2023-07-14 12:00+14:01",
                "2023-07-14 12:00-14:01",
                "2023-07-14 12:00+15",
                "2023-07-14 12:00+99:59",
                "2023-07-14 12:00+1401",
                "2023-07-14 12:00+05:60",
                "2023-07-14 12:00+0560",
                "2023-07-14 12:00+13:99",
                "2023-07-14 12:00 Z",
                "2023-07-14 12:00 +02:00",
                "2023-07-14 12:00z",
                "2023-07-14 12:00ZZ",
                "2023-07-14 12:00UTC",
                "2023-07-14 12:00+",
                "2023-07-14 12:00+2",
                "2023-07-14 12:00+02:",
                "2023-07-14 12:00+02:0",
                "2023-07-14 12:00+020",
                "2023-07-14 12:00+02:000",
                "2023-07-14 12:00+02000",
                "2023-07-14 12:00+-2",
                "2023-07-14 12:00++02",
                "2023-07-14 12:00+02:00Z",
                "2023-07-14 12:00Z+02:00",
                "2023-07-14 12:00+ 2",
                "2023-07-14 12:00+02 00",
                "+02:00",
                "Z"});
}

TEST(temporal_from_text, a_zone_may_stand_behind_a_date)
{
    expect_all({{"2023-07-14Z", in_zone(on(2023, 7, 14), 0)},
                {"2023-07-14+02:00", in_zone(on(2023, 7, 14), 120)},
                {"2023-07-14-05", in_zone(on(2023, 7, 14), -300)},
                {"20230714-0500", in_zone(on(2023, 7, 14), -300)},
                {"2023/07/14+0130 ", in_zone(on(2023, 7, 14), 90)}});
}

TEST(temporal_from_text, reads_every_zone_in_every_form)
{
    for (int zone = -1500; zone <= 1500; zone++) {
        const std::string with_colon = slow_zone_text(zone);
        const std::string without = with_colon.substr(0, 3) + with_colon.substr(4);
        const bool good = zone >= -840 && zone <= 840;
        for (const std::string front : {"12:00", "2023-07-14 12:00:00.5", "2023-07-14"}) {
            const temporal_reading expected = good ? in_zone(slow_read_temporal(front), zone) : bad;
            ASSERT_EQ(read_simple(front + with_colon), expected) << front << with_colon;
            ASSERT_EQ(read_simple(front + without), expected) << front << without;
            if (zone % 60 == 0) {
                ASSERT_EQ(read_simple(front + with_colon.substr(0, 3)), expected) << front << with_colon.substr(0, 3);
            }
        }
    }
}

// ---- Types -----------------------------------------------------------------------

TEST(temporal_from_text, a_date_drops_time_and_zone)
{
    for (const std::string text :
         {"2023-07-14", "2023-07-14 12:34", "2023-07-14 12:34:56", "2023-07-14T12:34:56.123456",
          "2023-07-14 12:34:56.123456-05:00", "2023-07-14Z", " 20230714T12:34+01 "})
        EXPECT_EQ(read_typed(text, TYPE_DATE), on(2023, 7, 14)) << text;
}

TEST(temporal_from_text, a_date_has_the_day_that_the_fraction_was_rounded_to)
{
    EXPECT_EQ(read_typed("2023-07-14 23:59:59.9999995", TYPE_DATE), on(2023, 7, 15));
    EXPECT_EQ(read_typed("9999-12-31 23:59:59.9999995", TYPE_DATE), bad);
}

TEST(temporal_from_text, a_time_alone_is_no_date)
{
    for (const std::string text : {"12:34", "12:34:56", "12:34:56.5", "12:34:56+02:00", " 12:34 ", "12:34Z"}) {
        EXPECT_EQ(read_typed(text, TYPE_DATE), bad) << text;
        EXPECT_EQ(read_typed(text, TYPE_DATETIME), slow_read_temporal(text)) << text;
        EXPECT_EQ(read_simple(text), slow_read_temporal(text)) << text;
    }
}

TEST(temporal_from_text, a_datetime_keeps_time_and_zone)
{
    EXPECT_EQ(read_typed("2023-07-14 12:34:56.123456", TYPE_DATETIME), at(on(2023, 7, 14), 12, 34, 56, 123456));
    EXPECT_EQ(read_typed("2023-07-14 12:34:56-05:00", TYPE_DATETIME), in_zone(at(on(2023, 7, 14), 12, 34, 56), -300));
    EXPECT_EQ(read_typed("2023-07-14", TYPE_DATETIME), on(2023, 7, 14));
}

TEST(temporal_from_text, typed_texts_have_the_year_first)
{
    for (const int32_t type : {TYPE_DATE, TYPE_DATETIME}) {
        for (const std::string text : {"14.07.2023", "14/07/2023", "07/14/2023"})
            EXPECT_EQ(read_typed(text, type), bad) << text;
    }
}

TEST(temporal_from_text, finishing_changes_nothing)
{
    const vqtime before = value_from("2023-07-14 12:34:56.123456-05:00");
    vqtime after = before;
    vqtime_glgl_adjust_ignore(&after);
    EXPECT_TRUE(same_bytes(after, before));
}

TEST(temporal_from_text, records_are_as_documented)
{
    const uint8_t expected[12] = {0xD4, 0xFE, 20, 23, 7, 14, 12, 34, 56, 78, 90, 12}; // -300 is FED4
    EXPECT_EQ(std::memcmp(value_from("2023-07-14 12:34:56.789012-05:00").bytes, expected, 12), 0);
}

TEST(temporal_from_text, equal_values_have_equal_bytes)
{
    const vqtime value = value_from("2023-07-14 12:34:56.5Z");
    for (const std::string text : {"2023/07/14T12:34:56.50+00:00", " 20230714 12:34:56.499999500001-00 "})
        EXPECT_TRUE(same_bytes(value_from(text), value)) << text;
}

// ---- Rounding ----------------------------------------------------------------------

TEST(temporal_from_text, more_than_six_digits_are_rounded_ties_up)
{
    const std::string much = std::string(400, '9');
    expect_all({{"12:34:56.1234564", at(12, 34, 56, 123456)},
                {"12:34:56.12345649999999999999", at(12, 34, 56, 123456)},
                {"12:34:56.1234565", at(12, 34, 56, 123457)},
                {"12:34:56.12345650000000000000", at(12, 34, 56, 123457)},
                {"12:34:56.1234566", at(12, 34, 56, 123457)},
                {"12:34:56.0000005", at(12, 34, 56, 1)},
                {"12:34:56.0000004" + much, at(12, 34, 56, 0)},
                {"12:34:56." + much, at(12, 34, 57, 0)},
                {"12:34:56.1234560" + much, at(12, 34, 56, 123456)},
                {"2023-07-14 12:34:56.1234565+01:00", in_zone(at(on(2023, 7, 14), 12, 34, 56, 123457), 60)}});
}

TEST(temporal_from_text, rounding_carries_through_to_the_date)
{
    expect_all({{"12:34:56.9999995", at(12, 34, 57)},
                {"12:34:59.9999995", at(12, 35)},
                {"12:59:59.9999995", at(13, 0)},
                {"23:59:59.9999994", at(23, 59, 59, 999999)},
                {"23:59:59.9999995", on(1900, 1, 2)},
                {"2023-07-14 23:59:59.9999995", on(2023, 7, 15)},
                {"2023-07-31T23:59:59.9999995", on(2023, 8, 1)},
                {"2023-12-31 23:59:59.9999995Z", in_zone(on(2024, 1, 1), 0)},
                {"2023-02-28 23:59:59.9999995", on(2023, 3, 1)},
                {"2024-02-28 23:59:59.9999995", on(2024, 2, 29)},
                {"2024-02-29 23:59:59.9999995", on(2024, 3, 1)},
                {"1900-02-28 23:59:59.9999995", on(1900, 3, 1)},
                {"2000-02-28 23:59:59.9999995", on(2000, 2, 29)},
                {"1999-12-31 23:59:59.9999995", on(2000, 1, 1)},
                {"9999-12-30 23:59:59.9999995", on(9999, 12, 31)},
                {"9999-12-31 23:59:59.9999994", at(on(9999, 12, 31), 23, 59, 59, 999999)},
                {"9999-12-31 23:59:59.9999995", bad}});
}

TEST(temporal_from_text, rounding_does_not_make_a_time_of_what_is_none)
{
    expect_bad({"23:59:60", "23:59:60.0000005", "24:00:00", "24:00", "23:60:00", "12:34:60.5", "2023-07-14 24:00:00",
                "2023-07-14 23:59:60", "2023-02-29 23:59:59.9999995", "0000-12-31 23:59:59.9999995"});
}

// ---- Everything that is small enough -------------------------------------------------

TEST(temporal_from_text, reads_every_day_in_every_form)
{
    struct form {
        const char *format;
        bool year_last;
        uint16_t parse_word;
    };
    const form forms[] = {
        {"%1$04d-%2$02d-%3$02d", false, BCAST_YEAR_FIRST}, {"%1$04d/%2$02d/%3$02d", false, BCAST_DAY_FIRST},
        {"%1$04d%2$02d%3$02d", false, BCAST_MONTH_FIRST},  {"%3$02d.%2$02d.%1$04d", true, BCAST_DAY_FIRST},
        {"%3$02d/%2$02d/%1$04d", true, BCAST_DAY_FIRST},   {"%2$02d/%3$02d/%1$04d", true, BCAST_MONTH_FIRST}};
    for_each_day([&](std::chrono::year_month_day date) {
        const temporal_reading expected = on(int(date.year()), int(unsigned(date.month())), int(unsigned(date.day())));
        for (const form &f : forms) {
            char text[64];
            const int size = std::snprintf(text, sizeof text, f.format, expected.year, expected.month, expected.day);
            ASSERT_EQ(read_simple(text, static_cast<size_t>(size), f.parse_word), expected) << text;
        }
    });
}

TEST(temporal_from_text, refuses_every_day_that_the_calendar_lacks)
{
    for (const int year : {0, 1, 4, 99, 100, 400, 1600, 1700, 1800, 1900, 1904, 2000, 2023, 2024, 2100, 9996, 9999}) {
        for (int month = 0; month < 100; month++) {
            for (int day = 0; day < 100; day++) {
                const auto date = std::chrono::year(year) / month / day;
                const bool good = year > 0 && date.ok();
                char iso[64], compact[64], last[64];
                std::snprintf(iso, sizeof iso, "%04d-%02d-%02d", year, month, day);
                std::snprintf(compact, sizeof compact, "%04d%02d%02d", year, month, day);
                std::snprintf(last, sizeof last, "%02d.%02d.%04d", day, month, year);
                const temporal_reading expected = good ? on(year, month, day) : bad;
                ASSERT_EQ(read_simple(iso), expected) << iso;
                ASSERT_EQ(read_simple(compact), expected) << compact;
                ASSERT_EQ(read_simple(last, BCAST_DAY_FIRST), expected) << last;
            }
        }
    }
}

TEST(temporal_from_text, knows_the_end_of_every_month)
{
    for (int year = 0; year <= 9999; year++) {
        for (int month = 1; month <= 12; month++) {
            for (int day = 28; day <= 32; day++) {
                const bool good = year > 0 && (std::chrono::year(year) / month / day).ok();
                char iso[64], compact[64];
                std::snprintf(iso, sizeof iso, "%04d-%02d-%02d", year, month, day);
                std::snprintf(compact, sizeof compact, "%04d%02d%02d", year, month, day);
                ASSERT_EQ(read_simple(iso), good ? on(year, month, day) : bad) << iso;
                ASSERT_EQ(read_simple(compact), good ? on(year, month, day) : bad) << compact;
            }
        }
    }
}

TEST(temporal_from_text, reads_every_time_and_refuses_what_is_none)
{
    for (int number = 0; number < 1000000; number++) {
        const int hour = number / 10000, minute = number / 100 % 100, second = number % 100;
        const bool good = hour < 24 && minute < 60 && second < 60;
        char text[64];
        std::snprintf(text, sizeof text, "2023-07-14 %02d:%02d:%02d", hour, minute, second);
        const std::string_view all = text, time = all.substr(11);
        ASSERT_EQ(read_simple(all), good ? at(on(2023, 7, 14), hour, minute, second) : bad) << text;
        ASSERT_EQ(read_simple(time), good ? at(hour, minute, second) : bad) << time;
        if (second == 0) {
            ASSERT_EQ(read_simple(all.substr(0, 16)), good ? at(on(2023, 7, 14), hour, minute) : bad) << text;
            ASSERT_EQ(read_simple(time.substr(0, 5)), good ? at(hour, minute) : bad) << time;
        }
    }
}

TEST(temporal_from_text, reads_every_fraction)
{
    for (int millionths = 0; millionths < 1000000; millionths++) {
        char text[64];
        std::snprintf(text, sizeof text, "2023-07-14 12:34:56.%06d", millionths);
        std::string_view all = text;
        const temporal_reading expected = at(on(2023, 7, 14), 12, 34, 56, millionths);
        for (;;) { // and without the zeros at its end
            ASSERT_EQ(read_simple(all), expected) << all;
            ASSERT_EQ(read_simple(all.substr(11)), at(12, 34, 56, millionths)) << all;
            if (!all.ends_with('0') || all.size() == 21)
                break;
            all.remove_suffix(1);
        }
    }
}

// ---- Against the slow reading --------------------------------------------------------

TEST(temporal_from_text, good_texts_are_good_by_both_readings)
{
    guarded_text guard;
    for (const std::string &text : good_texts) {
        bool any = false;
        for (const uint16_t order : orders) {
            const temporal_reading expected = slow_read_temporal(text, order);
            ASSERT_EQ(read_simple(guard.at_end(text), text.size(), order), expected) << "\"" << text << "\"";
            ASSERT_EQ(read_simple(guard.at_start(text), text.size(), order), expected) << "\"" << text << "\"";
            any |= expected.status == 0;
        }
        EXPECT_TRUE(any) << "\"" << text << "\" is bad under every order";
    }
}

TEST(temporal_from_text, every_part_of_a_good_text_has_its_own_meaning)
{
    guarded_text guard;
    for (const std::string &good : good_texts) {
        for (size_t first = 0; first <= good.size(); first++) {
            for (size_t size = 0; size <= good.size() - first; size++) {
                const std::string text = good.substr(first, size);
                for (const uint16_t order : orders) {
                    const temporal_reading expected = slow_read_temporal(text, order);
                    ASSERT_EQ(read_simple(guard.at_end(text), size, order), expected) << "\"" << text << "\"";
                    ASSERT_EQ(read_simple(guard.at_start(text), size, order), expected) << "\"" << text << "\"";
                }
                for (const int32_t type : {TYPE_DATE, TYPE_DATETIME})
                    ASSERT_EQ(read_typed(guard.at_end(text), size, type), slow_read_temporal(text, 0, type))
                        << "\"" << text << "\" of type " << type;
            }
        }
    }
}

TEST(temporal_from_text, every_foreign_byte_has_the_meaning_that_it_has)
{
    for (const std::string &good : good_texts) {
        for (size_t place = 0; place < good.size(); place++) {
            for (int c = 0; c < 256; c++) {
                std::string text = good;
                text[place] = static_cast<char>(c);
                for (const uint16_t order : orders)
                    ASSERT_EQ(read_simple(text, order), slow_read_temporal(text, order))
                        << "\"" << good << "\" with byte " << c << " at " << place << ", order " << order;
                ASSERT_EQ(read_typed(text, TYPE_DATE), slow_read_temporal(text, 0, TYPE_DATE))
                    << "\"" << good << "\" with byte " << c << " at " << place << " as a date";
            }
        }
    }
}

TEST(temporal_from_text, a_byte_put_in_or_taken_out_has_the_meaning_that_it_has)
{
    const std::string bytes = "0159:.-+/TZtz \t,";
    for (const std::string &good : good_texts) {
        for (size_t place = 0; place <= good.size(); place++) {
            std::vector<std::string> texts;
            for (const char c : bytes)
                texts.push_back(good.substr(0, place) + c + good.substr(place));
            if (place < good.size())
                texts.push_back(good.substr(0, place) + good.substr(place + 1));
            for (const std::string &text : texts) {
                for (const uint16_t order : orders)
                    ASSERT_EQ(read_simple(text, order), slow_read_temporal(text, order))
                        << "\"" << text << "\", order " << order;
            }
        }
    }
}

TEST(temporal_from_text, random_texts_have_the_meaning_that_they_have)
{
    std::mt19937 random(20230714);
    const auto below = [&](size_t limit) { return random() % limit; };
    const std::vector<std::string> pieces = {"2023", "0001", "9999", "02",  "12",  "29",  "31", "00",
                                             "23",   "59",   "-",    "/",   ".",   ":",   " ",  "T",
                                             "Z",    "+",    "5",    "999", "-14", ":00", "\t", "0"};
    for (int i = 0; i < 100000; i++) {
        std::string text;
        for (size_t count = 1 + below(14); count > 0; count--)
            text += pieces[below(pieces.size())];
        const auto order = static_cast<uint16_t>(below(4));
        ASSERT_EQ(read_simple(text, order), slow_read_temporal(text, order)) << "\"" << text << "\", order " << order;
    }
}

} // namespace bcast::test
