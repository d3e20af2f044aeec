// The sixteen casts among tinyint, smallint, int and int64, each against its own line of the table below.

#include "tests/support/row_cast.h"

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

uint64_t mixed_bits(uint32_t row) { return (row + 1) * uint64_t{0x9E3779B97F4A7C15}; }

template <class Element> int64_t integer_in(const std::string &element)
{
    Element value;
    std::memcpy(&value, element.data(), sizeof value);
    return value;
}

// A cast and the values that it does not refuse: all that a slot can hold, or those from least to greatest.
struct ranged_cast {
    row_cast cast;
    int64_t least, greatest;
    bool tests_range = false;

    std::string element(int64_t value) const
    {
        return cast.from_bytes() == 8 ? image_of(value) : image_of(static_cast<int32_t>(value));
    }

    // What a source slot can hold that the cast refuses; garbage of any kind where it refuses nothing.
    std::string unfit(uint32_t row) const
    {
        if (!tests_range)
            return element(static_cast<int64_t>(mixed_bits(row)));
        const bool wide = cast.from_bytes() == 8;
        const int64_t values[] = {greatest + 1, least - 1, wide ? int64_min : int32_min, wide ? int64_max : int32_max,
                                  greatest + 256};
        return element(values[row % std::size(values)]);
    }

    // Present rows fit. Null rows hold what does not.
    std::vector<batch_row> rows(const std::vector<uint8_t> &flags) const
    {
        std::vector<batch_row> rows = sample_rows(cast, flags);
        for (uint32_t row = 0; row < rows.size(); row++)
            if (rows[row].flag == 0)
                rows[row].element = unfit(row);
        return rows;
    }
    std::vector<batch_row> rows(uint32_t row_count, const std::function<bool(uint32_t)> &is_null) const
    {
        std::vector<uint8_t> flags;
        for (uint32_t row = 0; row < row_count; row++)
            flags.push_back(is_null(row) ? 0 : 1);
        return rows(flags);
    }
    std::vector<batch_row> rows(uint32_t row_count) const { return rows(std::vector<uint8_t>(row_count, 1)); }
};

void PrintTo(const ranged_cast &c, std::ostream *out) { *out << c.cast.name; }

template <class Source, class Target>
ranged_cast within(const char *name, bcast_plain_fn *cast, int64_t least, int64_t greatest)
{
    ranged_cast c{.cast = {.name = name,
                           .cast = cast,
                           .to_bytes = sizeof(Target),
                           .flags = row_flags::copied,
                           .no_null_ahead = false,
                           .failure_clears_flag = false,
                           .samples = {},
                           .convert =
                               [=](const row_input &input) {
                                   const int64_t value = input.as<Source>();
                                   if (value < least || value > greatest)
                                       return row_outcome{.status = ERR_OVERFLOW};
                                   return row_outcome{.element = image_of(static_cast<Target>(value))};
                               }},
                  .least = least,
                  .greatest = greatest,
                  .tests_range = true};
    // More than there are rows in a block, so that no two blocks are alike.
    for (uint32_t row = 0; row < 1031; row++) {
        const uint64_t width = static_cast<uint64_t>(greatest) - static_cast<uint64_t>(least) + 1;
        const uint64_t offset = width == 0 ? mixed_bits(row) : (mixed_bits(row) >> 7) % width;
        c.cast.samples.push_back(image_of(static_cast<Source>(static_cast<uint64_t>(least) + offset)));
    }
    return c;
}

template <class Source, class Target> ranged_cast any_value(const char *name, bcast_plain_fn *cast)
{
    using limits = std::numeric_limits<Source>;
    ranged_cast c = within<Source, Target>(name, cast, limits::min(), limits::max());
    c.tests_range = false;
    return c;
}

ranged_cast cut_to_16_bits(ranged_cast c)
{
    c.cast.convert = [](const row_input &input) {
        return row_outcome{.element = image_of(int32_t{static_cast<int16_t>(input.as<int32_t>())})};
    };
    return c;
}

ranged_cast of_all_rows(ranged_cast c)
{
    c.cast.flags = row_flags::filled_or_copied_for_all;
    return c;
}

