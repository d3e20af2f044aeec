// 16 decimal digits for each kind of machine, without a branch on how many of them are wanted.
#pragma once

#include "embedded/base/machine.h"
#include "machine/digits.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace embedded {

// The 16 characters of a value below 10^16.
template <level at> struct written_digits : written_digits<below(at)> {
    using written_digits<below(at)>::written_digits;
};

template <> struct written_digits<level::any> {
    sixteen_digits characters;

    explicit written_digits(uint64_t value) : characters(value) {}

    // Writes a minus or none and the last `count` of them, and may write 16 bytes. The count is at most 15 with a
    // minus.
    void write_integer(bool negative, size_t count, char *to) const
    {
        write_from(16 - count - negative, to);
        if (negative)
            *to = '-';
    }

    // Writes those behind the first skipped ones, and may write 16 bytes. None are to be read if 16 are skipped.
    void write_from(size_t skipped, char *to) const
    {
        store(to, characters_behind(int(skipped % 16), characters.first, characters.second));
    }
};

#if defined(MACHINE_IS_X86_64)

template <> struct written_digits<level::avx512> {
    static constexpr auto places = [] {
        std::array<uint8_t, 32> all{};
        for (uint8_t i = 0; i < all.size(); i++)
            all[i] = i;
        return all;
    }();

    __m128i characters;

    CODE_FOR_AVX512 explicit written_digits(uint64_t value) : characters(sixteen_characters(value)) {}

    // Writes a minus or none and the last `count` of them, and may write 16 bytes, in one store for a reader right
    // behind it. The count is at most 15 with a minus.
    CODE_FOR_AVX512 void write_integer(bool negative, size_t count, char *to) const
    {
        const __m128i from = _mm_loadu_si128(reinterpret_cast<const __m128i *>(&places[16 - count - negative]));
        const __m128i text = _mm_shuffle_epi8(characters, from);
        _mm_storeu_si128(reinterpret_cast<__m128i *>(to),
                         _mm_mask_mov_epi8(text, __mmask16{negative}, _mm_set1_epi8('-')));
    }

    CODE_FOR_AVX512 void write_from(size_t skipped, char *to) const
    {
        const __m128i from = _mm_loadu_si128(reinterpret_cast<const __m128i *>(&places[skipped]));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(to), _mm_shuffle_epi8(characters, from));
    }

    // Writes a minus or none, the last `count` of them, and a point ahead of the last `scale`, or none where that is 0.
    // Writes 32 bytes, in one store, for a reader right behind it to find the text at once.
    CODE_FOR_AVX512 void write_number(bool negative, size_t count, size_t scale, char *to) const
    {
        const size_t point = scale > 0 ? negative + count - scale : places.size() - 1;
        const auto behind_point = __mmask32(~uint64_t{1} << point);
        const auto first = char(16 - count - negative); // -1 where a minus stands before 16 digits
        const __m256i place = _mm256_add_epi8(_mm256_loadu_si256(reinterpret_cast<const __m256i *>(places.data())),
                                              _mm256_set1_epi8(first));
        const __m256i from = _mm256_mask_sub_epi8(place, behind_point, place, _mm256_set1_epi8(1));
        __m256i text = _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(characters), from);
        text = _mm256_mask_mov_epi8(text, __mmask32{1} << point, _mm256_set1_epi8('.'));
        text = _mm256_mask_mov_epi8(text, __mmask32{negative}, _mm256_set1_epi8('-'));
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(to), text);
    }
};

#endif

} // namespace embedded
