#include "tests/embedded/text/filled_number_text.h"
#include "tests/support/guarded.h"
#include "tests/support/random_number_text.h"
#include "tests/support/slow_number.h"

#include <services/text.h>

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace bcast::test {

namespace {

// Compared by the bits of the value, for the sign of 0.
struct reading {
    int32_t status;
    double value = 0;

    friend bool operator==(const reading &a, const reading &b)
    {
        return a.status == b.status && std::bit_cast<uint64_t>(a.value) == std::bit_cast<uint64_t>(b.value);
    }
};

void PrintTo(const reading &r, std::ostream *out)
{
    char text[64];
    std::snprintf(text, sizeof text, "status %d, value %.17g (%a)", r.status, r.value, r.value);
    *out << text;
}

const double unwritten = std::bit_cast<double>(0x5a5a5a5a5a5a5a5a);

reading read_at(const char *text, size_t size)
{
    double value = unwritten;
    const int32_t status = utl_digit_from_char(text, static_cast<uint16_t>(size), &value);
    if (status >= 0)
        return {0, value};
    EXPECT_EQ(value, unwritten) << "\"" << std::string_view(text, size) << "\" failed and wrote its result";
    return {status};
}

// Without guards: for many texts.
reading read_plain(const std::string &text) { return read_at(text.data(), text.size()); }

// Copies of the text that touch an inaccessible page with each edge.
reading read(std::string_view text)
{
    reading readings[2] = {{0}, {0}};
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        guarded<char> copy(std::span<const char>(text.data(), text.size()), edge);
        copy.make_read_only();
        readings[edge == guard_edge::end] = read_at(copy.data(), text.size());
    }
    EXPECT_EQ(readings[0], readings[1]) << "\"" << text << "\" depends on where it stands";
    return readings[0];
}

reading value(double number) { return {0, number}; }
const reading overflow = {ERR_OVERFLOW};
const reading bad = {ERR_BAD_CONVERSION};

// The plain grammar, and the value by the C library.
reading slow_read(const std::string &text)
{
    if (!read_slow_digits(text).is_number)
        return bad;
    const double number = std::strtod(text.c_str(), nullptr);
    return std::isinf(number) ? overflow : value(number);
}

struct text_case {
    std::string text;
    reading expected;
};

void expect_all(const std::vector<text_case> &cases)
{
    for (const text_case &c : cases) {
        EXPECT_EQ(read(c.text), c.expected) << "\"" << c.text << "\"";
        EXPECT_EQ(slow_read(c.text), c.expected) << "\"" << c.text << "\" by the slow reading";
    }
}

template <typename... Values> std::string print(const char *format, Values... values)
{
    std::string text(static_cast<size_t>(std::snprintf(nullptr, 0, format, values...)) + 1, '\0');
    std::snprintf(text.data(), text.size(), format, values...);
    text.pop_back();
    return text;
}

double random_double(std::mt19937_64 &random)
{
    double number;
    do
        number = std::bit_cast<double>(random());
    while (!std::isfinite(number));
    return number;
}

} // namespace

// ---- Grammar -------------------------------------------------------------------------

TEST(utl_digit_from_char, reads_signs_points_exponents_and_blanks)
{
    const std::string blanks(200, ' '), zeros(200, '0');
    expect_all({
        {"0", value(0.0)},
        {"7", value(7)},
        {"-7", value(-7)},
        {"+7", value(7)},
        {"123.456", value(123.456)},
        {"-123.456", value(-123.456)},
        {"+123.456", value(123.456)},
        {".5", value(0.5)},
        {"-.5", value(-0.5)},
        {"+.5", value(0.5)},
        {"5.", value(5)},
        {"-5.", value(-5)},
        {"5.e1", value(50)},
        {".5e1", value(5)},
        {"5.e-1", value(0.5)},
        {"1e3", value(1000)},
        {"1E+3", value(1000)},
        {"1.5e-3", value(0.0015)},
        {"1e0003", value(1000)},
        {"1e-0", value(1)},
        {"\t\n\v\f\r 5 \r\f\v\n\t", value(5)},
        {" -1.25 ", value(-1.25)},
        {" +1.25e1\t", value(12.5)},
        {"5. ", value(5)},
        {" .5", value(0.5)},
        {"5.e1 ", value(50)},
        {"00012.5", value(12.5)},
        {zeros + "12.5", value(12.5)},
        {blanks + "12.5" + blanks, value(12.5)},
    });
}

