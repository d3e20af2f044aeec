// Loads of CSV files by the built tool, with all that they write.
#pragma once

#include "process.h"

#include <string>
#include <string_view>
#include <vector>

namespace bcast::test {

struct loaded {
    run_result run;
    std::string table;
    std::string failures;
};

// Loads a file, or a text as a file, with these columns and options.
loaded load_file(const std::string &file, const std::vector<std::string> &columns,
                 const std::vector<std::string> &options = {});
loaded load(std::string_view text, const std::vector<std::string> &columns,
            const std::vector<std::string> &options = {});

inline const std::string no_failures = "row,column,text,code,name\n";

} // namespace bcast::test
