// binary and varbinary of one length to another. To binary by two casts of its own, under three names; to varbinary by
// the casts of character lengths, of which only what matters to bytes is shown here.

#include "tests/character/text_rows.h"
#include "tests/support/settings.h"

#include <algorithm>
#include <limits>

namespace bcast::test {
namespace {

using namespace std::string_literals;

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int32_t int32_greatest = std::numeric_limits<int32_t>::max();

// ---- To binary ----------------------------------------------------------------------------

enum class longer { refused, cut };

struct rule {
    const char *name;
    any_cast cast;
    longer when_longer;

    bool refuses(const std::string &bytes, int32_t length) const
    {
        return when_longer == longer::refused && static_cast<int32_t>(bytes.size()) > length;
    }
};

void PrintTo(const rule &r, std::ostream *out) { *out << r.name; }

using enum longer;

#define NAMED(cast) #cast, &cast
const rule rules[] = {
    {NAMED(bcast_varbinary_to_binary), refused},
    {NAMED(bcast_binary_to_binary), refused},
    {NAMED(bcast_varbinary_to_binary_explicit), cut},
};
#undef NAMED

struct value_rows : text_rows {
    const rule &r;
    int32_t length;
    std::map<uint32_t, int32_t> failed = {};

    value_rows(const rule &of, const setup &given, uint32_t row_count, int32_t target_length)
        : text_rows(given, row_count, sizeof(bdta3_str)), r(of), length(target_length)
    {
        expected.no_null = how.no_null;
    }

    void expect_null(uint32_t row) { expected.flags[row] = 0; }

    void expect_value(uint32_t row, std::string bytes)
    {
        if (r.refuses(bytes, length)) {
            expect_refused(row);
            return;
        }
        bytes.resize(static_cast<size_t>(length), '\0');
        expected.flags[row] = source.flag(row);
        expected.texts[row] = {bytes, 0};
        calls.push_back(assigns_bytes(target.column(), row, bytes));
    }

    void expect_refused(uint32_t row)
    {
        expected.flags[row] = 0;
        failed[row] = ERR_TRUNCATED;
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

    // Without err_codes nobody looks at the counter, be it there or not.
    void expect_success_or_stop()
    {
        expect(run(nullptr, static_cast<uint16_t *>(inaccessible())), failed.empty() ? 0 : ERR_TRUNCATED);
    }

    void expect_capture(uint16_t count_before)
    {
        failure_record record(rows, count_before);
        expect(run(record.codes(), record.count()), failed.empty() ? 0 : ERR_TRUNCATED);
        EXPECT_TRUE(record.hold(failed));
    }
};

// None is longer than 6 bytes. A long value stands ahead of short ones, for fillings that keep some of it.
const std::vector<std::string> values{
    "\xF1\xF2\xF3\xF4\xF5\xF6", "\xAB", "", "\xAB\0"s, "\x12\x34\x56", "\0\0\0\0\0\0"s, "\0"s, "    "};

const std::string &value_of(uint32_t row) { return values[row % values.size()]; }

class binary_to_binary : public testing::TestWithParam<rule> {
protected:
    void SetUp() override { services().reset(); }

    shared_texts values_{values};
};

TEST_P(binary_to_binary, rows_are_filled_and_null_rows_left_out)
{
    constexpr uint8_t flags[] = {1, 0, 2, 0x80, 0, 0xFF, 1};
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 30U, 1023U, 1024U, 1025U}) {
            for (const int32_t length : {6, 11}) {
                SCOPED_TRACE(std::to_string(rows) + " rows, length " + std::to_string(length) + ", " + describe(how));
                services().reset();
                value_rows batch(GetParam(), how, rows, length);
                for (uint32_t row = 0; row < rows; row++) {
                    const uint8_t flag = flags[row % std::size(flags)];
                    if (flag == 0) {
                        batch.set_null(row);
                        batch.expect_null(row);
                    } else {
                        batch.source.set(row, flag, values_.element(row));
                        batch.expect_value(row, value_of(row));
                    }
                }
                batch.expect_success_or_stop();
            }
        }
    }
}

TEST_P(binary_to_binary, batches_of_null_rows_only_store_nothing)
{
    for (const setup &how : all_setups()) {
        services().reset();
        value_rows batch(GetParam(), how, 1030, 2);
        for (uint32_t row = 0; row < 1030; row++) {
            batch.set_null(row); // longer than the target
            batch.expect_null(row);
        }
        batch.expect_success_or_stop();
    }
}

