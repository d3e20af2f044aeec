// What has to be compiled into each of its callers: g++ would leave it out of a long one, and code for a level
// (level.h) has to be compiled with its caller. INLINED stands behind a lambda's parameters.
#pragma once

#define ALWAYS_INLINE __attribute__((always_inline)) inline
#define INLINED __attribute__((always_inline))
