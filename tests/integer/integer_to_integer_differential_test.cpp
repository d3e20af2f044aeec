// The casts among integers against a plain reading of their rule: one row at a time, no blocks, no vectors. Random
// batches of all kinds; a failure prints the seed of its batch.

#include "tests/support/batch.h"
#include "tests/support/call.h"

#include <algorithm>
#include <random>
#include <sstream>

namespace bcast::test {
namespace {

using random_bits = std::mt19937_64;

// ---- The rule, one row at a time --------------------------------------------

bool any_value(int64_t) { return true; }
bool equals_its_low_8_bits(int64_t value) { return value == static_cast<int8_t>(value); }
bool equals_its_low_16_bits(int64_t value) { return value == static_cast<int16_t>(value); }
bool is_in_16_bits(int64_t value) { return static_cast<uint64_t>(value) + 32768 <= 0xFFFF; }
bool is_in_32_bits(int64_t value) { return static_cast<uint64_t>(value) + 2147483648U <= 0xFFFFFFFF; }

int64_t whole(int64_t value) { return value; }
int64_t low_16_bits(int64_t value) { return static_cast<int16_t>(value); }

struct rule {
    const char *name;
    bcast_plain_fn *cast;
    size_t source_bytes;
    size_t target_bytes;
    bool (*fits)(int64_t value);
    int64_t (*moved)(int64_t value);
};

void PrintTo(const rule &r, std::ostream *out) { *out << r.name; }

#define NAMED(cast) #cast, cast
constexpr rule rules[] = {
    {NAMED(bcast_tinyint_to_tinyint), 4, 4, any_value, whole},
    {NAMED(bcast_tinyint_to_smallint), 4, 4, any_value, low_16_bits},
    {NAMED(bcast_tinyint_to_int), 4, 4, any_value, whole},
    {NAMED(bcast_tinyint_to_int64), 4, 8, any_value, whole},
    {NAMED(bcast_smallint_to_tinyint), 4, 4, equals_its_low_8_bits, whole},
    {NAMED(bcast_smallint_to_smallint), 4, 4, any_value, whole},
    {NAMED(bcast_smallint_to_int), 4, 4, any_value, whole},
    {NAMED(bcast_smallint_to_int64), 4, 8, any_value, whole},
    {NAMED(bcast_int_to_tinyint), 4, 4, equals_its_low_8_bits, whole},
    {NAMED(bcast_int_to_smallint), 4, 4, equals_its_low_16_bits, whole},
    {NAMED(bcast_int_to_int), 4, 4, any_value, whole},
    {NAMED(bcast_int_to_int64), 4, 8, any_value, whole},
    {NAMED(bcast_int64_to_tinyint), 8, 4, equals_its_low_8_bits, whole},
    {NAMED(bcast_int64_to_smallint), 8, 4, is_in_16_bits, whole},
    {NAMED(bcast_int64_to_int), 8, 4, is_in_32_bits, whole},
    {NAMED(bcast_int64_to_int64), 8, 8, any_value, whole},
};
#undef NAMED

int64_t element(const rule &r, const source_column &source, uint32_t row)
{
    return r.source_bytes == 8 ? source.element<int64_t>(row) : source.element<int32_t>(row);
}

void store(const rule &r, target_image &target, uint32_t row, int64_t value)
{
    if (r.target_bytes == 8)
        target.put(row, value);
    else
        target.put(row, static_cast<int32_t>(value));
}

int32_t cast_by_flags(const rule &r, const source_column &source, int32_t no_null, target_image &target)
{
    for (uint32_t row = 0; row < target.flags.size(); row++) {
        target.flags[row] = source.flag(row);
        if (target.flags[row] == 0)
            continue;
        const int64_t value = element(r, source, row);
        if (!r.fits(value))
            return ERR_OVERFLOW;
        store(r, target, row, r.moved(value));
    }
    target.no_null = no_null;
    return 0;
}

int32_t cast_int_to_int64(const rule &r, const source_column &source, int32_t no_null, target_image &target)
{
    for (uint32_t row = 0; row < target.flags.size(); row++) {
        target.flags[row] = no_null != 0 ? 1 : source.flag(row);
        store(r, target, row, element(r, source, row));
    }
    target.no_null = no_null;
    return 0;
}

int32_t cast_plainly(const rule &r, const source_column &source, int32_t no_null, target_image &target)
{
    const auto body = r.cast == bcast_int_to_int64 ? cast_int_to_int64 : cast_by_flags;
    return body(r, source, no_null, target);
}

// ---- Random batches -----------------------------------------------------------

template <size_t n> uint32_t one_of(random_bits &random, const uint32_t (&choices)[n]) { return choices[random() % n]; }

uint32_t random_rows(random_bits &random)
{
    const uint32_t around[] = {0, 8, 16, 64, 1024, 2048, 3072};
    const uint32_t rows = one_of(random, around) + static_cast<uint32_t>(random() % 7);
    return random() % 3 == 0 ? static_cast<uint32_t>(random() % 2600) : rows < 3 ? rows : rows - 3;
}

enum class picking { nothing, ascending, anywhere, one_row, runs };

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

// Of any magnitude, near the edges of the widths more often than chance has it.
int64_t random_value(random_bits &random)
{
    const int shift = static_cast<int>(random() % 64);
    const int64_t edges[] = {127, -128, 32767, -32768, 2147483647, -2147483648};
    if (random() % 4 == 0)
        return edges[random() % std::size(edges)] + static_cast<int64_t>(random() % 5) - 2;
    return static_cast<int64_t>(random()) >> shift;
}

int64_t random_fitting_value(random_bits &random, const rule &r)
{
    for (;;) {
        const int64_t value = random_value(random);
        const int64_t held = r.source_bytes == 8 ? value : static_cast<int32_t>(value);
        if (r.fits(held))
            return held;
    }
}

uint8_t random_flag(random_bits &random, uint32_t null_percent)
{
    if (random() % 100 < null_percent)
        return 0;
    return random() % 4 == 0 ? static_cast<uint8_t>(1 + random() % 255) : 1;
}

struct batch_kind {
    uint32_t rows, column_rows, null_percent, failures;
    picking picked;
    int32_t no_null;
    guard_edge edge;
};

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

void run_one_batch(const rule &r, uint64_t seed)
{
    random_bits random(seed);
    const batch_kind kind = random_kind(random);
    std::vector<uint16_t> sel;
    if (kind.picked != picking::nothing)
        sel = random_selection(random, kind.picked, kind.rows, kind.column_rows);
    source_column source(r.source_bytes, kind.column_rows, sel, kind.no_null, kind.edge);
    const auto put = [&](uint32_t row, uint8_t flag, int64_t value) {
        if (r.source_bytes == 8)
            source.set(row, flag, value);
        else
            source.set(row, flag, static_cast<int32_t>(value));
    };
    const bool garbage_in_null_slots = random() % 2 == 0;
    for (uint32_t row = 0; row < kind.rows; row++) {
        const uint8_t flag = random_flag(random, kind.null_percent);
        put(row, flag, flag == 0 && garbage_in_null_slots ? random_value(random) : random_fitting_value(random, r));
    }
    for (uint32_t k = 0; k < kind.failures && kind.rows > 0; k++)
        put(static_cast<uint32_t>(random() % kind.rows), 1, random_value(random));

    target_column target(r.target_bytes, kind.rows, kind.edge);
    target_image expected = target.image();
    const int32_t status = cast_plainly(r, source, kind.no_null, expected);
    ASSERT_EQ(call(r.cast, {source.sealed(), target.column(), kind.rows}), status)
        << r.name << ", seed " << seed << ": " << describe(kind);
    ASSERT_TRUE(target.holds(expected)) << r.name << ", seed " << seed << ": " << describe(kind);
}

class integer_to_integer_differential : public testing::TestWithParam<rule> {};

TEST_P(integer_to_integer_differential, random_batches_come_out_as_row_by_row)
{
    constexpr uint64_t batches = 500;
    for (uint64_t seed = 0; seed < batches; seed++) {
        run_one_batch(GetParam(), seed);
        if (HasFatalFailure())
            return;
    }
}

INSTANTIATE_TEST_SUITE_P(casts, integer_to_integer_differential, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

} // namespace
} // namespace bcast::test
