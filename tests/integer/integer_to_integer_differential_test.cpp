// The casts among integers against a plain reading of their rule: one row at a time, no blocks, no vectors. Random
// batches of all kinds; a failure prints the seed of its batch.

#include "tests/support/batch.h"
#include "tests/support/call.h"
#include "tests/support/random_batch.h"

namespace bcast::test {
namespace {

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

void run_one_batch(const rule &r, uint64_t seed)
{
    random_bits random(seed);
    const batch_kind kind = random_kind(random);
    source_column source = random_source(random, kind, r.source_bytes);
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
