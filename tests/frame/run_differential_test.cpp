// The casts that are runs, against a plain reading of their rule: one row at a time, no blocks, no vectors. Random
// batches of all kinds; a failure prints the seed of its batch.
//
// The rules here share nothing with those that row casts are told by, so that neither can hide a mistake of the other.

#include "tests/numeric/floating_values.h"
#include "tests/support/batch.h"
#include "tests/support/call.h"
#include "tests/support/random_batch.h"

#include <bcast/codes.h>

#include <array>
#include <bit>
#include <functional>
#include <limits>
#include <optional>

namespace bcast::test {
namespace {

// ---- The rules, one row at a time -------------------------------------------

// Which rows are converted, and what becomes of the flags.
enum class walk {
    by_flag,        // flags copied; rows with one are converted
    by_flag_or_all, // flags copied; all rows are converted where the source says that none is null
    all,            // flags copied; all rows are converted
    filling,        // by flag, but where the source says that none is null, all are converted and present
    all_filling,    // all rows are converted; flags copied, but where the source says that none is null, all are 1
    to_boolean,     // flags 1; null rows unknown, but where the source says that none is null
    all_to_boolean, // flags 1; all rows are converted
};

struct rule {
    const char *name;
    any_cast cast;
    walk rows;
    size_t source_bytes, target_bytes;
    std::function<std::string(random_bits &)> value;                             // a source element
    std::function<std::optional<std::string>(const std::string &element)> moved; // nothing for one that does not fit
};

void PrintTo(const rule &r, std::ostream *out) { *out << r.name; }

// Takes what was moved to be of the type that `move` gives, or an optional one.
template <class From, class Move> auto by(Move move)
{
    return [move](const std::string &element) -> std::optional<std::string> {
        From from;
        std::memcpy(&from, element.data(), sizeof from);
        const std::optional to = move(from);
        return to ? std::optional(image_of(*to)) : std::nullopt;
    };
}

int32_t low_8_bits(int32_t value) { return static_cast<int8_t>(value); }
int32_t low_16_bits(int32_t value) { return static_cast<int16_t>(value); }
template <class T> T same(T value) { return value; }
template <class T> int32_t truth(T value) { return value != 0; }
template <class To, class From> To as(From value) { return static_cast<To>(value); }
double as_double(uint32_t bits) { return widened(bits); }

// The fraction cut off; 0 for a NaN, and the largest for the one value above all integers that passes.
template <int32_t least, int64_t greatest> std::optional<int32_t> cut(float value)
{
    if (value != value)
        return 0;
    const double wide = value;
    if (wide < least || wide > static_cast<double>(greatest))
        return std::nullopt;
    return wide > INT32_MAX ? INT32_MAX : static_cast<int32_t>(wide);
}

bool equals_its_low_8_bits(int64_t value) { return value == static_cast<int8_t>(value); }
bool equals_its_low_16_bits(int64_t value) { return value == static_cast<int16_t>(value); }
bool is_in_16_bits(int64_t value) { return static_cast<uint64_t>(value) + 32768 <= 0xFFFF; }
bool is_in_32_bits(int64_t value) { return static_cast<uint64_t>(value) + 2147483648U <= 0xFFFFFFFF; }

// An int32 of what fits.
template <bool (*fits)(int64_t)> std::optional<int32_t> narrowed(int64_t value)
{
    return fits(value) ? std::optional(static_cast<int32_t>(value)) : std::nullopt;
}

// ---- Random values: of any magnitude, and of any bits; zeros and limits more often than chance has them -----

template <class T> std::string random_integer(random_bits &random)
{
    constexpr int width = 8 * sizeof(T);
    const T edges[] = {0, 1, -1, std::numeric_limits<T>::min(), std::numeric_limits<T>::max(), T{1} << (width - 8)};
    if (random() % 4 == 0)
        return image_of(edges[random() % std::size(edges)]);
    return image_of(static_cast<T>(static_cast<T>(random()) >> random() % width));
}

// Near the edges of the widths more often than that.
template <class T> std::string random_integer_near_edges(random_bits &random)
{
    const int shift = static_cast<int>(random() % 64);
    const int64_t edges[] = {127, -128, 32767, -32768, 2147483647, -2147483648};
    if (random() % 4 == 0)
        return image_of(static_cast<T>(edges[random() % std::size(edges)] + static_cast<int64_t>(random() % 5) - 2));
    return image_of(static_cast<T>(static_cast<int64_t>(random()) >> shift));
}

std::string random_float(random_bits &random)
{
    const float edges[] = {0, -128, 127, -32768, 32767, -0x1p31F, 0x1p31F, std::numeric_limits<float>::quiet_NaN()};
    auto bits = static_cast<uint32_t>(random());
    if (random() % 4 == 0)
        bits = std::bit_cast<uint32_t>(edges[random() % std::size(edges)]) + static_cast<uint32_t>(random() % 5) - 2;
    else if (random() % 2 == 0)
        bits = std::bit_cast<uint32_t>(std::ldexp(static_cast<float>(static_cast<int32_t>(bits)), -24)); // fits any
    else if (random() % 8 == 0)
        bits = random() % 2 == 0 ? 0 : 0x80000000;
    return image_of(bits);
}

std::string random_record(random_bits &random)
{
    return image_of(
        std::array{static_cast<uint32_t>(random()), static_cast<uint32_t>(random()), static_cast<uint32_t>(random())});
}

// ---- The casts -----------------------------------------------------------------

#define NAMED(cast) #cast, cast

rule of_int(const char *name, bcast_plain_fn *cast, walk rows, size_t target_bytes, auto move)
{
    return {name, cast, rows, 4, target_bytes, random_integer<int32_t>, by<int32_t>(move)};
}

rule of_int64(const char *name, bcast_plain_fn *cast, walk rows, size_t target_bytes, auto move)
{
    return {name, cast, rows, 8, target_bytes, random_integer<int64_t>, by<int64_t>(move)};
}

rule of_float(const char *name, bcast_plain_fn *cast, walk rows, size_t target_bytes, auto moved)
{
    return {name, cast, rows, 4, target_bytes, random_float, moved};
}

rule of_record(const char *name, any_cast cast, walk rows)
{
    return {name, cast, rows, 12, 12, random_record, [](const std::string &element) { return std::optional(element); }};
}

std::vector<rule> rules()
{
    using enum walk;
    return {
        of_int(NAMED(bcast_tinyint_to_float), by_flag, 4, as<float, int32_t>),
        of_int(NAMED(bcast_smallint_to_float), by_flag, 4, as<float, int32_t>),
        of_int(NAMED(bcast_int_to_float), by_flag, 4, as<float, int32_t>),
        of_int(NAMED(bcast_tinyint_to_double), by_flag, 8, as<double, int32_t>),
        of_int(NAMED(bcast_smallint_to_double), by_flag, 8, as<double, int32_t>),
        of_int(NAMED(bcast_int_to_double), by_flag, 8, as<double, int32_t>),
        of_int64(NAMED(bcast_int64_to_float), by_flag, 4, as<float, int64_t>),
        of_int64(NAMED(bcast_int64_to_double), by_flag, 8, as<double, int64_t>),

        of_int(NAMED(bcast_tinyint_to_bit), by_flag, 4, truth<int32_t>),
        of_int(NAMED(bcast_smallint_to_bit), by_flag, 4, truth<int32_t>),
        of_int(NAMED(bcast_int_to_bit), by_flag, 4, truth<int32_t>),
        of_int64(NAMED(bcast_int64_to_bit), by_flag, 4, truth<int64_t>),
        of_float(NAMED(bcast_float_to_bit), by_flag, 4, by<float>(truth<float>)),
        of_int(NAMED(bcast_bit_to_bit), by_flag_or_all, 4, same<int32_t>),
        of_int(NAMED(bcast_bit_to_tinyint), by_flag_or_all, 4, low_8_bits),
        of_int(NAMED(bcast_bit_to_smallint), by_flag_or_all, 4, low_16_bits),
        of_int(NAMED(bcast_bit_to_int), by_flag_or_all, 4, same<int32_t>),
        of_int(NAMED(bcast_bit_to_int64), by_flag_or_all, 8, as<int64_t, int32_t>),
        of_int(NAMED(bcast_bit_to_float), by_flag_or_all, 4, as<float, int32_t>),
        of_int(NAMED(bcast_bit_to_double), by_flag_or_all, 8, as<double, int32_t>),

        of_int(NAMED(bcast_tinyint_to_boolean), to_boolean, 4, truth<int32_t>),
        of_int(NAMED(bcast_smallint_to_boolean), to_boolean, 4, truth<int32_t>),
        of_int(NAMED(bcast_int_to_boolean), to_boolean, 4, truth<int32_t>),
        of_int64(NAMED(bcast_int64_to_boolean), to_boolean, 4, truth<int64_t>),
        of_int(NAMED(bcast_bit_to_boolean), to_boolean, 4, truth<int32_t>),
        of_float(NAMED(bcast_float_to_boolean), to_boolean, 4, by<float>(truth<float>)),
        of_int(NAMED(bcast_boolean_to_boolean), all_to_boolean, 4, same<int32_t>),
        of_int(NAMED(bcast_boolean_to_tinyint), by_flag, 4, low_8_bits),
        of_int(NAMED(bcast_boolean_to_smallint), by_flag_or_all, 4, low_16_bits),
        of_int(NAMED(bcast_boolean_to_int), by_flag_or_all, 4, same<int32_t>),
        of_int(NAMED(bcast_boolean_to_int64), by_flag_or_all, 8, as<int64_t, int32_t>),

        of_float(NAMED(bcast_float_to_float), all, 4, by<uint32_t>(same<uint32_t>)),
        of_float(NAMED(bcast_float_to_double), all, 8, by<uint32_t>(as_double)),
        of_float(NAMED(bcast_float_to_tinyint), by_flag, 4, by<float>(cut<INT8_MIN, INT8_MAX>)),
        of_float(NAMED(bcast_float_to_smallint), by_flag, 4, by<float>(cut<INT16_MIN, INT16_MAX>)),
        of_float(NAMED(bcast_float_to_int), by_flag, 4, by<float>(cut<INT32_MIN, int64_t{INT32_MAX} + 1>)),

        of_record(NAMED(bcast_date_to_date), by_flag),
        of_record(NAMED(bcast_date_to_time), by_flag),
        of_record(NAMED(bcast_date_to_datetime), by_flag),
        of_record(NAMED(bcast_datetime_tz_to_date), by_flag),
        of_record(NAMED(bcast_precise_dtz_to_tz_inner), filling), // its scales are 0, so that nothing is rounded
    };
}

// Among the integers.
rule of_slot(const char *name, bcast_plain_fn *cast, size_t target_bytes, auto move, walk rows = walk::by_flag)
{
    return {name, cast, rows, 4, target_bytes, random_integer_near_edges<int32_t>, by<int32_t>(move)};
}

rule of_wide_slot(const char *name, bcast_plain_fn *cast, size_t target_bytes, auto move)
{
    return {name, cast, walk::by_flag, 8, target_bytes, random_integer_near_edges<int64_t>, by<int64_t>(move)};
}

std::vector<rule> integer_rules()
{
    return {
        of_slot(NAMED(bcast_tinyint_to_tinyint), 4, same<int32_t>),
        of_slot(NAMED(bcast_tinyint_to_smallint), 4, low_16_bits),
        of_slot(NAMED(bcast_tinyint_to_int), 4, same<int32_t>),
        of_slot(NAMED(bcast_tinyint_to_int64), 8, as<int64_t, int32_t>),
        of_slot(NAMED(bcast_smallint_to_tinyint), 4, narrowed<equals_its_low_8_bits>),
        of_slot(NAMED(bcast_smallint_to_smallint), 4, same<int32_t>),
        of_slot(NAMED(bcast_smallint_to_int), 4, same<int32_t>),
        of_slot(NAMED(bcast_smallint_to_int64), 8, as<int64_t, int32_t>),
        of_slot(NAMED(bcast_int_to_tinyint), 4, narrowed<equals_its_low_8_bits>),
        of_slot(NAMED(bcast_int_to_smallint), 4, narrowed<equals_its_low_16_bits>),
        of_slot(NAMED(bcast_int_to_int), 4, same<int32_t>),
        of_slot(NAMED(bcast_int_to_int64), 8, as<int64_t, int32_t>, walk::all_filling),
        of_wide_slot(NAMED(bcast_int64_to_tinyint), 4, narrowed<equals_its_low_8_bits>),
        of_wide_slot(NAMED(bcast_int64_to_smallint), 4, narrowed<is_in_16_bits>),
        of_wide_slot(NAMED(bcast_int64_to_int), 4, narrowed<is_in_32_bits>),
        of_wide_slot(NAMED(bcast_int64_to_int64), 8, same<int64_t>),
    };
}

#undef NAMED

bool goes_to_boolean(const rule &r) { return r.rows == walk::to_boolean || r.rows == walk::all_to_boolean; }

uint8_t flag_of(const rule &r, const source_column &source, uint32_t row, bool none_is_null)
{
    const bool fills = r.rows == walk::filling || r.rows == walk::all_filling;
    return goes_to_boolean(r) || (fills && none_is_null) ? uint8_t{1} : source.flag(row);
}

bool is_converted(const rule &r, uint8_t source_flag, bool none_is_null)
{
    switch (r.rows) {
    case walk::by_flag:
        return source_flag != 0;
    case walk::all:
    case walk::all_filling:
    case walk::all_to_boolean:
        return true;
    default:
        return source_flag != 0 || none_is_null;
    }
}

int32_t cast_plainly(const rule &r, const source_column &source, int32_t no_null, target_image &target)
{
    for (uint32_t row = 0; row < target.flags.size(); row++) {
        target.flags[row] = flag_of(r, source, row, no_null != 0);
        if (is_converted(r, source.flag(row), no_null != 0)) {
            const std::optional<std::string> moved = r.moved(source.element_bytes(row));
            if (!moved)
                return ERR_OVERFLOW;
            target.put_bytes(row, *moved);
        } else if (r.rows == walk::to_boolean) {
            target.put(row, int32_t{BOOL_UNKNOWN});
        }
    }
    target.no_null = goes_to_boolean(r) ? 1 : no_null;
    return 0;
}

// ---- Random batches --------------------------------------------------------------

std::string fitting_value(random_bits &random, const rule &r)
{
    for (;;) {
        const std::string value = r.value(random);
        if (r.moved(value))
            return value;
    }
}

void run_one_batch(const rule &r, uint64_t seed)
{
    random_bits random(seed);
    const batch_kind kind = random_kind(random);
    source_column source = random_source(random, kind, r.source_bytes);
    const bool anything_in_null_slots = random() % 2 == 0;
    for (uint32_t row = 0; row < kind.rows; row++) {
        const uint8_t flag = random_flag(random, kind.null_percent);
        source.set_bytes(row, flag, flag == 0 && anything_in_null_slots ? r.value(random) : fitting_value(random, r));
    }
    for (uint32_t k = 0; k < kind.failures && kind.rows > 0; k++)
        source.set_bytes(static_cast<uint32_t>(random() % kind.rows), 1, r.value(random));

    target_column target(r.target_bytes, kind.rows, kind.edge);
    target_image expected = target.image();
    const int32_t status = cast_plainly(r, source, kind.no_null, expected);
    ASSERT_EQ(call(r.cast, {.src = source.sealed(), .dst = target.column(), .rows = kind.rows}), status)
        << r.name << ", seed " << seed << ": " << describe(kind);
    ASSERT_TRUE(target.holds(expected)) << r.name << ", seed " << seed << ": " << describe(kind);
}

class run_differential : public testing::TestWithParam<rule> {
protected:
    static void run_batches(uint64_t batches)
    {
        for (uint64_t seed = 0; seed < batches && !HasFatalFailure(); seed++)
            run_one_batch(GetParam(), seed);
    }
};

TEST_P(run_differential, random_batches_come_out_as_row_by_row) { run_batches(250); }

class integer_to_integer_differential : public run_differential {};

TEST_P(integer_to_integer_differential, random_batches_come_out_as_row_by_row) { run_batches(500); }

const auto name_of_rule = [](const auto &each) { return std::string(each.param.name); };

INSTANTIATE_TEST_SUITE_P(casts, run_differential, testing::ValuesIn(rules()), name_of_rule);
INSTANTIATE_TEST_SUITE_P(casts, integer_to_integer_differential, testing::ValuesIn(integer_rules()), name_of_rule);

} // namespace
} // namespace bcast::test
