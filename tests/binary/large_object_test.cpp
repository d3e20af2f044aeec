// Characters and binary to text and blob, row by row through a large-object constant; and text and blob by whole
// columns.

#include "tests/character/text_rows.h"
#include "tests/support/settings.h"

#include <algorithm>
#include <limits>

namespace bcast::test {
namespace {

using namespace std::string_literals;

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int32_t int32_greatest = std::numeric_limits<int32_t>::max();

// ---- Row by row ---------------------------------------------------------------------------

enum class content { bytes_and_blanks, bytes, digits };
enum class stored_length { of_value, of_constant };

struct rule {
    const char *name;
    any_cast cast;
    content made;
    stored_length stored;
    bool captures;

    // What the large object holds.
    std::string value_of(const std::string &bytes, int32_t pad_len) const
    {
        switch (made) {
        case content::bytes_and_blanks:
            return bytes + std::string(static_cast<size_t>(pad_len), ' ');
        case content::digits:
            return digits_of(bytes);
        default:
            return bytes;
        }
    }
};

void PrintTo(const rule &r, std::ostream *out) { *out << r.name; }

#define NAMED(cast) #cast, &cast
const rule rules[] = {
    {NAMED(bcast_varchar_to_blob), content::bytes_and_blanks, stored_length::of_value, true},
    {NAMED(bcast_varchar_to_text), content::bytes_and_blanks, stored_length::of_value, true},
    {NAMED(bcast_binary_to_blob), content::bytes, stored_length::of_value, false},
    {NAMED(bcast_binary_to_text), content::digits, stored_length::of_constant, false},
};
#undef NAMED

struct value_rows : text_rows {
    const rule &r;
    std::map<uint32_t, int32_t> failed = {};
    bool value_used = false;

    value_rows(const rule &of, const setup &given, uint32_t row_count)
        : text_rows(given, row_count, sizeof(bdta3_str)), r(of)
    {
        expected.no_null = how.no_null;
    }

    // A binary's pad_len is nobody's business.
    void set_value(uint32_t row, uint8_t flag, const std::string &bytes, int32_t pad_len)
    {
        set_text(row, flag, bytes, r.made == content::bytes_and_blanks ? pad_len : unread_pad_len);
    }

    void expect_null(uint32_t row) { expected.flags[row] = 0; }

    void expect_digits(uint32_t row)
    {
        if (r.made == content::digits)
            calls.push_back(spells(element(row)));
    }

    void expect_constant_made(const std::string &value)
    {
        calls.push_back(makes_constant(value, value_used ? kept_value : fresh_value));
        value_used = true;
    }

    void expect_value(uint32_t row, const std::string &value)
    {
        expected.flags[row] = source.flag(row);
        expected.texts[row] = {constant_of(value), 0};
        expect_digits(row);
        expect_constant_made(value);
        calls.push_back(assigns_constant(target.column(), row, value));
        calls.push_back(clears_value());
    }
    void expect_stored(uint32_t row, const std::string &bytes, int32_t pad_len)
    {
        expect_value(row, r.value_of(bytes, pad_len));
    }

    // The constant is refused. The working value is not released.
    void expect_refused(uint32_t row, const std::string &bytes, int32_t pad_len, int32_t code)
    {
        expected.flags[row] = 0;
        expect_digits(row);
        expect_constant_made(r.value_of(bytes, pad_len));
        failed[row] = code;
    }

    int32_t run(int32_t *err_codes = nullptr, uint16_t *err_count = nullptr)
    {
        return call(r.cast, {.src = source.sealed(),
                             .dst = target.column(),
                             .rows = rows,
                             .err_codes = err_codes,
                             .err_count = err_count});
    }

