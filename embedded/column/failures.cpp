// The record in which a capturing cast notes the rows that failed.
#include <bcast/embedded.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

constexpr uint32_t batch_rows_max = 65535;

struct failures_with_codes {
    bcast_failures failures;
    int32_t codes[batch_rows_max];
};

} // namespace

bcast_failures *bcast_failures_new(void)
{
    auto *both = static_cast<failures_with_codes *>(calloc(1, sizeof(failures_with_codes)));
    if (both == nullptr)
        return nullptr;
    both->failures.codes = both->codes;
    return &both->failures;
}

void bcast_failures_reset(bcast_failures *failures)
{
    memset(failures->codes, 0, batch_rows_max * sizeof(int32_t));
    failures->count = 0;
}

uint32_t bcast_failures_next(const bcast_failures *failures, uint32_t from, uint32_t rows)
{
    const uint32_t end = std::min(rows, batch_rows_max);
    for (uint32_t row = from; row < end; row++) {
        if (failures->codes[row] != 0)
            return row;
    }
    return rows;
}

void bcast_failures_free(bcast_failures *failures) { free(failures); }
