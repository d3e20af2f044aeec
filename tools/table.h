// Tables for people to read.
#pragma once

#include <string>
#include <vector>

namespace bcast::tool {

enum class align { left, right };

// Lines of cells, in columns as wide as their widest cell, two blanks between them.
std::string aligned(const std::vector<std::vector<std::string>> &lines, const std::vector<align> &columns);

} // namespace bcast::tool
