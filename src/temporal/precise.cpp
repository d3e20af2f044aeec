// Between the types with a time of day, rounded to the scale of the target. Four bodies, by what becomes of the zone;
// the casts name a body and the type of its target, and the type of the source decides nothing.
//
//     body          zone
//     dtz_to_dt     dropped: the value is reset to a type that has none
//     dtz_to_tz     kept, and so is all else: no reset
//     dt_to_tz      the current one is set, the digits stay, and the value is reset to a type that has a zone
//     dtz_to_tltz   the value is moved to the current one, also from TZ_NO_SHIFT

#include "src/frame/block_walk.h"
#include "src/frame/current_zone.h"
#include "src/frame/row_walk.h"
#include "src/temporal/copy_run.h"

#include <bcast/casts.h>
#include <services/temporal.h>

namespace {

// A failure is noted, but the result of the cast is that of the last service that rounded or shifted, whatever came
// before. The counter may be absent here.
struct note {
    int32_t *err_codes;
    uint16_t *err_count;

    bool captured(uint32_t i, int32_t code)
    {
        if (!err_codes)
            return false;
        err_codes[i] = code;
        if (err_count)
            ++*err_count;
        return true;
    }
    static int32_t status() { return 0; }
};

// Rounds where the target keeps fewer digits than the source has, and is allowed to.
struct rounding {
    bool wanted;
    uint16_t digits;

    rounding(bool allowed, uint16_t src_scale, uint16_t dst_scale)
        : wanted(allowed && dst_scale < src_scale), digits(dst_scale)
    {}

    // The value into its target element. The service writes it there, so that a row that fails has what it left.
    int32_t put(const vqtime *from, vqtime *to, int32_t &status) const
    {
        if (!wanted) {
            *to = *from;
            return 0;
        }
        return status = vqtime_round_by_prec(from, digits, to);
    }
};

// `convert(from, to, status)` makes an element and leaves in status what the services that count here gave. A negative
// result ends the row, whatever steps are left.
template <class Convert>
int32_t convert_rows(const bdta3_col *src, bdta3_col *dst, uint16_t rows, note failures, Convert convert)
{
    const vqtime *from = elements<vqtime>(src);
    vqtime *to = elements<vqtime>(dst);
    int32_t status = 0;

    const walk_outcome walk = walk_filling_flags(
        src, dst, rows, failures, [&](uint32_t r, uint32_t i) { return convert(from + r, to + i, status); });
    copy_no_null_behind(src, dst, walk);
    return status;
}

int32_t dtz_to_dt(const bdta3_col *src, bdta3_col *dst, uint16_t rows, rounding round, note failures, int32_t type)
{
    return convert_rows(src, dst, rows, failures, [&](const vqtime *from, vqtime *to, int32_t &status) {
        const int32_t code = round.put(from, to, status);
        if (code >= 0)
            vqtime_reset(to, type);
        return code;
    });
}

int32_t dtz_to_tz(const bdta3_col *src, bdta3_col *dst, uint16_t rows, rounding round, note failures)
{
    if (!round.wanted)
        return src->no_null ? walk_all_blocks<copy_values, flags_are::filled>(src, dst, rows)
                            : walk_blocks<copy_values>(src, dst, rows);
    return convert_rows(src, dst, rows, failures,
                        [&](const vqtime *from, vqtime *to, int32_t &status) { return round.put(from, to, status); });
}

// The zone goes in ahead of the reset, which keeps it.
int32_t dt_to_tz(const void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows, rounding round, note failures,
                 int32_t type)
{
    const auto zone = uint16_t(current_zone(heap));
    return convert_rows(src, dst, rows, failures, [&](const vqtime *from, vqtime *to, int32_t &status) {
        const int32_t code = round.put(from, to, status);
        if (code >= 0) {
            vqtime_set_tz(to, zone);
            vqtime_reset(to, type);
        }
        return code;
    });
}

// Rounded behind the shift, so that a carry goes through to the date as it reads in the new zone.
int32_t dtz_to_tltz(const void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows, rounding round,
                    note failures)
{
    const int16_t zone = current_zone(heap);
    return convert_rows(src, dst, rows, failures, [&](const vqtime *from, vqtime *to, int32_t &status) {
        status = vqtime_add_by_fmt(from, FIELD_MINUTE, zone - int16_t(vqtime_get_tz(from)), to);
        if (status >= 0 && round.wanted)
            status = vqtime_round_by_prec(to, round.digits, to);
        return status;
    });
}

} // namespace

// ---- The bodies

int32_t bcast_precise_dtz_to_dt_inner(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                                      uint16_t src_scale, uint16_t, uint16_t dst_scale, int32_t round_flag,
                                      int32_t *err_codes, uint16_t *err_count, uint8_t type_code)
{
    return dtz_to_dt(src, dst, rows, {round_flag != 0, src_scale, dst_scale}, {err_codes, err_count}, type_code);
}

int32_t bcast_precise_dtz_to_tz_inner(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                                      uint16_t src_scale, uint16_t, uint16_t dst_scale, int32_t round_flag,
                                      int32_t *err_codes, uint16_t *err_count)
{
    return dtz_to_tz(src, dst, rows, {round_flag != 0, src_scale, dst_scale}, {err_codes, err_count});
}

