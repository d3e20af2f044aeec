// The SQL types that the tool knows, and the casts that lead from text to them and back.
#pragma once

#include "loaded_cast.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bcast::tool {

// The longest length that a type can be declared with: as much as the casts read of a char.
inline constexpr std::int32_t longest_declared = 65535;

// A type as the command line has it: "int", "char(5)".
struct type_name {
    std::string word; // in small letters
    std::optional<std::int32_t> length;
};

// Of what may stand where a type is expected; a tool_error says what is wrong.
type_name parse_type(std::string_view text);

// A type that a column of a file can have. A road is casts, one after the other, by name.
struct column_type {
    struct step {
        std::string_view cast;
        std::int32_t length = 0; // of the step's target, where the cast takes one
    };
    bcast_type type;
    std::vector<step> from_text; // begins at a varchar column, and may fail on a row; such casts capture
    std::vector<step> to_text;   // ends at a varchar column, and fails on no value of the type
};

std::span<const column_type> column_types();

// "tinyint, smallint, int, ..."
std::string column_type_names();

// The one that text names; a tool_error says what is wrong and which there are.
const column_type &parse_column_type(std::string_view text);

// Or null.
const column_type *find_column_type(bcast_type type);

// A road with its casts and the columns that they write.
class road {
public:
    explicit road(std::span<const column_type::step> steps);

    // Takes the first rows rows of source to the end of the road. Rows that fail on the way get their code in failed
    // and are null there. The result belongs to the road, or is source where the road has no steps.
    column &run(pool &memory, column &source, std::uint16_t rows, failures &failed);

private:
    struct leg {
        loaded_cast cast;
        std::int32_t length;
        column target;
    };
    std::vector<leg> legs_;
};

} // namespace bcast::tool
