// The table of casts.h that tells where casts differ, read off the header: each cast does what the last line that it
// fits says.

#include "catalogue/catalogue.h"
#include "tests/support/call.h"
#include "tests/support/service_double.h"
#include "tests/support/text_element.h"

#include <bcast/codes.h>

#include <algorithm>
#include <fstream>
#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <dlfcn.h>
#include <fnmatch.h>

namespace bcast::catalogue {

// So that a failing test names its cast.
static void PrintTo(const cast &c, std::ostream *out) { *out << c.name; }

} // namespace bcast::catalogue

namespace bcast::test {

using catalogue::cast;
using catalogue::pattern;
using catalogue::protocol;

namespace {

struct line {
    std::string text;
    std::vector<std::string> from, to;
    std::string no_null, flags, fails;
};

// The parts of a text between separators, which may be longer than the separator; without empty ones.
std::vector<std::string> split(const std::string &text, const std::string &separator)
{
    std::vector<std::string> parts;
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find(separator, at), text.size());
        if (end > at)
            parts.push_back(text.substr(at, end - at));
        at = end + separator.size();
        while (at < text.size() && text[at] == ' ')
            at++;
    }
    return parts;
}

bool is_one_of(const std::string &word, std::initializer_list<std::string_view> words)
{
    return std::ranges::find(words, word) != words.end();
}

// A line that is none of the table, between its head and the end of the comment, is left to the test.
std::vector<line> read_table()
{
    std::ifstream header(BCAST_SOURCE_DIR "/include/bcast/casts.h");
    const std::string margin = " *   ";
    const auto columns_of = [&](const std::string &text) {
        return text.starts_with(margin) ? split(text.substr(margin.size()), "  ") : std::vector<std::string>();
    };
    std::vector<line> table;
    std::string text;
    while (std::getline(header, text) &&
           columns_of(text) != std::vector<std::string>{"from", "to", "no_null", "flags", "fails", "with"})
        ;
    while (std::getline(header, text) && text != " */") {
        const std::vector<std::string> columns = columns_of(text);
        if ((columns.size() == 5 || columns.size() == 6) &&
            is_one_of(columns[2], {"behind", "ahead", "or 0", "kept", "1", "0"}) &&
            is_one_of(columns[3], {"each", "fill", "block", "kept", "1", "0"}) &&
            is_one_of(columns[4], {"set", "own", "0", "-"}))
            table.push_back(
                {text, split(columns[0], ", "), split(columns[1], ", "), columns[2], columns[3], columns[4]});
        else if (text != " *")
            table.push_back({text, {}, {}, {}, {}, {}});
    }
    return table;
}

const std::vector<line> &table()
{
    static const std::vector<line> lines = read_table();
    return lines;
}

// One entry of from or to: a group, the name of a type, or a part of the cast's name.
bool fits(const std::string &entry, bcast_type type, const std::string &word)
{
    static const std::map<std::string, std::set<bcast_type>> groups = {
        {"integers", {BCAST_TINYINT, BCAST_SMALLINT, BCAST_INT, BCAST_INT64}},
        {"numbers", {BCAST_TINYINT, BCAST_SMALLINT, BCAST_INT, BCAST_INT64, BCAST_FLOAT, BCAST_DOUBLE, BCAST_DEC}},
        {"characters", {BCAST_CHAR, BCAST_VARCHAR, BCAST_VARCHAR2}},
        {"bytes", {BCAST_BINARY, BCAST_VARBINARY}},
        {"temporal", {BCAST_DATE, BCAST_TIME, BCAST_TIME_TZ, BCAST_DATETIME, BCAST_DATETIME_TZ}},
        {"intervals", {BCAST_IVYM, BCAST_IVDT}}};
    static const std::map<std::string, bcast_type> types = {
        {"tinyint", BCAST_TINYINT},   {"smallint", BCAST_SMALLINT}, {"int", BCAST_INT},
        {"int64", BCAST_INT64},       {"float", BCAST_FLOAT},       {"double", BCAST_DOUBLE},
        {"dec", BCAST_DEC},           {"bit", BCAST_BIT},           {"boolean", BCAST_BOOLEAN},
        {"char", BCAST_CHAR},         {"varchar", BCAST_VARCHAR},   {"varchar2", BCAST_VARCHAR2},
        {"binary", BCAST_BINARY},     {"text", BCAST_TEXT},         {"varbinary", BCAST_VARBINARY},
        {"blob", BCAST_BLOB},         {"bfile", BCAST_BFILE},       {"time", BCAST_TIME},
        {"datetime", BCAST_DATETIME}, {"null", BCAST_NULL},         {"datetime_tz", BCAST_DATETIME_TZ}};
    if (const auto group = groups.find(entry); group != groups.end())
        return group->second.contains(type);
    if (const auto named = types.find(entry); named != types.end())
        return named->second == type;
    return entry == "any" || fnmatch(entry.c_str(), word.c_str(), 0) == 0;
}

