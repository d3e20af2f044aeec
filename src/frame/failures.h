// The two ways to go on when a row has failed.
#pragma once

#include <cstdint>

// A cast without err_codes: the first failure ends it.
struct stop {
    static bool captured(uint32_t, int32_t) { return false; }
    static int32_t status() { return 0; }
};

// A cast with err_codes: the failure of output row i is noted there and the walk goes on; without, as above. The result
// is the last code noted, also where later rows succeeded.
struct capture {
    int32_t *err_codes;
    uint16_t *err_count;
    int32_t last = 0;

    bool captured(uint32_t i, int32_t code)
    {
        if (!err_codes)
            return false;
        err_codes[i] = code;
        ++*err_count;
        last = code;
        return true;
    }
    int32_t status() const { return last; }
};
