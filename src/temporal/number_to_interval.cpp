// Numbers into intervals. A number can fill one field, the one that the shape of the target names: a shape of several
// fields refuses it.

#include "src/frame/alias.h"
#include "src/frame/cut.h"
#include "src/frame/decimal_element.h"
#include "src/frame/interval_element.h"
#include "src/frame/row_walk.h"
#include "src/frame/scratch.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/decimal.h>
#include <services/interval.h>
#include <services/numeric.h>

namespace {

// The number of a row, by source: into `number`, or a negative code.

int32_t take(int32_t from, int32_t &number)
{
    number = from;
    return 0;
}

int32_t take(int64_t from, int32_t &number)
{
    if (ntype_is_lint_overflow(from) == ERR_OVERFLOW)
        return ERR_OVERFLOW;
    number = int32_t(from);
    return 0;
}

int32_t take_whole(const xdec &from, int32_t &number)
{
    int64_t whole;
    const int32_t status = xdec_get_int64(&from, &whole);
    return status < 0 ? status : take(whole, number);
}

int32_t take(const xdec &from, int32_t &number)
{
    scratch<xdec> copy;
    store_decimal(from, &copy);
    return take_whole(copy, number);
}

// As a double, of which seconds keep the fraction. Whether it fits is asked of the integer all the same.
int32_t take(const xdec &from, double &number)
{
    scratch<xdec> copy;
    store_decimal(from, &copy);
    int32_t status;
    number = xdec_get_double(&copy, &status);
    if (status < 0)
        return status;
    int32_t fits;
    return take_whole(copy, fits);
}

// The field of a shape gets the number; ERR_INTERVAL_FIELD if there is no single field for it.

int32_t put(int32_t number, ivym &interval, uint16_t iv_word)
{
    switch (bcast_iv_shape(iv_word)) {
    case IV_YEAR:
        interval.year = number;
        return 0;
    case IV_MONTH:
        interval.month = number;
        return 0;
    default:
        return ERR_INTERVAL_FIELD;
    }
}

void put_seconds(int32_t number, ivdt &interval)
{
    interval.second = number;
    interval.fraction = 0;
}

// By the count of millionths in 32 bits: above some thousands of seconds it wraps, and the service that validates has
// to deal with what comes of it.
void put_seconds(double number, ivdt &interval)
{
    constexpr int32_t millionths = 1000000;
    const auto count = int32_t(cut_to<int64_t>(number * millionths));
    interval.second = count / millionths;
    interval.fraction = count % millionths;
}

int32_t whole(int32_t number) { return number; }
int32_t whole(double number) { return cut_to<int32_t>(number); }

template <class Number> int32_t put(Number number, ivdt &interval, uint16_t iv_word)
{
    switch (bcast_iv_shape(iv_word)) {
    case IV_DAY:
        interval.day = whole(number);
        return 0;
    case IV_HOUR:
        interval.hour = whole(number);
        return 0;
    case IV_MINUTE:
        interval.minute = whole(number);
        return 0;
    case IV_SECOND:
        put_seconds(number, interval);
        return 0;
    default:
        return ERR_INTERVAL_FIELD;
    }
}

void clear(ivym &interval) { vqdt_clear_interval_ym_info(&interval); }
void clear(ivdt &interval) { vqdt_clear_interval_dt_info(&interval); }
int32_t validate(ivym &interval, uint16_t iv_word) { return interval_ym_validate(&interval, iv_word); }
int32_t validate(ivdt &interval, uint16_t iv_word) { return interval_dt_validate(&interval, iv_word); }

template <class Element, class Number, class Interval>
int32_t to_interval(const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t iv_word)
{
    const Element *from = elements<Element>(src);
    Interval *to = elements<Interval>(dst);

    return walk_then_copy_no_null(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        Number number;
        int32_t status = take(from[r], number);
        if (status < 0)
            return status;
        scratch<Interval> interval;
        clear(interval);
        interval.iv_word = iv_word;
        status = put(number, interval, iv_word);
        if (status < 0)
            return status;
        status = validate(interval, iv_word);
        if (status >= 0)
            store_interval(interval, to + i);
        return status;
    });
}

} // namespace

int32_t bcast_int_to_ivym(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t, uint16_t,
                          uint16_t, uint16_t dst_scale)
{
    return to_interval<int32_t, int32_t, ivym>(src, dst, rows, dst_scale);
}
bcast_scaled_fn bcast_smallint_to_ivym ALIAS_OF(bcast_int_to_ivym);
bcast_scaled_fn bcast_tinyint_to_ivym ALIAS_OF(bcast_int_to_ivym);

int32_t bcast_int64_to_ivym(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t, uint16_t,
                            uint16_t, uint16_t dst_scale)
{
    return to_interval<int64_t, int32_t, ivym>(src, dst, rows, dst_scale);
}

int32_t bcast_dec_to_ivym(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t, uint16_t,
                          uint16_t, uint16_t dst_scale)
{
    return to_interval<xdec, int32_t, ivym>(src, dst, rows, dst_scale);
}

int32_t bcast_int_to_ivdt(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t, uint16_t,
                          uint16_t, uint16_t dst_scale)
{
    return to_interval<int32_t, int32_t, ivdt>(src, dst, rows, dst_scale);
}
bcast_scaled_fn bcast_smallint_to_ivdt ALIAS_OF(bcast_int_to_ivdt);
bcast_scaled_fn bcast_tinyint_to_ivdt ALIAS_OF(bcast_int_to_ivdt);

int32_t bcast_int64_to_ivdt(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t, uint16_t,
                            uint16_t, uint16_t dst_scale)
{
    return to_interval<int64_t, int32_t, ivdt>(src, dst, rows, dst_scale);
}

int32_t bcast_dec_to_ivdt(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t, uint16_t,
                          uint16_t, uint16_t dst_scale)
{
    return to_interval<xdec, double, ivdt>(src, dst, rows, dst_scale);
}
