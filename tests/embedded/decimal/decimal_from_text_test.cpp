#include "tests/embedded/decimal/decimal_support.h"
#include "tests/embedded/text/filled_number_text.h"
#include "tests/support/levels.h"

#include <embedded/decimal/plain_decimal.h>

namespace bcast::test {

namespace {

struct text_case {
    std::string text;
    int len;
    int prec;
    made result;
};

// Beside an inaccessible page, with either edge.
made read_guarded(std::string_view text, int len, int prec)
{
    made results[2];
    for (const guard_edge edge : {guard_edge::end, guard_edge::start})
        results[edge == guard_edge::start] = from_text({beside_page(text, edge), text.size()}, len, prec);
    EXPECT_EQ(results[0], results[1]) << "\"" << text << "\" depends on where it stands";
    return results[0];
}

void expect_all(const std::vector<text_case> &cases)
{
    for (const text_case &c : cases) {
        EXPECT_EQ(read_guarded(c.text, c.len, c.prec), c.result)
            << "\"" << c.text << "\" in (" << c.len << "," << c.prec << ")";
        EXPECT_EQ(expected(slow_from_text(c.text, c.len, c.prec)), c.result)
            << "\"" << c.text << "\" in (" << c.len << "," << c.prec << ") by the slow reading";
    }
}

std::string zeros(size_t count) { return std::string(count, '0'); }
std::string nines(size_t count) { return std::string(count, '9'); }

} // namespace

// ---- Grammar -------------------------------------------------------------------

TEST(decimal_from_text, reads_signs_blanks_points_and_exponents)
{
    expect_all({
        {"0", 0, 0, exactly("0")},
        {"7", 0, 0, exactly("7")},
        {"-7", 0, 0, exactly("-7")},
        {"+7", 0, 0, exactly("7")},
        {"+7.5", 0, 0, exactly("7.5")},
        {"007", 0, 0, exactly("7")},
        {".5", 0, 0, exactly("0.5")},
        {"-.5", 0, 0, exactly("-0.5")},
        {"+.5", 0, 0, exactly("0.5")},
        {"5.", 0, 0, exactly("5")},
        {"-5.", 0, 0, exactly("-5")},
        {"5.e1", 0, 0, exactly("50")},
        {".5e1", 0, 0, exactly("5")},
        {" \t\n\v\f\r12.5 \r\f\v\n\t", 0, 0, exactly("12.5")},
        {"123456.7891", 18, 4, exactly("123456.7891")},
        {"-123456.7891", 18, 4, exactly("-123456.7891")},
        {"1e3", 0, 0, exactly("1000")},
        {"1E3", 0, 0, exactly("1000")},
        {"1e+3", 0, 0, exactly("1000")},
        {"1e-3", 0, 0, exactly("0.001")},
        {"-12.345e2", 0, 0, exactly("-1234.5")},
        {"12.345e3", 0, 0, exactly("12345")},
        {"12.345e-2", 0, 0, exactly("0.12345")},
        {"1e0003", 0, 0, exactly("1000")},
    });
}

TEST(decimal_from_text, a_text_without_a_digit_or_with_more_than_a_number_is_bad)
{
    for (const std::string text : {"",
                                   " ",
                                   "-",
                                   "+",
                                   ".",
                                   "-.",
                                   "+.",
                                   " . ",
                                   "e",
                                   "e5",
                                   ".e5",
                                   "-e5",
                                   "   \t ",
                                   "+-",
                                   "--1",
                                   "+-1",
                                   "-+1",
                                   "1-",
                                   "1+",
                                   "- 5",
                                   "1 2",
                                   "1 .5",
                                   "1. 5",
                                   "1 e5",
                                   "1e 5",
                                   "1e",
                                   "1e+",
                                   "1e-",
                                   "1e.5",
                                   "1e1.0",
                                   "1e1e1",
                                   "1ee1",
                                   "1.2.3",
                                   "1..2",
                                   "..1",
                                   "1.2.",
                                   ".1.",
                                   "5,0",
                                   "inf",
                                   "nan",
                                   "Infinity",
                                   "0x10",
                                   "1_000",
                                   "1d3",
                                   "12345678901234567.8.9",
                                   "1234567890.1234567890.",
                                   "-.-",
                                   "1.-1",
                                   "99999999999999999999999999999999999999999x",
                                   "1e99999999999999999999x"}) {
        for (const shape_pair &s : shapes())
            EXPECT_EQ(read_guarded(text, s.len, s.prec), bad)
                << "\"" << text << "\" in (" << s.len << "," << s.prec << ")";
    }
}

TEST(decimal_from_text, every_byte_at_every_place_is_judged_as_the_grammar_says)
{
    for (const std::string good :
         {"1", "12", "-1.5", "1234567.8", "123456.7891", "-123456.7891", "1234567890123456", "12345678901234.56",
          "-.1234567890123456", "12345678901234567", "-12345678901234567.89", "1234567890123456789012345678901.",
          "-12345678901234567890123456789.0", "123456789012345678901234567890.12345678"}) {
        for (size_t at = 0; at < good.size(); at++) {
            for (int c = 0; c < 256; c++) {
                std::string text = good;
                text[at] = static_cast<char>(c);
                ASSERT_EQ(from_text(text, 0, 0), expected(slow_from_text(text, 0, 0)))
                    << "\"" << good << "\" with byte " << c << " at " << at;
            }
        }
    }
}

// ---- Lengths -------------------------------------------------------------------

TEST(decimal_from_text, texts_of_every_length_with_the_point_anywhere_stand_beside_inaccessible_pages)
{
    for (size_t count = 1; count <= 42; count++) {
        std::string digits;
        for (size_t i = 0; i < count; i++)
            digits += static_cast<char>('1' + i % 9);
        for (size_t point = 0; point <= count + 1; point++) {
            for (const std::string sign : {"", "-", "+"}) {
                std::string text = digits;
                if (point <= count)
                    text.insert(point, ".");
                text.insert(0, sign);
                ASSERT_EQ(read_guarded(text, 0, 0), expected(slow_from_text(text, 0, 0))) << "\"" << text << "\"";
                ASSERT_EQ(read_guarded(text, 38, 20), expected(slow_from_text(text, 38, 20))) << "\"" << text << "\"";
            }
        }
    }
}

TEST(decimal_from_text, zeros_at_the_end_are_cut_behind_the_point_and_there_alone)
{
    for (const size_t whole_count : {0u, 1u, 2u, 5u, 10u, 16u}) {
        for (size_t fraction_count = 0; fraction_count <= 22; fraction_count++) {
            for (size_t zero_count = 0; zero_count <= 20; zero_count++) {
                for (const std::string &whole : {std::string(whole_count, '7'), "7" + zeros(whole_count)}) {
                    const std::string text = whole + "." + std::string(fraction_count, '3') + zeros(zero_count);
                    if (text == ".")
                        continue;
                    ASSERT_EQ(from_text(text, 0, 0), expected(slow_from_text(text, 0, 0))) << "\"" << text << "\"";
                }
            }
        }
    }
}

TEST(decimal_from_text, a_text_of_length_0_reads_nothing)
{
    const guarded<char> nothing(0);
    for (const shape_pair &s : shapes()) {
        const made result =
            make([&](xdec *out) { return xdec_from_char_with_len_prec(nothing.data(), 0, s.len, s.prec, out); });
        EXPECT_EQ(result, bad) << "(" << s.len << "," << s.prec << ")";
    }
}

TEST(decimal_from_text, what_stands_behind_the_length_does_not_count)
{
    const std::string text = "12345678901234567890.1234567890123456789";
    for (size_t length = 1; length <= text.size(); length++) {
        const std::string_view part(text.data(), length);
        EXPECT_EQ(from_text(part, 0, 0), expected(slow_from_text(part, 0, 0))) << length;
    }
}

TEST(decimal_from_text, long_texts_are_judged_by_all_their_digits)
{
    expect_all({
        {zeros(318) + "5", 1, 0, exactly("5")},
        {"0." + zeros(316) + "5", 38, 38, exactly("0")},
        {nines(319), 38, 0, overflow},
        {"1." + nines(317), 38, 0, exactly("2")},
        {"1.4" + nines(316), 38, 0, exactly("1")},
        {"1.5" + zeros(316), 38, 0, exactly("2")},
        {"1." + zeros(316) + "1", 0, 0, exactly("1")},
        {std::string(300, ' ') + "-1.25" + std::string(14, ' '), 3, 1, exactly("-1.3")},
    });
    const std::string long_zeros(65535 - 4, '0'), long_nines(65535 - 4, '9');
    expect_all({
        {"0.05" + long_zeros, 3, 1, exactly("0.1")},
        {"0.04" + long_nines, 3, 1, exactly("0")},
        {"0.4" + long_nines + "9", 1, 0, exactly("0")},
        {"0.5" + long_zeros + "1", 1, 0, exactly("1")},
        {long_zeros + "1.25", 3, 1, exactly("1.3")},
        {"1" + long_zeros.substr(7) + "e-65524", 1, 0, exactly("1")},
        {"15" + long_zeros.substr(8) + "e-65524", 1, 0, exactly("2")},
        {"14" + long_nines.substr(8) + "e-65524", 1, 0, exactly("1")},
        {"0." + long_zeros.substr(10) + "25e65522", 3, 1, exactly("2.5")},
        {"99" + long_nines + "99", 38, 0, overflow},
        {long_zeros + "000x", 38, 0, bad},
    });
}

TEST(decimal_from_text, exponents_of_any_size_are_exact)
{
    const std::string ones(300, '1');
    expect_all({
        {"1e37", 0, 0, exactly("1" + zeros(37))},
        {"1e38", 0, 0, overflow},
        {"0.1e38", 0, 0, exactly("1" + zeros(37))},
        {"0.0001e41", 0, 0, exactly("1" + zeros(37))},
        {"-1e37", 38, 0, exactly("-1" + zeros(37))},
        {"1e-38", 0, 0, exactly("0." + zeros(37) + "1")},
        {"4e-39", 0, 0, exactly("0")},
        {"5e-39", 0, 0, exactly("0." + zeros(37) + "1")},
        {"-5e-39", 38, 38, exactly("-0." + zeros(37) + "1")},
        {"9e-40", 0, 0, exactly("0")},
        {"1e99999999999999999999", 38, 0, overflow},
        {"1e-99999999999999999999", 38, 0, exactly("0")},
        {"-9e-99999999999999999999", 38, 38, exactly("0")},
        {"0e99999999999999999999", 38, 0, exactly("0")},
        {"-0.000e99999999999999999999", 1, 1, exactly("0")},
        {"1e9223372036854775807", 0, 0, overflow},
        {"1e-9223372036854775808", 0, 0, exactly("0")},
        {"1e18446744073709551616", 0, 0, overflow},
        {"1e4294967296", 0, 0, overflow},
        {"1e-4294967296", 0, 0, exactly("0")},
        {"1e" + zeros(300) + "2", 0, 0, exactly("100")},
        {ones + "e-299", 38, 37, exactly("1." + ones.substr(0, 37))},
        {ones + "e-300", 38, 38, exactly("0." + ones.substr(0, 38))},
        {"0." + zeros(280) + "123e283", 3, 0, exactly("123")},
    });
}

// ---- Shapes --------------------------------------------------------------------

TEST(decimal_from_text, rounds_ties_away_from_zero_at_every_scale)
{
    for (int scale = 0; scale <= 38; scale++) {
        const std::string kept = scale == 0 ? "0." : "0." + zeros(static_cast<size_t>(scale));
        const std::string unit = scale == 0 ? "1" : "0." + zeros(static_cast<size_t>(scale) - 1) + "1";
        const int len = std::max(scale, 1);
        expect_all({
            {kept + "5", len, scale, exactly(unit)},
            {"-" + kept + "5", len, scale, exactly("-" + unit)},
            {kept + "4999999999999999999999999999999999999999", len, scale, exactly("0")},
            {kept + "5000000000000000000000000000000000000001", len, scale, exactly(unit)},
            {kept + "4", len, scale, exactly("0")},
            {kept + "49", len, scale, exactly("0")},
            {kept + "6", len, scale, exactly(unit)},
            {kept + "05", len, scale, exactly("0")},
        });
    }
}

TEST(decimal_from_text, values_around_every_tie_of_every_scale_are_right)
{
    for (int scale = 0; scale <= 38; scale++) {
        for (const std::string tail :
             {"4", "5", "6", "49", "50", "51", "4999999999", "5000000000", "5000000001", "0", ""}) {
            for (const std::string head : {"0", "1", "3", "7", "9", "99", "12345", "129", "999999999"}) {
                std::string fraction = std::string(static_cast<size_t>(scale), '9');
                for (const char filler : {'9', '0', '2', '7'}) {
                    fraction.assign(static_cast<size_t>(scale), filler);
                    const std::string text = head + "." + fraction + tail;
                    for (int len : {scale, scale + 1, scale + 2, 18, 38, 0}) {
                        ASSERT_EQ(from_text(text, len, scale), expected(slow_from_text(text, len, scale)))
                            << text << " in (" << len << "," << scale << ")";
                    }
                }
            }
        }
    }
}

TEST(decimal_from_text, a_carry_of_the_rounding_may_overflow)
{
    expect_all({
        {"9.4", 1, 0, exactly("9")},
        {"9.5", 1, 0, overflow},
        {"-9.5", 1, 0, overflow},
        {"0.94", 1, 1, exactly("0.9")},
        {"0.95", 1, 1, overflow},
        {"999.994", 5, 2, exactly("999.99")},
        {"999.995", 5, 2, overflow},
        {"99.995", 5, 2, exactly("100")},
        {nines(38) + ".4", 38, 0, exactly(nines(38))},
        {nines(38) + ".5", 38, 0, overflow},
        {nines(38) + ".5", 0, 0, overflow},
        {nines(38) + ".4" + nines(30), 0, 0, exactly(nines(38))},
        {"9." + nines(38), 0, 0, exactly("10")},
        {"-9." + nines(37) + "4", 0, 0, exactly("-9." + nines(37))},
        {"0." + nines(39), 0, 0, exactly("1")},
        {"0." + nines(38) + "4", 38, 38, exactly("0." + nines(38))},
        {"0." + nines(38) + "5", 38, 38, overflow},
        {"0." + nines(38) + "5", 38, 37, exactly("1")},
        {nines(20) + "." + nines(18) + "5", 0, 0, exactly("1" + zeros(20))},
    });
}

TEST(decimal_from_text, the_digits_before_the_point_are_limited_exactly)
{
    for (int len = 1; len <= 40; len++) {
        for (int prec = 0; prec <= len; prec++) {
            const int digits = std::min(len, 38), whole = digits - std::min(prec, digits);
            const std::string largest = whole == 0 ? "0" : nines(static_cast<size_t>(whole));
            const std::string first_too_large = "1" + zeros(static_cast<size_t>(whole));
            EXPECT_EQ(from_text(largest, len, prec), exactly(largest)) << "(" << len << "," << prec << ")";
            EXPECT_EQ(from_text("-" + largest, len, prec), exactly("-" + largest)) << "(" << len << "," << prec << ")";
            EXPECT_EQ(from_text(first_too_large, len, prec), overflow) << "(" << len << "," << prec << ")";
            EXPECT_EQ(from_text("-" + first_too_large + ".0", len, prec), overflow) << "(" << len << "," << prec << ")";
            EXPECT_EQ(from_text("00000" + largest + ".", len, prec), exactly(largest))
                << "(" << len << "," << prec << ")";
        }
    }
}

TEST(decimal_from_text, special_shapes_mean_what_they_are_said_to)
{
    expect_all({
        // No shape: 38 digits wherever the point is, as many behind it as find room.
        {nines(38), 0, 0, exactly(nines(38))},
        {nines(39), 0, 0, overflow},
        {"0." + nines(38), 0, 0, exactly("0." + nines(38))},
        {nines(19) + "." + nines(19), 0, 0, exactly(nines(19) + "." + nines(19))},
        {"1." + zeros(36) + "15", 0, 0, exactly("1." + zeros(36) + "2")},
        {"12." + zeros(35) + "15", 0, 0, exactly("12." + zeros(35) + "2")},
        {"12." + zeros(35) + "14", 0, 0, exactly("12." + zeros(35) + "1")},
        // More digits than 38 count as 38.
        {nines(38), 255, 0, exactly(nines(38))},
        {nines(39), 255, 0, overflow},
        {"0." + nines(38), 255, 255, exactly("0." + nines(38))},
        {"1", 255, 255, overflow},
        {"1", 39, 39, overflow},
        {"1", 255, 38, overflow},
        {"1.5", 255, 37, exactly("1.5")},
        // A prec above len: len digits, all behind the point.
        {"0.999", 3, 5, exactly("0.999")},
        {"0.1234", 3, 5, exactly("0.123")},
        {"0.12345", 3, 255, exactly("0.123")},
        {"0.9994", 3, 5, exactly("0.999")},
        {"0.9995", 3, 5, overflow},
        {"1", 3, 5, overflow},
        // No digits at all: zero alone.
        {"0", 0, 5, exactly("0")},
        {"0.4", 0, 5, exactly("0")},
        {"-0.4", 0, 5, exactly("0")},
        {"0.5", 0, 5, overflow},
        {"1", 0, 5, overflow},
        {"0.00000001", 0, 255, exactly("0")},
    });
}

TEST(decimal_from_text, shapes_beyond_a_byte_are_harmless)
{
    for (const int32_t len : {INT32_MIN, -1, 256, INT32_MAX}) {
        for (const int32_t prec : {INT32_MIN, -1, 256, INT32_MAX}) {
            EXPECT_EQ(from_text("0.25", len, prec), exactly("0.25")) << len << ", " << prec;
            EXPECT_EQ(from_text("1", len, prec), overflow) << len << ", " << prec;
        }
    }
}

// ---- Zero ----------------------------------------------------------------------

TEST(decimal_from_text, zero_has_one_record_at_every_scale)
{
    const xdec zero = record("0");
    ASSERT_EQ(zero.bytes[0], 0x80);
    ASSERT_EQ(zero.bytes[1], 0);
    for (const shape_pair &s : shapes()) {
        for (const std::string sign : {"", "-", "+", " ", " -"}) {
            for (size_t scale = 0; scale <= 45; scale++) {
                for (const std::string &text : {"0." + zeros(scale), "." + zeros(scale + 1), zeros(scale + 1),
                                                "0e" + std::to_string(scale), "0.0e-" + std::to_string(scale)}) {
                    ASSERT_EQ(from_text(sign + text, s.len, s.prec), exactly("0"))
                        << sign << text << " in (" << s.len << "," << s.prec << ")";
                }
            }
        }
    }
}

// ---- Random texts --------------------------------------------------------------

namespace {

struct random_texts : random_decimals {
    using random_decimals::random_decimals;

