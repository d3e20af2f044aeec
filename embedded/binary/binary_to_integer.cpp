// Integers from bytes, the most significant first, as the casts from integers
// write them.
//
// A value shorter than the integer is extended with zeros: FF in two bytes is 255.
// Of a longer value bytes in front are dropped while it is longer than the integer:
// first zeros, with which binary values are filled up whatever their sign, then FF
// bytes whose next byte has its top bit set, the sign of a wider integer. What is
// longer still does not fit. In two bytes:
//
//     00 00 00 05   5          FF FF FF FB   -5
//     00 00 FF FB   -5         FF FF 7F FF   does not fit: 7F is not of that sign
//     00 FF FF FB   -5         FF FF 00 05   does not fit: zeros behind FF stay
//     00 00 80 00   -32768     00 01 00 05   does not fit
#include "embedded/base/machine.h"
#include "machine/short_copy.h"

#include <bcast/codes.h>
#include <services/binary.h>

namespace embedded {

namespace {

// How many of the first `most` bytes are dropped. One more byte stands behind them.
uint32_t count_dropped(const uint8_t *bytes, uint32_t most)
{
    uint32_t count = 0;
    while (count < most && bytes[count] == 0)
        count++;
    while (count < most && bytes[count] == 0xFF && bytes[count + 1] >= 0x80)
        count++;
    return count;
}

// Whether all that stands above an integer's own bits may be dropped. sign is the
// top bit of the integer, 0 or 1. No branches: signs are as good as random.
bool fits(uint64_t above, uint64_t sign)
{
    constexpr uint64_t powers_of_256 = 0x0101010101010101;
    const uint64_t next = above + 1; // a power of 256 where above is FF bytes behind zeros
    return ((above & next) | (next & ~powers_of_256) | (above & (sign - 1))) == 0;
}

template <class T> int32_t to_integer(const uint8_t *bytes, uint32_t len, void *out)
{
    constexpr uint32_t bits = 8 * sizeof(T);
    if (len == sizeof(T)) [[likely]] {
        store(out, T(__builtin_bswap64(uint64_t{load<T>(bytes)}) >> (64 - bits)));
        return 0;
    }
    if (len == 0) {
        store(out, T{0});
        return 0;
    }
    if (len > 8) {
        const uint32_t excess = len - 8;
        if (count_dropped(bytes, excess) != excess)
            return ERR_OVERFLOW;
        bytes += excess;
        len = 8;
    }
    const char *first = reinterpret_cast<const char *>(bytes);
    const uint64_t value = __builtin_bswap64(load_bytes(first, len)) >> 8 * (8 - len);
    if constexpr (bits < 64) {
        if (!fits(value >> bits, (value >> (bits - 1)) % 2))
            return ERR_OVERFLOW;
    }
    store(out, T(value));
    return 0;
}

} // namespace

} // namespace embedded

int32_t nbin_to_int_by_ntype_len(const void *bytes, uint32_t len, int32_t width, void *out)
{
    const auto *from = static_cast<const uint8_t *>(bytes);
    switch (width) {
    case 1:
        return embedded::to_integer<uint8_t>(from, len, out);
    case 2:
        return embedded::to_integer<uint16_t>(from, len, out);
    case 4:
        return embedded::to_integer<uint32_t>(from, len, out);
    case 8:
        return embedded::to_integer<uint64_t>(from, len, out);
    default: // no integer is so wide
        return ERR_OVERFLOW;
    }
}

int32_t nbin_to_lint64(const void *bytes, uint32_t len, int64_t *out)
{
    return embedded::to_integer<uint64_t>(static_cast<const uint8_t *>(bytes), len, out);
}
