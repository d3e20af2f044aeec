// Interval services: shapes, precisions, text in both directions.

#include <bcast/codes.h>
#include <services/interval.h>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

// Of codes that are none, too.
uint16_t word(int code, int leading = 0, int fraction = 6) { return BCAST_IV_WORD(code, leading, fraction); }

ivdt dt(int32_t day, int32_t hour, int32_t minute, int32_t second, int32_t fraction, uint32_t iv_word)
{
    return {day, hour, minute, second, fraction, iv_word};
}

std::string shown(const ivym &v)
{
    return std::to_string(v.year) + " years " + std::to_string(v.month) + " months word " + std::to_string(v.iv_word);
}

std::string shown(const ivdt &v)
{
    return std::to_string(v.day) + " d " + std::to_string(v.hour) + " h " + std::to_string(v.minute) + " min " +
           std::to_string(v.second) + " s " + std::to_string(v.fraction) + " us word " + std::to_string(v.iv_word);
}

constexpr ivym rubbish_ym = {-77, -78, 0x55555555};
constexpr ivdt rubbish_dt = {-77, -78, -79, -80, -81, 0x55555555};

int32_t read(const std::string &text, ivym *to, uint16_t shape)
{
    return vq_interval_ym_from_char(nullptr, text.c_str(), to, shape);
}
int32_t read(const std::string &text, ivdt *to, uint16_t shape)
{
    return vq_interval_dt_from_char(nullptr, text.c_str(), to, shape);
}

std::string written(const ivym &v, uint16_t shape)
{
    char text[BCAST_TEXT_ROOM];
    const int32_t len = vq_interval_ym_to_char(&v, text, shape);
    return len == 0 ? "no text" : std::string(text);
}
std::string written(const ivdt &v, uint16_t shape)
{
    char text[BCAST_TEXT_ROOM];
    const int32_t len = vq_interval_dt_to_char(&v, text, shape);
    return len == 0 ? "no text" : std::string(text);
}

void expect_ym(const std::string &text, uint16_t shape, int32_t year, int32_t month)
{
    ivym got = rubbish_ym;
    ASSERT_EQ(read(text, &got, shape), 0) << text;
    EXPECT_EQ(shown(got), shown(ivym{year, month, shape})) << text;
}

void expect_dt(const std::string &text, ivdt right)
{
    ivdt got = rubbish_dt;
    ASSERT_EQ(read(text, &got, static_cast<uint16_t>(right.iv_word)), 0) << text;
    EXPECT_EQ(shown(got), shown(right)) << text;
}

template <class Interval>
void expect_refused(const std::string &text, uint16_t shape, int32_t code, const Interval &rubbish)
{
    Interval got = rubbish;
    EXPECT_EQ(read(text, &got, shape), code) << '"' << text << "\" in shape " << shape;
    EXPECT_EQ(shown(got), shown(rubbish)) << "a refused text has written the interval: " << text;
}

TEST(interval_text, year_to_month_reads_both_fields_with_one_sign)
{
    const uint16_t shape = word(IV_YEAR_TO_MONTH);
    expect_ym("3-11", shape, 3, 11);
    expect_ym("-3-11", shape, -3, -11);
    expect_ym("+0-1", shape, 0, 1);
    expect_ym("-0-1", shape, 0, -1);
    expect_ym(" \t\n\v\f\r3-1 \t\n\v\f\r", shape, 3, 1);
    expect_ym("- 3-01", shape, -3, -1);
    expect_ym("000000000000000000000000000012-2", shape, 12, 2);
    expect_ym("999999999-11", shape, 999999999, 11);
}

