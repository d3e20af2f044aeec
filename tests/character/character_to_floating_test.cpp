// char, varchar and varchar2 to float and double. The sources are three policies, and of the casts to double one asks
// for the range; each against its own line of the table below.

#include "tests/character/text_rows.h"

#include <bcast/codes.h>

#include <algorithm>
#include <bit>
#include <cfenv>
#include <cmath>
#include <limits>

namespace bcast::test {
namespace {

constexpr int32_t longest_read = 319; // bytes of a text that the parser gets

enum class flags { filled_when_no_null, always_copied };
enum class failures { stop, captured_or_stop };
enum class range { of_float, of_double, not_asked };

struct rule {
    const char *name;
    any_cast cast;
    size_t target_bytes;
    flags target_flags;
    range asked;
    failures protocol;

    bool fills(const setup &how) const { return target_flags == flags::filled_when_no_null && how.no_null != 0; }
    const char *predicate() const
    {
        return asked == range::of_float ? "ntype_is_float_overflow" : "ntype_is_double_overflow";
    }
};

void PrintTo(const rule &r, std::ostream *out) { *out << r.name; }

using enum flags;
using enum failures;

#define NAMED(cast) #cast, &cast
const rule rules[] = {
    {NAMED(bcast_char_to_float), 4, filled_when_no_null, range::of_float, stop},
    {NAMED(bcast_char_to_double), 8, filled_when_no_null, range::not_asked, stop},
    {NAMED(bcast_varchar_to_float), 4, always_copied, range::of_float, captured_or_stop},
    {NAMED(bcast_varchar_to_double), 8, always_copied, range::of_double, captured_or_stop},
    {NAMED(bcast_varchar2_to_float), 4, always_copied, range::of_float, stop},
    {NAMED(bcast_varchar2_to_double), 8, always_copied, range::not_asked, stop},
};
#undef NAMED

struct floating_batch : text_rows {
    floating_batch(const rule &of, const setup &given, uint32_t row_count)
        : text_rows(given, row_count, of.target_bytes), r(of)
    {
        expected.no_null = how.no_null;
        if (r.fills(how))
            std::ranges::fill(expected.flags, uint8_t{1});
    }

    const rule &r;

    void expect_flag(uint32_t row)
    {
        if (!r.fills(how))
            expected.flags[row] = source.flag(row);
    }

    void expect_parse(uint32_t row)
    {
        const auto length = std::min<int32_t>(static_cast<uint16_t>(element(row).length), longest_read);
        calls.push_back(parses_number(element(row), length));
    }

    void expect_question(double value)
    {
        if (r.asked == range::of_float)
            calls.push_back(judges_float(value));
        if (r.asked == range::of_double)
            calls.push_back(judges_double(value));
    }

    void expect_value(uint32_t row, double value)
    {
        expect_flag(row);
        expect_parse(row);
        expect_question(value);
        if (r.target_bytes == 8)
            expected.put(row, value);
        else
            expected.put(row, static_cast<float>(value));
    }

    // The flag stays, the element is not written.
    void expect_bad_text(uint32_t row)
    {
        expect_flag(row);
        expect_parse(row);
    }

    void expect_unfit(uint32_t row, double value)
    {
        expect_bad_text(row);
        expect_question(value);
    }

    void expect_empty_text(uint32_t row)
    {
        expected.flags[row] = 0;
        expected.no_null = 0;
    }

    void run(int32_t status, int32_t *err_codes = nullptr,
             uint16_t *err_count = static_cast<uint16_t *>(inaccessible()))
    {
        expect(call(r.cast, {.src = source.sealed(),
                             .dst = target.column(),
                             .rows = rows,
                             .err_codes = err_codes,
                             .err_count = err_count}),
               status);
    }
};

const std::vector<std::string> &numbers()
{
    static const std::vector<std::string> texts{"0", "-0", "1.5", "-2.25", "0.1", "1e30", "-3.1415926535897931", "7"};
    return texts;
}

double value_of(const shared_texts &texts, uint32_t row) { return std::stod(texts.text(row)); }

class character_to_floating : public testing::TestWithParam<rule> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(character_to_floating, rows_are_parsed_and_null_rows_left_out)
{
    const rule &r = GetParam();
    constexpr uint8_t flag_bytes[] = {1, 0, 2, 0x80, 0, 0xFF, 1, 1, 3};
    shared_texts texts(numbers());
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 30U, 1023U, 1024U, 1025U, 2060U}) {
            SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
            services().reset();
            floating_batch batch(r, how, rows);
            for (uint32_t row = 0; row < rows; row++) {
                const uint8_t flag = flag_bytes[row % std::size(flag_bytes)];
                if (flag == 0 && !r.fills(how)) {
                    batch.set_null(row);
                    batch.expect_flag(row);
                } else {
                    batch.source.set(row, flag, texts.element(row));
                    batch.expect_value(row, value_of(texts, row));
                }
            }
            if (r.fills(how))
                batch.source.hide_flags();
            batch.run(0);
        }
    }
}

