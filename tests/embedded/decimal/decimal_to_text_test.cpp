#include "tests/embedded/decimal/decimal_support.h"
#include "tests/support/levels.h"

#include <embedded/text/written_digits.h>

namespace bcast::test {

namespace {

std::string zeros(size_t count) { return std::string(count, '0'); }
std::string nines(size_t count) { return std::string(count, '9'); }

struct text_case {
    const char *value;
    shape_pair shape;
    std::string text;
};

// Into a buffer of that many bytes between inaccessible pages.
std::string to_guarded_text(const xdec &value, size_t buf_size, int len, int prec)
{
    std::string results[2];
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        guarded<char> buf(buf_size, edge);
        int32_t size = -1;
        const int32_t status = xdec_to_char_with_zero(&value, buf.data(), static_cast<int32_t>(buf_size),
                                                      static_cast<uint16_t>(len), prec, &size);
        std::string &result = results[edge == guard_edge::start];
        EXPECT_TRUE(buf.slack_untouched()) << "written beyond " << buf_size << " bytes";
        if (status >= 0) {
            result = std::string(buf.data(), static_cast<size_t>(size));
            continue;
        }
        result = "status " + std::to_string(status);
        EXPECT_EQ(size, -1) << "failed and wrote the length";
        EXPECT_EQ(std::string(buf.begin(), buf.end()), std::string(buf_size, static_cast<char>(guard_fill)))
            << "failed and wrote text";
    }
    EXPECT_EQ(results[0], results[1]);
    return results[0];
}

} // namespace

TEST(decimal_to_text, without_a_shape_all_digits_are_shown_and_no_more)
{
    const text_case cases[] = {
        {"0", {0, 0}, "0"},
        {"0.00", {0, 0}, "0"},
        {"1", {0, 0}, "1"},
        {"-1", {0, 0}, "-1"},
        {"10", {0, 0}, "10"},
        {"0.5", {0, 0}, "0.5"},
        {"-0.5", {0, 0}, "-0.5"},
        {"0.50", {0, 0}, "0.5"},
        {"100.250", {0, 0}, "100.25"},
        {"-123456.7891", {0, 0}, "-123456.7891"},
        {"1e37", {0, 0}, "1" + zeros(37)},
        {"1e-38", {0, 0}, "0." + zeros(37) + "1"},
        {"-1e-38", {0, 0}, "-0." + zeros(37) + "1"},
        {"99999999999999999999999999999999999999", {0, 0}, nines(38)},
        {"-9999999999999999999.9999999999999999999", {0, 0}, "-" + nines(19) + "." + nines(19)},
    };
    for (const text_case &c : cases)
        EXPECT_EQ(to_text(record(c.value), c.shape.len, c.shape.prec), c.text) << c.value;
}

TEST(decimal_to_text, with_a_shape_prec_digits_stand_behind_the_point)
{
    const text_case cases[] = {
        {"0", {5, 2}, "0.00"},
        {"0", {5, 0}, "0"},
        {"5", {5, 2}, "5.00"},
        {"-5", {5, 2}, "-5.00"},
        {"5.5", {5, 2}, "5.50"},
        {"5.5", {5, 0}, "6"},
        {"-5.5", {5, 0}, "-6"},
        {"5.25", {5, 1}, "5.3"},
        {"5.24", {5, 1}, "5.2"},
        {"-5.25", {5, 1}, "-5.3"},
        {"0.285", {5, 2}, "0.29"},
        {"0.004", {5, 2}, "0.00"},
        {"-0.004", {5, 2}, "0.00"},
        {"-0.005", {5, 2}, "-0.01"},
        {"0.5", {5, 0}, "1"},
        {"-0.4", {5, 0}, "0"},
        {"9.99", {5, 1}, "10.0"},
        {"999.999", {5, 2}, "1000.00"},
        {"12345.678", {3, 1}, "12345.7"}, // never cut before the point
        {"12345.678", {1, 1}, "12345.7"},
        {"12345", {0, 1}, "12345.0"},
        {"12345.5", {5, 0}, "12346"},
        {"1e-38", {38, 38}, "0." + zeros(37) + "1"},
        {"1e-38", {38, 37}, "0." + zeros(37)},
        {"5e-38", {38, 37}, "0." + zeros(36) + "1"},
        {"1", {38, 38}, "1." + zeros(38)},
        {"1", {255, 255}, "1." + zeros(255)},
        {"-1e-38", {255, 255}, "-0." + zeros(37) + "1" + zeros(217)},
        {"99999999999999999999999999999999999999", {255, 255}, nines(38) + "." + zeros(255)},
        {"-99999999999999999999999999999999999999", {1, 255}, "-" + nines(38) + "." + zeros(255)},
        {"9999999999999999999999999999999999999.5", {38, 0}, "1" + zeros(37)},
        {"0.99999999999999999999999999999999999999", {38, 37}, "1." + zeros(37)},
        {"7", {0xFFFF, 3}, "7.000"},
        {"7.5", {0xFFFF, 0}, "8"},
        {"7.5", {0xFF80, 1}, "7.5"},
    };
    for (const text_case &c : cases)
        EXPECT_EQ(to_text(record(c.value), c.shape.len, c.shape.prec), c.text)
            << c.value << " in (" << c.shape.len << "," << c.shape.prec << ")";
}

