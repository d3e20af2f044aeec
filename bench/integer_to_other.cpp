// Integers and float into other elements of fixed width.

#include "bench/fixed_width.h"

#include <limits>

namespace {

constexpr auto truth = [](auto from, int32_t &to) {
    to = from != 0;
    return true;
};

constexpr auto converted = [](auto from, auto &to) {
    to = std::remove_reference_t<decltype(to)>(from);
    return true;
};

template <class Int>
constexpr auto cut = [](float from, int32_t &to) {
    if (from > float(std::numeric_limits<Int>::max()) || from < float(std::numeric_limits<Int>::min()))
        return false;
    to = from == from ? int32_t(from) : 0;
    return true;
};

template <class From> int32_t plain_to_boolean(const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const From *from = static_cast<const From *>(src->data->values);
    int32_t *to = static_cast<int32_t *>(dst->data->values);
    dst->no_null = 1;
    std::memset(dst->data->flags, 1, rows);
    for (uint32_t i = 0; i < rows; i++) {
        const uint32_t r = src->sel ? src->sel[i] : i;
        if (!src->no_null && src->data->flags[r] == 0)
            to[i] = BOOL_UNKNOWN;
        else
            to[i] = from[r] != 0;
    }
    return 0;
}

const bool added = [] {
    using bench::add_beside_plain;
    using bench::add_fixed_width;
    using i32 = int32_t;
    using i64 = int64_t;
    add_beside_plain<i32, i32>("int_to_boolean", bcast_int_to_boolean, 128, 0, plain_to_boolean<i32>);
    add_beside_plain<i64, i32>("int64_to_boolean", bcast_int64_to_boolean, 128, 0, plain_to_boolean<i64>);
    add_fixed_width<i32, i32>("int_to_bit", bcast_int_to_bit, 128, 0, truth);
    add_fixed_width<i64, i32>("int64_to_bit", bcast_int64_to_bit, 128, 0, truth);
    add_fixed_width<i32, float>("int_to_float", bcast_int_to_float, 128, 0, converted);
    add_fixed_width<i32, double>("int_to_double", bcast_int_to_double, 128, 0, converted);
    add_fixed_width<i64, float>("int64_to_float", bcast_int64_to_float, 128, 0, converted);
    add_fixed_width<i64, double>("int64_to_double", bcast_int64_to_double, 128, 0, converted);
    add_beside_plain<float, i32>("float_to_boolean", bcast_float_to_boolean, 128, 0, plain_to_boolean<float>);
    add_fixed_width<float, i32>("float_to_bit", bcast_float_to_bit, 128, 0, truth);
    add_fixed_width<float, float>("float_to_float", bcast_float_to_float, 128, 0, converted);
    add_fixed_width<float, double>("float_to_double", bcast_float_to_double, 128, 0, converted);
    add_fixed_width<float, i32>("float_to_tinyint", bcast_float_to_tinyint, 128, 1000, cut<int8_t>);
    add_fixed_width<float, i32>("float_to_smallint", bcast_float_to_smallint, 128, 1e6F, cut<int16_t>);
    add_fixed_width<float, i32>("float_to_int", bcast_float_to_int, 128, 1e20F, cut<i32>);
    return true;
}();

} // namespace
