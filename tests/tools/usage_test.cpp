// What ends a run with exit status 2, and what it says.
#include "process.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

namespace bcast::test {
namespace {

struct input {
    temporary_directory directory;
    std::string file;

    explicit input(std::string_view text) : file(directory.write("in.csv", text)) {}
    run_result load(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), {"csv", file});
        return run_bcast(arguments);
    }
    std::string shown() const { return "\"" + file + "\""; }
};

void expect_refused(const run_result &run, const std::string &message)
{
    EXPECT_EQ(run.exit_status, 2) << run.how;
    EXPECT_EQ(run.errors, "bcast: " + message + "\n");
    EXPECT_EQ(run.output, "");
}

// ---- Usage

TEST(usage, unknown_column_is_told_with_those_there_are)
{
    const input in("id,\"a, b\",c\n1,2,3\n");
    expect_refused(in.load({"--column", "b:int"}),
                   in.shown() + " has no column \"b\"; its columns are \"id\", \"a, b\", \"c\"");
}

TEST(usage, many_columns_are_not_all_told)
{
    std::string header = "c0", list = "\"c0\"";
    for (int k = 1; k < 150; k++) {
        header += ",c" + std::to_string(k);
        list += k < 100 ? ", \"c" + std::to_string(k) + "\"" : "";
    }
    const input in(header + "\n");
    expect_refused(in.load({"--column", "b:int"}),
                   in.shown() + " has no column \"b\"; its columns are " + list + " and 50 more");
}

TEST(usage, unknown_type_is_told_with_those_there_are)
{
    const input in("id\n1\n");
    const run_result run = in.load({"--column", "id:integer"});
    EXPECT_EQ(run.exit_status, 2) << run.how;
    const std::string beginning =
        "bcast: --column \"id:integer\": there is no type \"integer\" for a column; there are "
        "tinyint, smallint, int, int64, bit, boolean, float, double, dec(p,s), date, time(p), "
        "time_tz(p), datetime(p), datetime_tz(p), interval year to month, interval day to second, char(n), varchar(n), "
        "varchar2(n), binary(n), varbinary(n), text, blob, bfile";
    EXPECT_EQ(run.errors.substr(0, beginning.size()), beginning);
}

TEST(usage, type_is_missing_or_has_what_it_cannot_have)
{
    const input in("id\n1\n");
    const auto expect_type_refused = [&](const std::string &type, const std::string &message) {
        expect_refused(in.load({"--column", "id:" + type}), "--column \"id:" + type + "\": " + message);
    };
    expect_refused(in.load({"--column", "id"}), "--column \"id\": expected NAME:TYPE");
    expect_type_refused("int(4)", "int takes no length");
    expect_type_refused("int(0)", "int takes no length");
    expect_type_refused("boolean(1)", "boolean takes no length");
    expect_type_refused("varchar", "the length is missing, as in varchar(20)");
    expect_type_refused("binary", "the length is missing, as in binary(20)");
    expect_type_refused("char(0)", "the length of char is from 1 to 65535");
    expect_type_refused("varbinary(32768)", "the length of varbinary is from 1 to 32767");
    expect_type_refused("dec(39)", "dec has from 1 to 38 digits");
    expect_type_refused("dec(3,4)", "behind the point of dec(3,...) stand 0 to 3 digits");
    for (const char *type : {"int(", "int()", "int(x)", "int(4", "int(4)x", "int(-1)", "dec(4,2"})
        expect_type_refused(type,
                            "in brackets behind the name stands a length or a shape, as in varchar(20) or dec(10,2)");
}

TEST(usage, nothing_of_a_type_can_be_cut)
{
    const input in("id\n1\n");
    const std::string others = "; there is one for char, varchar, binary, varbinary";
    expect_refused(in.load({"--column", "id:int", "--cut"}), "--cut: there is no cast that cuts for int" + others);
    expect_refused(in.load({"--cut", "--column", "id:text", "--column", "id:dec(5,2)"}),
                   "--cut: there is no cast that cuts for text" + others);
    expect_refused(in.load({"--cut", "--column", "id:varchar(5)", "--column", "id:varchar2(5)"}),
                   "--cut: there is no cast that cuts for varchar2(5)" + others);
}

