// The sixteen casts among tinyint, smallint, int and int64, each against its own line of the table below.

#include "tests/support/batch.h"
#include "tests/support/call.h"
#include "tests/support/service_double.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace bcast::test {
namespace {

constexpr int64_t int8_min = -128, int8_max = 127;
constexpr int64_t int16_min = -32768, int16_max = 32767;
constexpr int64_t int32_min = std::numeric_limits<int32_t>::min();
constexpr int64_t int32_max = std::numeric_limits<int32_t>::max();
constexpr int64_t int64_min = std::numeric_limits<int64_t>::min();
constexpr int64_t int64_max = std::numeric_limits<int64_t>::max();

int64_t as_it_is(int64_t value) { return value; }
int64_t cut_to_16_bits(int64_t value) { return static_cast<int16_t>(value); }

struct rule {
    const char *name;
    bcast_plain_fn *cast;
    size_t source_bytes;
    size_t target_bytes;
    bool tests_range;
    int64_t least, greatest; // that are not refused
    int64_t (*stored)(int64_t value);
    bool splits_by_no_null; // set: fills flags with 1; clear: converts null rows like others
};

void PrintTo(const rule &r, std::ostream *out) { *out << r.name; }

#define NAMED(cast) #cast, cast
constexpr rule rules[] = {
    {NAMED(bcast_tinyint_to_tinyint), 4, 4, false, int32_min, int32_max, as_it_is, false},
    {NAMED(bcast_tinyint_to_smallint), 4, 4, false, int32_min, int32_max, cut_to_16_bits, false},
    {NAMED(bcast_tinyint_to_int), 4, 4, false, int32_min, int32_max, as_it_is, false},
    {NAMED(bcast_tinyint_to_int64), 4, 8, false, int32_min, int32_max, as_it_is, false},
    {NAMED(bcast_smallint_to_tinyint), 4, 4, true, int8_min, int8_max, as_it_is, false},
    {NAMED(bcast_smallint_to_smallint), 4, 4, false, int32_min, int32_max, as_it_is, false},
    {NAMED(bcast_smallint_to_int), 4, 4, false, int32_min, int32_max, as_it_is, false},
    {NAMED(bcast_smallint_to_int64), 4, 8, false, int32_min, int32_max, as_it_is, false},
    {NAMED(bcast_int_to_tinyint), 4, 4, true, int8_min, int8_max, as_it_is, false},
    {NAMED(bcast_int_to_smallint), 4, 4, true, int16_min, int16_max, as_it_is, false},
    {NAMED(bcast_int_to_int), 4, 4, false, int32_min, int32_max, as_it_is, false},
    {NAMED(bcast_int_to_int64), 4, 8, false, int32_min, int32_max, as_it_is, true},
    {NAMED(bcast_int64_to_tinyint), 8, 4, true, int8_min, int8_max, as_it_is, false},
    {NAMED(bcast_int64_to_smallint), 8, 4, true, int16_min, int16_max, as_it_is, false},
    {NAMED(bcast_int64_to_int), 8, 4, true, int32_min, int32_max, as_it_is, false},
    {NAMED(bcast_int64_to_int64), 8, 8, false, int64_min, int64_max, as_it_is, false},
};
#undef NAMED

// Around block borders of the fast walk, and what does not fill a vector register.
constexpr uint32_t row_counts[] = {1, 2, 3, 7, 16, 33, 100, 1023, 1024, 1025, 2047, 2048, 2049, 2600};

void set(source_column &source, const rule &r, uint32_t row, uint8_t flag, int64_t value)
{
    if (r.source_bytes == 8)
        source.set(row, flag, value);
    else
        source.set(row, flag, static_cast<int32_t>(value));
}

int64_t value_of(const source_column &source, const rule &r, uint32_t row)
{
    return r.source_bytes == 8 ? source.element<int64_t>(row) : source.element<int32_t>(row);
}

void expect_value(target_image &expected, const rule &r, uint32_t row, int64_t value)
{
    if (r.target_bytes == 8)
        expected.put(row, r.stored(value));
    else
        expected.put(row, static_cast<int32_t>(r.stored(value)));
}

uint64_t mixed_bits(uint32_t row) { return (row + 1) * uint64_t{0x9E3779B97F4A7C15}; }

// A value that the cast takes, another one for every row.
int64_t fitting_value(const rule &r, uint32_t row)
{
    const auto least = static_cast<uint64_t>(r.least);
    const uint64_t width = static_cast<uint64_t>(r.greatest) - least + 1;
    const uint64_t offset = width == 0 ? mixed_bits(row) : (mixed_bits(row) >> 7) % width;
    return static_cast<int64_t>(least + offset);
}

// What a source slot can hold that the cast refuses; garbage of any kind where it refuses nothing.
int64_t unfit_value(const rule &r, uint32_t row)
{
    if (!r.tests_range)
        return static_cast<int64_t>(mixed_bits(row));
    const int64_t unfit[] = {r.greatest + 1, r.least - 1, r.source_bytes == 8 ? int64_min : int32_min,
                             r.source_bytes == 8 ? int64_max : int32_max, r.greatest + 256};
    return unfit[row % std::size(unfit)];
}

// Says that rows first to last - 1 come out as the rule has it, by what the source holds.
void expect_rows(target_image &expected, const rule &r, const source_column &source, int32_t no_null, uint32_t first,
                 uint32_t last)
{
    for (uint32_t row = first; row < last; row++) {
        const bool filled = r.splits_by_no_null && no_null != 0;
        expected.flags[row] = filled ? 1 : source.flag(row);
        if (source.flag(row) != 0 || r.splits_by_no_null)
            expect_value(expected, r, row, value_of(source, r, row));
    }
}

class integer_to_integer : public testing::TestWithParam<rule> {
protected:
    // Runs the cast over rows that it can convert and compares everything.
    static void expect_success(const rule &r, source_column &source, const setup &how, uint32_t rows)
    {
        SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
        target_column target(r.target_bytes, rows, how);
        target_image expected = target.image();
        expect_rows(expected, r, source, how.no_null, 0, rows);
        expected.no_null = how.no_null;
        services().reset();
        EXPECT_EQ(call(r.cast, {source.sealed(), target.column(), rows}), 0);
        EXPECT_TRUE(target.holds(expected));
        EXPECT_TRUE(services().logged({}));
    }
};

TEST_P(integer_to_integer, dense_rows_are_converted_at_every_length)
{
    const rule &r = GetParam();
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : row_counts) {
            source_column source(r.source_bytes, rows, how);
            for (uint32_t row = 0; row < rows; row++)
                set(source, r, row, 1, fitting_value(r, row));
            expect_success(r, source, how, rows);
        }
    }
}

