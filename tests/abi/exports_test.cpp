// What the library shows and needs: the catalogue's functions, the services, and nothing else.

#include "catalogue/catalogue.h"
#include "tests/abi/header_text.h"
#include "tests/abi/library_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <set>
#include <tuple>

#include <dlfcn.h>

namespace bcast::test {
namespace {

std::set<std::string> functions_of_catalogue()
{
    std::set<std::string> names;
    for (const catalogue::cast &c : catalogue::casts())
        names.emplace(c.name);
    for (const std::string_view name : catalogue::other_functions())
        names.emplace(name);
    return names;
}

constexpr bool sanitizer_build = std::string_view(BCAST_SANITIZE) != "";

// A build with sanitizers has symbols of theirs, by names that no program may use.
bool is_of_a_sanitizer(const std::string &name)
{
    constexpr std::string_view prefixes[] = {"__asan_",      "__ubsan_",   "__tsan_",          "__lsan_",
                                             "__sanitizer_", "__odr_asan", "_ZTVN10__cxxabiv1"};
    return sanitizer_build &&
           std::ranges::any_of(prefixes, [&](std::string_view prefix) { return name.starts_with(prefix); });
}

TEST(exports, no_symbol_but_the_functions_of_the_catalogue_and_the_settings)
{
    const std::set<std::string> functions = functions_of_catalogue();
    for (const symbol &s : exported_symbols()) {
        if (is_of_a_sanitizer(s.name))
            std::cout << "of a sanitizer: " << s.name << '\n';
        else if (s.name == "global_bcast_var")
            EXPECT_TRUE(s.kind == 'B' || s.kind == 'D') << "global_bcast_var is of kind " << s.kind;
        else {
            EXPECT_TRUE(functions.contains(s.name)) << s.name << " is exported, and is no name of the catalogue";
            EXPECT_EQ(s.kind, 'T') << s.name;
        }
    }
}

TEST(exports, settings_are_exported)
{
    EXPECT_EQ(std::ranges::count(exported_symbols(), "global_bcast_var", &symbol::name), 1);
}

TEST(exports, settings_are_the_only_state)
{
    if (sanitizer_build)
        GTEST_SKIP() << "sanitizers keep data of their own in the library";
    // Of the tool chain's start files, and for picking an instruction set at load.
    const std::set<std::string> of_the_tool_chain{"__TMC_END__", "__dso_handle",    "completed.0",
                                                  "__cpu_model", "__cpu_features2", "__cpu_features"};
    const std::vector<std::string> names = writable_data();
    EXPECT_EQ(std::ranges::count(names, "global_bcast_var"), 1) << "the library has no symbol table to judge by";
    for (const std::string &name : names)
        EXPECT_TRUE(name == "global_bcast_var" || of_the_tool_chain.contains(name)) << name << " is state";
}

TEST(exports, have_every_function_of_the_catalogue)
{
    std::set<std::string> missing = functions_of_catalogue();
    for (const symbol &s : exported_symbols())
        missing.erase(s.name);
    EXPECT_EQ(missing, std::set<std::string>{});
}

TEST(imports, nothing_is_needed_but_services_and_libc)
{
    const std::vector<std::string> services = services_of_headers();
    void *libc = dlopen("libc.so.6", RTLD_LAZY | RTLD_NOLOAD);
    ASSERT_NE(libc, nullptr) << dlerror();
    const std::set<std::string> of_the_tool_chain{"_ITM_deregisterTMCloneTable", "_ITM_registerTMCloneTable",
                                                  "__gmon_start__"};
    for (const symbol &s : undefined_symbols()) {
        if (is_of_a_sanitizer(s.name))
            continue;
        const bool of_libc = dlsym(libc, s.name.c_str()) != nullptr;
        const bool optional = (s.kind == 'w' || s.kind == 'v') && of_the_tool_chain.contains(s.name);
        const bool service = std::ranges::count(services, s.name) > 0;
        EXPECT_TRUE(of_libc || optional || service) << s.name << " is needed, and is neither a service nor of libc";
    }
}

TEST(imports, services_are_those_that_the_headers_declare_and_those_that_casts_call)
{
    const std::vector<std::string> in_headers = services_of_headers();
    const std::set<std::string> declared(in_headers.begin(), in_headers.end());
    std::set<std::string> needed, called;
    for (const symbol &s : undefined_symbols())
        if (declared.contains(s.name))
            needed.insert(s.name);
    for (const catalogue::cast &c : catalogue::casts())
        called.insert(c.services.begin(), c.services.end());
    EXPECT_EQ(called.erase("copy_row"), 1U) << "it is no function: a column holds it";
    EXPECT_EQ(needed, declared);
    EXPECT_EQ(called, declared);
}

TEST(imports, no_library_is_needed_but_libc)
{
    for (const std::string &library : dynamic_entries("NEEDED")) {
        // A sanitizer build needs its run-time library, and what that one is linked with.
        if (sanitizer_build) {
            std::cout << "a sanitizer build, needs " << library << '\n';
            EXPECT_EQ(library.find("bcast"), std::string::npos);
            continue;
        }
        EXPECT_EQ(library, "libc.so.6");
    }
}

TEST(exports, shared_object_name_has_the_major_version)
{
    EXPECT_EQ(dynamic_entries("SONAME"), std::vector<std::string>{"libbcast.so.1"});
}

// The one place that knows how many there are.
TEST(catalogue, has_348_functions_of_which_344_are_casts)
{
    EXPECT_EQ(catalogue::casts().size(), 344U);
    EXPECT_EQ(functions_of_catalogue().size(), 348U);
}

TEST(catalogue, has_the_casts_of_the_public_header)
{
    std::vector<std::string> declared = casts_of_public_header(), listed;
    for (const catalogue::cast &c : catalogue::casts())
        listed.emplace_back(c.name);
    std::ranges::sort(declared);
    std::ranges::sort(listed);
    std::vector<std::string> not_listed, not_declared;
    std::ranges::set_difference(declared, listed, std::back_inserter(not_listed));
    std::ranges::set_difference(listed, declared, std::back_inserter(not_declared));
    EXPECT_EQ(not_listed, std::vector<std::string>{}) << "declared in casts.h, but not in the catalogue";
    EXPECT_EQ(not_declared, std::vector<std::string>{}) << "in the catalogue, but not declared in casts.h";
    EXPECT_EQ(std::ranges::adjacent_find(listed), listed.end()) << "the catalogue has a name twice";
}

// Casts are named after their types and their form, each in one of a few ways.
std::string name_by_types(const catalogue::cast &c)
{
    using catalogue::form, catalogue::pattern;
    const auto is_interval = [](bcast_type type) { return type == BCAST_IVYM || type == BCAST_IVDT; };
    std::string from(c.from), to(c.to);
    if (is_interval(c.source)) {
        from.insert(2, "_");
        if (is_interval(c.target))
            to.erase(0, 2);
    }
    const bool is_precise = c.arguments == pattern::scaled_capture && !is_interval(c.target);
    const std::string name = (is_precise ? "bcast_precise_" : "bcast_") + from + "_to_" + to;
    if (c.arguments == pattern::date_fast || c.arguments == pattern::tltz_fast)
        return name + "_fast";
    if (c.source == BCAST_DATETIME && c.target == BCAST_VARCHAR)
        return name + "_ex";
    return name + (c.form == form::cuts           ? "_explicit"
                   : c.form == form::compares     ? "_directly"
                   : c.form == form::compares_one ? "_directly_low"
                                                  : "");
}

TEST(catalogue, names_are_made_of_types_and_form)
{
    for (const catalogue::cast &c : catalogue::casts()) {
        if (c.form == catalogue::form::is_body)
            EXPECT_TRUE(c.name.ends_with("_inner")) << c.name;
        else
            EXPECT_EQ(name_by_types(c), c.name);
    }
}

TEST(catalogue, has_one_cast_of_each_form_between_two_types)
{
    std::set<std::tuple<std::string_view, std::string_view, catalogue::form>> ways;
    for (const catalogue::cast &c : catalogue::casts()) {
        if (c.form == catalogue::form::is_body)
            continue;
        EXPECT_TRUE(ways.emplace(c.from, c.to, c.form).second) << c.name << " is not the only one";
        EXPECT_EQ(catalogue::find(c.from, c.to, c.form), &c) << c.name;
    }
    EXPECT_EQ(catalogue::find("varchar", "int")->name, "bcast_varchar_to_int");
    EXPECT_EQ(catalogue::find("char", "char", catalogue::form::cuts), nullptr);
}

TEST(catalogue, casts_to_the_local_zone_have_their_type_in_the_name)
{
    for (const catalogue::cast &c : catalogue::casts())
        EXPECT_EQ(c.to_local_zone,
                  c.name.find("tltz") != std::string_view::npos || c.name.ends_with("_timestamp_local_time_zone"))
            << c.name;
}

TEST(catalogue, finds_each_cast_by_its_name)
{
    for (const catalogue::cast &c : catalogue::casts())
        EXPECT_EQ(catalogue::find(c.name), &c) << c.name;
    EXPECT_EQ(catalogue::find("bcast_int_to_nothing"), nullptr);
    EXPECT_EQ(catalogue::find(""), nullptr);
}

} // namespace
} // namespace bcast::test