TEST_P(character_to_floating, batches_of_null_rows_only_parse_nothing)
{
    const rule &r = GetParam();
    for (const setup &how : all_setups()) {
        if (r.fills(how))
            continue; // does not know null rows: see a_set_no_null_stands_in_for_the_flags
        SCOPED_TRACE(describe(how));
        floating_batch batch(r, how, 1030);
        for (uint32_t row = 0; row < 1030; row++) {
            batch.set_element(row, 0, row % 2 == 0 ? 0 : 3, static_cast<char *>(inaccessible()));
            batch.expect_flag(row);
        }
        batch.source.hide_values();
        batch.run(0);
    }
}

TEST_P(character_to_floating, a_set_no_null_stands_in_for_the_flags)
{
    const rule &r = GetParam();
    shared_texts texts(numbers());
    for (const setup &how : all_setups()) {
        SCOPED_TRACE(describe(how));
        services().reset();
        floating_batch batch(r, how, 40);
        for (uint32_t row = 0; row < 40; row++) {
            batch.source.set(row, 0, texts.element(row));
            if (r.fills(how))
                batch.expect_value(row, value_of(texts, row));
            else
                batch.expect_flag(row);
        }
        batch.run(0);
    }
}

TEST_P(character_to_floating, the_largest_batch)
{
    shared_texts texts(numbers());
    floating_batch batch(GetParam(), few_setups()[2], 65535);
    for (uint32_t row = 0; row < 65535; row++) {
        batch.source.set(row, 1, texts.element(row));
        batch.expect_value(row, value_of(texts, row));
    }
    batch.run(0);
}

TEST_P(character_to_floating, only_the_low_16_bits_of_rows_count)
{
    for (const setup &how : few_setups()) {
        for (const uint32_t rows : {0U, 1U}) {
            services().reset();
            floating_batch batch(GetParam(), how, rows);
            if (rows == 1) {
                batch.set_text(0, 1, "33.5");
                batch.expect_value(0, 33.5);
            }
            const call_arguments with{batch.source.sealed(), batch.target.column(), 0x10000 + rows};
            batch.expect(call_with_wide_rows(GetParam().cast, with), 0);
        }
    }
}

TEST_P(character_to_floating, an_empty_text_is_null_and_clears_no_null)
{
    shared_texts texts(numbers());
    for (const setup &how : all_setups()) {
        for (const uint32_t empty_row : {0U, 3U, 1023U, 1024U, 1029U}) {
            SCOPED_TRACE("empty row " + std::to_string(empty_row) + ", " + describe(how));
            services().reset();
            floating_batch batch(GetParam(), how, 1030);
            for (uint32_t row = 0; row < 1030; row++) {
                if (row == empty_row) {
                    batch.set_element(row, 0x81, 0, static_cast<char *>(inaccessible()));
                    batch.expect_empty_text(row);
                } else {
                    batch.source.set(row, 1, texts.element(row));
                    batch.expect_value(row, value_of(texts, row));
                }
            }
            batch.run(0);
        }
    }
}

TEST_P(character_to_floating, an_empty_text_in_a_null_row_changes_nothing)
{
    for (const setup &how : all_setups()) {
        if (GetParam().fills(how))
            continue;
        floating_batch batch(GetParam(), how, 3);
        for (uint32_t row = 0; row < 3; row++) {
            batch.set_element(row, 0, 0, nullptr);
            batch.expect_flag(row);
        }
        batch.run(0);
    }
}

// The low 16 bits of the length word, and of those no more than 319.
TEST_P(character_to_floating, how_much_of_a_text_the_parser_gets)
{
    std::string text(65536, '0');
    text[0] = '7';
    for (const setup &how : few_setups()) {
        for (const int32_t word : {1, 318, 319, 320, 400, 65535, 65536, 65536 + 1, 65536 + 319, 65536 + 320, 0x7FFF0000,
                                   -1, -65536, -65536 + 4, INT32_MIN, INT32_MIN + 2}) {
            SCOPED_TRACE("length word " + std::to_string(word) + ", " + describe(how));
            services().reset();
            services().fail_call(0, -77); // what the digits are worth does not matter
            floating_batch batch(GetParam(), how, 1);
            batch.set_element(0, 1, word, text.data());
            batch.expect_bad_text(0);
            batch.run(-77);
        }
    }
}

