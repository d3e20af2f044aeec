// The double's services for characters: numbers and locators in text, character sets, and copies of rows.
#pragma once

#include <bcast/column.h>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace bcast::test {

struct service_call;

// What str2int64_directly makes of a text. value and sign are stored even where nobody may read them.
struct literal_reading {
    int32_t status;
    int64_t value;
    char sign;
};

// What utl_is_valid_bfile_str makes of a text, and leaves in its outputs.
struct locator_reading {
    int32_t valid;
    uint32_t length;
    int32_t is_null;
};

struct character_answers {
    std::map<std::string, literal_reading, std::less<>> literals; // a text that is not here is a whole number in digits
    // Of utl_digit_from_char, which stores nothing where there is no number; a text that is not here is in digits.
    std::map<std::string, std::optional<double>, std::less<>> numbers;
    std::map<std::string, locator_reading, std::less<>> locators; // a text that is not here is a locator as it stands
    double result_of_failed_number = 42.5;                        // what a failing utl_digit_from_char leaves

    // Of the bytes within the limit, how many are whole characters; all of them if there is no such function.
    std::function<uint32_t(std::string_view)> whole_characters;
};

// What a cast should have called, with the element that it should have taken the text from.
service_call parses_literal(const bdta3_str &element, int32_t length);
service_call parses_number(const bdta3_str &element, int32_t length);
service_call measures_characters(const bdta3_str &element, int32_t limit, int32_t charset);
service_call validates_locator(const bdta3_str &element);
service_call copies_row(const bdta3_col *source, const bdta3_col *target, uint32_t row);
service_call allocates(const bdta3_col *target, int32_t size);

// What copy_row leaves in an element: the source's, but for another pad_len; and in one that it failed to copy.
inline constexpr int32_t pad_len_of_copies = 0x5EED;
inline constexpr bdta3_str failed_copy = {0x5EED, 0x5EED, nullptr};

// copy_row as source columns and target columns have it. A cast has no business with the target's.
int32_t copy_row_of_source(void *env, void *heap, const bdta3_col *src, uint32_t src_pos, bdta3_col *dst,
                           uint32_t dst_pos, void *reserved, uint32_t count);
int32_t copy_row_of_target(void *env, void *heap, const bdta3_col *src, uint32_t src_pos, bdta3_col *dst,
                           uint32_t dst_pos, void *reserved, uint32_t count);

} // namespace bcast::test
