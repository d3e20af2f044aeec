// Literals for a comparison with an integer: the integer that gives the same answer under the operator, or a verdict.

#include "tests/character/text_rows.h"

#include <bcast/codes.h>

#include <algorithm>
#include <limits>
#include <type_traits>

namespace bcast::test {
namespace {

constexpr int64_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int64_t int32_greatest = std::numeric_limits<int32_t>::max();
constexpr int64_t int64_least = std::numeric_limits<int64_t>::min();
constexpr int64_t int64_greatest = std::numeric_limits<int64_t>::max();

constexpr uint16_t less = '<', greater = '>', equal = '=', less_equal = 0x3f5, greater_equal = 0x3f6, unequal = 0x3f8;
constexpr uint16_t known_operators[] = {less, greater, equal, less_equal, greater_equal, unequal};
constexpr uint16_t unknown_operators[] = {0,    1,    0x3b, 0x3f,  0x3f4, 0x3f7, 0x3f9,  0x13c,  0x33d,
                                          0xf5, 0xf6, 0xf8, 0x83c, 0x7f5, 0xbf6, 0xff3e, 0x8000, 0xffff};

enum : int32_t { verdict_none = INT32_MIN, verdict_below = 5, verdict_above = 6 };

// ---- One literal ------------------------------------------------------------------------

// What a low operation leaves behind.
template <class Integer> struct outcome {
    int32_t status = 0;
    int32_t verdict = verdict_none;
    std::optional<Integer> result = {}; // if it was written

    friend bool operator==(const outcome &, const outcome &) = default;
    friend std::ostream &operator<<(std::ostream &out, const outcome &o)
    {
        out << "status " << o.status << ", verdict " << o.verdict;
        return o.result ? out << ", result " << *o.result : out << ", no result";
    }
};

constexpr char literal[] = "5.5";

int32_t call_low(int32_t length, uint16_t cmp_op, int32_t *verdict, int32_t *result)
{
    return bcast_varchar_to_int_directly_low(env(), literal, length, cmp_op, verdict, result);
}

int32_t call_low(int32_t length, uint16_t cmp_op, int32_t *verdict, int64_t *result)
{
    return bcast_varchar_to_int64_directly_low(env(), literal, length, cmp_op, verdict, result);
}

// The outcome where the parser reads the literal so.
template <class Integer> outcome<Integer> judge(const literal_reading &reading, uint16_t cmp_op)
{
    constexpr auto unwritten = static_cast<Integer>(0x5A5A5A5A5A5A5A5A); // which no literal of these tests comes to
    services().reset();
    services().character.literals[literal] = reading;
    guarded<int32_t> verdict(1);
    guarded<Integer> result(1);
    verdict[0] = 99;
    result[0] = unwritten;
    outcome<Integer> made{.status = call_low(3, cmp_op, verdict.data(), result.data())};
    made.verdict = verdict[0];
    if (result[0] != unwritten)
        made.result = result[0];
    EXPECT_TRUE(services().logged({parses_literal({3, 0, const_cast<char *>(literal)}, 3)}));
    return made;
}

// One row of the table: what becomes of a literal that is read so, under each of the three kinds of operators and
// under any other.
template <class Integer> struct row_of_table {
    literal_reading reading;
    outcome<Integer> upward, downward, equality, unknown;
};

template <class Integer> outcome<Integer> gives(int64_t value) { return {.result = static_cast<Integer>(value)}; }
template <class Integer> constexpr outcome<Integer> above{.verdict = verdict_above};
template <class Integer> constexpr outcome<Integer> below{.verdict = verdict_below};
template <class Integer> constexpr outcome<Integer> nothing{};

template <class Integer> std::vector<row_of_table<Integer>> table()
{
    constexpr int64_t greatest = std::numeric_limits<Integer>::max();
    constexpr int64_t least = std::numeric_limits<Integer>::min();
    constexpr outcome<Integer> over = above<Integer>, under = below<Integer>, none = nothing<Integer>;
    const auto is = gives<Integer>;
    std::vector<row_of_table<Integer>> rows;
    // Whole; nobody asks for the sign.
    for (const int64_t value : {int64_t{0}, int64_t{5}, int64_t{-5}, greatest, greatest - 1, least, least + 1})
        for (const char sign : {'+', '-', 'x'})
            rows.push_back({{0, value, sign}, is(value), is(value), is(value), is(value)});
    // Beyond int64; nobody asks for the value.
    for (const int64_t unread : {int64_t{0}, int64_greatest, int64_least, greatest, least, int64_t{1} << 40})
        for (const char sign : {'+', '-'}) {
            rows.push_back({{ERR_ABOVE_RANGE, unread, sign}, over, over, over, none});
            rows.push_back({{ERR_BELOW_RANGE, unread, sign}, under, under, over, none});
        }
    for (const int32_t status : {1, 0x7FFFFFFF}) {
        // Cut at the ends of the range.
        rows.push_back({{status, greatest, '+'}, over, is(greatest), over, none});
        rows.push_back({{status, greatest, '-'}, over, is(greatest - 1), over, none});
        rows.push_back({{status, least, '+'}, is(least + 1), under, over, none});
        rows.push_back({{status, least, '-'}, is(least), under, over, none});
        // Cut elsewhere.
        for (const int64_t value : {int64_t{0}, int64_t{5}, int64_t{-5}, int64_t{1}, int64_t{-1}, greatest - 1,
                                    least + 1, greatest - 2, least + 2, int64_t{1} << 20}) {
            rows.push_back({{status, value, '+'}, is(value + 1), is(value), over, none});
            rows.push_back({{status, value, '-'}, is(value), is(value - 1), over, none});
        }
    }
    return rows;
}

// An int has more rows: what an int64 holds and an int does not is out of its range, be it whole or cut.
template <class Integer> void add_unfit(std::vector<row_of_table<Integer>> &rows)
{
    constexpr outcome<Integer> over = above<Integer>, under = below<Integer>, none = nothing<Integer>;
    for (const int32_t status : {0, 1, 0x7FFFFFFF})
        for (const char sign : {'+', '-'}) {
            for (const int64_t value : {int32_greatest + 1, int32_greatest + 2, int64_t{1} << 32,
                                        (int64_t{1} << 32) + 5, int64_greatest, int64_t{0xFFFFFFFF}})
                rows.push_back({{status, value, sign}, over, over, over, none});
            for (const int64_t value :
                 {int32_least - 1, int32_least - 2, -(int64_t{1} << 32), -(int64_t{1} << 32) - 5, int64_least})
                rows.push_back({{status, value, sign}, under, under, over, none});
        }
}

std::string describe_case(const literal_reading &reading, uint16_t cmp_op)
{
    std::ostringstream out;
    out << "parser gives " << reading.status << ", value " << reading.value << ", sign " << reading.sign
        << "; cmp_op 0x" << std::hex << cmp_op;
    return out.str();
}

template <class Integer> class direct_literal : public testing::Test {
protected:
    static void expect(const literal_reading &reading, uint16_t cmp_op, const outcome<Integer> &right)
    {
        EXPECT_EQ(judge<Integer>(reading, cmp_op), right) << describe_case(reading, cmp_op);
    }
};

struct form_names {
    template <class Integer> static std::string GetName(int)
    {
        return std::is_same_v<Integer, int32_t> ? "to_int" : "to_int64";
    }
};

using forms = testing::Types<int32_t, int64_t>;
TYPED_TEST_SUITE(direct_literal, forms, form_names);

TYPED_TEST(direct_literal, each_cell_of_the_table)
{
    auto rows = table<TypeParam>();
    if constexpr (std::is_same_v<TypeParam, int32_t>)
        add_unfit(rows);
    for (const auto &row : rows) {
        for (const uint16_t cmp_op : {less, greater_equal})
            this->expect(row.reading, cmp_op, row.upward);
        for (const uint16_t cmp_op : {greater, less_equal})
            this->expect(row.reading, cmp_op, row.downward);
        for (const uint16_t cmp_op : {equal, unequal})
            this->expect(row.reading, cmp_op, row.equality);
        for (const uint16_t cmp_op : unknown_operators)
            this->expect(row.reading, cmp_op, row.unknown);
    }
}

// A sign that is neither is no reason to move.
TYPED_TEST(direct_literal, only_the_sign_that_points_away_from_zero_moves)
{
    const literal_reading reading{1, 7, '\0'};
    for (const uint16_t cmp_op : {less, greater_equal, greater, less_equal})
        this->expect(reading, cmp_op, gives<TypeParam>(7));
}

TYPED_TEST(direct_literal, a_text_that_is_no_number_gives_the_code_of_the_parser)
{
    for (const int32_t code : {-1, -503, ERR_OVERFLOW + 0, ERR_BAD_CONVERSION + 0, ERR_ABOVE_RANGE + 1,
                               ERR_BELOW_RANGE - 1, INT32_MIN, INT32_MIN + 1})
        for (const int64_t unread : {int64_t{0}, int32_greatest + 1, int32_least - 1, int64_greatest, int64_least}) {
            for (const uint16_t cmp_op : known_operators)
                this->expect({code, unread, '+'}, cmp_op, {.status = code});
            for (const uint16_t cmp_op : unknown_operators)
                this->expect({code, unread, '-'}, cmp_op, {.status = code});
        }
}

TYPED_TEST(direct_literal, no_other_code_is_an_operator)
{
    for (uint32_t code = 0; code <= 0xFFFF; code++) {
        const auto cmp_op = static_cast<uint16_t>(code);
        if (std::ranges::count(known_operators, cmp_op) > 0)
            continue;
        this->expect({1, 7, '+'}, cmp_op, nothing<TypeParam>);
        this->expect({ERR_ABOVE_RANGE, 7, '+'}, cmp_op, nothing<TypeParam>);
        if (this->HasFailure())
            break;
    }
}

TYPED_TEST(direct_literal, text_and_length_go_to_the_parser_as_they_are)
{
    std::string text(70000, '1');
    for (const int32_t length : {0, 1, 3, 255, 256, 32768, 65535, 70000}) {
        services().reset();
        services().answer("str2int64_directly", std::string(static_cast<size_t>(length), '1'), -77);
        int32_t verdict = 0;
        TypeParam result = 0;
        int32_t status = 0;
        if constexpr (std::is_same_v<TypeParam, int32_t>)
            status = bcast_varchar_to_int_directly_low(nullptr, text.data(), length, less, &verdict, &result);
        else
            status = bcast_varchar_to_int64_directly_low(nullptr, text.data(), length, less, &verdict, &result);
        EXPECT_EQ(status, -77);
        EXPECT_TRUE(services().logged({parses_literal({length, 0, text.data()}, length)}));
    }
}

// ---- Columns ------------------------------------------------------------------------------

struct rule {
    const char *name;
    bcast_direct_fn *cast;
    size_t target_bytes;

