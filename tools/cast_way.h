// Which casts of the catalogue lead from one type to another.
#pragma once

#include "types.h"

#include <string_view>
#include <vector>

namespace bcast::tool {

// Casts, one after the other, and the types of the values at both ends.
struct way {
    std::vector<std::string_view> casts;
    bcast_type source;
    bcast_type target;
};

// One cast of the library; from characters to boolean and to a type with a time those that lead there from text. A
// tool_error says what there is instead.
way way_between(const type_name &from, const type_name &to);

// One cast that cuts what is longer than the target.
way cutting_way_between(const type_name &from, const type_name &to);

} // namespace bcast::tool
