// binary and varbinary to hexadecimal text: six casts under fourteen names. They differ in what becomes of a text that
// is too long, in pad_len, and in whether they go through a working value; each name against its own line of the table
// below.

#include "tests/support/row_cast.h"
#include "tests/support/text_element.h"

#include <algorithm>
#include <limits>

namespace bcast::test {
namespace {

using namespace std::string_literals;

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int32_t int32_greatest = std::numeric_limits<int32_t>::max();

enum class longer { refused, cut };
enum class pad { rest_of_length, nothing };
enum class large_value { clears_flag, keeps_flag };

bool is_large(const bdta3_str &element) { return element.length < 0 || element.length > 32767; }

// What the service makes of the row's bytes, up to its terminator.
std::string text_of(const bdta3_str &element)
{
    return services().binary.text_of(bytes_at(element.text, element.length)).c_str();
}

// From the digits straight to the column.
row_outcome show(const row_input &input, longer when_longer, pad padding)
{
    const auto element = input.as<bdta3_str>();
    if (is_large(element))
        return {.status = ERR_TRUNCATED};
    row_outcome outcome{.steps = {{spells(element), service_failure::passes_its_code}}};
    const int32_t length = input.cast.length;
    std::string text = text_of(element);
    if (static_cast<int32_t>(text.size()) > length) {
        if (when_longer == longer::refused) {
            outcome.status = ERR_TRUNCATED;
            return outcome;
        }
        text.resize(static_cast<size_t>(length));
    }
    const int32_t pad_len = padding == pad::rest_of_length ? length - static_cast<int32_t>(text.size()) : 0;
    outcome.steps.push_back({assigns_text(input.target, input.row, text, pad_len)});
    outcome.text = {text, pad_len};
    return outcome;
}

struct trimmed {
    std::string text;
    int32_t blanks;

