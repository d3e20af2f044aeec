// The text that datetimes have as a rule, with each digit at its own place:
//
//     2023-07-14 12:34:56.789012
//
// of which a date is the first ten characters, and a time those from the twelfth
// on. The writers take every value; the reader, which is one for AVX-512 alone, leaves other texts
// to the reader of any text.
#pragma once

#include "embedded/temporal/temporal.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace embedded {

inline constexpr size_t iso_date_size = 10, iso_time_at = 11, iso_second_end = 19, iso_size = 26;

// A writer may write so many bytes, however short the text.
inline constexpr size_t iso_room = 48;

// ASCII digits of each byte; a byte above 99 has some.
inline constexpr auto two_digits = [] {
    std::array<std::array<char, 2>, 256> digits{};
    for (size_t value = 0; value < 256; value++)
        digits[value] = {char('0' + value / 10 % 10), char('0' + value % 10)};
    return digits;
}();

template <level at> struct iso_texts : iso_texts<below(at)> {};

template <> struct iso_texts<level::any> {
    static void write_pairs(char *to, const uint8_t *values, size_t count, char separator)
    {
        for (size_t i = 0; i < count; i++) {
            store(to + 3 * i, two_digits[values[i]]);
            to[3 * i + 2] = separator;
        }
    }

    // What these write has a NUL behind it. digits is the most digits of the fraction to show, zone the characters that
    // stand behind the time, up to seven.

    static void write_date(const vqtime *value, char *text)
    {
        store(text, two_digits[value->bytes[2]]);
        write_pairs(text + 2, value->bytes + 3, 3, '-');
        text[iso_date_size] = '\0';
    }

    static void write_time(const vqtime *value, size_t digits, uint64_t zone, char *text)
    {
        constexpr size_t second_end = iso_second_end - iso_time_at;
        write_pairs(text, value->bytes + 6, 3, ':');
        text[second_end] = '.';
        for (size_t i = 0; i < 3; i++)
            store(text + second_end + 1 + 2 * i, two_digits[value->bytes[9 + i]]);
        size_t size = second_end + 1 + digits;
        while (text[size - 1] == '0')
            size--;
        size -= size == second_end + 1; // the point
        store(text + size, zone);
    }

    static void write_datetime(const vqtime *value, size_t digits, uint64_t zone, char *text)
    {
        write_date(value, text);
        text[iso_date_size] = ' ';
        write_time(value, digits, zone, text + iso_time_at);
    }
};

#if defined(MACHINE_IS_X86_64)

struct alignas(32) iso_block {
    uint8_t bytes[32];
};

constexpr iso_block block_of(const char (&characters)[iso_size + 1])
{
    iso_block made{};
    for (size_t i = 0; i < iso_size; i++)
        made.bytes[i] = uint8_t(characters[i]);
    return made;
}

