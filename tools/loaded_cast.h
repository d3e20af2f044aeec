// Casts of the library that is loaded, found by name and run on embedded columns.
#pragma once

#include "catalogue/catalogue.h"

#include <bcast/embedded.hpp>

#include <cstdint>
#include <optional>
#include <string_view>

namespace bcast::tool {

struct loaded_cast {
    const catalogue::cast *entry;
    void *address;
};

// The cast of that name, or nothing where the catalogue or the library has none.
std::optional<loaded_cast> find_cast(std::string_view name);

// The library's address of a cast of the catalogue, or null.
void *address_of(const catalogue::cast &entry);

// Whether run() knows the argument list.
bool can_run(const catalogue::cast &entry);

// Whether the cast is told the length of its target.
bool takes_length(const catalogue::cast &entry);

bool captures(const catalogue::cast &entry);

// Casts the first rows rows of source. Every row that fails gets its code in failed and is null in the target; a
// source value outside the cast's contract is refused with ERR_TRUNCATED ahead of the call. A cast that does not
// capture may fail in a batch of one row only.
void run(const loaded_cast &cast, pool &memory, column &source, std::int32_t length, column &target, std::uint16_t rows,
         failures &failed);

} // namespace bcast::tool