    friend bool operator==(const trimmed &, const trimmed &) = default;
};

// From the end, NUL bytes first, and then blanks, which are counted.
trimmed trim(std::string held)
{
    held.erase(held.find_last_not_of('\0') + 1);
    const std::string text = held.substr(0, held.find_last_not_of(' ') + 1);
    return {text, static_cast<int32_t>(held.size() - text.size())};
}

// What becomes of the digits by way of the working value. The length of what that holds is what has to fit, so what is
// trimmed off counts. To varchar the blanks that were trimmed are counted; to char what is left of the length.
row_outcome hold_and_trim(const row_input &input, const std::string &digits, pad padding)
{
    row_outcome outcome{.steps = {{spells(input.as<bdta3_str>()), service_failure::is_not_looked_at},
                                  {holds_text(digits, input.first ? fresh_value : kept_value)}}};
    const std::string held = services().binary.held_of(digits);
    const int32_t length = input.cast.length;
    if (static_cast<int32_t>(held.size()) > length) {
        outcome.status = ERR_TRUNCATED;
        return outcome;
    }
    const auto &[text, blanks] = trim(held);
    const int32_t pad_len = padding == pad::rest_of_length ? length - static_cast<int32_t>(text.size()) : blanks;
    outcome.steps.push_back({assigns_text(input.target, input.row, text, pad_len)});
    outcome.text = {text, pad_len};
    return outcome;
}

row_outcome show_by_working_value(const row_input &input, pad padding, large_value flag_of_large)
{
    const auto element = input.as<bdta3_str>();
    if (is_large(element))
        return {.status = ERR_TRUNCATED, .failure_keeps_flag = flag_of_large == large_value::keeps_flag};
    row_outcome outcome = hold_and_trim(input, text_of(element), padding);
    outcome.behind_failure = [=, &input](row_outcome &failed) {
        const row_outcome left = hold_and_trim(input, digits_of_failure(static_cast<size_t>(element.length)), padding);
        failed.steps = left.steps;
        failed.status = left.status;
        failed.text = left.text;
    };
    return outcome;
}

// None is longer than 5 bytes.
const std::vector<std::string> samples{"\xAB", "",          "\xAB\0"s,   "\x12\x34\x56",
                                       "\0"s,  "\xCD\xEF"s, "\xFF\xFF"s, "\x01\x23\x45\x67\x89"};

row_cast rule(const char *name, any_cast cast)
{
    return {.name = name,
            .cast = cast,
            .to_bytes = sizeof(bdta3_str),
            .flags = row_flags::copied,
            .no_null_ahead = true,
            .failure_clears_flag = true,
            .samples = text_elements(samples),
            .convert = {},
            .length = 12,
            .null_element = element_of_length(5)};
}

row_cast direct(const char *name, any_cast cast, longer when_longer, pad padding)
{
    row_cast c = rule(name, cast);
    c.convert = [=](const row_input &input) { return show(input, when_longer, padding); };
    return c;
}

// The working value is released behind the last row, and only there: behind a stop it stays as it is.
row_cast by_working_value(const char *name, any_cast cast, pad padding, large_value flag_of_large)
{
    row_cast c = rule(name, cast);
    c.convert = [=](const row_input &input) { return show_by_working_value(input, padding, flag_of_large); };
    c.at_end = {clears_value()};
    return c;
}

using enum longer;
using enum pad;
using enum large_value;

#define NAMED(cast) #cast, &cast
std::vector<row_cast> direct_casts()
{
    return {
        direct(NAMED(bcast_varbinary_to_char), refused, rest_of_length),
        direct(NAMED(bcast_varbinary_to_varchar), refused, nothing),
        direct(NAMED(bcast_varbinary_to_char_explicit), cut, rest_of_length),
        direct(NAMED(bcast_varbinary_to_varchar_explicit), cut, nothing),
        direct(NAMED(bcast_binary_to_char), refused, rest_of_length),
        direct(NAMED(bcast_binary_to_varchar2), refused, rest_of_length),
        direct(NAMED(bcast_varbinary_to_varchar2), refused, rest_of_length),
        direct(NAMED(bcast_binary_to_varchar), refused, nothing),
    };
}

std::vector<row_cast> casts_by_working_value()
{
    return {
        by_working_value(NAMED(bcast_varbinary_to_hex_char), rest_of_length, keeps_flag),
        by_working_value(NAMED(bcast_varbinary_to_hex_varchar), nothing, clears_flag),
        by_working_value(NAMED(bcast_binary_to_hex_char), rest_of_length, keeps_flag),
        by_working_value(NAMED(bcast_binary_to_hex_varchar2), rest_of_length, keeps_flag),
        by_working_value(NAMED(bcast_varbinary_to_hex_varchar2), rest_of_length, keeps_flag),
        by_working_value(NAMED(bcast_binary_to_hex_varchar), nothing, clears_flag),
    };
}
#undef NAMED

std::vector<row_cast> all_casts()
{
    std::vector<row_cast> all = direct_casts();
    std::ranges::copy(casts_by_working_value(), std::back_inserter(all));
    return all;
}

bool cuts(const row_cast &c) { return std::string_view(c.name).ends_with("_explicit"); }

std::string name_of(const testing::TestParamInfo<row_cast> &each) { return each.param.name; }

class binary_to_text : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }

    row_cast c = GetParam();

    void expect_with_length(int32_t length, const std::vector<batch_row> &rows, const setup &how = few_setups().front(),
                            const batch_plan &plan = {})
    {
        c.length = length;
        expect_batch(c, how, rows, plan);
    }
};

TEST_P(binary_to_text, rows_are_spelled_and_null_rows_left_out) { expect_rows_and_null_rows(c); }

TEST_P(binary_to_text, null_rows_are_not_looked_into)
{
    c.length = 0;
    expect_null_rows_unread(c);
    // Nor asked for their length.
    c.null_element = element_of_length(32768);
    expect_batch(c, few_setups().front(), {{0, ""}, {1, text_element("")}, {0, ""}});
}

TEST_P(binary_to_text, every_row_count_up_to_the_largest) { expect_row_counts(c); }

TEST_P(binary_to_text, an_empty_value_is_an_empty_text_in_every_mode)
{
    c.compat_mode2 = BCAST_CUT_BY_CHARSET_6;
    for (const int32_t mode : {0, 1, 2, 3}) {
        c.compat_mode = mode;
        for (const int32_t length : {0, 1, 5})
            expect_with_length(length, {{1, element_of_length(0)}, {0x40, text_element("")}}, few_setups()[1]);
    }
}

