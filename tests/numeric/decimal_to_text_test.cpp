// Decimals as characters, in the shape of the source that length has beside the target's length, and as text, which has
// no shape.

#include "tests/support/row_cast.h"
#include "tests/support/settings.h"

#include <limits>

namespace bcast::test {
namespace {

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();

struct shape {
    int32_t len; // as 16 bits without a sign, as which the service takes it
    int32_t prec;
};

constexpr shape no_shape{0, 0};

enum class pad { rest_of_length, nothing };

struct cast_and_pad_len {
    bcast_length_fn *cast;
    int32_t pad_len;
};

row_cast rule(const char *name, any_cast cast, std::function<row_outcome(const row_input &)> convert, int32_t length)
{
    row_cast c{.name = name,
               .cast = cast,
               .to_bytes = sizeof(bdta3_str),
               .flags = row_flags::copied,
               .no_null_ahead = true,
               .failure_clears_flag = true,
               .samples = {},
               .convert = std::move(convert),
               .length = length};
    for (uint32_t number = 0; number < 13; number++)
        c.samples.push_back(image_of(some_decimal(number)));
    return c;
}

row_cast to_character(const char *name, bcast_length_fn *cast, pad padding, int32_t length, shape expected)
{
    const int32_t target_length = length & 0xFFFF;
    const auto convert = [=](const row_input &input) {
        const std::string text = services().numeric.text_of(input.image);
        const auto size = static_cast<int32_t>(text.size());
        row_outcome outcome{.steps = {{formats_decimal(input.where, input.image, 400, expected.len, expected.prec),
                                       service_failure::passes_its_code}}};
        if (size > target_length) {
            outcome.status = ERR_TRUNCATED;
            return outcome;
        }
        const int32_t pad_len = padding == pad::rest_of_length ? target_length - size : 0;
        outcome.steps.push_back({assigns_text(input.target, input.row, text, pad_len)});
        outcome.text = {text, pad_len};
        return outcome;
    };
    return rule(name, cast, convert, length);
}

std::vector<row_cast> character_rules(int32_t length, shape expected)
{
#define NAMED(cast) #cast, cast
    return {
        to_character(NAMED(bcast_dec_to_char), pad::rest_of_length, length, expected),
        to_character(NAMED(bcast_dec_to_varchar), pad::nothing, length, expected),
        to_character(NAMED(bcast_dec_to_varchar2), pad::rest_of_length, length, expected),
    };
#undef NAMED
}

// What is assigned is what stands at outline, and as many bytes as the working value says.
row_step assigns_outline(const row_input &input, const std::string &bytes, std::string_view place)
{
    service_call call = assigns_bytes(input.target, input.row, bytes);
    call.working_value = place;
    return {std::move(call)};
}

row_cast to_text()
{
    const auto convert = [](const row_input &input) {
        const std::string text = services().numeric.text_of(input.image);
        const bool stays_inline = text.size() + LOB_HEADER_SIZE <= NSTR_INLINE_MAX;
        const bool at_rubbish = stays_inline && !services().outline_stays_inline;
        const std::string stored =
            at_rubbish ? std::string(text.size() + LOB_HEADER_SIZE, rubbish_byte) : constant_of(text);
        return row_outcome{
            .steps = {{formats_decimal(input.where, input.image, 500, 0, 0), service_failure::passes_its_code},
                      {makes_constant(text, input.first ? fresh_value : kept_value), service_failure::is_not_looked_at},
                      assigns_outline(input, stored, stays_inline && !at_rubbish ? "inline" : "outline"),
                      {clears_value()}},
            .text = target_image::text{stored, 0},
            .behind_failure = [input](row_outcome &outcome) {
                const std::string left(length_of_failed_constant, rubbish_byte);
                outcome.steps[2] = assigns_outline(input, left, "outline");
                outcome.text = {left, 0};
            }};
    };
    return rule("bcast_dec_to_text", bcast_dec_to_text, convert, 0);
}

std::vector<row_cast> rules()
{
    std::vector<row_cast> all = character_rules(0x0A020014, {10, 2});
    all.push_back(to_text());
    return all;
}

class decimal_to_text : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override
    {
        services().reset();
        services().outline_stays_inline = true;
    }
};

TEST_P(decimal_to_text, present_rows_are_formatted_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(decimal_to_text, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

TEST_P(decimal_to_text, a_failure_of_the_service_stops_with_its_code) { expect_stops(GetParam()); }

TEST_P(decimal_to_text, no_mode_is_read_but_compat_mode_by_the_casts_to_characters)
{
    for (const int32_t compat_mode2 : {0, 1, 2, 3}) {
        const settings set(0, compat_mode2);
        expect_element(GetParam(), image_of(some_decimal(99)));
    }
}

INSTANTIATE_TEST_SUITE_P(casts, decimal_to_text, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- The word of target length and shape -------------------------------------------

struct word {
    int32_t length;
    shape read;
};

constexpr int32_t as_word(uint32_t bits) { return static_cast<int32_t>(bits); }

// len has a sign here and goes on as 16 bits, prec has none.
constexpr word words[] = {
    {0x00000014, no_shape},
    {0x01020014, {1, 2}},
    {0x7FFF0014, {0x7F, 0xFF}},
    {as_word(0x80000014), {0xFF80, 0}},
    {as_word(0xFF000014), {0xFFFF, 0}},
    {as_word(0xFFFF0014), {0xFFFF, 0xFF}},
    {as_word(0x81800014), {0xFF81, 0x80}},
    {0x26820014, {0x26, 0x82}},
    {0x00010014, {0, 1}},
    {0x26000014, {0x26, 0}},
    {0x0A02FFFF, {10, 2}},
    {0x0A028000, {10, 2}},
};

// The value of prec that stands for no shape, whatever len is.
constexpr int32_t words_without_shape[] = {0x00810014, 0x0A810014, 0x7F810014, as_word(0x80810014),
                                           as_word(0xFF810014)};

class decimal_to_character : public testing::Test {
protected:
    void SetUp() override { services().reset(); }

    static void expect_shape(int32_t length, shape expected)
    {
        SCOPED_TRACE("length word " + std::to_string(length) + ", compat_mode " +
                     std::to_string(global_bcast_var.compat_mode));
        for (const row_cast &c : character_rules(length, expected))
            expect_element(c, image_of(some_decimal(99)));
    }
};

TEST_F(decimal_to_character, the_upper_half_of_length_is_the_shape)
{
    for (const int32_t compat_mode : {0, 1, 3, 4, -2, 0x10002, int32_least + 2}) {
        const settings set(compat_mode);
        for (const auto &[length, read] : words)
            expect_shape(length, read);
        for (const int32_t length : words_without_shape)
            expect_shape(length, no_shape);
    }
}

TEST_F(decimal_to_character, compat_mode_2_drops_the_shape)
{
    const settings set(BCAST_MODE_EMPTY_IS_NULL);
    for (const auto &[length, read] : words)
        expect_shape(length, no_shape);
    for (const int32_t length : words_without_shape)
        expect_shape(length, no_shape);
}

TEST_F(decimal_to_character, compat_mode_is_read_once_for_a_batch)
{
    for (const int32_t later : {2, 0}) {
        const settings set(2 - later);
        services().numeric.on_text = [later] { bcast_dll_var_init(later, 0); };
        for (const row_cast &c : character_rules(0x0A020014, later == 2 ? shape{10, 2} : no_shape)) {
            bcast_dll_var_init(2 - later, 0);
            expect_batch(c, few_setups().front(), sample_rows(c, {1, 0, 2, 3}));
        }
    }
}

TEST_F(decimal_to_character, a_text_longer_than_the_low_16_bits_of_length_is_refused)
{
    const std::string image = image_of(some_decimal(99));
    for (const size_t size : {size_t{1}, size_t{5}, size_t{40}, size_t{399}, size_t{400}}) {
        services().numeric.texts[image] = std::string(size, '7');
        for (const uint32_t length : {uint32_t{0}, static_cast<uint32_t>(size) - 1, static_cast<uint32_t>(size),
                                      static_cast<uint32_t>(size) + 1, 0x7FFFU, 0x8000U, 0xFFFFU}) {
            SCOPED_TRACE("text of " + std::to_string(size) + ", length " + std::to_string(length));
            for (const row_cast &c : character_rules(static_cast<int32_t>(0x0A020000 | length), {10, 2}))
                for (const setup &how : few_setups())
                    expect_batch(c, how, {{0x80, image}, {1, image}});
        }
    }
}

TEST_F(decimal_to_character, an_empty_text_fits_any_length)
{
    const std::string image = image_of(some_decimal(99));
    services().numeric.texts[image] = "";
    for (const int32_t length : {0x0A020000, 0x0A020003})
        for (const row_cast &c : character_rules(length, {10, 2}))
            expect_batch(c, few_setups().front(), {{0x80, image}, {1, image}});
}

TEST_F(decimal_to_character, a_text_that_is_too_long_stops_at_any_row_of_a_batch)
{
    const std::string image = image_of(some_decimal(99));
    services().numeric.texts[image] = "12345678901";
    for (const row_cast &c : character_rules(0x0A02000A, {10, 2})) {
        for (const setup &how : all_setups()) {
            for (const uint32_t failing_row : {0U, 1U, 500U, 1023U, 1024U, 1063U}) {
                std::vector<batch_row> rows = sample_rows(c, std::vector<uint8_t>(1064, 5));
                rows[7] = {0, image};
                rows[failing_row].element = image;
                rows[1063].element = image;
                expect_batch(c, how, rows);
            }
        }
    }
}

// A length below zero is no text's; it is compared as the signed number that it is.
TEST_F(decimal_to_character, the_text_length_is_compared_signed)
{
    services().numeric.text_lengths[image_of(some_decimal(99))] = -3;
    for (const auto &[cast, pad_len] : {cast_and_pad_len{bcast_dec_to_char, 7}, {bcast_dec_to_varchar, 0}}) {
        source_column source(sizeof(xdec), 1, few_setups().front());
        source.set(0, 1, some_decimal(99));
        target_column target(sizeof(bdta3_str), 1);
        EXPECT_EQ(call(cast, {source.sealed(), target.column(), 1, 4}), 0);
        service_call assigned = assigns_text(target.column(), 0, "", pad_len);
        assigned.length = -3;
        ASSERT_EQ(services().log().size(), 2U);
        EXPECT_EQ(describe(services().log().back()), describe(assigned));
        services().reset();
        services().numeric.text_lengths[image_of(some_decimal(99))] = -3;
    }
}

TEST_F(decimal_to_character, a_length_that_the_service_has_not_stored_is_zero)
{
    services().numeric.stores_text_length = false;
    source_column source(sizeof(xdec), 1, few_setups().front());
    source.set(0, 1, some_decimal(99));
    target_column target(sizeof(bdta3_str), 1);
    target_image expected = target.image();
    expected.no_null = 0;
    expected.flags = {1};
    expected.texts[0] = {"", 9};
    EXPECT_EQ(call(bcast_dec_to_char, {source.sealed(), target.column(), 1, 9}), 0);
    EXPECT_TRUE(target.holds(expected));
}

// ---- To text -----------------------------------------------------------------------

class decimal_to_large_object : public testing::Test {
protected:
    void SetUp() override { services().reset(); }
};

TEST_F(decimal_to_large_object, texts_of_every_length_have_no_shape_in_any_mode)
{
    services().outline_stays_inline = true;
    const row_cast c = to_text();
    std::vector<batch_row> rows = sample_rows(c, {1});
    for (const uint32_t size : {0U, 1U, 4U, 5U, 6U, 7U, 5U, 48U, 49U, 399U, 400U, 401U, 499U, 500U}) {
        const std::string image = image_of(some_decimal(1000 + size));
        services().numeric.texts[image] = std::string(size, '7');
        rows.push_back({1, image});
    }
    for (const int32_t compat_mode : {0, 1, 2, 3}) {
        const settings set(compat_mode);
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    }
}

TEST_F(decimal_to_large_object, what_stands_at_outline_is_assigned_for_every_length)
{
    services().outline_stays_inline = false;
    const row_cast c = to_text();
    for (const setup &how : few_setups())
        expect_batch(c, how, sample_rows(c, {1, 2, 3, 4, 5, 6, 7}));
}

TEST_F(decimal_to_large_object, nobody_looks_at_the_result_of_making_the_constant)
{
    services().outline_stays_inline = true;
    const row_cast c = to_text();
    for (const setup &how : all_setups())
        for (const int32_t code : {-1, -503, int32_least, 1})
            expect_batch(c, how, sample_rows(c, {1, 2, 0, 3}), {.results = {{1, code}, {5, code}}});
}

// ---- By hand -----------------------------------------------------------------------

TEST_F(decimal_to_character, varchar2_is_padded_as_char_is_and_varchar_is_not)
{
    services().numeric.texts[image_of(some_decimal(1))] = "3.14";
    for (const auto &[cast, pad_len] :
         {cast_and_pad_len{bcast_dec_to_char, 6}, {bcast_dec_to_varchar, 0}, {bcast_dec_to_varchar2, 6}}) {
        source_column source(sizeof(xdec), 1, few_setups().front());
        source.set(0, 1, some_decimal(1));
        target_column target(sizeof(bdta3_str), 1);
        target_image expected = target.image();
        expected.no_null = 0;
        expected.flags = {1};
        expected.texts[0] = {"3.14", pad_len};
        EXPECT_EQ(call(cast, {source.sealed(), target.column(), 1, 0x0302000A}), 0);
        EXPECT_TRUE(target.holds(expected));
    }
}

} // namespace
} // namespace bcast::test
