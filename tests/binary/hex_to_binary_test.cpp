// Hexadecimal text to binary and varbinary: four casts under twelve names. They differ in what becomes of a value that
// is longer or shorter than the target, and of an empty text; each name against its own line of the table below.

#include "tests/support/row_cast.h"
#include "tests/support/text_element.h"

#include <services/binary.h>

#include <algorithm>
#include <limits>

namespace bcast::test {
namespace {

using namespace std::string_literals;

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int32_t int32_greatest = std::numeric_limits<int32_t>::max();

enum class shorter { filled, kept };
enum class longer { refused, cut };

// The length word has no sign.
bool has_prefix(const bdta3_str &element)
{
    const std::string_view start(element.text, std::min(static_cast<uint32_t>(element.length), uint32_t{2}));
    return start == "0x" || start == "0X";
}

row_outcome decode(const row_input &input, shorter when_shorter, longer when_longer)
{
    const auto element = input.as<bdta3_str>();
    if (when_shorter == shorter::kept && input.cast.compat_mode == BCAST_MODE_EMPTY_IS_NULL && element.length == 0)
        return {.turns_null = true};
    const bool prefix = has_prefix(element);
    const auto bytes = services().binary.bytes_of(bytes_at(element.text, element.length), prefix);
    row_outcome outcome{.steps = {{.call = decodes(element, prefix),
                                   .failure = service_failure::passes_its_code,
                                   .result = bytes ? 0 : ERR_BAD_CONVERSION}}};
    if (!bytes)
        return outcome;
    const int32_t length = input.cast.length;
    const bool too_long = static_cast<int32_t>(bytes->size()) > length;
    if (too_long && when_longer == longer::refused) {
        outcome.status = ERR_TRUNCATED;
        return outcome;
    }
    std::string stored = *bytes;
    if (too_long || when_shorter == shorter::filled)
        stored.resize(static_cast<size_t>(length), '\0');
    outcome.steps.push_back({assigns_bytes(input.target, input.row, stored)});
    outcome.text = {stored, 0};
    return outcome;
}

// None decodes to more than 6 bytes. A long value stands ahead of short ones, for fillings that keep some of it.
const std::vector<std::string> samples{"0xFEFDFCFBFAF9", "AB", "",       "0xab", "ab",
                                       "0XAABB",         "0x", "000000", "0X",   "0xff00"};

row_cast rule(const char *name, any_cast cast, shorter when_shorter, longer when_longer)
{
    return {.name = name,
            .cast = cast,
            .to_bytes = sizeof(bdta3_str),
            .flags = row_flags::copied,
            .no_null_ahead = true,
            .failure_clears_flag = true,
            .samples = text_elements(samples),
            .convert = [=](const row_input &input) { return decode(input, when_shorter, when_longer); },
            .length = 6,
            .null_element = element_of_length(5)};
}

using enum shorter;
using enum longer;

#define NAMED(cast) #cast, &cast
std::vector<row_cast> casts_to_binary()
{
    return {
        rule(NAMED(bcast_hex_varchar_to_binary), filled, refused),
        rule(NAMED(bcast_hex_varchar_to_binary_explicit), filled, cut),
        rule(NAMED(bcast_hex_char_to_binary), filled, refused),
        rule(NAMED(bcast_varchar_to_binary), filled, refused),
        rule(NAMED(bcast_char_to_binary), filled, refused),
        rule(NAMED(bcast_varchar2_to_binary), filled, refused),
    };
}

std::vector<row_cast> casts_to_varbinary()
{
    return {
        rule(NAMED(bcast_hex_varchar_to_varbinary), kept, refused),
        rule(NAMED(bcast_hex_varchar_to_varbinary_explicit), kept, cut),
        rule(NAMED(bcast_hex_char_to_varbinary), kept, refused),
        rule(NAMED(bcast_varchar_to_varbinary), kept, refused),
        rule(NAMED(bcast_char_to_varbinary), kept, refused),
        rule(NAMED(bcast_varchar2_to_varbinary), kept, refused),
    };
}
#undef NAMED

std::vector<row_cast> all_casts()
{
    std::vector<row_cast> all = casts_to_binary();
    std::ranges::copy(casts_to_varbinary(), std::back_inserter(all));
    return all;
}

bool cuts(const row_cast &c) { return std::string_view(c.name).ends_with("_explicit"); }

std::string name_of(const testing::TestParamInfo<row_cast> &each) { return each.param.name; }

class hex_to_binary : public testing::TestWithParam<row_cast> {
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

TEST_P(hex_to_binary, rows_are_decoded_and_null_rows_left_out) { expect_rows_and_null_rows(c); }

TEST_P(hex_to_binary, null_rows_are_not_looked_into)
{
    for (const int32_t mode : {0, 2}) {
        c.compat_mode = mode;
        expect_null_rows_unread(c);
        // Nor asked for their length.
        c.null_element = element_of_length(0);
        expect_batch(c, few_setups()[1], sample_rows(c, {1, 0, 0, 1}));
    }
}

TEST_P(hex_to_binary, every_row_count_up_to_the_largest) { expect_row_counts(c); }

TEST_P(hex_to_binary, the_pad_len_of_the_source_is_not_looked_at)
{
    for (const int32_t pad_len : {0, 1, 7, int32_greatest, -1})
        expect_with_length(3, {{1, text_element("A1B2", pad_len)}});
}

// ---- The prefix ---------------------------------------------------------------------

TEST_P(hex_to_binary, a_prefix_is_the_digit_0_and_the_letter_x_in_either_case)
{
    std::vector<batch_row> rows;
    for (int byte = 0; byte < 256; byte++)
        for (const char *rest : {"", "1", "12"})
            for (const std::string &text :
                 {"0"s + static_cast<char>(byte) + rest, static_cast<char>(byte) + "x"s + rest,
                  static_cast<char>(byte) + "X"s + rest}) {
                services().binary.decoded[text] = "\x55\x66";
                rows.push_back({1, text_element(text)});
            }
    expect_with_length(4, rows);
}

// Where the second byte would stand nothing can be read.
TEST_P(hex_to_binary, a_text_of_one_byte_has_no_prefix)
{
    for (const char *text : {"0", "x", "7"}) {
        services().binary.decoded[text] = "\x07";
        expect_with_length(2, {{1, text_element(text)}});
    }
}

TEST_P(hex_to_binary, the_letter_behind_a_text_of_one_byte_is_no_prefix)
{
    services().binary.decoded["0"] = "";
    expect_with_length(2, {{1, element_of_length(1, "0x11")}});
}

TEST_P(hex_to_binary, an_empty_text_goes_to_the_service_and_is_not_looked_into)
{
    for (const std::string bytes : {"", "\x0A\x0B"}) {
        services().binary.decoded[""] = bytes;
        expect_with_length(3, {{0x7F, element_of_length(0)}});
    }
}

TEST_P(hex_to_binary, the_length_word_of_the_source_is_unsigned)
{
    for (const int32_t word : {-1, int32_least, -65536, int32_greatest})
        for (const char *text : {"0x", "12"})
            // Such a text is not really there, so that it is never decoded.
            expect_with_length(3, {{1, element_of_length(word, text)}}, few_setups().front(), {.results = {{0, -77}}});
}

// ---- The target's length ------------------------------------------------------------

TEST_P(hex_to_binary, values_and_targets_of_every_small_length)
{
    const std::string longest = "\xF1\xF2\xF3\xF4\xF5\xF6\xF7\xF8"s + std::string(60, '\xEE');
    std::vector<batch_row> rows;
    for (size_t size = 69; size-- > 0;)
        rows.push_back({1, text_element(digits_of(longest.substr(0, size)))});
    for (const setup &how : few_setups())
        for (int32_t length = 0; length <= 66; length++)
            expect_with_length(length, rows, how, {.capture = true, .count_before = 0});
}

TEST_P(hex_to_binary, large_values)
{
    std::string bytes(NBIN_MAX, '\xEE');
    for (size_t k = 0; k < bytes.size(); k += 3)
        bytes[k] = static_cast<char>(k);
    for (const size_t size : {size_t{1023}, size_t{1024}, size_t{32766}, size_t{32767}, size_t{32768}}) {
        for (const char *prefix : {"", "0x"}) {
            const std::vector<batch_row> rows{{1, text_element(prefix + digits_of(bytes.substr(0, size)))},
                                              {1, text_element("")},
                                              {1, text_element("0x77")}};
            for (const int32_t length : {0, 1023, 1024, 32766, 32767, 32768})
                expect_with_length(length, rows, few_setups().front(), {.capture = true});
        }
    }
}

TEST_P(hex_to_binary, a_value_longer_than_less_than_nothing_is_refused_and_else_handed_on_as_it_is)
{
    for (const int32_t length : {-1, -0x10000 + 8, int32_least, int32_least + 8}) {
        for (const char *text : {"", "1122"}) {
            if (!cuts(c)) {
                expect_with_length(length, {{1, text_element(text)}});
                continue;
            }
            // Written out, since there is no element of such a length.
            services().reset();
            source_column source(sizeof(bdta3_str), 1, few_setups().front());
            source.set_bytes(0, 1, text_element(text));
            target_column target(sizeof(bdta3_str), 1);
            ASSERT_EQ(call(c.cast, {.src = source.sealed(), .dst = target.column(), .rows = 1, .length = length}), 0);
            ASSERT_EQ(services().log().size(), 2U);
            EXPECT_EQ(services().log().back().service, "bdta3_col_assign_bin");
            EXPECT_EQ(services().log().back().length, length);
        }
    }
}

// No copy is made of what is to be stored as it was decoded, or only the front of it.
TEST_P(hex_to_binary, a_value_that_needs_no_filling_is_stored_from_where_it_was_decoded)
{
    for (const int32_t length : {2, 1}) {
        if (length == 1 && !cuts(c))
            continue;
        expect_with_length(length, {{1, text_element("1122")}});
        EXPECT_EQ(services().binary.assigned_from, services().binary.decoded_to) << "length " << length;
    }
}

// ---- Failures -----------------------------------------------------------------------

TEST_P(hex_to_binary, a_failure_of_the_service_stops_with_its_code) { expect_stops(c); }

TEST_P(hex_to_binary, failures_are_captured_by_row_of_the_batch) { expect_captures(c); }

TEST_P(hex_to_binary, a_value_that_is_too_long_fails_or_is_cut)
{
    const std::string too_long = text_element("AABBCCDDEEFF99");
    expect_bad_elements(c, {too_long});
    expect_batch(c, few_setups()[2],
                 {{1, too_long}, {2, text_element("AB")}, {3, text_element("CD")}, {4, too_long}, {5, too_long}},
                 {.results = {{1, -4711}}, .capture = true});
}

INSTANTIATE_TEST_SUITE_P(casts, hex_to_binary, testing::ValuesIn(all_casts()), name_of);

// ---- To varbinary -------------------------------------------------------------------

class hex_to_varbinary : public hex_to_binary {};

TEST_P(hex_to_varbinary, all_bits_of_the_length_count)
{
    for (const int32_t length : {0x10000, 0x10001, 0x7FFF0000, int32_greatest})
        expect_with_length(length, {{1, text_element("0x1122")}});
}

TEST_P(hex_to_varbinary, a_short_value_is_stored_from_where_it_was_decoded)
{
    expect_with_length(3, {{1, text_element("1122")}});
    EXPECT_EQ(services().binary.assigned_from, services().binary.decoded_to);
}

// Ahead of the comparison with the length, which an empty value does not fit.
TEST_P(hex_to_varbinary, in_mode_2_an_empty_text_is_null_whatever_the_length)
{
    c.compat_mode = BCAST_MODE_EMPTY_IS_NULL;
    for (const int32_t length : {0, -1, int32_least})
        expect_with_length(length, {{1, text_element("")}}, few_setups()[1]);
}

INSTANTIATE_TEST_SUITE_P(casts, hex_to_varbinary, testing::ValuesIn(casts_to_varbinary()), name_of);

// ---- Empty text and the settings ------------------------------------------------------

// To binary no mode makes a difference.
class hex_to_binary_settings : public hex_to_binary {};

TEST_P(hex_to_binary_settings, in_mode_2_an_empty_text_is_null_in_varbinary_and_clears_no_null)
{
    c.compat_mode = BCAST_MODE_EMPTY_IS_NULL;
    c.samples = text_elements({"AB"});
    at_several_rows(c, element_of_length(0), [&](const std::vector<batch_row> &rows) {
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    });
}

TEST_P(hex_to_binary_settings, in_any_other_mode_an_empty_text_is_an_empty_value)
{
    c.compat_mode2 = BCAST_CUT_BY_CHARSET_6;
    for (const int32_t mode : {0, 1, 3, -2, 4, 0x10002, int32_least}) {
        c.compat_mode = mode;
        for (const setup &how : few_setups())
            expect_with_length(3, {{1, text_element("")}, {1, text_element("")}}, how);
    }
}

// A text that decodes to nothing is not empty, nor is one of a single byte.
TEST_P(hex_to_binary_settings, in_mode_2_a_prefix_alone_is_an_empty_value)
{
    c.compat_mode = BCAST_MODE_EMPTY_IS_NULL;
    services().binary.decoded["0"] = "";
    expect_with_length(3, {{1, text_element("0x")}, {1, text_element("0")}}, few_setups()[1]);
}

TEST_P(hex_to_binary_settings, in_mode_2_a_captured_failure_leaves_no_null)
{
    c.compat_mode = BCAST_MODE_EMPTY_IS_NULL;
    expect_with_length(3, {{1, text_element("11")}, {1, text_element("no")}, {1, text_element("22")}}, few_setups()[1],
                       {.results = {{1, -9}}, .capture = true});
}

TEST_P(hex_to_binary_settings, a_failure_behind_an_empty_text_leaves_no_null_as_the_walk_has_it)
{
    c.compat_mode = BCAST_MODE_EMPTY_IS_NULL;
    for (const bool capture : {false, true})
        expect_with_length(3, {{1, text_element("")}, {1, text_element("no")}, {1, text_element("33")}},
                           few_setups()[1], {.capture = capture});
}

TEST_P(hex_to_binary_settings, are_read_when_the_cast_starts)
{
    for (const int32_t mode : {0, 2}) {
        services().binary.on_decode = [mode] { bcast_dll_var_init(2 - mode, 0); };
        c.compat_mode = mode;
        expect_with_length(3, {{1, text_element("44")}, {1, text_element("")}}, few_setups()[1]);
    }
}

INSTANTIATE_TEST_SUITE_P(casts, hex_to_binary_settings, testing::ValuesIn(all_casts()), name_of);

// ---- By hand --------------------------------------------------------------------------

struct example {
    bcast_length_capture_fn *cast;
    int32_t length;
    std::string text;
    std::string bytes;
    int32_t status = 0;
};

TEST(hex_to_binary_examples, hold)
{
    const example examples[] = {
        {bcast_hex_varchar_to_binary, 4, "0xAABB", "\xAA\xBB\0\0"s},
        {bcast_hex_varchar_to_binary_explicit, 1, "AABB", "\xAA"},
        {bcast_hex_varchar_to_binary, 1, "AA", "\xAA"},
        {bcast_hex_varchar_to_binary, 3, "0x", "\0\0\0"s},
        {bcast_varchar_to_binary, 2, "", "\0\0"s},
        {bcast_char_to_varbinary, 4, "0xAABB", "\xAA\xBB"},
        {bcast_varchar2_to_varbinary, 4, "0x", ""},
        {bcast_hex_varchar_to_binary, 1, "AABB", "", ERR_TRUNCATED},
    };
    for (const example &e : examples) {
        services().reset();
        source_column source(sizeof(bdta3_str), 1, few_setups().front());
        source.set_bytes(0, 1, text_element(e.text));
        target_column target(sizeof(bdta3_str), 1);
        EXPECT_EQ(call(e.cast, {.src = source.sealed(), .dst = target.column(), .rows = 1, .length = e.length}),
                  e.status);
        if (e.status == 0) {
            EXPECT_EQ(services().log().back().bytes, e.bytes) << e.text << ", length " << e.length;
        }
    }
}

} // namespace
} // namespace bcast::test