TEST_P(binary_to_text, the_pad_len_of_the_source_is_not_looked_at)
{
    for (const int32_t pad_len : {0, 1, 7, int32_greatest, -1})
        expect_with_length(6, {{1, text_element("\xA1\xB2", pad_len)}});
}

// ---- The target's length ----------------------------------------------------------------

// Working values of more and of less than 48 bytes among them.
TEST_P(binary_to_text, texts_around_the_length_of_the_target)
{
    for (const size_t size : {size_t{1}, size_t{2}, size_t{3}, size_t{23}, size_t{24}, size_t{25}, size_t{40}}) {
        const auto digits = static_cast<int32_t>(2 * size);
        std::string value(size, '\0');
        for (size_t k = 0; k < size; k++)
            value[k] = static_cast<char>(0x9A + 0x11 * k);
        for (const setup &how : few_setups())
            for (const int32_t length : {0, 1, digits - 2, digits - 1, digits, digits + 1, 3 * digits})
                expect_with_length(length, {{0x80, text_element(value)}}, how);
    }
}

TEST_P(binary_to_text, all_bits_of_the_length_count)
{
    for (const int32_t length : {0x10000, 0x10003, 0x7FFF0000, int32_greatest})
        expect_with_length(length, {{1, text_element("\x12\x34")}});
}

TEST_P(binary_to_text, a_text_longer_than_less_than_nothing_is_refused_or_handed_on_as_it_is)
{
    for (const int32_t length : {-1, -0x10000 + 8, int32_least, int32_least + 8}) {
        for (const char *value : {"", "\x12"}) {
            if (!cuts(c)) {
                expect_with_length(length, {{1, text_element(value)}});
                continue;
            }
            // Written out, since there is no element of such a length.
            services().reset();
            source_column source(sizeof(bdta3_str), 1, few_setups().front());
            source.set_bytes(0, 1, text_element(value));
            target_column target(sizeof(bdta3_str), 1);
            ASSERT_EQ(call(c.cast, {.src = source.sealed(), .dst = target.column(), .rows = 1, .length = length}), 0);
            ASSERT_EQ(services().log().size(), 2U);
            EXPECT_EQ(services().log().back().service, "bdta3_col_assign_str");
            EXPECT_EQ(services().log().back().length, length);
            EXPECT_EQ(services().log().back().pad, 0);
        }
    }
}

// The text is as long as it is, not as the value makes expect.
TEST_P(binary_to_text, the_text_ends_at_its_terminator)
{
    const std::string value = "\x11\x22\x33\x44";
    for (const char *text : {"", "1", "11", "1122334", "11223344"}) {
        services().binary.spelled[value] = text;
        for (const int32_t length : {0, 2, 7, 9})
            expect_with_length(length, {{1, text_element(value)}});
    }
}

// A terminator where the value makes one expect it is not the first one.
TEST_P(binary_to_text, the_first_terminator_counts)
{
    const std::string value = "\x11\x22\x33\x44";
    for (const std::string &text : {"\0001122334"s, "11\0\0\0\0\0\0"s, "1122\000334"s, "1122334\0"s}) {
        ASSERT_EQ(text.size(), 8U);
        services().binary.spelled[value] = text;
        expect_with_length(8, {{1, text_element(value)}});
    }
}

TEST_P(binary_to_text, a_long_text_leaves_nothing_in_a_short_one_behind_it)
{
    std::vector<batch_row> rows;
    for (const std::string &value : {std::string(50, '\x77'), "\x01"s, std::string(30, '\x66'), ""s})
        rows.push_back({1, text_element(value)});
    expect_with_length(100, rows);
}

// ---- Large values -------------------------------------------------------------------------

TEST_P(binary_to_text, values_up_to_32767_bytes_are_spelled)
{
    for (const size_t size : {size_t{16384}, size_t{32766}, size_t{32767}}) {
        const auto digits = static_cast<int32_t>(2 * size);
        std::string value(size, '\x9D');
        value.front() = '\x12';
        value.back() = '\x34';
        for (const int32_t length : {digits - 1, digits, digits + 1, 65534, 65536, 100000})
            expect_with_length(length, {{1, text_element(value)}});
    }
}

