// Elements for batches of temporal values and intervals.
#pragma once

#include "tests/support/row_cast.h"

#include <deque>
#include <string>
#include <vector>

namespace bcast::test {

// Records that no rule is behind.
inline std::vector<std::string> some_records(size_t bytes = sizeof(vqtime))
{
    std::vector<std::string> records;
    for (uint32_t number = 0; number < 13; number++)
        records.push_back(some_record(number, bytes));
    return records;
}

// The pad_len of string elements, with which no cast of temporal values has any business.
inline constexpr int32_t pad_len_not_read = 0x20202020;

// A string element whose text ends, or starts, at an inaccessible page. The text stays for the whole run.
inline std::string text_element(std::string_view text, guard_edge edge = guard_edge::end)
{
    static std::deque<guarded<char>> texts;
    guarded<char> &held = texts.emplace_back(std::span<const char>(text), edge);
    held.make_read_only();
    return image_of(bdta3_str{static_cast<int32_t>(text.size()), pad_len_not_read, held.data()});
}

// An element with that length word, and a text that may not be looked at.
inline std::string element_of_length(int32_t length)
{
    return image_of(bdta3_str{length, pad_len_not_read, static_cast<char *>(inaccessible())});
}

// Puts an element at several places of a batch of samples, one batch after the other, and in all of them.
template <class Check>
void at_several_rows(const row_cast &c, const std::string &element, const Check &check, uint8_t flag = 0x81)
{
    constexpr uint32_t rows = 1030;
    const std::vector<uint8_t> flags(rows, 1);
    for (const uint32_t row : {0U, 3U, 1023U, 1024U, rows - 1}) {
        std::vector<batch_row> batch = sample_rows(c, flags);
        batch[row] = {flag, element};
        check(batch);
    }
    check(std::vector<batch_row>(5, {flag, element}));
}

} // namespace bcast::test
