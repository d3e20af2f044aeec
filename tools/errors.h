// What ends a command with exit status 2.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace bcast::tool {

// Wrong usage, or something that cannot be read or written. The message says what and where.
struct tool_error : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Text for a message: in double quotes, what would spoil a line escaped, a long one cut.
std::string in_quotes(std::string_view text);

// Text as it is where it can stand in a line, else in quotes.
std::string plain_or_in_quotes(std::string_view text);

} // namespace bcast::tool
