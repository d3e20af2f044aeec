// The cast matrix as data: one entry for every export that is a cast. Used by the tools and the tests; the library
// itself has no dispatcher and does not know it.
#pragma once

#include <bcast/bcast.h>
#include <bcast/type.h>

#include <cstdint>
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
    behind,  // the source's, behind a walk that ran to its end
    ahead,   // the source's, ahead of the walk; 0 when a row turns null or gets a verdict
    one,     // 1
    zero,    // 0
    or_zero, // kept, but 0 when a row turns null
    kept,
};

// What a cast is for, between the same two types.
enum class form {
    plain,        // values of one type into values of the other
    cuts,         // the same, where a value that is too long for the target is cut
    compares,     // literals for a comparison with a column of the target
    compares_one, // one of them, without columns
    is_body,      // what casts between temporal types with a scale are made of
};

// What a cast does with a source value longer than its limit.
enum class beyond {
    reads,              // there is no limit
    ignores,            // takes the bytes up to the limit for all
    wraps,              // takes the low 16 bits of the length for all
    refuses,            // fails the row with a code
    untested,           // must not be handed one
    untested_if_padded, // must not be handed one that counts blanks, with which it is longer
};

// The longest text or binary value, in bytes, that a cast reads as it stands.
struct source_limit {
    std::int32_t bytes = INT32_MAX;
    catalogue::beyond beyond = beyond::reads;
};

struct cast {
    std::string_view name;
    std::string_view from; // the SQL types, as users name them
    std::string_view to;
    bcast_type source; // what columns of them hold: of a hex_varchar a varchar, of a tltz a datetime_tz
    bcast_type target;
    bool to_local_zone; // the target's values are of the local zone: theirs is where they came from
    catalogue::form form;
    pattern arguments;
    catalogue::protocol protocol;
    catalogue::no_null no_null;
    source_limit limit;
    std::span<const std::string_view> services; // that it calls, by name; copy_row is the source column's
    std::string_view alias_of;                  // the name whose body this is, or empty
};

// All casts, by source as the public header has them.
std::span<const cast> casts();

// The entry of that name, or null.
const cast *find(std::string_view name);

// The cast between two SQL types, or null. Of bodies the first.
const cast *find(std::string_view from, std::string_view to, form wanted = form::plain);

// The exported functions that are no casts.
std::span<const std::string_view> other_functions();

} // namespace bcast::catalogue