    void expect_success()
    {
        ASSERT_TRUE(failed.empty());
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
        expect(run(record.codes(), record.count()), failed.empty() ? 0 : failed.rbegin()->second);
        EXPECT_TRUE(record.hold(failed));
    }
};

struct sample {
    std::string bytes;
    int32_t pad_len;
};

// Constants that stand inline and outline, long and short ones in turn.
const sample samples[] = {
    {"a long value", 20}, {"ab", 3},  {"sixsix", 0}, {"", 0},     {"\0\xFF"s, 0},
    {"fiver", 0},         {"ab ", 3}, {"", 7},       {"five", 1},
};

const sample &sample_of(uint32_t row) { return samples[row % std::size(samples)]; }

class to_large_object : public testing::TestWithParam<rule> {
protected:
    void SetUp() override { services().reset(); }

    void set_shared(value_rows &batch, uint32_t row, uint8_t flag)
    {
        const bool padded = batch.r.made == content::bytes_and_blanks;
        batch.source.set(row, flag, texts_.element(row, padded ? sample_of(row).pad_len : unread_pad_len));
    }
    static void expect_shared(value_rows &batch, uint32_t row)
    {
        batch.expect_stored(row, sample_of(row).bytes, sample_of(row).pad_len);
    }

private:
    static std::vector<std::string> texts()
    {
        std::vector<std::string> all;
        for (const sample &s : samples)
            all.push_back(s.bytes);
        return all;
    }

    shared_texts texts_{texts()};
};

TEST_P(to_large_object, rows_are_stored_and_null_rows_left_out)
{
    constexpr uint8_t flags[] = {1, 0, 2, 0x80, 0, 0xFF, 1};
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 30U, 1023U, 1025U}) {
            SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
            services().reset();
            value_rows batch(GetParam(), how, rows);
            for (uint32_t row = 0; row < rows; row++) {
                const uint8_t flag = flags[row % std::size(flags)];
                if (flag == 0) {
                    batch.set_null(row);
                    batch.expect_null(row);
                } else {
                    set_shared(batch, row, flag);
                    expect_shared(batch, row);
                }
            }
            batch.expect_success();
        }
    }
}

TEST_P(to_large_object, batches_of_null_rows_only_store_nothing)
{
    for (const setup &how : all_setups()) {
        services().reset();
        value_rows batch(GetParam(), how, 1030);
        for (uint32_t row = 0; row < 1030; row++) {
            batch.set_null(row);
            batch.expect_null(row);
        }
        batch.expect_success();
    }
}

TEST_P(to_large_object, the_largest_batch)
{
    value_rows batch(GetParam(), few_setups()[2], 65535);
    for (uint32_t row = 0; row < 65535; row++) {
        set_shared(batch, row, 1);
        expect_shared(batch, row);
    }
    batch.expect_success();
}

TEST_P(to_large_object, only_the_low_16_bits_of_rows_count)
{
    for (const uint32_t rows : {0U, 1U}) {
        services().reset();
        value_rows batch(GetParam(), few_setups().front(), rows);
        if (rows == 1) {
            batch.set_value(0, 1, "ab", 3);
            batch.expect_stored(0, "ab", 3);
        }
        batch.expect(
            call_with_wide_rows(batch.r.cast,
                                {.src = batch.source.sealed(), .dst = batch.target.column(), .rows = 0x10000 + rows}),
            0);
    }
}

TEST_P(to_large_object, values_of_every_length_around_the_inline_room)
{
    for (const setup &how : few_setups()) {
        for (size_t size = 0; size <= 12; size++) {
            SCOPED_TRACE(std::to_string(size) + " bytes, " + describe(how));
            services().reset();
            value_rows batch(GetParam(), how, 1);
            const std::string bytes = "abcdefghijklmnop"s.substr(0, size);
            batch.set_value(0, 0x80, bytes, 0);
            batch.expect_stored(0, bytes, 0);
            batch.expect_success();
        }
    }
}

TEST_P(to_large_object, large_values)
{
    for (const size_t size : {size_t{1023}, size_t{16384}, size_t{32766}, size_t{32767}}) {
        SCOPED_TRACE(std::to_string(size) + " bytes");
        services().reset();
        value_rows batch(GetParam(), few_setups().front(), 2);
        std::string bytes(size, '\x9D');
        bytes.front() = '\x12';
        bytes.back() = '\x34';
        batch.set_value(0, 1, bytes, 1);
        batch.expect_stored(0, bytes, 1);
        batch.set_value(1, 1, "a", 2);
        batch.expect_stored(1, "a", 2);
        batch.expect_success();
    }
}

