// The way out of operations that cannot report a failure.
#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include <sys/types.h>

namespace embedded {

// Says on stderr what had no room, and ends the process.
[[noreturn, gnu::cold, gnu::noinline]] inline void out_of_memory(const char *what, size_t bytes)
{
    fprintf(stderr, "libbcast_embedded: out of memory for %s of %zd bytes\n", what, ssize_t(bytes));
    abort();
}

} // namespace embedded
