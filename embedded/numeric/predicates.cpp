// Whether a number fits a type, for casts that ask first.
#include "embedded/numeric/in_int64.h"

#include <bcast/codes.h>
#include <services/numeric.h>

#include <cmath>

// Infinity and NaN are no numbers.
int32_t ntype_is_double_overflow(double value) { return std::isfinite(value) ? 0 : ERR_OVERFLOW; }

// Half way from the largest float to the next power of two rounding gives infinity.
int32_t ntype_is_float_overflow(double value) { return std::fabs(value) < 0x1.ffffffp127 ? 0 : ERR_OVERFLOW; }

int32_t ntype_is_lint64_overflow(double value) { return embedded::in_int64(value) ? 0 : ERR_OVERFLOW; }

int32_t ntype_is_lint_overflow(int64_t value) { return value == int32_t(value) ? 0 : ERR_OVERFLOW; }
