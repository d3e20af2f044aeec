// The library's only state.

#include <bcast/bcast.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <utility>

namespace bcast::test {
namespace {

// Taken before any test can call bcast_dll_var_init.
const bcast_var at_load = global_bcast_var;

TEST(mode, both_settings_are_zero_at_load)
{
    EXPECT_EQ(at_load.compat_mode, 0);
    EXPECT_EQ(at_load.compat_mode2, 0);
}

TEST(mode, init_stores_both_settings)
{
    constexpr int32_t least = std::numeric_limits<int32_t>::min();
    for (const auto &[first, second] : {std::pair{2, 1}, std::pair{3, 0}, std::pair{-1, least}, std::pair{0, 7}}) {
        bcast_dll_var_init(first, second);
        EXPECT_EQ(global_bcast_var.compat_mode, first);
        EXPECT_EQ(global_bcast_var.compat_mode2, second);
    }
    bcast_dll_var_init(0, 0);
}

TEST(mode, record_is_two_words)
{
    EXPECT_EQ(sizeof(bcast_var), 8U);
    EXPECT_EQ(offsetof(bcast_var, compat_mode), 0U);
    EXPECT_EQ(offsetof(bcast_var, compat_mode2), 4U);
}

} // namespace
} // namespace bcast::test
