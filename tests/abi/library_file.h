// What binutils say about the built library.
#pragma once

#include <string>
#include <vector>

namespace bcast::test {

// A line of nm -D: "T bcast_int_to_char".
struct symbol {
    char kind;
    std::string name; // without its version
};

std::vector<symbol> exported_symbols();
std::vector<symbol> undefined_symbols();

// The names of what stands in writable sections, by the whole symbol table.
std::vector<std::string> writable_data();

// The values of one tag of the dynamic section: "NEEDED" gives "libc.so.6".
std::vector<std::string> dynamic_entries(const std::string &tag);

} // namespace bcast::test
