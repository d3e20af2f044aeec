#include "tests/embedded/text/filled_number_text.h"
#include "tests/support/guarded.h"
#include "tests/support/random_number_text.h"
#include "tests/support/slow_number.h"

#include <services/text.h>

#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <string>
#include <vector>

void PrintTo(const direct_reading &reading, std::ostream *out)
{
    *out << "status " << reading.status << ", value " << reading.value;
    if (reading.sign != 0)
        *out << ", sign " << reading.sign;
}

namespace bcast::test {

namespace {

constexpr int64_t unwritten = 0x5a5a5a5a5a5a5a5a;
constexpr char no_sign = 'u';

direct_reading read_at(const char *text, size_t size)
{
    int64_t value = unwritten;
    char sign = no_sign;
    const int32_t status = str2int64_directly(text, static_cast<int32_t>(size), &value, &sign);
    if (status > 0)
        return {1, value, sign};
    EXPECT_EQ(sign, no_sign) << "status " << status << " and a sign for \"" << std::string_view(text, size) << "\"";
    if (status == 0)
        return {0, value, 0};
    EXPECT_EQ(value, unwritten) << "\"" << std::string_view(text, size) << "\" failed and wrote its result";
    return {status, 0, 0};
}

// Without guards: for many texts, and for long ones.
direct_reading read_plain(const std::string &text) { return read_at(text.data(), text.size()); }

// Copies of the text that touch an inaccessible page with each edge.
direct_reading read(std::string_view text)
{
    direct_reading readings[2];
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        guarded<char> copy(std::span<const char>(text.data(), text.size()), edge);
        copy.make_read_only();
        readings[edge == guard_edge::end] = read_at(copy.data(), text.size());
    }
    EXPECT_EQ(readings[0], readings[1]) << "\"" << text << "\" depends on where it stands";
    return readings[0];
}

direct_reading whole(int64_t value) { return {0, value, 0}; }
direct_reading cut(int64_t value, char sign) { return {1, value, sign}; }
const direct_reading above = {ERR_ABOVE_RANGE, 0, 0};
const direct_reading below = {ERR_BELOW_RANGE, 0, 0};
const direct_reading bad = {ERR_BAD_CONVERSION, 0, 0};

struct text_case {
    std::string text;
    direct_reading expected;
};

void expect_all(const std::vector<text_case> &cases)
{
    for (const text_case &c : cases) {
        EXPECT_EQ(read(c.text), c.expected) << "\"" << c.text << "\"";
        EXPECT_EQ(slow_str2int64_directly(c.text), c.expected) << "\"" << c.text << "\" by the slow reading";
    }
}

} // namespace

// ---- Whole or not ----------------------------------------------------------------

TEST(str2int64_directly, a_number_that_is_whole_in_value_is_exact)
{
    expect_all({
        {"5", whole(5)},
        {"-5", whole(-5)},
        {"+5", whole(5)},
        {"5.", whole(5)},
        {"5.0", whole(5)},
        {"-5.000", whole(-5)},
        {"1e3", whole(1000)},
        {"-1E+3", whole(-1000)},
        {"1000e-3", whole(1)},
        {"-1200e-2", whole(-12)},
        {"1.5e1", whole(15)},
        {"1.50e1", whole(15)},
        {".5e1", whole(5)},
        {"0.00012e5", whole(12)},
        {" \t\n\v\f\r 42 \r\f\v\n\t ", whole(42)},
        {"00000000000000000000000000000000000000007", whole(7)},
        {"-00000000000000000000000000000000000000007.00000000000000000000000", whole(-7)},
        {"12345678901234567", whole(12345678901234567)},
        {"-123456789012345678", whole(-123456789012345678)},
    });
}

TEST(str2int64_directly, zero_in_any_spelling_is_whole)
{
    const std::string zeros(1000, '0');
    expect_all({
        {"0", whole(0)},
        {"-0", whole(0)},
        {"+0", whole(0)},
        {"0.000", whole(0)},
        {"-0.000", whole(0)},
        {".0", whole(0)},
        {"0.", whole(0)},
        {"-.0", whole(0)},
        {"0e0", whole(0)},
        {"0e99999", whole(0)},
        {"-0e99999", whole(0)},
        {"0e-99999", whole(0)},
        {"-0.00e-99999", whole(0)},
        {"0.0e99999999999999999999999999", whole(0)},
        {zeros + "." + zeros, whole(0)},
    });
}