TEST_P(integer_to_integer, null_rows_take_their_flag_and_keep_their_element)
{
    const rule &r = GetParam();
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : row_counts) {
            source_column source(r.source_bytes, rows, how);
            for (uint32_t row = 0; row < rows; row++) {
                const bool null = row % 3 == 1 || row % 7 == 0;
                set(source, r, row, null ? 0 : 1, null ? unfit_value(r, row) : fitting_value(r, row));
            }
            expect_success(r, source, how, rows);
        }
    }
}

TEST_P(integer_to_integer, flags_other_than_one_are_present_and_copied_as_they_stand)
{
    const rule &r = GetParam();
    constexpr uint8_t dense[] = {1, 2, 0x80, 0xFF, 0x7F, 0xFE, 4};
    constexpr uint8_t mixed[] = {2, 0, 0x80, 0xFF, 0, 0, 0x40, 1, 0xFE};
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {1U, 5U, 40U, 1024U, 1025U, 2100U}) {
            source_column all_present(r.source_bytes, rows, how), some_null(r.source_bytes, rows, how);
            for (uint32_t row = 0; row < rows; row++) {
                set(all_present, r, row, dense[row % std::size(dense)], fitting_value(r, row));
                set(some_null, r, row, mixed[row % std::size(mixed)], fitting_value(r, row));
            }
            expect_success(r, all_present, how, rows);
            expect_success(r, some_null, how, rows);
        }
    }
}

