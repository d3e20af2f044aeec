// Hexadecimal text into bytes, and bytes into hexadecimal text.
#include "embedded/binary/hex.h"

#include "embedded/base/by_machine.h"

#include <bcast/codes.h>
#include <services/binary.h>

namespace embedded {

namespace {

static_assert(NBIN_MAX >= hex_decode_room);

// The length is judged before the digits: a text that is too long is not read.
template <class Hex>
[[gnu::always_inline]] inline int32_t decode(const char *text, uint32_t text_len, nbin *out, int32_t has_prefix)
{
    const uint32_t prefix = has_prefix != 0 ? 2 : 0;
    const uint32_t count = text_len - prefix;
    if (count > 2 * NBIN_MAX)
        return ERR_TRUNCATED;
    if (!Hex::decode(text + prefix, count, out->bytes))
        return ERR_BAD_CONVERSION;
    out->length = int32_t((count + 1) / 2);
    return 0;
}

int32_t decode_any(const char *text, uint32_t text_len, nbin *out, int32_t has_prefix)
{
    return decode<any_hex>(text, text_len, out, has_prefix);
}
BCAST_AVX512 int32_t decode_avx512(const char *text, uint32_t text_len, nbin *out, int32_t has_prefix)
{
    return decode<avx512_hex>(text, text_len, out, has_prefix);
}

int32_t encode_any(const void *bytes, uint32_t len, char *buf, int32_t)
{
    any_hex::encode(static_cast<const uint8_t *>(bytes), len, buf);
    return 0;
}
BCAST_AVX512 int32_t encode_avx512(const void *bytes, uint32_t len, char *buf, int32_t)
{
    avx512_hex::encode(static_cast<const uint8_t *>(bytes), len, buf);
    return 0;
}

} // namespace

} // namespace embedded

SERVICE_BY_MACHINE(nbin_from_char_ex, embedded::decode_any, embedded::decode_avx512);
SERVICE_BY_MACHINE(nbin_to_char_ex, embedded::encode_any, embedded::encode_avx512);
