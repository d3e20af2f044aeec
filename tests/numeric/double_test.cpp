// Doubles as doubles, floats, integers and decimals: first a check, by a predicate or by two compares, then the
// conversion by a service, and behind it, for the narrow integers, a test of the range.

#include "tests/numeric/floating_values.h"
#include "tests/support/row_cast.h"

#include <cmath>
#include <limits>

namespace bcast::test {
namespace {

constexpr int32_t usual_shape = 0x0A02; // 10 digits in all, 2 behind the point
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

using convert_row = std::function<row_outcome(const row_input &)>;

row_cast rule(const char *name, any_cast cast, size_t to_bytes, const std::vector<double> &samples, convert_row convert)
{
    row_cast c{.name = name,
               .cast = cast,
               .to_bytes = to_bytes,
               .flags = row_flags::copied,
               .no_null_ahead = false,
               .failure_clears_flag = false,
               .samples = {},
               .convert = std::move(convert)};
    for (const double sample : samples)
        c.samples.push_back(image_of(sample));
    return c;
}

std::vector<double> all_kinds_of_doubles()
{
    std::vector<double> all{1.5, -1e10, 0x1p63};
    all.insert(all.end(), std::begin(odd_doubles), std::end(odd_doubles));
    return all;
}

row_cast to_double()
{
    return rule("bcast_double_to_double", bcast_double_to_double, sizeof(double), all_kinds_of_doubles(),
                [](const row_input &input) {
                    return row_outcome{.steps = {{judges_double(input.as<double>()), service_failure::is_overflow}},
                                       .element = input.image};
                });
}

row_cast to_float()
{
    std::vector<double> samples;
    for (const narrowed_double &each : narrowed_doubles)
        samples.push_back(each.from);
    return rule("bcast_double_to_float", bcast_double_to_float, sizeof(float), samples, [](const row_input &input) {
        row_outcome outcome{.steps = {{judges_float(input.as<double>()), service_failure::passes_its_code}}};
        for (const narrowed_double &each : narrowed_doubles)
            if (image_of(each.from) == input.image)
                outcome.element = image_of(each.to);
        return outcome;
    });
}

row_cast to_int64()
{
    return rule("bcast_double_to_int64", bcast_double_to_int64, sizeof(int64_t), all_kinds_of_doubles(),
                [](const row_input &input) {
                    const auto value = input.as<double>();
                    return row_outcome{.steps = {{judges_int64(value), service_failure::passes_its_code},
                                                 {rounds_double(value), service_failure::passes_its_code}},
                                       .element = image_of(services().numeric.integer_of(input.image))};
                });
}

row_cast to_decimal(int32_t length)
{
    const int32_t len = length >> 8 & 0xFF, prec = length & 0xFF;
    row_cast c = rule("bcast_double_to_dec", bcast_double_to_dec, sizeof(xdec), all_kinds_of_doubles(),
                      [len, prec](const row_input &input) {
                          const auto value = input.as<double>();
                          return row_outcome{
                              .steps = {{judges_double(value), service_failure::passes_its_code},
                                        {makes_decimal_of_double(value, len, prec), service_failure::passes_its_code}},
                              .element = image_of(made_decimal(input.image, len, prec))};
                      });
    c.length = length;
    return c;
}

struct narrow_target {
    const char *name;
    bcast_plain_fn *cast;
    double least, greatest;
};

void PrintTo(const narrow_target &t, std::ostream *out) { *out << t.name; }

#define NAMED(cast) #cast, cast
constexpr narrow_target narrow_targets[] = {
    {NAMED(bcast_double_to_tinyint), -128, 127},
    {NAMED(bcast_double_to_smallint), -32768, 32767},
    {NAMED(bcast_double_to_int), -2147483648.0, 2147483647},
};
#undef NAMED

row_cast to_narrow(const narrow_target &t)
{
    const std::vector<double> samples{0.0,     -0.0,        0.5,          -1.75,   126.5,  t.greatest,
                                      t.least, t.least / 2, not_a_number, -5e-324, 5e-324, t.greatest - 0.25};
    row_cast c = rule(t.name, t.cast, sizeof(int32_t), samples, [t](const row_input &input) {
        const auto value = input.as<double>();
        if (value > t.greatest || value < t.least)
            return row_outcome{.status = ERR_OVERFLOW};
        const int64_t integer = services().numeric.integer_of(input.image);
        row_outcome outcome{.steps = {{rounds_double(value), service_failure::passes_its_code}}};
        if (integer < static_cast<int64_t>(t.least) || integer > static_cast<int64_t>(t.greatest))
            outcome.status = ERR_OVERFLOW;
        else
            outcome.element = image_of(static_cast<int32_t>(integer));
        return outcome;
    });
    c.null_element = image_of(1e300);
    return c;
}

std::vector<row_cast> rules()
{
    std::vector<row_cast> all{to_double(), to_float(), to_int64(), to_decimal(usual_shape)};
    for (const narrow_target &t : narrow_targets)
        all.push_back(to_narrow(t));
    return all;
}

class double_to_number : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(double_to_number, present_rows_are_converted_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(double_to_number, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

TEST_P(double_to_number, a_failure_of_a_service_stops) { expect_stops(GetParam()); }

INSTANTIATE_TEST_SUITE_P(casts, double_to_number, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

TEST(double_to_decimal, both_bytes_of_length_are_unsigned_and_the_bits_above_them_unread)
{
    services().reset();
    for (const int32_t length : {0, 0x0102, 0x00FF, 0xFF00, 0x8080, 0x8181, 0x10A02, 0x7FFF0A02, -1,
                                 std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::min() + 0x2605}) {
        SCOPED_TRACE("length " + std::to_string(length));
        expect_element(to_decimal(length), image_of(-2.5));
    }
}

TEST(double_to_int64, whatever_the_service_gives_is_stored)
{
    services().reset();
    for (const int64_t integer : {int64_t{0}, int64_t{-1}, int64_t{1} << 31, std::numeric_limits<int64_t>::min(),
                                  std::numeric_limits<int64_t>::max()}) {
        services().numeric.integers[image_of(2.5)] = integer;
        expect_element(to_int64(), image_of(2.5));
    }
}

// ---- The narrow integers ------------------------------------------------------------

class double_to_narrow_integer : public testing::TestWithParam<narrow_target> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(double_to_narrow_integer, values_outside_of_the_limits_come_to_no_service)
{
    const narrow_target &t = GetParam();
    for (const double value :
         {t.greatest, std::nextafter(t.greatest, infinity), std::nextafter(t.greatest, 0), t.greatest + 0.5,
          t.greatest + 1, t.least, std::nextafter(t.least, -infinity), std::nextafter(t.least, 0), t.least - 0.25,
          t.least - 1, infinity, -infinity, 1e300, -1e300, 0x1p63, 4294967296.0, not_a_number, -not_a_number}) {
        SCOPED_TRACE("value " + std::to_string(value));
        expect_element(to_narrow(t), image_of(value));
    }
}

TEST_P(double_to_narrow_integer, what_the_service_gives_is_tested_again)
{
    const narrow_target &t = GetParam();
    const auto least = static_cast<int64_t>(t.least), greatest = static_cast<int64_t>(t.greatest);
    for (const int64_t integer : {least, least - 1, greatest, greatest + 1, 2 * greatest + 1, 2 * greatest + 2,
                                  int64_t{4294967296}, int64_t{4294967296} + 5, -int64_t{4294967296},
                                  std::numeric_limits<int64_t>::min(), std::numeric_limits<int64_t>::max()}) {
        SCOPED_TRACE("integer " + std::to_string(integer));
        for (const double value : {1.0, t.greatest, t.least, not_a_number}) {
            services().numeric.integers[image_of(value)] = integer;
            expect_element(to_narrow(t), image_of(value));
            services().numeric.integers.clear();
        }
    }
}

TEST_P(double_to_narrow_integer, an_unfit_value_stops_at_any_row_of_a_batch)
{
    const row_cast c = to_narrow(GetParam());
    for (const setup &how : all_setups()) {
        for (const uint32_t failing_row : {0U, 1U, 500U, 1023U, 1024U, 1063U}) {
            std::vector<batch_row> rows = sample_rows(c, std::vector<uint8_t>(1064, 5));
            rows[7].flag = 0;
            rows[failing_row].element = image_of(infinity);
            rows[1063].element = image_of(-infinity);
            expect_batch(c, how, rows);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, double_to_narrow_integer, testing::ValuesIn(narrow_targets),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- By hand ------------------------------------------------------------------------

int32_t status_of(bcast_plain_fn *cast, size_t to_bytes, double value)
{
    source_column source(sizeof value, 1, few_setups().front());
    source.set(0, 1, value);
    target_column target(to_bytes, 1);
    return call(cast, {source.sealed(), target.column(), 1});
}

TEST(double_by_hand, limits_of_the_narrow_integers)
{
    services().reset();
    EXPECT_EQ(status_of(bcast_double_to_tinyint, 4, 127.0), 0);
    EXPECT_EQ(status_of(bcast_double_to_tinyint, 4, 127.5), -6102);
    EXPECT_EQ(status_of(bcast_double_to_tinyint, 4, -128.0), 0);
    EXPECT_EQ(status_of(bcast_double_to_tinyint, 4, -128.25), -6102);
    EXPECT_EQ(status_of(bcast_double_to_smallint, 4, 32767.0), 0);
    EXPECT_EQ(status_of(bcast_double_to_smallint, 4, 32767.5), -6102);
    EXPECT_EQ(status_of(bcast_double_to_smallint, 4, -32768.5), -6102);
    EXPECT_EQ(status_of(bcast_double_to_int, 4, 2147483647.0), 0);
    EXPECT_EQ(status_of(bcast_double_to_int, 4, 2147483647.5), -6102);
    EXPECT_EQ(status_of(bcast_double_to_int, 4, -2147483648.0), 0);
    EXPECT_EQ(status_of(bcast_double_to_int, 4, -2147483648.5), -6102);
    EXPECT_EQ(status_of(bcast_double_to_int, 4, infinity), -6102);
}

TEST(double_by_hand, not_a_number_to_int_is_up_to_the_service)
{
    services().reset();
    EXPECT_EQ(status_of(bcast_double_to_int, 4, not_a_number), 0);
    EXPECT_TRUE(services().logged({rounds_double(not_a_number)}));
    services().fail_call(1, -4711);
    EXPECT_EQ(status_of(bcast_double_to_int, 4, not_a_number), -4711);
}

// Which code a caller sees for a value that the predicate refuses.
TEST(double_by_hand, codes_of_predicates_pass_for_some_targets_only)
{
    const auto code_of = [](any_cast cast, size_t to_bytes) {
        services().reset();
        services().fail_call(0, -4711);
        source_column source(sizeof(double), 1, few_setups().front());
        source.set(0, 1, 1e300);
        target_column target(to_bytes, 1);
        return call(cast, {source.sealed(), target.column(), 1, 9});
    };
    EXPECT_EQ(code_of(&bcast_double_to_float, 4), -4711);
    EXPECT_EQ(code_of(&bcast_double_to_int64, 8), -4711);
    EXPECT_EQ(code_of(&bcast_double_to_dec, 30), -4711);
    EXPECT_EQ(code_of(&bcast_double_to_double, 8), -6102);
    EXPECT_EQ(code_of(&bcast_double_to_char, 16), -6102);
    EXPECT_EQ(code_of(&bcast_double_to_varchar, 16), -6102);
    EXPECT_EQ(code_of(&bcast_double_to_text, 16), -6102);
}

} // namespace
} // namespace bcast::test
