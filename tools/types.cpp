#include "types.h"

#include "errors.h"
#include "interval_type.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace bcast::tool {

namespace {

enum class parameters { none, length, shape, fraction, interval };

using cast_names = std::vector<std::string_view>;

struct known_type {
    bcast_type type;
    cast_names from_text;          // the first from varchar
    cast_names cut_from_text = {}; // what is too long
    cast_names to_text = {};       // where it is no text itself
    parameters takes = parameters::none;
    std::int32_t longest = 0; // value, in bytes, where casts are told; 0: they are not
};

// A text with a time becomes a timestamp of the local zone first. That still holds the zone of the text, at which the
// casts from datetime do not look.
//
// A new type is a row here. One that has no casts to text needs shown_values to know it.
const std::vector<known_type> &table()
{
    using enum parameters;
    static const std::vector<known_type> types = {
        {.type = BCAST_TINYINT, .from_text = {"bcast_varchar_to_tinyint"}, .to_text = {"bcast_tinyint_to_varchar"}},
        {.type = BCAST_SMALLINT, .from_text = {"bcast_varchar_to_smallint"}, .to_text = {"bcast_smallint_to_varchar"}},
        {.type = BCAST_INT, .from_text = {"bcast_varchar_to_int"}, .to_text = {"bcast_int_to_varchar"}},
        {.type = BCAST_INT64, .from_text = {"bcast_varchar_to_int64"}, .to_text = {"bcast_int64_to_varchar"}},
        {.type = BCAST_BIT, .from_text = {"bcast_varchar_to_bit"}, .to_text = {"bcast_bit_to_varchar"}},
        // Not bcast_varchar_to_boolean, which takes any text that is not empty for true.
        {.type = BCAST_BOOLEAN, .from_text = {"bcast_varchar_to_bit", "bcast_bit_to_boolean"}},
        {.type = BCAST_FLOAT, .from_text = {"bcast_varchar_to_float"}, .to_text = {"bcast_float_to_varchar"}},
        {.type = BCAST_DOUBLE, .from_text = {"bcast_varchar_to_double"}, .to_text = {"bcast_double_to_varchar"}},
        {.type = BCAST_DEC, .from_text = {"bcast_varchar_to_dec"}, .to_text = {"bcast_dec_to_varchar"}, .takes = shape},
        // The parser keeps a time that stands behind the date.
        {.type = BCAST_DATE,
         .from_text = {"bcast_char_to_date_fast", "bcast_datetime_to_date"},
         .to_text = {"bcast_date_to_text"}},
        {.type = BCAST_TIME,
         .from_text = {"bcast_char_to_tltz_fast", "bcast_precise_datetime_to_time"},
         .to_text = {"bcast_time_to_text"},
         .takes = fraction},
        {.type = BCAST_TIME_TZ,
         .from_text = {"bcast_char_to_tltz_fast", "bcast_precise_datetime_to_time_tz"},
         .to_text = {"bcast_time_tz_to_text"},
         .takes = fraction},
        {.type = BCAST_DATETIME,
         .from_text = {"bcast_char_to_tltz_fast", "bcast_precise_datetime_to_datetime"},
         .to_text = {"bcast_datetime_to_varchar_ex"},
         .takes = fraction},
        {.type = BCAST_DATETIME_TZ,
         .from_text = {"bcast_char_to_tltz_fast", "bcast_precise_datetime_to_datetime_tz"},
         .to_text = {"bcast_datetime_tz_to_text"},
         .takes = fraction},
        {.type = BCAST_IVYM,
         .from_text = {"bcast_varchar_to_ivym"},
         .to_text = {"bcast_iv_ym_to_varchar"},
         .takes = interval},
        {.type = BCAST_IVDT,
         .from_text = {"bcast_varchar_to_ivdt"},
         .to_text = {"bcast_iv_dt_to_varchar"},
         .takes = interval},
        {.type = BCAST_CHAR,
         .from_text = {"bcast_varchar_to_char"},
         .cut_from_text = {"bcast_varchar_to_char_explicit"},
         .takes = length,
         .longest = longest_characters},
        {.type = BCAST_VARCHAR,
         .from_text = {"bcast_varchar_to_varchar"},
         .cut_from_text = {"bcast_varchar_to_varchar_explicit"},
         .takes = length,
         .longest = longest_characters},
        {.type = BCAST_VARCHAR2,
         .from_text = {"bcast_varchar_to_varchar2"},
         .takes = length,
         .longest = longest_characters},
        {.type = BCAST_BINARY,
         .from_text = {"bcast_varchar_to_binary"},
         .cut_from_text = {"bcast_hex_varchar_to_binary_explicit"},
         .takes = length,
         .longest = longest_binary},
        {.type = BCAST_VARBINARY,
         .from_text = {"bcast_varchar_to_varbinary"},
         .cut_from_text = {"bcast_hex_varchar_to_varbinary_explicit"},
         .takes = length,
         .longest = longest_binary},
        {.type = BCAST_TEXT, .from_text = {"bcast_varchar_to_text"}},
        {.type = BCAST_BLOB, .from_text = {"bcast_varchar_to_blob"}},
        {.type = BCAST_BFILE, .from_text = {"bcast_varchar_to_bfile"}, .longest = longest_characters},
    };
    return types;
}

// Or null.
const known_type *find_known(bcast_type type)
{
    const auto found = std::ranges::find(table(), type, &known_type::type);
    return found == table().end() ? nullptr : &*found;
}

std::string_view without_blanks_around(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

std::string in_small_letters(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; });
    return result;
}

