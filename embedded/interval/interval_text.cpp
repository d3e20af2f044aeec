// Text of intervals:
//
//     blanks  [+ or -]  blanks  fields  blanks
//
// where the fields are those of the shape, as in
//
//     3-11           year to month
//     5 12:30:07.25  day to second
//
// A lone number is the leading field. A field that does not lead has one or two digits and is below its limit; between
// day and hour stands at least one blank, and between others nothing else than the separator. A second may have a
// fraction of any length, also none behind the point.
#include "embedded/base/characters.h"
#include "embedded/interval/interval.h"

#include <charconv>
#include <cstring>

namespace embedded {

namespace {

const char *skip_blanks(const char *at)
{
    while (is_blank(*at))
        at++;
    return at;
}

// Digits at `at`, which is moved behind them; a number beyond `most` counts as that. False if there are none.
bool take_number(const char *&at, int64_t most, int64_t *number)
{
    if (!is_digit(*at))
        return false;
    for (*number = 0; is_digit(*at); at++)
        *number = std::min(*number * 10 + (*at - '0'), most);
    return true;
}

// The fraction of a second in microseconds, rounded to so many digits with ties up; 1000000 if it rounds to a second.
int64_t take_fraction(const char *&at, uint32_t digits)
{
    int64_t fraction = 0, unit = 1000000;
    if (*at != '.')
        return 0;
    at++;
    for (uint32_t i = 0; is_digit(*at); i++, at++) {
        if (i < digits) {
            unit /= 10;
            fraction += (*at - '0') * unit;
        } else if (i == digits && *at >= '5') {
            fraction += unit;
        }
    }
    return fraction;
}

// Whether the separator behind field i comes next, which is then taken.
template <class Interval> bool take_separator(const char *&at, size_t i)
{
    const char separator = interval_kind<Interval>::separators[i];
    if (separator == ' ') {
        const char *behind = skip_blanks(at);
        if (behind == at || *behind == '\0')
            return false;
        at = behind;
        return true;
    }
    if (*at != separator)
        return false;
    at++;
    return true;
}

template <class Interval> int32_t from_char(const char *text, Interval *interval, uint16_t word)
{
    using kind = interval_kind<Interval>;
    constexpr int64_t beyond_all = 10000000000; // has more digits than any precision allows

    const auto shape = shape_of<Interval>(word);
    if (!shape)
        return ERR_INTERVAL_FIELD;
    const char *at = skip_blanks(text);
    const bool negative = *at == '-';
    if (negative || *at == '+')
        at = skip_blanks(at + 1);

    int64_t number;
    if (!take_number(at, beyond_all, &number))
        return ERR_BAD_INTERVAL;
    int128 total = int128{number} * kind::units[shape->first];
    size_t field = shape->first;
    if (field < shape->last && take_separator<Interval>(at, field)) {
        while (field < shape->last) {
            field++;
            const char *first = at;
            if (!take_number(at, beyond_all, &number) || at - first > 2 || number >= kind::limits[field])
                return ERR_BAD_INTERVAL;
            total += int128{number} * kind::units[field];
            if (field < shape->last && !take_separator<Interval>(at, field))
                return ERR_BAD_INTERVAL;
        }
    }
    if (shape->has_fraction() && field == shape->last)
        total += take_fraction(at, shape->fraction_digits);
    if (*skip_blanks(at) != '\0')
        return ERR_BAD_INTERVAL;
    return make_interval(negative ? -total : total, *shape, word, interval);
}

char *put_two_digits(char *to, int64_t number)
{
    *to++ = char('0' + number / 10);
    *to++ = char('0' + number % 10);
    return to;
}

// Without zeros at its end, and nothing at all where it is 0.
char *put_fraction(char *to, int64_t microseconds)
{
    if (microseconds == 0)
        return to;
    *to++ = '.';
    for (int64_t unit = 100000; microseconds != 0; unit /= 10) {
        *to++ = char('0' + microseconds / unit);
        microseconds %= unit;
    }
    return to;
}

// The length of the text, or 0 for an interval that has more than its shape can show.
template <class Interval> int32_t to_char(const Interval &interval, char *text, uint16_t word)
{
    using kind = interval_kind<Interval>;
    const auto shape = shape_of<Interval>(word);
    if (!shape || has_more_than(*shape, interval, false))
        return 0;
    const int128 total = total_of(interval);
    const auto fields = spread<Interval>(total, *shape);
    char *to = text;
    if (total < 0)
        *to++ = '-';
    to = std::to_chars(to, to + 20, fields[shape->first]).ptr;
    for (size_t i = shape->first + 1; i <= shape->last; i++) {
        *to++ = kind::separators[i - 1];
        if (kind::separators[0] == '-') // months, which no custom writes with a zero in front
            to = std::to_chars(to, to + 2, fields[i]).ptr;
        else
            to = put_two_digits(to, fields[i]);
    }
    if (shape->has_fraction())
        to = put_fraction(to, fields.back());
    *to = '\0';
    return int32_t(to - text);
}

} // namespace

} // namespace embedded

int32_t vq_interval_ym_from_char(void *, const char *text, ivym *interval, uint16_t word)
{
    return embedded::from_char(text, interval, word);
}

int32_t vq_interval_dt_from_char(void *, const char *text, ivdt *interval, uint16_t word)
{
    return embedded::from_char(text, interval, word);
}

int32_t vq_interval_ym_to_char(const ivym *interval, char *text, uint16_t word)
{
    return embedded::to_char(*interval, text, word);
}

int32_t vq_interval_dt_to_char(const ivdt *interval, char *text, uint16_t word)
{
    return embedded::to_char(*interval, text, word);
}
