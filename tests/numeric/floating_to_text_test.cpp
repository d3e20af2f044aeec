// Doubles and floats as characters and as text: the service writes them, and what kind of number they were is all that
// it is told. Of a double the predicate is asked before.

#include "tests/numeric/floating_values.h"
#include "tests/support/row_cast.h"

#include <services/numeric.h>

#include <limits>

namespace bcast::test {
namespace {

constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int32_t int32_greatest = std::numeric_limits<int32_t>::max();

enum class pad { rest_of_length, nothing };

template <class Source> double value_of(const row_input &input)
{
    if constexpr (sizeof(Source) == sizeof(float))
        return widened(input.as<uint32_t>());
    else
        return input.as<double>();
}

// What comes ahead of all else: the predicate, and the text.
template <class Source> std::vector<row_step> first_steps(double value)
{
    if constexpr (sizeof(Source) == sizeof(float))
        return {{formats_double(BCAST_WAS_FLOAT, value)}};
    else
        return {{judges_double(value), service_failure::is_overflow}, {formats_double(BCAST_WAS_DOUBLE, value)}};
}

template <class Source> row_cast rule(const char *name, any_cast cast, int32_t length)
{
    row_cast c{.name = name,
               .cast = cast,
               .to_bytes = sizeof(bdta3_str),
               .flags = row_flags::copied,
               .no_null_ahead = true,
               .failure_clears_flag = true,
               .samples = {},
               .convert = {},
               .length = length};
    for (const Source sample : {Source{1}, Source{-2.5}, Source{1e10F}, Source{0.1F}})
        c.samples.push_back(image_of(sample));
    if constexpr (sizeof(Source) == sizeof(float))
        for (const float odd : odd_floats)
            c.samples.push_back(image_of(odd));
    else
        for (const double odd : odd_doubles)
            c.samples.push_back(image_of(odd));
    return c;
}

template <class Source> row_cast to_character(const char *name, bcast_length_fn *cast, pad padding, int32_t length)
{
    row_cast c = rule<Source>(name, cast, length);
    c.convert = [=](const row_input &input) {
        const double value = value_of<Source>(input);
        const std::string text = services().numeric.text_of(image_of(value));
        const auto size = static_cast<int32_t>(text.size());
        row_outcome outcome{.steps = first_steps<Source>(value)};
        if (size > length) {
            outcome.status = ERR_TRUNCATED;
            return outcome;
        }
        const int32_t pad_len = padding == pad::rest_of_length ? length - size : 0;
        outcome.steps.push_back({assigns_text(input.target, input.row, text, pad_len)});
        outcome.text = {text, pad_len};
        return outcome;
    };
    return c;
}

template <class Source> row_cast to_text(const char *name, bcast_plain_fn *cast)
{
    row_cast c = rule<Source>(name, cast, 0);
    c.convert = [](const row_input &input) {
        const double value = value_of<Source>(input);
        const std::string text = services().numeric.text_of(image_of(value));
        row_outcome outcome{.steps = first_steps<Source>(value), .text = target_image::text{constant_of(text), 0}};
        outcome.steps.push_back(
            {makes_constant(text, input.first ? fresh_value : kept_value), service_failure::passes_its_code});
        outcome.steps.push_back({assigns_constant(input.target, input.row, text)});
        outcome.steps.push_back({clears_value()});
        return outcome;
    };
    return c;
}

std::vector<row_cast> character_rules(int32_t length)
{
#define NAMED(cast) #cast, cast
    return {
        to_character<double>(NAMED(bcast_double_to_char), pad::rest_of_length, length),
        to_character<double>(NAMED(bcast_double_to_varchar), pad::nothing, length),
        to_character<double>(NAMED(bcast_double_to_varchar2), pad::rest_of_length, length),
        to_character<float>(NAMED(bcast_float_to_char), pad::rest_of_length, length),
        to_character<float>(NAMED(bcast_float_to_varchar), pad::nothing, length),
        to_character<float>(NAMED(bcast_float_to_varchar2), pad::rest_of_length, length),
    };
}

std::vector<row_cast> text_rules()
{
    return {to_text<double>(NAMED(bcast_double_to_text)), to_text<float>(NAMED(bcast_float_to_text))};
#undef NAMED
}

std::vector<row_cast> rules()
{
    std::vector<row_cast> all = character_rules(20);
    for (row_cast &c : text_rules())
        all.push_back(std::move(c));
    return all;
}

bool takes_floats(const row_cast &c) { return c.from_bytes() == sizeof(float); }

// A number that both kinds of source can hold, and what vq_dou2char makes of it.
std::string told_element(const row_cast &c, float value, std::string text)
{
    services().numeric.texts[image_of(double{value})] = std::move(text);
    return takes_floats(c) ? image_of(value) : image_of(double{value});
}

class floating_to_text : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(floating_to_text, present_rows_are_formatted_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(floating_to_text, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

TEST_P(floating_to_text, only_a_text_and_a_double_can_fail_by_a_service)
{
    const row_cast &c = GetParam();
    if (takes_floats(c) && c.length != 0) // no service of these casts can fail
        expect_batch(c, few_setups().front(), sample_rows(c, {1, 2, 0, 3}), {.results = {{0, -1}}});
    else
        expect_stops(c);
}

INSTANTIATE_TEST_SUITE_P(casts, floating_to_text, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- To characters --------------------------------------------------------------------

class floating_to_character : public testing::Test {
protected:
    void SetUp() override { services().reset(); }
};

TEST_F(floating_to_character, a_text_longer_than_length_is_refused)
{
    for (const int32_t size : {1, 5, 40, 503, 504})
        for (const int32_t length : {0, size - 1, size, size + 1, 0x10000, 0x10000 + size - 1, int32_greatest})
            for (const row_cast &c : character_rules(length)) {
                SCOPED_TRACE("text of " + std::to_string(size) + ", length " + std::to_string(length));
                const std::string element = told_element(c, 12.5F, std::string(static_cast<size_t>(size), '7'));
                for (const setup &how : few_setups())
                    expect_batch(c, how, {{0x80, element}, {1, element}});
            }
}

TEST_F(floating_to_character, length_is_a_signed_number_of_32_bits)
{
    for (const int32_t length : {-1, -65536 + 20, int32_least, int32_least + 20})
        for (const row_cast &c : character_rules(length))
            for (const char *text : {"", "1"}) {
                SCOPED_TRACE("text \"" + std::string(text) + "\", length " + std::to_string(length));
                const std::string element = told_element(c, 12.5F, text);
                expect_batch(c, few_setups().front(), {{0, element}, {1, element}, {1, element}});
            }
}

TEST_F(floating_to_character, an_empty_text_fits_length_0)
{
    for (const row_cast &c : character_rules(0)) {
        const std::string element = told_element(c, 12.5F, "");
        expect_batch(c, few_setups().front(), {{3, element}, {1, element}});
    }
}

TEST_F(floating_to_character, a_text_that_is_too_long_stops_at_any_row_of_a_batch)
{
    for (const row_cast &c : character_rules(10)) {
        const std::string element = told_element(c, 12.5F, "12345678901");
        for (const setup &how : all_setups()) {
            for (const uint32_t failing_row : {0U, 1U, 500U, 1023U, 1024U, 1063U}) {
                std::vector<batch_row> rows = sample_rows(c, std::vector<uint8_t>(1064, 5));
                rows[7] = {0, element};
                rows[failing_row].element = element;
                rows[1063].element = element;
                expect_batch(c, how, rows);
            }
        }
    }
}

// No cast looks for a failure in the length of a text.
TEST_F(floating_to_character, a_length_below_zero_is_taken_as_it_is)
{
    constexpr int32_t pad_lens[] = {7, 0, 7, 7, 0, 7};
    const std::vector<row_cast> all = character_rules(4);
    for (size_t k = 0; k < all.size(); k++) {
        const row_cast &c = all[k];
        services().reset();
        const std::string element = told_element(c, 12.5F, "");
        services().numeric.text_lengths[image_of(12.5)] = -3;
        source_column source(c.from_bytes(), 1, few_setups().front());
        source.set_bytes(0, 1, element);
        target_column target(sizeof(bdta3_str), 1);
        service_call assigned = assigns_text(target.column(), 0, "", pad_lens[k]);
        assigned.length = -3;
        EXPECT_EQ(call(c.cast, {source.sealed(), target.column(), 1, 4}), 0) << c.name;
        ASSERT_FALSE(services().log().empty());
        EXPECT_EQ(describe(services().log().back()), describe(assigned)) << c.name;
    }
}

// ---- To text ----------------------------------------------------------------------------

TEST(floating_to_large_object, texts_of_every_length)
{
    for (const row_cast &c : text_rules()) {
        services().reset();
        std::vector<batch_row> rows = sample_rows(c, {1});
        for (const uint32_t size : {0U, 1U, 4U, 5U, 6U, 7U, 5U, 48U, 49U, 399U, 503U, 504U})
            rows.push_back({1, told_element(c, static_cast<float>(size) + 0.5F, std::string(size, '7'))});
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    }
}

// ---- By hand ------------------------------------------------------------------------------

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
    services().numeric.texts[image_of(12.5)] = "+12.5";
    source_column source(sizeof value, 1, few_setups().front());
    source.set(0, 1, value);
    target_column target(sizeof(bdta3_str), 1);
    one_text result{call(cast, {source.sealed(), target.column(), 1, length}), target.flags()[0]};
    if (result.status == 0) {
        bdta3_str element;
        std::memcpy(&element, target.column()->data->values, sizeof element);
        result.text.assign(element.text, static_cast<size_t>(element.length));
        result.pad_len = element.pad_len;
    }
    return result;
}

TEST(floating_to_text_by_hand, lengths_and_padding)
{
    EXPECT_EQ(cast_one(bcast_double_to_char, 5, 12.5), (one_text{0, 1, "+12.5", 0}));
    EXPECT_EQ(cast_one(bcast_double_to_char, 4, 12.5), (one_text{-6108, 0}));
    EXPECT_EQ(cast_one(bcast_double_to_char, 9, 12.5), (one_text{0, 1, "+12.5", 4}));
    EXPECT_EQ(cast_one(bcast_double_to_varchar, 9, 12.5), (one_text{0, 1, "+12.5", 0}));
    EXPECT_EQ(cast_one(bcast_double_to_varchar2, 9, 12.5), (one_text{0, 1, "+12.5", 4}));
    EXPECT_EQ(cast_one(bcast_float_to_char, 9, 12.5F), (one_text{0, 1, "+12.5", 4}));
    EXPECT_EQ(cast_one(bcast_float_to_varchar, 9, 12.5F), (one_text{0, 1, "+12.5", 0}));
    EXPECT_EQ(cast_one(bcast_float_to_varchar2, 9, 12.5F), (one_text{0, 1, "+12.5", 4}));
    EXPECT_EQ(cast_one(bcast_float_to_varchar, 4, 12.5F), (one_text{-6108, 0}));
}

} // namespace
} // namespace bcast::test
