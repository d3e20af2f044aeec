// Dates, times and zones.
//
// A vqtime is
//
//     bytes 0 and 1    the zone: minutes east of Greenwich, signed, little-endian
//     bytes 2 to 5     the date: century, year of the century, month, day
//     bytes 6 to 11    the time: hour, minute, second, and three bytes of fraction
//
// where every byte but those of the zone is a number of two decimal digits:
// 2023-07-14 12:34:56.789012 is 20 23 7 14 12 34 56 78 90 12. So texts become
// values, and values texts, without a division; the zone stands in front because
// the date and the time up to the minute then fill the first half of a vector,
// and seconds begin the next. No byte is spare: equal values have equal bytes.
//
// Dates are those of the proleptic Gregorian calendar from 0001-01-01 to
// 9999-12-31, times those from 00:00:00 to 23:59:59.999999. There are no leap
// seconds, and 24:00:00 is no time. A record that these services did not make has
// some text and some result, and does no harm.
#pragma once

#include "embedded/base/machine.h"

#include <services/temporal.h>

#include <cstdint>

namespace embedded {

// What a value has of itself is what a text gets that does not say it.

struct date_fields {
    uint8_t century = 19;
    uint8_t year = 0; // of the century
    uint8_t month = 1;
    uint8_t day = 1;
};

struct time_fields {
    uint8_t hour = 0;
    uint8_t minute = 0;
    uint8_t second = 0;
    uint8_t fraction[3] = {};
};

struct temporal {
    int16_t zone = TZ_NO_SHIFT;
    date_fields date;
    time_fields time;
};

static_assert(sizeof(temporal) == sizeof(vqtime));

// The bytes of a record as the words in which all services, and the casts that
// copy it, read and write it: a word that was written byte by byte is slow to
// read.
struct temporal_words {
    uint64_t head; // zone, date, hour and minute
    uint32_t tail; // second and fraction
};

inline temporal_words load_words(const vqtime *from) { return {load<uint64_t>(from), load<uint32_t>(from->bytes + 8)}; }

inline void store_words(temporal_words words, vqtime *to)
{
    store(to->bytes, words.head);
    store(to->bytes + 8, words.tail);
}

constexpr uint32_t pack(uint8_t first, uint8_t second, uint8_t third, uint8_t fourth)
{
    return first | uint32_t{second} << 8 | uint32_t{third} << 16 | uint32_t{fourth} << 24;
}

constexpr temporal_words words_of(const temporal &value)
{
    const date_fields &date = value.date;
    const time_fields &time = value.time;
    return {uint16_t(value.zone) | uint64_t{pack(date.century, date.year, date.month, date.day)} << 16 |
                uint64_t{time.hour} << 48 | uint64_t{time.minute} << 56,
            pack(time.second, time.fraction[0], time.fraction[1], time.fraction[2])};
}

inline void write_temporal(const temporal &value, vqtime *to) { store_words(words_of(value), to); }

// The bits that a type holds. One that is none of bcast_temporal_type holds all.
constexpr temporal_words held_bits(int32_t type)
{
    constexpr uint64_t zone = 0xFFFF, date = uint64_t{0xFFFFFFFF} << 16, hour_and_minute = uint64_t{0xFFFF} << 48;
    constexpr uint32_t rest_of_time = ~uint32_t{0};
    switch (type) {
    case TYPE_DATE:
        return {date, 0};
    case TYPE_TIME:
        return {hour_and_minute, rest_of_time};
    case TYPE_DATETIME:
        return {date | hour_and_minute, rest_of_time};
    case TYPE_TIME_TZ:
        return {hour_and_minute | zone, rest_of_time};
    default:
        return {~uint64_t{0}, rest_of_time};
    }
}

// What the type does not hold becomes what a text without it gets.
constexpr temporal_words reset(temporal_words value, int32_t type)
{
    constexpr temporal_words unsaid = words_of({});
    const temporal_words held = held_bits(type);
    return {(value.head & held.head) | (unsaid.head & ~held.head),
            (value.tail & held.tail) | (unsaid.tail & ~held.tail)};
}

} // namespace embedded
