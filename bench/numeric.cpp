// Decimals and double, and what asks about a float.

#include "bench/with_services.h"

#include <services/decimal.h>
#include <services/numeric.h>

namespace {

using namespace bench;

constexpr int32_t dec_18_4 = BCAST_DEC_SHAPE(18, 4);

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

// Whole numbers of the size of an int.
auto whole_doubles()
{
    return numbers([random = std::mt19937(17)](uint32_t) mutable { return double(int32_t(random())); });
}

auto floats()
{
    return numbers([random = std::mt19937(15)](uint32_t) mutable { return float(int32_t(random())); });
}

// `convert(value, element)` makes the target's element of a present row's value.
template <class From, class To, class Convert> auto convert_each(Convert convert)
{
    return [convert](const batch &b) {
        To *to = target_elements<To>(b);
        each_present<From>(b, [&](const From &value, int32_t row) { convert(value, to[row]); });
    };
}

// `write(value, text)` writes the text of a present row's value, which has room for BCAST_TEXT_ROOM bytes, and gives
// its length.
template <class From, class Write> auto write_each(Write write)
{
    return [write](const batch &b) {
        each_present<From>(b, [&](const From &value, int32_t row) {
            char text[BCAST_TEXT_ROOM];
            const int32_t len = write(value, text);
            bdta3_col_assign_str(nullptr, b.heap, b.dst, row, text, len, 0);
        });
    };
}

template <class From, class Write> auto write_each_large_object(Write write)
{
    return [write](const batch &b) {
        large_object object;
        each_present<From>(b, [&](const From &value, int32_t row) {
            char text[BCAST_TEXT_ROOM];
            const int32_t len = write(value, text);
            object.store(b, row, text, len);
            object.clear(b);
        });
    };
}

constexpr auto write_double = [](double value, char *text) {
    must_succeed(ntype_is_double_overflow(value));
    return vq_dou2char(BCAST_WAS_DOUBLE, value, text);
};

constexpr auto write_float = [](float value, char *text) { return vq_dou2char(BCAST_WAS_FLOAT, value, text); };

// In a shape, or in none.
template <uint16_t shape_len, int32_t prec>
constexpr auto write_decimal = [](const xdec &value, char *text) {
    int32_t len;
    must_succeed(xdec_to_char_with_zero(&value, text, 400, shape_len, prec, &len));
    return len;
};

constexpr auto to_int64 = [](double value) {
    int64_t whole;
    must_succeed(dou2int64(value, &whole));
    return whole;
};

constexpr auto to_int = [](double value, int32_t &to) { to = int32_t(to_int64(value)); };

const bool added = [] {
    add_beside_bare("int64_to_dec", BCAST_DEC, int64_values, stopping(bcast_int64_to_dec, BCAST_DEC_SHAPE(18, 0)),
                    convert_each<int64_t, xdec>([](int64_t value, xdec &to) {
                        must_succeed(xdec_from_int64_with_len_prec(value, 18, 0, &to));
                    }));
    add_beside_bare(
        "int_to_dec", BCAST_DEC,
        [] { return numbers([random = std::mt19937(18)](uint32_t) mutable { return int32_t(random()); }); },
        stopping(bcast_int_to_dec, dec_18_4), convert_each<int32_t, xdec>([](int32_t value, xdec &to) {
            must_succeed(xdec_from_int64_with_len_prec(value, 18, 4, &to));
        }));
    add_beside_bare("dec_to_dec", BCAST_DEC, decimals, stopping(bcast_dec_to_dec, BCAST_DEC_SHAPE(20, 2)),
                    convert_each<xdec, xdec>([](const xdec &value, xdec &to) {
                        must_succeed(xdec_from_xdec_with_len_prec(&value, 20, 2, &to));
                    }));
    add_beside_bare(
        "dec_to_int64", BCAST_INT64, decimals, stopping(bcast_dec_to_int64),
        convert_each<xdec, int64_t>([](const xdec &value, int64_t &to) { must_succeed(xdec_get_int64(&value, &to)); }));
    add_beside_bare("dec_to_double", BCAST_DOUBLE, decimals, stopping(bcast_dec_to_double),
                    convert_each<xdec, double>([](const xdec &value, double &to) {
                        int32_t status;
                        to = xdec_get_double(&value, &status);
                        must_succeed(status);
                    }));
    add_beside_bare("dec_to_float", BCAST_FLOAT, decimals, stopping(bcast_dec_to_float),
                    convert_each<xdec, float>([](const xdec &value, float &to) {
                        int32_t status;
                        const double number = xdec_get_double(&value, &status);
                        must_succeed(status);
                        must_succeed(ntype_is_float_overflow(number));
                        to = float(number);
                    }));
    add_beside_bare("dec(18,4)_to_varchar", BCAST_VARCHAR, decimals,
                    stopping(bcast_dec_to_varchar, BCAST_DEC_TEXT_LENGTH(20, dec_18_4)),
                    write_each<xdec>(write_decimal<18, 4>));
    add_beside_bare("dec_to_text", BCAST_TEXT, decimals, stopping(bcast_dec_to_text),
                    write_each_large_object<xdec>(write_decimal<0, 0>));

    add_beside_bare("double_to_double", BCAST_DOUBLE, doubles, stopping(bcast_double_to_double),
                    convert_each<double, double>([](double value, double &to) {
                        must_succeed(ntype_is_double_overflow(value));
                        to = value;
                    }));
    add_beside_bare("double_to_float", BCAST_FLOAT, doubles, stopping(bcast_double_to_float),
                    convert_each<double, float>([](double value, float &to) {
                        must_succeed(ntype_is_float_overflow(value));
                        to = float(value);
                    }));
    add_beside_bare("double_to_int", BCAST_INT, doubles, stopping(bcast_double_to_int),
                    convert_each<double, int32_t>(to_int));
    add_beside_bare("double_to_int, whole numbers", BCAST_INT, whole_doubles, stopping(bcast_double_to_int),
                    convert_each<double, int32_t>(to_int));
    add_beside_bare("double_to_int64", BCAST_INT64, doubles, stopping(bcast_double_to_int64),
                    convert_each<double, int64_t>([](double value, int64_t &to) {
                        must_succeed(ntype_is_lint64_overflow(value));
                        to = to_int64(value);
                    }));
    // Of the null rows, in each of which the cast writes an element, the bare calls know nothing.
    add_beside_bare("double_to_boolean", BCAST_BOOLEAN, doubles, stopping(bcast_double_to_boolean),
                    convert_each<double, int32_t>([](double value, int32_t &to) {
                        must_succeed(ntype_is_double_overflow(value));
                        to = value != 0;
                    }));
    add_beside_bare("double_to_bit", BCAST_BIT, doubles, stopping(bcast_double_to_bit),
                    convert_each<double, int32_t>([](double value, int32_t &to) {
                        must_succeed(ntype_is_double_overflow(value));
                        to = value != 0;
                    }));
    add_beside_bare("double_to_dec", BCAST_DEC, doubles, stopping(bcast_double_to_dec, BCAST_DEC_SHAPE(20, 4)),
                    convert_each<double, xdec>([](double value, xdec &to) {
                        must_succeed(ntype_is_double_overflow(value));
                        must_succeed(xdec_from_double_with_len_prec(value, 20, 4, &to));
                    }));
    add_beside_bare("double_to_varchar", BCAST_VARCHAR, doubles, stopping(bcast_double_to_varchar, 32),
                    write_each<double>(write_double));
    add_beside_bare("double_to_text", BCAST_TEXT, doubles, stopping(bcast_double_to_text),
                    write_each_large_object<double>(write_double));
    add_beside_bare("float_to_int64", BCAST_INT64, floats, stopping(bcast_float_to_int64),
                    convert_each<float, int64_t>([](float value, int64_t &to) {
                        must_succeed(ntype_is_lint64_overflow(value));
                        to = int64_t(value);
                    }));
    add_beside_bare("float_to_dec", BCAST_DEC, floats, stopping(bcast_float_to_dec, BCAST_DEC_SHAPE(20, 4)),
                    convert_each<float, xdec>([](float value, xdec &to) {
                        must_succeed(xdec_from_double_with_len_prec(value, 20, 4, &to));
                    }));
    add_beside_bare("float_to_varchar", BCAST_VARCHAR, floats, stopping(bcast_float_to_varchar, 32),
                    write_each<float>(write_float));
    add_beside_bare("float_to_text", BCAST_TEXT, floats, stopping(bcast_float_to_text),
                    write_each_large_object<float>(write_float));
    return true;
}();

} // namespace
