/* libbcast services: dates, times and zones. See column.h here for what a service
 * is.
 *
 * A vqtime is private to these services. One form serves all five types: it has a
 * date, a time with six fraction digits, and a zone in minutes. A negative result
 * is a failure code, which becomes the row's, unless something else is said.
 */
#ifndef BCAST_SERVICES_TEMPORAL_H
#define BCAST_SERVICES_TEMPORAL_H

#include <bcast/column.h>
#include <bcast/values.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

enum { PARSE_NULL = 109 }; /* result of a parser: the text denotes no value, and the row becomes null */
enum { FIELD_MINUTE = 5 }; /* field of vqtime_add_by_fmt */

/* ---- Text and integers to values ---- */

/* The date or time that length characters spell, from 1 on and below BCAST_DATE_TEXT_LIMIT, with a NUL behind.
 * parse_word and parse_ptr are the cast's own arguments. zero is 0. Any result that is neither negative nor PARSE_NULL
 * is a success. */
int32_t char_to_date_simple_with_alen(const char *text, int32_t length, void *parse_ptr, uint16_t parse_word,
                                      vqtime *result, int32_t zero);

/* The same for text without a NUL, of any length but 0. type is TYPE_DATE or TYPE_DATETIME. Nobody reads *aux. */
int32_t vqtime_from_char_ex2(const char *text, int32_t length, int32_t type, vqtime *result, int32_t *aux);

/* The last step before a value from text is stored. */
void vqtime_glgl_adjust_ignore(vqtime *value);

int32_t vqtime_from_long(int64_t number, vqtime *result); /* for date */
int32_t time_from_long(int64_t number, vqtime *result);   /* for time and datetime */

/* ---- Values to values ---- */

/* The zone, in the low 16 bits, signed. */
int32_t vqtime_get_tz(const vqtime *value);

/* Writes a zone, of which the low 16 bits count; date and time stay. */
void vqtime_set_tz(vqtime *value, int32_t tz);

/* Adds `amount` of a field to a value, and carries. result may be value. Where it fails, result holds what the caller
 * may store. */
int32_t vqtime_add_by_fmt(const vqtime *value, int32_t field, int64_t amount, vqtime *result);

/* Rounds the second to so many fraction digits, and carries. result may be value, and is the column's own element in
 * some casts, which holds what a failure leaves. 0 or what else it returns may become a cast's status. */
int32_t vqtime_round_by_prec(const vqtime *value, uint16_t digits, vqtime *result);

/* Clears what a bcast_temporal_type does not hold. */
void vqtime_reset(vqtime *value, int32_t type);

/* ---- Values to text: 0 is a failure, anything else a success. text has room for BCAST_TEXT_ROOM bytes and gets a NUL
 * behind its characters. zero is 0.
 * ---- */

/* A value on its way into text, between two of these services. */
typedef struct vqdt_decoded {
    uint64_t words[7];
} vqdt_decoded;

void vqdt_encode_fast(const vqtime *value, vqdt_decoded *decoded); /* of a datetime */
void vqdt_date_encode_fast(const vqtime *value, vqdt_decoded *decoded);
void vqdt_time_encode_fast(const vqtime *value, vqdt_decoded *decoded);

int32_t vqdt_to_char(const vqdt_decoded *decoded, char *text, int32_t zero);
int32_t vq_date_to_char(const vqdt_decoded *decoded, char *text);
int32_t vq_time_to_char(const vqdt_decoded *decoded, char *text, int32_t zero);

/* type is TYPE_TIME_TZ or TYPE_DATETIME_TZ, digits the most fraction digits to show. */
int32_t vqtime_tz_to_char(const vqtime *value, int32_t type, int32_t digits, char *text);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
