// Characters to characters of another length: nine casts that refuse a text too long, two that cut it. They differ in
// what becomes of the blanks that are only counted; each against its own line of the table below.

#include "tests/character/text_rows.h"
#include "tests/support/settings.h"

#include <bcast/codes.h>

#include <algorithm>
#include <limits>

#include <sys/wait.h>

namespace bcast::test {
namespace {

constexpr int32_t least = std::numeric_limits<int32_t>::min();
constexpr int32_t greatest = std::numeric_limits<int32_t>::max();

enum class too_long { refused, cut };
enum class padding { rest_of_length, kept_and_clipped };

struct rule {
    const char *name;
    any_cast cast;
    too_long policy;
    padding pad;

    bool refuses() const { return policy == too_long::refused; }

    // Whether rows are copied by the source column; otherwise the cast takes space and copies itself.
    bool copies_rows(const setup &how) const
    {
        return refuses() && (pad == padding::rest_of_length || how.selected != selection::none);
    }

    int32_t pad_len(const bdta3_str &from, int32_t length) const
    {
        // Text and blanks are added up in 32 bits.
        const auto sum = static_cast<int32_t>(static_cast<uint32_t>(from.pad_len) + static_cast<uint32_t>(from.length));
        return pad == padding::kept_and_clipped && sum <= length ? from.pad_len : length - from.length;
    }
};

void PrintTo(const rule &r, std::ostream *out) { *out << r.name; }

#define NAMED(cast) #cast, &cast
const rule rules[] = {
    {NAMED(bcast_varchar_to_char), too_long::refused, padding::rest_of_length},
    {NAMED(bcast_char_to_char), too_long::refused, padding::rest_of_length},
    {NAMED(bcast_char_to_varchar2), too_long::refused, padding::rest_of_length},
    {NAMED(bcast_varchar_to_varchar2), too_long::refused, padding::rest_of_length},
    {NAMED(bcast_varchar2_to_char), too_long::refused, padding::rest_of_length},
    {NAMED(bcast_varchar2_to_varchar2), too_long::refused, padding::rest_of_length},
    {NAMED(bcast_varchar_to_varchar), too_long::refused, padding::kept_and_clipped},
    {NAMED(bcast_char_to_varchar), too_long::refused, padding::kept_and_clipped},
    {NAMED(bcast_varchar2_to_varchar), too_long::refused, padding::kept_and_clipped},
    {NAMED(bcast_varchar_to_char_explicit), too_long::cut, padding::rest_of_length},
    {NAMED(bcast_varchar_to_varchar_explicit), too_long::cut, padding::kept_and_clipped},
};
#undef NAMED

std::string bytes_of(const bdta3_str &element) { return bytes_at(element.text, element.length); }

struct length_batch : text_rows {
    length_batch(const rule &of, const setup &given, uint32_t row_count, int32_t target_length)
        : text_rows(given, row_count, sizeof(bdta3_str)), r(of), length(target_length)
    {
        if (!r.refuses())
            expected.no_null = how.no_null;
    }

    const rule &r;
    int32_t length;

    // Behind a walk that ran to its end.
    void expect_end()
    {
        if (r.refuses())
            expected.no_null = how.no_null;
    }

    void expect_flag(uint32_t row) { expected.flags[row] = source.flag(row); }

    void expect_space(uint32_t row, std::string text, int32_t pad_len)
    {
        expect_flag(row);
        calls.push_back(allocates(target.column(), static_cast<int32_t>(text.size())));
        expected.texts[row] = {std::move(text), pad_len};
    }

    // The text fits.
    void expect_stored(uint32_t row)
    {
        const bdta3_str from = element(row);
        if (!r.copies_rows(how))
            return expect_space(row, bytes_of(from), r.pad_len(from, length));
        expect_flag(row);
        expect_copy_call(row);
        expected.texts[row] = {bytes_of(from), r.pad_len(from, length)};
    }

    void expect_copy_call(uint32_t row) { calls.push_back(copies_row(source.column(), target.column(), row)); }

    // The text does not fit.
    void expect_refused(uint32_t row) { expected.flags[row] = 0; }

    void expect_measured(uint32_t row, int32_t charset = 10)
    {
        calls.push_back(measures_characters(element(row), length, charset));
    }