#define NAMED(cast) #cast, cast
const std::vector<ranged_cast> &casts()
{
    using slot = int32_t; // of tinyint, smallint and int alike
    static const std::vector<ranged_cast> all{
        any_value<slot, slot>(NAMED(bcast_tinyint_to_tinyint)),
        cut_to_16_bits(any_value<slot, slot>(NAMED(bcast_tinyint_to_smallint))),
        any_value<slot, slot>(NAMED(bcast_tinyint_to_int)),
        any_value<slot, int64_t>(NAMED(bcast_tinyint_to_int64)),
        within<slot, slot>(NAMED(bcast_smallint_to_tinyint), int8_min, int8_max),
        any_value<slot, slot>(NAMED(bcast_smallint_to_smallint)),
        any_value<slot, slot>(NAMED(bcast_smallint_to_int)),
        any_value<slot, int64_t>(NAMED(bcast_smallint_to_int64)),
        within<slot, slot>(NAMED(bcast_int_to_tinyint), int8_min, int8_max),
        within<slot, slot>(NAMED(bcast_int_to_smallint), int16_min, int16_max),
        any_value<slot, slot>(NAMED(bcast_int_to_int)),
        of_all_rows(any_value<slot, int64_t>(NAMED(bcast_int_to_int64))),
        within<int64_t, slot>(NAMED(bcast_int64_to_tinyint), int8_min, int8_max),
        within<int64_t, slot>(NAMED(bcast_int64_to_smallint), int16_min, int16_max),
        within<int64_t, slot>(NAMED(bcast_int64_to_int), int32_min, int32_max),
        any_value<int64_t, int64_t>(NAMED(bcast_int64_to_int64)),
    };
    return all;
}
#undef NAMED

// Around block borders of the fast walk, and what does not fill a vector register.
constexpr uint32_t row_counts[] = {0, 1, 2, 3, 7, 16, 33, 100, 1023, 1024, 1025, 2047, 2048, 2049, 2600};

class integer_to_integer : public testing::TestWithParam<ranged_cast> {
protected:
    void SetUp() override { services().reset(); }

    static void expect_under_all_setups(const std::vector<batch_row> &rows)
    {
        for (const setup &how : all_setups())
            expect_batch(GetParam().cast, how, rows);
    }
};

TEST_P(integer_to_integer, dense_rows_are_converted_at_every_length)
{
    for (const uint32_t row_count : row_counts)
        expect_under_all_setups(GetParam().rows(row_count));
}

TEST_P(integer_to_integer, null_rows_take_their_flag_and_keep_their_element)
{
    for (const uint32_t row_count : row_counts)
        expect_under_all_setups(GetParam().rows(row_count, [](uint32_t row) { return row % 3 == 1 || row % 7 == 0; }));
}

TEST_P(integer_to_integer, flags_other_than_one_are_present_and_copied_as_they_stand)
{
    constexpr uint8_t dense[] = {1, 2, 0x80, 0xFF, 0x7F, 0xFE, 4};
    constexpr uint8_t mixed[] = {2, 0, 0x80, 0xFF, 0, 0, 0x40, 1, 0xFE};
    for (const uint32_t row_count : {1U, 5U, 40U, 1024U, 1025U, 2100U}) {
        std::vector<uint8_t> all_present, some_null;
        for (uint32_t row = 0; row < row_count; row++) {
            all_present.push_back(dense[row % std::size(dense)]);
            some_null.push_back(mixed[row % std::size(mixed)]);
        }
        expect_under_all_setups(sample_rows(GetParam().cast, all_present));
        expect_under_all_setups(sample_rows(GetParam().cast, some_null)); // their elements fit as well
    }
}

TEST_P(integer_to_integer, batches_and_blocks_of_null_rows_only)
{
    const std::function<bool(uint32_t)> patterns[] = {
        [](uint32_t) { return true; },
        [](uint32_t row) { return row / 1024 == 1; },
        [](uint32_t row) { return row / 1024 != 1; },
        [](uint32_t row) { return row % 1024 == 0; },
        [](uint32_t row) { return row % 1024 == 1023; },
        [](uint32_t row) { return row % 1024 != 1023; },
    };
    for (const auto &is_null : patterns)
        expect_under_all_setups(GetParam().rows(3 * 1024 + 5, is_null));
}

