// What the tests of dates and times share.
#pragma once

#include "tests/support/guarded.h"
#include "tests/support/slow_temporal.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <string>
#include <string_view>

namespace bcast::test {

// No parser makes it.
inline vqtime unwritten_value()
{
    vqtime value;
    std::memset(&value, 0xA7, sizeof value);
    return value;
}

inline bool same_bytes(const vqtime &a, const vqtime &b) { return std::memcmp(&a, &b, sizeof a) == 0; }

inline temporal_reading reading_or_status(int32_t status, const vqtime &value)
{
    if (status == 0)
        return reading_of(value);
    EXPECT_TRUE(same_bytes(value, unwritten_value())) << "status " << status << ", and the result was written";
    return failed_reading(status);
}

// A text that touches an inaccessible page with either edge, to be given over and over.
class guarded_text {
public:
    guarded_text() : at_end_(room), at_start_(room, guard_edge::start) {}

    const char *at_end(std::string_view text)
    {
        char *to = at_end_.data() + room - text.size();
        std::copy(text.begin(), text.end(), to);
        return to;
    }
    const char *at_start(std::string_view text)
    {
        std::copy(text.begin(), text.end(), at_start_.data());
        return at_start_.data();
    }

private:
    static constexpr std::size_t room = 4096;
    guarded<char> at_end_, at_start_;
};

inline temporal_reading read_simple(const char *text, std::size_t size, uint16_t parse_word)
{
    vqtime value = unwritten_value();
    const int32_t status =
        char_to_date_simple_with_alen(text, static_cast<int32_t>(size), nullptr, parse_word, &value, 0);
    return reading_or_status(status, value);
}

inline temporal_reading read_typed(const char *text, std::size_t size, int32_t type)
{
    vqtime value = unwritten_value();
    int32_t aux;
    const int32_t status = vqtime_from_char_ex2(text, static_cast<int32_t>(size), type, &value, &aux);
    return reading_or_status(status, value);
}

inline temporal_reading read_simple(std::string_view text, uint16_t parse_word = BCAST_YEAR_FIRST)
{
    return read_simple(text.data(), text.size(), parse_word);
}

inline temporal_reading read_typed(std::string_view text, int32_t type)
{
    return read_typed(text.data(), text.size(), type);
}

inline vqtime value_from(std::string_view text)
{
    vqtime value = unwritten_value();
    EXPECT_EQ(char_to_date_simple_with_alen(text.data(), static_cast<int32_t>(text.size()), nullptr, 0, &value, 0), 0)
        << "\"" << text << "\"";
    return value;
}

// ---- To text: each with the encoder that belongs to it ------------------------------

inline std::string text_of_date(const vqtime &value)
{
    vqdt_decoded decoded;
    char text[BCAST_TEXT_ROOM];
    vqdt_date_encode_fast(&value, &decoded);
    EXPECT_NE(vq_date_to_char(&decoded, text), 0);
    return text;
}

inline std::string text_of_time(const vqtime &value)
{
    vqdt_decoded decoded;
    char text[BCAST_TEXT_ROOM];
    vqdt_time_encode_fast(&value, &decoded);
    EXPECT_NE(vq_time_to_char(&decoded, text, 0), 0);
    return text;
}

inline std::string text_of_datetime(const vqtime &value)
{
    vqdt_decoded decoded;
    char text[BCAST_TEXT_ROOM];
    vqdt_encode_fast(&value, &decoded);
    EXPECT_NE(vqdt_to_char(&decoded, text, 0), 0);
    return text;
}

inline std::string text_with_zone(const vqtime &value, int32_t type, int32_t digits)
{
    char text[BCAST_TEXT_ROOM];
    EXPECT_NE(vqtime_tz_to_char(&value, type, digits, text), 0);
    return text;
}

// All of a value, to compare and to read in a message.
inline std::string whole(const vqtime &value) { return text_with_zone(value, TYPE_DATETIME_TZ, 6); }

// Every day of the calendar in turn.
template <typename Do> void for_each_day(Do with)
{
    using namespace std::chrono;
    for (sys_days day = year(1) / 1 / 1; day <= sys_days(year(9999) / 12 / 31); day += days(1))
        with(year_month_day(day));
}

} // namespace bcast::test
