// What every cast has to do alike, by the catalogue: each of its casts that the library has is called.

#include "catalogue/catalogue.h"
#include "tests/support/batch.h"
#include "tests/support/call.h"
#include "tests/support/service_double.h"

#include <bcast/codes.h>

#include <algorithm>
#include <string>

#include <dlfcn.h>

namespace bcast::catalogue {

// So that a failing test names its cast.
static void PrintTo(const cast &c, std::ostream *out) { *out << c.name; }

} // namespace bcast::catalogue

namespace bcast::test {

using catalogue::cast;
using catalogue::no_null;
using catalogue::protocol;

namespace {

void *exported(std::string_view name) { return dlsym(RTLD_DEFAULT, std::string(name).c_str()); }

size_t stride_of(bcast_type type)
{
    switch (type) {
    case BCAST_INT64:
    case BCAST_DOUBLE:
        return 8;
    case BCAST_DEC:
        return 30;
    case BCAST_DATE:
    case BCAST_TIME:
    case BCAST_TIME_TZ:
    case BCAST_DATETIME:
    case BCAST_DATETIME_TZ:
    case BCAST_IVYM:
        return 12;
    case BCAST_IVDT:
        return 24;
    case BCAST_CHAR:
    case BCAST_VARCHAR:
    case BCAST_VARCHAR2:
    case BCAST_BINARY:
    case BCAST_VARBINARY:
    case BCAST_TEXT:
    case BCAST_BLOB:
    case BCAST_BFILE:
        return 16;
    case BCAST_NULL:
        return 0;
    default:
        return 4;
    }
}

// Casts that write the elements of null rows although they are no casts to boolean.
constexpr std::string_view converts_null_rows[] = {"bcast_int_to_int64", "bcast_float_to_double",
                                                   "bcast_float_to_float"};

// Takes the flag of the output row, so that a null row of the source is none by its rule: boolean_test.cpp has it.
bool takes_flags_of_other_rows(const cast &c, const setup &how)
{
    return c.name == "bcast_varchar_to_boolean" && how.selected == selection::scattered;
}

// A boolean target has its null in the element; boolean_to_boolean does not know null rows.
void expect_unknown(const cast &c, const source_column &source, uint32_t rows, target_image &expected)
{
    for (uint32_t row = 0; row < rows; row++)
        expected.put(row, c.source == BCAST_BOOLEAN ? source.element<int32_t>(row) : int32_t{BOOL_UNKNOWN});
}

bool touches_nothing(const cast &c) { return c.protocol == protocol::refused || c.protocol == protocol::absent; }

int32_t status_without_failure(const cast &c)
{
    return c.protocol == protocol::refused ? int32_t{ERR_BAD_CONVERSION} : c.protocol == protocol::absent ? 1 : 0;
}

// What a cast calls that has no row to convert: it copies the whole batch, or releases the working value of the batch.
std::vector<service_call> calls_without_rows(const cast &c, const source_column &source, bdta3_col *target,
                                             uint32_t rows)
{
    if (c.name == "bcast_text_to_text" || c.name == "bcast_blob_to_blob") {
        service_call copy = copies_row(source.column(), target, 0);
        copy.length = static_cast<int32_t>(rows);
        return {copy};
    }
    if (c.name.find("binary_to_hex_") != std::string_view::npos)
        return {clears_value()};
    return {};
}

// no_null behind a batch in which no row turned null.
int32_t no_null_after(const cast &c, const setup &how)
{
    switch (c.no_null) {
    case no_null::after:
    case no_null::before:
        return how.no_null;
    case no_null::set:
        return 1;
    case no_null::clear:
        return 0;
    default:
        return how.no_null_before;
    }
}

// The casts that read the current time zone from the first 16 bits behind heap, and nothing else there.
constexpr std::string_view reads_zone[] = {
    "bcast_date_to_datetime_tz",         "bcast_precise_datetime_to_datetime_tz", "bcast_precise_datetime_to_time_tz",
    "bcast_precise_time_to_datetime_tz", "bcast_precise_time_to_time_tz",         "bcast_precise_dt_to_tz_inner",
    "bcast_precise_datetime_tz_to_tltz", "bcast_precise_time_tz_to_tltz",         "bcast_precise_dtz_to_tltz_inner",
};

// Casts of one literal know no columns.
bool has_columns(const cast &c)
{
    return c.arguments != catalogue::pattern::int_low && c.arguments != catalogue::pattern::int64_low;
}

std::vector<cast> casts_in_the_library()
{
    std::vector<cast> present;
    std::ranges::copy_if(catalogue::casts(), std::back_inserter(present),
                         [](const cast &c) { return has_columns(c) && exported(c.name) != nullptr; });
    return present;
}

class every_cast : public testing::TestWithParam<cast> {
protected:
    void SetUp() override
    {
        services().reset();
        const std::optional<any_cast> callable = cast_at(exported(GetParam().name), GetParam().arguments);
        ASSERT_TRUE(callable) << GetParam().name << " has an argument pattern that tests/support/call.h cannot call";
        cast_ = *callable;
        zone_[0] = 480;
        zone_.make_read_only();
    }

    void *heap_of_cast() { return std::ranges::count(reads_zone, GetParam().name) > 0 ? zone_.data() : heap(); }