TEST(str2int64_directly, a_fraction_is_cut_toward_zero_and_the_sign_is_told)
{
    expect_all({
        {"5.5", cut(5, '+')},
        {"-5.5", cut(-5, '-')},
        {"+5.5", cut(5, '+')},
        {"0.5", cut(0, '+')},
        {"-0.5", cut(0, '-')},
        {".5", cut(0, '+')},
        {"-.5", cut(0, '-')},
        {"0.9999999999999999999999999999999999999", cut(0, '+')},
        {"-0.9999999999999999999999999999999999999", cut(0, '-')},
        {"1.0000000000000000000000000000000000001", cut(1, '+')},
        {"-1.0000000000000000000000000000000000001", cut(-1, '-')},
        {"2.9", cut(2, '+')},
        {"-2.9", cut(-2, '-')},
        {"1.05", cut(1, '+')},
        {"15e-1", cut(1, '+')},
        {"-15e-1", cut(-1, '-')},
        {"1001e-3", cut(1, '+')},
        {"999e-3", cut(0, '+')},
        {"1.25e1", cut(12, '+')},
        {" -1.25e1 ", cut(-12, '-')},
        {"100.5", cut(100, '+')},
        {"0.05", cut(0, '+')},
        {"100e-5", cut(0, '+')},
        {"-10e-2", cut(0, '-')},
    });
}

TEST(str2int64_directly, a_tiny_number_is_cut_to_0_and_keeps_its_sign)
{
    expect_all({
        {"1e-1", cut(0, '+')},
        {"-1e-1", cut(0, '-')},
        {"1e-19", cut(0, '+')},
        {"1e-20", cut(0, '+')},
        {"-1e-99999", cut(0, '-')},
        {"9e-99999999999999999999999999", cut(0, '+')},
        {"-9e-99999999999999999999999999", cut(0, '-')},
        {"1e-9223372036854775808", cut(0, '+')},
        {"1e-9223372036854775809", cut(0, '+')},
        {"1e-18446744073709551616", cut(0, '+')},
        {std::string("-0.").append(5000, '0') + "1", cut(0, '-')},
    });
}

// ---- Limits ------------------------------------------------------------------------

TEST(str2int64_directly, the_limits_of_int64_are_exact)
{
    expect_all({
        {"9223372036854775807", whole(INT64_MAX)},
        {"9223372036854775808", above},
        {"-9223372036854775808", whole(INT64_MIN)},
        {"-9223372036854775809", below},
        {"+9223372036854775807", whole(INT64_MAX)},
        {"+9223372036854775808", above},
        {" 9223372036854775807 ", whole(INT64_MAX)},
        {" 9223372036854775808 ", above},
        {"0009223372036854775807", whole(INT64_MAX)},
        {"-0009223372036854775808", whole(INT64_MIN)},
        {"-0009223372036854775809", below},
        {"9223372036854775807.0", whole(INT64_MAX)},
        {"-9223372036854775808.0", whole(INT64_MIN)},
        {"9.223372036854775807e18", whole(INT64_MAX)},
        {"9.223372036854775808e18", above},
        {"-9.223372036854775808e18", whole(INT64_MIN)},
        {"-9.223372036854775809e18", below},
        {"92233720368547758070e-1", whole(INT64_MAX)},
        {"9999999999999999999", above},
        {"-9999999999999999999", below},
        {"10000000000000000000", above},
        {"18446744073709551615", above},
        {"18446744073709551616", above},
        {"18446744073709551617", above},
        {"-18446744073709551616", below},
        {"1e18", whole(1000000000000000000)},
        {"1e19", above},
        {"-1e19", below},
        {"1e20", above},
    });
}

TEST(str2int64_directly, a_fraction_beyond_a_limit_is_cut_to_the_limit)
{
    expect_all({
        {"9223372036854775807.5", cut(INT64_MAX, '+')},
        {"9223372036854775807.9999999999999999999999999999999", cut(INT64_MAX, '+')},
        {"9223372036854775807.00000000000000000000000000001", cut(INT64_MAX, '+')},
        {"-9223372036854775808.9", cut(INT64_MIN, '-')},
        {"-9223372036854775808.00000000000000000000000000001", cut(INT64_MIN, '-')},
        {"9223372036854775806.5", cut(INT64_MAX - 1, '+')},
        {"9223372036854775808.5", above},
        {"-9223372036854775809.5", below},
        {"9.2233720368547758079e18", cut(INT64_MAX, '+')},
        {"-9.2233720368547758089e18", cut(INT64_MIN, '-')},
        {"92233720368547758079e-1", cut(INT64_MAX, '+')},
        {"9999999999999999999.5", above},
        {"99999999999999999999.5", above},
        {"-99999999999999999999.5", below},
    });
}

