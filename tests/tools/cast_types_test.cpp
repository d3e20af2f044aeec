// bcast cast between types of every kind.
#include "trials.h"

#include <bcast/codes.h>

#include <gtest/gtest.h>

namespace bcast::test {
namespace {

constexpr std::int32_t overflow = ERR_OVERFLOW, too_long = ERR_TRUNCATED, bad = ERR_BAD_CONVERSION;

TEST(cast_types, bit_and_boolean)
{
    expect_all({{"int", "bit", "5", "1"},
                {"int", "varbit", "0", "0"},
                {"int64", "boolean", "-5", "1"},
                {"bit", "int", "7", "1"},
                {"bit", "dec(3,1)", "1", "1.0"},
                {"bit", "char(3)", "1", "1  "},
                {"bit", "boolean", "0", "0"},
                {"boolean", "tinyint", "7", "1"},
                {"boolean", "boolean", "0", "0"},
                {"double", "boolean", "0.001", "1"},
                {"float", "bit", "0", "0"},
                {"dec(3,2)", "bit", "0.01", "1"},
                {"dec(3,2)", "boolean", "0", "0"},
                {"varchar", "bit", "0010 ", "1"},
                {"varchar2", "bit", "x", "", bad}});
}

// An unknown boolean is the number 2.
TEST(cast_types, null_boolean)
{
    expect_all({{"int", "boolean", "", "NULL"},
                {"boolean", "boolean", "", "NULL"},
                {"boolean", "int", "", "2"},
                {"bit", "int", "", "NULL"},
                {"varbinary", "boolean", "", "0"}});
}

// By way of bit, as from a file: 0 is false.
TEST(cast_types, characters_as_boolean)
{
    expect_all({{"varchar", "boolean", "0", "0"},
                {"char", "boolean", "000", "0"},
                {"varchar2", "boolean", "10", "1"},
                {"char(3)", "boolean", "7", "1"},
                {"varchar", "boolean", "", "NULL"}});
}

TEST(cast_types, decimals)
{
    expect_all({{"double", "dec(10,2)", "0.285", "0.29"},
                {"float", "dec(10,2)", "0.285", "0.28"}, // its nearest float lies below
                {"double", "dec", "0.1", "0.1"},
                {"float", "dec(12,10)", "0.1", "0.1000000015"},
                {"int64", "dec(5,2)", "999", "999.00"},
                {"int64", "dec(5,2)", "1000", "", overflow},
                {"dec(10,2)", "dec(4,1)", "123.45", "123.5"},
                {"dec(10,2)", "dec(4,1)", "-123.45", "-123.5"},
                {"dec(10,2)", "dec(4,1)", "1234", "", overflow},
                {"dec(10,2)", "dec", "1.50", "1.5"},
                {"dec(10,2)", "int", "2.5", "3"},
                {"dec(10,2)", "int", "-2.5", "-3"},
                {"dec(10,2)", "tinyint", "127.5", "", overflow},
                {"dec(20)", "int64", "9223372036854775808", "", overflow},
                {"dec(10,2)", "double", "0.10", "0.1"},
                {"dec(10,2)", "float", "16777217", "16777216"},
                {"varchar", "dec(3)", "999.5", "", overflow},
                {"varchar2", "dec(3)", "x", "", bad},
                {"char(5)", "dec(5,2)", "1.5", "1.50"}});
}

TEST(cast_types, decimals_as_characters_show_their_shape)
{
    expect_all({{"dec(10,2)", "char(8)", "1.5", "1.50    "},
                {"dec(10,2)", "varchar2(8)", "1.5", "1.50    "},
                {"dec(10,2)", "varchar(8)", "-0.5", "-0.50"},
                {"dec(10)", "varchar(8)", "7.5", "8"},
                {"dec", "char(8)", "1.50", "1.5     "},
                {"dec(38,38)", "varchar(40)", "0.1", "0.1" + std::string(37, '0')},
                {"dec(10,2)", "char(4)", "1.5", "1.50"},
                {"dec(10,2)", "char(3)", "1.5", "", too_long},
                {"dec(10,2)", "varchar(3)", "1.5", "", too_long},
                {"dec(10,2)", "text", "1.5", "1.5"}}); // text is not told the shape
}

TEST(cast_types, floating_numbers)
{
    expect_all({{"double", "int", "2.5", "2"}, // ties to even
                {"double", "int", "3.5", "4"},
                {"double", "tinyint", "127", "127"},
                {"double", "tinyint", "127.5", "", overflow},
                {"double", "int64", "1e19", "", overflow},
                {"double", "float", "0.1", "0.1"},
                {"double", "float", "1e39", "", overflow},
                {"double", "double", "0.1", "0.1"},
                {"float", "int", "3.9", "3"}, // cut
                {"float", "int", "-3.9", "-3"},
                {"float", "tinyint", "127.9", "", overflow},
                {"float", "int", "2147483648", "2147483647"}, // the limit is a float, the largest int is none
                {"float", "double", "0.1", "0.10000000149011612"},
                {"int", "double", "-7", "-7"},
                {"int64", "float", "16777217", "16777216"},
                {"double", "char(6)", "0.25", "0.25  "},
                {"float", "varchar(6)", "0.25", "0.25"},
                {"double", "varchar(3)", "0.25", "", too_long},
                {"double", "text", "1e2", "100"},
                {"double", "double", "1e20", "1e+20"},
                {"char", "double", ".5", "0.5"},
                {"varchar2", "float", "1e39", "", overflow}});
}

TEST(cast_types, integers_as_bytes)
{
    expect_all({{"int", "binary(6)", "258", "000000000102"},
                {"int", "binary(6)", "-1", "0000FFFFFFFF"},
                {"int", "binary(2)", "65537", "0001"},
                {"smallint", "binary(4)", "-2", "FFFFFFFE"},
                {"smallint", "varbinary(8)", "-2", "FFFE"},
                {"tinyint", "varbinary(8)", "5", "05"},
                {"int64", "varbinary(8)", "1", "0000000000000001"},
                // Of the value behind its zeros the first 8 bytes are stored.
                {"int64", "binary(12)", "4294967296", "0000000000000001"}});
}

TEST(cast_types, bytes_as_numbers)
{
    expect_all({{"varbinary", "int", "0102", "258"},
                {"varbinary", "int", "FFFFFFFB", "-5"},
                {"varbinary", "int", "00FFFFFFFB", "-5"},
                {"varbinary", "int", "0100000000", "", overflow},
                {"varbinary", "tinyint", "80", "-128"},
                {"binary(4)", "int", "01", "16777216"}, // zeros stand behind it
                {"binary(4)", "double", "00000007", "7"},
                {"binary(2)", "float", "0102", "258"},
                {"binary(4)", "dec(4,1)", "0000000A", "10.0"},
                {"varbinary(2)", "dec(2)", "0100", "", overflow},
                {"varbinary", "int64", "", "0"}});
}

TEST(cast_types, bytes_as_text_and_bytes)
{
    expect_all({{"varbinary", "char(6)", "0aff", "0AFF  "},
                {"varbinary", "varchar(6)", "0aff", "0AFF"},
                {"binary(3)", "varchar2(8)", "0aff", "0AFF00  "},
                {"varbinary", "varchar(3)", "0aff", "", too_long},
                {"varbinary", "hex_char(6)", "0aff", "0AFF  "},
                {"varbinary", "hex_varchar(3)", "0aff", "", too_long},
                {"varbinary", "binary(4)", "01", "01000000"},
                {"varbinary", "binary(1)", "0102", "", too_long},
                {"binary(2)", "varbinary(2)", "01", "0100"},
                {"binary(2)", "text", "01", "0100"},
                {"binary(2)", "blob", "01", "0100"},
                {"varchar", "binary(2)", "0x1", "0100"},
                {"hex_varchar", "varbinary(2)", "1", "01"},
                {"char", "varbinary(2)", "xy", "", bad},
                {"varchar2", "varbinary(1)", "0102", "", too_long}});
}

TEST(cast_types, large_objects_and_locators)
{
    expect_all({{"varchar", "text", "a b", "a b"},
                {"varchar", "blob", "a b", "612062"},
                {"text", "text", "a b", "a b"},
                {"blob", "blob", "a b", "612062"},
                {"text", "blob", "a b", "", bad},
                {"text", "text", "", ""},
                {"int", "text", "-7", "-7"},
                {"varchar", "bfile", "D:x ", "D:x"},
                {"varchar", "bfile", "", "NULL"},
                {"varchar", "bfile", "x", "", ERR_BAD_BFILE}});
}

TEST(cast_types, characters_of_another_length)
{
    expect_all({{"varchar", "varchar(3)", "abc", "abc"},
                {"varchar", "varchar(3)", "abcd", "", too_long},
                {"varchar", "char(5)", "abc", "abc  "},
                {"char(5)", "varchar(4)", "abc", "abc "}, // as many of its blanks as fit
                {"char(5)", "varchar2(6)", "abc", "abc   "},
                {"varchar2(5)", "varchar(9)", "abc", "abc  "}});
}

TEST(cast_types, cut)
{
    expect_all({{"varchar", "varchar(3)", "abcd", "abc"},
                {"varchar", "varchar(3)", "aäö", "aä"},
                {"varchar", "char(3)", "a", "a  "},
                {"varchar", "char(3)", "aaä", "aa"},
                {"varchar", "varbinary(2)", "010203", "0102"},
                {"hex_varchar", "binary(2)", "1", "0100"},
                {"varchar", "binary(2)", "0102zz", "", bad},
                {"varbinary", "binary(2)", "010203", "0102"},
                {"varbinary", "char(3)", "0aff", "0AF"},
                {"varbinary", "varchar(9)", "0aff", "0AFF"}},
               {"--cut"});
}

TEST(cast_types, no_cast_that_cuts)
{
    const std::vector<std::pair<std::string, std::string>> pairs = {
        {"int", "varchar(3)"},   {"varchar", "varchar2(3)"}, {"varchar", "int"}, {"char", "char(3)"},
        {"dec(5,2)", "char(3)"}, {"varchar", "text"},        {"no", "such"}};
    for (const auto &[from, to] : pairs) {
        const run_result run = run_bcast({"cast", "--cut", "--from", from, "--to", to, "1"});
        EXPECT_EQ(run.exit_status, 2) << run.how;
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "bcast: --cut: there is no cast from " + from.substr(0, from.find('(')) + " to " +
                                  to.substr(0, to.find('(')) + " that cuts\n");
    }
}

TEST(cast_types, text_is_no_value_of_the_source)
{
    const std::vector<trial> trials = {{"dec(3,1)", "int", "100", "", overflow},
                                       {"dec", "double", "x", "", bad},
                                       {"double", "int", "1e400", "", overflow},
                                       {"boolean", "int", "true", "", bad},
                                       {"binary(1)", "int", "0102", "", too_long},
                                       {"varbinary", "int", "0g", "", bad},
                                       {"varbinary", "int", std::string(65536, '0'), "", too_long},
                                       {"float", "double", std::string(320, '0'), "", too_long}};
    for (const trial &each : trials) {
        const run_result run = run_bcast({"cast", "--from", each.from, "--to", each.to, each.value});
        EXPECT_EQ(run.exit_status, 1) << run.how;
        EXPECT_EQ(run.output, "");
        const std::string shown =
            each.value.size() > 200 ? "\"" + each.value.substr(0, 200) + "...\"" : "\"" + each.value + "\"";
        EXPECT_EQ(run.errors, shown + " is no value of " + each.from + ": " + told(each.code));
    }
}

// Casts that would end at the first bad row of a batch.
TEST(cast_types, every_value_has_its_answer_also_of_casts_that_stop)
{
    const run_result run = run_bcast({"cast", "--from", "char", "--to", "dec(3,1)", "1", "x", "100", "2.25", ""});
    EXPECT_EQ(run.exit_status, 1) << run.how;
    EXPECT_EQ(run.output, "1.0\n2.3\nNULL\n");
    EXPECT_EQ(run.errors, "\"x\": " + told(bad) + "\"100\": " + told(overflow));
}

// A number that a cast would read in part only.
TEST(cast_types, text_of_a_number_is_refused_where_its_end_would_not_be_read)
{
    const std::string longest = std::string(318, '0') + "7";
    for (const char *from : {"char", "varchar", "varchar2"})
        for (const char *to : {"dec(5,2)", "double", "float"}) {
            EXPECT_EQ(run_bcast({"cast", "--from", from, "--to", to, longest}).output,
                      to == std::string("dec(5,2)") ? "7.00\n" : "7\n");
            const run_result run = run_bcast({"cast", "--from", from, "--to", to, longest + "8"});
            EXPECT_EQ(run.exit_status, 1) << run.how;
            EXPECT_EQ(run.errors, "\"" + std::string(200, '0') + "...\": " + told(too_long));
        }
}

} // namespace
} // namespace bcast::test