TEST_P(binary_to_text, values_above_32767_bytes_are_refused_without_a_look)
{
    for (const setup &how : few_setups())
        for (const int32_t value_length :
             {32768, 32769, 65535, 65536, 65537, 0x20001, int32_greatest, -1, -65535, int32_least, int32_least + 1})
            for (const int32_t length : {0, 1, 65536, int32_greatest})
                expect_with_length(length, {{0x83, element_of_length(value_length)}}, how);
}

TEST_P(binary_to_text, a_value_above_32767_bytes_fails_in_any_row)
{
    expect_bad_elements(c, {element_of_length(32768)});
}

// ---- The text and the service ---------------------------------------------------------------

// Where it is cut, no row fails.
TEST_P(binary_to_text, a_text_that_is_too_long_fails_or_is_cut_in_any_row)
{
    c.length = 10;
    expect_bad_elements(c, {text_element("\x11\x22\x33\x44\x55\x66")});
}

// By way of a working value nobody looks at it, and what it left is shown.
TEST_P(binary_to_text, a_failure_of_the_service_stops_with_its_code_or_is_not_looked_at) { expect_stops(c); }

INSTANTIATE_TEST_SUITE_P(casts, binary_to_text, testing::ValuesIn(all_casts()), name_of);

// ---- Without a working value ----------------------------------------------------------------

class binary_to_text_directly : public binary_to_text {};

TEST_P(binary_to_text_directly, blanks_of_the_text_are_text)
{
    const std::string value = "\x11\x22\x33";
    for (const char *text : {"11  ", "    ", " 1"}) {
        services().binary.spelled[value] = text;
        expect_with_length(6, {{1, text_element(value)}});
    }
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_text_directly, testing::ValuesIn(direct_casts()), name_of);

// ---- Captured failures ----------------------------------------------------------------------

class binary_to_text_capture : public binary_to_text {};

TEST_P(binary_to_text_capture, failures_are_captured_by_row_of_the_batch) { expect_captures(c); }

TEST_P(binary_to_text_capture, the_last_code_is_the_result)
{
    for (const int32_t code : {-1, -7000, int32_least})
        expect_batch(c, few_setups().back(),
                     {{1, text_element("first")},
                      {1, element_of_length(32768)},
                      {1, text_element("last")},
                      {1, text_element("\x33")}},
                     {.results = {{0, -2}, {1, code}}, .capture = true, .count_before = 0});
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_text_capture,
                         testing::ValuesIn(casts_where(all_casts(), &row_cast::captures)), name_of);

// ---- Through a working value ----------------------------------------------------------------

class binary_to_hex_text : public binary_to_text {};

// Also not where it is longer than there is room for.
TEST_P(binary_to_hex_text, a_failure_of_the_service_is_not_looked_at)
{
    for (const int32_t code : {-1, -6108, -6111, int32_least})
        for (const int32_t length : {10, 4, 3})
            expect_with_length(length, {{1, text_element("\xAB\xCD")}, {1, text_element("\x21")}}, few_setups()[1],
                               {.results = {{0, code}}});
}

struct trimming {
    std::string held;
    trimmed becomes;
};

const std::vector<trimming> trimmings{
    {"AB", {"AB", 0}},
    {"", {"", 0}},
    {"\0"s, {"", 0}},
    {"\0\0\0"s, {"", 0}},
    {"AB\0"s, {"AB", 0}},
    {"AB\0\0"s, {"AB", 0}},
    {" ", {"", 1}},
    {"   ", {"", 3}},
    {"AB ", {"AB", 1}},
    {"AB    ", {"AB", 4}},
    {"AB  \0\0"s, {"AB", 2}},
    {"  \0"s, {"", 2}},
    {" \0 \0"s, {" \0"s, 1}}, // NUL bytes first, then blanks, and no more
    {"AB\0 "s, {"AB\0"s, 1}},
    {"AB \0  "s, {"AB \0"s, 2}},
    {"AB\0C "s, {"AB\0C"s, 1}},
    {"A B", {"A B", 0}}, // only from the end
    {" AB", {" AB", 0}},
    {"\0AB"s, {"\0AB"s, 0}},
    {"AB\t ", {"AB\t", 1}}, // only blanks
    {"AB\t", {"AB\t", 0}},
    {"AB\xA0", {"AB\xA0", 0}},
    {"AB\x01 \x1F", {"AB\x01 \x1F", 0}},
    {std::string(60, 'Q') + "  ", {std::string(60, 'Q'), 2}}, // more than a working value has room for inline
    {"Q" + std::string(60, ' '), {"Q", 60}},
    {"Q" + std::string(60, '\0'), {"Q", 0}},
    {std::string(70, ' '), {"", 70}},
};

