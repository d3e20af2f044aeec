// The integers in decimal: twelve casts to char, varchar and varchar2, four to text. They differ in who writes the
// digits, what they say of a text that is too long, and in pad_len; each against its own line of the tables below.

#include "tests/support/batch.h"
#include "tests/support/call.h"
#include "tests/support/service_double.h"

#include <algorithm>
#include <limits>
#include <random>

namespace bcast::test {
namespace {

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int32_t int32_greatest = std::numeric_limits<int32_t>::max();
constexpr int64_t int64_least = std::numeric_limits<int64_t>::min();

constexpr int32_t refusal_of_double = -9149; // str_from_int of the double, for a text longer than its limit

void set(source_column &source, size_t source_bytes, uint32_t row, uint8_t flag, int64_t value)
{
    if (source_bytes == 8)
        source.set(row, flag, value);
    else
        source.set(row, flag, static_cast<int32_t>(value));
}

int64_t value_of(const source_column &source, size_t source_bytes, uint32_t row)
{
    return source_bytes == 8 ? source.element<int64_t>(row) : source.element<int32_t>(row);
}

// One to digits digits, or fewer and a sign; another value for most rows.
int64_t value_of_up_to(uint32_t digits, uint32_t row)
{
    int64_t value = 7 + row % 3;
    for (uint32_t digit = 1; digit < 1 + row % digits; digit++)
        value = value * 10 + (row + digit) % 10;
    return row % 4 == 3 ? -(value / 10) : value;
}

// Around every power of ten and of two, and random ones of every size; of both signs.
std::vector<int64_t> values_of_every_size(size_t source_bytes)
{
    const auto held = [&](uint64_t value) {
        return source_bytes == 8 ? static_cast<int64_t>(value) : int64_t{static_cast<int32_t>(value)};
    };
    std::vector<uint64_t> sizes;
    for (uint64_t power = 1; power <= 1000000000000000000; power *= 10)
        sizes.push_back(power);
    for (int bit = 0; bit < 64; bit++)
        sizes.push_back(uint64_t{1} << bit);
    std::mt19937_64 random(20240802);
    for (int i = 0; i < 1500; i++)
        sizes.push_back(random() >> i % 64);

    std::vector<int64_t> values;
    for (const uint64_t size : sizes)
        for (const uint64_t value : {size - 1, size, size + 1})
            values.insert(values.end(), {held(value), held(0 - value)});
    return values;
}

// ---- To characters -----------------------------------------------------------

enum class digits_by { str_from_int, the_cast };
enum class pad { rest_of_length, nothing };

struct character_rule {
    const char *name;
    bcast_length_fn *cast;
    size_t source_bytes;
    digits_by route;
    pad padding;