TEST(str2int64_directly, exponents_of_any_length_are_exact)
{
    const std::string zeros(100, '0');
    expect_all({
        {"1e99999", above},
        {"-1e99999", below},
        {"1e9223372036854775807", above},
        {"-1e9223372036854775808", below},
        {"1e18446744073709551616", above},
        {"1e4294967296", above},
        {"-1e99999999999999999999999999999", below},
        {"1e" + zeros + "2", whole(100)},
        {"1e-" + zeros + "1", cut(0, '+')},
        {"0." + zeros + "1e101", whole(1)},
        {"0." + zeros + "12e101", cut(1, '+')},
        {"1" + zeros + "e-100", whole(1)},
        {"1" + zeros + "1e-101", cut(1, '+')},
        {"1" + zeros + "e-101", cut(0, '+')},
    });
}

TEST(str2int64_directly, digits_of_any_number_are_exact)
{
    const std::string zeros(1000000, '0'), nines(1000000, '9');
    const std::vector<text_case> cases = {
        {zeros + "5", whole(5)},
        {"-" + zeros, whole(0)},
        {nines, above},
        {"-" + nines, below},
        {"1" + zeros, above},
        {"1" + zeros + "e-1000000", whole(1)},
        {"1" + zeros + "1e-1000001", cut(1, '+')},
        {"-15" + zeros + "e-1000001", cut(-1, '-')},
        {"0." + zeros + "5e1000000", cut(0, '+')},
        {"0." + zeros + "5e1000001", whole(5)},
        {"5." + zeros, whole(5)},
        {"5." + zeros + "1", cut(5, '+')},
        {"-0." + zeros + "1", cut(0, '-')},
        {"-0." + zeros, whole(0)},
        {"9223372036854775807." + nines, cut(INT64_MAX, '+')},
        {"-9223372036854775808." + nines, cut(INT64_MIN, '-')},
        {"9223372036854775807" + zeros + "e-1000000", whole(INT64_MAX)},
        {"9223372036854775808" + zeros + "e-1000000", above},
        {"-9223372036854775808" + zeros + "1e-1000001", cut(INT64_MIN, '-')},
        {"-9223372036854775809" + zeros + "e-1000000", below},
        {nines + "e-" + nines, cut(0, '+')},
        {"-" + nines + "e" + nines, below},
        {zeros + "e" + nines, whole(0)},
        {nines + "x", bad},
        {zeros + "." + zeros + "e" + zeros + "x", bad},
    };
    for (size_t i = 0; i < cases.size(); i++) {
        EXPECT_EQ(read_plain(cases[i].text), cases[i].expected) << "case " << i;
        EXPECT_EQ(slow_str2int64_directly(cases[i].text), cases[i].expected) << "case " << i << " by the slow reading";
    }
}

// ---- No numbers ----------------------------------------------------------------------

TEST(str2int64_directly, a_text_without_a_number_is_refused)
{
    for (const char *text : {"",         " ",
                             "-",        "+",
                             ".",        "-.",
                             "e",        "e5",
                             ".e5",      "\t ",
                             "- 5",      "1 2",
                             "1 .5",     "1e",
                             "1e+",      "1e-",
                             "1e 5",     "1e.5",
                             "1e1.",     "--1",
                             "+-1",      "5..",
                             "..5",      "5.5.",
                             "abc",      "inf",
                             "-inf",     "nan",
                             "0x10",     "1d3",
                             "1_000",    "5,0",
                             "1ee1",     "1e++1",
                             "5 x",      "x5",
                             "5-",       "9223372036854775808x",
                             "1e99999x", "-9999999999999999999999 9"})
        EXPECT_EQ(read(text), bad) << "\"" << text << "\"";
}

