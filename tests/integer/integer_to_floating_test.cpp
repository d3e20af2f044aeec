// The integers as float and double: one conversion per row, by the rounding mode of the caller.

#include "tests/support/row_cast.h"

#include <cfenv>
#include <cmath>
#include <limits>

namespace bcast::test {
namespace {

constexpr int64_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int64_t int32_greatest = std::numeric_limits<int32_t>::max();
constexpr int64_t int64_least = std::numeric_limits<int64_t>::min();
constexpr int64_t int64_greatest = std::numeric_limits<int64_t>::max();

// What an integer is as a number with so many bits, rounded to the nearest, of two as near the even one: by integers.
template <class Target> Target rounded(int64_t value)
{
    constexpr int bits = std::numeric_limits<Target>::digits;
    const bool negative = value < 0;
    uint64_t magnitude = negative ? uint64_t{0} - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
    int exponent = 0;
    uint64_t lost = 0, half = 0;
    while (magnitude >> exponent >> bits != 0)
        exponent++;
    if (exponent > 0) {
        half = uint64_t{1} << (exponent - 1);
        lost = magnitude & ((uint64_t{1} << exponent) - 1);
        magnitude >>= exponent;
        if (lost > half || (lost == half && magnitude % 2 == 1))
            magnitude++;
    }
    const Target result = std::ldexp(static_cast<Target>(magnitude), exponent);
    return negative ? -result : result;
}

const std::vector<int64_t> &values_of(size_t source_bytes)
{
    static const std::vector<int64_t> narrow{
        0,        1,        -1,          127,        -128,       128,        300,        32767,          -32768,
        32768,    16777215, 16777216,    16777217,   -16777217,  16777218,   16777219,   33554433,       33554434,
        33554435, 33554438, int32_least, 2147483520, 2147483583, 2147483584, 2147483585, int32_greatest, -2147483585};
    static const std::vector<int64_t> wide = [] {
        std::vector<int64_t> all = narrow;
        for (const int64_t value :
             {int64_t{1} << 32, (int64_t{1} << 53) - 1, int64_t{1} << 53, (int64_t{1} << 53) + 1,
              -(int64_t{1} << 53) - 1, (int64_t{1} << 53) + 3, (int64_t{1} << 54) + 2, (int64_t{1} << 54) + 3,
              int64_least, int64_least + 1, int64_greatest, int64_greatest - 511, int64_greatest - 512,
              (int64_t{1} << 60) + (int64_t{1} << 36), (int64_t{1} << 60) + (int64_t{1} << 36) + 1})
            all.push_back(value);
        return all;
    }();
    return source_bytes == 8 ? wide : narrow;
}

template <class Source, class Target> row_cast rule(const char *name, bcast_plain_fn *cast)
{
    std::vector<sample> samples;
    for (const int64_t value : values_of(sizeof(Source)))
        samples.push_back({image_of(static_cast<Source>(value)), image_of(rounded<Target>(value))});
    return cast_of_samples(name, cast, row_flags::copied, samples);
}

std::vector<row_cast> rules()
{
#define NAMED(cast) #cast, cast
    return {
        rule<int32_t, float>(NAMED(bcast_tinyint_to_float)),  rule<int32_t, double>(NAMED(bcast_tinyint_to_double)),
        rule<int32_t, float>(NAMED(bcast_smallint_to_float)), rule<int32_t, double>(NAMED(bcast_smallint_to_double)),
        rule<int32_t, float>(NAMED(bcast_int_to_float)),      rule<int32_t, double>(NAMED(bcast_int_to_double)),
        rule<int64_t, float>(NAMED(bcast_int64_to_float)),    rule<int64_t, double>(NAMED(bcast_int64_to_double)),
    };
#undef NAMED
}

class integer_to_floating : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(integer_to_floating, present_rows_are_rounded_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(integer_to_floating, blocks_of_rows) { expect_blocks(GetParam()); }

TEST_P(integer_to_floating, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

INSTANTIATE_TEST_SUITE_P(casts, integer_to_floating, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

template <class Target, class Source> Target converted(bcast_plain_fn *cast, Source value)
{
    services().reset();
    source_column source(sizeof value, 1, few_setups().front());
    source.set(0, 1, value);
    target_column target(sizeof(Target), 1);
    EXPECT_EQ(call(cast, {source.sealed(), target.column(), 1}), 0);
    Target result;
    std::memcpy(&result, target.column()->data->values, sizeof result);
    return result;
}

TEST(integer_to_floating_value, values_between_two_numbers_go_to_the_even_one)
{
    EXPECT_EQ((converted<float>(bcast_int_to_float, int32_t{16777217})), 16777216.0F);
    EXPECT_EQ((converted<float>(bcast_int_to_float, int32_t{16777219})), 16777220.0F);
    EXPECT_EQ((converted<double>(bcast_int_to_double, int32_t{16777217})), 16777217.0);
    EXPECT_EQ((converted<double>(bcast_int64_to_double, int64_t{9007199254740993})), 9007199254740992.0);
    EXPECT_EQ((converted<double>(bcast_int64_to_double, int64_t{9007199254740995})), 9007199254740996.0);
    EXPECT_EQ((converted<float>(bcast_tinyint_to_float, int32_t{-128})), -128.0F);
    EXPECT_EQ((converted<float>(bcast_int64_to_float, int64_greatest)), 9223372036854775808.0F);
}

// Through double on the way to float this would round twice, and end below.
TEST(integer_to_floating_value, int64_to_float_rounds_once)
{
    const int64_t just_above_the_middle = (int64_t{1} << 60) + (int64_t{1} << 36) + 1;
    EXPECT_EQ((converted<float>(bcast_int64_to_float, just_above_the_middle)), 0x1.000002p60F);
}

TEST(integer_to_floating_value, the_rounding_mode_of_the_caller_holds)
{
    std::fesetround(FE_UPWARD);
    const auto up = converted<float>(bcast_int_to_float, int32_t{16777217});
    const auto wide_up = converted<double>(bcast_int64_to_double, int64_t{9007199254740993});
    std::fesetround(FE_DOWNWARD);
    const auto down = converted<float>(bcast_int_to_float, int32_t{16777219});
    std::fesetround(FE_TONEAREST);
    EXPECT_EQ(up, 16777218.0F);
    EXPECT_EQ(wide_up, 9007199254740994.0);
    EXPECT_EQ(down, 16777218.0F);
}

} // namespace
} // namespace bcast::test
