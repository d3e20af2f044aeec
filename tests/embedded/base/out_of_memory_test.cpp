// Every allocation is made to fail in turn. The C library's own functions are
// replaced for the whole program, which a sanitizer that replaces them too does
// not allow.
#include "tests/embedded/support.h"

#include <bcast/embedded.hpp>
#include <services/column.h>

#include <cerrno>
#include <cstdlib>
#include <functional>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define REPLACES_ALLOCATION 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define REPLACES_ALLOCATION 0
#endif
#endif
#ifndef REPLACES_ALLOCATION
#define REPLACES_ALLOCATION 1
#endif

namespace {

constexpr long never = -1;
long allocations_left = never; // until one fails, and all after it

[[maybe_unused]] bool allocation_fails()
{
    if (allocations_left == never)
        return false;
    if (allocations_left == 0) {
        errno = ENOMEM;
        return true;
    }
    allocations_left--;
    return false;
}

} // namespace

#if REPLACES_ALLOCATION

#pragma GCC visibility push(default)
extern "C" {
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);

void *malloc(size_t size) { return allocation_fails() ? nullptr : __libc_malloc(size); }
void *calloc(size_t count, size_t size) { return allocation_fails() ? nullptr : __libc_calloc(count, size); }
}
#pragma GCC visibility pop

#endif

