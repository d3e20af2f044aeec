// How the code for the best level is picked. In both ways a function is written once, always inlined, and compiled for
// each level (level.h).
//
//     at_best_level<run>(from, flags, to, n)              asks the processor: for what is called once a batch or block
//     PICKED_AT_LOAD(str2int64, embedded::text_to_int64)  is bound by the loader: for services, called once a row
//
// What a level does in its own way is a template over levels, which has a specialisation for each level that has a way:
//
//     template <level at> struct short_copies : short_copies<below(at)> {};
//     template <> struct short_copies<level::any> { ... };
//     template <> struct short_copies<level::avx512> { ... };
#pragma once

#include "machine/inlining.h"
#include "machine/level.h"

#include <utility>

namespace machine {

// A level without a way of its own takes that of the one below it.
constexpr level below(level at) { return at == level::avx512 ? level::avx2 : level::any; }

// What a function is at a level: itself, unless there is a specialisation for the level or one below it.
template <auto body, level at> inline constexpr auto way_of = way_of<body, below(at)>;
template <auto body> inline constexpr auto way_of<body, level::any> = body;

// A function compiled for each level.
template <auto body> struct compiled;
template <class Result, class... Arguments, Result (*body)(Arguments...)> struct compiled<body> {
    static Result at_lowest(Arguments... arguments) { return body(arguments...); }
#if defined(MACHINE_IS_X86_64)
    CODE_FOR_AVX2 static Result at_avx2(Arguments... arguments) { return body(arguments...); }
    CODE_FOR_AVX512 static Result at_avx512(Arguments... arguments) { return body(arguments...); }
#endif
};

// The best of one function per level, which are the same one where levels differ in nothing but the compiler's code.
// Needs nothing of the library that has to be ready before.
template <auto any, auto avx2, auto avx512> ALWAYS_INLINE auto best_of()
{
#if defined(MACHINE_IS_X86_64)
    if constexpr (lowest != highest)
        __builtin_cpu_init();
    if constexpr (highest >= level::avx512)
        if (has(level::avx512))
            return &compiled<avx512>::at_avx512;
    if constexpr (highest >= level::avx2)
        if (has(level::avx2))
            return &compiled<avx2>::at_avx2;
#endif
    return &compiled<any>::at_lowest;
}

// Calls the best of them.
template <auto any, auto avx2, auto avx512, class... Arguments>
ALWAYS_INLINE auto call_best_of(Arguments &&...arguments)
{
#if defined(MACHINE_IS_X86_64)
    if constexpr (highest >= level::avx512)
        if (has(level::avx512))
            return compiled<avx512>::at_avx512(std::forward<Arguments>(arguments)...);
    if constexpr (highest >= level::avx2)
        if (has(level::avx2))
            return compiled<avx2>::at_avx2(std::forward<Arguments>(arguments)...);
#endif
    return compiled<any>::at_lowest(std::forward<Arguments>(arguments)...);
}

// Of a function.
template <auto body, class... Arguments> ALWAYS_INLINE auto at_best_level(Arguments &&...arguments)
{
    return call_best_of<way_of<body, level::any>, way_of<body, level::avx2>, way_of<body, level::avx512>>(
        std::forward<Arguments>(arguments)...);
}

// Of a function template over levels, Body::at.
template <class Body, class... Arguments> ALWAYS_INLINE auto at_best_level(Arguments &&...arguments)
{
    return call_best_of<&Body::template at<level::any>, &Body::template at<level::avx2>,
                        &Body::template at<level::avx512>>(std::forward<Arguments>(arguments)...);
}

} // namespace machine

// What the loader calls before anything else in the library is ready: sanitizers and a fuzzer's counters, which clang
// alone has, may not add to it.
#if defined(__clang__)
#define BEFORE_ALL_ELSE __attribute__((no_sanitize("address", "thread", "undefined", "coverage")))
#else
#define BEFORE_ALL_ELSE __attribute__((no_sanitize("address", "thread", "undefined")))
#endif

// Defines `function` as body<level>, a function template over levels.
#define PICKED_AT_LOAD(function, body)                                                                                 \
    extern "C" BEFORE_ALL_ELSE decltype(&function) choose_##function()                                                 \
    {                                                                                                                  \
        return machine::best_of<body<machine::level::any>, body<machine::level::avx2>,                                 \
                                body<machine::level::avx512>>();                                                       \
    }                                                                                                                  \
    decltype(function) function __attribute__((ifunc("choose_" #function)))
