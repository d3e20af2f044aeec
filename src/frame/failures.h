// What becomes of a row, and the two ways to go on when it has failed.
#pragma once

#include <cstdint>

// The outcome of a row: a negative code if it failed. A plain number is one.
struct row_outcome {
    int32_t code;
    bool ends_cast = false;

    row_outcome(int32_t row_code) : code(row_code) {}
};

// A failure that is none of the row's data: it ends the cast also where failures are captured.
inline row_outcome end_of_cast(int32_t code)
{
    row_outcome outcome = code;
    outcome.ends_cast = true;
    return outcome;
}

// The outcome of a walk, which is a cast's status: 0, the code of the row that ended it, or the last code captured.
struct walk_outcome {
    int32_t status;
    bool reached_end;

    operator int32_t() const { return status; }
};

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