TEST(interval_text, a_lone_number_is_the_leading_field_in_every_shape)
{
    for (const int code : {IV_YEAR, IV_YEAR_TO_MONTH})
        expect_ym("7", word(code), 7, 0);
    expect_ym("7", word(IV_MONTH), 0, 7);
    for (const int code : {IV_DAY, IV_DAY_TO_HOUR, IV_DAY_TO_MINUTE, IV_DAY_TO_SECOND})
        expect_dt("-7", dt(-7, 0, 0, 0, 0, word(code)));
    for (const int code : {IV_HOUR, IV_HOUR_TO_MINUTE, IV_HOUR_TO_SECOND})
        expect_dt("7", dt(0, 7, 0, 0, 0, word(code)));
    for (const int code : {IV_MINUTE, IV_MINUTE_TO_SECOND})
        expect_dt("7", dt(0, 0, 7, 0, 0, word(code)));
    expect_dt("7", dt(0, 0, 0, 7, 0, word(IV_SECOND)));
    for (const int code : {3, 4, 5, 6, 7, 8, 9, 10, 11, 12})
        expect_dt("0", dt(0, 0, 0, 0, 0, word(code)));
}

TEST(interval_text, a_leading_field_is_not_bound_by_the_size_of_the_next_larger_one)
{
    expect_ym("14", word(IV_MONTH), 0, 14);
    expect_dt("25:00", dt(0, 25, 0, 0, 0, word(IV_HOUR_TO_MINUTE)));
    expect_dt("61", dt(0, 0, 61, 0, 0, word(IV_MINUTE)));
    expect_dt("3661.5", dt(0, 0, 0, 3661, 500000, word(IV_SECOND)));
}

TEST(interval_text, every_day_to_second_shape_reads_its_fields)
{
    expect_dt("5 3", dt(5, 3, 0, 0, 0, word(IV_DAY_TO_HOUR)));
    expect_dt("5 03:04", dt(5, 3, 4, 0, 0, word(IV_DAY_TO_MINUTE)));
    expect_dt("5 03:04:06", dt(5, 3, 4, 6, 0, word(IV_DAY_TO_SECOND)));
    expect_dt("-5 \t 23:59:59.25", dt(-5, -23, -59, -59, -250000, word(IV_DAY_TO_SECOND)));
    expect_dt("3:04", dt(0, 3, 4, 0, 0, word(IV_HOUR_TO_MINUTE)));
    expect_dt("3:4:5.000001", dt(0, 3, 4, 5, 1, word(IV_HOUR_TO_SECOND)));
    expect_dt("-04:05.", dt(0, 0, -4, -5, 0, word(IV_MINUTE_TO_SECOND)));
    expect_dt("5.999999", dt(0, 0, 0, 5, 999999, word(IV_SECOND)));
}

TEST(interval_text, a_fraction_is_rounded_to_its_precision_with_ties_away_from_zero)
{
    expect_dt("1.25", dt(0, 0, 0, 1, 300000, word(IV_SECOND, 0, 1)));
    expect_dt("-1.25", dt(0, 0, 0, -1, -300000, word(IV_SECOND, 0, 1)));
    expect_dt("1.2499999999999999999", dt(0, 0, 0, 1, 200000, word(IV_SECOND, 0, 1)));
    expect_dt("1.5", dt(0, 0, 0, 2, 0, word(IV_SECOND, 0, 0)));
    expect_dt("1.4999999", dt(0, 0, 0, 1, 0, word(IV_SECOND, 0, 0)));
    expect_dt("1.0000005", dt(0, 0, 0, 1, 1, word(IV_SECOND, 0, 6)));
    expect_dt("1.00000049", dt(0, 0, 0, 1, 0, word(IV_SECOND, 0, 6)));
    for (const int above : {7, 9, 15}) // reads as 6
        expect_dt("1.1234567", dt(0, 0, 0, 1, 123457, word(IV_SECOND, 0, above)));
}

TEST(interval_text, a_carry_goes_up_to_the_leading_field_and_may_be_too_large_for_it)
{
    expect_dt("4 23:59:59.9999995", dt(5, 0, 0, 0, 0, word(IV_DAY_TO_SECOND)));
    expect_dt("-23:59:59.95", dt(0, -24, 0, 0, 0, word(IV_HOUR_TO_SECOND, 0, 1)));
    expect_refused("99.95", word(IV_SECOND, 2, 1), ERR_OVERFLOW, rubbish_dt);
    expect_refused("9 23:59:59.9", word(IV_DAY_TO_SECOND, 1, 0), ERR_OVERFLOW, rubbish_dt);
}

