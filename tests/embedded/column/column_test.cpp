#include "tests/embedded/support.h"
#include "tests/support/guarded.h"

#include <limits>

namespace bcast::test {

// ---- New, empty, freed -----------------------------------------------------

TEST(column, starts_empty_whatever_its_type)
{
    for (const bcast_type type : all_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr column = new_column(type);
        ASSERT_NE(column, nullptr);
        EXPECT_EQ(bcast_column_type(column.get()), type);
        EXPECT_EQ(bcast_column_rows(column.get()), 0u);
        const bdta3_col *vector = bcast_column_vector(column.get());
        EXPECT_NE(vector->no_null, 0);
        EXPECT_EQ(vector->sel, nullptr);
        ASSERT_NE(vector->data, nullptr);
        EXPECT_NE(vector->data->copy_row, nullptr);
        EXPECT_NE(vector->data->flags, nullptr) << "a cast of no rows takes the address";
        EXPECT_NE(vector->data->values, nullptr) << "a cast of no rows takes the address";
    }
}

TEST(column, is_not_made_of_no_type) { EXPECT_EQ(bcast_column_new(BCAST_TYPE_COUNT), nullptr); }

TEST(column, null_may_be_freed) { bcast_column_free(nullptr); }

// ---- Values ----------------------------------------------------------------

TEST(column, keeps_values_of_every_fixed_type)
{
    for (const bcast_type type : fixed_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr column = new_column(type);
        for (size_t i = 0; i < 300; i++)
            ASSERT_EQ(bcast_column_append_value(column.get(), sample_element(type, i).data()), 0);
        ASSERT_EQ(bcast_column_rows(column.get()), 300u);
        EXPECT_NE(bcast_column_vector(column.get())->no_null, 0);
        for (uint32_t row = 0; row < 300; row++) {
            ASSERT_FALSE(bcast_column_is_null(column.get(), row)) << "row " << row;
            ASSERT_EQ(element_of(column.get(), row), sample_element(type, row)) << "row " << row;
            ASSERT_EQ(bcast_column_vector(column.get())->data->flags[row], 1) << "row " << row;
        }
    }
}

TEST(column, a_value_of_its_own_can_be_appended_also_when_that_makes_it_grow)
{
    for (const bcast_type type : fixed_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr column = new_column(type);
        const auto first = sample_element(type, 7);
        ASSERT_EQ(bcast_column_append_value(column.get(), first.data()), 0);
        for (uint32_t row = 1; row < 300; row++)
            ASSERT_EQ(bcast_column_append_value(column.get(), bcast_column_value(column.get(), 0)), 0);
        EXPECT_EQ(std::memcmp(bcast_column_value(column.get(), 299), first.data(), first.size()), 0);
    }
}

TEST(column, a_value_does_not_suit_string_and_null_columns)
{
    std::vector<bcast_type> types = string_types();
    types.push_back(BCAST_NULL);
    for (const bcast_type type : types) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr column = new_column(type);
        const bdta3_str element = {};
        EXPECT_EQ(bcast_column_append_value(column.get(), &element), ERR_BAD_CONVERSION);
        EXPECT_EQ(bcast_column_append_values(column.get(), &element, nullptr, 1), ERR_BAD_CONVERSION);
        EXPECT_EQ(bcast_column_rows(column.get()), 0u);
    }
}

TEST(column, a_text_does_not_suit_fixed_and_null_columns)
{
    std::vector<bcast_type> types = fixed_types();
    types.push_back(BCAST_NULL);
    for (const bcast_type type : types) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr column = new_column(type);
        const char *texts[] = {"1"};
        EXPECT_EQ(bcast_column_append_text(column.get(), "1", 1), ERR_BAD_CONVERSION);
        EXPECT_EQ(bcast_column_append_char(column.get(), "1", 1, 1), ERR_BAD_CONVERSION);
        EXPECT_EQ(bcast_column_append_texts(column.get(), texts, nullptr, 1), ERR_BAD_CONVERSION);
        EXPECT_EQ(bcast_column_rows(column.get()), 0u);
    }
}

