#include "process.h"

#include <gtest/gtest.h>

namespace bcast::test {
namespace {

run_result cast(const std::string &from, const std::string &to, std::vector<std::string> values)
{
    values.insert(values.begin(), {"cast", "--from", from, "--to", to});
    return run_bcast(values);
}

void expect_results(const run_result &run, const std::string &results)
{
    EXPECT_EQ(run.exit_status, 0) << run.how;
    EXPECT_EQ(run.output, results);
    EXPECT_EQ(run.errors, "");
}

void expect_refused(const run_result &run, const std::string &message)
{
    EXPECT_EQ(run.exit_status, 2) << run.how;
    EXPECT_EQ(run.errors, "bcast: " + message + "\n");
    EXPECT_EQ(run.output, "");
}

const std::string overflow = "error -6102 ERR_OVERFLOW: numeric value does not fit the target\n";
const std::string bad_conversion =
    "error -6111 ERR_BAD_CONVERSION: text is no value of the target type, or the conversion is not allowed\n";
const std::string too_short =
    "error -6149 ERR_TARGET_TOO_SHORT: text of an integer, bit, datetime or interval longer than the target\n";
const std::string truncated =
    "error -6108 ERR_TRUNCATED: character or binary value, or the text of a number, longer than the target\n";

TEST(cast, results_are_lines)
{
    expect_results(cast("varchar", "int", {"12", "-7", "1e3", " 5 ", "2.5"}), "12\n-7\n1000\n5\n3\n");
    expect_results(cast("tinyint", "int64", {"127", "-128"}), "127\n-128\n");
    expect_results(cast("int", "varchar(11)", {"-2147483648"}), "-2147483648\n");
    expect_results(cast("int64", "text", {"9223372036854775807", "0"}), "9223372036854775807\n0\n");
}

TEST(cast, every_value_has_its_answer)
{
    const run_result run = cast("varchar", "smallint", {"1", "70000", "x", "2"});
    EXPECT_EQ(run.exit_status, 1) << run.how;
    EXPECT_EQ(run.output, "1\n2\n");
    EXPECT_EQ(run.errors, "\"70000\": " + overflow + "\"x\": " + bad_conversion);
}

TEST(cast, failure_is_of_the_cast_or_of_the_source)
{
    const run_result run = cast("int", "tinyint", {"128", "3000000000", "abc", "127"});
    EXPECT_EQ(run.exit_status, 1) << run.how;
    EXPECT_EQ(run.output, "127\n");
    EXPECT_EQ(run.errors, "\"128\": " + overflow + "\"3000000000\" is no value of int: " + overflow +
                              "\"abc\" is no value of int: " + bad_conversion);
}

TEST(cast, text_longer_than_the_target_fails)
{
    const run_result run = cast("int64", "char(3)", {"1234", "-12", "-123"});
    EXPECT_EQ(run.exit_status, 1) << run.how;
    EXPECT_EQ(run.output, "-12\n");
    EXPECT_EQ(run.errors, "\"1234\": " + too_short + "\"-123\": " + too_short);
}

TEST(cast, empty_text_is_a_null_number)
{
    expect_results(cast("varchar", "int", {""}), "NULL\n");
    expect_results(cast("char(3)", "int", {""}), "NULL\n");
    expect_results(cast("int", "varchar(5)", {""}), "NULL\n");
    expect_results(cast("int", "int64", {""}), "NULL\n");
}

TEST(cast, blanks_that_a_char_counts_are_shown)
{
    expect_results(cast("int", "char(5)", {"42"}), "42   \n");
    expect_results(cast("int64", "char(20)", {"42"}), "42                  \n");
    expect_results(cast("smallint", "varchar2(5)", {"42"}), "42   \n");
    expect_results(cast("int", "varchar(5)", {"42"}), "42\n");
}

TEST(cast, source_with_a_length_holds_no_longer_text)
{
    expect_results(cast("char(3)", "int", {"12", "123"}), "12\n123\n");
    for (const std::string type : {"char(3)", "varchar(3)", "varchar2(3)"}) {
        const run_result run = cast(type, "int", {"1234"});
        EXPECT_EQ(run.exit_status, 1) << run.how;
        EXPECT_EQ(run.errors, "\"1234\" is no value of " + type + ": " + truncated);
    }
}

// char and varchar2 casts read 16 bits of a length: what is longer would be taken for something else.
TEST(cast, char_source_beyond_the_contract_is_refused)
{
    const std::string longest = std::string(65534, '0') + "7";
    for (const char *type : {"char", "varchar2"}) {
        expect_results(cast(type, "int", {longest}), "7\n");
        const run_result run = cast(type, "int", {longest + "8"});
        EXPECT_EQ(run.exit_status, 1) << run.how;
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "\"" + std::string(200, '0') + "...\": " + truncated);
    }
    expect_results(cast("varchar", "int", {longest + "8"}), "78\n");
}

TEST(cast, values_are_taken_as_they_stand)
{
    const run_result run = run_bcast({"cast", "1", "--to=int", "-2", "--from", "varchar", "-.5", "[3,4]", "{}", "list",
                                      "++", "-", "--", "--to", "-x", "--", "5"});
    EXPECT_EQ(run.exit_status, 1) << run.how;
    EXPECT_EQ(run.output, "1\n-2\n-1\n5\n");
    EXPECT_EQ(run.errors, "\"[3,4]\": " + bad_conversion + "\"{}\": " + bad_conversion + "\"list\": " + bad_conversion +
                              "\"++\": " + bad_conversion + "\"-\": " + bad_conversion + "\"--to\": " + bad_conversion +
                              "\"-x\": " + bad_conversion + "\"--\": " + bad_conversion);
}

TEST(cast, types_are_named_in_any_letters_and_with_blanks)
{
    expect_results(cast(" VarChar ( 4 ) ", "INT", {"12"}), "12\n");
}

TEST(cast, length_is_missing_or_not_taken)
{
    expect_refused(cast("int", "char", {"1"}), "--to char: the length is missing, as in char(20)");
    expect_refused(cast("int64", "varchar", {"1"}), "--to varchar: the length is missing, as in varchar(20)");
    expect_refused(cast("int", "binary", {"1"}), "--to binary: the length is missing, as in binary(20)");
    expect_refused(cast("binary", "int", {"01"}), "--from binary: the length is missing, as in binary(20)");
    expect_refused(cast("int", "text(9)", {"1"}), "--to text(9): text takes no length");
    expect_refused(cast("varchar", "int(9)", {"1"}), "--to int(9): int takes no length");
    expect_refused(cast("int(9)", "int64", {"1"}), "--from int(9): int takes no length");
    expect_refused(cast("double(10,2)", "int64", {"1"}), "--from double(10,2): double takes no length");
}

TEST(cast, length_or_shape_is_outside_of_its_bounds)
{
    for (const char *length : {"0", "65536", "4294967297", "99999999999999999999"})
        for (const std::string type : {"char", "varchar", "varchar2"}) {
            const std::string number = std::string(length).size() > 9 ? "2147483647" : length;
            expect_refused(cast("int", type + "(" + length + ")", {"1"}),
                           "--to " + type + "(" + number + "): the length of " + type + " is from 1 to 65535");
        }
    expect_refused(cast("int", "binary(32768)", {"1"}), "--to binary(32768): the length of binary is from 1 to 32767");
    expect_refused(cast("varbinary(0)", "int", {"1"}),
                   "--from varbinary(0): the length of varbinary is from 1 to 32767");
    expect_refused(cast("int", "char(5,2)", {"1"}), "--to char(5,2): char takes one number, as in char(20)");
    expect_refused(cast("int", "dec(0)", {"1"}), "--to dec(0): dec has from 1 to 38 digits");
    expect_refused(cast("int", "dec(39,2)", {"1"}), "--to dec(39,2): dec has from 1 to 38 digits");
    expect_refused(cast("dec(5,6)", "int", {"1"}),
                   "--from dec(5,6): behind the point of dec(5,...) stand 0 to 5 digits");
    expect_refused(cast("int", "dec(5,2,1)", {"1"}),
                   "--to dec(5,2,1): dec takes the digits in all and those behind the point, as in dec(10,2)");
}

TEST(cast, brackets_hold_something_else)
{
    for (const std::string type : {"char(", "char()", "char(x)", "char(4", "char(4)x", "char(-1)", "dec(4,)", "dec(,2)",
                                   "dec(4;2)", "dec(4.2)", "dec(4,2"})
        expect_refused(cast("int", type, {"1"}), "--to \"" + type +
                                                     "\": in brackets behind the name stands a length or a shape, "
                                                     "as in varchar(20) or dec(10,2)");
}

TEST(cast, a_cast_that_the_library_has_and_the_tool_cannot_try_is_named)
{
    expect_refused(cast("int", "null", {"1"}), "the library has bcast_int_to_null, but values of these types cannot be "
                                               "tried from the command line");
    expect_refused(cast("varchar", "int_directly", {"1"}),
                   "the library has bcast_varchar_to_int_directly, but values of these types cannot be tried from the "
                   "command line");
}

TEST(cast, there_is_no_such_cast)
{
    const run_result run = cast("int", "sometype", {"1"});
    const std::string beginning =
        "bcast: there is no cast from int to \"sometype\"; from int there are casts to tinyint, "
        "smallint, int, int64, char, varchar, varchar2, text";
    EXPECT_EQ(run.exit_status, 2) << run.how;
    EXPECT_EQ(run.errors.substr(0, beginning.size()), beginning);
    expect_refused(cast("sometype", "int", {"1"}),
                   "--from \"sometype\": there is no such source; bcast list shows the casts there are");
}

TEST(cast, options_are_missing_or_unknown)
{
    expect_refused(run_bcast({"cast", "--to", "int", "1"}), "--from is required; see bcast cast --help");
    expect_refused(run_bcast({"cast", "--from", "int", "1"}), "--to is required; see bcast cast --help");
    expect_refused(run_bcast({"cast", "--from", "int", "--to"}),
                   "--to: 1 required TYPE missing; see bcast cast --help");
    expect_refused(cast("int", "int64", {}), "VALUE is required; see bcast cast --help");
    expect_refused(cast("int", "int64", {"1", "--verbose"}),
                   "The following argument was not expected: --verbose; see bcast cast --help");
}

} // namespace
} // namespace bcast::test
