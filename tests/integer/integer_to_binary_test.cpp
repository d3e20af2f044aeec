// The bytes of the integers, most significant first: bin_from_int_low, and the eight casts around it.

#include "tests/support/batch.h"
#include "tests/support/call.h"
#include "tests/support/service_double.h"

#include <algorithm>
#include <limits>
#include <memory>

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

struct rule {
    const char *name;
    bcast_length_fn *cast;
    size_t source_bytes;
    size_t width;
    layout stored;
    bool judged = false; // each value by ntype_is_lint_overflow

    std::string bytes_of(int64_t value, int32_t length) const
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
};

void PrintTo(const rule &r, std::ostream *out) { *out << r.name; }

#define NAMED(cast) #cast, cast
constexpr rule rules[] = {
    {NAMED(bcast_int64_to_varbinary), 8, 8, layout::low_bytes},
    {NAMED(bcast_int_to_varbinary), 4, 4, layout::low_bytes},
    {NAMED(bcast_smallint_to_varbinary), 4, 2, layout::low_bytes},
    {NAMED(bcast_tinyint_to_varbinary), 4, 1, layout::low_bytes, true},
    {NAMED(bcast_int64_to_binary), 8, 8, layout::front_of_right_aligned},
    {NAMED(bcast_int_to_binary), 4, 4, layout::right_aligned},
    {NAMED(bcast_smallint_to_binary), 4, 4, layout::right_aligned},
    {NAMED(bcast_tinyint_to_binary), 4, 4, layout::right_aligned},
};
#undef NAMED

void set(source_column &source, const rule &r, uint32_t row, uint8_t flag, int64_t value)
{
    if (r.source_bytes == 8)
        source.set(row, flag, value);
    else
        source.set(row, flag, static_cast<int32_t>(value));
}

int64_t value_of(const source_column &source, const rule &r, uint32_t row)
{
    return r.source_bytes == 8 ? source.element<int64_t>(row) : source.element<int32_t>(row);
}

int64_t mixed_value(uint32_t row) { return static_cast<int64_t>((row + 1) * uint64_t{0x9E3779B97F4A7C15}); }

void expect_rows(const rule &r, const source_column &source, int32_t length, bdta3_col *column, uint32_t last,
                 target_image &expected, std::vector<service_call> &calls)
{
    for (uint32_t row = 0; row < last; row++) {
        expected.flags[row] = source.flag(row);
        if (source.flag(row) == 0)
            continue;
        const int64_t value = value_of(source, r, row);
        const std::string bytes = r.bytes_of(value, length);
        if (r.judged)
            calls.push_back(judges_int(value));
        calls.push_back(assigns_bytes(column, row, bytes));
        expected.texts[row] = {bytes, 0};
    }
}

class integer_to_binary : public testing::TestWithParam<rule> {
protected:
    void SetUp() override { services().reset(); }

    static void expect_success(const rule &r, source_column &source, const setup &how, int32_t length, uint32_t rows,
                               bool wide_rows = false)
    {
        SCOPED_TRACE(std::to_string(rows) + " rows, length " + std::to_string(length) + ", " + describe(how));
        target_column target(sizeof(bdta3_str), rows, how);
        target_image expected = target.image();
        expected.no_null = how.no_null;
        std::vector<service_call> calls;
        expect_rows(r, source, length, target.column(), rows, expected, calls);
        const call_arguments with{.src = source.sealed(),
                                  .dst = target.column(),
                                  .rows = wide_rows ? 0x10000 + rows : rows,
                                  .length = length};
        EXPECT_EQ(wide_rows ? call_with_wide_rows(r.cast, with) : call(r.cast, with), 0);
        EXPECT_TRUE(target.holds(expected));
        EXPECT_TRUE(services().logged(calls));
    }
};

TEST_P(integer_to_binary, rows_are_stored_and_null_rows_left_out)
{
    const rule &r = GetParam();
    constexpr uint8_t flags[] = {1, 0, 2, 0x80, 0, 0xFF, 1};
    for (const setup &how : all_setups()) {
        for (const uint32_t rows : {0U, 1U, 2U, 30U, 1023U, 1024U, 1025U}) {
            for (const int32_t length : {2, 12}) {
                services().reset();
                source_column source(r.source_bytes, rows, how);
                for (uint32_t row = 0; row < rows; row++)
                    set(source, r, row, flags[row % std::size(flags)], mixed_value(row));
                expect_success(r, source, how, length, rows);
            }
        }
    }
}

TEST_P(integer_to_binary, values_at_every_edge_and_every_length_around_the_width)
{
    const rule &r = GetParam();
    std::vector<int64_t> in_slot{0, 1, -1, 5, 127, -128, 255, 258, 32767, -32768, 0x12345678, int32_least};
    if (r.source_bytes == 8)
        for (const int64_t value : {int64_t{0x0102030405060708}, int64_least, int64_greatest, int64_t{1} << 32})
            in_slot.push_back(value);
    const auto rows = static_cast<uint32_t>(in_slot.size());
    for (const int32_t length :
         {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15, 16, 17, 1023, 1024, 1025, 32767, 32768}) {
        services().reset();
        source_column source(r.source_bytes, rows, few_setups().front());
        for (uint32_t row = 0; row < rows; row++)
            set(source, r, row, 1, in_slot[row]);
        expect_success(r, source, few_setups().front(), length, rows);
    }
}

