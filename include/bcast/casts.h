/* libbcast: the casts.
 *
 * bcast_<source>_to_<target> turns one batch of a column from one SQL type into
 * another. One call does the whole batch, row by row in ascending order, or in
 * any other way that cannot be told from that. What stands here holds for all of
 * them but where a cast's own line says otherwise.
 *
 * Arguments
 *
 *   env, heap   handed on to the services that a cast calls. Casts that need the
 *               current time zone read it from the first 16 bits behind heap.
 *   src         the source column; nothing in it is written.
 *   length      the target's declared length in bytes (never in characters);
 *               for a dec target its shape: bits 8 to 15 len, 0 to 7 prec. A
 *               cast does not ask whether it makes sense.
 *   dst         the target column; its flags, values and no_null are written. The
 *               arrays hold rows rows, and do not overlap the source's.
 *   rows        rows of the batch, 0 to 65535; only its low 16 bits count.
 *   err_codes   one code for each row of the batch, all 0 before the call, or null.
 *   err_count   how many codes were stored: counts on from what it holds, at 16
 *               bits. Not read where err_codes is null.
 *
 * Null rows
 *
 * A null source row gives a null target row, whose target element keeps the bytes
 * it had; what its source element holds does not matter. In a boolean target the
 * row is present and its element BOOL_UNKNOWN.
 *
 * no_null of the target
 *
 *   To numbers, bit, temporal values and intervals from sources that are not
 *   char, varchar or varchar2; between char, varchar and varchar2, but for the
 *   explicit forms; binary and varbinary to varbinary, text to text, blob to blob:
 *   the source's, behind the last row. A cast that stops leaves it as it was.
 *
 *   To characters, binary, varbinary, text, blob and bfile otherwise, and from
 *   characters to numbers, bit and temporal values: the source's, ahead of the
 *   first row. A row
 *   that turns null on the way, as an empty text does that is to become a number,
 *   sets it to 0.
 *
 *   To boolean: 1. From and to null: 0.
 *
 *   bcast_varchar_to_bit and text to intervals: kept, but 0 when a row turns
 *   null. Kept in any case: bcast_varchar2_to_bit, bcast_time_to_null,
 *   bcast_datetime_tz_to_null, and what refuses or does not exist.
 *
 * Failures
 *
 * A cast returns 0 or a negative code, one of codes.h or a service's own.
 *
 *   Stop. A cast without err_codes, or with err_codes null, returns the code of
 *   the first row that fails. Rows before it are complete; rows behind it are
 *   untouched, but for flags that were written as a block. The target is to be
 *   discarded.
 *
 *   Capture. With err_codes given, the failure of row i of the batch is stored in
 *   err_codes[i], *err_count goes up by one, and the walk goes on. The cast
 *   returns the code of the last row that failed, or 0. A failing copy_row of the
 *   source column ends the cast all the same.
 *
 * The flag of a row that failed is 0 where the target is char, varchar,
 * varchar2, binary, varbinary, text or blob, unless the source's copy_row or the
 * column's space failed. Where it is of another type the flag stays set, with the
 * element unwritten, or, of the casts between temporal types, left as the service
 * that failed wrote it: look at err_codes first.
 *
 * Threads: any number of threads may run casts at once on different targets.
 */
#ifndef BCAST_CASTS_H
#define BCAST_CASTS_H

#include "column.h"
#include "values.h"

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* ---- Settings ---------------------------------------------------------- */

/* The library's only state: both 0 when it is loaded.
 *
 * compat_mode   2: a text that is cut ahead of its first whole character, and
 *               empty hexadecimal text into varbinary, become null; the text of
 *               a dec has no declared shape.
 *               3: the text of an interval that is too long is cut.
 *               Any other value: neither.
 * compat_mode2  the character set in which a text is cut: 1 and 2 pick the
 *               services' sets 1 and 6, any other value their set 10. */
extern struct bcast_var {
    int32_t compat_mode;
    int32_t compat_mode2;
} global_bcast_var;

/* Sets both. Takes no lock: call it before casts run. */
void bcast_dll_var_init(int32_t compat_mode, int32_t compat_mode2);

/* ---- Argument patterns ------------------------------------------------- */

typedef int32_t bcast_plain_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows);

typedef int32_t bcast_capture_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                 int32_t *err_codes, uint16_t *err_count);

