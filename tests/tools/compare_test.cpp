// bcast compare.
#include "process.h"

#include <gtest/gtest.h>

#include <array>

namespace bcast::test {
namespace {

const std::string bad_conversion =
    "error -6111 ERR_BAD_CONVERSION: text is no value of the target type, or the conversion is not allowed\n";

constexpr std::array operators = {"<", "<=", "=", "<>", ">=", ">"};

// What each operator makes of a literal: an integer to compare with, or the rows for which the answer is true.
struct literal {
    std::string text;
    std::string type;
    std::array<std::string, 6> meanings; // by operator
};

const std::string every = "every row", no = "no row";

const std::vector<literal> literals = {
    {"5", "int", {"5", "5", "5", "5", "5", "5"}},
    {"5", "int64", {"5", "5", "5", "5", "5", "5"}},
    {"5.0", "int", {"5", "5", "5", "5", "5", "5"}},
    {"1e3", "int64", {"1000", "1000", "1000", "1000", "1000", "1000"}},
    {"5.5", "int", {"6", "5", no, every, "6", "5"}},
    {"5.5", "int64", {"6", "5", no, every, "6", "5"}},
    {"-5.5", "int", {"-5", "-6", no, every, "-5", "-6"}},
    {"-5.5", "int64", {"-5", "-6", no, every, "-5", "-6"}},
    {"-0.5", "int", {"0", "-1", no, every, "0", "-1"}},
    {"-0.5", "int64", {"0", "-1", no, every, "0", "-1"}},
    {"0.5", "int", {"1", "0", no, every, "1", "0"}},
    {"0.5", "int64", {"1", "0", no, every, "1", "0"}},
    {"2147483647.5", "int", {every, "2147483647", no, every, no, "2147483647"}},
    {"2147483648", "int", {every, every, no, every, no, no}},
    {"2147483648", "int64", {"2147483648", "2147483648", "2147483648", "2147483648", "2147483648", "2147483648"}},
    {"-2147483648.5", "int", {"-2147483648", no, no, every, "-2147483648", every}},
    {"-2147483649", "int", {no, no, no, every, every, every}},
    {"9223372036854775808", "int", {every, every, no, every, no, no}},
    {"9223372036854775808", "int64", {every, every, no, every, no, no}},
    {"-9223372036854775809", "int", {no, no, no, every, every, every}},
    {"-9223372036854775809", "int64", {no, no, no, every, every, every}},
    {"1e400", "int64", {every, every, no, every, no, no}},
};

std::string expected_line(const literal &each, std::size_t k)
{
    const std::string op = operators[k], asked = "x " + op + " " + each.text, &meaning = each.meanings[k];
    if (meaning != every && meaning != no)
        return asked + " is x " + op + " " + meaning + "\n";
    const std::string where = op == "=" || op == "<>" ? "equal to no "
                              : each.text[0] == '-'   ? "below every "
                                                      : "above every ";
    return where + each.type + ": " + asked + " is true for " + meaning + "\n";
}

TEST(compare, literal_becomes_an_integer_or_an_answer_for_all_rows)
{
    for (const literal &each : literals)
        for (std::size_t k = 0; k < operators.size(); k++) {
            const run_result run = run_bcast({"compare", operators[k], each.text, "--type", each.type});
            EXPECT_EQ(run.exit_status, 0) << run.how;
            EXPECT_EQ(run.output, expected_line(each, k));
            EXPECT_EQ(run.errors, "");
        }
}

// The answers themselves, by comparing small numbers: "x < 5.5 is x < 6", "... is true for every row".
TEST(compare, answer_is_that_of_the_literal_itself)
{
    const auto holds = [](double x, const std::string &op, double y) {
        return op == "<"    ? x < y
               : op == "<=" ? x <= y
               : op == "="  ? x == y
               : op == "<>" ? x != y
               : op == ">=" ? x >= y
                            : x > y;
    };
    for (int quarters = -9; quarters <= 9; quarters++) {
        for (const std::string op : operators) {
            const double value = quarters / 4.0;
            const std::string line = run_bcast({"compare", op, std::to_string(value)}).output;
            const std::size_t is = line.find(" is ");
            ASSERT_NE(is, std::string::npos) << line;
            const std::string answer = line.substr(is + 4);
            for (int x = -4; x <= 4; x++) {
                const bool told = answer == "true for every row\n" ? true
                                  : answer == "true for no row\n"
                                      ? false
                                      : holds(x, op, std::stod(answer.substr(answer.rfind(' '))));
                EXPECT_EQ(told, holds(x, op, value)) << line << "x is " << x;
            }
        }
    }
}

TEST(compare, type_is_int64_where_none_is_given)
{
    EXPECT_EQ(run_bcast({"compare", "<", "2147483648"}).output, "x < 2147483648 is x < 2147483648\n");
    EXPECT_EQ(run_bcast({"compare", "--type=int", "<", "2147483648"}).output,
              "above every int: x < 2147483648 is true for every row\n");
}

TEST(compare, unequal_has_two_names)
{
    EXPECT_EQ(run_bcast({"compare", "!=", "7"}).output, "x <> 7 is x <> 7\n");
    EXPECT_EQ(run_bcast({"compare", "!=", "7.5"}).output, "equal to no int64: x <> 7.5 is true for every row\n");
}

TEST(compare, text_that_is_no_number_fails_under_every_operator)
{
    for (const char *type : {"int", "int64"})
        for (const char *op : operators)
            for (const std::string text : {"abc", "", " ", "1x", "0x10", "-"}) {
                const run_result run = run_bcast({"compare", "--type", type, op, text});
                EXPECT_EQ(run.exit_status, 1) << run.how;
                EXPECT_EQ(run.output, "");
                EXPECT_EQ(run.errors, "\"" + text + "\": " + bad_conversion);
            }
}

TEST(compare, longest_literal_is_compared_and_a_longer_one_fails)
{
    const std::string longest = std::string(65534, '0') + "7";
    const std::string shown = "\"" + std::string(200, '0') + "...\"";
    EXPECT_EQ(run_bcast({"compare", "<", longest}).output, "x < " + shown + " is x < 7\n");
    const run_result run = run_bcast({"compare", "<", longest + "8"});
    EXPECT_EQ(run.exit_status, 1) << run.how;
    EXPECT_EQ(run.errors, shown + ": error -6108 ERR_TRUNCATED: character or binary value, or the text of a number, "
                                  "longer than the target\n");
}

TEST(compare, literals_are_taken_as_they_stand)
{
    EXPECT_EQ(run_bcast({"compare", ">", "-.5", "--type", "int"}).output, "x > -.5 is x > -1\n");
    EXPECT_EQ(run_bcast({"compare", ">", " 7\n"}).output, "x > \" 7\\n\" is x > 7\n");
    const run_result run = run_bcast({"compare", ">", "--", "--type"});
    EXPECT_EQ(run.exit_status, 1) << run.how;
    EXPECT_EQ(run.errors, "\"--type\": " + bad_conversion);
}

TEST(compare, usage_is_wrong)
{
    const auto expect_refused = [](const std::vector<std::string> &arguments, const std::string &message) {
        const run_result run = run_bcast(arguments);
        EXPECT_EQ(run.exit_status, 2) << run.how;
        EXPECT_EQ(run.errors, "bcast: " + message + "\n");
        EXPECT_EQ(run.output, "");
    };
    const std::string two = "OP and LITERAL are required, and nothing else; see bcast compare --help";
    expect_refused({"compare"}, two);
    expect_refused({"compare", "<"}, two);
    expect_refused({"compare", "<", "1", "2"}, two);
    expect_refused({"compare", "=<", "1"}, "OP \"=<\": expected one of <, <=, =, <> (or !=), >=, >");
    expect_refused({"compare", "<", "1", "--type", "dec"}, "--type \"dec\": expected int or int64");
    expect_refused({"compare", "<", "1", "--type"}, "--type: 1 required TYPE missing; see bcast compare --help");
    expect_refused({"compare", "<", "1", "--from", "int"},
                   "The following argument was not expected: --from; see bcast compare --help");
}

} // namespace
} // namespace bcast::test
