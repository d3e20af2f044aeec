// Dates and times from text: the usual forms at once, any other by the reader of all of them.
#include "embedded/base/characters.h"
#include "embedded/temporal/iso_text.h"
#include "embedded/temporal/temporal_reader.h"

#include <bcast/codes.h>
#include <bcast/embedded.h>
#include <services/temporal.h>

namespace embedded {

namespace {

int32_t give(temporal_words value, bool date_only, vqtime *result)
{
    store_words(date_only ? reset(value, TYPE_DATE) : value, result);
    return 0;
}

// Writes nothing unless the result is 0.
[[gnu::noinline]] int32_t any_from_text(const char *text, int32_t length, uint16_t order, bool date_only,
                                        vqtime *result)
{
    temporal_text read;
    if (length < 0)
        return ERR_BAD_DATETIME;
    const int32_t status = read_temporal_text(text, size_t(length), order, &read);
    if (status != 0)
        return status;
    if (date_only && !read.has_date)
        return ERR_BAD_DATETIME;
    return give(read.value, date_only, result);
}

#if defined(MACHINE_IS_X86_64)

// How many characters at the end are a zone in one of its usual forms, Z and +HH:MM.
size_t usual_zone_size(const char *text, size_t size)
{
    if (text[size - 1] == 'Z')
        return 1;
    return size > 6 && text[size - 3] == ':' && is_sign(text[size - 6]) ? 6 : 0;
}

// A length below 0 is too large for both readers.

CODE_FOR_AVX512 inline bool read_zoned_avx512(const char *text, size_t size, temporal_words *value)
{
    constexpr size_t size_max = iso_size + 6;
    if (size - 1 >= size_max)
        return false;
    int16_t zone;
    const size_t zone_size = usual_zone_size(text, size), front_size = size - zone_size;
    if (zone_size == 0 || !read_zone(text + front_size, zone_size, &zone) ||
        !iso_texts<level::avx512>::read(text, front_size, value))
        return false;
    value->head = value->head >> 16 << 16 | uint16_t(zone);
    return true;
}

[[gnu::noinline]] CODE_FOR_AVX512 int32_t zoned_from_text_avx512(const char *text, int32_t length, uint16_t order,
                                                                 bool date_only, vqtime *result)
{
    temporal_words value;
    if (read_zoned_avx512(text, size_t(length), &value))
        return give(value, date_only, result);
    return any_from_text(text, length, order, date_only, result);
}

// Calls nothing but in its last step, and so saves no register.
CODE_FOR_AVX512 inline int32_t from_text_avx512(const char *text, int32_t length, uint16_t order, bool date_only,
                                                vqtime *result)
{
    temporal_words value;
    if (iso_texts<level::avx512>::read(text, size_t(length), &value)) [[likely]]
        return give(value, date_only, result);
    return zoned_from_text_avx512(text, length, order, date_only, result);
}

#endif

template <level at>
ALWAYS_INLINE int32_t from_text(const char *text, int32_t length, uint16_t order, bool date_only, vqtime *result)
{
#if defined(MACHINE_IS_X86_64)
    if constexpr (at == level::avx512)
        return from_text_avx512(text, length, order, date_only, result);
#endif
    return any_from_text(text, length, order, date_only, result);
}

// Nobody tells it the type: time and zone are kept, and a time alone is a value.
template <level at>
ALWAYS_INLINE int32_t in_order(const char *text, int32_t length, void *, uint16_t parse_word, vqtime *result, int32_t)
{
    return from_text<at>(text, length, parse_word, false, result);
}

// The year stands first. For TYPE_DATE a time alone is no value, and of any other the date is kept; every other type is
// TYPE_DATETIME.
template <level at>
ALWAYS_INLINE int32_t of_type(const char *text, int32_t length, int32_t type, vqtime *result, int32_t *)
{
    return from_text<at>(text, length, BCAST_YEAR_FIRST, type == TYPE_DATE, result);
}

} // namespace

} // namespace embedded

PICKED_AT_LOAD(char_to_date_simple_with_alen, embedded::in_order);
PICKED_AT_LOAD(vqtime_from_char_ex2, embedded::of_type);

// Nothing is left to do for a value that a parser made.
void vqtime_glgl_adjust_ignore(vqtime *) {}
