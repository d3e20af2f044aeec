// Bytes and the hexadecimal digits that spell them, two for a byte, in blocks as
// wide as the machine takes. No function reads a byte outside what it is given.
//
// One struct for each kind of machine; their functions do the same.
#pragma once

#include "embedded/base/machine.h"
#include "machine/digits.h"
#include "machine/short_copy.h"

#include <array>

namespace embedded {

// Where decode writes there is room for so many bytes, however few come out.
inline constexpr size_t hex_decode_room = 32;

inline constexpr char hex_digits[] = "0123456789ABCDEF";

template <level at> struct hex_text : hex_text<below(at)> {};

template <> struct hex_text<level::any> {
    using bytes8 [[gnu::vector_size(8)]] = uint8_t;
    using bytes16 [[gnu::vector_size(16)]] = uint8_t;
    using words2 [[gnu::vector_size(16)]] = uint64_t;
    using pairs8 [[gnu::vector_size(16)]] = uint16_t;

    // The values of 16 digits; sets bits in bad where a character is none.
    static bytes16 values(bytes16 characters, bytes16 &bad)
    {
        const bytes16 digit = characters - uint8_t{'0'}, letter = (characters | uint8_t{0x20}) - uint8_t{'a'};
        const auto is_digit = reinterpret_cast<bytes16>(digit < uint8_t{10});
        const auto is_letter = reinterpret_cast<bytes16>(letter < uint8_t{6});
        bad |= ~(is_digit | is_letter);
        return (digit & is_digit) | ((letter + uint8_t{10}) & is_letter);
    }

    static bool any(bytes16 bits)
    {
        const auto words = reinterpret_cast<words2>(bits);
        return (words[0] | words[1]) != 0;
    }

    // The eight bytes that 16 characters spell.
    static bytes8 decode_block(bytes16 characters, bytes16 &bad)
    {
        const auto pairs = reinterpret_cast<pairs8>(values(characters, bad));
        return __builtin_convertvector((pairs << 4 | pairs >> 8) & uint16_t{0xFF}, bytes8);
    }

    // 1 to 16 digits, set behind zeros to 16.
    static bool decode_short(const char *digits, size_t count, uint8_t *bytes)
    {
        uint64_t head = 0, tail;
        if (count <= 8) {
            tail = (load_bytes(digits, count) ^ eight_zeros) << 8 * (8 - count);
        } else {
            head = (load<uint64_t>(digits) ^ eight_zeros) << 8 * (16 - count);
            tail = load<uint64_t>(digits + count - 8) ^ eight_zeros;
        }
        bytes16 bad{};
        const auto characters = reinterpret_cast<bytes16>(words2{head, tail} ^ eight_zeros);
        const bytes8 block = decode_block(characters, bad);
        if (any(bad))
            return false;
        store(bytes, load<uint64_t>(&block) >> 8 * (8 - (count + 1) / 2));
        return true;
    }

    // Writes the bytes that the digits spell, or, when one is no digit, nothing: all
    // are checked before the first byte. An odd count begins with the low half of a
    // byte.
    static bool decode(const char *digits, size_t count, uint8_t *bytes)
    {
        if (count == 0)
            return true;
        if (count <= 16)
            return decode_short(digits, count, bytes);
        bytes16 bad{};
        for_blocks<16>(count, [&](size_t at) { values(load<bytes16>(digits + at), bad); });
        if (any(bad))
            return false;
        if (count % 2 != 0) {
            decode_short(digits++, 1, bytes++);
            count--;
        }
        for_blocks<16>(count, [&](size_t at) { store(bytes + at / 2, decode_block(load<bytes16>(digits + at), bad)); });
        return true;
    }

    // The digits of 16 values.
    static bytes16 digits_of(bytes16 values)
    {
        const auto above_9 = reinterpret_cast<bytes16>(values > uint8_t{9});
        return values + uint8_t{'0'} + (above_9 & uint8_t{'A' - '9' - 1});
    }

    // The digits of each byte.
    static constexpr auto pairs_of_digits = [] {
        std::array<std::array<char, 2>, 256> pairs{};
        for (size_t byte = 0; byte < 256; byte++)
            pairs[byte] = {hex_digits[byte / 16], hex_digits[byte % 16]};
        return pairs;
    }();

    // Writes two digits for each byte, and a NUL.
    static void encode(const uint8_t *bytes, size_t size, char *text)
    {
        if (size < 16) {
            for (size_t i = 0; i < size; i++)
                store(text + 2 * i, pairs_of_digits[bytes[i]]);
        } else {
            for_blocks<16>(size, [&](size_t at) {
                const auto block = load<bytes16>(bytes + at);
                const bytes16 high = digits_of(block >> 4), low = digits_of(block & uint8_t{15});
                store(text + 2 * at,
                      __builtin_shufflevector(high, low, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23));
                store(text + 2 * at + 16,
                      __builtin_shufflevector(high, low, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31));
            });
        }
        text[2 * size] = '\0';
    }
};

#if defined(MACHINE_IS_X86_64)

// Masks of all ones are there for g++ 12, which warns of its own intrinsics without a mask.
template <> struct hex_text<level::avx512> {
    // The values of 64 digits; clears bits in good where a character is none.
    CODE_FOR_AVX512 static __m512i values(__m512i characters, __mmask64 &good)
    {
        const __m512i digit = _mm512_sub_epi8(characters, _mm512_set1_epi8('0'));
        const __m512i letter =
            _mm512_sub_epi8(_mm512_or_si512(characters, _mm512_set1_epi8(0x20)), _mm512_set1_epi8('a'));
        const __mmask64 is_letter = _mm512_cmplt_epu8_mask(letter, _mm512_set1_epi8(6));
        good &= _mm512_cmplt_epu8_mask(digit, _mm512_set1_epi8(10)) | is_letter;
        return _mm512_mask_add_epi8(digit, is_letter, letter, _mm512_set1_epi8(10));
    }

    // The 32 bytes that 64 characters spell.
    CODE_FOR_AVX512 static __m256i decode_block(__m512i characters, __mmask64 &good)
    {
        const __m512i pairs = _mm512_maddubs_epi16(values(characters, good), _mm512_set1_epi16(16 + (1 << 8)));
        return _mm512_maskz_cvtepi16_epi8(0xFFFFFFFF, pairs);
    }

    // Up to 64 digits, an odd count behind a zero.
    CODE_FOR_AVX512 static bool decode_short(const char *digits, size_t count, uint8_t *bytes)
    {
        const size_t odd = count % 2;
        const __mmask64 mask = _bzhi_u64(~uint64_t{0}, count) << odd;
        __mmask64 good = ~__mmask64{0};
        const __m256i block = decode_block(_mm512_mask_loadu_epi8(_mm512_set1_epi8('0'), mask, digits - odd), good);
        if (~good != 0)
            return false;
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(bytes), block);
        return true;
    }

