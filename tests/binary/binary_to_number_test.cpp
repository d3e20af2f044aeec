// binary and varbinary to numbers: twelve casts. The services read the bytes; binary stops at a failure, varbinary
// captures it.

#include "tests/character/text_rows.h"
#include "tests/support/batch.h"

#include <algorithm>
#include <limits>

namespace bcast::test {
namespace {

using namespace std::string_literals;

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int32_t int32_greatest = std::numeric_limits<int32_t>::max();
constexpr int64_t int64_least = std::numeric_limits<int64_t>::min();
constexpr int64_t int64_greatest = std::numeric_limits<int64_t>::max();

enum class kind { int32, int64, floating, wide_floating, decimal };
enum class failures { stop, captured_or_stop };

struct rule {
    const char *name;
    any_cast cast;
    kind target;
    size_t target_bytes;
    int32_t width; // that the bytes are read as; 0: by the service without a width
    failures protocol;

    bool has_second_service() const { return target == kind::floating || target == kind::decimal; }
    const char *first_service() const { return width > 0 ? "nbin_to_int_by_ntype_len" : "nbin_to_lint64"; }
    const char *second_service() const
    {
        return target == kind::floating ? "ntype_is_float_overflow" : "xdec_from_int64_with_len_prec";
    }
    // The value as second_service is answered by.
    std::string key_of(int64_t value) const
    {
        return target == kind::floating ? std::to_string(static_cast<double>(value)) : std::to_string(value);
    }
};

void PrintTo(const rule &r, std::ostream *out) { *out << r.name; }

using enum failures;

#define NAMED(cast) #cast, &cast
const rule rules[] = {
    {NAMED(bcast_binary_to_tinyint), kind::int32, 4, 1, stop},
    {NAMED(bcast_binary_to_smallint), kind::int32, 4, 2, stop},
    {NAMED(bcast_binary_to_int), kind::int32, 4, 4, stop},
    {NAMED(bcast_binary_to_int64), kind::int64, 8, 8, stop},
    {NAMED(bcast_binary_to_double), kind::wide_floating, 8, 0, stop},
    {NAMED(bcast_binary_to_float), kind::floating, 4, 0, stop},
    {NAMED(bcast_binary_to_dec), kind::decimal, sizeof(xdec), 0, stop},
    {NAMED(bcast_varbinary_to_tinyint), kind::int32, 4, 1, captured_or_stop},
    {NAMED(bcast_varbinary_to_smallint), kind::int32, 4, 2, captured_or_stop},
    {NAMED(bcast_varbinary_to_int), kind::int32, 4, 4, captured_or_stop},
    {NAMED(bcast_varbinary_to_int64), kind::int64, 8, 8, captured_or_stop},
    {NAMED(bcast_varbinary_to_dec), kind::decimal, sizeof(xdec), 0, captured_or_stop},
};
#undef NAMED

constexpr int32_t shape_len = 13, shape_prec = 4;
constexpr int32_t shape = shape_len << 8 | shape_prec;

struct number_rows : text_rows {
    const rule &r;
    std::map<uint32_t, int32_t> failed = {};

    number_rows(const rule &of, const setup &given, uint32_t row_count)
        : text_rows(given, row_count, of.target_bytes), r(of)
    {}

    void expect_flag(uint32_t row) { expected.flags[row] = source.flag(row); }

    void expect_first_call(uint32_t row)
    {
        calls.push_back(r.width > 0 ? reads_integer(element(row), r.width) : reads_int64(element(row)));
    }

    // Behind the reading.
    void expect_second_call(int64_t value)
    {
        if (r.target == kind::floating)
            calls.push_back(judges_float(static_cast<double>(value)));
        if (r.target == kind::decimal)
            calls.push_back(makes_decimal_of_int64(value, shape_len, shape_prec));
    }

    // The row's bytes are read as this integer, which a float can hold.
    void expect_value(uint32_t row, int64_t value)
    {
        expect_flag(row);
        expect_first_call(row);
        expect_second_call(value);
        switch (r.target) {
        case kind::int32:
            expected.put(row, static_cast<int32_t>(value));
            break;
        case kind::int64:
            expected.put(row, value);
            break;
        case kind::floating:
            expected.put(row, static_cast<float>(value));
            break;
        case kind::wide_floating:
            expected.put(row, static_cast<double>(value));
            break;
        case kind::decimal:
            expected.put(row, made_decimal(image_of(value), shape_len, shape_prec));
            break;
        }
    }

