#include "plain_csv.h"

#include <cstddef>

namespace bcast::test {

plain_csv read_plainly(std::string_view text, bool empty_lines_count)
{
    plain_csv result;
    std::size_t at = text.starts_with("\xEF\xBB\xBF") ? 3 : 0;
    std::uint64_t line = 1;

    // How many bytes of line end stand here. At the end of the text a line end is to be thought of, and a lone CR
    // there belongs to it.
    const auto line_end_here = [&]() -> std::size_t {
        if (text.substr(at, 1) == "\n")
            return 1;
        if (text.substr(at, 2) == "\r\n")
            return 2;
        return text.substr(at) == "\r" ? 1 : 0;
    };
    const auto fail = [&](plain_csv::error what, std::uint64_t in_line) {
        result.what = what;
        result.error_line = in_line;
        return result;
    };

    while (at < text.size()) {
        plain_record record = {line, {}};
        bool any_quoted = false;
        for (bool more = true; more;) {
            std::string field;
            if (text.substr(at, 1) == "\"") {
                any_quoted = true;
                const std::uint64_t opened = line;
                at++;
                for (;;) {
                    if (at == text.size())
                        return fail(plain_csv::error::no_closing_quote, opened);
                    if (text.substr(at, 2) == "\"\"") {
                        field += '"';
                        at += 2;
                    } else if (text[at] == '"') {
                        at++;
                        break;
                    } else {
                        line += text[at] == '\n' ? 1 : 0;
                        field += text[at++];
                    }
                }
                if (at < text.size() && text[at] != ',' && line_end_here() == 0)
                    return fail(plain_csv::error::behind_quote, line);
            } else {
                while (at < text.size() && text[at] != ',' && line_end_here() == 0)
                    field += text[at++];
            }
            record.fields.push_back(field);
            more = at < text.size() && text[at] == ',';
            at += more ? 1 : 0;
        }
        at += line_end_here();
        line++;
        const bool empty = record.fields.size() == 1 && record.fields[0].empty() && !any_quoted;
        if (!empty || empty_lines_count)
            result.records.push_back(record);
    }
    return result;
}

} // namespace bcast::test
