// char, varchar and varchar2 to tinyint, smallint, int and int64. The three sources are three policies; each cast
// against its own line of the table below.

#include "tests/support/batch.h"
#include "tests/support/call.h"
#include "tests/support/service_double.h"

#include <algorithm>
#include <limits>

namespace bcast::test {
namespace {

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int32_t int32_greatest = std::numeric_limits<int32_t>::max();
constexpr int64_t int64_least = std::numeric_limits<int64_t>::min();
constexpr int64_t int64_greatest = std::numeric_limits<int64_t>::max();

enum class parsed_length { low_16_bits, whole_word };
enum class flags { filled_when_no_null, always_copied };
enum class failures { stop, captured_or_stop };

struct rule {
    const char *name;
    any_cast cast;
    size_t target_bytes;
    int64_t least, greatest;
    parsed_length length;
    flags target_flags;
    failures protocol;

    int32_t length_for(int32_t word) const
    {
        return length == parsed_length::whole_word ? word : static_cast<int32_t>(static_cast<uint16_t>(word));
    }
    bool fills(const setup &how) const { return target_flags == flags::filled_when_no_null && how.no_null != 0; }
    bool fits(int64_t value) const { return least <= value && value <= greatest; }
};

void PrintTo(const rule &r, std::ostream *out) { *out << r.name; }

using enum parsed_length;
using enum flags;
using enum failures;

#define NAMED(cast) #cast, &cast
const rule rules[] = {
    {NAMED(bcast_char_to_tinyint), 4, -128, 127, low_16_bits, filled_when_no_null, stop},
    {NAMED(bcast_char_to_smallint), 4, -32768, 32767, low_16_bits, filled_when_no_null, stop},
    {NAMED(bcast_char_to_int), 4, int32_least, int32_greatest, low_16_bits, filled_when_no_null, stop},
    {NAMED(bcast_char_to_int64), 8, int64_least, int64_greatest, low_16_bits, filled_when_no_null, stop},
    {NAMED(bcast_varchar_to_tinyint), 4, -128, 127, whole_word, always_copied, captured_or_stop},
    {NAMED(bcast_varchar_to_smallint), 4, -32768, 32767, whole_word, always_copied, captured_or_stop},
    {NAMED(bcast_varchar_to_int), 4, int32_least, int32_greatest, whole_word, always_copied, captured_or_stop},
    {NAMED(bcast_varchar_to_int64), 8, int64_least, int64_greatest, whole_word, always_copied, captured_or_stop},
    {NAMED(bcast_varchar2_to_tinyint), 4, -128, 127, low_16_bits, always_copied, stop},
    {NAMED(bcast_varchar2_to_smallint), 4, -32768, 32767, low_16_bits, always_copied, stop},
    {NAMED(bcast_varchar2_to_int), 4, int32_least, int32_greatest, low_16_bits, always_copied, stop},
    {NAMED(bcast_varchar2_to_int64), 8, int64_least, int64_greatest, low_16_bits, always_copied, stop},
};
#undef NAMED

// An element's pad_len is nobody's business here.
constexpr int32_t unread_pad_len = 0x20202020;

// One batch: texts on the source side, and on the other what the cast is to make of them.
struct text_batch {
    const rule &r;
    const setup &how;
    uint32_t rows;
    source_column source{sizeof(bdta3_str), rows, how};
    target_column target{r.target_bytes, rows, how};
    target_image expected = target.image();
    std::vector<service_call> calls = {};
    std::vector<std::unique_ptr<guarded<char>>> texts = {};

    void set_element(uint32_t row, uint8_t flag, int32_t length, char *text)
    {
        source.set(row, flag, bdta3_str{length, unread_pad_len, text});
    }

    // A row with a text of its own, whose last byte stands before an inaccessible page.
    void set_text(uint32_t row, uint8_t flag, const std::string &text)
    {
        texts.push_back(std::make_unique<guarded<char>>(std::span<const char>(text)));
        set_element(row, flag, static_cast<int32_t>(text.size()), texts.back()->data());
    }

    // A row that no cast may take a look at.
    void set_null(uint32_t row) { set_element(row, 0, 5, static_cast<char *>(inaccessible())); }

