// varchar to bfile: a copy of what the service takes for a locator, and one code for everything else.

#include "tests/character/text_rows.h"

#include <bcast/codes.h>

#include <sys/wait.h>

namespace bcast::test {
namespace {

struct bfile_batch : text_rows {
    bfile_batch(const setup &given, uint32_t row_count, int32_t target_length)
        : text_rows(given, row_count, sizeof(bdta3_str)), length(target_length)
    {
        expected.no_null = how.no_null;
    }

    int32_t length;

    void expect_flag(uint32_t row) { expected.flags[row] = source.flag(row); }

    void expect_question(uint32_t row)
    {
        expect_flag(row);
        calls.push_back(validates_locator(element(row)));
    }

    // The first bytes of the text are stored.
    void expect_stored(uint32_t row, uint32_t size)
    {
        expect_question(row);
        calls.push_back(allocates(target.column(), static_cast<int32_t>(size)));
        expected.texts[row] = {bytes_at(element(row).text, static_cast<int32_t>(size)), 0};
    }
    void expect_stored(uint32_t row) { expect_stored(row, static_cast<uint32_t>(element(row).length)); }

    // Nobody is asked, and the flag stays over an element that is not written.
    void expect_too_long(uint32_t row) { expect_flag(row); }

    void expect_null(uint32_t row)
    {
        expect_question(row);
        expected.flags[row] = 0;
        expected.no_null = 0;
    }

    void run(int32_t status, int32_t *err_codes = nullptr,
             uint16_t *err_count = static_cast<uint16_t *>(inaccessible()))
    {
        expect(call(&bcast_varchar_to_bfile, {.src = source.sealed(),
                                              .dst = target.column(),
                                              .rows = rows,
                                              .length = length,
                                              .err_codes = err_codes,
                                              .err_count = err_count}),
               status);
    }
};

class character_to_bfile : public testing::Test {
protected:
    void SetUp() override { services().reset(); }

    static void answer(const std::string &text, const locator_reading &reading)
    {
        services().character.locators[text] = reading;
    }
};

constexpr locator_reading refused{0, 3, 1}; // whose outputs nobody may read

shared_texts locators() { return shared_texts({"DIR:file.dat", "A:b", "", "DIR:name with blanks  ", "x"}); }

TEST_F(character_to_bfile, locators_are_copied_and_null_rows_left_out)
{
    constexpr uint8_t flags[] = {1, 0, 2, 0x80, 0, 0xFF, 1};
    shared_texts texts = locators();
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 30U, 1023U, 1024U, 1025U, 2060U}) {
            for (const bool capture : {false, true}) {
                SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
                services().reset();
                bfile_batch batch(how, rows, 100);
                for (uint32_t row = 0; row < rows; row++) {
                    if (const uint8_t flag = flags[row % std::size(flags)]; flag != 0) {
                        batch.source.set(row, flag, texts.element(row, 9));
                        batch.expect_stored(row);
                    } else {
                        batch.set_element(row, 0, 101, static_cast<char *>(inaccessible()));
                        batch.expect_flag(row);
                    }
                }
                failure_record record(rows, 3);
                batch.run(0, capture ? record.codes() : nullptr,
                          capture ? record.count() : static_cast<uint16_t *>(inaccessible()));
                EXPECT_TRUE(record.hold({}));
            }
        }
    }
}

TEST_F(character_to_bfile, of_null_rows_no_element_is_read)
{
    for (const setup &how : all_setups()) {
        bfile_batch batch(how, 1030, 100);
        for (uint32_t row = 0; row < 1030; row++) {
            batch.set_null(row);
            batch.expect_flag(row);
        }
        batch.source.hide_values();
        batch.run(0);
    }
}

TEST_F(character_to_bfile, the_largest_batch_and_rows_at_16_bits)
{
    shared_texts texts = locators();
    bfile_batch largest(few_setups()[2], 65535, 100);
    for (uint32_t row = 0; row < 65535; row++) {
        largest.source.set(row, 1, texts.element(row));
        largest.expect_stored(row);
    }
    largest.run(0);
    for (const setup &how : few_setups()) {
        for (const uint32_t rows : {0U, 1U}) {
            services().reset();
            bfile_batch batch(how, rows, 100);
            if (rows == 1) {
                batch.set_text(0, 1, "D:f");
                batch.expect_stored(0);
            }
            const call_arguments with{batch.source.sealed(), batch.target.column(), 0x10000 + rows, 100};
            batch.expect(call_with_wide_rows(&bcast_varchar_to_bfile, with), 0);
        }
    }
}

