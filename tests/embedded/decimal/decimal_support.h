// A second decimal arithmetic, on strings of digits and as plain as can be, and the decimal services with checks
// around them.
#pragma once

#include "tests/support/guarded.h"

#include <bcast/codes.h>
#include <services/decimal.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace bcast::test {

// ---- The slow arithmetic ---------------------------------------------------

// digits * 10^-scale; zero has no digits, and no digit string begins with 0.
struct slow_decimal {
    bool negative = false;
    std::string digits;
    long scale = 0;

    long whole_digits() const { return digits.empty() ? 0 : static_cast<long>(digits.size()) - scale; }
};

inline slow_decimal without_leading_zeros(slow_decimal value)
{
    value.digits.erase(0, std::min(value.digits.find_first_not_of('0'), value.digits.size()));
    return value;
}

inline std::string plus_one(std::string digits)
{
    for (size_t i = digits.size(); i-- > 0;) {
        if (digits[i] != '9') {
            digits[i]++;
            return digits;
        }
        digits[i] = '0';
    }
    return "1" + digits;
}

// At most that many digits behind the point, ties away from zero.
inline slow_decimal rounded(slow_decimal value, long scale)
{
    if (value.digits.empty() || value.scale <= scale)
        return value;
    const auto cut = static_cast<size_t>(value.scale - scale);
    const bool up = cut <= value.digits.size() && value.digits[value.digits.size() - cut] >= '5';
    value.digits.resize(value.digits.size() - std::min(cut, value.digits.size()));
    if (up)
        value.digits = plus_one(value.digits);
    value.scale = scale;
    return value;
}

// The form of a record: no zeros at the end behind the point, none missing before it. For up to a few digits more than
// 38 before the point.
inline slow_decimal canonical(slow_decimal value)
{
    if (value.digits.empty())
        return {};
    while (value.scale > 0 && value.digits.back() == '0') {
        value.digits.pop_back();
        value.scale--;
    }
    if (value.scale < 0) {
        value.digits.append(static_cast<size_t>(-value.scale), '0');
        value.scale = 0;
    }
    return value;
}

struct fitted {
    int32_t status = 0;
    slow_decimal value;
};

inline fitted fit(const slow_decimal &value, int len, int prec)
{
    const fitted overflow = {ERR_OVERFLOW, {}};
    const bool any_shape = len == 0 && prec == 0;
    const int digits = any_shape ? 38 : std::min(len, 38);
    const int behind = any_shape ? 38 : std::min(prec, digits);
    const int before = any_shape ? 38 : digits - behind;
    if (value.whole_digits() > before)
        return overflow;
    const slow_decimal result =
        canonical(rounded(value, std::min<long>(behind, 38 - std::max(0l, value.whole_digits()))));
    return result.whole_digits() > before ? overflow : fitted{0, result};
}

// False when the text is no number. An exponent beyond all digits does what any such one does.
inline bool slow_read(std::string_view text, slow_decimal *value)
{
    const std::string_view blanks(" \t\n\v\f\r"), digits("0123456789");
    size_t at = std::min(text.find_first_not_of(blanks), text.size());
    const auto next_is = [&](std::string_view set) {
        return at < text.size() && set.find(text[at]) != std::string_view::npos;
    };
    *value = {};
    if (next_is("+-"))
        value->negative = text[at++] == '-';
    while (next_is(digits))
        value->digits += text[at++];
    if (next_is(".")) {
        at++;
        for (; next_is(digits); value->scale++)
            value->digits += text[at++];
    }
    if (value->digits.empty())
        return false;
    if (next_is("eE")) {
        at++;
        const bool down = next_is("-");
        if (next_is("+-"))
            at++;
        std::string exponent;
        while (next_is(digits))
            exponent += text[at++];
        if (exponent.empty())
            return false;
        exponent.erase(0, std::min(exponent.find_first_not_of('0'), exponent.size()));
        const long shift = exponent.size() > 8 ? 200000000 : std::stol("0" + exponent);
        value->scale += down ? shift : -shift;
    }
    *value = without_leading_zeros(*value);
    return text.find_first_not_of(blanks, at) == std::string_view::npos;
}

inline fitted slow_from_text(std::string_view text, int len, int prec)
{
    slow_decimal value;
    return slow_read(text, &value) ? fit(value, len, prec) : fitted{ERR_BAD_CONVERSION, {}};
}

// Plain notation with that many digits behind the point, which are not less than the value has.
inline std::string plain_text(slow_decimal value, long scale)
{
    if (!value.digits.empty())
        value.digits.append(static_cast<size_t>(scale - value.scale), '0');
    const auto behind = static_cast<size_t>(scale);
    if (value.digits.size() <= behind)
        value.digits.insert(0, behind + 1 - value.digits.size(), '0');
    std::string text = value.digits;
    if (behind > 0)
        text.insert(text.size() - behind, ".");
    const bool zero = text.find_first_not_of("0.") == std::string::npos;
    return value.negative && !zero ? "-" + text : text;
}

inline std::string slow_to_text(const slow_decimal &value, int len, int prec)
{
    if (len == 0 && prec == 0)
        return plain_text(value, value.scale);
    return plain_text(rounded(value, prec), prec);
}

// ---- Records ---------------------------------------------------------------

inline std::string hex(const xdec &value)
{
    std::string text;
    for (const uint8_t byte : value.bytes) {
        text += "0123456789abcdef"[byte >> 4];
        text += "0123456789abcdef"[byte & 15];
    }
    return text;
}