TEST(decimal_to_text, every_shape_agrees_with_the_slow_arithmetic)
{
    for (const char *text : {"0",
                             "1",
                             "-1",
                             "9",
                             "10",
                             "99",
                             "-99.5",
                             "0.5",
                             "-0.05",
                             "0.049",
                             "123456.7891",
                             "-123456.7891",
                             "99999999.99999999",
                             "9999999999999999",
                             "10000000000000000",
                             "-99999999999999999",
                             "0.9999999999999999",
                             "0.99999999999999995",
                             "9999999999999999.5",
                             "18446744073709551615",
                             "18446744073709551616",
                             "1844674407370955161.5",
                             "1.8446744073709551615",
                             "0.00000000000000000001",
                             "1e-38",
                             "-5e-38",
                             "99999999999999999999999999999999999999",
                             "-9.9999999999999999999999999999999999999"}) {
        const slow_decimal value = slow_of(text);
        for (int prec = 0; prec <= 255; prec++) {
            for (const int len : {0, 1, 5, 38, 255, 0xFFFF})
                ASSERT_EQ(to_text(record(text), len, prec), slow_to_text(value, len, prec))
                    << text << " in (" << len << "," << prec << ")";
        }
    }
}

TEST(decimal_to_text, random_decimals_agree_with_the_slow_arithmetic)
{
    random_decimals next(20260130);
    for (int i = 0; i < 300000; i++) {
        const std::string text = next.number();
        const int len = static_cast<int>(next.below(4) * 10),
                  prec = static_cast<int>(next.below(next.one_in(3) ? 45 : 20));
        ASSERT_EQ(to_text(record(text), len, prec), slow_to_text(slow_of(text), len, prec))
            << text << " in (" << len << "," << prec << ")";
        ASSERT_EQ(to_text(record(text), 0, 0), slow_to_text(slow_of(text), 0, 0)) << text;
    }
}

TEST(decimal_to_text, the_text_reads_back_as_the_same_record)
{
    random_decimals next(20260131);
    for (int i = 0; i < 200000; i++) {
        const std::string number = next.number();
        const made right = exactly(number);
        ASSERT_EQ(from_text(to_text(record(number), 0, 0), 0, 0), right) << number;
        ASSERT_EQ(from_text(to_text(record(number), 1, 40), 0, 0), right) << number;
    }
}

TEST(decimal_to_text, every_digit_count_at_every_scale)
{
    for (size_t count = 1; count <= 38; count++) {
        for (const std::string &digits : {"1" + zeros(count - 1), nines(count),
                                          std::string("12345678901234567890123456789012345678").substr(0, count)}) {
            for (size_t scale = 0; scale <= 38; scale++) {
                const std::string text = digits + "e-" + std::to_string(scale);
                const slow_decimal value = slow_of(text);
                const int prec = static_cast<int>(scale);
                ASSERT_EQ(to_text(record(text), 0, 0), slow_to_text(value, 0, 0)) << text;
                ASSERT_EQ(to_text(record("-" + text), 38, prec), "-" + slow_to_text(value, 38, prec)) << text;
                ASSERT_EQ(to_text(record(text), 38, prec + 3), slow_to_text(value, 38, prec + 3)) << text;
            }
        }
    }
}

TEST(decimal_to_text, fails_where_the_buffer_is_too_small_and_nowhere_else)
{
    const std::string too_long = "status " + std::to_string(ERR_TRUNCATED);
    for (const char *text : {"0", "-1", "0.5", "-123456.7891", "99999999999999999999999999999999999999", "-1e-38"}) {
        for (const shape_pair &s : {shape_pair{0, 0}, {18, 4}, {38, 0}, {38, 38}, {255, 255}}) {
            const std::string whole = slow_to_text(slow_of(text), s.len, s.prec);
            for (size_t buf_size = 0; buf_size <= whole.size() + 60;
                 buf_size += buf_size < 70 || buf_size + 5 > whole.size() ? 1 : 7) {
                ASSERT_EQ(to_guarded_text(record(text), buf_size, s.len, s.prec),
                          buf_size < whole.size() ? too_long : whole)
                    << text << " in (" << s.len << "," << s.prec << ") and " << buf_size << " bytes";
            }
        }
    }
}

TEST(decimal_to_text, a_prec_of_any_size_is_harmless)
{
    char buf[400];
    int32_t size = -1;
    const xdec value = record("-2.5");
    EXPECT_EQ(xdec_to_char_with_zero(&value, buf, sizeof buf, 5, INT32_MAX, &size), ERR_TRUNCATED);
    EXPECT_EQ(xdec_to_char_with_zero(&value, buf, sizeof buf, 5, INT32_MIN, &size), 0);
    EXPECT_EQ(std::string(buf, static_cast<size_t>(size)), "-3");
    EXPECT_EQ(xdec_to_char_with_zero(&value, buf, -1, 5, 1, &size), ERR_TRUNCATED);
    EXPECT_EQ(xdec_to_char_with_zero(&value, buf, INT32_MIN, 0, 0, &size), ERR_TRUNCATED);
}

// ---- Each level

template <class Level> class sixteen_digits : public level_test<Level> {};
TYPED_TEST_SUITE(sixteen_digits, all_levels, level_names);

TYPED_TEST(sixteen_digits, are_the_digits_of_the_value_from_any_on)
{
    std::mt19937_64 random(20260132);
    for (int i = 0; i < 300000; i++) {
        uint64_t value = (random() >> (random() % 60)) % 10000000000000000;
        if (i % 4 == 0) { // every four digits at every place
            value = static_cast<uint64_t>(i / 4 % 10000);
            for (size_t place = static_cast<size_t>(i) / 40000 % 4; place > 0; place--)
                value *= 10000;
        }
        std::string right = std::to_string(value);
        right.insert(0, 16 - right.size(), '0');
        const size_t skipped = random() % 17;
        char text[16];
        embedded::written_digits<TypeParam::value>(value).write_from(skipped, text);
        ASSERT_EQ(std::string(text, 16 - skipped), right.substr(skipped)) << value << " without " << skipped;
    }
}

} // namespace bcast::test