    // Ahead of the walk.
    void expect_start()
    {
        expected.no_null = how.no_null;
        if (r.fills(how))
            std::ranges::fill(expected.flags, uint8_t{1});
    }

    void expect_flag(uint32_t row)
    {
        if (!r.fills(how))
            expected.flags[row] = source.flag(row);
    }

    void expect_parse(uint32_t row)
    {
        const auto element = source.element<bdta3_str>(row);
        calls.push_back(parses(element, r.length_for(element.length)));
    }

    void expect_value(uint32_t row, int64_t value)
    {
        expect_flag(row);
        expect_parse(row);
        if (r.target_bytes == 8)
            expected.put(row, value);
        else
            expected.put(row, static_cast<int32_t>(value));
    }

    // The flag stays, the element is not written.
    void expect_failure(uint32_t row)
    {
        expect_flag(row);
        expect_parse(row);
    }

    void expect_empty_text(uint32_t row)
    {
        expected.flags[row] = 0;
        expected.no_null = 0;
    }

    void run(int32_t status, int32_t *err_codes = nullptr, uint16_t *err_count = nullptr)
    {
        EXPECT_EQ(call(r.cast, {.src = source.sealed(),
                                .dst = target.column(),
                                .rows = rows,
                                .err_codes = err_codes,
                                .err_count = err_count}),
                  status);
        EXPECT_TRUE(target.holds(expected));
        EXPECT_TRUE(services().logged(calls));
    }
};

// Texts that many rows share. Every one fits a tinyint.
constexpr int64_t shared_values[] = {0, 7, -7, 127, -128, 42, 100};

struct shared_texts {
    guarded<char> bytes{std::span<const char>("07-7127-12842100", 16)};
    static constexpr size_t starts[] = {0, 1, 2, 4, 7, 11, 13, 16};

    bdta3_str element(uint32_t row)
    {
        const size_t k = row % std::size(shared_values);
        return {static_cast<int32_t>(starts[k + 1] - starts[k]), unread_pad_len, bytes.data() + starts[k]};
    }
    static int64_t value(uint32_t row) { return shared_values[row % std::size(shared_values)]; }
};

class character_to_integer : public testing::TestWithParam<rule> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(character_to_integer, rows_are_parsed_and_null_rows_left_out)
{
    const rule &r = GetParam();
    constexpr uint8_t flag_bytes[] = {1, 0, 2, 0x80, 0, 0xFF, 1, 1};
    shared_texts texts;
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 30U, 1023U, 1024U, 1025U, 2060U}) {
            SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
            services().reset();
            text_batch batch{r, how, rows};
            batch.expect_start();
            for (uint32_t row = 0; row < rows; row++) {
                const uint8_t flag = flag_bytes[row % std::size(flag_bytes)];
                if (flag == 0 && !r.fills(how)) {
                    batch.set_null(row);
                    batch.expect_flag(row);
                } else {
                    batch.source.set(row, flag, texts.element(row));
                    batch.expect_value(row, texts.value(row));
                }
            }
            if (r.fills(how))
                batch.source.hide_flags();
            batch.run(0);
        }
    }
}

TEST_P(character_to_integer, batches_of_null_rows_only_parse_nothing)
{
    const rule &r = GetParam();
    for (const setup &how : all_setups()) {
        if (r.fills(how))
            continue; // does not know null rows: see a_set_no_null_stands_in_for_the_flags
        SCOPED_TRACE(describe(how));
        services().reset();
        text_batch batch{r, how, 1030};
        batch.expect_start();
        for (uint32_t row = 0; row < 1030; row++) {
            batch.set_null(row);
            batch.expect_flag(row);
        }
        batch.run(0);
    }
}

TEST_P(character_to_integer, a_set_no_null_stands_in_for_the_flags)
{
    const rule &r = GetParam();
    shared_texts texts;
    for (const setup &how : all_setups()) {
        SCOPED_TRACE(describe(how));
        services().reset();
        text_batch batch{r, how, 40};
        batch.expect_start();
        for (uint32_t row = 0; row < 40; row++) {
            batch.source.set(row, 0, texts.element(row));
            if (r.fills(how))
                batch.expect_value(row, texts.value(row));
            else
                batch.expect_flag(row);
        }
        batch.run(0);
    }
}