    void run(int32_t status, int32_t *err_codes = nullptr,
             uint16_t *err_count = static_cast<uint16_t *>(inaccessible()))
    {
        expect(call(r.cast, {.src = source.sealed(),
                             .dst = target.column(),
                             .rows = rows,
                             .length = length,
                             .err_codes = err_codes,
                             .err_count = err_count}),
               status);
    }
};

class character_length : public testing::TestWithParam<rule> {
protected:
    void SetUp() override { services().reset(); }
};

const std::vector<std::string> &short_texts()
{
    using namespace std::string_literals;
    static const std::vector<std::string> texts{"abcde", "", "a", "x  ", "\0\xFF\0"s, "     ", "12345"};
    return texts;
}

int32_t some_pad_len(uint32_t row)
{
    constexpr int32_t pad_lens[] = {0, 1, 9, -3, 2, 4, 1000, 5, 3, greatest, least};
    return pad_lens[row % std::size(pad_lens)];
}

TEST_P(character_length, rows_are_stored_and_null_rows_left_out)
{
    const rule &r = GetParam();
    constexpr uint8_t flags[] = {1, 0, 2, 0x80, 0, 0xFF, 1, 1};
    shared_texts texts(short_texts());
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 30U, 1025U}) {
            for (const bool capture : {false, true}) {
                SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
                services().reset();
                length_batch batch(r, how, rows, 5);
                for (uint32_t row = 0; row < rows; row++) {
                    if (const uint8_t flag = flags[row % std::size(flags)]; flag != 0) {
                        batch.source.set(row, flag, texts.element(row, some_pad_len(row)));
                        batch.expect_stored(row);
                    } else {
                        batch.set_element(row, 0, 6, static_cast<char *>(inaccessible()));
                        batch.expect_flag(row);
                    }
                }
                batch.expect_end();
                failure_record record(rows, 9);
                batch.run(0, capture ? record.codes() : nullptr,
                          capture ? record.count() : static_cast<uint16_t *>(inaccessible()));
                EXPECT_TRUE(record.hold({}));
            }
        }
    }
}

TEST_P(character_length, of_null_rows_no_element_is_read)
{
    for (const setup &how : all_setups()) {
        SCOPED_TRACE(describe(how));
        length_batch batch(GetParam(), how, 1030, 5);
        for (uint32_t row = 0; row < 1030; row++) {
            batch.set_null(row);
            batch.expect_flag(row);
        }
        batch.expect_end();
        batch.source.hide_values();
        batch.run(0);
    }
}

TEST_P(character_length, the_largest_batch)
{
    shared_texts texts(short_texts());
    for (const setup &how : {few_setups()[0], few_setups()[2]}) {
        services().reset();
        length_batch batch(GetParam(), how, 65535, 7);
        for (uint32_t row = 0; row < 65535; row++) {
            batch.source.set(row, row % 3 == 1 ? 0 : 1, texts.element(row, 1));
            if (row % 3 == 1)
                batch.expect_flag(row);
            else
                batch.expect_stored(row);
        }
        batch.expect_end();
        batch.run(0);
    }
}

TEST_P(character_length, only_the_low_16_bits_of_rows_count)
{
    for (const setup &how : few_setups()) {
        for (const uint32_t rows : {0U, 1U}) {
            services().reset();
            length_batch batch(GetParam(), how, rows, 7);
            if (rows == 1) {
                batch.set_text(0, 1, "abc", 2);
                batch.expect_stored(0);
            }
            batch.expect_end();
            const call_arguments with{batch.source.sealed(), batch.target.column(), 0x10000 + rows, 7};
            batch.expect(call_with_wide_rows(GetParam().cast, with), 0);
        }
    }
}

TEST_P(character_length, counted_blanks_are_those_of_the_rule)
{
    for (const setup &how : few_setups()) {
        for (const uint32_t size : {0U, 1U, 3U, 5U}) {
            const auto stored = static_cast<int32_t>(size);
            for (const int32_t length :
                 {stored, stored + 1, stored + 2, 10, 32767, 32768, 65535, 65536, 0x10005, greatest}) {
                const int32_t rest = length - stored;
                const int32_t pad_lens[] = {
                    0,  1,     2,       9, rest - 1, rest, static_cast<int32_t>(static_cast<uint32_t>(rest) + 1),
                    -1, least, greatest};
                services().reset();
                length_batch batch(GetParam(), how, std::size(pad_lens), length);
                for (uint32_t row = 0; row < std::size(pad_lens); row++) {
                    batch.set_text(row, 1, std::string(size, 'y'), pad_lens[row]);
                    batch.expect_stored(row);
                }
                batch.expect_end();
                SCOPED_TRACE("text of " + std::to_string(size) + " bytes, length " + std::to_string(length) + ", " +
                             describe(how));
                batch.run(0);
            }
        }
    }
}

