#include <services/text.h>

#include <bcast/codes.h>

#include <cstdlib>

#include "embedded/by_machine.h"
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

int32_t text_to_int64_any(const char *text, int32_t length, int64_t *result)
{
    return text_to_int64<any_machine>(text, length, result);
}
BCAST_AVX512 int32_t text_to_int64_avx512(const char *text, int32_t length, int64_t *result)
{
    return text_to_int64<avx512_machine>(text, length, result);
}

// ---- int32 to text ---------------------------------------------------------

// Signs are as good as random: no branch on them.
struct parts_of_int {
    bool negative;
    uint64_t magnitude;
    uint32_t count; // of digits

    explicit parts_of_int(int32_t value)
        : negative(value < 0), magnitude(static_cast<uint64_t>(std::abs(int64_t{value}))), count(digit_count(magnitude))
    {}

    int32_t give_length(int32_t limit, int32_t *out_len) const
    {
        *out_len = static_cast<int32_t>(count + negative);
        return *out_len > limit ? ERR_TARGET_TOO_SHORT : 0;
    }
};

int32_t int_to_text_any(int32_t value, int32_t limit, char *buffer, int32_t *out_len)
{
    const parts_of_int parts(value);
    any_digits(parts.magnitude).write_integer(parts.negative, parts.count, buffer);
    return parts.give_length(limit, out_len);
}
BCAST_AVX512 int32_t int_to_text_avx512(int32_t value, int32_t limit, char *buffer, int32_t *out_len)
{
    const parts_of_int parts(value);
    avx512_digits(parts.magnitude).write_integer(parts.negative, parts.count, buffer);
    return parts.give_length(limit, out_len);
}

} // namespace

} // namespace embedded

SERVICE_BY_MACHINE(str2int64, embedded::text_to_int64_any, embedded::text_to_int64_avx512);
SERVICE_BY_MACHINE(str_from_int, embedded::int_to_text_any, embedded::int_to_text_avx512);