TEST_P(character_to_integer, the_largest_batch)
{
    const rule &r = GetParam();
    shared_texts texts;
    const setup &how = few_setups()[2];
    text_batch batch{r, how, 65535};
    batch.expect_start();
    for (uint32_t row = 0; row < 65535; row++) {
        batch.source.set(row, 1, texts.element(row));
        batch.expect_value(row, texts.value(row));
    }
    batch.run(0);
}

TEST_P(character_to_integer, only_the_low_16_bits_of_rows_count)
{
    const rule &r = GetParam();
    for (const setup &how : few_setups()) {
        for (const uint32_t rows : {0U, 1U}) {
            services().reset();
            text_batch batch{r, how, rows};
            batch.expect_start();
            if (rows == 1) {
                batch.set_text(0, 1, "33");
                batch.expect_value(0, 33);
            }
            EXPECT_EQ(call_with_wide_rows(r.cast, {batch.source.sealed(), batch.target.column(), 0x10000 + rows}), 0);
            EXPECT_TRUE(batch.target.holds(batch.expected));
            EXPECT_TRUE(services().logged(batch.calls));
        }
    }
}

TEST_P(character_to_integer, an_empty_text_is_null_and_clears_no_null)
{
    const rule &r = GetParam();
    shared_texts texts;
    for (const setup &how : all_setups()) {
        for (const uint32_t empty_row : {0U, 3U, 1023U, 1024U, 1029U}) {
            SCOPED_TRACE("empty row " + std::to_string(empty_row) + ", " + describe(how));
            services().reset();
            text_batch batch{r, how, 1030};
            batch.expect_start();
            for (uint32_t row = 0; row < 1030; row++) {
                if (row == empty_row) {
                    batch.set_element(row, 0x81, 0, static_cast<char *>(inaccessible()));
                    batch.expect_empty_text(row);
                } else {
                    batch.source.set(row, 1, texts.element(row));
                    batch.expect_value(row, texts.value(row));
                }
            }
            batch.run(0);
        }
    }
}

TEST_P(character_to_integer, an_empty_text_in_a_null_row_changes_nothing)
{
    const rule &r = GetParam();
    for (const setup &how : all_setups()) {
        if (r.fills(how))
            continue;
        services().reset();
        text_batch batch{r, how, 3};
        batch.expect_start();
        for (uint32_t row = 0; row < 3; row++) {
            batch.set_element(row, 0, 0, nullptr);
            batch.expect_flag(row);
        }
        batch.run(0);
    }
}

TEST_P(character_to_integer, edges_of_the_range)
{
    const rule &r = GetParam();
    const int64_t values[] = {127,
                              128,
                              -128,
                              -129,
                              255,
                              256,
                              32767,
                              32768,
                              -32768,
                              -32769,
                              65535,
                              65536,
                              2147483647,
                              2147483648,
                              -2147483648,
                              -2147483649,
                              4294967295,
                              4294967296,
                              4294967296 + 5,
                              int64_least,
                              int64_greatest,
                              int64_t{1} << 40};
    for (const setup &how : few_setups()) {
        for (const int64_t value : values) {
            SCOPED_TRACE("value " + std::to_string(value) + ", " + describe(how));
            services().reset();
            text_batch batch{r, how, 1};
            batch.expect_start();
            batch.set_text(0, 1, std::to_string(value));
            if (r.fits(value))
                batch.expect_value(0, value);
            else
                batch.expect_failure(0);
            batch.run(r.fits(value) ? 0 : ERR_OVERFLOW);
        }
    }
}

