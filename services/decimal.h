/* libbcast services: decimals. See column.h here for what a service is.
 *
 * An xdec is private to these services, but for bytes 0 and 1: byte 0 is 0x80 and
 * byte 1 is 0 for the value zero, and neither is so for any other value. It need
 * not be aligned.
 *
 * A shape is len, the digits in all, and prec, those behind the point; each 0 to
 * 255, as a column declares them. What does not fit a shape fails.
 *
 * A negative result is a failure code, which becomes the row's; out is then not
 * read.
 */
#ifndef BCAST_SERVICES_DECIMAL_H
#define BCAST_SERVICES_DECIMAL_H

#include <bcast/column.h>
#include <bcast/values.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

int32_t xdec_from_int64_with_len_prec(int64_t value, int32_t len, int32_t prec, xdec *out);

/* The number that text_len bytes spell; 1 to BCAST_NUMBER_TEXT_MAX of them, or 0 for an element whose length word is a
 * multiple of 65536. */
int32_t xdec_from_char_with_len_prec(const char *text, uint16_t text_len, int32_t len, int32_t prec, xdec *out);

/* Has to refuse infinity and NaN. */
int32_t xdec_from_double_with_len_prec(double value, int32_t len, int32_t prec, xdec *out);

/* src and out are two records. */
int32_t xdec_from_xdec_with_len_prec(const xdec *src, int32_t len, int32_t prec, xdec *out);

/* The value; *status is stored in any case, and the result is not used where it is negative. */
double xdec_get_double(const xdec *src, int32_t *status);

int32_t xdec_get_int64(const xdec *src, int64_t *out);

/* Writes the text, which needs no terminator, to buf, which has room for buf_size bytes, and its length to *out_len.
 * The text follows the shape, or has none if len and prec are both 0. len is a
 * signed byte extended to 16 bits here, so that one above 127 comes as 0xFF80 and more. */
int32_t xdec_to_char_with_zero(const xdec *src, char *buf, int32_t buf_size, uint16_t len, int32_t prec,
                               int32_t *out_len);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