typedef int32_t bcast_length_fn(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                uint16_t rows);

typedef int32_t bcast_length_capture_fn(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                        uint16_t rows, int32_t *err_codes, uint16_t *err_count);

/* Text against an integer column. cmp_op is the comparison that the literal is
 * for: '<', '>', '=', or 0x3f5 (<=), 0x3f6 (>=), 0x3f8 (<>). A literal with a
 * fraction is moved to the integer that gives the same answer. Where there is no
 * such integer, or the literal is out of range, the target flag is 5 (below every
 * value) or 6 (above every value, or equal to none), the element 0, and no_null
 * 0; that is no failure. */
typedef int32_t bcast_direct_fn(void *env, void *heap, uint16_t cmp_op, const bdta3_col *src, bdta3_col *dst,
                                uint16_t rows);

/* One literal of these casts: *verdict is INT32_MIN and *result the integer, or
 * *verdict is 5 or 6 and *result is not written. Returns 0, or the code of a
 * text that is no number. */
typedef int32_t bcast_int_low_fn(void *env, const char *text, int32_t length, uint16_t cmp_op, int32_t *verdict,
                                 int32_t *result);
typedef int32_t bcast_int64_low_fn(void *env, const char *text, int32_t length, uint16_t cmp_op, int32_t *verdict,
                                   int64_t *result);

/* Text to temporal values. parse_word and parse_ptr go to the parser; local_tz is
 * the zone, in minutes, that a value is moved to, unless its own zone is 480. */
typedef int32_t bcast_date_fast_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t parse_word,
                                   void *parse_ptr, uint16_t rows, int32_t *err_codes, uint16_t *err_count);
typedef int32_t bcast_tltz_fast_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t parse_word,
                                   void *parse_ptr, uint16_t rows, int32_t *err_codes, uint16_t *err_count,
                                   int16_t local_tz);
typedef int32_t bcast_tltz_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                              int32_t *err_codes, uint16_t *err_count, int16_t local_tz);

/* Types with a scale. Between temporal types src_scale and dst_scale count
 * fraction digits; of an interval the scale is its iv_word, the shape that the
 * record ends with. src_prec and dst_prec are not read, but for a text target,
 * where dst_prec is its length in bytes. The casts between temporal types allow
 * err_count to be null, and return the result of the last rounding or shift, which
 * is not negative where a later row succeeded: look at err_codes. */
typedef int32_t bcast_scaled_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                uint16_t src_prec, uint16_t src_scale, uint16_t dst_prec, uint16_t dst_scale);
typedef int32_t bcast_scaled_capture_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                        uint16_t src_prec, uint16_t src_scale, uint16_t dst_prec, uint16_t dst_scale,
                                        int32_t *err_codes, uint16_t *err_count);
typedef int32_t bcast_scaled_text_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                     uint16_t src_prec, uint16_t src_scale, uint16_t dst_prec);

/* The bodies of the casts between temporal types. They round where round_flag is
 * not 0 and dst_scale is below src_scale; type_code is the target's: 15 time,
 * 16 datetime, 22 time_tz, 23 datetime_tz. */
typedef int32_t bcast_precise_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                 uint16_t src_prec, uint16_t src_scale, uint16_t dst_prec, uint16_t dst_scale,
                                 int32_t round_flag, int32_t *err_codes, uint16_t *err_count);
typedef int32_t bcast_precise_typed_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                       uint16_t src_prec, uint16_t src_scale, uint16_t dst_prec, uint16_t dst_scale,
                                       int32_t round_flag, int32_t *err_codes, uint16_t *err_count, uint8_t type_code);

/* ---- The casts --------------------------------------------------------- */

/* Integers among themselves; bcast_int_to_int64 writes the elements of null rows too */
bcast_plain_fn bcast_tinyint_to_tinyint, bcast_tinyint_to_smallint, bcast_tinyint_to_int, bcast_tinyint_to_int64;
bcast_plain_fn bcast_smallint_to_tinyint, bcast_smallint_to_smallint, bcast_smallint_to_int, bcast_smallint_to_int64;
bcast_plain_fn bcast_int_to_tinyint, bcast_int_to_smallint, bcast_int_to_int, bcast_int_to_int64;
bcast_plain_fn bcast_int64_to_tinyint, bcast_int64_to_smallint, bcast_int64_to_int, bcast_int64_to_int64;

