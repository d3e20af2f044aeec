// binary and varbinary to numbers: twelve casts. The services read the bytes; binary stops at a failure, varbinary
// captures it.

#include "tests/support/row_cast.h"
#include "tests/support/text_element.h"

#include <limits>

namespace bcast::test {
namespace {

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int32_t int32_greatest = std::numeric_limits<int32_t>::max();
constexpr int64_t int64_least = std::numeric_limits<int64_t>::min();
constexpr int64_t int64_greatest = std::numeric_limits<int64_t>::max();

// The call that reads the row's bytes, and the outcome so far.
row_outcome behind(const row_input &input, service_call reading, int64_t &value)
{
    const auto element = input.as<bdta3_str>();
    const auto integer = services().binary.integer_in(bytes_at(element.text, element.length));
    value = integer.value_or(0);
    return {.steps = {{.call = std::move(reading),
                       .failure = service_failure::passes_its_code,
                       .result = integer ? 0 : ERR_BAD_CONVERSION}}};
}

template <class Target> row_outcome to_integer(const row_input &input, int32_t width)
{
    int64_t value;
    row_outcome outcome = behind(input, reads_integer(input.as<bdta3_str>(), width), value);
    outcome.element = image_of(static_cast<Target>(value));
    return outcome;
}

row_outcome to_double(const row_input &input)
{
    int64_t value;
    row_outcome outcome = behind(input, reads_int64(input.as<bdta3_str>()), value);
    outcome.element = image_of(static_cast<double>(value));
    return outcome;
}

row_outcome to_float(const row_input &input)
{
    int64_t value;
    row_outcome outcome = behind(input, reads_int64(input.as<bdta3_str>()), value);
    outcome.steps.push_back({judges_float(static_cast<double>(value)), service_failure::passes_its_code});
    outcome.element = image_of(static_cast<float>(value));
    return outcome;
}

// The shape is in the low 16 bits of length.
row_outcome to_decimal(const row_input &input)
{
    const int32_t len = input.cast.length >> 8 & 0xFF, prec = input.cast.length & 0xFF;
    int64_t value;
    row_outcome outcome = behind(input, reads_int64(input.as<bdta3_str>()), value);
    outcome.steps.push_back({makes_decimal_of_int64(value, len, prec), service_failure::passes_its_code});
    outcome.element = image_of(made_decimal(image_of(value), len, prec));
    return outcome;
}

// Every one fits a tinyint. The double reads bytes as decimal digits.
const std::vector<std::string> samples{"0", "7", "-7", "127", "-128", "42", "-1", "100"};

// A row that fails keeps its flag, and its element is not written.
row_cast rule(const char *name, any_cast cast, size_t to_bytes, std::function<row_outcome(const row_input &)> convert)
{
    return {.name = name,
            .cast = cast,
            .to_bytes = to_bytes,
            .flags = row_flags::copied,
            .no_null_ahead = false,
            .failure_clears_flag = false,
            .samples = text_elements(samples),
            .convert = std::move(convert),
            .length = 0x0D04,
            .null_element = element_of_length(5)};
}

template <class Target> row_cast read_as(int32_t width, const char *name, any_cast cast)
{
    return rule(name, cast, sizeof(Target), [width](const row_input &in) { return to_integer<Target>(in, width); });
}

#define NAMED(cast) #cast, &cast
std::vector<row_cast> casts_to_decimal()
{
    return {rule(NAMED(bcast_binary_to_dec), sizeof(xdec), to_decimal),
            rule(NAMED(bcast_varbinary_to_dec), sizeof(xdec), to_decimal)};
}

std::vector<row_cast> all_casts()
{
    std::vector<row_cast> all = casts_to_decimal();
    for (const row_cast &c : {
             read_as<int32_t>(1, NAMED(bcast_binary_to_tinyint)),
             read_as<int32_t>(2, NAMED(bcast_binary_to_smallint)),
             read_as<int32_t>(4, NAMED(bcast_binary_to_int)),
             read_as<int64_t>(8, NAMED(bcast_binary_to_int64)),
             rule(NAMED(bcast_binary_to_double), sizeof(double), to_double),
             rule(NAMED(bcast_binary_to_float), sizeof(float), to_float),
             read_as<int32_t>(1, NAMED(bcast_varbinary_to_tinyint)),
             read_as<int32_t>(2, NAMED(bcast_varbinary_to_smallint)),
             read_as<int32_t>(4, NAMED(bcast_varbinary_to_int)),
             read_as<int64_t>(8, NAMED(bcast_varbinary_to_int64)),
         })
        all.push_back(c);
    return all;
}
#undef NAMED

std::string name_of(const testing::TestParamInfo<row_cast> &each) { return each.param.name; }

class binary_to_number : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }

    row_cast c = GetParam();
};

TEST_P(binary_to_number, rows_are_read_and_null_rows_left_out) { expect_rows_and_null_rows(c); }

TEST_P(binary_to_number, null_rows_are_not_looked_into) { expect_null_rows_unread(c); }

TEST_P(binary_to_number, every_row_count_up_to_the_largest) { expect_row_counts(c); }

// From the greatest values of a width down to the least, so that sign bits of one row show in the next if they stay.
TEST_P(binary_to_number, edges_of_the_width)
{
    const std::string_view name = c.name;
    const int bits = name.ends_with("_tinyint")    ? 8
                     : name.ends_with("_smallint") ? 16
                     : name.ends_with("_int")      ? 32
                                                   : 64;
    const int64_t greatest = int64_greatest >> (64 - bits);
    std::vector<batch_row> rows;
    for (const int64_t edge : {greatest, -greatest - 1, greatest - 1, int64_t{-1}, int64_t{1}, int64_t{-2}, int64_t{0},
                               greatest / 2 + 1, -greatest})
        rows.push_back({1, text_element(std::to_string(edge))});
    for (const setup &how : few_setups())
        expect_batch(c, how, rows);
}

// ---- What the services are handed -------------------------------------------------------

TEST_P(binary_to_number, bytes_of_every_length_are_handed_over_whole)
{
    for (const size_t size : {size_t{0}, size_t{1}, size_t{3}, size_t{8}, size_t{9}, size_t{32768}, size_t{65539}}) {
        const std::string bytes(size, '\xC7');
        services().binary.integers[bytes] = -5;
        expect_batch(c, few_setups().front(), {{1, text_element(bytes)}});
    }
}

TEST_P(binary_to_number, the_length_word_is_handed_over_as_the_source_has_it)
{
    const std::string bytes(3 * 65536, '1');
    for (const int32_t word : {65535, 65536, 65536 + 3, 2 * 65536, int32_greatest, -1, -65536, int32_least})
        // What it is worth does not matter.
        expect_batch(c, few_setups().front(), {{1, element_of_length(word, bytes.data())}}, {.results = {{0, -77}}});
}

TEST_P(binary_to_number, the_pad_len_of_the_source_is_not_looked_at)
{
    for (const int32_t pad_len : {0, 1, int32_greatest, -1})
        expect_batch(c, few_setups().front(), {{1, text_element("12", pad_len)}});
}

// ---- Failures -----------------------------------------------------------------------------

TEST_P(binary_to_number, a_failure_of_a_service_stops_with_its_code) { expect_stops(c); }

TEST_P(binary_to_number, bytes_that_are_no_number_fail_in_any_row) { expect_bad_elements(c, {text_element("no")}); }

INSTANTIATE_TEST_SUITE_P(casts, binary_to_number, testing::ValuesIn(all_casts()), name_of);

// ---- Captured failures: varbinary ------------------------------------------------------------

class varbinary_to_number : public binary_to_number {};

TEST_P(varbinary_to_number, failures_are_captured_by_row_of_the_batch) { expect_captures(c); }

INSTANTIATE_TEST_SUITE_P(casts, varbinary_to_number, testing::ValuesIn(casts_where(all_casts(), &row_cast::captures)),
                         name_of);

// ---- Decimals -----------------------------------------------------------------------------------