TEST_P(character_to_floating, bytes_behind_the_first_319_are_ignored)
{
    for (const setup &how : few_setups()) {
        services().reset();
        floating_batch batch(GetParam(), how, 1);
        batch.set_text(0, 1, "1." + std::string(317, '5') + std::string(81, 'x'));
        batch.expect_value(0, std::stod("1." + std::string(317, '5')));
        batch.run(0);
    }
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
    if (GetParam().target_bytes == 8)
        for (const double wide : {double_limits::max(), double_limits::lowest(), double_limits::denorm_min(), 1e39,
                                  1e300, std::bit_cast<double>(0x7FF0000000000001), // a signalling NaN
                                  std::bit_cast<double>(0xFFF8DEADBEEF0123)})
            values.push_back(wide);
    for (const setup &how : few_setups()) {
        services().reset();
        floating_batch batch(GetParam(), how, static_cast<uint32_t>(values.size()));
        for (uint32_t row = 0; row < values.size(); row++) {
            const std::string text = "value " + std::to_string(row);
            services().character.numbers[text] = values[row];
            batch.set_text(row, 1, text);
            batch.expect_value(row, values[row]);
        }
        batch.run(0);
    }
}

// One number takes all parses of a batch, and is 0 ahead of the first.
TEST_P(character_to_floating, a_parse_that_stores_nothing_leaves_the_number_before)
{
    for (const setup &how : few_setups()) {
        services().reset();
        services().character.numbers["none"] = std::nullopt;
        floating_batch batch(GetParam(), how, 5);
        constexpr std::pair<const char *, double> rows[] = {
            {"none", 0.0}, {"1.5", 1.5}, {"none", 1.5}, {"-3", -3.0}, {"none", -3.0}};
        for (uint32_t row = 0; row < 5; row++) {
            batch.set_text(row, 1, rows[row].first);
            batch.expect_value(row, rows[row].second);
        }
        batch.run(0);
    }
}

TEST_P(character_to_floating, a_float_is_rounded_as_the_environment_says)
{
    if (GetParam().target_bytes == 8)
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
        floating_batch batch(GetParam(), few_setups().front(), 2);
        batch.set_text(0, 1, "more");
        batch.expect_value(0, 1 + 0x1p-30);
        batch.expected.put(0, above_one);
        batch.set_text(1, 1, "less");
        batch.expect_value(1, -1 - 0x1p-30);
        batch.expected.put(1, below_minus_one);
        const call_arguments with{batch.source.sealed(), batch.target.column(), 2};
        std::fesetround(mode);
        const int32_t status = call(GetParam().cast, with);
        std::fesetround(FE_TONEAREST);
        batch.expect(status, 0);
    }
}

TEST_P(character_to_floating, the_first_failure_stops)
{
    const rule &r = GetParam();
    const uint32_t rows = 1024 + 40;
    shared_texts texts(numbers());
    std::string bad = "no number", worse = "nor is this";
    for (const setup &how : few_setups()) {
        for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, 1025U, rows - 1}) {
            for (const double rubbish : {42.5, std::numeric_limits<double>::infinity()}) {
                SCOPED_TRACE("failing row " + std::to_string(failing_row) + ", " + describe(how));
                services().reset();
                services().answer("utl_digit_from_char", bad, -4321);
                services().answer("utl_digit_from_char", worse, -4322);
                services().character.result_of_failed_number = rubbish;
                floating_batch batch(r, how, rows);
                for (uint32_t row = 0; row < rows; row++) {
                    if (row == failing_row) {
                        batch.set_element(row, 0x80, 9, bad.data());
                        batch.expect_bad_text(row);
                    } else if (row == failing_row + 1) {
                        batch.set_element(row, 1, 11, worse.data());
                    } else if (row % 5 == 2 && !r.fills(how)) {
                        batch.set_null(row);
                        if (row < failing_row)
                            batch.expect_flag(row);
                    } else {
                        batch.source.set(row, 4, texts.element(row));
                        if (row < failing_row)
                            batch.expect_value(row, value_of(texts, row));
                    }
                }
                batch.run(-4321);
            }
        }
    }
}

