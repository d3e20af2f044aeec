// Intervals checked against a shape, and made anew in another one.
#include "embedded/interval/interval.h"

namespace embedded {

namespace {

// A field that the shape has no place for refuses the interval; what a field has too much goes to the one before.
template <class Interval> int32_t validate(Interval *interval, uint16_t word)
{
    const auto shape = shape_of<Interval>(word);
    if (!shape || has_more_than(*shape, *interval, true))
        return ERR_INTERVAL_FIELD;
    return make_interval(total_of(*interval), *shape, interval->iv_word, interval);
}

// To a multiple of the unit, with ties away from zero; or toward zero.
int128 round_to(int128 total, int64_t unit) { return (total + (total < 0 ? -unit : unit) / 2) / unit * unit; }
int128 cut_to(int128 total, int64_t unit) { return total / unit * unit; }

template <class Interval> int32_t reshape(Interval *result, const Interval &from)
{
    using kind = interval_kind<Interval>;
    const auto shape = shape_of<Interval>(result->iv_word);
    if (!shape)
        return ERR_INTERVAL_FIELD;
    int128 total = total_of(from);
    if (shape->has_fraction()) {
        int64_t unit = kind::units.back();
        for (uint32_t digits = shape->fraction_digits; digits < 6; digits++)
            unit *= 10;
        total = round_to(total, unit);
    } else {
        total = cut_to(total, kind::units[shape->last]);
    }
    return make_interval(total, *shape, result->iv_word, result);
}

} // namespace

} // namespace embedded

void vqdt_clear_interval_ym_info(ivym *interval) { *interval = {}; }
void vqdt_clear_interval_dt_info(ivdt *interval) { *interval = {}; }

int32_t interval_ym_validate(ivym *interval, uint16_t word) { return embedded::validate(interval, word); }
int32_t interval_dt_validate(ivdt *interval, uint16_t word) { return embedded::validate(interval, word); }

int32_t cast_interval_ym(ivym *result, const ivym *from, int32_t) { return embedded::reshape(result, *from); }
int32_t cast_interval_dt(ivdt *result, const ivdt *from, int32_t) { return embedded::reshape(result, *from); }
