// The library in a program that has no services: it loads, and a cast that needs none runs.

#include <bcast/bcast.h>

#include <gtest/gtest.h>

#include <dlfcn.h>

namespace bcast::test {
namespace {

TEST(load, casts_without_services_run_where_there_are_none)
{
    ASSERT_EQ(dlsym(RTLD_DEFAULT, "str_from_int"), nullptr) << "this program is not to have services";
    void *library = dlopen(BCAST_LIBRARY_FILE, RTLD_LAZY | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto cast = reinterpret_cast<bcast_plain_fn *>(dlsym(library, "bcast_int_to_int64"));
    const auto narrow = reinterpret_cast<bcast_plain_fn *>(dlsym(library, "bcast_int_to_tinyint"));
    ASSERT_TRUE(cast && narrow) << dlerror();

    int32_t from[] = {1, -2, 300};
    int64_t to[] = {0, 0, 0};
    uint8_t from_flags[] = {1, 1, 1}, to_flags[] = {0, 0, 0};
    bdta3_col_data from_data{}, to_data{};
    from_data.flags = from_flags;
    from_data.values = from;
    to_data.flags = to_flags;
    to_data.values = to;
    bdta3_col source{}, target{};
    source.data = &from_data;
    target.data = &to_data;
    EXPECT_EQ(cast(nullptr, nullptr, &source, &target, 3), 0);
    EXPECT_EQ(to[0], 1);
    EXPECT_EQ(to[1], -2);
    EXPECT_EQ(to[2], 300);
    EXPECT_EQ(narrow(nullptr, nullptr, &source, &target, 3), ERR_OVERFLOW);
    EXPECT_EQ(dlclose(library), 0);
}

} // namespace
} // namespace bcast::test
