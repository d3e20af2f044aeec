// Records, integers, and decimals of one shape to another.
#include "tests/embedded/decimal/decimal_support.h"

#include <bit>
#include <cmath>

namespace bcast::test {

namespace {

std::string zeros(size_t count) { return std::string(count, '0'); }
std::string nines(size_t count) { return std::string(count, '9'); }

std::vector<int64_t> int64_edges()
{
    std::vector<int64_t> values = {0, INT64_MAX, INT64_MAX - 1, INT64_MIN, INT64_MIN + 1};
    for (int bit = 0; bit < 63; bit++) {
        const int64_t power = int64_t{1} << bit;
        values.insert(values.end(), {power - 1, power, power + 1, -power - 1, -power, -power + 1});
    }
    int64_t power = 1;
    for (int digits = 0; digits < 19; digits++, power *= digits < 19 ? 10 : 1)
        values.insert(values.end(), {power - 1, power, power + 1, -power - 1, -power, -power + 1});
    return values;
}

// Runs the operation on a record at every offset to a word, between inaccessible pages and bytes of a pattern.
template <typename Operation> void at_every_offset(Operation operation)
{
    for (size_t offset = 0; offset < 16; offset++) {
        guarded<uint8_t> at_start(sizeof(xdec) + offset, guard_edge::start);
        operation(reinterpret_cast<xdec *>(at_start.data() + offset));
        guarded<uint8_t> at_end(sizeof(xdec) + offset, guard_edge::end);
        operation(reinterpret_cast<xdec *>(at_end.data()));
        for (size_t i = 0; i < offset; i++) {
            ASSERT_EQ(at_start[i], guard_fill) << "byte " << i << " before a record at " << offset;
            ASSERT_EQ(at_end[sizeof(xdec) + i], guard_fill) << "byte " << i << " behind a record";
        }
        ASSERT_TRUE(at_start.slack_untouched() && at_end.slack_untouched()) << "offset " << offset;
    }
}

} // namespace

// ---- Records -------------------------------------------------------------------

TEST(decimal_record, bytes_0_and_1_are_those_of_zero_for_zero_alone)
{
    EXPECT_EQ(from_text("0", 0, 0).record, "8000" + zeros(56));
    random_decimals next(20260110);
    for (int i = 0; i < 100000; i++) {
        const std::string text = next.number();
        xdec out;
        ASSERT_EQ(xdec_from_char_with_len_prec(text.data(), static_cast<uint16_t>(text.size()), 0, 0, &out), 0);
        const bool zero = text.find_first_not_of("-0.") == std::string::npos;
        ASSERT_EQ(out.bytes[0] == 0x80, zero) << text;
        ASSERT_EQ(out.bytes[1] == 0, zero) << text;
    }
}

TEST(decimal_record, equal_values_have_equal_bytes_however_they_are_made)
{
    const made right = from_text("-12.5", 0, 0);
    ASSERT_EQ(right, exactly("-12.5"));
    for (const char *text : {"-12.50", "-012.5000000000000000000000000000000000000000", " -12.5 ", "-1.25e1",
                             "-1250e-2", "-.125e+2", "-125000000000000000000000000000000000000000000000e-46"})
        EXPECT_EQ(from_text(text, 0, 0), right) << text;
    for (const shape_pair &s : {shape_pair{3, 1}, {18, 4}, {38, 1}, {38, 36}, {255, 30}, {0, 0}}) {
        EXPECT_EQ(from_text("-12.5", s.len, s.prec), right) << "(" << s.len << "," << s.prec << ")";
        EXPECT_EQ(from_double(-12.5, s.len, s.prec), right) << "(" << s.len << "," << s.prec << ")";
        EXPECT_EQ(from_xdec(record("-12.5"), s.len, s.prec), right) << "(" << s.len << "," << s.prec << ")";
    }
    EXPECT_EQ(from_xdec(record("-12.4996"), 18, 2), right);
    EXPECT_EQ(from_double(-12.4996, 18, 3), right);
    EXPECT_EQ(from_text("-12.4996", 18, 3), right);

    const made hundred = from_int64(100, 3, 0);
    ASSERT_EQ(hundred, exactly("100"));
    EXPECT_EQ(from_text("1e2", 0, 0), hundred);
    EXPECT_EQ(from_text("99.99999", 10, 2), hundred);
    EXPECT_EQ(from_double(100, 0, 0), hundred);
    EXPECT_EQ(from_double(100, 38, 30), hundred);
    EXPECT_EQ(from_double(99.999, 10, 2), hundred);
    EXPECT_EQ(from_xdec(record("99.999"), 10, 2), hundred);
}

TEST(decimal_record, may_stand_anywhere_and_is_30_bytes)
{
    const std::string texts[] = {"-123456.7891", nines(38), "0." + nines(38), "0"};
    for (const std::string &text : texts) {
        const std::string right = hex(record(text));
        at_every_offset([&](xdec *out) {
            ASSERT_EQ(xdec_from_char_with_len_prec(text.data(), static_cast<uint16_t>(text.size()), 0, 0, out), 0);
            ASSERT_EQ(hex(*out), right) << text;
            xdec again;
            ASSERT_EQ(xdec_from_xdec_with_len_prec(out, 0, 0, &again), 0);
            ASSERT_EQ(hex(again), right) << text;
            char buf[400];
            int32_t size = -1;
            ASSERT_EQ(xdec_to_char_with_zero(out, buf, sizeof buf, 0, 0, &size), 0);
            ASSERT_EQ(std::string(buf, static_cast<size_t>(size)), text);
            int32_t status = -1;
            ASSERT_EQ(xdec_get_double(out, &status), std::stod(text)) << text;
            ASSERT_EQ(status, 0);
            int64_t whole = 0;
            ASSERT_EQ(xdec_get_int64(out, &whole), text == texts[1] ? ERR_OVERFLOW : 0) << text;
        });
        at_every_offset([&](xdec *out) {
            const xdec src = record(text);
            ASSERT_EQ(xdec_from_xdec_with_len_prec(&src, 0, 0, out), 0);
            ASSERT_EQ(hex(*out), right) << text;
        });
    }
    at_every_offset([&](xdec *out) {
        ASSERT_EQ(xdec_from_int64_with_len_prec(-42, 0, 0, out), 0);
        ASSERT_EQ(hex(*out), hex(record("-42")));
    });
    at_every_offset([&](xdec *out) {
        ASSERT_EQ(xdec_from_double_with_len_prec(-4.25, 0, 0, out), 0);
        ASSERT_EQ(hex(*out), hex(record("-4.25")));
    });
}

// A column can be filled with any bytes.
TEST(decimal_record, foreign_bytes_do_no_harm)
{
    std::mt19937_64 random(20260111);
    guarded<xdec> at_end(1, guard_edge::end), at_start(1, guard_edge::start);
    for (int i = 0; i < 100000; i++) {
        xdec &src = i % 2 == 0 ? at_end[0] : at_start[0];
        const bool few_bits = random() % 8 == 0;
        for (uint8_t &byte : src.bytes)
            byte = static_cast<uint8_t>(random() >> (few_bits ? 63 : 0));
        const int len = static_cast<int>(random() % 256), prec = static_cast<int>(random() % 256);
        xdec out;
        int32_t status = 1;
        int64_t whole;
        xdec_from_xdec_with_len_prec(&src, len, prec, &out);
        xdec_get_double(&src, &status);
        ASSERT_LE(status, 0) << hex(src);
        xdec_get_int64(&src, &whole);
        const size_t most = 41; // 39 digits, and a sign, a zero and a point
        ASSERT_LE(to_text(src, 0, 0).size(), most) << hex(src);
        ASSERT_LE(to_text(src, len, prec).size(), most + static_cast<size_t>(prec)) << hex(src);
    }
}

// ---- From int64 ----------------------------------------------------------------

TEST(decimal_from_int64, is_exact_where_it_fits_in_every_shape)
{
    for (const int64_t value : int64_edges()) {
        const slow_decimal slow = slow_of(std::to_string(value));
        for (int len = 0; len <= 40; len++) {
            for (int prec = 0; prec <= len + 1; prec++)
                ASSERT_EQ(from_int64(value, len, prec), expected(fit(slow, len, prec)))
                    << value << " in (" << len << "," << prec << ")";
        }
        for (const shape_pair &s : shapes())
            ASSERT_EQ(from_int64(value, s.len, s.prec), expected(fit(slow, s.len, s.prec)))
                << value << " in (" << s.len << "," << s.prec << ")";
    }
}

TEST(decimal_from_int64, is_exact_for_random_values)
{
    std::mt19937_64 random(20260112);
    for (int i = 0; i < 100000; i++) {
        const auto value = static_cast<int64_t>(random() >> (random() % 64)) * (random() % 2 == 0 ? 1 : -1);
        ASSERT_EQ(from_int64(value, 0, 0), exactly(std::to_string(value)));
    }
}

// ---- To int64 ------------------------------------------------------------------

namespace {

struct int64_reading {
    int32_t status;
    int64_t value;