int32_t bcast_precise_dt_to_tz_inner(void *, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                                     uint16_t src_scale, uint16_t, uint16_t dst_scale, int32_t round_flag,
                                     int32_t *err_codes, uint16_t *err_count, uint8_t type_code)
{
    return dt_to_tz(heap, src, dst, rows, {round_flag != 0, src_scale, dst_scale}, {err_codes, err_count}, type_code);
}

int32_t bcast_precise_dtz_to_tltz_inner(void *, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                        uint16_t, uint16_t src_scale, uint16_t, uint16_t dst_scale, int32_t round_flag,
                                        int32_t *err_codes, uint16_t *err_count)
{
    return dtz_to_tltz(heap, src, dst, rows, {round_flag != 0, src_scale, dst_scale}, {err_codes, err_count});
}

// ---- The casts, which always ask for rounding

int32_t bcast_precise_datetime_to_datetime(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                           uint16_t, uint16_t src_scale, uint16_t, uint16_t dst_scale,
                                           int32_t *err_codes, uint16_t *err_count)
{
    return dtz_to_dt(src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count}, TYPE_DATETIME);
}

int32_t bcast_precise_datetime_to_time(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                                       uint16_t src_scale, uint16_t, uint16_t dst_scale, int32_t *err_codes,
                                       uint16_t *err_count)
{
    return dtz_to_dt(src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count}, TYPE_TIME);
}

int32_t bcast_precise_time_to_datetime(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                                       uint16_t src_scale, uint16_t, uint16_t dst_scale, int32_t *err_codes,
                                       uint16_t *err_count)
{
    return dtz_to_dt(src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count}, TYPE_DATETIME);
}

int32_t bcast_precise_time_to_time(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                                   uint16_t src_scale, uint16_t, uint16_t dst_scale, int32_t *err_codes,
                                   uint16_t *err_count)
{
    return dtz_to_dt(src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count}, TYPE_TIME);
}

int32_t bcast_precise_datetime_tz_to_datetime(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                              uint16_t, uint16_t src_scale, uint16_t, uint16_t dst_scale,
                                              int32_t *err_codes, uint16_t *err_count)
{
    return dtz_to_dt(src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count}, TYPE_DATETIME);
}

int32_t bcast_precise_datetime_tz_to_time(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                                          uint16_t src_scale, uint16_t, uint16_t dst_scale, int32_t *err_codes,
                                          uint16_t *err_count)
{
    return dtz_to_dt(src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count}, TYPE_TIME);
}

int32_t bcast_precise_time_tz_to_datetime(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                                          uint16_t src_scale, uint16_t, uint16_t dst_scale, int32_t *err_codes,
                                          uint16_t *err_count)
{
    return dtz_to_dt(src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count}, TYPE_DATETIME);
}

int32_t bcast_precise_time_tz_to_time(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                                      uint16_t src_scale, uint16_t, uint16_t dst_scale, int32_t *err_codes,
                                      uint16_t *err_count)
{
    return dtz_to_dt(src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count}, TYPE_TIME);
}

int32_t bcast_precise_datetime_tz_to_datetime_tz(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                                 uint16_t, uint16_t src_scale, uint16_t, uint16_t dst_scale,
                                                 int32_t *err_codes, uint16_t *err_count)
{
    return dtz_to_tz(src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count});
}

int32_t bcast_precise_time_tz_to_time_tz(void *, void *, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                                         uint16_t src_scale, uint16_t, uint16_t dst_scale, int32_t *err_codes,
                                         uint16_t *err_count)
{
    return dtz_to_tz(src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count});
}

int32_t bcast_precise_datetime_to_datetime_tz(void *, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                              uint16_t, uint16_t src_scale, uint16_t, uint16_t dst_scale,
                                              int32_t *err_codes, uint16_t *err_count)
{
    return dt_to_tz(heap, src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count}, TYPE_DATETIME_TZ);
}

int32_t bcast_precise_datetime_to_time_tz(void *, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                          uint16_t, uint16_t src_scale, uint16_t, uint16_t dst_scale,
                                          int32_t *err_codes, uint16_t *err_count)
{
    return dt_to_tz(heap, src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count}, TYPE_TIME_TZ);
}

int32_t bcast_precise_time_to_datetime_tz(void *, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                          uint16_t, uint16_t src_scale, uint16_t, uint16_t dst_scale,
                                          int32_t *err_codes, uint16_t *err_count)
{
    return dt_to_tz(heap, src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count}, TYPE_DATETIME_TZ);
}

int32_t bcast_precise_time_to_time_tz(void *, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                                      uint16_t src_scale, uint16_t, uint16_t dst_scale, int32_t *err_codes,
                                      uint16_t *err_count)
{
    return dt_to_tz(heap, src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count}, TYPE_TIME_TZ);
}

int32_t bcast_precise_datetime_tz_to_tltz(void *, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                          uint16_t, uint16_t src_scale, uint16_t, uint16_t dst_scale,
                                          int32_t *err_codes, uint16_t *err_count)
{
    return dtz_to_tltz(heap, src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count});
}

int32_t bcast_precise_time_tz_to_tltz(void *, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows, uint16_t,
                                      uint16_t src_scale, uint16_t, uint16_t dst_scale, int32_t *err_codes,
                                      uint16_t *err_count)
{
    return dtz_to_tltz(heap, src, dst, rows, {true, src_scale, dst_scale}, {err_codes, err_count});
}