TEST(column, values_come_with_the_nulls_that_present_names)
{
    const column_ptr column = new_column(BCAST_INT64);
    const int64_t values[] = {5, 6, 7, 8};
    const uint8_t present[] = {1, 0, 255, 0};
    ASSERT_EQ(bcast_column_append_values(column.get(), values, present, 4), 0);
    EXPECT_EQ(bcast_column_vector(column.get())->no_null, 0);
    EXPECT_EQ(bcast_column_int64(column.get(), 0), 5);
    EXPECT_TRUE(bcast_column_is_null(column.get(), 1));
    EXPECT_EQ(bcast_column_int64(column.get(), 2), 7);
    EXPECT_TRUE(bcast_column_is_null(column.get(), 3));
}

TEST(column, values_without_a_null_leave_no_null_set)
{
    const column_ptr column = new_column(BCAST_INT);
    const int32_t values[] = {1, 2};
    const uint8_t present[] = {1, 1};
    ASSERT_EQ(bcast_column_append_values(column.get(), values, present, 2), 0);
    ASSERT_EQ(bcast_column_append_values(column.get(), values, nullptr, 2), 0);
    EXPECT_NE(bcast_column_vector(column.get())->no_null, 0);
    EXPECT_EQ(bcast_column_rows(column.get()), 4u);
}

TEST(column, no_null_stays_clear_once_a_null_came)
{
    const column_ptr column = new_column(BCAST_INT);
    const int32_t value = 1;
    ASSERT_EQ(bcast_column_append_null(column.get()), 0);
    ASSERT_EQ(bcast_column_append_value(column.get(), &value), 0);
    EXPECT_EQ(bcast_column_vector(column.get())->no_null, 0);
}

TEST(column, zero_rows_may_come_without_arrays)
{
    const column_ptr numbers = new_column(BCAST_INT), texts = new_column(BCAST_VARCHAR);
    EXPECT_EQ(bcast_column_append_values(numbers.get(), nullptr, nullptr, 0), 0);
    EXPECT_EQ(bcast_column_append_texts(texts.get(), nullptr, nullptr, 0), 0);
    EXPECT_EQ(bcast_column_make_room(texts.get(), 0), 0);
    EXPECT_NE(bcast_column_vector(texts.get())->no_null, 0);
}

TEST(column, appending_reads_no_byte_beyond_the_arrays)
{
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        const column_ptr numbers = new_column(BCAST_DEC), texts = new_column(BCAST_TEXT);
        guarded<xdec> values(7, edge);
        guarded<uint8_t> present(7, edge);
        guarded<const char *> pointers(7, edge);
        guarded<uint32_t> lengths(7, edge);
        guarded<char> bytes(5, edge);
        std::fill(pointers.begin(), pointers.end(), bytes.data());
        std::fill(lengths.begin(), lengths.end(), 5);
        EXPECT_EQ(bcast_column_append_values(numbers.get(), values.data(), present.data(), 7), 0);
        EXPECT_EQ(bcast_column_append_texts(texts.get(), pointers.data(), lengths.data(), 7), 0);
        EXPECT_EQ(text_of(texts.get(), 6), std::string(5, static_cast<char>(guard_fill)));
    }
}

// ---- Nulls -----------------------------------------------------------------

TEST(column, takes_nulls_whatever_its_type)
{
    for (const bcast_type type : all_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr column = new_column(type);
        for (int i = 0; i < 100; i++)
            ASSERT_EQ(bcast_column_append_null(column.get()), 0);
        EXPECT_EQ(bcast_column_rows(column.get()), 100u);
        for (uint32_t row = 0; row < 100; row++)
            ASSERT_TRUE(bcast_column_is_null(column.get(), row)) << "row " << row;
        EXPECT_EQ(text_of(column.get(), 0), std::nullopt);
    }
}

// The casts from boolean look at the element alone.
TEST(column, a_null_boolean_is_a_present_row_of_value_unknown)
{
    const column_ptr column = new_column(BCAST_BOOLEAN);
    const bool3 values[] = {BOOL_TRUE, BOOL_TRUE};
    const uint8_t present[] = {0, 1};
    ASSERT_EQ(bcast_column_append_null(column.get()), 0);
    ASSERT_EQ(bcast_column_append_values(column.get(), values, present, 2), 0);
    const bdta3_col *vector = bcast_column_vector(column.get());
    EXPECT_NE(vector->no_null, 0);
    for (const uint32_t row : {0u, 1u}) {
        EXPECT_EQ(vector->data->flags[row], 1) << "row " << row;
        EXPECT_EQ(bcast_column_int64(column.get(), row), BOOL_UNKNOWN) << "row " << row;
        EXPECT_TRUE(bcast_column_is_null(column.get(), row)) << "row " << row;
    }
    EXPECT_FALSE(bcast_column_is_null(column.get(), 2));
    EXPECT_EQ(bcast_column_int64(column.get(), 2), BOOL_TRUE);
}

