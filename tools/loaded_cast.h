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

// The longest character value that can be declared: as much as the casts read of a char.
inline constexpr std::int32_t longest_characters = 65535;

// What casts are told beside their columns; each takes what its argument list has.
struct cast_arguments {
    std::int32_t length = 0; // of the target
    std::uint16_t src_scale = 0;
    std::uint16_t dst_scale = 0;
    std::uint16_t date_order = 0;
    std::int16_t local_zone = 0;
};

// The cast of that name, or nothing where the catalogue or the library has none.
std::optional<loaded_cast> find_cast(std::string_view name);

// The library's address of a cast of the catalogue, or null.
void *address_of(const catalogue::cast &entry);

// Whether the library has it. Some names of the catalogue are there and do nothing.
bool exists(const catalogue::cast &entry);

// Whether run() knows the argument list.
bool can_run(const catalogue::cast &entry);

// Whether the cast is told the length of its target.
bool takes_length(const catalogue::cast &entry);

bool captures(const catalogue::cast &entry);

// Casts the first rows rows of source. Every row that fails gets its code in failed and is null in the target; a
// source text of which the cast would not read the end is refused with ERR_TRUNCATED ahead of the call. A cast that
// does not capture may fail in a batch of one row only, but for want of memory, which is a std::bad_alloc.
void run(const loaded_cast &cast, pool &memory, column &source, const cast_arguments &arguments, column &target,
         std::uint16_t rows, failures &failed);

} // namespace bcast::tool
