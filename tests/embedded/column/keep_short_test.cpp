#include "tests/support/guarded.h"
#include "tests/support/levels.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include <embedded/column/keep_bytes.h>

namespace bcast::test {

template <class Level> class keep_short : public level_test<Level> {
protected:
    // Makes the column's arena have so many bytes left.
    void leave(size_t left)
    {
        column_.bytes.at = memory_.get();
        column_.bytes.end = memory_.get() + left;
    }

    static constexpr size_t room_max = 100000;
    static constexpr size_t longest = 4 * machine::short_copies<Level::value>::copy_max;
    bcast_column column_{};
    std::unique_ptr<char[]> memory_{new char[room_max + embedded::arena_slack]};
};

TYPED_TEST_SUITE(keep_short, all_levels, level_names);

TYPED_TEST(keep_short, copies_bytes_of_every_length_one_behind_the_other)
{
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        this->leave(this->room_max);
        std::vector<const char *> copies;
        std::vector<std::string> values;
        for (size_t size = 0; size <= this->longest; size++) {
            guarded<char> bytes(size, edge);
            for (size_t k = 0; k < size; k++)
                bytes[k] = static_cast<char>(k * 37 + size);
            bytes.make_read_only();
            const char *at = this->column_.bytes.at;
            const char *copy = embedded::keep_short<TypeParam::value>(this->column_, bytes.data(), size);
            ASSERT_EQ(copy, at) << "size " << size;
            ASSERT_EQ(this->column_.bytes.at, at + size + 1) << "size " << size;
            copies.push_back(copy);
            values.emplace_back(bytes.begin(), bytes.end());
        }
        for (size_t size = 0; size < values.size(); size++)
            ASSERT_EQ(std::string(copies[size], size + 1), values[size] + '\0') << "size " << size;
    }
}

TYPED_TEST(keep_short, leaves_what_is_long_and_what_has_no_room)
{
    const std::string bytes(1000, 'x');
    for (size_t left = 0; left <= 200; left++) {
        for (size_t size = 0; size <= 200; size++) {
            this->leave(left);
            const char *copy = embedded::keep_short<TypeParam::value>(this->column_, bytes.data(), size);
            const bool kept = size <= this->longest && size < left;
            ASSERT_EQ(copy != nullptr, kept) << size << " bytes where " << left << " are left";
            if (!kept) {
                ASSERT_EQ(this->column_.bytes.at, this->memory_.get());
            }
        }
    }
    this->leave(this->room_max);
    for (const size_t size : {SIZE_MAX, SIZE_MAX - 4, SIZE_MAX / 2})
        EXPECT_EQ(embedded::keep_short<TypeParam::value>(this->column_, bytes.data(), size), nullptr) << size;
}

} // namespace bcast::test
