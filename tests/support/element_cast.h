// Casts between fixed-width elements whose rows go by one of three walks, told by samples: what a source element
// becomes.
#pragma once

#include "tests/support/batch.h"

#include <bcast/bcast.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace bcast::test {

enum class row_walk {
    by_flag,             // flags copied; rows with one are converted
    by_flag_or_all,      // the same, but a set no_null of the source converts every row
    to_boolean,          // flags 1; null rows unknown, a set no_null hides the flags
    flags_not_looked_at, // flags 1; every row converted
};

enum class predicate { none, double_overflow };

struct sample {
    std::string from;
    std::string to;
};

struct element_cast {
    const char *name;
    bcast_plain_fn *cast;
    row_walk walk;
    std::vector<sample> samples; // all of the same widths
    predicate asked = predicate::none;
    bool reads_values = true;

    size_t from_bytes() const { return samples.front().from.size(); }
    size_t to_bytes() const { return samples.front().to.size(); }
    const sample &sample_of(uint32_t row) const { return samples[row % samples.size()]; }
    bool to_boolean() const { return walk == row_walk::to_boolean || walk == row_walk::flags_not_looked_at; }
};

void PrintTo(const element_cast &c, std::ostream *out);

// What the cast is to do with rows first to last - 1, which hold their samples, none of them refused.
void expect_rows(const element_cast &c, const source_column &source, const setup &how, uint32_t first, uint32_t last,
                 target_image &expected);

// Everything that can be told of a cast that converts its samples without failure.
void expect_conversions(const element_cast &c);

// The largest batch, and rows at 16 bits.
void expect_all_row_counts(const element_cast &c);

// A cast that asks a predicate: stops with ERR_OVERFLOW at the row refused, whatever the predicate's own code.
void expect_stops_by_predicate(const element_cast &c);

} // namespace bcast::test