TEST_P(to_large_object, an_empty_value_is_stored_in_every_mode)
{
    for (const int32_t mode : {0, 1, 2, 3}) {
        services().reset();
        const settings these(mode, 2);
        value_rows batch(GetParam(), few_setups()[1], 2);
        for (uint32_t row = 0; row < 2; row++) {
            batch.set_value(row, 1, "", 0);
            batch.expect_stored(row, "", 0);
        }
        batch.expect_success();
    }
}

// Where the constant stands is told by the working value's length, unsigned, and how long it is by that of the value or
// by the working value's. The truth is the same; here the double says otherwise.
TEST_P(to_large_object, the_length_of_the_working_value)
{
    struct lie {
        std::string value;
        uint32_t length;
    };
    const rule &r = GetParam();
    for (const auto &[value, length] : {lie{"ab", 49}, lie{"abcdef", 48}, lie{"abcdefgh", 44}, lie{"ab", 0x80000001},
                                        lie{"abcd", 0xFFFFFFFF}, lie{"ab", 0}}) {
        SCOPED_TRACE(std::to_string(value.size()) + " bytes, working value of " + std::to_string(length));
        services().reset();
        services().length_of_constants = length;
        value_rows batch(r, few_setups().front(), 1);
        const std::string bytes = r.made == content::digits ? value.substr(0, value.size() / 2) : value;
        batch.set_value(0, 1, bytes, 0);
        EXPECT_EQ(batch.run(), 0);
        const std::vector<service_call> &log = services().log();
        const auto assigned = std::ranges::find(log, "bdta3_col_assign_bin"s, &service_call::service);
        ASSERT_NE(assigned, log.end());
        EXPECT_EQ(assigned->working_value, length > NSTR_INLINE_MAX ? "outline" : "inline");
        if (r.stored == stored_length::of_constant) {
            EXPECT_EQ(assigned->length, static_cast<int32_t>(length));
        } else {
            EXPECT_EQ(assigned->bytes, constant_of(value));
        }
    }
}

// ---- Failures -----------------------------------------------------------------------------

TEST_P(to_large_object, the_first_failure_stops)
{
    const rule &r = GetParam();
    const uint32_t rows = 1024 + 40;
    for (const setup &how : few_setups()) {
        for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, rows - 1}) {
            SCOPED_TRACE("failing row " + std::to_string(failing_row) + ", " + describe(how));
            services().reset();
            services().answer("nblob_assign_const", r.value_of("no", 1), -4321);
            services().answer("nblob_assign_const", r.value_of("nor this", 1), -4322);
            value_rows batch(r, how, rows);
            for (uint32_t row = 0; row < rows; row++) {
                if (row == failing_row) {
                    batch.set_value(row, 0x80, "no", 1);
                    batch.expect_refused(row, "no", 1, -4321);
                } else if (row == failing_row + 1) {
                    batch.set_value(row, 1, "nor this", 1);
                } else if (row % 5 == 2) {
                    batch.set_null(row);
                    if (row < failing_row)
                        batch.expect_null(row);
                } else {
                    set_shared(batch, row, 4);
                    if (row < failing_row)
                        expect_shared(batch, row);
                }
            }
            batch.expect_stop();
        }
    }
}

TEST_P(to_large_object, codes_of_the_constant_pass_through)
{
    const rule &r = GetParam();
    for (const int32_t code : {-1, -503, -6111, int32_least}) {
        services().reset();
        services().answer("nblob_assign_const", r.value_of("x", 0), code);
        value_rows batch(r, few_setups().front(), 1);
        batch.set_value(0, 1, "x", 0);
        batch.expect_refused(0, "x", 0, code);
        batch.expect_stop();
    }
}