TEST_P(integer_to_integer, batches_and_blocks_of_null_rows_only)
{
    const rule &r = GetParam();
    const std::function<bool(uint32_t)> patterns[] = {
        [](uint32_t) { return true; },
        [](uint32_t row) { return row / 1024 == 1; },
        [](uint32_t row) { return row / 1024 != 1; },
        [](uint32_t row) { return row % 1024 == 0; },
        [](uint32_t row) { return row % 1024 == 1023; },
        [](uint32_t row) { return row % 1024 != 1023; },
    };
    for (const setup &how : all_setups()) {
        for (const auto &is_null : patterns) {
            const uint32_t rows = 3 * 1024 + 5;
            source_column source(r.source_bytes, rows, how);
            for (uint32_t row = 0; row < rows; row++)
                set(source, r, row, is_null(row) ? 0 : 1, is_null(row) ? unfit_value(r, row) : fitting_value(r, row));
            expect_success(r, source, how, rows);
        }
    }
}

// Values of every width's edge, through every cast: stored as the table says, or refused.
TEST_P(integer_to_integer, edges_of_every_width)
{
    const rule &r = GetParam();
    std::vector<int64_t> values{0, 5, -5};
    for (const int64_t edge : {int8_max, int16_max, int32_max, int64_t{255}, int64_t{65535}, int64_t{0xFFFFFFFF},
                               int64_t{1} << 40, int64_max - 3})
        for (int64_t step = -2; step <= 3; step++) {
            values.push_back(edge + step);
            values.push_back(-(edge + step));
        }
    values.push_back(int64_min);
    for (const int64_t wide : values) {
        const int64_t value = r.source_bytes == 8 ? wide : static_cast<int32_t>(wide);
        const bool fits = r.least <= value && value <= r.greatest;
        ASSERT_TRUE(fits || r.tests_range);
        SCOPED_TRACE("value " + std::to_string(value));
        for (const uint32_t rows : {1U, 9U, 64U}) {
            source_column source(r.source_bytes, rows, few_setups().front());
            for (uint32_t row = 0; row < rows; row++)
                set(source, r, row, 1, row == rows / 2 ? value : 0);
            target_column target(r.target_bytes, rows);
            target_image expected = target.image();
            expect_rows(expected, r, source, 0, 0, fits ? rows : rows / 2);
            if (fits)
                expected.no_null = 0;
            else
                expected.flags[rows / 2] = 1;
            EXPECT_EQ(call(r.cast, {source.sealed(), target.column(), rows}), fits ? 0 : ERR_OVERFLOW);
            EXPECT_TRUE(target.holds(expected));
        }
    }
}

TEST_P(integer_to_integer, no_rows_still_set_no_null)
{
    const rule &r = GetParam();
    for (const setup &how : all_setups()) {
        source_column source(r.source_bytes, 0, how);
        expect_success(r, source, how, 0);
    }
}

TEST_P(integer_to_integer, only_the_low_16_bits_of_rows_count)
{
    const rule &r = GetParam();
    for (const setup &how : few_setups()) {
        for (const uint32_t rows : {0U, 1U, 1030U}) {
            SCOPED_TRACE(std::to_string(rows) + " rows and garbage above, " + describe(how));
            for (const uint32_t above : {0x10000U, 0xFFFF0000U}) {
                source_column source(r.source_bytes, rows, how);
                target_column target(r.target_bytes, rows, how);
                for (uint32_t row = 0; row < rows; row++)
                    set(source, r, row, 1, fitting_value(r, row));
                target_image expected = target.image();
                expect_rows(expected, r, source, how.no_null, 0, rows);
                expected.no_null = how.no_null;
                EXPECT_EQ(call_with_wide_rows(r.cast, {source.sealed(), target.column(), above + rows}), 0);
                EXPECT_TRUE(target.holds(expected));
            }
        }
    }
}

