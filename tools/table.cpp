#include "table.h"

#include <algorithm>
#include <cstddef>

namespace bcast::tool {

namespace {

// Characters of UTF-8 text.
std::size_t width_of(const std::string &text)
{
    return std::size_t(std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
}

} // namespace

std::string aligned(const std::vector<std::vector<std::string>> &lines, const std::vector<align> &columns)
{
    std::vector<std::size_t> widths(columns.size());
    for (const auto &line : lines)
        for (std::size_t k = 0; k < line.size(); k++)
            widths[k] = std::max(widths[k], width_of(line[k]));

    std::string result;
    for (const auto &line : lines) {
        for (std::size_t k = 0; k < line.size(); k++) {
            const std::string blanks(widths[k] - width_of(line[k]), ' ');
            const bool last = k + 1 == line.size();
            if (columns[k] == align::right)
                result += blanks + line[k];
            else
                result += last ? line[k] : line[k] + blanks;
            result += last ? "\n" : "  ";
        }
    }
    return result;
}

} // namespace bcast::tool