// A failure behind an empty text: no_null is 0 by then and stays so.
TEST_P(character_to_floating, a_failure_leaves_no_null_as_the_walk_has_it)
{
    for (const setup &how : all_setups()) {
        for (const bool empty : {true, false}) {
            services().reset();
            floating_batch batch(GetParam(), how, 3);
            batch.set_text(0, 1, empty ? "" : "2.5");
            if (empty)
                batch.expect_empty_text(0);
            else
                batch.expect_value(0, 2.5);
            batch.set_text(1, 0x80, "x");
            batch.expect_bad_text(1);
            batch.set_text(2, 1, "1");
            batch.run(ERR_BAD_CONVERSION);
        }
    }
}

TEST_P(character_to_floating, codes_of_the_parser_pass_through_and_results_above_zero_are_successes)
{
    for (const int32_t result : {-1, -503, ERR_OVERFLOW + 0, INT32_MIN, 1, INT32_MAX}) {
        services().reset();
        services().answer("utl_digit_from_char", "12.5", result);
        floating_batch batch(GetParam(), few_setups().front(), 1);
        batch.set_text(0, 1, "12.5");
        if (result > 0)
            batch.expect_value(0, 12.5);
        else
            batch.expect_bad_text(0);
        batch.run(std::min(result, 0));
    }
}