TEST_P(integer_to_integer, the_largest_batch)
{
    const rule &r = GetParam();
    constexpr uint32_t rows = 65535;
    for (const setup &how : few_setups()) {
        source_column source(r.source_bytes, rows, how);
        for (uint32_t row = 0; row < rows; row++)
            set(source, r, row, row % 11 == 0 || row / 1024 == 3 ? 0 : 1, fitting_value(r, row));
        expect_success(r, source, how, rows);
    }
}

TEST_P(integer_to_integer, one_row_may_be_selected_many_times)
{
    const rule &r = GetParam();
    for (const uint32_t rows : {3U, 1024U, 1500U}) {
        std::vector<uint16_t> sel(rows);
        for (uint32_t row = 0; row < rows; row++)
            sel[row] = static_cast<uint16_t>(row % 5 == 4 ? 2 : row % 3);
        source_column source(r.source_bytes, 3, sel, 0);
        // The first batch rows name column rows 0, 1, 2.
        set(source, r, 0, 1, fitting_value(r, 0));
        set(source, r, 1, 0, unfit_value(r, 1));
        set(source, r, 2, 0x80, fitting_value(r, 2));
        expect_success(r, source, {selection::scattered, 0, guard_edge::end}, rows);
    }
}

TEST_P(integer_to_integer, sel_can_name_the_last_of_65536_rows)
{
    const rule &r = GetParam();
    std::vector<uint16_t> sel{65535, 0, 32768, 65535, 32767, 1};
    source_column source(r.source_bytes, 65536, sel, 1);
    for (uint32_t row = 0; row < sel.size(); row++)
        set(source, r, row, 1, fitting_value(r, sel[row]));
    expect_success(r, source, {selection::scattered, 1, guard_edge::end}, static_cast<uint32_t>(sel.size()));
}

