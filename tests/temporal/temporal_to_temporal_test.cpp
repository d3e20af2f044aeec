// Dates, times and datetimes among each other at the precision that they have: copies of 12 bytes, two of them with a
// step behind.

#include "tests/temporal/rows.h"

#include <services/temporal.h>

namespace bcast::test {
namespace {

constexpr uint16_t usual_zone = 0xFE98; // -360

using step_behind = std::function<std::optional<service_call>(const std::string &record)>;

row_cast rule(const char *name, bcast_plain_fn *cast, const step_behind &step)
{
    return {.name = name,
            .cast = cast,
            .to_bytes = sizeof(vqtime),
            .flags = row_flags::copied,
            .no_null_ahead = false,
            .failure_clears_flag = false,
            .samples = some_records(),
            .convert = [step](const row_input &input) {
                const std::optional<service_call> call = step(input.image);
                if (!call)
                    return row_outcome{.element = input.image};
                return row_outcome{.steps = {{*call}}, .element = made_by(*call)};
            }};
}

#define NAMED(cast) #cast, cast

std::vector<row_cast> copies()
{
    const auto nothing = [](const std::string &) { return std::nullopt; };
    return {rule(NAMED(bcast_date_to_date), nothing), rule(NAMED(bcast_date_to_time), nothing),
            rule(NAMED(bcast_date_to_datetime), nothing), rule(NAMED(bcast_datetime_tz_to_date), nothing)};
}

// The zone is handed over as an unsigned number.
row_cast with_zone(uint16_t zone)
{
    row_cast c =
        rule(NAMED(bcast_date_to_datetime_tz), [zone](const std::string &record) { return sets_zone(record, zone); });
    c.zone = zone;
    return c;
}

row_cast datetime_to_date()
{
    return rule(NAMED(bcast_datetime_to_date), [](const std::string &record) { return resets(record, TYPE_DATE); });
}

#undef NAMED

std::vector<row_cast> rules()
{
    std::vector<row_cast> all = copies();
    all.push_back(datetime_to_date());
    all.push_back(with_zone(usual_zone));
    return all;
}

class temporal_to_temporal : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(temporal_to_temporal, present_rows_are_converted_and_null_rows_left_out)
{
    expect_rows_and_null_rows(GetParam());
}

TEST_P(temporal_to_temporal, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

// Rows may go several at a time: nulls at every place of four rows, and ends at every place.
TEST_P(temporal_to_temporal, null_rows_at_every_place_of_four)
{
    const row_cast &c = GetParam();
    for (const setup &how : all_setups()) {
        for (uint32_t nulls = 0; nulls < 16; nulls++) {
            for (const uint32_t rows : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 9U, 1024U, 1025U, 1026U, 1027U, 1029U}) {
                std::vector<uint8_t> flags(rows);
                for (uint32_t row = 0; row < rows; row++)
                    flags[row] = (nulls >> row % 4 & 1) != 0 ? uint8_t{0} : static_cast<uint8_t>(1 + row % 255);
                expect_batch(c, how, sample_rows(c, flags));
            }
        }
    }
}

TEST_P(temporal_to_temporal, one_null_row_or_one_present_row_in_a_long_batch)
{
    const row_cast &c = GetParam();
    for (const setup &how : few_setups()) {
        for (const uint32_t row : {0U, 1U, 2U, 3U, 1020U, 1021U, 1022U, 1023U, 1024U, 1025U, 1026U, 1027U, 2050U}) {
            std::vector<uint8_t> flags(2051, 0x80);
            flags[row] = 0;
            expect_batch(c, how, sample_rows(c, flags));
            flags.assign(2051, 0);
            flags[row] = 0x80;
            expect_batch(c, how, sample_rows(c, flags));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, temporal_to_temporal, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

TEST(date_to_datetime_tz, takes_the_first_16_bits_of_heap_as_an_unsigned_zone)
{
    services().reset();
    for (const uint16_t zone : std::initializer_list<uint16_t>{0, 60, TZ_NO_SHIFT, 0x7FFF, 0x8000, 0xFD30, 0xFFFF}) {
        SCOPED_TRACE("zone " + std::to_string(zone));
        expect_element(with_zone(zone), some_record(77));
    }
}

// As the other copies have it: bytes without a meaning for the target stay.
TEST(temporal_copies, keep_every_byte)
{
    services().reset();
    for (const row_cast &c : copies())
        for (const std::string &record : {std::string(12, '\0'), std::string(12, '\xFF'), std::string("0123456789AB")})
            expect_element(c, record);
}

} // namespace
} // namespace bcast::test