// ---- Integers --------------------------------------------------------------

TEST(column, gives_integers_of_every_width)
{
    for (const bcast_type type : {BCAST_TINYINT, BCAST_SMALLINT, BCAST_INT, BCAST_BIT, BCAST_BOOLEAN}) {
        const column_ptr column = new_column(type);
        for (const int32_t value : {0, 1, -1, INT32_MIN, INT32_MAX}) {
            ASSERT_EQ(bcast_column_append_value(column.get(), &value), 0);
            EXPECT_EQ(bcast_column_int64(column.get(), bcast_column_rows(column.get()) - 1), value);
        }
    }
    const column_ptr column = new_column(BCAST_INT64);
    for (const int64_t value : {int64_t{0}, int64_t{-1}, INT64_MIN, INT64_MAX}) {
        ASSERT_EQ(bcast_column_append_value(column.get(), &value), 0);
        EXPECT_EQ(bcast_column_int64(column.get(), bcast_column_rows(column.get()) - 1), value);
    }
}

TEST(column, gives_zero_for_the_integer_of_another_type)
{
    const column_ptr doubles = new_column(BCAST_DOUBLE), texts = new_column(BCAST_VARCHAR);
    const double value = 5;
    ASSERT_EQ(bcast_column_append_value(doubles.get(), &value), 0);
    ASSERT_EQ(bcast_column_append_text(texts.get(), "5", 1), 0);
    EXPECT_EQ(bcast_column_int64(doubles.get(), 0), 0);
    EXPECT_EQ(bcast_column_int64(texts.get(), 0), 0);
}

// ---- Texts -----------------------------------------------------------------

TEST(column, keeps_texts_of_every_length_in_every_string_type)
{
    for (const bcast_type type : string_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr column = new_column(type);
        std::vector<std::string> expected;
        for (size_t len = 0; len < 300; len++) {
            std::string text(len, '\0');
            for (size_t k = 0; k < len; k++)
                text[k] = static_cast<char>(len + k * 13);
            ASSERT_EQ(bcast_column_append_text(column.get(), text.data(), static_cast<uint32_t>(len)), 0);
            expected.push_back(text);
        }
        for (uint32_t row = 0; row < expected.size(); row++) {
            ASSERT_EQ(text_of(column.get(), row), expected[row]) << "row " << row;
            const bdta3_str element = string_element(column.get(), row);
            ASSERT_EQ(element.pad_len, 0) << "row " << row;
            ASSERT_EQ(element.text[element.length], '\0') << "row " << row;
        }
    }
}

TEST(column, a_text_may_be_empty_and_at_null)
{
    for (const bcast_type type : string_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr column = new_column(type);
        ASSERT_EQ(bcast_column_append_text(column.get(), nullptr, 0), 0);
        EXPECT_FALSE(bcast_column_is_null(column.get(), 0));
        EXPECT_EQ(text_of(column.get(), 0), "");
    }
}

TEST(column, a_padded_text_has_its_blanks_as_a_count)
{
    for (const bcast_type type : {BCAST_CHAR, BCAST_VARCHAR, BCAST_VARCHAR2}) {
        const column_ptr column = new_column(type);
        ASSERT_EQ(bcast_column_append_char(column.get(), "ab", 2, 8), 0);
        const bdta3_str element = string_element(column.get(), 0);
        EXPECT_EQ(element.length, 2);
        EXPECT_EQ(element.pad_len, 8);
        EXPECT_EQ(text_of(column.get(), 0), "ab");
    }
}

TEST(column, only_character_types_take_padding)
{
    for (const bcast_type type : {BCAST_BINARY, BCAST_VARBINARY, BCAST_TEXT, BCAST_BLOB, BCAST_BFILE}) {
        const column_ptr column = new_column(type);
        EXPECT_EQ(bcast_column_append_char(column.get(), "ab", 2, 8), ERR_BAD_CONVERSION) << bcast_type_name(type);
        EXPECT_EQ(bcast_column_rows(column.get()), 0u);
    }
}

