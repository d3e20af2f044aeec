// A type of intervals by the named values of the public headers, in C and in C++.
#include "tests/embedded/public_values.h"

#include <bcast/embedded.hpp>

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

// Constants in C++.
static_assert(bcast_iv_shape(BCAST_IV_WORD(IV_HOUR_TO_MINUTE, 3, 5)) == IV_HOUR_TO_MINUTE);
static_assert(bcast_iv_leading(BCAST_IV_WORD(IV_HOUR_TO_MINUTE, 3, 5)) == 3);
static_assert(bcast_iv_fraction(BCAST_IV_WORD(IV_HOUR_TO_MINUTE, 3, 5)) == 5);
static_assert(bcast_dec_len(BCAST_DEC_SHAPE(200, 100)) == 200 && bcast_dec_prec(BCAST_DEC_SHAPE(200, 100)) == 100);

int32_t read_day_to_second(const char *text, ivdt *value)
{
    bcast::pool pool;
    bcast::column src(BCAST_VARCHAR), dst(BCAST_IVDT);
    src.append(text);
    dst.make_room(1);
    const int32_t status = bcast_varchar_to_ivdt(nullptr, pool.heap(), src.vector(), dst.vector(), 1, 0, 0, 0,
                                                 BCAST_IV_WORD(IV_DAY_TO_SECOND, 2, 6), nullptr, nullptr);
    if (status == 0)
        *value = dst.value<ivdt>(0).value();
    return status;
}

void expect_day_to_second(int32_t (*read)(const char *text, ivdt *value))
{
    ivdt value = {};
    ASSERT_EQ(read("99 23:59:59.123456", &value), 0);
    EXPECT_EQ(value.day, 99);
    EXPECT_EQ(value.hour, 23);
    EXPECT_EQ(value.minute, 59);
    EXPECT_EQ(value.second, 59);
    EXPECT_EQ(value.fraction, 123456);
    EXPECT_EQ(value.iv_word, 0x0626U);
    EXPECT_EQ(read("100 00:00:00", &value), ERR_OVERFLOW) << "days have two digits";
}

TEST(public_values, day_to_second_of_two_and_six_digits_in_cpp) { expect_day_to_second(read_day_to_second); }
TEST(public_values, day_to_second_of_two_and_six_digits_in_c) { expect_day_to_second(read_day_to_second_in_c); }

TEST(public_values, parts_of_a_word_in_c)
{
    std::array<uint8_t, 5> parts;
    read_words_in_c(BCAST_IV_WORD(IV_SECOND, 9, 4), BCAST_DEC_SHAPE(38, 10), parts.data());
    EXPECT_EQ(parts, (std::array<uint8_t, 5>{IV_SECOND, 9, 4, 38, 10}));
    read_words_in_c(0xFFFF, -1, parts.data());
    EXPECT_EQ(parts, (std::array<uint8_t, 5>{0xFF, 0xF, 0xF, 0xFF, 0xFF}));
}

} // namespace
