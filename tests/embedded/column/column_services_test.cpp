#include "tests/embedded/support.h"
#include "tests/support/guarded.h"

#include <services/column.h>

namespace bcast::test {

namespace {

column_ptr target(bcast_type type, uint32_t rows)
{
    column_ptr column = new_column(type);
    EXPECT_EQ(bcast_column_make_room(column.get(), rows), 0);
    return column;
}

void assign_str(const column_ptr &column, int32_t row, std::string_view text, int32_t pad)
{
    bdta3_col_assign_str(nullptr, nullptr, bcast_column_vector(column.get()), row, text.data(),
                         static_cast<int32_t>(text.size()), pad);
}

void assign_bin(const column_ptr &column, int32_t row, std::string_view bytes)
{
    bdta3_col_assign_bin(nullptr, nullptr, bcast_column_vector(column.get()), row, bytes.data(),
                         static_cast<int32_t>(bytes.size()));
}

// An element that no assignment makes.
void scribble(const column_ptr &column, uint32_t row)
{
    std::memset(static_cast<bdta3_str *>(bcast_column_vector(column.get())->data->values) + row, 0x55,
                sizeof(bdta3_str));
}

std::string stored(const column_ptr &column, uint32_t row)
{
    const bdta3_str element = string_element(column.get(), row);
    EXPECT_EQ(element.text[element.length], '\0') << "row " << row;
    return {element.text, static_cast<size_t>(element.length)};
}

} // namespace

TEST(assign_str, copies_the_text_and_sets_length_and_pad_len)
{
    const column_ptr column = target(BCAST_CHAR, 2);
    scribble(column, 1);
    assign_str(column, 1, "ab", 8);
    EXPECT_EQ(stored(column, 1), "ab");
    EXPECT_EQ(string_element(column.get(), 1).pad_len, 8);
    EXPECT_EQ(string_element(column.get(), 0).text, nullptr);
}

TEST(assign_str, leaves_flag_and_no_null)
{
    const column_ptr column = target(BCAST_VARCHAR, 1);
    bdta3_col *vector = bcast_column_vector(column.get());
    for (const uint8_t flag : std::initializer_list<uint8_t>{0, 1, 7}) {
        vector->data->flags[0] = flag;
        vector->no_null = flag;
        assign_str(column, 0, "text", 0);
        EXPECT_EQ(vector->data->flags[0], flag);
        EXPECT_EQ(vector->no_null, flag);
    }
}

TEST(assign_str, an_empty_text_has_its_pad_len)
{
    const column_ptr column = target(BCAST_CHAR, 1);
    scribble(column, 0);
    assign_str(column, 0, "", 10);
    EXPECT_EQ(stored(column, 0), "");
    EXPECT_EQ(string_element(column.get(), 0).pad_len, 10);
}

TEST(assign_str, does_not_keep_the_callers_bytes)
{
    const column_ptr column = target(BCAST_VARCHAR, 2);
    char scratch[] = "first";
    assign_str(column, 0, {scratch, 5}, 0);
    std::memcpy(scratch, "other", 5);
    assign_str(column, 1, {scratch, 5}, 0);
    EXPECT_EQ(stored(column, 0), "first");
    EXPECT_EQ(stored(column, 1), "other");
}

TEST(assign_str, reads_no_byte_around_the_text_and_spoils_no_other_row)
{
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        const column_ptr column = target(BCAST_VARCHAR, 200);
        std::vector<std::string> expected;
        for (int32_t len = 0; len < 200; len++) {
            guarded<char> text(static_cast<size_t>(len), edge);
            for (size_t k = 0; k < text.size(); k++)
                text[k] = static_cast<char>('a' + (k + text.size()) % 26);
            text.make_read_only();
            assign_str(column, len, {text.data(), text.size()}, len);
            expected.emplace_back(text.begin(), text.end());
        }
        for (uint32_t row = 0; row < 200; row++) {
            ASSERT_EQ(stored(column, row), expected[row]) << "row " << row;
            ASSERT_EQ(string_element(column.get(), row).pad_len, static_cast<int32_t>(row));
        }
    }
}

