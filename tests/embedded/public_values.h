/* What the named values of the public headers are, for C and for C++; and a cast by them in each of the two. */
#ifndef BCAST_TESTS_PUBLIC_VALUES_H
#define BCAST_TESTS_PUBLIC_VALUES_H

#include <bcast/bcast.h>
#include <bcast/embedded.h>

#include <assert.h>

static_assert(BCAST_OP_LESS == '<' && BCAST_OP_EQUAL == '=' && BCAST_OP_GREATER == '>', "operators");
static_assert(BCAST_OP_LESS_EQUAL == 0x3f5 && BCAST_OP_GREATER_EQUAL == 0x3f6, "operators");
static_assert(BCAST_OP_UNEQUAL == 0x3f8, "operators");
static_assert(VERDICT_NONE == INT32_MIN && VERDICT_BELOW == 5 && VERDICT_ABOVE == 6, "verdicts");

static_assert(TYPE_DATE == 14 && TYPE_TIME == 15 && TYPE_DATETIME == 16, "temporal types");
static_assert(TYPE_TIME_TZ == 22 && TYPE_DATETIME_TZ == 23, "temporal types");
static_assert(TZ_NO_SHIFT == 480, "zone");
static_assert(BCAST_YEAR_FIRST == 0 && BCAST_DAY_FIRST == 1 && BCAST_MONTH_FIRST == 2, "orders");

static_assert(IV_YEAR == 0 && IV_YEAR_TO_MONTH == 1 && IV_MONTH == 2, "shapes of ivym");
static_assert(IV_DAY == 3 && IV_DAY_TO_HOUR == 4 && IV_DAY_TO_MINUTE == 5 && IV_DAY_TO_SECOND == 6, "shapes of ivdt");
static_assert(IV_HOUR == 7 && IV_HOUR_TO_MINUTE == 8 && IV_HOUR_TO_SECOND == 9, "shapes of ivdt");
static_assert(IV_MINUTE == 10 && IV_MINUTE_TO_SECOND == 11 && IV_SECOND == 12, "shapes of ivdt");
static_assert(BCAST_IV_WORD(IV_DAY_TO_SECOND, 2, 6) == 0x0626, "iv_word");
static_assert(BCAST_IV_WORD(IV_SECOND, 9, 0) == 0x0C90, "iv_word");

static_assert(BCAST_DEC_SHAPE(10, 2) == 0x0A02 && BCAST_DEC_SHAPE(255, 255) == 0xFFFF, "length of a dec");
static_assert(BCAST_DEC_TEXT_LENGTH(20, BCAST_DEC_SHAPE(10, 2)) == 0x0A020014, "length of the text of a dec");
static_assert(BCAST_DEC_TEXT_LENGTH(65535, BCAST_DEC_SHAPE(255, 1)) == -0xFE0001, "length of the text of a dec");
static_assert(BCAST_DEC_TEXT_LENGTH(20, BCAST_DEC_NO_SHAPE) == 0x00810014, "length of the text of a dec");

static_assert(BCAST_MODE_PLAIN == 0 && BCAST_MODE_EMPTY_IS_NULL == 2 && BCAST_MODE_CUT_INTERVALS == 3, "modes");
static_assert(BCAST_CUT_BY_CHARSET_10 == 0 && BCAST_CUT_BY_CHARSET_1 == 1 && BCAST_CUT_BY_CHARSET_6 == 2, "modes");
static_assert(BCAST_NO_SUCH_CAST == 1, "no such cast");

static_assert(BCAST_NUMBER_TEXT_MAX == 319 && BCAST_DATE_TEXT_LIMIT == 256, "limits");
static_assert(BCAST_BINARY_MAX == 32768 && BCAST_HEX_VALUE_MAX == 32767 && BCAST_TEXT_ROOM == 504, "limits");

#ifdef __cplusplus
extern "C" {
#endif

/* The text as day(2) to second(6), by bcast_varchar_to_ivdt and the embedded services: the cast's status. */
int32_t read_day_to_second_in_c(const char *text, ivdt *value);

/* What the functions of values.h read in a word, in this order: shape, leading, fraction; len, prec. */
void read_words_in_c(uint16_t iv_word, int32_t dec_shape, uint8_t parts[5]);

#ifdef __cplusplus
}
#endif

#endif
