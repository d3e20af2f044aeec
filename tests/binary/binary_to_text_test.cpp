// binary and varbinary to hexadecimal text: six casts under fourteen names. They differ in what becomes of a text that
// is too long, in pad_len, and in whether they go through a working value; each name against its own line of the table
// below.

#include "tests/character/text_rows.h"
#include "tests/support/settings.h"

#include <algorithm>
#include <limits>

namespace bcast::test {
namespace {

using namespace std::string_literals;

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int32_t int32_greatest = std::numeric_limits<int32_t>::max();

enum class route { direct, working_value }; // from the digits to the column
enum class longer { refused, cut };
enum class pad { rest_of_length, nothing };
enum class failures { stop, captured_or_stop };
enum class large_value { clears_flag, keeps_flag };

struct rule {
    const char *name;
    any_cast cast;
    route by;
    longer when_longer;
    pad padding;
    failures protocol;
    large_value flag_of_large = large_value::clears_flag;

    bool by_working_value() const { return by == route::working_value; }
    int32_t pad_len(int32_t length, const std::string &stored) const
    {
        return padding == pad::rest_of_length ? length - static_cast<int32_t>(stored.size()) : 0;
    }
};

void PrintTo(const rule &r, std::ostream *out) { *out << r.name; }

using enum route;
using enum longer;
using enum pad;
using enum failures;
using enum large_value;

#define NAMED(cast) #cast, &cast
const rule rules[] = {
    {NAMED(bcast_varbinary_to_char), direct, refused, rest_of_length, captured_or_stop},
    {NAMED(bcast_varbinary_to_varchar), direct, refused, nothing, captured_or_stop},
    {NAMED(bcast_varbinary_to_char_explicit), direct, cut, rest_of_length, stop},
    {NAMED(bcast_varbinary_to_varchar_explicit), direct, cut, nothing, stop},
    {NAMED(bcast_varbinary_to_hex_char), working_value, refused, rest_of_length, stop, keeps_flag},
    {NAMED(bcast_varbinary_to_hex_varchar), working_value, refused, nothing, stop},
    {NAMED(bcast_binary_to_char), direct, refused, rest_of_length, captured_or_stop},
    {NAMED(bcast_binary_to_varchar2), direct, refused, rest_of_length, captured_or_stop},
    {NAMED(bcast_varbinary_to_varchar2), direct, refused, rest_of_length, captured_or_stop},
    {NAMED(bcast_binary_to_varchar), direct, refused, nothing, captured_or_stop},
    {NAMED(bcast_binary_to_hex_char), working_value, refused, rest_of_length, stop, keeps_flag},
    {NAMED(bcast_binary_to_hex_varchar2), working_value, refused, rest_of_length, stop, keeps_flag},
    {NAMED(bcast_varbinary_to_hex_varchar2), working_value, refused, rest_of_length, stop, keeps_flag},
    {NAMED(bcast_binary_to_hex_varchar), working_value, refused, nothing, stop},
};
#undef NAMED

struct value_rows : text_rows {
    const rule &r;
    int32_t length;
    std::map<uint32_t, int32_t> failed = {};
    bool value_used = false;

    value_rows(const rule &of, const setup &given, uint32_t row_count, int32_t target_length)
        : text_rows(given, row_count, sizeof(bdta3_str)), r(of), length(target_length)
    {
        expected.no_null = how.no_null;
    }

    void expect_null(uint32_t row) { expected.flags[row] = 0; }

    // The row's bytes are spelled by this text.
    void expect_spelled(uint32_t row, const std::string &text)
    {
        calls.push_back(spells(element(row)));
        if (!r.by_working_value())
            return;
        calls.push_back(holds_text(text, value_used ? kept_value : fresh_value));
        value_used = true;
    }

    void expect_stored(uint32_t row, const std::string &stored, int32_t pad_len)
    {
        expected.flags[row] = source.flag(row);
        expected.texts[row] = {stored, pad_len};
        calls.push_back(assigns_text(target.column(), row, stored, pad_len));
    }

