// Dates and times read and counted in the plainest way: a text by its picture, a sum by the clock of the standard
// library.
#pragma once

#include <bcast/codes.h>
#include <bcast/embedded.h>
#include <services/temporal.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

struct temporal_reading {
    int32_t status = 0;
    int year = 1900, month = 1, day = 1, hour = 0, minute = 0, second = 0, millionths = 0;
    int zone = TZ_NO_SHIFT;

    friend bool operator==(const temporal_reading &, const temporal_reading &) = default;
};

inline void PrintTo(const temporal_reading &reading, std::ostream *out)
{
    char text[128];
    std::snprintf(text, sizeof text, "status %d, %04d-%02d-%02d %02d:%02d:%02d.%06d zone %d", reading.status,
                  reading.year, reading.month, reading.day, reading.hour, reading.minute, reading.second,
                  reading.millionths, reading.zone);
    *out << text;
}

// ---- Records ---------------------------------------------------------------------

inline temporal_reading reading_of(const vqtime &value)
{
    const uint8_t *bytes = value.bytes;
    return {.year = bytes[2] * 100 + bytes[3],
            .month = bytes[4],
            .day = bytes[5],
            .hour = bytes[6],
            .minute = bytes[7],
            .second = bytes[8],
            .millionths = bytes[9] * 10000 + bytes[10] * 100 + bytes[11],
            .zone = static_cast<int16_t>(bytes[0] | bytes[1] << 8)};
}

inline vqtime record_of(const temporal_reading &reading)
{
    const int bytes[] = {reading.zone,
                         reading.zone >> 8,
                         reading.year / 100,
                         reading.year % 100,
                         reading.month,
                         reading.day,
                         reading.hour,
                         reading.minute,
                         reading.second,
                         reading.millionths / 10000,
                         reading.millionths / 100 % 100,
                         reading.millionths % 100};
    vqtime value;
    for (size_t i = 0; i < sizeof value.bytes; i++)
        value.bytes[i] = static_cast<uint8_t>(bytes[i]);
    return value;
}

// ---- Sums ------------------------------------------------------------------------

using slow_instant = std::chrono::sys_time<std::chrono::microseconds>;

inline std::chrono::year_month_day slow_date(const temporal_reading &reading)
{
    return std::chrono::year(reading.year) / std::chrono::month(static_cast<unsigned>(reading.month)) /
           std::chrono::day(static_cast<unsigned>(reading.day));
}

inline slow_instant instant_of(const temporal_reading &reading)
{
    using namespace std::chrono;
    return sys_days(slow_date(reading)) + hours(reading.hour) + minutes(reading.minute) + seconds(reading.second) +
           microseconds(reading.millionths);
}

// Nothing beyond the years 1 to 9999.
inline std::optional<temporal_reading> reading_at(slow_instant instant, int zone)
{
    using namespace std::chrono;
    const sys_days day = floor<days>(instant);
    const year_month_day date(day);
    const hh_mm_ss<microseconds> time(instant - day);
    if (date.year() < year(1) || date.year() > year(9999))
        return std::nullopt;
    return temporal_reading{.year = int(date.year()),
                            .month = int(unsigned(date.month())),
                            .day = int(unsigned(date.day())),
                            .hour = int(time.hours().count()),
                            .minute = int(time.minutes().count()),
                            .second = int(time.seconds().count()),
                            .millionths = int(time.subseconds().count()),
                            .zone = zone};
}

// ---- Text ------------------------------------------------------------------------

inline temporal_reading failed_reading(int32_t status)
{
    temporal_reading reading;
    reading.status = status;
    return reading;
}

// Digits become 9, blanks _, and nothing else does.
inline std::string picture_of(std::string_view text)
{
    std::string picture;
    for (const char c : text) {
        const bool blank = c == ' ' || (c >= '\t' && c <= '\r');
        picture += c >= '0' && c <= '9' ? '9' : blank ? '_' : c == '9' || c == '_' ? '?' : c;
    }
    return picture;
}

inline int slow_number(std::string_view digits)
{
    int number = 0;
    for (const char digit : digits)
        number = number * 10 + (digit - '0');
    return number;
}

inline bool slow_read_date(std::string_view text, uint16_t parse_word, temporal_reading *reading)
{
    struct form {
        std::string_view picture, letters;
    };
    std::vector<form> forms = {{"9999-99-99", "YYYY-MM-DD"}, {"9999/99/99", "YYYY/MM/DD"}, {"99999999", "YYYYMMDD"}};
    if (parse_word == BCAST_DAY_FIRST)
        forms.insert(forms.end(), {{"99.99.9999", "DD.MM.YYYY"}, {"99/99/9999", "DD/MM/YYYY"}});
    if (parse_word == BCAST_MONTH_FIRST)
        forms.push_back({"99/99/9999", "MM/DD/YYYY"});
    for (const form &f : forms) {
        if (picture_of(text) != f.picture)
            continue;
        reading->year = slow_number(text.substr(f.letters.find('Y'), 4));
        reading->month = slow_number(text.substr(f.letters.find('M'), 2));
        reading->day = slow_number(text.substr(f.letters.find('D'), 2));
        return reading->year >= 1 && slow_date(*reading).ok();
    }
    return false;
}