/* Integers to characters: decimal digits; a value is never cut */
bcast_length_fn bcast_tinyint_to_char, bcast_tinyint_to_varchar, bcast_tinyint_to_varchar2;
bcast_length_fn bcast_smallint_to_char, bcast_smallint_to_varchar, bcast_smallint_to_varchar2;
bcast_length_fn bcast_int_to_char, bcast_int_to_varchar, bcast_int_to_varchar2;
bcast_length_fn bcast_int64_to_char, bcast_int64_to_varchar, bcast_int64_to_varchar2;

/* Integers to text */
bcast_capture_fn bcast_tinyint_to_text, bcast_smallint_to_text, bcast_int_to_text, bcast_int64_to_text;

/* Integers to bytes, most significant first. The low 16 bits of length decide how many; what is stored goes by all 32.
 * For a binary target length is at most 32768, and bcast_int64_to_binary stores 8 bytes from the front of the padded
 * value */
bcast_length_fn bcast_tinyint_to_binary, bcast_tinyint_to_varbinary, bcast_smallint_to_binary,
    bcast_smallint_to_varbinary, bcast_int_to_binary, bcast_int_to_varbinary, bcast_int64_to_binary,
    bcast_int64_to_varbinary;

/* Integers to dec, float and double */
bcast_length_fn bcast_tinyint_to_dec, bcast_smallint_to_dec, bcast_int_to_dec, bcast_int64_to_dec;
bcast_plain_fn bcast_tinyint_to_float, bcast_tinyint_to_double, bcast_smallint_to_float, bcast_smallint_to_double,
    bcast_int_to_float, bcast_int_to_double, bcast_int64_to_float, bcast_int64_to_double;

/* To boolean: every row of the target is present, a null row becomes BOOL_UNKNOWN. bcast_varchar_to_boolean takes the
 * flag of the output row, not of the source row */
bcast_plain_fn bcast_tinyint_to_boolean, bcast_smallint_to_boolean, bcast_int_to_boolean, bcast_int64_to_boolean,
    bcast_bit_to_boolean, bcast_boolean_to_boolean, bcast_null_to_boolean, bcast_char_to_boolean,
    bcast_varchar_to_boolean, bcast_varbinary_to_boolean, bcast_dec_to_boolean, bcast_float_to_boolean,
    bcast_double_to_boolean, bcast_date_to_boolean, bcast_time_to_boolean, bcast_datetime_to_boolean,
    bcast_iv_ym_to_boolean, bcast_iv_dt_to_boolean;

/* From boolean: BOOL_UNKNOWN arrives as the number 2 */
bcast_plain_fn bcast_boolean_to_tinyint, bcast_boolean_to_smallint, bcast_boolean_to_int, bcast_boolean_to_int64;

/* To bit. bcast_varchar_to_bit with err_codes also writes the element of a row that failed */
bcast_plain_fn bcast_tinyint_to_bit, bcast_smallint_to_bit, bcast_int_to_bit, bcast_int_to_varbit, bcast_int64_to_bit,
    bcast_bit_to_bit, bcast_char_to_bit, bcast_varchar2_to_bit, bcast_dec_to_bit, bcast_float_to_bit,
    bcast_double_to_bit;
bcast_capture_fn bcast_varchar_to_bit;

/* From bit */
bcast_plain_fn bcast_bit_to_tinyint, bcast_bit_to_smallint, bcast_bit_to_int, bcast_bit_to_int64, bcast_bit_to_float,
    bcast_bit_to_double;
bcast_length_fn bcast_bit_to_dec, bcast_bit_to_char, bcast_bit_to_varchar, bcast_bit_to_varchar2;

/* To null: every row of the target becomes null */
bcast_plain_fn bcast_tinyint_to_null, bcast_smallint_to_null, bcast_int_to_null, bcast_int64_to_null, bcast_bit_to_null,
    bcast_boolean_to_null, bcast_null_to_null, bcast_char_to_null, bcast_varchar_to_null, bcast_varchar2_to_null,
    bcast_binary_to_null, bcast_varbinary_to_null, bcast_text_to_null, bcast_blob_to_null, bcast_dec_to_null,
    bcast_float_to_null, bcast_double_to_null, bcast_date_to_null, bcast_time_to_null, bcast_time_tz_to_null,
    bcast_datetime_to_null, bcast_datetime_tz_to_null, bcast_iv_ym_to_null, bcast_iv_dt_to_null;

