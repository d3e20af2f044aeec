// Both libraries as an engine takes them that loads them when it needs them: they work, and dlclose takes them out of
// the process again.

#include <bcast/bcast.h>
#include <bcast/embedded.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <dlfcn.h>
#include <link.h>

namespace bcast::test {
namespace {

std::vector<std::string> libraries_in_process()
{
    std::vector<std::string> files;
    dl_iterate_phdr(
        [](dl_phdr_info *object, size_t, void *all) {
            const std::string file = object->dlpi_name;
            if (file == BCAST_LIBRARY_FILE || file == BCAST_EMBEDDED_FILE)
                static_cast<std::vector<std::string> *>(all)->push_back(file);
            return 0;
        },
        &files);
    return files;
}

// A function of the library, by its name.
template <class Function> Function *find(void *library, const char *name)
{
    const auto found = reinterpret_cast<Function *>(dlsym(library, name));
    EXPECT_NE(found, nullptr) << dlerror();
    return found;
}
#define FIND(library, function) find<decltype(function)>(library, #function)

// Text to double and back, for the standard library has a part in that.
void use(void *casts, void *embedded)
{
    const auto new_pool = FIND(embedded, bcast_pool_new);
    const auto free_pool = FIND(embedded, bcast_pool_free);
    const auto new_column = FIND(embedded, bcast_column_new);
    const auto free_column = FIND(embedded, bcast_column_free);
    const auto append_texts = FIND(embedded, bcast_column_append_texts);
    const auto make_room = FIND(embedded, bcast_column_make_room);
    const auto vector_of = FIND(embedded, bcast_column_vector);
    const auto text_of = FIND(embedded, bcast_column_text);
    const auto to_double = FIND(casts, bcast_varchar_to_double);
    const auto to_varchar = FIND(casts, bcast_double_to_varchar);
    ASSERT_FALSE(testing::Test::HasFailure());

    const char *const texts[] = {" 1e3 ", "-0.25"};
    bcast_pool *pool = new_pool();
    bcast_column *source = new_column(BCAST_VARCHAR), *number = new_column(BCAST_DOUBLE);
    bcast_column *target = new_column(BCAST_VARCHAR);
    EXPECT_EQ(append_texts(source, texts, nullptr, 2), 0);
    EXPECT_EQ(make_room(number, 2), 0);
    EXPECT_EQ(make_room(target, 2), 0);
    EXPECT_EQ(to_double(nullptr, pool, vector_of(source), vector_of(number), 2, nullptr, nullptr), 0);
    EXPECT_EQ(to_varchar(nullptr, pool, vector_of(number), 20, vector_of(target), 2), 0);
    uint32_t length = 0;
    EXPECT_STREQ(text_of(target, 0, &length), "1000");
    EXPECT_STREQ(text_of(target, 1, &length), "-0.25");
    free_column(target);
    free_column(number);
    free_column(source);
    free_pool(pool);
}

TEST(unload, both_libraries_leave_the_process)
{
    void *embedded = dlopen(BCAST_EMBEDDED_FILE, RTLD_LAZY | RTLD_GLOBAL);
    ASSERT_NE(embedded, nullptr) << dlerror();
    void *casts = dlopen(BCAST_LIBRARY_FILE, RTLD_LAZY | RTLD_LOCAL);
    ASSERT_NE(casts, nullptr) << dlerror();
    EXPECT_EQ(libraries_in_process().size(), 2u);
    use(casts, embedded);
    EXPECT_EQ(dlclose(casts), 0);
    EXPECT_EQ(dlclose(embedded), 0);
    EXPECT_EQ(libraries_in_process(), std::vector<std::string>());
}

} // namespace
} // namespace bcast::test
