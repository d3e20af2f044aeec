// Interval types by the names that SQL has for them.
#pragma once

#include "types.h"

#include <optional>
#include <string_view>

namespace bcast::tool {

// Of a text in small letters: "interval day(3) to second", or ivym or ivdt, which are short for year to month and day
// to second. Nothing where it names no interval; a tool_error says what is wrong.
std::optional<type_name> parse_interval(std::string_view text);

} // namespace bcast::tool
