#include <services/text.h>

#include <bcast/codes.h>

#include "embedded/digits.h"
#include "embedded/integer_text.h"

namespace embedded {

namespace {

// ---- Text to int64 ---------------------------------------------------------

// Any literal: the first digit behind the point rounds.
[[gnu::noinline]] int32_t literal_to_int64(const char *text, int32_t length, int64_t *result)
{
    integer_part part;
    if (!read_integer_part(text, length, &part))
        return ERR_BAD_CONVERSION;
    const bool up = part.next_digit >= '5';
    return part.fits && give_int64(part.negative, part.magnitude + up, result) ? 0 : ERR_OVERFLOW;
}

template <typename Machine>
[[gnu::always_inline]] inline int32_t text_to_int64(const char *text, int32_t length, int64_t *result)
{
    if (read_short_integer<Machine>(text, length, result)) [[likely]]
        return 0;
    return literal_to_int64(text, length, result);
}

BCAST_AVX512 int32_t text_to_int64_avx512(const char *text, int32_t length, int64_t *result)
{
    return text_to_int64<avx512_machine>(text, length, result);
}

// ---- int32 to text ---------------------------------------------------------

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
