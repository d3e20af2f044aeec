// Casts with the embedded services behind them, there and back: what one writes the other reads as the same value.

#include <bcast/bcast.h>
#include <bcast/embedded.hpp>

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace bcast::test {

namespace {

template <class T> T element(column &of, uint32_t row)
{
    T value;
    std::memcpy(&value, static_cast<const char *>(of.vector()->data->values) + row * sizeof value, sizeof value);
    return value;
}

// A source of values, what `there` makes of it, and what `back` makes of that: the values again.
template <class T, class There, class Back>
void expect_round_trip(bcast_type type, bcast_type by_way_of, const std::vector<T> &values, There there, Back back,
                       const std::string &what)
{
    ASSERT_LE(values.size(), 65535U);
    const auto rows = static_cast<uint16_t>(values.size());
    pool memory;
    column from(type), between(by_way_of), again(type);
    from.append_values(std::span<const T>(values));
    between.make_room(rows);
    again.make_room(rows);
    ASSERT_EQ(there(memory.heap(), from.vector(), between.vector(), rows), 0) << what;
    ASSERT_EQ(back(memory.heap(), between.vector(), again.vector(), rows), 0) << what;
    for (uint32_t i = 0; i < rows; i++) {
        ASSERT_EQ(element<T>(again, i), values[i]) << what << ", row " << i;
        if constexpr (std::is_floating_point_v<T>) {
            ASSERT_EQ(std::signbit(element<T>(again, i)), std::signbit(values[i])) << what << ", row " << i;
        }
    }
}

std::vector<int32_t> range(int32_t first, int32_t last)
{
    std::vector<int32_t> values;
    for (int32_t value = first; value <= last; value++)
        values.push_back(value);
    return values;
}

// The edges of each count of bytes, and random values of each count of bits.
template <class Int> std::vector<Int> edges()
{
    std::vector<Int> values = {std::numeric_limits<Int>::min(), std::numeric_limits<Int>::max(), 0};
    for (int bits = 7; bits < std::numeric_limits<Int>::digits; bits += 8)
        for (const Int near : {-2, -1, 0, 1}) {
            values.push_back((Int{1} << bits) + near);
            values.push_back(-(Int{1} << bits) + near);
            values.push_back((Int{2} << (bits - 1)) * 2 + near);
        }
    std::mt19937_64 random(1);
    for (int k = 0; k < 2000; k++)
        values.push_back(static_cast<Int>(static_cast<Int>(random()) >> (random() % std::numeric_limits<Int>::digits)));
    return values;
}

// The values that keep all their bytes in so many, and are not below zero.
template <class Int> std::vector<Int> short_values(const std::vector<Int> &values, int32_t length)
{
    std::vector<Int> kept;
    for (const Int value : values)
        if (value >= 0 && static_cast<uint64_t>(value) >> 8 * length == 0)
            kept.push_back(value);
    return kept;
}

template <class Int>
void expect_bytes_read_back(bcast_type type, int32_t width, const std::vector<Int> &all, bcast_length_fn *to_binary,
                            bcast_plain_fn *from_binary, int32_t longest_binary, bcast_length_fn *to_varbinary,
                            bcast_capture_fn *from_varbinary)
{
    for (int32_t length = 1; length <= 20; length++) {
        const std::vector<Int> values = length >= width ? all : short_values(all, length);
        const std::string at = std::to_string(length) + " bytes";
        if (length <= longest_binary)
            expect_round_trip(
                type, BCAST_BINARY, values,
                [&](void *heap, bdta3_col *src, bdta3_col *dst, uint16_t rows) {
                    return to_binary(nullptr, heap, src, length, dst, rows);
                },
                [&](void *heap, bdta3_col *src, bdta3_col *dst, uint16_t rows) {
                    return from_binary(nullptr, heap, src, dst, rows);
                },
                "binary, " + at);
        expect_round_trip(
            type, BCAST_VARBINARY, values,
            [&](void *heap, bdta3_col *src, bdta3_col *dst, uint16_t rows) {
                return to_varbinary(nullptr, heap, src, length, dst, rows);
            },
            [&](void *heap, bdta3_col *src, bdta3_col *dst, uint16_t rows) {
                return from_varbinary(nullptr, heap, src, dst, rows, nullptr, nullptr);
            },
            "varbinary, " + at);
    }
}

TEST(round_trip, every_tinyint_reads_back_from_its_bytes)
{
    expect_bytes_read_back(BCAST_TINYINT, 1, range(-128, 127), bcast_tinyint_to_binary, bcast_binary_to_tinyint, 20,
                           bcast_tinyint_to_varbinary, bcast_varbinary_to_tinyint);
}

TEST(round_trip, every_smallint_reads_back_from_its_bytes)
{
    for (const auto &values : {range(-32768, -1), range(0, 32767)})
        expect_bytes_read_back(BCAST_SMALLINT, 2, values, bcast_smallint_to_binary, bcast_binary_to_smallint, 20,
                               bcast_smallint_to_varbinary, bcast_varbinary_to_smallint);
}

TEST(round_trip, ints_read_back_from_their_bytes)
{
    expect_bytes_read_back(BCAST_INT, 4, edges<int32_t>(), bcast_int_to_binary, bcast_binary_to_int, 20,
                           bcast_int_to_varbinary, bcast_varbinary_to_int);
}

// Of a binary longer than 8 bytes the cast stores the front, which is not the value.
TEST(round_trip, int64s_read_back_from_their_bytes)
{
    expect_bytes_read_back(BCAST_INT64, 8, edges<int64_t>(), bcast_int64_to_binary, bcast_binary_to_int64, 8,
                           bcast_int64_to_varbinary, bcast_varbinary_to_int64);
}

template <class T>
void expect_text_reads_back(bcast_type type, const std::vector<T> &values, bcast_length_fn *to_varchar,
                            bcast_capture_fn *from_varchar)
{
    expect_round_trip(
        type, BCAST_VARCHAR, values,
        [&](void *heap, bdta3_col *src, bdta3_col *dst, uint16_t rows) {
            return to_varchar(nullptr, heap, src, 60, dst, rows);
        },
        [&](void *heap, bdta3_col *src, bdta3_col *dst, uint16_t rows) {
            return from_varchar(nullptr, heap, src, dst, rows, nullptr, nullptr);
        },
        "text");
}

TEST(round_trip, integers_read_back_from_their_text)
{
    expect_text_reads_back(BCAST_TINYINT, range(-128, 127), bcast_tinyint_to_varchar, bcast_varchar_to_tinyint);
    for (const auto &values : {range(-32768, -1), range(0, 32767)})
        expect_text_reads_back(BCAST_SMALLINT, values, bcast_smallint_to_varchar, bcast_varchar_to_smallint);
    expect_text_reads_back(BCAST_INT, edges<int32_t>(), bcast_int_to_varchar, bcast_varchar_to_int);
    expect_text_reads_back(BCAST_INT64, edges<int64_t>(), bcast_int64_to_varchar, bcast_varchar_to_int64);
}

// All bit patterns but those of infinity and NaN, of every exponent.
template <class Floating, class Bits> std::vector<Floating> floating_values()
{
    using limits = std::numeric_limits<Floating>;
    std::vector<Floating> values = {
        0, -Floating{0}, limits::denorm_min(), limits::min(), limits::max(), limits::lowest(), limits::epsilon()};
    std::mt19937_64 random(2);
    while (values.size() < 20000) {
        const auto value = std::bit_cast<Floating>(static_cast<Bits>(random()));
        if (std::isfinite(value))
            values.push_back(value);
    }
    return values;
}

TEST(round_trip, finite_floats_and_doubles_read_back_from_their_text)
{
    expect_text_reads_back(BCAST_DOUBLE, floating_values<double, uint64_t>(), bcast_double_to_varchar,
                           bcast_varchar_to_double);
    expect_text_reads_back(BCAST_FLOAT, floating_values<float, uint32_t>(), bcast_float_to_varchar,
                           bcast_varchar_to_float);
}

TEST(round_trip, int64s_read_back_from_decimals)
{
    constexpr int32_t shape = BCAST_DEC_SHAPE(38, 10);
    expect_round_trip(
        BCAST_INT64, BCAST_DEC, edges<int64_t>(),
        [](void *heap, bdta3_col *src, bdta3_col *dst, uint16_t rows) {
            return bcast_int64_to_dec(nullptr, heap, src, shape, dst, rows);
        },
        [](void *heap, bdta3_col *src, bdta3_col *dst, uint16_t rows) {
            return bcast_dec_to_int64(nullptr, heap, src, dst, rows);
        },
        "dec(38,10)");
}

} // namespace

} // namespace bcast::test
