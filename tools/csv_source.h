// The records of a CSV file.
#pragma once

#include "csv_reader.h"
#include "errors.h"
#include "files.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace bcast::tool {

// Something wrong with the input. Records in front of it may have been read.
struct input_error : tool_error {
    using tool_error::tool_error;
};

class csv_source {
public:
    explicit csv_source(const std::string &path); // "-": standard input

    // The fields of the first record. Not more than 65535, and of not more than 16 MiB together.
    std::vector<std::string> read_header();

    // As the reader's, but that bytes come from the file, and an error names it.
    csv_reader::event next();

    csv_reader &reader() { return reader_; }
    const input_file &file() const { return file_; }
    std::uint64_t bytes() const { return bytes_; } // read so far

private:
    void fill();

    input_file file_;
    csv_reader reader_;
    std::vector<char> buffer_;
    std::uint64_t bytes_ = 0;
    bool ended_ = false;
};

} // namespace bcast::tool
