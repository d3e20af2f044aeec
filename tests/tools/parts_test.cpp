// Parts of the tool by themselves.
#include "process.h"
#include "tools/csv_reader.h"
#include "tools/errors.h"
#include "tools/files.h"
#include "tools/table.h"
#include "tools/types.h"

#include <gtest/gtest.h>

#include <random>

#include <fcntl.h>

namespace bcast::tool {
namespace {

// Each step takes what the one in front of it gives, and the library has it.
void expect_road(const std::vector<column_type::step> &road, bcast_type from, bcast_type to)
{
    for (const column_type::step &step : road) {
        const auto cast = find_cast(step.cast);
        ASSERT_TRUE(cast) << step.cast;
        EXPECT_EQ(cast->entry->source, from) << step.cast;
        EXPECT_TRUE(can_run(*cast->entry)) << step.cast;
        EXPECT_EQ(takes_length(*cast->entry), step.length > 0) << step.cast;
        from = cast->entry->target;
    }
    EXPECT_EQ(from, to);
}

TEST(types, roads_lead_from_text_to_the_type_and_back)
{
    ASSERT_FALSE(column_types().empty());
    for (const column_type &type : column_types()) {
        SCOPED_TRACE(bcast_type_name(type.type));
        expect_road(type.from_text, BCAST_VARCHAR, type.type);
        expect_road(type.to_text, type.type, BCAST_VARCHAR);
        for (const column_type::step &step : type.from_text)
            EXPECT_TRUE(captures(*find_cast(step.cast)->entry)) << step.cast;
    }
}

TEST(types, column_type_is_found_by_its_name)
{
    for (const column_type &type : column_types())
        EXPECT_EQ(&parse_column_type(bcast_type_name(type.type)), &type);
}

TEST(types, help_names_every_column_type)
{
    EXPECT_NE(test::run_bcast({"csv", "--help"}).output.find(": " + column_type_names() + ". "), std::string::npos);
}

TEST(types, rows_that_fail_are_null_at_the_end_of_the_road)
{
    road from_text(parse_column_type("tinyint").from_text);
    road to_text(parse_column_type("tinyint").to_text);
    column texts(BCAST_VARCHAR);
    for (const char *text : {"1", "128", "", "x", "-5"})
        texts.append(text);
    pool memory;
    failures failed;
    column &values = from_text.run(memory, texts, 5, failed);
    column &value_texts = to_text.run(memory, values, 5, failed);
    EXPECT_EQ(std::vector<std::int32_t>(failed.codes(), failed.codes() + 5),
              (std::vector<std::int32_t>{0, ERR_OVERFLOW, 0, ERR_BAD_CONVERSION, 0}));
    EXPECT_EQ(*failed.count(), 2);
    const std::vector<std::optional<std::string_view>> expected = {"1", std::nullopt, std::nullopt, std::nullopt, "-5"};
    for (std::uint32_t row = 0; row < 5; row++)
        EXPECT_EQ(value_texts.text(row), expected[row]) << "row " << row;
}

TEST(types, cast_that_the_library_lacks_is_told)
{
    const std::vector<column_type::step> no_such = {{"bcast_int_to_nothing"}};
    try {
        road road(no_such);
        FAIL() << "no error";
    } catch (const tool_error &error) {
        EXPECT_STREQ(error.what(), "the library that is loaded does not have bcast_int_to_nothing");
    }
}

TEST(table, cells_stand_below_one_another)
{
    EXPECT_EQ(aligned({{"a", "count", "x"}, {"größe", "7", "long"}, {"b", "12345678"}},
                      {align::left, align::right, align::left}),
              "a         count  x\n"
              "größe         7  long\n"
              "b      12345678\n");
    EXPECT_EQ(aligned({}, {align::left}), "");
}

TEST(errors, text_for_a_message_fits_in_a_line)
{
    using namespace std::string_literals;
    EXPECT_EQ(in_quotes(""), "\"\"");
    EXPECT_EQ(in_quotes("größe \"x\" \\"), "\"größe \\\"x\\\" \\\\\"");
    EXPECT_EQ(in_quotes("a\nb\rc\td\0\x1b\x7f"s), "\"a\\nb\\rc\\td\\x00\\x1b\\x7f\"");
    EXPECT_EQ(in_quotes(std::string(200, 'x')), "\"" + std::string(200, 'x') + "\"");
    EXPECT_EQ(in_quotes(std::string(201, 'x')), "\"" + std::string(200, 'x') + "...\"");
    EXPECT_EQ(in_quotes(std::string(199, 'x') + "ö"), "\"" + std::string(199, 'x') + "...\"") << "no half characters";
    EXPECT_EQ(in_quotes(std::string(300, '\x80')), "\"" + std::string(200, '\x80') + "...\"") << "no UTF-8";
}

TEST(files, fields_that_are_written_read_back_the_same)
{
    std::mt19937 random(77);
    const std::string_view alphabet = ",\"\r\n ab";
    std::vector<std::vector<std::string>> records(500);
    for (auto &record : records) {
        record.resize(1 + random() % 4);
        for (std::string &field : record)
            for (auto left = random() % 6; left > 0; left--)
                field += alphabet[random() % alphabet.size()];
    }

    const test::temporary_directory directory;
    const std::string path = directory.path("fields.csv");
    {
        output_file file(path, 1, {});
        for (const auto &record : records)
            for (std::size_t k = 0; k < record.size(); k++) {
                write_csv_field(file, record[k]);
                file.write(k + 1 < record.size() ? "," : "\n");
            }
        file.close();
    }

    const std::string text = test::content_of(path);
    csv_reader reader;
    reader.count_empty_lines(true);
    reader.feed(text);
    reader.finish();
    for (const auto &record : records) {
        for (const std::string &field : record) {
            ASSERT_EQ(reader.next(), csv_reader::event::field);
            ASSERT_EQ(reader.text(), field);
        }
        ASSERT_EQ(reader.next(), csv_reader::event::record);
    }
    EXPECT_EQ(reader.next(), csv_reader::event::exhausted);
}

TEST(files, more_bytes_than_the_buffer_holds_are_written)
{
    const test::temporary_directory directory;
    std::string expected;
    output_file file(directory.path("bytes"), 1, {});
    for (std::size_t size = 1; size < (std::size_t(2) << 20); size = size * 3 + 1) {
        const std::string piece(size, char('a' + size % 26));
        file.write(piece);
        expected += piece;
    }
    file.close();
    EXPECT_TRUE(test::content_of(directory.path("bytes")) == expected);
}

} // namespace
} // namespace bcast::tool
