// The services, and behind them each level by itself.
#include "tests/support/guarded.h"
#include "tests/support/levels.h"

#include <bcast/codes.h>
#include <services/binary.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <embedded/binary/hex.h>

namespace bcast::test {

namespace {

constexpr size_t bytes_max = NBIN_MAX;
constexpr size_t digits_max = 2 * bytes_max;

const std::string all_digits = "0123456789ABCDEFabcdef";

// ---- The plain reading of the rules -------------------------------------------

std::optional<std::string> slow_decode(std::string digits)
{
    if (digits.size() % 2 != 0)
        digits.insert(0, 1, '0');
    std::string bytes;
    for (size_t k = 0; k < digits.size(); k += 2) {
        int byte = 0;
        for (const char digit : {digits[k], digits[k + 1]}) {
            const size_t at = all_digits.find(digit);
            if (at == std::string::npos)
                return std::nullopt;
            byte = 16 * byte + static_cast<int>(at < 16 ? at : at - 6);
        }
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

std::string slow_encode(std::string_view bytes)
{
    std::string text;
    for (const char byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
        text += digits;
    }
    return text;
}

// For messages: without the bytes that no terminal shows.
std::string quoted(std::string_view text) { return testing::PrintToString(std::string(text)); }

std::string shown(const std::optional<std::string> &bytes)
{
    return bytes.has_value() ? "bytes " + slow_encode(*bytes) : "no hexadecimal text";
}

// ---- Data ---------------------------------------------------------------------

using generator = std::mt19937_64;

std::string random_digits(generator &random, size_t count)
{
    std::string digits;
    for (size_t k = 0; k < count; k++)
        digits += all_digits[random() % all_digits.size()];
    return digits;
}

std::string random_bytes(generator &random, size_t size)
{
    std::string bytes;
    for (size_t k = 0; k < size; k++)
        bytes += static_cast<char>(random());
    return bytes;
}

// Short lengths all, and those around the limit.
std::vector<size_t> lengths_up_to(size_t limit)
{
    std::vector<size_t> lengths;
    for (size_t length = 0; length <= 300; length++)
        lengths.push_back(length);
    for (size_t length = limit - 140; length <= limit; length++)
        lengths.push_back(length);
    return lengths;
}

constexpr guard_edge both_edges[] = {guard_edge::end, guard_edge::start};

guarded<char> guarded_copy(std::string_view text, guard_edge edge)
{
    return guarded<char>(std::span<const char>(text.data(), text.size()), edge);
}

} // namespace

// ---- Each level

template <class Level> class hex_machine : public level_test<Level> {
protected:
    using hex_text = embedded::hex_text<Level::value>;

    // Without guards; a text that fails must leave what is written to.
    static std::optional<std::string> decode(std::string_view digits)
    {
        static uint8_t bytes[bytes_max];
        const size_t size = std::max((digits.size() + 1) / 2, embedded::hex_decode_room);
        std::memset(bytes, guard_fill, size);
        if (hex_text::decode(digits.data(), digits.size(), bytes))
            return std::string(reinterpret_cast<const char *>(bytes), (digits.size() + 1) / 2);
        const bool untouched = std::all_of(bytes, bytes + size, [](uint8_t byte) { return byte == guard_fill; });
        EXPECT_TRUE(untouched) << quoted(digits) << " failed and was written";
        return std::nullopt;
    }

    static void expect_as_slow(const std::string &digits)
    {
        const auto expected = slow_decode(digits), decoded = decode(digits);
        ASSERT_EQ(decoded, expected) << quoted(digits) << " gives " << shown(decoded) << ", not " << shown(expected);
    }
};

TYPED_TEST_SUITE(hex_machine, all_levels, level_names);

TYPED_TEST(hex_machine, every_text_of_two_bytes_decodes_as_it_should)
{
    for (int first = 0; first < 256; first++) {
        this->expect_as_slow({static_cast<char>(first)});
        for (int second = 0; second < 256; second++)
            this->expect_as_slow({static_cast<char>(first), static_cast<char>(second)});
    }
}

TYPED_TEST(hex_machine, every_pair_of_digits_decodes_at_every_place)
{
    for (size_t at = 0; at < 66; at++) {
        for (const char high : all_digits) {
            for (const char low : all_digits) {
                std::string digits(132, '0');
                digits[2 * at] = high;
                digits[2 * at + 1] = low;
                this->expect_as_slow(digits);
            }
        }
    }
}

TYPED_TEST(hex_machine, decodes_texts_of_every_length_and_touches_nothing_around)
{
    generator random(20240801);
    for (const guard_edge edge : both_edges) {
        for (const size_t count : lengths_up_to(digits_max)) {
            const std::string text = random_digits(random, count);
            guarded<char> digits = guarded_copy(text, edge);
            digits.make_read_only();
            const size_t size = (count + 1) / 2;
            guarded<uint8_t> bytes(std::max(size, embedded::hex_decode_room), edge);
            ASSERT_TRUE(TestFixture::hex_text::decode(digits.data(), count, bytes.data())) << text;
            ASSERT_EQ(std::string(bytes.begin(), bytes.begin() + size), slow_decode(text)) << count << " digits";
            ASSERT_TRUE(bytes.slack_untouched()) << count << " digits";
        }
    }
}

TYPED_TEST(hex_machine, any_other_byte_at_any_place_fails_and_writes_nothing)
{
    generator random(20240802);
    for (size_t count = 1; count <= 200; count++) {
        std::string text = random_digits(random, count);
        for (size_t at = 0; at < count; at++) {
            const char digit = text[at];
            for (int c = 0; c < 256; c++) {
                text[at] = static_cast<char>(c);
                const bool is_digit = c != 0 && std::strchr(all_digits.c_str(), c) != nullptr;
                ASSERT_EQ(this->decode(text).has_value(), is_digit)
                    << "byte " << c << " at " << at << " of " << count << " digits";
            }
            text[at] = digit;
        }
    }
}

TYPED_TEST(hex_machine, one_bad_byte_in_a_long_text_fails_and_writes_nothing)
{
    generator random(20240803);
    for (const size_t count : {size_t{1000}, size_t{1001}, digits_max - 1, digits_max}) {
        std::string text = random_digits(random, count);
        const size_t step = count > 2000 ? 67 : 1;
        for (size_t at = 0; at < count; at += (at + 300 > count ? 1 : step)) {
            const char digit = std::exchange(text[at], 'G');
            ASSERT_FALSE(this->decode(text).has_value()) << "at " << at << " of " << count;
            text[at] = digit;
        }
    }
}

TYPED_TEST(hex_machine, random_texts_decode_only_where_all_are_digits)
{
    generator random(20240804);
    for (int i = 0; i < 200000; i++) {
        std::string text = random_digits(random, random() % 150);
        for (char &digit : text) {
            if (random() % 100 == 0)
                digit = static_cast<char>(random());
        }
        this->expect_as_slow(text);
    }
}

TYPED_TEST(hex_machine, encodes_values_of_every_length_and_touches_nothing_around)
{
    generator random(20240805);
    for (const guard_edge edge : both_edges) {
        for (const size_t size : lengths_up_to(bytes_max)) {
            const std::string value = random_bytes(random, size);
            guarded<char> bytes = guarded_copy(value, edge);
            bytes.make_read_only();
            guarded<char> text(2 * size + 1, edge);
            TestFixture::hex_text::encode(reinterpret_cast<const uint8_t *>(bytes.data()), size, text.data());
            ASSERT_EQ(std::string(text.begin(), text.end() - 1), slow_encode(value)) << size << " bytes";
            ASSERT_EQ(text[2 * size], '\0') << size << " bytes";
            ASSERT_TRUE(text.slack_untouched()) << size << " bytes";
        }
    }
}

TYPED_TEST(hex_machine, encodes_every_value_of_two_bytes_wherever_it_stands)
{
    for (const size_t size : std::initializer_list<size_t>{2, 15, 16, 31, 33}) {
        for (int value = 0; value < 65536; value++) {
            std::string bytes(size, '\0');
            const size_t at = static_cast<size_t>(value) % (size - 1);
            bytes[at] = static_cast<char>(value >> 8);
            bytes[at + 1] = static_cast<char>(value);
            char text[129];
            TestFixture::hex_text::encode(reinterpret_cast<const uint8_t *>(bytes.data()), size, text);
            ASSERT_EQ(std::string(text), slow_encode(bytes));
        }
    }
}

TYPED_TEST(hex_machine, decodes_what_it_encodes)
{
    generator random(20240806);
    for (int i = 0; i < 20000; i++) {
        const std::string value = random_bytes(random, random() % 400);
        std::string text(2 * value.size() + 1, ' ');
        TestFixture::hex_text::encode(reinterpret_cast<const uint8_t *>(value.data()), value.size(), text.data());
        text.pop_back();
        ASSERT_EQ(this->decode(text), value) << text;
    }
}

// ---- nbin_from_char_ex ---------------------------------------------------------

namespace {

struct decoding {
    int32_t status;
    std::string bytes; // empty where the status is negative

    friend bool operator==(const decoding &, const decoding &) = default;
};

void PrintTo(const decoding &result, std::ostream *out)
{
    *out << "status " << result.status << ", bytes " << slow_encode(result.bytes);
}

// Text and record touch inaccessible pages with that edge.
decoding from_char_guarded(std::string_view text, int32_t has_prefix, guard_edge edge)
{
    guarded<char> copy = guarded_copy(text, edge);
    copy.make_read_only();
    guarded<nbin> out(1, edge);
    const int32_t status = nbin_from_char_ex(copy.data(), static_cast<uint32_t>(text.size()), out.data(), has_prefix);
    EXPECT_TRUE(out.slack_untouched()) << "a text of " << text.size() << " bytes was written beyond the record";
    if (status >= 0)
        return {status, std::string(out[0].bytes, out[0].bytes + out[0].length)};
    const auto *record = reinterpret_cast<const unsigned char *>(out.data());
    EXPECT_TRUE(std::all_of(record, record + sizeof(nbin), [](unsigned char byte) { return byte == guard_fill; }))
        << "a text of " << text.size() << " bytes failed and was written";
    return {status, {}};
}

decoding from_char(std::string_view text, int32_t has_prefix)
{
    const decoding behind = from_char_guarded(text, has_prefix, guard_edge::end);
    EXPECT_EQ(from_char_guarded(text, has_prefix, guard_edge::start), behind)
        << quoted(text) << " depends on where it stands";
    return behind;
}

decoding bytes(std::string value) { return {0, std::move(value)}; }
const decoding bad = {ERR_BAD_CONVERSION, {}};
const decoding too_long = {ERR_TRUNCATED, {}};

} // namespace

TEST(hex_from_char, reads_digits_of_either_case)
{
    EXPECT_EQ(from_char("AABB", 0), bytes("\xAA\xBB"));
    EXPECT_EQ(from_char("aabb", 0), bytes("\xAA\xBB"));
    EXPECT_EQ(from_char("aAbB", 0), bytes("\xAA\xBB"));
    EXPECT_EQ(from_char("0123456789abcdefABCDEF", 0), bytes("\x01\x23\x45\x67\x89\xab\xcd\xef\xAB\xCD\xEF"));
    EXPECT_EQ(from_char("00", 0), bytes(std::string(1, '\0')));
}

TEST(hex_from_char, an_odd_count_has_a_leading_zero_digit)
{
    EXPECT_EQ(from_char("ABC", 0), bytes("\x0A\xBC"));
    EXPECT_EQ(from_char("7", 0), bytes("\x07"));
    EXPECT_EQ(from_char("0", 0), bytes(std::string(1, '\0')));
    EXPECT_EQ(from_char("0xABC", 1), bytes("\x0A\xBC"));
    EXPECT_EQ(from_char("0X7", 1), bytes("\x07"));
}

TEST(hex_from_char, no_digits_are_a_value_of_no_bytes)
{
    EXPECT_EQ(from_char("", 0), bytes(""));
    EXPECT_EQ(from_char("0x", 1), bytes(""));
    EXPECT_EQ(from_char("0X", 1), bytes(""));
}

TEST(hex_from_char, a_prefix_is_passed_over_only_where_it_is_announced)
{
    EXPECT_EQ(from_char("0xAB", 1), bytes("\xAB"));
    EXPECT_EQ(from_char("0XAB", 1), bytes("\xAB"));
    EXPECT_EQ(from_char("0xAB", 0), bad);
    EXPECT_EQ(from_char("0x", 0), bad);
    EXPECT_EQ(from_char("x1", 0), bad);
    EXPECT_EQ(from_char("0x0x", 1), bad);
    EXPECT_EQ(from_char("0x00AB", 1), bytes(std::string("\0\xAB", 2)));
}

TEST(hex_from_char, a_byte_that_is_no_digit_fails_and_writes_nothing)
{
    for (const char *text : {"G", "AG", "GA", "AAG", " A", "A ", "A B", "-1", "+1", "1.", "@A", "`a", "/0", ":0"})
        EXPECT_EQ(from_char(text, 0), bad) << text;
    EXPECT_EQ(from_char(std::string_view("\0A", 2), 0), bad);
    EXPECT_EQ(from_char(std::string(1000, 'A') + "g", 0), bad);
}

TEST(hex_from_char, texts_of_every_length_with_and_without_a_prefix)
{
    generator random(20240807);
    for (size_t count = 0; count <= 300; count++) {
        const std::string digits = random_digits(random, count);
        const decoding expected = bytes(*slow_decode(digits));
        ASSERT_EQ(from_char(digits, 0), expected) << digits;
        ASSERT_EQ(from_char("0x" + digits, 1), expected) << digits;
    }
}

TEST(hex_from_char, more_than_32768_bytes_fail_and_write_nothing)
{
    generator random(20240808);
    for (size_t count = digits_max - 3; count <= digits_max + 3; count++) {
        const std::string digits = random_digits(random, count);
        const decoding expected = count <= digits_max ? bytes(*slow_decode(digits)) : too_long;
        ASSERT_EQ(from_char(digits, 0), expected) << count << " digits";
        ASSERT_EQ(from_char("0x" + digits, 1), expected) << count << " digits behind a prefix";
    }
}

TEST(hex_from_char, leading_zeros_count_as_bytes)
{
    EXPECT_EQ(from_char(std::string(digits_max, '0'), 0), bytes(std::string(bytes_max, '\0')));
    EXPECT_EQ(from_char(std::string(digits_max + 1, '0'), 0), too_long);
}

TEST(hex_from_char, a_text_too_long_is_not_read)
{
    EXPECT_EQ(from_char(std::string(digits_max + 1, 'G'), 0), too_long);
    EXPECT_EQ(from_char(std::string(digits_max, 'G'), 0), bad);
    guarded<char> text = guarded_copy("0x", guard_edge::end);
    const auto out = std::make_unique<nbin>();
    EXPECT_EQ(nbin_from_char_ex(text.data(), UINT32_MAX, out.get(), 0), ERR_TRUNCATED);
    EXPECT_EQ(nbin_from_char_ex(text.data(), UINT32_MAX, out.get(), 1), ERR_TRUNCATED);
    EXPECT_EQ(nbin_from_char_ex(text.data(), digits_max + 3, out.get(), 1), ERR_TRUNCATED);
}

TEST(hex_from_char, a_record_may_be_filled_again)
{
    const auto out = std::make_unique<nbin>();
    ASSERT_EQ(nbin_from_char_ex("AABBCC", 6, out.get(), 0), 0);
    ASSERT_EQ(out->length, 3);
    ASSERT_EQ(nbin_from_char_ex("zz", 2, out.get(), 0), ERR_BAD_CONVERSION);
    EXPECT_EQ(out->length, 3);
    EXPECT_EQ(std::string(out->bytes, out->bytes + 3), "\xAA\xBB\xCC");
    ASSERT_EQ(nbin_from_char_ex("0x", 2, out.get(), 1), 0);
    EXPECT_EQ(out->length, 0);
}

// ---- nbin_to_char_ex -----------------------------------------------------------

TEST(hex_to_char, writes_two_upper_case_digits_for_each_byte_and_a_nul)
{
    generator random(20240809);
    std::vector<std::string> values = {"", std::string(1, '\0'), "\xAB", "\x0F\xF0", "\xAB\xCD\xEF"};
    for (size_t size = 0; size <= 300; size++)
        values.push_back(random_bytes(random, size));
    values.push_back(random_bytes(random, bytes_max - 1));
    values.push_back(random_bytes(random, bytes_max));
    for (const guard_edge edge : both_edges) {
        for (const std::string &value : values) {
            guarded<char> from = guarded_copy(value, edge);
            from.make_read_only();
            guarded<char> text(2 * value.size() + 1, edge);
            ASSERT_EQ(nbin_to_char_ex(from.data(), static_cast<uint32_t>(value.size()), text.data(), 0), 0);
            ASSERT_EQ(std::string(text.begin(), text.end()), slow_encode(value) + '\0') << value.size() << " bytes";
            ASSERT_TRUE(text.slack_untouched()) << value.size() << " bytes";
        }
    }
}

TEST(hex_to_char, its_text_reads_back_as_the_value)
{
    generator random(20240810);
    const auto out = std::make_unique<nbin>();
    std::string text(digits_max + 1, ' ');
    for (size_t size = 0; size <= bytes_max; size += 1 + size / 7) {
        const std::string value = random_bytes(random, size);
        ASSERT_EQ(nbin_to_char_ex(value.data(), static_cast<uint32_t>(size), text.data(), 0), 0);
        ASSERT_EQ(nbin_from_char_ex(text.data(), static_cast<uint32_t>(2 * size), out.get(), 0), 0) << size << " bytes";
        ASSERT_EQ(std::string(out->bytes, out->bytes + out->length), value) << size << " bytes";
    }
}

} // namespace bcast::test
