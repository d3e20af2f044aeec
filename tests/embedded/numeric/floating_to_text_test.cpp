#include "tests/support/guarded.h"

#include <services/numeric.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

namespace bcast::test {

namespace {

std::string zeros(size_t count) { return std::string(count, '0'); }

std::string text_of(int32_t kind, double value)
{
    char buf[BCAST_TEXT_ROOM];
    const int32_t size = vq_dou2char(kind, value, buf);
    EXPECT_GT(size, 0) << value;
    EXPECT_LE(size, BCAST_TEXT_ROOM) << value;
    return std::string(buf, static_cast<size_t>(size));
}

std::string of_double(double value) { return text_of(BCAST_WAS_DOUBLE, value); }
std::string of_float(float value) { return text_of(BCAST_WAS_FLOAT, double{value}); }

// Digits of a text without zeros at its ends, and the power of ten of the first.
struct digits_and_exponent {
    std::string digits;
    int exponent;
};

digits_and_exponent taken_apart(const std::string &text)
{
    const size_t e = std::min(text.find('e'), text.size());
    std::string mantissa = text.substr(text[0] == '-', e - (text[0] == '-'));
    const size_t point = std::min(mantissa.find('.'), mantissa.size());
    std::erase(mantissa, '.');
    const size_t first = std::min(mantissa.find_first_not_of('0'), mantissa.size());
    const int exponent = e == text.size() ? 0 : std::atoi(text.c_str() + e + 1);
    const size_t last = mantissa.find_last_not_of('0');
    return {first == mantissa.size() ? "" : mantissa.substr(first, last - first + 1),
            exponent + static_cast<int>(point) - 1 - static_cast<int>(first)};
}

// What a text must look like, whatever its digits are.
void expect_well_formed(const std::string &text)
{
    const size_t digits = text.find_first_of("0123456789");
    ASSERT_TRUE(digits == 0 || (digits == 1 && text[0] == '-')) << text;
    const digits_and_exponent parts = taken_apart(text);
    const bool fixed = text.find('e') == std::string::npos;
    if (!parts.digits.empty()) {
        ASSERT_EQ(fixed, parts.exponent >= -5 && parts.exponent < 15) << text;
    }
    const size_t point = text.find('.');
    if (point != std::string::npos) {
        const size_t end = std::min(text.find('e'), text.size());
        ASSERT_GT(point, digits) << text << " has no digit before the point";
        ASSERT_LT(point + 1, end) << text << " has no digit behind the point";
        ASSERT_NE(text[end - 1], '0') << text << " has a zero at the end";
    }
    if (!fixed) {
        ASSERT_EQ(text.find_first_of("+-", digits), text.find('e') + 1) << text;
        ASSERT_GE(text.size(), text.find('e') + 4) << text << " has less than two digits of an exponent";
    }
}

} // namespace

TEST(vq_dou2char, fixed_notation_reaches_from_1e_5_to_below_1e15)
{
    const std::pair<double, std::string> cases[] = {
        {0.0, "0"},
        {-0.0, "-0"},
        {1, "1"},
        {-1, "-1"},
        {5, "5"},
        {0.5, "0.5"},
        {-0.5, "-0.5"},
        {10, "10"},
        {1.5, "1.5"},
        {100.25, "100.25"},
        {123456.7891, "123456.7891"},
        {0.1 + 0.2, "0.30000000000000004"},
        {1e-5, "0.00001"},
        {1.5e-5, "0.000015"},
        {9.999e-6, "9.999e-06"},
        {9.999999999999999e-06, "9.999999999999999e-06"},
        {1e-4, "0.0001"},
        {1e14, "100000000000000"},
        {1e15, "1e+15"},
        {1.5e15, "1.5e+15"},
        {999999999999999, "999999999999999"},
        {999999999999999.9, "999999999999999.9"},
        {-999999999999999.9, "-999999999999999.9"},
        {1234567890123456, "1.234567890123456e+15"},
        {123456789012345.6, "123456789012345.6"},
        {1e20, "1e+20"},
        {1e-7, "1e-07"},
        {1e100, "1e+100"},
        {1e-100, "1e-100"},
        {-1.25e-300, "-1.25e-300"},
        {1.7976931348623157e308, "1.7976931348623157e+308"},
        {5e-324, "5e-324"},
        {2.2250738585072014e-308, "2.2250738585072014e-308"},
        {9007199254740993.0, "9.007199254740992e+15"},
        {120, "120"},
        {1200000000, "1200000000"},
    };
    for (const auto &[value, text] : cases)
        EXPECT_EQ(of_double(value), text);
}

TEST(vq_dou2char, a_float_has_the_digits_of_a_float)
{
    const std::pair<float, std::string> cases[] = {
        {0.0f, "0"},
        {-0.0f, "-0"},
        {0.1f, "0.1"},
        {-0.3f, "-0.3"},
        {16777216.0f, "16777216"},
        {1e-5f, "0.00001"},
        {9.999e-6f, "9.999e-06"},
        {1e14f, "100000000000000"},
        {1e15f, "1e+15"},
        {3.4028235e38f, "3.4028235e+38"},
        {1e-45f, "1e-45"},
        {1.17549435e-38f, "1.1754944e-38"},
        {123456792.0f, "123456790"},
        {9.9999998e14f, "1e+15"},
        {9.999999e14f, "999999900000000"},
        {1e-6f, "1e-06"},
    };
    for (const auto &[value, text] : cases)
        EXPECT_EQ(of_float(value), text);
    EXPECT_EQ(of_double(double{0.1f}), "0.10000000149011612");
}

TEST(vq_dou2char, infinity_and_nan_have_a_text)
{
    for (const int32_t kind : {BCAST_WAS_FLOAT, BCAST_WAS_DOUBLE}) {
        EXPECT_EQ(text_of(kind, std::numeric_limits<double>::infinity()), "Infinity");
        EXPECT_EQ(text_of(kind, -std::numeric_limits<double>::infinity()), "-Infinity");
        EXPECT_EQ(text_of(kind, std::numeric_limits<double>::quiet_NaN()), "NaN");
        EXPECT_EQ(text_of(kind, -std::numeric_limits<double>::quiet_NaN()), "NaN");
    }
}

// Read back, and no shorter text reads back; of those as short no one is closer.
TEST(vq_dou2char, doubles_of_all_exponents_read_back_from_the_shortest_digits)
{
    std::mt19937_64 random(20260150);
    for (uint64_t exponent = 0; exponent < 2047; exponent++) {
        for (int i = 0; i < 60; i++) {
            const uint64_t fraction = i == 0 ? 0 : i == 1 ? ~uint64_t{0} : random();
            const auto value = std::bit_cast<double>(random() << 63 | exponent << 52 | fraction >> 12);
            const std::string text = of_double(value);
            ASSERT_EQ(std::bit_cast<uint64_t>(std::strtod(text.c_str(), nullptr)), std::bit_cast<uint64_t>(value))
                << text;
            expect_well_formed(text);
            const size_t count = taken_apart(text).digits.size();
            if (count > 1) {
                char shorter[64];
                std::snprintf(shorter, sizeof shorter, "%.*e", static_cast<int>(count) - 2, value);
                ASSERT_NE(std::strtod(shorter, nullptr), value) << text << ", but also " << shorter;
            }
            if (HasFatalFailure())
                return;
        }
    }
}

TEST(vq_dou2char, floats_of_all_exponents_read_back_from_the_shortest_digits)
{
    std::mt19937 random(20260151);
    for (uint32_t exponent = 0; exponent < 255; exponent++) {
        for (int i = 0; i < 500; i++) {
            const uint32_t fraction = i == 0 ? 0 : i == 1 ? ~0u : static_cast<uint32_t>(random());
            const auto value =
                std::bit_cast<float>(static_cast<uint32_t>(random()) << 31 | exponent << 23 | fraction >> 9);
            const std::string text = of_float(value);
            ASSERT_EQ(std::bit_cast<uint32_t>(std::strtof(text.c_str(), nullptr)), std::bit_cast<uint32_t>(value))
                << text;
            expect_well_formed(text);
            const size_t count = taken_apart(text).digits.size();
            ASSERT_LE(count, 9u) << text;
            if (count > 1) {
                char shorter[64];
                std::snprintf(shorter, sizeof shorter, "%.*e", static_cast<int>(count) - 2, double{value});
                ASSERT_NE(std::strtof(shorter, nullptr), value) << text << ", but also " << shorter;
            }
            if (HasFatalFailure())
                return;
        }
    }
}

TEST(vq_dou2char, whole_numbers_that_a_float_or_double_tells_apart_are_exact)
{
    std::mt19937_64 random(20260153);
    for (int i = 0; i < 100000; i++) {
        const auto number = static_cast<int64_t>((random() >> (random() % 63)) % 1000000000000000);
        ASSERT_EQ(of_double(static_cast<double>(number)), std::to_string(number));
        ASSERT_EQ(of_float(static_cast<float>(number % 16777217)), std::to_string(number % 16777217));
    }
}

TEST(vq_dou2char, short_decimals_are_shown_as_they_were_written)
{
    std::mt19937_64 random(20260152);
    for (int i = 0; i < 200000; i++) {
        std::string whole = std::to_string(random() % 10000000), fraction = std::to_string(1 + random() % 99999);
        fraction.insert(0, random() % 3, '0');
        while (fraction.back() == '0')
            fraction.pop_back();
        const std::string text = (random() % 2 == 0 ? "-" : "") + whole + "." + fraction;
        if (text.find_first_of("123456789") > text.find('.') + 5)
            continue; // scientific
        ASSERT_EQ(of_double(std::strtod(text.c_str(), nullptr)), text);
    }
}

TEST(vq_dou2char, writes_no_byte_behind_its_text_that_504_bytes_do_not_have)
{
    for (const double value : {0.0, -1.7976931348623157e308, 5e-324, 1e14, -1.2345678901234567e-5, 123456789012345.6}) {
        for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
            guarded<char> buf(BCAST_TEXT_ROOM, edge);
            ASSERT_GT(vq_dou2char(BCAST_WAS_DOUBLE, value, buf.data()), 0);
            ASSERT_TRUE(buf.slack_untouched()) << value;
        }
    }
    EXPECT_EQ(of_double(1e14), "1" + zeros(14));
}

} // namespace bcast::test
