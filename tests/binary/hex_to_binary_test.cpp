// Hexadecimal text to binary and varbinary: four casts under twelve names. They differ in what becomes of a value that
// is longer or shorter than the target, and of an empty text; each name against its own line of the table below.

#include "tests/character/text_rows.h"
#include "tests/support/settings.h"

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

struct rule {
    const char *name;
    bcast_length_capture_fn *cast;
    shorter when_shorter;
    longer when_longer;

    bool to_binary() const { return when_shorter == shorter::filled; }
    bool refuses(const std::string &bytes, int32_t length) const
    {
        return when_longer == longer::refused && static_cast<int32_t>(bytes.size()) > length;
    }
    std::string stored(std::string bytes, int32_t length) const
    {
        const auto size = static_cast<size_t>(length);
        if (bytes.size() > size || to_binary())
            bytes.resize(size, '\0');
        return bytes;
    }
};

void PrintTo(const rule &r, std::ostream *out) { *out << r.name; }

using enum shorter;
using enum longer;

#define NAMED(cast) #cast, cast
constexpr rule rules[] = {
    {NAMED(bcast_hex_varchar_to_binary), filled, refused},  {NAMED(bcast_hex_varchar_to_binary_explicit), filled, cut},
    {NAMED(bcast_hex_varchar_to_varbinary), kept, refused}, {NAMED(bcast_hex_varchar_to_varbinary_explicit), kept, cut},
    {NAMED(bcast_hex_char_to_binary), filled, refused},     {NAMED(bcast_varchar_to_binary), filled, refused},
    {NAMED(bcast_char_to_binary), filled, refused},         {NAMED(bcast_varchar2_to_binary), filled, refused},
    {NAMED(bcast_hex_char_to_varbinary), kept, refused},    {NAMED(bcast_varchar_to_varbinary), kept, refused},
    {NAMED(bcast_char_to_varbinary), kept, refused},        {NAMED(bcast_varchar2_to_varbinary), kept, refused},
};
#undef NAMED

struct hex_rows : text_rows {
    const rule &r;
    int32_t length;
    std::map<uint32_t, int32_t> failures = {};

    hex_rows(const rule &of, const setup &given, uint32_t row_count, int32_t target_length)
        : text_rows(given, row_count, sizeof(bdta3_str)), r(of), length(target_length)
    {
        expected.no_null = how.no_null;
    }

    void expect_null(uint32_t row) { expected.flags[row] = 0; }

    // The row's text is decoded to these bytes, and they are stored or refused.
    void expect_decoded(uint32_t row, int32_t has_prefix, const std::string &bytes)
    {
        if (r.refuses(bytes, length)) {
            expect_failure(row, has_prefix, ERR_TRUNCATED);
            return;
        }
        expected.flags[row] = source.flag(row);
        expected.texts[row] = {r.stored(bytes, length), 0};
        calls.push_back(decodes(element(row), has_prefix));
        calls.push_back(assigns_bytes(target.column(), row, r.stored(bytes, length)));
    }

    // The row fails behind the decoding.
    void expect_failure(uint32_t row, int32_t has_prefix, int32_t code)
    {
        expected.flags[row] = 0;
        calls.push_back(decodes(element(row), has_prefix));
        failures[row] = code;
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
    void expect_stop() { expect(run(nullptr, static_cast<uint16_t *>(inaccessible())), last_code()); }
    void expect_success()
    {
        ASSERT_TRUE(failures.empty());
        expect(run(), 0);
    }
    void expect_capture(uint16_t count_before = 0)
    {
        failure_record record(rows, count_before);
        expect(run(record.codes(), record.count()), last_code());
        EXPECT_TRUE(record.hold(failures));
    }

    int32_t last_code() const { return failures.empty() ? 0 : failures.rbegin()->second; }
};

struct sample {
    std::string text;
    int32_t has_prefix;
    std::string bytes;
};

// None decodes to more than 6 bytes. A long value stands ahead of short ones, for fillings that keep some of it.
const sample samples[] = {
    {"0xFEFDFCFBFAF9", 1, "\xFE\xFD\xFC\xFB\xFA\xF9"},
    {"AB", 0, "\xAB"},
    {"", 0, ""},
    {"0xab", 1, "\xAB"},
    {"ab", 0, "\xAB"},
    {"0XAABB", 1, "\xAA\xBB"},
    {"0x", 1, ""},
    {"000000", 0, "\0\0\0"s},
    {"0X", 1, ""},
    {"0xff00", 1, "\xFF\0"s},
};

const sample &sample_of(uint32_t row) { return samples[row % std::size(samples)]; }

shared_texts texts_of_samples()
{
    std::vector<std::string> texts;
    for (const sample &s : samples)
        texts.push_back(s.text);
    return shared_texts(texts);
}

class hex_to_binary : public testing::TestWithParam<rule> {
protected:
    void SetUp() override { services().reset(); }

