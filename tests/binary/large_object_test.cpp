// Characters and binary to text and blob, row by row through a large-object constant; and text and blob by whole
// columns.

#include "tests/support/row_cast.h"
#include "tests/support/text_element.h"

#include <algorithm>
#include <limits>

namespace bcast::test {
namespace {

using namespace std::string_literals;

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int32_t int32_greatest = std::numeric_limits<int32_t>::max();

// ---- Row by row ---------------------------------------------------------------------------

// A constant is made in the working value, which is released when it is stored. Where that is refused it is not.
void add_constant(const row_input &input, const std::string &value, row_outcome &outcome)
{
    outcome.steps.push_back(
        {makes_constant(value, input.first ? fresh_value : kept_value), service_failure::passes_its_code});
    outcome.steps.push_back({assigns_constant(input.target, input.row, value)});
    outcome.steps.push_back({clears_value()});
    outcome.text = {constant_of(value), 0};
}

// The padding becomes blanks.
row_outcome of_characters(const row_input &input)
{
    const auto element = input.as<bdta3_str>();
    row_outcome outcome;
    add_constant(input, bytes_at(element.text, element.length) + std::string(static_cast<size_t>(element.pad_len), ' '),
                 outcome);
    return outcome;
}

row_outcome of_bytes(const row_input &input)
{
    const auto element = input.as<bdta3_str>();
    row_outcome outcome;
    add_constant(input, bytes_at(element.text, element.length), outcome);
    return outcome;
}

row_outcome of_digits(const row_input &input)
{
    const auto element = input.as<bdta3_str>();
    row_outcome outcome{.steps = {{spells(element), service_failure::passes_its_code}}};
    add_constant(input, services().binary.text_of(bytes_at(element.text, element.length)).c_str(), outcome);
    return outcome;
}

row_cast rule(const char *name, any_cast cast, std::vector<std::string> samples,
              row_outcome (*convert)(const row_input &input))
{
    return {.name = name,
            .cast = cast,
            .to_bytes = sizeof(bdta3_str),
            .flags = row_flags::copied,
            .no_null_ahead = true,
            .failure_clears_flag = true,
            .samples = std::move(samples),
            .convert = convert,
            .null_element = element_of_length(5)};
}

// Constants that stand inline and outline, long and short ones in turn.
std::vector<std::string> padded_samples()
{
    return {text_element("a long value", 20), text_element("ab", 3),    text_element("sixsix", 0), text_element("", 0),
            text_element("\0\xFF"s, 0),       text_element("fiver", 0), text_element("ab ", 3),    text_element("", 7),
            text_element("five", 1)};
}

std::vector<std::string> binary_samples()
{
    return text_elements({"a long value", "ab", "sixsix", "", "\0\xFF"s, "fiver", "ab ", "five"});
}

#define NAMED(cast) #cast, &cast
std::vector<row_cast> casts_of_characters()
{
    return {rule(NAMED(bcast_varchar_to_blob), padded_samples(), of_characters),
            rule(NAMED(bcast_varchar_to_text), padded_samples(), of_characters)};
}

row_cast binary_to_blob_cast() { return rule(NAMED(bcast_binary_to_blob), binary_samples(), of_bytes); }
row_cast binary_to_text_cast() { return rule(NAMED(bcast_binary_to_text), binary_samples(), of_digits); }
#undef NAMED

std::vector<row_cast> all_casts()
{
    std::vector<row_cast> all = casts_of_characters();
    all.push_back(binary_to_blob_cast());
    all.push_back(binary_to_text_cast());
    return all;
}

std::string name_of(const testing::TestParamInfo<row_cast> &each) { return each.param.name; }

class to_large_object : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }

    row_cast c = GetParam();

    // A binary's pad_len is nobody's business.
    std::string element(const std::string &bytes, int32_t pad_len) const
    {
        return text_element(bytes, of_padded_characters() ? pad_len : unread_pad_len);
    }
    bool of_padded_characters() const { return c.captures(); }
};

TEST_P(to_large_object, rows_are_stored_and_null_rows_left_out) { expect_rows_and_null_rows(c); }

TEST_P(to_large_object, null_rows_are_not_looked_into) { expect_null_rows_unread(c); }

TEST_P(to_large_object, every_row_count_up_to_the_largest) { expect_row_counts(c); }

TEST_P(to_large_object, values_of_every_length_around_the_inline_room)
{
    for (const setup &how : few_setups())
        for (size_t size = 0; size <= 12; size++)
            expect_batch(c, how, {{0x80, element("abcdefghijklmnop"s.substr(0, size), 0)}});
}