INSTANTIATE_TEST_SUITE_P(casts, integer_to_integer, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- The six casts that refuse values ------------------------------------

class narrowing_integer_cast : public integer_to_integer {
protected:
    struct stop {
        uint32_t rows;
        uint32_t failing_row;
        std::function<bool(uint32_t)> is_null = [](uint32_t) { return false; };
        std::vector<uint32_t> also_unfit = {}; // behind the failing row
    };

    static void expect_stop(const rule &r, const stop &s, const setup &how)
    {
        SCOPED_TRACE(std::to_string(s.rows) + " rows, failing row " + std::to_string(s.failing_row) + ", " +
                     describe(how));
        source_column source(r.source_bytes, s.rows, how);
        for (uint32_t row = 0; row < s.rows; row++)
            set(source, r, row, s.is_null(row) ? 0 : 1, s.is_null(row) ? unfit_value(r, row) : fitting_value(r, row));
        set(source, r, s.failing_row, 0x82, unfit_value(r, s.failing_row));
        for (const uint32_t row : s.also_unfit)
            set(source, r, row, 1, unfit_value(r, row));
        target_column target(r.target_bytes, s.rows, how);
        target_image expected = target.image();
        expect_rows(expected, r, source, how.no_null, 0, s.failing_row);
        expected.flags[s.failing_row] = 0x82;
        services().reset();
        EXPECT_EQ(call(r.cast, {source.sealed(), target.column(), s.rows}), ERR_OVERFLOW);
        EXPECT_TRUE(target.holds(expected));
        EXPECT_TRUE(services().logged({}));
    }
};

constexpr uint32_t stop_rows = 2 * 1024 + 300;
constexpr uint32_t stop_positions[] = {0, 1, 15, 500, 1022, 1023, 1024, 1025, 1700, 2047, 2048, 2100, stop_rows - 1};

TEST_P(narrowing_integer_cast, stop_leaves_rows_behind_and_no_null_untouched)
{
    for (const setup &how : all_setups())
        for (const uint32_t failing_row : stop_positions)
            expect_stop(GetParam(), {.rows = stop_rows, .failing_row = failing_row}, how);
}

TEST_P(narrowing_integer_cast, stop_in_a_batch_of_one_row)
{
    for (const setup &how : all_setups())
        expect_stop(GetParam(), {.rows = 1, .failing_row = 0}, how);
}

TEST_P(narrowing_integer_cast, stop_among_null_rows_that_hold_unfit_values)
{
    for (const setup &how : all_setups())
        for (const uint32_t failing_row : stop_positions)
            expect_stop(
                GetParam(),
                {.rows = stop_rows, .failing_row = failing_row, .is_null = [](uint32_t row) { return row % 2 == 0; }},
                how);
}

TEST_P(narrowing_integer_cast, stop_behind_blocks_of_null_rows_only)
{
    for (const setup &how : all_setups())
        for (const uint32_t failing_row : {1024U, 1500U, stop_rows - 1})
            expect_stop(
                GetParam(),
                {.rows = stop_rows, .failing_row = failing_row, .is_null = [](uint32_t row) { return row < 1024; }},
                how);
}

TEST_P(narrowing_integer_cast, the_first_of_several_unfit_rows_stops)
{
    for (const setup &how : all_setups()) {
        expect_stop(GetParam(), {.rows = stop_rows, .failing_row = 3, .also_unfit = {4, 700, 1023}}, how);
        expect_stop(GetParam(), {.rows = stop_rows, .failing_row = 1023, .also_unfit = {1024, 2047, 2048}}, how);
        expect_stop(GetParam(), {.rows = stop_rows, .failing_row = 1030, .also_unfit = {1031, stop_rows - 1}}, how);
        expect_stop(GetParam(),
                    {.rows = stop_rows,
                     .failing_row = 1100,
                     .is_null = [](uint32_t row) { return row % 5 == 1; },
                     .also_unfit = {1200, 2048}},
                    how);
    }
}

TEST_P(narrowing_integer_cast, stop_by_each_kind_of_unfit_value)
{
    const rule &r = GetParam();
    // The kind goes by the row number.
    for (uint32_t failing_row = 0; failing_row < 5; failing_row++)
        expect_stop(r, {.rows = 5, .failing_row = failing_row}, few_setups().front());
}

TEST_P(narrowing_integer_cast, stop_in_the_last_block_of_the_largest_batch)
{
    for (const setup &how : few_setups())
        expect_stop(GetParam(), {.rows = 65535, .failing_row = 65534}, how);
}

std::vector<rule> narrowing_rules()
{
    std::vector<rule> narrowing;
    std::ranges::copy_if(rules, std::back_inserter(narrowing), &rule::tests_range);
    return narrowing;
}

INSTANTIATE_TEST_SUITE_P(casts, narrowing_integer_cast, testing::ValuesIn(narrowing_rules()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- What stands out ---------------------------------------------------------

TEST(integer_to_integer_by_hand, six_casts_refuse_values) { EXPECT_EQ(narrowing_rules().size(), 6U); }

template <class Source, class Target> int32_t cast_one(bcast_plain_fn *cast, Source value, Target &into)
{
    source_column source(sizeof(Source), 1, few_setups().front());
    source.set(0, 1, value);
    target_column target(sizeof(Target), 1);
    const int32_t status = call(cast, {source.sealed(), target.column(), 1});
    std::memcpy(&into, target.column()->data->values, sizeof into);
    return status;
}

TEST(integer_to_integer_by_hand, ranges)
{
    int32_t got = 0;
    EXPECT_EQ(cast_one(bcast_int64_to_int, int64_t{2147483647}, got), 0);
    EXPECT_EQ(got, 2147483647);
    EXPECT_EQ(cast_one(bcast_int64_to_int, int64_t{2147483648}, got), -6102);
    EXPECT_EQ(cast_one(bcast_int64_to_int, int64_t{-2147483648}, got), 0);
    EXPECT_EQ(got, -2147483647 - 1);
    EXPECT_EQ(cast_one(bcast_int64_to_int, int64_t{-2147483649}, got), -6102);
    EXPECT_EQ(cast_one(bcast_int64_to_int, int64_t{1} << 32, got), -6102);
    for (bcast_plain_fn *cast : {bcast_int_to_tinyint, bcast_smallint_to_tinyint}) {
        EXPECT_EQ(cast_one(cast, int32_t{127}, got), 0);
        EXPECT_EQ(got, 127);
        EXPECT_EQ(cast_one(cast, int32_t{-128}, got), 0);
        EXPECT_EQ(got, -128);
        EXPECT_EQ(cast_one(cast, int32_t{128}, got), -6102);
        EXPECT_EQ(cast_one(cast, int32_t{-129}, got), -6102);
    }
    EXPECT_EQ(cast_one(bcast_int64_to_smallint, int64_t{32767}, got), 0);
    EXPECT_EQ(got, 32767);
    EXPECT_EQ(cast_one(bcast_int64_to_smallint, int64_t{32768}, got), -6102);
}

TEST(integer_to_integer_by_hand, tinyint_to_smallint_cuts_where_its_kin_copy)
{
    int32_t got = 0;
    EXPECT_EQ(cast_one(bcast_tinyint_to_smallint, int32_t{0x12348765}, got), 0);
    EXPECT_EQ(got, static_cast<int32_t>(0xFFFF8765));
    EXPECT_EQ(cast_one(bcast_tinyint_to_int, int32_t{0x12348765}, got), 0);
    EXPECT_EQ(got, 0x12348765);
    EXPECT_EQ(cast_one(bcast_tinyint_to_tinyint, int32_t{0x12348765}, got), 0);
    EXPECT_EQ(got, 0x12348765);
    EXPECT_EQ(cast_one(bcast_smallint_to_smallint, int32_t{40000}, got), 0);
    EXPECT_EQ(got, 40000);
}

TEST(integer_to_integer_by_hand, int_to_int64_writes_the_elements_of_null_rows)
{
    source_column source(4, 2, few_setups().front());
    source.set(0, 0, int32_t{-7});
    source.set(1, 0x80, int32_t{9});
    target_column target(8, 2);
    target_image expected = target.image();
    expected.no_null = 0;
    expected.flags = {0, 0x80};
    expected.put(0, int64_t{-7});
    expected.put(1, int64_t{9});
    EXPECT_EQ(call(bcast_int_to_int64, {source.sealed(), target.column(), 2}), 0);
    EXPECT_TRUE(target.holds(expected));
}

TEST(integer_to_integer_by_hand, int_to_int64_with_no_null_set_reads_no_flag)
{
    for (const setup &how : all_setups()) {
        if (how.no_null == 0)
            continue;
        for (const uint32_t rows : {0U, 1U, 1024U, 1025U, 3000U}) {
            SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
            source_column source(4, rows, how);
            target_column target(8, rows, how);
            target_image expected = target.image();
            for (uint32_t row = 0; row < rows; row++) {
                const auto value = static_cast<int32_t>(row * 2654435761U);
                source.set(row, 0, value);
                expected.flags[row] = 1;
                expected.put(row, int64_t{value});
            }
            expected.no_null = how.no_null;
            source.hide_flags();
            EXPECT_EQ(call(bcast_int_to_int64, {source.sealed(), target.column(), rows}), 0);
            EXPECT_TRUE(target.holds(expected));
        }
    }
}

TEST(integer_to_integer_by_hand, a_selection_makes_the_target_dense)
{
    source_column source(4, 10, std::vector<uint16_t>{7, 2}, 1);
    source.set(0, 1, int32_t{70});
    source.set(1, 1, int32_t{20});
    target_column target(4, 2);
    target_image expected = target.image();
    expected.no_null = 1;
    expected.flags = {1, 1};
    expected.put(0, int32_t{70});
    expected.put(1, int32_t{20});
    EXPECT_EQ(call(bcast_int_to_tinyint, {source.sealed(), target.column(), 2}), 0);
    EXPECT_TRUE(target.holds(expected));
}

} // namespace
} // namespace bcast::test
