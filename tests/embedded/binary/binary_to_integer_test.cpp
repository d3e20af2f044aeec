#include "tests/embedded/support.h"
#include "tests/support/guarded.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/binary.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bcast::test {

namespace {

constexpr int32_t widths[] = {1, 2, 4, 8};

struct reading {
    int32_t status;
    int64_t value; // 0 unless the status is 0

    friend bool operator==(const reading &, const reading &) = default;
};

void PrintTo(const reading &result, std::ostream *out)
{
    *out << "status " << result.status << ", value " << result.value;
}

reading value(int64_t number) { return {0, number}; }
const reading overflow = {ERR_OVERFLOW, 0};

std::string shown(std::string_view bytes)
{
    std::string text;
    for (const char byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02X ", static_cast<unsigned>(static_cast<unsigned char>(byte)));
        text += digits;
    }
    return text;
}

// The rule as it is said.
reading slow_reading(std::string_view bytes, size_t width)
{
    const auto byte = [&](size_t k) { return static_cast<unsigned char>(bytes[k]); };
    while (bytes.size() > width && byte(0) == 0x00)
        bytes.remove_prefix(1);
    while (bytes.size() > width && byte(0) == 0xFF && byte(1) >= 0x80)
        bytes.remove_prefix(1);
    if (bytes.size() > width)
        return overflow;
    const bool negative = bytes.size() == width && byte(0) >= 0x80;
    __int128 number = negative ? -1 : 0;
    for (size_t k = 0; k < bytes.size(); k++)
        number = number * 256 + byte(k);
    return value(static_cast<int64_t>(number));
}

int64_t stored_integer(const void *at, int32_t width)
{
    switch (width) {
    case 1:
        return *static_cast<const int8_t *>(at);
    case 2: {
        int16_t integer;
        std::memcpy(&integer, at, sizeof integer);
        return integer;
    }
    case 4: {
        int32_t integer;
        std::memcpy(&integer, at, sizeof integer);
        return integer;
    }
    default: {
        int64_t integer;
        std::memcpy(&integer, at, sizeof integer);
        return integer;
    }
    }
}

reading read(std::string_view bytes, int32_t width)
{
    unsigned char out[24];
    std::memset(out, guard_fill, sizeof out);
    unsigned char *integer = out + 8;
    const int32_t status = nbin_to_int_by_ntype_len(bytes.data(), static_cast<uint32_t>(bytes.size()), width, integer);
    const auto untouched = [](const unsigned char *from, const unsigned char *to) {
        return std::all_of(from, to, [](unsigned char byte) { return byte == guard_fill; });
    };
    EXPECT_TRUE(untouched(out, integer) && untouched(integer + width, std::end(out)))
        << shown(bytes) << "in " << width << " bytes was written around the integer";
    if (status < 0) {
        EXPECT_TRUE(untouched(integer, integer + width)) << shown(bytes) << "in " << width << " failed and was written";
        return {status, 0};
    }
    return {status, stored_integer(integer, width)};
}

void expect_as_slow(const std::string &bytes)
{
    for (const int32_t width : widths) {
        ASSERT_EQ(read(bytes, width), slow_reading(bytes, static_cast<size_t>(width)))
            << shown(bytes) << "in " << width << " bytes";
    }
}

std::string bytes_of(int64_t number, size_t size)
{
    std::string bytes;
    for (size_t k = size; k-- > 0;)
        bytes += static_cast<char>(k < 8 ? number >> 8 * k : number >> 63);
    return bytes;
}

using namespace std::string_literals;

} // namespace

// ---- What the rule gives --------------------------------------------------------

TEST(binary_to_integer, as_long_as_the_integer_it_is_its_bytes)
{
    EXPECT_EQ(read("\x05"s, 1), value(5));
    EXPECT_EQ(read("\xFF"s, 1), value(-1));
    EXPECT_EQ(read("\x80"s, 1), value(-128));
    EXPECT_EQ(read("\x01\x02"s, 2), value(258));
    EXPECT_EQ(read("\xFF\xFB"s, 2), value(-5));
    EXPECT_EQ(read("\x12\x34\x56\x78"s, 4), value(0x12345678));
    EXPECT_EQ(read("\x80\x00\x00\x00"s, 4), value(INT32_MIN));
    EXPECT_EQ(read("\x01\x02\x03\x04\x05\x06\x07\x08"s, 8), value(0x0102030405060708));
    EXPECT_EQ(read("\x80\x00\x00\x00\x00\x00\x00\x00"s, 8), value(INT64_MIN));
}