    int64_t greatest() const { return target_bytes == 8 ? int64_greatest : int32_greatest; }
    int64_t least() const { return target_bytes == 8 ? int64_least : int32_least; }
};

void PrintTo(const rule &r, std::ostream *out) { *out << r.name; }

constexpr rule rules[] = {{"bcast_varchar_to_int_directly", bcast_varchar_to_int_directly, 4},
                          {"bcast_varchar_to_int64_directly", bcast_varchar_to_int64_directly, 8}};

struct direct_batch : text_rows {
    direct_batch(const rule &of, const setup &given, uint32_t row_count, uint16_t op)
        : text_rows(given, row_count, of.target_bytes), r(of), cmp_op(op)
    {
        expected.no_null = how.no_null;
    }

    const rule &r;
    uint16_t cmp_op;

    void put(uint32_t row, int64_t value)
    {
        if (r.target_bytes == 8)
            expected.put(row, value);
        else
            expected.put(row, static_cast<int32_t>(value));
    }

    void expect_flag(uint32_t row) { expected.flags[row] = source.flag(row); }

    // The parser gets no more than 16 bits of the length word.
    void expect_parse(uint32_t row)
    {
        calls.push_back(parses_literal(element(row), static_cast<uint16_t>(element(row).length)));
    }

    void expect_value(uint32_t row, int64_t value)
    {
        expect_flag(row);
        expect_parse(row);
        put(row, value);
    }