    shared_texts texts_ = texts_of_samples();
};

TEST_P(hex_to_binary, rows_are_decoded_and_null_rows_left_out)
{
    constexpr uint8_t flags[] = {1, 0, 2, 0x80, 0, 0xFF, 1};
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 30U, 1023U, 1025U}) {
            for (const int32_t length : {6, 9}) {
                SCOPED_TRACE(std::to_string(rows) + " rows, length " + std::to_string(length) + ", " + describe(how));
                services().reset();
                hex_rows batch(GetParam(), how, rows, length);
                for (uint32_t row = 0; row < rows; row++) {
                    const uint8_t flag = flags[row % std::size(flags)];
                    if (flag == 0) {
                        batch.set_null(row);
                        batch.expect_null(row);
                    } else {
                        batch.source.set(row, flag, texts_.element(row));
                        batch.expect_decoded(row, sample_of(row).has_prefix, sample_of(row).bytes);
                    }
                }
                batch.expect_success();
            }
        }
    }
}

TEST_P(hex_to_binary, batches_of_null_rows_only_decode_nothing)
{
    for (const setup &how : all_setups()) {
        services().reset();
        hex_rows batch(GetParam(), how, 1030, 4);
        for (uint32_t row = 0; row < 1030; row++) {
            batch.set_element(row, 0, 0, nullptr); // an empty text, which a null row is not asked for
            batch.expect_null(row);
        }
        const settings empty_is_null(2);
        batch.expect_success();
    }
}

TEST_P(hex_to_binary, the_largest_batch)
{
    hex_rows batch(GetParam(), few_setups()[2], 65535, 8);
    for (uint32_t row = 0; row < 65535; row++) {
        if (row % 3 == 0) {
            batch.source.set(row, 1, texts_.element(row));
            batch.expect_decoded(row, sample_of(row).has_prefix, sample_of(row).bytes);
        } else {
            batch.set_null(row);
            batch.expect_null(row);
        }
    }
    batch.expect_success();
}

TEST_P(hex_to_binary, only_the_low_16_bits_of_rows_count)
{
    for (const uint32_t rows : {0U, 1U}) {
        services().reset();
        hex_rows batch(GetParam(), few_setups().front(), rows, 2);
        if (rows == 1) {
            batch.set_text(0, 1, "0x17");
            batch.expect_decoded(0, 1, "\x17");
        }
        batch.expect(call_with_wide_rows(batch.r.cast, {.src = batch.source.sealed(),
                                                        .dst = batch.target.column(),
                                                        .rows = 0x10000 + rows,
                                                        .length = batch.length}),
                     0);
    }
}

TEST_P(hex_to_binary, the_pad_len_of_the_source_is_not_looked_at)
{
    for (const int32_t pad_len : {0, 1, 7, int32_greatest, -1}) {
        services().reset();
        hex_rows batch(GetParam(), few_setups().front(), 1, 3);
        batch.set_text(0, 1, "A1B2", pad_len);
        batch.expect_decoded(0, 0, "\xA1\xB2");
        batch.expect_success();
    }
}

// ---- The prefix ---------------------------------------------------------------------

TEST_P(hex_to_binary, a_prefix_is_the_digit_0_and_the_letter_x_in_either_case)
{
    std::vector<std::string> texts;
    for (int byte = 0; byte < 256; byte++)
        for (const char *rest : {"", "1", "12"}) {
            texts.push_back("0"s + static_cast<char>(byte) + rest);
            texts.push_back(static_cast<char>(byte) + "x"s + rest);
            texts.push_back(static_cast<char>(byte) + "X"s + rest);
        }
    const auto rows = static_cast<uint32_t>(texts.size());
    hex_rows batch(GetParam(), few_setups().front(), rows, 4);
    for (uint32_t row = 0; row < rows; row++) {
        const std::string &text = texts[row];
        services().binary.decoded[text] = "\x55\x66";
        batch.set_text(row, 1, text);
        batch.expect_decoded(row, text.starts_with("0x") || text.starts_with("0X"), "\x55\x66");
    }
    batch.expect_success();
}

