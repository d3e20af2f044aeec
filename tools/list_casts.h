// bcast list: the casts that the loaded library has.
#pragma once

#include <string>

namespace bcast::tool {

struct list_options {
    std::string from; // only casts of this source; empty: of any
    std::string to;
};

// Returns the exit status 0. What goes wrong is a tool_error.
int list_casts(const list_options &options);

} // namespace bcast::tool
