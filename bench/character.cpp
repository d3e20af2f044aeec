// Text into text, decimals, floating numbers and bit.

#include "bench/with_services.h"

#include "services/column.h"
#include "services/decimal.h"
#include "services/numeric.h"
#include "services/text.h"

#include <charconv>

namespace {

using namespace bench;

constexpr int32_t dec_18_4 = 18 << 8 | 4;

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

void read_double(const bdta3_str &from, const bare_row &)
{
    double value;
    benchmark::DoNotOptimize(utl_digit_from_char(from.text, uint16_t(from.length), &value));
    benchmark::DoNotOptimize(ntype_is_double_overflow(value));
}

void read_decimal(const bdta3_str &from, const bare_row &to)
{
    xdec *values = static_cast<xdec *>(to.dst->data->values);
    benchmark::DoNotOptimize(xdec_from_char_with_len_prec(from.text, uint16_t(from.length), 18, 4, values + to.row));
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

// What the casts between texts do for a text that fits.
void store_text(const bdta3_str &from, const bare_row &to)
{
    auto *copy = static_cast<char *>(bdta3_col_space_alloc(nullptr, to.heap, to.dst->data, from.length));
    std::memcpy(copy, from.text, size_t(from.length));
    static_cast<bdta3_str *>(to.dst->data->values)[to.row] = {from.length, 0, copy};
}

void cut_text(const bdta3_str &from, const bare_row &to)
{
    bdta3_str kept = from;
    if (from.length > 12) {
        uint32_t chars, bytes;
        vq_get_valid_chars(from.text, 12, 10, &chars, &bytes);
        kept.length = int32_t(bytes);
    }
    store_text(kept, to);
}

const bool added = [] {
    add_beside_bare(
        "varchar_to_double, 123.456", BCAST_DOUBLE, three_by_three,
        [](const batch &b) {
            must_succeed(bcast_varchar_to_double(nullptr, b.heap, b.src, b.dst, b.rows, nullptr, nullptr));
        },
        read_double);
    add_beside_bare(
        "varchar_to_double", BCAST_DOUBLE, number_texts(8, 6),
        [](const batch &b) {
            must_succeed(bcast_varchar_to_double(nullptr, b.heap, b.src, b.dst, b.rows, nullptr, nullptr));
        },
        read_double);
    add_beside_bare(
        "varchar_to_double, 1 % bad", BCAST_DOUBLE, number_texts(8, 6, 100),
        [](const batch &b) {
            bcast_varchar_to_double(nullptr, b.heap, b.src, b.dst, b.rows, b.err_codes, b.err_count);
        },
        read_double);
    add_beside_bare(
        "varchar_to_dec(18,4)", BCAST_DEC, number_texts(13, 4),
        [](const batch &b) {
            must_succeed(bcast_varchar_to_dec(nullptr, b.heap, b.src, dec_18_4, b.dst, b.rows, nullptr, nullptr));
        },
        read_decimal);
    add_beside_bare(
        "varchar_to_dec(18,4), 1 % bad", BCAST_DEC, number_texts(13, 4, 100),
        [](const batch &b) {
            bcast_varchar_to_dec(nullptr, b.heap, b.src, dec_18_4, b.dst, b.rows, b.err_codes, b.err_count);
        },
        read_decimal);
    // No service: beside a look at each byte.
    add_beside_bare(
        "varchar_to_bit", BCAST_BIT,
        [] {
            return texts(4, [random = std::mt19937_64(8)](uint32_t, char *text) mutable {
                return digits(random, text, 1 + random() % 3) - text;
            });
        },
        [](const batch &b) {
            must_succeed(bcast_varchar_to_bit(nullptr, b.heap, b.src, b.dst, b.rows, nullptr, nullptr));
        },
        [](const bdta3_str &from, const bare_row &to) {
            int32_t bit = 0;
            for (int32_t k = 0; k < from.length; k++)
                bit |= from.text[k] != '0';
            static_cast<int32_t *>(to.dst->data->values)[to.row] = bit;
        });

    add_beside_bare(
        "varchar_to_varchar", BCAST_VARCHAR, plain_texts,
        [](const batch &b) {
            must_succeed(bcast_varchar_to_varchar(nullptr, b.heap, b.src, 32, b.dst, b.rows, nullptr, nullptr));
        },
        store_text);
    add_beside_bare(
        "varchar_to_varchar_explicit, half cut", BCAST_VARCHAR, plain_texts,
        [](const batch &b) {
            must_succeed(bcast_varchar_to_varchar_explicit(nullptr, b.heap, b.src, 12, b.dst, b.rows));
        },
        cut_text);
    return true;
}();

} // namespace
