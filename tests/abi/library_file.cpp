#include "tests/abi/library_file.h"

#include <array>
#include <cstdio>
#include <sstream>
#include <stdexcept>

namespace bcast::test {

namespace {

// Runs a program of the build's tool chain on the library.
std::istringstream output_of(const std::string &command)
{
    FILE *pipe = popen((command + " '" BCAST_LIBRARY_FILE "'").c_str(), "r");
    if (!pipe)
        throw std::runtime_error("cannot start " + command);
    std::string text;
    std::array<char, 4096> part;
    while (const size_t got = fread(part.data(), 1, part.size(), pipe))
        text.append(part.data(), got);
    if (pclose(pipe) != 0)
        throw std::runtime_error(command + " failed on " BCAST_LIBRARY_FILE);
    return std::istringstream(text);
}

std::vector<symbol> symbols(const std::string &which)
{
    std::istringstream lines = output_of(BCAST_NM " --dynamic --format=posix " + which);
    std::vector<symbol> all;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string name;
        symbol one{};
        words >> name >> one.kind;
        one.name = name.substr(0, name.find('@'));
        all.push_back(one);
    }
    return all;
}

} // namespace

std::vector<symbol> exported_symbols() { return symbols("--defined-only"); }
std::vector<symbol> undefined_symbols() { return symbols("--undefined-only"); }

std::vector<std::string> writable_data()
{
    std::istringstream lines = output_of(BCAST_NM " --defined-only --format=sysv");
    std::vector<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        const std::string section = line.substr(line.rfind('|') + 1);
        if (section == ".bss" || section == ".data" || section == ".tbss" || section == ".tdata")
            names.push_back(line.substr(0, line.find_first_of(" |")));
    }
    return names;
}

std::vector<std::string> dynamic_entries(const std::string &tag)
{
    std::istringstream lines = output_of(BCAST_READELF " --dynamic --wide");
    std::vector<std::string> values;
    for (std::string line; std::getline(lines, line);) {
        const size_t open = line.find('['), close = line.find(']');
        if (line.find('(' + tag + ')') != std::string::npos && open != std::string::npos)
            values.push_back(line.substr(open + 1, close - open - 1));
    }
    return values;
}

} // namespace bcast::test
