// Text to dates, and to timestamps in the local time zone. Two casts hand a parser a copy of the text, two the text
// itself; two move the value to the caller's zone before the finishing step.

#include "tests/temporal/rows.h"

#include <services/temporal.h>

#include <algorithm>

namespace bcast::test {
namespace {

constexpr int16_t usual_zone = TZ_NO_SHIFT;

enum class parsing { of_a_copy, in_place };
enum class moving { not_at_all, to_local_zone };

struct reading {
    parsing parser;
    int32_t type; // for the parser that takes one
    moving move;
    temporal_arguments arguments;
};

std::string text_of(const bdta3_str &element) { return bytes_at(element.text, element.length); }

service_call parse_of(const bdta3_str &element, const reading &how)
{
    return how.parser == parsing::of_a_copy ? parses_date(element, how.arguments.parse_word, how.arguments.parse_ptr)
                                            : parses_datetime(element, how.type);
}

// A shift that fails goes unnoticed, and what it left is carried on.
void carry_on(row_outcome &outcome)
{
    outcome.steps.back() = {finishes(left_by_failure())};
    outcome.element = made_by(finishes(left_by_failure()));
}

row_outcome read(const row_input &input, const reading &how)
{
    const auto element = input.as<bdta3_str>();
    if (element.length == 0)
        return {.turns_null = true};
    if (how.parser == parsing::of_a_copy && static_cast<uint32_t>(element.length) >= BCAST_DATE_TEXT_LIMIT)
        return {.status = ERR_BAD_DATETIME};
    const service_call parse = parse_of(element, how);
    row_outcome outcome{.steps = {{parse, service_failure::passes_its_code}}, .behind_failure = carry_on};
    if (services().temporal.null_texts.contains(text_of(element))) {
        outcome.turns_null = true;
        return outcome;
    }
    std::string record = made_by(parse);
    if (how.move == moving::to_local_zone) {
        const int16_t zone = services().temporal.zone_of(record);
        outcome.steps.push_back({takes_zone(record)});
        if (zone != TZ_NO_SHIFT) {
            const service_call shift = shifts(record, int64_t{how.arguments.local_tz} - zone);
            outcome.steps.push_back({shift, service_failure::is_not_looked_at});
            record = made_by(shift);
        }
    }
    outcome.steps.push_back({finishes(record)});
    outcome.element = made_by(finishes(record));
    return outcome;
}

const std::vector<std::string> &samples()
{
    static const std::vector<std::string> elements = [] {
        std::vector<std::string> made;
        for (const char *text :
             {"2024-02-29", "1", "31.12.1999 23:59:59.999999 +14:00", " ", "not a date", "0001-01-01"})
            made.push_back(text_element(text));
        made.push_back(text_element(std::string_view("20\0 24", 6)));
        made.push_back(text_element(std::string(255, '7'), guard_edge::start));
        return made;
    }();
    return elements;
}

row_cast rule(const char *name, any_cast cast, row_flags flags, const reading &how)
{
    return {.name = name,
            .cast = cast,
            .to_bytes = sizeof(vqtime),
            .flags = flags,
            .no_null_ahead = true,
            .failure_clears_flag = false,
            .samples = samples(),
            .convert = [how](const row_input &input) { return read(input, how); },
            .null_element = element_of_length(5),
            .temporal = how.arguments};
}

#define NAMED(cast) #cast, cast

row_cast char_to_date(const temporal_arguments &arguments = {})
{
    return rule(NAMED(bcast_char_to_date_fast), row_flags::filled_when_no_null,
                {parsing::of_a_copy, 0, moving::not_at_all, arguments});
}

row_cast varchar2_to_date()
{
    return rule(NAMED(bcast_varchar2_to_date), row_flags::copied,
                {parsing::in_place, TYPE_DATE, moving::not_at_all, {}});
}

row_cast char_to_local_zone(const temporal_arguments &arguments)
{
    return rule(NAMED(bcast_char_to_tltz_fast), row_flags::filled_when_no_null,
                {parsing::of_a_copy, 0, moving::to_local_zone, arguments});
}

row_cast varchar_to_local_zone(const temporal_arguments &arguments)
{
    return rule(NAMED(bcast_varchar_to_timestamp_local_time_zone), row_flags::copied,
                {parsing::in_place, TYPE_DATETIME, moving::to_local_zone, arguments});
}

#undef NAMED

std::vector<row_cast> rules()
{
    return {char_to_date(), varchar2_to_date(), char_to_local_zone({.local_tz = usual_zone}),
            varchar_to_local_zone({.local_tz = usual_zone})};
}

std::vector<row_cast> rules_of_copies() { return {char_to_date(), char_to_local_zone({.local_tz = -60})}; }
std::vector<row_cast> rules_in_place() { return {varchar2_to_date(), varchar_to_local_zone({.local_tz = -60})}; }

class character_to_temporal : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(character_to_temporal, present_rows_are_parsed_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(character_to_temporal, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

TEST_P(character_to_temporal, a_failing_parser_stops_with_its_code) { expect_stops(GetParam()); }

TEST_P(character_to_temporal, failures_are_captured_and_the_last_is_the_status)
{
    if (GetParam().captures())
        expect_captures(GetParam());
    else
        EXPECT_STREQ(GetParam().name, "bcast_varchar2_to_date");
}

TEST_P(character_to_temporal, an_empty_text_is_null_and_clears_no_null)
{
    const row_cast &c = GetParam();
    at_several_rows(c, element_of_length(0), [&](const std::vector<batch_row> &rows) {
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    });
}

// A null row is none by its length.
TEST_P(character_to_temporal, an_empty_text_in_a_null_row_leaves_no_null_alone)
{
    row_cast c = GetParam();
    c.null_element = element_of_length(0);
    for (const setup &how : all_setups())
        if (how.no_null == 0 || c.flags == row_flags::copied)
            expect_batch(c, how, sample_rows(c, {1, 0, 1, 0, 0}));
}

TEST_P(character_to_temporal, a_text_that_denotes_no_value_is_null_and_clears_no_null)
{
    const row_cast &c = GetParam();
    services().temporal.null_texts = {"nothing at all"};
    at_several_rows(c, text_element("nothing at all"), [&](const std::vector<batch_row> &rows) {
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    });
}

TEST_P(character_to_temporal, rows_that_turn_null_do_not_change_the_status)
{
    const row_cast &c = GetParam();
    if (!c.captures())
        return;
    services().temporal.null_texts = {"nothing at all"};
    std::vector<batch_row> rows = sample_rows(c, {1, 1, 1, 1, 1, 1});
    rows[2].element = text_element("nothing at all");
    rows[3].element = element_of_length(0);
    rows[5].element = text_element("nothing at all");
    for (const setup &how : all_setups()) {
        expect_batch(c, how, rows, {.capture = true});
        expect_batch(c, how, rows, {.results = {{0, -4711}}, .capture = true});
    }
}

TEST_P(character_to_temporal, only_109_of_the_results_above_0_denotes_no_value)
{
    const row_cast &c = GetParam();
    for (const setup &how : few_setups())
        for (const int32_t result : {1, 14, 108, 110, 365, INT32_MAX})
            expect_batch(c, how, sample_rows(c, {1, 1, 1}), {.results = {{0, result}}});
}

INSTANTIATE_TEST_SUITE_P(casts, character_to_temporal, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Length ------------------------------------------------------------------------

TEST(character_to_temporal_length, copies_are_of_up_to_255_bytes_and_longer_texts_fail_ahead_of_the_parser)
{
    services().reset();
    for (const row_cast &c : rules_of_copies()) {
        for (const uint32_t length : {1U, 2U, 127U, 128U, 254U, 255U})
            expect_element(c, text_element(std::string(length, 'x')));
        for (const int32_t length : {256, 257, 511, 512, 32768, 65535, 65536, 65537, 65536 + 255, INT32_MAX, -1, -255,
                                     INT32_MIN, INT32_MIN + 10})
            expect_element(c, element_of_length(length));
    }
}

// No byte before or behind a text is read, whichever way it is copied.
TEST(character_to_temporal_length, copies_of_every_length_keep_to_the_text)
{
    services().reset();
    std::string text;
    for (const row_cast &c : rules_of_copies()) {
        for (const guard_edge edge : {guard_edge::start, guard_edge::end}) {
            std::vector<batch_row> rows;
            for (text = "a"; text.size() < 256; text += static_cast<char>('!' + text.size() % 90))
                rows.push_back({1, text_element(text, edge)});
            for (const setup &how : few_setups())
                expect_batch(c, how, rows);
            std::ranges::reverse(rows);
            expect_batch(c, few_setups().front(), rows);
        }
    }
}

TEST(character_to_temporal_length, an_overlong_text_fails_like_a_bad_one)
{
    services().reset();
    for (const row_cast &c : rules_of_copies()) {
        at_several_rows(c, element_of_length(256), [&](const std::vector<batch_row> &rows) {
            for (const setup &how : all_setups()) {
                expect_batch(c, how, rows);
                expect_batch(c, how, rows, {.capture = true, .count_before = 65534});
                expect_batch(c, how, rows, {.results = {{1, -4711}}, .capture = true});
            }
        });
    }
}

TEST(character_to_temporal_length, texts_that_are_parsed_in_place_may_be_of_any_length)
{
    services().reset();
    for (const row_cast &c : rules_in_place()) {
        for (const uint32_t length : {1U, 255U, 256U, 257U, 4096U, 65535U, 65536U, 70000U})
            expect_element(c, text_element(std::string(length, 'x')));
        for (const int32_t length : {-1, INT32_MIN, INT32_MAX})
            expect_element(c, element_of_length(length));
    }
}

TEST(character_to_temporal_length, a_short_text_behind_a_long_one_has_its_own_end)
{
    services().reset();
    for (const row_cast &c : rules())
        for (const setup &how : all_setups())
            expect_batch(c, how, {{1, text_element(std::string(255, '9'))}, {1, text_element("12")}});
}

// ---- What the parser gets of the caller ----------------------------------------------

TEST(character_to_temporal_arguments, parse_word_and_parse_ptr_are_handed_on)
{
    services().reset();
    void *const nowhere = reinterpret_cast<void *>(UINTPTR_MAX);
    const std::pair<uint16_t, void *> arguments[] = {
        {0, nullptr}, {1, nowhere}, {0x8000, inaccessible()}, {0xFFFF, nowhere}};
    for (const auto &[parse_word, parse_ptr] : arguments) {
        const temporal_arguments handed{.parse_word = parse_word, .parse_ptr = parse_ptr, .local_tz = 5};
        expect_element(char_to_date(handed), text_element("2000"));
        expect_element(char_to_local_zone(handed), text_element("2000"));
    }
}

// ---- The local zone ------------------------------------------------------------------

void tell_zone(const row_cast &c, const std::string &element, int16_t zone)
{
    const bool copies = c.flags == row_flags::filled_when_no_null;
    const reading how{copies ? parsing::of_a_copy : parsing::in_place, TYPE_DATETIME, moving::to_local_zone,
                      c.temporal};
    bdta3_str text;
    std::memcpy(&text, element.data(), sizeof text);
    services().temporal.zones[made_by(parse_of(text, how))] = zone;
}

TEST(text_to_local_zone, a_value_is_moved_unless_its_own_zone_is_that_of_no_shift)
{
    const std::string element = text_element("2024-03-01 12:00");
    for (const int16_t local :
         std::initializer_list<int16_t>{0, TZ_NO_SHIFT, -TZ_NO_SHIFT, 60, 840, INT16_MAX, INT16_MIN}) {
        for (const row_cast &c :
             {char_to_local_zone({.local_tz = local}), varchar_to_local_zone({.local_tz = local})}) {
            for (const int zone : {TZ_NO_SHIFT + 0, TZ_NO_SHIFT - 1, TZ_NO_SHIFT + 1, -TZ_NO_SHIFT, 0, 60, -1, 840,
                                   -720, 32767, -32768, local + 0}) {
                SCOPED_TRACE("zone " + std::to_string(zone) + " to " + std::to_string(local));
                services().reset();
                tell_zone(c, element, static_cast<int16_t>(zone));
                expect_element(c, element);
            }
        }
    }
}

TEST(text_to_local_zone, a_shift_that_fails_is_no_failure)
{
    services().reset();
    for (const row_cast &c : {char_to_local_zone({.local_tz = 60}), varchar_to_local_zone({.local_tz = 60})}) {
        const std::vector<batch_row> rows = sample_rows(c, {1, 1, 0, 1});
        for (const setup &how : all_setups())
            for (const bool capture : {false, true})
                expect_batch(c, how, rows, {.results = {{1, -77}, {3, INT32_MIN}, {5, 109}}, .capture = capture});
    }
}

TEST(text_to_local_zone, by_hand)
{
    const std::string element = text_element("20240301");
    const row_cast c = varchar_to_local_zone({.local_tz = TZ_NO_SHIFT});
    services().reset();
    tell_zone(c, element, 60);
    source_column source(16, 1, few_setups().front());
    source.set_bytes(0, 1, element);
    target_column target(12, 1);
    EXPECT_EQ(bcast_varchar_to_timestamp_local_time_zone(env(), heap(), source.sealed(), target.column(), 1, nullptr,
                                                         nullptr, TZ_NO_SHIFT),
              0);
    ASSERT_EQ(services().log().size(), 4U);
    EXPECT_EQ(services().log()[2].service, "vqtime_add_by_fmt");
    EXPECT_EQ(services().log()[2].number, 420);
    EXPECT_EQ(services().log()[2].length, 5);
}

} // namespace
} // namespace bcast::test
