// Text to intervals, and intervals to text.

#include "tests/support/settings.h"
#include "tests/temporal/rows.h"

namespace bcast::test {
namespace {

constexpr uint16_t usual_word =
    BCAST_IV_WORD(IV_YEAR_TO_MONTH, 2, 6); // of several fields: a parser gets it as any other

// ---- Text to intervals -----------------------------------------------------------------

constexpr std::string_view blanks = " \t\n\r\a";

// What the parser gets to see of an element: its text, or "0" where there are as many blanks in a row as it is long.
std::string staged(const bdta3_str &element)
{
    int32_t leading = 0;
    while (blanks.find(element.text[leading]) != std::string_view::npos)
        leading++;
    if (leading == element.length)
        return "0";
    const std::string text = bytes_at(element.text, element.length);
    return text.substr(0, text.find('\0'));
}

template <class Interval> row_cast from_text(const char *name, bcast_scaled_capture_fn *cast, uint16_t word)
{
    const auto convert = [word](const row_input &input) -> row_outcome {
        const auto element = input.as<bdta3_str>();
        if (element.length == 0)
            return {.turns_null = true};
        const service_call parse = parses_interval<Interval>(staged(element), word);
        // One of the four loops of one cast has a code of its own.
        const bool own_code =
            sizeof(Interval) == sizeof(ivdt) && input.how.selected == selection::none && input.how.no_null == 0;
        return {.steps = {{parse, own_code ? service_failure::is_bad_interval : service_failure::passes_its_code}},
                .element = made_by(parse, sizeof(Interval))};
    };
    row_cast c{.name = name,
               .cast = cast,
               .to_bytes = sizeof(Interval),
               .flags = row_flags::filled_when_no_null,
               .no_null_ahead = false,
               .failure_clears_flag = false,
               .samples = {},
               .convert = convert,
               .null_element = element_of_length(3),
               .temporal = {.src_prec = 0xAAAA, .src_scale = 0x0C0C, .dst_prec = 0xBBBB, .dst_scale = word},
               .no_null_stays = true};
    static const std::vector<std::string> samples = [] {
        std::vector<std::string> made;
        for (const char *text : {"12-3", "5", "  7 00:00:01", "-1", "\v", "\f", "x  ", "no interval", "\v "})
            made.push_back(text_element(text));
        return made;
    }();
    c.samples = samples;
    return c;
}

std::vector<row_cast> text_rules(uint16_t word = usual_word)
{
#define NAMED(cast) #cast, cast
    return {
        from_text<ivym>(NAMED(bcast_char_to_ivym), word),     from_text<ivym>(NAMED(bcast_varchar_to_ivym), word),
        from_text<ivym>(NAMED(bcast_varchar2_to_ivym), word), from_text<ivdt>(NAMED(bcast_char_to_ivdt), word),
        from_text<ivdt>(NAMED(bcast_varchar_to_ivdt), word),  from_text<ivdt>(NAMED(bcast_varchar2_to_ivdt), word),
    };
}

// An element of the first bytes of a text, of which more can be read.
std::string element_within(const std::string &text, size_t length)
{
    const std::string whole = text_element(text);
    bdta3_str element;
    std::memcpy(&element, whole.data(), sizeof element);
    element.length = static_cast<int32_t>(length);
    return image_of(element);
}

class text_to_interval : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(text_to_interval, present_rows_are_parsed_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(text_to_interval, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

TEST_P(text_to_interval, a_failing_parser_stops) { expect_stops(GetParam()); }

TEST_P(text_to_interval, failures_are_captured_and_the_last_is_the_status) { expect_captures(GetParam()); }

TEST_P(text_to_interval, an_empty_text_is_null_and_clears_a_no_null_that_is_kept_else)
{
    const row_cast &c = GetParam();
    at_several_rows(c, element_of_length(0), [&](const std::vector<batch_row> &rows) {
        for (const setup &how : all_setups())
            for (const bool capture : {false, true})
                expect_batch(c, how, rows, {.capture = capture});
    });
}

TEST_P(text_to_interval, an_empty_text_in_a_null_row_leaves_no_null_alone)
{
    row_cast c = GetParam();
    c.null_element = element_of_length(0);
    for (const setup &how : all_setups())
        if (how.no_null == 0)
            expect_batch(c, how, sample_rows(c, {1, 0, 1, 0, 0}));
}

TEST_P(text_to_interval, a_positive_result_is_a_success)
{
    for (const setup &how : few_setups())
        expect_batch(GetParam(), how, sample_rows(GetParam(), {1, 1, 1}), {.results = {{0, 109}, {2, 1}}});
}

TEST_P(text_to_interval, a_text_of_blanks_is_0)
{
    for (const std::string text : {" ", "   ", "\t", "\n", "\r", "\a", " \t\n\r\a ", "\a\a\a\a\a\a\a\a\a"}) {
        expect_element(GetParam(), element_within(text + "x", text.size()));
        expect_element(GetParam(), element_within(text + '\0', text.size()));
        expect_element(GetParam(), element_within(text + '\v', text.size()));
    }
}

TEST_P(text_to_interval, other_bytes_are_no_blanks)
{
    for (int byte = 0; byte < 256; byte++) {
        SCOPED_TRACE("byte " + std::to_string(byte));
        const auto c = static_cast<char>(byte);
        expect_element(GetParam(), element_within(std::string(1, c) + "x", 1));
        expect_element(GetParam(), element_within(std::string("  ") + c + "x", 3));
    }
}

TEST_P(text_to_interval, blanks_that_go_on_behind_the_text_are_counted_with_it)
{
    for (const std::string text : {"   ", "  \t", " \a\n\r\t   "})
        for (size_t length = 1; length <= text.size(); length++)
            expect_element(GetParam(), element_within(text + "x", length));
}

TEST_P(text_to_interval, a_text_ends_at_a_nul_and_the_rest_of_its_length_is_zeros)
{
    services().temporal.staged_bytes = 8;
    row_cast c = GetParam();
    const auto usual = c.convert;
    c.convert = [usual](const row_input &input) {
        row_outcome outcome = usual(input);
        outcome.steps[0].call.bytes.resize(8);
        outcome.element = made_by(outcome.steps[0].call, outcome.element.size());
        return outcome;
    };
    c.samples = {text_element(std::string_view("12\0 345", 7)), text_element(std::string_view("\0abcdef", 7)),
                 text_element("1234567"), text_element(std::string_view("  \0\0\0\0z", 7))};
    for (const setup &how : all_setups())
        expect_batch(c, how, sample_rows(c, {1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST_P(text_to_interval, texts_up_to_the_whole_buffer)
{
    for (const size_t length : {255U, 256U, 503U, 504U, 4095U, 4096U, 32766U, 32767U}) {
        SCOPED_TRACE(std::to_string(length) + " bytes");
        expect_element(GetParam(), text_element(std::string(length, '8')));
        expect_element(GetParam(), text_element(std::string(length - 1, ' ') + "8"));
    }
}

TEST_P(text_to_interval, a_short_text_behind_a_long_one_has_its_own_end)
{
    for (const setup &how : all_setups())
        expect_batch(GetParam(), how,
                     {{1, text_element(std::string(600, '9'))},
                      {1, text_element("12")},
                      {1, element_within("  x", 2)},
                      {1, text_element("3")}});
}

INSTANTIATE_TEST_SUITE_P(casts, text_to_interval, testing::ValuesIn(text_rules()),
                         [](const auto &each) { return std::string(each.param.name); });

TEST(text_to_interval_word, goes_to_the_parser_as_it_is)
{
    services().reset();
    for (const uint16_t word : std::initializer_list<uint16_t>{0, 1, 0x0100, 0x0C06, 0x7FFF, 0x8000, 0xFFFF})
        for (const row_cast &c : text_rules(word))
            expect_element(c, text_element("12"));
}

TEST(text_to_interval_code, is_the_parser_s_but_in_one_loop)
{
    const auto status_of = [](bcast_scaled_capture_fn *cast, const setup &how, int32_t *code) {
        services().reset();
        services().fail_call(0, -4711);
        source_column source(16, 1, how);
        source.set_bytes(0, 1, text_element("bad"));
        target_column target(24, 1);
        uint16_t count = 0;
        return cast(env(), heap(), source.sealed(), target.column(), 1, 0, 0, 0, 0x0C06, code, &count);
    };
    const setup plain{selection::none, 0, guard_edge::end}, no_nulls{selection::none, 1, guard_edge::end},
        selected{selection::reversed, 0, guard_edge::end}, both{selection::reversed, 1, guard_edge::end};
    for (bcast_scaled_capture_fn *cast : {bcast_char_to_ivdt, bcast_varchar_to_ivdt, bcast_varchar2_to_ivdt}) {
        EXPECT_EQ(status_of(cast, plain, nullptr), -6115);
        int32_t code = 0;
        EXPECT_EQ(status_of(cast, plain, &code), -6115);
        EXPECT_EQ(code, -6115);
        EXPECT_EQ(status_of(cast, no_nulls, nullptr), -4711);
        EXPECT_EQ(status_of(cast, selected, nullptr), -4711);
        EXPECT_EQ(status_of(cast, both, nullptr), -4711);
    }
    for (const setup &how : {plain, no_nulls, selected, both})
        EXPECT_EQ(status_of(bcast_char_to_ivym, how, nullptr), -4711);
}

// ---- Intervals to text -----------------------------------------------------------------

enum class padding { rest_of_length, nothing };

int32_t mode_of_test = 0;

template <class Interval>
row_cast to_text(const char *name, bcast_scaled_text_fn *cast, padding pad, uint16_t length, uint16_t word)
{
    const auto convert = [=](const row_input &input) {
        const std::string text = services().temporal.text_of(input.image);
        row_outcome outcome{.steps = {{writes_interval<Interval>(input.image, word), service_failure::is_to_char}}};
        const bool fits = text.size() <= length;
        if (!fits && mode_of_test != BCAST_MODE_CUT_INTERVALS) {
            outcome.status = ERR_TARGET_TOO_SHORT;
            return outcome;
        }
        const std::string stored = text.substr(0, length);
        const auto rest = static_cast<int32_t>(length - stored.size());
        const int32_t pad_len = fits && pad == padding::rest_of_length ? rest : 0;
        outcome.steps.push_back({assigns_text(input.target, input.row, stored, pad_len)});
        outcome.text = {stored, pad_len};
        return outcome;
    };
    return {.name = name,
            .cast = cast,
            .to_bytes = sizeof(bdta3_str),
            .flags = row_flags::copied,
            .no_null_ahead = true,
            .failure_clears_flag = true,
            .samples = some_records(sizeof(Interval)),
            .convert = convert,
            .temporal = {.src_prec = 0xAAAA, .src_scale = word, .dst_prec = length, .dst_scale = 0xBBBB}};
}

std::vector<row_cast> to_text_rules(uint16_t length, uint16_t word = usual_word)
{
    using enum padding;
    return {
        to_text<ivym>(NAMED(bcast_iv_ym_to_char), rest_of_length, length, word),
        to_text<ivym>(NAMED(bcast_iv_ym_to_varchar2), rest_of_length, length, word),
        to_text<ivym>(NAMED(bcast_iv_ym_to_varchar), nothing, length, word),
        to_text<ivdt>(NAMED(bcast_iv_dt_to_char), rest_of_length, length, word),
        to_text<ivdt>(NAMED(bcast_iv_dt_to_varchar2), rest_of_length, length, word),
        to_text<ivdt>(NAMED(bcast_iv_dt_to_varchar), nothing, length, word),
    };
#undef NAMED
}

// A record that no sample is, of the width that the cast takes.
std::string told_record(const row_cast &c, std::string text)
{
    const std::string record = some_record(99, c.from_bytes());
    services().temporal.texts[record] = std::move(text);
    return record;
}

class interval_to_text : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override
    {
        services().reset();
        mode_of_test = 0;
    }
};

TEST_P(interval_to_text, present_rows_are_written_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(interval_to_text, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

TEST_P(interval_to_text, a_failure_stops_and_makes_the_row_null) { expect_stops(GetParam()); }

TEST_P(interval_to_text, a_text_too_long_stops_at_any_row)
{
    const row_cast &c = GetParam();
    at_several_rows(c, told_record(c, std::string(21, 't')), [&](const std::vector<batch_row> &rows) {
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    });
}

INSTANTIATE_TEST_SUITE_P(casts, interval_to_text, testing::ValuesIn(to_text_rules(20)),
                         [](const auto &each) { return std::string(each.param.name); });

TEST(interval_to_text_length, a_text_that_is_too_long_is_cut_in_one_mode_only)
{
    services().reset();
    for (const int32_t mode : {0, 1, 2, BCAST_MODE_CUT_INTERVALS + 0, 4, -3, 0x103}) {
        mode_of_test = mode;
        const settings with_mode(mode, 3);
        for (const size_t size : {0U, 1U, 9U, 10U, 11U, 255U, 256U, 502U, 503U}) {
            for (const size_t length :
                 {size, size + 1, size - 1, size_t{0}, size_t{10}, size_t{32768}, size_t{65535}}) {
                if (length > 65535)
                    continue;
                for (const row_cast &c : to_text_rules(static_cast<uint16_t>(length))) {
                    SCOPED_TRACE("mode " + std::to_string(mode) + ", " + std::to_string(size) + " characters into " +
                                 std::to_string(length));
                    const std::string record = told_record(c, std::string(size, 't'));
                    for (const setup &how : few_setups())
                        expect_batch(c, how, {{0x80, record}, {0, record}, {1, record}});
                }
            }
        }
    }
    mode_of_test = 0;
}

// The second setting has no say.
TEST(interval_to_text_length, only_the_first_setting_counts)
{
    services().reset();
    const settings with_mode(0, 3);
    for (const row_cast &c : to_text_rules(4))
        expect_element(c, told_record(c, "12345"));
}

TEST(interval_to_text_length, the_mode_is_read_where_a_text_is_too_long)
{
    for (row_cast c : to_text_rules(4)) {
        services().reset();
        const settings plain(0);
        const std::string record = told_record(c, "12345");
        c.samples = {record};
        // From the third text on, texts are cut.
        size_t texts = 0;
        services().temporal.texts[some_record(98, c.from_bytes())] = "123";
        services().temporal.on_text = [&] {
            if (++texts == 3)
                bcast_dll_var_init(BCAST_MODE_CUT_INTERVALS, 0);
        };
        mode_of_test = BCAST_MODE_CUT_INTERVALS; // the texts before the third fit
        const std::string fitting = some_record(98, c.from_bytes());
        expect_batch(c, few_setups().front(), {{1, fitting}, {1, fitting}, {1, record}, {1, fitting}, {1, record}});
        mode_of_test = 0;
    }
}

TEST(interval_to_text_word, of_the_source_goes_to_the_service)
{
    services().reset();
    for (const uint16_t word : std::initializer_list<uint16_t>{0, 1, 0x0100, 0x0C06, 0x7FFF, 0x8000, 0xFFFF})
        for (const row_cast &c : to_text_rules(20, word))
            expect_element(c, c.samples[2]);
}

TEST(interval_to_text_by_hand, char_keeps_the_padding_and_varchar_has_none)
{
    const auto pad_of = [](bcast_scaled_text_fn *cast) {
        services().reset();
        source_column source(12, 1, few_setups().front());
        const ivym interval{3, 4, 0x0126};
        services().temporal.texts[image_of(interval)] = "3-4";
        source.set(0, 1, interval);
        target_column target(16, 1);
        EXPECT_EQ(cast(env(), heap(), source.sealed(), target.column(), 1, 0, 0x0126, 10), 0);
        return services().log().back().pad;
    };
    EXPECT_EQ(pad_of(bcast_iv_ym_to_char), 7);
    EXPECT_EQ(pad_of(bcast_iv_ym_to_varchar2), 7);
    EXPECT_EQ(pad_of(bcast_iv_ym_to_varchar), 0);
}

} // namespace
} // namespace bcast::test