// Where the second byte would stand nothing can be read.
TEST_P(hex_to_binary, a_text_of_one_byte_has_no_prefix)
{
    for (const char *text : {"0", "x", "7"}) {
        services().reset();
        services().binary.decoded[text] = "\x07";
        hex_rows batch(GetParam(), few_setups().front(), 1, 2);
        batch.set_text(0, 1, text);
        batch.expect_decoded(0, 0, "\x07");
        batch.expect_success();
    }
}

TEST_P(hex_to_binary, the_letter_behind_a_text_of_one_byte_is_no_prefix)
{
    std::string text = "0x11";
    services().binary.decoded["0"] = "";
    hex_rows batch(GetParam(), few_setups().front(), 1, 2);
    batch.set_element(0, 1, 1, text.data());
    batch.expect_decoded(0, 0, "");
    batch.expect_success();
}

TEST_P(hex_to_binary, an_empty_text_goes_to_the_service_and_is_not_looked_into)
{
    for (const std::string bytes : {"", "\x0A\x0B"}) {
        services().reset();
        services().binary.decoded[""] = bytes;
        hex_rows batch(GetParam(), few_setups().front(), 1, 3);
        batch.set_element(0, 0x7F, 0, static_cast<char *>(inaccessible()));
        batch.expect_decoded(0, 0, bytes);
        batch.expect_success();
    }
}

TEST_P(hex_to_binary, the_length_word_of_the_source_is_unsigned)
{
    std::string with_prefix = "0x", without = "12";
    for (const int32_t word : {-1, int32_least, -65536, int32_greatest}) {
        for (const bool prefix : {false, true}) {
            SCOPED_TRACE("length word " + std::to_string(word) + (prefix ? ", prefix" : ", no prefix"));
            services().reset();
            services().fail_call(0, -77); // such a text is not really there
            hex_rows batch(GetParam(), few_setups().front(), 1, 3);
            batch.set_element(0, 1, word, prefix ? with_prefix.data() : without.data());
            batch.expect_failure(0, prefix, -77);
            batch.expect_stop();
        }
    }
}

// ---- The target's length ------------------------------------------------------------

TEST_P(hex_to_binary, values_and_targets_of_every_small_length)
{
    const std::string longest = "\xF1\xF2\xF3\xF4\xF5\xF6\xF7\xF8"s + std::string(60, '\xEE');
    for (const setup &how : few_setups()) {
        for (int32_t length = 0; length <= 66; length++) {
            SCOPED_TRACE("length " + std::to_string(length) + ", " + describe(how));
            services().reset();
            hex_rows batch(GetParam(), how, 69, length);
            for (uint32_t row = 0; row < 69; row++) {
                const std::string bytes = longest.substr(0, 68 - row);
                batch.set_text(row, 1, digits_of(bytes));
                batch.expect_decoded(row, 0, bytes);
            }
            batch.expect_capture();
        }
    }
}

TEST_P(hex_to_binary, large_values)
{
    std::string bytes(NBIN_MAX, '\xEE');
    for (size_t k = 0; k < bytes.size(); k += 3)
        bytes[k] = static_cast<char>(k);
    for (const size_t size : {size_t{1023}, size_t{1024}, size_t{32766}, size_t{32767}, size_t{32768}}) {
        for (const int32_t length : {0, 1023, 1024, 32766, 32767, 32768}) {
            for (const char *prefix : {"", "0x"}) {
                SCOPED_TRACE(std::to_string(size) + " bytes, length " + std::to_string(length));
                services().reset();
                hex_rows batch(GetParam(), few_setups().front(), 3, length);
                const std::string value = bytes.substr(0, size);
                batch.set_text(0, 1, prefix + digits_of(value));
                batch.expect_decoded(0, *prefix != 0, value);
                batch.set_text(1, 1, "");
                batch.expect_decoded(1, 0, "");
                batch.set_text(2, 1, "0x77");
                batch.expect_decoded(2, 1, "\x77");
                batch.expect_capture();
            }
        }
    }
}

