// Casts to boolean, which keeps its null in the element, and from it; the two tests for a binary zero.

#include "tests/logical/samples.h"
#include "tests/support/text_element.h"

#include <limits>

namespace bcast::test {
namespace {

template <class Float> std::vector<sample> floating_samples()
{
    using limits = std::numeric_limits<Float>;
    return {becomes(Float{0}, 0),
            becomes(Float{1}, 1),
            becomes(-Float{0}, 0),
            becomes(limits::quiet_NaN(), 1),
            becomes(limits::denorm_min(), 1),
            becomes(-limits::denorm_min(), 1),
            becomes(limits::infinity(), 1),
            becomes(Float{-0.5}, 1)};
}

std::vector<sample> int32_samples()
{
    std::vector<sample> samples{becomes(int32_t{0}, 0)};
    for (const int32_t value : {1, -1, 2, 0x100, 0x10000, 0x1000000, std::numeric_limits<int32_t>::min()})
        samples.push_back(becomes(value, 1));
    return samples;
}

std::vector<sample> int64_samples()
{
    std::vector<sample> samples{becomes(int64_t{0}, 0)};
    for (const int64_t value : {int64_t{1}, int64_t{-1}, int64_t{1} << 32, std::numeric_limits<int64_t>::min()})
        samples.push_back(becomes(value, 1));
    return samples;
}

// Byte 1 alone tells; the record of a true zero begins with 80 00.
std::vector<sample> dec_samples()
{
    return {becomes(dec(0x80, 0, 0), 0),    becomes(dec(0xC1, 1, 0), 1), becomes(dec(0xC1, 0, 0xFF), 0),
            becomes(dec(0x80, 0x40, 0), 1), becomes(dec(0, 0xFF, 0), 1), becomes(dec(0, 0, 1), 0)};
}

// Length and pad_len alone tell, and nobody may follow the pointer.
std::vector<sample> text_samples()
{
    const auto text = [](int32_t length, int32_t pad_len) {
        return bdta3_str{length, pad_len, static_cast<char *>(inaccessible())};
    };
    return {becomes(text(0, 0), 0), becomes(text(1, 0), 1),       becomes(text(0, 5), 1),
            becomes(text(5, 0), 1), becomes(text(0x10000, 0), 1), becomes(text(0, 0x1000000), 1),
            becomes(text(1, -1), 1)};
}

struct zero_case {
    std::string text;
    int32_t is_zero;
};

const std::vector<zero_case> &zero_cases()
{
    using namespace std::string_literals;
    static const std::vector<zero_case> cases{
        {"", 1},
        {"1", 1},
        {"\0"s, 1},
        {"12", 1},
        {"\0\0"s, 1},
        {"0x0", 1},
        {"0x1", 0},
        {"\0\0\0"s, 0},
        {"0x ", 0},
        {"zz0", 1},
        {"0x00", 1},
        {"0x10", 0},
        {"0x01", 0},
        {"000", 1},
        {"0x/", 0},
        {"0x\xB0", 0},
        {"0x000", 1},
        {"0x001", 0},
        {"0x010", 0},
        {"0x100", 0},
        {"0x0\0"
         "0"s,
         0},
        {"0x" + std::string(200, '0'), 1},
        {"0x" + std::string(200, '0') + "f", 0},
        {"0x" + std::string(70000, '0') + "1", 0},
    };
    return cases;
}

// The bytes beside inaccessible pages; the first two lie on one, for nobody has to look at them.
class text_without_a_prefix {
public:
    explicit text_without_a_prefix(const std::string &text)
        : read_(std::span<const char>(text).subspan(std::min<size_t>(2, text.size())), guard_edge::start)
    {}
    char *text() { return read_.data() - 2; }

private:
    guarded<char> read_;
};

std::vector<sample> varbinary_samples()
{
    std::vector<sample> samples;
    for (const zero_case &c : zero_cases()) {
        const auto pad_len = static_cast<int32_t>(samples.size() % 3); // has no part in it
        samples.push_back({text_element(c.text, pad_len), image_of(1 - c.is_zero)});
    }
    return samples;
}

std::vector<sample> from_boolean_samples(std::string (*stored)(int32_t))
{
    std::vector<sample> samples;
    for (const int32_t value : {0, 1, 2, -1, 127, 128, 300, 32767, 32768, 40000, 0x12345678, INT32_MIN})
        samples.push_back({image_of(value), stored(value)});
    return samples;
}

row_cast truth_of(const char *name, bcast_plain_fn *cast, const std::vector<sample> &samples)
{
    row_cast c = cast_of_samples(name, cast, row_flags::set_and_null_in_element, samples);
    c.no_null_is_set = true;
    c.null_result = image_of(int32_t{BOOL_UNKNOWN});
    return c;
}

// All rows are converted, whatever their flags.
row_cast boolean_for_all(const char *name, bcast_plain_fn *cast, const std::vector<sample> &samples)
{
    row_cast c = cast_of_samples(name, cast, row_flags::set, samples);
    c.no_null_is_set = true;
    return c;
}

// Of a value that is not read.
row_cast present_is_true(const char *name, bcast_plain_fn *cast, size_t from_bytes)
{
    row_cast c = truth_of(name, cast, {{std::string(from_bytes, '\0'), image_of(int32_t{1})}});
    c.reads = source_reading::flags_alone;
    return c;
}

#define NAMED(cast) #cast, cast
row_cast double_to_boolean()
{
    return asking_for_overflow(truth_of(NAMED(bcast_double_to_boolean), floating_samples<double>()));
}

std::vector<row_cast> rules()
{
    using enum row_flags;
    return {
        truth_of(NAMED(bcast_tinyint_to_boolean), int32_samples()),
        truth_of(NAMED(bcast_smallint_to_boolean), int32_samples()),
        truth_of(NAMED(bcast_int_to_boolean), int32_samples()),
        truth_of(NAMED(bcast_int64_to_boolean), int64_samples()),
        truth_of(NAMED(bcast_bit_to_boolean), int32_samples()),
        truth_of(NAMED(bcast_float_to_boolean), floating_samples<float>()),
        double_to_boolean(),
        truth_of(NAMED(bcast_dec_to_boolean), dec_samples()),
        truth_of(NAMED(bcast_char_to_boolean), text_samples()),
        truth_of(NAMED(bcast_varbinary_to_boolean), varbinary_samples()),
        present_is_true(NAMED(bcast_date_to_boolean), 12),
        present_is_true(NAMED(bcast_time_to_boolean), 12),
        present_is_true(NAMED(bcast_datetime_to_boolean), 12),
        present_is_true(NAMED(bcast_iv_ym_to_boolean), 12),
        present_is_true(NAMED(bcast_iv_dt_to_boolean), 24),
        boolean_for_all(NAMED(bcast_boolean_to_boolean), from_boolean_samples(as_it_is)),
        cast_of_samples(NAMED(bcast_boolean_to_tinyint), copied, from_boolean_samples(low_8_bits)),
        cast_of_samples(NAMED(bcast_boolean_to_smallint), converted_when_no_null, from_boolean_samples(low_16_bits)),
        cast_of_samples(NAMED(bcast_boolean_to_int), converted_when_no_null, from_boolean_samples(as_it_is)),
        cast_of_samples(NAMED(bcast_boolean_to_int64), converted_when_no_null, from_boolean_samples(as_int64)),
    };
}
#undef NAMED

class boolean_cast : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(boolean_cast, rows_are_converted_and_null_rows_treated_as_the_table_says)
{
    expect_rows_and_null_rows(GetParam());
}

TEST_P(boolean_cast, blocks_of_rows) { expect_blocks(GetParam()); }

TEST_P(boolean_cast, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

INSTANTIATE_TEST_SUITE_P(casts, boolean_cast, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

TEST(double_to_boolean, stops_at_the_value_refused_with_flags_and_no_null_set)
{
    services().reset();
    expect_stops(double_to_boolean());
}

// ---- The one cast that takes the flag of the output row ---------------------------

// No rule of rows tells this one: which flag counts goes by the row of the column. So its batches are written out.

void expect_varchar_to_boolean(source_column &source, const setup &how, uint32_t rows)
{
    SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
    services().reset();
    const std::vector<sample> samples = text_samples();
    target_column target(4, rows, how);
    target_image expected = target.image();
    expected.no_null = 1;
    std::ranges::fill(expected.flags, uint8_t{1});
    for (uint32_t row = 0; row < rows; row++) {
        const sample &s = samples[row % samples.size()];
        source.set_bytes(row, source.flag(row), s.from);
        if (how.no_null != 0 || source.column_flag(row) != 0)
            expected.put_bytes(row, s.to);
        else
            expected.put(row, int32_t{BOOL_UNKNOWN});
    }
    if (how.no_null != 0)
        source.hide_flags();
    EXPECT_EQ(call(bcast_varchar_to_boolean, {source.sealed(), target.column(), rows}), 0);
    EXPECT_TRUE(target.holds(expected));
    EXPECT_TRUE(services().logged({}));
}

TEST(varchar_to_boolean, takes_the_flag_of_the_output_row_and_the_value_of_the_source_row)
{
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 33U, 1024U, 1025U, 2600U, 65535U}) {
            source_column source(sizeof(bdta3_str), rows, how);
            for (uint32_t row = 0; row < rows; row++)
                source.set_column_flag(row, row % 3 == 1 ? 0 : static_cast<uint8_t>(1 + row % 255));
            expect_varchar_to_boolean(source, how, rows);
        }
    }
}

// Rows 3 and 0 of a column with null rows 1 and 2: the flags of rows 0 and 1 are the ones that count.
TEST(varchar_to_boolean, char_to_boolean_takes_both_from_the_source_row)
{
    const std::pair<bcast_plain_fn *, std::vector<int32_t>> casts[] = {{bcast_varchar_to_boolean, {1, 2}},
                                                                       {bcast_char_to_boolean, {1, 0}}};
    for (const auto &[cast, values] : casts) {
        source_column source(sizeof(bdta3_str), 4, {3, 0}, 0);
        source.set(0, 1, bdta3_str{7, 0, static_cast<char *>(inaccessible())});
        source.set(1, 1, bdta3_str{0, 0, static_cast<char *>(inaccessible())});
        source.set_column_flag(1, 0);
        source.set_column_flag(2, 0);
        target_column target(4, 2);
        target_image expected = target.image();
        expected.no_null = 1;
        expected.flags = {1, 1};
        expected.put(0, values[0]);
        expected.put(1, values[1]);
        EXPECT_EQ(call(cast, {source.sealed(), target.column(), 2}), 0);
        EXPECT_TRUE(target.holds(expected)) << (cast == bcast_char_to_boolean ? "char" : "varchar");
    }
}

// ---- Null ---------------------------------------------------------------------------

row_cast null_to_boolean()
{
    row_cast c = boolean_for_all("bcast_null_to_boolean", bcast_null_to_boolean,
                                 {{std::string(1, '\0'), image_of(int32_t{BOOL_UNKNOWN})}});
    c.reads = source_reading::nothing;
    return c;
}

TEST(null_to_boolean, every_row_is_present_and_unknown_and_the_source_not_read)
{
    services().reset();
    const row_cast c = null_to_boolean();
    for (const uint32_t row_count : {0U, 1U, 7U, 1024U, 1025U, 65535U}) {
        const std::vector<batch_row> rows = sample_rows(c, std::vector<uint8_t>(row_count, 1));
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    }
    expect_row_counts(c);
}

// ---- The tests for zero ---------------------------------------------------------------

TEST(varbinary_is_zero2, asks_for_the_digit_0_from_the_third_byte_on)
{
    for (const zero_case &c : zero_cases()) {
        guarded<char> text{std::span<const char>(c.text)};
        const auto length = static_cast<int32_t>(c.text.size());
        for (const int32_t pad_len : {0, 3}) {
            const bdta3_str value{length, pad_len, text.data()};
            EXPECT_EQ(bcast_varbinary_is_zero2(&value), c.is_zero) << testing::PrintToString(c.text);
        }
        text_without_a_prefix prefixless(c.text);
        const bdta3_str unseen{length, 0, prefixless.text()};
        EXPECT_EQ(bcast_varbinary_is_zero2(&unseen), c.is_zero)
            << testing::PrintToString(c.text) << ", first two bytes unreadable";
    }
}

TEST(varbinary_is_zero, reads_what_stands_behind_outline_be_it_short_or_not)
{
    for (const zero_case &c : zero_cases()) {
        guarded<char> text{std::span<const char>(c.text)};
        text_without_a_prefix prefixless(c.text);
        for (char *outline : {text.data(), prefixless.text()}) {
            // Inline stands what would give the other answer.
            nstr value{};
            std::ranges::fill(value.inline_bytes, c.is_zero ? '1' : '0');
            value.length = static_cast<uint32_t>(c.text.size());
            value.outline = outline;
            EXPECT_EQ(bcast_varbinary_is_zero(&value), c.is_zero) << testing::PrintToString(c.text);
        }
    }
}

} // namespace
} // namespace bcast::test
