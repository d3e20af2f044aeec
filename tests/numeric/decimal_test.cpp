// Decimals as decimals of another shape, as integers and as floating numbers: the services convert, in place, what
// stands at any address; the casts test the range of the narrow integers.

#include "tests/numeric/floating_values.h"
#include "tests/support/row_cast.h"

#include <limits>

namespace bcast::test {
namespace {

constexpr int32_t usual_shape = 0x0A02; // 10 digits in all, 2 behind the point
constexpr uint32_t decimals = 13;

using convert_row = std::function<row_outcome(const row_input &)>;

row_cast rule(const char *name, any_cast cast, size_t to_bytes, convert_row convert, int32_t length = 0)
{
    row_cast c{.name = name,
               .cast = cast,
               .to_bytes = to_bytes,
               .flags = row_flags::copied,
               .no_null_ahead = false,
               .failure_clears_flag = false,
               .samples = {},
               .convert = std::move(convert),
               .length = length};
    for (uint32_t number = 0; number < decimals; number++)
        c.samples.push_back(image_of(some_decimal(number)));
    return c;
}

row_cast to_decimal(int32_t length)
{
    const int32_t len = length >> 8 & 0xFF, prec = length & 0xFF;
    const auto convert = [len, prec](const row_input &input) {
        return row_outcome{.steps = {{makes_decimal_of_decimal(input.where, input.image, len, prec),
                                      service_failure::passes_its_code}},
                           .element = image_of(made_decimal(input.image, len, prec))};
    };
    return rule("bcast_dec_to_dec", bcast_dec_to_dec, sizeof(xdec), convert, length);
}

// An integer of the service that lies outside of least to greatest is refused by the cast.
template <class Target> row_cast to_integer(const char *name, bcast_plain_fn *cast, int64_t least, int64_t greatest)
{
    const auto convert = [least, greatest](const row_input &input) {
        const int64_t value = services().numeric.integer_of(input.image);
        row_outcome outcome{
            .steps = {{takes_int64_of_decimal(input.where, input.image), service_failure::passes_its_code}}};
        if (value < least || value > greatest)
            outcome.status = ERR_OVERFLOW;
        else
            outcome.element = image_of(static_cast<Target>(value));
        return outcome;
    };
    return rule(name, cast, sizeof(Target), convert);
}

row_cast to_double()
{
    const auto convert = [](const row_input &input) {
        return row_outcome{
            .steps = {{takes_double_of_decimal(input.where, input.image), service_failure::passes_its_code}},
            .element = image_of(services().numeric.double_of(input.image))};
    };
    return rule("bcast_dec_to_double", bcast_dec_to_double, sizeof(double), convert);
}

// The doubles of the double are floats, unless a test tells others: it then tells the float as well.
row_cast to_float(float told = 0)
{
    const auto convert = [told](const row_input &input) {
        const double value = services().numeric.double_of(input.image);
        const bool is_told = services().numeric.doubles.contains(input.image);
        return row_outcome{
            .steps = {{takes_double_of_decimal(input.where, input.image), service_failure::passes_its_code},
                      {judges_float(value), service_failure::passes_its_code}},
            .element = image_of(is_told ? told : static_cast<float>(value))};
    };
    return rule("bcast_dec_to_float", bcast_dec_to_float, sizeof(float), convert);
}

std::vector<row_cast> narrow_rules()
{
#define NAMED(cast) #cast, cast
    return {
        to_integer<int32_t>(NAMED(bcast_dec_to_tinyint), -128, 127),
        to_integer<int32_t>(NAMED(bcast_dec_to_smallint), -32768, 32767),
        to_integer<int32_t>(NAMED(bcast_dec_to_int), std::numeric_limits<int32_t>::min(),
                            std::numeric_limits<int32_t>::max()),
    };
}

row_cast to_int64()
{
    return to_integer<int64_t>(NAMED(bcast_dec_to_int64), std::numeric_limits<int64_t>::min(),
                               std::numeric_limits<int64_t>::max());
#undef NAMED
}

std::vector<row_cast> rules()
{
    std::vector<row_cast> all = narrow_rules();
    all.push_back(to_int64());
    all.push_back(to_decimal(usual_shape));
    all.push_back(to_double());
    all.push_back(to_float());
    return all;
}

class decimal : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(decimal, present_rows_are_converted_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(decimal, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

TEST_P(decimal, a_failure_of_a_service_stops_with_its_code) { expect_stops(GetParam()); }

INSTANTIATE_TEST_SUITE_P(casts, decimal, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

TEST(decimal_shape, both_bytes_of_length_are_unsigned_and_the_bits_above_them_unread)
{
    services().reset();
    for (const int32_t length : {0, 0x0102, 0x00FF, 0xFF00, 0x8080, 0x8181, 0x10A02, 0x7FFF0A02, -1,
                                 std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::min() + 0x2605}) {
        SCOPED_TRACE("length " + std::to_string(length));
        expect_element(to_decimal(length), image_of(some_decimal(99)));
    }
}

// ---- Ranges ------------------------------------------------------------------------

constexpr int64_t edges[] = {0,
                             127,
                             128,
                             -128,
                             -129,
                             255,
                             256,
                             32767,
                             32768,
                             -32768,
                             -32769,
                             65536,
                             2147483647,
                             2147483648,
                             -2147483648,
                             -2147483649,
                             4294967295,
                             4294967296,
                             4294967296 + 5,
                             -4294967296,
                             int64_t{1} << 40,
                             std::numeric_limits<int64_t>::min(),
                             std::numeric_limits<int64_t>::max()};

TEST(decimal_to_integer, values_outside_of_the_target_stop_with_overflow)
{
    std::vector<row_cast> all = narrow_rules();
    all.push_back(to_int64());
    for (const row_cast &c : all) {
        for (const int64_t edge : edges) {
            SCOPED_TRACE("value " + std::to_string(edge));
            services().reset();
            const std::string image = image_of(some_decimal(99));
            services().numeric.integers[image] = edge;
            expect_element(c, image);
        }
    }
}

TEST(decimal_to_integer, an_unfit_value_stops_at_any_row_of_a_batch)
{
    for (const row_cast &c : narrow_rules()) {
        services().reset();
        const std::string image = image_of(some_decimal(99));
        services().numeric.integers[image] = -2147483649;
        for (const setup &how : all_setups()) {
            for (const uint32_t failing_row : {0U, 1U, 500U, 1023U, 1024U, 1063U}) {
                std::vector<batch_row> rows = sample_rows(c, std::vector<uint8_t>(1064, 5));
                rows[7] = {0, image};
                rows[failing_row].element = image;
                rows[1063].element = image;
                expect_batch(c, how, rows);
            }
        }
    }
}

TEST(decimal_to_integer, limits_by_hand)
{
    const auto cast_of = [](bcast_plain_fn *cast, int64_t value) {
        services().reset();
        const xdec element = some_decimal(5);
        services().numeric.integers[image_of(element)] = value;
        source_column source(sizeof element, 1, few_setups().front());
        source.set(0, 1, element);
        target_column target(4, 1);
        return call(cast, {source.sealed(), target.column(), 1});
    };
    EXPECT_EQ(cast_of(bcast_dec_to_tinyint, 127), 0);
    EXPECT_EQ(cast_of(bcast_dec_to_tinyint, 128), -6102);
    EXPECT_EQ(cast_of(bcast_dec_to_tinyint, -128), 0);
    EXPECT_EQ(cast_of(bcast_dec_to_tinyint, -129), -6102);
    EXPECT_EQ(cast_of(bcast_dec_to_smallint, 32767), 0);
    EXPECT_EQ(cast_of(bcast_dec_to_smallint, 32768), -6102);
    EXPECT_EQ(cast_of(bcast_dec_to_int, 2147483647), 0);
    EXPECT_EQ(cast_of(bcast_dec_to_int, 2147483648), -6102);
}

// ---- To floating numbers -----------------------------------------------------------

TEST(decimal_to_floating, whatever_the_service_gives_is_the_double)
{
    for (const auto &[from, to] : narrowed_doubles) {
        services().reset();
        const std::string image = image_of(some_decimal(99));
        services().numeric.doubles[image] = from;
        SCOPED_TRACE("value " + std::to_string(from));
        expect_element(to_double(), image);
        expect_element(to_float(to), image);
    }
}

// The predicate is not asked about a value that there is none of.
TEST(decimal_to_floating, float_takes_the_value_ahead_of_the_predicate)
{
    services().reset();
    const row_cast c = to_float();
    const std::vector<batch_row> rows = sample_rows(c, {1, 1, 1});
    for (const setup &how : few_setups()) {
        expect_batch(c, how, rows, {.results = {{2, -11}, {3, -12}}}); // the second row's value
        expect_batch(c, how, rows, {.results = {{3, -12}, {4, -13}}}); // the second row's predicate
    }
}

// ---- Elements at stride 30 ----------------------------------------------------------

TEST(decimal_by_hand, sel_counts_elements_of_30_bytes)
{
    services().reset();
    source_column source(sizeof(xdec), 8, std::vector<uint16_t>{7, 3}, 0);
    source.set(0, 1, some_decimal(70));
    source.set(1, 1, some_decimal(30));
    target_column target(sizeof(xdec), 2);
    target_image expected = target.image();
    expected.no_null = 0;
    expected.flags = {1, 1};
    expected.put(0, made_decimal(image_of(some_decimal(70)), 10, 2));
    expected.put(1, made_decimal(image_of(some_decimal(30)), 10, 2));
    const auto *elements = static_cast<const char *>(source.column()->data->values);
    EXPECT_EQ(bcast_dec_to_dec(env(), heap(), source.sealed(), usual_shape, target.column(), 2), 0);
    EXPECT_TRUE(target.holds(expected));
    EXPECT_TRUE(services().logged({makes_decimal_of_decimal(elements + 210, image_of(some_decimal(70)), 10, 2),
                                   makes_decimal_of_decimal(elements + 90, image_of(some_decimal(30)), 10, 2)}));
}

} // namespace
} // namespace bcast::test