TEST_P(character_length, a_text_beyond_16_bits_is_stored_whole)
{
    for (const setup &how : few_setups()) {
        services().reset();
        length_batch batch(GetParam(), how, 2, 65536 + 3);
        for (const uint32_t row : {0U, 1U}) {
            batch.set_text(row, 1, std::string(65536 + 2 + row, static_cast<char>('a' + row)), 8);
            batch.expect_stored(row);
        }
        batch.expect_end();
        batch.run(0);
    }
}

INSTANTIATE_TEST_SUITE_P(casts, character_length, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Refused: the plain forms ---------------------------------------------------------

class refused_length : public character_length {};

TEST_P(refused_length, the_first_text_too_long_stops)
{
    const uint32_t rows = 1024 + 40;
    shared_texts texts(short_texts());
    for (const setup &how : few_setups()) {
        for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, 1025U, rows - 1}) {
            SCOPED_TRACE("failing row " + std::to_string(failing_row) + ", " + describe(how));
            services().reset();
            length_batch batch(GetParam(), how, rows, 5);
            for (uint32_t row = 0; row < rows; row++) {
                if (row == failing_row) {
                    batch.set_element(row, 0x80, 6, static_cast<char *>(inaccessible()));
                    batch.expect_refused(row);
                } else if (row == failing_row + 1) {
                    batch.set_element(row, 1, greatest, static_cast<char *>(inaccessible()));
                } else if (row % 5 == 2) {
                    batch.set_null(row);
                    if (row < failing_row)
                        batch.expect_flag(row);
                } else {
                    batch.source.set(row, 4, texts.element(row, some_pad_len(row)));
                    if (row < failing_row)
                        batch.expect_stored(row);
                }
            }
            batch.run(ERR_TRUNCATED);
        }
    }
}

TEST_P(refused_length, a_stop_leaves_no_null_as_it_was)
{
    for (const setup &how : all_setups()) {
        services().reset();
        length_batch batch(GetParam(), how, 3, 4);
        batch.set_text(0, 1, "abcd", 7);
        batch.expect_stored(0);
        batch.set_text(1, 1, "abcde", 0);
        batch.expect_refused(1);
        batch.set_text(2, 1, "abc", 7);
        batch.run(ERR_TRUNCATED);
    }
}

TEST_P(refused_length, a_stored_blank_too_many_is_refused_and_counted_ones_are_not)
{
    for (const setup &how : few_setups()) {
        services().reset();
        length_batch batch(GetParam(), how, 2, 3);
        batch.set_text(0, 1, "abc", 30000);
        batch.expect_stored(0);
        batch.set_text(1, 1, "abc ", 0);
        batch.expect_refused(1);
        batch.run(ERR_TRUNCATED);
    }
}

TEST_P(refused_length, both_lengths_are_compared_whole_and_signed)
{
    struct lengths {
        int32_t text, target;
    };
    constexpr lengths refused[] = {{65536 + 3, 5}, {65536, 0},     {greatest, 5},         {greatest, greatest - 1},
                                   {1, 0},         {0, -1},        {3, -65536 + 8},       {5, least},
                                   {0, least},     {-1, -2},       {greatest, least},     {0x7FFF0001, 5},
                                   {65536, 65535}, {256 + 1, 256}, {0x10000 + 5, 0x10000}};
    for (const setup &how : few_setups()) {
        for (const auto &[text, target] : refused) {
            SCOPED_TRACE("text of " + std::to_string(text) + " bytes, length " + std::to_string(target) + ", " +
                         describe(how));
            services().reset();
            length_batch batch(GetParam(), how, 1, target);
            batch.set_element(0, 1, text, static_cast<char *>(inaccessible()));
            batch.expect_refused(0);
            batch.run(ERR_TRUNCATED);
        }
    }
}

// A length word below 0 is below every target length; only where the source column copies can that be shown.
TEST_P(refused_length, a_length_word_below_zero_fits)
{
    for (const setup &how : few_setups()) {
        if (!GetParam().copies_rows(how))
            continue;
        services().reset();
        length_batch batch(GetParam(), how, 1, 5);
        batch.set_element(0, 1, -1, static_cast<char *>(inaccessible()), 9);
        batch.expect_copy_call(0);
        EXPECT_EQ(call(GetParam().cast, {batch.source.sealed(), batch.target.column(), 1, 5}), 0);
        EXPECT_TRUE(services().logged(batch.calls));
        bdta3_str held;
        std::memcpy(&held, batch.target.column()->data->values, sizeof held);
        EXPECT_EQ(held.length, -1);
        EXPECT_EQ(held.pad_len, 6);
    }
}

