#include "tests/abi/library_file.h"

#include "tests/abi/command_output.h"

#include <sstream>

namespace bcast::test {

namespace {

constexpr char of_library[] = " '" BCAST_LIBRARY_FILE "'";

std::vector<symbol> symbols(const std::string &which)
{
    std::istringstream lines = output_of(BCAST_NM " --dynamic --format=posix " + which + of_library);
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
    std::istringstream lines = output_of(std::string(BCAST_NM " --defined-only --format=sysv") + of_library);
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
    std::istringstream lines = output_of(std::string(BCAST_READELF " --dynamic --wide") + of_library);
    std::vector<std::string> values;
    for (std::string line; std::getline(lines, line);) {
        const size_t open = line.find('['), close = line.find(']');
        if (line.find('(' + tag + ')') != std::string::npos && open != std::string::npos)
            values.push_back(line.substr(open + 1, close - open - 1));
    }
    return values;
}

} // namespace bcast::test