TEST(column, texts_end_at_their_length_or_at_a_nul)
{
    const char *texts[] = {"one", nullptr, "", "four"};
    const uint32_t lengths[] = {2, 100, 0, 4};
    const column_ptr column = new_column(BCAST_VARCHAR);
    ASSERT_EQ(bcast_column_append_texts(column.get(), texts, lengths, 4), 0);
    ASSERT_EQ(bcast_column_append_texts(column.get(), texts, nullptr, 4), 0);
    const std::vector<std::optional<std::string>> expected = {"on",  std::nullopt, "", "four",
                                                              "one", std::nullopt, "", "four"};
    ASSERT_EQ(bcast_column_rows(column.get()), 8u);
    EXPECT_EQ(bcast_column_vector(column.get())->no_null, 0);
    for (uint32_t row = 0; row < 8; row++) {
        EXPECT_EQ(text_of(column.get(), row), expected[row]) << "row " << row;
        EXPECT_EQ(bcast_column_is_null(column.get(), row), !expected[row].has_value()) << "row " << row;
    }
}

TEST(column, a_large_object_stands_behind_its_header)
{
    for (const bcast_type type : {BCAST_TEXT, BCAST_BLOB}) {
        const column_ptr column = new_column(type);
        ASSERT_EQ(bcast_column_append_text(column.get(), "value", 5), 0);
        const bdta3_str element = string_element(column.get(), 0);
        EXPECT_EQ(element.length, LOB_HEADER_SIZE + 5);
        EXPECT_EQ(std::string(element.text + LOB_HEADER_SIZE), "value");
    }
}

TEST(column, a_broken_large_object_has_no_text)
{
    const column_ptr column = new_column(BCAST_TEXT);
    ASSERT_EQ(bcast_column_append_text(column.get(), "value", 5), 0);
    string_element(column.get(), 0).text[0] = 'X';
    EXPECT_EQ(text_of(column.get(), 0), std::nullopt);
}

TEST(column, a_length_that_no_element_holds_is_refused)
{
    for (const bcast_type type : string_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr column = new_column(type);
        EXPECT_EQ(bcast_column_append_text(column.get(), "x", UINT32_MAX), ERR_OVERFLOW);
        EXPECT_EQ(bcast_column_append_text(column.get(), "x", uint32_t{INT32_MAX} + 1), ERR_OVERFLOW);
        if (holds_large_objects(type)) {
            EXPECT_EQ(bcast_column_append_text(column.get(), "x", INT32_MAX - LOB_HEADER_SIZE + 1), ERR_OVERFLOW);
        }
        EXPECT_EQ(bcast_column_rows(column.get()), 0u);
    }
    const column_ptr column = new_column(BCAST_CHAR);
    EXPECT_EQ(bcast_column_append_char(column.get(), "x", 1, uint32_t{INT32_MAX} + 1), ERR_OVERFLOW);
    EXPECT_EQ(bcast_column_rows(column.get()), 0u);
}

TEST(column, a_text_that_is_refused_takes_the_ones_before_it_along)
{
    const char *texts[] = {"one", nullptr, "three"};
    const uint32_t lengths[] = {3, 0, UINT32_MAX};
    const column_ptr column = new_column(BCAST_VARCHAR);
    ASSERT_EQ(bcast_column_append_text(column.get(), "zero", 4), 0);
    EXPECT_EQ(bcast_column_append_texts(column.get(), texts, lengths, 3), ERR_OVERFLOW);
    EXPECT_EQ(bcast_column_rows(column.get()), 1u);
    EXPECT_NE(bcast_column_vector(column.get())->no_null, 0);
    EXPECT_EQ(text_of(column.get(), 0), "zero");
}

// ---- Many rows -------------------------------------------------------------

TEST(column, holds_65536_rows_and_not_one_more)
{
    const column_ptr column = new_column(BCAST_VARCHAR);
    for (uint32_t i = 0; i < 65536; i++) {
        const std::string text = std::to_string(i);
        ASSERT_EQ(bcast_column_append_text(column.get(), text.data(), static_cast<uint32_t>(text.size())), 0);
    }
    EXPECT_EQ(bcast_column_append_text(column.get(), "x", 1), ERR_OVERFLOW);
    EXPECT_EQ(bcast_column_append_null(column.get()), ERR_OVERFLOW);
    const char *texts[] = {"x"};
    EXPECT_EQ(bcast_column_append_texts(column.get(), texts, nullptr, 1), ERR_OVERFLOW);
    ASSERT_EQ(bcast_column_rows(column.get()), 65536u);
    EXPECT_NE(bcast_column_vector(column.get())->no_null, 0);
    for (uint32_t row = 0; row < 65536; row++)
        ASSERT_EQ(text_of(column.get(), row), std::to_string(row));
}