    CODE_FOR_AVX512 static bool decode(const char *digits, size_t count, uint8_t *bytes)
    {
        if (count <= 64)
            return decode_short(digits, count, bytes);
        __mmask64 good = ~__mmask64{0};
        for_blocks<64>(count, [&](size_t at) CODE_FOR_AVX512 { values(_mm512_loadu_si512(digits + at), good); });
        if (~good != 0)
            return false;
        if (count % 2 != 0) {
            decode_short(digits++, 1, bytes++);
            count--;
        }
        for_blocks<64>(count, [&](size_t at) CODE_FOR_AVX512 {
            _mm256_storeu_si256(reinterpret_cast<__m256i *>(bytes + at / 2),
                                decode_block(_mm512_loadu_si512(digits + at), good));
        });
        return true;
    }

    // The 64 digits of 32 bytes.
    CODE_FOR_AVX512 static __m512i encode_block(__m256i bytes)
    {
        const __m512i wide = _mm512_cvtepu8_epi16(bytes);
        const __m512i halves = _mm512_or_si512(_mm512_srli_epi16(wide, 4), _mm512_slli_epi16(wide, 8));
        const __m512i digits =
            _mm512_maskz_broadcast_i32x4(0xFFFF, _mm_loadu_si128(reinterpret_cast<const __m128i *>(hex_digits)));
        return _mm512_shuffle_epi8(digits, _mm512_and_si512(halves, _mm512_set1_epi8(15)));
    }

    CODE_FOR_AVX512 static __m256i encode_half(__m128i bytes)
    {
        const __m256i wide = _mm256_cvtepu8_epi16(bytes);
        const __m256i halves = _mm256_or_si256(_mm256_srli_epi16(wide, 4), _mm256_slli_epi16(wide, 8));
        const __m256i digits =
            _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i *>(hex_digits)));
        return _mm256_shuffle_epi8(digits, _mm256_and_si256(halves, _mm256_set1_epi8(15)));
    }

    CODE_FOR_AVX512 static void encode(const uint8_t *bytes, size_t size, char *text)
    {
        if (size < 16) {
            const __mmask64 mask = _bzhi_u64(~uint64_t{0}, 2 * size);
            const __m256i block = _mm256_maskz_loadu_epi8(_bzhi_u32(~0u, unsigned(size)), bytes);
            _mm512_mask_storeu_epi8(text, mask << 1 | 1, _mm512_maskz_mov_epi8(mask, encode_block(block)));
            return;
        }
        // Whole stores, which a caller can read back at once, as it cannot those under a mask.
        if (size < 32) {
            for_blocks<16>(size, [&](size_t at) CODE_FOR_AVX512 {
                const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes + at));
                _mm256_storeu_si256(reinterpret_cast<__m256i *>(text + 2 * at), encode_half(block));
            });
            text[2 * size] = '\0';
            return;
        }
        for_blocks<32>(size, [&](size_t at) CODE_FOR_AVX512 {
            const __m256i block = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(bytes + at));
            _mm512_storeu_si512(text + 2 * at, encode_block(block));
        });
        text[2 * size] = '\0';
    }
};

#endif

} // namespace embedded
