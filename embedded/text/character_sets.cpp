// How many bytes of a text are whole characters.
#include "embedded/base/machine.h"

#include <services/text.h>

#include <algorithm>
#include <bit>

namespace embedded {

namespace {

enum charset : int32_t { GB18030 = 1, EUC_KR = 6, UTF_8 = 10 };

// Each of these reads one character of rest bytes, at least one: its width; 1
// where no character of the set begins so; cut_off where one may, and the text
// ends within it.
constexpr size_t cut_off = 0;

bool is_between(uint8_t byte, uint8_t first, uint8_t last) { return first <= byte && byte <= last; }

// A character of that many bytes, by the range of its second byte.
template <size_t width> size_t sequence_width(const uint8_t *at, size_t rest, uint8_t first, uint8_t last)
{
    if (rest > 1 && !is_between(at[1], first, last))
        return 1;
    for (size_t i = 2; i < std::min(width, rest); i++) {
        if (!is_between(at[i], 0x80, 0xBF))
            return 1;
    }
    return rest < width ? cut_off : width;
}

// Overlong forms, surrogates and what lies above U+10FFFF show in the second byte at the latest.
size_t utf_8_width(const uint8_t *at, size_t rest)
{
    const uint8_t lead = at[0];
    if (!is_between(lead, 0xC2, 0xF4))
        return 1;
    if (lead < 0xE0)
        return sequence_width<2>(at, rest, 0x80, 0xBF);
    if (lead < 0xF0)
        return sequence_width<3>(at, rest, lead == 0xE0 ? 0xA0 : 0x80, lead == 0xED ? 0x9F : 0xBF);
    return sequence_width<4>(at, rest, lead == 0xF0 ? 0x90 : 0x80, lead == 0xF4 ? 0x8F : 0xBF);
}

// The form alone counts, not whether a character is assigned to it.
size_t gb18030_width(const uint8_t *at, size_t rest)
{
    const auto is_lead = [](uint8_t byte) { return is_between(byte, 0x81, 0xFE); };
    const auto is_digit = [](uint8_t byte) { return is_between(byte, 0x30, 0x39); };

    if (!is_lead(at[0]))
        return 1;
    if (rest == 1)
        return cut_off;
    if (!is_digit(at[1]))
        return is_between(at[1], 0x40, 0xFE) && at[1] != 0x7F ? 2 : 1;
    if ((rest > 2 && !is_lead(at[2])) || (rest > 3 && !is_digit(at[3])))
        return 1;
    return rest < 4 ? cut_off : 4;
}

// The whole plane of 94 rows and 94 columns, of which KS X 1001 leaves some rows to the user.
size_t euc_kr_width(const uint8_t *at, size_t rest)
{
    if (!is_between(at[0], 0xA1, 0xFE))
        return 1;
    if (rest == 1)
        return cut_off;
    return is_between(at[1], 0xA1, 0xFE) ? 2 : 1;
}

struct whole_characters {
    size_t count = 0;
    size_t bytes = 0;
};

// How many bytes of ASCII the text begins with.
size_t ascii_run(const uint8_t *text, size_t size)
{
    constexpr uint64_t not_ascii = 0x8080808080808080;

    size_t run = 0;
    for (; size - run >= 8; run += 8) {
        const uint64_t others = load<uint64_t>(text + run) & not_ascii;
        if (others != 0)
            return run + size_t(std::countr_zero(others)) / 8;
    }
    while (run < size && text[run] < 0x80)
        run++;
    return run;
}

// All three sets have ASCII as it is.
template <size_t width_at(const uint8_t *, size_t)> whole_characters count_whole(const uint8_t *text, size_t limit)
{
    whole_characters whole;
    while (whole.bytes < limit) {
        const uint8_t *at = text + whole.bytes;
        const size_t rest = limit - whole.bytes;
        if (*at < 0x80) {
            const size_t run = ascii_run(at, rest);
            whole.bytes += run;
            whole.count += run;
            continue;
        }
        const size_t width = width_at(at, rest);
        if (width == cut_off)
            break;
        whole.bytes += width;
        whole.count++;
    }
    return whole;
}

whole_characters count_characters(const uint8_t *text, size_t limit, int32_t charset)
{
    switch (charset) {
    case UTF_8:
        return count_whole<utf_8_width>(text, limit);
    case GB18030:
        return count_whole<gb18030_width>(text, limit);
    case EUC_KR:
        return count_whole<euc_kr_width>(text, limit);
    default: // an unknown set: its bytes
        return {limit, limit};
    }
}

} // namespace

} // namespace embedded

int32_t vq_get_valid_chars(const char *text, int32_t limit, int32_t charset, uint32_t *valid_chars,
                           uint32_t *valid_bytes)
{
    const auto whole =
        embedded::count_characters(reinterpret_cast<const uint8_t *>(text), size_t(std::max(limit, 0)), charset);
    *valid_chars = uint32_t(whole.count);
    *valid_bytes = uint32_t(whole.bytes);
    return 0;
}