/* From null: length is not read */
bcast_plain_fn bcast_null_to_tinyint, bcast_null_to_smallint, bcast_null_to_int, bcast_null_to_int64, bcast_null_to_bit,
    bcast_null_to_float, bcast_null_to_double, bcast_null_to_date, bcast_null_to_time, bcast_null_to_time_tz,
    bcast_null_to_datetime, bcast_null_to_datetime_tz, bcast_null_to_ivym, bcast_null_to_ivdt;
bcast_length_fn bcast_null_to_dec, bcast_null_to_char, bcast_null_to_varchar, bcast_null_to_varchar2,
    bcast_null_to_binary, bcast_null_to_varbinary, bcast_null_to_text, bcast_null_to_blob;

/* Characters to characters: the plain forms refuse a text longer than the target, the explicit forms cut it */
bcast_length_capture_fn bcast_char_to_char, bcast_char_to_varchar, bcast_char_to_varchar2;
bcast_length_capture_fn bcast_varchar_to_char, bcast_varchar_to_varchar, bcast_varchar_to_varchar2;
bcast_length_capture_fn bcast_varchar2_to_char, bcast_varchar2_to_varchar, bcast_varchar2_to_varchar2;
bcast_length_fn bcast_varchar_to_char_explicit, bcast_varchar_to_varchar_explicit;

/* Characters to integers: an empty text becomes a null row */
bcast_plain_fn bcast_char_to_tinyint, bcast_char_to_smallint, bcast_char_to_int, bcast_char_to_int64;
bcast_plain_fn bcast_varchar2_to_tinyint, bcast_varchar2_to_smallint, bcast_varchar2_to_int, bcast_varchar2_to_int64;
bcast_capture_fn bcast_varchar_to_tinyint, bcast_varchar_to_smallint, bcast_varchar_to_int, bcast_varchar_to_int64;

/* Characters to integers, for a comparison: cmp_op and verdict are told at bcast_direct_fn */
bcast_direct_fn bcast_varchar_to_int_directly, bcast_varchar_to_int64_directly;
bcast_int_low_fn bcast_varchar_to_int_directly_low;
bcast_int64_low_fn bcast_varchar_to_int64_directly_low;

/* Characters to dec, float and double: only the first 319 bytes of a text are read */
bcast_length_fn bcast_char_to_dec, bcast_varchar2_to_dec;
bcast_plain_fn bcast_char_to_float, bcast_char_to_double, bcast_varchar2_to_float, bcast_varchar2_to_double;
bcast_length_capture_fn bcast_varchar_to_dec;
bcast_capture_fn bcast_varchar_to_float, bcast_varchar_to_double;

/* Characters to bfile; length is unsigned */
bcast_length_capture_fn bcast_varchar_to_bfile;

/* Characters to text and blob: the padding becomes real blanks; both together are at most 32768 bytes */
bcast_capture_fn bcast_varchar_to_text, bcast_varchar_to_blob;

/* Hexadecimal text to binary: binary is filled with zero bytes up to length, which is at most 32768. The explicit forms
 * cut a value that is too long */
bcast_length_capture_fn bcast_char_to_binary, bcast_char_to_varbinary;
bcast_length_capture_fn bcast_varchar_to_binary, bcast_varchar_to_varbinary;
bcast_length_capture_fn bcast_varchar2_to_binary, bcast_varchar2_to_varbinary;
bcast_length_capture_fn bcast_hex_char_to_binary, bcast_hex_char_to_varbinary;
bcast_length_capture_fn bcast_hex_varchar_to_binary, bcast_hex_varchar_to_binary_explicit,
    bcast_hex_varchar_to_varbinary, bcast_hex_varchar_to_varbinary_explicit;

/* Binary to hexadecimal text: of a value above 32767 bytes none; the casts to hex_char and hex_varchar2 then leave the
 * flag set. The explicit forms cut the text
 */
