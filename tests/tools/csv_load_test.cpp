#include "loaded.h"
#include "plain_csv.h"
#include "process.h"

#include <gtest/gtest.h>

#include <charconv>
#include <optional>
#include <sstream>

#include <unistd.h>

namespace bcast::test {
namespace {

const std::string source_directory = BCAST_SOURCE_DIR;

TEST(csv_load, sample_gives_the_expected_table_failures_and_sums)
{
    const loaded l = load_file(source_directory + "/examples/sample/orders.csv",
                               {"order:int", "quantity:smallint", "cents:int64", "shelf:tinyint"});
    const std::string expected = source_directory + "/tests/tools/expected/";
    EXPECT_EQ(l.run.exit_status, 1) << l.run.how;
    EXPECT_EQ(l.table, content_of(expected + "orders_table.csv"));
    EXPECT_EQ(l.failures, content_of(expected + "orders_failures.csv"));
    EXPECT_EQ(l.run.errors, "column    type      rows  nulls  failed\n"
                            "order     int         20      1       1\n"
                            "                                      1  -6102 ERR_OVERFLOW\n"
                            "quantity  smallint    20      1       5\n"
                            "                                      4  -6111 ERR_BAD_CONVERSION\n"
                            "                                      1  -6102 ERR_OVERFLOW\n"
                            "cents     int64       20      1       2\n"
                            "                                      1  -6111 ERR_BAD_CONVERSION\n"
                            "                                      1  -6102 ERR_OVERFLOW\n"
                            "shelf     tinyint     20      1       3\n"
                            "                                      1  -6111 ERR_BAD_CONVERSION\n"
                            "                                      2  -6102 ERR_OVERFLOW\n");
    EXPECT_EQ(l.run.output, "");
}

// ---- Files of the world, against a plain reading of them.

struct expectation {
    std::string table;
    std::string failures = no_failures;
    std::uint64_t failed = 0;
    std::uint64_t nulls = 0;
};

// Of a column of plain digits, of a type that holds so much.
expectation expect_column(const std::string &file, const std::string &name, std::int64_t least, std::int64_t greatest)
{
    const plain_csv csv = read_plainly(content_of(file), false);
    const auto &header = csv.records.at(0).fields;
    const auto field = std::size_t(std::find(header.begin(), header.end(), name) - header.begin());
    expectation expected = {.table = name + "\n"};
    for (std::size_t row = 1; row < csv.records.size(); row++) {
        const std::string &text = csv.records[row].fields.at(field);
        std::int64_t value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        EXPECT_TRUE(text.empty() || (error == std::errc() && end == text.data() + text.size())) << text;
        if (text.empty()) {
            expected.nulls++;
            expected.table += "\n";
        } else if (value < least || value > greatest) {
            expected.failed++;
            expected.table += "\n";
            expected.failures += std::to_string(row) + "," + name + "," + text + ",-6102,ERR_OVERFLOW\n";
        } else {
            expected.table += text + "\n";
        }
    }
    return expected;
}

TEST(csv_load, volumes_of_an_index_fail_as_int_where_they_overflow)
{
    const std::string file = source_directory + "/tests/data/sp500-2000.csv";
    const expectation expected = expect_column(file, "volume", INT32_MIN, INT32_MAX);
    const loaded l = load_file(file, {"volume:int"});
    EXPECT_EQ(l.run.exit_status, 1) << l.run.how;
    EXPECT_TRUE(l.table == expected.table);
    EXPECT_TRUE(l.failures == expected.failures);
    EXPECT_EQ(l.run.errors, "column  type  rows  nulls  failed\n"
                            "volume  int   5105      0    3565\n"
                            "                             3565  -6102 ERR_OVERFLOW\n");
    EXPECT_EQ(expected.failed, 3565u);
}

TEST(csv_load, volumes_of_an_index_are_int64)
{
    const std::string file = source_directory + "/tests/data/sp500-2000.csv";
    const loaded l = load_file(file, {"volume:int64"});
    EXPECT_EQ(l.run.exit_status, 0) << l.run.how;
    EXPECT_TRUE(l.table == expect_column(file, "volume", INT64_MIN, INT64_MAX).table);
    EXPECT_EQ(l.failures, no_failures);
    EXPECT_EQ(l.run.errors, "column  type   rows  nulls  failed\n"
                            "volume  int64  5105      0       0\n");
}

TEST(csv_load, bird_strikes_have_blanks_in_names_and_empty_fields)
{
    const std::string file = source_directory + "/tests/data/birdstrikes.csv";
    const expectation speed = expect_column(file, "Speed IAS in knots", INT32_MIN, INT32_MAX);
    const loaded l = load_file(file, {"Speed IAS in knots:int"});
    EXPECT_EQ(l.run.exit_status, 0) << l.run.how;
    EXPECT_TRUE(l.table == speed.table);
    EXPECT_EQ(l.failures, no_failures);
    EXPECT_EQ(l.run.errors, "column              type   rows  nulls  failed\n"
                            "Speed IAS in knots  int   10000   2836       0\n");
    EXPECT_EQ(speed.nulls, 2836u);

    const expectation cost = expect_column(file, "Cost Other", INT16_MIN, INT16_MAX);
    const loaded costs = load_file(file, {"Cost Other:smallint"});
    EXPECT_TRUE(costs.table == cost.table);
    EXPECT_TRUE(costs.failures == cost.failures);
    EXPECT_GT(cost.failed, 0u);
}

// ---- Columns

TEST(csv_load, columns_come_in_the_order_of_the_options)
{
    const loaded l = load("a,b,c\n1,2,3\n4,5,6\n", {"c:int", "a:tinyint"});
    EXPECT_EQ(l.run.exit_status, 0) << l.run.how;
    EXPECT_EQ(l.table, "c,a\n3,1\n6,4\n");
}

TEST(csv_load, column_may_be_loaded_several_times)
{
    const loaded l = load("a\n200\n40000\n", {"a:tinyint", "a:int", "a:smallint", "a:int"});
    EXPECT_EQ(l.run.exit_status, 1) << l.run.how;
    EXPECT_EQ(l.table, "a,a,a,a\n,200,200,200\n,40000,,40000\n");
    EXPECT_EQ(l.failures, no_failures + "1,a,200,-6102,ERR_OVERFLOW\n"
                                        "2,a,40000,-6102,ERR_OVERFLOW\n"
                                        "2,a,40000,-6102,ERR_OVERFLOW\n");
}

TEST(csv_load, type_is_behind_the_last_colon)
{
    const loaded l = load("a:b,a: b:int\n1,2\n", {"a:b:int", "a: b:int:smallint"});
    EXPECT_EQ(l.run.exit_status, 0) << l.run.how << l.run.errors;
    EXPECT_EQ(l.table, "a:b,a: b:int\n1,2\n");
}

TEST(csv_load, names_may_be_empty_quoted_and_not_ascii)
{
    const loaded l = load("\"x, \"\"y\"\"\",,{},[a],größe,\"l\nm\"\n1,2,3,4,5,6\n",
                          {"x, \"y\":int", ":int", "{}:int", "[a]:int", "größe:int", "l\nm:int"});
    EXPECT_EQ(l.run.exit_status, 0) << l.run.how << l.run.errors;
    EXPECT_EQ(l.table, "\"x, \"\"y\"\"\",,{},[a],größe,\"l\nm\"\n1,2,3,4,5,6\n");
    EXPECT_EQ(l.run.errors, "column      type  rows  nulls  failed\n"
                            "\"x, \\\"y\\\"\"  int      1      0       0\n"
                            "\"\"          int      1      0       0\n"
                            "{}          int      1      0       0\n"
                            "[a]         int      1      0       0\n"
                            "größe       int      1      0       0\n"
                            "\"l\\nm\"      int      1      0       0\n");
}

TEST(csv_load, type_is_named_in_any_letters_and_with_blanks)
{
    EXPECT_EQ(load("a\n1\n", {"a: SmallInt "}).table, "a\n1\n");
}

TEST(csv_load, every_type_has_its_range)
{
    const loaded l = load("n\n127\n128\n-128\n-129\n32767\n32768\n-32768\n-32769\n2147483647\n2147483648\n-2147483648\n"
                          "-2147483649\n9223372036854775807\n9223372036854775808\n-9223372036854775808\n"
                          "-9223372036854775809\n",
                          {"n:tinyint", "n:smallint", "n:int", "n:int64"});
    EXPECT_EQ(l.run.exit_status, 1) << l.run.how;
    EXPECT_EQ(l.table, "n,n,n,n\n127,127,127,127\n,128,128,128\n-128,-128,-128,-128\n,-129,-129,-129\n"
                       ",32767,32767,32767\n,,32768,32768\n,-32768,-32768,-32768\n,,-32769,-32769\n"
                       ",,2147483647,2147483647\n,,,2147483648\n,,-2147483648,-2147483648\n,,,-2147483649\n"
                       ",,,9223372036854775807\n,,,\n,,,-9223372036854775808\n,,,\n");
}

// ---- Records

TEST(csv_load, empty_and_quoted_empty_fields_are_nulls)
{
    const loaded l = load("a,b\n,1\n\"\",2\n", {"a:int", "b:int"});
    EXPECT_EQ(l.run.exit_status, 0) << l.run.how;
    EXPECT_EQ(l.table, "a,b\n,1\n,2\n");
    EXPECT_EQ(l.run.errors, "column  type  rows  nulls  failed\n"
                            "a       int      2      2       0\n"
                            "b       int      2      0       0\n");
}

TEST(csv_load, empty_line_is_a_record_only_in_a_file_of_one_column)
{
    EXPECT_EQ(load("a\n1\n\n\r\n2\n", {"a:int"}).table, "a\n1\n\n\n2\n");
    EXPECT_EQ(load("a,b\n1,2\n\n\r\n3,4\n", {"a:int"}).table, "a\n1\n3\n");
}

TEST(csv_load, empty_lines_count_as_lines_but_not_as_rows)
{
    const loaded l = load("\n\na,b\n\n1,2\n\nx,3\n\n4,5,6\n", {"a:int"});
    EXPECT_EQ(l.failures, no_failures + "2,a,x,-6111,ERR_BAD_CONVERSION\n");
    EXPECT_NE(l.run.errors.find(": line 9: record 3 has 3 fields, but the header has 2\n"), std::string::npos)
        << l.run.errors;
}

TEST(csv_load, header_alone_gives_a_header)
{
    for (const char *text : {"a,b", "a,b\r\n",
                             "\xEF\xBB\xBF"
                             "a,\"b\"\n\n"}) {
        const loaded l = load(text, {"b:int"});
        EXPECT_EQ(l.run.exit_status, 0) << l.run.how << l.run.errors;
        EXPECT_EQ(l.table, "b\n");
        EXPECT_EQ(l.failures, no_failures);
        EXPECT_EQ(l.run.errors, "column  type  rows  nulls  failed\n"
                                "b       int      0      0       0\n");
    }
}

TEST(csv_load, failed_texts_stand_as_they_were)
{
    using namespace std::string_literals;
    const loaded l = load("a,b\n\"1,2\",\"say \"\"no\"\"\"\r\n\"1\n2\", x \n\xFF\0\x80,\"\r\"\n"s, {"b:int", "a:int"});
    EXPECT_EQ(l.run.exit_status, 1) << l.run.how;
    EXPECT_EQ(l.failures, no_failures + "1,b,\"say \"\"no\"\"\",-6111,ERR_BAD_CONVERSION\n"
                                        "1,a,\"1,2\",-6111,ERR_BAD_CONVERSION\n"
                                        "2,b, x ,-6111,ERR_BAD_CONVERSION\n"
                                        "2,a,\"1\n2\",-6111,ERR_BAD_CONVERSION\n"
                                        "3,b,\"\r\",-6111,ERR_BAD_CONVERSION\n"
                                        "3,a,\xFF\0\x80,-6111,ERR_BAD_CONVERSION\n"s);
}

// Rows around the end of a batch, and batches that follow one another.
TEST(csv_load, rows_are_numbered_through_all_batches)
{
    constexpr int rows = 10000;
    std::string text = "n,x\n", table = "n\n", failures = no_failures;
    for (int row = 1; row <= rows; row++) {
        const bool bad = row % 4096 <= 1 || row % 1000 == 7;
        text += (bad ? "x" : "") + std::to_string(row) + ",y\n";
        table += (bad ? "" : std::to_string(row)) + "\n";
        if (bad)
            failures += std::to_string(row) + ",n,x" + std::to_string(row) + ",-6111,ERR_BAD_CONVERSION\n";
    }
    const loaded l = load(text, {"n:int"});
    EXPECT_EQ(l.run.exit_status, 1) << l.run.how;
    EXPECT_EQ(l.table, table);
    EXPECT_EQ(l.failures, failures);
}

// ---- Streams

TEST(csv_load, standard_streams_are_the_default)
{
    const temporary_directory directory;
    const std::string file = directory.write("in.csv", "a\n1\nx\n");
    const std::string failures = no_failures + "2,a,x,-6111,ERR_BAD_CONVERSION\n"
                                               "column  type  rows  nulls  failed\n"
                                               "a       int      2      0       1\n"
                                               "                                1  -6111 ERR_BAD_CONVERSION\n";
    for (const std::vector<std::string> &streams :
         {std::vector<std::string>{}, {"--output", "-", "--errors", "-"}, {"-o", "-", "-e", "-"}}) {
        std::vector<std::string> arguments = {"csv", "-", "-c", "a:int"};
        arguments.insert(arguments.end(), streams.begin(), streams.end());
        const run_result run = run_bcast(arguments, {.input = from_file(file)});
        EXPECT_EQ(run.exit_status, 1) << run.how;
        EXPECT_EQ(run.output, "a\n1\n\n");
        EXPECT_EQ(run.errors, failures);
    }
}

TEST(csv_load, standard_error_has_no_failure_header_without_failures)
{
    const temporary_directory directory;
    const run_result run = run_bcast({"csv", directory.write("in.csv", "a\n1\n"), "--column", "a:int"});
    EXPECT_EQ(run.exit_status, 0) << run.how;
    EXPECT_EQ(run.errors, "column  type  rows  nulls  failed\n"
                          "a       int      1      0       0\n");
}

TEST(csv_load, pipe_is_read_to_its_end)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const std::string_view text = "a,b\n1,2\n3,4";
    ASSERT_EQ(write(ends[1], text.data(), text.size()), ssize_t(text.size()));
    close(ends[1]);
    const run_result run = run_bcast({"csv", "-", "--column", "b:int"}, {.input = descriptor_stream(ends[0])});
    close(ends[0]);
    EXPECT_EQ(run.exit_status, 0) << run.how << run.errors;
    EXPECT_EQ(run.output, "b\n2\n4\n");
}

TEST(csv_load, outputs_replace_what_the_files_held)
{
    const temporary_directory directory;
    const std::string long_text(5000, 'x');
    const std::string table = directory.write("table.csv", long_text);
    const std::string failures = directory.write("failures.csv", long_text);
    run_bcast({"csv", directory.write("in.csv", "a\n1\n"), "-c", "a:int", "-o", table, "-e", failures});
    EXPECT_EQ(content_of(table), "a\n1\n");
    EXPECT_EQ(content_of(failures), no_failures);
}

} // namespace
} // namespace bcast::test
