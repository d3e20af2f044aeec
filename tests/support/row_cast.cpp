#include "tests/support/row_cast.h"

#include "tests/support/settings.h"

#include <algorithm>
#include <memory>
#include <sstream>
#include <unordered_map>

namespace bcast::test {

namespace {

constexpr uint8_t mixed_flags[] = {1, 0, 2, 0x80, 0, 0, 0xFF, 1, 0x40, 0, 4};

// What a batch should leave behind.
struct expectation {
    target_image target;
    std::vector<service_call> calls = {};
    std::map<uint32_t, int32_t> failures = {};
    int32_t status = 0;
    size_t calls_that_can_fail = 0;
    int32_t last_result = 0; // of these calls
};

// No source flag is looked at then, and each of the target's is 1.
bool fills(const row_cast &c, const setup &how)
{
    return c.flags == row_flags::set || (how.no_null != 0 && (c.flags == row_flags::filled_when_no_null ||
                                                              c.flags == row_flags::filled_or_copied_for_all ||
                                                              c.flags == row_flags::set_and_null_in_element));
}

bool sets_flags(const row_cast &c, const setup &how)
{
    return fills(c, how) || c.flags == row_flags::set_and_null_in_element;
}

uint8_t flag_becomes(const row_cast &c, const setup &how, uint8_t flag)
{
    return sets_flags(c, how) ? 1 : c.flags == row_flags::cleared ? 0 : flag;
}

// What no_null becomes ahead of the first row, where it is written there.
std::optional<int32_t> no_null_ahead(const row_cast &c, const setup &how)
{
    if (c.no_null_is_set)
        return 1;
    if (c.flags == row_flags::cleared && !c.no_null_stays)
        return 0;
    return c.no_null_ahead ? std::optional(how.no_null) : std::nullopt;
}

void hide_what_is_not_read(const row_cast &c, const setup &how, source_column &source)
{
    if (fills(c, how))
        source.hide_flags();
    if (c.reads != source_reading::everything)
        source.hide_values();
}

const bdta3_col *source_of(const row_cast &c, source_column &source)
{
    return c.reads == source_reading::nothing ? static_cast<const bdta3_col *>(inaccessible()) : source.sealed();
}

bool is_converted(const row_cast &c, const setup &how, uint8_t flag)
{
    return c.flags != row_flags::cleared && (flag != 0 || c.converts_all(how));
}

const std::string &element_in(const row_cast &c, const setup &how, const batch_row &row)
{
    return c.null_element.empty() || is_converted(c, how, row.flag) ? row.element : c.null_element;
}

const void *place_of(const source_column &source, size_t stride, uint32_t row)
{
    const bdta3_col &column = *source.column();
    return static_cast<const char *>(column.data->values) + (column.sel ? column.sel[row] : row) * stride;
}

// A row's failure, if its code is below 0.
struct row_end {
    int32_t code;
    bool ends_cast = false;
};

// The calls of one row, up to one whose failure ends it.
row_end expect_steps(row_outcome &outcome, const batch_plan &plan, expectation &expected)
{
    for (size_t k = 0; k < outcome.steps.size(); k++) {
        expected.calls.push_back(std::move(outcome.steps[k].call));
        if (!outcome.steps[k].failure)
            continue;
        const auto planned = plan.results.find(expected.calls_that_can_fail++);
        int32_t result = outcome.steps[k].result;
        if (planned != plan.results.end() && (planned->second < 0 || result >= 0))
            result = planned->second;
        expected.last_result = result;
        if (result >= 0)
            continue;
        switch (*outcome.steps[k].failure) {
        case service_failure::passes_its_code:
            return {result};
        case service_failure::ends_cast:
            return {result, true};
        case service_failure::passes_overflow_only:
            if (result != ERR_OVERFLOW)
                continue;
            [[fallthrough]];
        case service_failure::is_overflow:
            return {ERR_OVERFLOW};
        case service_failure::is_to_char:
            return {ERR_TO_CHAR};
        case service_failure::is_bad_interval:
            return {ERR_BAD_INTERVAL};
        case service_failure::is_no_memory:
            return {ERR_NO_MEMORY};
        case service_failure::is_not_looked_at:
            if (outcome.behind_failure)
                outcome.behind_failure(outcome);
        }
    }
    return {outcome.status};
}

void expect_converted(const row_input &input, const row_outcome &outcome, target_image &target)
{
    if (outcome.text)
        target.texts[input.row] = *outcome.text;
    else
        target.put_bytes(input.row, outcome.element);
    if (outcome.flag_over_element) {
        target.flags[input.row] = *outcome.flag_over_element;
        target.no_null = 0;
    }
}

void expect_walk(const row_cast &c, const setup &how, const std::vector<batch_row> &rows, const batch_plan &plan,
                 const source_column &source, const bdta3_col *target, expectation &expected)
{
    bool first = true;
    for (uint32_t row = 0; row < rows.size(); row++) {
        expected.target.flags[row] = flag_becomes(c, how, rows[row].flag);
        if (!is_converted(c, how, rows[row].flag)) {
            expected.target.put_bytes(row, c.null_result);
            continue;
        }
        const row_input input{.image = rows[row].element,
                              .where = place_of(source, c.from_bytes(), row),
                              .target = target,
                              .row = row,
                              .first = first,
                              .how = how,
                              .source = source.column(),
                              .cast = c,
                              .captures = plan.capture};
        first = false;
        row_outcome outcome = c.convert(input);
        const auto [code, ends_cast] = expect_steps(outcome, plan, expected);
        if (code >= 0 && outcome.turns_null) {
            expected.target.flags[row] = 0;
            if (!outcome.keeps_no_null)
                expected.target.no_null = 0;
            expected.target.put_bytes(row, outcome.element);
            continue;
        }
        if (code >= 0) {
            expect_converted(input, outcome, expected.target);
            continue;
        }
        expected.status = code;
        if (c.failure_clears_flag && !outcome.failure_keeps_flag && !ends_cast)
            expected.target.flags[row] = 0;
        if (!outcome.failed_element.empty())
            expected.target.put_bytes(row, outcome.failed_element);
        if (!plan.capture || ends_cast)
            return;
        expected.failures[row] = code;
    }
    expected.calls.insert(expected.calls.end(), c.at_end.begin(), c.at_end.end());
    if (!no_null_ahead(c, how) && !c.no_null_stays)
        expected.target.no_null = how.no_null;
    if (c.status_is_last_result)
        expected.status = expected.last_result;
}

expectation expect(const row_cast &c, const setup &how, const std::vector<batch_row> &rows, const batch_plan &plan,
                   const source_column &source, target_column &target)
{
    expectation expected{target.image()};
    expected.target.no_null = no_null_ahead(c, how).value_or(expected.target.no_null);
    if (sets_flags(c, how) || c.flags == row_flags::cleared)
        std::ranges::fill(expected.target.flags, flag_becomes(c, how, 1));
    if (c.flags == row_flags::copied_ahead && how.selected == selection::none)
        std::ranges::transform(rows, expected.target.flags.begin(), &batch_row::flag);
    expect_walk(c, how, rows, plan, source, target.column(), expected);
    return expected;
}

void start_services(const batch_plan &plan)
{
    services().start_batch();
    for (const auto &[call, result] : plan.results)
        services().fail_call(call, result);
}

std::string describe(const row_cast &c, const setup &how, const std::vector<batch_row> &rows, const batch_plan &plan)
{
    std::ostringstream out;
    out << c.name << ", " << rows.size() << " rows, " << describe(how);
    if (c.length != 0)
        out << ", length " << c.length;
    if (c.compat_mode || c.compat_mode2)
        out << ", compat_mode " << c.compat_mode.value_or(0) << ", compat_mode2 " << c.compat_mode2.value_or(0);
    out << (plan.capture ? ", failures captured" : ", no err_codes");
    for (const auto &[call, result] : plan.results)
        out << "\n    call " << call << " of those that can fail gives " << result;
    constexpr size_t shown = 12;
    for (size_t row = 0; row < std::min(rows.size(), shown); row++) {
        out << "\n    row " << row << ": flag " << int{rows[row].flag} << ", element" << std::hex;
        for (const char byte : element_in(c, how, rows[row]))
            out << ' ' << (byte >> 4 & 0xF) << (byte & 0xF);
        out << std::dec;
    }
    return out.str();
}

// The number of calls that can fail in a batch that does not.
size_t calls_that_can_fail(const row_cast &c, const setup &how, const std::vector<batch_row> &rows)
{
    source_column source(c.from_bytes(), static_cast<uint32_t>(rows.size()), how);
    target_column target(c.to_bytes, static_cast<uint32_t>(rows.size()), how);
    return expect(c, how, rows, {}, source, target).calls_that_can_fail;
}

std::vector<uint8_t> flags_of(uint32_t rows, const std::function<uint8_t(uint32_t)> &flag_of)
{
    std::vector<uint8_t> flags;
    for (uint32_t row = 0; row < rows; row++)
        flags.push_back(flag_of(row));
    return flags;
}

// A cast that calls a service goes row by row; others may go by blocks of 1024.
bool may_go_by_blocks(const row_cast &c) { return !c.convert || outcome_alone(c, c.samples.front()).steps.empty(); }

std::vector<batch_row> largest_batch(const row_cast &c)
{
    return sample_rows(
        c, flags_of(65535, [](uint32_t row) { return static_cast<uint8_t>(row % 5 == 3 ? 0 : row % 250 + 1); }));
}

} // namespace

bool row_cast::converts_all(const setup &how) const
{
    return flags == row_flags::copied_for_all || flags == row_flags::filled_or_copied_for_all || fills(*this, how) ||
           (flags == row_flags::converted_when_no_null && how.no_null != 0);
}

bool row_cast::captures() const
{
    return !std::holds_alternative<bcast_plain_fn *>(cast) && !std::holds_alternative<bcast_length_fn *>(cast) &&
           !std::holds_alternative<bcast_direct_fn *>(cast) && !std::holds_alternative<bcast_scaled_fn *>(cast) &&
           !std::holds_alternative<bcast_scaled_text_fn *>(cast);
}

void PrintTo(const row_cast &c, std::ostream *out) { *out << c.name; }

row_cast cast_of_samples(const char *name, any_cast cast, row_flags flags, const std::vector<sample> &samples)
{
    auto becomes = std::make_shared<std::unordered_map<std::string, std::string>>();
    row_cast c{
        .name = name,
        .cast = cast,
        .to_bytes = samples.front().to.size(),
        .flags = flags,
        .no_null_ahead = false,
        .failure_clears_flag = false,
        .samples = {},
        .convert = [becomes](const row_input &input) { return row_outcome{.element = becomes->at(input.image)}; }};
    for (const sample &s : samples) {
        c.samples.push_back(s.from);
        becomes->insert({s.from, s.to});
    }
    return c;
}

row_outcome outcome_alone(const row_cast &c, const std::string &element, const setup &how)
{
    static bdta3_col_data data = {};
    static const bdta3_col column = [] {
        bdta3_col record = {};
        record.data = &data;
        return record;
    }();
    return c.convert({element, element.data(), &column, 0, true, how, &column, c});
}

void expect_batch(const row_cast &c, const setup &how, const std::vector<batch_row> &rows, const batch_plan &plan)
{
    if (testing::Test::HasFailure())
        return; // the first bad batch tells enough
    const auto row_count = static_cast<uint32_t>(rows.size());
    start_services(plan);
    source_column source(c.from_bytes(), row_count, how);
    for (uint32_t row = 0; row < row_count; row++)
        source.set_bytes(row, rows[row].flag, element_in(c, how, rows[row]));
    target_column target(c.to_bytes, row_count, how);
    const expectation expected = expect(c, how, rows, plan, source, target);
    hide_what_is_not_read(c, how, source);
    if (plan.elements_hidden)
        source.hide_values();
    // What rows is wider than 16 bits by, be it taken for a sign or not.
    const uint32_t above = !plan.wide_rows ? 0 : row_count == 1 ? 0x10000 : 0xFFFF0000;
    call_arguments with{.src = source_of(c, source),
                        .dst = target.column(),
                        .rows = above + row_count,
                        .length = c.length,
                        .err_count = static_cast<uint16_t *>(inaccessible()), // nobody looks at it without err_codes
                        .cmp_op = c.cmp_op,
                        .temporal = c.temporal};
    std::optional<failure_record> record;
    if (plan.capture) {
        record.emplace(row_count, plan.count_before);
        with.err_codes = record->codes();
        with.err_count = plan.counted ? record->count() : nullptr;
    }
    std::optional<guarded<uint16_t>> zone_record;
    if (c.zone) {
        zone_record.emplace(std::span(&*c.zone, 1));
        zone_record->make_read_only();
        with.heap = zone_record->data();
    }
    std::optional<settings> set;
    if (c.compat_mode || c.compat_mode2)
        set.emplace(c.compat_mode.value_or(0), c.compat_mode2.value_or(0));
    const int32_t status = plan.wide_rows ? call_with_wide_rows(c.cast, with) : call(c.cast, with);
    set.reset();
    const auto in_batch = [&] { return describe(c, how, rows, plan); };
    EXPECT_EQ(status, expected.status) << in_batch();
    EXPECT_TRUE(target.holds(expected.target)) << in_batch();
    EXPECT_TRUE(services().logged(expected.calls)) << in_batch();
    if (record) {
        EXPECT_TRUE(record->hold(expected.failures, plan.counted)) << in_batch();
    }
}

std::vector<batch_row> sample_rows(const row_cast &c, const std::vector<uint8_t> &flags)
{
    std::vector<batch_row> rows;
    for (const uint8_t flag : flags)
        rows.push_back({flag, c.samples[rows.size() % c.samples.size()]});
    return rows;
}

std::vector<batch_row> rows_with_some_null(const row_cast &c, uint32_t row_count)
{
    return sample_rows(c, flags_of(row_count, [](uint32_t row) { return mixed_flags[row % std::size(mixed_flags)]; }));
}

void expect_rows_and_null_rows(const row_cast &c)
{
    const std::function<uint8_t(uint32_t)> patterns[] = {
        [](uint32_t row) { return mixed_flags[row % std::size(mixed_flags)]; },
        [](uint32_t) { return uint8_t{1}; },
        [](uint32_t) { return uint8_t{0}; },
        [](uint32_t row) { return static_cast<uint8_t>(row / 1024 == 1 ? 0 : 1 + row % 255); },
        [](uint32_t row) { return static_cast<uint8_t>(row % 1024 == 0 ? 0 : 3); },
    };
    const bool by_blocks = may_go_by_blocks(c);
    const std::vector<uint32_t> many{0, 1, 2, 33, 1023, 1024, 1025, 2100}, few{33, 2100};
    for (const auto &flag_of : patterns) {
        const bool is_first = &flag_of == patterns;
        for (const uint32_t row_count : is_first || by_blocks ? many : few) {
            const std::vector<batch_row> rows = sample_rows(c, flags_of(row_count, flag_of));
            for (const setup &how : all_setups()) {
                expect_batch(c, how, rows);
                if (c.captures() && (is_first || by_blocks))
                    expect_batch(c, how, rows, {.capture = true});
            }
        }
    }
}

void expect_blocks(const row_cast &c)
{
    const std::function<uint8_t(uint32_t)> patterns[] = {
        [](uint32_t) { return uint8_t{1}; },
        [](uint32_t row) { return uint8_t{row % 1024 == 1023}; },
        [](uint32_t row) { return uint8_t{row % 1024 != 1023}; },
    };
    for (const auto &flag_of : patterns) {
        for (const uint32_t row_count : {7U, 2048U, 2600U}) {
            const std::vector<batch_row> rows = sample_rows(c, flags_of(row_count, flag_of));
            for (const setup &how : all_setups())
                expect_batch(c, how, rows);
        }
    }
    const std::vector<batch_row> rows = largest_batch(c);
    for (const setup &how : {few_setups().front(), few_setups().back()})
        expect_batch(c, how, rows);
}

void expect_null_rows_unread(const row_cast &c)
{
    const std::vector<batch_row> rows = sample_rows(c, std::vector<uint8_t>(1030, 0));
    for (const setup &how : all_setups())
        if (!c.converts_all(how))
            expect_batch(c, how, rows, {.elements_hidden = true});
}

void expect_row_counts(const row_cast &c)
{
    const std::vector<batch_row> rows = largest_batch(c);
    if (may_go_by_blocks(c))
        expect_batch(c, few_setups()[1], rows);
    expect_batch(c, few_setups()[2], rows);
    for (const uint32_t few : {0U, 1U, 3U})
        expect_batch(c, few_setups().front(), {rows.begin(), rows.begin() + few}, {.wide_rows = true});
}

void expect_stops(const row_cast &c)
{
    // A short batch: every call, with codes that the cast may make itself and others; and successes above 0.
    const auto some_flags = flags_of(11, [](uint32_t row) { return mixed_flags[row]; });
    const std::vector<batch_row> few_rows = sample_rows(c, some_flags);
    for (const setup &how : few_setups()) {
        const size_t calls = calls_that_can_fail(c, how, few_rows);
        ASSERT_GT(calls, 0U);
        for (size_t failing = 0; failing < calls; failing++)
            for (const int32_t code : {-1, int32_t{ERR_OVERFLOW}, int32_t{ERR_TRUNCATED}, INT32_MIN, 1, INT32_MAX})
                expect_batch(c, how, few_rows, {.results = {{failing, code}, {failing + 1, -4322}}});
    }
    // A long one: at the first, a middle and the last row.
    const auto flags = flags_of(1024 + 40, [](uint32_t row) { return static_cast<uint8_t>(row % 5 == 3 ? 0 : 2); });
    const std::vector<batch_row> rows = sample_rows(c, flags);
    for (const setup &how : all_setups()) {
        const size_t calls = calls_that_can_fail(c, how, rows);
        for (const size_t failing : {size_t{0}, size_t{1}, calls / 2, calls - 20, calls - 2, calls - 1})
            expect_batch(c, how, rows, {.results = {{failing, -4321}}});
    }
}

void expect_captures(const row_cast &c)
{
    const auto flags = flags_of(2100, [](uint32_t row) { return static_cast<uint8_t>(row % 5 == 2 ? 0 : 4); });
    const std::vector<batch_row> rows = sample_rows(c, flags);
    for (const setup &how : all_setups()) {
        const size_t calls = calls_that_can_fail(c, how, rows);
        expect_batch(c, how, rows,
                     {.results = {{0, -1}, {1, -503}, {600, -6111}, {601, 1}, {900, ERR_OVERFLOW}, {calls - 1, -12}},
                      .capture = true});
        expect_batch(c, how, rows, {.results = {{1, INT32_MIN}, {calls - 3, -13}}, .capture = true});
    }
    // Every row, over a counter that wraps; no row.
    batch_plan all{.capture = true, .count_before = 65534};
    for (size_t failing = 0; failing < 5; failing++)
        all.results[failing] = -100 - static_cast<int32_t>(failing);
    for (const setup &how : few_setups()) {
        expect_batch(c, how, sample_rows(c, {1, 2, 3, 4, 5}), all);
        expect_batch(c, how, sample_rows(c, {1, 2, 3, 4, 5}), {.capture = true, .count_before = 65535});
    }
}

void expect_element(const row_cast &c, const std::string &element)
{
    for (const setup &how : few_setups())
        expect_batch(c, how, {{1, c.samples.front()}, {0x80, element}, {2, c.samples.back()}});
}

void at_several_rows(const row_cast &c, const std::string &element,
                     const std::function<void(const std::vector<batch_row> &)> &check, uint8_t flag)
{
    constexpr uint32_t rows = 1030;
    const std::vector<batch_row> samples = sample_rows(c, std::vector<uint8_t>(rows, 1));
    for (const uint32_t row : {0U, 3U, 1023U, 1024U, rows - 1}) {
        std::vector<batch_row> batch = samples;
        batch[row] = {flag, element};
        check(batch);
    }
    check(std::vector<batch_row>(5, {flag, element}));
}

void expect_bad_elements(const row_cast &c, const std::vector<std::string> &elements)
{
    for (const std::string &element : elements) {
        at_several_rows(c, element, [&](const std::vector<batch_row> &rows) {
            for (const setup &how : all_setups())
                expect_batch(c, how, rows);
        });
        if (c.captures())
            expect_batch(c, few_setups()[1], std::vector<batch_row>(3, {1, element}),
                         {.capture = true, .count_before = 65534});
    }
    if (!c.captures())
        return;
    std::vector<batch_row> rows =
        sample_rows(c, flags_of(2100, [](uint32_t row) { return static_cast<uint8_t>(row % 5 == 2 ? 0 : 4); }));
    size_t bad = 0;
    for (const uint32_t row : {0U, 1U, 600U, 1023U, 1024U, 1025U, 1500U, 2048U, 2090U})
        rows[row] = {0x80, elements[bad++ % elements.size()]};
    for (const setup &how : all_setups())
        expect_batch(c, how, rows, {.capture = true});
}

} // namespace bcast::test