TEST_P(character_to_integer, the_first_failure_stops)
{
    const rule &r = GetParam();
    shared_texts texts;
    const uint32_t rows = 1024 + 40;
    std::string bad = "no number", worse = "nor is this";
    for (const setup &how : few_setups()) {
        for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, 1025U, rows - 1}) {
            for (const int64_t rubbish : {int64_t{42}, int64_greatest}) {
                SCOPED_TRACE("failing row " + std::to_string(failing_row) + ", " + describe(how));
                services().reset();
                services().answer("str2int64", bad, -4321);
                services().answer("str2int64", worse, -4322);
                services().result_of_failed_parse = rubbish;
                text_batch batch{r, how, rows};
                batch.expect_start();
                for (uint32_t row = 0; row < rows; row++) {
                    if (row == failing_row) {
                        batch.set_element(row, 0x80, 9, bad.data());
                        batch.expect_failure(row);
                    } else if (row == failing_row + 1) {
                        batch.set_element(row, 1, 11, worse.data());
                    } else if (row % 5 == 2 && !r.fills(how)) {
                        batch.set_null(row);
                        if (row < failing_row)
                            batch.expect_flag(row);
                    } else {
                        batch.source.set(row, 4, texts.element(row));
                        if (row < failing_row)
                            batch.expect_value(row, texts.value(row));
                    }
                }
                // Without err_codes nobody looks at the counter, be it there or not.
                batch.run(-4321, nullptr, static_cast<uint16_t *>(inaccessible()));
            }
        }
    }
}

// A failure behind an empty text: no_null is 0 by then and stays so.
TEST_P(character_to_integer, a_failure_leaves_no_null_as_the_walk_has_it)
{
    const rule &r = GetParam();
    for (const setup &how : all_setups()) {
        services().reset();
        text_batch batch{r, how, 3};
        batch.expect_start();
        batch.set_text(0, 1, "");
        batch.expect_empty_text(0);
        batch.set_text(1, 1, "x");
        batch.expect_failure(1);
        batch.set_text(2, 1, "1");
        batch.run(ERR_BAD_CONVERSION);
    }
}

TEST_P(character_to_integer, results_above_zero_are_successes)
{
    const rule &r = GetParam();
    services().answer("str2int64", "12", 1);
    services().answer("str2int64", "-3", int32_greatest);
    text_batch batch{r, few_setups().front(), 2};
    batch.expect_start();
    batch.set_text(0, 1, "12");
    batch.expect_value(0, 12);
    batch.set_text(1, 1, "-3");
    batch.expect_value(1, -3);
    batch.run(0);
}

TEST_P(character_to_integer, codes_of_the_parser_pass_through)
{
    const rule &r = GetParam();
    for (const int32_t code : {-1, -503, -6111, int32_least}) {
        services().reset();
        services().fail_call(0, code);
        text_batch batch{r, few_setups().front(), 1};
        batch.expect_start();
        batch.set_text(0, 1, "12");
        batch.expect_failure(0);
        batch.run(code);
    }
}

