#include "list_casts.h"

#include "errors.h"
#include "files.h"
#include "loaded_cast.h"
#include "table.h"

#include <vector>

#include <unistd.h>

namespace bcast::tool {

namespace {

// The type of that name, or BCAST_TYPE_COUNT, any type, of none.
bcast_type type_filter(const char *option, const std::string &name)
{
    const bcast_type type = bcast_type_from_name(name.data(), name.size());
    if (type != BCAST_TYPE_COUNT || name.empty())
        return type;
    std::string known;
    for (int each = 0; each < BCAST_TYPE_COUNT; each++)
        known += (each > 0 ? ", " : "") + std::string(bcast_type_name(bcast_type(each)));
    throw tool_error(std::string(option) + " " + in_quotes(name) + ": there is no such type; there are " + known);
}

bool passes(bcast_type filter, bcast_type type) { return filter == BCAST_TYPE_COUNT || filter == type; }

const char *on_failure(catalogue::protocol protocol)
{
    switch (protocol) {
    case catalogue::protocol::never_fails:
        return "never fails";
    case catalogue::protocol::stops:
        return "stops";
    case catalogue::protocol::captures:
        return "captures";
    case catalogue::protocol::refused:
        return "refused";
    case catalogue::protocol::absent:
        return "absent";
    }
    return "";
}

std::string tab_separated(const std::vector<std::vector<std::string>> &lines)
{
    std::string result;
    for (const auto &line : lines)
        for (std::size_t k = 0; k < line.size(); k++)
            result += line[k] + (k + 1 < line.size() ? "\t" : "\n");
    return result;
}

} // namespace

int list_casts(const list_options &options)
{
    const bcast_type from = type_filter("--from", options.from);
    const bcast_type to = type_filter("--to", options.to);

    std::vector<std::vector<std::string>> lines;
    std::size_t loaded = 0;
    for (const catalogue::cast &entry : catalogue::casts()) {
        if (address_of(entry) == nullptr)
            continue;
        ++loaded;
        if (passes(from, entry.source) && passes(to, entry.target))
            lines.push_back({bcast_type_name(entry.source), bcast_type_name(entry.target), std::string(entry.name),
                             on_failure(entry.protocol)});
    }
    const std::size_t listed = lines.size();

    output_file output(STDOUT_FILENO);
    if (output.is_terminal()) {
        lines.insert(lines.begin(), {"source", "target", "name", "failures"});
        output.write(aligned(lines, {align::left, align::left, align::left, align::left}));
    } else {
        output.write(tab_separated(lines));
    }
    output.close();

    output_file sums(STDERR_FILENO);
    sums.write(std::to_string(listed) + " listed; this library has " + std::to_string(loaded) + " of the " +
               std::to_string(catalogue::casts().size()) + " casts of the catalogue\n");
    sums.flush();
    return 0;
}

} // namespace bcast::tool
