/* libbcast services: numeric predicates and conversions. See column.h here for what a service is.
 */
#ifndef BCAST_SERVICES_NUMERIC_H
#define BCAST_SERVICES_NUMERIC_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* Negative if value is no number that this system accepts; it decides for infinity and NaN. Any other result: it is
 * one. */
int32_t ntype_is_double_overflow(double value);

/* Exactly ERR_OVERFLOW if value is outside of int32; its callers compare with that code and do not look at the sign. */
int32_t ntype_is_lint_overflow(int64_t value);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
