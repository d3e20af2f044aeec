#include "cast_way.h"

#include "errors.h"

#include <algorithm>
#include <string>

namespace bcast::tool {

namespace {

bool can_try(const catalogue::cast &entry)
{
    return can_run(entry) && is_known(entry.source) && is_known(entry.target);
}

std::string cast_name(std::string_view from, std::string_view to)
{
    return "bcast_" + std::string(from) + "_to_" + std::string(to);
}

// The types of a cast as the command line names them.
struct type_pair {
    std::string_view from;
    std::string_view to;
};

// Names of casts have the types, but some have more, and those between intervals less: bcast_precise_time_to_time,
// bcast_char_to_date_fast, bcast_datetime_to_varchar_ex, bcast_iv_ym_to_ym.
type_pair types_of(const catalogue::cast &entry)
{
    constexpr std::string_view beginning = "bcast_", precise = "precise_", joint = "_to_";
    std::string_view name = entry.name.substr(beginning.size());
    if (name.starts_with(precise))
        name.remove_prefix(precise.size());
    const std::size_t end = name.find(joint);
    if (end == std::string_view::npos)
        return {name, ""};
    type_pair types = {name.substr(0, end), name.substr(end + joint.size())};
    for (const std::string_view ending : {"_fast", "_ex"})
        if (types.to.ends_with(ending))
            types.to.remove_suffix(ending.size());
    if (types.from.starts_with("iv_"))
        types.from = bcast_type_name(entry.source);
    if (types.to == "ym" || types.to == "dt")
        types.to = bcast_type_name(entry.target);
    return types;
}

// Values of the local zone are shown without one: theirs is where they came from.
way way_of(const catalogue::cast &entry, std::string_view to)
{
    const bool local = to == "tltz" || to == "timestamp_local_time_zone";
    return {{entry.name}, entry.source, local ? BCAST_DATETIME : entry.target};
}

// A type for a message, without the length or shape behind its name.
std::string bare(const type_name &name) { return name.interval.empty() ? name.word : name.interval; }

bcast_type type_of(std::string_view word) { return bcast_type_from_name(word.data(), word.size()); }

// The targets that a source has in this library and this tool, as a list for a message.
std::string targets_of(const std::string &from)
{
    std::vector<std::string> targets;
    const auto add = [&](std::string_view to) {
        const std::string name = described(parse_type(to));
        if (std::ranges::find(targets, name) == targets.end())
            targets.push_back(name);
    };
    for (const catalogue::cast &entry : catalogue::casts())
        if (types_of(entry).from == from && exists(entry) && can_try(entry))
            add(types_of(entry).to);
    if (is_character(type_of(from)))
        for (int type = 0; type < BCAST_TYPE_COUNT; type++)
            if (is_temporal(bcast_type(type)))
                add(bcast_type_name(bcast_type(type)));
    std::string list;
    for (const std::string &each : targets)
        list += (list.empty() ? "" : ", ") + each;
    return list;
}

} // namespace

way way_between(const type_name &from, const type_name &to)
{
    const bcast_type source = type_of(from.word), target = type_of(to.word);
    // As from a file, where 0 is false: the library's own cast only asks whether there is a text.
    if (is_character(source) && target == BCAST_BOOLEAN)
        return {casts_from_text({target}, too_long::fails), source, target};
    for (const catalogue::cast &entry : catalogue::casts()) {
        const type_pair types = types_of(entry);
        if (types.from != from.word || types.to != to.word || !exists(entry))
            continue;
        if (can_try(entry))
            return way_of(entry, to.word);
        throw tool_error("the library has " + std::string(entry.name) +
                         ", but values of these types cannot be tried from the command line");
    }
    if (is_character(source) && is_temporal(target))
        return {casts_from_text({target}, too_long::fails), source, target};

    const std::string targets = targets_of(from.word), shown = bare(from);
    if (targets.empty())
        throw tool_error("--from " + in_quotes(from.word) +
                         ": there is no such source; bcast list shows the casts there are");
    throw tool_error("there is no cast from " + shown + " to " + in_quotes(bare(to)) + "; from " + shown +
                     " there are casts to " + targets);
}

// Binary texts have their casts that cut under the name of hexadecimal text.
way cutting_way_between(const type_name &from, const type_name &to)
{
    for (const std::string &source : {from.word, "hex_" + from.word}) {
        const auto cast = find_cast(cast_name(source, to.word) + "_explicit");
        if (cast && can_try(*cast->entry))
            return way_of(*cast->entry, to.word);
    }
    throw tool_error("--cut: there is no cast from " + bare(from) + " to " + bare(to) + " that cuts");
}

} // namespace bcast::tool