TEST_F(character_to_bfile, any_answer_but_zero_takes_the_text_for_a_locator)
{
    for (const int32_t answer_of_service : {1, 2, -1, ERR_BAD_BFILE + 0, INT32_MIN, INT32_MAX, 0x10000}) {
        services().reset();
        answer("D:f", {answer_of_service, 3, 0});
        bfile_batch batch(few_setups().front(), 1, 3);
        batch.set_text(0, 1, "D:f");
        batch.expect_stored(0);
        batch.run(0);
    }
}

TEST_F(character_to_bfile, what_is_stored_has_the_length_that_the_service_left)
{
    for (const setup &how : all_setups()) {
        for (const uint32_t left : {0U, 1U, 3U, 7U}) {
            services().reset();
            answer("D:f    ", {1, left, 0});
            bfile_batch batch(how, 1, 7);
            batch.set_text(0, 1, "D:f    ", 4);
            batch.expect_stored(0, left);
            batch.run(0);
        }
    }
}

TEST_F(character_to_bfile, no_locator_at_all_makes_the_row_null_and_clears_no_null)
{
    shared_texts texts = locators();
    for (const setup &how : all_setups()) {
        for (const uint32_t null_row : {0U, 1U, 1023U, 1024U, 1029U}) {
            for (const int32_t is_null : {1, -1, 0x10000, INT32_MIN}) {
                SCOPED_TRACE("row " + std::to_string(null_row) + ", " + describe(how));
                services().reset();
                answer("  ", {1, 0, is_null});
                bfile_batch batch(how, 1030, 100);
                for (uint32_t row = 0; row < 1030; row++) {
                    if (row == null_row) {
                        batch.set_text(row, 0x81, "  ");
                        batch.expect_null(row);
                    } else {
                        batch.source.set(row, 1, texts.element(row));
                        batch.expect_stored(row);
                    }
                }
                batch.run(0);
            }
        }
    }
}

TEST_F(character_to_bfile, the_service_decides_about_an_empty_text)
{
    for (const setup &how : few_setups()) {
        services().reset();
        bfile_batch kept(how, 1, 0);
        kept.set_text(0, 1, "");
        kept.expect_stored(0);
        kept.run(0);

        services().reset();
        answer("", {1, 0, 1});
        bfile_batch null(how, 1, 0);
        null.set_text(0, 1, "");
        null.expect_null(0);
        null.run(0);

        services().reset();
        answer("", refused);
        bfile_batch bad(how, 1, 0);
        bad.set_text(0, 1, "");
        bad.expect_question(0);
        bad.run(ERR_BAD_BFILE);
    }
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
    std::string text(4, 'x');
    for (const setup &how : few_setups()) {
        for (const auto &[size, target, fits] : all) {
            SCOPED_TRACE("text of " + std::to_string(size) + " bytes, length " + std::to_string(target));
            services().reset();
            bfile_batch batch(how, 1, target);
            batch.set_element(0, 0x80, size, fits ? text.data() : static_cast<char *>(inaccessible()), 1000);
            if (fits)
                batch.expect_stored(0);
            else
                batch.expect_too_long(0);
            batch.run(fits ? 0 : ERR_BAD_BFILE);
        }
    }
}

// A length word with its top bit set is a great length, and goes to the service as it is.
TEST_F(character_to_bfile, the_greatest_length_fits_the_greatest_target)
{
    for (const setup &how : few_setups()) {
        services().reset();
        answer("", {1, 3, 0}); // the double has no name for so long a text
        std::string text = "D:f...";
        bfile_batch batch(how, 1, -1);
        batch.set_element(0, 1, -1, text.data());
        batch.expect_stored(0, 3);
        batch.run(0);
    }
}

TEST_F(character_to_bfile, the_first_failure_stops)
{
    const uint32_t rows = 1024 + 40;
    shared_texts texts = locators();
    for (const setup &how : all_setups()) {
        for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, 1025U, rows - 1}) {
            for (const bool too_long : {false, true}) {
                SCOPED_TRACE("failing row " + std::to_string(failing_row) + ", " + describe(how));
                services().reset();
                answer("bad", refused);
                bfile_batch batch(how, rows, 100);
                for (uint32_t row = 0; row < rows; row++) {
                    if (row == failing_row && too_long) {
                        batch.set_element(row, 0x80, 101, static_cast<char *>(inaccessible()));
                        batch.expect_too_long(row);
                    } else if (row == failing_row) {
                        batch.set_text(row, 0x80, "bad");
                        batch.expect_question(row);
                    } else if (row == failing_row + 1) {
                        batch.set_text(row, 1, "bad");
                    } else if (row % 5 == 2) {
                        batch.set_null(row);
                        if (row < failing_row)
                            batch.expect_flag(row);
                    } else {
                        batch.source.set(row, 4, texts.element(row));
                        if (row < failing_row)
                            batch.expect_stored(row);
                    }
                }
                batch.run(ERR_BAD_BFILE);
            }
        }
    }
}

