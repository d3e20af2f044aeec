#include "tests/support/guarded.h"

#include <services/text.h>

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace bcast::test {

namespace {

// What is stored of a text that is accepted: a text, or nothing where it stands for no locator.
struct locator {
    bool accepted;
    std::optional<std::string> stored = std::nullopt;

    friend bool operator==(const locator &, const locator &) = default;
};

void PrintTo(const locator &l, std::ostream *out)
{
    *out << (!l.accepted ? "refused" : l.stored ? "\"" + *l.stored + "\"" : "no locator");
}

const locator refused = {false};
const locator no_locator = {true};
locator stored(const std::string &text) { return {true, text}; }

locator read_at(const char *text, size_t size)
{
    constexpr int32_t unwritten = 0x5a5a5a5a;
    auto length = static_cast<uint32_t>(size);
    int32_t is_null = unwritten;
    if (utl_is_valid_bfile_str(text, &length, &is_null) == 0) {
        EXPECT_EQ(length, size) << "refused, and the length was changed";
        EXPECT_EQ(is_null, unwritten) << "refused, and is_null was written";
        return refused;
    }
    EXPECT_NE(is_null, unwritten) << "accepted, and is_null was not written";
    EXPECT_LE(length, size);
    if (is_null != 0) {
        EXPECT_EQ(length, 0u) << "no locator, and a length";
        return no_locator;
    }
    return stored(std::string(text, length));
}

locator read(std::string_view text)
{
    locator readings[2];
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        guarded<char> copy(std::span<const char>(text.data(), text.size()), edge);
        copy.make_read_only();
        readings[edge == guard_edge::end] = read_at(copy.data(), text.size());
    }
    EXPECT_EQ(readings[0], readings[1]) << "\"" << text << "\" depends on where it stands";
    return readings[0];
}

// The rule again, one character after the other.
locator slow_read(std::string text)
{
    while (!text.empty() && text.back() == ' ')
        text.pop_back();
    if (text.empty())
        return no_locator;
    const std::string letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    enum { START, DIRECTORY, COLON, FILE_NAME } state = START;
    for (const char c : text) {
        const bool letter = letters.find(c) != std::string::npos;
        const bool in_name = letter || std::string("0123456789_").find(c) != std::string::npos;
        const bool in_file = c != 0 && c != 10 && c != 13;
        if (state == START && letter)
            state = DIRECTORY;
        else if (state == DIRECTORY && c == ':')
            state = COLON;
        else if ((state == COLON || state == FILE_NAME) && in_file)
            state = FILE_NAME;
        else if (!(state == DIRECTORY && in_name))
            return refused;
    }
    return state == FILE_NAME ? stored(text) : refused;
}

} // namespace

TEST(utl_is_valid_bfile_str, accepts_a_directory_a_colon_and_a_file)
{
    for (const std::string text :
         {"D:f", "DIR:file.bin", "dir:file", "z9_:x", "A_1:a/b\\c d.e", "MEDIA_2:\xC3\xA9t\xC3\xA9.png", "D::", "D:a:b",
          "D: f", "D:\tf\t", "D:\x7F\x01\xFF"})
        EXPECT_EQ(read(text), stored(text)) << text;
}

TEST(utl_is_valid_bfile_str, trailing_blanks_are_cut_and_no_other_byte)
{
    EXPECT_EQ(read("D:f "), stored("D:f"));
    EXPECT_EQ(read(std::string("D:f").append(5000, ' ')), stored("D:f"));
    EXPECT_EQ(read("D:f  g  "), stored("D:f  g"));
    EXPECT_EQ(read("D:f\t "), stored("D:f\t"));
    EXPECT_EQ(read("D:f \t"), stored("D:f \t"));
}

TEST(utl_is_valid_bfile_str, empty_and_blank_text_stands_for_no_locator)
{
    EXPECT_EQ(read(""), no_locator);
    EXPECT_EQ(read(" "), no_locator);
    EXPECT_EQ(read(std::string(5000, ' ')), no_locator);
    EXPECT_EQ(read("\t"), refused);
    EXPECT_EQ(read(std::string(1, '\0')), refused);
}

TEST(utl_is_valid_bfile_str, refuses_what_lacks_a_part)
{
    for (const std::string text : {"D", "DIR", ":", ":f", "D:", "D:   ", " :f", "DIR file", "  ::"})
        EXPECT_EQ(read(text), refused) << text;
}

TEST(utl_is_valid_bfile_str, a_directory_is_a_letter_and_then_letters_digits_and_underscores)
{
    for (int c = 0; c < 256; c++) {
        const std::string byte(1, static_cast<char>(c));
        const bool letter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        const bool in_name = letter || (c >= '0' && c <= '9') || c == '_';
        EXPECT_EQ(read(byte + ":f").accepted, letter) << "first byte " << c;
        EXPECT_EQ(read(byte + "IR:f").accepted, letter) << "first byte of three " << c;
        EXPECT_EQ(read("D" + byte + "R:f").accepted, in_name || c == ':') << "second byte " << c;
        EXPECT_EQ(read("DI" + byte + ":f").accepted, in_name || c == ':') << "last byte " << c;
    }
}

TEST(utl_is_valid_bfile_str, a_file_name_holds_all_but_NUL_and_line_ends)
{
    const std::string filler(300, 'f');
    for (int c = 0; c < 256; c++) {
        const std::string byte(1, static_cast<char>(c));
        const bool allowed = c != 0 && c != '\r' && c != '\n';
        EXPECT_EQ(read("D:" + byte + "ile").accepted, allowed) << "first byte " << c;
        EXPECT_EQ(read("D:f" + byte + "le").accepted, allowed) << "middle byte " << c;
        EXPECT_EQ(read("D:fil" + byte).accepted, allowed) << "last byte " << c;
        EXPECT_EQ(read("D:" + byte).accepted, allowed && c != ' ') << "only byte " << c;
        EXPECT_EQ(read("D:" + filler + byte + filler).accepted, allowed) << "byte " << c << " in a long name";
    }
}

TEST(utl_is_valid_bfile_str, agrees_with_the_slow_reading_on_random_texts)
{
    std::mt19937_64 random(20240802);
    const std::string alphabet("Az09__::  \t\r\n.\0\xC3", 16);
    size_t accepted = 0;
    for (int i = 0; i < 300000; i++) {
        std::string text = random() % 2 == 0 ? "D" : "";
        for (size_t n = random() % 8; n > 0; n--)
            text += random() % 4 == 0 ? alphabet[random() % alphabet.size()] : "aB7_:f "[random() % 7];
        const locator expected = slow_read(text);
        ASSERT_EQ(read_at(text.data(), text.size()), expected) << "\"" << text << "\"";
        accepted += expected.accepted;
    }
    EXPECT_GT(accepted, 30000u);
}

} // namespace bcast::test
