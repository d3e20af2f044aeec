// RFC 4180 read byte by byte from a whole text: slow, and written without a look at the reader that it checks.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace bcast::test {

struct plain_record {
    std::uint64_t line; // in which it begins
    std::vector<std::string> fields;

    bool operator==(const plain_record &) const = default;
};

struct plain_csv {
    std::vector<plain_record> records;
    std::uint64_t error_line = 0; // 0: no error
    enum class error { none, behind_quote, no_closing_quote } what = error::none;
};

// empty_lines_count: an empty line is a record of one empty field, else it is none.
plain_csv read_plainly(std::string_view text, bool empty_lines_count);

} // namespace bcast::test