// The record of a canonical value.
inline xdec record_of(const slow_decimal &value)
{
    xdec record;
    std::memset(record.bytes, 0, sizeof record.bytes);
    record.bytes[0] = value.digits.empty() ? 0x80 : value.negative ? 2 : 1;
    record.bytes[1] = value.digits.empty() ? 0 : static_cast<uint8_t>(value.scale + 1);
    unsigned __int128 coefficient = 0;
    for (const char digit : value.digits)
        coefficient = coefficient * 10 + static_cast<unsigned>(digit - '0');
    for (int i = 8; i < 24; i++, coefficient >>= 8)
        record.bytes[i] = static_cast<uint8_t>(coefficient);
    return record;
}

inline slow_decimal slow_of(std::string_view text)
{
    slow_decimal value;
    EXPECT_TRUE(slow_read(text, &value)) << text;
    return canonical(value);
}

inline constexpr uint8_t unwritten_byte = 0x5a;

inline xdec unwritten()
{
    xdec record;
    std::memset(record.bytes, unwritten_byte, sizeof record.bytes);
    return record;
}

// What an operation that makes a record gave: in hex, so that a failing test shows it.
struct made {
    int32_t status;
    std::string record; // nothing where it failed

    friend bool operator==(const made &, const made &) = default;
    friend std::ostream &operator<<(std::ostream &out, const made &m)
    {
        return out << "status " << m.status << ", record " << (m.record.empty() ? "none" : m.record);
    }
};

inline made expected(const fitted &f) { return {f.status, f.status == 0 ? hex(record_of(f.value)) : ""}; }
inline const made overflow = {ERR_OVERFLOW, ""};
inline const made bad = {ERR_BAD_CONVERSION, ""};

// The canonical record of a number in plain text.
inline made exactly(std::string_view text) { return expected({0, slow_of(text)}); }

template <typename Make> made make(Make operation)
{
    xdec out = unwritten();
    const int32_t status = operation(&out);
    if (status >= 0)
        return {0, hex(out)};
    EXPECT_EQ(hex(out), hex(unwritten())) << "failed with " << status << " and wrote its result";
    return {status, ""};
}

// A copy of the text that touches an inaccessible page with that edge; good until the next one.
inline const char *beside_page(std::string_view text, guard_edge edge)
{
    static guarded<char> ends(65536, guard_edge::end), starts(65536, guard_edge::start);
    guarded<char> &room = edge == guard_edge::end ? ends : starts;
    char *copy = edge == guard_edge::end ? room.end() - text.size() : room.begin();
    std::copy(text.begin(), text.end(), copy);
    return copy;
}

inline made from_text(std::string_view text, int len, int prec)
{
    return make([&](xdec *out) {
        return xdec_from_char_with_len_prec(text.data(), static_cast<uint16_t>(text.size()), len, prec, out);
    });
}

inline made from_int64(int64_t value, int len, int prec)
{
    return make([&](xdec *out) { return xdec_from_int64_with_len_prec(value, len, prec, out); });
}

inline made from_double(double value, int len, int prec)
{
    return make([&](xdec *out) { return xdec_from_double_with_len_prec(value, len, prec, out); });
}

inline made from_xdec(const xdec &value, int len, int prec)
{
    return make([&](xdec *out) { return xdec_from_xdec_with_len_prec(&value, len, prec, out); });
}

inline std::string to_text(const xdec &value, int len, int prec)
{
    char buf[400];
    int32_t size = -1;
    const int32_t status = xdec_to_char_with_zero(&value, buf, sizeof buf, static_cast<uint16_t>(len), prec, &size);
    if (status < 0)
        return "status " + std::to_string(status);
    return std::string(buf, static_cast<size_t>(size));
}

// The record of any number that 38 digits hold.
inline xdec record(std::string_view text) { return record_of(slow_of(text)); }

// ---- Values ----------------------------------------------------------------

struct shape_pair {
    int len;
    int prec;
};

inline const std::vector<shape_pair> &shapes()
{
    static const std::vector<shape_pair> all = [] {
        std::vector<shape_pair> some = {{0, 0},  {1, 0},     {1, 1},   {38, 0},   {38, 38},  {38, 37},
                                        {38, 1}, {255, 255}, {255, 0}, {3, 5},    {0, 5},    {0, 255},
                                        {39, 0}, {39, 39},   {39, 2},  {18, 4},   {18, 18},  {19, 0},
                                        {20, 0}, {20, 20},   {38, 19}, {255, 38}, {255, 19}, {5, 255}};
        return some;
    }();
    return all;
}

struct random_decimals {
    std::mt19937_64 random;

    explicit random_decimals(uint64_t seed) : random(seed) {}

    size_t below(size_t n) { return random() % n; }
    bool one_in(size_t n) { return below(n) == 0; }

    std::string digits(size_t count)
    {
        std::string text;
        const size_t zeros = one_in(4) ? below(count + 1) : 0; // at the end
        const bool nines = one_in(6);
        for (size_t i = 0; i < count; i++)
            text += i + zeros >= count ? '0' : nines && !one_in(9) ? '9' : static_cast<char>('0' + below(10));
        return text;
    }

    // A number that 38 digits hold, in plain notation.
    std::string number()
    {
        const size_t count = 1 + (one_in(3) ? below(38) : below(19));
        std::string text = digits(count);
        const size_t scale = one_in(4) ? 0 : below(39);
        if (scale > 0) {
            if (text.size() <= scale)
                text.insert(0, scale + 1 - text.size(), '0');
            text.insert(text.size() - scale, ".");
        }
        return one_in(2) ? "-" + text : text;
    }
};

} // namespace bcast::test