TEST_P(to_large_object, results_above_zero_are_successes)
{
    const rule &r = GetParam();
    services().answer("nbin_to_char_ex", "x", int32_greatest);
    services().answer("nblob_assign_const", r.value_of("x", 0), 1);
    services().answer("nblob_assign_const", r.value_of("y", 0), int32_greatest);
    value_rows batch(r, few_setups().front(), 2);
    batch.set_value(0, 1, "x", 0);
    batch.expect_stored(0, "x", 0);
    batch.set_value(1, 1, "y", 0);
    batch.expect_stored(1, "y", 0);
    batch.expect_success();
}

INSTANTIATE_TEST_SUITE_P(casts, to_large_object, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Characters -----------------------------------------------------------------------------

class varchar_to_large_object : public to_large_object {};

TEST_P(varchar_to_large_object, the_padding_becomes_blanks)
{
    for (const auto &[bytes, pad_len] :
         {sample{"ab", 0}, sample{"ab", 1}, sample{"ab", 3}, sample{"ab", 4}, sample{"", 5}, sample{"", 6},
          sample{"ab  ", 2}, sample{"\0"s, 2}, sample{"ab", 1000}, sample{"", 32768}, sample{"a", 32767},
          sample{std::string(20000, 'q'), 12768}, sample{std::string(32767, 'q'), 1},
          sample{std::string(32768, 'q'), 0}}) {
        SCOPED_TRACE(std::to_string(bytes.size()) + " bytes, pad_len " + std::to_string(pad_len));
        services().reset();
        value_rows batch(GetParam(), few_setups().front(), 1);
        batch.set_text(0, 1, bytes, pad_len);
        batch.expect_value(0, bytes + std::string(static_cast<size_t>(pad_len), ' '));
        batch.expect_success();
    }
}

TEST_P(varchar_to_large_object, a_long_text_leaves_nothing_in_a_short_one_behind_it)
{
    const sample in_turn[] = {{std::string(3000, 'q'), 0}, {"ab", 8}, {std::string(10, 'z'), 0}, {"", 4}, {"c", 0}};
    value_rows batch(GetParam(), few_setups().front(), 5);
    for (uint32_t row = 0; row < 5; row++) {
        batch.set_value(row, 1, in_turn[row].bytes, in_turn[row].pad_len);
        batch.expect_stored(row, in_turn[row].bytes, in_turn[row].pad_len);
    }
    batch.expect_success();
}

TEST_P(varchar_to_large_object, failures_are_captured_by_row_of_the_batch)
{
    const uint32_t rows = 2100;
    for (const setup &how : all_setups()) {
        for (const uint32_t last_failure : {2097U, rows - 1}) {
            SCOPED_TRACE("last failure " + std::to_string(last_failure) + ", " + describe(how));
            services().reset();
            std::map<uint32_t, int32_t> refused{{0, -1},    {1, -503},           {600, -6111},      {1023, -7},
                                                {1024, -8}, {2048, int32_least}, {last_failure, -9}};
            value_rows batch(GetParam(), how, rows);
            for (uint32_t row = 0; row < rows; row++) {
                if (const auto refusal = refused.find(row); refusal != refused.end()) {
                    const std::string text = "bad " + std::to_string(row);
                    services().answer("nblob_assign_const", text + ' ', refusal->second);
                    batch.set_value(row, 0x80, text, 1);
                    batch.expect_refused(row, text, 1, refusal->second);
                } else if (row % 5 == 2) {
                    batch.set_null(row);
                    batch.expect_null(row);
                } else {
                    set_shared(batch, row, 4);
                    expect_shared(batch, row);
                }
            }
            batch.expect_capture(9);
        }
    }
}

TEST_P(varchar_to_large_object, the_counter_wraps_at_16_bits)
{
    services().answer("nblob_assign_const", "no", -5);
    value_rows batch(GetParam(), few_setups().front(), 5);
    for (uint32_t row = 0; row < 5; row++) {
        batch.set_value(row, 1, "no", 0);
        batch.expect_refused(row, "no", 0, -5);
    }
    batch.expect_capture(65533);
}

TEST_P(varchar_to_large_object, capture_without_a_failure_returns_0)
{
    for (const setup &how : few_setups()) {
        services().reset();
        value_rows batch(GetParam(), how, 20);
        for (uint32_t row = 0; row < 20; row++) {
            set_shared(batch, row, 1);
            expect_shared(batch, row);
        }
        batch.expect_capture(3);
    }
}

INSTANTIATE_TEST_SUITE_P(casts, varchar_to_large_object, testing::Values(rules[0], rules[1]),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Binary -------------------------------------------------------------------------------------

TEST(binary_to_blob, takes_the_bytes_from_the_source_however_many_there_are)
{
    for (const size_t size : {size_t{0}, size_t{1}, size_t{6}, size_t{32768}, size_t{65536}, size_t{200000}}) {
        services().reset();
        value_rows batch(rules[2], few_setups().front(), 1);
        const std::string bytes(size, '\xC3');
        batch.set_text(0, 1, bytes, 3);
        batch.expect_value(0, bytes);
        batch.expect_success();
        EXPECT_EQ(services().binary.constant_from, batch.element(0).text);
    }
}

TEST(binary_to_text, a_failure_of_the_digits_stops)
{
    for (const setup &how : all_setups()) {
        for (const uint32_t failing_row : {0U, 1U, 39U}) {
            for (const int32_t code : {-1, -6111, int32_least}) {
                SCOPED_TRACE("failing row " + std::to_string(failing_row) + ", " + describe(how));
                services().reset();
                services().answer("nbin_to_char_ex", "no", code);
                value_rows batch(rules[3], how, 40);
                for (uint32_t row = 0; row < 40; row++) {
                    if (row == failing_row) {
                        batch.set_text(row, 0x80, "no");
                        batch.expected.flags[row] = 0;
                        batch.expect_digits(row);
                        batch.failed[row] = code;
                    } else {
                        batch.set_text(row, 1, "\x17");
                        if (row < failing_row)
                            batch.expect_value(row, "17");
                    }
                }
                batch.expect_stop();
            }
        }
    }
}

TEST(binary_to_text, the_digits_end_at_their_terminator)
{
    const std::string bytes = "\x11\x22\x33\x44";
    for (const std::string &digits :
         {""s, "1"s, "11"s, "1122334"s, "11223344"s, "11  "s, "    "s, "11\0\0\0\0\0\0"s, "1122\000334"s}) {
        services().reset();
        services().binary.spelled[bytes] = digits;
        value_rows batch(rules[3], few_setups().front(), 1);
        batch.set_text(0, 1, bytes);
        batch.expect_value(0, digits.c_str());
        batch.expect_success();
    }
}

// ---- Examples -------------------------------------------------------------------------------

struct example {
    any_cast cast;
    std::string bytes;
    int32_t pad_len;
    std::string value;
};

const example examples[] = {
    {&bcast_varchar_to_text, "ab", 3, "ab   "}, {&bcast_varchar_to_blob, "sixsix", 0, "sixsix"},
    {&bcast_varchar_to_blob, "", 0, ""},        {&bcast_binary_to_text, "\xAB", 0, "AB"},
    {&bcast_binary_to_blob, "\xAB", 9, "\xAB"},
};

TEST(large_object_examples, hold)
{
    for (const example &e : examples) {
        services().reset();
        text_rows batch(few_setups().front(), 1, sizeof(bdta3_str));
        batch.set_text(0, 1, e.bytes, e.pad_len);
        batch.expected.flags[0] = 1;
        batch.expected.no_null = 0;
        batch.expected.texts[0] = {constant_of(e.value), 0};
        EXPECT_EQ(call(e.cast, {.src = batch.source.sealed(), .dst = batch.target.column(), .rows = 1}), 0);
        EXPECT_TRUE(batch.target.holds(batch.expected)) << e.value;
    }
}

// ---- Whole columns ----------------------------------------------------------------------------

class large_object_copy : public testing::TestWithParam<bcast_plain_fn *> {
protected:
    void SetUp() override { services().reset(); }

    static service_call copies_all(text_rows &batch)
    {
        service_call copy = copies_row(batch.source.column(), batch.target.column(), 0);
        copy.length = static_cast<int32_t>(batch.rows);
        return copy;
    }
};

TEST_P(large_object_copy, is_one_call_for_the_batch)
{
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 7U, 1100U}) {
            for (const int32_t result : {0, 1, int32_greatest}) {
                SCOPED_TRACE(std::to_string(rows) + " rows, result " + std::to_string(result) + ", " + describe(how));
                services().reset();
                services().answer("copy_row", "0", result);
                text_rows batch(how, rows, sizeof(bdta3_str));
                for (uint32_t row = 0; row < rows; row++) {
                    if (row % 4 == 2) {
                        batch.set_null(row);
                        batch.expected.flags[row] = 0;
                        continue;
                    }
                    const std::string value = constant_of(std::to_string(row));
                    batch.set_text(row, 0x83, value, 0);
                    batch.expected.flags[row] = 0x83;
                    batch.expected.texts[row] = {value, pad_len_of_copies};
                }
                batch.expected.no_null = how.no_null;
                batch.calls = {copies_all(batch)};
                batch.expect(
                    call(GetParam(), {.src = batch.source.sealed(), .dst = batch.target.column(), .rows = rows}), 0);
            }
        }
    }
}

