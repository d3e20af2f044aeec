// Calling a cast of any argument pattern with the arguments that tests vary.
#pragma once

#include "catalogue/catalogue.h"

#include <bcast/bcast.h>

#include <cstdint>
#include <optional>
#include <variant>

namespace bcast::test {

// An address that may be neither read nor written: for what a cast must not look at.
void *inaccessible();

// What casts get as env and heap: handed on, never looked into.
void *env();
void *heap();

using any_cast = std::variant<bcast_plain_fn *, bcast_capture_fn *, bcast_length_fn *, bcast_length_capture_fn *>;

// The function at that address, or nothing for a pattern that any_cast lacks as yet.
std::optional<any_cast> cast_at(void *address, catalogue::pattern arguments);

struct call_arguments {
    const bdta3_col *src;
    bdta3_col *dst;
    uint32_t rows;
    int32_t length = 0;
    int32_t *err_codes = nullptr;
    uint16_t *err_count = nullptr;
};

int32_t call(any_cast cast, const call_arguments &with);

// The same by a caller that hands rows over in 32 bits.
int32_t call_with_wide_rows(any_cast cast, const call_arguments &with);

} // namespace bcast::test
