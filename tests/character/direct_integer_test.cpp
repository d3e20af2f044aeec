// Literals for a comparison with an integer: the integer that gives the same answer under the operator, or a verdict.

#include "tests/character/empty_text.h"
#include "tests/support/row_cast.h"
#include "tests/support/text_element.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <type_traits>

namespace bcast::test {
namespace {

constexpr int64_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int64_t int32_greatest = std::numeric_limits<int32_t>::max();
constexpr int64_t int64_least = std::numeric_limits<int64_t>::min();
constexpr int64_t int64_greatest = std::numeric_limits<int64_t>::max();

constexpr uint16_t less = BCAST_OP_LESS, greater = BCAST_OP_GREATER, equal = BCAST_OP_EQUAL,
                   less_equal = BCAST_OP_LESS_EQUAL, greater_equal = BCAST_OP_GREATER_EQUAL, unequal = BCAST_OP_UNEQUAL;
constexpr uint16_t known_operators[] = {less, greater, equal, less_equal, greater_equal, unequal};
constexpr uint16_t unknown_operators[] = {0,    1,    0x3b, 0x3f,  0x3f4, 0x3f7, 0x3f9,  0x13c,  0x33d,
                                          0xf5, 0xf6, 0xf8, 0x83c, 0x7f5, 0xbf6, 0xff3e, 0x8000, 0xffff};

// ---- One literal ------------------------------------------------------------------------

// What a low operation leaves behind.
template <class Integer> struct outcome {
    int32_t status = 0;
    int32_t verdict = VERDICT_NONE;
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
    static guarded<int32_t> verdict(1);
    static guarded<Integer> result(1);
    services().reset();
    services().character.literals[literal] = reading;
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
template <class Integer> constexpr outcome<Integer> above{.verdict = VERDICT_ABOVE};
template <class Integer> constexpr outcome<Integer> below{.verdict = VERDICT_BELOW};
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

// A text as the parser is to read it, and what the cast is to make of that.
struct told_literal {
    std::string text;
    literal_reading reading;
    outcome<int64_t> becomes;
};

outcome<int64_t> outcome_of(const std::string &text, const std::vector<told_literal> &told)
{
    const auto known = std::ranges::find(told, text, &told_literal::text);
    if (known != told.end())
        return known->becomes;
    int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool is_whole_number = error == std::errc() && end == text.data() + text.size();
    return is_whole_number ? gives<int64_t>(value) : outcome<int64_t>{.status = ERR_BAD_CONVERSION};
}

// number is the one that the row before had.
row_outcome read(const row_input &input, const rule &r, const std::vector<told_literal> &told, int64_t &number)
{
    if (input.first)
        number = 0;
    const auto element = input.as<bdta3_str>();
    if (element.length == 0)
        return {.turns_null = true};
    // The parser gets no more than 16 bits of the length word.
    const auto length = static_cast<uint16_t>(element.length);
    const outcome<int64_t> made = outcome_of(bytes_at(element.text, length), told);
    row_outcome row;
    row.steps.push_back({parses_literal(element, length), service_failure::passes_its_code, made.status});
    number = made.result.value_or(number);
    int64_t stored = number;
    if (made.verdict != VERDICT_NONE) {
        stored = 0;
        row.flag_over_element = static_cast<uint8_t>(made.verdict);
    }
    row.element = r.target_bytes == 8 ? image_of(stored) : image_of(static_cast<int32_t>(stored));
    return row;
}

row_cast column_cast(const rule &r, uint16_t cmp_op, const std::vector<told_literal> &told = {},
                     const std::vector<std::string> &samples = {"0", "7", "-7", "2147483647", "-2147483648", "42"})
{
    services().character.literals.clear();
    for (const told_literal &each : told)
        services().character.literals[each.text] = each.reading;
    return {.name = r.name,
            .cast = r.cast,
            .to_bytes = r.target_bytes,
            .flags = row_flags::copied,
            .no_null_ahead = true,
            .failure_clears_flag = false,
            .samples = text_elements(samples),
            .convert = [r, told,
                        number = int64_t{0}](const row_input &input) mutable { return read(input, r, told, number); },
            .null_element = element_of_length(5),
            .cmp_op = cmp_op};
}

std::vector<batch_row> rows_of(const std::vector<std::string> &texts)
{
    std::vector<batch_row> rows;
    for (const std::string &text : texts)
        rows.push_back({static_cast<uint8_t>(0x40 + rows.size()), text_element(text)});
    return rows;
}

bool is_upward(uint16_t cmp_op) { return cmp_op == less || cmp_op == greater_equal; }
bool is_equality(uint16_t cmp_op) { return cmp_op == equal || cmp_op == unequal; }

class direct_integer : public testing::TestWithParam<rule> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(direct_integer, rows_are_parsed_and_null_rows_left_out)
{
    expect_rows_and_null_rows(column_cast(GetParam(), less));
    for (const uint16_t cmp_op : {unequal, uint16_t{0}}) {
        const row_cast c = column_cast(GetParam(), cmp_op);
        for (const setup &how : all_setups())
            expect_batch(c, how, sample_rows(c, {1, 0, 2, 0x80, 0, 0xFF, 1, 5, 6}));
    }
}

TEST_P(direct_integer, of_null_rows_no_element_is_read) { expect_null_rows_unread(column_cast(GetParam(), greater)); }

TEST_P(direct_integer, every_row_count_up_to_the_largest) { expect_row_counts(column_cast(GetParam(), equal)); }

TEST_P(direct_integer, an_empty_text_is_null_and_clears_no_null)
{
    expect_empty_text_is_null(column_cast(GetParam(), less));
}

TEST_P(direct_integer, an_empty_text_in_a_null_row_changes_nothing)
{
    expect_empty_text_in_null_row_changes_nothing(column_cast(GetParam(), less));
}

TEST_P(direct_integer, a_verdict_stands_in_the_flag_over_a_zero_and_clears_no_null)
{
    for (const uint16_t cmp_op : known_operators) {
        const row_cast c =
            column_cast(GetParam(), cmp_op,
                        {{"over", {ERR_ABOVE_RANGE, 9, '+'}, above<int64_t>},
                         {"under", {ERR_BELOW_RANGE, 9, '-'}, is_equality(cmp_op) ? above<int64_t> : below<int64_t>}});
        for (const char *text : {"under", "over"})
            at_several_rows(c, text_element(text), [&](const std::vector<batch_row> &rows) {
                for (const setup &how : all_setups())
                    expect_batch(c, how, rows);
            });
        for (const setup &how : all_setups())
            expect_batch(c, how, rows_of({"3", "under", "over", "4"}));
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
    for (const uint16_t cmp_op : known_operators) {
        std::vector<told_literal> told;
        std::vector<std::string> texts;
        for (const literal_of &l : literals) {
            const bool is_whole = l.reading.status == 0;
            told.push_back({l.text, l.reading,
                            is_equality(cmp_op) && !is_whole
                                ? above<int64_t>
                                : gives<int64_t>(is_upward(cmp_op) ? l.upward : l.downward)});
            texts.push_back(l.text);
        }
        const row_cast c = column_cast(GetParam(), cmp_op, told);
        for (const setup &how : all_setups())
            expect_batch(c, how, rows_of(texts));
    }
}

TEST_P(direct_integer, at_the_ends_of_the_range)
{
    const rule &r = GetParam();
    for (const uint16_t cmp_op : known_operators) {
        outcome<int64_t> above_max = above<int64_t>, below_min = above<int64_t>;
        if (is_upward(cmp_op)) {
            below_min = gives<int64_t>(r.least());
        } else if (!is_equality(cmp_op)) {
            above_max = gives<int64_t>(r.greatest());
            below_min = below<int64_t>;
        }
        const row_cast c = column_cast(r, cmp_op,
                                       {{"max", {0, r.greatest(), 'x'}, gives<int64_t>(r.greatest())},
                                        {"min", {0, r.least(), 'x'}, gives<int64_t>(r.least())},
                                        {"max.5", {1, r.greatest(), '+'}, above_max},
                                        {"min.5", {1, r.least(), '-'}, below_min}});
        for (const setup &how : few_setups())
            expect_batch(c, how, rows_of({"max", "min", "max.5", "min.5"}));
    }
}

// Without a sample at the ends of the range, which a result above 0 takes out of it.
TEST_P(direct_integer, the_first_failure_stops_with_the_code_of_the_parser)
{
    expect_stops(column_cast(GetParam(), less, {}, {"0", "7", "-7", "42"}));
}

TEST_P(direct_integer, a_text_that_is_no_number_fails_under_any_operator)
{
    for (const uint16_t cmp_op : {less, uint16_t{77}})
        for (const int32_t code : {-4321, INT32_MIN, ERR_ABOVE_RANGE + 1})
            expect_bad_elements(
                column_cast(GetParam(), cmp_op, {{"no number", {code, int64_greatest, '+'}, {.status = code}}}),
                {text_element("no number")});
}

TEST_P(direct_integer, a_failure_leaves_no_null_as_the_walk_has_it)
{
    const row_cast c = column_cast(GetParam(), less, {{"huge", {ERR_ABOVE_RANGE, 0, '+'}, above<int64_t>}});
    expect_failure_behind_empty_text(c);
    for (const setup &how : all_setups())
        expect_batch(c, how, rows_of({"huge", "x", "1"}));
}

TEST_P(direct_integer, the_low_16_bits_of_the_length_word_go_to_the_parser)
{
    const std::string text(65536, '1');
    const row_cast c = column_cast(GetParam(), less);
    for (const int32_t word :
         {3, 65535, 65536 + 3, 65536 + 32768, 65536, 2 * 65536, 0x7FFF0000, -1, -65536, INT32_MIN, INT32_MIN + 2})
        for (const setup &how : few_setups()) // what the digits are worth does not matter
            expect_batch(c, how, {{1, element_of_length(word, text.data())}}, {.results = {{0, -77}}});
}

// An operator that is none leaves a literal that is not whole without a result: the row takes the one before it.
TEST_P(direct_integer, an_unknown_operator_is_no_failure)
{
    for (const uint16_t cmp_op : unknown_operators) {
        const row_cast c = column_cast(
            GetParam(), cmp_op,
            {{"8.5", {1, 8, '+'}, nothing<int64_t>}, {"huge", {ERR_ABOVE_RANGE, 0, '+'}, nothing<int64_t>}});
        for (const setup &how : all_setups()) {
            expect_batch(c, how, rows_of({"31", "8.5", "huge", "-4"}));
            expect_batch(c, how, rows_of({"huge", "31"}));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(casts, direct_integer, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

TEST(direct_integer_by_hand, an_int64_has_room_for_what_an_int_has_not)
{
    for (const uint16_t cmp_op : known_operators) {
        services().reset();
        const row_cast narrow = column_cast(rules[0], cmp_op, {{"2147483648", {0, 2147483648, 'x'}, above<int64_t>}});
        const row_cast wide =
            column_cast(rules[1], cmp_op, {{"2147483648", {0, 2147483648, 'x'}, gives<int64_t>(2147483648)}});
        expect_batch(narrow, few_setups().front(), rows_of({"2147483648"}));
        expect_batch(wide, few_setups().front(), rows_of({"2147483648"}));
    }
}

} // namespace
} // namespace bcast::test
