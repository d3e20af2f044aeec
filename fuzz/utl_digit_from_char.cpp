// utl_digit_from_char against the plain reading of the grammar and the C library's of the value.
#include "tests/support/slow_number.h"

#include <services/text.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size > UINT16_MAX)
        return 0;
    // In a block of its own size, so that a byte read around it is found.
    const auto text = std::make_unique<char[]>(size);
    std::copy(data, data + size, text.get());

    const bool is_number = read_slow_digits({text.get(), size}).is_number;
    const double number = is_number ? std::strtod(std::string(text.get(), size).c_str(), nullptr) : -1;
    const int32_t expected_status = !is_number ? ERR_BAD_CONVERSION : std::isinf(number) ? ERR_OVERFLOW : 0;
    const double expected = expected_status == 0 ? number : -1;
    double value = -1;
    const int32_t status = utl_digit_from_char(text.get(), static_cast<uint16_t>(size), &value);
    if (std::min(status, 0) != expected_status || std::bit_cast<uint64_t>(value) != std::bit_cast<uint64_t>(expected)) {
        std::fprintf(stderr, "expected status %d, value %a; got status %d, value %a\n", expected_status, expected,
                     status, value);
        std::abort();
    }
    return 0;
}
