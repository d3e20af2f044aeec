// char, varchar and varchar2 to tinyint, smallint, int and int64. The three sources are three policies; each cast
// against its own line of the table below.

#include "tests/character/empty_text.h"
#include "tests/support/row_cast.h"
#include "tests/support/text_element.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace bcast::test {
namespace {

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int32_t int32_greatest = std::numeric_limits<int32_t>::max();
constexpr int64_t int64_least = std::numeric_limits<int64_t>::min();
constexpr int64_t int64_greatest = std::numeric_limits<int64_t>::max();

enum class parsed_length { low_16_bits, whole_word };

struct rule {
    const char *name;
    any_cast cast;
    size_t target_bytes;
    int64_t least, greatest;
    parsed_length length;
    row_flags flags;
};

using enum parsed_length;
using enum row_flags;

#define NAMED(cast) #cast, &cast
constexpr rule rules[] = {
    {NAMED(bcast_char_to_tinyint), 4, -128, 127, low_16_bits, filled_when_no_null},
    {NAMED(bcast_char_to_smallint), 4, -32768, 32767, low_16_bits, filled_when_no_null},
    {NAMED(bcast_char_to_int), 4, int32_least, int32_greatest, low_16_bits, filled_when_no_null},
    {NAMED(bcast_char_to_int64), 8, int64_least, int64_greatest, low_16_bits, filled_when_no_null},
    {NAMED(bcast_varchar_to_tinyint), 4, -128, 127, whole_word, copied},
    {NAMED(bcast_varchar_to_smallint), 4, -32768, 32767, whole_word, copied},
    {NAMED(bcast_varchar_to_int), 4, int32_least, int32_greatest, whole_word, copied},
    {NAMED(bcast_varchar_to_int64), 8, int64_least, int64_greatest, whole_word, copied},
    {NAMED(bcast_varchar2_to_tinyint), 4, -128, 127, low_16_bits, copied},
    {NAMED(bcast_varchar2_to_smallint), 4, -32768, 32767, low_16_bits, copied},
    {NAMED(bcast_varchar2_to_int), 4, int32_least, int32_greatest, low_16_bits, copied},
    {NAMED(bcast_varchar2_to_int64), 8, int64_least, int64_greatest, low_16_bits, copied},
};
#undef NAMED

row_outcome read(const rule &r, const row_input &input)
{
    const auto element = input.as<bdta3_str>();
    if (element.length == 0)
        return {.turns_null = true};
    const int32_t length = r.length == whole_word ? element.length : static_cast<uint16_t>(element.length);
    const std::string text = bytes_at(element.text, length);
    int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool is_number = error == std::errc() && end == text.data() + text.size();
    row_outcome outcome;
    outcome.steps.push_back(
        {parses(element, length), service_failure::passes_its_code, is_number ? 0 : int32_t{ERR_BAD_CONVERSION}});
    if (value < r.least || value > r.greatest)
        outcome.status = ERR_OVERFLOW;
    outcome.element = r.target_bytes == 8 ? image_of(value) : image_of(static_cast<int32_t>(value));
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
                       .samples = text_elements({"0", "7", "-7", "127", "-128", "42", "100"}),
                       .convert = [r](const row_input &input) { return read(r, input); },
                       .null_element = element_of_length(5)});
    return all;
}

