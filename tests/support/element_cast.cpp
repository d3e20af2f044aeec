#include "tests/support/element_cast.h"

#include "tests/support/call.h"
#include "tests/support/service_double.h"

#include <bcast/codes.h>

#include <algorithm>

namespace bcast::test {

namespace {

bool converts(const element_cast &c, const setup &how, uint8_t flag)
{
    return flag != 0 || c.walk == row_walk::flags_not_looked_at || (c.walk != row_walk::by_flag && how.no_null != 0);
}

int32_t no_null_after(const element_cast &c, const setup &how) { return c.to_boolean() ? 1 : how.no_null; }

// A cast to boolean that knows of no null row is not to look at a flag, one of a temporal value not at any element.
void hide_what_is_not_read(const element_cast &c, const setup &how, source_column &source)
{
    if (c.walk == row_walk::flags_not_looked_at || (c.walk == row_walk::to_boolean && how.no_null != 0))
        source.hide_flags();
    if (!c.reads_values)
        source.hide_values();
}

std::vector<service_call> expected_calls(const element_cast &c, const source_column &source, const setup &how,
                                         uint32_t rows)
{
    std::vector<service_call> calls;
    if (c.asked == predicate::double_overflow)
        for (uint32_t row = 0; row < rows; row++)
            if (converts(c, how, source.flag(row)))
                calls.push_back(judges_double(source.element<double>(row)));
    return calls;
}

void expect_batch(const element_cast &c, const setup &how, uint32_t rows,
                  const std::function<uint8_t(uint32_t)> &flag_of, bool wide_rows = false)
{
    if (testing::Test::HasFailure())
        return; // the first bad batch tells enough
    SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
    services().reset();
    source_column source(c.from_bytes(), rows, how);
    for (uint32_t row = 0; row < rows; row++)
        source.set_bytes(row, flag_of(row), c.sample_of(row).from);
    target_column target(c.to_bytes(), rows, how);
    target_image expected = target.image();
    expected.no_null = no_null_after(c, how);
    expect_rows(c, source, how, 0, rows, expected);
    const std::vector<service_call> calls = expected_calls(c, source, how, rows);
    hide_what_is_not_read(c, how, source);
    const call_arguments with{
        .src = source.sealed(), .dst = target.column(), .rows = wide_rows ? 0x10000 + rows : rows};
    EXPECT_EQ(wide_rows ? call_with_wide_rows(c.cast, with) : call(c.cast, with), 0);
    EXPECT_TRUE(target.holds(expected));
    EXPECT_TRUE(services().logged(calls));
}

} // namespace

void PrintTo(const element_cast &c, std::ostream *out) { *out << c.name; }

void expect_rows(const element_cast &c, const source_column &source, const setup &how, uint32_t first, uint32_t last,
                 target_image &expected)
{
    for (uint32_t row = first; row < last; row++) {
        expected.flags[row] = c.to_boolean() ? 1 : source.flag(row);
        if (converts(c, how, source.flag(row)))
            expected.put_bytes(row, c.sample_of(row).to);
        else if (c.walk == row_walk::to_boolean)
            expected.put(row, int32_t{BOOL_UNKNOWN});
    }
}

void expect_conversions(const element_cast &c)
{
    constexpr uint8_t mixed[] = {1, 0, 2, 0x80, 0, 0, 0xFF, 1, 0x40, 0, 4};
    const std::function<uint8_t(uint32_t)> patterns[] = {
        [](uint32_t) { return uint8_t{1}; },
        [](uint32_t) { return uint8_t{0}; },
        [&](uint32_t row) { return mixed[row % std::size(mixed)]; },
        [](uint32_t row) { return static_cast<uint8_t>(row / 1024 == 1 ? 0 : 1 + row % 255); },
        [](uint32_t row) { return uint8_t{row % 1024 == 1023}; },
        [](uint32_t row) { return static_cast<uint8_t>(row % 1024 == 0 ? 0 : 3); },
    };
    for (const setup &how : all_setups())
        for (const auto &flag_of : patterns)
            for (const uint32_t rows : {0U, 1U, 2U, 7U, 33U, 1023U, 1024U, 1025U, 2600U})
                expect_batch(c, how, rows, flag_of);
}

void expect_all_row_counts(const element_cast &c)
{
    const auto flag_of = [](uint32_t row) { return static_cast<uint8_t>(row % 5 == 3 ? 0 : row % 250 + 1); };
    for (const setup &how : few_setups())
        expect_batch(c, how, 65535, flag_of);
    for (const uint32_t rows : {0U, 1U, 3U})
        expect_batch(c, few_setups().front(), rows, flag_of, true);
}

void expect_stops_by_predicate(const element_cast &c)
{
    const uint32_t rows = 1024 + 40;
    for (const setup &how : all_setups()) {
        for (const uint32_t refused_call : {0U, 1U, 500U, 818U, 819U, 820U}) {
            for (const int32_t code : {-1, int32_t{ERR_OVERFLOW}, int32_t{ERR_BAD_CONVERSION}, INT32_MIN}) {
                SCOPED_TRACE("call " + std::to_string(refused_call) + " is refused with " + std::to_string(code) +
                             ", " + describe(how));
                services().reset();
                services().fail_call(refused_call, code);
                source_column source(c.from_bytes(), rows, how);
                uint32_t judged = 0, failing_row = rows;
                for (uint32_t row = 0; row < rows; row++) {
                    const uint8_t flag = row % 5 == 3 ? 0 : 2;
                    source.set_bytes(row, flag, c.sample_of(row).from);
                    if (converts(c, how, flag) && judged++ == refused_call)
                        failing_row = row;
                }
                ASSERT_LT(failing_row, rows);
                target_column target(c.to_bytes(), rows, how);
                target_image expected = target.image();
                expect_rows(c, source, how, 0, failing_row, expected);
                expected.flags[failing_row] = source.flag(failing_row);
                if (c.to_boolean()) {
                    expected.no_null = 1;
                    std::ranges::fill(expected.flags, uint8_t{1});
                }
                const std::vector<service_call> calls = expected_calls(c, source, how, failing_row + 1);
                hide_what_is_not_read(c, how, source);
                EXPECT_EQ(call(c.cast, {source.sealed(), target.column(), rows}), ERR_OVERFLOW);
                EXPECT_TRUE(target.holds(expected));
                EXPECT_TRUE(services().logged(calls));
            }
        }
    }
    // Any other answer is a success.
    for (const int32_t answer : {1, -ERR_OVERFLOW, INT32_MAX}) {
        services().reset();
        services().fail_call(0, answer);
        const setup &how = few_setups().front();
        source_column source(c.from_bytes(), 1, how);
        source.set_bytes(0, 1, c.sample_of(0).from);
        target_column target(c.to_bytes(), 1, how);
        target_image expected = target.image();
        expected.no_null = no_null_after(c, how);
        expect_rows(c, source, how, 0, 1, expected);
        EXPECT_EQ(call(c.cast, {source.sealed(), target.column(), 1}), 0) << "answer " << answer;
        EXPECT_TRUE(target.holds(expected));
    }
}

} // namespace bcast::test
