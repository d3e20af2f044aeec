// The cast matrix as data: one entry for every export that is a cast. Used by the tools and the tests; the library
// itself has no dispatcher and does not know it.
#pragma once

#include <bcast/bcast.h>
#include <bcast/type.h>

#include <span>
#include <string_view>

namespace bcast::catalogue {

// The argument list of a cast; bcast_<pattern>_fn is its function type.
enum class pattern {
    plain,
    capture,
    length,
    length_capture,
    direct,
    int_low,
    int64_low,
    date_fast,
    tltz_fast,
    tltz,
    scaled,
    scaled_capture,
    scaled_text,
    precise,
    precise_typed,
};

enum class protocol {
    never_fails,
    stops,    // at the first row that fails
    captures, // goes on where err_codes is given, else stops
    refused,  // returns a failure and touches nothing
    absent,   // returns 1 and touches nothing
};

// When and how the target's no_null is written.
enum class no_null {
    after,        // the source's, behind a walk that ran to its end
    before,       // the source's, ahead of the walk; 0 when a row turns null or gets a verdict
    set,          // 1
    clear,        // 0
    only_cleared, // kept, but 0 when a row turns null
    never,        // kept
};

struct cast {
    std::string_view name;
    bcast_type source; // by element: a hex_varchar is a varchar, a tltz a datetime_tz
    bcast_type target;
    pattern arguments;
    catalogue::protocol protocol;
    catalogue::no_null no_null;
    std::string_view alias_of; // the name whose body this is, or empty
};

// All casts, by source as the public header has them.
std::span<const cast> casts();

// The entry of that name, or null.
const cast *find(std::string_view name);

// The exported functions that are no casts.
std::span<const std::string_view> other_functions();

} // namespace bcast::catalogue
