// char, varchar and varchar2 to decimals: the service reads the text, at most 319 bytes of it, in the shape that length
// has. The three sources differ in their flags and in what becomes of a failure.

#include "tests/character/empty_text.h"
#include "tests/support/row_cast.h"
#include "tests/support/text_element.h"

#include <algorithm>
#include <limits>

namespace bcast::test {
namespace {

constexpr int32_t usual_shape = 0x0A02; // 10 digits in all, 2 behind the point
constexpr int32_t int32_least = std::numeric_limits<int32_t>::min();

row_cast rule(const char *name, any_cast cast, row_flags flags, int32_t length)
{
    row_cast c{.name = name,
               .cast = cast,
               .to_bytes = sizeof(xdec),
               .flags = flags,
               .no_null_ahead = true,
               .failure_clears_flag = false,
               .samples = text_elements({"0", "-7.25", "12", " 4 ", "no number", "1e5", "+99999999999999999999"}),
               .convert = {},
               .length = length,
               .null_element = element_of_length(5)};
    const int32_t len = length >> 8 & 0xFF, prec = length & 0xFF;
    c.convert = [len, prec](const row_input &input) {
        const auto element = input.as<bdta3_str>();
        if (element.length == 0)
            return row_outcome{.turns_null = true};
        const int32_t read = std::min<int32_t>(static_cast<uint16_t>(element.length), BCAST_NUMBER_TEXT_MAX);
        return row_outcome{
            .steps = {{makes_decimal_of_text(element, read, len, prec), service_failure::passes_its_code}},
            .element = image_of(made_decimal(bytes_at(element.text, read), len, prec))};
    };
    return c;
}

std::vector<row_cast> rules(int32_t length = usual_shape)
{
#define NAMED(cast) #cast, &cast
    return {
        rule(NAMED(bcast_char_to_dec), row_flags::filled_when_no_null, length),
        rule(NAMED(bcast_varchar_to_dec), row_flags::copied, length),
        rule(NAMED(bcast_varchar2_to_dec), row_flags::copied, length),
    };
#undef NAMED
}

class character_to_decimal : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(character_to_decimal, present_rows_are_read_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(character_to_decimal, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

TEST_P(character_to_decimal, a_failure_stops_with_the_code_of_the_service) { expect_stops(GetParam()); }

TEST_P(character_to_decimal, of_null_rows_no_element_is_read) { expect_null_rows_unread(GetParam()); }

TEST_P(character_to_decimal, an_empty_text_is_null_and_clears_no_null) { expect_empty_text_is_null(GetParam()); }

TEST_P(character_to_decimal, an_empty_text_in_a_null_row_changes_nothing)
{
    expect_empty_text_in_null_row_changes_nothing(GetParam());
}

TEST_P(character_to_decimal, a_failure_behind_an_empty_text_stops_as_any_other)
{
    expect_failure_behind_empty_text(GetParam());
}

// What counts of the length word; there are more than 65535 bytes to read.
TEST_P(character_to_decimal, at_most_319_bytes_are_read_by_the_low_16_bits_of_the_length)
{
    std::string text(70000, '0');
    for (size_t k = 0; k < text.size(); k++)
        text[k] = static_cast<char>('0' + k * 7 % 10);
    for (const int32_t word : {1,
                               2,
                               318,
                               319,
                               320,
                               400,
                               32767,
                               32768,
                               65535,
                               65536 + 5,
                               65536 + 319,
                               65536 + 320,
                               65536 + 32768,
                               65536,
                               2 * 65536,
                               0x7FFF0000,
                               0x7FFF0007,
                               -1,
                               -65536,
                               -65536 + 7,
                               int32_least,
                               int32_least + 318}) {
        SCOPED_TRACE("length word " + std::to_string(word));
        expect_element(GetParam(), element_of_length(word, text.data()));
    }
}

TEST_P(character_to_decimal, bytes_behind_the_first_319_are_not_touched)
{
    guarded<char> text{std::span<const char>(std::string(319, '8'))};
    text.make_read_only();
    expect_element(GetParam(), element_of_length(400, text.data()));
    guarded<char> short_text{std::span<const char>(std::string(5, '8'))};
    short_text.make_read_only();
    expect_element(GetParam(), element_of_length(65536 + 5, short_text.data()));
}

INSTANTIATE_TEST_SUITE_P(casts, character_to_decimal, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

TEST(character_to_decimal_shape, both_bytes_of_length_are_unsigned_and_the_bits_above_them_unread)
{
    services().reset();
    for (const int32_t length :
         {0, 0x0102, 0x00FF, 0xFF00, 0x8080, 0x8181, 0x10A02, 0x7FFF0A02, -1, int32_least, int32_least + 0x2605}) {
        SCOPED_TRACE("length " + std::to_string(length));
        for (const row_cast &c : rules(length))
            expect_element(c, c.samples[1]);
    }
}

// ---- Captured failures: varchar ---------------------------------------------------

const row_cast &varchar_rule()
{
    static const row_cast rule = rules()[1];
    return rule;
}

TEST(varchar_to_decimal, failures_are_captured)
{
    services().reset();
    expect_captures(varchar_rule());
}

TEST(varchar_to_decimal, an_empty_text_beside_captured_failures_is_no_failure)
{
    services().reset();
    expect_empty_text_beside_captured_failures(varchar_rule());
}

TEST(varchar_to_decimal, one_bad_row_of_three_leaves_its_neighbours_alone)
{
    services().reset();
    services().answer("xdec_from_char_with_len_prec", "?", ERR_BAD_CONVERSION);
    char text[] = "10?20";
    source_column source(sizeof(bdta3_str), 3, few_setups().front());
    source.set(0, 1, bdta3_str{2, 9, text});
    source.set(1, 1, bdta3_str{1, 9, text + 2});
    source.set(2, 1, bdta3_str{2, 9, text + 3});
    target_column target(sizeof(xdec), 3);
    target_image expected = target.image();
    expected.no_null = 0;
    expected.flags = {1, 1, 1};
    expected.put(0, made_decimal("10", 10, 2));
    expected.put(2, made_decimal("20", 10, 2));
    failure_record record(3);
    EXPECT_EQ(bcast_varchar_to_dec(env(), heap(), source.sealed(), usual_shape, target.column(), 3, record.codes(),
                                   record.count()),
              ERR_BAD_CONVERSION);
    EXPECT_TRUE(target.holds(expected));
    EXPECT_TRUE(record.hold({{1, ERR_BAD_CONVERSION}}));
}

} // namespace
} // namespace bcast::test