    // The flag stays, and the element is not written.
    void expect_unread(uint32_t row, int32_t code)
    {
        expect_flag(row);
        expect_first_call(row);
        failed[row] = code;
    }
    void expect_unfit(uint32_t row, int64_t value, int32_t code)
    {
        expect_unread(row, code);
        expect_second_call(value);
    }

    int32_t run(int32_t *err_codes = nullptr, uint16_t *err_count = nullptr)
    {
        return call(r.cast, {.src = source.sealed(),
                             .dst = target.column(),
                             .rows = rows,
                             .length = shape,
                             .err_codes = err_codes,
                             .err_count = err_count});
    }

    void expect_success()
    {
        ASSERT_TRUE(failed.empty());
        expected.no_null = how.no_null;
        expect(run(), 0);
    }

    // no_null is not written. Without err_codes nobody looks at the counter, be it there or not.
    void expect_stop()
    {
        ASSERT_FALSE(failed.empty());
        expect(run(nullptr, static_cast<uint16_t *>(inaccessible())), failed.begin()->second);
    }

    void expect_capture(uint16_t count_before)
    {
        failure_record record(rows, count_before);
        expected.no_null = how.no_null;
        expect(run(record.codes(), record.count()), failed.empty() ? 0 : failed.rbegin()->second);
        EXPECT_TRUE(record.hold(failed));
    }
};

// Every one fits a tinyint. The double reads bytes as decimal digits.
const std::vector<std::string> texts{"0", "7", "-7", "127", "-128", "42", "-1", "100"};

int64_t value_of(uint32_t row) { return std::stoll(texts[row % texts.size()]); }

class binary_to_number : public testing::TestWithParam<rule> {
protected:
    void SetUp() override { services().reset(); }

    shared_texts texts_{texts};
};

TEST_P(binary_to_number, rows_are_read_and_null_rows_left_out)
{
    constexpr uint8_t flags[] = {1, 0, 2, 0x80, 0, 0xFF, 1};
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 30U, 1023U, 1024U, 1025U}) {
            SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
            services().reset();
            number_rows batch(GetParam(), how, rows);
            for (uint32_t row = 0; row < rows; row++) {
                const uint8_t flag = flags[row % std::size(flags)];
                if (flag == 0) {
                    batch.set_null(row);
                    batch.expect_flag(row);
                } else {
                    batch.source.set(row, flag, texts_.element(row));
                    batch.expect_value(row, value_of(row));
                }
            }
            batch.expect_success();
        }
    }
}

TEST_P(binary_to_number, batches_of_null_rows_only_read_nothing)
{
    for (const setup &how : all_setups()) {
        services().reset();
        number_rows batch(GetParam(), how, 1030);
        for (uint32_t row = 0; row < 1030; row++) {
            batch.set_null(row);
            batch.expect_flag(row);
        }
        batch.expect_success();
    }
}

TEST_P(binary_to_number, the_largest_batch)
{
    number_rows batch(GetParam(), few_setups()[2], 65535);
    for (uint32_t row = 0; row < 65535; row++) {
        batch.source.set(row, 1, texts_.element(row));
        batch.expect_value(row, value_of(row));
    }
    batch.expect_success();
}

TEST_P(binary_to_number, only_the_low_16_bits_of_rows_count)
{
    for (const uint32_t rows : {0U, 1U}) {
        services().reset();
        number_rows batch(GetParam(), few_setups()[1], rows);
        if (rows == 1) {
            batch.set_text(0, 1, "-33");
            batch.expect_value(0, -33);
        }
        batch.expected.no_null = batch.how.no_null;
        batch.expect(
            call_with_wide_rows(
                batch.r.cast,
                {.src = batch.source.sealed(), .dst = batch.target.column(), .rows = 0x10000 + rows, .length = shape}),
            0);
    }
}

