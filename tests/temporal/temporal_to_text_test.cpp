// Temporal values as text, and a datetime as varchar: the services write the characters, and 0 is their failure.

#include "tests/support/settings.h"
#include "tests/temporal/rows.h"

#include <services/temporal.h>

namespace bcast::test {
namespace {

// How the characters of a record come about: the last of the calls writes them.
using writing = std::function<std::vector<service_call>(const std::string &record)>;

writing decoded(const char *decoder, const char *writer)
{
    return [=](const std::string &record) {
        const service_call decode = unpacks(decoder, record);
        return std::vector<service_call>{decode, writes_decoded(writer, made_by(decode, decoded_bytes))};
    };
}

writing zoned(int32_t type, int32_t digits)
{
    return [=](const std::string &record) { return std::vector<service_call>{writes_zoned(record, type, digits)}; };
}

row_outcome written(const row_input &input, const writing &write, std::string *text)
{
    row_outcome outcome;
    for (const service_call &call : write(input.image))
        outcome.steps.push_back({call});
    outcome.steps.back().failure = service_failure::is_to_char;
    *text = services().temporal.text_of(outcome.steps.back().call.bytes);
    return outcome;
}

row_cast rule(const char *name, any_cast cast)
{
    return {.name = name,
            .cast = cast,
            .to_bytes = sizeof(bdta3_str),
            .flags = row_flags::copied,
            .no_null_ahead = true,
            .failure_clears_flag = true,
            .samples = some_records(),
            .convert = {}};
}

row_cast to_text(const char *name, bcast_plain_fn *cast, const writing &write)
{
    row_cast c = rule(name, cast);
    c.convert = [=](const row_input &input) {
        std::string text;
        row_outcome outcome = written(input, write, &text);
        outcome.steps.push_back(
            {makes_constant(text, input.first ? fresh_value : kept_value), service_failure::passes_its_code});
        outcome.steps.push_back({assigns_constant(input.target, input.row, text)});
        outcome.steps.push_back({clears_value()});
        outcome.text = target_image::text{constant_of(text), 0};
        return outcome;
    };
    return c;
}

const writing of_datetime = decoded("vqdt_encode_fast", "vqdt_to_char");

row_cast to_varchar(int32_t length)
{
    row_cast c = rule("bcast_datetime_to_varchar_ex", bcast_datetime_to_varchar_ex);
    c.length = length;
    c.convert = [=](const row_input &input) {
        std::string text;
        row_outcome outcome = written(input, of_datetime, &text);
        if (length < static_cast<int32_t>(text.size())) {
            outcome.status = ERR_TARGET_TOO_SHORT;
            return outcome;
        }
        outcome.steps.push_back({assigns_text(input.target, input.row, text, 0)});
        outcome.text = target_image::text{text, 0};
        return outcome;
    };
    return c;
}

struct text_rule {
    row_cast cast;
    writing write;
};

std::vector<text_rule> text_rules()
{
    std::vector<text_rule> rules;
    const auto add = [&](const char *name, bcast_plain_fn *cast, const writing &write) {
        rules.push_back({to_text(name, cast, write), write});
    };
#define NAMED(cast) #cast, cast
    add(NAMED(bcast_date_to_text), decoded("vqdt_date_encode_fast", "vq_date_to_char"));
    add(NAMED(bcast_time_to_text), decoded("vqdt_time_encode_fast", "vq_time_to_char"));
    add(NAMED(bcast_datetime_to_text), of_datetime);
    add(NAMED(bcast_time_tz_to_text), zoned(TYPE_TIME_TZ, 0));
    add(NAMED(bcast_datetime_tz_to_text), zoned(TYPE_DATETIME_TZ, 6));
#undef NAMED
    return rules;
}

std::vector<row_cast> rules()
{
    std::vector<row_cast> all;
    for (const text_rule &r : text_rules())
        all.push_back(r.cast);
    all.push_back(to_varchar(20));
    return all;
}

void tell_text(const writing &write, const std::string &record, std::string text)
{
    services().temporal.texts[write(record).back().bytes] = std::move(text);
}

class temporal_to_text : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(temporal_to_text, present_rows_are_written_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(temporal_to_text, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

TEST_P(temporal_to_text, a_failure_stops_and_makes_the_row_null) { expect_stops(GetParam()); }

// Of the services that write, all results but 0 are good: the double returns -1 for a result of 1 that it is told.
TEST_P(temporal_to_text, a_negative_result_of_the_writer_is_a_success)
{
    for (const setup &how : few_setups())
        expect_batch(GetParam(), how, sample_rows(GetParam(), {1, 1}), {.results = {{0, 1}}});
}

INSTANTIATE_TEST_SUITE_P(casts, temporal_to_text, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Large objects -----------------------------------------------------------------

TEST(temporal_to_large_object, texts_of_all_lengths_that_there_is_room_for)
{
    for (const text_rule &r : text_rules()) {
        for (const size_t length : {0U, 1U, 4U, 5U, 6U, 48U, 49U, 255U, 256U, 502U, 503U}) {
            SCOPED_TRACE(std::to_string(length) + " characters");
            services().reset();
            tell_text(r.write, some_record(99), std::string(length, 't'));
            expect_element(r.cast, some_record(99));
        }
    }
}

TEST(temporal_to_large_object, an_outline_at_the_inline_bytes_changes_nothing)
{
    for (const text_rule &r : text_rules()) {
        services().reset();
        services().outline_stays_inline = true;
        for (const setup &how : few_setups())
            expect_batch(r.cast, how, sample_rows(r.cast, {1, 1, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1}));
    }
}

TEST(temporal_to_large_object, length_of_the_constant_is_the_working_value_s)
{
    for (const text_rule &r : text_rules()) {
        services().reset();
        tell_text(r.write, some_record(7), "12345678");
        services().length_of_constants = 50; // one less than it has
        source_column source(12, 1, few_setups().front());
        source.set_bytes(0, 1, some_record(7));
        target_column target(16, 1);
        EXPECT_EQ(call(r.cast.cast, {.src = source.sealed(), .dst = target.column(), .rows = 1}), 0) << r.cast.name;
        const service_call &assigned = services().log()[services().log().size() - 2];
        EXPECT_EQ(assigned.service, "bdta3_col_assign_bin");
        EXPECT_EQ(assigned.bytes, constant_of("1234567")) << r.cast.name;
    }
}

// ---- varchar -----------------------------------------------------------------------

TEST(datetime_to_varchar, a_text_longer_than_the_target_stops_and_is_never_cut)
{
    for (const int32_t mode : {0, 2, 3}) {
        const settings with_mode(mode);
        for (const int32_t size : {0, 1, 19, 20, 21, 26, 503}) {
            services().reset();
            tell_text(of_datetime, some_record(99), std::string(static_cast<size_t>(size), 'd'));
            for (const int32_t length : {size, size - 1, size + 1, 0, -1, INT32_MIN, INT32_MAX, 65536, 65536 + size,
                                         -65536 + size, 0x7FFF0000})
                for (const setup &how : few_setups()) {
                    const row_cast c = to_varchar(length);
                    SCOPED_TRACE(std::to_string(size) + " characters into " + std::to_string(length));
                    expect_batch(c, how, {{0x80, some_record(99)}, {1, some_record(99)}});
                }
        }
    }
}

TEST(datetime_to_varchar, a_text_too_long_stops_at_any_row)
{
    services().reset();
    tell_text(of_datetime, some_record(99), std::string(21, 'd'));
    const row_cast c = to_varchar(20);
    at_several_rows(c, some_record(99), [&](const std::vector<batch_row> &rows) {
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    });
}

} // namespace
} // namespace bcast::test
