// The values of a column as texts.
#pragma once

#include "types.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace bcast::tool {

// Numbers, dates, times and intervals as casts show them, a dec with the digits that are declared; a boolean as 0 or 1;
// binary values and blobs as hexadecimal digits; characters as they are, with the blanks that they only count.
class shown_values {
public:
    explicit shown_values(const declared_type &type);

    // Gets ready to show the first rows rows, while values stay as they are. What follows tells of these.
    void take(pool &memory, column &values, std::uint16_t rows, failures &failed);

    bool is_null(std::uint32_t row);

    // Empty for a null. Valid until the next call.
    std::string_view text(std::uint32_t row);

private:
    std::string_view with_blanks(std::string_view text, std::size_t blanks);
    std::string_view digits_of(std::string_view bytes);

    bool is_boolean_;
    bool is_binary_;
    road to_text_;
    column *texts_ = nullptr; // or of what texts are made
    std::string made_;
};

} // namespace bcast::tool
