#include "catalogue/catalogue.h"
#include "process.h"
#include "terminal.h"

#include <bcast/embedded.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <sstream>

#include <dlfcn.h>

namespace bcast::test {
namespace {

std::vector<std::string> lines_of(const std::string &text)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> fields_of(const std::string &line)
{
    std::istringstream stream(line);
    std::vector<std::string> fields;
    for (std::string field; std::getline(stream, field, '\t');)
        fields.push_back(field);
    return fields;
}

// The exported casts for which filter is true; this program is linked with the same library.
std::set<std::string> exported(const std::function<bool(const catalogue::cast &)> &filter)
{
    std::set<std::string> names;
    for (const catalogue::cast &cast : catalogue::casts())
        if (filter(cast) && dlsym(RTLD_DEFAULT, std::string(cast.name).c_str()) != nullptr)
            names.emplace(cast.name);
    return names;
}

std::set<std::string> listed(const run_result &run)
{
    std::set<std::string> names;
    for (const std::string &line : lines_of(run.output))
        names.insert(fields_of(line).at(2));
    return names;
}

TEST(list, has_every_exported_cast_and_no_other)
{
    const run_result run = run_bcast({"list"});
    EXPECT_EQ(run.exit_status, 0) << run.how;
    const auto all = exported([](const catalogue::cast &) { return true; });
    EXPECT_EQ(listed(run), all);
    const std::string count = std::to_string(catalogue::casts().size());
    EXPECT_EQ(all.size(), catalogue::casts().size());
    EXPECT_EQ(run.errors,
              count + " listed; this library has " + count + " of the " + count + " casts of the catalogue\n");
}

// The catalogue has the names of types by itself.
TEST(list, types_have_one_name)
{
    const std::map<std::string_view, bcast_type> others = {
        {"varbit", BCAST_BIT},          {"hex_char", BCAST_CHAR},
        {"hex_varchar", BCAST_VARCHAR}, {"hex_varchar2", BCAST_VARCHAR2},
        {"tltz", BCAST_DATETIME_TZ},    {"timestamp_local_time_zone", BCAST_DATETIME_TZ}};
    const auto element_of = [&](std::string_view name) {
        const auto other = others.find(name);
        return other != others.end() ? other->second : bcast_type_from_name(name.data(), name.size());
    };
    for (const catalogue::cast &cast : catalogue::casts()) {
        EXPECT_EQ(element_of(cast.from), cast.source) << cast.name;
        EXPECT_EQ(element_of(cast.to), cast.target) << cast.name;
    }
}

TEST(list, lines_have_source_target_name_and_what_a_failure_does)
{
    const std::vector<std::string> list = lines_of(run_bcast({"list"}).output);
    for (const std::string line :
         {"int\tint64\tbcast_int_to_int64\tnever fails", "int64\ttinyint\tbcast_int64_to_tinyint\tstops",
          "varchar\tint\tbcast_varchar_to_int\tcaptures", "smallint\ttext\tbcast_smallint_to_text\tcaptures"})
        EXPECT_NE(std::find(list.begin(), list.end(), line), list.end()) << line;
}

TEST(list, filters_leave_casts_of_these_types)
{
    const auto from_int = [](const catalogue::cast &cast) { return cast.source == BCAST_INT; };
    const auto to_text = [](const catalogue::cast &cast) { return cast.target == BCAST_TEXT; };
    EXPECT_EQ(listed(run_bcast({"list", "--from", "int"})), exported(from_int));
    EXPECT_EQ(listed(run_bcast({"list", "--to", "text"})), exported(to_text));
    EXPECT_EQ(listed(run_bcast({"list", "--from", "int", "--to", "text"})),
              (std::set<std::string>{"bcast_int_to_text"}));

    const run_result none = run_bcast({"list", "--from", "int64", "--to", "bfile"});
    EXPECT_EQ(none.exit_status, 0) << none.how;
    EXPECT_EQ(none.output, "");
    EXPECT_EQ(none.errors.substr(0, 9), "0 listed;");
}

TEST(list, filter_of_no_type_is_refused)
{
    const run_result run = run_bcast({"list", "--to", "integer"});
    EXPECT_EQ(run.exit_status, 2) << run.how;
    EXPECT_EQ(run.output, "");
    const std::string beginning = "bcast: --to \"integer\": there is no such type; there are tinyint, smallint, int, ";
    EXPECT_EQ(run.errors.substr(0, beginning.size()), beginning);
}

TEST(list, is_a_table_on_a_terminal)
{
    terminal screen;
    const run_result run =
        run_bcast({"list", "--from", "int64", "--to", "tinyint"}, {.output = descriptor_stream(screen.descriptor())});
    EXPECT_EQ(run.exit_status, 0) << run.how;
    EXPECT_EQ(screen_after(screen.received()), "source  target   name                    failures\n"
                                               "int64   tinyint  bcast_int64_to_tinyint  stops\n");
}

} // namespace
} // namespace bcast::test
