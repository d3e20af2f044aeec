// The text of dates and times.
#include "embedded/temporal/iso_text.h"

#include <services/temporal.h>

#include <algorithm>

namespace embedded {

namespace {

constexpr size_t fraction_digits_max = 6;

// A decoded value is the value: text is made of it in one go.
void decode(const vqtime *value, vqdt_decoded *decoded) { store(decoded->words, load<vqtime>(value)); }

const vqtime *value_of(const vqdt_decoded *decoded) { return reinterpret_cast<const vqtime *>(decoded->words); }

// The characters +HH:MM, or +HHH:MM for one that no text has.
uint64_t zone_characters(int32_t zone)
{
    const auto size = uint32_t(zone < 0 ? -zone : zone);
    const uint32_t hours = size / 60;
    const uint64_t sign = zone < 0 ? '-' : '+';
    const auto pair = [](uint32_t value) { return uint64_t{load<uint16_t>(&two_digits[value])}; };
    const uint64_t rest = pair(hours % 100) | uint64_t{':'} << 16 | pair(size % 60) << 24;
    if (hours < 100) [[likely]]
        return sign | rest << 8;
    return sign | uint64_t{'0' + hours / 100} << 8 | rest << 16;
}

// YYYY-MM-DD, HH:MM:SS[.f], or both with a blank between. A fraction has all its digits but zeros at the end, and none
// is shown where it is 0; a zone is not shown. Each value has a text.

template <level at> ALWAYS_INLINE int32_t date_to_text(const vqdt_decoded *decoded, char *text)
{
    iso_texts<at>::write_date(value_of(decoded), text);
    return 1;
}

template <level at> ALWAYS_INLINE int32_t time_to_text(const vqdt_decoded *decoded, char *text, int32_t)
{
    iso_texts<at>::write_time(value_of(decoded), fraction_digits_max, 0, text);
    return 1;
}

template <level at> ALWAYS_INLINE int32_t datetime_to_text(const vqdt_decoded *decoded, char *text, int32_t)
{
    iso_texts<at>::write_datetime(value_of(decoded), fraction_digits_max, 0, text);
    return 1;
}

// ---- With a zone

template <level at>
ALWAYS_INLINE void write_with_zone(const vqtime *value, int32_t type, size_t digits, uint64_t zone, char *text)
{
    if (type == TYPE_TIME_TZ)
        iso_texts<at>::write_time(value, digits, zone, text);
    else
        iso_texts<at>::write_datetime(value, digits, zone, text);
}

// A time for TYPE_TIME_TZ, else a datetime, with the zone behind it as +HH:MM. Digits of the fraction beyond the count
// are cut, not rounded. A zone that no text has is shown in hours and minutes as well.
template <level at> ALWAYS_INLINE int32_t zoned_to_text(const vqtime *value, int32_t type, int32_t digits, char *text)
{
    const auto shown = size_t(std::clamp(digits, 0, int32_t(fraction_digits_max)));
    const uint64_t zone = zone_characters(vqtime_get_tz(value));
    if (zone >> 48 == 0)
        write_with_zone<at>(value, type, shown, zone, text);
    else
        write_with_zone<level::any>(value, type, shown, zone, text);
    return 1;
}

} // namespace

} // namespace embedded

void vqdt_encode_fast(const vqtime *value, vqdt_decoded *decoded) { embedded::decode(value, decoded); }

void vqdt_date_encode_fast(const vqtime *value, vqdt_decoded *decoded) { embedded::decode(value, decoded); }

void vqdt_time_encode_fast(const vqtime *value, vqdt_decoded *decoded) { embedded::decode(value, decoded); }

PICKED_AT_LOAD(vq_date_to_char, embedded::date_to_text);
PICKED_AT_LOAD(vq_time_to_char, embedded::time_to_text);
PICKED_AT_LOAD(vqdt_to_char, embedded::datetime_to_text);
PICKED_AT_LOAD(vqtime_tz_to_char, embedded::zoned_to_text);