TEST(interval_text, the_leading_field_has_at_most_its_precision_of_digits)
{
    for (int digits = 1; digits <= 9; digits++) {
        const std::string nines(static_cast<size_t>(digits), '9');
        for (const int code : {IV_YEAR, IV_YEAR_TO_MONTH, IV_MONTH}) {
            ivym got;
            EXPECT_EQ(read(nines, &got, word(code, digits)), 0) << nines;
            expect_refused("1" + std::string(static_cast<size_t>(digits), '0'), word(code, digits), ERR_OVERFLOW,
                           rubbish_ym);
        }
        for (int code = IV_DAY; code <= IV_SECOND; code++) {
            ivdt got;
            EXPECT_EQ(read(nines, &got, word(code, digits)), 0) << nines << " code " << code;
            expect_refused("1" + std::string(static_cast<size_t>(digits), '0'), word(code, digits), ERR_OVERFLOW,
                           rubbish_dt);
        }
    }
    for (const int reads_as_9 : {0, 10, 15}) {
        expect_ym("999999999", word(IV_YEAR, reads_as_9), 999999999, 0);
        expect_refused("1000000000", word(IV_YEAR, reads_as_9), ERR_OVERFLOW, rubbish_ym);
        expect_refused("99999999999999999999999999", word(IV_YEAR, reads_as_9), ERR_OVERFLOW, rubbish_ym);
    }
}

TEST(interval_text, other_text_is_refused)
{
    for (const char *text : {"",
                             " ",
                             "-",
                             "+",
                             "x",
                             "1x",
                             "1 x",
                             "1-",
                             "1-12",
                             "1-99",
                             "1-001",
                             "1--1",
                             "--1",
                             "1-1-1",
                             "1 1",
                             "1:1",
                             "1.5",
                             "1-1.5",
                             ".5",
                             "1- 1",
                             "1 -1",
                             "+-1",
                             "0x1",
                             "1e1",
                             "\xA0"
                             "1"})
        expect_refused(text, word(IV_YEAR_TO_MONTH), ERR_BAD_INTERVAL, rubbish_ym);
    expect_refused("1-1", word(IV_YEAR), ERR_BAD_INTERVAL, rubbish_ym);
    expect_refused("1-1", word(IV_MONTH), ERR_BAD_INTERVAL, rubbish_ym);
    for (const char *text :
         {"", "1 24:00:00", "1 00:60:00", "1 00:00:60", "1 1", "1 1:1", "1 1:1:1:1", "1 1:1:1 1", "1:1:1",
          "1 1:1:", "1 :1:1", "1 1::1", "1 1:1:1.5x", "1 1:1:1.5.5", "1.5", "1 1.5:1:1", "1 001:1:1", "1 -1:1:1"})
        expect_refused(text, word(IV_DAY_TO_SECOND), ERR_BAD_INTERVAL, rubbish_dt);
    expect_dt("1  ", dt(1, 0, 0, 0, 0, word(IV_DAY_TO_SECOND)));
    expect_refused("1.5", word(IV_DAY), ERR_BAD_INTERVAL, rubbish_dt);
    expect_refused("1.5", word(IV_MINUTE_TO_SECOND), ERR_BAD_INTERVAL, rubbish_dt);
}

TEST(interval_text, a_field_code_that_the_kind_lacks_is_refused)
{
    for (int code = 0; code < 256; code++) {
        if (code > 2) {
            expect_refused("1", word(code), ERR_INTERVAL_FIELD, rubbish_ym);
            EXPECT_EQ(written(ivym{1, 0, word(code)}, word(code)), "no text");
        }
        if (code < 3 || code > 12) {
            expect_refused("1", word(code), ERR_INTERVAL_FIELD, rubbish_dt);
            EXPECT_EQ(written(dt(0, 0, 0, 0, 0, word(code)), word(code)), "no text");
        }
    }
}

