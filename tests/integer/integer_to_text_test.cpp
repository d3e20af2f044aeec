// The integers in decimal: twelve casts to char, varchar and varchar2, four to text. They differ in who writes the
// digits, what they say of a text that is too long, and in pad_len; each against its own line of the tables below.

#include "tests/integer/in_decimal.h"

#include <limits>
#include <random>

namespace bcast::test {
namespace {

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int32_t int32_greatest = std::numeric_limits<int32_t>::max();
constexpr int64_t int64_least = std::numeric_limits<int64_t>::min();

// As the cast has it in its source.
std::string element_of(const row_cast &c, int64_t value)
{
    return c.from_bytes() == 8 ? image_of(value) : image_of(static_cast<int32_t>(value));
}

std::vector<batch_row> present_rows(const row_cast &c, const std::vector<int64_t> &values)
{
    std::vector<batch_row> rows;
    for (const int64_t value : values)
        rows.push_back({1, element_of(c, value)});
    return rows;
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

// Whatever a slot can hold: a tinyint's or smallint's range plays no part.
std::vector<int64_t> values_of_the_slot(size_t source_bytes)
{
    std::vector<int64_t> values{0,   -1,    1,     9,      10,      -9,      -10,         127,           -128,
                                128, 32767, 32768, -32769, 1000000, -100000, int32_least, int32_greatest};
    if (source_bytes == 8)
        for (const int64_t wide : {int64_t{1} << 32, -(int64_t{1} << 40), int64_least, -(int64_least + 1)})
            values.push_back(wide);
    return values;
}

// ---- To characters -----------------------------------------------------------

struct character_rule {
    row_cast cast;
    digits_by route;
    pad padding;

    row_cast of_length(int32_t length) const
    {
        row_cast c = cast;
        c.length = length;
        return c;
    }
};

void PrintTo(const character_rule &r, std::ostream *out) { *out << r.cast.name; }

template <class Element> character_rule rule(const char *name, bcast_length_fn *cast, digits_by route, pad padding)
{
    return {into_characters<Element>(name, cast, route, padding), route, padding};
}

#define NAMED(cast) #cast, cast
const std::vector<character_rule> &character_rules()
{
    static const std::vector<character_rule> rules{
        rule<int32_t>(NAMED(bcast_int_to_char), digits_by::str_from_int, pad::rest_of_length),
        rule<int32_t>(NAMED(bcast_int_to_varchar), digits_by::str_from_int, pad::nothing),
        rule<int32_t>(NAMED(bcast_int_to_varchar2), digits_by::str_from_int, pad::rest_of_length),
        rule<int32_t>(NAMED(bcast_smallint_to_char), digits_by::str_from_int, pad::rest_of_length),
        rule<int32_t>(NAMED(bcast_smallint_to_varchar), digits_by::str_from_int, pad::nothing),
        rule<int32_t>(NAMED(bcast_smallint_to_varchar2), digits_by::str_from_int, pad::rest_of_length),
        rule<int32_t>(NAMED(bcast_tinyint_to_char), digits_by::the_cast, pad::rest_of_length),
        rule<int32_t>(NAMED(bcast_tinyint_to_varchar), digits_by::the_cast, pad::nothing),
        rule<int32_t>(NAMED(bcast_tinyint_to_varchar2), digits_by::the_cast, pad::rest_of_length),
        rule<int64_t>(NAMED(bcast_int64_to_char), digits_by::the_cast, pad::rest_of_length),
        rule<int64_t>(NAMED(bcast_int64_to_varchar), digits_by::the_cast, pad::nothing),
        rule<int64_t>(NAMED(bcast_int64_to_varchar2), digits_by::the_cast, pad::rest_of_length),
    };
    return rules;
}

class integer_to_character : public testing::TestWithParam<character_rule> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(integer_to_character, rows_are_formatted_and_null_rows_left_out)
{
    const row_cast &c = GetParam().cast;
    for (const uint32_t row_count : {0U, 1U, 2U, 30U, 1025U}) {
        const std::vector<batch_row> rows = rows_with_some_null(c, row_count);
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    }
}

TEST_P(integer_to_character, null_rows_are_not_looked_at)
{
    const row_cast c = GetParam().of_length(2); // far shorter than what the rows hold
    const std::vector<batch_row> rows = sample_rows(c, std::vector<uint8_t>(1100, 0));
    for (const setup &how : all_setups())
        expect_batch(c, how, rows);
    expect_null_rows_unread(c);
}

TEST_P(integer_to_character, every_row_count_up_to_the_largest) { expect_row_counts(GetParam().cast); }

TEST_P(integer_to_character, every_value_of_the_slot)
{
    const row_cast c = GetParam().of_length(20);
    for (const setup &how : few_setups())
        expect_batch(c, how, present_rows(c, values_of_the_slot(c.from_bytes())));
}

TEST_P(integer_to_character, values_of_every_size_are_formatted)
{
    const row_cast c = GetParam().of_length(20);
    expect_batch(c, few_setups().front(), present_rows(c, values_of_every_size(c.from_bytes())));
}

TEST_P(integer_to_character, text_of_exactly_length_bytes_fits)
{
    for (const int64_t value : {int64_t{5}, int64_t{-5}, int64_t{100}, int64_t{int32_least}}) {
        const auto size = static_cast<int32_t>(std::to_string(value).size());
        for (const int32_t length : {size, size + 1, size - 1}) {
            const row_cast c = GetParam().of_length(length);
            expect_batch(c, few_setups().front(), present_rows(c, {value}));
        }
    }
}

TEST_P(integer_to_character, all_32_bits_of_length_count)
{
    for (const int32_t length :
         {0x10005, 0x10000, 0x7FFF0001, int32_greatest, 0, -1, -65531, -0x10000 + 8, int32_least, int32_least + 9}) {
        const row_cast c = GetParam().of_length(length);
        expect_batch(c, few_setups().front(), {{0, element_of(c, 7)}, {1, element_of(c, 12)}, {1, element_of(c, 7)}});
    }
}

TEST_P(integer_to_character, stop_clears_the_flag_and_leaves_rows_behind_untouched)
{
    const row_cast c = GetParam().of_length(3);
    const uint32_t row_count = 1024 + 40;
    for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, 1025U, row_count - 1}) {
        std::vector<batch_row> rows;
        for (uint32_t row = 0; row < row_count; row++)
            rows.push_back({static_cast<uint8_t>(row % 5 == 2 ? 0 : 4), element_of(c, value_of_up_to(3, row))});
        rows[failing_row] = {0x80, element_of(c, 1234)};
        if (failing_row + 1 < row_count)
            rows[failing_row + 1] = {1, element_of(c, -99999)}; // would fail too
        for (const setup &how : few_setups())
            expect_batch(c, how, rows);
    }
}

const auto name_of_rule = [](const auto &each) { return std::string(each.param.cast.name); };

INSTANTIATE_TEST_SUITE_P(casts, integer_to_character, testing::ValuesIn(character_rules()), name_of_rule);

// The codes by themselves, for the batches above have them from the rule of the casts.
TEST_P(integer_to_character, a_text_that_is_too_long_has_the_code_of_who_writes_the_digits)
{
    const row_cast c = GetParam().of_length(1);
    source_column source(c.from_bytes(), 1, few_setups().front());
    source.set_bytes(0, 1, element_of(c, 12));
    target_column target(c.to_bytes, 1);
    EXPECT_EQ(call(c.cast, {source.sealed(), target.column(), 1, 1}), code_of_too_long(GetParam().route));
}

// ---- To characters, by str_from_int ---------------------------------------------

class integer_to_character_by_service : public integer_to_character {};

TEST_P(integer_to_character_by_service, the_code_of_the_service_is_the_result)
{
    const row_cast &c = GetParam().cast;
    for (const setup &how : few_setups())
        for (const int32_t code : {-1, -6102, -6149, int32_least})
            expect_batch(c, how, present_rows(c, {6, 6, 55, 6}), {.results = {{2, code}}});
}

TEST_P(integer_to_character_by_service, each_call_may_fail)
{
    const row_cast &c = GetParam().cast;
    for (uint32_t failing_row = 0; failing_row < 6; failing_row++)
        expect_batch(c, few_setups().back(), present_rows(c, {0, 1, 2, 3, 4, 5}), {.results = {{failing_row, -700}}});
}

// The service judges the length: text and length that it has passed are taken without another look.
TEST_P(integer_to_character_by_service, what_the_service_wrote_is_stored_without_a_test)
{
    const std::map<int32_t, std::string> spellings{{12, "a dozen"}, {0, ""}};
    for (const auto &[value, text] : spellings)
        services().spell(value, text);
    services().answer("str_from_int", "12", 3); // positive: a success
    services().answer("str_from_int", "0", int32_greatest);
    for (const int32_t length : {9, 1, 0, -5}) {
        row_cast c = GetParam().of_length(length);
        c.convert = [&, pads = GetParam().padding == pad::rest_of_length](const row_input &input) {
            const auto value = input.as<int32_t>();
            const std::string &text = spellings.at(value);
            const int32_t pad_len = pads ? length - static_cast<int32_t>(text.size()) : 0;
            return row_outcome{.steps = {{formats(value, length), service_failure::passes_its_code},
                                         {assigns_text(input.target, input.row, text, pad_len)}},
                               .text = target_image::text{text, pad_len}};
        };
        expect_batch(c, few_setups().front(), present_rows(c, {12, 0}));
    }
}

std::vector<character_rule> rules_by_service()
{
    std::vector<character_rule> by_service;
    for (const character_rule &r : character_rules())
        if (r.route == digits_by::str_from_int)
            by_service.push_back(r);
    return by_service;
}

INSTANTIATE_TEST_SUITE_P(casts, integer_to_character_by_service, testing::ValuesIn(rules_by_service()), name_of_rule);

// ---- To text ------------------------------------------------------------------

template <class Element> row_cast into_text(const char *name, bcast_capture_fn *cast)
{
    return {.name = name,
            .cast = cast,
            .to_bytes = sizeof(bdta3_str),
            .flags = row_flags::copied,
            .no_null_ahead = true,
            .failure_clears_flag = true,
            .samples = integers_of_every_length<Element>(),
            .convert = [](const row_input &input) {
                const std::string text = std::to_string(input.as<Element>());
                const std::string_view working_value = input.first ? fresh_value : kept_value;
                return row_outcome{.steps = {{makes_constant(text, working_value), service_failure::passes_its_code},
                                             {assigns_constant(input.target, input.row, text)}},
                                   .text = target_image::text{constant_of(text), 0}};
            }};
}

const std::vector<row_cast> &text_rules()
{
    static const std::vector<row_cast> rules{
        into_text<int32_t>(NAMED(bcast_int_to_text)),
        into_text<int32_t>(NAMED(bcast_smallint_to_text)),
        into_text<int32_t>(NAMED(bcast_tinyint_to_text)),
        into_text<int64_t>(NAMED(bcast_int64_to_text)),
    };
    return rules;
}
#undef NAMED

class integer_to_text : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(integer_to_text, rows_become_constants_and_null_rows_are_left_out)
{
    const row_cast &c = GetParam();
    for (const uint32_t row_count : {0U, 1U, 2U, 30U, 1025U}) {
        const std::vector<batch_row> rows = rows_with_some_null(c, row_count);
        for (const setup &how : all_setups())
            for (const bool capture : {false, true})
                expect_batch(c, how, rows, {.capture = capture});
    }
}

TEST_P(integer_to_text, null_rows_call_nothing) { expect_null_rows_unread(GetParam()); }

TEST_P(integer_to_text, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

// From six characters on the constant stands behind outline.
TEST_P(integer_to_text, every_length_of_text)
{
    const row_cast &c = GetParam();
    std::vector<int64_t> values{0, 7, -7, 99999, 100000, 12, -9999, -10000, 3, int32_least, 5, int32_greatest, 99999};
    if (c.from_bytes() == 8)
        for (const int64_t wide : {int64_t{1} << 32, int64_least, int64_t{4}, -(int64_least + 1)})
            values.push_back(wide);
    for (const setup &how : few_setups())
        expect_batch(c, how, present_rows(c, values));
}

TEST_P(integer_to_text, values_of_every_size)
{
    const row_cast &c = GetParam();
    expect_batch(c, few_setups().front(), present_rows(c, values_of_every_size(c.from_bytes())));
}

TEST_P(integer_to_text, without_err_codes_the_first_failure_stops)
{
    const row_cast &c = GetParam();
    const std::vector<batch_row> rows = sample_rows(c, std::vector<uint8_t>(1024 + 40, 4));
    for (const setup &how : few_setups())
        for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, 1025U, 1063U})
            expect_batch(c, how, rows, {.results = {{failing_row, -4321}, {failing_row + 1, -4322}}});
}