class binary_to_decimal : public binary_to_number {};

TEST_P(binary_to_decimal, the_shape_is_in_the_low_16_bits_of_length)
{
    for (const int32_t length : {0, 0x0A02, 0x020A, 0x00FF, 0xFF00, 0x7FFF0501, -1, int32_least + 0x8081}) {
        c.length = length;
        expect_batch(c, few_setups().front(), {{1, text_element("-17")}});
    }
}

// By hand.
TEST_P(binary_to_decimal, has_len_in_the_upper_byte_of_the_shape)
{
    source_column source(sizeof(bdta3_str), 1, few_setups().front());
    source.set_bytes(0, 1, text_element("-17"));
    target_column target(sizeof(xdec), 1);
    EXPECT_EQ(call(c.cast, {.src = source.sealed(), .dst = target.column(), .rows = 1, .length = 0x7FFF0501}), 0);
    EXPECT_TRUE(services().logged({reads_int64(source.element<bdta3_str>(0)), makes_decimal_of_int64(-17, 5, 1)}));
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_decimal, testing::ValuesIn(casts_to_decimal()), name_of);

// ---- Floating numbers -----------------------------------------------------------------------------

// By hand, so that no conversion of the compiler's stands against one.
template <class Target> Target converted(bcast_plain_fn *cast, int64_t value)
{
    services().reset();
    source_column source(sizeof(bdta3_str), 1, few_setups().front());
    source.set_bytes(0, 1, text_element(std::to_string(value)));
    target_column target(sizeof(Target), 1);
    EXPECT_EQ(call(cast, {.src = source.sealed(), .dst = target.column(), .rows = 1}), 0);
    Target result;
    std::memcpy(&result, target.column()->data->values, sizeof result);
    return result;
}

TEST(binary_to_double, rounds_to_the_nearest_and_of_two_to_the_even_one)
{
    EXPECT_EQ(converted<double>(bcast_binary_to_double, 9007199254740992), 9007199254740992.0);
    EXPECT_EQ(converted<double>(bcast_binary_to_double, 9007199254740993), 9007199254740992.0);
    EXPECT_EQ(converted<double>(bcast_binary_to_double, 9007199254740995), 9007199254740996.0);
    EXPECT_EQ(converted<double>(bcast_binary_to_double, -9007199254740993), -9007199254740992.0);
    EXPECT_EQ(converted<double>(bcast_binary_to_double, int64_greatest), 9223372036854775808.0);
    EXPECT_EQ(converted<double>(bcast_binary_to_double, int64_least), -9223372036854775808.0);
}

TEST(binary_to_float, rounds_to_the_nearest_and_of_two_to_the_even_one)
{
    EXPECT_EQ(converted<float>(bcast_binary_to_float, 16777216), 16777216.0F);
    EXPECT_EQ(converted<float>(bcast_binary_to_float, 16777217), 16777216.0F);
    EXPECT_EQ(converted<float>(bcast_binary_to_float, 16777219), 16777220.0F);
    EXPECT_EQ(converted<float>(bcast_binary_to_float, -16777217), -16777216.0F);
    EXPECT_EQ(converted<float>(bcast_binary_to_float, int64_greatest), 9223372036854775808.0F);
    EXPECT_EQ(converted<float>(bcast_binary_to_float, int64_least), -9223372036854775808.0F);
}

// Through double on the way to float this would round twice, and end below. The predicate gets the double.
TEST(binary_to_float, rounds_once)
{
    const int64_t just_above_the_middle = (int64_t{1} << 60) + (int64_t{1} << 36) + 1;
    EXPECT_EQ(converted<float>(bcast_binary_to_float, just_above_the_middle), 0x1.000002p60F);
    EXPECT_EQ(converted<float>(bcast_binary_to_float, -just_above_the_middle), -0x1.000002p60F);
    ASSERT_EQ(services().log().size(), 2U);
    EXPECT_EQ(services().log().back(), judges_float(-0x1.0000010000000p60));
}

} // namespace
} // namespace bcast::test