TEST(interval_text, text_is_written_in_the_shape_with_one_sign)
{
    EXPECT_EQ(written(ivym{3, 1, 0}, word(IV_YEAR_TO_MONTH)), "3-1");
    EXPECT_EQ(written(ivym{-3, -11, 0}, word(IV_YEAR_TO_MONTH)), "-3-11");
    EXPECT_EQ(written(ivym{0, 0, 0}, word(IV_YEAR_TO_MONTH)), "0-0");
    EXPECT_EQ(written(ivym{0, -1, 0}, word(IV_YEAR_TO_MONTH)), "-0-1");
    EXPECT_EQ(written(ivym{3, 2, 0}, word(IV_MONTH)), "38");
    EXPECT_EQ(written(ivym{3, 0, 0}, word(IV_YEAR)), "3");
    EXPECT_EQ(written(dt(5, 3, 4, 6, 0, 0), word(IV_DAY_TO_SECOND)), "5 03:04:06");
    EXPECT_EQ(written(dt(-5, -3, -4, -6, -70, 0), word(IV_DAY_TO_SECOND)), "-5 03:04:06.00007");
    EXPECT_EQ(written(dt(5, 3, 0, 0, 0, 0), word(IV_DAY_TO_HOUR)), "5 03");
    EXPECT_EQ(written(dt(5, 3, 4, 0, 0, 0), word(IV_HOUR_TO_MINUTE)), "123:04");
    EXPECT_EQ(written(dt(0, 0, 4, 6, 500000, 0), word(IV_MINUTE_TO_SECOND)), "4:06.5");
    EXPECT_EQ(written(dt(0, 0, 0, 0, -1, 0), word(IV_SECOND)), "-0.000001");
    EXPECT_EQ(written(dt(INT32_MAX, 0, 0, 0, 0, 0), word(IV_DAY)), "2147483647");
    EXPECT_EQ(written(dt(INT32_MIN, 0, 0, 0, 0, 0), word(IV_SECOND)), "-185542587187200");
}

TEST(interval_text, what_the_shape_cannot_show_has_no_text)
{
    EXPECT_EQ(written(ivym{3, 1, 0}, word(IV_YEAR)), "no text");
    EXPECT_EQ(written(dt(5, 3, 0, 0, 0, 0), word(IV_DAY)), "no text");
    EXPECT_EQ(written(dt(5, 3, 0, 0, 1, 0), word(IV_DAY_TO_MINUTE)), "no text");
}

TEST(interval_text, random_intervals_read_back_as_they_were_written)
{
    std::mt19937 random(1);
    for (int code = IV_DAY; code <= IV_SECOND; code++) {
        for (int k = 0; k < 2000; k++) {
            const int64_t leading = random() % (k % 2 == 0 ? 10 : 999999999);
            const std::string text = (random() % 2 ? "-" : "") + std::to_string(leading);
            ivdt first, again;
            ASSERT_EQ(read(text, &first, word(code)), 0);
            // The fields behind the leading one, as far as the shape has them.
            const bool negative = text[0] == '-';
            const auto field = [&](int limit) {
                return static_cast<int32_t>(random() % static_cast<uint32_t>(limit)) * (negative ? -1 : 1);
            };
            if (code >= IV_DAY_TO_HOUR && code <= IV_DAY_TO_SECOND)
                first.hour = field(24);
            if (code == IV_DAY_TO_MINUTE || code == IV_DAY_TO_SECOND || code == IV_HOUR_TO_MINUTE ||
                code == IV_HOUR_TO_SECOND)
                first.minute = field(60);
            if (code == IV_DAY_TO_SECOND || code == IV_HOUR_TO_SECOND || code == IV_MINUTE_TO_SECOND)
                first.second = field(60);
            if (code == IV_DAY_TO_SECOND || code == IV_HOUR_TO_SECOND || code == IV_MINUTE_TO_SECOND ||
                code == IV_SECOND)
                first.fraction = field(1000000);
            const std::string written_text = written(first, word(code));
            ASSERT_EQ(read(written_text, &again, word(code)), 0) << written_text;
            ASSERT_EQ(shown(again), shown(first)) << written_text;
        }
    }
    for (int months = -3000; months <= 3000; months++) {
        for (const int code : {IV_YEAR_TO_MONTH, IV_MONTH}) {
            ivym v{code == IV_MONTH ? 0 : months / 12, code == IV_MONTH ? months : months % 12, word(code)}, again;
            ASSERT_EQ(read(written(v, word(code)), &again, word(code)), 0) << months;
            ASSERT_EQ(shown(again), shown(v)) << months;
        }
    }
}

