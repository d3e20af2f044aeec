#include "date_reading.h"

#include "errors.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace bcast::tool {

namespace {

// By their bcast_date_order.
constexpr auto orders = std::to_array<std::string_view>({"ymd", "dmy", "mdy"});
constexpr int farthest_zone = 14 * 60;

std::uint16_t parse_order(const std::string &text)
{
    const auto found = std::ranges::find(orders, text);
    if (found == orders.end())
        throw tool_error("--date-order " + in_quotes(text) + ": expected ymd, dmy or mdy");
    return std::uint16_t(found - orders.begin());
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// +HH:MM or -HH:MM.
bool is_zone(std::string_view text)
{
    return text.size() == 6 && (text[0] == '+' || text[0] == '-') && is_digit(text[1]) && is_digit(text[2]) &&
           text[3] == ':' && text[4] >= '0' && text[4] <= '5' && is_digit(text[5]);
}

int pair_at(std::string_view text, std::size_t at) { return (text[at] - '0') * 10 + (text[at + 1] - '0'); }

std::int16_t parse_zone(const std::string &text)
{
    if (text == "Z")
        return 0;
    const int size = is_zone(text) ? pair_at(text, 1) * 60 + pair_at(text, 4) : farthest_zone + 1;
    if (size > farthest_zone)
        throw tool_error("--local-zone " + in_quotes(text) +
                         ": expected Z, or a zone from -14:00 to +14:00, as in +02:00");
    return std::int16_t(text[0] == '-' ? -size : size);
}

} // namespace

date_reading parse_date_options(const date_options &options)
{
    return {.order = parse_order(options.order), .local_zone = parse_zone(options.local_zone)};
}

} // namespace bcast::tool
