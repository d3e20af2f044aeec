// Casts to bit: a zero test of numbers, a digit scan of texts. Casts from bit: moves of whatever the slot holds, and
// decimal text.

#include "tests/logical/samples.h"

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

class bit_cast_of_numbers : public rows_test {};

TEST_P(bit_cast_of_numbers, rows_are_converted_by_their_flags) { expect_rows_and_null_rows(GetParam()); }

TEST_P(bit_cast_of_numbers, blocks_of_rows) { expect_blocks(GetParam()); }

TEST_P(bit_cast_of_numbers, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

INSTANTIATE_TEST_SUITE_P(casts, bit_cast_of_numbers, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

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

std::vector<scan> scans_that(bool fail)
{
    std::vector<scan> chosen;
    std::ranges::copy_if(all_scans(), std::back_inserter(chosen), [&](const scan &s) { return s.fails == fail; });
    return chosen;
}

// Texts in pages of their own, so that a byte behind or before one cannot be read.
class text_elements {
public:
    bdta3_str element(const std::string &text)
    {
        const guard_edge edge = texts_.size() % 2 == 0 ? guard_edge::end : guard_edge::start;
        texts_.push_back(std::make_unique<guarded<char>>(std::span<const char>(text), edge));
        // pad_len plays no part.
        return {static_cast<int32_t>(text.size()), static_cast<int32_t>(texts_.size() % 3), texts_.back()->data()};
    }

private:
    std::vector<std::unique_ptr<guarded<char>>> texts_;
};

bdta3_str empty_element(int32_t pad_len) { return {0, pad_len, static_cast<char *>(inaccessible())}; }
bdta3_str null_element() { return {INT32_MAX, 0, static_cast<char *>(inaccessible())}; }

struct text_rule {
    const char *name;
    any_cast cast;
    bool copies_no_null; // ahead of the first row
    bool clears_no_null; // at an empty text
};

void PrintTo(const text_rule &r, std::ostream *out) { *out << r.name; }

const text_rule text_rules[] = {
    {NAMED(bcast_char_to_bit), true, true},
    {NAMED(bcast_varchar_to_bit), false, true},
    {NAMED(bcast_varchar2_to_bit), false, false},
};

// One batch: its source, and what is to become of it.
struct scan_batch {
    const text_rule &rule;
    const setup &how;
    uint32_t rows;
    source_column source{sizeof(bdta3_str), rows, how};
    target_column target{4, rows, how};
    target_image expected = target.image();

    void expect_start()
    {
        services().reset();
        if (rule.copies_no_null)
            expected.no_null = how.no_null;
    }
    void add_null(uint32_t row)
    {
        source.set(row, 0, null_element());
        expected.flags[row] = 0;
    }
    void add_empty(uint32_t row, uint8_t flag = 1, int32_t pad_len = 0)
    {
        source.set(row, flag, empty_element(pad_len));
        expected.flags[row] = 0;
        expected.put(row, int32_t{0});
        if (rule.clears_no_null)
            expected.no_null = 0;
    }
    void add(uint32_t row, uint8_t flag, const bdta3_str &element, int32_t value)
    {
        source.set(row, flag, element);
        expected.flags[row] = flag;
        expected.put(row, value);
    }
    void add_stop(uint32_t row, uint8_t flag, const bdta3_str &element)
    {
        source.set(row, flag, element);
        expected.flags[row] = flag;
    }
    void run(int32_t status)
    {
        SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
        // Without err_codes there is no err_count to look at.
        const call_arguments with{.src = source.sealed(),
                                  .dst = target.column(),
                                  .rows = rows,
                                  .err_count = static_cast<uint16_t *>(inaccessible())};
        EXPECT_EQ(call(rule.cast, with), status);
        EXPECT_TRUE(target.holds(expected));
        EXPECT_TRUE(services().logged({}));
    }
};

class text_to_bit : public testing::TestWithParam<text_rule> {};

TEST_P(text_to_bit, every_text_is_scanned_to_its_value_or_its_failure)
{
    for (const scan &s : all_scans()) {
        SCOPED_TRACE("text " + testing::PrintToString(s.text.substr(0, 40)) + " of " + std::to_string(s.text.size()) +
                     " bytes");
        for (const guard_edge edge : {guard_edge::start, guard_edge::end}) {
            guarded<char> text(std::span<const char>(s.text), edge);
            for (const int32_t pad_len : {0, 7, -1}) {
                scan_batch batch{GetParam(), few_setups().front(), 1};
                batch.expect_start();
                const bdta3_str element{static_cast<int32_t>(s.text.size()), pad_len, text.data()};
                if (s.fails)
                    batch.add_stop(0, 2, element);
                else
                    batch.add(0, 2, element, s.value);
                batch.run(s.fails ? int32_t{ERR_BAD_CONVERSION} : 0);
            }
        }
    }
}

TEST_P(text_to_bit, batches_of_values_and_null_rows)
{
    text_elements texts;
    std::vector<std::pair<bdta3_str, int32_t>> elements;
    for (const scan &s : scans_that(passes))
        elements.emplace_back(texts.element(s.text), s.value);
    constexpr uint8_t flags[] = {1, 0, 2, 0x80, 0, 0xFF, 1};
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 33U, 1023U, 1024U, 1025U}) {
            scan_batch batch{GetParam(), how, rows};
            batch.expect_start();
            for (uint32_t row = 0; row < rows; row++) {
                const auto &[element, value] = elements[row % elements.size()];
                if (const uint8_t flag = flags[row % std::size(flags)])
                    batch.add(row, flag, element, value);
                else
                    batch.add_null(row);
            }
            batch.run(0);
        }
    }
}