TEST_P(to_large_object, large_values)
{
    for (const size_t size : {size_t{1023}, size_t{16384}, size_t{32766}, size_t{32767}}) {
        std::string bytes(size, '\x9D');
        bytes.front() = '\x12';
        bytes.back() = '\x34';
        expect_batch(c, few_setups().front(), {{1, element(bytes, 1)}, {1, element("a", 2)}});
    }
}

TEST_P(to_large_object, an_empty_value_is_stored_in_every_mode)
{
    c.compat_mode2 = BCAST_CUT_BY_CHARSET_6;
    for (const int32_t mode : {0, 1, 2, 3}) {
        c.compat_mode = mode;
        expect_batch(c, few_setups()[1], {{1, element("", 0)}, {1, element("", 0)}});
    }
}

// Where the constant stands is told by the working value's length, unsigned, and how long it is by that of the value or
// by the working value's. The truth is the same; here the double says otherwise. Written out, for what is stored then
// is of no meaning.
TEST_P(to_large_object, the_length_of_the_working_value)
{
    struct lie {
        std::string value;
        uint32_t length;
    };
    const bool of_digits = c.name == "bcast_binary_to_text"s;
    for (const auto &[value, length] : {lie{"ab", 49}, lie{"abcdef", 48}, lie{"abcdefgh", 44}, lie{"ab", 0x80000001},
                                        lie{"abcd", 0xFFFFFFFF}, lie{"ab", 0}}) {
        SCOPED_TRACE(std::to_string(value.size()) + " bytes, working value of " + std::to_string(length));
        services().reset();
        services().length_of_constants = length;
        source_column source(sizeof(bdta3_str), 1, few_setups().front());
        source.set_bytes(0, 1, element(of_digits ? value.substr(0, value.size() / 2) : value, 0));
        target_column target(sizeof(bdta3_str), 1);
        EXPECT_EQ(call(c.cast, {.src = source.sealed(), .dst = target.column(), .rows = 1}), 0);
        const std::vector<service_call> &log = services().log();
        const auto assigned = std::ranges::find(log, "bdta3_col_assign_bin"s, &service_call::service);
        ASSERT_NE(assigned, log.end());
        EXPECT_EQ(assigned->working_value, length > NSTR_INLINE_MAX ? "outline" : "inline");
        if (of_digits) {
            EXPECT_EQ(assigned->length, static_cast<int32_t>(length));
        } else {
            EXPECT_EQ(assigned->bytes, constant_of(value));
        }
    }
}

TEST_P(to_large_object, a_failure_of_a_service_stops_with_its_code) { expect_stops(c); }

INSTANTIATE_TEST_SUITE_P(casts, to_large_object, testing::ValuesIn(all_casts()), name_of);

// ---- Characters -----------------------------------------------------------------------------

class varchar_to_large_object : public to_large_object {};

TEST_P(varchar_to_large_object, the_padding_becomes_blanks)
{
    for (const std::string &padded :
         {text_element("ab", 0), text_element("ab", 1), text_element("ab", 3), text_element("ab", 4),
          text_element("", 5), text_element("", 6), text_element("ab  ", 2), text_element("\0"s, 2),
          text_element("ab", 1000), text_element("", 32768), text_element("a", 32767),
          text_element(std::string(20000, 'q'), 12768), text_element(std::string(32767, 'q'), 1),
          text_element(std::string(32768, 'q'), 0)})
        expect_batch(c, few_setups().front(), {{1, padded}});
}

TEST_P(varchar_to_large_object, a_long_text_leaves_nothing_in_a_short_one_behind_it)
{
    expect_batch(c, few_setups().front(),
                 {{1, text_element(std::string(3000, 'q'), 0)},
                  {1, text_element("ab", 8)},
                  {1, text_element(std::string(10, 'z'), 0)},
                  {1, text_element("", 4)},
                  {1, text_element("c", 0)}});
}

TEST_P(varchar_to_large_object, failures_are_captured_by_row_of_the_batch) { expect_captures(c); }

INSTANTIATE_TEST_SUITE_P(casts, varchar_to_large_object, testing::ValuesIn(casts_of_characters()), name_of);

// ---- Binary -------------------------------------------------------------------------------------

TEST(binary_to_blob, takes_the_bytes_from_the_source_however_many_there_are)
{
    services().reset();
    for (const size_t size : {size_t{0}, size_t{1}, size_t{6}, size_t{32768}, size_t{65536}, size_t{200000}}) {
        const std::string element = text_element(std::string(size, '\xC3'), 3);
        expect_batch(binary_to_blob_cast(), few_setups().front(), {{1, element}});
        bdta3_str value;
        std::memcpy(&value, element.data(), sizeof value);
        EXPECT_EQ(services().binary.constant_from, value.text);
    }
}

