/* libbcast services: intervals. See column.h here for what a service is.
 *
 * A word is an iv_word, the shape of an interval type (bcast/values.h). A negative
 * result is a failure code, which becomes the row's, unless something else is said.
 */
#ifndef BCAST_SERVICES_INTERVAL_H
#define BCAST_SERVICES_INTERVAL_H

#include <bcast/column.h>
#include <bcast/values.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* Sets every field to 0. */
void vqdt_clear_interval_ym_info(ivym *interval);
void vqdt_clear_interval_dt_info(ivdt *interval);

/* Whether an interval fits the shape; may bring it into its normal form. */
int32_t interval_ym_validate(ivym *interval, uint16_t word);
int32_t interval_dt_validate(ivdt *interval, uint16_t word);

/* The interval that a NUL-terminated text spells. Fills all fields, iv_word included. */
int32_t vq_interval_ym_from_char(void *env, const char *text, ivym *interval, uint16_t word);
int32_t vq_interval_dt_from_char(void *env, const char *text, ivdt *interval, uint16_t word);

/* Writes the text, with a NUL behind it, to text, which has room for BCAST_TEXT_ROOM bytes. 0 is a failure, anything
 * else a success. */
int32_t vq_interval_ym_to_char(const ivym *interval, char *text, uint16_t word);
int32_t vq_interval_dt_to_char(const ivdt *interval, char *text, uint16_t word);

/* Rebuilds a value in the shape that result's iv_word states; its other fields are not set. one is 1. */
int32_t cast_interval_ym(ivym *result, const ivym *from, int32_t one);
int32_t cast_interval_dt(ivdt *result, const ivdt *from, int32_t one);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