TEST(interval_validate, carries_up_to_the_leading_field_and_keeps_the_fraction)
{
    ivdt v = dt(1, 23, 59, 3661, 1500000, word(IV_DAY_TO_SECOND, 0, 0));
    ASSERT_EQ(interval_dt_validate(&v, word(IV_DAY_TO_SECOND, 0, 0)), 0);
    EXPECT_EQ(shown(v), shown(dt(2, 1, 0, 2, 500000, word(IV_DAY_TO_SECOND, 0, 0))));
    v = dt(0, 0, 0, 90061, 5, word(IV_SECOND, 0, 0));
    ASSERT_EQ(interval_dt_validate(&v, word(IV_SECOND, 0, 0)), 0);
    EXPECT_EQ(shown(v), shown(dt(0, 0, 0, 90061, 5, word(IV_SECOND, 0, 0))));
    v = dt(0, 0, 0, -294, -967296, word(IV_SECOND));
    ASSERT_EQ(interval_dt_validate(&v, word(IV_SECOND)), 0);
    EXPECT_EQ(shown(v), shown(dt(0, 0, 0, -294, -967296, word(IV_SECOND))));
    v = dt(0, 1, -30, 0, 0, word(IV_HOUR_TO_MINUTE));
    ASSERT_EQ(interval_dt_validate(&v, word(IV_HOUR_TO_MINUTE)), 0);
    EXPECT_EQ(shown(v), shown(dt(0, 0, 30, 0, 0, word(IV_HOUR_TO_MINUTE))));
    ivym w = {1, 14, word(IV_YEAR_TO_MONTH)};
    ASSERT_EQ(interval_ym_validate(&w, word(IV_YEAR_TO_MONTH)), 0);
    EXPECT_EQ(shown(w), shown(ivym{2, 2, word(IV_YEAR_TO_MONTH)}));
    w = {0, -14, word(IV_MONTH)};
    ASSERT_EQ(interval_ym_validate(&w, word(IV_MONTH)), 0);
    EXPECT_EQ(shown(w), shown(ivym{0, -14, word(IV_MONTH)}));
}

TEST(interval_validate, refuses_what_the_shape_has_no_place_for)
{
    const auto refused = [](ivdt v, uint16_t shape, int32_t code) {
        const ivdt before = v;
        EXPECT_EQ(interval_dt_validate(&v, shape), code) << shown(before) << " in shape " << shape;
        EXPECT_EQ(shown(v), shown(before));
    };
    refused(dt(1, 0, 0, 0, 0, 1), word(IV_HOUR), ERR_INTERVAL_FIELD);
    refused(dt(0, 0, 1, 0, 0, 1), word(IV_HOUR), ERR_INTERVAL_FIELD);
    refused(dt(0, 0, 1, 0, 1, 1), word(IV_MINUTE), ERR_INTERVAL_FIELD);
    refused(dt(1, 0, 0, 0, 0, 1), word(2), ERR_INTERVAL_FIELD);
    refused(dt(1, 0, 0, 0, 0, 1), word(13), ERR_INTERVAL_FIELD);
    refused(dt(100, 0, 0, 0, 0, 1), word(IV_DAY, 2), ERR_OVERFLOW);
    refused(dt(-100, 0, 0, 0, 0, 1), word(IV_DAY, 2), ERR_OVERFLOW);
    refused(dt(99, 24, 0, 0, 0, 1), word(IV_DAY_TO_HOUR, 2), ERR_OVERFLOW);
    refused(dt(INT32_MAX, 0, 0, 0, 0, 1), word(IV_DAY), ERR_OVERFLOW);
    ivym v = {100, 0, 1};
    EXPECT_EQ(interval_ym_validate(&v, word(IV_MONTH)), ERR_INTERVAL_FIELD);
    EXPECT_EQ(interval_ym_validate(&v, word(IV_YEAR, 2)), ERR_OVERFLOW);
    EXPECT_EQ(interval_ym_validate(&v, word(IV_DAY)), ERR_INTERVAL_FIELD);
    EXPECT_EQ(shown(v), shown(ivym{100, 0, 1}));
}

