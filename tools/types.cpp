#include "types.h"

#include "errors.h"

#include <algorithm>
#include <charconv>

namespace bcast::tool {

namespace {

// A new type is a row here, and in a switch or table nowhere else.
const std::vector<column_type> &table()
{
    static const std::vector<column_type> types = {
        {BCAST_TINYINT, {{"bcast_varchar_to_tinyint"}}, {{"bcast_tinyint_to_varchar", 4}}},
        {BCAST_SMALLINT, {{"bcast_varchar_to_smallint"}}, {{"bcast_smallint_to_varchar", 6}}},
        {BCAST_INT, {{"bcast_varchar_to_int"}}, {{"bcast_int_to_varchar", 11}}},
        {BCAST_INT64, {{"bcast_varchar_to_int64"}}, {{"bcast_int64_to_varchar", 20}}},
    };
    return types;
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

} // namespace

type_name parse_type(std::string_view text)
{
    const std::string_view type = without_blanks_around(text);
    const std::size_t bracket = type.find('(');
    type_name result{in_small_letters(without_blanks_around(type.substr(0, bracket))), std::nullopt};
    if (bracket == std::string_view::npos)
        return result;
    const std::string_view inside = without_blanks_around(type.substr(bracket + 1, type.size() - bracket - 2));
    std::int32_t length = 0;
    const auto [end, error] = std::from_chars(inside.data(), inside.data() + inside.size(), length);
    if (type.back() != ')' || error != std::errc() || end != inside.data() + inside.size() || length < 1 ||
        length > longest_declared)
        throw tool_error("type " + in_quotes(text) + ": in brackets behind the name stands a length from 1 to " +
                         std::to_string(longest_declared));
    result.length = length;
    return result;
}

std::span<const column_type> column_types() { return table(); }

std::string column_type_names()
{
    std::string names;
    for (const column_type &each : table())
        names += (names.empty() ? "" : ", ") + std::string(bcast_type_name(each.type));
    return names;
}

const column_type &parse_column_type(std::string_view text)
{
    const type_name name = parse_type(text);
    const column_type *type = find_column_type(bcast_type_from_name(name.word.data(), name.word.size()));
    if (type == nullptr)
        throw tool_error("there is no type " + in_quotes(text) + " for a column; there are " + column_type_names());
    if (name.length)
        throw tool_error("type " + in_quotes(text) + ": " + name.word + " takes no length");
    return *type;
}

const column_type *find_column_type(bcast_type type)
{
    const auto found = std::ranges::find(table(), type, &column_type::type);
    return found == table().end() ? nullptr : &*found;
}

road::road(std::span<const column_type::step> steps)
{
    for (const column_type::step &step : steps) {
        const auto cast = find_cast(step.cast);
        if (!cast)
            throw tool_error("the library that is loaded does not have " + std::string(step.cast));
        legs_.push_back({*cast, step.length, column(cast->entry->target)});
    }
}

column &road::run(pool &memory, column &source, std::uint16_t rows, failures &failed)
{
    column *at = &source;
    for (leg &each : legs_) {
        tool::run(each.cast, memory, *at, each.length, each.target, rows, failed);
        at = &each.target;
    }
    return *at;
}

} // namespace bcast::tool
