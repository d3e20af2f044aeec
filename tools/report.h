// What a load tells about its columns: every field that failed, and the sums.
#pragma once

#include "files.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace bcast::tool {

// "-6102 ERR_OVERFLOW"; of a code that the library does not define, the number.
std::string code_and_name(std::int32_t code);

// "error -6102 ERR_OVERFLOW: numeric value does not fit the target"
std::string described(std::int32_t code);

// Failed fields as records of a CSV file: row, column, text, code, name.
class failure_list {
public:
    // header_at_once: the header is written even if no field fails.
    failure_list(output_file &file, bool header_at_once);
    void add(std::uint64_t row, std::string_view column, std::string_view text, std::int32_t code);

private:
    void write_header();

    output_file &file_;
    bool has_header_ = false;
};

struct column_sums {
    std::string column;
    std::string type;
    std::uint64_t rows = 0;
    std::uint64_t nulls = 0;
    std::map<std::int32_t, std::uint64_t> failures = {}; // by code

    std::uint64_t failed() const;
};

// A table with a line for each column, and below it one for each code that it failed with.
std::string summary(const std::vector<column_sums> &columns);

} // namespace bcast::tool
