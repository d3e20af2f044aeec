/* libbcast services: binary values. See column.h here for what a service is.
 *
 * A negative result is a failure code, which becomes the row's unless something
 * else is said.
 */
#ifndef BCAST_SERVICES_BINARY_H
#define BCAST_SERVICES_BINARY_H

#include <bcast/values.h>

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

enum { NBIN_MAX = BCAST_BINARY_MAX }; /* bytes of the longest binary value */

/* A binary value on its way into a column. */
typedef struct nbin {
    int32_t length;
    uint8_t bytes[NBIN_MAX];
} nbin;

/* The bytes that text_len hexadecimal digits spell, into out. has_prefix is 1 if the text starts with 0x or 0X, else 0.
 * text_len may be anything, 0 included. */
int32_t nbin_from_char_ex(const char *text, uint32_t text_len, nbin *out, int32_t has_prefix);

/* The hexadecimal text of len bytes, two digits each without a prefix, and a NUL behind them, into buf, which has room
 * for it. flag is 0. The casts to hex_char and hex_varchar do not look at the result: there is to be a NUL in any case.
 */
int32_t nbin_to_char_ex(const void *bytes, uint32_t len, char *buf, int32_t flag);

/* Stores the integer that len bytes hold in *out, an integer of width bytes: 1, 2, 4 or 8. Fails where it does not fit.
 * Reads what the casts from integers to binary and varbinary wrote as the same integer. */
int32_t nbin_to_int_by_ntype_len(const void *bytes, uint32_t len, int32_t width, void *out);

/* The same for a width of 8. */
int32_t nbin_to_lint64(const void *bytes, uint32_t len, int64_t *out);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
