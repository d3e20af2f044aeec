// The double's services for dates, times, zones and intervals. What they make of a value is told by the call alone, its
// bytes and its number, and has no calendar behind it, so that a cast cannot have made it up.
#pragma once

#include <bcast/column.h>

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace bcast::test {

struct service_call;

struct temporal_answers {
    std::set<std::string, std::less<>> null_texts;         // which denote no value
    std::map<std::string, int16_t, std::less<>> zones;     // by record
    std::map<std::string, std::string, std::less<>> texts; // by record, decoded or not
    size_t staged_bytes = 0;                               // of interval text, to be logged in any case
    std::function<void()> on_text = [] {};                 // ahead of each text that is written

    int16_t zone_of(std::string_view image) const;     // a record that is not here has one, of any size and sign
    std::string text_of(std::string_view image) const; // a record that is not here has one of 1 to 9 bytes
};

// The bytes that a call makes of what it was handed.
std::string made_by(const service_call &call, size_t bytes = sizeof(vqtime));

// What a call leaves that failed.
std::string left_by_failure(size_t bytes = sizeof(vqtime));

// A record for a test to convert: bytes that no rule is behind, and not the same for two numbers.
std::string some_record(uint32_t number, size_t bytes = sizeof(vqtime));

// What a cast should have called. A record is handed over by its bytes; a text comes with the NUL behind it where the
// service needs one.
service_call parses_date(const bdta3_str &element, uint16_t parse_word, const void *parse_ptr);
service_call parses_datetime(const bdta3_str &element, int32_t type); // in place
service_call finishes(std::string record);
service_call makes_date_of(int64_t number);
service_call makes_time_of(int64_t number);
service_call takes_zone(std::string record);
service_call sets_zone(std::string record, int32_t zone);
service_call shifts(std::string record, int64_t minutes);
service_call rounds(std::string record, uint16_t digits);
service_call resets(std::string record, int32_t type);
service_call unpacks(std::string_view service, std::string record);
service_call writes_decoded(std::string_view service, std::string decoded);
service_call writes_zoned(std::string record, int32_t type, int32_t digits);

inline constexpr size_t decoded_bytes = 56;

// Of intervals, ivym or ivdt. A clearing service leaves zeros.
template <class Interval> service_call clears();
template <class Interval> service_call validates(std::string record, uint16_t word);
template <class Interval> service_call parses_interval(std::string_view text, uint16_t word);
template <class Interval> service_call writes_interval(std::string record, uint16_t word);
template <class Interval> service_call reshapes(std::string record, uint16_t word);

} // namespace bcast::test
