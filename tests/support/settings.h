// The library's settings for the time of a test.
#pragma once

#include <bcast/bcast.h>

#include <cstdint>

namespace bcast::test {

class settings {
public:
    explicit settings(int32_t compat_mode, int32_t compat_mode2 = 0) { bcast_dll_var_init(compat_mode, compat_mode2); }
    ~settings() { bcast_dll_var_init(0, 0); }
    settings(const settings &) = delete;
    settings &operator=(const settings &) = delete;
};

} // namespace bcast::test