TEST(interval_reshape, carries_higher_fields_down_and_cuts_lower_ones)
{
    const auto reshaped = [](const ivdt &from, uint16_t shape) {
        ivdt result = rubbish_dt;
        result.iv_word = shape;
        const int32_t status = cast_interval_dt(&result, &from, 1);
        return status == 0 ? shown(result) : std::to_string(status);
    };
    const ivdt v = dt(2, 3, 4, 5, 678901, word(IV_DAY_TO_SECOND));
    EXPECT_EQ(reshaped(v, word(IV_DAY)), shown(dt(2, 0, 0, 0, 0, word(IV_DAY))));
    EXPECT_EQ(reshaped(v, word(IV_DAY_TO_HOUR)), shown(dt(2, 3, 0, 0, 0, word(IV_DAY_TO_HOUR))));
    EXPECT_EQ(reshaped(v, word(IV_HOUR)), shown(dt(0, 51, 0, 0, 0, word(IV_HOUR))));
    EXPECT_EQ(reshaped(v, word(IV_HOUR_TO_MINUTE)), shown(dt(0, 51, 4, 0, 0, word(IV_HOUR_TO_MINUTE))));
    EXPECT_EQ(reshaped(v, word(IV_MINUTE)), shown(dt(0, 0, 3064, 0, 0, word(IV_MINUTE))));
    EXPECT_EQ(reshaped(v, word(IV_SECOND)), shown(dt(0, 0, 0, 183845, 678901, word(IV_SECOND))));
    EXPECT_EQ(reshaped(v, word(IV_MINUTE_TO_SECOND, 0, 2)),
              shown(dt(0, 0, 3064, 5, 680000, word(IV_MINUTE_TO_SECOND, 0, 2))));
    EXPECT_EQ(reshaped(v, word(IV_SECOND, 0, 0)), shown(dt(0, 0, 0, 183846, 0, word(IV_SECOND, 0, 0))));
    EXPECT_EQ(reshaped(v, word(IV_SECOND, 5)), std::to_string(ERR_OVERFLOW));
    EXPECT_EQ(reshaped(dt(-2, -23, -59, -59, -999999, 0), word(IV_DAY)), shown(dt(-2, 0, 0, 0, 0, word(IV_DAY))));
    EXPECT_EQ(reshaped(dt(0, 0, 0, -1, -250000, 0), word(IV_SECOND, 0, 1)),
              shown(dt(0, 0, 0, -1, -300000, word(IV_SECOND, 0, 1))));
    EXPECT_EQ(reshaped(v, word(13)), std::to_string(ERR_INTERVAL_FIELD));

    const auto reshaped_ym = [](const ivym &from, uint16_t shape) {
        ivym result = rubbish_ym;
        result.iv_word = shape;
        const int32_t status = cast_interval_ym(&result, &from, 1);
        return status == 0 ? shown(result) : std::to_string(status);
    };
    EXPECT_EQ(reshaped_ym(ivym{3, 5, 0}, word(IV_MONTH)), shown(ivym{0, 41, word(IV_MONTH)}));
    EXPECT_EQ(reshaped_ym(ivym{-3, -5, 0}, word(IV_YEAR)), shown(ivym{-3, 0, word(IV_YEAR)}));
    EXPECT_EQ(reshaped_ym(ivym{0, 41, 0}, word(IV_YEAR_TO_MONTH)), shown(ivym{3, 5, word(IV_YEAR_TO_MONTH)}));
    EXPECT_EQ(reshaped_ym(ivym{100, 0, 0}, word(IV_YEAR, 2)), std::to_string(ERR_OVERFLOW));
}

TEST(interval_clear, sets_every_field_to_zero)
{
    ivym ym = rubbish_ym;
    vqdt_clear_interval_ym_info(&ym);
    EXPECT_EQ(shown(ym), shown(ivym{}));
    ivdt v = rubbish_dt;
    vqdt_clear_interval_dt_info(&v);
    EXPECT_EQ(shown(v), shown(ivdt{}));
}

} // namespace