TEST(utl_digit_from_char, a_text_that_is_no_number_is_refused)
{
    for (const char *text : {"",
                             " ",
                             "-",
                             "+",
                             ".",
                             "-.",
                             "+.",
                             "e",
                             "e5",
                             ".e5",
                             "- 5",
                             "1 2",
                             "1 .5",
                             "1. 5",
                             "1e",
                             "1e+",
                             "1e-",
                             "1e 5",
                             "1e.5",
                             "1e1.",
                             "--1",
                             "+-1",
                             "-+1",
                             "++1",
                             "5..",
                             "..5",
                             "5.5.5",
                             ".5.",
                             "5-",
                             "5+",
                             "5,0",
                             "1_0",
                             "1ee1",
                             "1d3",
                             "1f",
                             "1.5f",
                             "1.5L",
                             "0x10",
                             "0x1p3",
                             "0X1",
                             "1p3",
                             "inf",
                             "INF",
                             "-inf",
                             "+inf",
                             "infinity",
                             "nan",
                             "NaN",
                             "-nan",
                             "nan(1)",
                             "NaN()",
                             "1e5x",
                             "x1",
                             "1x",
                             "1e999x",
                             "1.2.3e4",
                             "1e99999999999999999999 9",
                             "12345678.12345678.",
                             ".12345678.12345678",
                             "1234567.8.1234567"}) {
        EXPECT_EQ(read(text), bad) << "\"" << text << "\"";
        EXPECT_EQ(slow_read(text), bad) << "\"" << text << "\" by the slow reading";
    }
}

TEST(utl_digit_from_char, a_length_of_zero_reads_nothing)
{
    const guarded<char> nothing(0);
    EXPECT_EQ(read_at(nothing.data(), 0), bad);
}

TEST(utl_digit_from_char, every_byte_at_every_place_is_read_as_the_slow_reading_does)
{
    for (const std::string good : {"1", "-1", "12", "1.5", "-12345678.12345678", "12345678.12345678",
                                   "1234567812345678", "-1234567812345678", "12345678901234567", "123.456",
                                   ".1234567812345678", "1234567812345678.", " -12.5e-10 ", "123456789.123456789"}) {
        for (size_t at = 0; at < good.size(); at++) {
            for (int c = 0; c < 256; c++) {
                std::string text = good;
                text[at] = static_cast<char>(c);
                ASSERT_EQ(read_plain(text), slow_read(text)) << "\"" << good << "\" with byte " << c << " at " << at;
            }
        }
    }
}

TEST(utl_digit_from_char, what_stands_behind_the_length_does_not_count)
{
    const std::string text = "-12345678.1234567890e12345";
    for (size_t size = 0; size <= text.size(); size++)
        EXPECT_EQ(read_at(text.data(), size), slow_read(text.substr(0, size))) << size;
}

// ---- Zero and the limits -----------------------------------------------------------------

TEST(utl_digit_from_char, zero_keeps_its_sign)
{
    expect_all({
        {"0", value(0.0)},
        {"-0", value(-0.0)},
        {"+0", value(0.0)},
        {"0.000", value(0.0)},
        {"-0.000", value(-0.0)},
        {"-.0", value(-0.0)},
        {"-0.", value(-0.0)},
        {" -0 ", value(-0.0)},
        {"0e99999", value(0.0)},
        {"-0e99999", value(-0.0)},
        {"-0e-99999", value(-0.0)},
        {"0.00e99999999999999999999999999", value(0.0)},
        {"-0.00e99999999999999999999999999", value(-0.0)},
        {"0e-99999999999999999999999999", value(0.0)},
        {std::string("-").append(300, '0'), value(-0.0)},
    });
}

