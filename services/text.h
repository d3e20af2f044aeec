/* libbcast services: numbers in text and text of numbers. See column.h here for
 * what a service is.
 */
#ifndef BCAST_SERVICES_TEXT_H
#define BCAST_SERVICES_TEXT_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* Reads the number that the length bytes at text spell, which are not
 * terminated. Stores it in *result and returns 0 or a positive value; or returns
 * a negative code, which becomes the row's, with *result unused. length is 0
 * only for a char or varchar2 element whose length word is a multiple of 65536. */
int32_t str2int64(const char *text, int32_t length, int64_t *result);

/* Writes the decimal text of value to buffer, which has room for 16 bytes, and
 * its byte count to *out_len. No terminator is asked for. Returns a negative
 * code, which becomes the row's, when the text is longer than limit bytes. */
int32_t str_from_int(int32_t value, int32_t limit, char *buffer, int32_t *out_len);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
