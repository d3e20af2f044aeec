#include "tests/support/random_batch.h"

#include <algorithm>
#include <sstream>

namespace bcast::test {

namespace {

template <size_t n> uint32_t one_of(random_bits &random, const uint32_t (&choices)[n]) { return choices[random() % n]; }

uint32_t random_rows(random_bits &random)
{
    const uint32_t around[] = {0, 8, 16, 64, 1024, 2048, 3072};
    const uint32_t rows = one_of(random, around) + static_cast<uint32_t>(random() % 7);
    return random() % 3 == 0 ? static_cast<uint32_t>(random() % 2600) : rows < 3 ? rows : rows - 3;
}

std::vector<uint16_t> random_selection(random_bits &random, picking how, uint32_t rows, uint32_t column_rows)
{
    std::vector<uint16_t> sel(rows);
    uint32_t at = static_cast<uint32_t>(random() % column_rows), left_of_run = 0;
    for (uint16_t &row : sel) {
        if (how == picking::anywhere || (how == picking::runs && left_of_run == 0)) {
            at = static_cast<uint32_t>(random() % column_rows);
            left_of_run = 1 + static_cast<uint32_t>(random() % 300);
        } else if (how == picking::runs) {
            at = (at + 1) % column_rows;
            left_of_run--;
        }
        row = static_cast<uint16_t>(at);
    }
    if (how == picking::ascending) {
        for (uint16_t &row : sel)
            row = static_cast<uint16_t>(random() % column_rows);
        std::ranges::sort(sel);
    }
    return sel;
}

} // namespace

batch_kind random_kind(random_bits &random)
{
    const uint32_t null_percents[] = {0, 0, 1, 10, 50, 99, 100};
    const uint32_t failure_counts[] = {0, 0, 0, 1, 1, 2, 20};
    const int32_t no_nulls[] = {0, 0, 1, -3, 0x100};
    batch_kind kind{.rows = random_rows(random),
                    .column_rows = 0,
                    .null_percent = one_of(random, null_percents),
                    .failures = one_of(random, failure_counts),
                    .picked = static_cast<picking>(random() % 5),
                    .no_null = no_nulls[random() % std::size(no_nulls)],
                    .edge = random() % 2 == 0 ? guard_edge::start : guard_edge::end};
    kind.column_rows = kind.picked == picking::nothing ? kind.rows : 1 + static_cast<uint32_t>(random() % 4000);
    return kind;
}

std::string describe(const batch_kind &kind)
{
    std::ostringstream out;
    out << kind.rows << " rows, column of " << kind.column_rows << ", selection kind " << static_cast<int>(kind.picked)
        << ", " << kind.null_percent << " % null, " << kind.failures << " unfit rows, no_null " << kind.no_null;
    return out.str();
}

source_column random_source(random_bits &random, const batch_kind &kind, size_t stride)
{
    std::vector<uint16_t> sel;
    if (kind.picked != picking::nothing)
        sel = random_selection(random, kind.picked, kind.rows, kind.column_rows);
    return {stride, kind.column_rows, sel, kind.no_null, kind.edge};
}

uint8_t random_flag(random_bits &random, uint32_t null_percent)
{
    if (random() % 100 < null_percent)
        return 0;
    return random() % 4 == 0 ? static_cast<uint8_t>(1 + random() % 255) : 1;
}

} // namespace bcast::test
