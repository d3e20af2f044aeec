// The names of intervals, and their shapes.
#include "tools/errors.h"
#include "tools/types.h"

#include <gtest/gtest.h>

namespace bcast::tool {
namespace {

struct named {
    const char *text;
    const char *word;
    unsigned iv_word;
    const char *written;
};

// A field code each; no leading digits are declared, and 6 of the fraction.
TEST(interval_type, every_shape_has_its_code)
{
    const named all[] = {{"year", "ivym", 0, {}},           {"year to month", "ivym", 1, {}},
                         {"month", "ivym", 2, {}},          {"day", "ivdt", 3, {}},
                         {"day to hour", "ivdt", 4, {}},    {"day to minute", "ivdt", 5, {}},
                         {"day to second", "ivdt", 6, {}},  {"hour", "ivdt", 7, {}},
                         {"hour to minute", "ivdt", 8, {}}, {"hour to second", "ivdt", 9, {}},
                         {"minute", "ivdt", 10, {}},        {"minute to second", "ivdt", 11, {}},
                         {"second", "ivdt", 12, {}}};
    for (const named &each : all) {
        const std::string text = std::string("interval ") + each.text;
        const type_name name = parse_type(text);
        EXPECT_EQ(name.word, each.word) << text;
        EXPECT_EQ(name.iv_word, each.iv_word << 8 | 6) << text;
        EXPECT_EQ(described(name), text);
        EXPECT_EQ(column_type(name).scale, name.iv_word) << text;
    }
}

TEST(interval_type, digits_stand_in_the_low_byte)
{
    const named all[] = {{"interval day(3) to second(2)", "ivdt", 0x0632, "interval day(3) to second(2)"},
                         {" INTERVAL  Day ( 3 )  TO  Second ", "ivdt", 0x0636, "interval day(3) to second"},
                         {"interval day to second(0)", "ivdt", 0x0600, "interval day to second(0)"},
                         {"interval second(4,2)", "ivdt", 0x0C42, "interval second(4,2)"},
                         {"interval second(4)", "ivdt", 0x0C46, "interval second(4)"},
                         {"interval year(9)", "ivym", 0x0096, "interval year(9)"},
                         {"interval year(1) to month", "ivym", 0x0116, "interval year(1) to month"},
                         {"IVYM", "ivym", 0x0106, "interval year to month"},
                         {" ivdt", "ivdt", 0x0606, "interval day to second"}};
    for (const named &each : all) {
        const type_name name = parse_type(each.text);
        EXPECT_EQ(name.word, each.word) << each.text;
        EXPECT_EQ(name.iv_word, each.iv_word) << each.text;
        EXPECT_EQ(described(name), each.written);
    }
}

std::string message_of(const std::string &text)
{
    try {
        parse_type(text);
    } catch (const tool_error &error) {
        return error.what();
    }
    return "no error";
}

TEST(interval_type, other_shapes_are_told_with_those_there_are)
{
    const std::string shapes = "; there are interval year, year to month, month, day, day to hour, day to minute, day "
                               "to second, hour, hour to minute, hour to second, minute, minute to second, second";
    for (const std::string shape : {"", "week", "month to year", "year to year", "month to day", "second to day",
                                    "day to hour to second", "days"})
        EXPECT_EQ(message_of("interval " + shape), "there is no interval \"" + shape + "\"" + shapes);
}

TEST(interval_type, digits_that_a_field_does_not_take)
{
    const std::string leading = "the leading field of an interval has from 1 to 9 digits";
    const std::string fraction = "a second has from 0 to 6 digits behind the point";
    EXPECT_EQ(message_of("interval day(0)"), leading);
    EXPECT_EQ(message_of("interval day(10) to second"), leading);
    EXPECT_EQ(message_of("interval second(0,2)"), leading);
    EXPECT_EQ(message_of("interval second(2,7)"), fraction);
    EXPECT_EQ(message_of("interval day to second(7)"), fraction);
    EXPECT_EQ(message_of("interval day(2,2)"), "day takes one number, as in day(3)");
    EXPECT_EQ(message_of("interval second(1,2,3)"),
              "second takes its digits and those of its fraction, as in second(4,2)");
    EXPECT_EQ(message_of("interval day to hour(2)"), "hour behind to takes no number");
    EXPECT_EQ(message_of("interval day to second(2,2)"),
              "second behind to takes the digits of its fraction, as in second(2)");
    for (const char *text :
         {"interval day(", "interval day() to second", "interval day(x)", "interval day to second(2"})
        EXPECT_EQ(message_of(text),
                  "in brackets behind the name stands a length or a shape, as in varchar(20) or dec(10,2)");
}

} // namespace
} // namespace bcast::tool