// From the greatest values of a width down to the least, so that sign bits of one row show in the next if they stay.
TEST_P(binary_to_number, edges_of_the_width)
{
    const rule &r = GetParam();
    const int bits = r.width > 0 ? 8 * r.width : 64;
    const int64_t greatest = int64_greatest >> (64 - bits);
    for (const setup &how : few_setups()) {
        services().reset();
        const int64_t edges[] = {greatest, -greatest - 1, greatest - 1, -1, 1, -2, 0, greatest / 2 + 1, -greatest};
        number_rows batch(r, how, static_cast<uint32_t>(std::size(edges)));
        for (uint32_t row = 0; row < std::size(edges); row++) {
            batch.set_text(row, 1, std::to_string(edges[row]));
            batch.expect_value(row, edges[row]);
        }
        batch.expect_success();
    }
}

// ---- What the services are handed -------------------------------------------------------

TEST_P(binary_to_number, bytes_of_every_length_are_handed_over_whole)
{
    for (const size_t size : {size_t{0}, size_t{1}, size_t{3}, size_t{8}, size_t{9}, size_t{32768}, size_t{65539}}) {
        services().reset();
        const std::string bytes(size, '\xC7');
        services().binary.integers[bytes] = -5;
        number_rows batch(GetParam(), few_setups().front(), 1);
        batch.set_text(0, 1, bytes);
        batch.expect_value(0, -5);
        batch.expect_success();
    }
}

TEST_P(binary_to_number, the_length_word_is_handed_over_as_the_source_has_it)
{
    std::string bytes(3 * 65536, '1');
    for (const int32_t word : {65535, 65536, 65536 + 3, 2 * 65536, int32_greatest, -1, -65536, int32_least}) {
        SCOPED_TRACE("length word " + std::to_string(word));
        services().reset();
        services().fail_call(0, -77); // what it is worth does not matter
        number_rows batch(GetParam(), few_setups().front(), 1);
        batch.set_element(0, 1, word, bytes.data());
        batch.expect_unread(0, -77);
        batch.expect_stop();
    }
}

TEST_P(binary_to_number, the_pad_len_of_the_source_is_not_looked_at)
{
    for (const int32_t pad_len : {0, 1, int32_greatest, -1}) {
        services().reset();
        number_rows batch(GetParam(), few_setups().front(), 1);
        batch.set_text(0, 1, "12", pad_len);
        batch.expect_value(0, 12);
        batch.expect_success();
    }
}

// ---- Failures -----------------------------------------------------------------------------

TEST_P(binary_to_number, the_first_failure_stops)
{
    const rule &r = GetParam();
    const uint32_t rows = 1024 + 40;
    for (const bool second : {false, true}) {
        if (second && !r.has_second_service())
            continue;
        for (const setup &how : few_setups()) {
            for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, rows - 1}) {
                SCOPED_TRACE("failing row " + std::to_string(failing_row) + (second ? ", second service, " : ", ") +
                             describe(how));
                services().reset();
                if (second)
                    services().answer(r.second_service(), r.key_of(99), -4321);
                else
                    services().answer(r.first_service(), "99", -4321);
                number_rows batch(r, how, rows);
                for (uint32_t row = 0; row < rows; row++) {
                    if (row == failing_row) {
                        batch.set_text(row, 0x80, "99");
                        second ? batch.expect_unfit(row, 99, -4321) : batch.expect_unread(row, -4321);
                    } else if (row == failing_row + 1) {
                        batch.set_text(row, 1, "no digits"); // would fail too
                    } else if (row % 5 == 2) {
                        batch.set_null(row);
                        if (row < failing_row)
                            batch.expect_flag(row);
                    } else {
                        batch.source.set(row, 4, texts_.element(row));
                        if (row < failing_row)
                            batch.expect_value(row, value_of(row));
                    }
                }
                batch.expect_stop();
            }
        }
    }
}

