#include <services/text.h>

#include <array>
#include <bit>

#include <bcast/codes.h>

#include "embedded/decimal_literal.h"
#include "embedded/short_text.h"

namespace embedded {

namespace {

// ---- Text to int64 ---------------------------------------------------------

int32_t give_int64(bool negative, uint64_t magnitude, int64_t *result)
{
    if (magnitude > static_cast<uint64_t>(INT64_MAX) + negative)
        return ERR_OVERFLOW;
    *result = static_cast<int64_t>(negative ? 0 - magnitude : magnitude);
    return 0;
}

// Any literal: the digits before the shifted point, and the one behind it rounds.
[[gnu::noinline]] int32_t literal_to_int64(const char *text, int32_t length, int64_t *result)
{
    constexpr int64_t most_digits = 19; // of an int64

    decimal_literal literal;
    if (length <= 0 || !read_decimal_literal(text, static_cast<size_t>(length), &literal))
        return ERR_BAD_CONVERSION;
    const size_t count = literal.digit_count();
    size_t first = 0; // digit that is not 0
    while (first < count && literal.digit(first) == '0')
        first++;
    const int64_t before_point =
        static_cast<int64_t>(literal.whole_count) - static_cast<int64_t>(first) + literal.exponent;
    if (first == count || before_point < 0)
        return give_int64(false, 0, result);
    if (before_point > most_digits)
        return ERR_OVERFLOW;
    const size_t point = first + static_cast<size_t>(before_point);
    uint64_t magnitude = 0;
    for (size_t i = first; i < point; i++)
        magnitude = magnitude * 10 + (i < count ? static_cast<uint64_t>(literal.digit(i) - '0') : 0);
    magnitude += point < count && literal.digit(point) >= '5';
    return give_int64(literal.negative, magnitude, result);
}

// 17 to 19 plain digits, or any other literal.
[[gnu::noinline]] int32_t long_text_to_int64(const char *text, int32_t length, int64_t *result)
{
    if (length >= 17 && length <= 20) {
        const bool negative = text[0] == '-';
        const char *p = text + negative;
        const size_t count = static_cast<size_t>(length) - negative;
        uint64_t head, tail;
        if (count >= 17 && count <= 19 && any_machine::read_digits(p, count - 16, &head) &&
            any_machine::read_digits(p + count - 16, 16, &tail))
            return give_int64(negative, head * 10000000000000000 + tail, result);
    }
    return literal_to_int64(text, length, result);
}

template <typename Machine>
[[gnu::always_inline]] inline int32_t text_to_int64(const char *text, int32_t length, int64_t *result)
{
    // The minus is one more; a length below 1 counts as a large one.
    if (static_cast<uint32_t>(length) - 1 > plain_digits_max)
        return long_text_to_int64(text, length, result);
    const uint64_t negative = text[0] == '-';
    const size_t count = static_cast<size_t>(length) - negative;
    if (count - 1 >= plain_digits_max)
        return long_text_to_int64(text, length, result);
    uint64_t magnitude;
    if (!Machine::read_digits(text + negative, count, &magnitude))
        return literal_to_int64(text, length, result);
    *result = static_cast<int64_t>((magnitude ^ (0 - negative)) + negative);
    return 0;
}

BCAST_AVX512 int32_t text_to_int64_avx512(const char *text, int32_t length, int64_t *result)
{
    return text_to_int64<avx512_machine>(text, length, result);
}

// ---- int32 to text ---------------------------------------------------------

// For the digit count of a value below 2^32 without a branch: the sum of the value
// and the entry at its bit width has the count in its upper half.
constexpr auto digit_count_table = [] {
    std::array<uint64_t, 33> table{};
    uint64_t count = 1, next_power = 10;
    for (int width = 0; width <= 32; width++) {
        const uint64_t last = (uint64_t{1} << width) - 1;
        const bool grows = last >= next_power; // at next_power, among the values of this width
        table[static_cast<size_t>(width)] = grows ? ((count + 1) << 32) - next_power : count << 32;
        if (grows) {
            count++;
            next_power *= 10;
        }
    }
    return table;
}();

size_t digit_count(uint32_t value)
{
    return (value + digit_count_table[static_cast<size_t>(std::bit_width(value | 1))]) >> 32;
}

// The digits of a value below 10^8, the first in the lowest byte: divides both
// fours by 100, then all pairs by 10. The multipliers are exact in that range.
uint64_t eight_digits(uint32_t value)
{
    const uint64_t fours = value / 10000 | uint64_t{value % 10000} << 32;
    const uint64_t hundreds = ((fours * 10486) >> 20) & 0x0000007F0000007F;
    const uint64_t pairs = hundreds | (fours - hundreds * 100) << 16;
    const uint64_t tens = ((pairs * 103) >> 10) & 0x000F000F000F000F;
    return tens | (pairs - tens * 10) << 8;
}

// Writes count digits at to, and may write up to 8 bytes.
void write_digits(char *to, uint32_t value, size_t count)
{
    if (count <= 8) {
        store(to, (eight_digits(value) | eight_zeros) >> 8 * (8 - count));
        return;
    }
    const uint32_t head = value / 100000000, tail = value % 100000000;
    const uint32_t two = head / 10 | (head % 10) << 8 | 0x3030;
    store(to, static_cast<uint16_t>(two >> 8 * (10 - count)));
    store(to + count - 8, eight_digits(tail) | eight_zeros);
}

} // namespace

} // namespace embedded

int32_t str2int64(const char *text, int32_t length, int64_t *result)
{
    if (embedded::has_avx512)
        return embedded::text_to_int64_avx512(text, length, result);
    return embedded::text_to_int64<embedded::any_machine>(text, length, result);
}

int32_t str_from_int(int32_t value, int32_t limit, char *buffer, int32_t *out_len)
{
    // Signs are as good as random: no branch on them.
    const uint32_t negative = static_cast<uint32_t>(value) >> 31;
    const uint32_t magnitude = (static_cast<uint32_t>(value) ^ (0 - negative)) + negative;
    const size_t count = embedded::digit_count(magnitude);
    *buffer = '-';
    embedded::write_digits(buffer + negative, magnitude, count);
    *out_len = static_cast<int32_t>(count + negative);
    return *out_len > limit ? ERR_TARGET_TOO_SHORT : 0;
}
