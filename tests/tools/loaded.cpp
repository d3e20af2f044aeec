#include "loaded.h"

namespace bcast::test {

loaded load_file(const std::string &file, const std::vector<std::string> &columns,
                 const std::vector<std::string> &options)
{
    const temporary_directory directory;
    std::vector<std::string> arguments = {"csv", file};
    for (const std::string &column : columns)
        arguments.insert(arguments.end(), {"--column", column});
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.insert(arguments.end(),
                     {"--output", directory.path("table.csv"), "--errors", directory.path("failures.csv")});
    loaded result = {run_bcast(arguments), {}, {}};
    result.table = content_of(directory.path("table.csv"));
    result.failures = content_of(directory.path("failures.csv"));
    return result;
}

loaded load(std::string_view text, const std::vector<std::string> &columns, const std::vector<std::string> &options)
{
    const temporary_directory directory;
    return load_file(directory.write("input.csv", text), columns, options);
}

} // namespace bcast::test