    void expect_verdict(uint32_t row, int32_t verdict)
    {
        expect_parse(row);
        put(row, 0);
        expected.flags[row] = static_cast<uint8_t>(verdict);
        expected.no_null = 0;
    }

    // The flag stays, the element is not written.
    void expect_failure(uint32_t row)
    {
        expect_flag(row);
        expect_parse(row);
    }

    void expect_empty_text(uint32_t row)
    {
        expected.flags[row] = 0;
        expected.no_null = 0;
    }

    void run(int32_t status)
    {
        expect(call(r.cast, {.src = source.sealed(), .dst = target.column(), .rows = rows, .cmp_op = cmp_op}), status);
    }
};

class direct_integer : public testing::TestWithParam<rule> {
protected:
    void SetUp() override { services().reset(); }
};

const std::vector<std::string> &whole_numbers()
{
    static const std::vector<std::string> texts{"0", "7", "-7", "2147483647", "-2147483648", "42"};
    return texts;
}

TEST_P(direct_integer, rows_are_parsed_and_null_rows_left_out)
{
    constexpr uint8_t flags[] = {1, 0, 2, 0x80, 0, 0xFF, 1, 5, 6};
    shared_texts texts(whole_numbers());
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 30U, 1023U, 1024U, 1025U, 2060U}) {
            for (const uint16_t cmp_op : {less, unequal, uint16_t{0}}) {
                SCOPED_TRACE(std::to_string(rows) + " rows, " + describe(how));
                services().reset();
                direct_batch batch(GetParam(), how, rows, cmp_op);
                for (uint32_t row = 0; row < rows; row++) {
                    const uint8_t flag = flags[row % std::size(flags)];
                    if (flag == 0) {
                        batch.set_null(row);
                        batch.expect_flag(row);
                    } else {
                        batch.source.set(row, flag, texts.element(row));
                        batch.expect_value(row, std::stoll(texts.text(row)));
                    }
                }
                batch.run(0);
            }
        }
    }
}

