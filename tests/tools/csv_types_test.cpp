// Columns of every type, with values of theirs and texts that are none.
#include "fields.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace bcast::test {
namespace {

// ---- Numbers

TEST(csv_types, dec_is_rounded_to_its_digits_behind_the_point)
{
    expect_fields("dec(5,2)", {gives("1", "1.00"), gives(" 7 ", "7.00"), gives("1e2", "100.00"), gives("-.5", "-0.50"),
                               gives("0.004", "0.00"), gives("0.005", "0.01"), gives("-0.005", "-0.01"),
                               gives("-0", "0.00"), gives("999.99", "999.99"), gives("999.994", "999.99"),
                               overflows("999.995"), overflows("1000"), overflows("-1000"), overflows("1e40"),
                               is_none("abc"), is_none("1,5"), is_none("1.2.3"), is_none(" "), null("")});
    expect_fields("dec(3)", {gives("2.5", "3"), gives("-2.5", "-3"), as_it_is("999"), overflows("999.5")});
    expect_fields("dec(2,2)", {as_it_is("0.99"), gives(".5", "0.50"), overflows("1"), overflows("0.995")});
}

TEST(csv_types, dec_without_a_shape_has_the_digits_of_its_text)
{
    const std::string nines(38, '9');
    expect_fields("dec", {gives("1.50", "1.5"), gives("1e3", "1000"), as_it_is("-0.001"), gives("007", "7"),
                          as_it_is("0"), as_it_is(nines), overflows(nines + "9"), is_none("x"), null("")});
    expect_fields("dec(38)", {as_it_is(nines), overflows("1" + std::string(38, '0'))});
    expect_fields("dec(38,38)", {as_it_is("0." + nines), overflows("1")});
}

TEST(csv_types, double_is_shown_with_the_digits_that_read_back_the_same)
{
    expect_fields("double",
                  {as_it_is("0.1"), gives("1.50", "1.5"), gives("1e3", "1000"), as_it_is("-2.5"), gives(".5", "0.5"),
                   as_it_is("123456789012345"), gives("9007199254740993", "9.007199254740992e+15"),
                   gives("1e-400", "0"), overflows("1e309"), overflows("-1e400"), is_none("inf"), is_none("nan"),
                   is_none("1x"), null("")});
}

TEST(csv_types, float_is_the_nearest_of_24_bits)
{
    expect_fields("float", {as_it_is("0.1"), gives("16777217", "16777216"), gives("0.30000001", "0.3"),
                            gives("-5.", "-5"), overflows("1e39"), overflows("-3.5e38"), is_none("--1"), null("")});
}

TEST(csv_types, bit_is_whether_a_digit_is_not_0)
{
    const std::vector<field> fields = {
        as_it_is("0"),      gives("000", "0"), as_it_is("1"),   gives("7", "1"),
        gives("0010", "1"), gives("1 ", "1"),  gives(" ", "0"), gives(std::string(20, '9'), "1"),
        is_none("+1"),      is_none("-0"),     is_none(" 1"),   is_none("1.0"),
        is_none("true"),    is_none("0 1"),    null("")};
    expect_fields("bit", fields);
    expect_fields("boolean", fields);
}

// A null boolean is a row that is present in its column.
TEST(csv_types, null_boolean_is_a_null_beside_values_and_failures)
{
    const loaded l = load("b,n\n1,1\n,2\n0,3\nno,4\n,5\n", {"b:boolean", "n:int", "b:bit"});
    EXPECT_EQ(l.run.exit_status, 1) << l.run.how;
    EXPECT_EQ(l.table, "b,n,b\n1,1,1\n,2,\n0,3,0\n,4,\n,5,\n");
    EXPECT_EQ(l.failures, no_failures + "4,b,no,-6111,ERR_BAD_CONVERSION\n4,b,no,-6111,ERR_BAD_CONVERSION\n");
    EXPECT_EQ(l.run.errors, "column  type     rows  nulls  failed\n"
                            "b       boolean     5      2       1\n"
                            "                                   1  -6111 ERR_BAD_CONVERSION\n"
                            "n       int         5      0       0\n"
                            "b       bit         5      2       1\n"
                            "                                   1  -6111 ERR_BAD_CONVERSION\n");
}

// The casts read 319 bytes of such a text. Without its end it would be another number.
TEST(csv_types, text_of_a_number_is_refused_where_its_end_would_not_be_read)
{
    const std::string longest = std::string(318, '0') + "7", longer = "0" + longest;
    for (const char *type : {"dec(5)", "dec", "float", "double"})
        expect_fields(type, {gives(longest, "7"), is_too_long(longer), as_it_is("8")});
    expect_fields("int", {gives(longer, "7")});
}

// ---- Characters: lengths count bytes, and an empty text is a text

TEST(csv_types, char_is_filled_up_with_blanks)
{
    for (const char *type : {"char(4)", "varchar2(4)"})
        expect_fields(type, {gives("ab", "ab  "), as_it_is("abcd"), gives("äb", "äb "), gives("", "    "),
                             gives("a ", "a   "), is_too_long("abcde"), is_too_long("äöb"), is_too_long("abcd ")});
}

TEST(csv_types, varchar_is_as_long_as_its_text)
{
    expect_fields("varchar(4)", {as_it_is("ab"), as_it_is("abcd"), as_it_is("äö"), as_it_is(""), as_it_is("a "),
                                 as_it_is("a,\"\n"), is_too_long("abcde"), is_too_long("äöb")});
    const std::string longest(65535, 'x');
    expect_fields("varchar(65535)", {as_it_is(longest), is_too_long(longest + "x")});
}

// ---- Bytes, as hexadecimal digits

TEST(csv_types, binary_is_filled_up_with_zeros)
{
    expect_fields("binary(3)",
                  {as_it_is("0102FF"), gives("0x0a", "0A0000"), gives("1", "010000"), gives("", "000000"),
                   gives("0X", "000000"), is_too_long("01020304"), is_none("0g"), is_none("0x0x"), is_none(" ")});
}

TEST(csv_types, varbinary_is_as_long_as_its_digits)
{
    expect_fields("varbinary(3)", {gives("0102ff", "0102FF"), gives("0x1", "01"), gives("123", "0123"), as_it_is(""),
                                   gives("0x", ""), is_too_long("01020304"), is_none("xyz")});
    const std::string longest(std::size_t(2) * 32767, 'A');
    expect_fields("varbinary(32767)", {as_it_is(longest), is_too_long(longest + "AA"), is_too_long(longest + "AAAA")});
}

// ---- Large objects and locators

TEST(csv_types, text_is_as_it_stands)
{
    const std::string long_text(200000, 'x');
    expect_fields("text", {as_it_is("abc"), as_it_is(" ä,\"\n "), as_it_is(""), as_it_is(long_text)});
}

TEST(csv_types, blob_is_the_bytes_of_the_text)
{
    expect_fields("blob",
                  {gives("abc", "616263"), gives("Zä", "5AC3A4"), as_it_is(""), gives(std::string(100000, 'J'), [] {
                       std::string digits;
                       for (int k = 0; k < 100000; k++)
                           digits += "4A";
                       return digits;
                   }())});
}

TEST(csv_types, bfile_is_a_directory_and_a_file)
{
    const auto is_no_locator = [](std::string text) { return field{.text = text, .code = ERR_BAD_BFILE}; };
    expect_fields("bfile", {as_it_is("PICTURES:a b.png"), gives("d_1:x:y  ", "d_1:x:y"), is_no_locator("PICTURES:"),
                            is_no_locator("1D:x"), is_no_locator("file"), null(""), null("  ")});
}

// ---- Cutting

TEST(csv_types, cut_takes_whole_characters)
{
    expect_fields("varchar(4)",
                  {as_it_is("ab"), as_it_is("abcd"), gives("abcde", "abcd"), gives("aäö", "aä"), gives("äöü", "äö"),
                   gives("ab  cd", "ab  "), gives("    e", "    "), as_it_is("")},
                  {"--cut"});
    expect_fields("varchar(1)", {gives("ä", ""), gives("\xFF\xFE", "\xFF")}, {"--cut"});
}

// What was cut is not filled up again.
TEST(csv_types, cut_char_has_the_blanks_that_it_ended_in)
{
    expect_fields("char(4)", {gives("ab", "ab  "), gives("abcde", "abcd"), gives("aäö", "aä"), gives("a   b", "a   ")},
                  {"--cut"});
}

TEST(csv_types, cut_takes_the_first_bytes)
{
    expect_fields("binary(2)", {gives("1", "0100"), as_it_is("0102"), gives("0102ff", "0102"), is_none("0102fg")},
                  {"--cut"});
    expect_fields("varbinary(2)", {gives("1", "01"), as_it_is("0102"), gives("0x0102ff", "0102"), is_none("xx")},
                  {"--cut"});
}

TEST(csv_types, cut_leaves_columns_of_no_length_as_they_are)
{
    const loaded l = load("a,b\n1,abc\nx,d\n", {"a:int", "b:varchar(2)", "b:text"}, {"--cut"});
    EXPECT_EQ(l.run.exit_status, 1) << l.run.how;
    EXPECT_EQ(l.table, "a,b,b\n1,ab,abc\n,d,d\n");
    EXPECT_EQ(l.failures, no_failures + "2,a,x,-6111,ERR_BAD_CONVERSION\n");
}

// ---- Many rows

// Rows that fail stand at the ends of batches and inside, in columns of several types at once.
TEST(csv_types, failures_of_many_batches_are_each_told)
{
    const std::vector<std::string> columns = {"n:dec(6,1)", "n:double", "n:varchar(5)", "n:varbinary(2)", "n:boolean"};
    std::string text = "n,x\n", table = "n,n,n,n,n\n", failures = no_failures;
    for (int row = 1; row <= 9000; row++) {
        const bool bad = row % 4096 <= 1 || row % 1000 == 7;
        const std::string digits = std::to_string(1000 + row % 5000);
        const std::string content = bad ? digits + "zz" : digits;
        text += content + ",y\n";
        table += bad ? ",,,,\n" : digits + ".0," + digits + "," + digits + "," + digits + ",1\n";
        for (const char *code : {"-6111,ERR_BAD_CONVERSION", "-6111,ERR_BAD_CONVERSION", "-6108,ERR_TRUNCATED",
                                 "-6111,ERR_BAD_CONVERSION", "-6111,ERR_BAD_CONVERSION"})
            if (bad)
                failures += std::to_string(row) + ",n," + content + "," + code + "\n";
    }
    const loaded l = load(text, columns);
    EXPECT_EQ(l.run.exit_status, 1) << l.run.how << l.run.errors;
    EXPECT_TRUE(l.table == table);
    EXPECT_TRUE(l.failures == failures);
}

// ---- Files of the world, against a plain reading of them

TEST(csv_types, volumes_of_an_index_are_decimals)
{
    const expectation expected =
        expect_column(index_file, "volume", [](const std::string &text) { return gives(text, text + ".00"); });
    expect_loaded(load_file(index_file, {"volume:dec(18,2)"}), expected);
}

TEST(csv_types, volumes_of_an_index_that_have_more_digits_than_a_decimal_fail)
{
    const expectation expected = expect_column(index_file, "volume", [](const std::string &text) {
        return text.size() > 9 ? overflows(text) : as_it_is(text);
    });
    EXPECT_GT(expected.failed, 1000u);
    expect_loaded(load_file(index_file, {"volume:dec(9)"}), expected);
}

// 1455.219971 as 1455219971: all prices have six digits behind the point.
std::int64_t millionths(const std::string &price)
{
    const std::size_t point = price.find('.');
    EXPECT_EQ(point + 7, price.size()) << price;
    return std::stoll(price.substr(0, point) + price.substr(point + 1));
}

TEST(csv_types, prices_of_an_index_are_rounded_to_cents)
{
    const expectation expected = expect_column(index_file, "close", [](const std::string &text) {
        const std::int64_t cents = (millionths(text) + 5000) / 10000;
        const std::string behind_point = std::to_string(100 + cents % 100).substr(1);
        return gives(text, std::to_string(cents / 100) + "." + behind_point);
    });
    expect_loaded(load_file(index_file, {"close:dec(10,2)"}), expected);
}

// A double holds more digits than a price has, so the shortest text of it is the price without zeros at its end.
TEST(csv_types, prices_of_an_index_are_doubles)
{
    const expectation expected = expect_column(index_file, "close", [](const std::string &text) {
        millionths(text);
        const std::size_t last = text.find_last_not_of('0');
        return gives(text, text.substr(0, text[last] == '.' ? last : last + 1));
    });
    expect_loaded(load_file(index_file, {"close:double"}), expected);
}

TEST(csv_types, dates_of_an_index_are_characters)
{
    const expectation expected = expect_column(index_file, "date", as_it_is);
    for (const char *type : {"date:char(10)", "date:varchar2(10)", "date:varchar(10)", "date:text"})
        expect_loaded(load_file(index_file, {type}), expected);
}

TEST(csv_types, long_names_of_airports_fail_or_are_cut)
{
    const expectation refused = expect_column(strikes_file, "Airport Name", [](const std::string &text) {
        return text.size() > 20 ? is_too_long(text) : as_it_is(text);
    });
    EXPECT_GT(refused.failed, 1000u);
    expect_loaded(load_file(strikes_file, {"Airport Name:varchar(20)"}), refused);

    const expectation cut = expect_column(strikes_file, "Airport Name", [](const std::string &text) {
        EXPECT_TRUE(std::ranges::all_of(text, [](char c) { return c > 0; })) << "a byte is no character: " << text;
        return gives(text, text.substr(0, 20));
    });
    expect_loaded(load_file(strikes_file, {"Airport Name:varchar(20)"}, {"--cut"}), cut);

    const expectation filled_up = expect_column(strikes_file, "Airport Name", [](const std::string &text) {
        return gives(text, (text + std::string(20, ' ')).substr(0, 20));
    });
    expect_loaded(load_file(strikes_file, {"Airport Name:char(20)"}, {"--cut"}), filled_up);
}

TEST(csv_types, costs_of_bird_strikes_are_decimals)
{
    const expectation expected = expect_column(strikes_file, "Cost Total $", [](const std::string &text) {
        return text.empty() ? null(text) : text.size() > 5 ? overflows(text) : gives(text, text + ".0");
    });
    EXPECT_GT(expected.failed, 0u);
    expect_loaded(load_file(strikes_file, {"Cost Total $:dec(6,1)"}), expected);
}

} // namespace
} // namespace bcast::test
