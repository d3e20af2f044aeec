// What the tests of the embedded services share.
#pragma once

#include <bcast/embedded.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bcast::test {

using column_ptr = std::unique_ptr<bcast_column, decltype(&bcast_column_free)>;
using pool_ptr = std::unique_ptr<bcast_pool, decltype(&bcast_pool_free)>;

inline column_ptr new_column(bcast_type type) { return {bcast_column_new(type), bcast_column_free}; }
inline pool_ptr new_pool() { return {bcast_pool_new(), bcast_pool_free}; }

inline std::vector<bcast_type> types_where(bool (*holds)(bcast_type))
{
    std::vector<bcast_type> types;
    for (int i = 0; i < BCAST_TYPE_COUNT; i++) {
        if (holds(static_cast<bcast_type>(i)))
            types.push_back(static_cast<bcast_type>(i));
    }
    return types;
}

inline std::vector<bcast_type> all_types()
{
    return types_where([](bcast_type) { return true; });
}

inline std::vector<bcast_type> string_types() { return types_where(bcast_type_is_string); }

// The types that append_value takes.
inline std::vector<bcast_type> fixed_types()
{
    return types_where([](bcast_type type) { return type != BCAST_NULL && !bcast_type_is_string(type); });
}

inline bool holds_large_objects(bcast_type type) { return type == BCAST_TEXT || type == BCAST_BLOB; }

inline bdta3_str string_element(bcast_column *column, uint32_t row)
{
    return static_cast<const bdta3_str *>(bcast_column_vector(column)->data->values)[row];
}

// The text of a row; nothing for a null pointer.
inline std::optional<std::string> text_of(const bcast_column *column, uint32_t row)
{
    uint32_t len = 12345;
    const char *text = bcast_column_text(column, row, &len);
    if (text == nullptr) {
        EXPECT_EQ(len, 0u) << "row " << row;
        return std::nullopt;
    }
    return std::string(text, len);
}

// An element of that type for test row i; no two rows alike, and never a null boolean.
inline std::vector<unsigned char> sample_element(bcast_type type, size_t i)
{
    std::vector<unsigned char> element(bcast_type_stride(type));
    for (size_t k = 0; k < element.size(); k++)
        element[k] = static_cast<unsigned char>(i * 31 + k * 7 + 1);
    if (type == BCAST_BOOLEAN) {
        const int32_t value = static_cast<int32_t>(i % 2);
        std::memcpy(element.data(), &value, sizeof value);
    }
    return element;
}

inline std::vector<unsigned char> element_of(const bcast_column *column, uint32_t row)
{
    const auto *bytes = static_cast<const unsigned char *>(bcast_column_value(column, row));
    return {bytes, bytes + bcast_type_stride(bcast_column_type(column))};
}

} // namespace bcast::test