TEST_P(direct_integer, of_null_rows_no_element_is_read)
{
    for (const setup &how : all_setups()) {
        direct_batch batch(GetParam(), how, 1030, greater);
        for (uint32_t row = 0; row < 1030; row++) {
            batch.set_element(row, 0, 0, nullptr);
            batch.expect_flag(row);
        }
        batch.source.hide_values();
        batch.run(0);
    }
}

TEST_P(direct_integer, the_largest_batch)
{
    shared_texts texts(whole_numbers());
    direct_batch batch(GetParam(), few_setups()[2], 65535, equal);
    for (uint32_t row = 0; row < 65535; row++) {
        batch.source.set(row, 1, texts.element(row));
        batch.expect_value(row, std::stoll(texts.text(row)));
    }
    batch.run(0);
}

TEST_P(direct_integer, only_the_low_16_bits_of_rows_count)
{
    for (const setup &how : few_setups()) {
        for (const uint32_t rows : {0U, 1U}) {
            services().reset();
            direct_batch batch(GetParam(), how, rows, less);
            if (rows == 1) {
                batch.set_text(0, 1, "33");
                batch.expect_value(0, 33);
            }
            const call_arguments with{
                .src = batch.source.sealed(), .dst = batch.target.column(), .rows = 0x10000 + rows, .cmp_op = less};
            batch.expect(call_with_wide_rows(GetParam().cast, with), 0);
        }
    }
}

TEST_P(direct_integer, an_empty_text_is_null_and_clears_no_null)
{
    shared_texts texts(whole_numbers());
    for (const setup &how : all_setups()) {
        for (const uint32_t empty_row : {0U, 3U, 1023U, 1024U, 1029U}) {
            SCOPED_TRACE("empty row " + std::to_string(empty_row) + ", " + describe(how));
            services().reset();
            direct_batch batch(GetParam(), how, 1030, less);
            for (uint32_t row = 0; row < 1030; row++) {
                if (row == empty_row) {
                    batch.set_element(row, 0x81, 0, static_cast<char *>(inaccessible()));
                    batch.expect_empty_text(row);
                } else {
                    batch.source.set(row, 1, texts.element(row));
                    batch.expect_value(row, std::stoll(texts.text(row)));
                }
            }
            batch.run(0);
        }
    }
}

