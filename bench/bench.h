// What the benchmarks share: names, batches, and the pool that they are taken from.
#pragma once

#include <bcast/bcast.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace bench {

// Rows of a pool. Batches are walked in turn, so that data comes from the second-level cache and the branch predictor
// cannot learn where the nulls are.
constexpr uint32_t pool_rows = 65536;

// Half of the rows in ascending order, in runs of 64 adjacent ones or in any order; as many rows drawn at random, some
// more than once; or all rows, the last one first.
enum class selection { none, sorted_half, clustered_half, random_half, random_repeats, reversed };
const char *name_of(selection sel);

// One series of measurements. `what` is a cast's name; `variant` is "cast" or what it is measured beside.
struct series {
    std::string what;
    uint32_t batch_rows;
    int null_percent;
    selection sel;
    bool unfit_nulls; // null slots hold values that the cast would refuse
    // A point of a curve, "kind:x": "batch:16" (rows), "text:319" (bytes), "nulls:30" (%), "selection:sorted"; or
    // empty.
    std::string growth = {};

    std::string name(const char *variant) const;
    // Rows that one batch gives.
    uint32_t rows() const { return sel == selection::none || sel == selection::reversed ? batch_rows : batch_rows / 2; }
    uint32_t batches() const { return pool_rows / batch_rows; }
};

// All series of a cast: batches of 4096 and 65535 rows, 0, 10 and 50 % nulls, each selection; the same without
// selections.
std::vector<series> all_series(const std::string &what, bool unfit_nulls);
std::vector<series> dense_series(const std::string &what);

// Flags of a pool with that share of nulls, and a selection for each batch.
std::vector<uint8_t> make_flags(int null_percent);
std::vector<uint16_t> make_selection(const series &s);

// Registers a variant of a series. `make` builds its pool and gives the pass over it: every batch once, or so many
// times.
using pass = std::function<void()>;
void add(const series &s, const char *variant, std::function<pass()> make, uint32_t times = 1);

// All that was added, by the benchmark's name.
std::map<std::string, series> &all_added();

// The source values of a cast as text, by the cast's name, for an engine that is measured beside it. The first
// offer counts.
using text_values = std::function<std::vector<std::string>()>;
void offer_values(const std::string &what, text_values make);
const text_values *offered_values(const std::string &what); // null: there are none

// A column over arrays of the benchmark's own.
struct column {
    bdta3_col_data data{};
    bdta3_col col{};

    column(void *values, uint8_t *flags, const uint16_t *sel, bool no_null)
    {
        data.values = values;
        data.flags = flags;
        col.no_null = no_null;
        col.sel = sel;
        col.data = &data;
    }
};

} // namespace bench