TEST_P(integer_to_text, a_stop_among_null_rows)
{
    const row_cast &c = GetParam();
    const std::vector<batch_row> rows = rows_with_some_null(c, 60);
    for (const setup &how : all_setups())
        for (size_t failing_call = 0; failing_call < 30; failing_call += 3)
            expect_batch(c, how, rows, {.results = {{failing_call, -77}}});
}

TEST_P(integer_to_text, with_err_codes_failures_are_captured_by_row_of_the_batch)
{
    const row_cast &c = GetParam();
    std::vector<uint8_t> flags(2100, 0x80);
    for (uint32_t row = 2; row < flags.size(); row += 5)
        flags[row] = 0;
    const std::vector<batch_row> rows = sample_rows(c, flags);
    for (const setup &how : all_setups())
        expect_batch(c, how, rows,
                     {.results = {{0, -1},
                                  {1, -503},
                                  {480, -6111},
                                  {481, 1},
                                  {818, -7},
                                  {819, -8},
                                  {820, -9},
                                  {1200, -10},
                                  {1638, int32_least},
                                  {1679, -12}},
                      .capture = true});
}

TEST_P(integer_to_text, every_row_may_fail_and_the_counter_wraps_at_16_bits)
{
    const batch_plan plan{.results = {{0, -100}, {1, -101}, {2, -102}, {3, -103}, {4, -104}}, .capture = true};
    for (const uint16_t count_before : {uint16_t{0}, uint16_t{65534}}) {
        batch_plan counted = plan;
        counted.count_before = count_before;
        expect_batch(GetParam(), few_setups()[2], sample_rows(GetParam(), {1, 1, 1, 1, 1}), counted);
    }
}

