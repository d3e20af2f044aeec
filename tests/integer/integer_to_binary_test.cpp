// The bytes of the integers, most significant first: bin_from_int_low, and the eight casts around it.

#include "tests/support/row_cast.h"

#include <algorithm>
#include <limits>

namespace bcast::test {
namespace {

constexpr int64_t int32_least = std::numeric_limits<int32_t>::min();
constexpr int64_t int64_least = std::numeric_limits<int64_t>::min();
constexpr int64_t int64_greatest = std::numeric_limits<int64_t>::max();

// The low bytes of value.
std::string low_bytes(int64_t value, size_t count)
{
    std::string bytes;
    for (size_t k = count; k-- > 0;)
        bytes += static_cast<char>(static_cast<uint64_t>(value) >> (8 * k) & 0xFF);
    return bytes;
}

// ---- One value --------------------------------------------------------------------

const std::vector<int64_t> &values()
{
    static const std::vector<int64_t> all = [] {
        std::vector<int64_t> list{0, 0x0102030405060708, -0x0102030405060708, int64_least, int64_greatest};
        for (int bit = 0; bit < 63; bit++)
            for (const int64_t offset : {-1, 0, 1}) {
                list.push_back((int64_t{1} << bit) + offset);
                list.push_back(-(int64_t{1} << bit) + offset);
            }
        return list;
    }();
    return all;
}

TEST(bin_from_int_low, writes_the_low_bytes_and_nothing_behind_them)
{
    for (uint16_t width = 0; width <= 8; width++) {
        for (const uint16_t target_len :
             std::initializer_list<uint16_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 255, 256, 0xFFFF}) {
            const size_t written = std::min(width, target_len);
            for (const guard_edge edge : {guard_edge::start, guard_edge::end}) {
                guarded<uint8_t> out(written, edge);
                for (const int64_t value : values()) {
                    ASSERT_EQ(bin_from_int_low(out.data(), width, target_len, value), 0);
                    ASSERT_EQ(std::string(out.begin(), out.end()), low_bytes(value, written))
                        << "value " << value << ", width " << width << ", target_len " << target_len;
                }
                ASSERT_TRUE(out.slack_untouched()) << "width " << width << ", target_len " << target_len;
            }
        }
    }
}

TEST(bin_from_int_low, refuses_more_than_8_bytes_and_writes_none)
{
    for (const uint16_t width : std::initializer_list<uint16_t>{9, 10, 16, 256, 0x8000, 0xFFFF})
        for (const uint16_t target_len : std::initializer_list<uint16_t>{0, 1, 8, 9, 0xFFFF})
            EXPECT_EQ(bin_from_int_low(static_cast<uint8_t *>(inaccessible()), width, target_len, 1), ERR_OVERFLOW)
                << "width " << width << ", target_len " << target_len;
}

// ---- The casts --------------------------------------------------------------------

enum class layout { low_bytes, right_aligned, front_of_right_aligned };

int64_t mixed_value(uint32_t row) { return static_cast<int64_t>((row + 1) * uint64_t{0x9E3779B97F4A7C15}); }

std::string stored_bytes(layout stored, size_t width, int64_t value, int32_t length)
{
    const auto deciding = static_cast<uint16_t>(length);
    if (deciding < width)
        return low_bytes(value, deciding);
    const std::string bytes = low_bytes(value, width);
    if (stored == layout::low_bytes)
        return bytes;
    const std::string image = std::string(static_cast<size_t>(length) - width, '\0') + bytes;
    return stored == layout::right_aligned ? image : image.substr(0, 8);
}

template <class Element> row_cast into_bytes(const char *name, bcast_length_fn *cast, size_t width, layout stored)
{
    row_cast c{.name = name,
               .cast = cast,
               .to_bytes = sizeof(bdta3_str),
               .flags = row_flags::copied,
               .no_null_ahead = true,
               .failure_clears_flag = true,
               .samples = {},
               .convert =
                   [width, stored](const row_input &input) {
                       const std::string bytes = stored_bytes(stored, width, input.as<Element>(), input.cast.length);
                       return row_outcome{.steps = {{assigns_bytes(input.target, input.row, bytes)}},
                                          .text = target_image::text{bytes, 0}};
                   },
               .length = 9};
    for (uint32_t row = 0; row < 1031; row++)
        c.samples.push_back(image_of(static_cast<Element>(mixed_value(row))));
    return c;
}

#define NAMED(cast) #cast, cast
// The one that asks about each value; of all that the service says, just ERR_OVERFLOW counts.
row_cast tinyint_to_varbinary()
{
    row_cast c = into_bytes<int32_t>(NAMED(bcast_tinyint_to_varbinary), 1, layout::low_bytes);
    c.convert = [convert = c.convert](const row_input &input) {
        row_outcome outcome = convert(input);
        outcome.steps.insert(outcome.steps.begin(),
                             {judges_int(input.as<int32_t>()), service_failure::passes_overflow_only});
        return outcome;
    };
    return c;
}

struct binary_rule {
    row_cast cast;
    size_t width;
    layout stored;

