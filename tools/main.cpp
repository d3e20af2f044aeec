// bcast, the command line of libbcast.

#include "cast_values.h"
#include "compare_literal.h"
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

void add_date_options(CLI::App &command, date_options &options)
{
    command
        .add_option("--date-order", options.order, "Order of the fields of dates: ymd, which is the default, dmy, mdy")
        ->type_name("ORDER");
    command
        .add_option("--local-zone", options.local_zone,
                    "Zone that times with a zone are moved to, as in -05:00; default is +00:00")
        ->type_name("ZONE");
}

CLI::App *add_csv(CLI::App &app, csv_load_options &options)
{
    CLI::App *csv = app.add_subcommand("csv", "Load columns of a CSV file as columns of SQL types");
    csv->add_option("FILE", options.file, "CSV file with a header line; - is standard input")->required();
    csv->add_option("-c,--column", options.columns,
                    "Load this column as TYPE, which stands behind the last colon: " + known_types() +
                        ". Give it once for each column of the table")
        ->type_name("NAME:TYPE")
        ->required()
        ->allow_extra_args(false);
    csv->add_flag("--cut", options.cut, "Cut what is longer than its TYPE, rather than refuse it: " + types_that_cut());
    add_date_options(*csv, options.dates);
    csv->add_option("-o,--output", options.output, "Write the typed table here, as CSV; default is standard output")
        ->type_name("FILE");
    csv->add_option("-e,--errors", options.errors,
                    "Write the fields that failed here, as CSV (row,column,text,code,name); default is standard error")
        ->type_name("FILE");
    csv->footer(
        "The file is read as RFC 4180 has it: fields in quotes may hold commas, line ends and doubled quotes;\n"
        "lines end in LF or CR LF. An empty field is an empty text or value of no bytes where the type has such,\n"
        "else a null. Nulls and failed fields are empty in the table. Row 1 is the first record behind the\n"
        "header. A summary goes to standard error.\n\n"
        "Lengths n are in bytes: 1 to 65535 of characters, to 32767 of binary values, which are hexadecimal\n"
        "digits in the file and in the table, as blobs are in the table. dec(p,s) has p digits, 1 to 38, of them\n"
        "s behind the point; dec(p) is dec(p,0), and a bare dec has no declared digits. bit is decimal digits, 1\n"
        "if one of them is not 0; so is boolean. A bfile is DIRECTORY:file.\n\n"
        "A date is YYYY-MM-DD, YYYY/MM/DD or YYYYMMDD; with --date-order dmy also DD.MM.YYYY or DD/MM/YYYY, with mdy\n"
        "also MM/DD/YYYY. A time is HH:MM, HH:MM:SS or HH:MM:SS.f; between date and time stands a blank or T, and a\n"
        "zone, if any, behind them: Z, +HH, +HHMM or +HH:MM. A text without a date has 1900-01-01, one without a\n"
        "time 00:00:00. Without a zone a time keeps its digits; with one it is moved to --local-zone, which is the\n"
        "zone of every time_tz and datetime_tz. The casts take +08:00 for no zone. Times are rounded to p digits\n"
        "behind the second, 0 to 6; 6 where no p is given. A time_tz is shown without these digits.\n\n"
        "An interval is of a year, month, day, hour, minute or second, or from one field to another, as in\n"
        "'interval hour', 'interval day(3) to second(2)' and 'interval second(4,2)': in brackets the most digits of\n"
        "the leading field, 1 to 9, and those behind the second, 0 to 6. Texts are as 3-11 for year to month and\n"
        "5 12:30:07.25 for day to second; a lone number is the leading field. ivym and ivdt are short for these "
        "two.\n\n"
        "Exit status: 0 all is well, 1 fields failed, 2 wrong usage or a file that cannot be read or written.\n\n"
        "Example:\n"
        "  bcast csv orders.csv --column order:int --column quantity:smallint --output typed.csv --errors bad.csv");
    return csv;
}

