// Dates and times from the digits of an integer.
#include "embedded/temporal/calendar.h"

#include <bcast/codes.h>
#include <services/temporal.h>

namespace embedded {

namespace {

constexpr int64_t date_max = 99991231, time_max = 235959, datetime_min = 10000101000000;

uint8_t pair_of(uint32_t number, uint32_t unit) { return uint8_t(number / unit % 100); }

// YYYYMMDD, without the zeros in front. False when it is no date.
bool read_date(int64_t number, date_fields *date)
{
    if (number < 0 || number > date_max)
        return false;
    const auto digits = uint32_t(number);
    *date = {pair_of(digits, 1000000), pair_of(digits, 10000), pair_of(digits, 100), pair_of(digits, 1)};
    return is_date(*date);
}

// HHMMSS, without the zeros in front.
bool read_time(int64_t number, time_fields *time)
{
    if (number < 0 || number > time_max)
        return false;
    const auto digits = uint32_t(number);
    *time = {pair_of(digits, 10000), pair_of(digits, 100), pair_of(digits, 1), {}};
    return is_time(*time);
}

bool read_datetime(int64_t number, temporal *value)
{
    if (number < 10000000)
        return read_time(number, &value->time);
    if (number < datetime_min)
        return read_date(number, &value->date);
    return read_date(number / 1000000, &value->date) && read_time(number % 1000000, &value->time);
}

} // namespace

} // namespace embedded

// Both write nothing where they fail.

int32_t vqtime_from_long(int64_t number, vqtime *result)
{
    embedded::temporal value;
    if (!embedded::read_date(number, &value.date))
        return ERR_BAD_DATETIME;
    embedded::write_temporal(value, result);
    return 0;
}

// Up to six digits are HHMMSS of 1900-01-01, eight are YYYYMMDD at midnight, fourteen are YYYYMMDDHHMMSS, and no other
// count is anything.
int32_t time_from_long(int64_t number, vqtime *result)
{
    embedded::temporal value;
    if (!embedded::read_datetime(number, &value))
        return ERR_BAD_DATETIME;
    embedded::write_temporal(value, result);
    return 0;
}
