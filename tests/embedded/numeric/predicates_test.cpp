#include <bcast/codes.h>
#include <services/numeric.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace bcast::test {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan_value = std::numeric_limits<double>::quiet_NaN();

double below(double value) { return std::nextafter(value, -infinity); }
double above(double value) { return std::nextafter(value, infinity); }

} // namespace

TEST(numeric_predicates, infinity_and_nan_count_as_overflow)
{
    for (const double value : {infinity, -infinity, nan_value, -nan_value}) {
        EXPECT_EQ(ntype_is_double_overflow(value), ERR_OVERFLOW) << value;
        EXPECT_EQ(ntype_is_float_overflow(value), ERR_OVERFLOW) << value;
        EXPECT_EQ(ntype_is_lint64_overflow(value), ERR_OVERFLOW) << value;
    }
}

TEST(numeric_predicates, every_finite_double_is_a_double)
{
    for (const double value :
         {0.0, -0.0, 1.5, std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest(),
          std::numeric_limits<double>::min(), std::numeric_limits<double>::denorm_min()})
        EXPECT_EQ(ntype_is_double_overflow(value), 0) << value;
}

// The first that rounds to infinity is half-way between the largest float and the next power of two.
TEST(numeric_predicates, a_float_overflows_where_rounding_gives_infinity)
{
    const double largest = std::numeric_limits<float>::max();
    const double first = largest + std::ldexp(1.0, 103);
    for (const double value :
         {0.0, -0.0, 1e-300, std::numeric_limits<double>::denorm_min(), 1.0, largest, above(largest), below(first)}) {
        EXPECT_EQ(ntype_is_float_overflow(value), 0) << value;
        EXPECT_EQ(ntype_is_float_overflow(-value), 0) << -value;
        EXPECT_TRUE(std::isfinite(static_cast<float>(value))) << value;
    }
    for (const double value : {first, above(first), std::ldexp(1.0, 128), 1e300}) {
        EXPECT_EQ(ntype_is_float_overflow(value), ERR_OVERFLOW) << value;
        EXPECT_EQ(ntype_is_float_overflow(-value), ERR_OVERFLOW) << -value;
        EXPECT_TRUE(std::isinf(static_cast<float>(value))) << value;
    }
}

TEST(numeric_predicates, int64_ends_below_two_to_the_63rd)
{
    const double end = 0x1p63;
    for (const double value : {0.0, -0.0, 0.5, below(end), -below(end), -end, 1e18})
        EXPECT_EQ(ntype_is_lint64_overflow(value), 0) << value;
    for (const double value : {end, above(end), below(-end), 1e19, -1e19, 1e300, -1e300})
        EXPECT_EQ(ntype_is_lint64_overflow(value), ERR_OVERFLOW) << value;
}

TEST(numeric_predicates, int32_ends_at_its_limits)
{
    for (const int64_t value : {int64_t{0}, int64_t{INT32_MAX}, int64_t{INT32_MIN}})
        EXPECT_EQ(ntype_is_lint_overflow(value), 0) << value;
    for (const int64_t value : {int64_t{INT32_MAX} + 1, int64_t{INT32_MIN} - 1, INT64_MAX, INT64_MIN, int64_t{1} << 32})
        EXPECT_EQ(ntype_is_lint_overflow(value), ERR_OVERFLOW) << value;
}

} // namespace bcast::test
