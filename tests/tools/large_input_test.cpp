#include "process.h"
#include "tools/csv_reader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iostream>
#include <string_view>

namespace bcast::test {
namespace {

constexpr std::size_t mebibyte = std::size_t(1) << 20;
constexpr long limit_kib = 100 * 1024;

// Sanitizers keep shadows of the memory, and what was freed: there the peak says nothing of the tool.
void expect_peak_below_limit(const run_result &run)
{
    if (std::string_view(BCAST_SANITIZE).empty())
        EXPECT_LT(run.peak_kib, limit_kib);
    else
        std::cout << "peak memory is not looked at in a build with -fsanitize=" BCAST_SANITIZE "\n";
}

TEST(large_input, is_loaded_in_constant_memory)
{
    const temporary_directory directory;
    std::uint64_t rows = 0;
    {
        std::ofstream file(directory.path("large.csv"), std::ios::binary);
        file << "id,text,\"price\",day\n";
        for (; file.tellp() < std::streamoff(64 * mebibyte); rows++)
            file << rows << ",\"a street, no. " << rows % 200 << "\",-" << rows * 7 << ",2024-06-07\r\n";
    }
    const run_result run =
        run_bcast({"csv", directory.path("large.csv"), "--column", "id:int", "--column", "price:int64", "--column",
                   "text:int", "--output", directory.path("table.csv"), "--errors", directory.path("failures.csv")});
    EXPECT_EQ(run.exit_status, 1) << run.how << run.errors; // text is no int
    expect_peak_below_limit(run);

    std::ifstream table(directory.path("table.csv"), std::ios::binary);
    std::string line;
    std::getline(table, line);
    EXPECT_EQ(line, "id,price,text");
    std::uint64_t row = 0;
    for (; std::getline(table, line); row++)
        ASSERT_EQ(line, std::to_string(row) + "," + (row > 0 ? "-" : "") + std::to_string(row * 7) + ",");
    EXPECT_EQ(row, rows);
}

// Short texts, but a row takes the declared length.
TEST(large_input, values_that_are_filled_up_take_constant_memory)
{
    const temporary_directory directory;
    std::string text = "a\n";
    for (int row = 0; row < 4000; row++)
        text += "01\n";
    const run_result run = run_bcast({"csv", directory.write("short.csv", text), "--column", "a:binary(32767)",
                                      "--column", "a:char(65535)", "--output", "/dev/null"});
    EXPECT_EQ(run.exit_status, 0) << run.how << run.errors;
    EXPECT_EQ(run.errors, "column  type           rows  nulls  failed\n"
                          "a       binary(32767)  4000      0       0\n"
                          "a       char(65535)    4000      0       0\n");
    expect_peak_below_limit(run);
}

TEST(large_input, field_of_a_column_that_is_not_named_is_not_stored)
{
    const temporary_directory directory;
    {
        std::ofstream file(directory.path("wide.csv"), std::ios::binary);
        file << "a,b,c\n\"";
        const std::string piece(mebibyte, 'x');
        for (int k = 0; k < 128; k++)
            file << piece;
        file << "\",2,";
        for (int k = 0; k < 128; k++)
            file << piece;
        file << "\n";
    }
    const run_result run = run_bcast({"csv", directory.path("wide.csv"), "--column", "b:int"});
    EXPECT_EQ(run.exit_status, 0) << run.how << run.errors;
    EXPECT_EQ(run.output, "b\n2\n");
    expect_peak_below_limit(run);
}

TEST(large_input, longest_field_is_loaded_and_a_longer_one_is_an_input_error)
{
    const temporary_directory directory;
    const std::string longest = std::string(tool::csv_reader::longest_field - 1, '0') + "7";
    const run_result loaded =
        run_bcast({"csv", directory.write("longest.csv", "a\n" + longest + "\n8\n"), "--column", "a:int"});
    EXPECT_EQ(loaded.exit_status, 0) << loaded.how << loaded.errors;
    EXPECT_EQ(loaded.output, "a\n7\n8\n");

    const std::string file = directory.write("longer.csv", "a\n6\n0" + longest + "\n8\n");
    const run_result refused = run_bcast({"csv", file, "--column", "a:int"});
    EXPECT_EQ(refused.exit_status, 2) << refused.how;
    EXPECT_EQ(refused.output, "a\n6\n");
    EXPECT_EQ(refused.errors, "column  type  rows  nulls  failed\n"
                              "a       int      1      0       0\n"
                              "bcast: \"" +
                                  file +
                                  "\": line 3: field 1, which begins in this line, is longer than 16777216 bytes\n");
}

TEST(large_input, header_has_a_longest_size)
{
    const temporary_directory directory;
    const std::string commas(65535, ',');
    const std::string file = directory.write("commas.csv", commas + "\n");
    const run_result fields = run_bcast({"csv", file, "--column", "a:int"});
    EXPECT_EQ(fields.exit_status, 2) << fields.how;
    EXPECT_EQ(fields.errors,
              "bcast: \"" + file + "\": line 1: the header is longer than 65535 fields or 16777216 bytes\n");

    const std::string name(8 * mebibyte + 1, 'x');
    const run_result bytes =
        run_bcast({"csv", directory.write("names.csv", name + "," + name + "\n"), "--column", "a:int"});
    EXPECT_EQ(bytes.exit_status, 2) << bytes.how;
}

} // namespace
} // namespace bcast::test