TEST_P(integer_to_binary, the_largest_batch_and_rows_at_16_bits)
{
    const rule &r = GetParam();
    const auto filled = [&](uint32_t rows, const setup &how) {
        auto source = std::make_unique<source_column>(r.source_bytes, rows, how);
        for (uint32_t row = 0; row < rows; row++)
            set(*source, r, row, row % 3 == 2 ? 0 : 1, mixed_value(row));
        return source;
    };
    expect_success(r, *filled(65535, few_setups()[2]), few_setups()[2], 9, 65535);
    for (const uint32_t rows : {0U, 2U}) {
        services().reset();
        expect_success(r, *filled(rows, few_setups().front()), few_setups().front(), 9, rows, true);
    }
}

// A varbinary target's length is taken at 16 bits where it is not below the width.
TEST_P(integer_to_binary, the_low_16_bits_of_length_decide)
{
    const rule &r = GetParam();
    if (r.stored != layout::low_bytes)
        return; // a length that these have room for has no more bits
    for (const int32_t length : {-1, 0x10008, 0x10064, 0x7FFF0010, INT32_MIN + 8}) {
        services().reset();
        source_column source(r.source_bytes, 3, few_setups().front());
        for (uint32_t row = 0; row < 3; row++)
            set(source, r, row, 1, mixed_value(row));
        expect_success(r, source, few_setups().front(), length, 3);
    }
}

// Below the width the length is handed on as it came, with the bits above the low 16. A negative one shows that without
// more bytes than there are.
TEST_P(integer_to_binary, a_length_below_the_width_is_stored_whole)
{
    const rule &r = GetParam();
    if (r.stored != layout::low_bytes)
        return; // see above
    for (uint32_t kept = 0; kept < r.width; kept++) {
        services().reset();
        source_column source(r.source_bytes, 1, few_setups().front());
        set(source, r, 0, 1, 0x12345678);
        target_column target(sizeof(bdta3_str), 1);
        const auto length = static_cast<int32_t>(kept) - 0x10000;
        EXPECT_EQ(call(r.cast, {.src = source.sealed(), .dst = target.column(), .rows = 1, .length = length}), 0);
        ASSERT_FALSE(services().log().empty());
        EXPECT_EQ(services().log().back().length, length);
    }
}

INSTANTIATE_TEST_SUITE_P(casts, integer_to_binary, testing::ValuesIn(rules),
                         [](const auto &each) { return std::string(each.param.name); });

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
    const rule &r = rules[3];
    const uint32_t rows = 1024 + 40;
    for (const setup &how : all_setups()) {
        for (const uint32_t failing_row : {0U, 1U, 1022U, 1023U, 1024U, rows - 1}) {
            SCOPED_TRACE("row " + std::to_string(failing_row) + ", " + describe(how));
            services().reset();
            services().answer("ntype_is_lint_overflow", "77", ERR_OVERFLOW);
            source_column source(4, rows, how);
            for (uint32_t row = 0; row < rows; row++)
                set(source, r, row, row % 5 == 4 ? 0 : 9, row % 5 == 4 ? 77 : row % 50);
            set(source, r, failing_row, 3, 77);
            target_column target(sizeof(bdta3_str), rows, how);
            target_image expected = target.image();
            expected.no_null = how.no_null;
            std::vector<service_call> calls;
            expect_rows(r, source, 4, target.column(), failing_row, expected, calls);
            expected.flags[failing_row] = 0;
            calls.push_back(judges_int(77));
            EXPECT_EQ(call(r.cast, {.src = source.sealed(), .dst = target.column(), .rows = rows, .length = 4}),
                      ERR_OVERFLOW);
            EXPECT_TRUE(target.holds(expected));
            EXPECT_TRUE(services().logged(calls));
        }
    }
}

TEST(tinyint_to_varbinary, any_other_verdict_passes)
{
    const rule &r = rules[3];
    for (const int32_t verdict : {-1, ERR_OVERFLOW - 1, ERR_OVERFLOW + 1, INT32_MIN, 1, -ERR_OVERFLOW}) {
        SCOPED_TRACE(verdict);
        services().reset();
        services().fail_call(1, verdict);
        const setup &how = few_setups().front();
        source_column source(4, 3, how);
        for (uint32_t row = 0; row < 3; row++)
            set(source, r, row, 1, row + 1);
        target_column target(sizeof(bdta3_str), 3, how);
        target_image expected = target.image();
        expected.no_null = how.no_null;
        std::vector<service_call> calls;
        expect_rows(r, source, 4, target.column(), 3, expected, calls);
        EXPECT_EQ(call(r.cast, {.src = source.sealed(), .dst = target.column(), .rows = 3, .length = 4}), 0);
        EXPECT_TRUE(target.holds(expected));
        EXPECT_TRUE(services().logged(calls));
    }
}

// That an alias of the catalogue has its cast's address is shown for all of them at once.
TEST(integer_to_binary_aliases, share_the_body_of_int)
{
    EXPECT_EQ(catalogue::find("bcast_smallint_to_binary")->alias_of, "bcast_int_to_binary");
    EXPECT_EQ(catalogue::find("bcast_tinyint_to_binary")->alias_of, "bcast_int_to_binary");
}

} // namespace
} // namespace bcast::test