TEST(binary_to_text, the_digits_end_at_their_terminator)
{
    services().reset();
    const std::string bytes = "\x11\x22\x33\x44";
    for (const std::string &digits :
         {""s, "1"s, "11"s, "1122334"s, "11223344"s, "11  "s, "    "s, "11\0\0\0\0\0\0"s, "1122\000334"s}) {
        services().binary.spelled[bytes] = digits;
        expect_batch(binary_to_text_cast(), few_setups().front(), {{1, text_element(bytes)}});
    }
}

// ---- By hand ------------------------------------------------------------------------------

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
        source_column source(sizeof(bdta3_str), 1, few_setups().front());
        source.set_bytes(0, 1, text_element(e.bytes, e.pad_len));
        target_column target(sizeof(bdta3_str), 1);
        target_image expected = target.image();
        expected.flags = {1};
        expected.no_null = 0;
        expected.texts[0] = {constant_of(e.value), 0};
        EXPECT_EQ(call(e.cast, {.src = source.sealed(), .dst = target.column(), .rows = 1}), 0);
        EXPECT_TRUE(target.holds(expected)) << e.value;
    }
}

// ---- Whole columns ----------------------------------------------------------------------------

// One call for the batch, so that there are no rows to tell of.
class large_object_copy : public testing::TestWithParam<bcast_plain_fn *> {
protected:
    void SetUp() override { services().reset(); }

    // Copies a batch of these rows, the call with this result.
    static void expect_copy(const setup &how, const std::vector<batch_row> &rows, int32_t result,
                            uint32_t rows_handed_over)
    {
        if (HasFailure())
            return; // the first bad batch tells enough
        SCOPED_TRACE(std::to_string(rows.size()) + " rows, result " + std::to_string(result) + ", " + describe(how));
        services().start_batch();
        services().fail_call(0, result);
        const auto row_count = static_cast<uint32_t>(rows.size());
        source_column source(sizeof(bdta3_str), row_count, how);
        target_column target(sizeof(bdta3_str), row_count, how);
        target_image expected = target.image();
        for (uint32_t row = 0; row < row_count; row++) {
            source.set_bytes(row, rows[row].flag, rows[row].element);
            if (result < 0) {
                expected.put(row, failed_copy);
                continue;
            }
            expected.flags[row] = rows[row].flag;
            const auto element = source.element<bdta3_str>(row);
            if (rows[row].flag != 0)
                expected.texts[row] = {bytes_at(element.text, element.length), pad_len_of_copies};
        }
        if (result >= 0)
            expected.no_null = how.no_null;
        service_call copy = copies_row(source.column(), target.column(), 0);
        copy.length = static_cast<int32_t>(row_count);
        const call_arguments with{.src = source.sealed(), .dst = target.column(), .rows = rows_handed_over};
        EXPECT_EQ(rows_handed_over > 65535 ? call_with_wide_rows(GetParam(), with) : call(GetParam(), with),
                  std::min(result, 0));
        EXPECT_TRUE(target.holds(expected));
        EXPECT_TRUE(services().logged({copy}));
    }

    // Of values, and each fourth is null.
    static std::vector<batch_row> some_rows(uint32_t count)
    {
        std::vector<batch_row> rows;
        for (uint32_t row = 0; row < count; row++)
            rows.push_back(row % 4 == 2 ? batch_row{0, element_of_length(5)}
                                        : batch_row{0x83, text_element(constant_of(std::to_string(row % 100)), 0)});
        return rows;
    }
};

TEST_P(large_object_copy, is_one_call_for_the_batch)
{
    for (const uint32_t rows : {0U, 1U, 7U, 1100U})
        for (const setup &how : all_setups())
            for (const int32_t result : {0, 1, int32_greatest})
                expect_copy(how, some_rows(rows), result, rows);
}

TEST_P(large_object_copy, that_fails_leaves_no_null_and_gives_the_code)
{
    for (const setup &how : all_setups())
        for (const int32_t code : {-1, -503, int32_least})
            expect_copy(how, std::vector<batch_row>(3, {1, text_element("x", 0)}), code, 3);
}

TEST_P(large_object_copy, of_65536_rows_in_32_bits_is_of_none)
{
    for (const uint32_t rows : {0U, 1U})
        expect_copy(few_setups()[1], some_rows(rows), 0, 0x10000 + rows);
}

TEST_P(large_object_copy, of_the_largest_batch)
{
    expect_copy(few_setups()[3], std::vector<batch_row>(65535, {0, element_of_length(5)}), 0, 65535);
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