// Digits with blanks around, or nothing. One too large for its type is the largest.
bool read_number(std::string_view text, std::int32_t *number)
{
    const std::string_view digits = without_blanks_around(text);
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos)
        return false;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), *number).ec != std::errc())
        *number = std::numeric_limits<std::int32_t>::max();
    return true;
}

// Numbers between commas.
bool read_numbers(std::string_view text, std::vector<std::int32_t> *numbers)
{
    for (;;) {
        const std::size_t comma = text.find(',');
        if (!read_number(text.substr(0, comma), &numbers->emplace_back()))
            return false;
        if (comma == std::string_view::npos)
            return true;
        text.remove_prefix(comma + 1);
    }
}

std::string join(std::string list, const std::string &item) { return list + (list.empty() ? "" : ", ") + item; }

declared_type declare_length(const known_type &known, const type_name &name)
{
    if (name.numbers.empty())
        return {known.type};
    const std::int32_t length = name.numbers[0];
    if (name.numbers.size() > 1)
        throw tool_error(name.word + " takes one number, as in " + name.word + "(20)");
    if (length < 1 || length > known.longest)
        throw tool_error("the length of " + name.word + " is from 1 to " + std::to_string(known.longest));
    return {known.type, length};
}

declared_type declare_shape(const known_type &known, const type_name &name)
{
    constexpr std::int32_t most_digits = 38;
    if (name.numbers.empty())
        return {known.type};
    const std::int32_t digits = name.numbers[0];
    const std::int32_t behind_point = name.numbers.size() > 1 ? name.numbers[1] : 0;
    if (name.numbers.size() > 2)
        throw tool_error(name.word + " takes the digits in all and those behind the point, as in " + name.word +
                         "(10,2)");
    if (digits < 1 || digits > most_digits)
        throw tool_error(name.word + " has from 1 to " + std::to_string(most_digits) + " digits");
    if (behind_point > digits)
        throw tool_error("behind the point of " + name.word + "(" + std::to_string(digits) + ",...) stand 0 to " +
                         std::to_string(digits) + " digits");
    return {known.type, digits, behind_point};
}

declared_type declare_fraction(const known_type &known, const type_name &name)
{
    const std::int32_t digits = name.numbers.empty() ? most_fraction_digits : name.numbers[0];
    if (name.numbers.size() > 1)
        throw tool_error(name.word + " takes one number, as in " + name.word + "(3)");
    if (digits > most_fraction_digits)
        throw tool_error("behind the second of " + name.word + " stand 0 to " + std::to_string(most_fraction_digits) +
                         " digits");
    return {.type = known.type, .scale = std::uint16_t(digits)};
}

// What stands behind its name where types are listed.
std::string parameters_of(const known_type &known)
{
    switch (known.takes) {
    case parameters::length:
        return "(n)";
    case parameters::shape:
        return "(p,s)";
    case parameters::fraction:
        return "(p)";
    case parameters::none:
    case parameters::interval:
        break;
    }
    return "";
}

} // namespace

type_name split_type(std::string_view text)
{
    const std::string_view type = without_blanks_around(text);
    const std::size_t bracket = type.find('(');
    type_name result = {.word = in_small_letters(without_blanks_around(type.substr(0, bracket)))};
    if (bracket == std::string_view::npos)
        return result;
    if (type.back() != ')' || !read_numbers(type.substr(bracket + 1, type.size() - bracket - 2), &result.numbers))
        throw tool_error("in brackets behind the name stands a length or a shape, as in varchar(20) or dec(10,2)");
    return result;
}

