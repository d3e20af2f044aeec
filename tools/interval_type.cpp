#include "interval_type.h"

#include "errors.h"

#include <bcast/values.h>

#include <algorithm>
#include <array>

namespace bcast::tool {

namespace {

constexpr std::string_view keyword = "interval";

// By their bcast_interval_shape.
constexpr auto shapes = std::to_array<std::string_view>({"year", "year to month", "month", "day", "day to hour",
                                                         "day to minute", "day to second", "hour", "hour to minute",
                                                         "hour to second", "minute", "minute to second", "second"});
static_assert(shapes.size() == IV_SECOND + 1);

constexpr std::int32_t most_leading_digits = 9;

int shape_code(const std::string &shape)
{
    const auto found = std::ranges::find(shapes, shape);
    if (found != shapes.end())
        return int(found - shapes.begin());
    std::string list;
    for (const std::string_view each : shapes)
        list += (list.empty() ? "" : ", ") + std::string(each);
    throw tool_error("there is no interval " + in_quotes(shape) + "; there are interval " + list);
}

// The numbers behind the fields of a shape.
struct precisions {
    std::int32_t leading = 0; // not declared: as many digits as there can be
    std::int32_t fraction = most_fraction_digits;
};

// The first number is of the leading field, and one behind it of its fraction.
void take_leading(const type_name &field, precisions *result)
{
    const std::size_t most = field.word == "second" ? 2 : 1;
    if (field.numbers.size() > most)
        throw tool_error(most == 2 ? "second takes its digits and those of its fraction, as in second(4,2)"
                                   : field.word + " takes one number, as in " + field.word + "(3)");
    if (field.numbers.empty())
        return;
    result->leading = field.numbers[0];
    if (field.numbers.size() > 1)
        result->fraction = field.numbers[1];
    if (result->leading < 1 || result->leading > most_leading_digits)
        throw tool_error("the leading field of an interval has from 1 to " + std::to_string(most_leading_digits) +
                         " digits");
}

void take_last(const type_name &field, precisions *result)
{
    if (field.numbers.empty())
        return;
    if (field.word != "second" || field.numbers.size() > 1)
        throw tool_error(field.word + " behind to takes " +
                         (field.word == "second" ? "the digits of its fraction, as in second(2)" : "no number"));
    result->fraction = field.numbers[0];
}

// Of what stands behind the keyword.
type_name parse_fields(std::string_view text)
{
    constexpr std::string_view joint = " to ";
    const std::size_t to = text.find(joint);
    const type_name first = split_type(text.substr(0, to));
    std::string shape = first.word, written = described(first);
    precisions digits;
    take_leading(first, &digits);
    if (to != std::string_view::npos) {
        const type_name last = split_type(text.substr(to + joint.size()));
        shape += joint;
        shape += last.word;
        written += joint;
        written += described(last);
        take_last(last, &digits);
    }
    const int code = shape_code(shape);
    if (digits.fraction > most_fraction_digits)
        throw tool_error("a second has from 0 to " + std::to_string(most_fraction_digits) + " digits behind the point");
    return {.word = code <= IV_MONTH ? "ivym" : "ivdt",
            .interval = std::string(keyword) + " " + written,
            .iv_word = BCAST_IV_WORD(code, digits.leading, digits.fraction)};
}

} // namespace

std::optional<type_name> parse_interval(std::string_view text)
{
    if (text.starts_with(keyword) && (text.size() == keyword.size() || text[keyword.size()] == ' '))
        return parse_fields(text.substr(keyword.size()));
    const type_name name = split_type(text);
    if (name.word != "ivym" && name.word != "ivdt")
        return std::nullopt;
    if (!name.numbers.empty())
        throw tool_error(name.word + " takes no length");
    return parse_fields(name.word == "ivym" ? "year to month" : "day to second");
}

} // namespace bcast::tool
