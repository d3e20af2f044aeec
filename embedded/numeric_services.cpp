#include <services/numeric.h>

#include <cmath>

#include <bcast/codes.h>

namespace {

bool in_int64(double value) { return value >= -0x1p63 && value < 0x1p63; }

} // namespace

// Infinity and NaN are no numbers.
int32_t ntype_is_double_overflow(double value) { return std::isfinite(value) ? 0 : ERR_OVERFLOW; }

// Half way from the largest float to the next power of two rounding gives infinity.
int32_t ntype_is_float_overflow(double value) { return std::fabs(value) < 0x1.ffffffp127 ? 0 : ERR_OVERFLOW; }

int32_t ntype_is_lint64_overflow(double value) { return in_int64(value) ? 0 : ERR_OVERFLOW; }

int32_t ntype_is_lint_overflow(int64_t value) { return value == static_cast<int32_t>(value) ? 0 : ERR_OVERFLOW; }

// To the nearest integer, ties to even, whatever the rounding mode is: cuts, and then looks at what it cut. A value
// that has a fraction is far from the limits. Fractions are as good as random: no branch on them.
int32_t dou2int64(double value, int64_t *out)
{
    if (!in_int64(value))
        return ERR_OVERFLOW;
    const auto whole = static_cast<int64_t>(value);
    const double rest = value - static_cast<double>(whole);
    const int64_t odd = whole & 1;
    const int64_t up = int64_t{rest > 0.5} | (int64_t{rest == 0.5} & odd);
    const int64_t down = int64_t{rest < -0.5} | (int64_t{rest == -0.5} & odd);
    *out = whole + up - down;
    return 0;
}
