// Integers and text.

#include "bench/with_services.h"

#include "services/column.h"
#include "services/text.h"

#include <charconv>

namespace {

using namespace bench;

// Integers of 1 to so many digits, any length as likely as any other.
template <class Int> auto integers(int most_digits)
{
    return [most_digits] {
        return numbers([random = std::mt19937_64(4), most_digits](uint32_t) mutable {
            uint64_t limit = 1;
            for (auto digits = int(random() % uint64_t(most_digits)) + 1; digits > 0; digits--)
                limit *= 10;
            return Int(random() % limit);
        });
    };
}

// Their texts, with a letter among every `one_bad_in`.
auto integer_texts(int most_digits, uint32_t one_bad_in = 0)
{
    return [=] {
        const auto values = integers<int64_t>(most_digits)().values;
        return texts(20, [&](uint32_t r, char *text) {
            const auto end = std::to_chars(text, text + 20, values[r]).ptr;
            if (one_bad_in != 0 && r % one_bad_in == 0)
                end[-1] = 'x';
            return end - text;
        });
    };
}

void parse(const bdta3_str &from, const bare_row &)
{
    int64_t value;
    benchmark::DoNotOptimize(str2int64(from.text, from.length, &value));
    benchmark::DoNotOptimize(value);
}

const bool added = [] {
    add_beside_bare(
        "varchar_to_int", BCAST_INT, integer_texts(9),
        [](const batch &b) {
            must_succeed(bcast_varchar_to_int(nullptr, b.heap, b.src, b.dst, b.rows, nullptr, nullptr));
        },
        parse);
    add_beside_bare(
        "varchar_to_int, 1 % bad", BCAST_INT, integer_texts(9, 100),
        [](const batch &b) { bcast_varchar_to_int(nullptr, b.heap, b.src, b.dst, b.rows, b.err_codes, b.err_count); },
        parse);
    add_beside_bare(
        "varchar_to_int64", BCAST_INT64, integer_texts(18),
        [](const batch &b) {
            must_succeed(bcast_varchar_to_int64(nullptr, b.heap, b.src, b.dst, b.rows, nullptr, nullptr));
        },
        parse);

    add_beside_bare(
        "int_to_varchar", BCAST_VARCHAR, integers<int32_t>(9),
        [](const batch &b) { must_succeed(bcast_int_to_varchar(nullptr, b.heap, b.src, 11, b.dst, b.rows)); },
        [](int32_t value, const bare_row &to) {
            char text[16];
            int32_t len;
            must_succeed(str_from_int(value, 11, text, &len));
            bdta3_col_assign_str(nullptr, to.heap, to.dst, to.row, text, len, 0);
        });
    // This one formats by itself: beside the call that stores a text.
    add_beside_bare(
        "int64_to_varchar", BCAST_VARCHAR, integers<int64_t>(9),
        [](const batch &b) { must_succeed(bcast_int64_to_varchar(nullptr, b.heap, b.src, 20, b.dst, b.rows)); },
        [](int64_t value, const bare_row &to) {
            bdta3_col_assign_str(nullptr, to.heap, to.dst, to.row, "123456789", int32_t(value % 9) + 1, 0);
        });
    // And so does this one: beside the two calls that make the large object and store it.
    add_beside_bare(
        "int_to_text", BCAST_TEXT, integers<int32_t>(9),
        [](const batch &b) {
            must_succeed(bcast_int_to_text(nullptr, b.heap, b.src, b.dst, b.rows, nullptr, nullptr));
        },
        [working = nstr{}](int32_t value, const bare_row &to) mutable {
            if (to.row == 0)
                working.outline = working.inline_bytes;
            working.first_word = 0;
            must_succeed(nblob_assign_const(nullptr, to.heap, &working, "123456789", value % 9 + 1));
            bdta3_col_assign_bin(nullptr, to.heap, to.dst, to.row,
                                 working.length > NSTR_INLINE_MAX ? working.outline : working.inline_bytes,
                                 int32_t(working.length));
        });
    return true;
}();

} // namespace
