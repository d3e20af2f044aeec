#include "report.h"

#include "errors.h"
#include "table.h"

#include <bcast/embedded.h>

namespace bcast::tool {

namespace {

std::string_view or_nothing(const char *text) { return text != nullptr ? text : ""; }

} // namespace

std::string code_and_name(std::int32_t code)
{
    const char *name = bcast_code_name(code);
    return std::to_string(code) + (name != nullptr ? " " + std::string(name) : "");
}

std::string described(std::int32_t code)
{
    return "error " + code_and_name(code) + ": " + std::string(or_nothing(bcast_code_text(code)));
}

failure_list::failure_list(output_file &file, bool header_at_once) : file_(file)
{
    if (header_at_once)
        write_header();
}

void failure_list::write_header()
{
    file_.write("row,column,text,code,name\n");
    has_header_ = true;
}

void failure_list::add(std::uint64_t row, std::string_view column, std::string_view text, std::int32_t code)
{
    if (!has_header_)
        write_header();
    file_.write(std::to_string(row) + ",");
    write_csv_field(file_, column);
    file_.write(",");
    write_csv_field(file_, text);
    file_.write("," + std::to_string(code) + ",");
    file_.write(or_nothing(bcast_code_name(code)));
    file_.write("\n");
}

std::uint64_t column_sums::failed() const
{
    std::uint64_t sum = 0;
    for (const auto &[code, count] : failures)
        sum += count;
    return sum;
}

std::string summary(const std::vector<column_sums> &columns)
{
    std::vector<std::vector<std::string>> lines = {{"column", "type", "rows", "nulls", "failed"}};
    for (const column_sums &each : columns) {
        lines.push_back({plain_or_in_quotes(each.column), each.type, std::to_string(each.rows),
                         std::to_string(each.nulls), std::to_string(each.failed())});
        for (const auto &[code, count] : each.failures)
            lines.push_back({"", "", "", "", std::to_string(count), code_and_name(code)});
    }
    return aligned(lines, {align::left, align::left, align::right, align::right, align::right, align::left});
}

} // namespace bcast::tool