TEST_P(text_to_bit, an_empty_text_turns_null_and_its_element_0)
{
    text_elements texts;
    const bdta3_str one = texts.element("1");
    for (setup how : all_setups()) {
        for (const int32_t before : {untouched_no_null, 0, 1}) {
            how.no_null_before = before;
            for (const uint32_t empty_row : {0U, 1U, 4U}) {
                for (const int32_t pad_len : {0, 5, -1}) {
                    scan_batch batch{GetParam(), how, 5};
                    batch.expect_start();
                    for (uint32_t row = 0; row < 5; row++)
                        batch.add(row, 1, one, 1);
                    batch.add_empty(empty_row, 3, pad_len);
                    batch.run(0);
                }
            }
        }
    }
}

TEST_P(text_to_bit, a_stop_leaves_the_flag_and_the_rows_behind)
{
    text_elements texts;
    const bdta3_str one = texts.element("1 "), bad = texts.element("1x"), worse = texts.element("y");
    const uint32_t rows = 1024 + 40;
    for (const setup &how : all_setups()) {
        for (const bool empty_before : {false, true}) {
            for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, rows - 1}) {
                scan_batch batch{GetParam(), how, rows};
                batch.expect_start();
                for (uint32_t row = 0; row < failing_row; row++)
                    row % 4 == 3 ? batch.add_null(row) : batch.add(row, 1, one, 1);
                if (empty_before && failing_row > 0)
                    batch.add_empty(0);
                batch.add_stop(failing_row, 0x80, bad);
                for (uint32_t row = failing_row + 1; row < rows; row++)
                    batch.source.set(row, 1, row % 3 == 0 ? empty_element(0) : row % 3 == 1 ? worse : one);
                batch.run(ERR_BAD_CONVERSION);
            }
        }
    }
}

TEST_P(text_to_bit, the_largest_batch_and_rows_at_16_bits)
{
    text_elements texts;
    const bdta3_str one = texts.element("1"), zero = texts.element("0 ");
    scan_batch batch{GetParam(), few_setups()[2], 65535};
    batch.expect_start();
    for (uint32_t row = 0; row < 65535; row++)
        batch.add(row, 1, row % 3 ? one : zero, row % 3 ? 1 : 0);
    batch.run(0);
    for (const uint32_t rows : {0U, 1U}) {
        scan_batch small{GetParam(), few_setups().front(), rows};
        small.expect_start();
        if (rows == 1)
            small.add(0, 1, one, 1);
        EXPECT_EQ(call_with_wide_rows(small.rule.cast, {small.source.sealed(), small.target.column(), 0x10000 + rows}),
                  0);
        EXPECT_TRUE(small.target.holds(small.expected));
    }
}