bcast_length_capture_fn bcast_binary_to_char, bcast_binary_to_varchar, bcast_binary_to_varchar2;
bcast_length_capture_fn bcast_varbinary_to_char, bcast_varbinary_to_varchar, bcast_varbinary_to_varchar2;
bcast_length_fn bcast_binary_to_hex_char, bcast_binary_to_hex_varchar, bcast_binary_to_hex_varchar2;
bcast_length_fn bcast_varbinary_to_char_explicit, bcast_varbinary_to_varchar_explicit, bcast_varbinary_to_hex_char,
    bcast_varbinary_to_hex_varchar, bcast_varbinary_to_hex_varchar2;

/* Binary to numbers, as the services read the bytes */
bcast_plain_fn bcast_binary_to_tinyint, bcast_binary_to_smallint, bcast_binary_to_int, bcast_binary_to_int64,
    bcast_binary_to_float, bcast_binary_to_double;
bcast_length_fn bcast_binary_to_dec;
bcast_capture_fn bcast_varbinary_to_tinyint, bcast_varbinary_to_smallint, bcast_varbinary_to_int,
    bcast_varbinary_to_int64;
bcast_length_capture_fn bcast_varbinary_to_dec;

/* Binary to binary: binary is filled with zero bytes up to length, which is at most 32768. The explicit form cuts */
bcast_length_capture_fn bcast_binary_to_binary, bcast_binary_to_varbinary, bcast_varbinary_to_binary,
    bcast_varbinary_to_varbinary;
bcast_length_fn bcast_varbinary_to_binary_explicit;

/* Binary to text and blob: text takes at most 32767 bytes of binary */
bcast_plain_fn bcast_binary_to_text, bcast_binary_to_blob;

/* Large objects to each other: whole columns; text to blob is refused */
bcast_plain_fn bcast_text_to_text, bcast_text_to_blob, bcast_blob_to_blob;

/* dec, double and float to numbers; bcast_float_to_float and bcast_float_to_double write the elements of null rows too
 */
bcast_plain_fn bcast_dec_to_tinyint, bcast_dec_to_smallint, bcast_dec_to_int, bcast_dec_to_int64, bcast_dec_to_double,
    bcast_dec_to_float;
bcast_plain_fn bcast_double_to_tinyint, bcast_double_to_smallint, bcast_double_to_int, bcast_double_to_int64,
    bcast_double_to_double, bcast_double_to_float;
bcast_plain_fn bcast_float_to_tinyint, bcast_float_to_smallint, bcast_float_to_int, bcast_float_to_int64,
    bcast_float_to_double, bcast_float_to_float;
bcast_length_fn bcast_dec_to_dec;
bcast_length_fn bcast_double_to_dec;
bcast_length_fn bcast_float_to_dec;

/* dec, double and float to characters and text. length of a dec source: bits 0 to 15 target length, 16 to 23 the
 * source's prec, 24 to 31 its len; prec 0x81 means no declared shape */
bcast_length_fn bcast_dec_to_char, bcast_dec_to_varchar, bcast_dec_to_varchar2;
bcast_length_fn bcast_double_to_char, bcast_double_to_varchar, bcast_double_to_varchar2;
bcast_length_fn bcast_float_to_char, bcast_float_to_varchar, bcast_float_to_varchar2;
bcast_plain_fn bcast_dec_to_text;
bcast_plain_fn bcast_double_to_text;
bcast_plain_fn bcast_float_to_text;

/* Characters to temporal values: the _fast casts refuse a text of 256 bytes or more */
bcast_date_fast_fn bcast_char_to_date_fast;
bcast_tltz_fast_fn bcast_char_to_tltz_fast;
bcast_tltz_fn bcast_varchar_to_timestamp_local_time_zone;
bcast_plain_fn bcast_varchar2_to_date;

/* Integers to temporal values: YYYYMMDD, HHMMSS or YYYYMMDDHHMMSS, as the services read them */
bcast_plain_fn bcast_tinyint_to_date, bcast_tinyint_to_time, bcast_tinyint_to_datetime;
bcast_plain_fn bcast_smallint_to_date, bcast_smallint_to_time, bcast_smallint_to_datetime;
bcast_plain_fn bcast_int_to_date, bcast_int_to_time, bcast_int_to_datetime;
bcast_plain_fn bcast_int64_to_date, bcast_int64_to_time, bcast_int64_to_datetime;

/* Between temporal types, at the precision that the value has: copies, but that
 * bcast_datetime_to_date clears the time and bcast_date_to_datetime_tz sets the current zone */
