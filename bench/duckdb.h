// DuckDB in the same process, on the same values.
#pragma once

#include <string>

namespace bench {

// Adds series of the casts that DuckDB has too, with the library of that file. One that cannot be used ends the
// process with a message. Their variants are a query with the cast and the same query without it: what the cast costs
// is the difference. Gives DuckDB's version.
std::string add_duckdb(const std::string &library_file);

} // namespace bench