class character_to_integer : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(character_to_integer, rows_are_parsed_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(character_to_integer, of_null_rows_no_element_is_read) { expect_null_rows_unread(GetParam()); }

TEST_P(character_to_integer, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

TEST_P(character_to_integer, an_empty_text_is_null_and_clears_no_null) { expect_empty_text_is_null(GetParam()); }

TEST_P(character_to_integer, an_empty_text_in_a_null_row_changes_nothing)
{
    expect_empty_text_in_null_row_changes_nothing(GetParam());
}

TEST_P(character_to_integer, edges_of_the_range)
{
    for (const int64_t value :
         {int64_t{127},         int64_t{128},        int64_t{-128},       int64_t{-129},           int64_t{255},
          int64_t{256},         int64_t{32767},      int64_t{32768},      int64_t{-32768},         int64_t{-32769},
          int64_t{65535},       int64_t{65536},      int64_t{2147483647}, int64_t{2147483648},     int64_t{-2147483648},
          int64_t{-2147483649}, int64_t{4294967295}, int64_t{4294967296}, int64_t{4294967296 + 5}, int64_least,
          int64_greatest,       int64_t{1} << 40})
        expect_element(GetParam(), text_element(std::to_string(value)));
}

TEST_P(character_to_integer, the_first_failure_stops_with_the_code_of_the_parser) { expect_stops(GetParam()); }

TEST_P(character_to_integer, what_a_failing_parser_leaves_is_not_looked_at)
{
    for (const int64_t rubbish : {int64_t{42}, int64_greatest, int64_least}) {
        services().result_of_failed_parse = rubbish;
        expect_element(GetParam(), text_element("no number"));
    }
}

TEST_P(character_to_integer, a_failure_leaves_no_null_as_the_walk_has_it)
{
    expect_failure_behind_empty_text(GetParam());
}

// How much of the length word the parser gets. The text is long enough for all of them; what its digits are worth does
// not matter.
TEST_P(character_to_integer, the_length_word_goes_to_the_parser_as_the_source_has_it)
{
    std::string text(3 * 65536, '0');
    text[0] = text[1] = text[2] = '1';
    for (const int32_t word :
         {3, 65535, 65536 + 3, 65536 + 32768, 65536, 2 * 65536, 0x7FFF0000, -1, -65536, int32_least, int32_least + 2})
        for (const setup &how : few_setups())
            expect_batch(GetParam(), how, {{1, element_of_length(word, text.data())}}, {.results = {{0, -77}}});
}

INSTANTIATE_TEST_SUITE_P(casts, character_to_integer, testing::ValuesIn(casts()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Values that do not fit; all do in an int64 -----------------------------------

class character_to_narrow_integer : public character_to_integer {};

TEST_P(character_to_narrow_integer, an_unfit_value_fails_with_overflow)
{
    const rule &r = *std::ranges::find(rules, std::string_view(GetParam().name), &rule::name);
    expect_bad_elements(GetParam(),
                        {text_element(std::to_string(r.greatest + 1)), text_element(std::to_string(r.least - 1))});
}

std::vector<row_cast> narrow_casts()
{
    return casts_where(casts(), [](const row_cast &c) { return c.to_bytes == 4; });
}

INSTANTIATE_TEST_SUITE_P(casts, character_to_narrow_integer, testing::ValuesIn(narrow_casts()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Captured failures: varchar ---------------------------------------------------

class varchar_to_integer : public character_to_integer {};

TEST_P(varchar_to_integer, failures_are_captured_by_row_of_the_batch) { expect_captures(GetParam()); }

TEST_P(varchar_to_integer, an_empty_text_beside_captured_failures_is_no_failure)
{
    expect_empty_text_beside_captured_failures(GetParam());
}

TEST_P(varchar_to_integer, each_parse_may_fail)
{
    for (size_t failing = 0; failing < 6; failing++)
        for (const setup &how : few_setups())
            expect_batch(GetParam(), how, sample_rows(GetParam(), {1, 1, 1, 1, 1, 1}),
                         {.results = {{failing, -700}}, .capture = true});
}

std::vector<row_cast> capturing_casts() { return casts_where(casts(), &row_cast::captures); }

INSTANTIATE_TEST_SUITE_P(casts, varchar_to_integer, testing::ValuesIn(capturing_casts()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- What stands out ---------------------------------------------------------------

TEST(character_to_integer_by_hand, one_table_line_for_each_cast)
{
    EXPECT_EQ(casts().size(), 12U);
    EXPECT_EQ(capturing_casts().size(), 4U);
    EXPECT_EQ(narrow_casts().size(), 9U);
}

TEST(character_to_integer_by_hand, rows_one_and_three_of_five_are_captured)
{
    services().reset();
    char text[] = "10?!2030";
    source_column source(sizeof(bdta3_str), 5, few_setups().front());
    source.set(0, 1, bdta3_str{2, 9, text});
    source.set(1, 1, bdta3_str{1, 9, text + 2});
    source.set(2, 1, bdta3_str{2, 9, text + 4});
    source.set(3, 1, bdta3_str{1, 9, text + 3});
    source.set(4, 1, bdta3_str{2, 9, text + 6});
    services().answer("str2int64", "?", -11);
    services().answer("str2int64", "!", -33);
    target_column target(4, 5);
    target_image expected = target.image();
    expected.no_null = 0;
    expected.flags = {1, 1, 1, 1, 1};
    expected.put(0, int32_t{10});
    expected.put(2, int32_t{20});
    expected.put(4, int32_t{30});
    failure_record record(5);
    EXPECT_EQ(bcast_varchar_to_int(env(), heap(), source.sealed(), target.column(), 5, record.codes(), record.count()),
              -33);
    EXPECT_TRUE(target.holds(expected));
    EXPECT_TRUE(record.hold({{1, -11}, {3, -33}}));
}

TEST(character_to_integer_by_hand, a_captured_code_stands_at_the_row_of_the_batch)
{
    services().reset();
    char text[] = "5x";
    source_column source(sizeof(bdta3_str), 10, std::vector<uint16_t>{7, 2}, 0);
    source.set(0, 1, bdta3_str{1, 0, text});
    source.set(1, 1, bdta3_str{1, 0, text + 1});
    target_column target(4, 2);
    failure_record record(2);
    EXPECT_EQ(bcast_varchar_to_int(env(), heap(), source.sealed(), target.column(), 2, record.codes(), record.count()),
              ERR_BAD_CONVERSION);
    EXPECT_TRUE(record.hold({{1, ERR_BAD_CONVERSION}}));
}

TEST(character_to_integer_by_hand, char_parses_rows_that_varchar_takes_for_null)
{
    char text[] = "5";
    for (const bool as_char : {true, false}) {
        services().reset();
        source_column source(sizeof(bdta3_str), 2, {selection::none, 1, guard_edge::end});
        source.set(0, 0, bdta3_str{1, 0, text});
        source.set(1, 0, bdta3_str{1, 0, text});
        target_column target(4, 2);
        target_image expected = target.image();
        expected.no_null = 1;
        expected.flags = as_char ? std::vector<uint8_t>{1, 1} : std::vector<uint8_t>{0, 0};
        if (as_char)
            for (const uint32_t row : {0U, 1U})
                expected.put(row, int32_t{5});
        const any_cast cast = as_char ? any_cast(&bcast_char_to_int) : any_cast(&bcast_varchar_to_int);
        EXPECT_EQ(call(cast, {source.sealed(), target.column(), 2}), 0);
        EXPECT_TRUE(target.holds(expected));
    }
}

} // namespace
} // namespace bcast::test
