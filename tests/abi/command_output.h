// What a program of the build's tool chain prints.
#pragma once

#include <sstream>
#include <string>

namespace bcast::test {

// Throws if the command fails.
std::istringstream output_of(const std::string &command);

} // namespace bcast::test