inline bool slow_read_time(std::string_view text, temporal_reading *reading, bool *up)
{
    const std::string picture = picture_of(text);
    const bool minutes = picture == "99:99", seconds = picture == "99:99:99";
    const bool fraction = picture.starts_with("99:99:99.9") && picture.find_first_not_of('9', 9) == std::string::npos;
    if (!minutes && !seconds && !fraction)
        return false;
    reading->hour = slow_number(text.substr(0, 2));
    reading->minute = slow_number(text.substr(3, 2));
    reading->second = minutes ? 0 : slow_number(text.substr(6, 2));
    const std::string digits = std::string(fraction ? text.substr(9) : "") + "0000000";
    reading->millionths = slow_number(digits.substr(0, 6));
    *up = digits[6] >= '5';
    return reading->hour < 24 && reading->minute < 60 && reading->second < 60;
}

inline bool slow_read_zone(std::string_view text, temporal_reading *reading)
{
    if (text == "Z") {
        reading->zone = 0;
        return true;
    }
    const int hours = slow_number(text.substr(1, 2));
    const int minutes = text.size() > 3 ? slow_number(text.substr(text.size() - 2)) : 0;
    reading->zone = (text[0] == '-' ? -1 : 1) * (hours * 60 + minutes);
    return minutes < 60 && reading->zone >= -14 * 60 && reading->zone <= 14 * 60;
}

// A date, a time, or both.
inline temporal_reading slow_read_value(std::string_view text, uint16_t parse_word, temporal_reading reading,
                                        bool *has_date)
{
    const temporal_reading bad = failed_reading(ERR_BAD_DATETIME);
    bool up = false;
    *has_date = true;
    if (slow_read_date(text, parse_word, &reading))
        return reading;
    if (slow_read_time(text, &reading, &up)) {
        *has_date = false;
    } else {
        const std::size_t joint = picture_of(text).find_first_of("_T");
        if (joint == std::string::npos || !slow_read_date(text.substr(0, joint), parse_word, &reading) ||
            !slow_read_time(text.substr(joint + 1), &reading, &up))
            return bad;
    }
    return reading_at(instant_of(reading) + std::chrono::microseconds(up), reading.zone).value_or(bad);
}

// What char_to_date_simple_with_alen has to give; with TYPE_DATE or TYPE_DATETIME, and the year first,
// vqtime_from_char_ex2.
inline temporal_reading slow_read_temporal(std::string_view text, uint16_t parse_word = BCAST_YEAR_FIRST,
                                           int32_t type = 0)
{
    const temporal_reading bad = failed_reading(ERR_BAD_DATETIME);
    const std::string blanks = picture_of(text);
    const std::size_t first = blanks.find_first_not_of('_');
    if (first == std::string::npos)
        return failed_reading(PARSE_NULL);
    text = text.substr(first, blanks.find_last_not_of('_') + 1 - first);

    const std::string picture = picture_of(text);
    for (const std::string_view zone : {"", "Z", "+99", "+9999", "+99:99", "-99", "-9999", "-99:99"}) {
        temporal_reading reading;
        if (!picture.ends_with(zone) ||
            (!zone.empty() && !slow_read_zone(text.substr(text.size() - zone.size()), &reading)))
            continue;
        bool has_date;
        reading = slow_read_value(text.substr(0, text.size() - zone.size()), parse_word, reading, &has_date);
        if (reading.status != 0)
            continue;
        if (type != TYPE_DATE)
            return reading;
        return has_date ? temporal_reading{.year = reading.year, .month = reading.month, .day = reading.day} : bad;
    }
    return bad;
}

// ---- To text -----------------------------------------------------------------------

inline std::string slow_date_text(const temporal_reading &reading)
{
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d", reading.year, reading.month, reading.day);
    return text;
}

inline std::string slow_time_text(const temporal_reading &reading, std::size_t digits = 6)
{
    char text[64];
    const int second_end =
        std::snprintf(text, sizeof text, "%02d:%02d:%02d", reading.hour, reading.minute, reading.second);
    char fraction[64];
    std::snprintf(fraction, sizeof fraction, ".%06d", reading.millionths);
    std::string shown = std::string(fraction).substr(0, 1 + digits);
    while (shown.back() == '0')
        shown.pop_back();
    return std::string(text, static_cast<std::size_t>(second_end)) + (shown == "." ? "" : shown);
}

inline std::string slow_datetime_text(const temporal_reading &reading, std::size_t digits = 6)
{
    return slow_date_text(reading) + " " + slow_time_text(reading, digits);
}

inline std::string slow_zone_text(int zone)
{
    char text[64];
    const int size = zone < 0 ? -zone : zone;
    std::snprintf(text, sizeof text, "%c%02d:%02d", zone < 0 ? '-' : '+', size / 60, size % 60);
    return text;
}