TEST(usage, named_column_stands_twice_in_the_header)
{
    const input in("id,x,id\n1,2,3\n");
    expect_refused(in.load({"--column", "id:int"}),
                   "column \"id\" stands more than once in the header of " + in.shown());
    EXPECT_EQ(in.load({"--column", "x:int"}).output, "x\n2\n") << "another column is not in doubt";
}

TEST(usage, options_are_missing_or_unknown)
{
    const input in("id\n1\n");
    expect_refused(in.load({}), "--column is required; see bcast csv --help");
    expect_refused(run_bcast({"csv"}), "FILE is required; see bcast csv --help");
    expect_refused(in.load({"--columns", "id:int", "--column", "id:int"}),
                   "The following arguments were not expected: id:int --columns; see bcast csv --help");
    expect_refused(run_bcast({}), "A subcommand is required; see bcast --help");
    EXPECT_EQ(run_bcast({"load"}).exit_status, 2);
    EXPECT_EQ(run_bcast({"list", "in.csv"}).exit_status, 2);
}

TEST(usage, usage_error_leaves_output_files_as_they_were)
{
    const input in("id\n1\n");
    const std::string table = in.directory.write("table.csv", "old");
    in.load({"--column", "no:int", "--output", table});
    EXPECT_EQ(content_of(table), "old");
    in.load({"--column", "id:int", "--output", table, "--errors", in.directory.path("no/such.csv")});
    EXPECT_EQ(content_of(table), "old");
}

TEST(usage, help_and_version_go_to_standard_output)
{
    EXPECT_EQ(run_bcast({"--version"}).output, "bcast " BCAST_VERSION "\n");
    for (const std::vector<std::string> &command :
         {std::vector<std::string>{}, {"csv"}, {"cast"}, {"compare"}, {"list"}}) {
        std::vector<std::string> arguments = command;
        arguments.push_back("--help");
        const run_result run = run_bcast(arguments);
        EXPECT_EQ(run.exit_status, 0) << run.how;
        EXPECT_EQ(run.errors, "");
        EXPECT_NE(run.output.find("Example:\n  bcast " + (command.empty() ? "csv" : command[0])), std::string::npos)
            << run.output;
    }
}

TEST(usage, empty_arguments_are_told_by_what_they_are_for)
{
    const input in("id\n1\n");
    expect_refused(in.load({"--column", ""}), "--column \"\": expected NAME:TYPE");
    expect_refused(in.load({"--column", "id:int", "--output", ""}), "cannot open \"\": No such file or directory");
    expect_refused(in.load({"--column", "id:int", "--errors", ""}), "cannot open \"\": No such file or directory");
    expect_refused(run_bcast({"csv", "", "--column", "id:int"}), "cannot open \"\": No such file or directory");
    const run_result run = run_bcast({"cast", "--from", "", "--to", "int", "1"});
    EXPECT_EQ(run.exit_status, 2) << run.how;
}

// ---- Files that cannot be read

TEST(usage, input_is_missing_a_directory_or_closed)
{
    const temporary_directory directory;
    expect_refused(run_bcast({"csv", directory.path("none.csv"), "--column", "a:int"}),
                   "cannot open \"" + directory.path("none.csv") + "\": No such file or directory");
    expect_refused(run_bcast({"csv", directory.path(""), "--column", "a:int"}),
                   "cannot read \"" + directory.path("") + "\": Is a directory");
    expect_refused(run_bcast({"csv", "/proc/self/mem", "--column", "a:int"}),
                   "cannot read \"/proc/self/mem\": Input/output error");
    expect_refused(run_bcast({"csv", "-", "--column", "a:int"}, {.input = closed_stream()}),
                   "cannot read standard input: Bad file descriptor");
}

TEST(usage, input_that_fails_in_the_middle_loses_no_records)
{
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
    ASSERT_EQ(write(ends[1], "a\n1\n2", 5), 5);
    // The other end stays open: what is not there yet is an error of a pipe that does not wait.
    const run_result run = run_bcast({"csv", "-", "--column", "a:int"}, {.input = descriptor_stream(ends[0])});
    close(ends[0]);
    close(ends[1]);
    EXPECT_EQ(run.exit_status, 2) << run.how;
    EXPECT_EQ(run.output, "a\n1\n");
    EXPECT_EQ(run.errors, "column  type  rows  nulls  failed\n"
                          "a       int      1      0       0\n"
                          "bcast: cannot read standard input: Resource temporarily unavailable\n");
}

