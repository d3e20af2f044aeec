// The header in front of the value in a large-object constant.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <bcast/column.h>

namespace embedded {

// As it lies in memory; see bcast_lob_read for the meaning.
struct lob_header {
    char magic[4] = {'L', 'O', 'B', 'C'};
    uint8_t version[2] = {1, 0};
    uint8_t value_len[4] = {};
    uint8_t zeros[33] = {};
};

static_assert(sizeof(lob_header) == LOB_HEADER_SIZE);

// The longest value whose constant has a length that fits an element.
inline constexpr uint32_t lob_value_max = INT32_MAX - LOB_HEADER_SIZE;

// Writes the header of a value of value_len bytes.
inline void write_lob_header(void *to, uint32_t value_len)
{
    static constexpr lob_header header;
    std::memcpy(to, &header, sizeof header);
    std::memcpy(static_cast<char *>(to) + offsetof(lob_header, value_len), &value_len, sizeof value_len);
}

} // namespace embedded
