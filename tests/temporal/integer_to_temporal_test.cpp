// Integers to date, time and datetime: a service converts the number, and the record goes to the target as it is.

#include "tests/temporal/rows.h"

#include <limits>

namespace bcast::test {
namespace {

using making = service_call(int64_t number);

template <class Source> row_cast rule(const char *name, bcast_plain_fn *cast, making *make)
{
    row_cast c{.name = name,
               .cast = cast,
               .to_bytes = sizeof(vqtime),
               .flags = row_flags::copied,
               .no_null_ahead = false,
               .failure_clears_flag = false,
               .samples = {},
               .convert = [make](const row_input &input) {
                   const service_call call = make(input.as<Source>());
                   return row_outcome{.steps = {{call, service_failure::passes_its_code}}, .element = made_by(call)};
               }};
    using limits = std::numeric_limits<Source>;
    for (const Source sample : {Source{-1}, Source{0}, Source{20240229}, limits::min(), limits::max(), Source{127},
                                Source{-128}, Source{235959}, Source{70000}})
        c.samples.push_back(image_of(sample));
    return c;
}

std::vector<row_cast> rules()
{
#define NAMED(cast) #cast, cast
    return {
        rule<int32_t>(NAMED(bcast_tinyint_to_date), makes_date_of),
        rule<int32_t>(NAMED(bcast_smallint_to_date), makes_date_of),
        rule<int32_t>(NAMED(bcast_int_to_date), makes_date_of),
        rule<int64_t>(NAMED(bcast_int64_to_date), makes_date_of),
        rule<int32_t>(NAMED(bcast_tinyint_to_time), makes_time_of),
        rule<int32_t>(NAMED(bcast_smallint_to_time), makes_time_of),
        rule<int32_t>(NAMED(bcast_int_to_time), makes_time_of),
        rule<int64_t>(NAMED(bcast_int64_to_time), makes_time_of),
        rule<int32_t>(NAMED(bcast_tinyint_to_datetime), makes_time_of),
        rule<int32_t>(NAMED(bcast_smallint_to_datetime), makes_time_of),
        rule<int32_t>(NAMED(bcast_int_to_datetime), makes_time_of),
        rule<int64_t>(NAMED(bcast_int64_to_datetime), makes_time_of),
    };
#undef NAMED
}

class integer_to_temporal : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(integer_to_temporal, present_rows_are_converted_and_null_rows_left_out)
{
    expect_rows_and_null_rows(GetParam());
}

TEST_P(integer_to_temporal, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

TEST_P(integer_to_temporal, a_failure_of_the_service_stops_with_its_code) { expect_stops(GetParam()); }

// A positive result has no meaning here, whatever it has for text.
TEST_P(integer_to_temporal, a_positive_result_is_a_success)
{
    for (const setup &how : few_setups())
        expect_batch(GetParam(), how, sample_rows(GetParam(), {1, 1, 1}), {.results = {{0, 109}, {2, 109}}});
}

INSTANTIATE_TEST_SUITE_P(casts, integer_to_temporal, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

} // namespace
} // namespace bcast::test