    row_cast of_length(int32_t length) const
    {
        row_cast c = cast;
        c.length = length;
        return c;
    }
    std::string element(int64_t value) const
    {
        return cast.from_bytes() == 8 ? image_of(value) : image_of(static_cast<int32_t>(value));
    }
};

void PrintTo(const binary_rule &r, std::ostream *out) { *out << r.cast.name; }

template <class Element> binary_rule rule(const char *name, bcast_length_fn *cast, size_t width, layout stored)
{
    return {into_bytes<Element>(name, cast, width, stored), width, stored};
}

std::vector<binary_rule> rules()
{
    return {
        rule<int64_t>(NAMED(bcast_int64_to_varbinary), 8, layout::low_bytes),
        rule<int32_t>(NAMED(bcast_int_to_varbinary), 4, layout::low_bytes),
        rule<int32_t>(NAMED(bcast_smallint_to_varbinary), 2, layout::low_bytes),
        {tinyint_to_varbinary(), 1, layout::low_bytes},
        rule<int64_t>(NAMED(bcast_int64_to_binary), 8, layout::front_of_right_aligned),
        rule<int32_t>(NAMED(bcast_int_to_binary), 4, layout::right_aligned),
        rule<int32_t>(NAMED(bcast_smallint_to_binary), 4, layout::right_aligned),
        rule<int32_t>(NAMED(bcast_tinyint_to_binary), 4, layout::right_aligned),
    };
}
#undef NAMED

class integer_to_binary : public testing::TestWithParam<binary_rule> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(integer_to_binary, rows_are_stored_and_null_rows_left_out)
{
    for (const int32_t length : {2, 12}) {
        const row_cast c = GetParam().of_length(length);
        for (const uint32_t row_count : {0U, 1U, 2U, 30U, 1023U, 1024U, 1025U}) {
            const std::vector<batch_row> rows = rows_with_some_null(c, row_count);
            for (const setup &how : all_setups())
                expect_batch(c, how, rows);
        }
    }
}

TEST_P(integer_to_binary, values_at_every_edge_and_every_length_around_the_width)
{
    const binary_rule &r = GetParam();
    std::vector<int64_t> in_slot{0, 1, -1, 5, 127, -128, 255, 258, 32767, -32768, 0x12345678, int32_least};
    if (r.cast.from_bytes() == 8)
        for (const int64_t value : {int64_t{0x0102030405060708}, int64_least, int64_greatest, int64_t{1} << 32})
            in_slot.push_back(value);
    std::vector<batch_row> rows;
    for (const int64_t value : in_slot)
        rows.push_back({1, r.element(value)});
    for (const int32_t length :
         {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15, 16, 17, 1023, 1024, 1025, 32767, 32768})
        expect_batch(r.of_length(length), few_setups().front(), rows);
}

TEST_P(integer_to_binary, every_row_count_up_to_the_largest) { expect_row_counts(GetParam().cast); }

// A varbinary target's length is taken at 16 bits where it is not below the width.
TEST_P(integer_to_binary, the_low_16_bits_of_length_decide)
{
    const binary_rule &r = GetParam();
    if (r.stored != layout::low_bytes)
        return; // a length that these have room for has no more bits
    for (const int32_t length : {-1, 0x10008, 0x10064, 0x7FFF0010, INT32_MIN + 8})
        expect_batch(r.of_length(length), few_setups().front(), sample_rows(r.cast, {1, 1, 1}));
}

// Below the width the length is handed on as it came, with the bits above the low 16. A negative one shows that without
// more bytes than there are; what is stored at such a length is no text that a batch could compare.
TEST_P(integer_to_binary, a_length_below_the_width_is_stored_whole)
{
    const binary_rule &r = GetParam();
    if (r.stored != layout::low_bytes)
        return; // see above
    for (uint32_t kept = 0; kept < r.width; kept++) {
        services().reset();
        source_column source(r.cast.from_bytes(), 1, few_setups().front());
        source.set_bytes(0, 1, r.element(0x12345678));
        target_column target(sizeof(bdta3_str), 1);
        const auto length = static_cast<int32_t>(kept) - 0x10000;
        EXPECT_EQ(call(r.cast.cast, {.src = source.sealed(), .dst = target.column(), .rows = 1, .length = length}), 0);
        ASSERT_FALSE(services().log().empty());
        EXPECT_EQ(services().log().back().length, length);
    }
}

INSTANTIATE_TEST_SUITE_P(casts, integer_to_binary, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.cast.name); });