TEST(assign_str, fills_65536_rows_in_any_order_and_again_after_make_room)
{
    const column_ptr column = new_column(BCAST_VARCHAR);
    for (const int32_t filling : {1, 2, 3}) {
        ASSERT_EQ(bcast_column_make_room(column.get(), 65536), 0);
        for (int32_t i = 0; i < 65536; i++) {
            const int32_t row = static_cast<int32_t>(static_cast<uint32_t>(i) * 40503 % 65536);
            assign_str(column, row, std::string(static_cast<size_t>(row % 40), '.') + std::to_string(row * filling), 0);
        }
        for (int32_t row = 0; row < 65536; row++) {
            ASSERT_EQ(stored(column, static_cast<uint32_t>(row)),
                      std::string(static_cast<size_t>(row % 40), '.') + std::to_string(row * filling));
        }
    }
}

TEST(assign_str, a_row_may_be_assigned_again)
{
    const column_ptr column = target(BCAST_VARCHAR, 1);
    assign_str(column, 0, "a first value", 3);
    assign_str(column, 0, "second", 0);
    EXPECT_EQ(stored(column, 0), "second");
    EXPECT_EQ(string_element(column.get(), 0).pad_len, 0);
}

TEST(assign_str_death, a_negative_length_ends_the_process_and_says_so)
{
    const column_ptr column = target(BCAST_VARCHAR, 1);
    bdta3_col *vector = bcast_column_vector(column.get());
    bdta3_col_assign_str(nullptr, nullptr, vector, 0, "a text", 6, 0); // so that there is room for a size gone wrong
    for (const int32_t len : {-1, -2, INT32_MIN})
        EXPECT_DEATH(bdta3_col_assign_str(nullptr, nullptr, vector, 0, "x", len, 0), "out of memory");
    EXPECT_DEATH(bdta3_col_assign_str(nullptr, nullptr, vector, 0, "x", -5, 0),
                 "libbcast_embedded: out of memory for a column value of -5 bytes");
}

TEST(assign_bin, copies_the_bytes_and_sets_pad_len_to_zero)
{
    for (const bcast_type type : {BCAST_BINARY, BCAST_VARBINARY, BCAST_TEXT, BCAST_BLOB}) {
        const column_ptr column = target(type, 3);
        scribble(column, 0);
        scribble(column, 1);
        scribble(column, 2);
        const std::string large(100000, '\xff');
        assign_bin(column, 0, std::string_view("a\0b", 3));
        assign_bin(column, 1, {});
        assign_bin(column, 2, large);
        EXPECT_EQ(stored(column, 0), std::string("a\0b", 3));
        EXPECT_EQ(stored(column, 1), "");
        EXPECT_EQ(stored(column, 2), large);
        for (const uint32_t row : {0u, 1u, 2u})
            EXPECT_EQ(string_element(column.get(), row).pad_len, 0) << "row " << row;
    }
}

TEST(assign_bin, reads_no_byte_around_the_bytes)
{
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        const column_ptr column = target(BCAST_BLOB, 100);
        for (int32_t len = 0; len < 100; len++) {
            guarded<char> bytes(static_cast<size_t>(len), edge);
            assign_bin(column, len, {bytes.data(), bytes.size()});
            ASSERT_EQ(stored(column, static_cast<uint32_t>(len)), std::string(bytes.begin(), bytes.end()));
        }
    }
}

TEST(space_alloc, gives_space_that_nothing_else_uses)
{
    const column_ptr column = target(BCAST_VARCHAR, 1000);
    bdta3_col_data *data = bcast_column_vector(column.get())->data;
    std::vector<char *> spaces;
    for (int32_t i = 0; i < 1000; i++) {
        auto *space = static_cast<char *>(bdta3_col_space_alloc(nullptr, nullptr, data, i));
        ASSERT_NE(space, nullptr);
        std::memset(space, 'a' + i % 26, static_cast<size_t>(i));
        assign_str(column, i, std::string(static_cast<size_t>(i % 20), 'Z'), 0);
        spaces.push_back(space);
    }
    for (size_t i = 0; i < 1000; i++) {
        ASSERT_EQ(std::string_view(spaces[i], i), std::string(i, static_cast<char>('a' + i % 26))) << "size " << i;
        ASSERT_EQ(spaces[i][i], '\0') << "size " << i;
        ASSERT_EQ(stored(column, static_cast<uint32_t>(i)), std::string(i % 20, 'Z'));
    }
}

TEST(space_alloc, a_negative_size_gives_null)
{
    const column_ptr column = target(BCAST_VARCHAR, 1);
    bdta3_col_data *data = bcast_column_vector(column.get())->data;
    EXPECT_EQ(bdta3_col_space_alloc(nullptr, nullptr, data, -1), nullptr);
    EXPECT_EQ(bdta3_col_space_alloc(nullptr, nullptr, data, INT32_MIN), nullptr);
}

} // namespace bcast::test