TEST(binary_to_integer, shorter_than_the_integer_it_is_extended_with_zeros)
{
    EXPECT_EQ(read("\xFF"s, 2), value(255));
    EXPECT_EQ(read("\xFF"s, 8), value(255));
    EXPECT_EQ(read("\xFF\xFF"s, 4), value(65535));
    EXPECT_EQ(read("\x80\x00\x00"s, 4), value(0x800000));
    EXPECT_EQ(read("\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s, 8), value(0xFFFFFFFFFFFFFF));
}

TEST(binary_to_integer, no_bytes_are_zero)
{
    for (const int32_t width : widths)
        EXPECT_EQ(read("", width), value(0)) << "in " << width << " bytes";
}

TEST(binary_to_integer, zeros_in_front_are_dropped_whatever_the_sign_behind_them)
{
    EXPECT_EQ(read("\x00\x00\x00\x05"s, 2), value(5));
    EXPECT_EQ(read("\x00\x00\xFF\xFB"s, 2), value(-5));
    EXPECT_EQ(read("\x00\xFF"s, 1), value(-1));
    EXPECT_EQ(read("\x00\x00\x80\x00"s, 2), value(INT16_MIN));
    EXPECT_EQ(read("\x00\x00\x00\x00"s, 1), value(0));
    EXPECT_EQ(read("\x00\xFF\xFF\xFF\xFF"s, 4), value(-1));
    EXPECT_EQ(read(std::string(100, '\0') + "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFE"s, 8), value(-2));
}

TEST(binary_to_integer, the_sign_of_a_wider_integer_is_dropped)
{
    EXPECT_EQ(read("\xFF\xFF\xFF\xFB"s, 2), value(-5));
    EXPECT_EQ(read("\xFF\xFF\xFF\xFF"s, 1), value(-1));
    EXPECT_EQ(read("\xFF\x80"s, 1), value(-128));
    EXPECT_EQ(read("\xFF\xFF\xFF\xFF\x80\x00\x00\x00"s, 4), value(INT32_MIN));
    EXPECT_EQ(read(std::string(100, '\xFF'), 8), value(-1));
}

TEST(binary_to_integer, zeros_and_then_a_sign_are_dropped)
{
    EXPECT_EQ(read("\x00\x00\xFF\xFF\xFF\xFB"s, 2), value(-5));
    EXPECT_EQ(read("\x00\xFF\xFF\xFB"s, 1), value(-5));
    EXPECT_EQ(read("\x00\x00\x00\x00\xFF\xFF\xFF\x80"s, 1), value(-128));
    EXPECT_EQ(read("\x00\x00\x00\x00\x00\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFB"s, 8), value(-5));
}

TEST(binary_to_integer, anything_else_in_front_does_not_fit)
{
    EXPECT_EQ(read("\x01\x00"s, 1), overflow);
    EXPECT_EQ(read("\x00\x01\x00"s, 1), overflow);
    EXPECT_EQ(read("\xFF\x7F"s, 1), overflow);
    EXPECT_EQ(read("\xFF\xFF\x00"s, 1), overflow);
    EXPECT_EQ(read("\xFF\xFF\x7F\xFF"s, 2), overflow);
    EXPECT_EQ(read("\xFE\xFF"s, 1), overflow);
    EXPECT_EQ(read("\x80\xFF"s, 1), overflow);
    EXPECT_EQ(read("\xFF\x00\xFF\xFF"s, 2), overflow);
    EXPECT_EQ(read("\x00\xFF\x00\x05"s, 2), overflow);
    EXPECT_EQ(read("\xFF\xFF\x00\x05"s, 2), overflow);
    EXPECT_EQ(read("\x00\x01\x00\x05"s, 2), overflow);
    EXPECT_EQ(read("\x7F\x00\x00\x00\x00\x00\x00\x00\x00"s, 8), overflow);
    EXPECT_EQ(read("\xFF\x7F\x00\x00\x00\x00\x00\x00\x00"s, 8), overflow);
    EXPECT_EQ(read("\x01"s + std::string(99, '\0'), 8), overflow);
    EXPECT_EQ(read(std::string(50, '\xFF') + std::string(50, '\0'), 8), overflow);
}

TEST(binary_to_integer, an_integer_of_another_width_is_none)
{
    for (const int32_t width : {0, 3, 5, 16, -1, INT32_MIN}) {
        int64_t out = 77;
        EXPECT_EQ(nbin_to_int_by_ntype_len("\x01", 1, width, &out), ERR_OVERFLOW) << "width " << width;
        EXPECT_EQ(out, 77) << "width " << width;
    }
}

// ---- Against the slow reading ---------------------------------------------------

TEST(binary_to_integer, every_value_of_one_and_two_bytes)
{
    for (int number = 0; number < 65536; number++) {
        expect_as_slow(bytes_of(number, 2));
        if (number < 256)
            expect_as_slow(bytes_of(number, 1));
    }
}

// Every int8 and int16 at every length, behind zeros and behind its sign, and cut.
TEST(binary_to_integer, every_int16_at_every_length)
{
    for (int number = INT16_MIN; number <= INT16_MAX; number++) {
        for (size_t size = 0; size <= 12; size++) {
            expect_as_slow(bytes_of(number, size));
            for (const size_t own : std::initializer_list<size_t>{1, 2, 4}) {
                if (own < size)
                    expect_as_slow(std::string(size - own, '\0') + bytes_of(number, own));
            }
        }
    }
}

// All mixes of the bytes that the rule tells apart.
TEST(binary_to_integer, every_mix_of_edge_bytes)
{
    const std::string edge_bytes("\x00\x01\x7F\x80\xFE\xFF", 6);
    std::vector<std::string> values = {""};
    for (size_t from = 0, size = 1; size <= 6; size++) {
        const size_t to = values.size();
        for (; from < to; from++) {
            for (const char byte : edge_bytes)
                values.push_back(values[from] + byte);
        }
    }
    for (const std::string &bytes : values)
        expect_as_slow(bytes);
}

TEST(binary_to_integer, random_mixes_of_edge_bytes_at_every_length)
{
    std::mt19937_64 random(20240811);
    const std::string edge_bytes("\x00\x00\x00\x00\xFF\xFF\xFF\xFF\x01\x7F\x80\xFE", 12);
    for (int i = 0; i < 300000; i++) {
        // Runs of zeros and of FF, then anything.
        std::string bytes(random() % 2 * (random() % 12), '\0');
        bytes.append(random() % 2 * (random() % 12), '\xFF');
        for (size_t left = random() % 10; left > 0; left--)
            bytes += random() % 4 == 0 ? static_cast<char>(random()) : edge_bytes[random() % edge_bytes.size()];
        expect_as_slow(bytes);
    }
}

TEST(binary_to_integer, values_as_long_as_there_are)
{
    const std::string zeros(NBIN_MAX - 8, '\0'), ones(NBIN_MAX - 8, '\xFF');
    for (const std::string &front : {zeros, ones, zeros.substr(100) + ones.substr(0, 100)}) {
        for (const int64_t number : {int64_t{0}, int64_t{-1}, int64_t{5}, int64_t{-5}, INT64_MIN, INT64_MAX})
            expect_as_slow(front + bytes_of(number, 8));
    }
}

TEST(binary_to_integer, lint64_reads_what_eight_bytes_read)
{
    std::mt19937_64 random(20240812);
    for (int i = 0; i < 100000; i++) {
        std::string bytes(random() % 4, random() % 2 == 0 ? '\0' : '\xFF');
        for (size_t left = random() % 10; left > 0; left--)
            bytes += static_cast<char>(random());
        int64_t out = 0x5a5a5a5a5a5a5a5a;
        const int32_t status = nbin_to_lint64(bytes.data(), static_cast<uint32_t>(bytes.size()), &out);
        const reading expected = slow_reading(bytes, 8);
        ASSERT_EQ(status, expected.status) << shown(bytes);
        ASSERT_EQ(out, status == 0 ? expected.value : 0x5a5a5a5a5a5a5a5a) << shown(bytes);
    }
}

// ---- Memory ---------------------------------------------------------------------

TEST(binary_to_integer, reads_no_byte_around_the_value_and_writes_none_around_the_integer)
{
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        for (const char fill : {'\x00', '\xFF', '\x7F'}) {
            for (size_t size = 0; size <= 40; size++) {
                for (const int32_t width : widths) {
                    guarded<char> bytes(size, edge);
                    std::fill(bytes.begin(), bytes.end(), fill);
                    bytes.make_read_only();
                    guarded<char> out(static_cast<size_t>(width), edge);
                    const int32_t status =
                        nbin_to_int_by_ntype_len(bytes.data(), static_cast<uint32_t>(size), width, out.data());
                    const reading expected = slow_reading({bytes.data(), size}, static_cast<size_t>(width));
                    ASSERT_EQ(status, expected.status) << size << " bytes in " << width;
                    if (status == 0) {
                        ASSERT_EQ(stored_integer(out.data(), width), expected.value) << size << " bytes in " << width;
                    }
                    ASSERT_TRUE(out.slack_untouched()) << size << " bytes in " << width;
                }
            }
        }
    }
}

// ---- What the casts write -------------------------------------------------------

namespace {

struct writer {
    const char *name;
    bcast_length_fn *cast;
    bcast_type source;
    bcast_type target;
    int32_t width;       // of the source
    int32_t first, last; // target lengths that keep the whole integer
};

const writer writers[] = {
    {"tinyint to binary", bcast_tinyint_to_binary, BCAST_TINYINT, BCAST_BINARY, 1, 1, 12},
    {"smallint to binary", bcast_smallint_to_binary, BCAST_SMALLINT, BCAST_BINARY, 2, 2, 12},
    {"int to binary", bcast_int_to_binary, BCAST_INT, BCAST_BINARY, 4, 4, 40},
    {"int64 to binary", bcast_int64_to_binary, BCAST_INT64, BCAST_BINARY, 8, 8, 8},
    {"tinyint to varbinary", bcast_tinyint_to_varbinary, BCAST_TINYINT, BCAST_VARBINARY, 1, 1, 12},
    {"smallint to varbinary", bcast_smallint_to_varbinary, BCAST_SMALLINT, BCAST_VARBINARY, 2, 2, 12},
    {"int to varbinary", bcast_int_to_varbinary, BCAST_INT, BCAST_VARBINARY, 4, 4, 12},
    {"int64 to varbinary", bcast_int64_to_varbinary, BCAST_INT64, BCAST_VARBINARY, 8, 8, 12},
};

// All of the narrow types, and the edges of the wide ones.
std::vector<int64_t> integers_of(int32_t width)
{
    std::vector<int64_t> integers;
    const int64_t most = width < 8 ? (int64_t{1} << (8 * width - 1)) - 1 : INT64_MAX, least = -most - 1;
    if (width <= 2) {
        for (int64_t number = least; number <= most; number++)
            integers.push_back(number);
        return integers;
    }
    for (int bit = 0; bit < 8 * width - 1; bit++) {
        const int64_t power = int64_t{1} << bit;
        integers.insert(integers.end(), {power, power - 1, -power, -power - 1});
    }
    integers.insert(integers.end(), {most, least});
    return integers;
}

// A batch at a time: it counts its rows in 16 bits.
void expect_to_read_what_was_written(const writer &w, int32_t length, std::span<const int64_t> integers)
{
    const pool_ptr pool = new_pool();
    const column_ptr source = new_column(w.source), target = new_column(w.target);
    for (const int64_t number : integers) {
        const auto narrow = static_cast<int32_t>(number);
        const void *element = w.width == 8 ? static_cast<const void *>(&number) : &narrow;
        ASSERT_EQ(bcast_column_append_value(source.get(), element), 0);
    }
    const auto rows = static_cast<uint16_t>(integers.size());
    ASSERT_EQ(bcast_column_make_room(target.get(), rows), 0);
    const int32_t status =
        w.cast(nullptr, pool.get(), bcast_column_vector(source.get()), length, bcast_column_vector(target.get()), rows);
    ASSERT_EQ(status, 0) << w.name;
    for (uint32_t row = 0; row < rows; row++) {
        uint32_t len = 0;
        const char *bytes = bcast_column_text(target.get(), row, &len);
        ASSERT_EQ(read({bytes, len}, w.width), value(integers[row]))
            << w.name << "(" << length << "): " << shown({bytes, len});
    }
}

} // namespace

TEST(binary_to_integer, reads_what_the_casts_from_integers_wrote_as_the_same_integer)
{
    for (const writer &w : writers) {
        const std::vector<int64_t> integers = integers_of(w.width);
        for (int32_t length = w.first; length <= w.last; length++) {
            for (std::span<const int64_t> left = integers; !left.empty();) {
                const size_t count = std::min<size_t>(left.size(), 50000);
                expect_to_read_what_was_written(w, length, left.first(count));
                left = left.subspan(count);
            }
        }
    }
}

} // namespace bcast::test