struct example {
    bcast_length_fn *cast;
    size_t source_bytes;
    int64_t value;
    int32_t length;
    std::string bytes;
};

TEST(integer_to_binary_examples, hold)
{
    using namespace std::string_literals;
    const example examples[] = {
        {bcast_int_to_varbinary, 4, 0x12345678, 2, "\x56\x78"},
        {bcast_int_to_varbinary, 4, -1, 8, "\xFF\xFF\xFF\xFF"},
        {bcast_int64_to_varbinary, 8, 0x0102030405060708, 3, "\x06\x07\x08"},
        {bcast_smallint_to_varbinary, 4, 258, 8, "\x01\x02"},
        {bcast_tinyint_to_varbinary, 4, -2, 8, "\xFE"},
        {bcast_tinyint_to_varbinary, 4, 7, 0, ""},
        {bcast_tinyint_to_binary, 4, 5, 2, "\0\5"s},
        {bcast_smallint_to_binary, 4, -2, 4, "\xFF\xFF\xFF\xFE"},
        {bcast_int_to_binary, 4, 1, 6, "\0\0\0\0\0\1"s},
        {bcast_int_to_binary, 4, -1, 6, "\0\0\xFF\xFF\xFF\xFF"s},
        {bcast_int64_to_binary, 8, 0x0102030405060708, 8, "\1\2\3\4\5\6\7\10"},
        {bcast_int64_to_binary, 8, 0x0102030405060708, 12, "\0\0\0\0\1\2\3\4"s},
        {bcast_int64_to_binary, 8, -1, 16, "\0\0\0\0\0\0\0\0"s},
        {bcast_int64_to_binary, 8, 0x0102030405060708, 7, "\2\3\4\5\6\7\10"},
    };
    for (const example &e : examples) {
        services().reset();
        source_column source(e.source_bytes, 1, few_setups().front());
        if (e.source_bytes == 8)
            source.set(0, 1, e.value);
        else
            source.set(0, 1, static_cast<int32_t>(e.value));
        target_column target(sizeof(bdta3_str), 1);
        EXPECT_EQ(call(e.cast, {.src = source.sealed(), .dst = target.column(), .rows = 1, .length = e.length}), 0);
        ASSERT_FALSE(services().log().empty());
        EXPECT_EQ(services().log().back().bytes, e.bytes) << "value " << e.value << ", length " << e.length;
        EXPECT_EQ(services().log().back().length, static_cast<int32_t>(e.bytes.size()));
    }
}

// ---- The one that can stop ----------------------------------------------------------

TEST(tinyint_to_varbinary, stops_at_the_value_judged_to_overflow)
{
    services().reset();
    services().answer("ntype_is_lint_overflow", "77", ERR_OVERFLOW);
    row_cast c = tinyint_to_varbinary();
    c.length = 4;
    c.convert = [convert = c.convert](const row_input &input) {
        row_outcome outcome = convert(input);
        outcome.steps.front().result = input.as<int32_t>() == 77 ? int32_t{ERR_OVERFLOW} : 0;
        return outcome;
    };
    const uint32_t row_count = 1024 + 40;
    for (const uint32_t failing_row : {0U, 1U, 1022U, 1023U, 1024U, row_count - 1}) {
        std::vector<batch_row> rows;
        for (uint32_t row = 0; row < row_count; row++)
            rows.push_back({static_cast<uint8_t>(row % 5 == 4 ? 0 : 9), image_of(row % 5 == 4 ? 77 : row % 50)});
        rows[failing_row] = {3, image_of(int32_t{77})};
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    }
}

TEST(tinyint_to_varbinary, any_other_verdict_passes)
{
    services().reset();
    const row_cast c = tinyint_to_varbinary();
    for (const int32_t verdict : {-1, ERR_OVERFLOW - 1, ERR_OVERFLOW + 1, INT32_MIN, 1, -ERR_OVERFLOW})
        expect_batch(c, few_setups().front(), sample_rows(c, {1, 1, 1}), {.results = {{1, verdict}}});
}

// That an alias of the catalogue has its cast's address is shown for all of them at once.
TEST(integer_to_binary_aliases, share_the_body_of_int)
{
    EXPECT_EQ(catalogue::find("bcast_smallint_to_binary")->alias_of, "bcast_int_to_binary");
    EXPECT_EQ(catalogue::find("bcast_tinyint_to_binary")->alias_of, "bcast_int_to_binary");
}

} // namespace
} // namespace bcast::test
