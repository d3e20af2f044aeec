// Casts between types with a time of day, at the scale of the target: rounded where the target keeps fewer digits,
// shifted or given a zone, and cut down to the target's type. The status is the result of the last rounding or shift.

#include "tests/temporal/rows.h"

#include <services/temporal.h>

namespace bcast::test {
namespace {

enum class zone_handling { dropped, kept, current_written, shifted_to_current };

constexpr uint16_t usual_zone = 0xFED4; // -300

bool rounds_by(const temporal_arguments &t) { return t.round_flag != 0 && t.dst_scale < t.src_scale; }

row_outcome convert(const row_input &input, zone_handling handling, const temporal_arguments &t, uint16_t current_zone)
{
    row_outcome outcome{.failed_element = left_by_failure()};
    std::string record = input.image;
    const auto go_on_by = [&](const service_call &call, std::optional<service_failure> failure) {
        outcome.steps.push_back({call, failure});
        record = made_by(call);
    };
    if (handling == zone_handling::shifted_to_current) {
        outcome.steps.push_back({takes_zone(record)});
        const int64_t minutes = int64_t{static_cast<int16_t>(current_zone)} - services().temporal.zone_of(record);
        go_on_by(shifts(record, minutes), service_failure::passes_its_code);
    }
    if (rounds_by(t))
        go_on_by(rounds(record, t.dst_scale), service_failure::passes_its_code);
    if (handling == zone_handling::current_written)
        go_on_by(sets_zone(record, current_zone), std::nullopt);
    if (handling == zone_handling::dropped || handling == zone_handling::current_written)
        go_on_by(resets(record, t.type_code), std::nullopt);
    outcome.element = record;
    return outcome;
}

// of_body is what the body is told, and handed what the cast itself is called with.
row_cast rule(const char *name, any_cast cast, zone_handling handling, const temporal_arguments &of_body,
              const temporal_arguments &handed, uint16_t zone = usual_zone)
{
    row_cast c{.name = name,
               .cast = cast,
               .to_bytes = sizeof(vqtime),
               .flags = row_flags::filled_when_no_null,
               .no_null_ahead = false,
               .failure_clears_flag = false,
               .samples = some_records(),
               .convert = [=](const row_input &input) { return convert(input, handling, of_body, zone); },
               .temporal = handed,
               .status_is_last_result = true};
    if (handling == zone_handling::current_written || handling == zone_handling::shifted_to_current)
        c.zone = zone;
    return c;
}

struct body {
    const char *name;
    any_cast cast;
    zone_handling handling;
};

#define NAMED(cast) #cast, cast
const body bodies[] = {
    {NAMED(bcast_precise_dtz_to_dt_inner), zone_handling::dropped},
    {NAMED(bcast_precise_dtz_to_tz_inner), zone_handling::kept},
    {NAMED(bcast_precise_dt_to_tz_inner), zone_handling::current_written},
    {NAMED(bcast_precise_dtz_to_tltz_inner), zone_handling::shifted_to_current},
};

row_cast rule_of(const body &b, const temporal_arguments &t, uint16_t zone = usual_zone)
{
    return rule(b.name, b.cast, b.handling, t, t, zone);
}

const temporal_arguments rounding{
    .src_prec = 0xAAAA, .src_scale = 6, .dst_prec = 0xBBBB, .dst_scale = 3, .round_flag = 1, .type_code = TYPE_TIME_TZ};
const temporal_arguments not_rounding{.src_prec = 0xAAAA,
                                      .src_scale = 6,
                                      .dst_prec = 0xBBBB,
                                      .dst_scale = 6,
                                      .round_flag = 1,
                                      .type_code = TYPE_DATETIME};

// A wrapper has the flag set and, for a body that takes one, fixes the type.
row_cast wrapper(const char *name, bcast_scaled_capture_fn *cast, zone_handling handling, uint8_t type,
                 const temporal_arguments &t)
{
    temporal_arguments of_body = t;
    of_body.round_flag = 1;
    of_body.type_code = type;
    return rule(name, cast, handling, of_body, t);
}

std::vector<row_cast> wrappers(const temporal_arguments &t)
{
    using enum zone_handling;
    return {
        wrapper(NAMED(bcast_precise_datetime_to_datetime), dropped, TYPE_DATETIME, t),
        wrapper(NAMED(bcast_precise_datetime_to_time), dropped, TYPE_TIME, t),
        wrapper(NAMED(bcast_precise_time_to_datetime), dropped, TYPE_DATETIME, t),
        wrapper(NAMED(bcast_precise_time_to_time), dropped, TYPE_TIME, t),
        wrapper(NAMED(bcast_precise_datetime_tz_to_datetime), dropped, TYPE_DATETIME, t),
        wrapper(NAMED(bcast_precise_datetime_tz_to_time), dropped, TYPE_TIME, t),
        wrapper(NAMED(bcast_precise_time_tz_to_datetime), dropped, TYPE_DATETIME, t),
        wrapper(NAMED(bcast_precise_time_tz_to_time), dropped, TYPE_TIME, t),
        wrapper(NAMED(bcast_precise_datetime_tz_to_datetime_tz), kept, 0, t),
        wrapper(NAMED(bcast_precise_time_tz_to_time_tz), kept, 0, t),
        wrapper(NAMED(bcast_precise_datetime_to_datetime_tz), current_written, TYPE_DATETIME_TZ, t),
        wrapper(NAMED(bcast_precise_datetime_to_time_tz), current_written, TYPE_TIME_TZ, t),
        wrapper(NAMED(bcast_precise_time_to_datetime_tz), current_written, TYPE_DATETIME_TZ, t),
        wrapper(NAMED(bcast_precise_time_to_time_tz), current_written, TYPE_TIME_TZ, t),
        wrapper(NAMED(bcast_precise_datetime_tz_to_tltz), shifted_to_current, 0, t),
        wrapper(NAMED(bcast_precise_time_tz_to_tltz), shifted_to_current, 0, t),
    };
}
#undef NAMED

std::vector<row_cast> rules_by(const temporal_arguments &t)
{
    std::vector<row_cast> all;
    for (const body &b : bodies)
        all.push_back(rule_of(b, t));
    return all;
}

std::string name_of(const testing::TestParamInfo<row_cast> &each)
{
    return std::string(each.param.name) + (rounds_by(each.param.temporal) ? "_rounding" : "");
}

class precise : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(precise, present_rows_are_converted_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(precise, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

INSTANTIATE_TEST_SUITE_P(rounding, precise, testing::ValuesIn(rules_by(rounding)), name_of);
INSTANTIATE_TEST_SUITE_P(not_rounding, precise, testing::ValuesIn(rules_by(not_rounding)), name_of);

// ---- Failures and the status ---------------------------------------------------------

class precise_failure : public precise {};

TEST_P(precise_failure, stops_with_the_code_of_the_service) { expect_stops(GetParam()); }

TEST_P(precise_failure, is_captured_and_a_later_success_is_the_status) { expect_captures(GetParam()); }

TEST_P(precise_failure, counter_may_be_missing)
{
    const row_cast &c = GetParam();
    for (const setup &how : all_setups())
        for (const size_t failing : {0U, 2U, 3U})
            expect_batch(c, how, sample_rows(c, {1, 1, 0, 1, 0}),
                         {.results = {{failing, -4321}}, .capture = true, .counted = false});
}

TEST_P(precise_failure, or_positive_result_in_the_last_call_is_the_status)
{
    const row_cast &c = GetParam();
    for (const setup &how : all_setups()) {
        for (const int32_t first : {-11, 0, 11}) {
            for (const int32_t last : {-12, 0, 12, 109, INT32_MAX, INT32_MIN}) {
                // One or two calls in each row; the null rows behind the last of them change nothing.
                const uint8_t null_flag = how.no_null != 0 ? 1 : 0;
                const std::vector<batch_row> rows = sample_rows(c, {1, 1, 1, null_flag, null_flag});
                for (const size_t call : {2U, 3U, 4U, 5U, 9U})
                    for (const bool capture : {false, true})
                        expect_batch(c, how, rows, {.results = {{0, first}, {call, last}}, .capture = capture});
            }
        }
    }
}

TEST_P(precise_failure, in_the_last_row_leaves_no_null_set_under_capture_only)
{
    const row_cast &c = GetParam();
    for (const setup &how : all_setups())
        for (const bool capture : {false, true})
            expect_batch(c, how, sample_rows(c, {1}), {.results = {{0, -1}}, .capture = capture});
}

std::vector<row_cast> rules_that_can_fail()
{
    std::vector<row_cast> all = rules_by(rounding);
    all.push_back(rule_of(bodies[3], not_rounding)); // the shift fails
    return all;
}

INSTANTIATE_TEST_SUITE_P(casts, precise_failure, testing::ValuesIn(rules_that_can_fail()), name_of);

// ---- Scales, round_flag and type -----------------------------------------------------

TEST(precise_scale, rounding_needs_the_flag_and_fewer_digits_than_the_source_has)
{
    services().reset();
    const std::pair<uint16_t, uint16_t> scales[] = {
        {6, 0}, {6, 5},      {6, 6},           {6, 7},           {0, 0},           {0, 6},        {0, 0xFFFF},
        {1, 0}, {0xFFFF, 0}, {0x8000, 0x7FFF}, {0x7FFF, 0x8000}, {0xFFFF, 0x8000}, {0x106, 0x105}};
    for (const body &b : bodies)
        for (const auto &[src_scale, dst_scale] : scales)
            for (const int32_t round_flag : {0, 1, 2, -1, 0x100, 0x10000, INT32_MIN}) {
                SCOPED_TRACE("scale " + std::to_string(src_scale) + " to " + std::to_string(dst_scale) + ", flag " +
                             std::to_string(round_flag));
                temporal_arguments t = rounding;
                t.src_scale = src_scale;
                t.dst_scale = dst_scale;
                t.round_flag = round_flag;
                expect_element(rule_of(b, t), some_record(99));
            }
}

TEST(precise_type, goes_to_the_reset_as_it_is)
{
    services().reset();
    for (const uint8_t type : std::initializer_list<uint8_t>{0, TYPE_DATE, TYPE_TIME, TYPE_DATETIME, TYPE_TIME_TZ,
                                                             TYPE_DATETIME_TZ, 127, 128, 255}) {
        for (temporal_arguments t : {rounding, not_rounding}) {
            t.type_code = type;
            expect_element(rule_of(bodies[0], t), some_record(99));
            expect_element(rule_of(bodies[2], t), some_record(99));
        }
    }
}

// ---- Zones -----------------------------------------------------------------------------

TEST(precise_zone, current_zone_is_written_unsigned_and_shifted_to_signed)
{
    for (const uint16_t current :
         std::initializer_list<uint16_t>{0, 60, TZ_NO_SHIFT, 840, 0x7FFF, 0x8000, 0xFD30, 0xFFFF}) {
        for (const int zone : {0, 60, TZ_NO_SHIFT + 0, -TZ_NO_SHIFT, 840, 32767, -32768,
                               static_cast<int>(static_cast<int16_t>(current))}) {
            for (const temporal_arguments &t : {rounding, not_rounding}) {
                SCOPED_TRACE("zone " + std::to_string(zone) + ", current " + std::to_string(current));
                services().reset();
                const std::string record = some_record(99);
                services().temporal.zones[record] = static_cast<int16_t>(zone);
                expect_element(rule_of(bodies[2], t, current), record);
                expect_element(rule_of(bodies[3], t, current), record);
            }
        }
    }
}

TEST(precise_zone, a_value_in_a_zone_of_no_shift_is_shifted_as_any_other)
{
    services().reset();
    guarded<uint16_t> zone(1);
    zone[0] = 60;
    source_column source(12, 1, few_setups().front());
    source.set_bytes(0, 1, some_record(5));
    services().temporal.zones[some_record(5)] = TZ_NO_SHIFT;
    target_column target(12, 1);
    EXPECT_EQ(bcast_precise_datetime_tz_to_tltz(env(), zone.data(), source.sealed(), target.column(), 1, 0, 6, 0, 6,
                                                nullptr, nullptr),
              0);
    EXPECT_TRUE(services().logged({takes_zone(some_record(5)), shifts(some_record(5), -420)}));
}

// ---- Wrappers ----------------------------------------------------------------------------

class precise_wrapper : public precise {};

TEST_P(precise_wrapper, is_its_body_with_a_flag_and_a_type)
{
    const row_cast &c = GetParam();
    for (const setup &how : all_setups()) {
        const std::vector<batch_row> rows = sample_rows(c, {1, 0, 2, 0x80, 0, 1});
        expect_batch(c, how, rows);
        expect_batch(c, how, rows, {.results = {{1, -4321}}});
        expect_batch(c, how, rows, {.results = {{1, -4321}, {2, 17}}, .capture = true, .count_before = 65535});
        expect_batch(c, how, rows, {.results = {{1, -4321}, {2, 17}}, .capture = true, .counted = false});
        expect_batch(c, how, {});
    }
    expect_row_counts(c);
}

INSTANTIATE_TEST_SUITE_P(casts, precise_wrapper, testing::ValuesIn(wrappers(rounding)),
                         [](const auto &each) { return std::string(each.param.name); });

TEST(precise_wrapper_scale, rounds_to_fewer_digits_only)
{
    services().reset();
    for (const auto &[src_scale, dst_scale] : {std::pair<uint16_t, uint16_t>{6, 6}, {3, 6}, {6, 0}, {0x8000, 1}}) {
        temporal_arguments t = rounding;
        t.src_scale = src_scale;
        t.dst_scale = dst_scale;
        for (const row_cast &c : wrappers(t)) {
            SCOPED_TRACE("scale " + std::to_string(src_scale) + " to " + std::to_string(dst_scale));
            expect_element(c, some_record(99));
        }
    }
}

} // namespace
} // namespace bcast::test
