/* libbcast services: numeric predicates and conversions. See column.h here for what a service is.
 */
#ifndef BCAST_SERVICES_NUMERIC_H
#define BCAST_SERVICES_NUMERIC_H

#include <bcast/values.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* Negative if value is no number that this system accepts; it decides for infinity and NaN. Any other result: it is
 * one. The code becomes the row's in the casts from varchar to double and from double to dec; the others have
 * ERR_OVERFLOW. */
int32_t ntype_is_double_overflow(double value);

/* Negative, which becomes the row's code, if value does not fit a float. */
int32_t ntype_is_float_overflow(double value);

/* Negative if value lies outside of int64. The code becomes the row's in the cast from double; that from float has
 * ERR_OVERFLOW. */
int32_t ntype_is_lint64_overflow(double value);

/* Exactly ERR_OVERFLOW if value is outside of int32; its callers compare with that code and do not look at the sign. */
int32_t ntype_is_lint_overflow(int64_t value);

/* Stores value, which may be a NaN, as an integer in *out; or returns a negative code, which becomes the row's. */
int32_t dou2int64(double value, int64_t *out);

/* What value was before it came to vq_dou2char. */
enum bcast_floating { BCAST_WAS_FLOAT = 0, BCAST_WAS_DOUBLE = 1 };

/* Writes value to buf, which has room for BCAST_TEXT_ROOM bytes, and returns the length of the text, which is not
 * terminated. kind is a bcast_floating. Cannot fail: infinity and NaN have a text. */
int32_t vq_dou2char(int32_t kind, double value, char *buf);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
