// The grammar of dates and times in text:
//
//     blanks  value  [zone]  blanks
//
//     value   date, time, or date and time with one blank or T between
//     date    YYYY-MM-DD, YYYY/MM/DD, YYYYMMDD; and by the order of the fields
//             that the caller names: DD.MM.YYYY, DD/MM/YYYY; MM/DD/YYYY
//     time    HH:MM, HH:MM:SS, or HH:MM:SS.f with any number of digits, at least 1
//     zone    Z, or a sign and HH, HHMM or HH:MM, from -14:00 to +14:00
//
// Blanks are the bytes 9 to 13 and 32. T and Z are capitals. All numbers have as
// many digits as shown. A zone may stand behind a date too, and is that of its
// midnight; no blank stands before a zone. -00:00 is +00:00.
//
// A text without a date has 1900-01-01, without a time 00:00:00, without a zone
// TZ_NO_SHIFT; so +08:00 and no zone are alike. A fraction is rounded to six
// digits, ties up, and carries through to the date.
#pragma once

#include "embedded/temporal/temporal.h"

#include <cstddef>
#include <cstdint>

namespace embedded {

struct temporal_text {
    temporal_words value;
    bool has_date;
};

// 0, PARSE_NULL for a text of nothing but blanks, or ERR_BAD_DATETIME. *read is of use with 0 only. order is a
// bcast_date_order.
int32_t read_temporal_text(const char *text, size_t size, uint16_t order, temporal_text *read);

// False when the characters are no zone.
bool read_zone(const char *text, size_t size, int16_t *zone);

} // namespace embedded
