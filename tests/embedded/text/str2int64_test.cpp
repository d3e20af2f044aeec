#include "tests/embedded/text/filled_number_text.h"
#include "tests/support/guarded.h"
#include "tests/support/random_number_text.h"
#include "tests/support/slow_number.h"

#include <services/text.h>

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <random>
#include <string>
#include <vector>

void PrintTo(const number_reading &reading, std::ostream *out)
{
    *out << "status " << reading.status << ", value " << reading.value;
}

namespace bcast::test {

namespace {

constexpr int64_t unwritten = 0x5a5a5a5a5a5a5a5a;

// Reads a copy of the text that touches an inaccessible page with that edge.
number_reading read_guarded(std::string_view text, guard_edge edge)
{
    guarded<char> copy(std::span<const char>(text.data(), text.size()), edge);
    copy.make_read_only();
    int64_t value = unwritten;
    const int32_t status = str2int64(copy.data(), static_cast<int32_t>(text.size()), &value);
    if (status >= 0)
        return {0, value};
    EXPECT_EQ(value, unwritten) << "\"" << text << "\" failed and wrote its result";
    return {status, 0};
}

number_reading read(std::string_view text)
{
    const number_reading behind = read_guarded(text, guard_edge::end);
    const number_reading before = read_guarded(text, guard_edge::start);
    EXPECT_EQ(behind, before) << "\"" << text << "\" depends on where it stands";
    return behind;
}

// Without guards: for many texts.
number_reading read_plain(const std::string &text)
{
    int64_t value = unwritten;
    const int32_t status = str2int64(text.data(), static_cast<int32_t>(text.size()), &value);
    if (status >= 0)
        return {0, value};
    EXPECT_EQ(value, unwritten) << "\"" << text << "\" failed and wrote its result";
    return {status, 0};
}

number_reading value(int64_t number) { return {0, number}; }
const number_reading overflow = {ERR_OVERFLOW, 0};
const number_reading bad = {ERR_BAD_CONVERSION, 0};

struct text_case {
    std::string text;
    number_reading expected;
};

void expect_all(const std::vector<text_case> &cases)
{
    for (const text_case &c : cases) {
        EXPECT_EQ(read(c.text), c.expected) << "\"" << c.text << "\"";
        EXPECT_EQ(slow_str2int64(c.text), c.expected) << "\"" << c.text << "\" by the slow reading";
    }
}

} // namespace

// ---- Grammar -------------------------------------------------------------------

TEST(str2int64, reads_signs_and_leading_zeros)
{
    expect_all({
        {"0", value(0)},
        {"7", value(7)},
        {"-7", value(-7)},
        {"+7", value(7)},
        {"-0", value(0)},
        {"+0", value(0)},
        {"007", value(7)},
        {"-0000000000000000000000000000000000000000000007", value(-7)},
        {std::string(1000, '0'), value(0)},
        {std::string(1000, '0') + "12", value(12)},
    });
}

TEST(str2int64, a_text_without_a_digit_is_no_number)
{
    expect_all({
        {"", bad},    {" ", bad},   {"-", bad},   {"+", bad},   {".", bad},      {"-.", bad},  {"e", bad},
        {"e5", bad},  {".e5", bad}, {"-e5", bad}, {"E", bad},   {"   \t ", bad}, {" - ", bad}, {"+-", bad},
        {"abc", bad}, {"inf", bad}, {"nan", bad}, {"--1", bad}, {"+-1", bad},    {"-+1", bad}, {"++1", bad},
    });
}

TEST(str2int64, blanks_may_stand_around_and_nowhere_else)
{
    expect_all({
        {" 5", value(5)},
        {"5 ", value(5)},
        {"\t\n\v\f\r 5 \r\f\v\n\t", value(5)},
        {std::string(500, ' ') + "-5" + std::string(500, '\t'), value(-5)},
        {"- 5", bad},
        {"1 2", bad},
        {"1 .5", bad},
        {"1. 5", bad},
        {"1 e5", bad},
        {"1e 5", bad},
        {"1e+ 5", bad},
        {" 5 x", bad},
        {" 5 5", bad},
    });
}

TEST(str2int64, bytes_9_to_13_and_32_are_blanks_and_no_other)
{
    for (int c = 0; c < 256; c++) {
        const char byte = static_cast<char>(c);
        const bool blank = (c >= 9 && c <= 13) || c == 32;
        const bool digit = c >= '0' && c <= '9';
        if (digit)
            continue;
        const std::string before = std::string(1, byte) + "15", behind = "15" + std::string(1, byte);
        const bool sign_or_point = byte == '+' || byte == '-' || byte == '.';
        if (!sign_or_point) {
            EXPECT_EQ(read(before), blank ? value(15) : bad) << "byte " << c << " before";
        }
        if (byte != '.') {
            EXPECT_EQ(read(behind), blank ? value(15) : bad) << "byte " << c << " behind";
        }
    }
}

// Every byte at every place of texts that take every road.
TEST(str2int64, a_foreign_byte_anywhere_makes_it_no_number)
{
    for (const std::string good :
         {"1", "12", "123", "1234", "12345678", "123456789", "1234567890123456", "-1234567890123456",
          "12345678901234567", "-123456789012345678", "1234567890123456789", "-1234567890123456789"}) {
        for (size_t at = 0; at < good.size(); at++) {
            for (int c = 0; c < 256; c++) {
                std::string text = good;
                text[at] = static_cast<char>(c);
                ASSERT_EQ(read_plain(text), slow_str2int64(text))
                    << "\"" << good << "\" with byte " << c << " at " << at;
            }
        }
    }
}

TEST(str2int64, a_point_needs_a_digit_on_either_side)
{
    expect_all({
        {"5.", value(5)},
        {".5", value(1)},
        {"-.5", value(-1)},
        {"+5.", value(5)},
        {"5.0", value(5)},
        {"0.4", value(0)},
        {".4", value(0)},
        {"-.4", value(0)},
        {"5..", bad},
        {"..5", bad},
        {"5.5.5", bad},
        {"1.2.", bad},
        {".", bad},
        {"5.-1", bad},
        {"5,0", bad},
    });
}

TEST(str2int64, reads_exponents)
{
    expect_all({
        {"1e3", value(1000)},
        {"1E3", value(1000)},
        {"1e+3", value(1000)},
        {"12e-1", value(1)},
        {"15e-1", value(2)},
        {"1.5e1", value(15)},
        {".5e1", value(5)},
        {"5.e1", value(50)},
        {"1e0", value(1)},
        {"1e-0", value(1)},
        {"1e+0", value(1)},
        {"1e0003", value(1000)},
        {"1.234567e6", value(1234567)},
        {"1.234567e5", value(123457)},
        {"123456e-5", value(1)},
        {"-1e18", value(-1000000000000000000)},
        {"1e", bad},
        {"1e+", bad},
        {"1e-", bad},
        {"1e.5", bad},
        {"1e1.0", bad},
        {"1e1e1", bad},
        {"1ee1", bad},
        {"1e--1", bad},
        {"1e+-1", bad},
        {"0x10", bad},
        {"1d3", bad},
        {"1_000", bad},
    });
}

// ---- Rounding ------------------------------------------------------------------

TEST(str2int64, rounds_a_fraction_and_ties_away_from_zero)
{
    expect_all({
        {"0.49999999999999999999999999", value(0)},
        {"0.5", value(1)},
        {"0.50000000000000000000000001", value(1)},
        {"1.4", value(1)},
        {"1.5", value(2)},
        {"2.5", value(3)},
        {"-0.5", value(-1)},
        {"-1.5", value(-2)},
        {"-2.5", value(-3)},
        {"-2.4999999999999999999999999999", value(-2)},
        {"9.5", value(10)},
        {"99999999999999999.5", value(100000000000000000)},
        {"0.05", value(0)},
        {"0.95", value(1)},
        {"5e-1", value(1)},
        {"4e-1", value(0)},
        {"5e-2", value(0)},
        {"0.005e2", value(1)},
        {"0.0049e2", value(0)},
        {"1250e-2", value(13)},
        {"-1250e-2", value(-13)},
        {"1249e-2", value(12)},
    });
}

// ---- Limits --------------------------------------------------------------------

TEST(str2int64, the_limits_of_int64_are_exact)
{
    expect_all({
        {"9223372036854775807", value(INT64_MAX)},
        {"9223372036854775808", overflow},
        {"-9223372036854775808", value(INT64_MIN)},
        {"-9223372036854775809", overflow},
        {"+9223372036854775807", value(INT64_MAX)},
        {" 9223372036854775807 ", value(INT64_MAX)},
        {" 9223372036854775808 ", overflow},
        {"9999999999999999999", overflow},
        {"-9999999999999999999", overflow},
        {"10000000000000000000", overflow},
        {"18446744073709551615", overflow},
        {"18446744073709551616", overflow},
        {"18446744073709551617", overflow},
        {"99999999999999999999", overflow},
        {"0009223372036854775807", value(INT64_MAX)},
        {"0009223372036854775808", overflow},
    });
}

TEST(str2int64, the_limits_of_int64_are_exact_with_fractions_and_exponents)
{
    expect_all({
        {"9223372036854775807.4", value(INT64_MAX)},
        {"9223372036854775807.49999999999999999999999999999", value(INT64_MAX)},
        {"9223372036854775807.5", overflow},
        {"-9223372036854775808.4", value(INT64_MIN)},
        {"-9223372036854775808.5", overflow},
        {"9223372036854775806.5", value(INT64_MAX)},
        {"-9223372036854775807.5", value(INT64_MIN)},
        {"9.223372036854775807e18", value(INT64_MAX)},
        {"9.2233720368547758074e18", value(INT64_MAX)},
        {"9.2233720368547758075e18", overflow},
        {"9.223372036854775808e18", overflow},
        {"-9.223372036854775808e18", value(INT64_MIN)},
        {"92233720368547758070e-1", value(INT64_MAX)},
        {"92233720368547758075e-1", overflow},
        {"922337203685477580.7e1", value(INT64_MAX)},
        {"922337203685477580.8e1", overflow},
        {"-922337203685477580.8e1", value(INT64_MIN)},
        {"0.00000000000000000009223372036854775807e38", value(INT64_MAX)},
        {"1e18", value(1000000000000000000)},
        {"9e18", value(9000000000000000000)},
        {"1e19", overflow},
        {"-1e19", overflow},
        {"0.1e19", value(1000000000000000000)},
        {"0.1e20", overflow},
    });
}

TEST(str2int64, exponents_of_any_length_are_exact)
{
    expect_all({
        {"0e999999999999", value(0)},
        {"0e99999999999999999999999999999999", value(0)},
        {"-0.000e99999999999999999999999999999999", value(0)},
        {"1e-99999999999999999999", value(0)},
        {"-9e-99999999999999999999", value(0)},
        {"1e99999999999999999999", overflow},
        {"-1e99999999999999999999", overflow},
        {"1e9223372036854775807", overflow},
        {"1e9223372036854775808", overflow},
        {"1e-9223372036854775808", value(0)},
        {"1e-9223372036854775809", value(0)},
        {"1e4294967296", overflow},
        {"1e-4294967296", value(0)},
        {"1e18446744073709551616", overflow},
        {"1e" + std::string(1000, '0') + "2", value(100)},
        {"1e-" + std::string(1000, '0') + "2", value(0)},
    });
}

TEST(str2int64, digits_of_any_number_are_exact)
{
    const std::string zeros(1000000, '0'), nines(1000000, '9');
    const std::vector<text_case> cases = {
        {zeros + "5", value(5)},
        {nines, overflow},
        {"-" + nines, overflow},
        {"1" + zeros, overflow},
        {"1" + zeros + "e-1000000", value(1)},
        {"15" + zeros + "e-1000001", value(2)},
        {"14" + nines + "e-1000001", value(1)},
        {"0." + zeros + "5e1000000", value(1)},
        {"0." + zeros + "5e1000001", value(5)},
        {"0." + zeros + "4" + nines + "e1000000", value(0)},
        {"9223372036854775807.4" + nines, value(INT64_MAX)},
        {"9223372036854775807" + zeros + "e-1000000", value(INT64_MAX)},
        {"9223372036854775808" + zeros + "e-1000000", overflow},
        {"2." + nines, value(3)},
        {"2.5" + zeros, value(3)},
        {"2.4" + nines, value(2)},
        {nines + "e-" + nines, value(0)},
        {nines + "e" + nines, overflow},
        {zeros + "e" + nines, value(0)},
    };
    for (size_t i = 0; i < cases.size(); i++) {
        EXPECT_EQ(read_plain(cases[i].text), cases[i].expected) << "case " << i;
        EXPECT_EQ(slow_str2int64(cases[i].text), cases[i].expected) << "case " << i << " by the slow reading";
    }
}

TEST(str2int64, a_text_that_is_malformed_and_too_large_is_malformed)
{
    expect_all({
        {"9999999999999999999999x", bad},
        {"9223372036854775808x", bad},
        {"x9223372036854775808", bad},
        {"1e99999999999999999999x", bad},
        {"99999999999999999999 9", bad},
        {"99999999999999999999.9.9", bad},
        {"99999999999999999999e", bad},
        {"9999999999999999999-", bad},
    });
}

TEST(str2int64, a_length_of_zero_or_below_reads_nothing)
{
    const guarded<char> nothing(0);
    int64_t result = unwritten;
    for (const int32_t length : {0, -1, -2, -17, INT32_MIN, INT32_MIN + 1}) {
        EXPECT_EQ(str2int64(nothing.data(), length, &result), ERR_BAD_CONVERSION) << length;
        EXPECT_EQ(result, unwritten) << length;
    }
}

TEST(str2int64, what_stands_behind_the_length_does_not_count)
{
    const std::string text = "12345678901234567890";
    for (int32_t length = 1; length <= 19; length++) {
        int64_t result = unwritten;
        const number_reading expected = slow_str2int64(std::string_view(text).substr(0, static_cast<size_t>(length)));
        ASSERT_EQ(str2int64(text.data(), length, &result), expected.status) << length;
        EXPECT_EQ(result, expected.value) << length;
    }
}

// ---- Round trips -----------------------------------------------------------------

TEST(str2int64, reads_back_every_int16)
{
    for (int32_t number = INT16_MIN; number <= INT16_MAX; number++) {
        const std::string text = std::to_string(number);
        ASSERT_EQ(read_plain(text), value(number)) << text;
    }
}

TEST(str2int64, reads_back_what_lies_around_every_power)
{
    std::vector<int64_t> numbers = {INT64_MAX, INT64_MAX - 1, INT64_MIN, INT64_MIN + 1};
    for (int bit = 0; bit < 63; bit++) {
        const int64_t power = int64_t{1} << bit;
        numbers.insert(numbers.end(), {power - 1, power, power + 1, -power - 1, -power, -power + 1});
    }
    int64_t power = 1;
    for (int digits = 0; digits < 19; digits++, power *= digits < 19 ? 10 : 1)
        numbers.insert(numbers.end(), {power - 1, power, power + 1, -power - 1, -power, -power + 1});
    for (const int64_t number : numbers) {
        const std::string text = std::to_string(number);
        EXPECT_EQ(read(text), value(number)) << text;
        std::string padded = " +0";
        padded.append(text, number < 0 ? 1 : 0).append(" ");
        EXPECT_EQ(read(padded), number == INT64_MIN ? overflow : value(number < 0 ? -number : number)) << padded;
    }
}

TEST(str2int64, reads_back_random_numbers_of_every_length)
{
    std::mt19937_64 random(20240701);
    for (int i = 0; i < 200000; i++) {
        const auto number = static_cast<int64_t>(random() >> (random() % 64)) * (random() % 2 == 0 ? 1 : -1);
        const std::string text = std::to_string(number);
        ASSERT_EQ(read_plain(text), value(number)) << text;
    }
}

// ---- Filled texts --------------------------------------------------------------

TEST(str2int64, blanks_and_zeros_of_every_count_around_a_number_change_nothing_but_their_reader)
{
    for (const std::string &text : filled_number_texts())
        ASSERT_EQ(read(text), slow_str2int64(text)) << "\"" << text << "\"";
}

TEST(str2int64, agrees_with_the_slow_reading_on_random_filled_texts)
{
    random_filled_text next;
    size_t numbers = 0, bads = 0;
    for (int i = 0; i < 300000; i++) {
        const std::string text = next();
        const auto expected = slow_str2int64(text);
        ASSERT_EQ(read_plain(text), expected) << "\"" << text << "\"";
        (expected == bad ? bads : numbers)++;
    }
    // The texts are worth something only while they come out in both ways.
    EXPECT_GT(numbers, 200000u);
    EXPECT_GT(bads, 10000u);
}

// ---- Against the slow reading ----------------------------------------------------

TEST(str2int64, agrees_with_the_slow_reading_on_random_texts)
{
    random_number_text next;
    size_t values = 0, overflows = 0, bads = 0;
    for (int i = 0; i < 400000; i++) {
        const std::string text = next();
        const number_reading expected = slow_str2int64(text);
        ASSERT_EQ(read_plain(text), expected) << "\"" << text << "\"";
        (expected.status == 0 ? values : expected == overflow ? overflows : bads)++;
    }
    // The texts are worth something only while they come out in all three ways.
    EXPECT_GT(values, 50000u);
    EXPECT_GT(overflows, 50000u);
    EXPECT_GT(bads, 20000u);
}

TEST(str2int64, agrees_with_the_slow_reading_beside_inaccessible_pages)
{
    random_number_text next;
    for (int i = 0; i < 20000; i++) {
        const std::string text = next();
        ASSERT_EQ(read(text), slow_str2int64(text)) << "\"" << text << "\"";
    }
}

TEST(str2int64, plain_digits_of_every_length_stand_beside_inaccessible_pages)
{
    for (size_t digits = 1; digits <= 40; digits++) {
        for (const char *sign : {"", "-", "+"}) {
            std::string text = sign;
            for (size_t k = 0; k < digits; k++)
                text += static_cast<char>('1' + k % 9);
            EXPECT_EQ(read(text), slow_str2int64(text)) << "\"" << text << "\"";
        }
    }
}

} // namespace bcast::test
