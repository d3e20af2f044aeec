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

std::string_view ending_of(catalogue::form form)
{
    switch (form) {
    case catalogue::form::plain:
        return "";
    case catalogue::form::cuts:
        return "_explicit";
    case catalogue::form::compares:
        return "_directly";
    case catalogue::form::compares_one:
        return "_directly_low";
    case catalogue::form::is_body:
        return "_inner";
    }
    return "";
}

// What the command line calls the target of a cast: of the casts between two types, one has its plain name.
std::string target_word(const catalogue::cast &entry)
{
    return std::string(entry.to) + std::string(ending_of(entry.form));
}

// Values of the local zone are shown without one: theirs is where they came from.
way way_of(const catalogue::cast &entry)
{
    return {{entry.name}, entry.source, entry.to_local_zone ? BCAST_DATETIME : entry.target};
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
        if (entry.from == from && exists(entry) && can_try(entry))
            add(target_word(entry));
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
        if (entry.from != from.word || target_word(entry) != to.word || !exists(entry))
            continue;
        if (can_try(entry))
            return way_of(entry);
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

// Text into binary values is cut by the casts from hexadecimal text, which hold any text of that source for it.
way cutting_way_between(const type_name &from, const type_name &to)
{
    const bcast_type source = type_of(from.word);
    for (const catalogue::cast &entry : catalogue::casts())
        if (entry.form == catalogue::form::cuts && entry.to == to.word &&
            (entry.from == from.word || entry.source == source) && exists(entry) && can_try(entry))
            return way_of(entry);
    throw tool_error("--cut: there is no cast from " + bare(from) + " to " + bare(to) + " that cuts");
}

} // namespace bcast::tool
