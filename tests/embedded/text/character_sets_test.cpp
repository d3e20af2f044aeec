#include "tests/support/guarded.h"

#include <services/text.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <random>
#include <span>
#include <sstream>
#include <string>
#include <vector>

namespace bcast::test {

namespace {

struct reading {
    uint32_t chars;
    uint32_t bytes;

    friend bool operator==(const reading &, const reading &) = default;
};

void PrintTo(const reading &r, std::ostream *out) { *out << r.chars << " characters in " << r.bytes << " bytes"; }

// The first limit bytes, which is all that may be read, end at an inaccessible page.
reading read(std::string_view text, int32_t limit, int32_t charset)
{
    static guarded<char> memory(size_t{1} << 20);
    char *copy = memory.end() - std::max(limit, 0);
    std::copy_n(text.begin(), std::max(limit, 0), copy);
    reading result = {0x5a5a5a5a, 0x5a5a5a5a};
    vq_get_valid_chars(copy, limit, charset, &result.chars, &result.bytes);
    return result;
}

reading read(std::string_view text, int32_t charset) { return read(text, static_cast<int32_t>(text.size()), charset); }

// A character set as a table: the bytes that may stand at each place of a character.
struct byte_range {
    unsigned char first, last;

    bool holds(char byte) const
    {
        const auto value = static_cast<unsigned char>(byte);
        return first <= value && value <= last;
    }
};

struct character_set {
    const char *name;
    int32_t code;
    std::vector<std::vector<byte_range>> forms;
};

const character_set utf_8 = {"UTF-8",
                             10,
                             {{{0x00, 0x7F}},
                              {{0xC2, 0xDF}, {0x80, 0xBF}},
                              {{0xE0, 0xE0}, {0xA0, 0xBF}, {0x80, 0xBF}},
                              {{0xE1, 0xEC}, {0x80, 0xBF}, {0x80, 0xBF}},
                              {{0xED, 0xED}, {0x80, 0x9F}, {0x80, 0xBF}},
                              {{0xEE, 0xEF}, {0x80, 0xBF}, {0x80, 0xBF}},
                              {{0xF0, 0xF0}, {0x90, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}},
                              {{0xF1, 0xF3}, {0x80, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}},
                              {{0xF4, 0xF4}, {0x80, 0x8F}, {0x80, 0xBF}, {0x80, 0xBF}}}};

const character_set gb18030 = {"GB18030",
                               1,
                               {{{0x00, 0x7F}},
                                {{0x81, 0xFE}, {0x40, 0x7E}},
                                {{0x81, 0xFE}, {0x80, 0xFE}},
                                {{0x81, 0xFE}, {0x30, 0x39}, {0x81, 0xFE}, {0x30, 0x39}}}};

const character_set euc_kr = {"EUC-KR", 6, {{{0x00, 0x7F}}, {{0xA1, 0xFE}, {0xA1, 0xFE}}}};

const character_set *const all_sets[] = {&utf_8, &gb18030, &euc_kr};

// The plain reading of the table, form by form and byte by byte.
reading slow_read(std::string_view text, const character_set &set)
{
    reading result = {0, 0};
    while (!text.empty()) {
        size_t width = 1;
        for (const auto &form : set.forms) {
            const size_t seen = std::min(form.size(), text.size());
            bool fits = true;
            for (size_t i = 0; i < seen; i++)
                fits = fits && form[i].holds(text[i]);
            if (fits && seen < form.size())
                return result; // cut off
            if (fits)
                width = form.size();
        }
        result.chars++;
        result.bytes += static_cast<uint32_t>(width);
        text.remove_prefix(width);
    }
    return result;
}

std::string hex(std::string_view text)
{
    std::ostringstream out;
    for (const char c : text)
        out << std::hex << std::uppercase << std::setw(2) << std::setfill('0') << int{static_cast<unsigned char>(c)};
    return out.str();
}

std::string with_limit(std::string_view text, const character_set &set)
{
    return std::string(set.name) + " " + hex(text) + " with limit " + std::to_string(text.size());
}

std::string bytes(std::initializer_list<int> values)
{
    std::string text;
    for (const int value : values)
        text += static_cast<char>(value);
    return text;
}

std::string encode_utf_8(uint32_t point)
{
    const auto byte = [](uint32_t value) { return static_cast<char>(value); };
    const auto follower = [&](uint32_t shift) { return byte(0x80 | (point >> shift & 0x3F)); };
    if (point < 0x80)
        return {byte(point)};
    if (point < 0x800)
        return {byte(0xC0 | point >> 6), follower(0)};
    if (point < 0x10000)
        return {byte(0xE0 | point >> 12), follower(6), follower(0)};
    return {byte(0xF0 | point >> 18), follower(12), follower(6), follower(0)};
}

// All texts of that many bytes out of the alphabet, behind that beginning.
template <typename Check>
void for_all_texts(const std::string &beginning, size_t count, const std::string &alphabet, Check check)
{
    if (count == 0) {
        check(beginning);
        return;
    }
    for (const char c : alphabet) {
        for_all_texts(beginning + c, count - 1, alphabet, check);
        if (testing::Test::HasFatalFailure())
            return;
    }
}

std::string all_bytes()
{
    std::string alphabet;
    for (int c = 0; c < 256; c++)
        alphabet += static_cast<char>(c);
    return alphabet;
}

void expect_as_in_table(const std::string &text, const character_set &set)
{
    ASSERT_EQ(read(text, set.code), slow_read(text, set)) << with_limit(text, set);
}

} // namespace

// ---- Limits ------------------------------------------------------------------------

TEST(vq_get_valid_chars, a_limit_of_zero_or_below_reads_nothing)
{
    for (const int32_t charset : {10, 1, 6, 99}) {
        for (const int32_t limit : {0, -1, -8, INT32_MIN})
            EXPECT_EQ(read("", limit, charset), (reading{0, 0})) << "charset " << charset << ", limit " << limit;
    }
}

TEST(vq_get_valid_chars, all_of_a_text_counts_when_the_limit_is_its_end)
{
    EXPECT_EQ(read("abc", 10), (reading{3, 3}));
    EXPECT_EQ(read("\xE2\x82\xAC\xC3\xA9", 10), (reading{2, 5}));
    EXPECT_EQ(read("a\xF0\x9F\x98\x80", 10), (reading{2, 5}));
    EXPECT_EQ(read("\x81\x30\x81\x30\x81\x40z", 1), (reading{3, 7}));
    EXPECT_EQ(read("\xB0\xA1\xC8\xFE-", 6), (reading{3, 5}));
}

TEST(vq_get_valid_chars, a_character_that_the_limit_cuts_off_does_not_count)
{
    EXPECT_EQ(read("\xE2\x82\xAC\xC3\xA9", 4, 10), (reading{1, 3}));
    EXPECT_EQ(read("\xE2\x82\xAC", 2, 10), (reading{0, 0}));
    EXPECT_EQ(read("\xF0\x9F\x98\x80", 3, 10), (reading{0, 0}));
    EXPECT_EQ(read("\x81\x30\x81\x30", 3, 1), (reading{0, 0}));
    EXPECT_EQ(read("a\x81\x30\x81\x30", 3, 1), (reading{1, 1}));
    EXPECT_EQ(read("\xB0\xA1\xC8\xFE", 3, 6), (reading{1, 2}));
}

// What comes before is of every length, so that the cut falls on every place of a word.
TEST(vq_get_valid_chars, every_form_of_a_character_is_cut_at_every_place)
{
    for (const character_set *set : all_sets) {
        for (const auto &form : set->forms) {
            for (const bool high : {false, true}) {
                std::string character;
                for (const byte_range &range : form)
                    character += static_cast<char>(high ? range.last : range.first);
                for (uint32_t before = 0; before <= 40; before++) {
                    const std::string whole = std::string(before, 'x') + character;
                    const auto size = static_cast<uint32_t>(whole.size());
                    EXPECT_EQ(read(whole, set->code), (reading{before + 1, size})) << with_limit(whole, *set);
                    for (size_t limit = before; limit < whole.size(); limit++) {
                        const std::string cut = whole.substr(0, limit);
                        EXPECT_EQ(read(cut, set->code), (reading{before, before})) << with_limit(cut, *set);
                    }
                }
            }
        }
    }
}

// ---- Malformed text ------------------------------------------------------------------

TEST(vq_get_valid_chars, utf_8_takes_no_overlong_form_no_surrogate_and_nothing_above_the_last_code_point)
{
    for (const std::string &text :
         {bytes({0xC0, 0x80}), bytes({0xC1, 0xBF}), bytes({0xE0, 0x80, 0x80}), bytes({0xE0, 0x9F, 0xBF}),
          bytes({0xF0, 0x80, 0x80, 0x80}), bytes({0xF0, 0x8F, 0xBF, 0xBF}), bytes({0xED, 0xA0, 0x80}),
          bytes({0xED, 0xBF, 0xBF}), bytes({0xF4, 0x90, 0x80, 0x80}), bytes({0xF5, 0x80, 0x80, 0x80}),
          bytes({0xF8, 0x88, 0x80, 0x80, 0x80}), bytes({0xFE, 0x80}), bytes({0xFF, 0xFF}), bytes({0x80, 0xBF})}) {
        const auto size = static_cast<uint32_t>(text.size());
        EXPECT_EQ(read(text, 10), (reading{size, size})) << hex(text);
        // The first two bytes settle it: nothing of them waits for more.
        EXPECT_EQ(read(text, 2, 10), (reading{2, 2})) << hex(text.substr(0, 2));
    }
}

TEST(vq_get_valid_chars, a_byte_that_does_not_fit_makes_one_character_of_the_lead_alone)
{
    EXPECT_EQ(read("\xE2\x82"
                   "a",
                   10),
              (reading{3, 3}));
    EXPECT_EQ(read("\xE2\x82\xE2\x82\xAC", 10), (reading{3, 5}));
    EXPECT_EQ(read("\xC3\xC3\xA9", 10), (reading{2, 3}));
    EXPECT_EQ(read("\xC3\xC3", 10), (reading{1, 1}));
    EXPECT_EQ(read("\x81\x30\x81"
                   "a",
                   1),
              (reading{3, 4}));
    EXPECT_EQ(read("\x81\x7F", 1), (reading{2, 2}));
    EXPECT_EQ(read("\x81\x30"
                   "a",
                   1),
              (reading{3, 3}));
    EXPECT_EQ(read("\xB0"
                   "a",
                   6),
              (reading{2, 2}));
    EXPECT_EQ(read("\xB0\xA0\xB0\xA1", 6), (reading{3, 4}));
}

// ---- Against the table -----------------------------------------------------------------

TEST(vq_get_valid_chars, every_code_point_is_one_character_of_utf_8)
{
    for (uint32_t point = 0; point <= 0x10FFFF; point++) {
        if (point >= 0xD800 && point <= 0xDFFF)
            continue;
        const std::string text = encode_utf_8(point);
        ASSERT_EQ(read(text, 10), (reading{1, static_cast<uint32_t>(text.size())})) << hex(text);
        const std::string cut = text.substr(0, text.size() - 1);
        ASSERT_EQ(read(cut, 10), (reading{0, 0})) << hex(cut);
    }
}

TEST(vq_get_valid_chars, all_texts_of_one_and_two_bytes_are_as_in_the_table)
{
    for (const character_set *set : all_sets) {
        for_all_texts("", 1, all_bytes(), [&](const std::string &text) { expect_as_in_table(text, *set); });
        for_all_texts("", 2, all_bytes(), [&](const std::string &text) { expect_as_in_table(text, *set); });
    }
}

TEST(vq_get_valid_chars, all_texts_of_three_bytes_behind_telling_leads_are_as_in_the_table)
{
    for (const character_set *set : all_sets) {
        for (const int lead :
             {0x61, 0x80, 0x81, 0xA0, 0xA1, 0xC1, 0xC2, 0xE0, 0xE1, 0xED, 0xEF, 0xF0, 0xF4, 0xFE, 0xFF})
            for_all_texts(bytes({lead}), 2, all_bytes(),
                          [&](const std::string &text) { expect_as_in_table(text, *set); });
    }
}

TEST(vq_get_valid_chars, texts_of_four_bytes_on_the_edges_of_the_table_are_as_in_it)
{
    const std::string edges =
        bytes({0x00, 0x2F, 0x30, 0x39, 0x3A, 0x3F, 0x40, 0x7E, 0x7F, 0x80, 0x81, 0x8F, 0x90, 0x9F, 0xA0, 0xA1, 0xBF,
               0xC0, 0xC1, 0xC2, 0xDF, 0xE0, 0xE1, 0xEC, 0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFE, 0xFF});
    for (const character_set *set : all_sets)
        for_all_texts("", 4, edges, [&](const std::string &text) { expect_as_in_table(text, *set); });
}

TEST(vq_get_valid_chars, random_texts_are_as_in_the_table_at_every_limit)
{
    std::mt19937_64 random(20240803);
    for (int i = 0; i < 10000; i++) {
        const character_set &set = *all_sets[random() % 3];
        std::string text;
        while (text.size() < 50) {
            switch (random() % 4) {
            case 0:
                text += std::string(random() % 20, static_cast<char>(random() % 0x80));
                break;
            case 1:
                text += static_cast<char>(random());
                break;
            default:
                for (const byte_range &range : set.forms[random() % set.forms.size()])
                    text += static_cast<char>(range.first + random() % (range.last - range.first + 1u));
            }
        }
        for (size_t limit = 0; limit <= text.size(); limit++)
            expect_as_in_table(text.substr(0, limit), set);
    }
}

TEST(vq_get_valid_chars, runs_of_ascii_end_at_any_place)
{
    for (const character_set *set : all_sets) {
        for (size_t before = 0; before <= 70; before++) {
            for (size_t behind = 0; behind <= 20; behind++) {
                const std::string text = std::string(before, '\x7F') + "\xB0\xA1" + std::string(behind, '\0');
                expect_as_in_table(text, *set);
            }
        }
    }
}

TEST(vq_get_valid_chars, long_texts_are_counted_whole)
{
    std::string text;
    for (uint32_t i = 0; i < 100000; i++)
        text += "a\xE2\x82\xAC\xC3\xA9";
    EXPECT_EQ(read(text, 10), (reading{300000, 600000}));
    EXPECT_EQ(read(std::string(1000000, 'x'), 10), (reading{1000000, 1000000}));
}

TEST(vq_get_valid_chars, under_any_other_code_each_byte_is_a_character)
{
    const std::string text = "a\xE2\x82\xAC\xB0\xA1\x81\x30\x81\x30\xFF";
    for (const int32_t charset : {0, 2, 3, 5, 7, 9, 11, -1, -10, 266, INT32_MAX, INT32_MIN})
        EXPECT_EQ(read(text, 3, charset), (reading{3, 3})) << "charset " << charset;
}

} // namespace bcast::test