TEST_P(hex_to_binary, the_length_is_signed_and_all_its_bits_count)
{
    const rule &r = GetParam();
    if (!r.to_binary()) {
        for (const int32_t length : {0x10000, 0x10001, 0x7FFF0000, int32_greatest}) {
            services().reset();
            hex_rows batch(r, few_setups().front(), 1, length);
            batch.set_text(0, 1, "0x1122");
            batch.expect_decoded(0, 1, "\x11\x22");
            batch.expect_success();
        }
    }
    for (const int32_t length : {-1, -0x10000 + 8, int32_least, int32_least + 8}) {
        for (const char *text : {"", "1122"}) {
            SCOPED_TRACE(std::string("text \"") + text + "\", length " + std::to_string(length));
            services().reset();
            hex_rows batch(r, few_setups().front(), 1, length);
            batch.set_text(0, 1, text);
            if (r.when_longer == refused) {
                batch.expect_failure(0, 0, ERR_TRUNCATED);
                batch.expect_stop();
                continue;
            }
            // A cut to less than nothing is handed on as it is.
            EXPECT_EQ(batch.run(), 0);
            ASSERT_EQ(services().log().size(), 2U);
            EXPECT_EQ(services().log().back().service, "bdta3_col_assign_bin");
            EXPECT_EQ(services().log().back().length, length);
        }
    }
}

// No copy is made of what is to be stored as it was decoded, or only the front of it.
TEST_P(hex_to_binary, a_value_that_needs_no_filling_is_stored_from_where_it_was_decoded)
{
    const rule &r = GetParam();
    for (const int32_t length : {1, 2, 3}) {
        services().reset();
        hex_rows batch(r, few_setups().front(), 1, length);
        batch.set_text(0, 1, "1122");
        batch.expect_decoded(0, 0, "\x11\x22");
        if (!batch.failures.empty() || (r.to_binary() && length > 2))
            continue;
        batch.expect_success();
        EXPECT_EQ(services().binary.assigned_from, services().binary.decoded_to) << "length " << length;
    }
}

// ---- Failures -----------------------------------------------------------------------

TEST_P(hex_to_binary, the_first_failure_stops)
{
    const uint32_t rows = 1024 + 40;
    for (const setup &how : few_setups()) {
        for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, rows - 1}) {
            for (const bool too_long : {false, true}) {
                if (too_long && GetParam().when_longer == cut)
                    continue;
                SCOPED_TRACE("failing row " + std::to_string(failing_row) + (too_long ? ", too long, " : ", ") +
                             describe(how));
                services().reset();
                services().answer("nbin_from_char_ex", "0xno", -4321);
                hex_rows batch(GetParam(), how, rows, 6);
                for (uint32_t row = 0; row < rows; row++) {
                    if (row == failing_row && too_long) {
                        batch.set_text(row, 0x80, "11223344556677");
                        batch.expect_decoded(row, 0, "\x11\x22\x33\x44\x55\x66\x77");
                    } else if (row == failing_row) {
                        batch.set_text(row, 0x80, "0xno");
                        batch.expect_failure(row, 1, -4321);
                    } else if (row == failing_row + 1) {
                        batch.set_text(row, 1, "nor this"); // would fail too
                    } else if (row % 5 == 2) {
                        batch.set_null(row);
                        if (row < failing_row)
                            batch.expect_null(row);
                    } else {
                        batch.source.set(row, 4, texts_.element(row));
                        if (row < failing_row)
                            batch.expect_decoded(row, sample_of(row).has_prefix, sample_of(row).bytes);
                    }
                }
                batch.expect_stop();
            }
        }
    }
}

TEST_P(hex_to_binary, codes_of_the_service_pass_through)
{
    for (const int32_t code : {-1, -503, -6108, -6111, int32_least}) {
        services().reset();
        services().fail_call(0, code);
        hex_rows stopped(GetParam(), few_setups().front(), 1, 4);
        stopped.set_text(0, 1, "12");
        stopped.expect_failure(0, 0, code);
        stopped.expect_stop();

        services().reset();
        services().fail_call(0, code);
        hex_rows captured(GetParam(), few_setups().front(), 1, 4);
        captured.set_text(0, 1, "12");
        captured.expect_failure(0, 0, code);
        captured.expect_capture();
    }
}

TEST_P(hex_to_binary, results_above_zero_are_successes)
{
    services().answer("nbin_from_char_ex", "12", 1);
    services().answer("nbin_from_char_ex", "0x34", int32_greatest);
    hex_rows batch(GetParam(), few_setups().front(), 2, 1);
    batch.set_text(0, 1, "12");
    batch.expect_decoded(0, 0, "\x12");
    batch.set_text(1, 1, "0x34");
    batch.expect_decoded(1, 1, "\x34");
    batch.expect_success();
}

