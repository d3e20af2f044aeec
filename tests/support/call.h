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

// What casts get as env and heap: handed on, never looked into, but for casts that read the current time zone.
void *env();
void *heap();

using any_cast =
    std::variant<bcast_plain_fn *, bcast_capture_fn *, bcast_length_fn *, bcast_length_capture_fn *, bcast_direct_fn *,
                 bcast_date_fast_fn *, bcast_tltz_fast_fn *, bcast_tltz_fn *, bcast_scaled_fn *,
                 bcast_scaled_capture_fn *, bcast_scaled_text_fn *, bcast_precise_fn *, bcast_precise_typed_fn *>;

// The function at that address, or nothing for a pattern that any_cast lacks as yet.
std::optional<any_cast> cast_at(void *address, catalogue::pattern arguments);

// What casts of temporal values and intervals get besides. What the defaults of parse_word and parse_ptr hold is of no
// meaning: parsers get them.
struct temporal_arguments {
    uint16_t parse_word = 0xF1A6;
    void *parse_ptr = static_cast<char *>(inaccessible()) + 0x3000;
    int16_t local_tz = 0;
    uint16_t src_prec = 0;
    uint16_t src_scale = 0;
    uint16_t dst_prec = 0;
    uint16_t dst_scale = 0;
    int32_t round_flag = 0;
    uint8_t type_code = 0;
};

struct call_arguments {
    const bdta3_col *src;
    bdta3_col *dst;
    uint32_t rows;
    int32_t length = 0;
    int32_t *err_codes = nullptr;
    uint16_t *err_count = nullptr;
    uint16_t cmp_op = '=';
    void *heap = test::heap();
    temporal_arguments temporal = {};
};

int32_t call(any_cast cast, const call_arguments &with);

// The same by a caller that hands rows over in 32 bits.
int32_t call_with_wide_rows(any_cast cast, const call_arguments &with);

} // namespace bcast::test
