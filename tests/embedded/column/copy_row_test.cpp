#include "tests/embedded/support.h"

#include <services/column.h>

namespace bcast::test {

namespace {

int32_t copy_rows(const column_ptr &src, uint32_t src_pos, const column_ptr &dst, uint32_t dst_pos, uint32_t count)
{
    const bdta3_col *from = bcast_column_vector(src.get());
    return from->data->copy_row(nullptr, nullptr, from, src_pos, bcast_column_vector(dst.get()), dst_pos, nullptr,
                                count);
}

uint8_t *flags_of(const column_ptr &column) { return bcast_column_vector(column.get())->data->flags; }

// Row i of a source: every fifth is null, the rest hold a value of their own.
bool is_null_row(size_t i) { return i % 5 == 3; }

std::string sample_text(size_t i) { return std::string(i % 50, '-') + std::to_string(i); }

column_ptr source(bcast_type type, size_t rows)
{
    column_ptr column = new_column(type);
    for (size_t i = 0; i < rows; i++) {
        int32_t status;
        if (type == BCAST_NULL || is_null_row(i)) {
            status = bcast_column_append_null(column.get());
        } else if (bcast_type_is_string(type)) {
            const std::string text = sample_text(i);
            status = bcast_column_append_text(column.get(), text.data(), static_cast<uint32_t>(text.size()));
        } else {
            status = bcast_column_append_value(column.get(), sample_element(type, i).data());
        }
        EXPECT_EQ(status, 0) << "row " << i;
    }
    return column;
}

// A target of null rows whose elements are a pattern.
column_ptr patterned_target(bcast_type type, uint32_t rows)
{
    column_ptr column = new_column(type);
    EXPECT_EQ(bcast_column_make_room(column.get(), rows), 0);
    bdta3_col_data *data = bcast_column_vector(column.get())->data;
    std::memset(data->flags, 0xEE, rows);
    std::memset(data->values, 0xEE, rows * bcast_type_stride(type));
    return column;
}

void expect_untouched(const column_ptr &column, uint32_t row)
{
    EXPECT_EQ(flags_of(column)[row], 0xEE) << "row " << row;
    EXPECT_EQ(element_of(column.get(), row),
              std::vector<unsigned char>(bcast_type_stride(bcast_column_type(column.get())), 0xEE))
        << "row " << row;
}

// Target row `row` is a copy of source row `from`.
void expect_copy(const column_ptr &src, size_t from, const column_ptr &dst, uint32_t row)
{
    const bcast_type type = bcast_column_type(src.get());
    EXPECT_EQ(flags_of(dst)[row], flags_of(src)[from]) << "row " << row << " from " << from;
    if (flags_of(src)[from] == 0) {
        EXPECT_EQ(element_of(dst.get(), row), std::vector<unsigned char>(bcast_type_stride(type), 0xEE))
            << "null row " << row << " from " << from << ": the element is to stay";
        return;
    }
    if (!bcast_type_is_string(type)) {
        EXPECT_EQ(element_of(dst.get(), row), element_of(src.get(), static_cast<uint32_t>(from)))
            << "row " << row << " from " << from;
        return;
    }
    const bdta3_str old = string_element(src.get(), static_cast<uint32_t>(from));
    const bdta3_str copy = string_element(dst.get(), row);
    ASSERT_EQ(copy.length, old.length) << "row " << row << " from " << from;
    EXPECT_EQ(copy.pad_len, old.pad_len) << "row " << row << " from " << from;
    EXPECT_NE(copy.text, old.text) << "row " << row << " from " << from;
    EXPECT_EQ(std::string_view(copy.text, static_cast<size_t>(copy.length)),
              std::string_view(old.text, static_cast<size_t>(old.length)))
        << "row " << row << " from " << from;
    EXPECT_EQ(copy.text[copy.length], '\0') << "row " << row << " from " << from;
}

} // namespace

TEST(copy_row, copies_a_dense_batch_of_every_type)
{
    for (const bcast_type type : all_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr src = source(type, 1000), dst = patterned_target(type, 1001);
        ASSERT_GE(copy_rows(src, 0, dst, 0, 1000), 0);
        for (uint32_t row = 0; row < 1000; row++)
            expect_copy(src, row, dst, row);
        expect_untouched(dst, 1000);
    }
}

TEST(copy_row, goes_through_the_selection_of_every_type)
{
    const std::vector<uint16_t> sel = {99, 3, 3, 0, 50, 99, 8, 1};
    for (const bcast_type type : all_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr src = source(type, 100), dst = patterned_target(type, 9);
        ASSERT_EQ(bcast_column_select(src.get(), sel.data(), 8), 0);
        ASSERT_GE(copy_rows(src, 0, dst, 0, 8), 0);
        for (uint32_t row = 0; row < 8; row++)
            expect_copy(src, sel[row], dst, row);
        expect_untouched(dst, 8);
    }
}

TEST(copy_row, copies_from_any_position_to_any_other)
{
    const std::vector<uint16_t> sel = {9, 7, 5, 2, 1};
    for (const bcast_type type : all_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr src = source(type, 10), dst = patterned_target(type, 10);
        ASSERT_GE(copy_rows(src, 6, dst, 1, 2), 0);
        ASSERT_EQ(bcast_column_select(src.get(), sel.data(), 5), 0);
        ASSERT_GE(copy_rows(src, 2, dst, 5, 3), 0);
        expect_untouched(dst, 0);
        expect_copy(src, 6, dst, 1);
        expect_copy(src, 7, dst, 2);
        expect_untouched(dst, 3);
        expect_untouched(dst, 4);
        expect_copy(src, 5, dst, 5);
        expect_copy(src, 2, dst, 6);
        expect_copy(src, 1, dst, 7);
        expect_untouched(dst, 8);
        expect_untouched(dst, 9);
    }
}

TEST(copy_row, one_row_by_one_is_the_same_as_all_at_once)
{
    const column_ptr src = source(BCAST_VARCHAR, 1000), dst = patterned_target(BCAST_VARCHAR, 1000);
    for (uint32_t row = 0; row < 1000; row++)
        ASSERT_GE(copy_rows(src, row, dst, row, 1), 0);
    for (uint32_t row = 0; row < 1000; row++)
        expect_copy(src, row, dst, row);
}

TEST(copy_row, carries_a_flag_over_as_it_stands)
{
    const column_ptr src = source(BCAST_INT, 3), dst = patterned_target(BCAST_INT, 3);
    flags_of(src)[0] = 7;
    flags_of(src)[1] = 255;
    ASSERT_GE(copy_rows(src, 0, dst, 0, 3), 0);
    EXPECT_EQ(flags_of(dst)[0], 7);
    EXPECT_EQ(flags_of(dst)[1], 255);
    EXPECT_EQ(flags_of(dst)[2], 1);
}

TEST(copy_row, leaves_no_null_as_it_is)
{
    for (const int32_t no_null : {0, 1}) {
        const column_ptr src = source(BCAST_INT, 2), dst = patterned_target(BCAST_INT, 2);
        bcast_column_vector(src.get())->no_null = 1 - no_null;
        bcast_column_vector(dst.get())->no_null = no_null;
        ASSERT_GE(copy_rows(src, 0, dst, 0, 2), 0);
        EXPECT_EQ(bcast_column_vector(src.get())->no_null, 1 - no_null);
        EXPECT_EQ(bcast_column_vector(dst.get())->no_null, no_null);
    }
}

TEST(copy_row, keeps_pad_len)
{
    const column_ptr src = new_column(BCAST_CHAR), dst = patterned_target(BCAST_CHAR, 2);
    ASSERT_EQ(bcast_column_append_char(src.get(), "ab", 2, 8), 0);
    ASSERT_EQ(bcast_column_append_char(src.get(), "", 0, 10), 0);
    ASSERT_GE(copy_rows(src, 0, dst, 0, 2), 0);
    expect_copy(src, 0, dst, 0);
    expect_copy(src, 1, dst, 1);
    EXPECT_EQ(string_element(dst.get(), 1).pad_len, 10);
}

TEST(copy_row, copied_texts_outlive_their_source)
{
    for (const bcast_type type : string_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr dst = patterned_target(type, 100);
        {
            const column_ptr src = source(type, 100);
            ASSERT_GE(copy_rows(src, 0, dst, 0, 100), 0);
        }
        for (uint32_t row = 0; row < 100; row++) {
            if (!is_null_row(row)) {
                ASSERT_EQ(text_of(dst.get(), row), sample_text(row)) << "row " << row;
            }
        }
    }
}

TEST(copy_row, does_not_look_at_the_element_of_a_null_row)
{
    const column_ptr src = source(BCAST_VARCHAR, 1), dst = patterned_target(BCAST_VARCHAR, 1);
    flags_of(src)[0] = 0;
    static_cast<bdta3_str *>(bcast_column_vector(src.get())->data->values)[0] = {
        INT32_MAX, -1, reinterpret_cast<char *>(uintptr_t{8})};
    ASSERT_GE(copy_rows(src, 0, dst, 0, 1), 0);
    expect_copy(src, 0, dst, 0);
}

TEST(copy_row, an_empty_text_may_stand_at_null)
{
    const column_ptr src = source(BCAST_VARCHAR, 1), dst = patterned_target(BCAST_VARCHAR, 1);
    static_cast<bdta3_str *>(bcast_column_vector(src.get())->data->values)[0] = {0, 4, nullptr};
    ASSERT_GE(copy_rows(src, 0, dst, 0, 1), 0);
    const bdta3_str copy = string_element(dst.get(), 0);
    EXPECT_EQ(copy.length, 0);
    EXPECT_EQ(copy.pad_len, 4);
}

TEST(copy_row, no_rows_are_copied_from_an_empty_column)
{
    for (const bcast_type type : all_types()) {
        const column_ptr src = new_column(type), dst = new_column(type);
        EXPECT_GE(copy_rows(src, 0, dst, 0, 0), 0) << bcast_type_name(type);
    }
}

TEST(copy_row, the_last_row_of_65536_can_be_selected)
{
    const column_ptr src = new_column(BCAST_INT64), dst = patterned_target(BCAST_INT64, 1);
    for (int64_t i = 0; i < 65536; i++)
        ASSERT_EQ(bcast_column_append_value(src.get(), &i), 0);
    const uint16_t sel[] = {65535};
    ASSERT_EQ(bcast_column_select(src.get(), sel, 1), 0);
    ASSERT_GE(copy_rows(src, 0, dst, 0, 1), 0);
    EXPECT_EQ(bcast_column_int64(dst.get(), 0), 65535);
}

} // namespace bcast::test