    int32_t code_of_too_long() const { return route == digits_by::the_cast ? ERR_TARGET_TOO_SHORT : refusal_of_double; }
    int32_t pad_len(int32_t length, const std::string &text) const
    {
        return padding == pad::rest_of_length ? length - static_cast<int32_t>(text.size()) : 0;
    }
};

void PrintTo(const character_rule &r, std::ostream *out) { *out << r.name; }

#define NAMED(cast) #cast, cast
constexpr character_rule character_rules[] = {
    {NAMED(bcast_int_to_char), 4, digits_by::str_from_int, pad::rest_of_length},
    {NAMED(bcast_int_to_varchar), 4, digits_by::str_from_int, pad::nothing},
    {NAMED(bcast_int_to_varchar2), 4, digits_by::str_from_int, pad::rest_of_length},
    {NAMED(bcast_smallint_to_char), 4, digits_by::str_from_int, pad::rest_of_length},
    {NAMED(bcast_smallint_to_varchar), 4, digits_by::str_from_int, pad::nothing},
    {NAMED(bcast_smallint_to_varchar2), 4, digits_by::str_from_int, pad::rest_of_length},
    {NAMED(bcast_tinyint_to_char), 4, digits_by::the_cast, pad::rest_of_length},
    {NAMED(bcast_tinyint_to_varchar), 4, digits_by::the_cast, pad::nothing},
    {NAMED(bcast_tinyint_to_varchar2), 4, digits_by::the_cast, pad::rest_of_length},
    {NAMED(bcast_int64_to_char), 8, digits_by::the_cast, pad::rest_of_length},
    {NAMED(bcast_int64_to_varchar), 8, digits_by::the_cast, pad::nothing},
    {NAMED(bcast_int64_to_varchar2), 8, digits_by::the_cast, pad::rest_of_length},
};

// What the cast is to do with rows first to last - 1, all of which it can convert.
void expect_rows(const character_rule &r, const source_column &source, int32_t length, bdta3_col *column,
                 uint32_t first, uint32_t last, target_image &expected, std::vector<service_call> &calls)
{
    for (uint32_t row = first; row < last; row++) {
        expected.flags[row] = source.flag(row);
        if (source.flag(row) == 0)
            continue;
        const int64_t value = value_of(source, r.source_bytes, row);
        const std::string text = std::to_string(value);
        if (r.route == digits_by::str_from_int)
            calls.push_back(formats(static_cast<int32_t>(value), length));
        calls.push_back(assigns_text(column, row, text, r.pad_len(length, text)));
        expected.texts[row] = {text, r.pad_len(length, text)};
    }
}

class integer_to_character : public testing::TestWithParam<character_rule> {
protected:
    static void expect_success(const character_rule &r, source_column &source, const setup &how, int32_t length,
                               uint32_t rows)
    {
        SCOPED_TRACE(std::to_string(rows) + " rows, length " + std::to_string(length) + ", " + describe(how));
        services().reset();
        target_column target(sizeof(bdta3_str), rows, how);
        target_image expected = target.image();
        std::vector<service_call> calls;
        expect_rows(r, source, length, target.column(), 0, rows, expected, calls);
        expected.no_null = how.no_null;
        EXPECT_EQ(call(r.cast, {.src = source.sealed(), .dst = target.column(), .rows = rows, .length = length}), 0);
        EXPECT_TRUE(target.holds(expected));
        EXPECT_TRUE(services().logged(calls));
    }

    // Row failing_row fails with that code; its value is in source already.
    static void expect_stop(const character_rule &r, source_column &source, const setup &how, int32_t length,
                            uint32_t rows, uint32_t failing_row, int32_t code)
    {
        SCOPED_TRACE(std::to_string(rows) + " rows, failing row " + std::to_string(failing_row) + ", length " +
                     std::to_string(length) + ", " + describe(how));
        target_column target(sizeof(bdta3_str), rows, how);
        target_image expected = target.image();
        std::vector<service_call> calls;
        expect_rows(r, source, length, target.column(), 0, failing_row, expected, calls);
        expected.flags[failing_row] = 0;
        expected.no_null = how.no_null;
        if (r.route == digits_by::str_from_int)
            calls.push_back(formats(static_cast<int32_t>(value_of(source, r.source_bytes, failing_row)), length));
        EXPECT_EQ(call(r.cast, {.src = source.sealed(), .dst = target.column(), .rows = rows, .length = length}), code);
        EXPECT_TRUE(target.holds(expected));
        EXPECT_TRUE(services().logged(calls));
    }
};

TEST_P(integer_to_character, rows_are_formatted_and_null_rows_left_out)
{
    const character_rule &r = GetParam();
    constexpr uint8_t flags[] = {1, 0, 2, 0x80, 0, 0xFF, 1};
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 30U, 1025U}) {
            source_column source(r.source_bytes, rows, how);
            for (uint32_t row = 0; row < rows; row++)
                set(source, r.source_bytes, row, flags[row % std::size(flags)], value_of_up_to(9, row));
            expect_success(r, source, how, 12, rows);
        }
    }
}

TEST_P(integer_to_character, null_rows_are_not_looked_at)
{
    const character_rule &r = GetParam();
    for (const setup &how : all_setups()) {
        const uint32_t rows = 1100;
        source_column source(r.source_bytes, rows, how);
        for (uint32_t row = 0; row < rows; row++)
            set(source, r.source_bytes, row, 0, int32_least); // far longer than the target
        expect_success(r, source, how, 2, rows);
    }
}

TEST_P(integer_to_character, the_largest_batch)
{
    const character_rule &r = GetParam();
    const setup &how = few_setups()[2];
    const uint32_t rows = 65535;
    source_column source(r.source_bytes, rows, how);
    for (uint32_t row = 0; row < rows; row++)
        set(source, r.source_bytes, row, row % 3 == 0 ? 1 : 0, value_of_up_to(9, row));
    expect_success(r, source, how, 10, rows);
}

