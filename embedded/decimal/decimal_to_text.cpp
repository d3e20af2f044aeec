// The text of decimals, with the digits of a shape or without one.
#include "embedded/decimal/decimal.h"
#include "embedded/text/written_digits.h"

#include <services/decimal.h>

#include <cstring>

namespace embedded {

namespace {

// ---- Up to 20 digits -------------------------------------------------------

constexpr uint32_t short_scale_max = 15; // there is a digit more, which may be a zero before the point
constexpr int32_t short_room = 48;       // more than the longest text, and the stores beyond it
constexpr uint64_t head_unit = 10000000000000000;

size_t shown_digits(uint64_t value, uint32_t scale) { return std::max(size_t{digit_count(value)}, size_t{scale} + 1); }

// Writes all digits in a row, then those behind the point once more, one byte further on. Nothing depends on how many
// digits there are but addresses and shifts.
template <level at> ALWAYS_INLINE int32_t write_digits(char *buf, bool negative, uint64_t value, uint32_t scale)
{
    const size_t count = shown_digits(value, scale);
    *buf = '-';
    char *first = buf + negative;
    char *point = first + count - scale;
    if (value >= head_unit) {
        const uint64_t head = eight_digits(uint32_t(value / head_unit)) | eight_zeros;
        store(first, head >> 8 * (24 - count));
        first += count - 16;
        value %= head_unit;
    }
    const size_t tail_count = std::min<size_t>(count, 16);
    const written_digits<at> tail(value);
    tail.write_from(16 - tail_count, first);
    *point = '.';
    tail.write_from(16 - scale, point + 1);
    return int32_t(point - buf) + (scale > 0) + int32_t(scale);
}

template <level at> struct short_texts : short_texts<below(at)> {};

template <> struct short_texts<level::any> {
    [[gnu::noinline]] static int32_t write(char *buf, bool negative, uint64_t value, uint32_t scale)
    {
        return write_digits<level::any>(buf, negative, value, scale);
    }
};

#if defined(MACHINE_IS_X86_64)

template <> struct short_texts<level::avx512> {
    [[gnu::noinline]] CODE_FOR_AVX512 static int32_t write_split(char *buf, bool negative, uint64_t value,
                                                                 uint32_t scale)
    {
        return write_digits<level::avx512>(buf, negative, value, scale);
    }

    CODE_FOR_AVX512 static int32_t write(char *buf, bool negative, uint64_t value, uint32_t scale)
    {
        if (value >= head_unit) [[unlikely]]
            return write_split(buf, negative, value, scale);
        const size_t count = shown_digits(value, scale);
        written_digits<level::avx512>(value).write_number(negative, count, scale, buf);
        return int32_t(negative + count + (scale > 0));
    }
};

#endif

// ---- Any -------------------------------------------------------------------

[[gnu::noinline]] int32_t write_any(const xdec *src, uint32_t scale, char *buf, int32_t buf_size, int32_t *out_len)
{
    const decimal value = read_decimal(src);
    const uint128 coefficient =
        value.scale > scale ? cut_digits(value.coefficient, value.scale - scale) : value.coefficient;
    const size_t held = std::min(value.scale, scale); // digits behind the point, before the zeros
    const bool negative = value.negative && coefficient != 0;

    char characters[48];
    char *end = characters + sizeof characters;
    uint128 rest = coefficient;
    for (char *at = end; at != characters;) {
        const uint128 quotient = rest / powers_of_ten[16];
        written_digits<level::any>(uint64_t(rest - quotient * powers_of_ten[16])).write_from(0, at -= 16);
        rest = quotient;
    }
    const char *point = end - held;
    const char *first = std::find_if(static_cast<const char *>(characters), point - 1, [](char c) { return c != '0'; });

    const auto whole_count = size_t(point - first);
    const size_t size = negative + whole_count + (scale > 0) + scale;
    if (int64_t(size) > buf_size)
        return ERR_TRUNCATED;
    *out_len = int32_t(size);
    if (negative)
        *buf++ = '-';
    memcpy(buf, first, whole_count);
    buf += whole_count;
    if (scale > 0) {
        *buf++ = '.';
        memcpy(buf, point, held);
        memset(buf + held, '0', scale - held);
    }
    return 0;
}

template <level at>
ALWAYS_INLINE int32_t decimal_to_text(const xdec *src, char *buf, int32_t buf_size, uint16_t len, int32_t prec,
                                      int32_t *out_len)
{
    const decimal value = read_decimal(src);
    const uint32_t scale = has_shape(len, prec) ? uint32_t(std::max(prec, 0)) : value.scale;
    const uint32_t zeros = scale - value.scale; // a large number if there are digits to be cut
    uint64_t shown;
    if (scale <= short_scale_max && zeros <= scale && buf_size >= short_room && is_short(value.coefficient) &&
        !__builtin_mul_overflow(uint64_t(value.coefficient), powers_of_ten[zeros], &shown)) [[likely]] {
        *out_len = short_texts<at>::write(buf, value.negative, shown, scale);
        return 0;
    }
    return write_any(src, scale, buf, buf_size, out_len);
}

} // namespace

} // namespace embedded

PICKED_AT_LOAD(xdec_to_char_with_zero, embedded::decimal_to_text);
