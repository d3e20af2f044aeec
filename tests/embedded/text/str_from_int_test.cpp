#include "tests/support/guarded.h"

#include <bcast/codes.h>
#include <services/text.h>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace bcast::test {

namespace {

// With a buffer of 16 bytes between inaccessible pages, at both edges.
void expect_text(int32_t value)
{
    const std::string expected = std::to_string(value);
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        guarded<char> buffer(16, edge);
        int32_t len = -1;
        ASSERT_EQ(str_from_int(value, static_cast<int32_t>(expected.size()), buffer.data(), &len), 0) << value;
        ASSERT_EQ(std::string(buffer.data(), static_cast<size_t>(len)), expected);
        ASSERT_TRUE(buffer.slack_untouched()) << value << " was written beyond the 16 bytes";
    }
}

std::vector<int32_t> edges()
{
    std::vector<int32_t> values = {0, INT32_MIN, INT32_MIN + 1, INT32_MAX, INT32_MAX - 1};
    for (int32_t power = 1;; power *= 10) {
        values.insert(values.end(), {power - 1, power, power + 1, -power + 1, -power, -power - 1});
        if (power == 1000000000)
            break;
    }
    for (int bit = 0; bit < 31; bit++) {
        const int32_t power = int32_t{1} << bit;
        values.insert(values.end(), {power - 1, power, -power, -power + 1});
    }
    return values;
}

} // namespace

TEST(str_from_int, writes_the_edges)
{
    for (const int32_t value : edges())
        expect_text(value);
}

TEST(str_from_int, writes_every_int16)
{
    for (int32_t value = INT16_MIN; value <= INT16_MAX; value++) {
        char buffer[16];
        int32_t len = -1;
        ASSERT_EQ(str_from_int(value, 6, buffer, &len), 0) << value;
        ASSERT_EQ(std::string(buffer, static_cast<size_t>(len)), std::to_string(value));
    }
}

TEST(str_from_int, writes_random_values_of_every_length)
{
    std::mt19937 random(20240703);
    for (int i = 0; i < 1000000; i++) {
        const auto bits = static_cast<uint32_t>(random()) >> (random() % 32);
        const auto value = static_cast<int32_t>(random() % 2 == 0 ? bits : 0 - bits);
        char buffer[16];
        int32_t len = -1;
        ASSERT_EQ(str_from_int(value, 11, buffer, &len), 0) << value;
        ASSERT_EQ(std::string(buffer, static_cast<size_t>(len)), std::to_string(value));
    }
}

TEST(str_from_int, fails_where_the_limit_is_below_the_length_and_nowhere_else)
{
    for (const int32_t value : edges()) {
        const auto length = static_cast<int32_t>(std::to_string(value).size());
        for (int32_t limit = -2; limit <= 20; limit++) {
            char buffer[16];
            int32_t len = -1;
            EXPECT_EQ(str_from_int(value, limit, buffer, &len), limit < length ? ERR_TARGET_TOO_SHORT : 0)
                << value << " in " << limit << " bytes";
        }
    }
}

TEST(str_from_int, takes_limits_of_any_size)
{
    char buffer[16];
    int32_t len = -1;
    EXPECT_EQ(str_from_int(5, INT32_MIN, buffer, &len), ERR_TARGET_TOO_SHORT);
    EXPECT_EQ(str_from_int(5, 0, buffer, &len), ERR_TARGET_TOO_SHORT);
    EXPECT_EQ(str_from_int(INT32_MIN, INT32_MAX, buffer, &len), 0);
    EXPECT_EQ(len, 11);
}

} // namespace bcast::test