type_name parse_type(std::string_view text)
{
    const auto interval = parse_interval(in_small_letters(without_blanks_around(text)));
    return interval ? *interval : split_type(text);
}

std::string described(const type_name &name)
{
    if (!name.interval.empty())
        return name.interval;
    std::string numbers;
    for (const std::int32_t number : name.numbers)
        numbers += (numbers.empty() ? "(" : ",") + std::to_string(number);
    return name.word + numbers + (numbers.empty() ? "" : ")");
}

bool is_known(bcast_type type) { return find_known(type) != nullptr; }

std::string known_types()
{
    std::string list;
    for (const known_type &each : table())
        list = join(list, described(parse_type(bcast_type_name(each.type))) + parameters_of(each));
    return list;
}

bool is_character(bcast_type type) { return type == BCAST_CHAR || type == BCAST_VARCHAR || type == BCAST_VARCHAR2; }

bool is_temporal(bcast_type type)
{
    return type == BCAST_DATE || (is_known(type) && find_known(type)->takes == parameters::fraction);
}

declared_type declare(bcast_type type, const type_name &name)
{
    const known_type &known = *find_known(type);
    switch (known.takes) {
    case parameters::length:
        return declare_length(known, name);
    case parameters::shape:
        return declare_shape(known, name);
    case parameters::fraction:
        return declare_fraction(known, name);
    case parameters::interval:
        return {.type = type, .scale = name.iv_word};
    case parameters::none:
        break;
    }
    if (!name.numbers.empty())
        throw tool_error(name.word + " takes no length");
    return {type};
}

void require_length(const declared_type &type, const type_name &name)
{
    if (has_length(type.type) && type.length == 0)
        throw tool_error("the length is missing, as in " + name.word + "(20)");
}

declared_type column_type(const type_name &name)
{
    const bcast_type type = bcast_type_from_name(name.word.data(), name.word.size());
    if (!is_known(type))
        throw tool_error("there is no type " + in_quotes(name.word) + " for a column; there are " + known_types());
    const declared_type declared = declare(type, name);
    require_length(declared, name);
    return declared;
}

bool can_cut(bcast_type type) { return !find_known(type)->cut_from_text.empty(); }

std::string types_that_cut()
{
    std::string list;
    for (const known_type &each : table())
        if (can_cut(each.type))
            list = join(list, bcast_type_name(each.type));
    return list;
}

bool has_length(bcast_type type) { return find_known(type)->takes == parameters::length; }

std::int32_t length_argument(const declared_type &source, const declared_type &target)
{
    if (target.type == BCAST_DEC)
        return BCAST_DEC_SHAPE(target.length, target.prec);
    const std::int32_t length = target.length > 0 ? target.length : find_known(target.type)->longest;
    // The text of a decimal has the digits that are declared.
    return source.type == BCAST_DEC ? BCAST_DEC_TEXT_LENGTH(length, BCAST_DEC_SHAPE(source.length, source.prec))
                                    : length;
}

cast_arguments arguments_between(const declared_type &source, const declared_type &target, const date_reading &reading)
{
    return {.length = length_argument(source, target),
            .src_scale = is_character(source.type) ? most_fraction_digits : source.scale,
            .dst_scale = target.scale,
            .date_order = reading.order,
            .local_zone = reading.local_zone};
}

std::vector<std::string_view> casts_from_text(const declared_type &type, too_long rule)
{
    if (is_character(type.type) && type.length == 0)
        return {};
    const known_type &known = *find_known(type.type);
    return rule == too_long::is_cut && can_cut(type.type) ? known.cut_from_text : known.from_text;
}

std::vector<std::string_view> casts_to_text(bcast_type type) { return find_known(type)->to_text; }

road::road(const declared_type &source, std::span<const std::string_view> casts, const declared_type &target,
           const date_reading &reading)
{
    for (const std::string_view name : casts) {
        const auto cast = find_cast(name);
        if (!cast)
            throw tool_error("the library that is loaded does not have " + std::string(name));
        legs_.push_back({*cast, arguments_between(source, target, reading), column(cast->entry->target)});
    }
}

column &road::run(pool &memory, column &source, std::uint16_t rows, failures &failed)
{
    column *at = &source;
    for (leg &each : legs_) {
        tool::run(each.cast, memory, *at, each.arguments, each.target, rows, failed);
        at = &each.target;
    }
    return *at;
}

} // namespace bcast::tool
