// What every cast has to do alike, by the catalogue: each of its casts that the library has is called.

#include "catalogue/catalogue.h"
#include "tests/support/batch.h"
#include "tests/support/call.h"
#include "tests/support/service_double.h"

#include <bcast/codes.h>
#include <services/interval.h>
#include <services/temporal.h>

#include <algorithm>
#include <map>
#include <set>
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
    case no_null::behind:
    case no_null::ahead:
        return how.no_null;
    case no_null::one:
        return 1;
    case no_null::zero:
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
                std::ranges::fill(expected.flags, uint8_t{c.no_null == no_null::one});
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

// ---- What a cast calls

bool is_string(bcast_type type)
{
    switch (type) {
    case BCAST_CHAR:
    case BCAST_VARCHAR:
    case BCAST_VARCHAR2:
    case BCAST_BINARY:
    case BCAST_VARBINARY:
    case BCAST_TEXT:
    case BCAST_BLOB:
    case BCAST_BFILE:
        return true;
    default:
        return false;
    }
}

template <class Value> std::string image_of(const Value &value)
{
    return {reinterpret_cast<const char *>(&value), sizeof value};
}

std::string element_with(std::string &text, int32_t pad_len = 0)
{
    return image_of(bdta3_str{static_cast<int32_t>(text.size()), pad_len, text.data()});
}

constexpr int32_t target_length = 10;

// Elements with which a cast comes to all that it may call: numbers that fit each type, texts that do and do not fit
// the target, and values of several zones.
std::vector<std::string> samples_of(bcast_type type)
{
    static std::string fits = "12", is_longer(target_length + 2, '1');
    if (is_string(type))
        return {element_with(fits), element_with(is_longer)};
    switch (type) {
    case BCAST_INT64:
        return {image_of(int64_t{7})};
    case BCAST_DOUBLE:
        return {image_of(7.0)};
    case BCAST_FLOAT:
        return {image_of(7.0F)};
    case BCAST_DEC:
        return {image_of(some_decimal(1))};
    case BCAST_NULL:
        return {""};
    default:
        break;
    }
    if (stride_of(type) == sizeof(int32_t))
        return {image_of(int32_t{7})};
    std::vector<std::string> records;
    for (uint32_t number = 0; number < 4; number++)
        records.push_back(some_record(number, stride_of(type)));
    return records;
}

// Shapes of intervals of one field, of which the first is a scale of no digits too; and what a body of casts is told.
std::vector<temporal_arguments> temporal_arguments_of(const cast &c)
{
    using catalogue::form, catalogue::pattern;
    if (c.arguments != pattern::scaled && c.arguments != pattern::scaled_capture && c.form != form::is_body)
        return {{.dst_prec = target_length}};
    std::vector<temporal_arguments> all;
    for (const auto field : {IV_YEAR, IV_MONTH, IV_DAY, IV_SECOND})
        for (const auto type_code : {TYPE_TIME, TYPE_DATETIME, TYPE_TIME_TZ, TYPE_DATETIME_TZ})
            all.push_back({.src_scale = 6,
                           .dst_scale = static_cast<uint16_t>(field << 8),
                           .round_flag = 1,
                           .type_code = static_cast<uint8_t>(type_code)});
    return all;
}

using names = std::set<std::string_view>;

names services_of(const cast &c) { return {c.services.begin(), c.services.end()}; }

// That it calls no other one in any test, call() sees to.
TEST_P(every_cast, calls_each_service_that_the_catalogue_has_for_it)
{
    const cast &c = GetParam();
    EXPECT_EQ(services_of(c).size(), c.services.size()) << "a service stands there twice";
    names called;
    for (const setup &how : few_setups())
        for (const std::string &sample : samples_of(c.source))
            for (const temporal_arguments &temporal : temporal_arguments_of(c)) {
                services().reset();
                source_column source(stride_of(c.source), 1, how);
                source.set_bytes(0, 1, sample);
                target_column target(stride_of(c.target), 1, how);
                call(cast_, {.src = source.sealed(),
                             .dst = target.column(),
                             .rows = 1,
                             .length = target_length,
                             .heap = heap_of_cast(),
                             .temporal = temporal});
                for (const service_call &made : services().log())
                    called.insert(made.service);
            }
    EXPECT_EQ(called, services_of(c));
}

TEST(every_literal_cast, calls_the_services_that_the_catalogue_has_for_it)
{
    size_t literal_casts = 0;
    for (const cast &c : catalogue::casts()) {
        if (has_columns(c))
            continue;
        literal_casts++;
        services().reset();
        int32_t verdict;
        int64_t result;
        void *const address = exported(c.name);
        const int32_t status =
            c.arguments == catalogue::pattern::int_low
                ? reinterpret_cast<bcast_int_low_fn *>(address)(env(), "12", 2, '=', &verdict,
                                                                reinterpret_cast<int32_t *>(&result))
                : reinterpret_cast<bcast_int64_low_fn *>(address)(env(), "12", 2, '=', &verdict, &result);
        EXPECT_EQ(status, 0);
        names called;
        for (const service_call &made : services().log())
            called.insert(made.service);
        EXPECT_EQ(called, services_of(c)) << c.name;
    }
    EXPECT_EQ(literal_casts, 2U);
}

