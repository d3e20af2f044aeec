// char, varchar and varchar2 to float and double. The sources are three policies, and of the casts to double one asks
// for the range; each against its own line of the table below.

#include "tests/character/empty_text.h"
#include "tests/support/row_cast.h"
#include "tests/support/text_element.h"

#include <algorithm>
#include <bit>
#include <cfenv>
#include <charconv>
#include <limits>

namespace bcast::test {
namespace {

constexpr int32_t longest_read = BCAST_NUMBER_TEXT_MAX; // bytes of a text that the parser gets

enum class range { of_float, of_double, not_asked };

struct rule {
    const char *name;
    any_cast cast;
    size_t target_bytes;
    row_flags flags;
    range asked;
};

using enum row_flags;

#define NAMED(cast) #cast, &cast
constexpr rule rules[] = {
    {NAMED(bcast_char_to_float), 4, filled_when_no_null, range::of_float},
    {NAMED(bcast_char_to_double), 8, filled_when_no_null, range::not_asked},
    {NAMED(bcast_varchar_to_float), 4, copied, range::of_float},
    {NAMED(bcast_varchar_to_double), 8, copied, range::of_double},
    {NAMED(bcast_varchar2_to_float), 4, copied, range::of_float},
    {NAMED(bcast_varchar2_to_double), 8, copied, range::not_asked},
};
#undef NAMED

// What the double's parser makes of a text. One number takes all parses of a batch: a parser that stores nothing leaves
// the one before, and 0 ahead of the first.
int32_t parse(const std::string &text, double &number)
{
    const auto known = services().character.numbers.find(text);
    if (known != services().character.numbers.end()) {
        number = known->second.value_or(number);
        return 0;
    }
    const char *end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stopped == end ? 0 : int32_t{ERR_BAD_CONVERSION};
}

row_outcome read(const rule &r, const row_input &input, double &number)
{
    if (input.first)
        number = 0.0;
    const auto element = input.as<bdta3_str>();
    if (element.length == 0)
        return {.turns_null = true};
    const auto length = std::min<int32_t>(static_cast<uint16_t>(element.length), longest_read);
    const int32_t parsed = parse(bytes_at(element.text, length), number);
    row_outcome outcome;
    outcome.steps.push_back({parses_number(element, length), service_failure::passes_its_code, parsed});
    if (r.asked == range::of_float)
        outcome.steps.push_back({judges_float(number), service_failure::passes_its_code});
    if (r.asked == range::of_double)
        outcome.steps.push_back({judges_double(number), service_failure::passes_its_code});
    outcome.element = r.target_bytes == 8 ? image_of(number) : image_of(static_cast<float>(number));
    return outcome;
}

std::vector<row_cast> casts()
{
    std::vector<row_cast> all;
    for (const rule &r : rules)
        all.push_back({.name = r.name,
                       .cast = r.cast,
                       .to_bytes = r.target_bytes,
                       .flags = r.flags,
                       .no_null_ahead = true,
                       .failure_clears_flag = false,
                       .samples = text_elements({"0", "-0", "1.5", "-2.25", "0.1", "1e30", "-3.1415926535897931", "7"}),
                       .convert = [r, number = 0.0](const row_input &input) mutable { return read(r, input, number); },
                       .null_element = element_of_length(5)});
    return all;
}

class character_to_floating : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(character_to_floating, rows_are_parsed_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(character_to_floating, of_null_rows_no_element_is_read) { expect_null_rows_unread(GetParam()); }

TEST_P(character_to_floating, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

TEST_P(character_to_floating, an_empty_text_is_null_and_clears_no_null) { expect_empty_text_is_null(GetParam()); }

TEST_P(character_to_floating, an_empty_text_in_a_null_row_changes_nothing)
{
    expect_empty_text_in_null_row_changes_nothing(GetParam());
}

// The low 16 bits of the length word, and of those no more than 319. What the digits are worth does not matter.
TEST_P(character_to_floating, how_much_of_a_text_the_parser_gets)
{
    std::string text(65536, '0');
    text[0] = '7';
    for (const int32_t word : {1, 318, 319, 320, 400, 65535, 65536, 65536 + 1, 65536 + 319, 65536 + 320, 0x7FFF0000, -1,
                               -65536, -65536 + 4, INT32_MIN, INT32_MIN + 2})
        for (const setup &how : few_setups())
            expect_batch(GetParam(), how, {{1, element_of_length(word, text.data())}}, {.results = {{0, -77}}});
}

TEST_P(character_to_floating, bytes_behind_the_first_319_are_ignored)
{
    const std::string read = "1." + std::string(317, '5');
    expect_element(GetParam(), text_element(read + std::string(81, 'x')));
    // Nor are they touched.
    bdta3_str element;
    std::memcpy(&element, text_element(read).data(), sizeof element);
    expect_element(GetParam(), element_of_length(400, element.text));
}

TEST_P(character_to_floating, every_kind_of_value)
{
    using double_limits = std::numeric_limits<double>;
    using float_limits = std::numeric_limits<float>;
    std::vector<double> values{0.0,
                               -0.0,
                               0.1,
                               1 + 0x1p-24,   // halfway between two floats, to the even one below
                               1 + 0x1.8p-23, // and to the even one above
                               1 + 0x1p-24 + 0x1p-52,
                               16777217,
                               float_limits::max(),
                               -float_limits::max(),
                               float_limits::denorm_min(),
                               0x1p-150,
                               1e-46,
                               -1e-46,
                               double_limits::infinity(),
                               -double_limits::infinity(),
                               double_limits::quiet_NaN()};
    if (GetParam().to_bytes == 8)
        for (const double wide : {double_limits::max(), double_limits::lowest(), double_limits::denorm_min(), 1e39,
                                  1e300, std::bit_cast<double>(0x7FF0000000000001), // a signalling NaN
                                  std::bit_cast<double>(0xFFF8DEADBEEF0123)})
            values.push_back(wide);
    std::vector<batch_row> rows;
    for (size_t row = 0; row < values.size(); row++) {
        const std::string text = "value " + std::to_string(row);
        services().character.numbers[text] = values[row];
        rows.push_back({1, text_element(text)});
    }
    for (const setup &how : few_setups())
        expect_batch(GetParam(), how, rows);
}

TEST_P(character_to_floating, a_parse_that_stores_nothing_leaves_the_number_before)
{
    services().character.numbers["none"] = std::nullopt;
    std::vector<batch_row> rows;
    for (const char *text : {"none", "1.5", "none", "-3", "none"})
        rows.push_back({1, text_element(text)});
    for (const setup &how : few_setups())
        expect_batch(GetParam(), how, rows);
}

// By hand, for the floats are those that the modes ask for.
TEST_P(character_to_floating, a_float_is_rounded_as_the_environment_says)
{
    if (GetParam().to_bytes == 8)
        return; // is not rounded: see every_kind_of_value
    struct rounding {
        int mode;
        float above_one, below_minus_one;
    };
    const float ulp = std::numeric_limits<float>::epsilon();
    for (const auto &[mode, above_one, below_minus_one] :
         {rounding{FE_UPWARD, 1 + ulp, -1}, rounding{FE_DOWNWARD, 1, -1 - ulp}, rounding{FE_TOWARDZERO, 1, -1},
          rounding{FE_TONEAREST, 1, -1}}) {
        services().reset();
        services().character.numbers = {{"more", 1 + 0x1p-30}, {"less", -1 - 0x1p-30}};
        source_column source(sizeof(bdta3_str), 2, few_setups().front());
        source.set_bytes(0, 1, text_element("more"));
        source.set_bytes(1, 1, text_element("less"));
        target_column target(sizeof(float), 2);
        target_image expected = target.image();
        expected.no_null = 0;
        expected.flags = {1, 1};
        expected.put(0, above_one);
        expected.put(1, below_minus_one);
        const call_arguments with{source.sealed(), target.column(), 2};
        std::fesetround(mode);
        const int32_t status = call(GetParam().cast, with);
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(status, 0);
        EXPECT_TRUE(target.holds(expected));
    }
}

// Parser and predicate are asked in turn, and the code of either is the cast's.
TEST_P(character_to_floating, the_first_failure_stops) { expect_stops(GetParam()); }

TEST_P(character_to_floating, what_a_failing_parser_leaves_is_not_looked_at)
{
    for (const double rubbish : {42.5, std::numeric_limits<double>::infinity()}) {
        services().character.result_of_failed_number = rubbish;
        expect_element(GetParam(), text_element("no number"));
    }
}

TEST_P(character_to_floating, a_failure_leaves_no_null_as_the_walk_has_it)
{
    expect_failure_behind_empty_text(GetParam());
}

INSTANTIATE_TEST_SUITE_P(casts, character_to_floating, testing::ValuesIn(casts()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Captured failures: varchar -----------------------------------------------------------

class varchar_to_floating : public character_to_floating {};

TEST_P(varchar_to_floating, failures_are_captured_by_row_of_the_batch) { expect_captures(GetParam()); }

TEST_P(varchar_to_floating, an_empty_text_beside_captured_failures_is_no_failure)
{
    expect_empty_text_beside_captured_failures(GetParam());
}

// The call that fails decides whether the predicate is asked at all.
TEST_P(varchar_to_floating, each_call_may_fail)
{
    for (size_t failing = 0; failing < 12; failing++)
        for (const setup &how : few_setups())
            expect_batch(GetParam(), how, sample_rows(GetParam(), {1, 1, 1, 1, 1, 1}),
                         {.results = {{failing, -700}}, .capture = true});
}

std::vector<row_cast> capturing_casts() { return casts_where(casts(), &row_cast::captures); }

INSTANTIATE_TEST_SUITE_P(casts, varchar_to_floating, testing::ValuesIn(capturing_casts()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- What stands out ------------------------------------------------------------------------

TEST(character_to_floating_by_hand, one_table_line_for_each_cast)
{
    EXPECT_EQ(casts().size(), 6U);
    EXPECT_EQ(capturing_casts().size(), 2U);
    EXPECT_EQ(std::ranges::count(rules, range::not_asked, &rule::asked), 2);
}

TEST(character_to_floating_by_hand, an_infinite_double_is_refused_from_varchar_only)
{
    for (const any_cast cast :
         {any_cast(&bcast_char_to_double), any_cast(&bcast_varchar_to_double), any_cast(&bcast_varchar2_to_double)}) {
        services().reset();
        services().character.numbers["1e999"] = std::numeric_limits<double>::infinity();
        services().answer("ntype_is_double_overflow", "inf", ERR_OVERFLOW);
        services().answer("ntype_is_float_overflow", "inf", ERR_OVERFLOW);
        source_column source(sizeof(bdta3_str), 1, few_setups().front());
        source.set_bytes(0, 1, text_element("1e999"));
        target_column target(sizeof(double), 1);
        target_image expected = target.image();
        expected.flags = {1};
        expected.no_null = 0;
        const bool refused = cast == any_cast(&bcast_varchar_to_double);
        if (!refused)
            expected.put(0, std::numeric_limits<double>::infinity());
        EXPECT_EQ(call(cast, {source.sealed(), target.column(), 1}), refused ? ERR_OVERFLOW : 0);
        EXPECT_TRUE(target.holds(expected));
    }
}

} // namespace
} // namespace bcast::test