TEST_P(direct_integer, a_verdict_stands_in_the_flag_over_a_zero_and_clears_no_null)
{
    const uint32_t rows = 1030;
    shared_texts texts(whole_numbers());
    for (const setup &how : all_setups()) {
        for (const uint32_t special : {0U, 1U, 1023U, 1024U, rows - 2}) {
            for (const uint16_t cmp_op : known_operators) {
                services().reset();
                services().character.literals = {{"over", {ERR_ABOVE_RANGE, 9, '+'}},
                                                 {"under", {ERR_BELOW_RANGE, 9, '-'}}};
                direct_batch batch(GetParam(), how, rows, cmp_op);
                const bool equality = cmp_op == equal || cmp_op == unequal;
                for (uint32_t row = 0; row < rows; row++) {
                    if (row == special) {
                        batch.set_text(row, 0x81, "under");
                        batch.expect_verdict(row, equality ? verdict_above : verdict_below);
                    } else if (row == special + 1) {
                        batch.set_text(row, 0x82, "over");
                        batch.expect_verdict(row, verdict_above);
                    } else {
                        batch.source.set(row, 3, texts.element(row));
                        batch.expect_value(row, std::stoll(texts.text(row)));
                    }
                }
                SCOPED_TRACE("row " + std::to_string(special) + ", cmp_op " + std::to_string(cmp_op) + ", " +
                             describe(how));
                batch.run(0);
            }
        }
    }
}

// Moved to the side of the operator, and no_null and flags as in any other row.
TEST_P(direct_integer, a_fraction_moves_to_the_side_of_the_operator)
{
    struct literal_of {
        const char *text;
        literal_reading reading;
        int64_t upward, downward;
    };
    const literal_of literals[] = {{"5.5", {1, 5, '+'}, 6, 5},
                                   {"-5.5", {1, -5, '-'}, -5, -6},
                                   {"0.5", {1, 0, '+'}, 1, 0},
                                   {"-0.5", {1, 0, '-'}, 0, -1},
                                   {"5.0", {0, 5, 'x'}, 5, 5}};
    for (const setup &how : all_setups()) {
        for (const uint16_t cmp_op : {less, greater_equal, greater, less_equal}) {
            services().reset();
            direct_batch batch(GetParam(), how, std::size(literals), cmp_op);
            uint32_t row = 0;
            for (const literal_of &l : literals) {
                services().character.literals[l.text] = l.reading;
                batch.set_text(row, 0x40, l.text);
                batch.expect_value(row, cmp_op == less || cmp_op == greater_equal ? l.upward : l.downward);
                row++;
            }
            batch.run(0);
        }
        for (const uint16_t cmp_op : {equal, unequal}) {
            services().reset();
            services().character.literals = {{"5.5", {1, 5, '+'}}, {"-5.5", {1, -5, '-'}}};
            direct_batch batch(GetParam(), how, 2, cmp_op);
            batch.set_text(0, 1, "5.5");
            batch.expect_verdict(0, verdict_above);
            batch.set_text(1, 1, "-5.5");
            batch.expect_verdict(1, verdict_above);
            batch.run(0);
        }
    }
}

TEST_P(direct_integer, at_the_ends_of_the_range)
{
    const rule &r = GetParam();
    for (const uint16_t cmp_op : known_operators) {
        for (const setup &how : few_setups()) {
            services().reset();
            services().character.literals = {{"max", {0, r.greatest(), 'x'}},
                                             {"min", {0, r.least(), 'x'}},
                                             {"max.5", {1, r.greatest(), '+'}},
                                             {"min.5", {1, r.least(), '-'}}};
            direct_batch batch(r, how, 4, cmp_op);
            batch.set_text(0, 1, "max");
            batch.expect_value(0, r.greatest());
            batch.set_text(1, 1, "min");
            batch.expect_value(1, r.least());
            batch.set_text(2, 1, "max.5");
            batch.set_text(3, 1, "min.5");
            if (cmp_op == less || cmp_op == greater_equal) {
                batch.expect_verdict(2, verdict_above);
                batch.expect_value(3, r.least());
            } else if (cmp_op == greater || cmp_op == less_equal) {
                batch.expect_value(2, r.greatest());
                batch.expect_verdict(3, verdict_below);
            } else {
                batch.expect_verdict(2, verdict_above);
                batch.expect_verdict(3, verdict_above);
            }
            SCOPED_TRACE("cmp_op " + std::to_string(cmp_op));
            batch.run(0);
        }
    }
}