    any_cast cast_;

private:
    guarded<uint16_t> zone_{1};
};

TEST_P(every_cast, no_rows_write_no_null_and_nothing_else)
{
    const cast &c = GetParam();
    for (const setup &how : all_setups()) {
        for (const bool capture : {false, true}) {
            SCOPED_TRACE(describe(how));
            services().reset();
            source_column source(stride_of(c.source), 0, how);
            target_column target(stride_of(c.target), 0, how);
            target_image expected = target.image();
            expected.no_null = no_null_after(c, how);
            failure_record record(0, 5);
            const call_arguments with{.src = source.sealed(),
                                      .dst = target.column(),
                                      .rows = 0,
                                      .length = 10,
                                      .err_codes = capture ? record.codes() : nullptr,
                                      .err_count = capture ? record.count() : nullptr,
                                      .heap = heap_of_cast()};
            EXPECT_EQ(call(cast_, with), status_without_failure(c));
            EXPECT_TRUE(target.holds(expected));
            EXPECT_TRUE(record.hold({}));
            EXPECT_TRUE(services().logged(calls_without_rows(c, source, target.column(), 0)));
        }
    }
}

TEST_P(every_cast, rows_of_65536_in_32_bits_are_none)
{
    const cast &c = GetParam();
    const setup &how = few_setups().front();
    source_column source(stride_of(c.source), 0, how);
    target_column target(stride_of(c.target), 0, how);
    target_image expected = target.image();
    expected.no_null = no_null_after(c, how);
    const call_arguments with{
        .src = source.sealed(), .dst = target.column(), .rows = 65536, .length = 10, .heap = heap_of_cast()};
    EXPECT_EQ(call_with_wide_rows(cast_, with), status_without_failure(c));
    EXPECT_TRUE(target.holds(expected));
}

// A source sets no_null on null rows only against its duty, so here it is clear.
TEST_P(every_cast, null_rows_call_no_service_and_keep_their_elements_or_are_unknown)
{
    const cast &c = GetParam();
    for (const setup &how : all_setups()) {
        if (how.no_null != 0 || takes_flags_of_other_rows(c, how))
            continue;
        for (const uint32_t rows : {1U, 5U, 1025U}) {
            SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
            services().reset();
            source_column source(stride_of(c.source), rows, how);
            for (uint32_t row = 0; row < rows; row++)
                source.set_flag(row, 0);
            target_column target(stride_of(c.target), rows, how);
            target_image expected = target.image();
            expected.no_null = no_null_after(c, how);
            if (!touches_nothing(c))
                std::ranges::fill(expected.flags, uint8_t{c.no_null == no_null::set});
            if (c.target == BCAST_BOOLEAN)
                expect_unknown(c, source, rows, expected);
            const call_arguments with{
                .src = source.sealed(), .dst = target.column(), .rows = rows, .length = 10, .heap = heap_of_cast()};
            EXPECT_EQ(call(cast_, with), status_without_failure(c));
            if (std::ranges::count(converts_null_rows, c.name) > 0)
                EXPECT_FALSE(target.holds(expected)) << c.name << " is said to convert null rows";
            else
                EXPECT_TRUE(target.holds(expected));
            EXPECT_TRUE(services().logged(calls_without_rows(c, source, target.column(), rows)));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, every_cast, testing::ValuesIn(casts_in_the_library()),
                         [](const auto &each) { return std::string(each.param.name); });

TEST(every_alias, is_its_cast_under_another_name)
{
    size_t aliases = 0;
    for (const cast &c : catalogue::casts()) {
        if (c.alias_of.empty())
            continue;
        EXPECT_EQ(exported(c.name) == nullptr, exported(c.alias_of) == nullptr)
            << "of " << c.name << " and " << c.alias_of << " the library has one only";
        EXPECT_EQ(exported(c.name), exported(c.alias_of)) << c.name << " has a body of its own";
        aliases += exported(c.name) != nullptr;
    }
    RecordProperty("aliases", static_cast<int>(aliases));
    EXPECT_GT(aliases, 0U);
}

// The aliases of the casts between integers and characters, as the tables of these casts have them.
TEST(every_alias, of_integers_to_characters_is_in_the_catalogue)
{
    const std::pair<const char *, const char *> aliases[] = {
        {"bcast_int_to_varchar2", "bcast_int_to_char"},         {"bcast_smallint_to_char", "bcast_int_to_char"},
        {"bcast_smallint_to_varchar", "bcast_int_to_varchar"},  {"bcast_smallint_to_varchar2", "bcast_int_to_char"},
        {"bcast_tinyint_to_varchar2", "bcast_tinyint_to_char"}, {"bcast_int64_to_varchar2", "bcast_int64_to_char"},
        {"bcast_smallint_to_text", "bcast_int_to_text"},        {"bcast_tinyint_to_text", "bcast_int_to_text"},
    };
    for (const auto &[name, body] : aliases) {
        ASSERT_NE(catalogue::find(name), nullptr) << name;
        EXPECT_EQ(catalogue::find(name)->alias_of, body);
        EXPECT_EQ(exported(name), exported(body)) << name;
    }
    // What looks like an alias and is none.
    EXPECT_NE(exported("bcast_tinyint_to_char"), exported("bcast_int_to_char"));
    EXPECT_NE(exported("bcast_tinyint_to_varchar"), exported("bcast_int_to_varchar"));
    EXPECT_NE(exported("bcast_int_to_varchar"), exported("bcast_int_to_char"));
}

} // namespace
} // namespace bcast::test