// How much of the length word the parser gets. The text is long enough for all of them.
TEST_P(character_to_integer, the_length_word_goes_to_the_parser_as_the_source_has_it)
{
    const rule &r = GetParam();
    std::string text(3 * 65536, '0');
    text[0] = text[1] = text[2] = '1';
    for (const setup &how : few_setups()) {
        for (const int32_t word : {3, 65535, 65536 + 3, 65536 + 32768, 65536, 2 * 65536, 0x7FFF0000, -1, -65536,
                                   int32_least, int32_least + 2}) {
            SCOPED_TRACE("length word " + std::to_string(word) + ", " + describe(how));
            services().reset();
            services().fail_call(0, -77); // what the digits are worth does not matter
            text_batch batch{r, how, 1};
            batch.expect_start();
            batch.set_element(0, 1, word, text.data());
            batch.expect_failure(0);
            batch.run(-77);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, character_to_integer, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Values that do not fit; all do in an int64 -----------------------------------

class character_to_narrow_integer : public character_to_integer {};

TEST_P(character_to_narrow_integer, an_unfit_value_stops_with_overflow)
{
    const rule &r = GetParam();
    const std::string unfit = std::to_string(r.greatest + 1);
    for (const setup &how : all_setups()) {
        services().reset();
        text_batch batch{r, how, 4};
        batch.expect_start();
        batch.set_text(0, 1, "5");
        batch.expect_value(0, 5);
        batch.set_text(1, 0x7F, unfit);
        batch.expect_failure(1);
        batch.set_text(2, 1, "6");
        batch.set_text(3, 1, "");
        batch.run(ERR_OVERFLOW);
    }
}

std::vector<rule> narrow_rules()
{
    std::vector<rule> narrow;
    std::ranges::copy_if(rules, std::back_inserter(narrow), [](const rule &r) { return r.target_bytes == 4; });
    return narrow;
}

INSTANTIATE_TEST_SUITE_P(casts, character_to_narrow_integer, testing::ValuesIn(narrow_rules()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Captured failures: varchar ---------------------------------------------------

class varchar_to_integer : public character_to_integer {};

TEST_P(varchar_to_integer, failures_are_captured_by_row_of_the_batch)
{
    const rule &r = GetParam();
    shared_texts texts;
    const uint32_t rows = 2100;
    std::map<uint32_t, int32_t> failing{{0, -1},    {1, -503},   {600, -6111},        {1023, -7}, {1024, -8},
                                        {1025, -9}, {1500, -10}, {2048, int32_least}, {2090, -12}};
    if (r.target_bytes == 4)
        failing[1700] = ERR_OVERFLOW;
    for (const setup &how : all_setups()) {
        SCOPED_TRACE(describe(how));
        services().reset();
        text_batch batch{r, how, rows};
        batch.expect_start();
        for (uint32_t row = 0; row < rows; row++) {
            if (row == 1700 && failing.contains(row)) {
                batch.set_text(row, 0x80, std::to_string(r.least - 1));
                batch.expect_failure(row);
            } else if (failing.contains(row)) {
                const std::string text = "bad " + std::to_string(row);
                services().answer("str2int64", text, failing[row]);
                batch.set_text(row, 0x80, text);
                batch.expect_failure(row);
            } else if (row % 5 == 2) {
                batch.set_null(row);
                batch.expect_flag(row);
            } else {
                batch.source.set(row, 4, texts.element(row));
                batch.expect_value(row, texts.value(row));
            }
        }
        failure_record record(rows, 7);
        batch.run(-12, record.codes(), record.count());
        EXPECT_TRUE(record.hold(failing));
    }
}

TEST_P(varchar_to_integer, no_failure_leaves_the_record_alone)
{
    for (const setup &how : few_setups()) {
        services().reset();
        text_batch batch{GetParam(), how, 2};
        batch.expect_start();
        batch.set_text(0, 1, "1");
        batch.expect_value(0, 1);
        batch.set_text(1, 1, "");
        batch.expect_empty_text(1);
        failure_record record(2, 65535);
        batch.run(0, record.codes(), record.count());
        EXPECT_TRUE(record.hold({}));
    }
}

TEST_P(varchar_to_integer, the_counter_goes_on_and_wraps_at_16_bits)
{
    text_batch batch{GetParam(), few_setups()[1], 3};
    batch.expect_start();
    for (uint32_t row = 0; row < 3; row++) {
        batch.set_text(row, 1, "x");
        batch.expect_failure(row);
    }
    failure_record record(3, 65534);
    batch.run(ERR_BAD_CONVERSION, record.codes(), record.count());
    EXPECT_TRUE(record.hold({{0, ERR_BAD_CONVERSION}, {1, ERR_BAD_CONVERSION}, {2, ERR_BAD_CONVERSION}}));
    EXPECT_EQ(*record.count(), 1);
}

TEST_P(varchar_to_integer, each_parse_may_fail)
{
    for (uint32_t failing_row = 0; failing_row < 6; failing_row++) {
        services().reset();
        services().fail_call(failing_row, -700);
        text_batch batch{GetParam(), few_setups().back(), 6};
        batch.expect_start();
        for (uint32_t row = 0; row < 6; row++) {
            batch.set_text(row, 1, std::to_string(row));
            if (row == failing_row)
                batch.expect_failure(row);
            else
                batch.expect_value(row, row);
        }
        failure_record record(6);
        batch.run(-700, record.codes(), record.count());
        EXPECT_TRUE(record.hold({{failing_row, -700}}));
    }
}

std::vector<rule> capturing_rules()
{
    std::vector<rule> capturing;
    std::ranges::copy_if(rules, std::back_inserter(capturing),
                         [](const rule &r) { return r.protocol == captured_or_stop; });
    return capturing;
}

INSTANTIATE_TEST_SUITE_P(casts, varchar_to_integer, testing::ValuesIn(capturing_rules()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- What stands out ---------------------------------------------------------------

TEST(character_to_integer_by_hand, one_table_line_for_each_cast)
{
    EXPECT_EQ(std::size(rules), 12U);
    EXPECT_EQ(capturing_rules().size(), 4U);
    EXPECT_EQ(narrow_rules().size(), 9U);
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
