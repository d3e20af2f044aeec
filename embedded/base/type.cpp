// The SQL types and the failure codes by name.
#include <bcast/embedded.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace {

struct type_facts {
    const char *name;
    size_t stride;
    bool is_string;
};

// In the order of bcast_type.
constexpr type_facts types[] = {
    {"tinyint", sizeof(int32_t), false},
    {"smallint", sizeof(int32_t), false},
    {"int", sizeof(int32_t), false},
    {"int64", sizeof(int64_t), false},
    {"float", sizeof(float), false},
    {"double", sizeof(double), false},
    {"dec", sizeof(xdec), false},
    {"date", sizeof(vqtime), false},
    {"time", sizeof(vqtime), false},
    {"time_tz", sizeof(vqtime), false},
    {"datetime", sizeof(vqtime), false},
    {"datetime_tz", sizeof(vqtime), false},
    {"ivym", sizeof(ivym), false},
    {"ivdt", sizeof(ivdt), false},
    {"bit", sizeof(int32_t), false},
    {"boolean", sizeof(bool3), false},
    {"char", sizeof(bdta3_str), true},
    {"varchar", sizeof(bdta3_str), true},
    {"varchar2", sizeof(bdta3_str), true},
    {"binary", sizeof(bdta3_str), true},
    {"varbinary", sizeof(bdta3_str), true},
    {"text", sizeof(bdta3_str), true},
    {"blob", sizeof(bdta3_str), true},
    {"bfile", sizeof(bdta3_str), true},
    {"null", 0, false},
};

static_assert(std::size(types) == BCAST_TYPE_COUNT);

constexpr type_facts no_type = {nullptr, 0, false};

const type_facts &facts_of(bcast_type type)
{
    const auto index = unsigned(type);
    return index < std::size(types) ? types[index] : no_type;
}

struct code_facts {
    int32_t code;
    const char *name;
    const char *text;
};

constexpr code_facts codes[] = {
    {ERR_NO_MEMORY, "ERR_NO_MEMORY", "column space could not be allocated"},
    {ERR_BAD_BFILE, "ERR_BAD_BFILE", "text is not a bfile locator, or longer than the target"},
    {ERR_OVERFLOW, "ERR_OVERFLOW", "numeric value does not fit the target"},
    {ERR_INTERVAL_FIELD, "ERR_INTERVAL_FIELD", "the target interval has no single field to take a number"},
    {ERR_TRUNCATED, "ERR_TRUNCATED", "character or binary value, or the text of a number, longer than the target"},
    {ERR_BAD_CONVERSION, "ERR_BAD_CONVERSION", "text is no value of the target type, or the conversion is not allowed"},
    {ERR_BAD_INTERVAL, "ERR_BAD_INTERVAL", "interval text that cannot be read"},
    {ERR_BAD_DATETIME, "ERR_BAD_DATETIME", "date text of 256 bytes or longer, or no date or time"},
    {ERR_TO_CHAR, "ERR_TO_CHAR", "temporal or interval value that has no text"},
    {ERR_TARGET_TOO_SHORT, "ERR_TARGET_TOO_SHORT",
     "text of an integer, bit, datetime or interval longer than the target"},
    {ERR_ABOVE_RANGE, "ERR_ABOVE_RANGE", "literal above the int64 range"},
    {ERR_BELOW_RANGE, "ERR_BELOW_RANGE", "literal below the int64 range"},
};

constexpr code_facts no_code = {0, nullptr, nullptr};

const code_facts &facts_of(int32_t code)
{
    const auto *found = std::ranges::find(codes, code, &code_facts::code);
    return found != std::end(codes) ? *found : no_code;
}

} // namespace

const char *bcast_type_name(bcast_type type) { return facts_of(type).name; }

bcast_type bcast_type_from_name(const char *name, size_t name_len)
{
    const std::string_view wanted(name, name_len);
    const auto *found = std::ranges::find(types, wanted, &type_facts::name);
    return static_cast<bcast_type>(found - types);
}

size_t bcast_type_stride(bcast_type type) { return facts_of(type).stride; }

bool bcast_type_is_string(bcast_type type) { return facts_of(type).is_string; }

const char *bcast_code_name(int32_t code) { return facts_of(code).name; }

const char *bcast_code_text(int32_t code) { return facts_of(code).text; }