TEST(column, too_many_values_at_once_are_refused_as_a_whole)
{
    const column_ptr column = new_column(BCAST_INT);
    const std::vector<int32_t> values(65536, 7);
    ASSERT_EQ(bcast_column_append_value(column.get(), values.data()), 0);
    EXPECT_EQ(bcast_column_append_values(column.get(), values.data(), nullptr, 65536), ERR_OVERFLOW);
    EXPECT_EQ(bcast_column_append_values(column.get(), values.data(), nullptr, UINT32_MAX), ERR_OVERFLOW);
    EXPECT_EQ(bcast_column_rows(column.get()), 1u);
    EXPECT_EQ(bcast_column_append_values(column.get(), values.data(), nullptr, 65535), 0);
    EXPECT_EQ(bcast_column_rows(column.get()), 65536u);
}

// ---- Clearing and reuse ----------------------------------------------------

TEST(column, cleared_it_is_empty_again)
{
    const column_ptr column = new_column(BCAST_VARCHAR);
    const uint16_t sel[] = {0};
    ASSERT_EQ(bcast_column_append_null(column.get()), 0);
    ASSERT_EQ(bcast_column_select(column.get(), sel, 1), 0);
    bcast_column_clear(column.get());
    EXPECT_EQ(bcast_column_rows(column.get()), 0u);
    EXPECT_NE(bcast_column_vector(column.get())->no_null, 0);
    EXPECT_EQ(bcast_column_vector(column.get())->sel, nullptr);
}

TEST(column, cleared_it_keeps_its_memory)
{
    const column_ptr column = new_column(BCAST_VARCHAR);
    std::vector<const char *> texts;
    const std::string text(50, 'x');
    for (int i = 0; i < 10000; i++)
        ASSERT_EQ(bcast_column_append_text(column.get(), text.data(), 50), 0);
    for (uint32_t row = 0; row < 10000; row++)
        texts.push_back(string_element(column.get(), row).text);
    const void *values = bcast_column_vector(column.get())->data->values;
    bcast_column_clear(column.get());
    for (uint32_t row = 0; row < 10000; row++) {
        ASSERT_EQ(bcast_column_append_text(column.get(), text.data(), 50), 0);
        ASSERT_EQ(string_element(column.get(), row).text, texts[row]) << "row " << row;
    }
    EXPECT_EQ(bcast_column_vector(column.get())->data->values, values);
}

TEST(column, its_vector_stays_where_it_is_while_it_grows)
{
    const column_ptr column = new_column(BCAST_INT);
    const bdta3_col *vector = bcast_column_vector(column.get());
    for (int i = 0; i < 1000; i++)
        ASSERT_EQ(bcast_column_append_null(column.get()), 0);
    EXPECT_EQ(bcast_column_vector(column.get()), vector);
}

// ---- Targets ---------------------------------------------------------------

TEST(column, room_is_null_rows_with_elements_of_zero)
{
    for (const bcast_type type : all_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr column = new_column(type);
        ASSERT_EQ(bcast_column_make_room(column.get(), 1000), 0);
        EXPECT_EQ(bcast_column_rows(column.get()), 1000u);
        EXPECT_EQ(bcast_column_vector(column.get())->no_null, 0);
        const std::vector<unsigned char> zeros(bcast_type_stride(type));
        for (uint32_t row = 0; row < 1000; row++) {
            ASSERT_TRUE(bcast_column_is_null(column.get(), row)) << "row " << row;
            ASSERT_EQ(element_of(column.get(), row), zeros) << "row " << row;
        }
    }
}

TEST(column, room_takes_rows_and_selection_away)
{
    const column_ptr column = new_column(BCAST_VARCHAR);
    const uint16_t sel[] = {0, 0};
    ASSERT_EQ(bcast_column_append_text(column.get(), "old", 3), 0);
    ASSERT_EQ(bcast_column_select(column.get(), sel, 2), 0);
    ASSERT_EQ(bcast_column_make_room(column.get(), 2), 0);
    EXPECT_EQ(bcast_column_rows(column.get()), 2u);
    EXPECT_EQ(bcast_column_vector(column.get())->sel, nullptr);
    EXPECT_EQ(text_of(column.get(), 0), std::nullopt);
}

