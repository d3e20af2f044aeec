// The readers of dates and times against the slow reading of the same text.
#include "tests/support/slow_temporal.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>

namespace {

void expect_same(const char *service, std::string_view text, const temporal_reading &expected, int32_t status,
                 const vqtime &value)
{
    const temporal_reading got = status == 0 ? reading_of(value) : failed_reading(status);
    if (got == expected)
        return;
    std::cerr << service << " of \"" << text << "\"\nexpected: ";
    PrintTo(expected, &std::cerr);
    std::cerr << "\ngot:      ";
    PrintTo(got, &std::cerr);
    std::cerr << std::endl;
    std::abort();
}

} // namespace

// The first byte chooses the order of the fields, and the rest is the text.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const uint16_t order = data[0] % 4;
    // In a block of its own size, so that a byte read around it is found.
    const auto copy = std::make_unique<char[]>(--size);
    std::copy(data + 1, data + 1 + size, copy.get());
    const std::string_view text(copy.get(), size);
    const auto length = static_cast<int32_t>(size);

    vqtime value{};
    int32_t aux;
    int32_t status = char_to_date_simple_with_alen(copy.get(), length, nullptr, order, &value, 0);
    expect_same("char_to_date_simple_with_alen", text, slow_read_temporal(text, order), status, value);
    for (const int32_t type : {TYPE_DATE, TYPE_DATETIME}) {
        status = vqtime_from_char_ex2(copy.get(), length, type, &value, &aux);
        expect_same("vqtime_from_char_ex2", text, slow_read_temporal(text, 0, type), status, value);
    }
    return 0;
}
