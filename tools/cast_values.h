// bcast cast: tries single values.
#pragma once

#include "date_reading.h"

#include <string>
#include <vector>

namespace bcast::tool {

struct cast_options {
    std::string from;
    std::string to;
    std::vector<std::string> values;
    bool cut = false;        // texts and bytes that are longer than the target
    date_options dates = {}; // how they are read
};

// Returns the exit status: 0, or 1 when a value failed. What else goes wrong is a tool_error.
int cast_values(const cast_options &options);

} // namespace bcast::tool