TEST_P(binary_to_binary, the_largest_batch)
{
    value_rows batch(GetParam(), few_setups()[2], 65535, 7);
    for (uint32_t row = 0; row < 65535; row++) {
        batch.source.set(row, 1, values_.element(row));
        batch.expect_value(row, value_of(row));
    }
    batch.expect_success_or_stop();
}

TEST_P(binary_to_binary, only_the_low_16_bits_of_rows_count)
{
    for (const uint32_t rows : {0U, 1U}) {
        services().reset();
        value_rows batch(GetParam(), few_setups().front(), rows, 2);
        if (rows == 1) {
            batch.set_text(0, 1, "\x5A");
            batch.expect_value(0, "\x5A");
        }
        batch.expect(
            call_with_wide_rows(
                batch.r.cast,
                {.src = batch.source.sealed(), .dst = batch.target.column(), .rows = 0x10000 + rows, .length = 2}),
            0);
    }
}

// The bytes beside the value cannot be read, on either side.
TEST_P(binary_to_binary, values_and_targets_of_every_small_length)
{
    const std::string bytes = "\xF1\xF2\xF3\xF4\xF5\xF6\xF7\xF8"s + std::string(70, '\xEE');
    for (const setup &how : few_setups()) {
        for (int32_t length = 0; length <= 66; length++) {
            for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
                SCOPED_TRACE("length " + std::to_string(length) + ", " + describe(how));
                services().reset();
                value_rows batch(GetParam(), how, 69, length);
                for (uint32_t row = 0; row < 69; row++) {
                    batch.set_text(row, 0x7F, bytes.substr(0, 68 - row), unread_pad_len, edge);
                    batch.expect_value(row, bytes.substr(0, 68 - row));
                }
                if (batch.r.when_longer == refused)
                    batch.expect_capture(0);
                else
                    batch.expect_success_or_stop();
            }
        }
    }
}

TEST_P(binary_to_binary, large_values)
{
    std::string bytes(40000, '\xEE');
    for (size_t k = 0; k < bytes.size(); k += 3)
        bytes[k] = static_cast<char>(k);
    for (const size_t size : {size_t{1024}, size_t{32767}, size_t{32768}, size_t{32769}, size_t{40000}}) {
        for (const int32_t length : {0, 1023, 1024, 1025, 32766, 32767, 32768}) {
            SCOPED_TRACE(std::to_string(size) + " bytes, length " + std::to_string(length));
            services().reset();
            value_rows batch(GetParam(), few_setups().front(), 1, length);
            batch.set_text(0, 1, bytes.substr(0, size));
            batch.expect_value(0, bytes.substr(0, size));
            batch.expect_success_or_stop();
        }
    }
}

TEST_P(binary_to_binary, a_short_value_behind_a_large_one_is_filled_with_zeros)
{
    value_rows batch(GetParam(), few_setups().front(), 4, 32768);
    for (uint32_t row = 0; row < 4; row++) {
        const std::string bytes(row % 2 == 0 ? 32767 : 3, '\xDD');
        batch.set_text(row, 1, bytes);
        batch.expect_value(row, bytes);
    }
    batch.expect_success_or_stop();
}

TEST_P(binary_to_binary, the_length_is_signed)
{
    const rule &r = GetParam();
    for (const int32_t length : {-1, -0x10000 + 8, int32_least, int32_least + 8}) {
        for (const std::string value : {"", "\x12"}) {
            SCOPED_TRACE(std::to_string(value.size()) + " bytes, length " + std::to_string(length));
            services().reset();
            value_rows batch(r, few_setups().front(), 1, length);
            batch.set_text(0, 1, value);
            if (r.when_longer == refused) {
                batch.expect_refused(0);
                batch.expect_success_or_stop();
                continue;
            }
            // A cut to less than nothing is handed on as it is.
            EXPECT_EQ(batch.run(), 0);
            ASSERT_EQ(services().log().size(), 1U);
            EXPECT_EQ(services().log().back().length, length);
        }
    }
}

// A value of 65536 bytes and more is no short one.
TEST_P(binary_to_binary, all_bits_of_the_length_word_count)
{
    const rule &r = GetParam();
    std::string bytes = "\x01\x02\x03\x04";
    for (const int32_t word : {0x10000, 0x10002, 0x7FFF0001, int32_greatest}) {
        services().reset();
        value_rows batch(r, few_setups().front(), 1, 4);
        batch.set_element(0, 1, word, r.when_longer == refused ? static_cast<char *>(inaccessible()) : bytes.data());
        if (r.when_longer == refused)
            batch.expect_refused(0);
        else
            batch.expect_value(0, bytes);
        batch.expect_success_or_stop();
    }
}