TEST(usage, input_without_a_header)
{
    for (const char *text : {"", "\n", "\r\n\n", "\xEF\xBB\xBF"}) {
        const input in(text);
        expect_refused(in.load({"--column", "a:int"}), in.shown() + " is empty: there is no header line");
    }
    expect_refused(run_bcast({"csv", "-", "--column", "a:int"}), "standard input is empty: there is no header line");
}

TEST(usage, header_that_breaks_the_format)
{
    const input in("a,\"b\n1,2\n");
    expect_refused(in.load({"--column", "a:int"}),
                   in.shown() + ": line 1: the input ends inside the quoted field that begins in this line");
}

// ---- Records that break the format: those in front of them are loaded, and told

struct broken {
    const char *name;
    const char *text; // behind the header a,b and two good records
    const char *message;
};

void PrintTo(const broken &record, std::ostream *stream) { *stream << testing::PrintToString(record.text); }

class broken_record : public testing::TestWithParam<broken> {};

TEST_P(broken_record, ends_the_load_behind_the_records_in_front_of_it)
{
    const input in("a,b\n1,2\n\nx,\"4\n\"\n" + std::string(GetParam().text));
    const run_result run = in.load({"--column", "b:int", "--column", "a:int"});
    EXPECT_EQ(run.exit_status, 2) << run.how;
    EXPECT_EQ(run.output, "b,a\n2,1\n4,\n");
    EXPECT_EQ(run.errors, "row,column,text,code,name\n"
                          "2,a,x,-6111,ERR_BAD_CONVERSION\n"
                          "column  type  rows  nulls  failed\n"
                          "b       int      2      0       0\n"
                          "a       int      2      0       1\n"
                          "                                1  -6111 ERR_BAD_CONVERSION\n"
                          "bcast: " +
                              in.shown() + ": " + GetParam().message + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    , broken_record,
    testing::Values(
        broken{"too_few_fields", "5\n7,8\n", "line 6: record 3 has 1 fields, but the header has 2"},
        broken{"too_many_fields", "5,6,7\n7,8\n", "line 6: record 3 has 3 fields, but the header has 2"},
        broken{"too_many_fields_in_the_last_line", "5,6,", "line 6: record 3 has 3 fields, but the header has 2"},
        broken{"field_count_of_a_record_of_two_lines", "\"5\n\"\n7,8\n",
               "line 6: record 3 has 1 fields, but the header has 2"},
        broken{"blank_line", " \n7,8\n", "line 6: record 3 has 1 fields, but the header has 2"},
        broken{"no_closing_quote", "7,\"8\n9,10\n",
               "line 6: the input ends inside the quoted field that begins in this line"},
        broken{"bytes_behind_a_closing_quote", "5,\"6\"7\n7,8\n", "line 6: bytes behind the closing quote of field 2"}),
    [](const auto &test) { return std::string(test.param.name); });

TEST(usage, broken_record_behind_many_batches_loses_none)
{
    std::string text = "a,b\n", table = "a\n";
    for (int row = 1; row <= 9000; row++) {
        text += std::to_string(row) + ",x\n";
        table += std::to_string(row) + "\n";
    }
    const input in(text + "9001\n");
    const run_result run = in.load({"--column", "a:int"});
    EXPECT_EQ(run.exit_status, 2) << run.how;
    EXPECT_EQ(run.output, table);
    EXPECT_NE(run.errors.find(": line 9002: record 9001 has 1 fields, but the header has 2\n"), std::string::npos)
        << run.errors;
}

// ---- Files that cannot be written

TEST(usage, output_cannot_be_opened)
{
    const input in("a\n1\n");
    const std::string file = in.directory.path("no/such.csv");
    expect_refused(in.load({"--column", "a:int", "--output", file}),
                   "cannot open \"" + file + "\": No such file or directory");
    expect_refused(in.load({"--column", "a:int", "--errors", file}),
                   "cannot open \"" + file + "\": No such file or directory");
    expect_refused(in.load({"--column", "a:int", "--output", in.directory.path("")}),
                   "cannot open \"" + in.directory.path("") + "\": Is a directory");
}

TEST(usage, output_is_a_file_in_use)
{
    const input in("a\n1\n");
    const std::string other = in.directory.path("other.csv");
    const auto in_use = [](const std::string &file) {
        return "\"" + file + "\" is a file that this command reads or writes already";
    };
    expect_refused(in.load({"--column", "a:int", "--output", in.file}), in_use(in.file));
    expect_refused(in.load({"--column", "a:int", "--errors", in.file}), in_use(in.file));
    EXPECT_EQ(content_of(in.file), "a\n1\n");
    expect_refused(in.load({"--column", "a:int", "--output", other, "--errors", other}), in_use(other));

    std::filesystem::create_hard_link(in.file, in.directory.path("link.csv"));
    expect_refused(in.load({"--column", "a:int", "--output", in.directory.path("link.csv")}),
                   in_use(in.directory.path("link.csv")));
    EXPECT_EQ(content_of(in.file), "a\n1\n");
}

TEST(usage, both_standard_streams_may_lead_to_one_file)
{
    const temporary_directory directory;
    const std::string all = directory.write("all.txt", "");
    const run_result run = run_bcast({"csv", directory.write("in.csv", "a\n1\n"), "--column", "a:int"},
                                     {.output = to_file(all), .errors = to_file(all)});
    EXPECT_EQ(run.exit_status, 0) << run.how;
}

TEST(usage, full_disk_is_noticed_wherever_it_is)
{
    const input in("a\n1\nx\n");
    const std::string full = ": No space left on device";
    const run_result output = in.load({"--column", "a:int", "--output", "/dev/full", "--errors", "/dev/null"});
    expect_refused(output, "cannot write \"/dev/full\"" + full);
    const run_result errors = in.load({"--column", "a:int", "--output", "/dev/null", "--errors", "/dev/full"});
    expect_refused(errors, "cannot write \"/dev/full\"" + full);
    const run_result standard_output =
        run_bcast({"csv", in.file, "--column", "a:int", "--errors", "/dev/null"}, {.output = to_file("/dev/full")});
    expect_refused(standard_output, "cannot write standard output" + full);

    EXPECT_EQ(run_bcast({"csv", in.file, "--column", "a:int"}, {.errors = to_file("/dev/full")}).exit_status, 2);
    for (const std::vector<std::string> &arguments : {std::vector<std::string>{"--help"},
                                                      {"--version"},
                                                      {"csv", "--help"},
                                                      {"list"},
                                                      {"cast", "--from", "int", "--to", "text", "1"},
                                                      {"compare", "<", "1"}})
        expect_refused(run_bcast(arguments, {.output = to_file("/dev/full")}), "cannot write standard output" + full);
    EXPECT_EQ(
        run_bcast({"cast", "--from", "varchar", "--to", "int", "x"}, {.errors = to_file("/dev/full")}).exit_status, 2);
    EXPECT_EQ(run_bcast({"list"}, {.errors = to_file("/dev/full")}).exit_status, 2);
}

TEST(usage, closed_pipe_is_noticed)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    const input in("a\n1\n");
    for (const std::vector<std::string> &arguments : {std::vector<std::string>{"csv", in.file, "--column", "a:int"},
                                                      {"list"},
                                                      {"cast", "--from", "int", "--to", "text", "1"}})
        expect_refused(run_bcast(arguments, {.output = descriptor_stream(ends[1])}),
                       "cannot write standard output: Broken pipe");
    close(ends[1]);
}

TEST(usage, closed_streams_are_not_mistaken_for_files)
{
    const input in("a\n1\nx\n");
    const std::string table = in.directory.path("table.csv");
    const std::string failures = in.directory.path("failures.csv");

    const run_result no_output =
        run_bcast({"csv", in.file, "--column", "a:int", "--errors", failures}, {.output = closed_stream()});
    expect_refused(no_output, "cannot write standard output: Bad file descriptor");

    const run_result no_errors =
        run_bcast({"csv", in.file, "--column", "a:int", "--output", table}, {.errors = closed_stream()});
    EXPECT_EQ(no_errors.exit_status, 2) << no_errors.how;

    const run_result only_files =
        run_bcast({"csv", in.file, "--column", "a:int", "--output", table, "--errors", failures},
                  {.input = closed_stream(), .output = closed_stream()});
    EXPECT_EQ(only_files.exit_status, 1) << only_files.how << only_files.errors;
    EXPECT_EQ(content_of(table), "a\n1\n\n");
    EXPECT_EQ(content_of(failures), "row,column,text,code,name\n2,a,x,-6111,ERR_BAD_CONVERSION\n");
}

} // namespace
} // namespace bcast::test
