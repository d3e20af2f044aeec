// The commands of README.md print what stands below them.
#include "process.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

namespace bcast::test {
namespace {

const std::string source_directory = BCAST_SOURCE_DIR;

struct example {
    std::string command;
    std::string output;
};

// Blocks of indented lines in which "$ " begins a command, and a backslash at the end of a line continues it.
std::vector<example> examples_of(const std::string &text)
{
    std::vector<example> examples;
    std::istringstream stream(text);
    bool in_example = false, in_command = false;
    for (std::string line; std::getline(stream, line);) {
        const bool indented = line.starts_with("    ");
        const std::string content = indented ? line.substr(4) : "";
        if (indented && content.starts_with("$ ")) {
            examples.push_back({content.substr(2), ""});
            in_example = true;
            in_command = content.ends_with('\\');
        } else if (in_example && in_command) {
            examples.back().command += "\n" + content;
            in_command = content.ends_with('\\');
        } else if (indented && in_example) {
            examples.back().output += content + "\n";
        } else {
            in_example = false;
        }
    }
    return examples;
}

std::string output_of(const std::string &command, const std::string &directory)
{
    FILE *pipe = popen(("cd '" + directory + "' && { " + command + "\n} 2>&1").c_str(), "r");
    if (pipe == nullptr)
        return "no shell";
    std::string output;
    for (int c; (c = std::fgetc(pipe)) != EOF;)
        output += char(c);
    pclose(pipe);
    return output;
}

TEST(readme, examples_print_what_stands_below_them)
{
    const temporary_directory directory;
    std::filesystem::create_directory(directory.path("build"));
    std::filesystem::create_symlink(BCAST_TOOL_FILE, directory.path("build/bcast"));
    std::filesystem::create_symlink(source_directory + "/examples", directory.path("examples"));

    const std::vector<example> examples = examples_of(content_of(source_directory + "/README.md"));
    EXPECT_GE(examples.size(), 3u);
    for (const example &each : examples)
        EXPECT_EQ(output_of(each.command, directory.path("")), each.output) << each.command;
}

} // namespace
} // namespace bcast::test
