#include "errors.h"

#include <cstddef>

namespace bcast::tool {

namespace {

constexpr std::size_t longest_shown = 200;

bool continues_character(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// How much of text to show: not more than longest_shown bytes, and of UTF-8 text no part of a character.
std::size_t shown_length(std::string_view text)
{
    if (text.size() <= longest_shown)
        return text.size();
    for (std::size_t length = longest_shown; length > longest_shown - 4; --length)
        if (!continues_character(text[length]))
            return length;
    return longest_shown;
}

} // namespace

std::string in_quotes(std::string_view text)
{
    static constexpr char digits[] = "0123456789abcdef";
    const std::size_t length = shown_length(text);
    std::string result = "\"";
    for (const char c : text.substr(0, length)) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n')
            result += "\\n";
        else if (c == '\r')
            result += "\\r";
        else if (c == '\t')
            result += "\\t";
        else if (c == '"' || c == '\\')
            (result += '\\') += c;
        else if (byte < 0x20 || byte == 0x7F)
            ((result += "\\x") += digits[byte >> 4]) += digits[byte & 15];
        else
            result += c;
    }
    return result + (length < text.size() ? "...\"" : "\"");
}

std::string plain_or_in_quotes(std::string_view text)
{
    const std::string escaped = in_quotes(text);
    return text.empty() || escaped.size() != text.size() + 2 ? escaped : std::string(text);
}

} // namespace bcast::tool