CLI::App *add_cast(CLI::App &app, cast_options &options)
{
    CLI::App *cast = app.add_subcommand("cast", "Try single values through one cast");
    cast->add_option("--from", options.from, "Type of the values, as in int, varchar, char(5) or dec(10,2)")
        ->type_name("TYPE")
        ->required();
    cast->add_option("--to", options.to, "Type to cast to, as in int, text, varchar(10) or dec(5,2)")
        ->type_name("TYPE")
        ->required();
    cast->add_flag("--cut", options.cut, "Use the form of the cast that cuts what is longer than the target");
    add_date_options(*cast, options.dates);
    cast->add_option("VALUE...", "Values to cast; behind -- also such as begin with - and are no numbers")->expected(0);
    cast->footer("Types: " + known_types() +
                 ".\n"
                 "bcast csv --help tells how they are declared, and how values are written.\n\n"
                 "The result of each value is a line on standard output: NULL for a null; blanks that a value counts\n"
                 "without storing them are shown as blanks. A value that fails is a line on standard error. The empty\n"
                 "text as a number, date, time or interval is a null. char(n) and varchar2(n) as sources count blanks\n"
                 "up to n. Characters become a time as in a file: by a cast to the local zone, and one to the type.\n\n"
                 "Exit status: 0 all is well, 1 values failed, 2 wrong usage.\n\n"
                 "Example:\n"
                 "  bcast cast --from varchar --to smallint 12 -7 1e3 70000");
    return cast;
}

CLI::App *add_compare(CLI::App &app, compare_options &options)
{
    CLI::App *compare = app.add_subcommand("compare", "Show what a literal becomes when an integer column is compared");
    compare->add_option("--type", options.type, "Type of the column: int or int64, which is the default")
        ->type_name("TYPE");
    compare->add_option("OP", "<, <=, =, <> (or !=), >= or >, in quotes for the shell")->expected(0);
    compare->add_option("LITERAL", "The text of a number; behind -- also one that begins with - and is none")
        ->expected(0);
    compare->footer(
        "A number with a fraction becomes the integer that gives the same answer for every x. Where there is\n"
        "none, the answer is the same for every row; null rows apart, for which no comparison is true.\n\n"
        "Exit status: 0 all is well, 1 LITERAL is no number, 2 wrong usage.\n\n"
        "Example:\n"
        "  bcast compare '<' -5.5 --type int");
    return compare;
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

// Takes the values out of the arguments of a command, as they stand: the parser would read some as something else.
std::vector<std::string> take_values(std::vector<std::string> &arguments, const std::vector<std::string> &options)
{
    std::vector<std::string> values, others = {arguments.front()};
    for (auto at = arguments.begin() + 1; at != arguments.end(); ++at) {
        if (*at == "--") {
            values.insert(values.end(), at + 1, arguments.end());
            break;
        }
        if (!is_option(*at)) {
            values.push_back(*at);
            continue;
        }
        others.push_back(*at);
        if (std::ranges::find(options, *at) != options.end() && at + 1 != arguments.end())
            others.push_back(*++at);
    }
    arguments = others;
    return values;
}

void set_op_and_literal(compare_options &options, const std::vector<std::string> &values)
{
    if (values.size() != 2)
        throw tool_error("OP and LITERAL are required, and nothing else; see bcast compare --help");
    options.op = values[0];
    options.literal = values[1];
}

int run(std::vector<std::string> arguments)
{
    CLI::App app("Batch casts between SQL types", "bcast");
    csv_load_options csv_options;
    cast_options cast_options;
    compare_options compare_options;
    list_options list_options;
    const CLI::App *csv = add_csv(app, csv_options);
    const CLI::App *cast = add_cast(app, cast_options);
    const CLI::App *compare = add_compare(app, compare_options);
    add_list(app, list_options);
    app.set_version_flag("--version", "bcast " BCAST_VERSION);
    app.require_subcommand(1);
    app.footer("bcast COMMAND --help tells more about a command.\n\n"
               "Example:\n"
               "  bcast csv orders.csv --column quantity:int");

    const std::string command = arguments.empty() ? "" : arguments.front();
    std::vector<std::string> values;
    if (command == "cast")
        values = take_values(arguments, {"--from", "--to", "--date-order", "--local-zone"});
    else if (command == "compare")
        values = take_values(arguments, {"--type"});
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
        if (values.empty())
            throw tool_error("VALUE is required; see bcast cast --help");
        cast_options.values = values;
        return cast_values(cast_options);
    }
    if (compare->parsed()) {
        set_op_and_literal(compare_options, values);
        return compare_literal(compare_options);
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