    // The row's bytes are spelled by this text, and it is stored, cut or refused.
    void expect_text(uint32_t row, const std::string &text)
    {
        expect_spelled(row, text);
        const bool too_long = static_cast<int32_t>(text.size()) > length;
        if (too_long && r.when_longer == refused) {
            expect_failure(row, ERR_TRUNCATED);
            return;
        }
        const std::string stored = too_long ? text.substr(0, static_cast<size_t>(length)) : text;
        expect_stored(row, stored, r.pad_len(length, stored));
    }

    void expect_failure(uint32_t row, int32_t code)
    {
        expected.flags[row] = 0;
        failed[row] = code;
    }

    // Longer than any value that is spelled.
    void set_large(uint32_t row, uint8_t flag, int32_t value_length = 32768)
    {
        set_element(row, flag, value_length, static_cast<char *>(inaccessible()));
    }
    void expect_large_refused(uint32_t row)
    {
        expect_failure(row, ERR_TRUNCATED);
        if (r.flag_of_large == keeps_flag)
            expected.flags[row] = source.flag(row);
    }

    int32_t run(int32_t *err_codes = nullptr, uint16_t *err_count = nullptr)
    {
        return call(r.cast, {.src = source.sealed(),
                             .dst = target.column(),
                             .rows = rows,
                             .length = length,
                             .err_codes = err_codes,
                             .err_count = err_count});
    }

    // The working value is released behind the last row, and only there.
    void expect_end()
    {
        if (r.by_working_value())
            calls.push_back(clears_value());
    }

    void expect_success()
    {
        ASSERT_TRUE(failed.empty());
        expect_end();
        expect(run(), 0);
    }

    // Without err_codes nobody looks at the counter, be it there or not.
    void expect_stop()
    {
        ASSERT_FALSE(failed.empty());
        expect(run(nullptr, static_cast<uint16_t *>(inaccessible())), failed.begin()->second);
    }

    void expect_capture(uint16_t count_before)
    {
        failure_record record(rows, count_before);
        expect_end();
        expect(run(record.codes(), record.count()), failed.empty() ? 0 : failed.rbegin()->second);
        EXPECT_TRUE(record.hold(failed));
    }

    void expect_success_or_stop() { failed.empty() ? expect_success() : expect_stop(); }
};

// None is longer than 5 bytes.
const std::vector<std::string> values{"\xAB", "",          "\xAB\0"s,   "\x12\x34\x56",
                                      "\0"s,  "\xCD\xEF"s, "\xFF\xFF"s, "\x01\x23\x45\x67\x89"};

const std::string &value_of(uint32_t row) { return values[row % values.size()]; }

class binary_to_text : public testing::TestWithParam<rule> {
protected:
    void SetUp() override { services().reset(); }

    shared_texts values_{values};
};

TEST_P(binary_to_text, rows_are_spelled_and_null_rows_left_out)
{
    constexpr uint8_t flags[] = {1, 0, 2, 0x80, 0, 0xFF, 1};
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 30U, 1023U, 1025U}) {
            SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
            services().reset();
            value_rows batch(GetParam(), how, rows, 12);
            for (uint32_t row = 0; row < rows; row++) {
                const uint8_t flag = flags[row % std::size(flags)];
                if (flag == 0) {
                    batch.set_null(row);
                    batch.expect_null(row);
                } else {
                    batch.source.set(row, flag, values_.element(row));
                    batch.expect_text(row, digits_of(value_of(row)));
                }
            }
            batch.expect_success();
        }
    }
}

TEST_P(binary_to_text, batches_of_null_rows_only_spell_nothing)
{
    for (const setup &how : all_setups()) {
        services().reset();
        value_rows batch(GetParam(), how, 1030, 0);
        for (uint32_t row = 0; row < 1030; row++) {
            batch.set_element(row, 0, 32768, nullptr); // too long, which a null row is not asked for
            batch.expect_null(row);
        }
        batch.expect_success();
    }
}

TEST_P(binary_to_text, the_largest_batch)
{
    value_rows batch(GetParam(), few_setups()[2], 65535, 10);
    for (uint32_t row = 0; row < 65535; row++) {
        batch.source.set(row, 1, values_.element(row));
        batch.expect_text(row, digits_of(value_of(row)));
    }
    batch.expect_success();
}

