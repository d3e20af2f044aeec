// Numbers and other intervals to intervals; intervals that stay what they are where they were to be numbers.

#include "tests/temporal/rows.h"

#include <services/interval.h>

#include <limits>

namespace bcast::test {
namespace {

// Of codes that are none, too.
constexpr uint16_t word_of(int field, int leading = 2, int fraction = 6)
{
    return BCAST_IV_WORD(field, leading, fraction);
}

// What a number does to the one field that the word names; false if it names none.
using fill = std::function<bool(const row_input &input, int field, void *interval)>;

template <class Interval> int32_t *field_of(Interval &interval, int field);

template <> int32_t *field_of(ivym &interval, int field)
{
    return field == IV_YEAR ? &interval.year : field == IV_MONTH ? &interval.month : nullptr;
}

template <> int32_t *field_of(ivdt &interval, int field)
{
    switch (field) {
    case IV_DAY:
        return &interval.day;
    case IV_HOUR:
        return &interval.hour;
    case IV_MINUTE:
        return &interval.minute;
    case IV_SECOND:
        return &interval.second;
    default:
        return nullptr;
    }
}

// Clears, fills and validates, behind the steps that give the number.
template <class Interval, class Fill>
void fill_and_validate(row_outcome &outcome, uint16_t word, const Fill &fill_field)
{
    outcome.steps.push_back({clears<Interval>()});
    Interval interval = {};
    interval.iv_word = word;
    int32_t *const field = field_of(interval, bcast_iv_shape(word));
    if (!field) {
        outcome.status = ERR_INTERVAL_FIELD;
        return;
    }
    fill_field(interval, *field);
    const service_call validate = validates<Interval>(image_of(interval), word);
    outcome.steps.push_back({validate, service_failure::passes_its_code});
    outcome.element = made_by(validate, sizeof interval);
}

template <class Interval> void fill_whole(row_outcome &outcome, uint16_t word, int64_t number)
{
    fill_and_validate<Interval>(outcome, word,
                                [&](Interval &, int32_t &field) { field = static_cast<int32_t>(number); });
}

template <class Interval> row_outcome of_int(const row_input &input, uint16_t word)
{
    row_outcome outcome;
    fill_whole<Interval>(outcome, word, input.as<int32_t>());
    return outcome;
}

template <class Interval> row_outcome of_int64(const row_input &input, uint16_t word)
{
    const auto number = input.as<int64_t>();
    row_outcome outcome{.steps = {{judges_int(number), service_failure::passes_overflow_only}}};
    fill_whole<Interval>(outcome, word, number);
    return outcome;
}

// Decimals are converted from a copy.
row_outcome decimal_to_ivym(const row_input &input, uint16_t word)
{
    const int64_t number = services().numeric.integer_of(input.image);
    row_outcome outcome{.steps = {{takes_int64_of_decimal(nullptr, input.image), service_failure::passes_its_code},
                                  {judges_int(number), service_failure::passes_overflow_only}}};
    fill_whole<ivym>(outcome, word, number);
    return outcome;
}

row_outcome decimal_to_ivdt(const row_input &input, uint16_t word)
{
    const int64_t whole = services().numeric.integer_of(input.image);
    const double number = services().numeric.double_of(input.image);
    row_outcome outcome{.steps = {{takes_double_of_decimal(nullptr, input.image), service_failure::passes_its_code},
                                  {takes_int64_of_decimal(nullptr, input.image), service_failure::passes_its_code},
                                  {judges_int(whole), service_failure::passes_overflow_only}}};
    fill_and_validate<ivdt>(outcome, word, [&](ivdt &interval, int32_t &field) {
        field = static_cast<int32_t>(number);
        if (word >> 8 != IV_SECOND)
            return;
        const auto millionths = static_cast<int32_t>(static_cast<uint32_t>(static_cast<int64_t>(number * 1000000.0)));
        interval.second = millionths / 1000000;
        interval.fraction = millionths % 1000000;
    });
    return outcome;
}

row_cast rule(const char *name, bcast_scaled_fn *cast, size_t to_bytes, uint16_t word, std::vector<std::string> samples,
              row_outcome convert(const row_input &, uint16_t))
{
    return {.name = name,
            .cast = cast,
            .to_bytes = to_bytes,
            .flags = row_flags::copied,
            .no_null_ahead = false,
            .failure_clears_flag = false,
            .samples = std::move(samples),
            .convert = [=](const row_input &input) { return convert(input, word); },
            .temporal = {.src_prec = 0xAAAA, .src_scale = 0x0C0C, .dst_prec = 0xBBBB, .dst_scale = word}};
}

template <class Source> std::vector<std::string> integers()
{
    using limits = std::numeric_limits<int32_t>;
    std::vector<std::string> samples;
    for (const int32_t number : {0, 1, -1, 99, -100, 127, 32767, 70000, limits::min(), limits::max()})
        samples.push_back(image_of(Source{number}));
    return samples;
}

std::vector<std::string> decimals()
{
    std::vector<std::string> samples;
    for (uint32_t number = 0; number < 13; number++)
        samples.push_back(image_of(some_decimal(number)));
    return samples;
}

#define NAMED(cast) #cast, cast

std::vector<row_cast> to_ivym(uint16_t word)
{
    constexpr size_t size = sizeof(ivym);
    return {
        rule(NAMED(bcast_int_to_ivym), size, word, integers<int32_t>(), of_int<ivym>),
        rule(NAMED(bcast_smallint_to_ivym), size, word, integers<int32_t>(), of_int<ivym>),
        rule(NAMED(bcast_tinyint_to_ivym), size, word, integers<int32_t>(), of_int<ivym>),
        rule(NAMED(bcast_int64_to_ivym), size, word, integers<int64_t>(), of_int64<ivym>),
        rule(NAMED(bcast_dec_to_ivym), size, word, decimals(), decimal_to_ivym),
    };
}

std::vector<row_cast> to_ivdt(uint16_t word)
{
    constexpr size_t size = sizeof(ivdt);
    return {
        rule(NAMED(bcast_int_to_ivdt), size, word, integers<int32_t>(), of_int<ivdt>),
        rule(NAMED(bcast_smallint_to_ivdt), size, word, integers<int32_t>(), of_int<ivdt>),
        rule(NAMED(bcast_tinyint_to_ivdt), size, word, integers<int32_t>(), of_int<ivdt>),
        rule(NAMED(bcast_int64_to_ivdt), size, word, integers<int64_t>(), of_int64<ivdt>),
        rule(NAMED(bcast_dec_to_ivdt), size, word, decimals(), decimal_to_ivdt),
    };
}

template <class Interval> row_outcome reshape(const row_input &input, uint16_t word)
{
    const service_call call = reshapes<Interval>(input.image, word);
    return {.steps = {{call, service_failure::passes_its_code}}, .element = made_by(call, sizeof(Interval))};
}

std::vector<row_cast> reshaping(uint16_t word)
{
    return {rule(NAMED(bcast_iv_ym_to_ym), sizeof(ivym), word, some_records(sizeof(ivym)), reshape<ivym>),
            rule(NAMED(bcast_iv_dt_to_dt), sizeof(ivdt), word, some_records(sizeof(ivdt)), reshape<ivdt>)};
}

std::vector<row_cast> to_both(uint16_t ym_word, uint16_t dt_word)
{
    std::vector<row_cast> all = to_ivym(ym_word);
    for (row_cast &c : to_ivdt(dt_word))
        all.push_back(std::move(c));
    return all;
}

std::vector<row_cast> rules()
{
    std::vector<row_cast> all = to_both(word_of(IV_MONTH), word_of(IV_SECOND));
    for (row_cast &c : reshaping(0xFFFE))
        all.push_back(std::move(c));
    return all;
}

void start()
{
    services().reset();
    services().numeric.logs_places = false;
}

class to_interval : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { start(); }
};

TEST_P(to_interval, present_rows_are_converted_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(to_interval, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

TEST_P(to_interval, a_failure_of_a_service_stops_with_its_code) { expect_stops(GetParam()); }

INSTANTIATE_TEST_SUITE_P(casts, to_interval, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

// ---- Fields ------------------------------------------------------------------------

TEST(number_to_interval, a_number_goes_to_the_one_field_that_the_word_names)
{
    start();
    for (int field = 0; field < 256; field++)
        for (const int digits : {0, 3, 0xF})
            for (const row_cast &c : to_both(word_of(field, digits, digits), word_of(field, digits, digits))) {
                SCOPED_TRACE("field " + std::to_string(field) + ", digits " + std::to_string(digits));
                expect_element(c, c.samples[4]);
            }
}

TEST(number_to_interval, null_rows_report_no_bad_field)
{
    start();
    for (const row_cast &c : to_both(word_of(IV_YEAR_TO_MONTH), word_of(IV_SECOND + 1))) {
        for (const setup &how : all_setups()) {
            expect_batch(c, how, sample_rows(c, {0, 0, 0, 0}));
            expect_batch(c, how, sample_rows(c, {0, 0, 5, 0, 1}));
        }
    }
}

TEST(number_to_interval, an_overflow_comes_ahead_of_a_bad_field)
{
    start();
    for (const row_cast &c : to_both(word_of(IV_YEAR_TO_MONTH), word_of(IV_SECOND + 1))) {
        const std::string name = c.name;
        if (name.find("int64") == std::string::npos && name.find("dec") == std::string::npos)
            continue;
        const size_t judged = name == "bcast_dec_to_ivdt" ? 2 : name == "bcast_dec_to_ivym" ? 1 : 0;
        for (const setup &how : few_setups())
            expect_batch(c, how, sample_rows(c, {1}), {.results = {{judged, ERR_OVERFLOW}}});
    }
}

// What the predicate lets pass is cut to its low 32 bits.
TEST(number_to_interval, only_the_predicate_s_own_code_is_an_overflow)
{
    start();
    for (const row_cast &c : to_both(word_of(IV_YEAR), word_of(IV_MINUTE))) {
        const std::string name = c.name;
        if (name.find("int64") == std::string::npos)
            continue;
        for (const int64_t number :
             {int64_t{2147483648}, int64_t{-2147483649}, int64_t{1} << 32, (int64_t{7} << 32) + 5,
              std::numeric_limits<int64_t>::min(), std::numeric_limits<int64_t>::max()})
            for (const int32_t result :
                 {-1, -6101, -6103, int32_t{ERR_TRUNCATED}, INT32_MIN, 1, 6102, 0, ERR_OVERFLOW + 0})
                for (const setup &how : few_setups())
                    expect_batch(c, how, {{1, image_of(number)}, {1, image_of(int64_t{3})}},
                                 {.results = {{0, result}}});
    }
    for (const row_cast &c : {to_ivym(word_of(IV_YEAR)).back(), to_ivdt(word_of(IV_SECOND)).back()}) {
        const std::string image = image_of(some_decimal(99));
        services().numeric.integers[image] = (int64_t{7} << 32) + 5;
        const size_t judged = std::string(c.name) == "bcast_dec_to_ivdt" ? 2 : 1;
        for (const int32_t result : {-1, -6101, INT32_MIN, 1, ERR_OVERFLOW + 0})
            for (const setup &how : few_setups())
                expect_batch(c, how, {{1, image}, {1, c.samples[0]}}, {.results = {{judged, result}}});
    }
}

// A service that gives no integer of the decimal has the last word, also for what the double alone decides.
TEST(number_to_interval, a_decimal_needs_both_its_double_and_its_integer)
{
    start();
    for (const int field : {IV_DAY, IV_HOUR, IV_MINUTE, IV_SECOND, IV_YEAR_TO_MONTH}) {
        const row_cast c = to_ivdt(word_of(field)).back();
        for (const setup &how : few_setups())
            for (size_t failing = 0; failing < 2; failing++)
                for (const int32_t code : {-1, ERR_OVERFLOW + 0, INT32_MIN})
                    expect_batch(c, how, sample_rows(c, {1}), {.results = {{failing, code}, {failing + 1, -99}}});
    }
}

struct decimal_sample {
    double number;
    int32_t whole; // toward zero
    int32_t second, fraction;
};

// A count of millionths is cut to 32 bits: 4294.967296 seconds are 2 to the 32nd.
constexpr decimal_sample decimal_samples[] = {
    {0.0, 0, 0, 0},
    {1.5, 1, 1, 500000},
    {-1.5, -1, -1, -500000},
    {0.999999, 0, 0, 999999},
    {-0.25, 0, 0, -250000},
    {1.0000009999, 1, 1, 0},
    {59.75, 59, 59, 750000},
    {-59.75, -59, -59, -750000},
    {2147.0, 2147, 2147, 0},
    {2147.5, 2147, -2147, -467296},
    {-2147.5, -2147, 2147, 467296},
    {4294.967296, 4294, 0, 0},
    {4295.0, 4295, 0, 32704},
    {5000.25, 5000, 705, 282704},
    {-5000.25, -5000, -705, -282704},
    {2147483647.0, 2147483647, -1, 0},
    {-2147483648.0, -2147483647 - 1, 0, 0},
    {1e9, 1000000000, -1530, -494976},
};

TEST(decimal_to_interval_day_to_second, the_double_decides_and_seconds_count_millionths_in_32_bits)
{
    for (const decimal_sample &sample : decimal_samples) {
        for (const int field : {IV_DAY, IV_HOUR, IV_MINUTE, IV_SECOND}) {
            SCOPED_TRACE(std::to_string(sample.number) + " as field " + std::to_string(field));
            start();
            const std::string image = image_of(some_decimal(99));
            services().numeric.doubles[image] = sample.number;
            services().numeric.integers[image] = 12345; // no field is made of it
            ivdt interval = {};
            interval.iv_word = word_of(field);
            *field_of(interval, field) = sample.whole;
            if (field == IV_SECOND) {
                interval.second = sample.second;
                interval.fraction = sample.fraction;
            }
            source_column source(30, 1, few_setups().front());
            source.set_bytes(0, 1, image);
            target_column target(24, 1);
            EXPECT_EQ(bcast_dec_to_ivdt(env(), heap(), source.sealed(), target.column(), 1, 0, 0, 0, word_of(field)),
                      0);
            EXPECT_TRUE(services().logged({takes_double_of_decimal(nullptr, image),
                                           takes_int64_of_decimal(nullptr, image), judges_int(12345), clears<ivdt>(),
                                           validates<ivdt>(image_of(interval), word_of(field))}));
        }
    }
}

TEST(integer_to_interval, fields_by_hand)
{
    start();
    source_column source(4, 1, few_setups().front());
    source.set(0, 1, int32_t{-7});
    target_column target(24, 1);
    EXPECT_EQ(bcast_tinyint_to_ivdt(env(), heap(), source.sealed(), target.column(), 1, 0, 0, 0, 0x0C06), 0);
    const ivdt seconds{0, 0, 0, -7, 0, 0x0C06};
    EXPECT_TRUE(services().logged({clears<ivdt>(), validates<ivdt>(image_of(seconds), 0x0C06)}));
    EXPECT_EQ(bcast_int_to_ivym(env(), heap(), source.column(), target.column(), 1, 0, 0, 0, 0x0100), -6105);
    EXPECT_EQ(bcast_int_to_ivdt(env(), heap(), source.column(), target.column(), 1, 0, 0, 0, 0x0000), -6105);
}

TEST(interval_to_interval, any_word_goes_to_the_service)
{
    start();
    for (const uint16_t word : std::initializer_list<uint16_t>{0, 1, 0x0100, 0x0C06, 0x7FFF, 0x8000, 0xFFFF})
        for (const row_cast &c : reshaping(word))
            expect_element(c, c.samples[3]);
}

// ---- Casts that do not exist ---------------------------------------------------------

TEST(interval_to_number, returns_1_and_touches_nothing)
{
    const std::pair<const char *, bcast_scaled_fn *> stubs[] = {
        {NAMED(bcast_iv_ym_to_dec)},     {NAMED(bcast_iv_ym_to_tinyint)},  {NAMED(bcast_iv_ym_to_smallint)},
        {NAMED(bcast_iv_ym_to_int)},     {NAMED(bcast_iv_ym_to_int64)},    {NAMED(bcast_iv_dt_to_dec)},
        {NAMED(bcast_iv_dt_to_tinyint)}, {NAMED(bcast_iv_dt_to_smallint)}, {NAMED(bcast_iv_dt_to_int)},
        {NAMED(bcast_iv_dt_to_int64)},
    };
    start();
    auto *const nowhere = static_cast<bdta3_col *>(inaccessible());
    for (const auto &[name, cast] : stubs) {
        for (const uint16_t rows : std::initializer_list<uint16_t>{0, 1, 65535})
            EXPECT_EQ(cast(nowhere, nowhere, nowhere, nowhere, rows, 1, 2, 3, 4), 1) << name;
        EXPECT_EQ(cast(nullptr, nullptr, nullptr, nullptr, 1, 0, 0, 0, 0), 1) << name;
    }
    EXPECT_TRUE(services().logged({}));
}
#undef NAMED

} // namespace
} // namespace bcast::test