namespace bcast::test {

namespace {

class out_of_memory : public testing::Test {
protected:
    void SetUp() override
    {
        if (!REPLACES_ALLOCATION)
            GTEST_SKIP() << "a sanitizer has replaced the allocation functions already";
    }
    void TearDown() override { allocations_left = never; }
};

using out_of_memory_death = out_of_memory;

// Runs work with no allocation, then one, then two that succeed, until it
// succeeds as a whole. Returns how often it failed.
int failures_until_success(const std::function<bool()> &work)
{
    for (long allowed = 0; allowed < 1000; allowed++) {
        allocations_left = allowed;
        const bool done = work();
        allocations_left = never;
        if (done)
            return static_cast<int>(allowed);
    }
    return -1;
}

template <typename Work> auto without_memory(Work work)
{
    allocations_left = 0;
    auto result = work();
    allocations_left = never;
    return result;
}

} // namespace

TEST_F(out_of_memory, nothing_new_is_made)
{
    EXPECT_EQ(without_memory([] { return bcast_pool_new(); }), nullptr);
    EXPECT_EQ(without_memory([] { return bcast_failures_new(); }), nullptr);
    const int failures = failures_until_success([] {
        bcast_column *column = bcast_column_new(BCAST_INT);
        bcast_column_free(column);
        return column != nullptr;
    });
    EXPECT_EQ(failures, 3) << "the column and its two arrays";
}

TEST_F(out_of_memory, a_failed_append_leaves_the_column_as_it_was)
{
    for (const bcast_type type : all_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const column_ptr column = new_column(type);
        const std::vector<unsigned char> element = sample_element(type, 3);
        const auto append = [&] {
            if (bcast_type_is_string(type))
                return bcast_column_append_text(column.get(), "some text", 9);
            if (type == BCAST_NULL)
                return bcast_column_append_null(column.get());
            return bcast_column_append_value(column.get(), element.data());
        };
        for (uint32_t rows = 0; rows < 5000; rows++) {
            const int32_t status = without_memory(append);
            if (status != 0) {
                ASSERT_EQ(status, ERR_NO_MEMORY) << "row " << rows;
                ASSERT_EQ(bcast_column_rows(column.get()), rows);
                ASSERT_EQ(append(), 0) << "row " << rows;
            }
            ASSERT_EQ(bcast_column_rows(column.get()), rows + 1);
        }
        for (uint32_t row = 0; row < 5000; row++) {
            if (bcast_type_is_string(type)) {
                ASSERT_EQ(text_of(column.get(), row), "some text") << "row " << row;
            } else {
                ASSERT_EQ(element_of(column.get(), row), type == BCAST_NULL ? std::vector<unsigned char>() : element)
                    << "row " << row;
            }
        }
    }
}

TEST_F(out_of_memory, rows_appended_at_once_come_all_or_none)
{
    const std::string text(300, 'x');
    const std::vector<const char *> texts(200, text.c_str());
    int failed = 0;
    failed = failures_until_success([&] {
        const column_ptr column = [&] {
            const long allowed = std::exchange(allocations_left, never);
            column_ptr made = new_column(BCAST_TEXT);
            EXPECT_EQ(bcast_column_append_text(made.get(), "first", 5), 0);
            allocations_left = allowed;
            return made;
        }();
        const int32_t status = bcast_column_append_texts(column.get(), texts.data(), nullptr, 200);
        allocations_left = never;
        EXPECT_EQ(text_of(column.get(), 0), "first");
        if (status == 0) {
            EXPECT_EQ(bcast_column_rows(column.get()), 201u);
            return true;
        }
        EXPECT_EQ(status, ERR_NO_MEMORY);
        EXPECT_EQ(bcast_column_rows(column.get()), 1u);
        return false;
    });
    EXPECT_GE(failed, 3); // flags, elements, blocks of the arena
}

TEST_F(out_of_memory, room_that_is_not_there_leaves_the_column_as_it_was)
{
    const column_ptr column = new_column(BCAST_VARCHAR);
    const uint16_t sel[] = {0};
    ASSERT_EQ(bcast_column_append_text(column.get(), "text", 4), 0);
    ASSERT_EQ(bcast_column_select(column.get(), sel, 1), 0);
    EXPECT_EQ(without_memory([&] { return bcast_column_make_room(column.get(), 1000); }), ERR_NO_MEMORY);
    EXPECT_EQ(without_memory([&] { return bcast_column_select(column.get(), sel, 1); }), ERR_NO_MEMORY);
    EXPECT_EQ(bcast_column_rows(column.get()), 1u);
    EXPECT_EQ(text_of(column.get(), 0), "text");
    EXPECT_NE(bcast_column_vector(column.get())->sel, nullptr);
}

TEST_F(out_of_memory, a_column_that_was_filled_once_needs_none_for_the_same_again)
{
    const column_ptr column = new_column(BCAST_VARCHAR);
    const std::string text(40, 'x');
    const auto fill = [&] {
        int32_t status = bcast_column_make_room(column.get(), 3000);
        for (int32_t row = 0; row < 3000; row++)
            bdta3_col_assign_str(nullptr, nullptr, bcast_column_vector(column.get()), row, text.data(), row % 40, 0);
        return status;
    };
    ASSERT_EQ(fill(), 0);
    EXPECT_EQ(without_memory(fill), 0);
}

TEST_F(out_of_memory, space_alloc_gives_null)
{
    const column_ptr column = new_column(BCAST_VARCHAR);
    bdta3_col_data *data = bcast_column_vector(column.get())->data;
    EXPECT_EQ(without_memory([&] { return bdta3_col_space_alloc(nullptr, nullptr, data, 10); }), nullptr);
    EXPECT_NE(bdta3_col_space_alloc(nullptr, nullptr, data, 10), nullptr);
}

TEST_F(out_of_memory, copy_row_reports_it)
{
    const column_ptr src = new_column(BCAST_VARCHAR), dst = new_column(BCAST_VARCHAR);
    ASSERT_EQ(bcast_column_append_text(src.get(), "text", 4), 0);
    ASSERT_EQ(bcast_column_make_room(dst.get(), 1), 0);
    const bdta3_col *from = bcast_column_vector(src.get());
    const auto copy = [&] {
        return from->data->copy_row(nullptr, nullptr, from, 0, bcast_column_vector(dst.get()), 0, nullptr, 1);
    };
    EXPECT_EQ(without_memory(copy), ERR_NO_MEMORY);
    EXPECT_GE(copy(), 0);
    EXPECT_EQ(text_of(dst.get(), 0), "text");
}

TEST_F(out_of_memory, nblob_assign_const_reports_it_and_can_be_called_again)
{
    const pool_ptr pool = new_pool();
    nstr value = {};
    value.outline = value.inline_bytes;
    const auto fill = [&] { return nblob_assign_const(nullptr, pool.get(), &value, "123456", 6); };
    EXPECT_EQ(without_memory(fill), ERR_NO_MEMORY);
    EXPECT_EQ(value.outline, value.inline_bytes);
    EXPECT_EQ(value.outline_state, 0u);
    EXPECT_EQ(fill(), 0);
    EXPECT_EQ(value.length, 49u);
}

TEST_F(out_of_memory, the_wrapper_throws_bad_alloc)
{
    column texts(BCAST_VARCHAR);
    const auto throws = [](const auto &work) {
        return without_memory([&] {
            try {
                work();
            } catch (const std::bad_alloc &) {
                return true;
            }
            return false;
        });
    };
    EXPECT_TRUE(throws([] { pool memory; }));
    EXPECT_TRUE(throws([] { failures failed; }));
    EXPECT_TRUE(throws([] { column other(BCAST_INT); }));
    EXPECT_TRUE(throws([&] { texts.append("text"); }));
    EXPECT_TRUE(throws([&] { texts.make_room(1000); }));
    EXPECT_EQ(texts.rows(), 0u);
}

TEST_F(out_of_memory_death, an_assignment_ends_the_process_and_says_so)
{
    const column_ptr column = new_column(BCAST_VARCHAR);
    ASSERT_EQ(bcast_column_make_room(column.get(), 1), 0);
    bdta3_col *vector = bcast_column_vector(column.get());
    const std::string large(10000, 'x');
    EXPECT_DEATH((allocations_left = 0, bdta3_col_assign_str(nullptr, nullptr, vector, 0, large.data(), 10000, 0)),
                 "libbcast_embedded: out of memory for a column value of 10000 bytes");
    EXPECT_DEATH((allocations_left = 0, bdta3_col_assign_bin(nullptr, nullptr, vector, 0, large.data(), 10000)),
                 "libbcast_embedded: out of memory for a column value of 10000 bytes");
}

TEST_F(out_of_memory_death, a_text_on_its_way_into_a_column_ends_the_process_and_says_so)
{
    const pool_ptr pool = new_pool();
    nstr value = {};
    value.outline = value.inline_bytes;
    const std::string text(100, 'x');
    EXPECT_DEATH((allocations_left = 0, nstr_assign_const(nullptr, pool.get(), &value, text.c_str())),
                 "libbcast_embedded: out of memory for a text on its way into a column of 100 bytes");
}

} // namespace bcast::test