INSTANTIATE_TEST_SUITE_P(casts, text_to_bit, testing::ValuesIn(text_rules),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Text to bit, with err_codes -----------------------------------------------------------

const text_rule &capturing_rule() { return text_rules[1]; }

void run_with_capture(scan_batch &batch, const std::map<uint32_t, int32_t> &failures, uint16_t count_before = 0)
{
    SCOPED_TRACE(std::to_string(batch.rows) + " rows, " + describe(batch.how));
    failure_record record(batch.rows, count_before);
    const call_arguments with{.src = batch.source.sealed(),
                              .dst = batch.target.column(),
                              .rows = batch.rows,
                              .err_codes = record.codes(),
                              .err_count = record.count()};
    EXPECT_EQ(call(batch.rule.cast, with), failures.empty() ? 0 : int32_t{ERR_BAD_CONVERSION});
    EXPECT_TRUE(batch.target.holds(batch.expected));
    EXPECT_TRUE(record.hold(failures));
    EXPECT_TRUE(services().logged({}));
}

TEST(varchar_to_bit, capture_keeps_the_flag_and_writes_the_digits_so_far)
{
    for (const scan &s : all_scans()) {
        SCOPED_TRACE("text " + testing::PrintToString(s.text.substr(0, 40)) + " of " + std::to_string(s.text.size()) +
                     " bytes");
        text_elements texts;
        scan_batch batch{capturing_rule(), few_setups().front(), 1};
        batch.expect_start();
        batch.add(0, 0x41, texts.element(s.text), s.value);
        run_with_capture(batch, s.fails ? std::map<uint32_t, int32_t>{{0, ERR_BAD_CONVERSION}}
                                        : std::map<uint32_t, int32_t>{});
    }
}

TEST(varchar_to_bit, capture_goes_on_to_the_end_of_the_batch)
{
    text_elements texts;
    std::vector<std::pair<bdta3_str, scan>> elements;
    for (const scan &s : all_scans())
        elements.emplace_back(texts.element(s.text), s);
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 5U, 40U, 1024U, 1025U}) {
            scan_batch batch{capturing_rule(), how, rows};
            batch.expect_start();
            std::map<uint32_t, int32_t> failures;
            for (uint32_t row = 0; row < rows; row++) {
                const auto &[element, s] = elements[row * 7 % elements.size()];
                if (row % 11 == 10)
                    batch.add_null(row);
                else if (row % 13 == 12)
                    batch.add_empty(row);
                else {
                    batch.add(row, static_cast<uint8_t>(1 + row % 255), element, s.value);
                    if (s.fails)
                        failures[row] = ERR_BAD_CONVERSION;
                }
            }
            run_with_capture(batch, failures, 3);
        }
    }
}

TEST(varchar_to_bit, capture_leaves_no_null_alone)
{
    text_elements texts;
    const bdta3_str bad = texts.element("x1");
    for (setup how : all_setups()) {
        for (const int32_t before : {untouched_no_null, 0, 1}) {
            how.no_null_before = before;
            scan_batch batch{capturing_rule(), how, 2};
            batch.expect_start();
            batch.add(0, 1, bad, 0);
            batch.add(1, 1, bad, 0);
            run_with_capture(batch, {{0, ERR_BAD_CONVERSION}, {1, ERR_BAD_CONVERSION}});
        }
    }
}

TEST(varchar_to_bit, a_failure_is_the_result_although_later_rows_succeed)
{
    text_elements texts;
    scan_batch batch{capturing_rule(), few_setups().front(), 3};
    batch.expect_start();
    batch.add(0, 1, texts.element("?"), 0);
    batch.add(1, 1, texts.element("1"), 1);
    batch.add(2, 1, texts.element("0"), 0);
    run_with_capture(batch, {{0, ERR_BAD_CONVERSION}});
}

TEST(varchar_to_bit, err_count_wraps_at_16_bits)
{
    text_elements texts;
    scan_batch batch{capturing_rule(), few_setups().front(), 2};
    batch.expect_start();
    batch.add(0, 1, texts.element("1?"), 1);
    batch.add(1, 1, texts.element("?"), 0);
    run_with_capture(batch, {{0, ERR_BAD_CONVERSION}, {1, ERR_BAD_CONVERSION}}, 0xFFFF);
}

// ---- Bit to text ---------------------------------------------------------------------------

struct digits_rule {
    const char *name;
    bcast_length_fn *cast;
    bool pads;
};

void PrintTo(const digits_rule &r, std::ostream *out) { *out << r.name; }

constexpr digits_rule digits_rules[] = {
    {NAMED(bcast_bit_to_char), true},
    {NAMED(bcast_bit_to_varchar), false},
    {NAMED(bcast_bit_to_varchar2), true},
};
#undef NAMED

