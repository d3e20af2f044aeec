#include "../support/guarded.h"
#include "plain_csv.h"
#include "tools/csv_reader.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <random>

namespace bcast::tool {
namespace {

using test::plain_csv;
using test::plain_record;

struct reading {
    std::vector<plain_record> records;
    std::string error; // what next() threw, or empty

    bool operator==(const reading &) const = default;
};

// How many of the bytes that are left the reader gets next.
using chunking = std::function<std::size_t()>;
chunking chunks_of(std::size_t size)
{
    return [size] { return size; };
}

struct reading_options {
    bool count_empty_lines = false;
    std::optional<std::vector<bool>> keep = std::nullopt;
};

// What the reader makes of a text. Every piece stands against an inaccessible page, and is gone when the next one
// comes.
reading read(std::string_view text, const chunking &next_size, const reading_options &options = {})
{
    csv_reader reader;
    reader.count_empty_lines(options.count_empty_lines);
    if (options.keep)
        reader.keep_only(*options.keep);

    reading result;
    std::vector<std::string> fields;
    std::optional<guarded<char>> piece;
    bool finished = false;
    try {
        for (;;) {
            switch (reader.next()) {
            case csv_reader::event::field:
                fields.resize(reader.field_index());
                fields.emplace_back(reader.text());
                break;
            case csv_reader::event::record:
                fields.resize(reader.field_count());
                result.records.push_back({reader.line(), std::move(fields)});
                fields.clear();
                break;
            case csv_reader::event::exhausted:
                if (finished)
                    return result;
                if (text.empty()) {
                    finished = true;
                    reader.finish();
                    break;
                }
                const std::string_view taken = text.substr(0, next_size());
                text.remove_prefix(taken.size());
                piece.emplace(std::span<const char>(taken));
                reader.feed({piece->data(), piece->size()});
                break;
            }
        }
    } catch (const csv_error &error) {
        result.error = error.what();
        return result;
    }
}

reading read(std::string_view text, const reading_options &options = {})
{
    return read(text, chunks_of(std::string_view::npos), options);
}

std::string in_words(const reading &r)
{
    std::string text;
    for (const plain_record &record : r.records) {
        text += "line " + std::to_string(record.line) + ":";
        for (const std::string &field : record.fields)
            text += " " + testing::PrintToString(field);
        text += "\n";
    }
    return text + (r.error.empty() ? "" : "error: " + r.error + "\n");
}

using fields = std::vector<std::string>;

std::vector<fields> records_of(std::string_view text, const reading_options &options = {})
{
    const reading r = read(text, options);
    EXPECT_EQ(r.error, "") << testing::PrintToString(std::string(text));
    std::vector<fields> records;
    for (const plain_record &record : r.records)
        records.push_back(record.fields);
    return records;
}

TEST(csv_reader, fields_stand_between_commas_and_records_end_in_lf_or_cr_lf)
{
    EXPECT_EQ(records_of("a,b\n1,2\r\n3,4\n"), (std::vector<fields>{{"a", "b"}, {"1", "2"}, {"3", "4"}}));
}

TEST(csv_reader, last_record_needs_no_line_end)
{
    EXPECT_EQ(records_of("a,b\n1,2"), (std::vector<fields>{{"a", "b"}, {"1", "2"}}));
    EXPECT_EQ(records_of("a,b\n1,"), (std::vector<fields>{{"a", "b"}, {"1", ""}}));
    EXPECT_EQ(records_of("a,b\n1,\"2\""), (std::vector<fields>{{"a", "b"}, {"1", "2"}}));
    EXPECT_EQ(records_of("a,b\n1,2\r"), (std::vector<fields>{{"a", "b"}, {"1", "2"}}));
    EXPECT_EQ(records_of("a,b\n1,\"2\"\r"), (std::vector<fields>{{"a", "b"}, {"1", "2"}}));
}

TEST(csv_reader, empty_fields_are_fields)
{
    EXPECT_EQ(records_of(",\n,,\na,,b\n\"\",\n"),
              (std::vector<fields>{{"", ""}, {"", "", ""}, {"a", "", "b"}, {"", ""}}));
}

TEST(csv_reader, blanks_belong_to_the_field)
{
    EXPECT_EQ(records_of(" a , b \n"), (std::vector<fields>{{" a ", " b "}}));
}

TEST(csv_reader, quoted_fields_hold_commas_quotes_and_line_ends)
{
    EXPECT_EQ(records_of("\"a,b\",\"say \"\"hi\"\"\",\"\"\"\"\r\n\"x\ny\r\nz\",\"\"\"\"\"\",\"\"\n"),
              (std::vector<fields>{{"a,b", "say \"hi\"", "\""}, {"x\ny\r\nz", "\"\"", ""}}));
}

TEST(csv_reader, cr_without_lf_is_data)
{
    EXPECT_EQ(records_of("a\rb,\rc\r\r\n"), (std::vector<fields>{{"a\rb", "\rc\r"}}));
}

TEST(csv_reader, bytes_that_are_no_utf_8_and_nul_bytes_are_data)
{
    using namespace std::string_literals;
    EXPECT_EQ(records_of("\xFF\xC0\0,\"\0\x80\"\n"s), (std::vector<fields>{{"\xFF\xC0\0"s, "\0\x80"s}}));
}

TEST(csv_reader, byte_order_mark_at_the_beginning_is_skipped)
{
    EXPECT_EQ(records_of("\xEF\xBB\xBF"
                         "a,b\n"),
              (std::vector<fields>{{"a", "b"}}));
    EXPECT_EQ(records_of("\xEF\xBB\xBF\"a\",b\n"), (std::vector<fields>{{"a", "b"}}));
    EXPECT_EQ(records_of("\xEF\xBB\xBF"), (std::vector<fields>{}));
}

TEST(csv_reader, part_of_a_byte_order_mark_and_a_second_one_are_data)
{
    EXPECT_EQ(records_of("\xEF\xBB"), (std::vector<fields>{{"\xEF\xBB"}}));
    EXPECT_EQ(records_of("\xEF,b\n"), (std::vector<fields>{{"\xEF", "b"}}));
    EXPECT_EQ(records_of("\xEF\xBB\xBF\xEF\xBB\xBF"
                         "a\n\xEF\xBB\xBF"
                         "b\n"),
              (std::vector<fields>{{"\xEF\xBB\xBF"
                                    "a"},
                                   {"\xEF\xBB\xBF"
                                    "b"}}));
}

TEST(csv_reader, empty_lines_are_records_only_if_they_count)
{
    const std::string_view text = "\n\r\na\n\n\r\nb\n\"\"\n\n";
    EXPECT_EQ(records_of(text), (std::vector<fields>{{"a"}, {"b"}, {""}}));
    EXPECT_EQ(records_of(text, {.count_empty_lines = true}),
              (std::vector<fields>{{""}, {""}, {"a"}, {""}, {""}, {"b"}, {""}, {""}}));
}

TEST(csv_reader, empty_input_has_no_records)
{
    EXPECT_EQ(records_of(""), (std::vector<fields>{}));
    EXPECT_EQ(records_of("", {.count_empty_lines = true}), (std::vector<fields>{}));
}

TEST(csv_reader, lines_are_counted_within_quotes_and_where_there_is_no_record)
{
    const reading r = read("a\n\n\"x\ny\"\n\"p\r\nq\",2\r\nz");
    EXPECT_EQ(r.records, (std::vector<plain_record>{{1, {"a"}}, {3, {"x\ny"}}, {5, {"p\r\nq", "2"}}, {7, {"z"}}}))
        << in_words(r);
}

TEST(csv_reader, fields_that_are_not_kept_are_counted_but_not_told)
{
    const reading_options third = {.keep = std::vector<bool>{false, false, true}};
    EXPECT_EQ(records_of("a,b,c\n\"1,\n2\",\"\"\"\",3\n,,\n\n\r\nx\n1,2,3,4,\n", third),
              (std::vector<fields>{{"", "", "c"}, {"", "", "3"}, {"", "", ""}, {""}, {"", "", "3", "", ""}}));
}

TEST(csv_reader, quotes_inside_a_field_that_does_not_begin_with_one_are_data)
{
    EXPECT_EQ(records_of("5\" pipe,\"\"\" inch\", \"b\"\n\"x\",a\"\"\"\n"),
              (std::vector<fields>{{"5\" pipe", "\" inch", " \"b\""}, {"x", "a\"\"\""}}));
}

TEST(csv_reader, errors_tell_line_and_field)
{
    const auto error_of = [](std::string_view text) { return read(text).error; };
    EXPECT_EQ(error_of("a,\"b\"c\n"), "line 1: bytes behind the closing quote of field 2");
    EXPECT_EQ(error_of("\"b\n\" ,c\n"), "line 2: bytes behind the closing quote of field 1");
    EXPECT_EQ(error_of("\"b\"\rc\n"), "line 1: bytes behind the closing quote of field 1");
    EXPECT_EQ(error_of("\"b\"\r\"\n"), "line 1: bytes behind the closing quote of field 1");
    EXPECT_EQ(error_of("\"b\"\r,\n"), "line 1: bytes behind the closing quote of field 1");
    EXPECT_EQ(error_of("a\nb,\"c\n\nd\n"), "line 2: the input ends inside the quoted field that begins in this line");
    EXPECT_EQ(error_of("\""), "line 1: the input ends inside the quoted field that begins in this line");
    EXPECT_EQ(error_of("\"\"\""), "line 1: the input ends inside the quoted field that begins in this line");
}

TEST(csv_reader, records_in_front_of_an_error_are_told)
{
    const reading r = read("a,b\n1,2\n3,\"4");
    EXPECT_EQ(r.records, (std::vector<plain_record>{{1, {"a", "b"}}, {2, {"1", "2"}}})) << in_words(r);
}

TEST(csv_reader, longest_field_is_taken_and_a_longer_one_is_not)
{
    const std::string longest(csv_reader::longest_field, 'x');
    const std::string too_long = "line 2: field 2, which begins in this line, is longer than 16777216 bytes";
    for (const char *quote : {"", "\""}) {
        for (const std::size_t chunk : {std::string_view::npos, std::size_t(65536)}) {
            const auto text = [&](const std::string &field) {
                return "a,b\n1," + std::string(quote) + field + quote + "\n";
            };
            const reading taken = read(text(longest), chunks_of(chunk));
            ASSERT_EQ(taken.records.size(), 2u) << taken.error;
            EXPECT_TRUE(taken.records[1].fields[1] == longest);
            EXPECT_EQ(read(text(longest + "x"), chunks_of(chunk)).error, too_long) << "in quotes: " << quote;
        }
    }
}

TEST(csv_reader, field_that_is_not_kept_may_be_longer)
{
    const std::string text = "a,b\n" + std::string(csv_reader::longest_field + 1, 'x') + ",2\n";
    for (const std::size_t chunk : {std::string_view::npos, std::size_t(65536)}) {
        const reading r = read(text, chunks_of(chunk), {.keep = std::vector<bool>{false, true}});
        EXPECT_EQ(r.records, (std::vector<plain_record>{{1, {"", "b"}}, {2, {"", "2"}}})) << r.error;
    }
}

// Texts that end, break and turn in every state of the reader.
const std::vector<std::string> &edges()
{
    static const std::vector<std::string> texts = {
        "a,b\n1,2\r\n3,4",
        "\xEF\xBB\xBF\"a\",\"b\"\"\"\r\n,\r\n\r\n\"x\r\ny\",z\r",
        "\xEF\xBB"
        "a\n\xEF\n",
        "longer than a word of eight bytes,\"longer than a word, in quotes \"\" and so on\"\r\nand once more,\r\n",
        "\"\",\"\"\"\",\"\"\"\"\"\"\n\"\"\n\n,\n",
        "\r\r\n\r,\r\r\n\"\r\"\r\n",
        "a,b\n1,\"2\n3",
        "a,b\n1,\"2\"3\n",
        "a,b\n\"2\"\rx\n",
        "a,b\n1,2\"3\n",
        std::string("\0,\0\0\n\xFF,\xFE\n", 10),
    };
    return texts;
}

TEST(csv_reader, pieces_of_any_size_give_the_same)
{
    for (const std::string &text : edges()) {
        const reading whole = read(text);
        for (std::size_t size = 1; size <= text.size(); size++) {
            const reading pieces = read(text, chunks_of(size));
            EXPECT_EQ(pieces, whole) << "pieces of " << size << " of " << testing::PrintToString(text) << "\n"
                                     << in_words(pieces) << "instead of\n"
                                     << in_words(whole);
        }
    }
}

TEST(csv_reader, border_at_any_place_gives_the_same)
{
    for (const std::string &text : edges()) {
        const reading whole = read(text);
        for (std::size_t border = 0; border <= text.size(); border++) {
            const reading pieces = read(text, [border, first = true]() mutable {
                return std::exchange(first, false) ? border : std::string_view::npos;
            });
            EXPECT_EQ(pieces, whole) << "border at " << border << " of " << testing::PrintToString(text) << "\n"
                                     << in_words(pieces) << "instead of\n"
                                     << in_words(whole);
        }
    }
}

const char *error_text(plain_csv::error error)
{
    switch (error) {
    case plain_csv::error::behind_quote:
        return ": bytes behind the closing quote of field ";
    case plain_csv::error::no_closing_quote:
        return ": the input ends inside the quoted field that begins in this line";
    case plain_csv::error::none:
        break;
    }
    return "";
}

// Of the records of a text those fields that are kept; the others are empty.
std::vector<plain_record> without_fields(std::vector<plain_record> records, const std::vector<bool> &keep)
{
    for (plain_record &record : records)
        for (std::size_t k = 0; k < record.fields.size(); k++)
            if (k >= keep.size() || !keep[k])
                record.fields[k].clear();
    return records;
}

class csv_reader_random : public testing::TestWithParam<std::string_view> {};

// Random bytes in random pieces against a plain reading of the same text.
TEST_P(csv_reader_random, agrees_with_plain_reading_whatever_the_pieces)
{
    const std::string_view alphabet = GetParam();
    std::mt19937 random(20240607);
    const auto below = [&](std::size_t n) { return std::size_t(random() % n); };
    for (int round = 0; round < 20000; round++) {
        std::string text;
        for (std::size_t left = below(60); left > 0; left--)
            text += alphabet.empty() ? char(below(256)) : alphabet[below(alphabet.size())];
        reading_options options = {.count_empty_lines = below(2) == 1};
        std::vector<bool> keep(5, true);
        if (below(2) == 1) {
            for (std::size_t k = 0; k < keep.size(); k++)
                keep[k] = below(2) == 1;
            options.keep = keep;
        }

        const plain_csv expected = test::read_plainly(text, options.count_empty_lines);
        const auto records = options.keep ? without_fields(expected.records, keep) : expected.records;
        const std::string error =
            expected.error_line > 0 ? "line " + std::to_string(expected.error_line) + error_text(expected.what) : "";
        const std::size_t size = 1 + below(20);
        for (const reading &r : {read(text, options), read(
                                                          text, [&] { return 1 + below(size); }, options)}) {
            ASSERT_EQ(r.records, records) << "round " << round << ": " << testing::PrintToString(text) << "\n"
                                          << in_words(r) << "instead of\n"
                                          << in_words({records, error});
            ASSERT_EQ(r.error.substr(0, error.size()), error) << testing::PrintToString(text);
            ASSERT_EQ(r.error.empty(), error.empty()) << testing::PrintToString(text) << r.error;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, csv_reader_random,
                         testing::Values(",\n\"\rab", "\xEF\xBB\xBF\"\n,a", "\"\"\"\",\n\r",
                                         ",,,aaaaaaaaaaaaaaaaaaaaaaaaa\n", ""));

} // namespace
} // namespace bcast::tool
