// The integers and bit as decimals: the service makes them, in the shape that length has.

#include "tests/support/row_cast.h"

#include <limits>

namespace bcast::test {
namespace {

constexpr int32_t usual_shape = 0x0A02; // 10 digits in all, 2 behind the point

template <class Source>
row_cast rule(const char *name, bcast_length_fn *cast, row_flags flags, int32_t length = usual_shape)
{
    row_cast c{.name = name,
               .cast = cast,
               .to_bytes = sizeof(xdec),
               .flags = flags,
               .no_null_ahead = false,
               .failure_clears_flag = false,
               .samples = {},
               .convert = {},
               .length = length};
    // All that the slot can hold: a tinyint's, a smallint's or a bit's range plays no part.
    for (const int64_t value :
         {int64_t{0}, int64_t{1}, int64_t{-1}, int64_t{2}, int64_t{127}, int64_t{-128}, int64_t{300}, int64_t{-32769},
          int64_t{1} << 31, int64_t{1} << 40, int64_t{7}, int64_t{std::numeric_limits<Source>::min()},
          int64_t{std::numeric_limits<Source>::max()}})
        c.samples.push_back(image_of(static_cast<Source>(value)));
    const int32_t len = length >> 8 & 0xFF, prec = length & 0xFF;
    c.convert = [len, prec](const row_input &input) {
        const int64_t value = input.as<Source>();
        return row_outcome{.steps = {{makes_decimal_of_int64(value, len, prec), service_failure::passes_its_code}},
                           .element = image_of(made_decimal(image_of(value), len, prec))};
    };
    return c;
}

std::vector<row_cast> rules(int32_t length = usual_shape)
{
#define NAMED(cast) #cast, cast
    return {
        rule<int32_t>(NAMED(bcast_tinyint_to_dec), row_flags::copied, length),
        rule<int32_t>(NAMED(bcast_smallint_to_dec), row_flags::copied_ahead, length),
        rule<int32_t>(NAMED(bcast_int_to_dec), row_flags::copied, length),
        rule<int64_t>(NAMED(bcast_int64_to_dec), row_flags::copied, length),
        rule<int32_t>(NAMED(bcast_bit_to_dec), row_flags::copied, length),
    };
#undef NAMED
}

class integer_to_decimal : public testing::TestWithParam<row_cast> {
protected:
    void SetUp() override { services().reset(); }
};

TEST_P(integer_to_decimal, present_rows_are_made_and_null_rows_left_out) { expect_rows_and_null_rows(GetParam()); }

TEST_P(integer_to_decimal, every_row_count_up_to_the_largest) { expect_row_counts(GetParam()); }

TEST_P(integer_to_decimal, a_failure_stops_with_the_code_of_the_service) { expect_stops(GetParam()); }

INSTANTIATE_TEST_SUITE_P(casts, integer_to_decimal, testing::ValuesIn(rules()),
                         [](const auto &each) { return std::string(each.param.name); });

TEST(integer_to_decimal_shape, both_bytes_of_length_are_unsigned_and_the_bits_above_them_unread)
{
    services().reset();
    for (const int32_t length : {0, 0x0102, 0x00FF, 0xFF00, 0x8080, 0x8181, 0x7F7F, 0x10A02, 0x7FFF0A02, -1,
                                 std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::min() + 0x2605}) {
        SCOPED_TRACE("length " + std::to_string(length));
        for (const row_cast &c : rules(length))
            expect_element(c, c.samples[4]);
    }
}

// Rows behind the one that stops it: what the block has copied, and what nobody has written.
TEST(integer_to_decimal_by_hand, smallint_without_sel_has_the_flags_behind_a_failure)
{
    for (const bool ahead : {true, false}) {
        services().reset();
        services().answer("xdec_from_int64_with_len_prec", "5", -77);
        source_column source(4, 4, few_setups().front());
        source.set(0, 9, int32_t{4});
        source.set(1, 8, int32_t{5});
        source.set(2, 0, int32_t{6});
        source.set(3, 7, int32_t{7});
        target_column target(sizeof(xdec), 4);
        target_image expected = target.image();
        expected.flags = {9, 8, ahead ? uint8_t{0} : untouched_flag(2), ahead ? uint8_t{7} : untouched_flag(3)};
        expected.put(0, made_decimal(image_of(int64_t{4}), 10, 2));
        const any_cast cast = ahead ? bcast_smallint_to_dec : bcast_int_to_dec;
        EXPECT_EQ(call(cast, {source.sealed(), target.column(), 4, usual_shape}), -77);
        EXPECT_TRUE(target.holds(expected));
        EXPECT_TRUE(services().logged({makes_decimal_of_int64(4, 10, 2), makes_decimal_of_int64(5, 10, 2)}));
    }
}

} // namespace
} // namespace bcast::test
