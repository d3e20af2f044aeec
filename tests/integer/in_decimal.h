// The integers and bit in decimal, into characters: who writes the digits, and what pad_len becomes.
#pragma once

#include "tests/support/row_cast.h"

#include <limits>

namespace bcast::test {

enum class digits_by { str_from_int, the_cast };
enum class pad { rest_of_length, nothing };

inline constexpr int32_t refusal_of_double = -9149; // str_from_int of the double, for a text longer than its limit

inline int32_t code_of_too_long(digits_by route)
{
    return route == digits_by::the_cast ? int32_t{ERR_TARGET_TOO_SHORT} : refusal_of_double;
}

// One to digits digits, or fewer and a sign; another value for most rows.
inline int64_t value_of_up_to(uint32_t digits, uint32_t row)
{
    int64_t value = 7 + row % 3;
    for (uint32_t digit = 1; digit < 1 + row % digits; digit++)
        value = value * 10 + (row + digit) % 10;
    return row % 4 == 3 ? -(value / 10) : value;
}

// Of more values than nine digits, a sign and their order can make differ. Null rows hold one that is far too long.
template <class Element> std::vector<std::string> integers_of_every_length()
{
    std::vector<std::string> elements;
    for (uint32_t row = 0; row < 180; row++)
        elements.push_back(image_of(static_cast<Element>(value_of_up_to(9, row))));
    return elements;
}

template <class Element>
row_cast into_characters(const char *name, bcast_length_fn *cast, digits_by route, pad padding, int32_t length = 12)
{
    return {.name = name,
            .cast = cast,
            .to_bytes = sizeof(bdta3_str),
            .flags = row_flags::copied,
            .no_null_ahead = true,
            .failure_clears_flag = true,
            .samples = integers_of_every_length<Element>(),
            .convert =
                [route, padding](const row_input &input) {
                    const Element value = input.as<Element>();
                    const std::string text = std::to_string(value);
                    const int32_t limit = input.cast.length;
                    const auto size = static_cast<int32_t>(text.size());
                    const bool too_long = limit < size;
                    row_outcome outcome;
                    if (route == digits_by::str_from_int)
                        outcome.steps.push_back({.call = formats(static_cast<int32_t>(value), limit),
                                                 .failure = service_failure::passes_its_code,
                                                 .result = too_long ? refusal_of_double : 0});
                    if (too_long) {
                        outcome.status = code_of_too_long(route);
                        return outcome;
                    }
                    const int32_t pad_len = padding == pad::rest_of_length ? limit - size : 0;
                    outcome.steps.push_back({.call = assigns_text(input.target, input.row, text, pad_len)});
                    outcome.text = {text, pad_len};
                    return outcome;
                },
            .length = length,
            .null_element = image_of(std::numeric_limits<Element>::min())};
}

} // namespace bcast::test