// Values of every width's edge, through every cast: stored as the table says, or refused.
TEST_P(integer_to_integer, edges_of_every_width)
{
    const ranged_cast &c = GetParam();
    std::vector<int64_t> values{0, 5, -5};
    for (const int64_t edge : {int8_max, int16_max, int32_max, int64_t{255}, int64_t{65535}, int64_t{0xFFFFFFFF},
                               int64_t{1} << 40, int64_max - 3})
        for (int64_t step = -2; step <= 3; step++) {
            values.push_back(edge + step);
            values.push_back(-(edge + step));
        }
    values.push_back(int64_min);
    for (const int64_t value : values) {
        for (const uint32_t row_count : {1U, 9U, 64U}) {
            std::vector<batch_row> rows(row_count, {1, c.element(0)});
            rows[row_count / 2].element = c.element(value);
            expect_batch(c.cast, few_setups().front(), rows);
        }
    }
}

TEST_P(integer_to_integer, only_the_low_16_bits_of_rows_count)
{
    for (const setup &how : few_setups())
        for (const uint32_t row_count : {0U, 1U, 1030U})
            expect_batch(GetParam().cast, how, GetParam().rows(row_count), {.wide_rows = true});
}

TEST_P(integer_to_integer, the_largest_batch)
{
    const std::vector<batch_row> rows =
        GetParam().rows(65535, [](uint32_t row) { return row % 11 == 0 || row / 1024 == 3; });
    for (const setup &how : few_setups())
        expect_batch(GetParam().cast, how, rows);
}

// The next two name rows by selections that no setup has, so their batches are written out: of a column whose rows the
// batch names in its first rows already.
void expect_selected(const ranged_cast &c, source_column &source, int32_t no_null, uint32_t rows)
{
    SCOPED_TRACE(std::to_string(rows) + " rows");
    const setup how{selection::scattered, no_null, guard_edge::end};
    target_column target(c.cast.to_bytes, rows, how);
    target_image expected = target.image();
    for (uint32_t row = 0; row < rows; row++) {
        expected.flags[row] = source.flag(row);
        if (source.flag(row) == 0 && !c.cast.converts_all(how))
            continue;
        expected.put_bytes(row, outcome_alone(c.cast, source.element_bytes(row), how).element);
    }
    expected.no_null = no_null;
    EXPECT_EQ(call(c.cast.cast, {source.sealed(), target.column(), rows}), 0);
    EXPECT_TRUE(target.holds(expected));
}

TEST_P(integer_to_integer, one_row_may_be_selected_many_times)
{
    const ranged_cast &c = GetParam();
    for (const uint32_t rows : {3U, 1024U, 1500U}) {
        std::vector<uint16_t> sel(rows);
        for (uint32_t row = 0; row < rows; row++)
            sel[row] = static_cast<uint16_t>(row % 5 == 4 ? 2 : row % 3);
        source_column source(c.cast.from_bytes(), 3, sel, 0);
        source.set_bytes(0, 1, c.cast.samples[0]);
        source.set_bytes(1, 0, c.unfit(1));
        source.set_bytes(2, 0x80, c.cast.samples[2]);
        expect_selected(c, source, 0, rows);
    }
}

TEST_P(integer_to_integer, sel_can_name_the_last_of_65536_rows)
{
    const ranged_cast &c = GetParam();
    const std::vector<uint16_t> sel{65535, 0, 32768, 65535, 32767, 1};
    source_column source(c.cast.from_bytes(), 65536, sel, 1);
    for (uint32_t row = 0; row < sel.size(); row++)
        source.set_bytes(row, 1, c.cast.samples[sel[row] % c.cast.samples.size()]);
    expect_selected(c, source, 1, static_cast<uint32_t>(sel.size()));
}

const auto name_of_cast = [](const auto &each) { return std::string(each.param.cast.name); };