    friend bool operator==(const int64_reading &, const int64_reading &) = default;
    friend std::ostream &operator<<(std::ostream &out, const int64_reading &r)
    {
        return out << "status " << r.status << ", value " << r.value;
    }
};

constexpr int64_t unwritten_int64 = 0x5a5a5a5a5a5a5a5a;

int64_reading get_int64(const xdec &src)
{
    int64_t value = unwritten_int64;
    const int32_t status = xdec_get_int64(&src, &value);
    if (status >= 0)
        return {0, value};
    EXPECT_EQ(value, unwritten_int64) << "failed and wrote its result";
    return {status, 0};
}

int64_reading slow_get_int64(const slow_decimal &value)
{
    const slow_decimal whole = canonical(rounded(value, 0));
    __int128 result = 0;
    for (const char digit : whole.digits)
        result = result * 10 + (digit - '0'); // at most 39 digits
    if (value.negative)
        result = -result;
    if (whole.digits.size() > 20 || result < INT64_MIN || result > INT64_MAX)
        return {ERR_OVERFLOW, 0};
    return {0, static_cast<int64_t>(result)};
}

} // namespace

TEST(decimal_to_int64, rounds_ties_away_from_zero)
{
    const std::pair<const char *, int64_t> cases[] = {
        {"0", 0},
        {"0.4", 0},
        {"0.5", 1},
        {"-0.4", 0},
        {"-0.5", -1},
        {"1.5", 2},
        {"2.5", 3},
        {"-1.5", -2},
        {"-2.5", -3},
        {"1.49", 1},
        {"1.51", 2},
        {"9.5", 10},
        {"0.0000005", 0},
        {"99.99999", 100},
        {"-0.05", 0},
        {"-999.5", -1000},
        {"0.49999999999999999999999999999999999999", 0},
        {"0.50000000000000000000000000000000000001", 1},
        {"2.5000000000000000000000000000000000001", 3},
        {"2.4999999999999999999999999999999999999", 2},
    };
    for (const auto &[text, value] : cases)
        EXPECT_EQ(get_int64(record(text)), (int64_reading{0, value})) << text;
}

TEST(decimal_to_int64, the_limits_are_exact)
{
    const int64_reading too_large = {ERR_OVERFLOW, 0};
    const std::pair<const char *, int64_reading> cases[] = {
        {"9223372036854775807", {0, INT64_MAX}},
        {"9223372036854775807.4999999999999999999", {0, INT64_MAX}},
        {"9223372036854775807.5", too_large},
        {"9223372036854775808", too_large},
        {"-9223372036854775808", {0, INT64_MIN}},
        {"-9223372036854775808.4999999999999999999", {0, INT64_MIN}},
        {"-9223372036854775808.5", too_large},
        {"-9223372036854775809", too_large},
        {"9223372036854775806.5", {0, INT64_MAX}},
        {"18446744073709551615", too_large},
        {"18446744073709551616", too_large},
        {"18446744073709551617", too_large},
        {"-18446744073709551616", too_large},
        {"36893488147419103233", too_large},
        {"99999999999999999999999999999999999999", too_large},
        {"-99999999999999999999999999999999999999", too_large},
        {"9999999999999999999", too_large},
        {"1000000000000000000.5", {0, 1000000000000000001}},
    };
    for (const auto &[text, right] : cases) {
        EXPECT_EQ(get_int64(record(text)), right) << text;
        EXPECT_EQ(slow_get_int64(slow_of(text)), right) << text << " by the slow reading";
    }
}

TEST(decimal_to_int64, gives_back_every_int64_and_rounds_what_is_around_it)
{
    for (const int64_t value : int64_edges()) {
        xdec out;
        ASSERT_EQ(xdec_from_int64_with_len_prec(value, 0, 0, &out), 0);
        ASSERT_EQ(get_int64(out), (int64_reading{0, value}));
        const std::string whole = std::to_string(value);
        for (size_t scale = 1; scale <= 18; scale++) {
            for (const std::string &fraction :
                 {"4" + nines(scale - 1), "5" + zeros(scale - 1), zeros(scale - 1) + "1"}) {
                const std::string text = whole + "." + fraction;
                ASSERT_EQ(get_int64(record(text)), slow_get_int64(slow_of(text))) << text;
            }
        }
    }
}

TEST(decimal_to_int64, agrees_with_the_slow_arithmetic_on_random_decimals)
{
    random_decimals next(20260113);
    size_t values = 0;
    for (int i = 0; i < 200000; i++) {
        const std::string text = next.number();
        const int64_reading right = slow_get_int64(slow_of(text));
        ASSERT_EQ(get_int64(record(text)), right) << text;
        values += right.status == 0;
    }
    EXPECT_GT(values, 50000u);
    EXPECT_LT(values, 199000u);
}

// ---- From one shape to another -------------------------------------------------

TEST(decimal_from_decimal, rounds_and_fits_as_from_text)
{
    const std::pair<const char *, shape_pair> cases[] = {
        {"0.285", {3, 2}},
        {"-0.285", {3, 2}},
        {"0.2849999", {3, 2}},
        {"9.5", {1, 0}},
        {"9.4", {1, 0}},
        {"-9.5", {1, 0}},
        {"0.95", {1, 1}},
        {"0.94", {1, 1}},
        {"99.995", {5, 2}},
        {"999.995", {5, 2}},
        {"123", {2, 0}},
        {"123", {3, 0}},
        {"123.456", {5, 2}},
        {"123.456", {4, 2}},
        {"1", {1, 1}},
        {"0.5", {0, 5}},
        {"0.4", {0, 5}},
        {"0.1234", {3, 5}},
        {"0.9995", {3, 5}},
        {"1", {255, 255}},
        {"0.00000000000000000000000000000000000005", {38, 37}},
        {"0.00000000000000000000000000000000000004", {38, 37}},
        {"0.99999999999999999999999999999999999999", {38, 37}},
        {"9.9999999999999999999999999999999999999", {38, 36}},
        {"99999999999999999999999999999999999999", {38, 0}},
        {"99999999999999999999999999999999999999", {38, 1}},
        {"9999999999999999999999999999999999999.9", {38, 0}},
        {"9999999999999999999999999999999999999.9", {37, 0}},
        {"18446744073709551615.5", {38, 0}},
        {"18446744073709551616.5", {38, 0}},
        {"1844674407370955161.5", {38, 0}},
        {"1844674407370955161.6", {38, 0}},
        {"0.1844674407370955161", {38, 0}},
        {"0.4999999999999999999", {38, 0}},
        {"0.5000000000000000000", {38, 0}},
        {"0.9999999999999999999", {38, 0}},
        {"1.4999999999999999999", {38, 0}},
        {"1.7446744073709551615", {38, 0}},
    };
    for (const auto &[text, s] : cases)
        EXPECT_EQ(from_xdec(record(text), s.len, s.prec), expected(fit(slow_of(text), s.len, s.prec)))
            << text << " in (" << s.len << "," << s.prec << ")";
}

TEST(decimal_from_decimal, agrees_with_the_slow_arithmetic_in_every_shape)
{
    random_decimals next(20260114);
    size_t values = 0, rounded_values = 0;
    for (int i = 0; i < 300000; i++) {
        const std::string text = next.number();
        const int len = next.one_in(10) ? static_cast<int>(next.below(256)) : static_cast<int>(next.below(40));
        const int prec = next.one_in(10) ? static_cast<int>(next.below(256))
                                         : static_cast<int>(next.below(static_cast<size_t>(len) + 1));
        const slow_decimal value = slow_of(text);
        const fitted right = fit(value, len, prec);
        ASSERT_EQ(from_xdec(record(text), len, prec), expected(right)) << text << " in (" << len << "," << prec << ")";
        values += right.status == 0;
        rounded_values += right.status == 0 && right.value.scale < value.scale;
    }
    EXPECT_GT(values, 50000u);
    EXPECT_GT(rounded_values, 20000u);
}

TEST(decimal_from_decimal, ties_at_every_pair_of_scales)
{
    for (int scale = 1; scale <= 38; scale++) {
        for (int prec = 0; prec < scale; prec++) {
            const auto cut = static_cast<size_t>(scale - prec);
            for (const std::string &tail : {"5" + zeros(cut - 1), "4" + nines(cut - 1),
                                            "5" + zeros(cut - 1).replace(0, cut > 1, cut > 1 ? "1" : "")}) {
                for (const char digit : {'0', '4', '9'}) {
                    const std::string text = "0." + std::string(static_cast<size_t>(prec), digit) + tail;
                    for (const std::string &sign : {std::string(), std::string("-")}) {
                        const slow_decimal value = slow_of(sign + text);
                        ASSERT_EQ(from_xdec(record(sign + text), 38, prec), expected(fit(value, 38, prec)))
                            << sign << text << " to " << prec;
                        ASSERT_EQ(from_xdec(record(sign + text), prec, prec), expected(fit(value, prec, prec)))
                            << sign << text << " to (" << prec << "," << prec << ")";
                    }
                }
            }
        }
    }
}

TEST(decimal_from_decimal, zero_stays_zero_in_every_shape)
{
    for (const shape_pair &s : shapes())
        EXPECT_EQ(from_xdec(record("0"), s.len, s.prec), exactly("0")) << "(" << s.len << "," << s.prec << ")";
}

} // namespace bcast::test
