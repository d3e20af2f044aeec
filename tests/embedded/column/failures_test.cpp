#include <bcast/embedded.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace bcast::test {

namespace {

using failures_ptr = std::unique_ptr<bcast_failures, decltype(&bcast_failures_free)>;

failures_ptr new_failures() { return failures_ptr(bcast_failures_new(), bcast_failures_free); }

std::vector<uint32_t> failed_rows(const bcast_failures *failures, uint32_t rows)
{
    std::vector<uint32_t> found;
    for (uint32_t row = bcast_failures_next(failures, 0, rows); row < rows;
         row = bcast_failures_next(failures, row + 1, rows))
        found.push_back(row);
    return found;
}

} // namespace

TEST(failures, start_without_any)
{
    const failures_ptr failures = new_failures();
    EXPECT_EQ(failures->count, 0);
    for (uint32_t row = 0; row < 65535; row++)
        ASSERT_EQ(failures->codes[row], 0) << "row " << row;
    EXPECT_EQ(bcast_failures_next(failures.get(), 0, 65535), 65535u);
}

TEST(failures, next_finds_each_row_that_failed)
{
    const failures_ptr failures = new_failures();
    const std::vector<uint32_t> rows = {0, 1, 17, 40000, 65534};
    for (const uint32_t row : rows)
        failures->codes[row] = ERR_OVERFLOW;
    EXPECT_EQ(failed_rows(failures.get(), 65535), rows);
}

TEST(failures, next_looks_at_no_row_outside_its_bounds)
{
    const failures_ptr failures = new_failures();
    failures->codes[4] = failures->codes[10] = ERR_OVERFLOW;
    EXPECT_EQ(bcast_failures_next(failures.get(), 5, 10), 10u);
    EXPECT_EQ(bcast_failures_next(failures.get(), 0, 4), 4u);
    EXPECT_EQ(bcast_failures_next(failures.get(), 4, 5), 4u);
    EXPECT_EQ(bcast_failures_next(failures.get(), 9, 9), 9u);
    EXPECT_EQ(bcast_failures_next(failures.get(), 20, 9), 9u);
    EXPECT_EQ(bcast_failures_next(failures.get(), 11, UINT32_MAX), UINT32_MAX);
}

TEST(failures, reset_clears_all_codes_and_the_count)
{
    const failures_ptr failures = new_failures();
    for (uint32_t row = 0; row < 65535; row++)
        failures->codes[row] = ERR_BAD_CONVERSION;
    failures->count = 65535;
    bcast_failures_reset(failures.get());
    EXPECT_EQ(failures->count, 0);
    EXPECT_TRUE(failed_rows(failures.get(), 65535).empty());
}

// A count that went round once says nothing of the codes.
TEST(failures, reset_clears_codes_also_when_the_count_is_zero)
{
    const failures_ptr failures = new_failures();
    failures->codes[3] = ERR_BAD_CONVERSION;
    bcast_failures_reset(failures.get());
    EXPECT_EQ(failures->codes[3], 0);
}

TEST(failures, null_may_be_freed) { bcast_failures_free(nullptr); }

} // namespace bcast::test