TEST(utl_digit_from_char, what_rounds_beyond_the_largest_double_overflows)
{
    // Halfway between the largest double and the next power of two.
    const std::string half = print("%.0Lf", std::ldexp(1.0L, 1024) - std::ldexp(1.0L, 970));
    std::string below_half = half;
    below_half.back()--;
    ASSERT_NE(half.back(), '0');
    expect_all({
        {"1.7976931348623157e308", value(DBL_MAX)},
        {"-1.7976931348623157e308", value(-DBL_MAX)},
        {"1.7976931348623158e308", value(DBL_MAX)},
        {"1.7976931348623159e308", overflow},
        {"-1.7976931348623159e308", overflow},
        {print("%.0f", DBL_MAX), value(DBL_MAX)},
        {below_half, value(DBL_MAX)},
        {below_half + ".99999999999", value(DBL_MAX)},
        {half, overflow},
        {"-" + half, overflow},
        {half + ".00000000001", overflow},
        {"1e308", value(1e308)},
        {"1e309", overflow},
        {"-1e309", overflow},
        {"+1e309 ", overflow},
        {"1e999", overflow},
        {"0.0000000001e319", overflow},
        {"0.0000000001e318", value(1e308)},
        {"1e99999", overflow},
        {"-1e99999999999999999999999999", overflow},
        {"1e9223372036854775807", overflow},
        {"1e9223372036854775808", overflow},
        {"1e18446744073709551616", overflow},
        {"1e4294967296", overflow},
        {std::string(310, '9'), overflow},
        {std::string("1").append(309, '0'), overflow},
        {std::string("1").append(308, '0'), value(1e308)},
    });
}

TEST(utl_digit_from_char, what_is_too_small_gives_a_subnormal_or_zero_with_its_sign)
{
    constexpr double least = std::numeric_limits<double>::denorm_min();
    // Half the smallest subnormal, to its last digit.
    std::string half = print("%.1100Le", std::ldexp(1.0L, -1075));
    const size_t e = half.find('e');
    const std::string half_digits = half.substr(0, e), half_exponent = half.substr(e);
    std::string below_half = half_digits;
    below_half.resize(below_half.find_last_not_of('0') + 1);
    below_half.back()--;
    expect_all({
        {"2.2250738585072014e-308", value(DBL_MIN)},
        {"2.2250738585072011e-308", value(std::nextafter(DBL_MIN, 0.0))},
        {"2.2250738585072009e-308", value(std::nextafter(DBL_MIN, 0.0))},
        {"-1e-310", value(-1e-310)},
        {"5e-324", value(least)},
        {"-5e-324", value(-least)},
        {"4.94e-324", value(least)},
        {"3e-324", value(least)},
        {"7.4e-324", value(least)},
        {"7.5e-324", value(2 * least)},
        {"2.5e-324", value(least)},
        {"2.4e-324", value(0.0)},
        {"-2.4e-324", value(-0.0)},
        {half, value(0.0)},
        {"-" + half, value(-0.0)},
        {half_digits + "1" + half_exponent, value(least)},
        {"-" + half_digits + "1" + half_exponent, value(-least)},
        {below_half + "99999" + half_exponent, value(0.0)},
        {"1e-325", value(0.0)},
        {"-1e-400", value(-0.0)},
        {" -1e-400 ", value(-0.0)},
        {"9e-99999", value(0.0)},
        {"1e-99999999999999999999999999", value(0.0)},
        {"-1e-9223372036854775808", value(-0.0)},
        {"1e-9223372036854775809", value(0.0)},
        {"1e-4294967296", value(0.0)},
        {std::string("0.").append(330, '0') + "1", value(0.0)},
        {std::string("-0.").append(322, '0') + "1", value(-1e-323)},
        {"123456789e-340", value(0.0)},
        {"1234567890123456789012345e-347", value(1.2345678901234568e-323)},
    });
}

TEST(utl_digit_from_char, exponents_and_digits_of_any_number_are_exact)
{
    const std::string zeros(30000, '0'), nines(30000, '9');
    const std::vector<text_case> cases = {
        {"1" + zeros + "e-30000", value(1)},
        {"0." + zeros + "1e30001", value(1)},
        {"-0." + zeros + "1e30000", value(-0.1)},
        {"1" + zeros + "e-30400", value(0.0)},
        {"-1" + zeros + "e-30400", value(-0.0)},
        {"1" + zeros + "e-29600", overflow},
        {"0." + zeros + "1e30400", overflow},
        {"0." + zeros + "1e29600", value(0.0)},
        {"1" + zeros, overflow},
        {"0." + zeros + "1", value(0.0)},
        {zeros + zeros + "5", value(5)},
        {"9007199254740993" + zeros + "e-30000", value(9007199254740992)},
        {"9007199254740993" + zeros + "1e-30001", value(9007199254740994)},
        {"9007199254740992." + nines, value(9007199254740992)},
        {"0." + nines + nines, value(1)},
        {nines + "e-" + nines, value(0.0)},
        {"-" + nines + "e" + nines, overflow},
        {zeros + "e" + nines, value(0.0)},
        {"1e" + zeros + "2", value(100)},
        {"1e-" + zeros + "2", value(0.01)},
        {nines + nines + "x", bad},
        {std::string(65532, '0') + "2.5", value(2.5)},
        {std::string(65535, '9'), overflow},
    };
    for (size_t i = 0; i < cases.size(); i++) {
        EXPECT_EQ(read(cases[i].text), cases[i].expected) << "case " << i;
        EXPECT_EQ(slow_read(cases[i].text), cases[i].expected) << "case " << i << " by the slow reading";
    }
}

