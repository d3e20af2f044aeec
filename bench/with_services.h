// Casts that call the embedded services for each row, beside the bare calls of those services on the present rows in
// the same order.
#pragma once

#include "bench/bench.h"

#include <bcast/embedded.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace bench {

// The rows of a pool. Text elements point into bytes.
template <class Element> struct source {
    std::vector<Element> values;
    std::vector<char> bytes;
};

// Makes a source of texts; `write(row, buffer)` writes the text of a row, of at most `room` bytes, and gives its
// length.
template <class Write> source<bdta3_str> texts(size_t room, Write write)
{
    source<bdta3_str> made = {std::vector<bdta3_str>(pool_rows), std::vector<char>(pool_rows * room)};
    for (uint32_t r = 0; r < pool_rows; r++) {
        char *text = &made.bytes[r * room];
        made.values[r] = {int32_t(write(r, text)), 0, text};
    }
    return made;
}

template <class Make> auto numbers(Make make)
{
    source<decltype(make(0))> made = {std::vector<decltype(make(0))>(pool_rows), {}};
    for (uint32_t r = 0; r < pool_rows; r++)
        made.values[r] = make(r);
    return made;
}

// What a cast is called with.
struct batch {
    void *heap;
    const bdta3_col *src;
    bdta3_col *dst;
    uint16_t rows;
    int32_t *err_codes;
    uint16_t *err_count;
};

// Where a bare call puts what it makes, in place of a cast.
struct bare_row {
    void *heap;
    bdta3_col *dst;
    int32_t row;
};

template <class Element> struct service_pool {
    series s;
    source<Element> from;
    std::vector<uint8_t> flags;
    bcast_pool *heap = bcast_pool_new();
    bcast_column *target;
    std::vector<int32_t> err_codes;
    uint16_t err_count = 0;

    service_pool(const series &which, bcast_type target_type, source<Element> made)
        : s(which), from(std::move(made)), flags(make_flags(s.null_percent)), target(bcast_column_new(target_type)),
          err_codes(pool_rows)
    {}
    ~service_pool()
    {
        bcast_column_free(target);
        bcast_pool_free(heap);
    }
    service_pool(const service_pool &) = delete;
    service_pool &operator=(const service_pool &) = delete;

    // Hands each batch to `cast`, with an emptied target; the heap is emptied once.
    template <class Cast> void each_batch(Cast cast)
    {
        bcast_pool_reset(heap);
        for (uint32_t i = 0; i < s.batches(); i++) {
            const size_t first = size_t(i) * s.batch_rows;
            column src(&from.values[first], &flags[first], nullptr, s.null_percent == 0);
            bcast_column_make_room(target, s.rows());
            cast(batch{heap, &src.col, bcast_column_vector(target), uint16_t(s.rows()), err_codes.data(), &err_count});
        }
        benchmark::ClobberMemory();
    }

    template <class Call> void bare_calls(Call call)
    {
        each_batch([&](const batch &b) {
            const auto *values = static_cast<const Element *>(b.src->data->values);
            for (uint32_t i = 0; i < b.rows; i++)
                if (b.src->data->flags[i])
                    call(values[i], bare_row{b.heap, b.dst, int32_t(i)});
        });
    }
};

inline void must_succeed(int32_t status)
{
    if (status < 0) {
        std::fprintf(stderr, "a cast or service failed with %d\n", status);
        std::abort();
    }
}

// `make` gives the source, `cast(batch)` runs the cast and says how it went, `bare(element, bare_row)` calls what the
// cast calls. In a series with bad rows both may fail.
template <class Make, class Cast, class Bare>
void add_beside_bare(const char *what, bcast_type target_type, Make make, Cast cast, Bare bare)
{
    using element = typename decltype(decltype(make())::values)::value_type;
    for (const series &s : dense_series(what)) {
        const auto pool = [=] { return std::make_shared<service_pool<element>>(s, target_type, make()); };
        add(s, "cast", [=] { return [p = pool(), cast] { p->each_batch(cast); }; });
        add(s, "bare", [=] { return [p = pool(), bare] { p->bare_calls(bare); }; });
    }
}

} // namespace bench