// ---- How much of a text or binary value a cast reads

// Digits that are 0 but for the last one, which tells whether it was read.
std::string digits_of_length(int32_t length)
{
    std::string digits(static_cast<size_t>(length), '0');
    digits.back() = '1';
    return digits;
}

class reading_cast : public every_cast {
protected:
    // The bytes of a value of that length that the cast has handed on or looked at itself; none where it refused it.
    size_t bytes_read(int32_t length, int32_t pad_len = 0)
    {
        const cast &c = GetParam();
        services().reset();
        // The reader is to have no result: not all of them have one of any length. There is none where the cast copies.
        if (!calls("bdta3_col_space_alloc") && !calls("copy_row"))
            services().fail_call(0, ERR_OVERFLOW);
        std::string value = digits_of_length(length);
        source_column source(stride_of(c.source), 1, few_setups().front());
        source.set_bytes(0, 1, element_with(value, pad_len));
        target_column target(stride_of(c.target), 1);
        status_ = call(cast_, {.src = source.sealed(), .dst = target.column(), .rows = 1, .length = length});
        if (services().log().empty() && is_string(c.target))
            return 0;
        if (services().log().empty()) {
            int32_t truth;
            std::memcpy(&truth, target.image().values.data(), sizeof truth);
            return truth == 1 ? value.size() : 0;
        }
        const service_call &made = services().log().front();
        if (made.service == "copy_row") {
            bdta3_str copy;
            std::memcpy(&copy, target.image().values.data(), sizeof copy);
            return static_cast<size_t>(copy.length);
        }
        if (made.service == "bdta3_col_space_alloc")
            return static_cast<size_t>(made.length);
        return made.bytes.size() - made.bytes.ends_with('\0');
    }

    bool calls(std::string_view service) const { return services_of(GetParam()).contains(service); }

    int32_t status_ = 0;
};

TEST_P(reading_cast, reads_values_up_to_the_limit_of_the_catalogue)
{
    using catalogue::beyond;
    const catalogue::source_limit limit = GetParam().limit;
    constexpr int32_t above_16_bits = 65536 + 3;
    if (limit.beyond != beyond::reads) {
        EXPECT_EQ(bytes_read(limit.bytes), static_cast<size_t>(limit.bytes));
    }
    switch (limit.beyond) {
    case beyond::reads:
        EXPECT_EQ(limit.bytes, INT32_MAX);
        EXPECT_EQ(bytes_read(above_16_bits), size_t{above_16_bits});
        break;
    case beyond::ignores:
        EXPECT_EQ(bytes_read(limit.bytes + 1), static_cast<size_t>(limit.bytes));
        break;
    case beyond::wraps:
        EXPECT_EQ(limit.bytes, 65535);
        EXPECT_EQ(bytes_read(above_16_bits), 3U);
        break;
    case beyond::refuses:
        EXPECT_EQ(bytes_read(limit.bytes + 1), 0U);
        EXPECT_LT(status_, 0);
        break;
    case beyond::untested:
        break;
    case beyond::untested_if_padded:
        EXPECT_EQ(bytes_read(above_16_bits), size_t{above_16_bits});
        EXPECT_EQ(bytes_read(10, limit.bytes - 10), static_cast<size_t>(limit.bytes));
        break;
    }
}

std::vector<cast> casts_that_read_values()
{
    std::vector<cast> all;
    std::ranges::copy_if(casts_in_the_library(), std::back_inserter(all), [](const cast &c) {
        return is_string(c.source) && c.source != BCAST_TEXT && c.source != BCAST_BLOB && c.target != BCAST_NULL;
    });
    return all;
}

INSTANTIATE_TEST_SUITE_P(casts, reading_cast, testing::ValuesIn(casts_that_read_values()),
                         [](const auto &each) { return std::string(each.param.name); });

// Limits that no call may try: what stands behind them is the caller's duty.
TEST(untested_limits, are_those_that_the_headers_tell)
{
    std::map<std::string_view, int32_t> limits;
    for (const cast &c : catalogue::casts())
        if (c.limit.beyond == catalogue::beyond::untested || c.limit.beyond == catalogue::beyond::untested_if_padded)
            limits[c.name] = c.limit.bytes;
    const std::map<std::string_view, int32_t> expected = {
        {"bcast_char_to_ivym", 32767},
        {"bcast_char_to_ivdt", 32767},
        {"bcast_varchar_to_ivym", 32767},
        {"bcast_varchar_to_ivdt", 32767},
        {"bcast_varchar2_to_ivym", 32767},
        {"bcast_varchar2_to_ivdt", 32767},
        {"bcast_varchar_to_text", 32768},
        {"bcast_varchar_to_blob", 32768},
        {"bcast_binary_to_text", 32767},
        {"bcast_varchar_to_int_directly_low", 65535},
        {"bcast_varchar_to_int64_directly_low", 65535},
    };
    EXPECT_EQ(limits, expected);
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
