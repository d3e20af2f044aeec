/* libbcast: what the numbers mean that casts take and give.
 *
 * Comparison operators and verdicts, temporal types, the words that the shapes of
 * intervals and decimals are packed in, the modes of the library, and the longest
 * values that a cast takes.
 */
#ifndef BCAST_VALUES_H
#define BCAST_VALUES_H

#include <stdint.h>

#ifdef __cplusplus
#define BCAST_INLINE static constexpr
#else
#define BCAST_INLINE static inline
#endif

/* ---- Comparison of a text with an integer column ----------------------- */

/* cmp_op, the comparison that the text is for. */
enum bcast_comparison {
    BCAST_OP_LESS = '<',
    BCAST_OP_EQUAL = '=',
    BCAST_OP_GREATER = '>',
    BCAST_OP_LESS_EQUAL = 0x3f5,
    BCAST_OP_GREATER_EQUAL = 0x3f6,
    BCAST_OP_UNEQUAL = 0x3f8
};

/* What is known of a text in place of an integer. In a target column it is the flag of the row. */
enum bcast_verdict {
    VERDICT_NONE = INT32_MIN, /* there is an integer; never a flag */
    VERDICT_BELOW = 5,        /* the text lies below every value of the target's type */
    VERDICT_ABOVE = 6         /* above every value; under = and <> it equals none, on whichever side it lies */
};

/* ---- Temporal types ---------------------------------------------------- */

enum bcast_temporal_type {
    TYPE_DATE = 14,
    TYPE_TIME = 15,
    TYPE_DATETIME = 16,
    TYPE_TIME_TZ = 22,
    TYPE_DATETIME_TZ = 23
};

enum { TZ_NO_SHIFT = 480 }; /* the zone, in minutes, that the casts from text to a local zone leave as it is */

/* ---- The shape of an interval: iv_word --------------------------------- */

/* Bits 8 to 15 of an iv_word: the fields of the type. The first three are those of ivym, the others of ivdt. A number
 * can only become an interval of one field. */
enum bcast_interval_shape {
    IV_YEAR = 0,
    IV_YEAR_TO_MONTH = 1,
    IV_MONTH = 2,
    IV_DAY = 3,
    IV_DAY_TO_HOUR = 4,
    IV_DAY_TO_MINUTE = 5,
    IV_DAY_TO_SECOND = 6,
    IV_HOUR = 7,
    IV_HOUR_TO_MINUTE = 8,
    IV_HOUR_TO_SECOND = 9,
    IV_MINUTE = 10,
    IV_MINUTE_TO_SECOND = 11,
    IV_SECOND = 12
};

/* An iv_word, as a constant where its parts are: `day(2) to second(6)` is BCAST_IV_WORD(IV_DAY_TO_SECOND, 2, 6).
 * leading, in bits 4 to 7: the most digits of the first field, 1 to 9, or 0 where the type does not say. fraction, in
 * bits 0 to 3: the digits of the fraction of a second, 0 to 6. The casts look at the shape alone; the services read the
 * digits. */
#define BCAST_IV_WORD(shape, leading, fraction) ((uint16_t)((shape) << 8 | (leading) << 4 | (fraction)))

BCAST_INLINE uint8_t bcast_iv_shape(uint16_t iv_word) { return (uint8_t)(iv_word >> 8); }
BCAST_INLINE uint8_t bcast_iv_leading(uint16_t iv_word) { return (uint8_t)(iv_word >> 4 & 0xF); }
BCAST_INLINE uint8_t bcast_iv_fraction(uint16_t iv_word) { return (uint8_t)(iv_word & 0xF); }

/* ---- The shape of a dec: length ---------------------------------------- */

/* length of a dec target, as a constant where its parts are: dec(10,2) is BCAST_DEC_SHAPE(10, 2). len, in bits 8 to 15:
 * the digits in all. prec, in bits 0 to 7: those behind the point. */
#define BCAST_DEC_SHAPE(len, prec) ((int32_t)((uint32_t)(len) << 8 | (uint32_t)(prec)))

BCAST_INLINE uint8_t bcast_dec_len(int32_t shape) { return (uint8_t)((uint32_t)shape >> 8); }
BCAST_INLINE uint8_t bcast_dec_prec(int32_t shape) { return (uint8_t)shape; }

/* length of the casts from dec to char, varchar and varchar2: the target's length, 0 to 65535, in bits 0 to 15, the
 * shape of the source in bits 16 to 31. */
#define BCAST_DEC_TEXT_LENGTH(length, shape) ((int32_t)((uint32_t)(shape) << 16 | (uint32_t)(length)))

/* There as the source's shape, or as its prec with any len: it has none, and the text has the digits that the value
 * has. */
enum { BCAST_DEC_NO_SHAPE = 0x81 };

/* ---- The modes of the library ------------------------------------------ */

/* compat_mode. Any other value: none of this. */
enum bcast_compat_mode {
    BCAST_MODE_PLAIN = 0,
    BCAST_MODE_EMPTY_IS_NULL = 2, /* an explicit cast that cuts a text ahead of its first whole character, and empty
                                   * hexadecimal text into varbinary, make a null; the text of a dec has no shape */
    BCAST_MODE_CUT_INTERVALS = 3  /* the text of an interval that is too long is cut */
};

/* compat_mode2: the character set, as services number them, in which an explicit cast cuts a text. Any other value: set
 * 10. */
enum bcast_compat_mode2 { BCAST_CUT_BY_CHARSET_10 = 0, BCAST_CUT_BY_CHARSET_1 = 1, BCAST_CUT_BY_CHARSET_6 = 2 };

/* ---- A result that is neither 0 nor a failure -------------------------- */

enum { BCAST_NO_SUCH_CAST = 1 }; /* of the casts from intervals to numbers, which do nothing */

/* ---- Longest values, in bytes ------------------------------------------ */

enum {
    BCAST_NUMBER_TEXT_MAX = 319, /* as far as the casts from characters to dec, float and double read a text */
    BCAST_DATE_TEXT_LIMIT = 256, /* text so long, or longer, is refused by the _fast casts */
    BCAST_BINARY_MAX = 32768,    /* length of a binary target; text with its blanks into text and blob */
    BCAST_HEX_VALUE_MAX = 32767, /* a binary value that has a hexadecimal text */
    BCAST_TEXT_ROOM = 504        /* the buffer for the text of a float, double, temporal value or interval */
};

#undef BCAST_INLINE

#endif
