// What is done to a value between two columns: its zone read and set, minutes added, the second rounded, fields
// cleared.
#include "embedded/temporal/temporal_arithmetic.h"

#include <bcast/codes.h>
#include <services/temporal.h>

namespace embedded {

namespace {

constexpr uint32_t fraction_digits_max = 6;
constexpr uint32_t fraction_units[] = {1000000, 100000, 10000, 1000, 100, 10}; // in millionths, by digits

uint32_t millionths(uint32_t tail) { return (tail >> 8 & 0xFF) * 10000 + (tail >> 16 & 0xFF) * 100 + (tail >> 24); }

} // namespace

} // namespace embedded

int32_t vqtime_get_tz(const vqtime *value) { return embedded::load<int16_t>(value); }

void vqtime_set_tz(vqtime *value, int32_t tz)
{
    const uint64_t head = embedded::load<uint64_t>(value) >> 16 << 16;
    embedded::store(value->bytes, head | uint16_t(tz));
}

// Both sums leave the zone, and where they fail, result is the value.

// A field other than minutes is none that can be added to.
int32_t vqtime_add_by_fmt(const vqtime *value, int32_t field, int64_t amount, vqtime *result)
{
    embedded::temporal_words words = embedded::load_words(value);
    const bool good = field == FIELD_MINUTE && embedded::add_minutes(&words, amount);
    embedded::store_words(words, result);
    return good ? 0 : ERR_BAD_DATETIME;
}

// Ties up. Six digits and more keep the value.
int32_t vqtime_round_by_prec(const vqtime *value, uint16_t digits, vqtime *result)
{
    embedded::temporal_words words = embedded::load_words(value);
    bool good = true;
    if (digits < embedded::fraction_digits_max) {
        const uint32_t unit = embedded::fraction_units[digits];
        good = embedded::set_millionths(&words, (embedded::millionths(words.tail) + unit / 2) / unit * unit);
    }
    embedded::store_words(words, result);
    return good ? 0 : ERR_BAD_DATETIME;
}

// To date 1900-01-01, time 00:00:00, zone TZ_NO_SHIFT. A type that is none of bcast_temporal_type holds all.
void vqtime_reset(vqtime *value, int32_t type)
{
    embedded::store_words(embedded::reset(embedded::load_words(value), type), value);
}
