// Rows of embedded columns, looked at and changed in place.
#pragma once

#include <bcast/embedded.hpp>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace bcast::tool {

// Not whether a boolean is null: that stands in its element.
inline bool is_present(column &of, std::uint32_t row) { return of.vector()->data->flags[row] != 0; }

inline const bdta3_str &string_element(column &of, std::uint32_t row)
{
    return static_cast<const bdta3_str *>(of.vector()->data->values)[row];
}

// The bytes that a row of a string column holds, be it null or not.
inline std::string_view stored_text(column &of, std::uint32_t row)
{
    const bdta3_str &element = string_element(of, row);
    return {element.text, std::size_t(element.length)};
}

inline void make_null(column &of, std::uint32_t row)
{
    of.vector()->no_null = 0;
    of.vector()->data->flags[row] = 0;
}

} // namespace bcast::tool