TEST_F(character_to_bfile, a_failure_leaves_no_null_as_the_walk_has_it)
{
    for (const setup &how : all_setups()) {
        services().reset();
        answer(" ", {1, 0, 1});
        answer("bad", refused);
        bfile_batch batch(how, 3, 100);
        batch.set_text(0, 1, " ");
        batch.expect_null(0);
        batch.set_text(1, 1, "bad");
        batch.expect_question(1);
        batch.set_text(2, 1, "D:f");
        batch.run(ERR_BAD_BFILE);
    }
}

TEST_F(character_to_bfile, failures_are_captured_by_row_of_the_batch)
{
    const uint32_t rows = 2100;
    shared_texts texts = locators();
    std::map<uint32_t, int32_t> failing;
    for (const uint32_t row : {0U, 2U, 600U, 1023U, 1024U, 1025U, 1500U, 2048U, 2090U})
        failing[row] = ERR_BAD_BFILE;
    for (const setup &how : all_setups()) {
        SCOPED_TRACE(describe(how));
        services().reset();
        answer("bad", refused);
        bfile_batch batch(how, rows, 100);
        for (uint32_t row = 0; row < rows; row++) {
            if (failing.contains(row) && row % 4 == 0) {
                batch.set_element(row, 0x80, 101, static_cast<char *>(inaccessible()));
                batch.expect_too_long(row);
            } else if (failing.contains(row)) {
                batch.set_text(row, 0x80, "bad");
                batch.expect_question(row);
            } else if (row % 5 == 3) {
                batch.set_null(row);
                batch.expect_flag(row);
            } else {
                batch.source.set(row, 4, texts.element(row));
                batch.expect_stored(row);
            }
        }
        failure_record record(rows, 7);
        batch.run(ERR_BAD_BFILE, record.codes(), record.count());
        EXPECT_TRUE(record.hold(failing));
    }
}

TEST_F(character_to_bfile, the_counter_goes_on_and_wraps_at_16_bits)
{
    for (const bool too_long : {false, true}) {
        services().reset();
        answer("bad", refused);
        bfile_batch batch(few_setups()[1], 3, too_long ? 2 : 3);
        for (uint32_t row = 0; row < 3; row++) {
            batch.set_text(row, 1, "bad");
            if (too_long)
                batch.expect_too_long(row);
            else
                batch.expect_question(row);
        }
        failure_record record(3, 65534);
        batch.run(ERR_BAD_BFILE, record.codes(), record.count());
        EXPECT_TRUE(record.hold({{0, ERR_BAD_BFILE}, {1, ERR_BAD_BFILE}, {2, ERR_BAD_BFILE}}));
        EXPECT_EQ(*record.count(), 1);
    }
}

TEST_F(character_to_bfile, no_space_for_an_empty_locator_is_no_failure)
{
    for (const setup &how : few_setups()) {
        services().reset();
        services().answer("bdta3_col_space_alloc", "0", -1);
        bfile_batch batch(how, 2, 100);
        batch.set_text(0, 1, "");
        batch.expect_stored(0);
        batch.set_text(1, 1, "D:f");
        batch.expect_stored(1);
        batch.run(0);
    }
}

// What comes of it is open, and a fault is likely; but the cast does not look for it.
TEST_F(character_to_bfile, no_space_for_a_locator_is_not_reported)
{
    constexpr int reported = 77;
    const auto call_without_space = [] {
        services().answer("bdta3_col_space_alloc", "3", -1);
        bfile_batch batch(few_setups().front(), 1, 100);
        batch.set_text(0, 1, "D:f");
        const int32_t status = call(&bcast_varchar_to_bfile, {batch.source.sealed(), batch.target.column(), 1, 100});
        std::_Exit(status < 0 ? reported : 0);
    };
    const auto is_something_else = [](int status) { return !WIFEXITED(status) || WEXITSTATUS(status) != reported; };
    EXPECT_EXIT(call_without_space(), is_something_else, "");
}

} // namespace
} // namespace bcast::test
