// What stands around a number passed over in words, and short numbers read at once.
#include "embedded/text/bare_number.h"

#include <cstring>

namespace embedded {

namespace {

// A word of eight times that character. Blanks and zeros that fill the width of a column are passed over by words.
constexpr uint64_t eight(char character) { return uint8_t(character) * uint64_t{0x0101010101010101}; }

const char *before_zeros(const char *at, const char *end)
{
    while (end - at >= 8 && load<uint64_t>(end - 8) == eight('0'))
        end -= 8;
    while (at != end && end[-1] == '0')
        end--;
    return end;
}

} // namespace

const char *behind_blanks(const char *at, const char *end)
{
    while (end - at >= 8 && load<uint64_t>(at) == eight(' '))
        at += 8;
    while (at != end && is_blank(*at))
        at++;
    return at;
}

const char *before_blanks(const char *at, const char *end)
{
    while (end - at >= 8 && load<uint64_t>(end - 8) == eight(' '))
        end -= 8;
    while (at != end && is_blank(end[-1]))
        end--;
    return end;
}

const char *behind_zeros(const char *at, const char *end)
{
    while (end - at >= 8 && load<uint64_t>(at) == eight('0'))
        at += 8;
    while (at != end && *at == '0')
        at++;
    return at;
}

size_t size_without_last_zeros(const bare_number &number)
{
    if (memchr(number.text, '.', number.size) == nullptr)
        return number.size;
    return size_t(before_zeros(number.text, number.text + number.size) - number.text);
}

template <level at> ALWAYS_INLINE bool read_short_at(const char *text, size_t size, short_number *value)
{
    size_t behind_point;
    if (size > plain_decimal_max || !plain_numbers<at>::read_decimal(text, size, &value->digits, &behind_point))
        return false;
    value->scale = int32_t(behind_point);
    return true;
}
PICKED_AT_LOAD(read_short, read_short_at);

bool read_short_with_exponent(const bare_number &number, short_number *value)
{
    constexpr ptrdiff_t digits_max = 4;
    constexpr size_t size_max = plain_decimal_max + 2 + digits_max;

    if (number.size > size_max)
        return false;
    const char *end = number.text + number.size, *at = end;
    int32_t exponent = 0;
    for (int32_t power = 1; at != number.text && end - at < digits_max && is_digit(at[-1]); power *= 10)
        exponent += (*--at - '0') * power;
    if (at == end || at == number.text)
        return false;
    if (is_sign(at[-1]))
        exponent = *--at == '-' ? -exponent : exponent;
    if (at == number.text || (at[-1] != 'e' && at[-1] != 'E') ||
        !read_short(number.text, size_t(at - 1 - number.text), value))
        return false;
    value->scale -= exponent;
    return true;
}

} // namespace embedded
