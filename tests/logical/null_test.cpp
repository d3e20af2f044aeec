// Casts to and from null: the rows of the target turn null, and nothing is looked at for it.

#include "tests/support/row_cast.h"

#include <algorithm>
#include <string_view>

namespace bcast::test {
namespace {

enum class null_mark { cleared, kept }; // the target's no_null

struct null_rule {
    const char *name;
    any_cast cast;
    null_mark no_null = null_mark::cleared;
};

void PrintTo(const null_rule &r, std::ostream *out) { *out << r.name; }

#define NAMED(cast) #cast, cast
const null_rule null_rules[] = {
    {NAMED(bcast_char_to_null)},
    {NAMED(bcast_varchar_to_null)},
    {NAMED(bcast_varchar2_to_null)},
    {NAMED(bcast_tinyint_to_null)},
    {NAMED(bcast_smallint_to_null)},
    {NAMED(bcast_int_to_null)},
    {NAMED(bcast_int64_to_null)},
    {NAMED(bcast_float_to_null)},
    {NAMED(bcast_double_to_null)},
    {NAMED(bcast_dec_to_null)},
    {NAMED(bcast_bit_to_null)},
    {NAMED(bcast_boolean_to_null)},
    {NAMED(bcast_null_to_null)},
    {NAMED(bcast_binary_to_null)},
    {NAMED(bcast_varbinary_to_null)},
    {NAMED(bcast_text_to_null)},
    {NAMED(bcast_blob_to_null)},
    {NAMED(bcast_date_to_null)},
    {NAMED(bcast_datetime_to_null)},
    {NAMED(bcast_time_tz_to_null)},
    {NAMED(bcast_iv_ym_to_null)},
    {NAMED(bcast_iv_dt_to_null)},
    {NAMED(bcast_time_to_null), null_mark::kept},
    {NAMED(bcast_datetime_tz_to_null), null_mark::kept},
    {NAMED(bcast_null_to_char)},
    {NAMED(bcast_null_to_varchar)},
    {NAMED(bcast_null_to_varchar2)},
    {NAMED(bcast_null_to_binary)},
    {NAMED(bcast_null_to_varbinary)},
    {NAMED(bcast_null_to_text)},
    {NAMED(bcast_null_to_blob)},
    {NAMED(bcast_null_to_dec)},
    {NAMED(bcast_null_to_int)},
    {NAMED(bcast_null_to_tinyint)},
    {NAMED(bcast_null_to_smallint)},
    {NAMED(bcast_null_to_int64)},
    {NAMED(bcast_null_to_float)},
    {NAMED(bcast_null_to_double)},
    {NAMED(bcast_null_to_bit)},
    {NAMED(bcast_null_to_date)},
    {NAMED(bcast_null_to_time)},
    {NAMED(bcast_null_to_time_tz)},
    {NAMED(bcast_null_to_datetime)},
    {NAMED(bcast_null_to_datetime_tz)},
    {NAMED(bcast_null_to_ivym)},
    {NAMED(bcast_null_to_ivdt)},
};
#undef NAMED

constexpr size_t widest_element = 30;

row_cast cast_of(const null_rule &r)
{
    return {.name = r.name,
            .cast = r.cast,
            .to_bytes = widest_element,
            .flags = row_flags::cleared,
            .no_null_ahead = false,
            .failure_clears_flag = false,
            .samples = {std::string(1, '\x55')}, // nobody looks at it
            .convert = {},                       // no row is
            .length = 10,
            .no_null_stays = r.no_null == null_mark::kept,
            .reads = source_reading::nothing};
}

class null_cast : public testing::TestWithParam<null_rule> {
protected:
    void SetUp() override { services().reset(); }
    static std::vector<batch_row> present_rows(uint32_t rows)
    {
        return sample_rows(cast_of(GetParam()), std::vector<uint8_t>(rows, 1));
    }
};

TEST_P(null_cast, every_row_turns_null_whatever_the_source_is)
{
    row_cast c = cast_of(GetParam());
    c.reads = source_reading::everything;
    for (const uint32_t row_count : {0U, 1U, 2U, 7U, 33U, 1024U, 1025U, 65535U}) {
        const std::vector<batch_row> rows = present_rows(row_count);
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    }
}

TEST_P(null_cast, the_source_is_not_read)
{
    const row_cast c = cast_of(GetParam());
    for (const uint32_t row_count : {0U, 1U, 100U, 65535U}) {
        const std::vector<batch_row> rows = present_rows(row_count);
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    }
}

TEST_P(null_cast, the_length_plays_no_part)
{
    row_cast c = cast_of(GetParam());
    for (const int32_t length : {0, -1, 1, 0x10000, INT32_MIN, INT32_MAX}) {
        SCOPED_TRACE("length " + std::to_string(length));
        c.length = length;
        expect_batch(c, few_setups().front(), present_rows(5));
    }
}

TEST_P(null_cast, what_no_null_held_before_is_kept_by_two_casts_only)
{
    for (const int32_t before : {0, 1, -1, 0x10000}) {
        setup how = few_setups().front();
        how.no_null_before = before;
        for (const uint32_t row_count : {0U, 3U})
            expect_batch(cast_of(GetParam()), how, present_rows(row_count));
    }
}

TEST_P(null_cast, only_the_low_16_bits_of_rows_count) { expect_row_counts(cast_of(GetParam())); }

INSTANTIATE_TEST_SUITE_P(casts, null_cast, testing::ValuesIn(null_rules),
                         [](const auto &each) { return std::string(each.param.name); });

TEST(null_casts, are_all_in_the_table)
{
    const auto name_of = [](const null_rule &r) { return std::string_view(r.name); };
    for (const catalogue::cast &c : catalogue::casts()) {
        const bool of_null = (c.source == BCAST_NULL || c.target == BCAST_NULL) && c.target != BCAST_BOOLEAN;
        EXPECT_EQ(std::ranges::count(null_rules, c.name, name_of), of_null) << c.name;
    }
}

TEST(null_casts, share_a_body_where_they_are_aliases)
{
    const std::pair<bcast_plain_fn *, bcast_plain_fn *> plain_aliases[] = {
        {bcast_varchar2_to_null, bcast_varchar_to_null}, {bcast_null_to_tinyint, bcast_null_to_int},
        {bcast_null_to_smallint, bcast_null_to_int},     {bcast_null_to_time, bcast_null_to_date},
        {bcast_null_to_time_tz, bcast_null_to_date},     {bcast_null_to_datetime, bcast_null_to_date},
        {bcast_null_to_datetime_tz, bcast_null_to_date},
    };
    for (const auto &[name, body] : plain_aliases)
        EXPECT_EQ(name, body);
    for (bcast_length_fn *name : {bcast_null_to_varchar, bcast_null_to_varchar2, bcast_null_to_binary,
                                  bcast_null_to_varbinary, bcast_null_to_text, bcast_null_to_blob})
        EXPECT_EQ(name, bcast_null_to_char);
}

} // namespace
} // namespace bcast::test