TEST_P(large_object_copy, that_fails_leaves_no_null_and_gives_the_code)
{
    for (const setup &how : all_setups()) {
        for (const int32_t code : {-1, -503, int32_least}) {
            SCOPED_TRACE("code " + std::to_string(code) + ", " + describe(how));
            services().reset();
            services().answer("copy_row", "0", code);
            text_rows batch(how, 3, sizeof(bdta3_str));
            for (uint32_t row = 0; row < 3; row++) {
                batch.set_text(row, 1, "x", 0);
                batch.expected.put(row, failed_copy);
            }
            batch.calls = {copies_all(batch)};
            batch.expect(call(GetParam(), {.src = batch.source.sealed(), .dst = batch.target.column(), .rows = 3}),
                         code);
        }
    }
}

TEST_P(large_object_copy, of_65536_rows_in_32_bits_is_of_none)
{
    for (const uint32_t rows : {0U, 1U}) {
        services().reset();
        text_rows batch(few_setups()[1], rows, sizeof(bdta3_str));
        if (rows == 1) {
            batch.set_text(0, 1, "x", 0);
            batch.expected.flags[0] = 1;
            batch.expected.texts[0] = {"x", pad_len_of_copies};
        }
        batch.expected.no_null = batch.how.no_null;
        batch.calls = {copies_all(batch)};
        batch.expect(
            call_with_wide_rows(GetParam(),
                                {.src = batch.source.sealed(), .dst = batch.target.column(), .rows = 0x10000 + rows}),
            0);
    }
}

TEST_P(large_object_copy, of_the_largest_batch)
{
    text_rows batch(few_setups()[3], 65535, sizeof(bdta3_str));
    for (uint32_t row = 0; row < 65535; row++) {
        batch.set_null(row);
        batch.expected.flags[row] = 0;
    }
    batch.expected.no_null = 0;
    batch.calls = {copies_all(batch)};
    batch.expect(call(GetParam(), {.src = batch.source.sealed(), .dst = batch.target.column(), .rows = 65535}), 0);
}

INSTANTIATE_TEST_SUITE_P(casts, large_object_copy, testing::Values(&bcast_text_to_text, &bcast_blob_to_blob),
                         [](const auto &each) { return each.index == 0 ? "text"s : "blob"s; });

TEST(text_to_blob, is_refused_and_touches_nothing)
{
    services().reset();
    for (const uint32_t rows : {0U, 1U, 65535U})
        EXPECT_EQ(call(&bcast_text_to_blob, {.src = static_cast<const bdta3_col *>(inaccessible()),
                                             .dst = static_cast<bdta3_col *>(inaccessible()),
                                             .rows = rows}),
                  ERR_BAD_CONVERSION);
    EXPECT_TRUE(services().logged({}));
}

} // namespace
} // namespace bcast::test