// ---- Rounding --------------------------------------------------------------------------

TEST(utl_digit_from_char, mantissas_around_2_to_the_53_are_rounded_once)
{
    const std::string odd = "9007199254740993"; // 2^53 + 1
    expect_all({
        {"9007199254740991", value(9007199254740991)},
        {"9007199254740992", value(9007199254740992)},
        {odd, value(9007199254740992)},
        {"-" + odd, value(-9007199254740992)},
        {odd + ".0", value(9007199254740992)},
        {odd + ".00000000000000000000000000000000000001", value(9007199254740994)},
        {odd + "00000000000000000000000000000000000001e-22", value(9007199254740994e16)},
        {"9007199254740992.99999999999999999999999999", value(9007199254740992)},
        {"9007199254740995", value(9007199254740996)},
        {"9007199254740994.99999999999999999999999999", value(9007199254740994)},
        {"900719925474099.3", value(900719925474099.3)},
        {"9.007199254740993", value(9.007199254740993)},
        {"9999999999999999", value(10000000000000000)},
        {"99999999.99999999", value(99999999.99999999)},
        {"-99999999.99999999", value(-99999999.99999999)},
    });
    // One division of exact numbers, or not: each point in mantissas on both sides.
    for (uint64_t mantissa = (uint64_t{1} << 53) - 20; mantissa <= (uint64_t{1} << 53) + 20; mantissa++) {
        for (size_t behind = 0; behind <= 16; behind++) {
            std::string text = std::to_string(mantissa);
            text.insert(text.size() - behind, 1, '.');
            for (const std::string before : {"", "-", "+", " ", "0", "-00"})
                EXPECT_EQ(read(before + text), slow_read(before + text)) << '"' << before << text << '"';
        }
    }
}

// The halves between doubles, written out to the last digit: they go to the even neighbour, and the least that stands
// behind sends them up.
TEST(utl_digit_from_char, halves_go_to_the_even_neighbour_and_anything_more_goes_up)
{
    std::mt19937_64 random(20240804);
    for (int i = 0; i < 3000; i++) {
        const double low = std::fabs(random_double(random)), high = std::nextafter(low, INFINITY);
        if (std::isinf(high))
            continue;
        const long double middle = (static_cast<long double>(low) + static_cast<long double>(high)) / 2;
        const std::string text = print("%.800Le", middle);
        const size_t e = text.find('e');
        const double even = std::bit_cast<uint64_t>(low) % 2 == 0 ? low : high;
        EXPECT_EQ(read_plain(text), value(even)) << text;
        EXPECT_EQ(read_plain("-" + text), value(-even)) << "-" << text;
        const std::string more = text.substr(0, e) + "000000000001" + text.substr(e);
        EXPECT_EQ(read_plain(more), value(high)) << more;
        std::string less = text.substr(0, e);
        less.resize(less.find_last_not_of('0') + 1);
        less.back()--;
        less += "999" + text.substr(e);
        EXPECT_EQ(read_plain(less), value(low)) << less;
    }
}

TEST(utl_digit_from_char, every_exponent_is_rounded_as_the_C_library_does)
{
    std::mt19937_64 random(20240805);
    for (int exponent = -420; exponent <= 420; exponent++) {
        for (int i = 0; i < 60; i++) {
            std::string text = random() % 2 == 0 ? "-" : "";
            for (size_t n = 1 + random() % (i % 6 == 0 ? 60 : 20); n > 0; n--)
                text += static_cast<char>('0' + random() % 10);
            if (random() % 2 == 0)
                text.insert(text.size() - random() % 2, 1, '.');
            text += 'e';
            text += std::to_string(exponent);
            ASSERT_EQ(read_plain(text), slow_read(text)) << text;
        }
    }
}

