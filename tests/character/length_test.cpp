// Characters to characters of another length: nine casts that refuse a text too long, two that cut it. They differ in
// what becomes of the blanks that are only counted; each against its own line of the table below.

#include "tests/support/row_cast.h"
#include "tests/support/settings.h"
#include "tests/support/text_element.h"

#include <algorithm>
#include <limits>

#include <sys/wait.h>

namespace bcast::test {
namespace {

constexpr int32_t least = std::numeric_limits<int32_t>::min();
constexpr int32_t greatest = std::numeric_limits<int32_t>::max();

enum class too_long { refused, cut };
enum class padding { rest_of_length, kept_and_clipped };

struct rule {
    const char *name;
    any_cast cast;
    too_long policy;
    padding pad;

    bool refuses() const { return policy == too_long::refused; }

    // Whether rows are copied by the source column; otherwise the cast takes space and copies itself.
    bool copies_rows(const setup &how) const
    {
        return refuses() && (pad == padding::rest_of_length || how.selected != selection::none);
    }

    int32_t pad_len(const bdta3_str &from, int32_t length) const
    {
        // Text and blanks are added up in 32 bits.
        const auto sum = static_cast<int32_t>(static_cast<uint32_t>(from.pad_len) + static_cast<uint32_t>(from.length));
        return pad == padding::kept_and_clipped && sum <= length ? from.pad_len : length - from.length;
    }
};

void PrintTo(const rule &r, std::ostream *out) { *out << r.name; }

#define NAMED(cast) #cast, &cast
const rule rules[] = {
    {NAMED(bcast_varchar_to_char), too_long::refused, padding::rest_of_length},
    {NAMED(bcast_char_to_char), too_long::refused, padding::rest_of_length},
    {NAMED(bcast_char_to_varchar2), too_long::refused, padding::rest_of_length},
    {NAMED(bcast_varchar_to_varchar2), too_long::refused, padding::rest_of_length},
    {NAMED(bcast_varchar2_to_char), too_long::refused, padding::rest_of_length},
    {NAMED(bcast_varchar2_to_varchar2), too_long::refused, padding::rest_of_length},
    {NAMED(bcast_varchar_to_varchar), too_long::refused, padding::kept_and_clipped},
    {NAMED(bcast_char_to_varchar), too_long::refused, padding::kept_and_clipped},
    {NAMED(bcast_varchar2_to_varchar), too_long::refused, padding::kept_and_clipped},
    {NAMED(bcast_varchar_to_char_explicit), too_long::cut, padding::rest_of_length},
    {NAMED(bcast_varchar_to_varchar_explicit), too_long::cut, padding::kept_and_clipped},
};
#undef NAMED

// The settings while a cast runs.
struct modes {
    int32_t compat_mode = 0;
    int32_t compat_mode2 = 0;
    int32_t charset = 10; // that compat_mode2 picks
};

// A text of that length, with so many blanks counted. If the cast takes the space for it, there may be none.
void store(const row_input &input, const rule &r, std::string text, int32_t pad_len, row_outcome &outcome)
{
    const auto size = static_cast<int32_t>(text.size());
    if (r.copies_rows(input.how)) {
        outcome.steps.push_back({copies_row(input.source, input.target, input.row), service_failure::ends_cast});
        outcome.failed_element = image_of(failed_copy);
    } else {
        const bool is_looked_at = !r.refuses() && size > 0;
        outcome.steps.push_back({allocates(input.target, size),
                                 is_looked_at ? service_failure::is_no_memory : service_failure::is_not_looked_at});
        // The element holds both lengths by then, and no text.
        outcome.failed_element = image_of(bdta3_str{size, pad_len, nullptr});
    }
    outcome.text = {std::move(text), pad_len};
}

// What is left of a text: the whole characters that fit, without the blanks at their end, which are counted.
std::string without_blanks(const std::string &text) { return text.substr(0, text.find_last_not_of(' ') + 1); }

void cut(const row_input &input, const rule &r, int32_t length, const modes &m, row_outcome &outcome)
{
    const auto from = input.as<bdta3_str>();
    outcome.steps.push_back({measures_characters(from, length, m.charset)});
    const std::string fitting = bytes_at(from.text, length);
    const auto &whole_characters = services().character.whole_characters;
    const size_t whole = whole_characters ? whole_characters(fitting) : fitting.size();
    const std::string stored = without_blanks(fitting.substr(0, whole));
    if (whole == 0 && m.compat_mode == 2)
        outcome.turns_null = true;
    else
        store(input, r, stored, static_cast<int32_t>(whole - stored.size()), outcome);
}

row_outcome convert(const row_input &input, const rule &r, int32_t length, const modes &m)
{
    const auto from = input.as<bdta3_str>();
    row_outcome outcome;
    if (from.length <= length)
        store(input, r, bytes_at(from.text, from.length), r.pad_len(from, length), outcome);
    else if (r.refuses())
        outcome.status = ERR_TRUNCATED;
    else
        cut(input, r, length, m, outcome);
    return outcome;
}

// Every text with each of these counts of blanks, as the one list and the other are gone through.
std::vector<std::string> with_blanks_counted(const std::vector<std::string> &texts)
{
    constexpr int32_t pad_lens[] = {0, 1, 9, -3, 2, 4, 1000, 5, 3, greatest, least};
    std::vector<std::string> elements;
    for (size_t k = 0; k < texts.size() * std::size(pad_lens); k++)
        elements.push_back(text_element(texts[k % texts.size()], pad_lens[k % std::size(pad_lens)]));
    return elements;
}

row_cast cast_to(const rule &r, int32_t length, const modes &m = {})
{
    using namespace std::string_literals;
    static const auto samples = with_blanks_counted({"abcde", "", "a", "x  ", "\0\xFF\0"s, "     ", "12345"});
    return {.name = r.name,
            .cast = r.cast,
            .to_bytes = sizeof(bdta3_str),
            .flags = row_flags::copied,
            .no_null_ahead = !r.refuses(),
            .failure_clears_flag = r.refuses(),
            .samples = samples,
            .convert = [r, length, m](const row_input &input) { return convert(input, r, length, m); },
            .length = length,
            .null_element = element_of_length(length < greatest ? length + 1 : greatest),
            .compat_mode = m.compat_mode,
            .compat_mode2 = m.compat_mode2};
}

std::vector<batch_row> present_rows(const std::vector<std::string> &elements)
{
    std::vector<batch_row> rows;
    for (const std::string &element : elements)
        rows.push_back({static_cast<uint8_t>(0x81 + rows.size()), element});
    return rows;
}

class character_length : public testing::TestWithParam<rule> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(character_length, rows_are_stored_and_null_rows_left_out) { expect_rows_and_null_rows(cast_to(GetParam(), 5)); }

TEST_P(character_length, of_null_rows_no_element_is_read) { expect_null_rows_unread(cast_to(GetParam(), 5)); }

TEST_P(character_length, every_row_count_up_to_the_largest) { expect_row_counts(cast_to(GetParam(), 7)); }

TEST_P(character_length, counted_blanks_are_those_of_the_rule)
{
    for (const uint32_t size : {0U, 1U, 3U, 5U}) {
        const auto stored = static_cast<int32_t>(size);
        for (const int32_t length :
             {stored, stored + 1, stored + 2, 10, 32767, 32768, 65535, 65536, 0x10005, greatest}) {
            const int32_t rest = length - stored;
            std::vector<batch_row> rows;
            for (const int32_t pad_len : {0, 1, 2, 9, rest - 1, rest,
                                          static_cast<int32_t>(static_cast<uint32_t>(rest) + 1), -1, least, greatest})
                rows.push_back({1, text_element(std::string(size, 'y'), pad_len)});
            for (const setup &how : few_setups())
                expect_batch(cast_to(GetParam(), length), how, rows);
        }
    }
}

TEST_P(character_length, a_text_beyond_16_bits_is_stored_whole)
{
    for (const setup &how : few_setups())
        expect_batch(
            cast_to(GetParam(), 65536 + 3), how,
            present_rows({text_element(std::string(65536 + 2, 'a'), 8), text_element(std::string(65536 + 3, 'b'), 8)}));
}

INSTANTIATE_TEST_SUITE_P(casts, character_length, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Refused: the plain forms ---------------------------------------------------------

class refused_length : public character_length {};

TEST_P(refused_length, a_text_too_long_stops_and_is_captured)
{
    expect_bad_elements(cast_to(GetParam(), 5), {element_of_length(6), element_of_length(greatest)});
}

TEST_P(refused_length, a_stop_leaves_no_null_as_it_was)
{
    for (const setup &how : all_setups())
        expect_batch(cast_to(GetParam(), 4), how,
                     present_rows({text_element("abcd", 7), text_element("abcde", 0), text_element("abc", 7)}));
}

TEST_P(refused_length, a_stored_blank_too_many_is_refused_and_counted_ones_are_not)
{
    for (const setup &how : few_setups())
        expect_batch(cast_to(GetParam(), 3), how, present_rows({text_element("abc", 30000), text_element("abc ", 0)}));
}

TEST_P(refused_length, both_lengths_are_compared_whole_and_signed)
{
    struct lengths {
        int32_t text, target;
    };
    constexpr lengths refused[] = {{65536 + 3, 5}, {65536, 0},     {greatest, 5},         {greatest, greatest - 1},
                                   {1, 0},         {0, -1},        {3, -65536 + 8},       {5, least},
                                   {0, least},     {-1, -2},       {greatest, least},     {0x7FFF0001, 5},
                                   {65536, 65535}, {256 + 1, 256}, {0x10000 + 5, 0x10000}};
    for (const auto &[text, target] : refused) {
        const row_cast c = cast_to(GetParam(), target);
        EXPECT_EQ(outcome_alone(c, element_of_length(text)).status, ERR_TRUNCATED);
        for (const setup &how : few_setups())
            expect_batch(c, how, {{1, element_of_length(text)}});
    }
}

// A length word below 0 is below every target length; only where the source column copies can that be shown. By hand,
// for the double makes no text of such a length.
TEST_P(refused_length, a_length_word_below_zero_fits)
{
    for (const setup &how : few_setups()) {
        if (!GetParam().copies_rows(how))
            continue;
        services().reset();
        source_column source(sizeof(bdta3_str), 1, how);
        source.set_bytes(0, 1, element_of_length(-1, 9));
        target_column target(sizeof(bdta3_str), 1, how);
        EXPECT_EQ(call(GetParam().cast, {source.sealed(), target.column(), 1, 5}), 0);
        EXPECT_TRUE(services().logged({copies_row(source.column(), target.column(), 0)}));
        bdta3_str held;
        std::memcpy(&held, target.column()->data->values, sizeof held);
        EXPECT_EQ(held.length, -1);
        EXPECT_EQ(held.pad_len, 6);
    }
}

// The code stops the cast although failures are captured; the row keeps its flag, and what copy_row left of it.
TEST_P(refused_length, a_failing_copy_ends_the_cast_in_any_case)
{
    const row_cast c = cast_to(GetParam(), 5);
    std::vector<batch_row> rows = sample_rows(c, std::vector<uint8_t>(1024 + 40, 9));
    std::vector<batch_row> with_bad_rows = rows;
    for (size_t row = 2; row < rows.size(); row += 5)
        with_bad_rows[row].element = element_of_length(6);
    for (const setup &how : all_setups()) {
        if (!GetParam().copies_rows(how))
            continue;
        for (const size_t failing : {0U, 1U, 3U, 600U, 850U, 851U})
            for (const int32_t code : {-503, least}) {
                expect_batch(c, how, rows, {.results = {{failing, code}}});
                expect_batch(c, how, with_bad_rows, {.results = {{failing, code}}, .capture = true});
            }
    }
}

TEST_P(refused_length, codes_of_copy_row_pass_through_and_results_above_zero_are_successes)
{
    const row_cast c = cast_to(GetParam(), 5);
    for (const setup &how : few_setups())
        if (GetParam().copies_rows(how))
            for (const int32_t result : {-1, -503, ERR_TRUNCATED + 0, least, 1, greatest})
                expect_batch(c, how, {{1, text_element("abc")}}, {.results = {{0, result}}});
}

std::vector<rule> rules_that(too_long policy)
{
    std::vector<rule> some;
    std::ranges::copy_if(rules, std::back_inserter(some), [&](const rule &r) { return r.policy == policy; });
    return some;
}

INSTANTIATE_TEST_SUITE_P(casts, refused_length, testing::ValuesIn(rules_that(too_long::refused)),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- To varchar without sel: the cast takes space itself --------------------------------

class varchar_without_sel : public character_length {};

// Null, as space for no bytes may be.
TEST_P(varchar_without_sel, no_space_for_an_empty_text_is_no_failure)
{
    expect_batch(cast_to(GetParam(), 5), few_setups().front(),
                 present_rows({text_element("", 2), text_element("abc", 1)}), {.results = {{0, -1}}});
}

// What comes of it is open, and a fault is likely; but the cast does not look for it.
TEST_P(varchar_without_sel, no_space_for_a_text_is_not_reported)
{
    constexpr int reported = 77;
    const auto call_without_space = [] {
        services().fail_call(0, -1);
        source_column source(sizeof(bdta3_str), 1, few_setups().front());
        source.set_bytes(0, 1, text_element("abc", 2));
        target_column target(sizeof(bdta3_str), 1);
        const int32_t status = call(GetParam().cast, {source.sealed(), target.column(), 1, 5});
        std::_Exit(status < 0 ? reported : 0);
    };
    const auto is_something_else = [](int status) { return !WIFEXITED(status) || WEXITSTATUS(status) != reported; };
    EXPECT_EXIT(call_without_space(), is_something_else, "");
}

std::vector<rule> rules_to_varchar()
{
    std::vector<rule> some;
    std::ranges::copy_if(rules, std::back_inserter(some),
                         [](const rule &r) { return r.refuses() && r.pad == padding::kept_and_clipped; });
    return some;
}

INSTANTIATE_TEST_SUITE_P(casts, varchar_without_sel, testing::ValuesIn(rules_to_varchar()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Cut: the explicit forms ------------------------------------------------------------

// What is cut, by what the character set says; both forms alike.
struct cut_text {
    std::string text;
    int32_t length;
    uint32_t whole; // bytes within length that are whole characters
    std::string stored;
    int32_t pad_len;
};

const std::vector<cut_text> &cuts()
{
    using namespace std::string_literals;
    static const std::vector<cut_text> all{
        {"ab  cd", 4, 4, "ab", 2},
        {"abcdef", 4, 4, "abcd", 0},
        {"abcde", 4, 4, "abcd", 0},
        {"abc ", 3, 3, "abc", 0},
        {"ab  ", 3, 3, "ab", 1},
        {" ab", 2, 2, " a", 0},
        {" a b ", 4, 4, " a b", 0},
        {" a  b", 4, 4, " a", 2},
        {"          ", 3, 3, "", 3},
        {"          ", 9, 9, "", 9},
        {"  ", 1, 1, "", 1},
        {"\xE2\x82\xAC\xC3\xA4", 4, 3, "\xE2\x82\xAC", 0}, // a character straddles the limit
        {"\xE2\x82\xAC  \xC3\xA4", 6, 5, "\xE2\x82\xAC", 2},
        {"   \xE2\x82\xAC", 5, 3, "", 3},
        {"a  \xE2\x82\xAC", 5, 3, "a", 2}, // one blank less than the target has room for
        {"abc   xyz", 8, 5, "abc", 2},     // the text goes on with a blank
        {"abcdef", 5, 1, "a", 0},
        {"ab\t\txx", 4, 4, "ab\t\t", 0}, // only the byte 0x20 is a blank
        {"ab\0 xx"s, 4, 4, "ab\0"s, 1},
        {"ab\xA0\xA0xx", 4, 4, "ab\xA0\xA0", 0},
        {"ab\n xx", 4, 4, "ab\n", 1},
        {"ab\x1F\x21xx", 4, 4, "ab\x1F\x21", 0},
        {std::string(70000, 'z'), 65540, 65540, std::string(65540, 'z'), 0},
        {std::string(70000, ' '), 65541, 65541, "", 65541},
        {"y"s.append(70000, ' '), 66000, 65999, "y", 65998},
    };
    return all;
}

class cut_length : public character_length {
protected:
    // Every text is cut to what this says of the bytes within the limit.
    static void measure_as(uint32_t whole)
    {
        services().character.whole_characters = [whole](std::string_view) { return whole; };
    }
};

TEST_P(cut_length, texts_are_cut_and_blanks_at_their_end_counted)
{
    for (const cut_text &each : cuts()) {
        measure_as(each.whole);
        for (const int32_t mode : {0, 2, 3}) {
            const row_cast c = cast_to(GetParam(), each.length, {.compat_mode = mode});
            for (const guard_edge edge : {guard_edge::start, guard_edge::end}) {
                const std::string element = text_element(each.text, 7, edge);
                const row_outcome outcome = outcome_alone(c, element);
                ASSERT_TRUE(outcome.text);
                EXPECT_EQ(outcome.text->bytes, each.stored);
                EXPECT_EQ(outcome.text->pad_len, each.pad_len);
                for (const setup &how : all_setups())
                    expect_batch(c, how, {{0x81, element}});
            }
        }
    }
}

TEST_P(cut_length, rows_that_fit_and_rows_that_are_cut_and_null_rows)
{
    row_cast c = cast_to(GetParam(), 5);
    c.samples = with_blanks_counted({"abcdef", "ab", "abc  d", "", "      ", "abcde", "  abc ", "x"});
    expect_rows_and_null_rows(c);
}

TEST_P(cut_length, a_text_that_fits_is_not_measured_and_keeps_its_blanks)
{
    measure_as(0);
    for (const setup &how : few_setups())
        expect_batch(cast_to(GetParam(), 5), how,
                     present_rows({text_element("abc  ", 1), text_element("     ", 1), text_element(" ", 1),
                                   text_element("ab ", 1)}));
}

TEST_P(cut_length, compat_mode2_picks_the_character_set)
{
    const std::pair<int32_t, int32_t> sets[] = {
        {0, 10},   {1, 1},    {2, 6},    {3, 10},     {6, 10},     {10, 10},    {-1, 10},        {-2, 10},
        {256, 10}, {257, 10}, {258, 10}, {65537, 10}, {65538, 10}, {least, 10}, {least + 1, 10}, {greatest, 10}};
    for (const int32_t mode : {0, 1, 2})
        for (const auto &[mode2, charset] : sets)
            for (const setup &how : few_setups())
                expect_batch(cast_to(GetParam(), 2, {mode, mode2, charset}), how,
                             present_rows({text_element("abc"), text_element("abc")}));
}

TEST_P(cut_length, without_a_whole_character_the_row_is_null_in_mode_2_and_else_empty)
{
    services().character.whole_characters = [](std::string_view text) {
        return text.starts_with('\xE2') ? 0 : static_cast<uint32_t>(text.size());
    };
    for (const int32_t mode : {0, 1, 2, 3, -2, 258, 65538, least, greatest, least + 2}) {
        const row_cast c = cast_to(GetParam(), 2, {.compat_mode = mode});
        EXPECT_EQ(outcome_alone(c, text_element("\xE2\x82\xAC")).turns_null, mode == 2);
        for (const uint32_t empty_row : {0U, 1U, 4U}) {
            std::vector<batch_row> rows(5, {0x82, text_element("ab cd", 6)});
            rows[empty_row].element = text_element("\xE2\x82\xAC", 6);
            for (const setup &how : all_setups())
                expect_batch(c, how, rows);
        }
    }
}

// The length is compared signed, and 0 and below have room for no character.
TEST_P(cut_length, a_target_of_no_bytes_or_fewer)
{
    for (const int32_t mode : {0, 2})
        for (const int32_t length : {0, -1, -65536 + 8, least})
            for (const setup &how : few_setups())
                expect_batch(cast_to(GetParam(), length, {.compat_mode = mode}), how,
                             present_rows({text_element("  ", 3), text_element("abc", 3)}));
}

TEST_P(cut_length, an_empty_text_is_longer_than_a_length_below_zero)
{
    expect_batch(cast_to(GetParam(), -1), few_setups().front(), {{1, text_element("", 3)}});
}

TEST_P(cut_length, both_settings_are_read_before_the_first_row)
{
    services().character.whole_characters = [](std::string_view) {
        bcast_dll_var_init(0, 2);
        return 0U;
    };
    for (const setup &how : few_setups())
        expect_batch(cast_to(GetParam(), 1, {2, 1, 1}), how, present_rows({text_element("abc"), text_element("abc")}));
}

TEST_P(cut_length, no_space_stops)
{
    const row_cast c = cast_to(GetParam(), 5);
    for (const char *text : {"abc", "abcde", "abcdef", "abc   "}) {
        for (const size_t failing : {0U, 1U, 600U, 1023U, 1024U, 1063U}) {
            std::vector<batch_row> rows = sample_rows(c, std::vector<uint8_t>(1064, 4));
            rows[failing] = {0x83, text_element(text, 1)};
            for (const setup &how : all_setups())
                expect_batch(c, how, rows, {.results = {{failing, -1}}});
        }
    }
}

TEST_P(cut_length, no_space_behind_a_row_that_turned_null_leaves_no_null_clear)
{
    measure_as(0);
    for (const setup &how : all_setups())
        expect_batch(cast_to(GetParam(), 5, {.compat_mode = BCAST_MODE_EMPTY_IS_NULL}), how,
                     present_rows({text_element("abcdef"), text_element("abc", 0), text_element("abc")}),
                     {.results = {{0, -1}}});
}

TEST_P(cut_length, no_space_for_no_bytes_is_no_failure)
{
    services().character.whole_characters = [](std::string_view text) { return text[0] == ' ' ? 3U : 0U; };
    for (const setup &how : few_setups())
        expect_batch(cast_to(GetParam(), 3), how,
                     present_rows({text_element("", 2), text_element("    ", 2), text_element("abcd", 2),
                                   text_element("xyz", 0)}),
                     {.results = {{0, -1}, {1, -1}, {2, -1}}});
}

INSTANTIATE_TEST_SUITE_P(casts, cut_length, testing::ValuesIn(rules_that(too_long::cut)),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- What stands out ----------------------------------------------------------------------

TEST(character_length_by_hand, one_table_line_for_each_cast)
{
    EXPECT_EQ(std::size(rules), 11U);
    EXPECT_EQ(rules_that(too_long::refused).size(), 9U);
    EXPECT_EQ(rules_to_varchar().size(), 3U);
}

int32_t pad_len_of_one(any_cast cast, int32_t length, std::string_view text, int32_t pad_len)
{
    services().reset();
    std::string bytes(text);
    source_column source(sizeof(bdta3_str), 1, few_setups().front());
    source.set(0, 1, bdta3_str{static_cast<int32_t>(bytes.size()), pad_len, bytes.data()});
    target_column target(sizeof(bdta3_str), 1);
    EXPECT_EQ(call(cast, {source.sealed(), target.column(), 1, length}), 0);
    bdta3_str held;
    std::memcpy(&held, target.column()->data->values, sizeof held);
    EXPECT_EQ(bytes_at(held.text, held.length), text);
    return held.pad_len;
}

TEST(character_length_by_hand, counted_blanks)
{
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_char, 5, "abc", 9), 2);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_char, 5, "abc", 1), 2);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_varchar, 5, "abc", 9), 2);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_varchar, 5, "abc", 1), 1);
    EXPECT_EQ(pad_len_of_one(&bcast_char_to_varchar2, 5, "abc", 1), 2);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar2_to_varchar, 5, "abc", 1), 1);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_char, 3, "abc", 9), 0);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_varchar, 3, "abc", 9), 0);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_char, 10, "", 0), 10);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_varchar, 10, "", 4), 4);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_char_explicit, 5, "abc", 1), 2);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_varchar_explicit, 5, "abc", 1), 1);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_varchar_explicit, 5, "abc", 3), 2);
}

} // namespace
} // namespace bcast::test
