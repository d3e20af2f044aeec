// Sums of minutes and of millionths, carried through to the date.
#include "embedded/temporal/temporal_arithmetic.h"

#include "embedded/temporal/calendar.h"

namespace embedded {

namespace {

constexpr int64_t day_minutes = 24 * 60;
constexpr int64_t amount_max = ((last_day - first_day).count() + 1) * day_minutes;

// Bits of the head.
constexpr int date_bit = 16, day_bit = 40, hour_bit = 48, minute_bit = 56;
constexpr uint64_t below_day = (uint64_t{1} << day_bit) - 1, below_date = (uint64_t{1} << date_bit) - 1;

constexpr uint8_t byte_at(uint64_t word, int bit) { return uint8_t(word >> bit); }

// The zone, and a date beyond the month so many days after that of the head.
[[gnu::noinline]] bool leave_month(uint64_t head, int64_t days, uint64_t *zone_and_date)
{
    const date_fields before = {byte_at(head, 16), byte_at(head, 24), byte_at(head, 32), byte_at(head, day_bit)};
    const std::chrono::sys_days day = day_number(before) + std::chrono::days(days);
    if (day < first_day || day > last_day)
        return false;
    const date_fields after = date_of(day);
    *zone_and_date = (head & below_date) | uint64_t{pack(after.century, after.year, after.month, after.day)}
                                               << date_bit;
    return true;
}

} // namespace

bool add_minutes(temporal_words *value, int64_t amount)
{
    if (amount > amount_max || amount < -amount_max) [[unlikely]]
        return false;
    const uint64_t head = value->head;
    const int64_t minutes = byte_at(head, hour_bit) * 60 + byte_at(head, minute_bit) + amount;
    const int64_t days = minutes / day_minutes - (minutes % day_minutes < 0);
    const auto of_day = uint32_t(minutes - days * day_minutes);

    const auto day = uint64_t(byte_at(head, day_bit) + days);
    uint64_t zone_and_date = (head & below_day) | day << day_bit;
    const uint32_t length = month_length(byte_at(head, 16), byte_at(head, 24), byte_at(head, 32) & 15);
    if (day - 1 >= length && !leave_month(head, days, &zone_and_date)) [[unlikely]]
        return false;
    value->head = zone_and_date | uint64_t{of_day / 60} << hour_bit | uint64_t{of_day % 60} << minute_bit;
    return true;
}

} // namespace embedded