TEST_P(hex_to_binary, failures_are_captured_by_row_of_the_batch)
{
    const uint32_t rows = 2100;
    const std::map<uint32_t, int32_t> refused_by_service{{0, -1},    {1, -503},     {600, -6111},
                                                         {1024, -8}, {2048, -6108}, {2098, -12}};
    for (const setup &how : all_setups()) {
        for (const uint32_t too_long_row : {2U, 1023U, rows - 1}) {
            SCOPED_TRACE("too long row " + std::to_string(too_long_row) + ", " + describe(how));
            services().reset();
            hex_rows batch(GetParam(), how, rows, 6);
            for (uint32_t row = 0; row < rows; row++) {
                if (const auto refusal = refused_by_service.find(row); refusal != refused_by_service.end()) {
                    const std::string text = "0X bad " + std::to_string(row);
                    services().answer("nbin_from_char_ex", text, refusal->second);
                    batch.set_text(row, 0x80, text);
                    batch.expect_failure(row, 1, refusal->second);
                } else if (row == too_long_row) {
                    batch.set_text(row, 0x81, "AABBCCDDEEFF99");
                    batch.expect_decoded(row, 0, "\xAA\xBB\xCC\xDD\xEE\xFF\x99");
                } else if (row % 5 == 2) {
                    batch.set_null(row);
                    batch.expect_null(row);
                } else {
                    batch.source.set(row, 4, texts_.element(row));
                    batch.expect_decoded(row, sample_of(row).has_prefix, sample_of(row).bytes);
                }
            }
            batch.expect_capture(9);
        }
    }
}

TEST_P(hex_to_binary, the_counter_wraps_at_16_bits)
{
    hex_rows batch(GetParam(), few_setups().front(), 5, 6);
    for (uint32_t row = 0; row < 5; row++) {
        batch.set_text(row, 1, "no" + std::to_string(row));
        services().answer("nbin_from_char_ex", "no" + std::to_string(row), -100 - static_cast<int32_t>(row));
        batch.expect_failure(row, 0, -100 - static_cast<int32_t>(row));
    }
    batch.expect_capture(65533);
}

TEST_P(hex_to_binary, capture_without_a_failure_returns_0)
{
    for (const setup &how : few_setups()) {
        services().reset();
        hex_rows batch(GetParam(), how, 20, 6);
        for (uint32_t row = 0; row < 20; row++) {
            batch.source.set(row, 1, texts_.element(row));
            batch.expect_decoded(row, sample_of(row).has_prefix, sample_of(row).bytes);
        }
        batch.expect_capture(3);
    }
}

