#include "machine/pick.h"

#include <gtest/gtest.h>

// By number: the level that a function was picked for.
template <machine::level at> ALWAYS_INLINE int level_of_body() { return int(at); }
extern "C" int level_picked_at_load(void);
PICKED_AT_LOAD(level_picked_at_load, level_of_body);

namespace bcast::test {
namespace {

using machine::level;

int best_level()
{
    return int(machine::has(level::avx512) ? level::avx512 : machine::has(level::avx2) ? level::avx2 : level::any);
}

struct level_asked {
    template <level picked> ALWAYS_INLINE static int at() { return int(picked); }
};

ALWAYS_INLINE int twice(int value) { return 2 * value; }

ALWAYS_INLINE int with_a_way_of_its_own() { return 0; }
int the_way_at_avx2() { return 1; }

// What can be called by way_of alone.
template <auto body> int at_every_level(int number)
{
    switch (level(number)) {
    case level::any:
        return machine::way_of<body, level::any>();
    case level::avx2:
        return machine::way_of<body, level::avx2>();
    case level::avx512:
        return machine::way_of<body, level::avx512>();
    }
    return -1;
}

} // namespace
} // namespace bcast::test

template <>
inline constexpr auto machine::way_of<bcast::test::with_a_way_of_its_own, machine::level::avx2> =
    bcast::test::the_way_at_avx2;

namespace bcast::test {

TEST(level, has_those_below_it)
{
    EXPECT_TRUE(machine::has(level::any));
    EXPECT_TRUE(machine::has(machine::lowest));
    EXPECT_TRUE(machine::has(level::avx2) || !machine::has(level::avx512));
}

TEST(pick, takes_the_best_level_at_load_and_at_a_call)
{
    EXPECT_EQ(level_picked_at_load(), best_level());
    EXPECT_EQ(machine::at_best_level<level_asked>(), best_level());
}

TEST(pick, hands_arguments_over) { EXPECT_EQ(machine::at_best_level<twice>(21), 42); }

TEST(pick, a_level_without_a_way_of_its_own_takes_that_of_the_one_below_it)
{
    EXPECT_EQ(at_every_level<with_a_way_of_its_own>(int(level::any)), 0);
    EXPECT_EQ(at_every_level<with_a_way_of_its_own>(int(level::avx2)), 1);
    EXPECT_EQ(at_every_level<with_a_way_of_its_own>(int(level::avx512)), 1);
}

} // namespace bcast::test
