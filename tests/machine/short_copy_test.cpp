#include "machine/short_copy.h"
#include "machine/short_store.h"
#include "tests/support/guarded.h"
#include "tests/support/levels.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace bcast::test {

template <class Level> class short_copy : public level_test<Level> {
protected:
    using copies = machine::short_copies<Level::value>;

    // With bytes none of which is 0.
    static void fill(guarded<char> &bytes)
    {
        for (size_t k = 0; k < bytes.size(); k++)
            bytes[k] = static_cast<char>(1 + (k * 37 + bytes.size()) % 255);
        bytes.make_read_only();
    }
};
TYPED_TEST_SUITE(short_copy, all_levels, level_names);

TYPED_TEST(short_copy, copy_moves_the_bytes_and_reads_none_around_them)
{
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        for (size_t size = 0; size <= TestFixture::copies::copy_max; size++) {
            guarded<char> from(size, edge);
            TestFixture::fill(from);
            guarded<char> to(TestFixture::copies::copy_max, edge);
            TestFixture::copies::copy(to.data(), from.data(), size);
            ASSERT_EQ(std::string(to.data(), size), std::string(from.data(), size)) << "size " << size;
            ASSERT_TRUE(to.slack_untouched()) << "size " << size;
        }
    }
}

TYPED_TEST(short_copy, copy_blocks_moves_the_bytes_and_reads_none_around_them)
{
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        for (size_t size = 0; size <= TestFixture::copies::copy_blocks_max; size++) {
            guarded<char> from(size, edge);
            TestFixture::fill(from);
            guarded<char> to(TestFixture::copies::copy_blocks_max, edge);
            TestFixture::copies::copy_blocks(to.data(), from.data(), size);
            ASSERT_EQ(std::string(to.data(), size), std::string(from.data(), size)) << "size " << size;
            ASSERT_TRUE(to.slack_untouched()) << "size " << size;
        }
    }
}

// A level fills all of the sizes or none.
TYPED_TEST(short_copy, copy_filled_puts_zeros_behind_the_bytes)
{
    constexpr uint32_t all = TestFixture::copies::filled_size;
    const bool fills = TestFixture::copies::fills(1);
    EXPECT_EQ(fills, TestFixture::level == machine::level::avx512);
    EXPECT_FALSE(TestFixture::copies::fills(0));
    EXPECT_FALSE(TestFixture::copies::fills(all + 1));
    for (uint32_t size = 1; size <= all; size++)
        ASSERT_EQ(TestFixture::copies::fills(size), fills) << size;
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        for (uint32_t size = 0; fills && size <= all; size++) {
            guarded<char> from(size, edge);
            TestFixture::fill(from);
            guarded<char> to(all, edge);
            std::memset(to.data(), 'x', all);
            TestFixture::copies::copy_filled(to.data(), from.data(), size);
            std::string expected(from.data(), size);
            expected.resize(all);
            ASSERT_EQ(std::string(to.data(), all), expected) << "size " << size;
            ASSERT_TRUE(to.slack_untouched()) << "size " << size;
        }
    }
}

TYPED_TEST(short_copy, a_stored_text_is_three_words_and_zeros)
{
    const std::string text = "the first word, and more";
    uint64_t words[3];
    std::memcpy(words, text.data(), sizeof words);
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        guarded<char> to(machine::short_store_size, edge);
        std::memset(to.data(), 'x', machine::short_store_size);
        machine::short_stores<TypeParam::value>::store(to.data(), words[0], words[1], words[2]);
        ASSERT_EQ(std::string(to.data(), machine::short_store_size), text + std::string(8, '\0'));
        ASSERT_TRUE(to.slack_untouched());
    }
}

} // namespace bcast::test
