#include "tests/embedded/decimal/decimal_support.h"

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace bcast::test {

namespace {

std::string zeros(size_t count) { return std::string(count, '0'); }

// Tries one digit more and more, with the C library. The closest decimal comes first, and then the next one up: doubles
// are further apart above a power of two than below it.
std::string slow_shortest(double value)
{
    for (int count = 1;; count++) {
        char text[64];
        std::snprintf(text, sizeof text, "%.*e", count - 1, std::fabs(value));
        const size_t e = std::string_view(text).find('e');
        std::string digits(text, e);
        std::erase(digits, '.');
        const std::string exponent = "e" + std::to_string(std::atoi(text + e + 1) - (count - 1));
        for (const std::string &closest : {digits + exponent, plus_one(digits) + exponent}) {
            if (std::strtod(closest.c_str(), nullptr) == std::fabs(value))
                return (std::signbit(value) ? "-" : "") + closest;
        }
    }
}

made slow_from_double(double value, int len, int prec)
{
    return expected(slow_from_text(slow_shortest(value), len, prec));
}

double get_double(const xdec &src)
{
    int32_t status = 12345;
    const double value = xdec_get_double(&src, &status);
    EXPECT_EQ(status, 0) << hex(src);
    return value;
}

double get_double(std::string_view text) { return get_double(record(text)); }

double from_bits(uint64_t bits) { return std::bit_cast<double>(bits); }

void expect_same(double value, double right, std::string_view text)
{
    ASSERT_EQ(std::bit_cast<uint64_t>(value), std::bit_cast<uint64_t>(right))
        << text << ": " << value << ", not " << right;
}

} // namespace

// ---- From double ---------------------------------------------------------------

TEST(decimal_from_double, is_the_shortest_decimal_fitted)
{
    EXPECT_EQ(from_double(0.285, 3, 2), exactly("0.29"));
    EXPECT_EQ(from_double(-0.285, 3, 2), exactly("-0.29"));
    EXPECT_EQ(from_double(1.005, 3, 2), exactly("1.01"));
    EXPECT_EQ(from_double(2.675, 3, 2), exactly("2.68"));
    EXPECT_EQ(from_double(1.45, 2, 1), exactly("1.5"));
    EXPECT_EQ(from_double(0.5, 1, 0), exactly("1"));
    EXPECT_EQ(from_double(1.5, 1, 0), exactly("2"));
    EXPECT_EQ(from_double(2.5, 1, 0), exactly("3"));
    EXPECT_EQ(from_double(-2.5, 1, 0), exactly("-3"));
    EXPECT_EQ(from_double(0.49999999999999994, 1, 0), exactly("0"));
    EXPECT_EQ(from_double(0.1, 0, 0), exactly("0.1"));
    EXPECT_EQ(from_double(0.1 + 0.2, 0, 0), exactly("0.30000000000000004"));
    EXPECT_EQ(from_double(0.1 + 0.2, 18, 4), exactly("0.3"));
    EXPECT_EQ(from_double(123456.7891, 18, 4), exactly("123456.7891"));
    EXPECT_EQ(from_double(double{0.1f}, 0, 0), exactly("0.10000000149011612"));
    EXPECT_EQ(from_double(1e22, 0, 0), exactly("1" + zeros(22)));
    EXPECT_EQ(from_double(1e23, 0, 0), exactly("1" + zeros(23)));
    EXPECT_EQ(from_double(1e37, 38, 0), exactly("1" + zeros(37)));
    EXPECT_EQ(from_double(9.9999999999999e37, 38, 0), exactly("99999999999999" + zeros(24)));
    EXPECT_EQ(from_double(1e38, 38, 0), overflow);
    EXPECT_EQ(from_double(1e38, 0, 0), overflow);
    EXPECT_EQ(from_double(-1e300, 0, 0), overflow);
    EXPECT_EQ(from_double(1e-38, 0, 0), exactly("0." + zeros(37) + "1"));
    EXPECT_EQ(from_double(1.5e-38, 0, 0), exactly("0." + zeros(37) + "2"));
    EXPECT_EQ(from_double(4e-39, 0, 0), exactly("0"));
    EXPECT_EQ(from_double(5e-39, 38, 38), exactly("0." + zeros(37) + "1"));
    EXPECT_EQ(from_double(9007199254740993.0, 0, 0), exactly("9007199254740992"));
    EXPECT_EQ(from_double(9223372036854775807.0, 0, 0), exactly("9223372036854776000"));
}

TEST(decimal_from_double, refuses_infinity_and_nan)
{
    for (const shape_pair &s : shapes()) {
        for (const double value : {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                                   std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::quiet_NaN(),
                                   std::numeric_limits<double>::signaling_NaN()})
            EXPECT_EQ(from_double(value, s.len, s.prec), overflow) << value << " in (" << s.len << "," << s.prec << ")";
    }
}

TEST(decimal_from_double, the_smallest_and_the_largest_are_right_in_every_shape)
{
    const double max = std::numeric_limits<double>::max(), min = std::numeric_limits<double>::min();
    const double least = std::numeric_limits<double>::denorm_min();
    for (const shape_pair &s : shapes()) {
        for (const double value : {0.0, -0.0, least, -least, 3 * least, min - least, min, -min})
            EXPECT_EQ(from_double(value, s.len, s.prec), exactly("0"))
                << value << " in (" << s.len << "," << s.prec << ")";
        for (const double value : {max, -max, max / 2})
            EXPECT_EQ(from_double(value, s.len, s.prec), overflow) << value << " in (" << s.len << "," << s.prec << ")";
    }
}

TEST(decimal_from_double, a_carry_of_the_rounding_may_overflow)
{
    EXPECT_EQ(from_double(9.4, 1, 0), exactly("9"));
    EXPECT_EQ(from_double(9.5, 1, 0), overflow);
    EXPECT_EQ(from_double(99.995, 4, 2), overflow);
    EXPECT_EQ(from_double(99.994, 4, 2), exactly("99.99"));
    EXPECT_EQ(from_double(0.9995, 3, 3), overflow);
    EXPECT_EQ(from_double(0.9994, 3, 5), exactly("0.999"));
    EXPECT_EQ(from_double(0.4, 0, 5), exactly("0"));
    EXPECT_EQ(from_double(0.5, 0, 5), overflow);
}

// The doubles next to a tie of the scale, which one multiplication cannot tell from it.
TEST(decimal_from_double, values_around_ties_are_judged_by_their_shortest_decimal)
{
    std::mt19937_64 random(20260120);
    double power = 1;
    for (int prec = 0; prec <= 22; prec++, power *= 10) {
        for (int i = 0; i < 3000; i++) {
            const uint64_t units = random() >> (11 + random() % 52);
            double value = (static_cast<double>(units) + 0.5) / power;
            for (uint64_t steps = random() % 4; steps > 0; steps--)
                value = std::nextafter(value, random() % 2 == 0 ? 0.0 : HUGE_VAL);
            ASSERT_EQ(from_double(value, 38, prec), slow_from_double(value, 38, prec))
                << slow_shortest(value) << " to " << prec;
        }
    }
}

TEST(decimal_from_double, agrees_with_the_c_library_on_random_doubles)
{
    std::mt19937_64 random(20260121);
    size_t values = 0;
    for (int i = 0; i < 40000; i++) {
        double value = from_bits(random());
        if (i % 4 != 0) // in the range where most decimals are
            value = std::ldexp(static_cast<double>(static_cast<int64_t>(random())), -static_cast<int>(random() % 128));
        if (i % 4 == 1) // with few digits
            value = std::strtod(random_decimals(random()).number().substr(0, 12).c_str(), nullptr);
        if (!std::isfinite(value))
            continue;
        const int len = static_cast<int>(random() % 40),
                  prec = static_cast<int>(random() % static_cast<size_t>(len + 1));
        const made right = slow_from_double(value, len, prec);
        ASSERT_EQ(from_double(value, len, prec), right) << slow_shortest(value) << " in (" << len << "," << prec << ")";
        ASSERT_EQ(from_double(value, 0, 0), slow_from_double(value, 0, 0)) << slow_shortest(value);
        values += right.status == 0;
    }
    EXPECT_GT(values, 20000u);
}

TEST(decimal_from_double, every_power_of_two_and_of_ten_is_right)
{
    for (int exponent = -1074; exponent <= 1023; exponent++) {
        const double value = std::ldexp(1.0, exponent);
        for (const shape_pair &s : {shape_pair{0, 0}, {38, 0}, {38, 38}, {38, 19}, {18, 4}})
            ASSERT_EQ(from_double(value, s.len, s.prec), slow_from_double(value, s.len, s.prec)) << "2^" << exponent;
    }
    for (int exponent = -330; exponent <= 308; exponent++) {
        const std::string text = "1e" + std::to_string(exponent);
        const double value = std::strtod(text.c_str(), nullptr);
        for (const shape_pair &s : {shape_pair{0, 0}, {38, 0}, {38, 38}, {38, 19}, {18, 4}})
            ASSERT_EQ(from_double(value, s.len, s.prec),
                      expected(slow_from_text(value == 0 ? "0" : text, s.len, s.prec)))
                << text;
    }
}

// ---- To double -----------------------------------------------------------------

TEST(decimal_to_double, zero_has_no_sign)
{
    expect_same(get_double("0"), 0.0, "0");
    xdec out;
    ASSERT_EQ(xdec_from_char_with_len_prec("-0.001", 6, 5, 2, &out), 0);
    expect_same(get_double(out), 0.0, "-0.001 to two digits");
}

TEST(decimal_to_double, is_correctly_rounded_around_what_a_double_holds_exactly)
{
    for (const std::string text : {"9007199254740991",
                                   "9007199254740992",
                                   "9007199254740993",
                                   "9007199254740994",
                                   "9007199254740995",

                                   "900719925474099.3",
                                   "0.9007199254740993",
                                   "0.000009007199254740993",
                                   "18446744073709551615",
                                   "18446744073709551616",
                                   "18446744073709549568",
                                   "18446744073709550591",
                                   "18446744073709550592",
                                   "18446744073709550593",
                                   "1844674407370955161.5",
                                   "0.18446744073709551615",
                                   "0.0000000000000000001",
                                   "0.00000000000000000001",
                                   "0.0000000000000000000001",
                                   "0.00000000000000000000001",
                                   "0.1000000000000000055511151231257827021",
                                   "0.1000000000000000124900090270330610871",
                                   "0.10000000000000001249000902703306108712",
                                   "99999999999999999999999999999999999999",
                                   "0.99999999999999999999999999999999999999",
                                   "0.00000000000000000000000000000000000001",
                                   "0.99999999999999994448884876874217297881",
                                   "0.99999999999999994448884876874217297882"}) {
        expect_same(get_double(text), std::strtod(text.c_str(), nullptr), text);
        expect_same(get_double("-" + text), -std::strtod(text.c_str(), nullptr), "-" + text);
    }
}

// Half-way between two doubles, and one unit of the last digit to either side.
TEST(decimal_to_double, ties_go_to_even)
{
    std::mt19937_64 random(20260122);
    for (int i = 0; i < 100000; i++) {
        // An odd number of 54 bits, of which a decimal holds 2^-k for a small k exactly.
        const uint64_t tie = (random() >> 10) | (uint64_t{1} << 53) | 1;
        const size_t halvings = random() % 22;
        slow_decimal value = slow_of(std::to_string(tie));
        for (size_t k = 0; k < halvings; k++) { // times 5, over 10
            uint32_t carry = 0;
            for (size_t at = value.digits.size(); at-- > 0;) {
                carry += static_cast<uint32_t>(value.digits[at] - '0') * 5;
                value.digits[at] = static_cast<char>('0' + carry % 10);
                carry /= 10;
            }
            if (carry > 0)
                value.digits.insert(0, std::to_string(carry));
            value.scale++;
        }
        if (value.digits.size() > 37)
            continue;
        for (int step = 0; step < 3; step++) {
            slow_decimal other = value;
            if (step > 0) { // a digit more, or a unit less of it
                other.digits += step == 1 ? "1" : "0";
                other.scale++;
            }
            if (step == 2) {
                size_t at = other.digits.size() - 1;
                for (; other.digits[at] == '0'; at--)
                    other.digits[at] = '9';
                other.digits[at]--;
            }
            const std::string text = plain_text(other, other.scale);
            expect_same(get_double(record_of(canonical(other))), std::strtod(text.c_str(), nullptr), text);
            if (HasFatalFailure())
                return;
        }
    }
}

TEST(decimal_to_double, agrees_with_the_c_library_on_random_decimals)
{
    random_decimals next(20260123);
    for (int i = 0; i < 300000; i++) {
        const std::string text = next.number();
        const double right = std::strtod(text.c_str(), nullptr);
        expect_same(get_double(text), right == 0 ? 0.0 : right, text);
        if (HasFatalFailure())
            return;
    }
}

TEST(decimal_to_double, gives_back_every_double_that_38_digits_hold)
{
    std::mt19937_64 random(20260124);
    for (int i = 0; i < 200000; i++) {
        const double value =
            std::ldexp(static_cast<double>(static_cast<int64_t>(random())), -static_cast<int>(random() % 128));
        if (std::fabs(value) < 1e-21) // 17 digits may end behind the 38th
            continue;
        xdec out;
        ASSERT_EQ(xdec_from_double_with_len_prec(value, 0, 0, &out), 0) << value;
        ASSERT_EQ(get_double(out), value) << hex(out);
    }
}

} // namespace bcast::test