TEST_P(integer_to_character, only_the_low_16_bits_of_rows_count)
{
    const character_rule &r = GetParam();
    for (const uint32_t rows : {0U, 1U}) {
        services().reset();
        source_column source(r.source_bytes, rows, few_setups().front());
        if (rows == 1)
            set(source, r.source_bytes, 0, 1, 12);
        target_column target(sizeof(bdta3_str), rows);
        target_image expected = target.image();
        std::vector<service_call> calls;
        expect_rows(r, source, 5, target.column(), 0, rows, expected, calls);
        expected.no_null = 0;
        EXPECT_EQ(call_with_wide_rows(r.cast, {source.sealed(), target.column(), 0x10000 + rows, 5}), 0);
        EXPECT_TRUE(target.holds(expected));
        EXPECT_TRUE(services().logged(calls));
    }
}

// Whatever the slot holds is formatted: a tinyint's or smallint's range plays no part.
TEST_P(integer_to_character, every_value_of_the_slot)
{
    const character_rule &r = GetParam();
    std::vector<int64_t> values{0,   -1,    1,     9,      10,      -9,      -10,         127,           -128,
                                128, 32767, 32768, -32769, 1000000, -100000, int32_least, int32_greatest};
    if (r.source_bytes == 8)
        for (const int64_t wide : {int64_t{1} << 32, -(int64_t{1} << 40), int64_least, -(int64_least + 1)})
            values.push_back(wide);
    const auto rows = static_cast<uint32_t>(values.size());
    for (const setup &how : few_setups()) {
        source_column source(r.source_bytes, rows, how);
        for (uint32_t row = 0; row < rows; row++)
            set(source, r.source_bytes, row, 1, values[row]);
        expect_success(r, source, how, 20, rows);
    }
}

TEST_P(integer_to_character, values_of_every_size_are_formatted)
{
    const character_rule &r = GetParam();
    const setup &how = few_setups().front();
    const std::vector<int64_t> values = values_of_every_size(r.source_bytes);
    const auto rows = static_cast<uint32_t>(values.size());
    source_column source(r.source_bytes, rows, how);
    for (uint32_t row = 0; row < rows; row++)
        set(source, r.source_bytes, row, 1, values[row]);
    expect_success(r, source, how, 20, rows);
}

TEST_P(integer_to_character, text_of_exactly_length_bytes_fits)
{
    const character_rule &r = GetParam();
    for (const int64_t value : {int64_t{5}, int64_t{-5}, int64_t{100}, int64_t{int32_least}}) {
        const auto size = static_cast<int32_t>(std::to_string(value).size());
        for (const int32_t length : {size, size + 1}) {
            source_column source(r.source_bytes, 1, few_setups().front());
            set(source, r.source_bytes, 0, 1, value);
            expect_success(r, source, few_setups().front(), length, 1);
        }
        services().reset();
        source_column source(r.source_bytes, 1, few_setups().front());
        set(source, r.source_bytes, 0, 1, value);
        expect_stop(r, source, few_setups().front(), size - 1, 1, 0, r.code_of_too_long());
    }
}

TEST_P(integer_to_character, all_32_bits_of_length_count)
{
    const character_rule &r = GetParam();
    const setup &how = few_setups().front();
    for (const int32_t length : {0x10005, 0x10000, 0x7FFF0001, int32_greatest}) {
        source_column source(r.source_bytes, 1, how);
        set(source, r.source_bytes, 0, 1, 12);
        expect_success(r, source, how, length, 1);
    }
    for (const int32_t length : {0, -1, -65531, -0x10000 + 8, int32_least, int32_least + 9}) {
        services().reset();
        source_column source(r.source_bytes, 2, how);
        set(source, r.source_bytes, 0, 0, 7);
        set(source, r.source_bytes, 1, 1, 7);
        expect_stop(r, source, how, length, 2, 1, r.code_of_too_long());
    }
}

