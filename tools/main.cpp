// bcast, the command line of libbcast.

#include "cast_values.h"
#include "csv_load.h"
#include "errors.h"
#include "files.h"
#include "list_casts.h"
#include "types.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <new>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using namespace bcast::tool;

enum exit_status { all_well = 0, gave_up = 2 };

void write_to(int descriptor, const std::string &text)
{
    output_file stream(descriptor);
    stream.write(text);
    stream.flush();
}

// A message that cannot be written leaves the exit status to tell.
int give_up(const std::string &message)
{
    try {
        write_to(STDERR_FILENO, "bcast: " + message + "\n");
    } catch (const tool_error &) {
    }
    return gave_up;
}

CLI::App *add_csv(CLI::App &app, csv_load_options &options)
{
    CLI::App *csv = app.add_subcommand("csv", "Load columns of a CSV file as columns of SQL types");
    csv->add_option("FILE", options.file, "CSV file with a header line; - is standard input")->required();
    csv->add_option("-c,--column", options.columns,
                    "Load this column as TYPE, which stands behind the last colon: " + column_type_names() +
                        ". Give it once for each column of the table")
        ->type_name("NAME:TYPE")
        ->required()
        ->allow_extra_args(false);
    csv->add_option("-o,--output", options.output, "Write the typed table here, as CSV; default is standard output")
        ->type_name("FILE");
    csv->add_option("-e,--errors", options.errors,
                    "Write the fields that failed here, as CSV (row,column,text,code,name); default is standard error")
        ->type_name("FILE");
    csv->footer(
        "The file is read as RFC 4180 has it: fields in quotes may hold commas, line ends and doubled quotes;\n"
        "lines end in LF or CR LF. Empty fields become nulls, and nulls and failed fields are empty in the\n"
        "table. Row 1 is the first record behind the header. A summary goes to standard error.\n\n"
        "Exit status: 0 all is well, 1 fields failed, 2 wrong usage or a file that cannot be read or written.\n\n"
        "Example:\n"
        "  bcast csv orders.csv --column order:int --column quantity:smallint --output typed.csv --errors bad.csv");
    return csv;
}

CLI::App *add_cast(CLI::App &app, cast_options &options)
{
    CLI::App *cast = app.add_subcommand("cast", "Try single values through one cast");
    cast->add_option("--from", options.from, "Type of the values, as in int, varchar or char(5)")
        ->type_name("TYPE")
        ->required();
    cast->add_option("--to", options.to, "Type to cast to, as in int, text or varchar(10)")
        ->type_name("TYPE")
        ->required();
    cast->add_option("VALUE...", "Values to cast; behind -- also such as begin with - and are no numbers")->expected(0);
    cast->footer("The result of each value is a line on standard output: NULL for a null; blanks that a char counts\n"
                 "without storing them are shown as blanks. A value that fails is a line on standard error. The empty\n"
                 "text as a number is a null. char(n) as a source counts blanks up to n.\n\n"
                 "Exit status: 0 all is well, 1 values failed, 2 wrong usage.\n\n"
                 "Example:\n"
                 "  bcast cast --from varchar --to smallint 12 -7 1e3 70000");
    return cast;
}

CLI::App *add_list(CLI::App &app, list_options &options)
{
    CLI::App *list = app.add_subcommand("list", "List the casts that the library has");
    list->add_option("--from", options.from, "Only casts from this type")->type_name("TYPE");
    list->add_option("--to", options.to, "Only casts to this type")->type_name("TYPE");
    list->footer(
        "Source, target, name of the function, and what it does with a row that fails: captures (stores a code\n"
        "and goes on, where it is asked to) or stops. A table on a terminal, else fields between tabs.\n\n"
        "Example:\n"
        "  bcast list --from varchar");
    return list;
}

bool is_option(const std::string &argument)
{
    const bool negative_number =
        argument.size() > 1 && (argument[1] == '.' || (argument[1] >= '0' && argument[1] <= '9'));
    return argument.size() > 1 && argument[0] == '-' && !negative_number;
}

// Takes the values of bcast cast out of its arguments, as they stand: the parser would read some as something else.
std::vector<std::string> take_values(std::vector<std::string> &arguments)
{
    std::vector<std::string> values, others;
    for (auto at = arguments.begin(); at != arguments.end(); ++at) {
        if (*at == "--") {
            values.insert(values.end(), at + 1, arguments.end());
            break;
        }
        if (!is_option(*at)) {
            values.push_back(*at);
            continue;
        }
        others.push_back(*at);
        if ((*at == "--from" || *at == "--to") && at + 1 != arguments.end())
            others.push_back(*++at);
    }
    arguments = others;
    return values;
}

int run(std::vector<std::string> arguments)
{
    CLI::App app("Batch casts between SQL types", "bcast");
    csv_load_options csv_options;
    cast_options cast_options;
    list_options list_options;
    const CLI::App *csv = add_csv(app, csv_options);
    const CLI::App *cast = add_cast(app, cast_options);
    add_list(app, list_options);
    app.set_version_flag("--version", "bcast " BCAST_VERSION);
    app.require_subcommand(1);
    app.footer("bcast COMMAND --help tells more about a command.\n\n"
               "Example:\n"
               "  bcast csv orders.csv --column quantity:int");

    if (!arguments.empty() && arguments.front() == "cast") {
        arguments.erase(arguments.begin());
        cast_options.values = take_values(arguments);
        arguments.insert(arguments.begin(), "cast");
    }
    std::ranges::reverse(arguments); // as the parser takes them
    try {
        app.parse(arguments);
    } catch (const CLI::CallForHelp &) {
        write_to(STDOUT_FILENO, app.help());
        return all_well;
    } catch (const CLI::CallForVersion &version) {
        write_to(STDOUT_FILENO, std::string(version.what()) + "\n");
        return all_well;
    } catch (const CLI::ParseError &error) {
        const auto commands = app.get_subcommands();
        return give_up(std::string(error.what()) + "; see bcast " +
                       (commands.empty() ? "" : commands.front()->get_name() + " ") + "--help");
    }

    if (csv->parsed())
        return load_csv(csv_options);
    if (cast->parsed()) {
        if (cast_options.values.empty())
            throw tool_error("VALUE is required; see bcast cast --help");
        return cast_values(cast_options);
    }
    return list_casts(list_options);
}

} // namespace

int main(int argc, char **argv)
{
    prepare_standard_streams();
    try {
        return run({argv + std::min(argc, 1), argv + argc});
    } catch (const tool_error &error) {
        return give_up(error.what());
    } catch (const std::bad_alloc &) {
        return give_up("out of memory");
    }
}
