// bcast compare: what a literal becomes in a comparison with an integer column.
#pragma once

#include <string>

namespace bcast::tool {

struct compare_options {
    std::string op; // <, <=, =, <> (or !=), >=, >
    std::string literal;
    std::string type = "int64"; // of the column; int or int64
};

// Returns the exit status: 0, or 1 when the literal is no number. What else goes wrong is a tool_error.
int compare_literal(const compare_options &options);

} // namespace bcast::tool