TEST_P(integer_to_character, stop_clears_the_flag_and_leaves_rows_behind_untouched)
{
    const character_rule &r = GetParam();
    const uint32_t rows = 1024 + 40;
    for (const setup &how : few_setups()) {
        for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, 1025U, rows - 1}) {
            services().reset();
            source_column source(r.source_bytes, rows, how);
            for (uint32_t row = 0; row < rows; row++)
                set(source, r.source_bytes, row, row % 5 == 2 ? 0 : 4,
                    row % 5 == 2 ? int32_least : value_of_up_to(3, row));
            set(source, r.source_bytes, failing_row, 0x80, 1234);
            if (failing_row + 1 < rows)
                set(source, r.source_bytes, failing_row + 1, 1, -99999); // would fail too
            expect_stop(r, source, how, 3, rows, failing_row, r.code_of_too_long());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, integer_to_character, testing::ValuesIn(character_rules),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- To characters, by str_from_int ---------------------------------------------

class integer_to_character_by_service : public integer_to_character {};

TEST_P(integer_to_character_by_service, the_code_of_the_service_is_the_result)
{
    const character_rule &r = GetParam();
    for (const setup &how : few_setups()) {
        for (const int32_t code : {-1, -6102, -6149, int32_least}) {
            services().reset();
            services().answer("str_from_int", "55", code);
            source_column source(r.source_bytes, 4, how);
            for (uint32_t row = 0; row < 4; row++)
                set(source, r.source_bytes, row, 1, row == 2 ? 55 : 6);
            expect_stop(r, source, how, 10, 4, 2, code);
        }
    }
}

TEST_P(integer_to_character_by_service, each_call_may_fail)
{
    const character_rule &r = GetParam();
    for (uint32_t failing_row = 0; failing_row < 6; failing_row++) {
        services().reset();
        services().fail_call(failing_row, -700);
        source_column source(r.source_bytes, 6, few_setups().back());
        for (uint32_t row = 0; row < 6; row++)
            set(source, r.source_bytes, row, 1, row);
        expect_stop(r, source, few_setups().back(), 10, 6, failing_row, -700);
    }
}

// The service judges the length: text and length that it has passed are taken without another look.
TEST_P(integer_to_character_by_service, what_the_service_wrote_is_stored_without_a_test)
{
    const character_rule &r = GetParam();
    for (const int32_t length : {9, 1, 0, -5}) {
        services().reset();
        services().answer("str_from_int", "12", 3); // positive: a success
        services().spell(12, "a dozen");
        services().answer("str_from_int", "0", int32_greatest);
        services().spell(0, "");
        source_column source(r.source_bytes, 2, few_setups().front());
        set(source, r.source_bytes, 0, 1, 12);
        set(source, r.source_bytes, 1, 1, 0);
        target_column target(sizeof(bdta3_str), 2);
        target_image expected = target.image();
        expected.flags = {1, 1};
        expected.no_null = 0;
        expected.texts[0] = {"a dozen", r.pad_len(length, "a dozen")};
        expected.texts[1] = {"", r.pad_len(length, "")};
        EXPECT_EQ(call(r.cast, {.src = source.sealed(), .dst = target.column(), .rows = 2, .length = length}), 0);
        EXPECT_TRUE(target.holds(expected));
        EXPECT_TRUE(services().logged(
            {formats(12, length), assigns_text(target.column(), 0, "a dozen", r.pad_len(length, "a dozen")),
             formats(0, length), assigns_text(target.column(), 1, "", r.pad_len(length, ""))}));
    }
}

std::vector<character_rule> rules_by_service()
{
    std::vector<character_rule> by_service;
    std::ranges::copy_if(character_rules, std::back_inserter(by_service),
                         [](const character_rule &r) { return r.route == digits_by::str_from_int; });
    return by_service;
}

INSTANTIATE_TEST_SUITE_P(casts, integer_to_character_by_service, testing::ValuesIn(rules_by_service()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- To text ------------------------------------------------------------------

struct text_rule {
    const char *name;
    bcast_capture_fn *cast;
    size_t source_bytes;
};

void PrintTo(const text_rule &r, std::ostream *out) { *out << r.name; }

constexpr text_rule text_rules[] = {
    {NAMED(bcast_int_to_text), 4},
    {NAMED(bcast_smallint_to_text), 4},
    {NAMED(bcast_tinyint_to_text), 4},
    {NAMED(bcast_int64_to_text), 8},
};
#undef NAMED

// A batch to text whose rows fail by value: the double is told which.
struct text_batch {
    const text_rule &r;
    const setup &how;
    uint32_t rows;
    source_column source{r.source_bytes, rows, how};
    target_column target{sizeof(bdta3_str), rows, how};
    target_image expected = target.image();
    std::vector<service_call> calls = {};

    void set_row(uint32_t row, uint8_t flag, int64_t value) { set(source, r.source_bytes, row, flag, value); }

    // Of rows first to last - 1, those in failing clear their flag, and the others are stored.
    void expect(uint32_t first, uint32_t last, const std::map<uint32_t, int32_t> &failing = {})
    {
        expected.no_null = how.no_null;
        for (uint32_t row = first; row < last; row++) {
            expected.flags[row] = source.flag(row);
            if (source.flag(row) == 0)
                continue;
            const std::string text = std::to_string(value_of(source, r.source_bytes, row));
            calls.push_back(makes_constant(text, calls.empty() ? fresh_value : kept_value));
            if (failing.contains(row)) {
                expected.flags[row] = 0;
                continue;
            }
            calls.push_back(assigns_constant(target.column(), row, text));
            expected.texts[row] = {constant_of(text), 0};
        }
    }

    void run(int32_t status, int32_t *err_codes, uint16_t *err_count)
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

class integer_to_text : public testing::TestWithParam<text_rule> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(integer_to_text, rows_become_constants_and_null_rows_are_left_out)
{
    constexpr uint8_t flags[] = {1, 0, 2, 0x80, 0, 0xFF, 1};
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 30U, 1025U}) {
            for (const bool capture : {false, true}) {
                SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
                services().reset();
                text_batch batch{GetParam(), how, rows};
                for (uint32_t row = 0; row < rows; row++)
                    batch.set_row(row, flags[row % std::size(flags)], value_of_up_to(9, row));
                batch.expect(0, rows);
                failure_record failures(rows, 7);
                batch.run(0, capture ? failures.codes() : nullptr, capture ? failures.count() : nullptr);
                EXPECT_TRUE(failures.hold({}));
            }
        }
    }
}

TEST_P(integer_to_text, null_rows_call_nothing)
{
    for (const setup &how : all_setups()) {
        services().reset();
        text_batch batch{GetParam(), how, 1030};
        for (uint32_t row = 0; row < 1030; row++)
            batch.set_row(row, 0, 77);
        batch.expect(0, 1030);
        batch.run(0, nullptr, nullptr);
    }
}

TEST_P(integer_to_text, the_largest_batch)
{
    const setup &how = few_setups().back();
    text_batch batch{GetParam(), how, 65535};
    for (uint32_t row = 0; row < 65535; row++)
        batch.set_row(row, row % 4 == 0 ? 1 : 0, value_of_up_to(9, row));
    batch.expect(0, 65535);
    batch.run(0, nullptr, nullptr);
}

TEST_P(integer_to_text, only_the_low_16_bits_of_rows_count)
{
    for (const uint32_t rows : {0U, 1U}) {
        services().reset();
        text_batch batch{GetParam(), few_setups().front(), rows};
        if (rows == 1)
            batch.set_row(0, 1, 12);
        batch.expect(0, rows);
        EXPECT_EQ(call_with_wide_rows(GetParam().cast, {batch.source.sealed(), batch.target.column(), 0x10000 + rows}),
                  0);
        EXPECT_TRUE(batch.target.holds(batch.expected));
        EXPECT_TRUE(services().logged(batch.calls));
    }
}

// From six characters on the constant stands behind outline.
TEST_P(integer_to_text, every_length_of_text)
{
    const text_rule &r = GetParam();
    std::vector<int64_t> values{0, 7, -7, 99999, 100000, 12, -9999, -10000, 3, int32_least, 5, int32_greatest, 99999};
    if (r.source_bytes == 8)
        for (const int64_t wide : {int64_t{1} << 32, int64_least, int64_t{4}, -(int64_least + 1)})
            values.push_back(wide);
    const auto rows = static_cast<uint32_t>(values.size());
    for (const setup &how : few_setups()) {
        services().reset();
        text_batch batch{r, how, rows};
        for (uint32_t row = 0; row < rows; row++)
            batch.set_row(row, 1, values[row]);
        batch.expect(0, rows);
        batch.run(0, nullptr, nullptr);
    }
}

TEST_P(integer_to_text, values_of_every_size)
{
    const text_rule &r = GetParam();
    const std::vector<int64_t> values = values_of_every_size(r.source_bytes);
    const auto rows = static_cast<uint32_t>(values.size());
    text_batch batch{r, few_setups().front(), rows};
    for (uint32_t row = 0; row < rows; row++)
        batch.set_row(row, 1, values[row]);
    batch.expect(0, rows);
    batch.run(0, nullptr, nullptr);
}

TEST_P(integer_to_text, without_err_codes_the_first_failure_stops)
{
    const uint32_t rows = 1024 + 40;
    for (const setup &how : few_setups()) {
        for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, 1025U, rows - 1}) {
            SCOPED_TRACE("failing row " + std::to_string(failing_row) + ", " + describe(how));
            services().reset();
            services().answer("nblob_assign_const", "1234567", -4321);
            services().answer("nblob_assign_const", "-76", -4322);
            text_batch batch{GetParam(), how, rows};
            for (uint32_t row = 0; row < rows; row++)
                batch.set_row(row, row % 5 == 2 ? 0 : 4, row);
            batch.set_row(failing_row, 0x80, 1234567);
            if (failing_row + 1 < rows)
                batch.set_row(failing_row + 1, 1, -76);
            batch.expect(0, failing_row + 1, {{failing_row, -4321}});
            // The counter is there or not: without err_codes nobody looks at it.
            failure_record failures(rows, 7);
            batch.run(-4321, nullptr,
                      failing_row % 2 == 0 ? failures.count() : static_cast<uint16_t *>(inaccessible()));
            EXPECT_TRUE(failures.hold({}));
        }
    }
}