// In halves of 16 characters, which is as far as bytes can be moved: the date and
// the time up to the minute, and the rest.
template <> struct iso_texts<level::avx512> {
    CODE_FOR_AVX512 static __m256i load_block(const iso_block &from)
    {
        return _mm256_load_si256(reinterpret_cast<const __m256i *>(&from));
    }
    CODE_FOR_AVX512 static __m128i load_half(const uint8_t *from)
    {
        return _mm_loadu_si128(reinterpret_cast<const __m128i *>(from));
    }

    static constexpr iso_block model = block_of("0000-00-00 00:00:00.000000");
    static constexpr iso_block model_with_t = block_of("0000-00-00T00:00:00.000000");

    // How far a character may be from the model's.
    static constexpr iso_block digit_max = [] {
        iso_block made{};
        for (size_t i = 0; i < 32; i++)
            made.bytes[i] = model.bytes[i] == '0' ? 9 : 0;
        return made;
    }();

    // Places of the digits, by the bytes of a record as 16-bit words, in halves.
    static constexpr uint8_t none = 0x80;
    static constexpr iso_block to_words = {{none, none, none, none, 0,    1,    2,    3,    5,    6,   8,
                                            9,    11,   12,   14,   15,   1,    2,    4,    5,    6,   7,
                                            8,    9,    none, none, none, none, none, none, none, none}};
    static constexpr iso_block to_text = {{4,  5,  6,    7,  none, 8,    9,    none, 10,   11,  none,
                                           12, 13, none, 14, 15,   none, 0,    1,    none, 2,   3,
                                           4,  5,  6,    7,  none, none, none, none, none, none}};

    // From 16 + i on: what moves the bytes of a half down by i, and from 16 - i on, up.
    static constexpr uint8_t slide[32] = {none, none, none, none, none, none, none, none, none, none, none,
                                          none, none, none, none, none, 0,    1,    2,    3,    4,    5,
                                          6,    7,    8,    9,    10,   11,   12,   13,   14,   15};

    // The smallest number of each byte of a record, and how far it may be above that. For the day that depends on the
    // month: it is looked up.
    static constexpr uint8_t least[16] = {0, 0, 0, 0, 1, 1};
    static constexpr uint8_t range[16] = {0, 0, 99, 99, 11, 0, 23, 59, 59, 99, 99, 99};
    static constexpr uint8_t month_to_day[16] = {none, none, none, none, none, 4,    none, none,
                                                 none, none, none, none, none, none, none, none};
    static constexpr uint8_t day_range[16] = {0, 30, 27, 30, 29, 30, 29, 30, 30, 29, 30, 29, 30};

    // YYYY-MM-DD, with or without HH:MM, HH:MM:SS or HH:MM:SS.f behind a blank or T, f up to six digits.
    static constexpr uint32_t sizes = 1 << 10 | 1 << 16 | 1 << 19 | 0x3F << 21;

    // Reads a text without blanks around; false, with nothing written, when it is not one of those texts, or no value,
    // or a February 29, for which the year matters.
    CODE_FOR_AVX512 static bool read(const char *text, size_t size, temporal_words *value)
    {
        if (size > iso_size || (sizes >> size & 1) == 0)
            return false;
        // What is not there reads as zero.
        const __m256i zeros = load_block(model);
        const __m256i characters = _mm256_mask_loadu_epi8(zeros, _bzhi_u32(~0u, unsigned(size)), text);
        const __m256i digits = _mm256_xor_si256(characters, zeros);
        const __mmask32 foreign = _mm256_mask_cmpneq_epu8_mask(_mm256_cmpgt_epu8_mask(digits, load_block(digit_max)),
                                                               characters, load_block(model_with_t));

        const __m256i tens = _mm256_set1_epi16(10 + (1 << 8));
        const __m256i words = _mm256_maddubs_epi16(_mm256_shuffle_epi8(digits, load_block(to_words)), tens);
        const __m128i bytes = _mm256_maskz_cvtepi16_epi8(0xFFFF, words); // not cvtepi16_epi8: g++ 12 warns of it
        const __m128i above = _mm_sub_epi8(bytes, load_half(least));
        const __m128i month = _mm_shuffle_epi8(bytes, load_half(month_to_day));
        const __m128i all_ranges = _mm_or_si128(load_half(range), _mm_shuffle_epi8(load_half(day_range), month));
        const __mmask16 outside = _mm_cmpgt_epu8_mask(above, all_ranges);

        const auto head = uint64_t(_mm_cvtsi128_si64(bytes));
        constexpr uint32_t century_and_year = 0xFFFF0000;
        if (!_kortestz_mask32_u8(foreign, outside) || (head & century_and_year) == 0) [[unlikely]]
            return false;
        const auto tail = uint32_t(_mm_extract_epi32(bytes, 2));
        *value = {head | uint16_t(TZ_NO_SHIFT), tail};
        return true;
    }

    // The digits of a value at their places, as numbers; those of the head alone are right without the tail.
    CODE_FOR_AVX512 static __m256i digits_of(temporal_words words)
    {
        const __m128i bytes = _mm_set_epi64x(int64_t(words.tail), int64_t(words.head));
        const __m256i pairs = _mm256_cvtepu8_epi16(bytes);
        const __m256i tens = _mm256_mulhi_epu16(pairs, _mm256_set1_epi16(6554)); // of 65536, a tenth
        // tens + (pairs - 10 * tens) * 256
        const __m256i both =
            _mm256_sub_epi16(_mm256_slli_epi16(pairs, 8), _mm256_mullo_epi16(tens, _mm256_set1_epi16(2559)));
        return _mm256_shuffle_epi8(both, load_block(to_text));
    }

    // Moves the characters behind the second half's first size - 16.
    CODE_FOR_AVX512 static __m256i move_up(uint64_t characters, size_t size)
    {
        const __m128i moved = _mm_shuffle_epi8(_mm_cvtsi64_si128(int64_t(characters)), load_half(slide + 32 - size));
        return _mm256_inserti128_si256(_mm256_setzero_si256(), moved, 1);
    }

    // The text, with zeros behind it.
    CODE_FOR_AVX512 static __m256i datetime_of(const vqtime *value, size_t digits, uint64_t zone)
    {
        const __m256i places = digits_of(load_words(value));
        const uint32_t shown = _bzhi_u32(0x3F << 20, unsigned(20 + digits));
        const uint32_t last = (_mm256_test_epi8_mask(places, places) & shown) | 1 << (iso_second_end - 1);
        const auto size = 32 - uint32_t(__builtin_clz(last));
        const __m256i all = _mm256_or_si256(places, load_block(model));
        const __m256i text = _mm256_maskz_mov_epi8(_bzhi_u32(~0u, size), all);
        return zone == 0 ? text : _mm256_or_si256(text, move_up(zone, size));
    }

    // Always 32 bytes: the NUL is one of the zeros, and whoever measures the text with one load finds it written by
    // one store.
    CODE_FOR_AVX512 static void store_text(char *text, __m256i characters)
    {
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(text), characters);
    }

    // As those of level::any, but that a zone has up to six characters.

    CODE_FOR_AVX512 static void write_date(const vqtime *value, char *text)
    {
        const __m256i all = _mm256_or_si256(digits_of({load<uint64_t>(value), 0}), load_block(model));
        store_text(text, _mm256_maskz_mov_epi8((1 << iso_date_size) - 1, all));
    }

    CODE_FOR_AVX512 static void write_time(const vqtime *value, size_t digits, uint64_t zone, char *text)
    {
        const __m256i all = datetime_of(value, digits, zone);
        const __m128i head = _mm256_castsi256_si128(all), tail = _mm256_extracti128_si256(all, 1);
        const __m256i time = _mm256_castsi128_si256(_mm_alignr_epi8(tail, head, iso_time_at));
        store_text(text, _mm256_inserti128_si256(time, _mm_srli_si128(tail, iso_time_at), 1));
    }

    CODE_FOR_AVX512 static void write_datetime(const vqtime *value, size_t digits, uint64_t zone, char *text)
    {
        store_text(text, datetime_of(value, digits, zone));
        text[32] = '\0';
    }
};

#endif

} // namespace embedded