TEST(column, room_for_too_many_rows_leaves_the_column_as_it_was)
{
    const column_ptr column = new_column(BCAST_VARCHAR);
    ASSERT_EQ(bcast_column_append_text(column.get(), "old", 3), 0);
    EXPECT_EQ(bcast_column_make_room(column.get(), 65537), ERR_OVERFLOW);
    EXPECT_EQ(bcast_column_make_room(column.get(), UINT32_MAX), ERR_OVERFLOW);
    EXPECT_EQ(bcast_column_rows(column.get()), 1u);
    EXPECT_EQ(text_of(column.get(), 0), "old");
    EXPECT_EQ(bcast_column_make_room(column.get(), 65536), 0);
}

// ---- Selections ------------------------------------------------------------

TEST(column, a_selection_is_copied)
{
    const column_ptr column = new_column(BCAST_INT);
    ASSERT_EQ(bcast_column_make_room(column.get(), 65536), 0);
    std::vector<uint16_t> sel = {5, 9, 5, 0, 65535};
    const std::vector<uint16_t> expected = sel;
    ASSERT_EQ(bcast_column_select(column.get(), sel.data(), 5), 0);
    sel.assign(5, 1);
    const uint16_t *held = bcast_column_vector(column.get())->sel;
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(std::vector<uint16_t>(held, held + 5), expected);
    EXPECT_EQ(bcast_column_rows(column.get()), 65536u);
}

TEST(column, a_selection_is_taken_away_with_null)
{
    const column_ptr column = new_column(BCAST_INT);
    const uint16_t sel[] = {0};
    ASSERT_EQ(bcast_column_append_null(column.get()), 0);
    ASSERT_EQ(bcast_column_select(column.get(), sel, 1), 0);
    ASSERT_EQ(bcast_column_select(column.get(), nullptr, 0), 0);
    EXPECT_EQ(bcast_column_vector(column.get())->sel, nullptr);
}

TEST(column, a_selection_of_no_rows_is_one)
{
    const column_ptr column = new_column(BCAST_INT);
    const uint16_t sel[] = {0};
    ASSERT_EQ(bcast_column_select(column.get(), sel, 0), 0);
    EXPECT_NE(bcast_column_vector(column.get())->sel, nullptr);
}

TEST(column, a_selection_of_a_row_that_is_not_there_is_refused)
{
    const column_ptr column = new_column(BCAST_INT);
    ASSERT_EQ(bcast_column_make_room(column.get(), 3), 0);
    const uint16_t good[] = {2, 1}, bad[] = {0, 3};
    ASSERT_EQ(bcast_column_select(column.get(), good, 2), 0);
    const uint16_t *held = bcast_column_vector(column.get())->sel;
    EXPECT_EQ(bcast_column_select(column.get(), bad, 2), ERR_OVERFLOW);
    EXPECT_EQ(bcast_column_vector(column.get())->sel, held);
    EXPECT_EQ(held[0], 2);
}

TEST(column, a_selection_has_65535_rows_at_most)
{
    const column_ptr column = new_column(BCAST_INT);
    ASSERT_EQ(bcast_column_make_room(column.get(), 1), 0);
    const std::vector<uint16_t> sel(65536, 0);
    EXPECT_EQ(bcast_column_select(column.get(), sel.data(), 65536), ERR_OVERFLOW);
    EXPECT_EQ(bcast_column_vector(column.get())->sel, nullptr);
    EXPECT_EQ(bcast_column_select(column.get(), sel.data(), 65535), 0);
}

TEST(column, a_selection_stays_while_rows_are_appended)
{
    const column_ptr column = new_column(BCAST_INT);
    const uint16_t sel[] = {0};
    ASSERT_EQ(bcast_column_append_null(column.get()), 0);
    ASSERT_EQ(bcast_column_select(column.get(), sel, 1), 0);
    for (int i = 0; i < 1000; i++)
        ASSERT_EQ(bcast_column_append_null(column.get()), 0);
    ASSERT_NE(bcast_column_vector(column.get())->sel, nullptr);
    EXPECT_EQ(bcast_column_vector(column.get())->sel[0], 0);
}

} // namespace bcast::test