INSTANTIATE_TEST_SUITE_P(casts, character_to_floating, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

std::vector<rule> rules_where(bool (*holds)(const rule &))
{
    std::vector<rule> some;
    std::ranges::copy_if(rules, std::back_inserter(some), holds);
    return some;
}

// ---- Out of range -------------------------------------------------------------------------

class character_to_floating_in_range : public character_to_floating {};

TEST_P(character_to_floating_in_range, an_unfit_value_stops_with_the_code_of_the_predicate)
{
    const rule &r = GetParam();
    for (const setup &how : all_setups()) {
        for (const uint32_t unfit_row : {0U, 2U, 3U, 5U}) {
            for (const int32_t code : {-1, ERR_OVERFLOW + 0, INT32_MIN}) {
                SCOPED_TRACE("row " + std::to_string(unfit_row) + ", " + describe(how));
                services().reset();
                services().answer(r.predicate(), std::to_string(5e8), code);
                floating_batch batch(r, how, 6);
                for (uint32_t row = 0; row < 6; row++) {
                    batch.set_text(row, 0x7F, row == unfit_row ? "5e8" : "-1.5");
                    if (row < unfit_row)
                        batch.expect_value(row, -1.5);
                }
                batch.expect_unfit(unfit_row, 5e8);
                batch.run(code);
            }
        }
    }
}

TEST_P(character_to_floating_in_range, any_answer_from_zero_up_passes)
{
    const rule &r = GetParam();
    for (const int32_t answer : {0, 1, -ERR_OVERFLOW, INT32_MAX}) {
        services().reset();
        services().answer(r.predicate(), std::to_string(2.0), answer);
        floating_batch batch(r, few_setups().front(), 1);
        batch.set_text(0, 1, "2");
        batch.expect_value(0, 2);
        batch.run(0);
    }
}

INSTANTIATE_TEST_SUITE_P(casts, character_to_floating_in_range,
                         testing::ValuesIn(rules_where([](const rule &r) { return r.asked != range::not_asked; })),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Captured failures: varchar -----------------------------------------------------------

class varchar_to_floating : public character_to_floating {};

TEST_P(varchar_to_floating, failures_are_captured_by_row_of_the_batch)
{
    const rule &r = GetParam();
    shared_texts texts(numbers());
    const uint32_t rows = 2100;
    const std::map<uint32_t, int32_t> failing{{0, -1},    {1, -503},   {600, -6111},      {1023, -7}, {1024, -8},
                                              {1025, -9}, {1500, -10}, {2048, INT32_MIN}, {2090, -12}};
    for (const setup &how : all_setups()) {
        for (const bool last_is_unfit : {false, true}) {
            SCOPED_TRACE(describe(how));
            services().reset();
            std::map<uint32_t, int32_t> all = failing;
            all[1700] = -6102;
            if (last_is_unfit)
                all[2095] = -6103;
            floating_batch batch(r, how, rows);
            for (uint32_t row = 0; row < rows; row++) {
                if (row == 1700 || (row == 2095 && last_is_unfit)) {
                    services().answer(r.predicate(), std::to_string(100.0 + row), all[row]);
                    batch.set_text(row, 0x80, std::to_string(100 + row));
                    batch.expect_unfit(row, 100.0 + row);
                } else if (all.contains(row)) {
                    const std::string text = "bad " + std::to_string(row);
                    services().answer("utl_digit_from_char", text, all[row]);
                    batch.set_text(row, 0x80, text);
                    batch.expect_bad_text(row);
                } else if (row % 5 == 2) {
                    batch.set_null(row);
                    batch.expect_flag(row);
                } else {
                    batch.source.set(row, 4, texts.element(row));
                    batch.expect_value(row, value_of(texts, row));
                }
            }
            failure_record record(rows, 7);
            batch.run(last_is_unfit ? -6103 : -12, record.codes(), record.count());
            EXPECT_TRUE(record.hold(all));
        }
    }
}

TEST_P(varchar_to_floating, no_failure_leaves_the_record_alone)
{
    for (const setup &how : few_setups()) {
        services().reset();
        floating_batch batch(GetParam(), how, 2);
        batch.set_text(0, 1, "1.5");
        batch.expect_value(0, 1.5);
        batch.set_text(1, 1, "");
        batch.expect_empty_text(1);
        failure_record record(2, 65535);
        batch.run(0, record.codes(), record.count());
        EXPECT_TRUE(record.hold({}));
    }
}

TEST_P(varchar_to_floating, the_counter_goes_on_and_wraps_at_16_bits)
{
    floating_batch batch(GetParam(), few_setups()[1], 3);
    for (uint32_t row = 0; row < 3; row++) {
        batch.set_text(row, 1, "x");
        batch.expect_bad_text(row);
    }
    failure_record record(3, 65534);
    batch.run(ERR_BAD_CONVERSION, record.codes(), record.count());
    EXPECT_TRUE(record.hold({{0, ERR_BAD_CONVERSION}, {1, ERR_BAD_CONVERSION}, {2, ERR_BAD_CONVERSION}}));
    EXPECT_EQ(*record.count(), 1);
}

// Parser and predicate are asked in turn; the call that fails decides whether the predicate is asked at all.
TEST_P(varchar_to_floating, each_call_may_fail)
{
    const rule &r = GetParam();
    for (uint32_t failing_call = 0; failing_call < 8; failing_call++) {
        for (const setup &how : few_setups()) {
            services().reset();
            services().fail_call(failing_call, -700);
            floating_batch batch(r, how, 6);
            uint32_t calls = 0, failing_row = 6;
            for (uint32_t row = 0; row < 6; row++) {
                batch.set_text(row, 1, std::to_string(row));
                if (calls == failing_call) {
                    batch.expect_bad_text(row);
                    failing_row = row;
                    calls += 1;
                } else if (calls + 1 == failing_call) {
                    batch.expect_unfit(row, row);
                    failing_row = row;
                    calls += 2;
                } else {
                    batch.expect_value(row, row);
                    calls += 2;
                }
            }
            failure_record record(6);
            batch.run(-700, record.codes(), record.count());
            EXPECT_TRUE(record.hold({{failing_row, -700}}));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, varchar_to_floating,
                         testing::ValuesIn(rules_where([](const rule &r) { return r.protocol == captured_or_stop; })),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- What stands out ------------------------------------------------------------------------

TEST(character_to_floating_by_hand, one_table_line_for_each_cast)
{
    EXPECT_EQ(std::size(rules), 6U);
    EXPECT_EQ(rules_where([](const rule &r) { return r.protocol == captured_or_stop; }).size(), 2U);
    EXPECT_EQ(rules_where([](const rule &r) { return r.asked != range::not_asked; }).size(), 4U);
}

TEST(character_to_floating_by_hand, an_infinite_double_is_refused_from_varchar_only)
{
    for (const any_cast cast :
         {any_cast(&bcast_char_to_double), any_cast(&bcast_varchar_to_double), any_cast(&bcast_varchar2_to_double)}) {
        services().reset();
        services().character.numbers["1e999"] = std::numeric_limits<double>::infinity();
        services().answer("ntype_is_double_overflow", "inf", ERR_OVERFLOW);
        services().answer("ntype_is_float_overflow", "inf", ERR_OVERFLOW);
        text_rows batch(few_setups().front(), 1, 8);
        batch.set_text(0, 1, "1e999");
        batch.expected.flags = {1};
        batch.expected.no_null = 0;
        const bool refused = cast == any_cast(&bcast_varchar_to_double);
        if (!refused)
            batch.expected.put(0, std::numeric_limits<double>::infinity());
        EXPECT_EQ(call(cast, {batch.source.sealed(), batch.target.column(), 1}), refused ? ERR_OVERFLOW : 0);
        EXPECT_TRUE(batch.target.holds(batch.expected));
    }
}

} // namespace
} // namespace bcast::test
