// Typed tests of the code for each level by itself, whatever the best level of the processor is.
#pragma once

#include "machine/level.h"

#include <gtest/gtest.h>

#include <string>

namespace bcast::test {

template <machine::level level> struct at_level {
    static constexpr machine::level value = level;
};

using all_levels =
    testing::Types<at_level<machine::level::any>, at_level<machine::level::avx2>, at_level<machine::level::avx512>>;

struct level_names {
    template <class Level> static std::string GetName(int)
    {
        return Level::value == machine::level::any ? "any" : Level::value == machine::level::avx2 ? "avx2" : "avx512";
    }
};

// The fixture that these tests derive theirs from.
template <class Level> class level_test : public testing::Test {
protected:
    static constexpr machine::level level = Level::value;

    void SetUp() override
    {
        if (!machine::has(level))
            GTEST_SKIP() << "not tested here: the code for " << machine::name_of(level)
                         << ", which this processor, or this build, does not have";
    }
};

} // namespace bcast::test
