// Services that are one of two functions of their type, for each kind of machine: chosen once, where the loader binds
// their name, so that a call costs what any call does.
//
//     SERVICE_BY_MACHINE(str2int64, embedded::text_to_int64_any, embedded::text_to_int64_avx512);
#pragma once

#include "embedded/base/short_text.h"

// The loader calls what chooses before anything else in the library is ready: sanitizers may not add to it.
#define SERVICE_BY_MACHINE(service, any, avx512)                                                                       \
    extern "C" __attribute__((no_sanitize("address", "thread", "undefined"))) decltype(&service) choose_##service()    \
    {                                                                                                                  \
        return embedded::machine_has_avx512() ? avx512 : any;                                                          \
    }                                                                                                                  \
    decltype(service) service __attribute__((ifunc("choose_" #service)))
