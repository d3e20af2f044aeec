// Casts to bit: a zero test of numbers, a digit scan of texts. Casts from bit: moves of whatever the slot holds, and
// decimal text.

#include "tests/integer/in_decimal.h"
#include "tests/logical/samples.h"
#include "tests/support/text_element.h"

#include <limits>
#include <memory>

namespace bcast::test {
namespace {

// ---- Between numbers and bit ---------------------------------------------------------

template <class Integer> std::vector<sample> integer_samples()
{
    std::vector<sample> samples{becomes(Integer{0}, 0)};
    for (const int shift : {0, 1, 7, 8, 15, 16, 30, static_cast<int>(8 * sizeof(Integer)) - 2})
        samples.push_back(becomes(static_cast<Integer>(Integer{1} << shift), 1));
    samples.push_back(becomes(Integer{-1}, 1));
    samples.push_back(becomes(std::numeric_limits<Integer>::min(), 1));
    return samples;
}

template <class Float> std::vector<sample> floating_samples()
{
    using limits = std::numeric_limits<Float>;
    return {becomes(Float{0}, 0),
            becomes(Float{0.25}, 1),
            becomes(-Float{0}, 0),
            becomes(limits::quiet_NaN(), 1),
            becomes(-limits::quiet_NaN(), 1),
            becomes(limits::denorm_min(), 1),
            becomes(-limits::denorm_min(), 1),
            becomes(-limits::infinity(), 1)};
}

// Byte 0 alone tells: 80 stands for zero.
std::vector<sample> dec_samples()
{
    return {becomes(dec(0x80, 0, 0), 0), becomes(dec(0xC1, 1, 0), 1),       becomes(dec(0x80, 0x40, 0xFF), 0),
            becomes(dec(0, 0, 0), 1),    becomes(dec(0x81, 0x80, 0x80), 1), becomes(dec(0x7F, 0, 0), 1)};
}

std::string as_float(int32_t value) { return image_of(static_cast<float>(value)); }
std::string as_double(int32_t value) { return image_of(double{static_cast<double>(value)}); }

std::vector<sample> from_bit_samples(std::string (*stored)(int32_t))
{
    std::vector<sample> samples;
    for (const int32_t value : {0, 1, 7, -1, 127, 128, 300, 32767, 32768, 40000, 16777217, 0x12345678,
                                std::numeric_limits<int32_t>::max(), std::numeric_limits<int32_t>::min()})
        samples.push_back({image_of(value), stored(value)});
    return samples;
}

#define NAMED(cast) #cast, cast
row_cast double_to_bit()
{
    return asking_for_overflow(
        cast_of_samples(NAMED(bcast_double_to_bit), row_flags::copied, floating_samples<double>()));
}

std::vector<row_cast> rules()
{
    using enum row_flags;
    return {
        cast_of_samples(NAMED(bcast_tinyint_to_bit), copied, integer_samples<int32_t>()),
        cast_of_samples(NAMED(bcast_smallint_to_bit), copied, integer_samples<int32_t>()),
        cast_of_samples(NAMED(bcast_int_to_bit), copied, integer_samples<int32_t>()),
        cast_of_samples(NAMED(bcast_int_to_varbit), copied, integer_samples<int32_t>()),
        cast_of_samples(NAMED(bcast_int64_to_bit), copied, integer_samples<int64_t>()),
        cast_of_samples(NAMED(bcast_float_to_bit), copied, floating_samples<float>()),
        double_to_bit(),
        cast_of_samples(NAMED(bcast_dec_to_bit), copied, dec_samples()),
        cast_of_samples(NAMED(bcast_bit_to_bit), converted_when_no_null, from_bit_samples(as_it_is)),
        cast_of_samples(NAMED(bcast_bit_to_tinyint), converted_when_no_null, from_bit_samples(low_8_bits)),
        cast_of_samples(NAMED(bcast_bit_to_smallint), converted_when_no_null, from_bit_samples(low_16_bits)),
        cast_of_samples(NAMED(bcast_bit_to_int), converted_when_no_null, from_bit_samples(as_it_is)),
        cast_of_samples(NAMED(bcast_bit_to_int64), converted_when_no_null, from_bit_samples(as_int64)),
        cast_of_samples(NAMED(bcast_bit_to_float), converted_when_no_null, from_bit_samples(as_float)),
        cast_of_samples(NAMED(bcast_bit_to_double), converted_when_no_null, from_bit_samples(as_double)),
    };
}

// All tests here start with a double that has not been told anything.
class rows_test : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

const auto name_of_cast = [](const auto &each) { return std::string(each.param.name); };

class bit_cast_of_numbers : public rows_test {};

TEST_P(bit_cast_of_numbers, rows_are_converted_by_their_flags) { expect_rows_and_null_rows(GetParam()); }

TEST_P(bit_cast_of_numbers, blocks_of_rows) { expect_blocks(GetParam()); }

TEST_P(bit_cast_of_numbers, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

INSTANTIATE_TEST_SUITE_P(casts, bit_cast_of_numbers, testing::ValuesIn(rules()), name_of_cast);

TEST(double_to_bit, stops_at_the_value_refused)
{
    services().reset();
    expect_stops(double_to_bit());
}

// That an alias of the catalogue has its cast's address is shown for all of them at once.
TEST(bit_aliases, share_a_body)
{
    EXPECT_EQ(catalogue::find("bcast_int_to_varbit")->alias_of, "bcast_int_to_bit");
    EXPECT_EQ(catalogue::find("bcast_bit_to_varchar2")->alias_of, "bcast_bit_to_char");
}

// ---- Text to bit -----------------------------------------------------------------------

struct scan {
    std::string text;
    bool fails;
    int32_t value; // on failure: of the digits before it
};

constexpr bool fails = true, passes = false;

std::vector<scan> make_scans()
{
    using namespace std::string_literals;
    std::vector<scan> scans{
        {"0", passes, 0},
        {"1", passes, 1},
        {"9", passes, 1},
        {"2", passes, 1},
        {"00", passes, 0},
        {"000", passes, 0},
        {"01", passes, 1},
        {"10", passes, 1},
        {"0010", passes, 1},
        {"0 ", passes, 0},
        {"1 ", passes, 1},
        {"12 ", passes, 1},
        {"0    ", passes, 0},
        {"7     ", passes, 1},
        {" ", passes, 0},
        {"     ", passes, 0},
        {std::string(20, '9'), passes, 1},
        {"+1", fails, 0},
        {"-1", fails, 0},
        {"-0", fails, 0},
        {" 1", fails, 0},
        {" 0 ", fails, 0},
        {"1.0", fails, 1},
        {"0.1", fails, 0},
        {"true", fails, 0},
        {"y", fails, 0},
        {"?", fails, 0},
        {"1?", fails, 1},
        {"0 1", fails, 0},
        {"1 1", fails, 1},
        {"1x", fails, 1},
        {"x1", fails, 0},
        {"1a", fails, 1},
        {"0x1", fails, 0},
        {"00a1", fails, 0},
        {"0/", fails, 0},
        {"1:", fails, 1},
        {"/", fails, 0},
        {":", fails, 0},
        {"1\t", fails, 1},
        {"\t", fails, 0},
        {"1\n", fails, 1},
        {" \t ", fails, 0},
        {"1\0"s, fails, 1},
        {"\0"s, fails, 0},
        {"\0"
         "1"s,
         fails, 0},
        {"1\xA0", fails, 1},
        {"\xB1", fails, 0},
        {"0\xB0", fails, 0},
        {"\xD9\xA1", fails, 0},
        {"1\xFF", fails, 1},
        {"5 0 ", fails, 1},
        {std::string(300, '0') + "1", passes, 1},
        {std::string(300, '0') + "x1", fails, 0},
        {std::string(1, '1') + std::string(300, ' '), passes, 1},
        {std::string(0x10000, '0'), passes, 0}, // the length is taken in 32 bits
        {std::string(0x10000, '0') + "1", passes, 1},
        {std::string(0x10000, '0') + "x", fails, 0},
    };
    for (int byte = 0; byte < 256; byte++)
        if ((byte < '0' || byte > '9') && byte != ' ')
            scans.push_back({std::string("30") + static_cast<char>(byte), fails, 1});
    return scans;
}

const std::vector<scan> &all_scans()
{
    static const std::vector<scan> scans = make_scans();
    return scans;
}

// By where their texts stand.
std::map<const char *, const scan *> &scans_by_place()
{
    static std::map<const char *, const scan *> scans;
    return scans;
}

// pad_len plays no part.
std::string element_of(const scan &s, int32_t pad_len = unread_pad_len, guard_edge edge = guard_edge::end)
{
    const std::string element = text_element(s.text, pad_len, edge);
    bdta3_str text;
    std::memcpy(&text, element.data(), sizeof text);
    scans_by_place()[text.text] = &s;
    return element;
}

std::string element_of(std::string_view text)
{
    const auto s = std::ranges::find(all_scans(), text, &scan::text);
    return element_of(s == all_scans().end() ? throw std::out_of_range(std::string(text)) : *s);
}

std::vector<std::string> elements_that(bool fail)
{
    std::vector<std::string> elements;
    for (const scan &s : all_scans())
        if (s.fails == fail)
            elements.push_back(element_of(s, static_cast<int32_t>(elements.size() % 3),
                                          elements.size() % 2 == 0 ? guard_edge::end : guard_edge::start));
    return elements;
}

row_cast text_rule(const char *name, any_cast cast, bool no_null_copied_ahead, bool empty_text_clears_no_null)
{
    return {.name = name,
            .cast = cast,
            .to_bytes = 4,
            .flags = row_flags::copied,
            .no_null_ahead = no_null_copied_ahead,
            .failure_clears_flag = false,
            .samples = elements_that(passes),
            .convert = [empty_text_clears_no_null](const row_input &input) -> row_outcome {
                const auto element = input.as<bdta3_str>();
                if (element.length == 0)
                    return {.turns_null = true,
                            .keeps_no_null = !empty_text_clears_no_null,
                            .element = image_of(int32_t{0})};
                const scan &s = *scans_by_place().at(element.text);
                if (!s.fails)
                    return {.element = image_of(s.value)};
                return {.status = ERR_BAD_CONVERSION, .failed_element = input.captures ? image_of(s.value) : ""};
            },
            .null_element = element_of_length(INT32_MAX),
            .no_null_stays = !no_null_copied_ahead};
}

row_cast varchar_to_bit() { return text_rule(NAMED(bcast_varchar_to_bit), false, true); }

std::vector<row_cast> text_rules()
{
    return {text_rule(NAMED(bcast_char_to_bit), true, true), varchar_to_bit(),
            text_rule(NAMED(bcast_varchar2_to_bit), false, false)};
}

class text_to_bit : public rows_test {};

TEST_P(text_to_bit, every_text_is_scanned_to_its_value_or_its_failure)
{
    for (const scan &s : all_scans())
        for (const guard_edge edge : {guard_edge::start, guard_edge::end})
            for (const int32_t pad_len : {0, 7, -1})
                expect_batch(GetParam(), few_setups().front(), {{2, element_of(s, pad_len, edge)}});
}

TEST_P(text_to_bit, batches_of_values_and_null_rows)
{
    for (const uint32_t row_count : {0U, 1U, 2U, 33U, 1023U, 1024U, 1025U}) {
        const std::vector<batch_row> rows = rows_with_some_null(GetParam(), row_count);
        for (const setup &how : all_setups())
            expect_batch(GetParam(), how, rows);
    }
}

TEST_P(text_to_bit, an_empty_text_turns_null_and_its_element_0)
{
    for (setup how : all_setups()) {
        for (const int32_t before : {untouched_no_null, 0, 1}) {
            how.no_null_before = before;
            for (const uint32_t empty_row : {0U, 1U, 4U}) {
                for (const int32_t pad_len : {0, 5, -1}) {
                    std::vector<batch_row> rows(5, {1, element_of("1")});
                    rows[empty_row] = {3, element_of_length(0, pad_len)};
                    expect_batch(GetParam(), how, rows);
                }
            }
        }
    }
}

TEST_P(text_to_bit, a_stop_leaves_the_flag_and_the_rows_behind)
{
    const std::string one = element_of("1 "), bad = element_of("1x"), worse = element_of("y"),
                      empty = element_of_length(0, 0);
    const uint32_t row_count = 1024 + 40;
    for (const bool empty_before : {false, true}) {
        for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, row_count - 1}) {
            std::vector<batch_row> rows;
            for (uint32_t row = 0; row < failing_row; row++)
                rows.push_back({static_cast<uint8_t>(row % 4 == 3 ? 0 : 1), one});
            if (empty_before && failing_row > 0)
                rows[0].element = empty;
            rows.push_back({0x80, bad});
            for (uint32_t row = failing_row + 1; row < row_count; row++)
                rows.push_back({1, row % 3 == 0 ? empty : row % 3 == 1 ? worse : one});
            for (const setup &how : all_setups())
                expect_batch(GetParam(), how, rows);
        }
    }
}

TEST_P(text_to_bit, every_row_count_up_to_the_largest)
{
    row_cast c = GetParam();
    c.samples = {element_of("0 "), element_of("1"), element_of("1")};
    expect_row_counts(c);
}

INSTANTIATE_TEST_SUITE_P(casts, text_to_bit, testing::ValuesIn(text_rules()), name_of_cast);

// ---- Text to bit, with err_codes -----------------------------------------------------------

TEST(varchar_to_bit, capture_keeps_the_flag_and_writes_the_digits_so_far)
{
    for (const scan &s : all_scans())
        expect_batch(varchar_to_bit(), few_setups().front(), {{0x41, element_of(s)}},
                     {.capture = true, .count_before = 0});
}

TEST(varchar_to_bit, capture_goes_on_to_the_end_of_the_batch)
{
    const row_cast c = varchar_to_bit();
    std::vector<std::string> elements;
    for (const scan &s : all_scans())
        elements.push_back(element_of(s));
    for (const uint32_t row_count : {0U, 1U, 5U, 40U, 1024U, 1025U}) {
        std::vector<batch_row> rows;
        for (uint32_t row = 0; row < row_count; row++) {
            if (row % 13 == 12)
                rows.push_back({1, element_of_length(0, 0)});
            else
                rows.push_back(
                    {static_cast<uint8_t>(row % 11 == 10 ? 0 : 1 + row % 255), elements[row * 7 % elements.size()]});
        }
        for (const setup &how : all_setups())
            expect_batch(c, how, rows, {.capture = true, .count_before = 3});
    }
}

TEST(varchar_to_bit, capture_leaves_no_null_alone)
{
    for (setup how : all_setups()) {
        for (const int32_t before : {untouched_no_null, 0, 1}) {
            how.no_null_before = before;
            expect_batch(varchar_to_bit(), how, {{1, element_of("x1")}, {1, element_of("x1")}}, {.capture = true});
        }
    }
}

TEST(varchar_to_bit, a_failure_is_the_result_although_later_rows_succeed)
{
    expect_batch(varchar_to_bit(), few_setups().front(),
                 {{1, element_of("?")}, {1, element_of("1")}, {1, element_of("0")}}, {.capture = true});
}

TEST(varchar_to_bit, err_count_wraps_at_16_bits)
{
    expect_batch(varchar_to_bit(), few_setups().front(), {{1, element_of("1?")}, {1, element_of("?")}},
                 {.capture = true, .count_before = 0xFFFF});
}

// ---- Bit to text ---------------------------------------------------------------------------

std::vector<row_cast> digits_rules()
{
    using enum digits_by;
    return {
        into_characters<int32_t>(NAMED(bcast_bit_to_char), the_cast, pad::rest_of_length),
        into_characters<int32_t>(NAMED(bcast_bit_to_varchar), the_cast, pad::nothing),
        into_characters<int32_t>(NAMED(bcast_bit_to_varchar2), the_cast, pad::rest_of_length),
    };
}
#undef NAMED

class bit_to_text : public rows_test {
protected:
    static row_cast of_length(int32_t length)
    {
        row_cast c = GetParam();
        c.length = length;
        return c;
    }
};

TEST_P(bit_to_text, rows_are_formatted_and_null_rows_left_out)
{
    row_cast c = of_length(11);
    c.samples.clear();
    for (const int32_t value : {0, 1, 2, -1, 7, 300, INT32_MIN, INT32_MAX, -40000})
        c.samples.push_back(image_of(value));
    for (const uint32_t row_count : {0U, 1U, 2U, 33U, 1023U, 1024U, 1025U}) {
        const std::vector<batch_row> rows = rows_with_some_null(c, row_count);
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    }
}

TEST_P(bit_to_text, every_row_count_up_to_the_largest)
{
    row_cast c = of_length(1);
    c.samples = {image_of(int32_t{0}), image_of(int32_t{1})};
    expect_row_counts(c);
}

TEST_P(bit_to_text, all_32_bits_of_length_count)
{
    for (const int32_t value : {0, 1, -1, 300, INT32_MIN}) {
        const auto size = static_cast<int32_t>(std::to_string(value).size());
        for (const int32_t length :
             {size, size + 1, 0x10000, 0x10001, INT32_MAX, size - 1, 0, -1, -0x10000 + 12, INT32_MIN, INT32_MIN + 12})
            expect_batch(of_length(length), few_setups().front(), {{5, image_of(value)}});
    }
}

TEST_P(bit_to_text, a_stop_clears_the_flag_and_leaves_the_rows_behind)
{
    const row_cast c = of_length(2);
    const uint32_t row_count = 1024 + 40;
    for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, row_count - 1}) {
        std::vector<batch_row> rows;
        for (uint32_t row = 0; row < row_count; row++)
            rows.push_back({static_cast<uint8_t>(row % 5 == 2 ? 0 : 4), image_of(row > failing_row ? 1000 : 10)});
        rows[failing_row] = {0x80, image_of(int32_t{-10})};
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    }
}

INSTANTIATE_TEST_SUITE_P(casts, bit_to_text, testing::ValuesIn(digits_rules()), name_of_cast);

} // namespace
} // namespace bcast::test