TEST_P(binary_to_hex_text, nul_bytes_and_then_blanks_are_trimmed_from_the_end)
{
    std::vector<batch_row> rows;
    for (const auto &[held, becomes] : trimmings) {
        ASSERT_EQ(trim(held), becomes);
        const std::string value{static_cast<char>(rows.size() + 1), '\x55'};
        services().binary.held[digits_of(value)] = held;
        rows.push_back({1, text_element(value)});
    }
    for (const setup &how : few_setups())
        expect_with_length(80, rows, how);
}

TEST_P(binary_to_hex_text, what_is_held_is_measured_ahead_of_the_trimming)
{
    for (const auto &[held, becomes] : trimmings) {
        const auto size = static_cast<int32_t>(held.size());
        services().binary.held["5566"] = held;
        for (const int32_t length : {size - 1, size, size + 1, static_cast<int32_t>(becomes.text.size())})
            expect_with_length(length, {{0x41, text_element("\x55\x66")}}, few_setups()[1]);
    }
}

// Blanks that the text itself ends with are trimmed likewise.
TEST_P(binary_to_hex_text, blanks_of_the_text_are_trimmed)
{
    services().binary.spelled["\x11\x22\x33"] = "A1    ";
    expect_with_length(9, {{1, text_element("\x11\x22\x33")}});
}

// Behind a stop the working value stays as it is, be it filled or not.
TEST_P(binary_to_hex_text, a_stop_does_not_release_the_working_value)
{
    for (const std::string &failing : {element_of_length(32768), text_element(std::string(31, '\x31'))}) {
        expect_with_length(60, {{1, failing}, {1, failing}});
        expect_with_length(60, {{1, text_element(std::string(30, '\x31'))}, {1, failing}});
    }
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_hex_text, testing::ValuesIn(casts_by_working_value()), name_of);

// ---- By hand ------------------------------------------------------------------------------

struct example {
    any_cast cast;
    int32_t length;
    std::string value;
    std::string text;
    int32_t pad_len;
};

TEST(binary_to_text_examples, hold)
{
    const example examples[] = {
        {&bcast_varbinary_to_char_explicit, 3, "\xAB\xCD", "ABC", 0},
        {&bcast_varbinary_to_char, 10, "\xAB", "AB", 8},
        {&bcast_varbinary_to_varchar, 10, "\xAB", "AB", 0},
        {&bcast_varbinary_to_varchar2, 10, "\xAB", "AB", 8},
        {&bcast_binary_to_varchar, 10, "\xAB\0"s, "AB00", 0},
        {&bcast_binary_to_hex_varchar2, 10, "\xAB\0"s, "AB00", 6},
        {&bcast_binary_to_hex_varchar, 10, "\xAB\0"s, "AB00", 0},
    };
    for (const example &e : examples) {
        services().reset();
        source_column source(sizeof(bdta3_str), 1, few_setups().front());
        source.set_bytes(0, 1, text_element(e.value));
        target_column target(sizeof(bdta3_str), 1);
        target_image expected = target.image();
        expected.no_null = 0;
        expected.flags = {1};
        expected.texts[0] = {e.text, e.pad_len};
        EXPECT_EQ(call(e.cast, {.src = source.sealed(), .dst = target.column(), .rows = 1, .length = e.length}), 0);
        EXPECT_TRUE(target.holds(expected)) << e.text;
    }
}

} // namespace
} // namespace bcast::test
