#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <utility>
#include <vector>

#include <embedded/base/arena.h>

namespace bcast::test {

namespace {

struct arena_owner {
    embedded::arena arena = {};

    arena_owner() = default;
    ~arena_owner() { embedded::arena_free(arena); }
    arena_owner(const arena_owner &) = delete;
    arena_owner &operator=(const arena_owner &) = delete;

    size_t blocks() const
    {
        size_t count = 0;
        for (const embedded::arena_block *block = arena.first; block != nullptr; block = block->next)
            count++;
        return count;
    }
};

} // namespace

TEST(arena, pieces_do_not_overlap)
{
    arena_owner owner;
    std::vector<std::pair<unsigned char *, size_t>> pieces;
    for (size_t i = 0; i < 3000; i++) {
        const size_t size = 1 + i % 97;
        auto *piece = reinterpret_cast<unsigned char *>(embedded::arena_take(owner.arena, size));
        ASSERT_NE(piece, nullptr);
        std::memset(piece, static_cast<int>(i % 251), size);
        pieces.emplace_back(piece, size);
    }
    for (size_t i = 0; i < pieces.size(); i++) {
        for (size_t k = 0; k < pieces[i].second; k++)
            ASSERT_EQ(pieces[i].first[k], i % 251) << "piece " << i << ", byte " << k;
    }
}

TEST(arena, grows_by_doubling)
{
    arena_owner owner;
    size_t total = 0;
    for (int i = 0; i < 100000; i++) {
        ASSERT_NE(embedded::arena_take(owner.arena, 100), nullptr);
        if (owner.arena.total != total) {
            if (total != 0) {
                EXPECT_EQ(owner.arena.total, 2 * total);
            }
            total = owner.arena.total;
        }
    }
    EXPECT_GE(total, 100u * 100000);
    EXPECT_LE(owner.blocks(), 13u);
}

TEST(arena, a_piece_larger_than_the_next_block_gets_its_own)
{
    arena_owner owner;
    ASSERT_NE(embedded::arena_take(owner.arena, 10), nullptr);
    char *large = embedded::arena_take(owner.arena, 10000000);
    ASSERT_NE(large, nullptr);
    std::memset(large, 1, 10000000);
    EXPECT_EQ(owner.blocks(), 2u);
}

TEST(arena, emptied_it_hands_out_the_same_memory_again)
{
    arena_owner owner;
    std::vector<char *> first, second;
    for (int i = 0; i < 5000; i++)
        first.push_back(embedded::arena_take(owner.arena, 64));
    const size_t total = owner.arena.total;
    embedded::arena_empty(owner.arena);
    for (int i = 0; i < 5000; i++)
        second.push_back(embedded::arena_take(owner.arena, 64));
    EXPECT_EQ(first, second);
    EXPECT_EQ(owner.arena.total, total);
}

TEST(arena, a_block_that_is_too_small_is_passed_over_after_emptying)
{
    arena_owner owner;
    ASSERT_NE(embedded::arena_take(owner.arena, 1000), nullptr);
    char *large = embedded::arena_take(owner.arena, 50000);
    ASSERT_NE(large, nullptr);
    embedded::arena_empty(owner.arena);
    EXPECT_EQ(embedded::arena_take(owner.arena, 50000), large);
    EXPECT_EQ(owner.blocks(), 2u);
}

TEST(arena, does_not_grow_from_one_filling_to_the_next)
{
    arena_owner owner;
    size_t total = 0;
    for (size_t filling = 0; filling < 50; filling++) {
        embedded::arena_empty(owner.arena);
        for (size_t i = 0; i < 300; i++)
            ASSERT_NE(embedded::arena_take(owner.arena, 1 + (i * 7919 + filling * 104729) % 3000), nullptr);
        if (filling == 9)
            total = owner.arena.total;
    }
    EXPECT_EQ(owner.arena.total, total);
}

TEST(arena, pieces_of_whole_sixteens_are_aligned)
{
    arena_owner owner;
    for (size_t i = 0; i < 1000; i++) {
        const char *piece = embedded::arena_take(owner.arena, 16 + 16 * (i % 40));
        ASSERT_EQ(reinterpret_cast<uintptr_t>(piece) % 16, 0u) << "piece " << i;
    }
}

TEST(arena, every_piece_may_be_overwritten_to_the_slack)
{
    arena_owner owner;
    for (int i = 0; i < 10000; i++)
        std::memset(embedded::arena_take(owner.arena, 1), 0, embedded::arena_slack);
}

TEST(arena, a_size_beyond_all_memory_gives_null_and_changes_nothing)
{
    arena_owner owner;
    ASSERT_NE(embedded::arena_take(owner.arena, 10), nullptr);
    const char *at = owner.arena.at;
    EXPECT_EQ(embedded::arena_take(owner.arena, SIZE_MAX), nullptr);
    EXPECT_EQ(embedded::arena_take(owner.arena, SIZE_MAX / 4), nullptr);
    EXPECT_EQ(owner.arena.at, at);
    EXPECT_EQ(owner.blocks(), 1u);
}

TEST(arena, emptying_one_that_was_never_used_is_harmless)
{
    arena_owner owner;
    embedded::arena_empty(owner.arena);
    EXPECT_NE(embedded::arena_take(owner.arena, 1), nullptr);
}

} // namespace bcast::test