TEST(utl_digit_from_char, every_text_that_a_double_is_written_as_reads_back)
{
    std::mt19937_64 random(20240806);
    for (int i = 0; i < 60000; i++) {
        const double number = random_double(random);
        char shortest[64];
        const std::string text(shortest, std::to_chars(shortest, shortest + sizeof shortest, number).ptr);
        ASSERT_EQ(read_plain(text), value(number)) << text;
        const std::string seventeen = print("%.16e", number);
        ASSERT_EQ(read_plain(seventeen), value(number)) << seventeen;
        if (i % 20 == 0) {
            const std::string exact = print("%.1080f", number);
            ASSERT_EQ(read_plain(exact), value(number)) << exact;
        }
    }
    for (int exponent = -1074; exponent <= 1023; exponent++) {
        const double power = std::ldexp(1.0, exponent);
        for (const double number : {power, std::nextafter(power, 0.0), std::nextafter(power, INFINITY)}) {
            const std::string text = print("%.17g", number);
            ASSERT_EQ(read_plain(text), value(number)) << text;
        }
    }
}

// ---- Short texts -------------------------------------------------------------------------

TEST(utl_digit_from_char, short_texts_of_every_shape_stand_beside_inaccessible_pages)
{
    std::mt19937_64 random(20240807);
    const auto digits = [&](size_t count) {
        std::string text;
        for (; count > 0; count--)
            text += static_cast<char>('0' + random() % 10);
        return text;
    };
    for (const char *sign : {"", "-", "+"}) {
        for (const char *point : {"", "."}) {
            for (size_t before = 0; before <= 20; before++) {
                for (size_t behind = 0; behind <= (*point == 0 ? 0 : 20); behind++) {
                    for (int i = 0; i < 4; i++) {
                        const std::string text = sign + digits(before) + point + digits(behind);
                        ASSERT_EQ(read(text), slow_read(text)) << "\"" << text << "\"";
                    }
                    const std::string nines = sign + std::string(before, '9') + point + std::string(behind, '9');
                    ASSERT_EQ(read(nines), slow_read(nines)) << "\"" << nines << "\"";
                }
            }
        }
    }
}

TEST(utl_digit_from_char, random_short_decimals_are_rounded_as_the_C_library_does)
{
    std::mt19937_64 random(20240808);
    for (int i = 0; i < 500000; i++) {
        std::string text = std::to_string(random() >> (random() % 64));
        if (random() % 4 != 0)
            text.insert(random() % (text.size() + 1), 1, '.');
        if (random() % 2 == 0)
            text.insert(0, 1, '-');
        ASSERT_EQ(read_plain(text), slow_read(text)) << text;
    }
}

// ---- Filled texts --------------------------------------------------------------

TEST(utl_digit_from_char, blanks_and_zeros_of_every_count_around_a_number_change_nothing_but_their_reader)
{
    for (const std::string &text : filled_number_texts())
        ASSERT_EQ(read(text), slow_read(text)) << "\"" << text << "\"";
}

TEST(utl_digit_from_char, agrees_with_the_slow_reading_on_random_filled_texts)
{
    random_filled_text next;
    size_t numbers = 0, bads = 0;
    for (int i = 0; i < 300000; i++) {
        const std::string text = next();
        const auto expected = slow_read(text);
        ASSERT_EQ(read_plain(text), expected) << "\"" << text << "\"";
        (expected == bad ? bads : numbers)++;
    }
    // The texts are worth something only while they come out in both ways.
    EXPECT_GT(numbers, 200000u);
    EXPECT_GT(bads, 10000u);
}

// ---- Random texts ------------------------------------------------------------------------

TEST(utl_digit_from_char, agrees_with_the_slow_reading_on_random_texts)
{
    random_number_text next;
    next.exponent_max = 400;
    next.long_digits_max = 800;
    size_t values = 0, overflows = 0, bads = 0;
    for (int i = 0; i < 200000; i++) {
        const std::string text = next();
        const reading expected = slow_read(text);
        ASSERT_EQ(read_plain(text), expected) << "\"" << text << "\"";
        (expected.status == 0 ? values : expected == overflow ? overflows : bads)++;
    }
    // The texts are worth something only while they come out in all three ways.
    EXPECT_GT(values, 100000u);
    EXPECT_GT(overflows, 2000u);
    EXPECT_GT(bads, 10000u);
}

TEST(utl_digit_from_char, agrees_with_the_slow_reading_beside_inaccessible_pages)
{
    random_number_text next;
    for (int i = 0; i < 20000; i++) {
        const std::string text = next();
        ASSERT_EQ(read(text), slow_read(text)) << "\"" << text << "\"";
    }
}

} // namespace bcast::test
