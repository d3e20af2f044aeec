#include <bcast/embedded.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace bcast::test {

namespace {

struct type_case {
    bcast_type type;
    const char *name;
    size_t stride;
    bool is_string;
};

constexpr type_case all_types[] = {
    {BCAST_TINYINT, "tinyint", 4, false},
    {BCAST_SMALLINT, "smallint", 4, false},
    {BCAST_INT, "int", 4, false},
    {BCAST_INT64, "int64", 8, false},
    {BCAST_FLOAT, "float", 4, false},
    {BCAST_DOUBLE, "double", 8, false},
    {BCAST_DEC, "dec", 30, false},
    {BCAST_DATE, "date", 12, false},
    {BCAST_TIME, "time", 12, false},
    {BCAST_TIME_TZ, "time_tz", 12, false},
    {BCAST_DATETIME, "datetime", 12, false},
    {BCAST_DATETIME_TZ, "datetime_tz", 12, false},
    {BCAST_IVYM, "ivym", 12, false},
    {BCAST_IVDT, "ivdt", 24, false},
    {BCAST_BIT, "bit", 4, false},
    {BCAST_BOOLEAN, "boolean", 4, false},
    {BCAST_CHAR, "char", 16, true},
    {BCAST_VARCHAR, "varchar", 16, true},
    {BCAST_VARCHAR2, "varchar2", 16, true},
    {BCAST_BINARY, "binary", 16, true},
    {BCAST_VARBINARY, "varbinary", 16, true},
    {BCAST_TEXT, "text", 16, true},
    {BCAST_BLOB, "blob", 16, true},
    {BCAST_BFILE, "bfile", 16, true},
    {BCAST_NULL, "null", 0, false},
};

} // namespace

TEST(type, every_type_has_its_name_stride_and_kind)
{
    ASSERT_EQ(std::size(all_types), static_cast<size_t>(BCAST_TYPE_COUNT));
    for (const type_case &c : all_types) {
        EXPECT_STREQ(bcast_type_name(c.type), c.name);
        EXPECT_EQ(bcast_type_stride(c.type), c.stride) << c.name;
        EXPECT_EQ(bcast_type_is_string(c.type), c.is_string) << c.name;
    }
}

TEST(type, a_name_leads_back_to_its_type)
{
    for (const type_case &c : all_types)
        EXPECT_EQ(bcast_type_from_name(c.name, std::strlen(c.name)), c.type) << c.name;
}

TEST(type, a_name_ends_with_its_length)
{
    EXPECT_EQ(bcast_type_from_name("int64 and more", 5), BCAST_INT64);
    EXPECT_EQ(bcast_type_from_name("int64 and more", 3), BCAST_INT);
}

TEST(type, other_names_are_no_type)
{
    for (const char *name : {"", "i", "INT", "int ", "integer", "nul"})
        EXPECT_EQ(bcast_type_from_name(name, std::strlen(name)), BCAST_TYPE_COUNT) << "\"" << name << "\"";
    EXPECT_EQ(bcast_type_from_name("int\0", 4), BCAST_TYPE_COUNT);
}

TEST(type, no_type_has_no_name_and_no_elements)
{
    EXPECT_EQ(bcast_type_name(BCAST_TYPE_COUNT), nullptr);
    EXPECT_EQ(bcast_type_stride(BCAST_TYPE_COUNT), 0u);
    EXPECT_FALSE(bcast_type_is_string(BCAST_TYPE_COUNT));
}

TEST(code, every_code_has_its_name_and_a_text)
{
    const std::vector<std::pair<int32_t, const char *>> codes = {
        {-503, "ERR_NO_MEMORY"},         {-4556, "ERR_BAD_BFILE"},    {-6102, "ERR_OVERFLOW"},
        {-6105, "ERR_INTERVAL_FIELD"},   {-6108, "ERR_TRUNCATED"},    {-6111, "ERR_BAD_CONVERSION"},
        {-6115, "ERR_BAD_INTERVAL"},     {-6118, "ERR_BAD_DATETIME"}, {-6139, "ERR_TO_CHAR"},
        {-6149, "ERR_TARGET_TOO_SHORT"}, {-6164, "ERR_ABOVE_RANGE"},  {-6165, "ERR_BELOW_RANGE"},
    };
    for (const auto &[code, name] : codes) {
        EXPECT_STREQ(bcast_code_name(code), name);
        ASSERT_NE(bcast_code_text(code), nullptr) << name;
        EXPECT_GT(std::strlen(bcast_code_text(code)), 10u) << name;
    }
    EXPECT_STREQ(bcast_code_text(ERR_OVERFLOW), "numeric value does not fit the target");
}

TEST(code, other_numbers_are_no_code)
{
    for (const int32_t code : {0, 1, -1, 503, 6102, -6103, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(bcast_code_name(code), nullptr) << code;
        EXPECT_EQ(bcast_code_text(code), nullptr) << code;
    }
}

} // namespace bcast::test
