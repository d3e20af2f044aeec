// Single values through bcast cast, and what is to come of them.
#pragma once

#include "process.h"

#include <cstdint>
#include <string>
#include <vector>

namespace bcast::test {

struct trial {
    std::string from;
    std::string to;
    std::string value;
    std::string result = {};
    std::int32_t code = 0; // of the cast, or 0
};

// What the tool says of a code.
std::string told(std::int32_t code);

void expect_all(const std::vector<trial> &trials, const std::vector<std::string> &options = {});

} // namespace bcast::test
