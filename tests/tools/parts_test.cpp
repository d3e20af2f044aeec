// Parts of the tool by themselves.
#include "process.h"
#include "tools/csv_reader.h"
#include "tools/errors.h"
#include "tools/files.h"
#include "tools/table.h"
#include "tools/types.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <random>

#include <fcntl.h>

namespace bcast::tool {
namespace {

// A type with a length or shape where it takes one.
declared_type example_of(bcast_type type)
{
    declared_type example = {type};
    if (has_length(type))
        example.length = 7;
    if (type == BCAST_DEC)
        example = {type, 10, 2};
    return example;
}

// Whether a cast from one type reads the other.
bool are_alike(bcast_type type, bcast_type other)
{
    return type == other || (is_character(type) && is_character(other)) || (is_temporal(type) && is_temporal(other));
}

// Each cast takes what the one in front of it gives, and the library has it.
void expect_road(const std::vector<std::string_view> &casts, const declared_type &from, const declared_type &to)
{
    bcast_type at = from.type;
    for (const std::string_view name : casts) {
        const auto cast = find_cast(name);
        ASSERT_TRUE(cast) << name;
        EXPECT_TRUE(are_alike(cast->entry->source, at)) << name;
        EXPECT_TRUE(can_run(*cast->entry)) << name;
        EXPECT_TRUE(!takes_length(*cast->entry) || length_argument(from, to) > 0) << name;
        at = cast->entry->target;
    }
    EXPECT_TRUE(are_alike(at, to.type)) << bcast_type_name(at);
}

bool loses_no_rows(std::string_view name)
{
    const auto cast = find_cast(name);
    return cast && (captures(*cast->entry) || cast->entry->protocol == catalogue::protocol::never_fails);
}

std::vector<bcast_type> all_known_types()
{
    std::vector<bcast_type> types;
    for (int type = 0; type < BCAST_TYPE_COUNT; type++)
        if (is_known(bcast_type(type)))
            types.push_back(bcast_type(type));
    return types;
}

TEST(types, all_but_null_are_known)
{
    std::vector<std::string> others;
    for (int type = 0; type < BCAST_TYPE_COUNT; type++)
        if (!is_known(bcast_type(type)))
            others.emplace_back(bcast_type_name(bcast_type(type)));
    EXPECT_EQ(others, std::vector<std::string>{"null"});
}

TEST(types, casts_lead_from_text_to_the_type_and_back_where_it_is_no_text)
{
    const declared_type text = {BCAST_VARCHAR}, large_text = {BCAST_TEXT}, room = {BCAST_VARCHAR, 100};
    for (const bcast_type type : all_known_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const declared_type example = example_of(type);
        const auto casts = casts_from_text(example, too_long::fails);
        expect_road(casts, text, example);
        EXPECT_TRUE(std::ranges::all_of(casts, loses_no_rows));
        if (const auto back = casts_to_text(type); !back.empty())
            expect_road(back, example, back.back().ends_with("_to_text") ? large_text : room);
    }
}

TEST(types, texts_are_cut_by_casts_of_their_own)
{
    for (const bcast_type type : all_known_types()) {
        SCOPED_TRACE(bcast_type_name(type));
        const declared_type example = example_of(type);
        const auto casts = casts_from_text(example, too_long::is_cut);
        expect_road(casts, {BCAST_VARCHAR}, example);
        EXPECT_EQ(casts != casts_from_text(example, too_long::fails), can_cut(type));
    }
    EXPECT_EQ(types_that_cut(), "char, varchar, binary, varbinary");
}

TEST(types, characters_without_a_length_are_the_text_itself)
{
    EXPECT_TRUE(casts_from_text({BCAST_CHAR}, too_long::fails).empty());
    EXPECT_TRUE(casts_from_text({BCAST_VARCHAR2}, too_long::fails).empty());
}

TEST(types, length_argument_holds_the_target_and_the_digits_of_a_decimal)
{
    const declared_type dec_10_2 = {BCAST_DEC, 10, 2}, dec = {BCAST_DEC}, dec_38 = {BCAST_DEC, 38, 38};
    EXPECT_EQ(length_argument({BCAST_VARCHAR}, {BCAST_CHAR, 20}), 20);
    EXPECT_EQ(length_argument({BCAST_INT}, dec_10_2), 0x0A02);
    EXPECT_EQ(length_argument({BCAST_INT}, dec), 0);
    EXPECT_EQ(length_argument(dec_38, dec_10_2), 0x0A02);
    EXPECT_EQ(length_argument(dec_10_2, {BCAST_CHAR, 20}), 0x0A020014);
    EXPECT_EQ(length_argument(dec, {BCAST_CHAR, 20}), 20);
    EXPECT_EQ(length_argument(dec_38, {BCAST_VARCHAR, 65535}), 0x2626FFFF);
    EXPECT_EQ(length_argument({BCAST_VARCHAR}, {BCAST_BFILE}), longest_characters);
    EXPECT_EQ(length_argument({BCAST_VARCHAR}, {BCAST_VARBINARY}), longest_binary);
}

TEST(types, type_is_read_and_described)
{
    EXPECT_EQ(described(parse_type(" Dec ( 010 , 2 ) ")), "dec(10,2)");
    EXPECT_EQ(described(parse_type("CHAR(5)")), "char(5)");
    EXPECT_EQ(described(parse_type("")), "");
    const declared_type dec = column_type(parse_type("dec(10,2)"));
    EXPECT_EQ(dec.type, BCAST_DEC);
    EXPECT_EQ(dec.length, 10);
    EXPECT_EQ(dec.prec, 2);
    for (const bcast_type type : all_known_types()) {
        const type_name name = parse_type(bcast_type_name(type) + std::string(has_length(type) ? "(7)" : ""));
        EXPECT_EQ(column_type(name).type, type) << name.word;
    }
}

TEST(types, help_names_every_type)
{
    EXPECT_NE(test::run_bcast({"csv", "--help"}).output.find(": " + known_types() + ". "), std::string::npos);
    EXPECT_NE(test::run_bcast({"cast", "--help"}).output.find(": " + known_types() + ".\n"), std::string::npos);
}

TEST(types, rows_that_fail_are_null_at_the_end_of_the_road)
{
    const declared_type text = {BCAST_VARCHAR}, tinyint = {BCAST_TINYINT};
    road from_text(text, casts_from_text(tinyint, too_long::fails), tinyint);
    road to_text(tinyint, casts_to_text(BCAST_TINYINT), {BCAST_VARCHAR, 4});
    column texts(BCAST_VARCHAR);
    for (const char *each : {"1", "128", "", "x", "-5"})
        texts.append(each);
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
    const std::vector<std::string_view> no_such = {"bcast_int_to_nothing"};
    try {
        road road({BCAST_INT}, no_such, {BCAST_INT});
        FAIL() << "no error";
    } catch (const tool_error &error) {
        EXPECT_STREQ(error.what(), "the library that is loaded does not have bcast_int_to_nothing");
    }
}

// ---- Casts whose end is no matter of a row

std::int32_t status_to_return;

std::int32_t capture_without_a_row(void *, void *, const bdta3_col *, std::int32_t, bdta3_col *, std::uint16_t,
                                   std::int32_t *, std::uint16_t *)
{
    return status_to_return;
}

std::int32_t stop(void *, void *, const bdta3_col *, std::int32_t, bdta3_col *, std::uint16_t)
{
    return status_to_return;
}

void run_on_two_rows(std::string_view name, void *address)
{
    column source(BCAST_VARCHAR), target(BCAST_VARCHAR);
    source.append("a");
    source.append("b");
    pool memory;
    failures failed;
    run({catalogue::find(name), address}, memory, source, {.length = 5}, target, 2, failed);
}

TEST(loaded_cast, memory_that_ran_out_is_no_failure_of_a_row)
{
    status_to_return = ERR_NO_MEMORY;
    EXPECT_THROW(run_on_two_rows("bcast_varchar_to_varchar", reinterpret_cast<void *>(&capture_without_a_row)),
                 std::bad_alloc);
    EXPECT_THROW(run_on_two_rows("bcast_varchar_to_varchar_explicit", reinterpret_cast<void *>(&stop)), std::bad_alloc);
}

TEST(loaded_cast, stop_in_a_batch_is_told_rather_than_taken_for_nulls)
{
    status_to_return = ERR_OVERFLOW;
    try {
        run_on_two_rows("bcast_varchar_to_varchar_explicit", reinterpret_cast<void *>(&stop));
        FAIL() << "no error";
    } catch (const tool_error &error) {
        EXPECT_STREQ(error.what(), "bcast_varchar_to_varchar_explicit failed with code -6102");
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
    EXPECT_EQ(plain_or_in_quotes("größe, x"), "größe, x");
    EXPECT_EQ(plain_or_in_quotes(""), "\"\"");
    EXPECT_EQ(plain_or_in_quotes("a\"b\n"), "\"a\\\"b\\n\"");
    EXPECT_EQ(plain_or_in_quotes(std::string(201, 'x')), "\"" + std::string(200, 'x') + "...\"");
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