TEST_P(binary_to_text, only_the_low_16_bits_of_rows_count)
{
    for (const uint32_t rows : {0U, 1U}) {
        services().reset();
        value_rows batch(GetParam(), few_setups().front(), rows, 4);
        if (rows == 1) {
            batch.set_text(0, 1, "\x5A");
            batch.expect_text(0, "5A");
        }
        batch.expect_end();
        batch.expect(
            call_with_wide_rows(
                batch.r.cast,
                {.src = batch.source.sealed(), .dst = batch.target.column(), .rows = 0x10000 + rows, .length = 4}),
            0);
    }
}

TEST_P(binary_to_text, an_empty_value_is_an_empty_text_in_every_mode)
{
    for (const int32_t mode : {0, 1, 2, 3}) {
        for (const int32_t length : {0, 1, 5}) {
            services().reset();
            const settings these(mode, 2);
            value_rows batch(GetParam(), few_setups()[1], 2, length);
            batch.set_element(0, 1, 0, static_cast<char *>(inaccessible()));
            batch.expect_text(0, "");
            batch.set_text(1, 0x40, "");
            batch.expect_text(1, "");
            batch.expect_success();
        }
    }
}

TEST_P(binary_to_text, the_pad_len_of_the_source_is_not_looked_at)
{
    for (const int32_t pad_len : {0, 1, 7, int32_greatest, -1}) {
        services().reset();
        value_rows batch(GetParam(), few_setups().front(), 1, 6);
        batch.set_text(0, 1, "\xA1\xB2", pad_len);
        batch.expect_text(0, "A1B2");
        batch.expect_success();
    }
}

// ---- The target's length ----------------------------------------------------------------

// Working values of more and of less than 48 bytes among them.
TEST_P(binary_to_text, texts_around_the_length_of_the_target)
{
    for (const setup &how : few_setups()) {
        for (const size_t size : {size_t{1}, size_t{2}, size_t{3}, size_t{23}, size_t{24}, size_t{25}, size_t{40}}) {
            const auto digits = static_cast<int32_t>(2 * size);
            for (const int32_t length : {0, 1, digits - 2, digits - 1, digits, digits + 1, 3 * digits}) {
                SCOPED_TRACE(std::to_string(size) + " bytes, length " + std::to_string(length) + ", " + describe(how));
                services().reset();
                value_rows batch(GetParam(), how, 1, length);
                std::string value(size, '\0');
                for (size_t k = 0; k < size; k++)
                    value[k] = static_cast<char>(0x9A + 0x11 * k);
                batch.set_text(0, 0x80, value);
                batch.expect_text(0, digits_of(value));
                batch.expect_success_or_stop();
            }
        }
    }
}

