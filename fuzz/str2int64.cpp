// str2int64 against the plain reading of the same text.
#include "tests/support/slow_number.h"

#include <services/text.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // In a block of its own size, so that a byte read around it is found.
    const auto text = std::make_unique<char[]>(size);
    std::copy(data, data + size, text.get());

    const number_reading expected = slow_str2int64({text.get(), size});
    int64_t value = -1;
    const int32_t status = str2int64(text.get(), static_cast<int32_t>(size), &value);
    const bool agrees =
        expected.status == 0 ? status >= 0 && value == expected.value : status == expected.status && value == -1;
    if (!agrees) {
        std::fprintf(stderr, "expected status %d, value %lld; got status %d, value %lld\n", expected.status,
                     static_cast<long long>(expected.value), status, static_cast<long long>(value));
        std::abort();
    }
    return 0;
}
