// What str2int64 and str2int64_directly have to give, read off a text in the plainest way: digit by digit, with the
// digits before the point as a text of their own.
#pragma once

#include <bcast/codes.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

struct number_reading {
    int32_t status;
    int64_t value; // 0 unless status is 0

    friend bool operator==(const number_reading &, const number_reading &) = default;
};

// A number without exponent.
struct slow_digits {
    bool is_number = false;
    bool negative = false;
    std::string before_point = {}; // no leading zeros
    std::string behind_point = {}; // at least one
};

inline slow_digits read_slow_digits(std::string_view text)
{
    const slow_digits bad;
    const std::string_view blanks(" \t\n\v\f\r");
    const std::string_view digits("0123456789");

    std::size_t at = std::min(text.find_first_not_of(blanks), text.size());
    const auto next_is = [&](std::string_view set) {
        return at < text.size() && set.find(text[at]) != std::string_view::npos;
    };

    bool negative = false;
    if (next_is("+-"))
        negative = text[at++] == '-';
    std::string number; // all digits
    while (next_is(digits))
        number += text[at++];
    std::size_t before_point = number.size();
    if (next_is(".")) {
        at++;
        while (next_is(digits))
            number += text[at++];
    }
    if (number.empty())
        return bad;

    bool exponent_negative = false;
    std::string exponent;
    if (next_is("eE")) {
        at++;
        if (next_is("+-"))
            exponent_negative = text[at++] == '-';
        while (next_is(digits))
            exponent += text[at++];
        if (exponent.empty())
            return bad;
    }
    if (text.find_first_not_of(blanks, at) != std::string_view::npos)
        return bad;

    // An exponent beyond the digits that there are, and beyond an int64, does what any such exponent does.
    exponent.erase(0, std::min(exponent.find_first_not_of('0'), exponent.size()));
    const std::size_t enough = number.size() + 30;
    const std::size_t shift = exponent.size() > 9 ? enough : std::min<std::size_t>(enough, std::stoul("0" + exponent));
    if (exponent_negative) {
        const std::size_t missing = shift > before_point ? shift - before_point : 0;
        number.insert(0, missing, '0');
        before_point += missing;
        before_point -= shift;
    } else {
        before_point += shift;
    }
    if (number.size() <= before_point)
        number.append(before_point + 1 - number.size(), '0');

    std::string whole = number.substr(0, before_point);
    whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size()));
    return {true, negative, whole, number.substr(before_point)};
}

// False when it lies outside of int64.
inline bool slow_int64(const slow_digits &number, bool round_up, std::int64_t *result)
{
    if (number.before_point.size() > 20)
        return false;
    __int128 value = 0;
    for (const char digit : number.before_point)
        value = value * 10 + (digit - '0');
    value += round_up;
    if (number.negative)
        value = -value;
    *result = static_cast<std::int64_t>(value);
    return *result == value;
}

inline number_reading slow_str2int64(std::string_view text)
{
    const slow_digits number = read_slow_digits(text);
    std::int64_t value = 0;
    if (!number.is_number)
        return {ERR_BAD_CONVERSION, 0};
    if (!slow_int64(number, number.behind_point[0] >= '5', &value))
        return {ERR_OVERFLOW, 0};
    return {0, value};
}

struct direct_reading {
    int32_t status; // 1 for a positive one
    int64_t value;  // 0 unless status is 0 or 1
    char sign;      // 0 unless status is 1

    friend bool operator==(const direct_reading &, const direct_reading &) = default;
};

inline direct_reading slow_str2int64_directly(std::string_view text)
{
    const slow_digits number = read_slow_digits(text);
    std::int64_t value = 0;
    if (!number.is_number)
        return {ERR_BAD_CONVERSION, 0, 0};
    if (!slow_int64(number, false, &value))
        return {number.negative ? ERR_BELOW_RANGE : ERR_ABOVE_RANGE, 0, 0};
    if (number.behind_point.find_first_not_of('0') == std::string::npos)
        return {0, value, 0};
    return {1, value, number.negative ? '-' : '+'};
}
