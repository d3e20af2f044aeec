#include <bcast/bcast.h>
#include <bcast/embedded.hpp>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

namespace bcast::test {

static_assert(!std::is_copy_constructible_v<pool> && std::is_nothrow_move_constructible_v<pool>);
static_assert(!std::is_copy_constructible_v<column> && std::is_nothrow_move_constructible_v<column>);
static_assert(!std::is_copy_constructible_v<failures> && std::is_nothrow_move_constructible_v<failures>);
static_assert(!std::is_copy_assignable_v<column> && std::is_nothrow_move_assignable_v<column>);

TEST(wrapper, a_column_takes_and_gives_texts)
{
    column texts(BCAST_VARCHAR);
    const std::string owned = "owned";
    texts.append("literal");
    texts.append(owned);
    texts.append(std::string_view("a\0b", 3));
    texts.append(std::nullopt);
    texts.append("");
    texts.append_char("padded", 4);
    ASSERT_EQ(texts.rows(), 6u);
    EXPECT_EQ(texts.type(), BCAST_VARCHAR);
    EXPECT_EQ(texts.text(0), "literal");
    EXPECT_EQ(texts.text(1), "owned");
    EXPECT_EQ(texts.text(2), std::string_view("a\0b", 3));
    EXPECT_EQ(texts.text(3), std::nullopt);
    EXPECT_TRUE(texts.is_null(3));
    EXPECT_EQ(texts.text(4), "");
    EXPECT_EQ(texts.text(5), "padded");
    EXPECT_EQ(texts.value<bdta3_str>(5)->pad_len, 4);
}

TEST(wrapper, a_column_takes_and_gives_elements)
{
    column numbers(BCAST_INT64);
    const std::vector<int64_t> values = {1, 2, 3};
    const std::vector<uint8_t> present = {1, 0, 1};
    numbers.append_value(int64_t{-5});
    numbers.append_values(std::span<const int64_t>(values));
    numbers.append_values(std::span<const int64_t>(values), present);
    numbers.append(std::nullopt);
    ASSERT_EQ(numbers.rows(), 8u);
    EXPECT_EQ(numbers.int64(0), -5);
    EXPECT_EQ(numbers.value<int64_t>(3), 3);
    EXPECT_EQ(numbers.int64(4), 1);
    EXPECT_EQ(numbers.int64(5), std::nullopt);
    EXPECT_EQ(numbers.value<int64_t>(5), std::nullopt);
    EXPECT_EQ(numbers.value<int64_t>(7), std::nullopt);
    EXPECT_EQ(numbers.text(0), std::nullopt);
}

TEST(wrapper, an_unaligned_element_comes_out_whole)
{
    column decimals(BCAST_DEC);
    for (uint8_t i = 0; i < 3; i++) {
        xdec element;
        std::memset(element.bytes, i + 1, sizeof element.bytes);
        decimals.append_value(element);
    }
    EXPECT_EQ(decimals.value<xdec>(1)->bytes[0], 2);
    EXPECT_EQ(decimals.value<xdec>(2)->bytes[29], 3);
}

TEST(wrapper, owners_can_be_moved)
{
    column texts(BCAST_VARCHAR);
    texts.append("text");
    bdta3_col *vector = texts.vector();
    column other = std::move(texts);
    EXPECT_EQ(other.vector(), vector);
    column third(BCAST_INT);
    third = std::move(other);
    EXPECT_EQ(third.text(0), "text");
    pool first;
    bcast_pool *heap = first.heap();
    const pool second = std::move(first);
    EXPECT_EQ(const_cast<pool &>(second).heap(), heap);
}

TEST(wrapper, what_does_not_suit_the_column_throws_and_changes_nothing)
{
    column texts(BCAST_VARCHAR), numbers(BCAST_INT);
    EXPECT_THROW(column{BCAST_TYPE_COUNT}, std::invalid_argument);
    EXPECT_THROW(numbers.append("5"), std::invalid_argument);
    EXPECT_THROW(numbers.append_char("5", 1), std::invalid_argument);
    EXPECT_THROW(numbers.append_value(int64_t{5}), std::invalid_argument);
    EXPECT_THROW(texts.append_value(bdta3_str{}), std::invalid_argument);
    EXPECT_EQ(texts.rows(), 0u);
    EXPECT_EQ(numbers.rows(), 0u);
    numbers.append_value(int32_t{5});
    EXPECT_THROW(numbers.value<int64_t>(0), std::invalid_argument);
    const int32_t values[] = {1, 2};
    const uint8_t present[] = {1};
    EXPECT_THROW(numbers.append_values(std::span<const int32_t>(values), present), std::invalid_argument);
    EXPECT_EQ(numbers.rows(), 1u);
}

TEST(wrapper, a_row_that_is_not_there_throws)
{
    column numbers(BCAST_INT);
    numbers.append_value(int32_t{5});
    EXPECT_THROW(numbers.is_null(1), std::out_of_range);
    EXPECT_THROW(numbers.int64(1), std::out_of_range);
    EXPECT_THROW(numbers.value<int32_t>(1), std::out_of_range);
    EXPECT_THROW(numbers.text(1), std::out_of_range);
    const std::vector<uint16_t> sel = {0, 1};
    EXPECT_THROW(numbers.select(sel), std::out_of_range);
    EXPECT_EQ(numbers.vector()->sel, nullptr);
}

TEST(wrapper, too_many_rows_throw)
{
    column numbers(BCAST_INT);
    EXPECT_THROW(numbers.make_room(65537), std::length_error);
    numbers.make_room(65536);
    EXPECT_THROW(numbers.append_value(int32_t{5}), std::length_error);
    EXPECT_THROW(numbers.append(std::nullopt), std::length_error);
    EXPECT_THROW(numbers.select(std::vector<uint16_t>(65536)), std::length_error);
    EXPECT_EQ(numbers.rows(), 65536u);
    numbers.clear();
    EXPECT_EQ(numbers.rows(), 0u);
}

TEST(wrapper, a_selection_comes_and_goes)
{
    column numbers(BCAST_INT);
    numbers.make_room(10);
    numbers.select(std::vector<uint16_t>{9, 0});
    EXPECT_EQ(numbers.vector()->sel[0], 9);
    numbers.select({});
    EXPECT_NE(numbers.vector()->sel, nullptr);
    numbers.unselect();
    EXPECT_EQ(numbers.vector()->sel, nullptr);
}

TEST(wrapper, a_capturing_cast_fills_target_and_failures)
{
    pool memory;
    memory.set_time_zone(60);
    column src(BCAST_VARCHAR), dst(BCAST_INT);
    failures failed;
    for (const char *text : {"12", "bad", "", "99999999999", "-7"})
        src.append(text);
    src.append(std::nullopt);
    dst.make_room(src.rows());
    EXPECT_EQ(
        bcast_varchar_to_int(nullptr, memory.heap(), src.vector(), dst.vector(), 6, failed.codes(), failed.count()),
        ERR_OVERFLOW);
    EXPECT_EQ(*failed.count(), 2);
    EXPECT_EQ(failed.next(0, 6), 1u);
    EXPECT_EQ(failed.codes()[1], ERR_BAD_CONVERSION);
    EXPECT_EQ(failed.next(2, 6), 3u);
    EXPECT_EQ(failed.codes()[3], ERR_OVERFLOW);
    EXPECT_EQ(failed.next(4, 6), 6u);
    EXPECT_EQ(dst.int64(0), 12);
    EXPECT_EQ(dst.int64(2), std::nullopt);
    EXPECT_EQ(dst.int64(4), -7);
    EXPECT_EQ(dst.int64(5), std::nullopt);
    failed.reset();
    memory.reset();
    EXPECT_EQ(*failed.count(), 0);
    EXPECT_EQ(failed.next(0, 6), 6u);
}

TEST(wrapper, an_integer_comes_out_as_text_and_as_a_large_object)
{
    pool memory;
    column src(BCAST_INT), chars(BCAST_CHAR), objects(BCAST_TEXT);
    for (const int32_t value : {7, -123456789, 0})
        src.append_value(value);
    src.append(std::nullopt);
    const std::vector<uint16_t> sel = {3, 1, 0};
    src.select(sel);
    chars.make_room(3);
    objects.make_room(3);
    ASSERT_EQ(bcast_int_to_char(nullptr, memory.heap(), src.vector(), 12, chars.vector(), 3), 0);
    ASSERT_EQ(bcast_int_to_text(nullptr, memory.heap(), src.vector(), objects.vector(), 3, nullptr, nullptr), 0);
    EXPECT_EQ(chars.text(0), std::nullopt);
    EXPECT_EQ(chars.text(1), "-123456789");
    EXPECT_EQ(chars.value<bdta3_str>(1)->pad_len, 2);
    EXPECT_EQ(objects.text(0), std::nullopt);
    EXPECT_EQ(objects.text(1), "-123456789");
    EXPECT_EQ(objects.text(2), "7");
}

} // namespace bcast::test
