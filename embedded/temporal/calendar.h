// The days of the calendar, and the times of a day.
#pragma once

#include "embedded/temporal/temporal.h"

#include <chrono>
#include <cstdint>

namespace embedded {

// By whether the year is a leap year, and by month. What is no month has no days.
inline constexpr uint8_t month_lengths[2][16] = {
    {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
    {0, 31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
};

// In the last year of a century the century decides.
constexpr bool is_leap(uint32_t century, uint32_t year) { return (year != 0 ? year : century) % 4 == 0; }

// The month is below 16.
constexpr uint32_t month_length(uint32_t century, uint32_t year, uint32_t month)
{
    return month_lengths[is_leap(century, year)][month];
}

constexpr bool is_date(const date_fields &date)
{
    return (date.century | date.year) != 0 && date.month < 16 &&
           date.day - 1u < month_length(date.century, date.year, date.month);
}

constexpr bool is_time(const time_fields &time) { return time.hour < 24 && time.minute < 60 && time.second < 60; }

// Of any numbers, be they a date or not.
inline std::chrono::sys_days day_number(const date_fields &date)
{
    using namespace std::chrono;
    return year(date.century * 100 + date.year) / month(date.month) / day(date.day);
}

inline constexpr std::chrono::sys_days first_day = std::chrono::year(1) / 1 / 1;
inline constexpr std::chrono::sys_days last_day = std::chrono::year(9999) / 12 / 31;

// Of a day from first_day to last_day.
inline date_fields date_of(std::chrono::sys_days number)
{
    const std::chrono::year_month_day date(number);
    const auto year = uint32_t(int(date.year()));
    return {uint8_t(year / 100), uint8_t(year % 100), uint8_t(unsigned(date.month())), uint8_t(unsigned(date.day()))};
}

} // namespace embedded
