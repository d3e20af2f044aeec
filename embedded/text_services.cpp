#include <services/text.h>

#include <bcast/codes.h>

#include <cstdlib>

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
    return part.fits && give_int64(part.negative, part.magnitude + part.rounds_up, result) ? 0 : ERR_OVERFLOW;
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

template <typename Digits>
[[gnu::always_inline]] inline void write_integer(uint64_t magnitude, bool negative, size_t count, char *to)
{
    Digits(magnitude).write_integer(negative, count, to);
}

BCAST_AVX512 void write_integer_avx512(uint64_t magnitude, bool negative, size_t count, char *to)
{
    write_integer<avx512_digits>(magnitude, negative, count, to);
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
    const bool negative = value < 0;
    const uint64_t magnitude = static_cast<uint64_t>(std::abs(int64_t{value}));
    const uint32_t count = digit_count(magnitude);
    if (embedded::has_avx512)
        embedded::write_integer_avx512(magnitude, negative, count, buffer);
    else
        embedded::write_integer<embedded::any_digits>(magnitude, negative, count, buffer);
    *out_len = static_cast<int32_t>(count + negative);
    return *out_len > limit ? ERR_TARGET_TOO_SHORT : 0;
}