// No copy is made of what is to be stored as it stands, or only the front of it.
TEST_P(binary_to_binary, a_value_that_needs_no_filling_is_stored_from_the_source)
{
    for (const int32_t length : {0, 1, 2, 3}) {
        services().reset();
        value_rows batch(GetParam(), few_setups().front(), 1, length);
        batch.set_text(0, 1, "\x11\x22\x33");
        batch.expect_value(0, "\x11\x22\x33");
        batch.expect_success_or_stop();
        if (!batch.failed.empty())
            continue;
        EXPECT_EQ(services().binary.assigned_from, batch.element(0).text) << "length " << length;
    }
}

TEST_P(binary_to_binary, the_pad_len_of_the_source_is_not_looked_at)
{
    for (const int32_t pad_len : {0, 1, 2, 3, int32_greatest, -1}) {
        services().reset();
        value_rows batch(GetParam(), few_setups().front(), 1, 4);
        batch.set_text(0, 1, "\xA1\xB2", pad_len);
        batch.expect_value(0, "\xA1\xB2");
        batch.expect_success_or_stop();
    }
}

TEST_P(binary_to_binary, an_empty_value_is_filled_in_every_mode)
{
    for (const int32_t mode : {0, 1, 2, 3}) {
        for (const int32_t length : {0, 3}) {
            services().reset();
            const settings these(mode, 2);
            value_rows batch(GetParam(), few_setups()[1], 1, length);
            batch.set_text(0, 1, "");
            batch.expect_value(0, "");
            batch.expect_success_or_stop();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_binary, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

class binary_to_binary_failure : public binary_to_binary {};

TEST_P(binary_to_binary_failure, the_first_one_stops)
{
    const uint32_t rows = 1024 + 40;
    for (const setup &how : few_setups()) {
        for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, rows - 1}) {
            SCOPED_TRACE("failing row " + std::to_string(failing_row) + ", " + describe(how));
            services().reset();
            value_rows batch(GetParam(), how, rows, 6);
            for (uint32_t row = 0; row < rows; row++) {
                if (row == failing_row) {
                    batch.set_element(row, 0x80, 7, static_cast<char *>(inaccessible()));
                    batch.expect_refused(row);
                } else if (row == failing_row + 1) {
                    batch.set_element(row, 1, 8, static_cast<char *>(inaccessible())); // would fail too
                } else if (row % 5 == 2) {
                    batch.set_null(row);
                    if (row < failing_row)
                        batch.expect_null(row);
                } else {
                    batch.source.set(row, 4, values_.element(row));
                    if (row < failing_row)
                        batch.expect_value(row, value_of(row));
                }
            }
            batch.expect_success_or_stop();
        }
    }
}

TEST_P(binary_to_binary_failure, is_captured_by_row_of_the_batch)
{
    const uint32_t rows = 2100;
    for (const setup &how : all_setups()) {
        for (const uint32_t last_failure : {2097U, rows - 1}) {
            SCOPED_TRACE("last failure " + std::to_string(last_failure) + ", " + describe(how));
            services().reset();
            value_rows batch(GetParam(), how, rows, 6);
            for (uint32_t row = 0; row < rows; row++) {
                if (row == 0 || row == 600 || row == 1023 || row == 1024 || row == last_failure) {
                    batch.set_element(row, 0x80, 7, static_cast<char *>(inaccessible()));
                    batch.expect_refused(row);
                } else if (row % 5 == 2) {
                    batch.set_null(row);
                    batch.expect_null(row);
                } else {
                    batch.source.set(row, 4, values_.element(row));
                    batch.expect_value(row, value_of(row));
                }
            }
            batch.expect_capture(9);
        }
    }
}

TEST_P(binary_to_binary_failure, wraps_the_counter_at_16_bits)
{
    value_rows batch(GetParam(), few_setups().front(), 5, 6);
    for (uint32_t row = 0; row < 5; row++) {
        batch.set_element(row, 1, 7, static_cast<char *>(inaccessible()));
        batch.expect_refused(row);
    }
    batch.expect_capture(65533);
}

TEST_P(binary_to_binary_failure, did_not_happen_and_nothing_is_captured)
{
    for (const setup &how : few_setups()) {
        services().reset();
        value_rows batch(GetParam(), how, 20, 6);
        for (uint32_t row = 0; row < 20; row++) {
            batch.source.set(row, 1, values_.element(row));
            batch.expect_value(row, value_of(row));
        }
        batch.expect_capture(3);
    }
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_binary_failure, testing::Values(rules[0], rules[1]),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- To varbinary -------------------------------------------------------------------------------

constexpr int32_t varbinary_length = 8;

struct kept_sample {
    std::string bytes;
    int32_t pad_len;
    int32_t kept_pad_len; // what there is room for behind the bytes
};

const kept_sample kept_samples[] = {
    {"\xAB\xCD", 0, 0},
    {"\xAB\0\0\0"s, 0, 0}, // trailing zeros are bytes like others
    {"\0\0"s, 3, 3},
    {"", 0, 0},
    {"", 9, 8},
    {"\x20\x20"s, 6, 6},
    {"\xFF\xFE\xFD\xFC\xFB\xFA\xF9\xF8", 0, 0},
    {"\xFF\xFE\xFD\xFC\xFB\xFA\xF9\xF8", 5, 0},
    {"\x01\x02\x03", 6, 5},
};

const kept_sample &kept_sample_of(uint32_t row) { return kept_samples[row % std::size(kept_samples)]; }

class binary_to_varbinary : public testing::TestWithParam<bcast_length_capture_fn *> {
protected:
    void SetUp() override { services().reset(); }

    static void set(text_rows &batch, uint32_t row, uint8_t flag)
    {
        batch.set_text(row, flag, kept_sample_of(row).bytes, kept_sample_of(row).pad_len);
    }

    static void expect_kept(text_rows &batch, uint32_t row)
    {
        const kept_sample &sample = kept_sample_of(row);
        batch.expected.flags[row] = batch.source.flag(row);
        batch.expected.texts[row] = {sample.bytes, sample.kept_pad_len};
        if (batch.how.selected == selection::none)
            batch.calls.push_back(allocates(batch.target.column(), static_cast<int32_t>(sample.bytes.size())));
        else
            batch.calls.push_back(copies_row(batch.source.column(), batch.target.column(), row));
    }

    static int32_t run(text_rows &batch, failure_record *record = nullptr)
    {
        return call(GetParam(), {.src = batch.source.sealed(),
                                 .dst = batch.target.column(),
                                 .rows = batch.rows,
                                 .length = varbinary_length,
                                 .err_codes = record ? record->codes() : nullptr,
                                 .err_count = record ? record->count() : nullptr});
    }
};

TEST_P(binary_to_varbinary, bytes_are_kept_and_pad_len_as_far_as_there_is_room)
{
    constexpr uint8_t flags[] = {1, 0x80, 1, 0, 0xFF};
    for (const setup &how : all_setups()) {
        for (const int32_t mode : {0, 2}) {
            SCOPED_TRACE("mode " + std::to_string(mode) + ", " + describe(how));
            services().reset();
            const settings these(mode);
            text_rows batch(how, 100, sizeof(bdta3_str));
            for (uint32_t row = 0; row < 100; row++) {
                if (flags[row % std::size(flags)] == 0) {
                    batch.set_null(row);
                    batch.expected.flags[row] = 0;
                } else {
                    set(batch, row, flags[row % std::size(flags)]);
                    expect_kept(batch, row);
                }
            }
            batch.expected.no_null = how.no_null;
            batch.expect(run(batch), 0);
        }
    }
}

TEST_P(binary_to_varbinary, a_value_that_is_too_long_is_refused)
{
    for (const setup &how : all_setups()) {
        for (const bool capture : {false, true}) {
            SCOPED_TRACE((capture ? "captured, " : "") + describe(how));
            services().reset();
            text_rows batch(how, 5, sizeof(bdta3_str));
            for (uint32_t row = 0; row < 5; row++) {
                if (row == 2) {
                    batch.set_text(row, 0x80, "\xAB\0\0\0\0\0\0\0\0"s, 0);
                    batch.expected.flags[row] = 0;
                } else {
                    set(batch, row, 1);
                    if (row < 2 || capture)
                        expect_kept(batch, row);
                }
            }
            failure_record record(5, 7);
            if (capture)
                batch.expected.no_null = how.no_null;
            batch.expect(run(batch, capture ? &record : nullptr), ERR_TRUNCATED);
            EXPECT_TRUE(
                record.hold(capture ? std::map<uint32_t, int32_t>{{2, ERR_TRUNCATED}} : std::map<uint32_t, int32_t>{}));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_varbinary,
                         testing::Values(&bcast_binary_to_varbinary, &bcast_varbinary_to_varbinary),
                         [](const auto &each) { return each.index == 0 ? "binary"s : "varbinary"s; });

} // namespace
} // namespace bcast::test