TEST(str2int64_directly, a_length_of_zero_or_below_reads_nothing)
{
    const guarded<char> nothing(0);
    for (const int32_t length : {0, -1, -2, -17, INT32_MIN, INT32_MIN + 1}) {
        int64_t value = unwritten;
        char sign = no_sign;
        EXPECT_EQ(str2int64_directly(nothing.data(), length, &value, &sign), ERR_BAD_CONVERSION) << length;
        EXPECT_EQ(value, unwritten) << length;
        EXPECT_EQ(sign, no_sign) << length;
    }
}

TEST(str2int64_directly, every_byte_at_every_place_is_read_as_the_slow_reading_does)
{
    for (const std::string good :
         {"1", "12", "12345678", "1234567890123456", "-1234567890123456", "12345678901234567", "-123456789012345678",
          "1234567890123456789", "-1234567890123456789", "1.5", "-12.50e1", " 1 "}) {
        for (size_t at = 0; at < good.size(); at++) {
            for (int c = 0; c < 256; c++) {
                std::string text = good;
                text[at] = static_cast<char>(c);
                ASSERT_EQ(read_plain(text), slow_str2int64_directly(text))
                    << "\"" << good << "\" with byte " << c << " at " << at;
            }
        }
    }
}

TEST(str2int64_directly, what_stands_behind_the_length_does_not_count)
{
    const std::string text = "1234567890.12345678901";
    for (size_t size = 0; size <= text.size(); size++)
        EXPECT_EQ(read_at(text.data(), size), slow_str2int64_directly(text.substr(0, size))) << size;
}

// ---- Filled texts --------------------------------------------------------------

TEST(str2int64_directly, blanks_and_zeros_of_every_count_around_a_number_change_nothing_but_their_reader)
{
    for (const std::string &text : filled_number_texts())
        ASSERT_EQ(read(text), slow_str2int64_directly(text)) << "\"" << text << "\"";
}

TEST(str2int64_directly, agrees_with_the_slow_reading_on_random_filled_texts)
{
    random_filled_text next;
    size_t numbers = 0, bads = 0;
    for (int i = 0; i < 300000; i++) {
        const std::string text = next();
        const auto expected = slow_str2int64_directly(text);
        ASSERT_EQ(read_plain(text), expected) << "\"" << text << "\"";
        (expected == bad ? bads : numbers)++;
    }
    // The texts are worth something only while they come out in both ways.
    EXPECT_GT(numbers, 200000u);
    EXPECT_GT(bads, 10000u);
}

// ---- Against the slow reading ----------------------------------------------------------

TEST(str2int64_directly, reads_back_random_numbers_of_every_length)
{
    std::mt19937_64 random(20240801);
    for (int i = 0; i < 200000; i++) {
        const auto number = static_cast<int64_t>(random() >> (random() % 64)) * (random() % 2 == 0 ? 1 : -1);
        const std::string text = std::to_string(number);
        ASSERT_EQ(read_plain(text), whole(number)) << text;
        if (number != 0) {
            ASSERT_EQ(read_plain(text + ".5"), cut(number, number < 0 ? '-' : '+')) << text << ".5";
        }
    }
}

TEST(str2int64_directly, agrees_with_the_slow_reading_on_random_texts)
{
    random_number_text next;
    size_t wholes = 0, cuts = 0, aboves = 0, belows = 0, bads = 0;
    for (int i = 0; i < 400000; i++) {
        const std::string text = next();
        const direct_reading expected = slow_str2int64_directly(text);
        ASSERT_EQ(read_plain(text), expected) << "\"" << text << "\"";
        (expected.status == 0  ? wholes
         : expected.status > 0 ? cuts
         : expected == above   ? aboves
         : expected == below   ? belows
                               : bads)++;
    }
    // The texts are worth something only while they come out in every way.
    EXPECT_GT(wholes, 50000u);
    EXPECT_GT(cuts, 50000u);
    EXPECT_GT(aboves, 50000u);
    EXPECT_GT(belows, 10000u);
    EXPECT_GT(bads, 20000u);
}

TEST(str2int64_directly, agrees_with_the_slow_reading_beside_inaccessible_pages)
{
    random_number_text next;
    for (int i = 0; i < 20000; i++) {
        const std::string text = next();
        ASSERT_EQ(read(text), slow_str2int64_directly(text)) << "\"" << text << "\"";
    }
}

} // namespace bcast::test
