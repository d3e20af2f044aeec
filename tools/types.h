// The SQL types that the tool knows, how they are declared, and the casts that lead from text to them.
#pragma once

#include "date_reading.h"
#include "loaded_cast.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bcast::tool {

// A type as the command line has it: "int", "char(5)", "dec(10,2)", "interval day(3) to second".
struct type_name {
    std::string word;                       // in small letters; of an interval ivym or ivdt
    std::vector<std::int32_t> numbers = {}; // in brackets behind it
    std::string interval = {};              // an interval as it is written
    std::uint16_t iv_word = 0;              // and its shape, as the casts have it
};

// A word and the numbers behind it, in brackets; a tool_error says what is wrong.
type_name split_type(std::string_view text);

// Of what may stand where a type is expected; a tool_error says what is wrong.
type_name parse_type(std::string_view text);

// As parse_type takes it.
std::string described(const type_name &name);

// A type as a column is declared.
struct declared_type {
    bcast_type type;
    std::int32_t length = 0; // of characters and binary values in bytes, of a dec its digits; 0: not declared
    std::int32_t prec = 0;   // of a dec: those of its digits that stand behind the point
    std::uint16_t scale = 0; // of a type with a time its fraction digits, of an interval its shape
};

// The most digits of a fraction of a second, and as many as are read of a text.
inline constexpr std::uint16_t most_fraction_digits = 6;

// The longest binary value: as much as the casts show as text.
inline constexpr std::int32_t longest_binary = 32767;

// Whether the tool can make values of a type from text, and show them.
bool is_known(bcast_type type);

// "tinyint, smallint, int, ..., dec(p,s), char(n), ..."
std::string known_types();

bool is_character(bcast_type type);

// A date or a time, or both.
bool is_temporal(bcast_type type);

// The type with what is declared behind its name. A tool_error says what cannot be declared.
declared_type declare(bcast_type type, const type_name &name);

// A tool_error where the type needs a length to be made, and has none.
void require_length(const declared_type &type, const type_name &name);

// The type of a column of a file; a tool_error says what is wrong and which types there are.
declared_type column_type(const type_name &name);

// What becomes of a text that is longer than its type.
enum class too_long { fails, is_cut };

// Whether there is a cast from text that cuts, and the types for which there is one.
bool can_cut(bcast_type type);
std::string types_that_cut();

// Whether the type has a length, be it declared or not.
bool has_length(bcast_type type);

// The length argument of a cast, where it takes one. A length that is not declared is the longest.
std::int32_t length_argument(const declared_type &source, const declared_type &target);

// What casts on the way from source to target are told.
cast_arguments arguments_between(const declared_type &source, const declared_type &target,
                                 const date_reading &reading = {});

// The casts, one after the other, by name, that lead from a varchar column to a type. On a row they may fail, but never
// at the cost of another row. Characters of no declared length are texts as they are: no cast leads there.
std::vector<std::string_view> casts_from_text(const declared_type &type, too_long rule);

// Those that show a number, a date, a time or an interval as a varchar or a text, and fail on no value that a cast has
// made. None for other types.
std::vector<std::string_view> casts_to_text(bcast_type type);

// Casts, one after the other, with the columns that they write.
class road {
public:
    road(const declared_type &source, std::span<const std::string_view> casts, const declared_type &target,
         const date_reading &reading = {});

    // Takes the first rows rows of source to the end of the road. Rows that fail on the way get their code in failed
    // and are null there. The result belongs to the road, or is source where the road has no casts.
    column &run(pool &memory, column &source, std::uint16_t rows, failures &failed);

private:
    struct leg {
        loaded_cast cast;
        cast_arguments arguments;
        column target;
    };
    std::vector<leg> legs_;
};

} // namespace bcast::tool
