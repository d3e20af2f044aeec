// The length of a text in a buffer: looked for in its first bytes, and only then byte by byte.

#include "src/frame/text_length.h"
#include "tests/support/guarded.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace bcast::test {

TEST(text_length, ends_at_the_first_nul_and_needs_its_room_alone)
{
    std::mt19937 random(20240801);
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        for (uint32_t length = 0; length <= 100; length++) {
            for (const uint32_t behind : {0U, 1U, 7U, 40U}) {
                guarded<char> buffer(std::max(length + 1 + behind, text_length_room), edge);
                for (char &c : buffer)
                    c = static_cast<char>(random() % 3);
                for (uint32_t k = 0; k < length; k++)
                    buffer[k] = static_cast<char>(1 + random() % 255);
                buffer[length] = '\0';
                ASSERT_EQ(text_length(buffer.data()), static_cast<int32_t>(length)) << behind << " bytes behind it";
            }
        }
    }
}

} // namespace bcast::test