bcast_plain_fn bcast_date_to_date, bcast_date_to_time, bcast_date_to_datetime, bcast_date_to_datetime_tz;
bcast_plain_fn bcast_datetime_to_date;
bcast_plain_fn bcast_datetime_tz_to_date;

/* Between temporal types, rounded to the scale of the target. From a type with a zone to one without it is dropped; the
 * other way the current one is set, with the digits as they are; to tltz the value is moved to the current one */
bcast_scaled_capture_fn bcast_precise_time_to_datetime, bcast_precise_time_to_datetime_tz, bcast_precise_time_to_time,
    bcast_precise_time_to_time_tz;
bcast_scaled_capture_fn bcast_precise_time_tz_to_datetime, bcast_precise_time_tz_to_time,
    bcast_precise_time_tz_to_time_tz, bcast_precise_time_tz_to_tltz;
bcast_scaled_capture_fn bcast_precise_datetime_to_datetime, bcast_precise_datetime_to_datetime_tz,
    bcast_precise_datetime_to_time, bcast_precise_datetime_to_time_tz;
bcast_scaled_capture_fn bcast_precise_datetime_tz_to_datetime, bcast_precise_datetime_tz_to_datetime_tz,
    bcast_precise_datetime_tz_to_time, bcast_precise_datetime_tz_to_tltz;
bcast_precise_typed_fn bcast_precise_dtz_to_dt_inner, bcast_precise_dt_to_tz_inner;
bcast_precise_fn bcast_precise_dtz_to_tltz_inner, bcast_precise_dtz_to_tz_inner;

/* Temporal values to text */
bcast_plain_fn bcast_date_to_text, bcast_time_to_text, bcast_time_tz_to_text, bcast_datetime_to_text,
    bcast_datetime_tz_to_text;
bcast_length_fn bcast_datetime_to_varchar_ex;

/* To intervals. Interval text is shorter than 32768 bytes and ends at a NUL in it. The bytes behind it can be read up
 * to one that is no blank: the scan for blanks does not look at the length, and text of blanks alone stands for 0 only
 * if no blank follows it. A dec into seconds wraps beyond about 2147 of them */
bcast_scaled_fn bcast_tinyint_to_ivym, bcast_tinyint_to_ivdt, bcast_smallint_to_ivym, bcast_smallint_to_ivdt,
    bcast_int_to_ivym, bcast_int_to_ivdt, bcast_int64_to_ivym, bcast_int64_to_ivdt, bcast_dec_to_ivym,
    bcast_dec_to_ivdt;
bcast_scaled_capture_fn bcast_char_to_ivym, bcast_char_to_ivdt, bcast_varchar_to_ivym, bcast_varchar_to_ivdt,
    bcast_varchar2_to_ivym, bcast_varchar2_to_ivdt;
bcast_scaled_fn bcast_iv_ym_to_ym, bcast_iv_dt_to_dt;

/* Intervals to characters */
bcast_scaled_text_fn bcast_iv_ym_to_char, bcast_iv_ym_to_varchar, bcast_iv_ym_to_varchar2;
bcast_scaled_text_fn bcast_iv_dt_to_char, bcast_iv_dt_to_varchar, bcast_iv_dt_to_varchar2;

/* Intervals to numbers do not exist: these return 1 and touch nothing */
bcast_scaled_fn bcast_iv_ym_to_tinyint, bcast_iv_ym_to_smallint, bcast_iv_ym_to_int, bcast_iv_ym_to_int64,
    bcast_iv_ym_to_dec;
bcast_scaled_fn bcast_iv_dt_to_tinyint, bcast_iv_dt_to_smallint, bcast_iv_dt_to_int, bcast_iv_dt_to_int64,
    bcast_iv_dt_to_dec;

/* ---- Single values ----------------------------------------------------- */

/* Writes the low min(width, target_len) bytes of value to out, most significant
 * byte first. Returns 0, or ERR_OVERFLOW with nothing written where width is
 * above 8. */
int32_t bin_from_int_low(uint8_t *out, uint16_t width, uint16_t target_len, int64_t value);

/* 1 where all bytes from the third on are the character '0', or there is no
 * third; else 0. The first reads the bytes behind outline. */
int32_t bcast_varbinary_is_zero(const nstr *value);
int32_t bcast_varbinary_is_zero2(const bdta3_str *value);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