TEST_P(integer_to_text, with_err_codes_failures_are_captured_by_row_of_the_batch)
{
    const uint32_t rows = 2100;
    const std::map<uint32_t, int32_t> failing{{0, -1},    {1, -503},   {600, -6111},        {1023, -7}, {1024, -8},
                                              {1025, -9}, {1500, -10}, {2048, int32_least}, {2090, -12}};
    for (const setup &how : all_setups()) {
        SCOPED_TRACE(describe(how));
        services().reset();
        text_batch batch{GetParam(), how, rows};
        for (uint32_t row = 0; row < rows; row++)
            batch.set_row(row, row % 5 == 2 ? 0 : 4, row);
        for (const auto &[row, code] : failing) {
            batch.set_row(row, 0x80, 500000 + row);
            services().answer("nblob_assign_const", std::to_string(500000 + row), code);
        }
        batch.expect(0, rows, failing);
        failure_record failures(rows, 7);
        batch.run(-12, failures.codes(), failures.count());
        EXPECT_TRUE(failures.hold(failing));
    }
}

TEST_P(integer_to_text, every_row_may_fail)
{
    const setup &how = few_setups()[2];
    text_batch batch{GetParam(), how, 5};
    std::map<uint32_t, int32_t> failing;
    for (uint32_t row = 0; row < 5; row++) {
        batch.set_row(row, 1, 42);
        failing[row] = -100 - static_cast<int32_t>(row);
        services().fail_call(row, failing[row]);
    }
    batch.expect(0, 5, failing);
    failure_record failures(5);
    batch.run(-104, failures.codes(), failures.count());
    EXPECT_TRUE(failures.hold(failing));
}

