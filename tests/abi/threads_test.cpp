// Casts of many threads at once, each on a target of its own, all on the same sources. Meant for a build with the
// thread sanitizer as well.

#include "tests/support/batch.h"
#include "tests/support/call.h"
#include "tests/support/service_double.h"

#include <array>
#include <atomic>
#include <barrier>
#include <thread>

namespace bcast::test {
namespace {

constexpr uint32_t rows = 3000;
constexpr int threads = 8;
constexpr int rounds = 30;

struct shared_cast {
    const char *name;
    any_cast cast;
    size_t target_bytes;
    const bdta3_col *source;
    int32_t length = 0;
};

struct outcome {
    int32_t status;
    std::vector<uint8_t> flags;
    std::vector<unsigned char> values;

    friend bool operator==(const outcome &, const outcome &) = default;
};

outcome run(const shared_cast &c)
{
    services().reset();
    target_column target(c.target_bytes, rows);
    failure_record failures(rows);
    const int32_t status = call(c.cast, {.src = c.source,
                                         .dst = target.column(),
                                         .rows = rows,
                                         .length = c.length,
                                         .err_codes = failures.codes(),
                                         .err_count = failures.count()});
    const target_image held = target.image();
    outcome result{status, held.flags, held.values};
    if (c.target_bytes == sizeof(bdta3_str)) {
        // Of an element its text counts, not where it stands.
        for (uint32_t row = 0; row < rows; row++) {
            bdta3_str element;
            std::memcpy(&element, held.values.data() + row * sizeof element, sizeof element);
            if (held.flags[row] != 0 && held.flags[row] != untouched_flag(row))
                result.values.insert(result.values.end(), element.text, element.text + element.length);
            std::memset(result.values.data() + row * sizeof element + offsetof(bdta3_str, text), 0,
                        sizeof element.text);
        }
    }
    return result;
}

TEST(threads, share_sources_and_the_settings)
{
    std::string digits = "1234567";
    const setup &plain = few_setups().front(), &selected = few_setups().back();
    source_column narrow(4, rows, plain), wide(8, rows, selected), text(sizeof(bdta3_str), rows, selected);
    for (uint32_t row = 0; row < rows; row++) {
        narrow.set(row, row % 7 == 0 ? 0 : 1, static_cast<int32_t>(row % 200) - 100);
        wide.set(row, row % 5 == 0 ? 0 : 1, static_cast<int64_t>(row) * 20); // beyond smallint from row 1639 on
        text.set(row, row % 3 == 0 ? 0 : 1, bdta3_str{static_cast<int32_t>(row % 8), 0, digits.data()});
    }
    const shared_cast casts[] = {
        {"bcast_int_to_int64", &bcast_int_to_int64, 8, narrow.sealed()},
        {"bcast_int_to_tinyint", &bcast_int_to_tinyint, 4, narrow.sealed()},
        {"bcast_int64_to_smallint", &bcast_int64_to_smallint, 4, wide.sealed()},
        {"bcast_int64_to_int", &bcast_int64_to_int, 4, wide.sealed()},
        {"bcast_int_to_char", &bcast_int_to_char, sizeof(bdta3_str), narrow.sealed(), 9},
        {"bcast_int64_to_varchar", &bcast_int64_to_varchar, sizeof(bdta3_str), wide.sealed(), 4},
        {"bcast_int64_to_text", &bcast_int64_to_text, sizeof(bdta3_str), wide.sealed()},
        {"bcast_varchar_to_smallint", &bcast_varchar_to_smallint, 4, text.sealed()},
        {"bcast_char_to_int64", &bcast_char_to_int64, 8, text.sealed()},
    };
    std::vector<outcome> alone;
    for (const shared_cast &c : casts)
        alone.push_back(run(c));
    EXPECT_EQ(alone[2].status, ERR_OVERFLOW);
    EXPECT_EQ(alone[5].status, ERR_TARGET_TOO_SHORT);
    EXPECT_EQ(alone[7].status, ERR_OVERFLOW);

    std::barrier start(threads);
    std::array<std::atomic<int>, std::size(casts)> different{};
    std::vector<std::thread> running;
    for (int thread = 0; thread < threads; thread++)
        running.emplace_back([&, thread] {
            start.arrive_and_wait();
            for (int round = 0; round < rounds; round++) {
                const size_t k = static_cast<size_t>(thread + round) % std::size(casts);
                different[k] += run(casts[k]) != alone[k];
            }
        });
    for (std::thread &each : running)
        each.join();
    for (size_t k = 0; k < std::size(casts); k++)
        EXPECT_EQ(different[k], 0) << casts[k].name << " came out otherwise among threads than alone";
}

} // namespace
} // namespace bcast::test