TEST_P(refused_length, failures_are_captured_by_row_of_the_batch)
{
    const uint32_t rows = 2100;
    shared_texts texts(short_texts());
    std::map<uint32_t, int32_t> failing;
    for (const uint32_t row : {0U, 1U, 600U, 1023U, 1024U, 1025U, 1500U, 2048U, 2090U})
        failing[row] = ERR_TRUNCATED;
    for (const setup &how : all_setups()) {
        SCOPED_TRACE(describe(how));
        services().reset();
        length_batch batch(GetParam(), how, rows, 5);
        for (uint32_t row = 0; row < rows; row++) {
            if (failing.contains(row)) {
                batch.set_element(row, 0x80, 6 + static_cast<int32_t>(row), static_cast<char *>(inaccessible()));
                batch.expect_refused(row);
            } else if (row % 5 == 2) {
                batch.set_null(row);
                batch.expect_flag(row);
            } else {
                batch.source.set(row, 4, texts.element(row, some_pad_len(row)));
                batch.expect_stored(row);
            }
        }
        batch.expect_end();
        failure_record record(rows, 7);
        batch.run(ERR_TRUNCATED, record.codes(), record.count());
        EXPECT_TRUE(record.hold(failing));
    }
}

TEST_P(refused_length, every_row_may_fail)
{
    for (const setup &how : few_setups()) {
        services().reset();
        length_batch batch(GetParam(), how, 3, 0);
        for (uint32_t row = 0; row < 3; row++) {
            batch.set_text(row, 1, " ");
            batch.expect_refused(row);
        }
        batch.expect_end();
        failure_record record(3);
        batch.run(ERR_TRUNCATED, record.codes(), record.count());
        EXPECT_TRUE(record.hold({{0, ERR_TRUNCATED}, {1, ERR_TRUNCATED}, {2, ERR_TRUNCATED}}));
    }
}

TEST_P(refused_length, the_counter_goes_on_and_wraps_at_16_bits)
{
    length_batch batch(GetParam(), few_setups()[1], 3, 2);
    for (uint32_t row = 0; row < 3; row++) {
        batch.set_text(row, 1, "abc");
        batch.expect_refused(row);
    }
    batch.expect_end();
    failure_record record(3, 65534);
    batch.run(ERR_TRUNCATED, record.codes(), record.count());
    EXPECT_TRUE(record.hold({{0, ERR_TRUNCATED}, {1, ERR_TRUNCATED}, {2, ERR_TRUNCATED}}));
    EXPECT_EQ(*record.count(), 1);
}

// The code stops the cast although failures are captured; the row keeps its flag, and what copy_row left of it.
TEST_P(refused_length, a_failing_copy_ends_the_cast_in_any_case)
{
    const uint32_t rows = 1024 + 40;
    shared_texts texts(short_texts());
    for (const setup &how : all_setups()) {
        if (!GetParam().copies_rows(how))
            continue;
        for (const uint32_t failing_row : {0U, 1U, 3U, 600U, 1023U, 1024U, rows - 1}) {
            for (const bool capture : {false, true}) {
                SCOPED_TRACE("row " + std::to_string(failing_row) + ", " + describe(how));
                const int32_t code = failing_row % 2 == 0 ? -503 : least;
                services().reset();
                services().answer("copy_row", std::to_string(failing_row), code);
                length_batch batch(GetParam(), how, rows, 5);
                std::map<uint32_t, int32_t> captured;
                for (uint32_t row = 0; row < rows; row++) {
                    if (capture && row % 5 == 2) {
                        batch.set_element(row, 1, 6, static_cast<char *>(inaccessible()));
                        if (row < failing_row) {
                            batch.expect_refused(row);
                            captured[row] = ERR_TRUNCATED;
                        }
                        continue;
                    }
                    batch.source.set(row, 9, texts.element(row, some_pad_len(row)));
                    if (row < failing_row)
                        batch.expect_stored(row);
                }
                batch.expect_flag(failing_row);
                batch.expect_copy_call(failing_row);
                batch.expected.put(failing_row, failed_copy);
                failure_record record(rows, 5);
                batch.run(code, capture ? record.codes() : nullptr,
                          capture ? record.count() : static_cast<uint16_t *>(inaccessible()));
                EXPECT_TRUE(record.hold(captured));
            }
        }
    }
}

