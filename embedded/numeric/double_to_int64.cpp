// A double as an integer.
#include "embedded/numeric/in_int64.h"

#include <bcast/codes.h>
#include <services/numeric.h>

// To the nearest integer, ties to even, whatever the rounding mode is: cuts, and then looks at what it cut. A value
// that has a fraction is far from the limits. Fractions are as good as random: no branch on them.
int32_t dou2int64(double value, int64_t *out)
{
    if (!embedded::in_int64(value))
        return ERR_OVERFLOW;
    const auto whole = int64_t(value);
    const double rest = value - double(whole);
    const int64_t odd = whole & 1;
    const int64_t up = int64_t{rest > 0.5} | (int64_t{rest == 0.5} & odd);
    const int64_t down = int64_t{rest < -0.5} | (int64_t{rest == -0.5} & odd);
    *out = whole + up - down;
    return 0;
}
