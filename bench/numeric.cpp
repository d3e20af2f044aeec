// Decimals and double, and what asks about a float.

#include "bench/with_services.h"

#include "services/column.h"
#include "services/decimal.h"
#include "services/numeric.h"

namespace {

using namespace bench;

constexpr int32_t dec_18_4 = 18 << 8 | 4;

auto int64_values()
{
    return numbers([random = std::mt19937_64(12)](uint32_t) mutable { return int64_t(random()) >> 14; });
}

// Decimals with up to 13 digits before the point and 4 behind it.
auto decimals()
{
    return numbers([random = std::mt19937_64(13)](uint32_t) mutable {
        const auto value = double(int64_t(random()) >> 13) / 1e4; // 51 bits: its four digits are exact enough
        xdec made;
        must_succeed(xdec_from_double_with_len_prec(value, 18, 4, &made));
        return made;
    });
}

// Whole and broken numbers of the size of an int.
auto doubles()
{
    return numbers([random = std::mt19937_64(14)](uint32_t) mutable { return double(int64_t(random()) >> 24) / 1024; });
}

template <class T> T *element(const bare_row &to) { return static_cast<T *>(to.dst->data->values) + to.row; }

const bool added = [] {
    add_beside_bare(
        "int64_to_dec", BCAST_DEC, int64_values,
        [](const batch &b) { must_succeed(bcast_int64_to_dec(nullptr, b.heap, b.src, 18 << 8, b.dst, b.rows)); },
        [](int64_t value, const bare_row &to) {
            must_succeed(xdec_from_int64_with_len_prec(value, 18, 0, element<xdec>(to)));
        });
    add_beside_bare(
        "dec_to_dec", BCAST_DEC, decimals,
        [](const batch &b) { must_succeed(bcast_dec_to_dec(nullptr, b.heap, b.src, 20 << 8 | 2, b.dst, b.rows)); },
        [](const xdec &value, const bare_row &to) {
            must_succeed(xdec_from_xdec_with_len_prec(&value, 20, 2, element<xdec>(to)));
        });
    add_beside_bare(
        "dec_to_int64", BCAST_INT64, decimals,
        [](const batch &b) { must_succeed(bcast_dec_to_int64(nullptr, b.heap, b.src, b.dst, b.rows)); },
        [](const xdec &value, const bare_row &to) { must_succeed(xdec_get_int64(&value, element<int64_t>(to))); });
    add_beside_bare(
        "dec_to_double", BCAST_DOUBLE, decimals,
        [](const batch &b) { must_succeed(bcast_dec_to_double(nullptr, b.heap, b.src, b.dst, b.rows)); },
        [](const xdec &value, const bare_row &to) {
            int32_t status;
            *element<double>(to) = xdec_get_double(&value, &status);
            must_succeed(status);
        });
    add_beside_bare(
        "dec(18,4)_to_varchar", BCAST_VARCHAR, decimals,
        [](const batch &b) {
            must_succeed(bcast_dec_to_varchar(nullptr, b.heap, b.src, dec_18_4 << 16 | 20, b.dst, b.rows));
        },
        [](const xdec &value, const bare_row &to) {
            char text[400];
            int32_t len;
            must_succeed(xdec_to_char_with_zero(&value, text, sizeof text, 18, 4, &len));
            bdta3_col_assign_str(nullptr, to.heap, to.dst, to.row, text, len, 0);
        });

    add_beside_bare(
        "double_to_double", BCAST_DOUBLE, doubles,
        [](const batch &b) { must_succeed(bcast_double_to_double(nullptr, b.heap, b.src, b.dst, b.rows)); },
        [](double value, const bare_row &to) {
            must_succeed(ntype_is_double_overflow(value));
            *element<double>(to) = value;
        });
    add_beside_bare(
        "double_to_float", BCAST_FLOAT, doubles,
        [](const batch &b) { must_succeed(bcast_double_to_float(nullptr, b.heap, b.src, b.dst, b.rows)); },
        [](double value, const bare_row &to) {
            must_succeed(ntype_is_float_overflow(value));
            *element<float>(to) = float(value);
        });
    add_beside_bare(
        "double_to_int", BCAST_INT, doubles,
        [](const batch &b) { must_succeed(bcast_double_to_int(nullptr, b.heap, b.src, b.dst, b.rows)); },
        [](double value, const bare_row &to) {
            int64_t whole;
            must_succeed(dou2int64(value, &whole));
            *element<int32_t>(to) = int32_t(whole);
        });
    add_beside_bare(
        "double_to_bit", BCAST_BIT, doubles,
        [](const batch &b) { must_succeed(bcast_double_to_bit(nullptr, b.heap, b.src, b.dst, b.rows)); },
        [](double value, const bare_row &to) {
            must_succeed(ntype_is_double_overflow(value));
            *element<int32_t>(to) = value != 0;
        });
    add_beside_bare(
        "double_to_dec", BCAST_DEC, doubles,
        [](const batch &b) { must_succeed(bcast_double_to_dec(nullptr, b.heap, b.src, 20 << 8 | 4, b.dst, b.rows)); },
        [](double value, const bare_row &to) {
            must_succeed(ntype_is_double_overflow(value));
            must_succeed(xdec_from_double_with_len_prec(value, 20, 4, element<xdec>(to)));
        });
    add_beside_bare(
        "double_to_varchar", BCAST_VARCHAR, doubles,
        [](const batch &b) { must_succeed(bcast_double_to_varchar(nullptr, b.heap, b.src, 32, b.dst, b.rows)); },
        [](double value, const bare_row &to) {
            char text[504];
            must_succeed(ntype_is_double_overflow(value));
            const int32_t len = vq_dou2char(BCAST_WAS_DOUBLE, value, text);
            bdta3_col_assign_str(nullptr, to.heap, to.dst, to.row, text, len, 0);
        });
    add_beside_bare(
        "float_to_int64", BCAST_INT64,
        [] { return numbers([random = std::mt19937(15)](uint32_t) mutable { return float(int32_t(random())); }); },
        [](const batch &b) { must_succeed(bcast_float_to_int64(nullptr, b.heap, b.src, b.dst, b.rows)); },
        [](float value, const bare_row &to) {
            must_succeed(ntype_is_lint64_overflow(value));
            *element<int64_t>(to) = int64_t(value);
        });
    return true;
}();

} // namespace