TEST_P(direct_integer, the_first_text_that_is_no_number_stops)
{
    const uint32_t rows = 1024 + 40;
    shared_texts texts(whole_numbers());
    std::string bad = "no number", worse = "nor is this";
    for (const setup &how : all_setups()) {
        for (const uint32_t failing_row : {0U, 1U, 600U, 1023U, 1024U, 1025U, rows - 1}) {
            for (const int32_t code : {-4321, INT32_MIN, ERR_ABOVE_RANGE + 1}) {
                SCOPED_TRACE("failing row " + std::to_string(failing_row) + ", " + describe(how));
                services().reset();
                services().character.literals = {{bad, {code, int64_greatest, '+'}}, {worse, {-4322, 0, '+'}}};
                direct_batch batch(GetParam(), how, rows, failing_row % 2 == 0 ? less : uint16_t{77});
                for (uint32_t row = 0; row < rows; row++) {
                    if (row == failing_row) {
                        batch.set_element(row, 0x80, 9, bad.data());
                        batch.expect_failure(row);
                    } else if (row == failing_row + 1) {
                        batch.set_element(row, 1, 11, worse.data());
                    } else if (row % 5 == 2) {
                        batch.set_null(row);
                        if (row < failing_row)
                            batch.expect_flag(row);
                    } else {
                        batch.source.set(row, 4, texts.element(row));
                        if (row < failing_row)
                            batch.expect_value(row, std::stoll(texts.text(row)));
                    }
                }
                batch.run(code);
            }
        }
    }
}

TEST_P(direct_integer, a_failure_leaves_no_null_as_the_walk_has_it)
{
    for (const setup &how : all_setups()) {
        for (const bool empty : {true, false}) {
            services().reset();
            services().character.literals = {{"huge", {ERR_ABOVE_RANGE, 0, '+'}}};
            direct_batch batch(GetParam(), how, 3, less);
            batch.set_text(0, 1, empty ? "" : "huge");
            if (empty)
                batch.expect_empty_text(0);
            else
                batch.expect_verdict(0, verdict_above);
            batch.set_text(1, 1, "x");
            batch.expect_failure(1);
            batch.set_text(2, 1, "1");
            batch.run(ERR_BAD_CONVERSION);
        }
    }
}

TEST_P(direct_integer, the_low_16_bits_of_the_length_word_go_to_the_parser)
{
    std::string text(65536, '1');
    for (const setup &how : few_setups()) {
        for (const int32_t word :
             {3, 65535, 65536 + 3, 65536 + 32768, 65536, 2 * 65536, 0x7FFF0000, -1, -65536, INT32_MIN, INT32_MIN + 2}) {
            SCOPED_TRACE("length word " + std::to_string(word) + ", " + describe(how));
            services().reset();
            services().fail_call(0, -77); // what the digits are worth does not matter
            direct_batch batch(GetParam(), how, 1, less);
            batch.set_element(0, 1, word, text.data());
            batch.expect_failure(0);
            batch.run(-77);
        }
    }
}

// An operator that is none leaves a literal that is not whole without a result: the row takes the one before it.
TEST_P(direct_integer, an_unknown_operator_is_no_failure)
{
    for (const setup &how : all_setups()) {
        for (const uint16_t cmp_op : unknown_operators) {
            services().reset();
            services().character.literals = {{"8.5", {1, 8, '+'}}, {"huge", {ERR_ABOVE_RANGE, 0, '+'}}};
            direct_batch batch(GetParam(), how, 4, cmp_op);
            batch.set_text(0, 1, "31");
            batch.expect_value(0, 31);
            batch.set_text(1, 2, "8.5");
            batch.expect_value(1, 31);
            batch.set_text(2, 3, "huge");
            batch.expect_value(2, 31);
            batch.set_text(3, 4, "-4");
            batch.expect_value(3, -4);
            batch.run(0);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, direct_integer, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

TEST(direct_integer_by_hand, an_int64_has_room_for_what_an_int_has_not)
{
    for (const uint16_t cmp_op : known_operators) {
        services().reset();
        direct_batch narrow(rules[0], few_setups().front(), 1, cmp_op);
        narrow.set_text(0, 1, "2147483648");
        narrow.expect_verdict(0, verdict_above);
        narrow.run(0);
        services().reset();
        direct_batch wide(rules[1], few_setups().front(), 1, cmp_op);
        wide.set_text(0, 1, "2147483648");
        wide.expect_value(0, 2147483648);
        wide.run(0);
    }
}

} // namespace
} // namespace bcast::test