TEST_P(integer_to_text, the_counter_goes_on_and_wraps_at_16_bits)
{
    text_batch batch{GetParam(), few_setups().front(), 3};
    for (uint32_t row = 0; row < 3; row++) {
        batch.set_row(row, 1, 1);
        services().fail_call(row, -5);
    }
    const std::map<uint32_t, int32_t> failing{{0, -5}, {1, -5}, {2, -5}};
    batch.expect(0, 3, failing);
    failure_record failures(3, 65534);
    batch.run(-5, failures.codes(), failures.count());
    EXPECT_TRUE(failures.hold(failing));
    EXPECT_EQ(*failures.count(), 1);
}

TEST_P(integer_to_text, a_positive_result_is_a_success)
{
    text_batch batch{GetParam(), few_setups().front(), 2};
    batch.set_row(0, 1, 31);
    batch.set_row(1, 1, 7654321);
    services().answer("nblob_assign_const", "31", 1);
    services().answer("nblob_assign_const", "7654321", int32_greatest);
    batch.expect(0, 2);
    failure_record failures(2);
    batch.run(0, failures.codes(), failures.count());
    EXPECT_TRUE(failures.hold({}));
}

TEST_P(integer_to_text, the_length_of_a_constant_is_compared_unsigned)
{
    constexpr uint32_t huge = 0x80000010;
    services().length_of_constants = huge;
    text_batch batch{GetParam(), few_setups().front(), 1};
    batch.set_row(0, 1, 8);
    // The double cannot store so much; what counts is which place it was handed, and with which length.
    EXPECT_EQ(call(GetParam().cast, {batch.source.sealed(), batch.target.column(), 1}), 0);
    EXPECT_TRUE(services().logged({makes_constant("8", fresh_value),
                                   {.service = "bdta3_col_assign_bin",
                                    .env = env(),
                                    .heap = heap(),
                                    .column = batch.target.column(),
                                    .length = static_cast<int32_t>(huge),
                                    .working_value = "outline"}}));
}

