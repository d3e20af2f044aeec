// Casts that call the embedded services for each row, beside the bare calls of those services on the present rows in
// the same order.
#pragma once

#include "bench/as_text.h"
#include "bench/bench.h"

#include <bcast/embedded.h>
#include <services/column.h>

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
// length. They stand one behind the other, each with a NUL behind it, as in a column.
template <class Write> source<bdta3_str> texts(size_t room, Write write)
{
    source<bdta3_str> made = {std::vector<bdta3_str>(pool_rows), std::vector<char>(pool_rows * (room + 1))};
    char *text = made.bytes.data();
    for (uint32_t r = 0; r < pool_rows; r++) {
        const auto len = int32_t(write(r, text));
        made.values[r] = {len, 0, text};
        text[len] = '\0';
        text += len + 1;
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

// What a cast is called with, and the bare calls in its place.
struct batch {
    void *heap;
    const bdta3_col *src;
    bdta3_col *dst;
    uint16_t rows;
    int32_t *err_codes;
    uint16_t *err_count;
};

template <class Element> Element *target_elements(const batch &b)
{
    return static_cast<Element *>(b.dst->data->values);
}

// Calls `call(element, output row)` for the present rows.
template <class Element, class Call> void each_present(const batch &b, Call call)
{
    const auto *values = static_cast<const Element *>(b.src->data->values);
    const uint8_t *flags = b.src->data->flags;
    const uint32_t rows = b.rows;
    const auto each_row = [&](auto source_row) {
        for (uint32_t i = 0; i < rows; i++)
            if (const uint32_t r = source_row(i); flags[r]) [[likely]]
                call(values[r], int32_t(i));
    };
    if (const uint16_t *sel = b.src->sel)
        each_row([sel](uint32_t i) { return uint32_t(sel[i]); });
    else
        each_row([](uint32_t i) { return i; });
}

// Apart from the loop over the batches, as a cast is: what that loop keeps in registers would else be moved to the
// stack in this one.
template <class Run> [[gnu::noinline]] void run_batch(const Run &run, const batch &b) { run(b); }

// Where the stack starts for a pool's batches: a buffer on it costs several nanoseconds a row where what is stored and
// read back at once lies across two pages, and one or two across two cache lines. Each repetition has a place of its
// own, so that the quickest one is not a matter of luck.
inline size_t next_stack_shift()
{
    static std::mt19937 random(24);
    return random() % 256 * 16;
}

// The target is emptied by bcast_column_clear, which leaves its arrays and their room: to make room for each batch
// would zero them each time, and that is no part of a cast.
template <class Element> struct service_pool {
    series s;
    source<Element> from;
    std::vector<uint8_t> flags;
    std::vector<uint16_t> sel;
    bcast_pool *heap = bcast_pool_new();
    bcast_column *target;
    std::vector<int32_t> err_codes;
    uint16_t err_count = 0;
    size_t stack_shift = next_stack_shift();

    service_pool(const series &which, bcast_type target_type, source<Element> made)
        : s(which), from(std::move(made)), flags(make_flags(s.null_percent)), sel(make_selection(s)),
          target(bcast_column_new(target_type)), err_codes(pool_rows)
    {
        bcast_column_make_room(target, s.rows());
    }
    ~service_pool()
    {
        bcast_column_free(target);
        bcast_pool_free(heap);
    }
    service_pool(const service_pool &) = delete;
    service_pool &operator=(const service_pool &) = delete;

    // Hands each batch to `run`, with an emptied target; the heap is emptied once.
    template <class Run> void each_batch(Run run)
    {
        benchmark::DoNotOptimize(__builtin_alloca(stack_shift));
        bcast_pool_reset(heap);
        const uint32_t batches = s.batches(), rows = s.rows();
        column src(from.values.data(), flags.data(), sel.empty() ? nullptr : sel.data(), s.null_percent == 0);
        const batch b = {heap, &src.col, bcast_column_vector(target), uint16_t(rows), err_codes.data(), &err_count};
        for (uint32_t i = 0; i < batches; i++) {
            bcast_column_clear(target);
            run_batch(run, b);
            src.data.values = static_cast<Element *>(src.data.values) + s.batch_rows;
            src.data.flags += s.batch_rows;
            if (src.col.sel)
                src.col.sel += rows;
        }
        benchmark::ClobberMemory();
    }
};

[[gnu::cold, gnu::noinline]] inline void give_up(int32_t status)
{
    std::fprintf(stderr, "a cast or service failed with %d\n", status);
    std::abort();
}

inline void must_succeed(int32_t status)
{
    if (status < 0)
        give_up(status);
}

// Casts by what they take: as one stops at the first row that fails, which no row may, or captures those that do.

inline auto stopping(bcast_plain_fn *cast)
{
    return [cast](const batch &b) { must_succeed(cast(nullptr, b.heap, b.src, b.dst, b.rows)); };
}

inline auto stopping(bcast_length_fn *cast, int32_t length)
{
    return [=](const batch &b) { must_succeed(cast(nullptr, b.heap, b.src, length, b.dst, b.rows)); };
}

inline auto stopping(bcast_capture_fn *cast)
{
    return [cast](const batch &b) { must_succeed(cast(nullptr, b.heap, b.src, b.dst, b.rows, nullptr, nullptr)); };
}

inline auto stopping(bcast_length_capture_fn *cast, int32_t length)
{
    return [=](const batch &b) { must_succeed(cast(nullptr, b.heap, b.src, length, b.dst, b.rows, nullptr, nullptr)); };
}

inline auto capturing(bcast_capture_fn *cast)
{
    return [cast](const batch &b) { cast(nullptr, b.heap, b.src, b.dst, b.rows, b.err_codes, b.err_count); };
}

inline auto capturing(bcast_length_capture_fn *cast, int32_t length)
{
    return [=](const batch &b) { cast(nullptr, b.heap, b.src, length, b.dst, b.rows, b.err_codes, b.err_count); };
}

// The services' results of a batch, or-ed: negative if one was. Whether one may be is known for each series.
enum class rows_that_fail { none, some };

inline void look_at(int32_t results, rows_that_fail expected)
{
    if (expected == rows_that_fail::none)
        must_succeed(results);
    benchmark::DoNotOptimize(results);
}

// The two steps that bare calls take into a text column: a large object in the working value, and a copy of it.
struct large_object {
    nstr working{};

    large_object() { working.outline = working.inline_bytes; }

    void store(const batch &b, int32_t row, const char *text, int32_t len)
    {
        working.first_word = 0;
        must_succeed(nblob_assign_const(nullptr, b.heap, &working, text, len));
        bdta3_col_assign_bin(nullptr, b.heap, b.dst, row, working.outline, int32_t(working.length));
    }
    void clear(const batch &b) { nstr_clear(nullptr, b.heap, &working); }
};

// Registers a variant of a series: `make` gives the source, `run(batch)` does one batch.
template <class Make, class Run>
void add_run(const series &s, const char *variant, bcast_type target_type, Make make, Run run)
{
    using element = typename decltype(decltype(make())::values)::value_type;
    if constexpr (requires(element value) { as_text(value); })
        if (s.growth.empty())
            offer_values(s.what, [make] {
                const auto made = make();
                return as_texts(made.values);
            });
    add(s, variant, [=] {
        return [p = std::make_shared<service_pool<element>>(s, target_type, make()), run] { p->each_batch(run); };
    });
}

// `bare(batch)` calls what the cast calls, for the same rows, and puts what it makes where the cast puts it.
template <class Make, class Cast, class Bare>
void add_beside_bare(const std::vector<series> &all, bcast_type target_type, Make make, Cast cast, Bare bare)
{
    for (const series &s : all) {
        add_run(s, "cast", target_type, make, cast);
        add_run(s, "bare", target_type, make, bare);
    }
}

template <class Make, class Cast, class Bare>
void add_beside_bare(const char *what, bcast_type target_type, Make make, Cast cast, Bare bare)
{
    add_beside_bare(dense_series(what), target_type, make, cast, bare);
}

// Its series with selections too.
template <class Make, class Cast, class Bare>
void add_selected_beside_bare(const char *what, bcast_type target_type, Make make, Cast cast, Bare bare)
{
    std::vector<series> all = all_series(what, false);
    std::erase_if(all, [](const series &s) { return s.sel != selection::none && s.batch_rows != 4096; });
    add_beside_bare(all, target_type, make, cast, bare);
}

} // namespace bench
