// The number that a text spells, as the nearest int64.
#include "embedded/base/by_machine.h"
#include "embedded/text/integer_part.h"

#include <bcast/codes.h>
#include <services/text.h>

namespace embedded {

namespace {

// Any literal: the first digit behind the point rounds.
[[gnu::noinline]] int32_t literal_to_int64(const char *text, int32_t length, int64_t *result)
{
    integer_part part;
    if (!read_integer_part(text, length, &part))
        return ERR_BAD_CONVERSION;
    return part.fits && give_int64(part.negative, part.magnitude + part.rounds_up, result) ? 0 : ERR_OVERFLOW;
}

template <class Machine>
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

} // namespace

} // namespace embedded

SERVICE_BY_MACHINE(str2int64, embedded::text_to_int64_any, embedded::text_to_int64_avx512);
