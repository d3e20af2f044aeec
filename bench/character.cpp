// Text into text, decimals, floating numbers and bit.

#include "bench/with_services.h"

#include <services/decimal.h>
#include <services/numeric.h>
#include <services/text.h>

#include <charconv>

namespace {

using namespace bench;

constexpr int32_t dec_18_4 = BCAST_DEC_SHAPE(18, 4);

// So many random digits, none of the first a zero.
char *digits(std::mt19937_64 &random, char *to, uint64_t count)
{
    for (uint64_t k = 0; k < count; k++)
        *to++ = char('0' + (k == 0 ? 1 + random() % 9 : random() % 10));
    return to;
}

// Numbers of 1 to so many digits before the point and so many behind it, either sign.
auto number_texts(uint64_t before, uint64_t behind, uint32_t one_bad_in = 0)
{
    return [=] {
        std::mt19937_64 random(5);
        return texts(40, [&](uint32_t r, char *text) {
            char *to = text;
            if (random() % 2 == 0)
                *to++ = '-';
            to = digits(random, to, 1 + random() % before);
            *to++ = '.';
            to = digits(random, to, behind);
            if (one_bad_in != 0 && r % one_bad_in == 0)
                to[-1] = 'x';
            return to - text;
        });
    };
}

// The one shape that other systems were measured with.
source<bdta3_str> three_by_three()
{
    std::mt19937_64 random(6);
    return texts(16, [&](uint32_t, char *text) {
        char *to = digits(random, text, 3);
        *to++ = '.';
        return digits(random, to, 3) - text;
    });
}

template <class Element, int32_t (*is_overflow)(double)>
auto read_doubles(rows_that_fail expected = rows_that_fail::none)
{
    return [expected](const batch &b) {
        auto *to = target_elements<Element>(b);
        double value = 0;
        int32_t results = 0;
        each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
            results |= utl_digit_from_char(from.text, uint16_t(from.length), &value);
            results |= is_overflow(value);
            to[row] = Element(value);
        });
        look_at(results, expected);
    };
}

auto read_decimals(rows_that_fail expected = rows_that_fail::none)
{
    return [expected](const batch &b) {
        auto *to = target_elements<xdec>(b);
        int32_t results = 0;
        each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
            results |= xdec_from_char_with_len_prec(from.text, uint16_t(from.length), 18, 4, to + row);
        });
        look_at(results, expected);
    };
}

source<bdta3_str> plain_texts()
{
    std::mt19937_64 random(7);
    return texts(32, [&](uint32_t, char *text) {
        const auto len = random() % 24;
        std::memset(text, 'a', len);
        return len;
    });
}

// What the casts between texts do for a text that fits. The element's lengths go in ahead of the call, so that the loop
// need not keep them over it.
void store_text(const batch &b, int32_t row, const char *text, int32_t len)
{
    bdta3_str &to = target_elements<bdta3_str>(b)[row];
    to.length = len;
    to.pad_len = 0;
    to.text = static_cast<char *>(bdta3_col_space_alloc(nullptr, b.heap, b.dst->data, len));
    std::memcpy(to.text, text, size_t(len));
}

void store_texts(const batch &b)
{
    each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) { store_text(b, row, from.text, from.length); });
}

void cut_texts(const batch &b)
{
    each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
        uint32_t chars, bytes = uint32_t(from.length);
        if (from.length > 12)
            vq_get_valid_chars(from.text, 12, 10, &chars, &bytes);
        store_text(b, row, from.text, int32_t(bytes));
    });
}

source<bdta3_str> locators()
{
    return texts(32, [](uint32_t r, char *text) { return std::snprintf(text, 32, "DOCS:part%u/file.pdf", r); });
}

const bool added = [] {
    add_beside_bare("varchar_to_double, 123.456", BCAST_DOUBLE, three_by_three, stopping(bcast_varchar_to_double),
                    read_doubles<double, ntype_is_double_overflow>());
    add_beside_bare("varchar_to_double", BCAST_DOUBLE, number_texts(8, 6), stopping(bcast_varchar_to_double),
                    read_doubles<double, ntype_is_double_overflow>());
    add_beside_bare("varchar_to_double, 1 % bad", BCAST_DOUBLE, number_texts(8, 6, 100),
                    capturing(bcast_varchar_to_double),
                    read_doubles<double, ntype_is_double_overflow>(rows_that_fail::some));
    add_beside_bare("varchar_to_float", BCAST_FLOAT, number_texts(8, 6), stopping(bcast_varchar_to_float),
                    read_doubles<float, ntype_is_float_overflow>());
    add_beside_bare("varchar_to_dec(18,4)", BCAST_DEC, number_texts(13, 4), stopping(bcast_varchar_to_dec, dec_18_4),
                    read_decimals());
    add_beside_bare("varchar_to_dec(18,4), 1 % bad", BCAST_DEC, number_texts(13, 4, 100),
                    capturing(bcast_varchar_to_dec, dec_18_4), read_decimals(rows_that_fail::some));
    // No service: beside a look at each byte.
    add_beside_bare(
        "varchar_to_bit", BCAST_BIT,
        [] {
            return texts(4, [random = std::mt19937_64(8)](uint32_t, char *text) mutable {
                return digits(random, text, 1 + random() % 3) - text;
            });
        },
        stopping(bcast_varchar_to_bit),
        [](const batch &b) {
            auto *to = target_elements<int32_t>(b);
            each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
                int32_t bit = 0;
                for (int32_t k = 0; k < from.length; k++)
                    bit |= from.text[k] != '0';
                to[row] = bit;
            });
        });

    add_beside_bare("varchar_to_varchar", BCAST_VARCHAR, plain_texts, stopping(bcast_varchar_to_varchar, 32),
                    store_texts);
    add_beside_bare("varchar_to_varchar_explicit, half cut", BCAST_VARCHAR, plain_texts,
                    stopping(bcast_varchar_to_varchar_explicit, 12), cut_texts);
    add_beside_bare("varchar_to_char_explicit, half cut, half filled", BCAST_CHAR, plain_texts,
                    stopping(bcast_varchar_to_char_explicit, 12), cut_texts);
    add_beside_bare("varchar_to_bfile", BCAST_BFILE, locators, stopping(bcast_varchar_to_bfile, 32),
                    [](const batch &b) {
                        each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
                            auto len = uint32_t(from.length);
                            int32_t is_null;
                            if (utl_is_valid_bfile_str(from.text, &len, &is_null) == 0)
                                give_up(ERR_BAD_BFILE);
                            store_text(b, row, from.text, int32_t(len));
                        });
                    });
    return true;
}();

} // namespace
