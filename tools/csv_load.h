// bcast csv: loads columns of a CSV file as columns of SQL types.
#pragma once

#include "date_reading.h"

#include <string>
#include <vector>

namespace bcast::tool {

struct csv_load_options {
    std::string file;                 // "-": standard input
    std::vector<std::string> columns; // NAME:TYPE
    bool cut = false;                 // texts that are longer than their type
    date_options dates = {};          // how they are read
    std::string output = "-";         // "-": standard output
    std::string errors = "-";         // "-": standard error
};

// Returns the exit status: 0, or 1 when fields failed. What else goes wrong is a tool_error; the records in front of an
// error in the input are loaded and written all the same.
int load_csv(const csv_load_options &options);

} // namespace bcast::tool