TEST_P(binary_to_text, the_length_is_signed_and_all_its_bits_count)
{
    const rule &r = GetParam();
    for (const int32_t length : {0x10000, 0x10003, 0x7FFF0000, int32_greatest}) {
        services().reset();
        value_rows batch(r, few_setups().front(), 1, length);
        batch.set_text(0, 1, "\x12\x34");
        batch.expect_text(0, "1234");
        batch.expect_success();
    }
    for (const int32_t length : {-1, -0x10000 + 8, int32_least, int32_least + 8}) {
        for (const std::string value : {"", "\x12"}) {
            SCOPED_TRACE(std::to_string(value.size()) + " bytes, length " + std::to_string(length));
            services().reset();
            value_rows batch(r, few_setups().front(), 1, length);
            batch.set_text(0, 1, value);
            if (r.when_longer == refused) {
                batch.expect_text(0, digits_of(value));
                batch.expect_stop();
                continue;
            }
            // A cut to less than nothing is handed on as it is.
            EXPECT_EQ(batch.run(), 0);
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
        for (const int32_t length : {0, 2, 7, 9}) {
            SCOPED_TRACE("text \""s + text + "\", length " + std::to_string(length));
            services().reset();
            services().binary.spelled[value] = text;
            value_rows batch(GetParam(), few_setups().front(), 1, length);
            batch.set_text(0, 1, value);
            batch.expect_text(0, text);
            batch.expect_success_or_stop();
        }
    }
}

// A terminator where the value makes one expect it is not the first one.
TEST_P(binary_to_text, the_first_terminator_counts)
{
    const std::string value = "\x11\x22\x33\x44";
    for (const std::string &text : {"\0001122334"s, "11\0\0\0\0\0\0"s, "1122\000334"s, "1122334\0"s}) {
        ASSERT_EQ(text.size(), 8U);
        services().reset();
        services().binary.spelled[value] = text;
        value_rows batch(GetParam(), few_setups().front(), 1, 8);
        batch.set_text(0, 1, value);
        batch.expect_text(0, text.c_str());
        batch.expect_success();
    }
}

TEST_P(binary_to_text, a_long_text_leaves_nothing_in_a_short_one_behind_it)
{
    value_rows batch(GetParam(), few_setups().front(), 4, 100);
    const std::string row_values[] = {std::string(50, '\x77'), "\x01", std::string(30, '\x66'), ""};
    for (uint32_t row = 0; row < 4; row++) {
        batch.set_text(row, 1, row_values[row]);
        batch.expect_text(row, digits_of(row_values[row]));
    }
    batch.expect_success();
}

// ---- Large values -------------------------------------------------------------------------

TEST_P(binary_to_text, values_up_to_32767_bytes_are_spelled)
{
    for (const size_t size : {size_t{16384}, size_t{32766}, size_t{32767}}) {
        const auto digits = static_cast<int32_t>(2 * size);
        std::string value(size, '\x9D');
        value.front() = '\x12';
        value.back() = '\x34';
        for (const int32_t length : {digits - 1, digits, digits + 1, 65534, 65536, 100000}) {
            SCOPED_TRACE(std::to_string(size) + " bytes, length " + std::to_string(length));
            services().reset();
            value_rows batch(GetParam(), few_setups().front(), 1, length);
            batch.set_text(0, 1, value);
            batch.expect_text(0, digits_of(value));
            batch.expect_success_or_stop();
        }
    }
}

TEST_P(binary_to_text, values_above_32767_bytes_are_refused_without_a_look)
{
    for (const setup &how : few_setups()) {
        for (const int32_t value_length :
             {32768, 32769, 65535, 65536, 65537, 0x20001, int32_greatest, -1, -65535, int32_least, int32_least + 1}) {
            for (const int32_t length : {0, 1, 65536, int32_greatest}) {
                SCOPED_TRACE(std::to_string(value_length) + " bytes, length " + std::to_string(length) + ", " +
                             describe(how));
                services().reset();
                value_rows batch(GetParam(), how, 1, length);
                batch.set_large(0, 0x83, value_length);
                batch.expect_large_refused(0);
                batch.expect_stop();
            }
        }
    }
}

// ---- Failures -----------------------------------------------------------------------------

enum class failure { large_value, text_too_long, of_service };

TEST_P(binary_to_text, the_first_failure_stops)
{
    const rule &r = GetParam();
    const uint32_t rows = 1024 + 40;
    for (const failure kind : {failure::large_value, failure::text_too_long, failure::of_service}) {
        if (kind == failure::text_too_long && r.when_longer == cut)
            continue;
        if (kind == failure::of_service && r.by_working_value())
            continue; // which do not look: see below
        for (const setup &how : few_setups()) {
            for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, rows - 1}) {
                SCOPED_TRACE("kind " + std::to_string(static_cast<int>(kind)) + ", failing row " +
                             std::to_string(failing_row) + ", " + describe(how));
                services().reset();
                services().answer("nbin_to_char_ex", "no", -4321);
                value_rows batch(r, how, rows, 10);
                for (uint32_t row = 0; row < rows; row++) {
                    if (row == failing_row && kind == failure::large_value) {
                        batch.set_large(row, 0x80);
                        batch.expect_large_refused(row);
                    } else if (row == failing_row && kind == failure::text_too_long) {
                        batch.set_text(row, 0x80, "\x11\x22\x33\x44\x55\x66");
                        batch.expect_text(row, "112233445566");
                    } else if (row == failing_row) {
                        batch.set_text(row, 0x80, "no");
                        batch.expect_spelled(row, "");
                        batch.expect_failure(row, -4321);
                    } else if (row == failing_row + 1) {
                        batch.set_large(row, 1); // would fail too
                    } else if (row % 5 == 2) {
                        batch.set_null(row);
                        if (row < failing_row)
                            batch.expect_null(row);
                    } else {
                        batch.source.set(row, 4, values_.element(row));
                        if (row < failing_row)
                            batch.expect_text(row, digits_of(value_of(row)));
                    }
                }
                batch.expect_stop();
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_text, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

template <class Predicate> std::vector<rule> rules_that(Predicate holds)
{
    std::vector<rule> such;
    std::ranges::copy_if(rules, std::back_inserter(such), holds);
    return such;
}

// ---- Without a working value ----------------------------------------------------------------

class binary_to_text_directly : public binary_to_text {};

TEST_P(binary_to_text_directly, codes_of_the_service_pass_through)
{
    for (const int32_t code : {-1, -503, -6108, -6111, int32_least}) {
        services().reset();
        services().fail_call(0, code);
        value_rows batch(GetParam(), few_setups().front(), 1, 10);
        batch.set_text(0, 1, "\x01");
        batch.expect_spelled(0, "");
        batch.expect_failure(0, code);
        batch.expect_stop();
    }
}

TEST_P(binary_to_text_directly, results_above_zero_are_successes)
{
    services().answer("nbin_to_char_ex", "\x01", 1);
    services().answer("nbin_to_char_ex", "\x02", int32_greatest);
    value_rows batch(GetParam(), few_setups().front(), 2, 3);
    batch.set_text(0, 1, "\x01");
    batch.expect_text(0, "01");
    batch.set_text(1, 1, "\x02");
    batch.expect_text(1, "02");
    batch.expect_success();
}

TEST_P(binary_to_text_directly, blanks_of_the_text_are_text)
{
    const std::string value = "\x11\x22\x33";
    for (const char *text : {"11  ", "    ", " 1"}) {
        services().reset();
        services().binary.spelled[value] = text;
        value_rows batch(GetParam(), few_setups().front(), 1, 6);
        batch.set_text(0, 1, value);
        batch.expect_text(0, text);
        batch.expect_success();
    }
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_text_directly,
                         testing::ValuesIn(rules_that([](const rule &r) { return !r.by_working_value(); })),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Captured failures ----------------------------------------------------------------------

class binary_to_text_capture : public binary_to_text {};

TEST_P(binary_to_text_capture, failures_are_captured_by_row_of_the_batch)
{
    const uint32_t rows = 2100;
    const std::map<uint32_t, int32_t> refused_by_service{{0, -1}, {600, -503}, {1024, -8}, {2048, -6111}};
    for (const setup &how : all_setups()) {
        for (const uint32_t last_failure : {2097U, rows - 1}) {
            for (const uint32_t large_row : {1U, last_failure}) {
                SCOPED_TRACE("last failure " + std::to_string(last_failure) + ", " + describe(how));
                services().reset();
                value_rows batch(GetParam(), how, rows, 10);
                for (uint32_t row = 0; row < rows; row++) {
                    if (const auto refusal = refused_by_service.find(row); refusal != refused_by_service.end()) {
                        const std::string value = "bad " + std::to_string(row);
                        services().answer("nbin_to_char_ex", value, refusal->second);
                        batch.set_text(row, 0x80, value);
                        batch.expect_spelled(row, "");
                        batch.expect_failure(row, refusal->second);
                    } else if (row == large_row) {
                        batch.set_large(row, 0x81);
                        batch.expect_large_refused(row);
                    } else if (row == 1023 || row == last_failure) {
                        batch.set_text(row, 0x82, "\x11\x22\x33\x44\x55\x66");
                        batch.expect_text(row, "112233445566");
                    } else if (row % 5 == 2) {
                        batch.set_null(row);
                        batch.expect_null(row);
                    } else {
                        batch.source.set(row, 4, values_.element(row));
                        batch.expect_text(row, digits_of(value_of(row)));
                    }
                }
                batch.expect_capture(9);
            }
        }
    }
}

TEST_P(binary_to_text_capture, the_last_code_is_the_result)
{
    for (const int32_t code : {-1, -7000, int32_least}) {
        services().reset();
        services().answer("nbin_to_char_ex", "first", -2);
        services().answer("nbin_to_char_ex", "last", code);
        value_rows batch(GetParam(), few_setups().back(), 4, 10);
        batch.set_text(0, 1, "first");
        batch.expect_spelled(0, "");
        batch.expect_failure(0, -2);
        batch.set_large(1, 1);
        batch.expect_large_refused(1);
        batch.set_text(2, 1, "last");
        batch.expect_spelled(2, "");
        batch.expect_failure(2, code);
        batch.set_text(3, 1, "\x33");
        batch.expect_text(3, "33");
        batch.expect_capture(0);
    }
}

TEST_P(binary_to_text_capture, the_counter_wraps_at_16_bits)
{
    value_rows batch(GetParam(), few_setups().front(), 5, 10);
    for (uint32_t row = 0; row < 5; row++) {
        batch.set_large(row, 1);
        batch.expect_large_refused(row);
    }
    batch.expect_capture(65533);
}

TEST_P(binary_to_text_capture, without_a_failure_0_is_returned)
{
    for (const setup &how : few_setups()) {
        services().reset();
        value_rows batch(GetParam(), how, 20, 10);
        for (uint32_t row = 0; row < 20; row++) {
            batch.source.set(row, 1, values_.element(row));
            batch.expect_text(row, digits_of(value_of(row)));
        }
        batch.expect_capture(3);
    }
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_text_capture,
                         testing::ValuesIn(rules_that([](const rule &r) { return r.protocol == captured_or_stop; })),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Through a working value ----------------------------------------------------------------

class binary_to_hex_text : public binary_to_text {
protected:
    // To varchar the blanks that were trimmed are counted; to char what is left of the length.
    static int32_t pad_len(const rule &r, int32_t length, const std::string &trimmed, int32_t blanks)
    {
        return r.padding == rest_of_length ? r.pad_len(length, trimmed) : blanks;
    }
};

TEST_P(binary_to_hex_text, a_failure_of_the_service_is_not_looked_at)
{
    for (const int32_t code : {-1, -6108, -6111, int32_least}) {
        services().reset();
        services().fail_call(0, code);
        value_rows batch(GetParam(), few_setups()[1], 2, 10);
        batch.set_text(0, 1, "\xAB\xCD");
        batch.expect_text(0, digits_of_failure(2)); // what it left
        batch.set_text(1, 1, "\x21");
        batch.expect_text(1, "21");
        batch.expect_success();
    }
}

struct trimming {
    std::string held;
    std::string trimmed;
    int32_t blanks;
};

const std::vector<trimming> trimmings{
    {"AB", "AB", 0},
    {"", "", 0},
    {"\0"s, "", 0},
    {"\0\0\0"s, "", 0},
    {"AB\0"s, "AB", 0},
    {"AB\0\0"s, "AB", 0},
    {" ", "", 1},
    {"   ", "", 3},
    {"AB ", "AB", 1},
    {"AB    ", "AB", 4},
    {"AB  \0\0"s, "AB", 2},
    {"  \0"s, "", 2},
    {" \0 \0"s, " \0"s, 1}, // NUL bytes first, then blanks, and no more
    {"AB\0 "s, "AB\0"s, 1},
    {"AB \0  "s, "AB \0"s, 2},
    {"AB\0C "s, "AB\0C"s, 1},
    {"A B", "A B", 0}, // only from the end
    {" AB", " AB", 0},
    {"\0AB"s, "\0AB"s, 0},
    {"AB\t ", "AB\t", 1}, // only blanks
    {"AB\t", "AB\t", 0},
    {"AB\xA0", "AB\xA0", 0},
    {"AB\x01 \x1F", "AB\x01 \x1F", 0},
    {std::string(60, 'Q') + "  ", std::string(60, 'Q'), 2}, // more than a working value has room for inline
    {"Q" + std::string(60, ' '), "Q", 60},
    {"Q" + std::string(60, '\0'), "Q", 0},
    {std::string(70, ' '), "", 70},
};

TEST_P(binary_to_hex_text, nul_bytes_and_then_blanks_are_trimmed_from_the_end)
{
    const rule &r = GetParam();
    const auto rows = static_cast<uint32_t>(trimmings.size());
    for (const setup &how : few_setups()) {
        services().reset();
        value_rows batch(r, how, rows, 80);
        for (uint32_t row = 0; row < rows; row++) {
            const auto &[held, trimmed, blanks] = trimmings[row];
            const std::string value{static_cast<char>(row + 1), '\x55'};
            services().binary.held[digits_of(value)] = held;
            batch.set_text(row, 1, value);
            batch.expect_spelled(row, digits_of(value));
            batch.expect_stored(row, trimmed, pad_len(r, 80, trimmed, blanks));
        }
        batch.expect_success();
    }
}

// The length of the working value is what has to fit, so what is trimmed off counts.
TEST_P(binary_to_hex_text, what_is_held_is_measured_ahead_of_the_trimming)
{
    const rule &r = GetParam();
    for (const auto &[held, trimmed, blanks] : trimmings) {
        const auto size = static_cast<int32_t>(held.size());
        for (const int32_t length : {size - 1, size, size + 1, static_cast<int32_t>(trimmed.size())}) {
            SCOPED_TRACE("length " + std::to_string(length) + " of " + std::to_string(size) + ", trimmed " +
                         std::to_string(trimmed.size()));
            services().reset();
            services().binary.held["5566"] = held;
            value_rows batch(r, few_setups()[1], 1, length);
            batch.set_text(0, 0x41, "\x55\x66");
            batch.expect_spelled(0, "5566");
            if (size > length)
                batch.expect_failure(0, ERR_TRUNCATED);
            else
                batch.expect_stored(0, trimmed, pad_len(r, length, trimmed, blanks));
            batch.expect_success_or_stop();
        }
    }
}

// Blanks that the text itself ends with are trimmed likewise.
TEST_P(binary_to_hex_text, blanks_of_the_text_are_trimmed)
{
    const rule &r = GetParam();
    const std::string value = "\x11\x22\x33";
    services().binary.spelled[value] = "A1    ";
    value_rows batch(r, few_setups().front(), 1, 9);
    batch.set_text(0, 1, value);
    batch.expect_spelled(0, "A1    ");
    batch.expect_stored(0, "A1", pad_len(r, 9, "A1", 4));
    batch.expect_success();
}

// Behind a stop the working value stays as it is, be it filled or not.
TEST_P(binary_to_hex_text, a_stop_does_not_release_the_working_value)
{
    for (const bool large : {false, true}) {
        for (const uint32_t failing_row : {0U, 1U}) {
            services().reset();
            value_rows batch(GetParam(), few_setups().front(), 2, 60);
            for (uint32_t row = 0; row < failing_row; row++) {
                batch.set_text(row, 1, std::string(30, '\x31'));
                batch.expect_text(row, digits_of(std::string(30, '\x31')));
            }
            if (large) {
                batch.set_large(failing_row, 1);
                batch.expect_large_refused(failing_row);
            } else {
                batch.set_text(failing_row, 1, std::string(31, '\x31'));
                batch.expect_text(failing_row, digits_of(std::string(31, '\x31')));
            }
            batch.expect_stop();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_hex_text,
                         testing::ValuesIn(rules_that([](const rule &r) { return r.by_working_value(); })),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Examples -----------------------------------------------------------------------------

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
        text_rows batch(few_setups().front(), 1, sizeof(bdta3_str));
        batch.set_text(0, 1, e.value);
        batch.expected.flags[0] = 1;
        batch.expected.no_null = 0;
        batch.expected.texts[0] = {e.text, e.pad_len};
        EXPECT_EQ(
            call(e.cast, {.src = batch.source.sealed(), .dst = batch.target.column(), .rows = 1, .length = e.length}),
            0);
        EXPECT_TRUE(batch.target.holds(batch.expected)) << e.text;
    }
}

} // namespace
} // namespace bcast::test
