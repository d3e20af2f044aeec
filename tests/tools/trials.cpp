#include "trials.h"

#include <bcast/embedded.h>

#include <gtest/gtest.h>

namespace bcast::test {

std::string told(std::int32_t code)
{
    return "error " + std::to_string(code) + " " + bcast_code_name(code) + ": " + bcast_code_text(code) + "\n";
}

namespace {

void expect(const trial &each, const std::vector<std::string> &options)
{
    SCOPED_TRACE(each.from + " to " + each.to + ": \"" + each.value + "\"");
    std::vector<std::string> arguments = {"cast", "--from", each.from, "--to", each.to};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.push_back(each.value);
    const run_result run = run_bcast(arguments);
    EXPECT_EQ(run.exit_status, each.code != 0 ? 1 : 0) << run.how;
    EXPECT_EQ(run.output, each.code != 0 ? "" : each.result + "\n");
    EXPECT_EQ(run.errors, each.code != 0 ? "\"" + each.value + "\": " + told(each.code) : "");
}

} // namespace

void expect_all(const std::vector<trial> &trials, const std::vector<std::string> &options)
{
    for (const trial &each : trials)
        expect(each, options);
}

} // namespace bcast::test