const line *line_of(const cast &c)
{
    const std::string name(c.name.substr(std::string_view("bcast_").size()));
    const size_t to = name.find("_to_");
    const std::string source = name.substr(0, to), target = name.substr(to + 4);
    const line *last = nullptr;
    for (const line &each : table())
        if (std::ranges::any_of(each.from, [&](const std::string &e) { return fits(e, c.source, source); }) &&
            std::ranges::any_of(each.to, [&](const std::string &e) { return fits(e, c.target, target); }))
            last = &each;
    return last;
}

bool has_columns(const cast &c) { return c.arguments != pattern::int_low && c.arguments != pattern::int64_low; }

std::vector<cast> casts_with_columns()
{
    std::vector<cast> all;
    std::ranges::copy_if(catalogue::casts(), std::back_inserter(all), has_columns);
    return all;
}

std::string_view in_the_table(catalogue::no_null rule)
{
    switch (rule) {
    case catalogue::no_null::behind:
        return "behind";
    case catalogue::no_null::ahead:
        return "ahead";
    case catalogue::no_null::one:
        return "1";
    case catalogue::no_null::zero:
        return "0";
    case catalogue::no_null::or_zero:
        return "or 0";
    default:
        return "kept";
    }
}

TEST(header_table, has_lines_of_its_form_alone)
{
    EXPECT_FALSE(table().empty());
    for (const line &each : table())
        EXPECT_FALSE(each.from.empty()) << each.text;
}

TEST(header_table, has_a_line_for_each_cast_and_a_cast_for_each_line)
{
    std::set<const line *> used;
    for (const cast &c : casts_with_columns()) {
        EXPECT_NE(line_of(c), nullptr) << c.name;
        used.insert(line_of(c));
    }
    for (const line &each : table())
        EXPECT_TRUE(used.contains(&each)) << "no cast is told by" << each.text;
}

// ---- What the casts do: two present rows, without a selection

constexpr uint8_t first_flag = 0x81, second_flag = 0x42;

enum class values { fit, unfit };

std::string element_of(bcast_type type, values which)
{
    const bool fit = which == values::fit;
    switch (type) {
    case BCAST_INT64:
        return image_of(fit ? int64_t{1} : int64_t{1} << 40);
    case BCAST_FLOAT:
        return image_of(fit ? 1.0F : 1e30F);
    case BCAST_DOUBLE:
        return image_of(fit ? 1.0 : 1e30);
    case BCAST_DEC:
        return image_of(some_decimal(1));
    case BCAST_DATE:
    case BCAST_TIME:
    case BCAST_TIME_TZ:
    case BCAST_DATETIME:
    case BCAST_DATETIME_TZ:
        return some_record(1);
    case BCAST_IVYM:
        return image_of(ivym{1, 1, 0});
    case BCAST_IVDT:
        return image_of(ivdt{1, 1, 1, 1, 1, 0});
    case BCAST_CHAR:
    case BCAST_VARCHAR:
    case BCAST_VARCHAR2:
    case BCAST_BINARY:
    case BCAST_VARBINARY:
    case BCAST_TEXT:
    case BCAST_BLOB:
    case BCAST_BFILE:
        return text_element(fit ? "77" : "?!", 0);
    default:
        return image_of(fit ? int32_t{1} : int32_t{100000});
    }
}

// These do not ask whether the column had space, which then has to be there.
bool needs_space(const cast &c)
{
    return c.name == "bcast_varchar_to_varchar" || c.alias_of == "bcast_varchar_to_varchar" ||
           c.name == "bcast_varchar_to_bfile";
}

struct outcome {
    int32_t status;
    int32_t no_null;
    uint8_t first, second;
    bool copied_by_source; // the source's copy_row was called
};

class header_table_cast : public testing::TestWithParam<cast> {
protected:
    void SetUp() override
    {
        ASSERT_NE(line_of(GetParam()), nullptr);
        const auto callable = cast_at(dlsym(RTLD_DEFAULT, std::string(GetParam().name).c_str()), GetParam().arguments);
        ASSERT_TRUE(callable);
        cast_ = *callable;
    }

