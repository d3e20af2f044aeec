// RUN: a function whose loops are compiled for several instruction sets, one of which is picked when the library is
// loaded. For static functions only: an exported one would put its resolver among the library's symbols.
//
// Off where the build fixes the instruction set; under the thread sanitizer, which cannot run the resolvers; and with
// clang before 19, whose resolvers pick the baseline at all times and clash where two files have a run of one name.
#pragma once

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define BCAST_ONE_ISA 1
#endif
#endif
#if defined(__clang__) && __clang_major__ < 19
#define BCAST_ONE_ISA 1
#endif
#if defined(__SANITIZE_THREAD__) || !defined(__x86_64__)
#define BCAST_ONE_ISA 1
#endif

#ifdef BCAST_ONE_ISA
#define RUN static
#else
#define RUN __attribute__((target_clones("arch=x86-64-v4", "arch=x86-64-v3", "default"))) static
#endif

// For what has to be compiled into each clone of a run, or each caller; INLINED stands behind a lambda's parameters.
#define ALWAYS_INLINE __attribute__((always_inline)) inline
#define INLINED __attribute__((always_inline))
