#include "tests/support/guarded.h"
#include "tests/support/levels.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include <embedded/text/plain_number.h>

namespace bcast::test {

template <class Level> class plain_number : public level_test<Level> {
protected:
    using numbers = embedded::plain_numbers<Level::value>;
};
TYPED_TEST_SUITE(plain_number, all_levels, level_names);

TYPED_TEST(plain_number, digits_of_every_count_have_their_value)
{
    std::mt19937_64 random(20240704);
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        for (size_t count = 1; count <= embedded::plain_digits_max; count++) {
            for (int i = 0; i < 200; i++) {
                std::string text;
                for (size_t k = 0; k < count; k++)
                    text += static_cast<char>('0' + (i == 0 ? 9 : random() % 10));
                const guarded<char> digits(std::span<const char>(text.data(), text.size()), edge);
                uint64_t value = 0;
                ASSERT_TRUE(TestFixture::numbers::read_digits(digits.data(), count, &value)) << text;
                ASSERT_EQ(value, std::stoull(text)) << text;
            }
        }
    }
}

TYPED_TEST(plain_number, any_other_byte_at_any_place_is_no_digit)
{
    for (size_t count = 1; count <= embedded::plain_digits_max; count++) {
        for (size_t at = 0; at < count; at++) {
            for (int c = 0; c < 256; c++) {
                std::string text(count, '7');
                text[at] = static_cast<char>(c);
                uint64_t value = 0;
                ASSERT_EQ(TestFixture::numbers::read_digits(text.data(), count, &value), c >= '0' && c <= '9')
                    << "byte " << c << " at " << at << " of " << count;
            }
        }
    }
}

TYPED_TEST(plain_number, random_bytes_are_digits_only_where_all_are)
{
    std::mt19937_64 random(20240705);
    for (int i = 0; i < 200000; i++) {
        const size_t count = 1 + random() % embedded::plain_digits_max;
        std::string text;
        bool all_digits = true;
        for (size_t k = 0; k < count; k++) {
            const auto byte = static_cast<unsigned char>(random() % 64 == 0 ? random() % 256 : '0' + random() % 10);
            all_digits = all_digits && byte >= '0' && byte <= '9';
            text += static_cast<char>(byte);
        }
        uint64_t value = 0;
        ASSERT_EQ(TestFixture::numbers::read_digits(text.data(), count, &value), all_digits) << text;
        if (all_digits) {
            ASSERT_EQ(value, std::stoull(text)) << text;
        }
    }
}

// Every count of digits, and one more; the point at every place, and none.
TYPED_TEST(plain_number, decimals_of_every_shape_have_their_digits_and_the_place_of_the_point)
{
    std::mt19937_64 random(20240706);
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        for (size_t count = 1; count <= embedded::plain_digits_max + 1; count++) {
            for (size_t behind = 0; behind <= count + 1; behind++) {
                const bool point = behind <= count;
                const bool is_short =
                    count <= embedded::plain_digits_max && !(point && behind == embedded::plain_digits_max);
                for (int i = 0; i < 50; i++) {
                    std::string digits;
                    for (size_t k = 0; k < count; k++)
                        digits += static_cast<char>('0' + (i == 0 ? 9 : random() % 10));
                    std::string text = digits;
                    if (point)
                        text.insert(count - behind, 1, '.');
                    const guarded<char> copy(std::span<const char>(text.data(), text.size()), edge);
                    uint64_t value = 0;
                    size_t behind_point = 99;
                    ASSERT_EQ(TestFixture::numbers::read_decimal(copy.data(), text.size(), &value, &behind_point),
                              is_short)
                        << text;
                    if (is_short) {
                        ASSERT_EQ(value, std::stoull(digits)) << text;
                        ASSERT_EQ(behind_point, point ? behind : 0) << text;
                    }
                }
            }
        }
    }
}

TYPED_TEST(plain_number, any_other_byte_or_a_second_point_is_no_decimal)
{
    uint64_t value = 0;
    size_t behind_point = 0;
    for (size_t count = 1; count <= embedded::plain_digits_max; count++) {
        for (size_t point = count == embedded::plain_digits_max; point <= count; point++) {
            for (size_t at = 0; at < count; at++) {
                for (int c = 0; c < 256; c++) {
                    std::string text(count, '7');
                    text[at] = static_cast<char>(c);
                    text.insert(point, 1, '.');
                    const bool digit = c >= '0' && c <= '9';
                    ASSERT_EQ(TestFixture::numbers::read_decimal(text.data(), text.size(), &value, &behind_point),
                              digit)
                        << "byte " << c << " at " << at << " of " << count << ", point at " << point;
                }
            }
        }
    }
}

TYPED_TEST(plain_number, no_digits_and_too_many_characters_are_no_decimal)
{
    uint64_t value = 0;
    size_t behind_point = 0;
    const guarded<char> nothing(0);
    EXPECT_FALSE(TestFixture::numbers::read_decimal(nothing.data(), 0, &value, &behind_point));
    for (size_t size = 1; size <= 100; size++) {
        const std::string points(size, '.'), ones(size, '1');
        EXPECT_FALSE(TestFixture::numbers::read_decimal(points.data(), size, &value, &behind_point)) << points;
        EXPECT_EQ(TestFixture::numbers::read_decimal(ones.data(), size, &value, &behind_point),
                  size <= embedded::plain_digits_max)
            << ones;
    }
}

} // namespace bcast::test
