// Integers and text.

#include "bench/with_services.h"

#include <services/text.h>

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

template <class Int> auto read_integers(rows_that_fail expected = rows_that_fail::none)
{
    return [expected](const batch &b) {
        Int *to = target_elements<Int>(b);
        int64_t value = 0;
        int32_t results = 0;
        each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
            results |= str2int64(from.text, from.length, &value);
            to[row] = Int(value);
        });
        look_at(results, expected);
    };
}

// The casts that format by themselves have no service for it: beside the calls that store a text of about that length.
constexpr char any_digits[] = "12345678";
template <class Int> int32_t any_length(Int value) { return 1 + int32_t(value & 7); }

template <class Int> void store_any_digits(const batch &b)
{
    each_present<Int>(b, [&](Int value, int32_t row) {
        bdta3_col_assign_str(nullptr, b.heap, b.dst, row, any_digits, any_length(value), 0);
    });
}

// As one writes it first.
void format_and_store(const batch &b)
{
    each_present<int64_t>(b, [&](int64_t value, int32_t row) {
        char text[20];
        const auto end = std::to_chars(text, text + sizeof text, value).ptr;
        bdta3_col_assign_str(nullptr, b.heap, b.dst, row, text, int32_t(end - text), 0);
    });
}

// One working value, not cleared, like the cast's.
template <class Int> void store_any_large_objects(const batch &b)
{
    large_object object;
    each_present<Int>(b, [&](Int value, int32_t row) { object.store(b, row, any_digits, any_length(value)); });
}

void add_int64_to_varchar(const char *what, int most_digits)
{
    const auto make = integers<int64_t>(most_digits);
    add_beside_bare(what, BCAST_VARCHAR, make, stopping(bcast_int64_to_varchar, 20), store_any_digits<int64_t>);
    for (const series &s : dense_series(what))
        add_run(s, "plain", BCAST_VARCHAR, make, format_and_store);
}

const bool added = [] {
    add_selected_beside_bare("varchar_to_int", BCAST_INT, integer_texts(9), stopping(bcast_varchar_to_int),
                             read_integers<int32_t>());
    add_beside_bare("varchar_to_int, 1 % bad", BCAST_INT, integer_texts(9, 100), capturing(bcast_varchar_to_int),
                    read_integers<int32_t>(rows_that_fail::some));
    add_beside_bare("varchar_to_int64", BCAST_INT64, integer_texts(18), stopping(bcast_varchar_to_int64),
                    read_integers<int64_t>());
    add_beside_bare("char_to_int", BCAST_INT, integer_texts(9), stopping(bcast_char_to_int), read_integers<int32_t>());

    add_selected_beside_bare("int_to_varchar", BCAST_VARCHAR, integers<int32_t>(9), stopping(bcast_int_to_varchar, 11),
                             [](const batch &b) {
                                 each_present<int32_t>(b, [&](int32_t value, int32_t row) {
                                     char text[16];
                                     int32_t len;
                                     must_succeed(str_from_int(value, 11, text, &len));
                                     bdta3_col_assign_str(nullptr, b.heap, b.dst, row, text, len, 0);
                                 });
                             });
    add_int64_to_varchar("int64_to_varchar", 9);
    add_int64_to_varchar("int64_to_varchar, 1 to 18 digits", 18);
    add_beside_bare("int_to_text", BCAST_TEXT, integers<int32_t>(9), stopping(bcast_int_to_text),
                    store_any_large_objects<int32_t>);
    add_beside_bare("int64_to_text", BCAST_TEXT, integers<int64_t>(18), stopping(bcast_int64_to_text),
                    store_any_large_objects<int64_t>);
    return true;
}();

} // namespace
