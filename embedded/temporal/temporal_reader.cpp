// The reader of every text that is a date or time.
#include "embedded/temporal/temporal_reader.h"

#include "embedded/base/characters.h"
#include "embedded/temporal/calendar.h"
#include "embedded/temporal/temporal_arithmetic.h"

#include <bcast/codes.h>
#include <bcast/embedded.h>

namespace embedded {

namespace {

constexpr int32_t zone_max = 14 * 60;

struct cursor {
    const char *at;
    const char *end;

    size_t left() const { return size_t(end - at); }
    bool has(size_t place, char c) const { return place < left() && at[place] == c; }
};

bool take(cursor *from, char c)
{
    const bool there = from->has(0, c);
    from->at += there;
    return there;
}

// Two digits.
bool read_pair(cursor *from, uint8_t *value)
{
    if (from->left() < 2 || !is_digit(from->at[0]) || !is_digit(from->at[1]))
        return false;
    *value = uint8_t((from->at[0] - '0') * 10 + (from->at[1] - '0'));
    from->at += 2;
    return true;
}

bool read_year(cursor *from, date_fields *date)
{
    return read_pair(from, &date->century) && read_pair(from, &date->year);
}

bool read_year_first(cursor *from, char separator, date_fields *date)
{
    return read_year(from, date) && take(from, separator) && read_pair(from, &date->month) && take(from, separator) &&
           read_pair(from, &date->day);
}

bool read_year_last(cursor *from, char separator, uint8_t *first, uint8_t *second, date_fields *date)
{
    return read_pair(from, first) && take(from, separator) && read_pair(from, second) && take(from, separator) &&
           read_year(from, date);
}

bool read_date(cursor *from, uint16_t order, date_fields *date)
{
    if (from->has(4, '-'))
        return read_year_first(from, '-', date);
    if (from->has(4, '/'))
        return read_year_first(from, '/', date);
    if (order == BCAST_DAY_FIRST && from->has(2, '.'))
        return read_year_last(from, '.', &date->day, &date->month, date);
    if (order == BCAST_DAY_FIRST && from->has(2, '/'))
        return read_year_last(from, '/', &date->day, &date->month, date);
    if (order == BCAST_MONTH_FIRST && from->has(2, '/'))
        return read_year_last(from, '/', &date->month, &date->day, date);
    return read_year(from, date) && read_pair(from, &date->month) && read_pair(from, &date->day);
}

// The digits behind the point, in millionths, up to 1000000.
bool read_fraction(cursor *from, uint32_t *amount)
{
    uint32_t unit = 1000000;
    const char *first = from->at;
    *amount = 0;
    for (; from->at != from->end && is_digit(*from->at); from->at++) {
        const auto digit = uint32_t(*from->at - '0');
        if (unit == 1) // the seventh
            *amount += digit >= 5;
        unit /= 10;
        *amount += digit * unit;
    }
    return from->at != first;
}

bool read_time(cursor *from, time_fields *time, uint32_t *fraction)
{
    if (!read_pair(from, &time->hour) || !take(from, ':') || !read_pair(from, &time->minute))
        return false;
    if (!take(from, ':'))
        return true;
    return read_pair(from, &time->second) && (!take(from, '.') || read_fraction(from, fraction));
}

bool take_joint(cursor *from)
{
    const bool there = from->left() > 0 && (is_blank(*from->at) || *from->at == 'T');
    from->at += there;
    return there;
}

bool read_value(cursor *from, uint16_t order, temporal_text *read)
{
    temporal value;
    uint32_t fraction = 0;
    read->has_date = !from->has(2, ':');
    if (read->has_date && !read_date(from, order, &value.date))
        return false;
    if ((!read->has_date || take_joint(from)) && !read_time(from, &value.time, &fraction))
        return false;
    if (from->left() > 0 && !read_zone(from->at, from->left(), &value.zone))
        return false;
    if (!is_date(value.date) || !is_time(value.time))
        return false;
    read->value = words_of(value);
    return set_millionths(&read->value, fraction);
}

} // namespace

bool read_zone(const char *text, size_t size, int16_t *zone)
{
    cursor from = {text, text + size};
    uint8_t hours = 0, minutes = 0;
    const bool negative = from.has(0, '-');
    if (!take(&from, 'Z')) {
        if (from.left() == 0 || !is_sign(*from.at++) || !read_pair(&from, &hours))
            return false;
        if (from.left() > 0) {
            take(&from, ':');
            if (!read_pair(&from, &minutes))
                return false;
        }
    }
    const int32_t amount = hours * 60 + minutes;
    *zone = int16_t(negative ? -amount : amount);
    return from.left() == 0 && minutes < 60 && amount <= zone_max;
}

int32_t read_temporal_text(const char *text, size_t size, uint16_t order, temporal_text *read)
{
    cursor from = {text, text + size};
    while (from.left() > 0 && is_blank(from.end[-1]))
        from.end--;
    if (from.left() == 0)
        return PARSE_NULL;
    while (is_blank(*from.at))
        from.at++;
    return read_value(&from, order, read) ? 0 : ERR_BAD_DATETIME;
}

} // namespace embedded
