#include "bench/fixed_width.h"

namespace {

constexpr auto copied = [](auto from, auto &to) {
    to = std::remove_reference_t<decltype(to)>(from);
    return true;
};

template <class Narrow>
constexpr auto narrowed = [](auto from, auto &to) {
    if (from != Narrow(from))
        return false;
    to = Narrow(from);
    return true;
};

constexpr auto cut_to_16_bits = [](int32_t from, int32_t &to) {
    to = int16_t(from);
    return true;
};

const bool added = [] {
    using bench::add_fixed_width;
    using i32 = int32_t;
    using i64 = int64_t;
    add_fixed_width<i32, i32>("tinyint_to_tinyint", bcast_tinyint_to_tinyint, 128, 0, copied);
    add_fixed_width<i32, i32>("tinyint_to_smallint", bcast_tinyint_to_smallint, 128, 0, cut_to_16_bits);
    add_fixed_width<i32, i32>("tinyint_to_int", bcast_tinyint_to_int, 128, 0, copied);
    add_fixed_width<i32, i64>("tinyint_to_int64", bcast_tinyint_to_int64, 128, 0, copied);
    add_fixed_width<i32, i32>("smallint_to_tinyint", bcast_smallint_to_tinyint, 128, 128, narrowed<int8_t>);
    add_fixed_width<i32, i32>("smallint_to_smallint", bcast_smallint_to_smallint, 128, 0, copied);
    add_fixed_width<i32, i32>("smallint_to_int", bcast_smallint_to_int, 128, 0, copied);
    add_fixed_width<i32, i64>("smallint_to_int64", bcast_smallint_to_int64, 128, 0, copied);
    add_fixed_width<i32, i32>("int_to_tinyint", bcast_int_to_tinyint, 128, 1000000, narrowed<int8_t>);
    add_fixed_width<i32, i32>("int_to_smallint", bcast_int_to_smallint, 128, 1000000, narrowed<int16_t>);
    add_fixed_width<i32, i32>("int_to_int", bcast_int_to_int, 128, 0, copied);
    add_fixed_width<i32, i64>("int_to_int64", bcast_int_to_int64, 128, 0, copied);
    add_fixed_width<i64, i32>("int64_to_tinyint", bcast_int64_to_tinyint, 128, INT64_MAX, narrowed<int8_t>);
    add_fixed_width<i64, i32>("int64_to_smallint", bcast_int64_to_smallint, 128, INT64_MAX, narrowed<int16_t>);
    add_fixed_width<i64, i32>("int64_to_int", bcast_int64_to_int, 128, INT64_MAX, narrowed<int32_t>);
    add_fixed_width<i64, i64>("int64_to_int64", bcast_int64_to_int64, 128, 0, copied);
    return true;
}();

} // namespace