TEST_P(binary_to_number, codes_of_the_services_pass_through)
{
    const rule &r = GetParam();
    for (const int32_t code : {-1, -503, -6102, -6111, int32_least}) {
        for (const bool second : {false, true}) {
            if (second && !r.has_second_service())
                continue;
            services().reset();
            services().fail_call(second ? 1 : 0, code);
            number_rows batch(r, few_setups().back(), 1);
            batch.set_text(0, 1, "12");
            second ? batch.expect_unfit(0, 12, code) : batch.expect_unread(0, code);
            batch.expect_stop();
        }
    }
}

TEST_P(binary_to_number, results_above_zero_are_successes)
{
    const rule &r = GetParam();
    services().answer(r.first_service(), "12", 1);
    services().answer(r.first_service(), "-3", int32_greatest);
    services().answer(r.second_service(), r.key_of(12), int32_greatest);
    services().answer(r.second_service(), r.key_of(-3), 1);
    number_rows batch(r, few_setups().front(), 2);
    batch.set_text(0, 1, "12");
    batch.expect_value(0, 12);
    batch.set_text(1, 1, "-3");
    batch.expect_value(1, -3);
    batch.expect_success();
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_number, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Captured failures: varbinary ------------------------------------------------------------

class varbinary_to_number : public binary_to_number {};

TEST_P(varbinary_to_number, failures_are_captured_by_row_of_the_batch)
{
    const rule &r = GetParam();
    const uint32_t rows = 2100;
    const std::map<uint32_t, int32_t> unread{{0, -1},    {1, -503},  {600, -6111},       {1023, -7},
                                             {1024, -8}, {1025, -9}, {2048, int32_least}};
    for (const setup &how : all_setups()) {
        for (const uint32_t last_failure : {2097U, rows - 1}) {
            for (const bool second : {false, true}) {
                if (second && !r.has_second_service())
                    continue;
                SCOPED_TRACE("last failure " + std::to_string(last_failure) + (second ? ", second service, " : ", ") +
                             describe(how));
                services().reset();
                if (second)
                    services().answer(r.second_service(), r.key_of(99), -4321);
                else
                    services().answer(r.first_service(), "99", -4321);
                number_rows batch(r, how, rows);
                for (uint32_t row = 0; row < rows; row++) {
                    if (const auto failure = unread.find(row); failure != unread.end()) {
                        const std::string text = "bad " + std::to_string(row);
                        services().answer(r.first_service(), text, failure->second);
                        batch.set_text(row, 0x80, text);
                        batch.expect_unread(row, failure->second);
                    } else if (row == last_failure || row == 1500) {
                        batch.set_text(row, 0x81, "99");
                        second ? batch.expect_unfit(row, 99, -4321) : batch.expect_unread(row, -4321);
                    } else if (row % 5 == 2) {
                        batch.set_null(row);
                        batch.expect_flag(row);
                    } else {
                        batch.source.set(row, 4, texts_.element(row));
                        batch.expect_value(row, value_of(row));
                    }
                }
                batch.expect_capture(9);
            }
        }
    }
}

TEST_P(varbinary_to_number, the_counter_wraps_at_16_bits)
{
    number_rows batch(GetParam(), few_setups()[1], 5);
    for (uint32_t row = 0; row < 5; row++) {
        batch.set_text(row, 1, "no");
        batch.expect_unread(row, ERR_BAD_CONVERSION);
    }
    batch.expect_capture(65533);
}

TEST_P(varbinary_to_number, capture_without_a_failure_returns_0)
{
    for (const setup &how : few_setups()) {
        services().reset();
        number_rows batch(GetParam(), how, 20);
        for (uint32_t row = 0; row < 20; row++) {
            batch.source.set(row, 1, texts_.element(row));
            batch.expect_value(row, value_of(row));
        }
        batch.expect_capture(3);
    }
}

std::vector<rule> capturing_rules()
{
    std::vector<rule> capturing;
    std::ranges::copy_if(rules, std::back_inserter(capturing),
                         [](const rule &r) { return r.protocol == captured_or_stop; });
    return capturing;
}

INSTANTIATE_TEST_SUITE_P(casts, varbinary_to_number, testing::ValuesIn(capturing_rules()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Decimals -----------------------------------------------------------------------------------

class binary_to_decimal : public testing::TestWithParam<any_cast> {};

TEST_P(binary_to_decimal, the_shape_is_in_the_low_16_bits_of_length)
{
    struct shaped {
        int32_t length, len, prec;
    };
    for (const auto &[length, len, prec] :
         {shaped{0, 0, 0}, shaped{0x0A02, 10, 2}, shaped{0x020A, 2, 10}, shaped{0x00FF, 0, 255}, shaped{0xFF00, 255, 0},
          shaped{0x7FFF0501, 5, 1}, shaped{-1, 255, 255}, shaped{int32_least + 0x8081, 128, 129}}) {
        services().reset();
        text_rows batch(few_setups().front(), 1, sizeof(xdec));
        batch.set_text(0, 1, "-17");
        batch.expected.flags[0] = 1;
        batch.expected.no_null = 0;
        batch.expected.put(0, made_decimal(image_of(int64_t{-17}), len, prec));
        batch.calls = {reads_int64(batch.element(0)), makes_decimal_of_int64(-17, len, prec)};
        batch.expect(
            call(GetParam(), {.src = batch.source.sealed(), .dst = batch.target.column(), .rows = 1, .length = length}),
            0);
    }
}

INSTANTIATE_TEST_SUITE_P(casts, binary_to_decimal,
                         testing::Values(any_cast(&bcast_binary_to_dec), any_cast(&bcast_varbinary_to_dec)),
                         [](const auto &each) { return each.index == 0 ? "binary"s : "varbinary"s; });

// ---- Floating numbers -----------------------------------------------------------------------------

template <class Target> Target converted(bcast_plain_fn *cast, int64_t value)
{
    services().reset();
    text_rows batch(few_setups().front(), 1, sizeof(Target));
    batch.set_text(0, 1, std::to_string(value));
    EXPECT_EQ(call(cast, {.src = batch.source.sealed(), .dst = batch.target.column(), .rows = 1}), 0);
    Target result;
    std::memcpy(&result, batch.target.column()->data->values, sizeof result);
    return result;
}

TEST(binary_to_double, rounds_to_the_nearest_and_of_two_to_the_even_one)
{
    EXPECT_EQ(converted<double>(bcast_binary_to_double, 9007199254740992), 9007199254740992.0);
    EXPECT_EQ(converted<double>(bcast_binary_to_double, 9007199254740993), 9007199254740992.0);
    EXPECT_EQ(converted<double>(bcast_binary_to_double, 9007199254740995), 9007199254740996.0);
    EXPECT_EQ(converted<double>(bcast_binary_to_double, -9007199254740993), -9007199254740992.0);
    EXPECT_EQ(converted<double>(bcast_binary_to_double, int64_greatest), 9223372036854775808.0);
    EXPECT_EQ(converted<double>(bcast_binary_to_double, int64_least), -9223372036854775808.0);
}

TEST(binary_to_float, rounds_to_the_nearest_and_of_two_to_the_even_one)
{
    EXPECT_EQ(converted<float>(bcast_binary_to_float, 16777216), 16777216.0F);
    EXPECT_EQ(converted<float>(bcast_binary_to_float, 16777217), 16777216.0F);
    EXPECT_EQ(converted<float>(bcast_binary_to_float, 16777219), 16777220.0F);
    EXPECT_EQ(converted<float>(bcast_binary_to_float, -16777217), -16777216.0F);
    EXPECT_EQ(converted<float>(bcast_binary_to_float, int64_greatest), 9223372036854775808.0F);
    EXPECT_EQ(converted<float>(bcast_binary_to_float, int64_least), -9223372036854775808.0F);
}

// Through double on the way to float this would round twice, and end below. The predicate gets the double.
TEST(binary_to_float, rounds_once)
{
    const int64_t just_above_the_middle = (int64_t{1} << 60) + (int64_t{1} << 36) + 1;
    EXPECT_EQ(converted<float>(bcast_binary_to_float, just_above_the_middle), 0x1.000002p60F);
    EXPECT_EQ(converted<float>(bcast_binary_to_float, -just_above_the_middle), -0x1.000002p60F);
    ASSERT_EQ(services().log().size(), 2U);
    EXPECT_EQ(services().log().back(), judges_float(-0x1.0000010000000p60));
}

} // namespace
} // namespace bcast::test
