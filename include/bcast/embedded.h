/* libbcast embedded services: columns for programs that have no engine.
 *
 * libbcast_embedded.so supplies every service that the casts import, and the
 * columns below. A program links both libraries, fills a source column, makes
 * room in a target column, calls a cast on bcast_column_vector() of both, and
 * reads the target:
 *
 *     bcast_pool *pool = bcast_pool_new();
 *     bcast_column *src = bcast_column_new(BCAST_VARCHAR);
 *     bcast_column *dst = bcast_column_new(BCAST_INT);
 *     bcast_column_append_text(src, "42", 2);
 *     bcast_column_make_room(dst, 1);
 *     int32_t status = bcast_varchar_to_int(NULL, pool, bcast_column_vector(src),
 *                                           bcast_column_vector(dst), 1, NULL, NULL);
 *
 * Pass the pool as heap, and not null; env is not looked at. A pool, and a
 * column that is being written, belong to one thread at a time. A cast that
 * finds no memory for a value of its target cannot report that: the process
 * ends with a message.
 *
 * What the services mean
 *
 *   A number in text: blanks around it (bytes 9 to 13 and 32), a sign, digits
 *   with at most one point, and an exponent: "42", " -7.5 ", "1e3", ".5", "5.".
 *   Anything else fails with ERR_BAD_CONVERSION. As an integer a fraction is
 *   rounded, ties away from zero; outside of int64: ERR_OVERFLOW. As a double it
 *   is rounded correctly; too large: ERR_OVERFLOW.
 *
 *   A decimal has 1 to 38 digits and is exact. Fitted to a shape it is rounded,
 *   ties away from zero; too many digits before the point: ERR_OVERFLOW. No shape
 *   (len 0, prec 0): 38 digits, at most 38 behind the point. A double becomes the
 *   shortest decimal that reads back as the same double, so that 0.285 with two
 *   digits is 0.29. Infinity and NaN are no numbers: ERR_OVERFLOW. As text, plain
 *   notation with a digit before the point; with a shape just prec digits behind
 *   it, without one no zeros at the end.
 *
 *   A double as an integer: the nearest one, ties to even. As text: the shortest
 *   digits that read back the same, from 1e-5 to below 1e15 in fixed notation.
 *
 *   Character sets: 10 UTF-8, 1 GB18030, 6 EUC-KR; in any other each byte is a
 *   character. A bfile locator: DIRECTORY:file; blank text stands for none.
 *
 *   Hexadecimal text: digits of either case, an odd count with a zero digit in
 *   front; none is a value of no bytes. Any other byte: ERR_BAD_CONVERSION. More
 *   than 32768 bytes: ERR_TRUNCATED. Written in upper case. An integer in bytes:
 *   the most significant first. A shorter value is extended with zeros; of a
 *   longer one leading zeros are dropped, then FF bytes that repeat the sign;
 *   longer still: ERR_OVERFLOW.
 *
 *   Dates are those of the proleptic Gregorian calendar, years 0001 to 9999.
 *   Text: YYYY-MM-DD, YYYY/MM/DD or YYYYMMDD, HH:MM[:SS[.f]], or both with a blank
 *   or T between, and a zone Z, +HH, +HHMM or +HH:MM up to 14:00 behind. With
 *   BCAST_DAY_FIRST as parse_word also DD.MM.YYYY and DD/MM/YYYY, with
 *   BCAST_MONTH_FIRST MM/DD/YYYY; parse_ptr is not looked at. Blanks alone
 *   are no value. A time alone has the date 1900-01-01; a text without a zone
 *   reads as +08:00, which the casts leave as it is. Fractions are rounded to six
 *   digits, ties up, with a carry to the date. Anything else, and what lies beyond
 *   the calendar: ERR_BAD_DATETIME. An integer is YYYYMMDD as a date, HHMMSS or
 *   YYYYMMDDHHMMSS as a time. Written as 2023-07-14 12:34:56.5+02:00.
 *
 *   An interval in text has the fields of its shape, "3-11" or "5 12:30:07.25", or
 *   a lone number for the leading one. In an iv_word 0 leading digits, or more than
 *   9, are 9, and more than 6 of the fraction are 6.
 *
 *   An integer as text: its decimal digits, with a sign where it is negative.
 *   Longer than the target: ERR_TARGET_TOO_SHORT.
 *
 * Failures: operations that return int32_t give 0 or a code of codes.h:
 * ERR_NO_MEMORY when memory ran out, ERR_BAD_CONVERSION when the operation does
 * not suit the column's type, ERR_OVERFLOW when a column would get more than
 * BCAST_COLUMN_MAX_ROWS rows, or a row more bytes than an element can count. A
 * failed operation leaves the column as it was.
 */
