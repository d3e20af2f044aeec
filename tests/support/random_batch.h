// Batches of every kind, told by a seed: row counts around those that vectors and blocks end at, selections, nulls.
#pragma once

#include "tests/support/batch.h"

#include <cstdint>
#include <random>
#include <string>

namespace bcast::test {

using random_bits = std::mt19937_64;

enum class picking { nothing, ascending, anywhere, one_row, runs };

struct batch_kind {
    uint32_t rows, column_rows, null_percent, failures;
    picking picked;
    int32_t no_null;
    guard_edge edge;
};

batch_kind random_kind(random_bits &random);
std::string describe(const batch_kind &kind);

// A column for such a batch, with its selection.
source_column random_source(random_bits &random, const batch_kind &kind, size_t stride);

uint8_t random_flag(random_bits &random, uint32_t null_percent);

} // namespace bcast::test
