#include <bcast/codes.h>
#include <services/numeric.h>

#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace bcast::test {

namespace {

constexpr int64_t unwritten = 0x5a5a5a5a5a5a5a5a;

// "overflow", or the integer.
std::string converted(double value)
{
    int64_t result = unwritten;
    const int32_t status = dou2int64(value, &result);
    if (status >= 0)
        return std::to_string(result);
    EXPECT_EQ(status, ERR_OVERFLOW) << value;
    EXPECT_EQ(result, unwritten) << value << " failed and wrote its result";
    return "overflow";
}

// By the digits: an integer below 2^53 and a fraction.
std::string slow_converted(double value)
{
    if (!(value >= -0x1p63 && value < 0x1p63))
        return "overflow";
    const double floor = std::floor(value);
    auto whole = static_cast<int64_t>(floor);
    const double fraction = value - floor; // exact
    if (fraction > 0.5 || (fraction == 0.5 && whole % 2 != 0))
        whole++;
    return std::to_string(whole);
}

} // namespace

TEST(dou2int64, rounds_to_the_nearest_and_ties_to_even)
{
    const std::pair<double, const char *> cases[] = {
        {0.0, "0"},
        {-0.0, "0"},
        {0.4, "0"},
        {0.5, "0"},
        {0.6, "1"},
        {1.0, "1"},
        {1.4, "1"},
        {1.5, "2"},
        {1.6, "2"},
        {2.5, "2"},
        {3.5, "4"},
        {-0.4, "0"},
        {-0.5, "0"},
        {-0.6, "-1"},
        {-1.5, "-2"},
        {-2.5, "-2"},
        {-3.5, "-4"},
        {1e15, "1000000000000000"},
        {4503599627370495.5, "4503599627370496"},
        {4503599627370494.5, "4503599627370494"},
        {-4503599627370495.5, "-4503599627370496"},
        {0.49999999999999994, "0"},
        {-0.49999999999999994, "0"},
        {0.50000000000000011, "1"},
        {std::numeric_limits<double>::denorm_min(), "0"},
        {2251799813685247.75, "2251799813685248"},
    };
    for (const auto &[value, text] : cases)
        EXPECT_EQ(converted(value), text) << value;
}

TEST(dou2int64, fails_outside_of_int64_and_writes_nothing)
{
    EXPECT_EQ(converted(-0x1p63), "-9223372036854775808");
    EXPECT_EQ(converted(std::nextafter(0x1p63, 0)), "9223372036854774784");
    for (const double value : {0x1p63, std::nextafter(-0x1p63, -HUGE_VAL), 1e19, -1e19, 0x1p64, 1e300, -1e300,
                               std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(converted(value), "overflow") << value;
}

TEST(dou2int64, is_right_around_every_power_of_two)
{
    for (int exponent = -1074; exponent <= 70; exponent++) {
        const double power = std::ldexp(1.0, exponent);
        for (const double base : {power, power + 0.5, power - 0.5, power + 1, power - 1, power * 1.5, power + 1.5}) {
            for (const double value : {base, std::nextafter(base, 0.0), std::nextafter(base, HUGE_VAL)}) {
                ASSERT_EQ(converted(value), slow_converted(value)) << value;
                ASSERT_EQ(converted(-value), slow_converted(-value)) << -value;
            }
        }
    }
}

TEST(dou2int64, is_right_for_random_values_and_ties)
{
    std::mt19937_64 random(20260140);
    for (int i = 0; i < 300000; i++) {
        double value =
            std::ldexp(static_cast<double>(static_cast<int64_t>(random())), -static_cast<int>(random() % 70));
        if (i % 3 == 0)
            value = static_cast<double>(static_cast<int64_t>(random()) >> (12 + random() % 50)) + 0.5;
        ASSERT_EQ(converted(value), slow_converted(value)) << value;
    }
}

TEST(dou2int64, does_not_depend_on_the_rounding_mode)
{
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        ASSERT_EQ(std::fesetround(mode), 0);
        std::vector<std::string> results;
        for (const double value : {0.5, 0.3, 0.7, 1.5, 2.5, -0.3, -0.7, -1.5, -2.5, 4503599627370495.5})
            results.push_back(converted(value));
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(results,
                  (std::vector<std::string>{"0", "0", "1", "2", "2", "0", "-1", "-2", "-2", "4503599627370496"}))
            << "rounding mode " << mode;
    }
}

} // namespace bcast::test