#ifndef BCAST_EMBEDDED_H
#define BCAST_EMBEDDED_H

#include "codes.h"
#include "column.h"
#include "type.h"

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* A selection vector can name rows 0 to 65535. */
enum { BCAST_COLUMN_MAX_ROWS = 65536 };

/* parse_word of the casts from text to dates. Any other value: BCAST_YEAR_FIRST. Where the year stands first it is
 * read so in any order. */
enum bcast_date_order { BCAST_YEAR_FIRST = 0, BCAST_DAY_FIRST = 1, BCAST_MONTH_FIRST = 2 };

/* ---- Types and codes --------------------------------------------------- */

/* The SQL name of a type, "tinyint" to "null"; null for no type. Static text. */
const char *bcast_type_name(bcast_type type);

/* The type of that name (name_len bytes), or BCAST_TYPE_COUNT. */
bcast_type bcast_type_from_name(const char *name, size_t name_len);

/* Bytes of one element in a column of that type; 0 for null and for no type. */
size_t bcast_type_stride(bcast_type type);

/* True for the types whose element is a bdta3_str. */
bool bcast_type_is_string(bcast_type type);

/* The name of a failure code, "ERR_OVERFLOW", and what it says, "numeric value
 * does not fit the target". Null for a code that codes.h does not have. Static text. */
const char *bcast_code_name(int32_t code);
const char *bcast_code_text(int32_t code);

/* ---- Pools ------------------------------------------------------------- */

/* Memory for the working values of casts, and the current time zone. */
typedef struct bcast_pool bcast_pool;

/* A pool with time zone 0, or null when memory ran out. */
bcast_pool *bcast_pool_new(void);

/* Gives back what casts took. Some take a block a call and leave it here: reset
 * a pool between batches. */
void bcast_pool_reset(bcast_pool *pool);

/* The time zone, in minutes east of Greenwich, of casts that ask for it. */
void bcast_pool_set_time_zone(bcast_pool *pool, int16_t minutes);

void bcast_pool_free(bcast_pool *pool); /* null is allowed */

/* ---- Columns ----------------------------------------------------------- */

typedef struct bcast_column bcast_column;

/* An empty column, or null when memory ran out or there is no such type. */
bcast_column *bcast_column_new(bcast_type type);
void bcast_column_free(bcast_column *column); /* null is allowed */

bcast_type bcast_column_type(const bcast_column *column);

/* Rows that the column holds. */
uint32_t bcast_column_rows(const bcast_column *column);

/* What a cast takes. Belongs to the column and stays valid as long as it; its
 * flags and values move when the column grows. no_null is kept as the column is
 * filled, and set by casts. */
bdta3_col *bcast_column_vector(bcast_column *column);

/* Takes all rows and the selection away and keeps the memory for the next ones. */
void bcast_column_clear(bcast_column *column);

/* ---- Filling ----------------------------------------------------------- */

