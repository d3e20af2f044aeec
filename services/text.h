/* libbcast services: text. Numbers in text and text of numbers, character sets,
 * locators. See column.h here for what a service is.
 */
#ifndef BCAST_SERVICES_TEXT_H
#define BCAST_SERVICES_TEXT_H

#include <bcast/values.h>

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

enum { INT_TEXT_ROOM = 16 }; /* the buffer of str_from_int */

/* Writes the decimal text of value to buffer, which has room for INT_TEXT_ROOM bytes,
 * and its byte count to *out_len. No terminator is asked for. Returns a negative
 * code, which becomes the row's, when the text is longer than limit bytes. */
int32_t str_from_int(int32_t value, int32_t limit, char *buffer, int32_t *out_len);

/* Reads the number that the length bytes at text spell, for a comparison with an
 * integer: one that is not whole is cut toward zero. Returns
 *
 *   0                the number is whole; *result is it, *sign is not read
 *   a positive value *result is the number cut toward zero, *sign is '+' or '-'
 *   ERR_ABOVE_RANGE  it lies above the range of int64; *result is not read
 *   ERR_BELOW_RANGE  it lies below
 *   another negative code, which becomes the cast's: text is no number
 *
 * length is 0 to 65535. */
int32_t str2int64_directly(const char *text, int32_t length, int64_t *result, char *sign);

/* Reads the number that the length bytes at text spell, 0 to BCAST_NUMBER_TEXT_MAX of
 * them. Stores it in *result and returns 0 or a positive value; or returns a negative
 * code, which becomes the row's. */
int32_t utl_digit_from_char(const char *text, uint16_t length, double *result);

/* How much of text a target of limit bytes takes in whole characters of a
 * character set, which is 10, 1 or 6: stores the byte count in *valid_bytes; 0
 * if not even the first character fits. No caller reads *valid_chars, or the
 * result. */
int32_t vq_get_valid_chars(const char *text, int32_t limit, int32_t charset, uint32_t *valid_chars,
                           uint32_t *valid_bytes);

/* Whether the *length bytes at text are a bfile locator: 0 if not. If they are,
 * *length is the length to store, which is at most what it was, and *is_null
 * tells whether the text stands for no locator at all. */
int32_t utl_is_valid_bfile_str(const char *text, uint32_t *length, int32_t *is_null);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