INSTANTIATE_TEST_SUITE_P(casts, integer_to_text, testing::ValuesIn(text_rules),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- What stands out ------------------------------------------------------------

struct one_text {
    int32_t status;
    uint8_t flag;
    std::string text = {};
    int32_t pad_len = 0;

    friend bool operator==(const one_text &, const one_text &) = default;
    friend std::ostream &operator<<(std::ostream &out, const one_text &t)
    {
        return out << "status " << t.status << ", flag " << int{t.flag} << ", text \"" << t.text << "\", pad_len "
                   << t.pad_len;
    }
};

template <class Source> one_text cast_one(bcast_length_fn *cast, int32_t length, Source value)
{
    services().reset();
    source_column source(sizeof(Source), 1, few_setups().front());
    source.set(0, 1, value);
    target_column target(sizeof(bdta3_str), 1);
    const int32_t status = call(cast, {source.sealed(), target.column(), 1, length});
    one_text result{status, target.flags()[0]};
    if (status == 0) {
        bdta3_str element;
        std::memcpy(&element, target.column()->data->values, sizeof element);
        result.text.assign(element.text, static_cast<size_t>(element.length));
        result.pad_len = element.pad_len;
    }
    return result;
}

TEST(integer_to_text_by_hand, lengths_and_padding)
{
    EXPECT_EQ(cast_one(bcast_int64_to_char, 2, int64_t{100}), (one_text{-6149, 0}));
    EXPECT_EQ(cast_one(bcast_int64_to_char, 2, int64_t{99}), (one_text{0, 1, "99", 0}));
    EXPECT_EQ(cast_one(bcast_int64_to_char, 20, int64_least), (one_text{0, 1, "-9223372036854775808", 0}));
    EXPECT_EQ(cast_one(bcast_tinyint_to_char, 4, int32_t{-128}), (one_text{0, 1, "-128", 0}));
    EXPECT_EQ(cast_one(bcast_tinyint_to_varchar, 9, int32_t{-128}), (one_text{0, 1, "-128", 0}));
    EXPECT_EQ(cast_one(bcast_int_to_char, 5, int32_t{12}), (one_text{0, 1, "12", 3}));
    EXPECT_EQ(cast_one(bcast_int_to_varchar, 5, int32_t{12}), (one_text{0, 1, "12", 0}));
    EXPECT_EQ(cast_one(bcast_int_to_varchar2, 5, int32_t{12}), (one_text{0, 1, "12", 3}));
    EXPECT_EQ(cast_one(bcast_int64_to_varchar2, 5, int64_t{12}), (one_text{0, 1, "12", 3}));
    EXPECT_EQ(cast_one(bcast_tinyint_to_varchar2, 5, int32_t{12}), (one_text{0, 1, "12", 3}));
}

TEST(integer_to_text_by_hand, a_text_of_one_digit_makes_a_constant_of_44_bytes)
{
    services().reset();
    source_column source(4, 1, few_setups().front());
    source.set(0, 1, int32_t{7});
    target_column target(sizeof(bdta3_str), 1);
    EXPECT_EQ(call(bcast_tinyint_to_text, {source.sealed(), target.column(), 1}), 0);
    ASSERT_EQ(services().log().size(), 2U);
    EXPECT_EQ(services().log()[1].length, 44);
    EXPECT_EQ(services().log()[1].working_value, "inline");
}

} // namespace
} // namespace bcast::test
