// How texts become dates and times.
#pragma once

#include <bcast/embedded.h>

#include <cstdint>
#include <string>

namespace bcast::tool {

// As the casts have it.
struct date_reading {
    std::uint16_t order = BCAST_YEAR_FIRST;
    std::int16_t local_zone = 0; // in minutes east of Greenwich
};

// As the command line has it.
struct date_options {
    std::string order = "ymd";
    std::string local_zone = "+00:00";
};

// A tool_error says which option is wrong, and what it takes.
date_reading parse_date_options(const date_options &options);

} // namespace bcast::tool
