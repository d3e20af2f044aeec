// How the cost of a row grows with the rows of a batch, the length of a text, the share of nulls and the selection.

#include "bench/fixed_width.h"
#include "bench/with_services.h"

#include <services/temporal.h>

#include <charconv>

namespace {

using namespace bench;

constexpr uint32_t batch_sizes[] = {1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 16384, 65535};
constexpr uint32_t text_lengths[] = {1,  2,  4,  8,  12,  15,  16,  17,  24,  31,  32,  33, 48,
                                     63, 64, 65, 96, 127, 128, 129, 192, 255, 256, 257, 319};
constexpr int null_percents[] = {0, 1, 5, 10, 20, 30, 40, 50, 60, 70, 80, 90, 95, 99, 100};
constexpr selection selections[] = {selection::none,        selection::sorted_half,    selection::clustered_half,
                                    selection::random_half, selection::random_repeats, selection::reversed};

std::vector<series> by_batch(const char *what)
{
    std::vector<series> all;
    for (uint32_t rows : batch_sizes)
        all.push_back({what, rows, 0, selection::none, false, "batch:" + std::to_string(rows)});
    return all;
}

std::vector<series> by_nulls(const char *what)
{
    std::vector<series> all;
    for (int nulls : null_percents)
        all.push_back({what, 4096, nulls, selection::none, false, "nulls:" + std::to_string(nulls)});
    return all;
}

std::vector<series> by_selection(const char *what)
{
    std::vector<series> all;
    for (selection sel : selections)
        all.push_back({what, 4096, 0, sel, false, std::string("selection:") + name_of(sel)});
    return all;
}

// ---- Fixed width

template <class From, class To> void add_fixed(const std::vector<series> &all, bcast_plain_fn *cast)
{
    for (const series &s : all)
        add(s, "cast", [=] {
            return [p = std::make_shared<pool<From, To>>(s, From(128), From(0)), cast] {
                p->cast_all([cast](const bdta3_col *src, bdta3_col *dst, uint16_t rows) {
                    return cast(nullptr, nullptr, src, dst, rows);
                });
            };
        });
}

// What is measured beside each batch without being part of a cast: the loop over the batches, with no call in it.
template <class From, class To> void add_fixed_harness(const std::vector<series> &all)
{
    for (const series &s : all)
        add(s, "harness", [=] {
            return [p = std::make_shared<pool<From, To>>(s, From(128), From(0))] {
                p->cast_all([](const bdta3_col *src, bdta3_col *dst, uint16_t) {
                    benchmark::DoNotOptimize(src);
                    benchmark::DoNotOptimize(dst);
                    return 0;
                });
            };
        });
}

// ---- With services

template <class Make, class Cast>
void add_casts(const std::vector<series> &all, bcast_type target_type, Make make, Cast cast)
{
    for (const series &s : all)
        add_run(s, "cast", target_type, make, cast);
}

template <class Make> void add_harness(const std::vector<series> &all, bcast_type target_type, Make make)
{
    for (const series &s : all)
        add_run(s, "harness", target_type, make, [](const batch &b) { benchmark::DoNotOptimize(&b); });
}

template <class Make, class Cast>
void add_casts_and_harness(const std::vector<series> &all, bcast_type target_type, Make make, Cast cast)
{
    add_casts(all, target_type, make, cast);
    add_harness(all, target_type, make);
}

// Integers of 1 to 9 digits, any length as likely as any other.
int32_t any_integer(std::mt19937 &random)
{
    int32_t limit = 1;
    for (auto digits = random() % 9 + 1; digits > 0; digits--)
        limit *= 10;
    return int32_t(random() % uint32_t(limit));
}

source<int32_t> integers()
{
    return numbers([random = std::mt19937(31)](uint32_t) mutable { return any_integer(random); });
}

source<bdta3_str> integer_texts()
{
    return texts(20, [random = std::mt19937(31)](uint32_t, char *text) mutable {
        return std::to_chars(text, text + 20, any_integer(random)).ptr - text;
    });
}

char any_digit(std::mt19937 &random) { return char('0' + random() % 10); }

// Up to 13 digits, a point and 4 digits.
source<bdta3_str> decimal_texts()
{
    return texts(20, [random = std::mt19937(32)](uint32_t, char *text) mutable {
        char *to = text;
        for (auto digits = random() % 13 + 1; digits > 0; digits--)
            *to++ = any_digit(random);
        *to++ = '.';
        for (int k = 0; k < 4; k++)
            *to++ = any_digit(random);
        return to - text;
    });
}

source<vqtime> dates()
{
    return numbers([random = std::mt19937(33)](uint32_t) mutable {
        const auto year = 1970 + random() % 100, month = 1 + random() % 12, day = 1 + random() % 28;
        vqtime value;
        must_succeed(vqtime_from_long(int64_t(year * 10000 + month * 100 + day), &value));
        return value;
    });
}

// As the API has it: the codes are all 0 before each call, and stay so where no row fails.
void cast_to_int_capturing(const batch &b)
{
    must_succeed(bcast_varchar_to_int(nullptr, b.heap, b.src, b.dst, b.rows, b.err_codes, b.err_count));
}

constexpr int32_t dec_18_4 = BCAST_DEC_SHAPE(18, 4);

void add_batches()
{
    const auto shrunk = by_batch("int64_to_int"), widened = by_batch("int_to_int64");
    add_fixed<int64_t, int32_t>(shrunk, bcast_int64_to_int);
    add_fixed_harness<int64_t, int32_t>(shrunk);
    add_fixed<int32_t, int64_t>(widened, bcast_int_to_int64);
    add_fixed_harness<int32_t, int64_t>(widened);
    add_casts_and_harness(by_batch("varchar_to_int"), BCAST_INT, integer_texts, cast_to_int_capturing);
    add_casts_and_harness(by_batch("int_to_varchar"), BCAST_VARCHAR, integers, stopping(bcast_int_to_varchar, 11));
    add_casts_and_harness(by_batch("varchar_to_dec(18,4)"), BCAST_DEC, decimal_texts,
                          stopping(bcast_varchar_to_dec, dec_18_4));
    add_casts_and_harness(by_batch("date_to_text"), BCAST_TEXT, dates, stopping(bcast_date_to_text));
}

void add_nulls()
{
    add_fixed<int64_t, int32_t>(by_nulls("int64_to_int"), bcast_int64_to_int);
    add_fixed<float, int32_t>(by_nulls("float_to_int"), bcast_float_to_int);
    add_fixed<int32_t, int32_t>(by_nulls("int_to_boolean"), bcast_int_to_boolean);
    add_casts(by_nulls("varchar_to_int"), BCAST_INT, integer_texts, stopping(bcast_varchar_to_int));
    add_casts(by_nulls("int_to_varchar"), BCAST_VARCHAR, integers, stopping(bcast_int_to_varchar, 11));
}

void add_selections()
{
    add_fixed<int64_t, int32_t>(by_selection("int64_to_int"), bcast_int64_to_int);
    add_fixed<int32_t, int64_t>(by_selection("int_to_int64"), bcast_int_to_int64);
    add_casts(by_selection("varchar_to_int"), BCAST_INT, integer_texts, stopping(bcast_varchar_to_int));
}

// ---- Texts of one length

// A pool of texts that are all `len` bytes long, each with a NUL behind it as in a column. `write(text)` writes one.
// There are as many as a batch has rows, for more would be long enough together to leave the second-level cache.
constexpr uint32_t text_batch = 1024;

template <class Write> auto texts_of(uint32_t len, Write write)
{
    return [=] {
        std::mt19937 random(34);
        source<bdta3_str> made = {std::vector<bdta3_str>(pool_rows), std::vector<char>(text_batch * (len + 1))};
        for (uint32_t r = 0; r < pool_rows; r++) {
            char *text = &made.bytes[r % text_batch * (len + 1)];
            if (r < text_batch)
                write(text, len, random);
            made.values[r] = {int32_t(len), 0, text};
        }
        return made;
    };
}

void write_bytes(char *text, uint32_t len, std::mt19937 &random)
{
    for (uint32_t k = 0; k < len; k++)
        text[k] = char(random());
}

void write_hex(char *text, uint32_t len, std::mt19937 &random)
{
    for (uint32_t k = 0; k < len; k++)
        text[k] = "0123456789ABCDEF"[random() % 16];
}

void write_digits(char *text, uint32_t len, std::mt19937 &random)
{
    for (uint32_t k = 0; k < len; k++)
        text[k] = any_digit(random);
}

// Up to 9 digits behind as many of a filling as it takes.
template <char filling> void write_filled_integer(char *text, uint32_t len, std::mt19937 &random)
{
    const uint32_t digits = std::min(len, 9u);
    std::memset(text, filling, len - digits);
    write_digits(text + len - digits, digits, random);
}

// Up to 8 digits, a point and up to 4 digits; zeros behind them.
void write_number(char *text, uint32_t len, std::mt19937 &random)
{
    const uint32_t before = std::min((len + 1) / 2, 8u);
    std::memset(text, '0', len);
    write_digits(text, std::min(len, before + 5), random);
    if (before < len)
        text[before] = '.';
}

// A point behind the first digit, and digits without end: more than a double holds.
void write_long_fraction(char *text, uint32_t len, std::mt19937 &random)
{
    write_digits(text, len, random);
    if (len > 1)
        text[1] = '.';
}

template <class Write, class Cast> void add_by_length(const char *what, bcast_type target_type, Write write, Cast cast)
{
    for (uint32_t len : text_lengths) {
        const series s = {what, text_batch, 0, selection::none, false, "text:" + std::to_string(len)};
        add_run(s, "cast", target_type, texts_of(len, write), cast);
    }
}

void add_lengths()
{
    add_by_length("varchar_to_varchar", BCAST_VARCHAR, write_bytes, stopping(bcast_varchar_to_varchar, 319));
    add_by_length("varchar_to_text", BCAST_TEXT, write_bytes, stopping(bcast_varchar_to_text));
    add_by_length("varchar_to_int, leading blanks", BCAST_INT, write_filled_integer<' '>,
                  stopping(bcast_varchar_to_int));
    add_by_length("varchar_to_int, leading zeros", BCAST_INT, write_filled_integer<'0'>,
                  stopping(bcast_varchar_to_int));
    add_by_length("varchar_to_double", BCAST_DOUBLE, write_number, stopping(bcast_varchar_to_double));
    add_by_length("varchar_to_double, all digits", BCAST_DOUBLE, write_long_fraction,
                  stopping(bcast_varchar_to_double));
    add_by_length("varchar_to_dec(18,4)", BCAST_DEC, write_number, stopping(bcast_varchar_to_dec, dec_18_4));
    add_by_length("hex_varchar_to_varbinary", BCAST_VARBINARY, write_hex,
                  stopping(bcast_hex_varchar_to_varbinary, 160));
    add_by_length("varbinary_to_varchar", BCAST_VARCHAR, write_bytes, stopping(bcast_varbinary_to_varchar, 638));
}

const bool added = [] {
    add_batches();
    add_lengths();
    add_nulls();
    add_selections();
    return true;
}();

} // namespace
