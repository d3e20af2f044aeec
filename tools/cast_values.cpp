#include "cast_values.h"

#include "columns.h"
#include "errors.h"
#include "files.h"
#include "report.h"
#include "types.h"

#include <unistd.h>

namespace bcast::tool {

namespace {

bool is_character(bcast_type type) { return type == BCAST_CHAR || type == BCAST_VARCHAR || type == BCAST_VARCHAR2; }

// Types whose values can be made from text, and shown as text.
bool can_make(bcast_type type) { return is_character(type) || find_column_type(type) != nullptr; }
bool can_show(bcast_type type) { return can_make(type) || type == BCAST_TEXT; }

std::string cast_name(std::string_view from, std::string_view to)
{
    return "bcast_" + std::string(from) + "_to_" + std::string(to);
}

// The targets that a source has in this library and this tool, as a list for a message.
std::string targets_of(const std::string &from)
{
    const std::string beginning = cast_name(from, "");
    std::string list;
    for (const catalogue::cast &entry : catalogue::casts()) {
        if (entry.name.starts_with(beginning) && address_of(entry) != nullptr && can_run(entry) &&
            can_make(entry.source) && can_show(entry.target))
            list += (list.empty() ? "" : ", ") + std::string(entry.name.substr(beginning.size()));
    }
    return list;
}

std::string described(const type_name &type)
{
    return type.word + (type.length ? "(" + std::to_string(*type.length) + ")" : "");
}

std::string described(std::int32_t code)
{
    return "error " + code_and_name(code) + ": " + std::string(code_text(code));
}

loaded_cast cast_between(const type_name &from, const type_name &to)
{
    const auto cast = find_cast(cast_name(from.word, to.word));
    if (cast && can_run(*cast->entry) && can_make(cast->entry->source) && can_show(cast->entry->target))
        return *cast;
    if (cast)
        throw tool_error("the library has " + std::string(cast->entry->name) +
                         ", but values of these types cannot be tried from the command line");
    const std::string targets = targets_of(from.word);
    if (targets.empty())
        throw tool_error("--from " + in_quotes(from.word) +
                         ": there is no such source; bcast list shows the casts there are");
    throw tool_error("there is no cast from " + from.word + " to " + in_quotes(to.word) + "; from " + from.word +
                     " there are casts to " + targets);
}

void check_lengths(const loaded_cast &cast, const type_name &from, const type_name &to)
{
    if (from.length && !is_character(cast.entry->source))
        throw tool_error("--from " + described(from) + ": " + from.word + " takes no length");
    if (to.length && !takes_length(*cast.entry))
        throw tool_error("--to " + described(to) + ": " + to.word + " takes no length");
    if (!to.length && takes_length(*cast.entry))
        throw tool_error("--to " + to.word + ": the length is missing, as in " + to.word + "(20)");
}

std::span<const column_type::step> road_from_text(bcast_type type)
{
    return is_character(type) ? std::span<const column_type::step>() : find_column_type(type)->from_text;
}

std::span<const column_type::step> road_to_text(bcast_type type)
{
    return is_character(type) || type == BCAST_TEXT ? std::span<const column_type::step>()
                                                    : find_column_type(type)->to_text;
}

struct outcome {
    std::int32_t code = 0;
    bool in_source = false; // the failure: the text is no value of the source type
    std::string text = {};  // of the result
};

// One cast with all that it takes to get a value from a text and to show what comes of it.
class value_cast {
public:
    value_cast(const loaded_cast &cast, std::optional<std::int32_t> source_length, std::int32_t target_length)
        : cast_(cast), source_length_(source_length), target_length_(target_length),
          text_(is_character(cast.entry->source) ? cast.entry->source : BCAST_VARCHAR),
          from_text_(road_from_text(cast.entry->source)), target_(cast.entry->target),
          to_text_(road_to_text(cast.entry->target))
    {}

    // In a batch of its own, so that a failure is this value's.
    outcome try_value(const std::string &value)
    {
        failed_.reset();
        memory_.reset();
        if (source_length_ && value.size() > std::size_t(*source_length_))
            return {.code = ERR_TRUNCATED, .in_source = true};
        put(value);
        column &source = from_text_.run(memory_, text_, 1, failed_);
        if (*failed_.count() > 0)
            return {.code = failed_.codes()[0], .in_source = true};
        run(cast_, memory_, source, target_length_, target_, 1, failed_);
        column &result = to_text_.run(memory_, target_, 1, failed_);
        if (*failed_.count() > 0)
            return {.code = failed_.codes()[0]};
        return {.text = shown(result)};
    }

private:
    void put(const std::string &value)
    {
        const bool padded = text_.type() == BCAST_CHAR && source_length_;
        text_.clear();
        text_.append_char(value, padded ? std::uint32_t(*source_length_) - std::uint32_t(value.size()) : 0);
    }

    // Blanks that a value only counts are shown as blanks.
    static std::string shown(column &result)
    {
        const auto text = result.text(0);
        return text ? std::string(*text) + std::string(std::size_t(string_element(result, 0).pad_len), ' ') : "NULL";
    }

    loaded_cast cast_;
    std::optional<std::int32_t> source_length_;
    std::int32_t target_length_;
    column text_;
    road from_text_;
    column target_;
    road to_text_;
    pool memory_;
    failures failed_;
};

} // namespace

int cast_values(const cast_options &options)
{
    const type_name from = parse_type(options.from);
    const type_name to = parse_type(options.to);
    const loaded_cast cast = cast_between(from, to);
    check_lengths(cast, from, to);

    value_cast values(cast, from.length, to.length.value_or(0));
    output_file results(STDOUT_FILENO);
    output_file errors(STDERR_FILENO);
    bool any_failed = false;
    for (const std::string &value : options.values) {
        const outcome result = values.try_value(value);
        if (result.code == 0) {
            results.write(result.text + "\n");
            continue;
        }
        any_failed = true;
        results.flush(); // keeps the order where both streams lead to one place
        errors.write(in_quotes(value) + (result.in_source ? " is no value of " + described(from) : "") + ": " +
                     described(result.code) + "\n");
        errors.flush();
    }
    results.close();
    return any_failed ? 1 : 0;
}

} // namespace bcast::tool