TEST_P(integer_to_text, a_positive_result_is_a_success)
{
    const row_cast &c = GetParam();
    expect_batch(c, few_setups().front(), present_rows(c, {31, 7654321}),
                 {.results = {{0, 1}, {1, int32_greatest}}, .capture = true});
}

// The double cannot store so much, so the batch is written out; what counts is which place it was handed, and with
// which length.
TEST_P(integer_to_text, the_length_of_a_constant_is_compared_unsigned)
{
    constexpr uint32_t huge = 0x80000010;
    services().length_of_constants = huge;
    source_column source(GetParam().from_bytes(), 1, few_setups().front());
    source.set_bytes(0, 1, element_of(GetParam(), 8));
    target_column target(sizeof(bdta3_str), 1);
    EXPECT_EQ(call(GetParam().cast, {source.sealed(), target.column(), 1}), 0);
    EXPECT_TRUE(services().logged({makes_constant("8", fresh_value),
                                   {.service = "bdta3_col_assign_bin",
                                    .env = env(),
                                    .heap = heap(),
                                    .column = target.column(),
                                    .length = static_cast<int32_t>(huge),
                                    .working_value = "outline"}}));
}

INSTANTIATE_TEST_SUITE_P(casts, integer_to_text, testing::ValuesIn(text_rules()),
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
