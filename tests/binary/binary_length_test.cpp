// binary and varbinary of one length to another. To binary by two casts of its own, under three names; to varbinary by
// the casts of character lengths, of which only what matters to bytes is shown here.

#include "tests/support/row_cast.h"
#include "tests/support/text_element.h"

#include <algorithm>
#include <limits>

namespace bcast::test {
namespace {

using namespace std::string_literals;

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int32_t int32_greatest = std::numeric_limits<int32_t>::max();

std::string name_of(const testing::TestParamInfo<row_cast> &each) { return each.param.name; }

class binary_length : public testing::TestWithParam<row_cast> {
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

// ---- To binary ----------------------------------------------------------------------------

enum class longer { refused, cut };

row_outcome fill(const row_input &input, longer when_longer)
{
    const auto element = input.as<bdta3_str>();
    const int32_t length = input.cast.length;
    if (when_longer == longer::refused && element.length > length)
        return {.status = ERR_TRUNCATED};
    std::string stored = bytes_at(element.text, std::min(element.length, length));
    stored.resize(static_cast<size_t>(length), '\0');
    return {.steps = {{assigns_bytes(input.target, input.row, stored)}}, .text = target_image::text{stored, 0}};
}

// None is longer than 6 bytes. A long value stands ahead of short ones, for fillings that keep some of it.
const std::vector<std::string> samples{
    "\xF1\xF2\xF3\xF4\xF5\xF6", "\xAB", "", "\xAB\0"s, "\x12\x34\x56", "\0\0\0\0\0\0"s, "\0"s, "    "};

row_cast to_binary(const char *name, any_cast cast, longer when_longer)
{
    return {.name = name,
            .cast = cast,
            .to_bytes = sizeof(bdta3_str),
            .flags = row_flags::copied,
            .no_null_ahead = true,
            .failure_clears_flag = true,
            .samples = text_elements(samples),
            .convert = [=](const row_input &input) { return fill(input, when_longer); },
            .length = 6,
            .null_element = element_of_length(5)};
}

#define NAMED(cast) #cast, &cast
std::vector<row_cast> refusing_casts()
{
    return {to_binary(NAMED(bcast_varbinary_to_binary), longer::refused),
            to_binary(NAMED(bcast_binary_to_binary), longer::refused)};
}

std::vector<row_cast> casts_to_binary()
{
    std::vector<row_cast> all = refusing_casts();
    all.push_back(to_binary(NAMED(bcast_varbinary_to_binary_explicit), longer::cut));
    return all;
}
#undef NAMED

class binary_to_binary : public binary_length {};

TEST_P(binary_to_binary, rows_are_filled_and_null_rows_left_out)
{
    expect_rows_and_null_rows(c);
    for (const setup &how : all_setups())
        expect_with_length(11, sample_rows(c, {1, 0, 2, 0x80, 0, 0xFF, 1, 3, 4, 5}), how);
}

TEST_P(binary_to_binary, null_rows_are_not_looked_into)
{
    c.length = 2;
    c.samples = text_elements({"longer"});
    expect_null_rows_unread(c);
}

TEST_P(binary_to_binary, every_row_count_up_to_the_largest) { expect_row_counts(c); }

// The bytes beside the value cannot be read, on either side.
TEST_P(binary_to_binary, values_and_targets_of_every_small_length)
{
    const std::string bytes = "\xF1\xF2\xF3\xF4\xF5\xF6\xF7\xF8"s + std::string(70, '\xEE');
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        std::vector<batch_row> rows;
        for (size_t size = 69; size-- > 0;)
            rows.push_back({0x7F, text_element(bytes.substr(0, size), edge)});
        for (const setup &how : few_setups())
            for (int32_t length = 0; length <= 66; length++)
                expect_with_length(length, rows, how, {.capture = c.captures()});
    }
}

TEST_P(binary_to_binary, large_values)
{
    std::string bytes(40000, '\xEE');
    for (size_t k = 0; k < bytes.size(); k += 3)
        bytes[k] = static_cast<char>(k);
    for (const size_t size : {size_t{1024}, size_t{32767}, size_t{32768}, size_t{32769}, size_t{40000}})
        for (const int32_t length : {0, 1023, 1024, 1025, 32766, 32767, 32768})
            expect_with_length(length, {{1, text_element(bytes.substr(0, size))}});
}

TEST_P(binary_to_binary, a_short_value_behind_a_large_one_is_filled_with_zeros)
{
    const batch_row large{1, text_element(std::string(32767, '\xDD'))}, small{1, text_element("\xDD\xDD\xDD")};
    expect_with_length(32768, {large, small, large, small});
}

TEST_P(binary_to_binary, a_value_longer_than_less_than_nothing_is_refused_or_handed_on_as_it_is)
{
    for (const int32_t length : {-1, -0x10000 + 8, int32_least, int32_least + 8}) {
        for (const char *value : {"", "\x12"}) {
            if (c.captures()) {
                expect_with_length(length, {{1, text_element(value)}});
                continue;
            }
            // Written out, since there is no element of such a length.
            services().reset();
            source_column source(sizeof(bdta3_str), 1, few_setups().front());
            source.set_bytes(0, 1, text_element(value));
            target_column target(sizeof(bdta3_str), 1);
            ASSERT_EQ(call(c.cast, {.src = source.sealed(), .dst = target.column(), .rows = 1, .length = length}), 0);
            ASSERT_EQ(services().log().size(), 1U);
            EXPECT_EQ(services().log().back().service, "bdta3_col_assign_bin");
            EXPECT_EQ(services().log().back().length, length);
        }
    }
}

// A value of 65536 bytes and more is no short one.
TEST_P(binary_to_binary, all_bits_of_the_length_word_count)
{
    for (const int32_t word : {0x10000, 0x10002, 0x7FFF0001, int32_greatest})
        expect_with_length(4,
                           {{1, c.captures() ? element_of_length(word) : element_of_length(word, "\x01\x02\x03\x04")}});
}

// No copy is made of what is to be stored as it stands, or only the front of it.
TEST_P(binary_to_binary, a_value_that_needs_no_filling_is_stored_from_the_source)
{
    const std::string element = text_element("\x11\x22\x33");
    for (const int32_t length : {3, 2, 1, 0}) {
        if (length < 3 && c.captures())
            continue; // refused
        expect_with_length(length, {{1, element}});
        bdta3_str value;
        std::memcpy(&value, element.data(), sizeof value);
        EXPECT_EQ(services().binary.assigned_from, value.text) << "length " << length;
    }
}

TEST_P(binary_to_binary, the_pad_len_of_the_source_is_not_looked_at)
{
    for (const int32_t pad_len : {0, 1, 2, 3, int32_greatest, -1})
        expect_with_length(4, {{1, text_element("\xA1\xB2", pad_len)}});
}

TEST_P(binary_to_binary, an_empty_value_is_filled_in_every_mode)
{
    c.compat_mode2 = BCAST_CUT_BY_CHARSET_6;
    for (const int32_t mode : {0, 1, 2, 3}) {
        c.compat_mode = mode;
        for (const int32_t length : {0, 3})
            expect_with_length(length, {{1, text_element("")}}, few_setups()[1]);
    }
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_binary, testing::ValuesIn(casts_to_binary()), name_of);

class binary_to_binary_failure : public binary_length {};

TEST_P(binary_to_binary_failure, stops_or_is_captured_by_row_of_the_batch)
{
    expect_bad_elements(c, {element_of_length(7)});
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_binary_failure, testing::ValuesIn(refusing_casts()), name_of);

// ---- To varbinary -------------------------------------------------------------------------------

// Bytes are kept, and pad_len as far as there is room. Without a selection the cast copies them itself.
row_outcome keep(const row_input &input)
{
    const auto element = input.as<bdta3_str>();
    const int32_t length = input.cast.length;
    if (element.length > length)
        return {.status = ERR_TRUNCATED};
    const service_call copies = input.how.selected == selection::none
                                    ? allocates(input.target, element.length)
                                    : copies_row(input.source, input.target, input.row);
    return {.steps = {{copies}},
            .text = target_image::text{bytes_at(element.text, element.length),
                                       std::min(element.pad_len, length - element.length)}};
}

row_cast to_varbinary(const char *name, any_cast cast)
{
    return {.name = name,
            .cast = cast,
            .to_bytes = sizeof(bdta3_str),
            .flags = row_flags::copied,
            .no_null_ahead = false,
            .failure_clears_flag = true,
            .samples = {text_element("\xAB\xCD", 0),
                        text_element("\xAB\0\0\0"s, 0), // trailing zeros are bytes like others
                        text_element("\0\0"s, 3), text_element("", 0), text_element("", 9),
                        text_element("\x20\x20"s, 6), text_element("\xFF\xFE\xFD\xFC\xFB\xFA\xF9\xF8", 0),
                        text_element("\xFF\xFE\xFD\xFC\xFB\xFA\xF9\xF8", 5), text_element("\x01\x02\x03", 6)},
            .convert = keep,
            .length = 8,
            .null_element = element_of_length(5)};
}

class binary_to_varbinary : public binary_length {};

TEST_P(binary_to_varbinary, bytes_are_kept_and_pad_len_as_far_as_there_is_room)
{
    expect_rows_and_null_rows(c);
    c.compat_mode = BCAST_MODE_EMPTY_IS_NULL;
    for (const setup &how : all_setups())
        expect_batch(c, how, sample_rows(c, {1, 0x80, 0, 0xFF, 1, 2, 3, 4, 5, 6, 7}));
}

TEST_P(binary_to_varbinary, a_value_that_is_too_long_is_refused)
{
    expect_bad_elements(c, {text_element("\xAB\0\0\0\0\0\0\0\0"s, 0)});
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_varbinary,
                         testing::Values(to_varbinary("binary", &bcast_binary_to_varbinary),
                                         to_varbinary("varbinary", &bcast_varbinary_to_varbinary)),
                         name_of);

} // namespace
} // namespace bcast::test
