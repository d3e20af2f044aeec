// The walks that a cast can be built on, by themselves, where no cast with such a walk shows the whole of them.

#include "src/frame/block_walk.h"
#include "src/frame/row_walk.h"
#include "tests/support/batch.h"

#include <gtest/gtest.h>

#include <vector>

namespace bcast::test {

namespace {

RUN void double_it(const int32_t *from, const uint8_t *flags, int64_t *to, uint32_t n)
{
    convert_run(from, flags, to, n, [](int32_t value) { return int64_t(value) * 2; });
}
RUN void is_true(const int64_t *from, const uint8_t *flags, int32_t *to, uint32_t n)
{
    convert_run(from, flags, to, n, [](int64_t value) { return int32_t(value != 0); });
}

// Batches around the border of a block of rows, every setup.
class block_walks : public testing::TestWithParam<uint32_t> {};
INSTANTIATE_TEST_SUITE_P(batches, block_walks, testing::Values(0u, 1u, 3u, 1023u, 1024u, 1025u, 2500u));

// A row is null by its flag where its number is a multiple of 3; flags are odd bytes.
uint8_t flag_of(uint32_t row) { return row % 3 == 0 ? 0 : uint8_t(row % 255 + 1); }

TEST_P(block_walks, by_no_null_copies_flags_and_converts_null_rows_only_where_no_null_says_there_are_none)
{
    const uint32_t rows = GetParam();
    for (const setup &how : all_setups()) {
        SCOPED_TRACE(describe(how));
        source_column src(sizeof(int32_t), rows, how);
        target_column dst(sizeof(int64_t), rows, how.edge);
        target_image expected = dst.image();
        for (uint32_t i = 0; i < rows; i++) {
            src.set(i, flag_of(i), int32_t(i) - 700);
            expected.flags[i] = flag_of(i);
            if (how.no_null != 0 || flag_of(i) != 0)
                expected.put(i, (int64_t(i) - 700) * 2);
        }
        expected.no_null = how.no_null;

        EXPECT_EQ(walk_blocks_by_no_null<double_it>(src.sealed(), dst.column(), uint16_t(rows)), 0);
        EXPECT_TRUE(dst.holds(expected));
    }
}

TEST_P(block_walks, to_boolean_makes_every_row_present_and_null_rows_unknown)
{
    const uint32_t rows = GetParam();
    for (const setup &how : all_setups()) {
        SCOPED_TRACE(describe(how));
        source_column src(sizeof(int64_t), rows, how);
        target_column dst(sizeof(int32_t), rows, how.edge);
        target_image expected = dst.image();
        for (uint32_t i = 0; i < rows; i++) {
            const int64_t value = i % 5 == 0 ? 0 : int64_t(i) << 32;
            src.set(i, flag_of(i), value);
            expected.flags[i] = 1;
            const bool unknown = how.no_null == 0 && flag_of(i) == 0;
            expected.put(i, unknown ? int32_t(BOOL_UNKNOWN) : int32_t(value != 0));
        }
        expected.no_null = 1;
        if (how.no_null != 0)
            src.hide_flags(); // they are not read

        EXPECT_EQ(walk_blocks_to_boolean<is_true>(src.sealed(), dst.column(), uint16_t(rows)), 0);
        EXPECT_TRUE(dst.holds(expected));
    }
}

// Stops at row `failing`; what has been converted by then, and which flags have been written.
struct stopped_walk {
    const uint32_t rows = 9, failing = 5;
    std::vector<uint32_t> converted;

    int32_t run(const bdta3_col *src, bdta3_col *dst)
    {
        return walk_copying_flags_ahead(src, dst, uint16_t(rows), stop{}, [&](uint32_t, uint32_t i) {
            converted.push_back(i);
            return i == failing ? -77 : 0;
        });
    }
};

TEST(row_walks, flags_copied_ahead_stand_behind_a_stop_without_a_selection)
{
    for (const setup &how : all_setups()) {
        SCOPED_TRACE(describe(how));
        stopped_walk walk;
        source_column src(sizeof(int32_t), walk.rows, how);
        target_column dst(sizeof(int32_t), walk.rows, how.edge);
        target_image expected = dst.image();
        for (uint32_t i = 0; i < walk.rows; i++) {
            src.set(i, flag_of(i), int32_t(i));
            if (how.selected == selection::none || i <= walk.failing)
                expected.flags[i] = flag_of(i);
        }

        EXPECT_EQ(walk.run(src.sealed(), dst.column()), -77);
        EXPECT_EQ(walk.converted, (std::vector<uint32_t>{1, 2, 4, 5}))
            << "present rows up to the failing one, in order";
        EXPECT_TRUE(dst.holds(expected));
    }
}

} // namespace

} // namespace bcast::test