INSTANTIATE_TEST_SUITE_P(casts, integer_to_integer, testing::ValuesIn(casts()), name_of_cast);

// ---- The six casts that refuse values ------------------------------------

class narrowing_integer_cast : public integer_to_integer {
protected:
    struct stop {
        uint32_t rows;
        uint32_t failing_row;
        std::function<bool(uint32_t)> is_null = [](uint32_t) { return false; };
        std::vector<uint32_t> also_unfit = {}; // behind the failing row
    };

    static std::vector<batch_row> rows_of(const stop &s)
    {
        const ranged_cast &c = GetParam();
        std::vector<batch_row> rows = c.rows(s.rows, s.is_null);
        rows[s.failing_row] = {0x82, c.unfit(s.failing_row)};
        for (const uint32_t row : s.also_unfit)
            rows[row] = {1, c.unfit(row)};
        return rows;
    }

    static void expect_stop(const stop &s) { expect_under_all_setups(rows_of(s)); }
};

constexpr uint32_t stop_rows = 2 * 1024 + 300;
constexpr uint32_t stop_positions[] = {0, 1, 15, 500, 1022, 1023, 1024, 1025, 1700, 2047, 2048, 2100, stop_rows - 1};

TEST_P(narrowing_integer_cast, stop_leaves_rows_behind_and_no_null_untouched)
{
    for (const uint32_t failing_row : stop_positions)
        expect_stop({.rows = stop_rows, .failing_row = failing_row});
}

TEST_P(narrowing_integer_cast, stop_in_a_batch_of_one_row) { expect_stop({.rows = 1, .failing_row = 0}); }

TEST_P(narrowing_integer_cast, stop_among_null_rows_that_hold_unfit_values)
{
    for (const uint32_t failing_row : stop_positions)
        expect_stop(
            {.rows = stop_rows, .failing_row = failing_row, .is_null = [](uint32_t row) { return row % 2 == 0; }});
}

TEST_P(narrowing_integer_cast, stop_behind_blocks_of_null_rows_only)
{
    for (const uint32_t failing_row : {1024U, 1500U, stop_rows - 1})
        expect_stop(
            {.rows = stop_rows, .failing_row = failing_row, .is_null = [](uint32_t row) { return row < 1024; }});
}

TEST_P(narrowing_integer_cast, the_first_of_several_unfit_rows_stops)
{
    expect_stop({.rows = stop_rows, .failing_row = 3, .also_unfit = {4, 700, 1023}});
    expect_stop({.rows = stop_rows, .failing_row = 1023, .also_unfit = {1024, 2047, 2048}});
    expect_stop({.rows = stop_rows, .failing_row = 1030, .also_unfit = {1031, stop_rows - 1}});
    expect_stop({.rows = stop_rows,
                 .failing_row = 1100,
                 .is_null = [](uint32_t row) { return row % 5 == 1; },
                 .also_unfit = {1200, 2048}});
}

TEST_P(narrowing_integer_cast, stop_by_each_kind_of_unfit_value)
{
    // The kind goes by the row number.
    for (uint32_t failing_row = 0; failing_row < 5; failing_row++)
        expect_batch(GetParam().cast, few_setups().front(), rows_of({.rows = 5, .failing_row = failing_row}));
}

TEST_P(narrowing_integer_cast, stop_in_the_last_block_of_the_largest_batch)
{
    const std::vector<batch_row> rows = rows_of({.rows = 65535, .failing_row = 65534});
    for (const setup &how : few_setups())
        expect_batch(GetParam().cast, how, rows);
}

std::vector<ranged_cast> narrowing_casts()
{
    std::vector<ranged_cast> narrowing;
    std::ranges::copy_if(casts(), std::back_inserter(narrowing), &ranged_cast::tests_range);
    return narrowing;
}

INSTANTIATE_TEST_SUITE_P(casts, narrowing_integer_cast, testing::ValuesIn(narrowing_casts()), name_of_cast);

// ---- What stands out ---------------------------------------------------------

TEST(integer_to_integer_by_hand, six_casts_refuse_values) { EXPECT_EQ(narrowing_casts().size(), 6U); }

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
