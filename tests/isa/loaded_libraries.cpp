// Ahead of a program of tests: are the libraries that it has loaded those that it is meant to test? They are in the
// folder that BCAST_LIBRARY_FOLDER names in the environment, or else in the one that the program was linked with. If
// not, the program ends here: a test that is skipped does not fail.

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <vector>

#include <link.h>

namespace {

using std::filesystem::path;

std::vector<path> loaded_libraries()
{
    std::vector<path> files;
    dl_iterate_phdr(
        [](dl_phdr_info *object, size_t, void *all) {
            const path file = object->dlpi_name;
            if (file.filename().string().starts_with("libbcast"))
                static_cast<std::vector<path> *>(all)->push_back(file);
            return 0;
        },
        &files);
    return files;
}

bool is_in(const path &file, const path &folder)
{
    std::error_code failed;
    return std::filesystem::equivalent(file.parent_path(), folder, failed) && !failed;
}

bool are_those_meant()
{
    const char *told = std::getenv("BCAST_LIBRARY_FOLDER");
    const path folder = told ? told : BCAST_LIBRARY_FOLDER;
    const std::vector<path> files = loaded_libraries();
    if (files.empty())
        std::cerr << "No library to test is loaded.\n";
    for (const path &file : files) {
        if (!is_in(file, folder)) {
            std::cerr << file << " is loaded, but the libraries to test are those in " << folder << ".\n";
            return false;
        }
    }
    return !files.empty();
}

bool check()
{
    if (!are_those_meant())
        std::exit(EXIT_FAILURE);
    return true;
}

[[maybe_unused]] const bool checked = check();

} // namespace
