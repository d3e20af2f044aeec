#include "fields.h"

#include "plain_csv.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace bcast::test {

namespace {

std::string in_csv(const std::string &text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char c : text)
        quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + "\"";
}

std::string code_and_name(std::int32_t code)
{
    switch (code) {
    case ERR_OVERFLOW:
        return "-6102,ERR_OVERFLOW";
    case ERR_TRUNCATED:
        return "-6108,ERR_TRUNCATED";
    case ERR_BAD_CONVERSION:
        return "-6111,ERR_BAD_CONVERSION";
    case ERR_BAD_BFILE:
        return "-4556,ERR_BAD_BFILE";
    case ERR_BAD_DATETIME:
        return "-6118,ERR_BAD_DATETIME";
    case ERR_BAD_INTERVAL:
        return "-6115,ERR_BAD_INTERVAL";
    default:
        return "?";
    }
}

std::vector<std::string> words_of(const std::string &line)
{
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

// The line of column v in the summary: column, type, rows, nulls, failed.
std::vector<std::string> sums_of_v(const std::string &summary)
{
    std::istringstream lines(summary);
    for (std::string line; std::getline(lines, line);)
        if (const auto words = words_of(line); !words.empty() && words[0] == "v")
            return words;
    return {};
}

} // namespace

void expect_fields(const std::string &type, const std::vector<field> &fields, const std::vector<std::string> &options)
{
    SCOPED_TRACE(type);
    std::string text = "u,v\n", table = "v\n", failures = no_failures;
    std::uint64_t nulls = 0, failed = 0;
    for (std::size_t row = 1; row <= fields.size(); row++) {
        const field &each = fields[row - 1];
        text += std::to_string(row) + "," + in_csv(each.text) + "\n";
        table += in_csv(each.value) + "\n";
        nulls += each.is_null ? 1 : 0;
        if (each.code != 0) {
            failed++;
            failures += std::to_string(row) + ",v," + in_csv(each.text) + "," + code_and_name(each.code) + "\n";
        }
    }
    const loaded l = load(text, {"v:" + type}, options);
    EXPECT_EQ(l.run.exit_status, failed > 0 ? 1 : 0) << l.run.how << l.run.errors;
    EXPECT_EQ(l.table, table);
    EXPECT_EQ(l.failures, failures);
    EXPECT_EQ(sums_of_v(l.run.errors), words_of("v " + type + " " + std::to_string(fields.size()) + " " +
                                                std::to_string(nulls) + " " + std::to_string(failed)));
}

expectation expect_column(const std::string &file, const std::string &name,
                          const std::function<field(const std::string &)> &becomes)
{
    const plain_csv csv = read_plainly(content_of(file), false);
    const auto &header = csv.records.at(0).fields;
    const auto at = std::size_t(std::find(header.begin(), header.end(), name) - header.begin());
    expectation expected = {.table = in_csv(name) + "\n"};
    for (std::size_t row = 1; row < csv.records.size(); row++) {
        const std::string &text = csv.records[row].fields.at(at);
        const field result = becomes(text);
        expected.table += in_csv(result.value) + "\n";
        if (result.code != 0) {
            expected.failed++;
            expected.failures +=
                std::to_string(row) + "," + name + "," + in_csv(text) + "," + code_and_name(result.code) + "\n";
        }
    }
    return expected;
}

void expect_loaded(const loaded &l, const expectation &expected)
{
    EXPECT_EQ(l.run.exit_status, expected.failed > 0 ? 1 : 0) << l.run.how << l.run.errors;
    EXPECT_TRUE(l.table == expected.table);
    EXPECT_TRUE(l.failures == expected.failures);
}

} // namespace bcast::test
