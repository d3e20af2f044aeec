// Casts between fixed-width elements that call no service, beside memcpy of the same bytes and the plain loop.
#pragma once

#include "bench/as_text.h"
#include "bench/bench.h"

#include <algorithm>
#include <memory>

namespace bench {

// The cast as one writes it first: row by row. `convert(from, to)` is false for a value that does not fit.
template <class From, class To, class Convert>
int32_t plain_loop(const bdta3_col *src, bdta3_col *dst, uint16_t rows, Convert convert)
{
    const uint16_t *sel = src->sel;
    const uint8_t *src_flags = src->data->flags;
    const From *from = static_cast<const From *>(src->data->values);
    uint8_t *dst_flags = dst->data->flags;
    To *to = static_cast<To *>(dst->data->values);
    for (uint32_t i = 0; i < rows; i++) {
        const uint32_t r = sel ? sel[i] : i;
        dst_flags[i] = src_flags[r];
        if (src_flags[r] == 0)
            continue;
        if (!convert(from[r], to[i]))
            return ERR_OVERFLOW;
    }
    dst->no_null = src->no_null;
    return 0;
}

// Between -fits and fits, for fits up to 128.
template <class T> T small_value(uint64_t random, T fits)
{
    const int value = int(random % 256) - 128;
    if constexpr (std::is_integral_v<T>)
        return T(value) % fits;
    return T(value) * (fits / 128);
}

// The arrays of one series: pool_rows source rows, as many target rows, and a column over each batch.
template <class From, class To> struct pool {
    series s;
    std::vector<From> from;
    std::vector<uint8_t> from_flags;
    std::vector<uint16_t> sel;
    std::vector<To> to;
    std::vector<uint8_t> to_flags;
    std::vector<uint8_t> copy_from, copy_to; // for memcpy

    pool(const series &which, From fits, From unfit)
        : s(which), from(pool_rows), from_flags(make_flags(s.null_percent)), sel(make_selection(s)), to(pool_rows),
          to_flags(pool_rows), copy_from(s.batches() * bytes_moved(), 1), copy_to(copy_from.size(), 2)
    {
        std::mt19937_64 random(3);
        for (uint32_t r = 0; r < pool_rows; r++)
            from[r] = !from_flags[r] && s.unfit_nulls ? unfit : small_value(random(), fits);
    }

    size_t bytes_moved() const
    {
        const size_t read = sizeof(From) + 1 + (s.sel == selection::none ? 0 : 2), written = sizeof(To) + 1;
        return s.rows() * (read + written) / 2;
    }

    template <class Cast> void cast_all(Cast cast)
    {
        const uint32_t batches = s.batches(), rows = s.rows();
        column src(from.data(), from_flags.data(), sel.empty() ? nullptr : sel.data(), s.null_percent == 0);
        column dst(to.data(), to_flags.data(), nullptr, false);
        for (uint32_t batch = 0; batch < batches; batch++) {
            if (cast(&src.col, &dst.col, uint16_t(rows)) != 0)
                std::abort();
            src.data.values = static_cast<From *>(src.data.values) + s.batch_rows;
            src.data.flags += s.batch_rows;
            if (src.col.sel)
                src.col.sel += rows;
            dst.data.values = static_cast<To *>(dst.data.values) + s.batch_rows;
            dst.data.flags += s.batch_rows;
        }
        benchmark::ClobberMemory();
    }

    void copy_all()
    {
        const size_t size = bytes_moved();
        for (uint32_t batch = 0; batch < s.batches(); batch++)
            std::memcpy(&copy_to[batch * size], &copy_from[batch * size], size);
        benchmark::ClobberMemory();
    }
};

// `fits`: source values are below it in magnitude; `unfit`: one that the cast refuses, or 0 if it refuses none. `plain`
// is the same cast as one writes it first.
template <class From, class To, class Plain>
void add_beside_plain(const char *what, bcast_plain_fn *cast, From fits, From unfit, Plain plain)
{
    offer_values(what, [=] { return as_texts(pool<From, To>(dense_series(what)[0], fits, unfit).from); });
    for (const series &s : all_series(what, unfit != 0)) {
        const auto make = [=] { return std::make_shared<pool<From, To>>(s, fits, unfit); };
        add(s, "cast", [=] {
            return [p = make(), cast] {
                p->cast_all([cast](const bdta3_col *src, bdta3_col *dst, uint16_t rows) {
                    return cast(nullptr, nullptr, src, dst, rows);
                });
            };
        });
        add(s, "memcpy", [=] { return [p = make()] { p->copy_all(); }; });
        add(s, "plain", [=] { return [p = make(), plain] { p->cast_all(plain); }; });
    }
}

template <class From, class To, class Convert>
void add_fixed_width(const char *what, bcast_plain_fn *cast, From fits, From unfit, Convert convert)
{
    add_beside_plain<From, To>(what, cast, fits, unfit, [convert](const bdta3_col *src, bdta3_col *dst, uint16_t rows) {
        return plain_loop<From, To>(src, dst, rows, convert);
    });
}

} // namespace bench
