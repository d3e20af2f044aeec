// The double's services for binary values: digits to bytes and back, and integers in bytes.
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

struct binary_answers {
    std::map<std::string, std::string, std::less<>> decoded; // a text that is not here is digits, two for each byte
    std::map<std::string, std::string, std::less<>> spelled; // bytes that are not here have their digits; none longer
    std::map<std::string, std::string, std::less<>> held;    // what nstr_assign_const makes of a text, if not the text
    std::map<std::string, int64_t, std::less<>> integers;    // bytes that are not here are decimal digits
    std::function<void()> on_decode = [] {};

    const void *assigned_from = nullptr; // where the last bytes stood that were assigned to a column
    const void *decoded_to = nullptr;    // where the last text was decoded to
    const void *constant_from = nullptr; // where the last value stood that was made a constant

    // What the services make of that; nothing where they fail with ERR_BAD_CONVERSION.
    std::optional<std::string> bytes_of(const std::string &text, bool has_prefix) const;
    std::string text_of(const std::string &bytes) const;
    std::string held_of(const std::string &text) const;
    std::optional<int64_t> integer_in(const std::string &bytes) const;
};

// The digits of bytes, as the double has them.
std::string digits_of(std::string_view bytes);

// What nbin_to_char_ex of the double leaves behind when it fails on so many bytes.
std::string digits_of_failure(size_t bytes);

// What a cast should have called, with the element that it should have taken the bytes from.
service_call decodes(const bdta3_str &element, int32_t has_prefix);
service_call spells(const bdta3_str &element);
service_call reads_integer(const bdta3_str &element, int32_t width);
service_call reads_int64(const bdta3_str &element);
service_call holds_text(std::string text, std::string_view working_value);
service_call clears_value();

} // namespace bcast::test
