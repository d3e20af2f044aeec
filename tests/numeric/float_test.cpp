// Floats as floats, doubles, integers and decimals. The casts convert by themselves, many rows at a time, so that each
// value that stands out is tried at every place of a run of rows. Only int64 has a predicate, and decimals a service.

#include "tests/numeric/floating_values.h"
#include "tests/support/row_cast.h"

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <limits>
#include <random>
#include <utility>

namespace bcast::test {
namespace {

constexpr int32_t usual_shape = 0x0A02; // 10 digits in all, 2 behind the point
constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float not_a_number = std::numeric_limits<float>::quiet_NaN();

using convert_row = std::function<row_outcome(const row_input &)>;

row_cast rule(const char *name, any_cast cast, size_t to_bytes, const std::vector<float> &samples, convert_row convert)
{
    row_cast c{.name = name,
               .cast = cast,
               .to_bytes = to_bytes,
               .flags = row_flags::copied,
               .no_null_ahead = false,
               .failure_clears_flag = false,
               .samples = {},
               .convert = std::move(convert)};
    for (const float sample : samples)
        c.samples.push_back(image_of(sample));
    return c;
}

std::vector<float> all_kinds_of_floats()
{
    std::vector<float> all{1.5F, -1e10F, 0x1p63F};
    all.insert(all.end(), std::begin(odd_floats), std::end(odd_floats));
    return all;
}

row_cast to_float()
{
    row_cast c = rule("bcast_float_to_float", bcast_float_to_float, sizeof(float), all_kinds_of_floats(),
                      [](const row_input &input) { return row_outcome{.element = input.image}; });
    c.flags = row_flags::copied_for_all;
    return c;
}

row_cast to_double()
{
    row_cast c =
        rule("bcast_float_to_double", bcast_float_to_double, sizeof(double), all_kinds_of_floats(),
             [](const row_input &input) { return row_outcome{.element = image_of(widened(input.as<uint32_t>()))}; });
    c.flags = row_flags::copied_for_all;
    return c;
}

row_cast to_decimal(int32_t length)
{
    const int32_t len = length >> 8 & 0xFF, prec = length & 0xFF;
    row_cast c = rule("bcast_float_to_dec", bcast_float_to_dec, sizeof(xdec), all_kinds_of_floats(),
                      [len, prec](const row_input &input) {
                          const double value = widened(input.as<uint32_t>());
                          return row_outcome{
                              .steps = {{makes_decimal_of_double(value, len, prec), service_failure::passes_its_code}},
                              .element = image_of(made_decimal(image_of(value), len, prec))};
                      });
    c.length = length;
    return c;
}

// The integer that is left of a float whose fraction is cut, by its bits; the nearest of least to greatest where it is
// neither of them nor between them, and 0 for what is no number.
int64_t cut(uint32_t bits, int64_t least, int64_t greatest)
{
    const int exponent = static_cast<int>(bits >> 23 & 0xFF) - 127;
    const uint64_t mantissa = (bits & 0x7FFFFF) | 0x800000;
    const bool negative = bits >> 31 != 0;
    if (exponent == 128 && (bits & 0x7FFFFF) != 0)
        return 0;
    if (exponent < 0)
        return 0;
    if (exponent >= 63)
        return negative ? least : greatest;
    const uint64_t magnitude = exponent < 23 ? mantissa >> (23 - exponent) : mantissa << (exponent - 23);
    const int64_t value = negative ? -static_cast<int64_t>(magnitude) : static_cast<int64_t>(magnitude);
    return std::min(std::max(value, least), greatest);
}

row_cast to_int64()
{
    constexpr int64_t least = std::numeric_limits<int64_t>::min(), greatest = std::numeric_limits<int64_t>::max();
    return rule("bcast_float_to_int64", bcast_float_to_int64, sizeof(int64_t), all_kinds_of_floats(),
                [](const row_input &input) {
                    const auto bits = input.as<uint32_t>();
                    return row_outcome{.steps = {{judges_int64(widened(bits)), service_failure::is_overflow}},
                                       .element = image_of(cut(bits, least, greatest))};
                });
}

struct narrow_target {
    const char *name;
    bcast_plain_fn *cast;
    float least, greatest; // which pass
    int64_t least_integer, greatest_integer;
};

void PrintTo(const narrow_target &t, std::ostream *out) { *out << t.name; }

#define NAMED(cast) #cast, cast
constexpr narrow_target narrow_targets[] = {
    {NAMED(bcast_float_to_tinyint), -128, 127, -128, 127},
    {NAMED(bcast_float_to_smallint), -32768, 32767, -32768, 32767},
    {NAMED(bcast_float_to_int), -2147483648.0F, 2147483648.0F, std::numeric_limits<int32_t>::min(),
     std::numeric_limits<int32_t>::max()},
};
#undef NAMED

row_cast to_narrow(const narrow_target &t)
{
    const std::vector<float> samples{0.0F,         -0.0F,      0.75F,       -1.75F,
                                     126.5F,       t.greatest, t.least,     t.least / 2,
                                     not_a_number, -0x1p-149F, t.least + 1, std::nextafter(t.greatest, 0.0F),
                                     100.0F};
    row_cast c = rule(t.name, t.cast, sizeof(int32_t), samples, [t](const row_input &input) {
        const auto value = input.as<float>();
        if (value > t.greatest || value < t.least)
            return row_outcome{.status = ERR_OVERFLOW};
        const int64_t integer = cut(input.as<uint32_t>(), t.least_integer, t.greatest_integer);
        return row_outcome{.element = image_of(static_cast<int32_t>(integer))};
    });
    c.null_element = image_of(infinity);
    return c;
}

// What passes and what does not, at the limits and elsewhere.
std::vector<float> special_values(const narrow_target &t)
{
    return {t.greatest,
            std::nextafter(t.greatest, infinity),
            std::nextafter(t.greatest, 0.0F),
            t.greatest + 0.5F,
            t.greatest * 2,
            t.least,
            std::nextafter(t.least, -infinity),
            std::nextafter(t.least, 0.0F),
            t.least - 0.25F,
            t.least * 2,
            infinity,
            -infinity,
            not_a_number,
            -not_a_number,
            std::bit_cast<float>(0x7F800001),
            std::bit_cast<float>(0xFFBFFFFF),
            0.99999994F,
            -0.99999994F,
            0x1p-149F,
            0x1.fffffcp-127F,
            std::numeric_limits<float>::max(),
            -0x1p63F,
            4294967296.0F};
}

std::vector<row_cast> rules()
{
    std::vector<row_cast> all{to_float(), to_double(), to_int64(), to_decimal(usual_shape)};
    for (const narrow_target &t : narrow_targets)
        all.push_back(to_narrow(t));
    return all;
}

class float_to_number : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(float_to_number, present_rows_are_converted_and_null_rows_are_no_failures)
{
    expect_rows_and_null_rows(GetParam());
}

TEST_P(float_to_number, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

// Null rows lie about, with what would fail in them where the cast can fail.
TEST_P(float_to_number, odd_values_at_every_place)
{
    const row_cast &c = GetParam();
    std::vector<uint8_t> flags;
    for (uint32_t row = 0; row < 1200; row++)
        flags.push_back(static_cast<uint8_t>(row % 7 == 5 ? 0 : row % 5 + 1));
    for (const setup &how : few_setups()) {
        for (size_t shift = 0; shift < 64; shift++) {
            std::vector<batch_row> rows = sample_rows(c, flags);
            for (size_t row = 0; row < rows.size(); row++)
                rows[row].element = c.samples[(row + shift) / 3 % c.samples.size()];
            expect_batch(c, how, rows);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, float_to_number, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

TEST(float_to_decimal, the_code_of_the_service_stops_the_cast) { expect_stops(to_decimal(usual_shape)); }

TEST(float_to_decimal, both_bytes_of_length_are_unsigned_and_the_bits_above_them_unread)
{
    services().reset();
    for (const int32_t length : {0, 0x0102, 0x00FF, 0xFF00, 0x8080, 0x8181, 0x10A02, 0x7FFF0A02, -1,
                                 std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::min() + 0x2605}) {
        SCOPED_TRACE("length " + std::to_string(length));
        expect_element(to_decimal(length), image_of(-2.5F));
    }
}

TEST(float_to_int64, whatever_the_predicate_says_a_refusal_is_an_overflow) { expect_stops(to_int64()); }

// ---- The narrow integers -----------------------------------------------------------------

class float_to_narrow_integer : public testing::TestWithParam<narrow_target> {
protected:
    void SetUp() override { services().reset(); }
};

// At each of 64 places, and in the last row, which stands alone behind runs of any width.
TEST_P(float_to_narrow_integer, a_special_value_at_each_place_of_a_run_of_rows)
{
    const row_cast c = to_narrow(GetParam());
    std::vector<batch_row> rows = sample_rows(c, std::vector<uint8_t>(129, 6));
    for (const setup &how : {few_setups()[0], few_setups()[3]}) {
        for (const float value : special_values(GetParam())) {
            for (size_t place = 0; place < rows.size(); place += place < 64 ? 1 : 64) {
                SCOPED_TRACE("value " + std::to_string(value) + " at row " + std::to_string(place));
                const batch_row ordinary = std::exchange(rows[place], {6, image_of(value)});
                expect_batch(c, how, rows);
                rows[place] = ordinary;
            }
        }
    }
}

TEST_P(float_to_narrow_integer, an_unfit_value_at_each_place_behind_the_first_rows_stops_there)
{
    const row_cast c = to_narrow(GetParam());
    std::vector<batch_row> rows = sample_rows(c, std::vector<uint8_t>(1300, 6));
    for (size_t row = 0; row < rows.size(); row += 9)
        rows[row].flag = 0;
    for (const setup &how : few_setups()) {
        for (size_t place = 960; place < 1100; place++) {
            SCOPED_TRACE("at row " + std::to_string(place));
            const batch_row ordinary = std::exchange(rows[place], {6, image_of(-infinity)});
            expect_batch(c, how, rows);
            rows[place] = ordinary;
        }
    }
}

// The first of them stops, be they in one run of rows or not.
TEST_P(float_to_narrow_integer, two_unfit_values)
{
    const row_cast c = to_narrow(GetParam());
    std::vector<batch_row> rows = sample_rows(c, std::vector<uint8_t>(1100, 6));
    for (const setup &how : few_setups()) {
        for (const auto &[first, second] : {std::pair{0, 1},
                                            {3, 11},
                                            {15, 16},
                                            {31, 40},
                                            {63, 64},
                                            {17, 1099},
                                            {1023, 1024},
                                            {1030, 1031},
                                            {1098, 1099}}) {
            SCOPED_TRACE("at rows " + std::to_string(first) + " and " + std::to_string(second));
            std::vector<batch_row> failing = rows;
            for (const int row : {first, second})
                failing[static_cast<size_t>(row)].element = image_of(std::numeric_limits<float>::max());
            expect_batch(c, how, failing);
        }
    }
}

TEST_P(float_to_narrow_integer, null_rows_with_unfit_values_stop_nothing)
{
    const row_cast c = to_narrow(GetParam());
    std::vector<batch_row> rows = sample_rows(c, std::vector<uint8_t>(1100, 6));
    for (const setup &how : all_setups()) {
        for (size_t place = 0; place < 70; place++) {
            std::vector<batch_row> with_nulls = rows;
            for (size_t row = place; row < rows.size(); row += 70)
                with_nulls[row].flag = 0; // and infinity in it
            expect_batch(c, how, with_nulls);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, float_to_narrow_integer, testing::ValuesIn(narrow_targets),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Bits at random ------------------------------------------------------------------------

class float_sweep : public float_to_number {};

TEST_P(float_sweep, values_at_random)
{
    const row_cast &c = GetParam();
    std::mt19937 random(7);
    for (const setup &how : few_setups()) {
        std::vector<batch_row> rows;
        for (uint32_t row = 0; row < 20000; row++) {
            uint32_t bits = static_cast<uint32_t>(random());
            // A value that does not fit gives way to another; null rows hold one all the same.
            while (outcome_alone(c, image_of(bits), how).status < 0)
                bits = static_cast<uint32_t>(random());
            rows.push_back({static_cast<uint8_t>(random() % 6), image_of(bits)});
        }
        expect_batch(c, how, rows);
    }
}

INSTANTIATE_TEST_SUITE_P(casts, float_sweep, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- By hand -------------------------------------------------------------------------------

template <class Target> struct one_value {
    int32_t status;
    Target value;

    friend bool operator==(const one_value &, const one_value &) = default;
    friend std::ostream &operator<<(std::ostream &out, const one_value &v)
    {
        return out << "status " << v.status << ", element " << v.value;
    }
};

template <class Target = int32_t> one_value<Target> cast_one(bcast_plain_fn *cast, float value)
{
    services().reset();
    source_column source(sizeof value, 1, few_setups().front());
    source.set(0, 1, value);
    target_column target(sizeof(Target), 1);
    const auto *element = static_cast<Target *>(target.column()->data->values);
    const Target before = *element;
    const int32_t status = call(cast, {source.sealed(), target.column(), 1});
    EXPECT_TRUE(status == 0 || *element == before) << "the element of a row that failed was written";
    return {status, status == 0 ? *element : 0};
}

constexpr one_value<int32_t> overflow{-6102, 0};

TEST(float_by_hand, tinyint)
{
    EXPECT_EQ(cast_one(bcast_float_to_tinyint, 127.0F), (one_value<int32_t>{0, 127}));
    EXPECT_EQ(cast_one(bcast_float_to_tinyint, 126.99999F), (one_value<int32_t>{0, 126}));
    EXPECT_EQ(cast_one(bcast_float_to_tinyint, -128.0F), (one_value<int32_t>{0, -128}));
    EXPECT_EQ(cast_one(bcast_float_to_tinyint, 3.9F), (one_value<int32_t>{0, 3}));
    EXPECT_EQ(cast_one(bcast_float_to_tinyint, -3.9F), (one_value<int32_t>{0, -3}));
    EXPECT_EQ(cast_one(bcast_float_to_tinyint, -0.5F), (one_value<int32_t>{0, 0}));
    EXPECT_EQ(cast_one(bcast_float_to_tinyint, not_a_number), (one_value<int32_t>{0, 0}));
    EXPECT_EQ(cast_one(bcast_float_to_tinyint, 127.9F), overflow);
    EXPECT_EQ(cast_one(bcast_float_to_tinyint, -128.1F), overflow);
    EXPECT_EQ(cast_one(bcast_float_to_tinyint, infinity), overflow);
    EXPECT_EQ(cast_one(bcast_float_to_tinyint, -infinity), overflow);
}

TEST(float_by_hand, smallint)
{
    EXPECT_EQ(cast_one(bcast_float_to_smallint, 32767.0F), (one_value<int32_t>{0, 32767}));
    EXPECT_EQ(cast_one(bcast_float_to_smallint, -32768.0F), (one_value<int32_t>{0, -32768}));
    EXPECT_EQ(cast_one(bcast_float_to_smallint, -32767.99F), (one_value<int32_t>{0, -32767}));
    EXPECT_EQ(cast_one(bcast_float_to_smallint, not_a_number), (one_value<int32_t>{0, 0}));
    EXPECT_EQ(cast_one(bcast_float_to_smallint, 32767.002F), overflow);
    EXPECT_EQ(cast_one(bcast_float_to_smallint, 32768.0F), overflow);
    EXPECT_EQ(cast_one(bcast_float_to_smallint, -32768.004F), overflow);
    EXPECT_EQ(cast_one(bcast_float_to_smallint, infinity), overflow);
}

// The limit itself passes, for there is no float of 2147483647.
TEST(float_by_hand, int)
{
    EXPECT_EQ(cast_one(bcast_float_to_int, 3.9F), (one_value<int32_t>{0, 3}));
    EXPECT_EQ(cast_one(bcast_float_to_int, -3.9F), (one_value<int32_t>{0, -3}));
    EXPECT_EQ(cast_one(bcast_float_to_int, 16777215.0F), (one_value<int32_t>{0, 16777215}));
    EXPECT_EQ(cast_one(bcast_float_to_int, 2147483520.0F), (one_value<int32_t>{0, 2147483520}));
    EXPECT_EQ(cast_one(bcast_float_to_int, 2147483648.0F), (one_value<int32_t>{0, 2147483647}));
    EXPECT_EQ(cast_one(bcast_float_to_int, -2147483648.0F), (one_value<int32_t>{0, -2147483647 - 1}));
    EXPECT_EQ(cast_one(bcast_float_to_int, not_a_number), (one_value<int32_t>{0, 0}));
    EXPECT_EQ(cast_one(bcast_float_to_int, 2147483904.0F), overflow);
    EXPECT_EQ(cast_one(bcast_float_to_int, 4294967296.0F), overflow);
    EXPECT_EQ(cast_one(bcast_float_to_int, -2147483904.0F), overflow);
    EXPECT_EQ(cast_one(bcast_float_to_int, infinity), overflow);
    EXPECT_EQ(cast_one(bcast_float_to_int, -infinity), overflow);
}

TEST(float_by_hand, int64_of_values_that_the_predicate_lets_pass)
{
    constexpr int64_t least = std::numeric_limits<int64_t>::min(), greatest = std::numeric_limits<int64_t>::max();
    const auto cast_of = [](float value) { return cast_one<int64_t>(bcast_float_to_int64, value); };
    EXPECT_EQ(cast_of(-3.9F), (one_value<int64_t>{0, -3}));
    EXPECT_EQ(cast_of(4294967296.0F), (one_value<int64_t>{0, 4294967296}));
    EXPECT_EQ(cast_of(0x1.fffffep62F), (one_value<int64_t>{0, 9223371487098961920}));
    EXPECT_EQ(cast_of(0x1p63F), (one_value<int64_t>{0, greatest}));
    EXPECT_EQ(cast_of(1e30F), (one_value<int64_t>{0, greatest}));
    EXPECT_EQ(cast_of(infinity), (one_value<int64_t>{0, greatest}));
    EXPECT_EQ(cast_of(-0x1p63F), (one_value<int64_t>{0, least}));
    EXPECT_EQ(cast_of(-1e30F), (one_value<int64_t>{0, least}));
    EXPECT_EQ(cast_of(-infinity), (one_value<int64_t>{0, least}));
    EXPECT_EQ(cast_of(not_a_number), (one_value<int64_t>{0, 0}));
    EXPECT_EQ(cast_of(-not_a_number), (one_value<int64_t>{0, 0}));
}

TEST(float_by_hand, the_predicate_of_int64_is_asked_about_the_double)
{
    services().reset();
    services().answer("ntype_is_lint64_overflow", std::to_string(1e10F), -4711);
    source_column source(sizeof(float), 2, few_setups().front());
    source.set(0, 1, 2.5F);
    source.set(1, 1, 1e10F);
    target_column target(sizeof(int64_t), 2);
    EXPECT_EQ(call(bcast_float_to_int64, {source.sealed(), target.column(), 2}), -6102);
    EXPECT_TRUE(services().logged({judges_int64(2.5), judges_int64(1e10)}));
}

// Cutting a fraction is no rounding.
TEST(float_by_hand, the_rounding_mode_of_the_caller_does_not_matter)
{
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        std::fesetround(mode);
        const auto up = cast_one(bcast_float_to_int, 3.9F), down = cast_one(bcast_float_to_int, -3.9F);
        const auto wide_up = cast_one<int64_t>(bcast_float_to_int64, 3.1F);
        const auto wide_down = cast_one<int64_t>(bcast_float_to_int64, -3.9F);
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(up, (one_value<int32_t>{0, 3})) << "mode " << mode;
        EXPECT_EQ(down, (one_value<int32_t>{0, -3})) << "mode " << mode;
        EXPECT_EQ(wide_up, (one_value<int64_t>{0, 3})) << "mode " << mode;
        EXPECT_EQ(wide_down, (one_value<int64_t>{0, -3})) << "mode " << mode;
    }
}

} // namespace
} // namespace bcast::test
