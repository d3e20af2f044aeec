#include "process.h"
#include "terminal.h"
#include "tools/progress.h"

#include <gtest/gtest.h>

#include <fstream>

namespace bcast::test {
namespace {

// A file of so many bytes at least, of records 1,ok; the records that are told have a text in the column number.
std::string write_large_file(const temporary_directory &directory, std::size_t bytes,
                             const std::vector<std::uint64_t> &bad_rows = {})
{
    static constexpr std::string_view good = "1,a rather long text to fill the file more quickly\n";
    const std::string path = directory.path("large.csv");
    std::ofstream file(path, std::ios::binary);
    file << "number,text\n";
    auto bad = bad_rows.begin();
    for (std::uint64_t row = 1; row <= bytes / good.size() + 1; row++) {
        if (bad != bad_rows.end() && *bad == row) {
            file << "bad";
            ++bad;
        }
        file << good;
    }
    return path;
}

constexpr std::size_t large = (std::size_t(32) << 20) + 1;
constexpr std::uint64_t large_rows = large / 51 + 1; // 51 bytes a record

std::string sums(std::uint64_t failed)
{
    const std::string rows = std::to_string(large_rows);
    std::string text = "column  type    rows  nulls  failed\n"
                       "number  int   " +
                       rows + "      0       " + std::to_string(failed) + "\n";
    if (failed > 0)
        text += "                                  " + std::to_string(failed) + "  -6111 ERR_BAD_CONVERSION\n";
    return text;
}

TEST(progress, bar_appears_on_a_terminal_and_is_erased)
{
    const temporary_directory directory;
    const std::string file = write_large_file(directory, large);
    terminal screen;
    const run_result run =
        run_bcast({"csv", file, "--column", "number:int"},
                  {.output = to_file("/dev/null"), .errors = descriptor_stream(screen.descriptor())});
    const std::string sent = screen.received();
    EXPECT_EQ(run.exit_status, 0) << run.how << sent;
    EXPECT_NE(sent.find("\r["), std::string::npos) << sent;
    EXPECT_NE(sent.find(" rows/s"), std::string::npos) << sent;
    EXPECT_EQ(screen_after(sent), sums(0));
}

TEST(progress, bar_does_not_mix_with_failures)
{
    const temporary_directory directory;
    const std::string file = write_large_file(directory, large, {3, 70000, 600000});
    terminal screen;
    const run_result run =
        run_bcast({"csv", file, "--column", "number:int"},
                  {.output = to_file("/dev/null"), .errors = descriptor_stream(screen.descriptor())});
    const std::string sent = screen.received();
    EXPECT_EQ(run.exit_status, 1) << run.how << sent;
    EXPECT_NE(sent.find("\r["), std::string::npos) << sent;
    EXPECT_EQ(screen_after(sent), "row,column,text,code,name\n"
                                  "3,number,bad1,-6111,ERR_BAD_CONVERSION\n"
                                  "70000,number,bad1,-6111,ERR_BAD_CONVERSION\n"
                                  "600000,number,bad1,-6111,ERR_BAD_CONVERSION\n" +
                                      sums(3));
}

TEST(progress, no_bar_where_standard_error_is_no_terminal)
{
    const temporary_directory directory;
    const std::string file = write_large_file(directory, large);
    const run_result run = run_bcast({"csv", file, "--column", "number:int"}, {.output = to_file("/dev/null")});
    EXPECT_EQ(run.exit_status, 0) << run.how;
    EXPECT_EQ(run.errors, sums(0));
}

TEST(progress, no_bar_where_the_table_goes_to_the_terminal)
{
    const temporary_directory directory;
    const std::string file = write_large_file(directory, large);
    terminal screen;
    const run_result run =
        run_bcast({"csv", file, "--column", "number:int"},
                  {.output = descriptor_stream(screen.descriptor()), .errors = descriptor_stream(screen.descriptor())});
    EXPECT_EQ(run.exit_status, 0) << run.how;
    EXPECT_EQ(screen.received().find('['), std::string::npos);
}

TEST(progress, no_bar_for_a_short_input)
{
    const temporary_directory directory;
    terminal screen;
    const run_result run = run_bcast({"csv", directory.write("short.csv", "n\n1\n"), "--column", "n:int"},
                                     {.errors = descriptor_stream(screen.descriptor())});
    EXPECT_EQ(run.exit_status, 0) << run.how;
    EXPECT_EQ(screen.received(), "column  type  rows  nulls  failed\r\n"
                                 "n       int      1      0       0\r\n");
}

TEST(progress, line_tells_share_rows_and_rate)
{
    EXPECT_EQ(tool::progress_line(0, 100, 0, 0.5), "[..............................]   0%  0 rows  0 rows/s");
    EXPECT_EQ(tool::progress_line(50, 100, 1234567, 0.5),
              "[###############...............]  50%  1.23 M rows  2.47 M rows/s");
    EXPECT_EQ(tool::progress_line(100, 100, 999, 1), "[##############################] 100%  999 rows  999 rows/s");
    EXPECT_EQ(tool::progress_line(150, 100, 1000, 1),
              "[##############################] 100%  1.00 k rows  1.00 k rows/s")
        << "a file that grew";
    EXPECT_EQ(tool::progress_line(50, 0, 12345678, 10), "12.3 M rows  1.23 M rows/s") << "a pipe has no size";
}

} // namespace
} // namespace bcast::test