/* Append one row. A null in a boolean column is a present row that holds
 * BOOL_UNKNOWN, and bcast_column_is_null() takes it for null. append_value copies
 * one element of a type that is no string type: bcast_type_stride bytes.
 * append_text copies len bytes, for text and blob columns into a large-object
 * constant, and leaves one NUL behind them that is not counted. append_char also
 * sets pad_len, the blanks that stand behind the text without being stored; char,
 * varchar and varchar2 only. */
int32_t bcast_column_append_null(bcast_column *column);
int32_t bcast_column_append_value(bcast_column *column, const void *element);
int32_t bcast_column_append_text(bcast_column *column, const void *bytes, uint32_t len);
int32_t bcast_column_append_char(bcast_column *column, const void *bytes, uint32_t len, uint32_t pad_len);

/* Append rows rows at once. values: an array of elements (no string types).
 * texts and lengths: arrays of pointers and byte counts; lengths null: the texts
 * end at a NUL; a null pointer is a null row. present: one byte a row, 0 for a
 * null row; null: all rows are present. The arrays stay the caller's,
 * and must not be the column's own. */
int32_t bcast_column_append_values(bcast_column *column, const void *values, const uint8_t *present, uint32_t rows);
int32_t bcast_column_append_texts(bcast_column *column, const char *const *texts, const uint32_t *lengths,
                                  uint32_t rows);

/* Makes the column a target: takes its rows and selection away, and gives it
 * rows null rows for a cast to write. */
int32_t bcast_column_make_room(bcast_column *column, uint32_t rows);

/* ---- Selecting --------------------------------------------------------- */

/* Gives a source a selection: a copy of count row numbers, in any order and with
 * repeats. A batch then has up to count rows, and batch row i is column row
 * sel[i]. Null takes it away. ERR_OVERFLOW when a number is not below
 * bcast_column_rows() or count is above 65535. */
int32_t bcast_column_select(bcast_column *column, const uint16_t *sel, uint32_t count);

/* ---- Reading: row is a column row, below bcast_column_rows() -------------- */

bool bcast_column_is_null(const bcast_column *column, uint32_t row);

/* The element; not for null columns. Valid until the column grows, is cleared or
 * freed. */
const void *bcast_column_value(const bcast_column *column, uint32_t row);

/* The value of an integer, bit or boolean row; 0 for other types. */
int64_t bcast_column_int64(const bcast_column *column, uint32_t row);

/* The bytes of a string row and, in *len, their count; of a text or blob row
 * those behind the header. Null, with *len 0, for a null row, other types,
 * or a broken header. Valid until the column is cleared or freed. */
const char *bcast_column_text(const bcast_column *column, uint32_t row, uint32_t *len);

/* ---- Captured failures ------------------------------------------------- */

/* What a capturing cast takes as err_codes and err_count, for batches of up to
 * 65535 rows. */
typedef struct bcast_failures {
    int32_t *codes; /* one per batch row, 0 for no failure */
    uint16_t count;
} bcast_failures;

/* Null when memory ran out. */
bcast_failures *bcast_failures_new(void);

/* All codes and the count become 0. Between batches; not needed where the count is still 0, for no cast has noted a
 * code then. */
void bcast_failures_reset(bcast_failures *failures);

/* The first batch row from `from` on, below rows, that failed; rows if none did. */
uint32_t bcast_failures_next(const bcast_failures *failures, uint32_t from, uint32_t rows);

void bcast_failures_free(bcast_failures *failures); /* null is allowed */

/* ---- Large-object constants -------------------------------------------- */

/* The 43 bytes in front of the value of a text or blob element, little-endian:
 *
 *     0   uint32   magic word, the bytes "LOBC"
 *     4   uint16   format version, 1
 *     6   uint32   length of the value in bytes
 *     10  33 zero bytes
 *
 * bcast_lob_read finds the value in a constant of size bytes. Returns 0, or
 * ERR_BAD_CONVERSION when the bytes are no such constant, with nothing stored. */
int32_t bcast_lob_read(const void *constant, uint32_t size, const char **value, uint32_t *value_len);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