INSTANTIATE_TEST_SUITE_P(casts, hex_to_binary, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Empty text and the settings ------------------------------------------------------

class hex_to_binary_settings : public hex_to_binary {
protected:
    static constexpr uint32_t empty_rows[] = {0, 3, 1023, 1024, 1029};
};

TEST_P(hex_to_binary_settings, in_mode_2_an_empty_text_is_null_in_varbinary_and_clears_no_null)
{
    const settings empty_is_null(2);
    for (const setup &how : all_setups()) {
        for (const uint32_t empty_row : empty_rows) {
            SCOPED_TRACE("empty row " + std::to_string(empty_row) + ", " + describe(how));
            services().reset();
            hex_rows batch(GetParam(), how, 1030, 5);
            for (uint32_t row = 0; row < 1030; row++) {
                if (row == empty_row) {
                    batch.set_element(row, 0x81, 0, static_cast<char *>(inaccessible()));
                    if (batch.r.to_binary()) {
                        batch.expect_decoded(row, 0, "");
                    } else {
                        batch.expect_null(row);
                        batch.expected.no_null = 0;
                    }
                } else {
                    batch.source.set(row, 1, texts_.element(1));
                    batch.expect_decoded(row, 0, "\xAB");
                }
            }
            batch.expect_success();
        }
    }
}

// Ahead of the comparison with the length, which an empty value does not fit.
TEST_P(hex_to_binary_settings, in_mode_2_an_empty_text_is_null_in_varbinary_whatever_the_length)
{
    const rule &r = GetParam();
    if (r.to_binary())
        return; // knows no such rule: see the test above
    const settings empty_is_null(2);
    for (const int32_t length : {0, -1, int32_least}) {
        services().reset();
        hex_rows batch(r, few_setups()[1], 1, length);
        batch.set_text(0, 1, "");
        batch.expect_null(0);
        batch.expected.no_null = 0;
        batch.expect_success();
    }
}

TEST_P(hex_to_binary_settings, in_any_other_mode_an_empty_text_is_an_empty_value)
{
    for (const int32_t mode : {0, 1, 3, -2, 4, 0x10002, int32_least}) {
        for (const setup &how : few_setups()) {
            SCOPED_TRACE("mode " + std::to_string(mode) + ", " + describe(how));
            services().reset();
            const settings other(mode, 2);
            hex_rows batch(GetParam(), how, 2, 3);
            for (uint32_t row = 0; row < 2; row++) {
                batch.set_text(row, 1, "");
                batch.expect_decoded(row, 0, "");
            }
            batch.expect_success();
        }
    }
}

// A text that decodes to nothing is not empty.
TEST_P(hex_to_binary_settings, in_mode_2_a_prefix_alone_is_an_empty_value)
{
    const settings empty_is_null(2);
    hex_rows batch(GetParam(), few_setups()[1], 1, 3);
    batch.set_text(0, 1, "0x");
    batch.expect_decoded(0, 1, "");
    batch.expect_success();
}

TEST_P(hex_to_binary_settings, in_mode_2_a_captured_failure_leaves_no_null)
{
    const settings empty_is_null(2);
    services().answer("nbin_from_char_ex", "no", -9);
    hex_rows batch(GetParam(), few_setups()[1], 3, 3);
    batch.set_text(0, 1, "11");
    batch.expect_decoded(0, 0, "\x11");
    batch.set_text(1, 1, "no");
    batch.expect_failure(1, 0, -9);
    batch.set_text(2, 1, "22");
    batch.expect_decoded(2, 0, "\x22");
    batch.expect_capture();
}

TEST_P(hex_to_binary_settings, a_failure_behind_an_empty_text_leaves_no_null_as_the_walk_has_it)
{
    const settings empty_is_null(2);
    for (const bool capture : {false, true}) {
        services().reset();
        services().answer("nbin_from_char_ex", "no", -9);
        hex_rows batch(GetParam(), few_setups()[1], 3, 3);
        batch.set_text(0, 1, "");
        if (batch.r.to_binary()) {
            batch.expect_decoded(0, 0, "");
        } else {
            batch.expect_null(0);
            batch.expected.no_null = 0;
        }
        batch.set_text(1, 1, "no");
        batch.expect_failure(1, 0, -9);
        batch.set_text(2, 1, "33");
        if (capture) {
            batch.expect_decoded(2, 0, "\x33");
            batch.expect_capture();
        } else {
            batch.expect_stop();
        }
    }
}

TEST_P(hex_to_binary_settings, are_read_when_the_cast_starts)
{
    for (const int32_t mode : {0, 2}) {
        services().reset();
        services().binary.on_decode = [&] { bcast_dll_var_init(2 - mode, 0); };
        const settings at_start(mode);
        hex_rows batch(GetParam(), few_setups()[1], 2, 3);
        batch.set_text(0, 1, "44");
        batch.expect_decoded(0, 0, "\x44");
        batch.set_text(1, 1, "");
        if (batch.r.to_binary() || mode != 2) {
            batch.expect_decoded(1, 0, "");
        } else {
            batch.expect_null(1);
            batch.expected.no_null = 0;
        }
        batch.expect_success();
    }
}

INSTANTIATE_TEST_SUITE_P(casts, hex_to_binary_settings, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Examples -------------------------------------------------------------------------

struct example {
    bcast_length_capture_fn *cast;
    int32_t length;
    std::string text;
    std::string bytes;
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
    };
    for (const example &e : examples) {
        services().reset();
        text_rows batch(few_setups().front(), 1, sizeof(bdta3_str));
        batch.set_text(0, 1, e.text);
        EXPECT_EQ(
            call(e.cast, {.src = batch.source.sealed(), .dst = batch.target.column(), .rows = 1, .length = e.length}),
            0);
        EXPECT_EQ(services().log().back().bytes, e.bytes) << e.text << ", length " << e.length;
    }
    services().reset();
    text_rows batch(few_setups().front(), 1, sizeof(bdta3_str));
    batch.set_text(0, 1, "AABB");
    EXPECT_EQ(call(bcast_hex_varchar_to_binary,
                   {.src = batch.source.sealed(), .dst = batch.target.column(), .rows = 1, .length = 1}),
              ERR_TRUNCATED);
}

} // namespace
} // namespace bcast::test