    // The call of that number to a service that can fail does so, if there is one.
    outcome run(int32_t no_null, values which, int32_t length, std::optional<size_t> failing_call = {})
    {
        const cast &c = GetParam();
        services().reset();
        services().numeric.integers[image_of(1.0)] = 1;
        services().numeric.integers[image_of(some_decimal(1))] = 1;
        if (failing_call && !needs_space(c))
            services().fail_call(*failing_call, ERR_OVERFLOW);
        const std::string element = element_of(c.source, which);
        const setup how{selection::none, no_null, guard_edge::end};
        source_column source(element.size(), 2, how);
        source.set_bytes(0, first_flag, element);
        source.set_bytes(1, second_flag, element);
        target_column target(element_of(c.target, which).size(), 2, how);
        int16_t zone = 60;
        const auto field = c.target == BCAST_IVYM ? IV_MONTH : IV_SECOND;
        const call_arguments with{.src = source.sealed(),
                                  .dst = target.column(),
                                  .rows = 2,
                                  .length = length,
                                  .heap = &zone,
                                  .temporal = {.src_scale = UINT16_MAX, // casts that may round do
                                               .dst_prec = static_cast<uint16_t>(length),
                                               .dst_scale = BCAST_IV_WORD(field, 2, 6),
                                               .round_flag = 1,
                                               .type_code = TYPE_DATETIME}};
        const int32_t status = call(cast_, with);
        const bool copied = std::ranges::count(services().log(), "copy_row", &service_call::service) > 0;
        return {status, target.column()->no_null, target.flags()[0], target.flags()[1], copied};
    }

    any_cast cast_;
};

TEST_P(header_table_cast, is_in_the_catalogue_as_its_line_says)
{
    const line &own = *line_of(GetParam());
    SCOPED_TRACE(own.text);
    EXPECT_EQ(own.no_null, in_the_table(GetParam().no_null));
    EXPECT_EQ(own.fails != "-", GetParam().protocol == protocol::stops || GetParam().protocol == protocol::captures);
}

TEST_P(header_table_cast, writes_flags_and_no_null_as_its_line_says)
{
    const line &own = *line_of(GetParam());
    SCOPED_TRACE(own.text);
    for (const int32_t no_null : {0, 1}) {
        const outcome made = run(no_null, values::fit, 1000);
        if (GetParam().protocol == protocol::refused)
            EXPECT_EQ(made.status, ERR_BAD_CONVERSION);
        else
            EXPECT_EQ(made.status, GetParam().protocol == protocol::absent ? BCAST_NO_SUCH_CAST + 0 : 0);

        if (own.flags == "each" || own.flags == "block" || (own.flags == "fill" && no_null == 0)) {
            EXPECT_EQ(made.first, first_flag);
            EXPECT_EQ(made.second, second_flag);
        } else {
            const bool kept = own.flags == "kept";
            EXPECT_EQ(made.first, kept ? untouched_flag(0) : own.flags != "0");
            EXPECT_EQ(made.second, kept ? untouched_flag(1) : own.flags != "0");
        }
        const bool copied = own.no_null == "behind" || own.no_null == "ahead";
        const bool constant = own.no_null == "1" || own.no_null == "0";
        EXPECT_EQ(made.no_null, copied ? no_null : constant ? own.no_null == "1" : untouched_no_null);
    }
}

// The first row does, by a service that fails, a value that does not fit, or a target too short for any.
TEST_P(header_table_cast, fails_as_its_line_says)
{
    const line &own = *line_of(GetParam());
    SCOPED_TRACE(own.text);
    if (GetParam().protocol == protocol::refused)
        return;
    size_t failures = 0;
    for (const int32_t no_null : {0, 1}) {
        for (const outcome &made :
             {run(no_null, values::fit, 1000, 0), run(no_null, values::unfit, 1000), run(no_null, values::unfit, 0)}) {
            if (made.status >= 0 || made.copied_by_source) // what a failing copy_row leaves stands beside the table
                continue;
            failures++;
            const bool ones_ahead = own.flags == "1" || (own.flags == "fill" && no_null != 0);
            if (own.fails == "0")
                EXPECT_EQ(made.first, 0);
            else
                EXPECT_EQ(made.first, ones_ahead ? 1 : first_flag);
            EXPECT_EQ(made.second, ones_ahead ? 1 : own.flags == "block" ? second_flag : untouched_flag(1));
            EXPECT_EQ(made.no_null, own.no_null == "ahead" ? no_null : own.no_null == "1" ? 1 : untouched_no_null);
        }
    }
    EXPECT_EQ(failures > 0, own.fails == "set" || own.fails == "0");
}

INSTANTIATE_TEST_SUITE_P(casts, header_table_cast, testing::ValuesIn(casts_with_columns()),
                         [](const auto &each) { return std::string(each.param.name); });

} // namespace
} // namespace bcast::test
