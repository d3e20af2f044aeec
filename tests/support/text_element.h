// String elements for tests of casts from text and binary values. The texts stay for the whole run.
#pragma once

#include "tests/support/batch.h"
#include "tests/support/call.h"

#include <bcast/column.h>

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bcast::test {

// The pad_len of elements in casts that have no business with it.
inline constexpr int32_t unread_pad_len = 0x20202020;

// An element whose text ends, or starts, at an inaccessible page, and cannot be written.
inline std::string text_element(std::string_view text, int32_t pad_len, guard_edge edge = guard_edge::end)
{
    static std::map<std::pair<std::string, guard_edge>, guarded<char>> texts;
    const auto [held, is_new] = texts.try_emplace({std::string(text), edge}, std::span<const char>(text), edge);
    if (is_new)
        held->second.make_read_only();
    return image_of(bdta3_str{static_cast<int32_t>(text.size()), pad_len, held->second.data()});
}
inline std::string text_element(std::string_view text, guard_edge edge = guard_edge::end)
{
    return text_element(text, unread_pad_len, edge);
}

inline std::vector<std::string> text_elements(const std::vector<std::string> &texts)
{
    std::vector<std::string> elements;
    for (const std::string &text : texts)
        elements.push_back(text_element(text));
    return elements;
}

// An element with that length word. Its text may not be looked at, unless there is one.
inline std::string element_of_length(int32_t length, int32_t pad_len = unread_pad_len)
{
    return image_of(bdta3_str{length, pad_len, static_cast<char *>(inaccessible())});
}
inline std::string element_of_length(int32_t length, const char *text)
{
    return image_of(bdta3_str{length, unread_pad_len, const_cast<char *>(text)});
}

} // namespace bcast::test