TEST_P(refused_length, codes_of_copy_row_pass_through_and_results_above_zero_are_successes)
{
    for (const setup &how : few_setups()) {
        if (!GetParam().copies_rows(how))
            continue;
        for (const int32_t result : {-1, -503, ERR_TRUNCATED + 0, least, 1, greatest}) {
            services().reset();
            services().fail_call(0, result);
            length_batch batch(GetParam(), how, 1, 5);
            batch.set_text(0, 1, "abc");
            if (result > 0) {
                batch.expect_stored(0);
                batch.expect_end();
            } else {
                batch.expect_flag(0);
                batch.expect_copy_call(0);
                batch.expected.put(0, failed_copy);
            }
            batch.run(std::min(result, 0));
        }
    }
}

std::vector<rule> rules_that(too_long policy)
{
    std::vector<rule> some;
    std::ranges::copy_if(rules, std::back_inserter(some), [&](const rule &r) { return r.policy == policy; });
    return some;
}

INSTANTIATE_TEST_SUITE_P(casts, refused_length, testing::ValuesIn(rules_that(too_long::refused)),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- To varchar without sel: the cast takes space itself --------------------------------

class varchar_without_sel : public character_length {};

TEST_P(varchar_without_sel, no_space_for_an_empty_text_is_no_failure)
{
    length_batch batch(GetParam(), few_setups().front(), 2, 5);
    services().fail_call(0, -1); // null, as space for no bytes may be
    batch.set_text(0, 1, "", 2);
    batch.expect_stored(0);
    batch.set_text(1, 1, "abc", 1);
    batch.expect_stored(1);
    batch.expect_end();
    batch.run(0);
}

// What comes of it is open, and a fault is likely; but the cast does not look for it.
TEST_P(varchar_without_sel, no_space_for_a_text_is_not_reported)
{
    constexpr int reported = 77;
    const auto call_without_space = [] {
        services().fail_call(0, -1);
        length_batch batch(GetParam(), few_setups().front(), 1, 5);
        batch.set_text(0, 1, "abc", 2);
        const int32_t status = call(GetParam().cast, {batch.source.sealed(), batch.target.column(), 1, 5});
        std::_Exit(status < 0 ? reported : 0);
    };
    const auto is_something_else = [](int status) { return !WIFEXITED(status) || WEXITSTATUS(status) != reported; };
    EXPECT_EXIT(call_without_space(), is_something_else, "");
}

std::vector<rule> rules_to_varchar()
{
    std::vector<rule> some;
    std::ranges::copy_if(rules, std::back_inserter(some),
                         [](const rule &r) { return r.refuses() && r.pad == padding::kept_and_clipped; });
    return some;
}

INSTANTIATE_TEST_SUITE_P(casts, varchar_without_sel, testing::ValuesIn(rules_to_varchar()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Cut: the explicit forms ------------------------------------------------------------

// What is cut, by what the character set says; both forms alike.
struct cut {
    std::string text;
    int32_t length;
    uint32_t whole; // bytes within length that are whole characters
    std::string stored;
    int32_t pad_len;
};

const std::vector<cut> &cuts()
{
    using namespace std::string_literals;
    static const std::vector<cut> all{
        {"ab  cd", 4, 4, "ab", 2},
        {"abcdef", 4, 4, "abcd", 0},
        {"abcde", 4, 4, "abcd", 0},
        {"abc ", 3, 3, "abc", 0},
        {"ab  ", 3, 3, "ab", 1},
        {" ab", 2, 2, " a", 0},
        {" a b ", 4, 4, " a b", 0},
        {" a  b", 4, 4, " a", 2},
        {"          ", 3, 3, "", 3},
        {"          ", 9, 9, "", 9},
        {"  ", 1, 1, "", 1},
        {"\xE2\x82\xAC\xC3\xA4", 4, 3, "\xE2\x82\xAC", 0}, // a character straddles the limit
        {"\xE2\x82\xAC  \xC3\xA4", 6, 5, "\xE2\x82\xAC", 2},
        {"   \xE2\x82\xAC", 5, 3, "", 3},
        {"a  \xE2\x82\xAC", 5, 3, "a", 2}, // one blank less than the target has room for
        {"abc   xyz", 8, 5, "abc", 2},     // the text goes on with a blank
        {"abcdef", 5, 1, "a", 0},
        {"ab\t\txx", 4, 4, "ab\t\t", 0}, // only the byte 0x20 is a blank
        {"ab\0 xx"s, 4, 4, "ab\0"s, 1},
        {"ab\xA0\xA0xx", 4, 4, "ab\xA0\xA0", 0},
        {"ab\n xx", 4, 4, "ab\n", 1},
        {"ab\x1F\x21xx", 4, 4, "ab\x1F\x21", 0},
        {std::string(70000, 'z'), 65540, 65540, std::string(65540, 'z'), 0},
        {std::string(70000, ' '), 65541, 65541, "", 65541},
        {"y"s.append(70000, ' '), 66000, 65999, "y", 65998},
    };
    return all;
}

class cut_length : public character_length {
protected:
    // Every text is cut to what this says of the bytes within the limit.
    static void measure_as(uint32_t whole)
    {
        services().character.whole_characters = [whole](std::string_view) { return whole; };
    }
};

TEST_P(cut_length, texts_are_cut_and_blanks_at_their_end_counted)
{
    for (const int32_t mode : {0, 2, 3}) {
        const settings set(mode);
        for (const setup &how : all_setups()) {
            for (const cut &c : cuts()) {
                for (const guard_edge edge : {guard_edge::start, guard_edge::end}) {
                    SCOPED_TRACE(c.text.substr(0, 40) + ", cut to " + std::to_string(c.length) + ", " + describe(how));
                    services().reset();
                    measure_as(c.whole);
                    length_batch batch(GetParam(), how, 1, c.length);
                    batch.set_text(0, 0x81, c.text, 7, edge);
                    batch.expect_measured(0);
                    batch.expect_space(0, c.stored, c.pad_len);
                    batch.run(0);
                }
            }
        }
    }
}

TEST_P(cut_length, rows_that_fit_and_rows_that_are_cut_and_null_rows)
{
    const uint32_t rows = 2060;
    shared_texts texts({"abcdef", "ab", "abc  d", "", "      ", "abcde", "  abc ", "x"});
    const std::map<std::string, std::pair<std::string, int32_t>> cut_ones{
        {"abcdef", {"abcde", 0}}, {"abc  d", {"abc", 2}}, {"      ", {"", 5}}, {"  abc ", {"  abc", 0}}};
    for (const setup &how : all_setups()) {
        SCOPED_TRACE(describe(how));
        services().reset();
        length_batch batch(GetParam(), how, rows, 5);
        for (uint32_t row = 0; row < rows; row++) {
            if (row % 7 == 3) {
                batch.set_null(row);
                batch.expect_flag(row);
                continue;
            }
            batch.source.set(row, static_cast<uint8_t>(1 + row % 255), texts.element(row, some_pad_len(row)));
            if (const auto found = cut_ones.find(texts.text(row)); found != cut_ones.end()) {
                batch.expect_measured(row);
                batch.expect_space(row, found->second.first, found->second.second);
            } else {
                batch.expect_stored(row);
            }
        }
        batch.run(0);
    }
}

TEST_P(cut_length, a_text_that_fits_is_not_measured_and_keeps_its_blanks)
{
    for (const setup &how : few_setups()) {
        services().reset();
        measure_as(0);
        length_batch batch(GetParam(), how, 4, 5);
        uint32_t row = 0;
        for (const char *text : {"abc  ", "     ", " ", "ab "}) {
            batch.set_text(row, 1, text, 1);
            batch.expect_stored(row++);
        }
        batch.run(0);
    }
}

TEST_P(cut_length, compat_mode2_picks_the_character_set)
{
    const std::pair<int32_t, int32_t> sets[] = {
        {0, 10},   {1, 1},    {2, 6},    {3, 10},     {6, 10},     {10, 10},    {-1, 10},        {-2, 10},
        {256, 10}, {257, 10}, {258, 10}, {65537, 10}, {65538, 10}, {least, 10}, {least + 1, 10}, {greatest, 10}};
    for (const int32_t mode : {0, 1, 2}) {
        for (const auto &[mode2, charset] : sets) {
            for (const setup &how : few_setups()) {
                SCOPED_TRACE("compat_mode2 " + std::to_string(mode2));
                services().reset();
                const settings set(mode, mode2);
                length_batch batch(GetParam(), how, 2, 2);
                for (const uint32_t row : {0U, 1U}) {
                    batch.set_text(row, 1, "abc");
                    batch.expect_measured(row, charset);
                    batch.expect_space(row, "ab", 0);
                }
                batch.run(0);
            }
        }
    }
}

TEST_P(cut_length, without_a_whole_character_the_row_is_null_in_mode_2_and_else_empty)
{
    for (const int32_t mode : {0, 1, 2, 3, -2, 258, 65538, least, greatest, least + 2}) {
        for (const setup &how : all_setups()) {
            for (const uint32_t empty_row : {0U, 1U, 4U}) {
                SCOPED_TRACE("compat_mode " + std::to_string(mode) + ", row " + std::to_string(empty_row) + ", " +
                             describe(how));
                services().reset();
                services().character.whole_characters = [](std::string_view text) {
                    return text.starts_with('\xE2') ? 0 : static_cast<uint32_t>(text.size());
                };
                const settings set(mode);
                length_batch batch(GetParam(), how, 5, 2);
                for (uint32_t row = 0; row < 5; row++) {
                    batch.set_text(row, 0x82, row == empty_row ? "\xE2\x82\xAC" : "ab cd", 6);
                    batch.expect_measured(row);
                    if (row != empty_row) {
                        batch.expect_space(row, "ab", 0);
                    } else if (mode == 2) {
                        batch.expected.flags[row] = 0;
                        batch.expected.no_null = 0;
                    } else {
                        batch.expect_space(row, "", 0);
                    }
                }
                batch.run(0);
            }
        }
    }
}

// The length is compared signed, and 0 and below have room for no character.
TEST_P(cut_length, a_target_of_no_bytes_or_fewer)
{
    for (const int32_t mode : {0, 2}) {
        for (const int32_t length : {0, -1, -65536 + 8, least}) {
            for (const setup &how : few_setups()) {
                SCOPED_TRACE("length " + std::to_string(length) + ", compat_mode " + std::to_string(mode));
                services().reset();
                const settings set(mode);
                length_batch batch(GetParam(), how, 2, length);
                batch.set_text(0, 1, "  ", 3);
                batch.set_text(1, 1, "abc", 3);
                for (const uint32_t row : {0U, 1U}) {
                    batch.expect_measured(row);
                    if (mode != 2)
                        batch.expect_space(row, "", 0);
                    else
                        batch.expected.flags[row] = 0;
                }
                if (mode == 2)
                    batch.expected.no_null = 0;
                batch.run(0);
            }
        }
    }
}

TEST_P(cut_length, an_empty_text_is_longer_than_a_length_below_zero)
{
    length_batch batch(GetParam(), few_setups().front(), 1, -1);
    batch.set_text(0, 1, "", 3);
    batch.expect_measured(0);
    batch.expect_space(0, "", 0);
    batch.run(0);
}

TEST_P(cut_length, both_settings_are_read_before_the_first_row)
{
    for (const setup &how : few_setups()) {
        services().reset();
        const settings set(2, 1);
        services().character.whole_characters = [](std::string_view) {
            bcast_dll_var_init(0, 2);
            return 0U;
        };
        length_batch batch(GetParam(), how, 2, 1);
        for (const uint32_t row : {0U, 1U}) {
            batch.set_text(row, 1, "abc");
            batch.expect_measured(row, 1);
            batch.expected.flags[row] = 0;
        }
        batch.expected.no_null = 0;
        batch.run(0);
    }
}

// The element holds both lengths by then, and no text.
TEST_P(cut_length, no_space_stops)
{
    const uint32_t rows = 1024 + 40;
    struct shape {
        const char *text;
        int32_t space;
        int32_t char_pad, varchar_pad;
    };
    constexpr shape shapes[] = {{"abc", 3, 2, 1}, {"abcde", 5, 0, 0}, {"abcdef", 5, 0, 0}, {"abc   ", 3, 2, 2}};
    for (const setup &how : all_setups()) {
        for (const shape &s : shapes) {
            for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, rows - 1}) {
                SCOPED_TRACE(std::string("\"") + s.text + "\" in row " + std::to_string(failing_row) + ", " +
                             describe(how));
                services().reset();
                services().answer("bdta3_col_space_alloc", std::to_string(s.space), -1);
                shared_texts texts({"", "a", "xy", "zzzz"});
                length_batch batch(GetParam(), how, rows, 5);
                for (uint32_t row = 0; row < rows; row++) {
                    batch.source.set(row, 4, texts.element(row, 1));
                    if (row < failing_row)
                        batch.expect_stored(row);
                }
                batch.set_text(failing_row, 0x83, s.text, 1);
                batch.expect_flag(failing_row);
                if (batch.element(failing_row).length > 5)
                    batch.expect_measured(failing_row);
                batch.calls.push_back(allocates(batch.target.column(), s.space));
                const bool to_char = GetParam().pad == padding::rest_of_length;
                batch.expected.put(failing_row, bdta3_str{s.space, to_char ? s.char_pad : s.varchar_pad, nullptr});
                batch.run(ERR_NO_MEMORY);
            }
        }
    }
}

TEST_P(cut_length, no_space_behind_a_row_that_turned_null_leaves_no_null_clear)
{
    for (const setup &how : all_setups()) {
        services().reset();
        const settings set(2);
        measure_as(0);
        services().answer("bdta3_col_space_alloc", "3", -1);
        length_batch batch(GetParam(), how, 3, 5);
        batch.set_text(0, 1, "abcdef");
        batch.expect_measured(0);
        batch.expected.flags[0] = 0;
        batch.expected.no_null = 0;
        batch.set_text(1, 1, "abc", 0);
        batch.expect_flag(1);
        batch.calls.push_back(allocates(batch.target.column(), 3));
        batch.expected.put(1, bdta3_str{3, GetParam().pad == padding::rest_of_length ? 2 : 0, nullptr});
        batch.set_text(2, 1, "abc");
        batch.run(ERR_NO_MEMORY);
    }
}

TEST_P(cut_length, no_space_for_no_bytes_is_no_failure)
{
    for (const setup &how : few_setups()) {
        services().reset();
        services().character.whole_characters = [](std::string_view text) { return text[0] == ' ' ? 3U : 0U; };
        services().answer("bdta3_col_space_alloc", "0", -1);
        length_batch batch(GetParam(), how, 4, 3);
        batch.set_text(0, 1, "", 2);
        batch.expect_stored(0);
        batch.set_text(1, 1, "    ", 2);
        batch.expect_measured(1);
        batch.expect_space(1, "", 3);
        batch.set_text(2, 1, "abcd", 2);
        batch.expect_measured(2);
        batch.expect_space(2, "", 0);
        batch.set_text(3, 1, "xyz", 0);
        batch.expect_stored(3);
        batch.run(0);
    }
}

INSTANTIATE_TEST_SUITE_P(casts, cut_length, testing::ValuesIn(rules_that(too_long::cut)),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- What stands out ----------------------------------------------------------------------

TEST(character_length_by_hand, one_table_line_for_each_cast)
{
    EXPECT_EQ(std::size(rules), 11U);
    EXPECT_EQ(rules_that(too_long::refused).size(), 9U);
    EXPECT_EQ(rules_to_varchar().size(), 3U);
}

int32_t pad_len_of_one(any_cast cast, int32_t length, std::string_view text, int32_t pad_len)
{
    services().reset();
    std::string bytes(text);
    source_column source(sizeof(bdta3_str), 1, few_setups().front());
    source.set(0, 1, bdta3_str{static_cast<int32_t>(bytes.size()), pad_len, bytes.data()});
    target_column target(sizeof(bdta3_str), 1);
    EXPECT_EQ(call(cast, {source.sealed(), target.column(), 1, length}), 0);
    bdta3_str held;
    std::memcpy(&held, target.column()->data->values, sizeof held);
    EXPECT_EQ(bytes_of(held), text);
    return held.pad_len;
}

TEST(character_length_by_hand, counted_blanks)
{
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_char, 5, "abc", 9), 2);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_char, 5, "abc", 1), 2);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_varchar, 5, "abc", 9), 2);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_varchar, 5, "abc", 1), 1);
    EXPECT_EQ(pad_len_of_one(&bcast_char_to_varchar2, 5, "abc", 1), 2);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar2_to_varchar, 5, "abc", 1), 1);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_char, 3, "abc", 9), 0);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_varchar, 3, "abc", 9), 0);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_char, 10, "", 0), 10);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_varchar, 10, "", 4), 4);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_char_explicit, 5, "abc", 1), 2);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_varchar_explicit, 5, "abc", 1), 1);
    EXPECT_EQ(pad_len_of_one(&bcast_varchar_to_varchar_explicit, 5, "abc", 3), 2);
}

} // namespace
} // namespace bcast::test