    std::string operator()()
    {
        std::string text;
        if (one_in(12))
            text += std::string(below(3), " \t\n\v\f\r"[below(6)]);
        if (one_in(3))
            text += one_in(3) ? '+' : '-';
        std::string number = digits(one_in(5) ? below(80) : one_in(2) ? below(20) : below(42));
        if (!one_in(3))
            number.insert(number.begin() + static_cast<std::ptrdiff_t>(below(number.size() + 1)), '.');
        text += number;
        if (one_in(8)) {
            text += one_in(2) ? 'e' : 'E';
            if (one_in(2))
                text += one_in(2) ? '-' : '+';
            text += one_in(10) ? digits(25) : std::to_string(below(60));
        }
        if (one_in(12))
            text += std::string(below(3), " \t\n\v\f\r"[below(6)]);
        if (one_in(12) && !text.empty())
            text[below(text.size())] = one_in(2) ? "0123456789+-.eE xX/:"[below(20)] : static_cast<char>(below(256));
        return text;
    }

    shape_pair shape()
    {
        if (one_in(3))
            return shapes()[below(shapes().size())];
        const int len = static_cast<int>(below(40));
        return {len, static_cast<int>(below(static_cast<size_t>(len) + 2))};
    }
};

} // namespace

TEST(decimal_from_text, agrees_with_the_slow_reading_on_random_texts)
{
    random_texts next(20260101);
    size_t values = 0, overflows = 0, bads = 0;
    for (int i = 0; i < 400000; i++) {
        const std::string text = next();
        const shape_pair s = next.shape();
        const made right = expected(slow_from_text(text, s.len, s.prec));
        ASSERT_EQ(from_text(text, s.len, s.prec), right) << "\"" << text << "\" in (" << s.len << "," << s.prec << ")";
        (right.status == 0 ? values : right == overflow ? overflows : bads)++;
    }
    // The texts are worth something only while they come out in all three ways.
    EXPECT_GT(values, 50000u);
    EXPECT_GT(overflows, 50000u);
    EXPECT_GT(bads, 10000u);
}

TEST(decimal_from_text, agrees_with_the_slow_reading_beside_inaccessible_pages)
{
    random_texts next(20260102);
    for (int i = 0; i < 20000; i++) {
        const std::string text = next();
        const shape_pair s = next.shape();
        ASSERT_EQ(read_guarded(text, s.len, s.prec), expected(slow_from_text(text, s.len, s.prec)))
            << "\"" << text << "\" in (" << s.len << "," << s.prec << ")";
    }
}

// ---- Filled texts --------------------------------------------------------------

TEST(decimal_from_text, blanks_and_zeros_of_every_count_around_a_number_change_nothing_but_their_reader)
{
    for (const std::string &text : filled_number_texts()) {
        for (const shape_pair s : {shape_pair{0, 0}, {18, 4}, {38, 20}})
            ASSERT_EQ(read_guarded(text, s.len, s.prec), expected(slow_from_text(text, s.len, s.prec)))
                << "\"" << text << "\" in (" << s.len << "," << s.prec << ")";
    }
}

TEST(decimal_from_text, agrees_with_the_slow_reading_on_random_filled_texts)
{
    random_filled_text next;
    random_texts shapes_of(20260105);
    size_t values = 0, overflows = 0, bads = 0;
    for (int i = 0; i < 300000; i++) {
        const std::string text = next();
        const shape_pair s = shapes_of.shape();
        const made right = expected(slow_from_text(text, s.len, s.prec));
        ASSERT_EQ(from_text(text, s.len, s.prec), right) << "\"" << text << "\" in (" << s.len << "," << s.prec << ")";
        (right.status == 0 ? values : right == overflow ? overflows : bads)++;
    }
    // The texts are worth something only while they come out in all three ways.
    EXPECT_GT(values, 50000u);
    EXPECT_GT(overflows, 50000u);
    EXPECT_GT(bads, 10000u);
}

// ---- Each level

template <class Level> class plain_decimal : public level_test<Level> {
protected:
    using decimals = embedded::plain_decimals<Level::value>;
};
TYPED_TEST_SUITE(plain_decimal, all_levels, level_names);

// What it does not read it leaves to the reader of literals.
TYPED_TEST(plain_decimal, what_it_reads_is_right_and_canonical_and_plain_texts_are_read)
{
    random_texts next(20260103);
    size_t read = 0;
    for (int i = 0; i < 300000; i++) {
        const std::string text = next().substr(0, embedded::plain_decimal_max + 1);
        if (text.empty())
            continue;
        const char *copy = beside_page(text, i % 2 == 0 ? guard_edge::end : guard_edge::start);
        embedded::decimal value;
        slow_decimal right;
        const bool is_number = slow_read(text, &right);
        const bool is_plain =
            is_number && text.size() <= 15 && text.find_first_not_of("-.0123456789") == std::string::npos;
        const bool was_read = TestFixture::decimals::read_short(copy, text.size(), &value);
        ASSERT_TRUE(was_read || !is_plain) << "\"" << text << "\" was not read";
        if (!was_read)
            continue;
        read++;
        ASSERT_TRUE(is_number) << "\"" << text << "\" was read";
        xdec out;
        embedded::write_decimal(value, &out);
        ASSERT_EQ(hex(out), hex(record_of(canonical(right)))) << "\"" << text << "\"";
    }
    EXPECT_GT(read, 50000u);
}

TYPED_TEST(plain_decimal, long_ones_that_it_reads_are_right_and_canonical)
{
    constexpr size_t long_max = TestFixture::decimals::long_max;
    constexpr bool reads_more = long_max > embedded::plain_decimal_max + 1;
    random_texts next(20260104);
    size_t read = 0;
    for (int i = 0; i < 300000; i++) {
        const std::string text = next();
        if (text.empty())
            continue;
        const char *copy = beside_page(text, i % 2 == 0 ? guard_edge::end : guard_edge::start);
        embedded::decimal value;
        slow_decimal right;
        const bool is_number = slow_read(text, &right);
        const bool is_plain =
            is_number && text.size() <= long_max && text.find_first_of("eE \t\n\v\f\r") == std::string::npos;
        const bool was_read = TestFixture::decimals::read_long(copy, text.size(), &value);
        if (reads_more) {
            ASSERT_EQ(was_read, is_plain) << "\"" << text << "\"";
        } else {
            ASSERT_TRUE(!was_read || is_plain) << "\"" << text << "\"";
        }
        if (!was_read)
            continue;
        read++;
        xdec out;
        embedded::write_decimal(value, &out);
        ASSERT_EQ(hex(out), hex(record_of(canonical(right)))) << "\"" << text << "\"";
    }
    EXPECT_GT(read, 50000u);
}

} // namespace bcast::test