class bit_to_text : public testing::TestWithParam<digits_rule> {
protected:
    // Rows before stop_at are stored; the row at stop_at, if there is one, is too long.
    static void expect_digits(source_column &source, const setup &how, int32_t length, uint32_t rows, uint32_t stop_at,
                              bool wide_rows = false)
    {
        const digits_rule &r = GetParam();
        SCOPED_TRACE(std::to_string(rows) + " rows, length " + std::to_string(length) + ", " + describe(how));
        services().reset();
        target_column target(sizeof(bdta3_str), rows, how);
        target_image expected = target.image();
        expected.no_null = how.no_null;
        std::vector<service_call> calls;
        for (uint32_t row = 0; row < std::min(rows, stop_at); row++) {
            expected.flags[row] = source.flag(row);
            if (source.flag(row) == 0)
                continue;
            const std::string text = std::to_string(source.element<int32_t>(row));
            const int32_t pad = r.pads ? length - static_cast<int32_t>(text.size()) : 0;
            calls.push_back(assigns_text(target.column(), row, text, pad));
            expected.texts[row] = {text, pad};
        }
        if (stop_at < rows)
            expected.flags[stop_at] = 0;
        const call_arguments with{.src = source.sealed(),
                                  .dst = target.column(),
                                  .rows = wide_rows ? 0x10000 + rows : rows,
                                  .length = length};
        EXPECT_EQ(wide_rows ? call_with_wide_rows(r.cast, with) : call(r.cast, with),
                  stop_at < rows ? int32_t{ERR_TARGET_TOO_SHORT} : 0);
        EXPECT_TRUE(target.holds(expected));
        EXPECT_TRUE(services().logged(calls));
    }
};

TEST_P(bit_to_text, rows_are_formatted_and_null_rows_left_out)
{
    constexpr uint8_t flags[] = {1, 0, 2, 0x80, 0, 0xFF, 1};
    constexpr int32_t values[] = {0, 1, 2, -1, 7, 300, INT32_MIN, INT32_MAX, -40000};
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 33U, 1023U, 1024U, 1025U}) {
            source_column source(4, rows, how);
            for (uint32_t row = 0; row < rows; row++)
                source.set(row, flags[row % std::size(flags)], values[row % std::size(values)]);
            expect_digits(source, how, 11, rows, rows);
        }
    }
}

TEST_P(bit_to_text, the_largest_batch_and_rows_at_16_bits)
{
    source_column source(4, 65535, few_setups()[2]);
    for (uint32_t row = 0; row < 65535; row++)
        source.set(row, row % 4 ? 1 : 0, static_cast<int32_t>(row % 2));
    expect_digits(source, few_setups()[2], 1, 65535, 65535);
    for (const uint32_t rows : {0U, 1U}) {
        source_column small(4, rows, few_setups().front());
        if (rows == 1)
            small.set(0, 1, 1);
        expect_digits(small, few_setups().front(), 3, rows, rows, true);
    }
}

TEST_P(bit_to_text, all_32_bits_of_length_count)
{
    const setup &how = few_setups().front();
    for (const int32_t value : {0, 1, -1, 300, INT32_MIN}) {
        const auto size = static_cast<int32_t>(std::to_string(value).size());
        for (const int32_t length :
             {size, size + 1, 0x10000, 0x10001, INT32_MAX, size - 1, 0, -1, -0x10000 + 12, INT32_MIN, INT32_MIN + 12}) {
            source_column source(4, 1, how);
            source.set(0, 5, value);
            expect_digits(source, how, length, 1, length < size ? 0 : 1);
        }
    }
}

TEST_P(bit_to_text, a_stop_clears_the_flag_and_leaves_the_rows_behind)
{
    const uint32_t rows = 1024 + 40;
    for (const setup &how : all_setups()) {
        for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, rows - 1}) {
            source_column source(4, rows, how);
            for (uint32_t row = 0; row < rows; row++)
                source.set(row, row % 5 == 2 ? 0 : 4, row % 5 == 2 || row > failing_row ? 1000 : 10);
            source.set(failing_row, 0x80, -10);
            expect_digits(source, how, 2, rows, failing_row);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, bit_to_text, testing::ValuesIn(digits_rules),
                         [](const auto &each) { return std::string(each.param.name); });

} // namespace
} // namespace bcast::test
