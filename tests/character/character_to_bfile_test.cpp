// varchar to bfile: a copy of what the service takes for a locator, and one code for everything else.

#include "tests/support/row_cast.h"
#include "tests/support/text_element.h"

#include <sys/wait.h>

namespace bcast::test {
namespace {

locator_reading reading_of(const std::string &text, int32_t length)
{
    const auto known = services().character.locators.find(text);
    return known != services().character.locators.end() ? known->second
                                                        : locator_reading{1, static_cast<uint32_t>(length), 0};
}

row_outcome read(const row_input &input, int32_t length)
{
    const auto element = input.as<bdta3_str>();
    row_outcome outcome;
    // Nobody is asked about a text that is too long. Either way the flag stays over an element that is not written.
    if (static_cast<uint32_t>(element.length) > static_cast<uint32_t>(length)) {
        outcome.status = ERR_BAD_BFILE;
        return outcome;
    }
    outcome.steps.push_back({validates_locator(element)});
    const locator_reading reading = reading_of(bytes_at(element.text, element.length), element.length);
    outcome.status = reading.valid == 0 ? ERR_BAD_BFILE : 0;
    outcome.turns_null = reading.is_null != 0;
    if (outcome.status < 0 || outcome.turns_null)
        return outcome;
    const auto stored = static_cast<int32_t>(reading.length);
    outcome.steps.push_back({allocates(input.target, stored), service_failure::is_not_looked_at});
    outcome.text = {bytes_at(element.text, stored), 0};
    return outcome;
}

row_cast cast_to(int32_t length)
{
    return {.name = "bcast_varchar_to_bfile",
            .cast = &bcast_varchar_to_bfile,
            .to_bytes = sizeof(bdta3_str),
            .flags = row_flags::copied,
            .no_null_ahead = true,
            .failure_clears_flag = false,
            .samples = text_elements({"DIR:file.dat", "A:b", "", "DIR:name with blanks  ", "x"}),
            .convert = [length](const row_input &input) { return read(input, length); },
            .length = length,
            .null_element = element_of_length(static_cast<int32_t>(static_cast<uint32_t>(length) + 1))};
}

class character_to_bfile : public testing::Test {
protected:
    void SetUp() override { services().reset(); }

    static void answer(const std::string &text, const locator_reading &reading)
    {
        services().character.locators[text] = reading;
    }

    static void expect_alone(const row_cast &c, const std::string &element, uint8_t flag = 1)
    {
        for (const setup &how : few_setups())
            expect_batch(c, how, {{flag, element}});
    }

    const row_cast cast_ = cast_to(100);
};

constexpr locator_reading refused{0, 3, 1}; // whose outputs nobody may read

TEST_F(character_to_bfile, locators_are_copied_and_null_rows_left_out) { expect_rows_and_null_rows(cast_); }

TEST_F(character_to_bfile, of_null_rows_no_element_is_read) { expect_null_rows_unread(cast_); }

TEST_F(character_to_bfile, the_largest_batch_and_rows_at_16_bits) { expect_row_counts(cast_); }

TEST_F(character_to_bfile, any_answer_but_zero_takes_the_text_for_a_locator)
{
    for (const int32_t answer_of_service : {1, 2, -1, ERR_BAD_BFILE + 0, INT32_MIN, INT32_MAX, 0x10000}) {
        answer("D:f", {answer_of_service, 3, 0});
        expect_alone(cast_to(3), text_element("D:f"));
    }
}

TEST_F(character_to_bfile, what_is_stored_has_the_length_that_the_service_left)
{
    for (const uint32_t left : {0U, 1U, 3U, 7U}) {
        answer("D:f    ", {1, left, 0});
        for (const setup &how : all_setups())
            expect_batch(cast_to(7), how, {{1, text_element("D:f    ", 4)}});
    }
}

TEST_F(character_to_bfile, no_locator_at_all_makes_the_row_null_and_clears_no_null)
{
    for (const int32_t is_null : {1, -1, 0x10000, INT32_MIN}) {
        answer("  ", {1, 0, is_null});
        at_several_rows(cast_, text_element("  "), [&](const std::vector<batch_row> &rows) {
            for (const setup &how : all_setups())
                expect_batch(cast_, how, rows);
        });
    }
}

TEST_F(character_to_bfile, the_service_decides_about_an_empty_text)
{
    const row_cast c = cast_to(0);
    expect_alone(c, text_element(""));
    answer("", {1, 0, 1});
    expect_alone(c, text_element(""));
    answer("", refused);
    expect_alone(c, text_element(""));
}

TEST_F(character_to_bfile, lengths_are_compared_unsigned_and_counted_blanks_are_not_length)
{
    struct lengths {
        int32_t text, target;
        bool fits;
    };
    constexpr lengths all[] = {{3, 3, true},
                               {4, 3, false},
                               {3, 65536 + 3, true},
                               {3, 65536, true},
                               {3, -1, true},
                               {3, INT32_MIN, true},
                               {1, 0, false},
                               {65536 + 3, 5, false},
                               {65536, 0, false},
                               {-1, 5, false},
                               {INT32_MIN, INT32_MAX, false},
                               {-1, -2, false},
                               {INT32_MAX, 5, false}};
    for (const auto &[size, target_length, fits] : all) {
        const std::string element = fits ? text_element("xxx", 1000) : element_of_length(size, 1000);
        const row_cast c = cast_to(target_length);
        EXPECT_EQ(outcome_alone(c, element).text.has_value(), fits) << size << " bytes into " << target_length;
        expect_alone(c, element, 0x80);
    }
}

// A length word with its top bit set is a great length, and goes to the service as it is.
TEST_F(character_to_bfile, the_greatest_length_fits_the_greatest_target)
{
    answer("", {1, 3, 0}); // the double has no name for so long a text
    expect_alone(cast_to(-1), element_of_length(-1, "D:f..."));
}

TEST_F(character_to_bfile, what_is_no_locator_or_too_long_fails)
{
    answer("bad", refused);
    expect_bad_elements(cast_, {text_element("bad"), element_of_length(101)});
}

TEST_F(character_to_bfile, a_failure_leaves_no_null_as_the_walk_has_it)
{
    answer(" ", {1, 0, 1});
    answer("bad", refused);
    for (const setup &how : all_setups())
        expect_batch(cast_, how, {{1, text_element(" ")}, {1, text_element("bad")}, {1, text_element("D:f")}});
}

TEST_F(character_to_bfile, no_space_for_an_empty_locator_is_no_failure)
{
    for (const setup &how : few_setups())
        expect_batch(cast_, how, {{1, text_element("")}, {1, text_element("D:f")}}, {.results = {{0, -1}}});
}

// What comes of it is open, and a fault is likely; but the cast does not look for it.
TEST_F(character_to_bfile, no_space_for_a_locator_is_not_reported)
{
    constexpr int reported = 77;
    const auto call_without_space = [] {
        services().answer("bdta3_col_space_alloc", "3", -1);
        source_column source(sizeof(bdta3_str), 1, few_setups().front());
        source.set_bytes(0, 1, text_element("D:f"));
        target_column target(sizeof(bdta3_str), 1);
        const int32_t status = call(&bcast_varchar_to_bfile, {source.sealed(), target.column(), 1, 100});
        std::_Exit(status < 0 ? reported : 0);
    };
    const auto is_something_else = [](int status) { return !WIFEXITED(status) || WEXITSTATUS(status) != reported; };
    EXPECT_EXIT(call_without_space(), is_something_else, "");
}

} // namespace
} // namespace bcast::test
