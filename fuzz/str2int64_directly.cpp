// str2int64_directly against the plain reading of the same text.
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

    const direct_reading expected = slow_str2int64_directly({text.get(), size});
    int64_t value = -1;
    char sign = 0;
    const int32_t status = str2int64_directly(text.get(), static_cast<int32_t>(size), &value, &sign);
    const direct_reading got = {status > 0 ? 1 : status, status >= 0 ? value : 0, sign};
    if (got != expected || (status < 0 && value != -1)) {
        std::fprintf(stderr, "expected status %d, value %lld, sign %d; got status %d, value %lld, sign %d\n",
                     expected.status, static_cast<long long>(expected.value), expected.sign, status,
                     static_cast<long long>(value), sign);
        std::abort();
    }
    return 0;
}
