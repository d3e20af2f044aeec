// Source values as text, in which another engine takes them.
#pragma once

#include <bcast/bcast.h>
#include <services/decimal.h>
#include <services/temporal.h>

#include <charconv>
#include <string>
#include <type_traits>
#include <vector>

namespace bench {

inline std::string as_text(const bdta3_str &value) { return {value.text, size_t(value.length)}; }

template <class Number>
requires std::is_arithmetic_v<Number> std::string as_text(Number value)
{
    char text[400];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

inline std::string as_text(const xdec &value)
{
    char text[400];
    int32_t len = 0;
    xdec_to_char_with_zero(&value, text, sizeof text, 18, 4, &len);
    return {text, size_t(len)};
}

inline std::string as_text(const vqtime &value)
{
    vqdt_decoded decoded;
    char text[BCAST_TEXT_ROOM];
    vqdt_encode_fast(&value, &decoded);
    vqdt_to_char(&decoded, text, 0);
    return text;
}

template <class Element> std::vector<std::string> as_texts(const std::vector<Element> &values)
{
    std::vector<std::string> texts;
    for (const Element &value : values)
        texts.push_back(as_text(value));
    return texts;
}

} // namespace bench
