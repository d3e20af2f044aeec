// Casts between integers and text with the embedded services, beside the bare calls of those services on the present
// rows in the same order.

#include "bench/bench.h"

#include "services/column.h"
#include "services/text.h"

#include <bcast/embedded.h>

#include <charconv>
#include <memory>

namespace {

using namespace bench;

// Integers of 1 to 9 digits, any length as likely as any other, and their texts.
struct numbers {
    std::vector<int32_t> values;
    std::vector<int64_t> wide_values;
    std::vector<char> bytes;
    std::vector<bdta3_str> texts;
    std::vector<uint8_t> flags;

    explicit numbers(int null_percent)
        : values(pool_rows), wide_values(pool_rows), bytes(pool_rows * 16), texts(pool_rows),
          flags(make_flags(null_percent))
    {
        std::mt19937 random(4);
        for (uint32_t r = 0; r < pool_rows; r++) {
            uint32_t limit = 1;
            for (auto digits = random() % 9 + 1; digits > 0; digits--)
                limit *= 10;
            wide_values[r] = values[r] = int32_t(random() % limit);
            char *text = &bytes[r * 16];
            texts[r] = {int32_t(std::to_chars(text, text + 16, values[r]).ptr - text), 0, text};
        }
    }
};

struct pool {
    series s;
    numbers source;
    bcast_pool *heap = bcast_pool_new();
    bcast_column *target;

    pool(const series &which, bcast_type target_type)
        : s(which), source(which.null_percent), target(bcast_column_new(target_type))
    {}
    ~pool()
    {
        bcast_column_free(target);
        bcast_pool_free(heap);
    }
    pool(const pool &) = delete;
    pool &operator=(const pool &) = delete;

    // Hands each batch to `cast`, with an emptied target; the heap is emptied once.
    template <class Element, class Cast> void each_batch(std::vector<Element> &values, Cast cast)
    {
        bcast_pool_reset(heap);
        for (uint32_t batch = 0; batch < s.batches(); batch++) {
            const size_t first = size_t(batch) * s.batch_rows;
            column src(&values[first], &source.flags[first], nullptr, s.null_percent == 0);
            bcast_column_make_room(target, s.rows());
            cast(&src.col, bcast_column_vector(target), uint16_t(s.rows()));
        }
    }

    // Calls `call(element, row)` for each present row of each batch.
    template <class Element, class Call> void bare_calls(std::vector<Element> &values, Call call)
    {
        each_batch(values, [&](const bdta3_col *src, bdta3_col *dst, uint16_t rows) {
            const Element *from = static_cast<const Element *>(src->data->values);
            for (uint32_t i = 0; i < rows; i++)
                if (src->data->flags[i])
                    call(from[i], dst, int32_t(i));
        });
    }
};

void must_succeed(int32_t status)
{
    if (status != 0)
        std::abort();
}

void add_text_to_integer()
{
    for (const series &s : dense_series("varchar_to_int")) {
        const auto make = [=] { return std::make_shared<pool>(s, BCAST_INT); };
        add(s, "cast", [=] {
            return [p = make()] {
                p->each_batch(p->source.texts, [&](const bdta3_col *src, bdta3_col *dst, uint16_t rows) {
                    must_succeed(bcast_varchar_to_int(nullptr, p->heap, src, dst, rows, nullptr, nullptr));
                });
            };
        });
        add(s, "bare", [=] {
            return [p = make()] {
                p->bare_calls(p->source.texts, [](const bdta3_str &from, bdta3_col *, int32_t) {
                    int64_t value;
                    must_succeed(str2int64(from.text, from.length, &value));
                    benchmark::DoNotOptimize(value);
                });
            };
        });
    }
}

void add_integer_to_characters()
{
    for (const series &s : dense_series("int_to_varchar")) {
        const auto make = [=] { return std::make_shared<pool>(s, BCAST_VARCHAR); };
        add(s, "cast", [=] {
            return [p = make()] {
                p->each_batch(p->source.values, [&](const bdta3_col *src, bdta3_col *dst, uint16_t rows) {
                    must_succeed(bcast_int_to_varchar(nullptr, p->heap, src, 11, dst, rows));
                });
            };
        });
        add(s, "bare", [=] {
            return [p = make()] {
                p->bare_calls(p->source.values, [p](int32_t value, bdta3_col *dst, int32_t i) {
                    char text[16];
                    int32_t len;
                    must_succeed(str_from_int(value, 11, text, &len));
                    bdta3_col_assign_str(nullptr, p->heap, dst, i, text, len, 0);
                });
            };
        });
    }
    // Here the cast formats by itself: beside the call that stores the text.
    for (const series &s : dense_series("int64_to_varchar")) {
        const auto make = [=] { return std::make_shared<pool>(s, BCAST_VARCHAR); };
        add(s, "cast", [=] {
            return [p = make()] {
                p->each_batch(p->source.wide_values, [&](const bdta3_col *src, bdta3_col *dst, uint16_t rows) {
                    must_succeed(bcast_int64_to_varchar(nullptr, p->heap, src, 20, dst, rows));
                });
            };
        });
        add(s, "store", [=] {
            return [p = make()] {
                p->bare_calls(p->source.texts, [p](const bdta3_str &from, bdta3_col *dst, int32_t i) {
                    bdta3_col_assign_str(nullptr, p->heap, dst, i, from.text, from.length, 0);
                });
            };
        });
    }
}

void add_integer_to_text()
{
    for (const series &s : dense_series("int_to_text")) {
        const auto make = [=] { return std::make_shared<pool>(s, BCAST_TEXT); };
        add(s, "cast", [=] {
            return [p = make()] {
                p->each_batch(p->source.values, [&](const bdta3_col *src, bdta3_col *dst, uint16_t rows) {
                    must_succeed(bcast_int_to_text(nullptr, p->heap, src, dst, rows, nullptr, nullptr));
                });
            };
        });
        // Formatted beforehand: the two calls that make the large object and store it.
        add(s, "bare", [=] {
            return [p = make()] {
                nstr working{};
                working.outline = working.inline_bytes;
                p->bare_calls(p->source.texts, [&](const bdta3_str &from, bdta3_col *dst, int32_t i) {
                    working.first_word = 0;
                    must_succeed(nblob_assign_const(nullptr, p->heap, &working, from.text, from.length));
                    bdta3_col_assign_bin(nullptr, p->heap, dst, i,
                                         working.length > NSTR_INLINE_MAX ? working.outline : working.inline_bytes,
                                         int32_t(working.length));
                });
            };
        });
    }
}

const bool added = [] {
    add_text_to_integer();
    add_integer_to_characters();
    add_integer_to_text();
    return true;
}();

} // namespace
