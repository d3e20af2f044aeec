// What the headers declare, read off their text.
#pragma once

#include <string>
#include <vector>

namespace bcast::test {

// The names that casts.h declares by a function type of the bcast_<pattern>_fn kind.
std::vector<std::string> casts_of_public_header();

// The functions that the headers of the services declare.
std::vector<std::string> services_of_headers();

} // namespace bcast::test
