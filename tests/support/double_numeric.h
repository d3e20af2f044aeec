// The double's services for decimals and floating numbers. What they make of a value is told by a test, or else by the
// value's bytes alone, so that a cast cannot have made it up.
#pragma once

#include <bcast/column.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace bcast::test {

struct service_call;

// By the bytes of the double or of the decimal that a service is handed.
struct numeric_answers {
    std::map<std::string, int64_t, std::less<>> integers;     // of dou2int64 and xdec_get_int64
    std::map<std::string, double, std::less<>> doubles;       // of xdec_get_double
    std::map<std::string, std::string, std::less<>> texts;    // of vq_dou2char and xdec_to_char_with_zero
    std::map<std::string, int32_t, std::less<>> text_lengths; // what these two say, in place of the truth
    bool stores_text_length = true;                           // xdec_to_char_with_zero does
    bool logs_places = true;               // of decimals that become a number; some casts take a copy
    std::function<void()> on_text = [] {}; // xdec_to_char_with_zero

    int64_t integer_of(std::string_view image) const;  // a value that is not here has one that fits each target
    double double_of(std::string_view image) const;    // a value that is not here has one that is a float
    std::string text_of(std::string_view image) const; // a value that is not here has one of 1 to 9 bytes
};

// A decimal for a test to convert: bytes that no rule is behind, and not the same for two numbers.
xdec some_decimal(uint32_t number);

// The decimal that a service makes of a source (the bytes of an integer, a double or a decimal, or a text).
xdec made_decimal(std::string_view source, int32_t len, int32_t prec);

// What a cast should have called. where is the place of the element in its column.
service_call judges_float(double value);
service_call judges_int64(double value);
service_call rounds_double(double value);
service_call formats_double(int32_t kind, double value);
service_call makes_decimal_of_int64(int64_t value, int32_t len, int32_t prec);
service_call makes_decimal_of_text(const bdta3_str &element, int32_t text_len, int32_t len, int32_t prec);
service_call makes_decimal_of_double(double value, int32_t len, int32_t prec);
service_call makes_decimal_of_decimal(const void *where, std::string image, int32_t len, int32_t prec);
service_call takes_double_of_decimal(const void *where, std::string image);
service_call takes_int64_of_decimal(const void *where, std::string image);
service_call formats_decimal(const void *where, std::string image, int32_t buf_size, int32_t len, int32_t prec);

} // namespace bcast::test
