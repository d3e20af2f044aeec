#include <services/numeric.h>

#include <cmath>

#include <bcast/codes.h>

// Infinity and NaN are no numbers.
int32_t ntype_is_double_overflow(double value) { return std::isfinite(value) ? 0 : ERR_OVERFLOW; }

int32_t ntype_is_lint_overflow(int64_t value) { return value == static_cast<int32_t>(value) ? 0 : ERR_OVERFLOW; }
