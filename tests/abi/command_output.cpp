#include "tests/abi/command_output.h"

#include <array>
#include <cstdio>
#include <stdexcept>

namespace bcast::test {

std::istringstream output_of(const std::string &command)
{
    FILE *pipe = popen(command.c_str(), "r");
    if (!pipe)
        throw std::runtime_error("cannot start " + command);
    std::string text;
    std::array<char, 65536> part;
    while (const size_t got = fread(part.data(), 1, part.size(), pipe))
        text.append(part.data(), got);
    if (pclose(pipe) != 0)
        throw std::runtime_error(command + " failed");
    return std::istringstream(text);
}

} // namespace bcast::test
