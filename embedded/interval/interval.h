// Intervals: their shapes, and what they count.
//
// The shapes of each kind count up by their first field, and below it by their last one. Of the digits in an iv_word 0
// and all above 9 read as 9 for the leading field, and all above 6 as 6 for the fraction.
//
// The fields of an interval are all of one sign. What is done to one goes by its total: months, or microseconds.
#pragma once

#include <bcast/codes.h>
#include <services/interval.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace embedded {

__extension__ using int128 = __int128;

// An interval of both kinds as its fields in a row, the largest first. units has the size of each in the smallest one;
// shown_fields are those that a shape can name, to the last of which, of a second, belongs the fraction.
template <class Interval> struct interval_kind;

template <> struct interval_kind<ivym> {
    static constexpr std::array<int64_t, 2> units = {12, 1};
    static constexpr std::array<int64_t, 2> limits = {INT64_MAX, 12}; // of a field that does not lead
    static constexpr size_t shown_fields = 2;
    static constexpr unsigned first_code = IV_YEAR;
    static constexpr std::array<char, 1> separators = {'-'};

    static std::array<int32_t, 2> fields(const ivym &from) { return {from.year, from.month}; }
    static void put(const std::array<int32_t, 2> &fields, uint32_t word, ivym *to)
    {
        *to = {fields[0], fields[1], word};
    }
};

template <> struct interval_kind<ivdt> {
    static constexpr std::array<int64_t, 5> units = {86400000000, 3600000000, 60000000, 1000000, 1};
    static constexpr std::array<int64_t, 5> limits = {INT64_MAX, 24, 60, 60, 1000000};
    static constexpr size_t shown_fields = 4;
    static constexpr unsigned first_code = IV_DAY;
    static constexpr std::array<char, 3> separators = {' ', ':', ':'};

    static std::array<int32_t, 5> fields(const ivdt &from)
    {
        return {from.day, from.hour, from.minute, from.second, from.fraction};
    }
    static void put(const std::array<int32_t, 5> &fields, uint32_t word, ivdt *to)
    {
        *to = {fields[0], fields[1], fields[2], fields[3], fields[4], word};
    }
};

struct interval_shape {
    size_t first, last;
    uint32_t leading_digits, fraction_digits;

    bool has_fraction() const { return last == interval_kind<ivdt>::shown_fields - 1; }
};

// Nothing for a field code that this kind of interval lacks.
template <class Interval> std::optional<interval_shape> shape_of(uint32_t word)
{
    using kind = interval_kind<Interval>;
    const uint32_t leading = bcast_iv_leading(uint16_t(word)), fraction = bcast_iv_fraction(uint16_t(word));
    unsigned code = kind::first_code;
    for (size_t first = 0; first < kind::shown_fields; first++)
        for (size_t last = first; last < kind::shown_fields; last++, code++)
            if (code == word >> 8)
                return interval_shape{first, last, leading == 0 ? 9 : std::min(leading, 9u), std::min(fraction, 6u)};
    return std::nullopt;
}

template <class Interval> int128 total_of(const Interval &interval)
{
    using kind = interval_kind<Interval>;
    const auto fields = kind::fields(interval);
    int128 total = 0;
    for (size_t i = 0; i < fields.size(); i++)
        total += int128{fields[i]} * kind::units[i];
    return total;
}

// Whether a field is set that the shape does not show: one before its first, or also one behind its last.
template <class Interval> bool has_more_than(const interval_shape &shape, const Interval &interval, bool before)
{
    const auto fields = interval_kind<Interval>::fields(interval);
    const size_t end = shape.has_fraction() ? fields.size() : shape.last + 1;
    return (before && std::any_of(fields.begin(), fields.begin() + ptrdiff_t(shape.first),
                                  [](int32_t field) { return field != 0; })) ||
           std::any_of(fields.begin() + ptrdiff_t(end), fields.end(), [](int32_t field) { return field != 0; });
}

// A total in the fields of a shape, each below its limit but for the leading one, without a sign. What is below the
// last field is left out.
template <class Interval>
std::array<int64_t, interval_kind<Interval>::units.size()> spread(int128 total, const interval_shape &shape)
{
    using kind = interval_kind<Interval>;
    std::array<int64_t, kind::units.size()> fields{};
    int128 rest = total < 0 ? -total : total;
    const size_t end = shape.has_fraction() ? fields.size() : shape.last + 1;
    for (size_t i = shape.first; i < end; i++) {
        fields[i] = int64_t(rest / kind::units[i]);
        rest %= kind::units[i];
    }
    return fields;
}

// Makes an interval of a shape; ERR_OVERFLOW, with nothing written, if its leading field has too many digits.
template <class Interval>
int32_t make_interval(int128 total, const interval_shape &shape, uint32_t word, Interval *interval)
{
    using kind = interval_kind<Interval>;
    constexpr std::array<int64_t, 10> powers_of_ten = {1,      10,      100,      1000,      10000,
                                                       100000, 1000000, 10000000, 100000000, 1000000000};
    const auto spread_fields = spread<Interval>(total, shape);
    if (spread_fields[shape.first] >= powers_of_ten[shape.leading_digits])
        return ERR_OVERFLOW;
    std::array<int32_t, kind::units.size()> fields;
    std::transform(spread_fields.begin(), spread_fields.end(), fields.begin(),
                   [&](int64_t field) { return int32_t(total < 0 ? -field : field); });
    kind::put(fields, word, interval);
    return 0;
}

} // namespace embedded
