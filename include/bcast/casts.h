/* libbcast: the casts.
 *
 * bcast_<source>_to_<target> turns one batch of a column from one SQL type into
 * another. One call does the whole batch, row by row in ascending order, or in
 * any other way that cannot be told from that.
 *
 * Here stand what holds for all casts, a table of where they differ, the settings,
 * the function types, and the casts by group, each with what is peculiar to it.
 * values.h has the names of numbers, codes.h those of failures.
 *
 * Arguments
 *
 *   env, heap   handed on to the services that a cast calls. Casts that need the
 *               current time zone read it from the first 16 bits that heap points to.
 *   src         the source column; nothing in it is written.
 *   length      the target's declared length in bytes, never in characters; for a
 *               dec target its shape, as BCAST_DEC_SHAPE makes it. A cast does not
 *               ask whether it makes sense.
 *   dst         the target column; its flags, values and no_null are written. The
 *               arrays hold rows rows, and do not overlap the source's.
 *   rows        rows of the batch, 0 to 65535: only the low 16 bits count, whatever a
 *               caller has put above them.
 *   err_codes   one code for each row of the batch, all 0 before the call, or null.
 *   err_count   how many codes were stored: counts on from what it holds, at 16
 *               bits. Not read where err_codes is null.
 *
 * Rows
 *
 *   A null row of the source is a null row of the target, whose element keeps the
 *   bytes that it had; what the source's element holds does not matter. A boolean
 *   has its null in the element: the row is present, and BOOL_UNKNOWN.
 *
 *   A row that is present may turn null: an empty text that is to become a number,
 *   bit, temporal value or interval, and what else a group names. Its flag is then
 *   0, and so is the target's no_null; its element keeps its bytes, but a bit
 *   becomes 0.
 *
 *   A char or varchar2 target counts blanks behind a text (pad_len) up to its
 *   length; a varchar target has none, or those of a character source as far as
 *   they fit.
 *
 * Results
 *
 *   0, or a negative code: one of codes.h, or a service's own as it is. Here and in
 *   what follows a group may say else.
 *
 *   Stop. A cast without err_codes, or with err_codes null, returns the code of
 *   the first row that fails. Rows before it are complete; rows behind it are
 *   untouched, but for flags that were written ahead of the first row. The target
 *   is to be discarded.
 *
 *   Capture. With err_codes given, the failure of row i of the batch is stored in
 *   err_codes[i], *err_count goes up by one, and the walk goes on. The cast
 *   returns the code of the last row that failed, or 0. no_null does not tell of
 *   failures: look at err_codes first.
 *
 *   A row that fails leaves its element unwritten; the table tells its flag.
 *
 * Threads: any number of threads may run casts at once on different targets.
 *
 * Where casts differ: of the lines that a cast fits, the last one holds.
 *
 *   from, to   types, parts of names (with * for any text), or groups of types:
 *              integers (tinyint, smallint, int, int64), numbers (integers, float,
 *              double, dec), characters (char, varchar, varchar2), bytes (binary,
 *              varbinary), temporal (date, time, time_tz, datetime, datetime_tz),
 *              intervals (ivym, ivdt), any. In names iv_ym and ym are ivym, iv_dt and
 *              dt are ivdt, varbit is a bit, hex_varchar a varchar, tltz and
 *              timestamp_local_time_zone are datetime_tz
 *   no_null    behind  the source's, behind the last row; a cast that stops leaves
 *                      it as it was
 *              ahead   the source's, ahead of the first row; 0 when a row turns null
 *              or 0    as it was; 0 when a row turns null
 *              kept    as it was
 *              1, 0    that
 *   flags      each    the source's as it stands, with each row
 *              fill    where the source's no_null is set all are 1, ahead of the
 *                      first row, and the source's are not read; else as each
 *              block   without a selection the source's as they stand, ahead of the
 *                      first row; else as each
 *              1, 0    that, ahead of the first row
 *              kept    as they were
 *   fails      the flag of a row that fails:
 *              set     as the walk made it, which is not 0
 *              0
 *              own     as the source's copy_row left it
 *              -       no row can fail
 *   with       the codes; service: that of a service that makes or judges the value.
 *              Which of several, its group tells
 *
 *   from                  to                   no_null  flags  fails  with
 *
 *   integers              integers             behind   each   -
 *   smallint, int, int64  tinyint              behind   each   set    ERR_OVERFLOW
 *   int, int64            smallint             behind   each   set    ERR_OVERFLOW
 *   int64                 int                  behind   each   set    ERR_OVERFLOW
 *   int                   int64                behind   fill   -
 *   integers, bit         bit, float, double   behind   each   -
 *   bit, boolean          integers             behind   each   -
 *   integers, bit         dec                  behind   each   set    service
 *   smallint              dec                  behind   block  set    service
 *   dec                   numbers              behind   each   set    service, ERR_OVERFLOW
 *   double                numbers, bit         behind   each   set    ERR_OVERFLOW, service
 *   float                 numbers              behind   each   set    ERR_OVERFLOW, service
 *   float                 float, double        behind   each   -
 *   float, dec            bit                  behind   each   -
 *   bytes                 numbers              behind   each   set    service
 *   integers              temporal             behind   each   set    service
 *   temporal              temporal             behind   each   -
 *   precise_*             any                  behind   fill   set    service
 *   numbers               intervals            behind   each   set    service, ERR_OVERFLOW, ERR_INTERVAL_FIELD
 *   intervals             intervals            behind   each   set    service
 *   intervals             numbers              kept     kept   -      (returns BCAST_NO_SUCH_CAST)
 *
 *   characters            numbers              ahead    each   set    service, ERR_OVERFLOW
 *   char                  numbers              ahead    fill   set    service, ERR_OVERFLOW
 *   varchar               *_directly           ahead    each   set    service
 *   characters            bit                  ahead    each   set    ERR_BAD_CONVERSION
 *   varchar               bit                  or 0     each   set    ERR_BAD_CONVERSION
 *   varchar2              bit                  kept     each   set    ERR_BAD_CONVERSION
 *   characters            temporal             ahead    each   set    service
 *   char                  *_fast               ahead    fill   set    service, ERR_BAD_DATETIME
 *   characters            intervals            or 0     fill   set    service, ERR_BAD_INTERVAL
 *   characters            bfile                ahead    each   set    ERR_BAD_BFILE
 *   characters            characters           behind   each   0      ERR_TRUNCATED, service
 *   varchar               char_explicit        ahead    each   set    ERR_NO_MEMORY
 *   varchar               varchar_explicit     ahead    each   set    ERR_NO_MEMORY
 *   characters            bytes                ahead    each   0      service, ERR_TRUNCATED
 *   characters            text, blob           ahead    each   0      service
 *
 *   integers, bit         characters           ahead    each   0      ERR_TARGET_TOO_SHORT, service
 *   float, double, dec    characters           ahead    each   0      ERR_TRUNCATED, ERR_OVERFLOW, service
 *   numbers               text                 ahead    each   0      service, ERR_OVERFLOW
 *   integers              bytes                ahead    each   -
 *   tinyint               varbinary            ahead    each   0      ERR_OVERFLOW
 *   bytes                 characters           ahead    each   0      service, ERR_TRUNCATED
 *   bytes                 hex_*                ahead    each   0      ERR_TRUNCATED
 *   bytes                 text, blob           ahead    each   0      service
 *   bytes                 binary               ahead    each   0      ERR_TRUNCATED
 *   bytes                 binary_explicit      ahead    each   -
 *   bytes                 varbinary            behind   each   0      ERR_TRUNCATED, service
 *   temporal              text                 ahead    each   0      ERR_TO_CHAR, service
 *   datetime              varchar_ex           ahead    each   0      ERR_TO_CHAR, ERR_TARGET_TOO_SHORT
 *   intervals             characters           ahead    each   0      ERR_TO_CHAR, ERR_TARGET_TOO_SHORT
 *   text, blob            text, blob           behind   each   own    service
 *   text                  blob                 kept     kept   -      (returns ERR_BAD_CONVERSION)
 *
 *   any                   boolean              1        1      -
 *   double                boolean              1        1      set    ERR_OVERFLOW
 *   any                   null                 0        0      -
 *   time, datetime_tz     null                 kept     0      -
 *   null                  any                  0        0      -
 *   null                  boolean              1        1      -
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

/* The library's only state: both 0 when it is loaded. compat_mode is a
 * bcast_compat_mode, compat_mode2 a bcast_compat_mode2. */
extern struct bcast_var {
    int32_t compat_mode;
    int32_t compat_mode2;
} global_bcast_var;

/* Sets both. Takes no lock: call it before casts run. */
void bcast_dll_var_init(int32_t compat_mode, int32_t compat_mode2);

/* ---- Function types ---------------------------------------------------- */

/* The source's type and the target's say all. */
typedef int32_t bcast_plain_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows);

/* The same, and failures can be captured. */
typedef int32_t bcast_capture_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                 int32_t *err_codes, uint16_t *err_count);

/* The target has a length, or a shape. */
typedef int32_t bcast_length_fn(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                uint16_t rows);

/* The same, and failures can be captured. */
typedef int32_t bcast_length_capture_fn(void *env, void *heap, const bdta3_col *src, int32_t length, bdta3_col *dst,
                                        uint16_t rows, int32_t *err_codes, uint16_t *err_count);

/* Text against an integer column. cmp_op is the comparison that the literal is
 * for, a bcast_comparison. A literal with a fraction is moved to the integer that
 * gives the same answer. Where there is no such integer, or the literal is out of
 * range, the target's flag is a bcast_verdict, the element 0, and no_null 0; that
 * is no failure. With any other cmp_op a literal that is not whole, or is out of
 * range, becomes the integer of the last row that was whole and in range, or 0. */
typedef int32_t bcast_direct_fn(void *env, void *heap, uint16_t cmp_op, const bdta3_col *src, bdta3_col *dst,
                                uint16_t rows);

/* One literal of these casts, of length bytes: *verdict is VERDICT_NONE and
 * *result the integer, or *verdict is another one and *result is not written.
 * Returns 0, or the code of a text that is no number. Where it fails, and with any
 * other cmp_op for a literal that is not whole or is out of range, *verdict is
 * VERDICT_NONE and *result is not written. */
typedef int32_t bcast_int_low_fn(void *env, const char *text, int32_t length, uint16_t cmp_op, int32_t *verdict,
                                 int32_t *result);
typedef int32_t bcast_int64_low_fn(void *env, const char *text, int32_t length, uint16_t cmp_op, int32_t *verdict,
                                   int64_t *result);

/* Text to temporal values. parse_word and parse_ptr go to the parser, which may
 * take them for the order of the fields, as the embedded one does (embedded.h);
 * local_tz is the zone, in minutes, that a value is moved to, unless its own zone
 * is TZ_NO_SHIFT. A value that cannot be moved is none that fails: it is stored
 * as the service left it. */
typedef int32_t bcast_date_fast_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t parse_word,
                                   void *parse_ptr, uint16_t rows, int32_t *err_codes, uint16_t *err_count);
typedef int32_t bcast_tltz_fast_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t parse_word,
                                   void *parse_ptr, uint16_t rows, int32_t *err_codes, uint16_t *err_count,
                                   int16_t local_tz);
typedef int32_t bcast_tltz_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                              int32_t *err_codes, uint16_t *err_count, int16_t local_tz);

/* Types with a scale. Between temporal types src_scale and dst_scale count
 * fraction digits; of an interval the scale is its shape, as BCAST_IV_WORD makes
 * it. src_prec and dst_prec are not read, but for a text target, where dst_prec is
 * its length in bytes. */
typedef int32_t bcast_scaled_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                uint16_t src_prec, uint16_t src_scale, uint16_t dst_prec, uint16_t dst_scale);
typedef int32_t bcast_scaled_capture_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                        uint16_t src_prec, uint16_t src_scale, uint16_t dst_prec, uint16_t dst_scale,
                                        int32_t *err_codes, uint16_t *err_count);
typedef int32_t bcast_scaled_text_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                     uint16_t src_prec, uint16_t src_scale, uint16_t dst_prec);

/* The bodies of the casts between temporal types. They round where round_flag is
 * not 0 and dst_scale is below src_scale; type_code is the target's, a
 * bcast_temporal_type. */
typedef int32_t bcast_precise_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                 uint16_t src_prec, uint16_t src_scale, uint16_t dst_prec, uint16_t dst_scale,
                                 int32_t round_flag, int32_t *err_codes, uint16_t *err_count);
typedef int32_t bcast_precise_typed_fn(void *env, void *heap, const bdta3_col *src, bdta3_col *dst, uint16_t rows,
                                       uint16_t src_prec, uint16_t src_scale, uint16_t dst_prec, uint16_t dst_scale,
                                       int32_t round_flag, int32_t *err_codes, uint16_t *err_count, uint8_t type_code);

/* ---- The casts --------------------------------------------------------- */

/* Integers among themselves. bcast_int_to_int64 writes the elements of null rows too. bcast_tinyint_to_smallint takes
 * the low 16 bits of what the element holds, the other casts from tinyint all 32 */
bcast_plain_fn bcast_tinyint_to_tinyint, bcast_tinyint_to_smallint, bcast_tinyint_to_int, bcast_tinyint_to_int64;
bcast_plain_fn bcast_smallint_to_tinyint, bcast_smallint_to_smallint, bcast_smallint_to_int, bcast_smallint_to_int64;
bcast_plain_fn bcast_int_to_tinyint, bcast_int_to_smallint, bcast_int_to_int, bcast_int_to_int64;
bcast_plain_fn bcast_int64_to_tinyint, bcast_int64_to_smallint, bcast_int64_to_int, bcast_int64_to_int64;

/* Integers to characters: decimal digits; a value is never cut. What is too long fails with ERR_TARGET_TOO_SHORT, of
 * smallint and int with the code of the service that makes the digits */
bcast_length_fn bcast_tinyint_to_char, bcast_tinyint_to_varchar, bcast_tinyint_to_varchar2;
bcast_length_fn bcast_smallint_to_char, bcast_smallint_to_varchar, bcast_smallint_to_varchar2;
bcast_length_fn bcast_int_to_char, bcast_int_to_varchar, bcast_int_to_varchar2;
bcast_length_fn bcast_int64_to_char, bcast_int64_to_varchar, bcast_int64_to_varchar2;

/* Integers to text: the same digits */
bcast_capture_fn bcast_tinyint_to_text, bcast_smallint_to_text, bcast_int_to_text, bcast_int64_to_text;

/* Integers to bytes, most significant first; a value that is too long loses its high bytes. The low 16 bits of length
 * decide how many bytes are kept; what is stored goes by all 32. A varbinary gets at most 1, 2, 4 or 8 bytes, by the
 * source's type. A binary gets 4 bytes, or 8 of int64, behind zeros up to length, which is at most BCAST_BINARY_MAX;
 * but that bcast_int64_to_binary stores no more than the first 8 bytes of the whole. bcast_tinyint_to_varbinary alone
 * asks a service whether the value fits, and fails where it says just ERR_OVERFLOW */
bcast_length_fn bcast_tinyint_to_binary, bcast_tinyint_to_varbinary, bcast_smallint_to_binary,
    bcast_smallint_to_varbinary, bcast_int_to_binary, bcast_int_to_varbinary, bcast_int64_to_binary,
    bcast_int64_to_varbinary;

/* Integers to dec, float and double. The machine's conversion to float and double rounds by the current mode */
bcast_length_fn bcast_tinyint_to_dec, bcast_smallint_to_dec, bcast_int_to_dec, bcast_int64_to_dec;
bcast_plain_fn bcast_tinyint_to_float, bcast_tinyint_to_double, bcast_smallint_to_float, bcast_smallint_to_double,
    bcast_int_to_float, bcast_int_to_double, bcast_int64_to_float, bcast_int64_to_double;

/* To boolean: every row of the target is present, and BOOL_UNKNOWN where the source is null. True is a number that is
 * not zero, a NaN included; a char or varchar that has bytes or counts blanks, whatever they are; a varbinary that has
 * a byte other than the character '0' behind its first two; any temporal value or interval. bcast_dec_to_boolean goes
 * by byte 1 of the element. bcast_double_to_boolean asks a service, and fails with ERR_OVERFLOW where that refuses the
 * value. bcast_boolean_to_boolean copies all elements, those of null rows too. bcast_varchar_to_boolean takes row i for
 * null by the source's flag i, also with a selection, where the value is that of row sel[i] */
bcast_plain_fn bcast_tinyint_to_boolean, bcast_smallint_to_boolean, bcast_int_to_boolean, bcast_int64_to_boolean,
    bcast_bit_to_boolean, bcast_boolean_to_boolean, bcast_null_to_boolean, bcast_char_to_boolean,
    bcast_varchar_to_boolean, bcast_varbinary_to_boolean, bcast_dec_to_boolean, bcast_float_to_boolean,
    bcast_double_to_boolean, bcast_date_to_boolean, bcast_time_to_boolean, bcast_datetime_to_boolean,
    bcast_iv_ym_to_boolean, bcast_iv_dt_to_boolean;

/* From boolean: BOOL_UNKNOWN arrives as the number 2. Of what else the element holds tinyint and smallint take the low
 * 8 and 16 bits */
bcast_plain_fn bcast_boolean_to_tinyint, bcast_boolean_to_smallint, bcast_boolean_to_int, bcast_boolean_to_int64;

/* To bit. 1 is a number that is not zero, a NaN included, of a dec by byte 0 of the element; a text of decimal digits,
 * with blanks behind but none in front and no sign, one of which is not 0; blanks alone are 0. bcast_double_to_bit asks
 * a service, and fails with ERR_OVERFLOW where that refuses the value. An empty text turns null, and its element
 * becomes 0; bcast_varchar2_to_bit leaves no_null as it is all the same. bcast_varchar_to_bit with err_codes writes the
 * element of a row that fails: what the digits ahead of the bad byte make */
bcast_plain_fn bcast_tinyint_to_bit, bcast_smallint_to_bit, bcast_int_to_bit, bcast_int_to_varbit, bcast_int64_to_bit,
    bcast_bit_to_bit, bcast_char_to_bit, bcast_varchar2_to_bit, bcast_dec_to_bit, bcast_float_to_bit,
    bcast_double_to_bit;
bcast_capture_fn bcast_varchar_to_bit;

/* From bit: what the element holds, be it 0 and 1 or not; tinyint and smallint take the low 8 and 16 bits. Digits that
 * are too long fail with ERR_TARGET_TOO_SHORT */
bcast_plain_fn bcast_bit_to_tinyint, bcast_bit_to_smallint, bcast_bit_to_int, bcast_bit_to_int64, bcast_bit_to_float,
    bcast_bit_to_double;
bcast_length_fn bcast_bit_to_dec, bcast_bit_to_char, bcast_bit_to_varchar, bcast_bit_to_varchar2;

/* To null: every row of the target becomes null; the source is not looked at */
bcast_plain_fn bcast_tinyint_to_null, bcast_smallint_to_null, bcast_int_to_null, bcast_int64_to_null, bcast_bit_to_null,
    bcast_boolean_to_null, bcast_null_to_null, bcast_char_to_null, bcast_varchar_to_null, bcast_varchar2_to_null,
    bcast_binary_to_null, bcast_varbinary_to_null, bcast_text_to_null, bcast_blob_to_null, bcast_dec_to_null,
    bcast_float_to_null, bcast_double_to_null, bcast_date_to_null, bcast_time_to_null, bcast_time_tz_to_null,
    bcast_datetime_to_null, bcast_datetime_tz_to_null, bcast_iv_ym_to_null, bcast_iv_dt_to_null;

/* From null, the same. length is not read */
bcast_plain_fn bcast_null_to_tinyint, bcast_null_to_smallint, bcast_null_to_int, bcast_null_to_int64, bcast_null_to_bit,
    bcast_null_to_float, bcast_null_to_double, bcast_null_to_date, bcast_null_to_time, bcast_null_to_time_tz,
    bcast_null_to_datetime, bcast_null_to_datetime_tz, bcast_null_to_ivym, bcast_null_to_ivdt;
bcast_length_fn bcast_null_to_dec, bcast_null_to_char, bcast_null_to_varchar, bcast_null_to_varchar2,
    bcast_null_to_binary, bcast_null_to_varbinary, bcast_null_to_text, bcast_null_to_blob;

/* Characters to characters. The plain forms refuse a text longer than the target. The source's copy_row copies the
 * texts, but to a varchar target without a selection the cast does it, and does not ask whether the column had
 * space. A copy_row that fails ends the cast, err_codes or not, with the flag set.
 *
 * The explicit forms cut a text that is too long behind the last whole character that fits, and count the blanks that
 * it then ends in, and no others, as its pad_len. Where not even one character fits the row is empty, or turns null
 * under BCAST_MODE_EMPTY_IS_NULL. Without space for a text they fail with ERR_NO_MEMORY, and leave an element that has
 * a length and no text */
bcast_length_capture_fn bcast_char_to_char, bcast_char_to_varchar, bcast_char_to_varchar2;
bcast_length_capture_fn bcast_varchar_to_char, bcast_varchar_to_varchar, bcast_varchar_to_varchar2;
bcast_length_capture_fn bcast_varchar2_to_char, bcast_varchar2_to_varchar, bcast_varchar2_to_varchar2;
bcast_length_fn bcast_varchar_to_char_explicit, bcast_varchar_to_varchar_explicit;

/* Characters to integers: a service reads the number; what that gives and the target cannot hold is ERR_OVERFLOW. Of
 * the length of a char or varchar2 only the low 16 bits count, but for telling an empty text */
bcast_plain_fn bcast_char_to_tinyint, bcast_char_to_smallint, bcast_char_to_int, bcast_char_to_int64;
bcast_plain_fn bcast_varchar2_to_tinyint, bcast_varchar2_to_smallint, bcast_varchar2_to_int, bcast_varchar2_to_int64;
bcast_capture_fn bcast_varchar_to_tinyint, bcast_varchar_to_smallint, bcast_varchar_to_int, bcast_varchar_to_int64;

/* Characters to integers, for a comparison: bcast_direct_fn tells of cmp_op and verdicts. Only the low 16 bits of a
 * length count, but for telling an empty text; bcast_int_low_fn takes all 32 */
bcast_direct_fn bcast_varchar_to_int_directly, bcast_varchar_to_int64_directly;
bcast_int_low_fn bcast_varchar_to_int_directly_low;
bcast_int64_low_fn bcast_varchar_to_int64_directly_low;

/* Characters to dec, float and double: only the low 16 bits of a length count, and the first BCAST_NUMBER_TEXT_MAX
 * bytes of a text. A float has to pass a service that knows what is too large, of the doubles only that from varchar;
 * the code is the service's */
bcast_length_fn bcast_char_to_dec, bcast_varchar2_to_dec;
bcast_plain_fn bcast_char_to_float, bcast_char_to_double, bcast_varchar2_to_float, bcast_varchar2_to_double;
bcast_length_capture_fn bcast_varchar_to_dec;
bcast_capture_fn bcast_varchar_to_float, bcast_varchar_to_double;

/* Characters to bfile: length is unsigned; a text longer than that is as bad as one that is no locator. A service says
 * how much of it is stored, and whether it turns null, as an empty one may. Whether the column had space, is not asked
 */
bcast_length_capture_fn bcast_varchar_to_bfile;

/* Characters to text and blob: the blanks that are counted become bytes; with them a text has at most BCAST_BINARY_MAX.
 * An empty text stays a value of no bytes */
bcast_capture_fn bcast_varchar_to_text, bcast_varchar_to_blob;

/* Hexadecimal text to binary, with or without 0x in front. A binary is filled with zero bytes up to length, which is at
 * most BCAST_BINARY_MAX. The explicit forms cut a value that is too long, which fails in the others with ERR_TRUNCATED.
 * Into varbinary an empty text turns null under BCAST_MODE_EMPTY_IS_NULL; else it is a value of no bytes */
bcast_length_capture_fn bcast_char_to_binary, bcast_char_to_varbinary;
bcast_length_capture_fn bcast_varchar_to_binary, bcast_varchar_to_varbinary;
bcast_length_capture_fn bcast_varchar2_to_binary, bcast_varchar2_to_varbinary;
bcast_length_capture_fn bcast_hex_char_to_binary, bcast_hex_char_to_varbinary;
bcast_length_capture_fn bcast_hex_varchar_to_binary, bcast_hex_varchar_to_binary_explicit,
    bcast_hex_varchar_to_varbinary, bcast_hex_varchar_to_varbinary_explicit;

/* Binary to hexadecimal text. A value above BCAST_HEX_VALUE_MAX bytes has none, and fails in all forms with
 * ERR_TRUNCATED; bcast_*_to_hex_char and bcast_*_to_hex_varchar2 then leave the flag set, alone in this group. A text
 * that is too long is cut by the explicit forms, and fails in the others. The casts to hex_char, hex_varchar and
 * hex_varchar2 do not look at the result of the service that makes the text, and take NULs and blanks from its end,
 * behind the test of its length; those blanks are what a hex_varchar counts */
bcast_length_capture_fn bcast_binary_to_char, bcast_binary_to_varchar, bcast_binary_to_varchar2;
bcast_length_capture_fn bcast_varbinary_to_char, bcast_varbinary_to_varchar, bcast_varbinary_to_varchar2;
bcast_length_fn bcast_binary_to_hex_char, bcast_binary_to_hex_varchar, bcast_binary_to_hex_varchar2;
bcast_length_fn bcast_varbinary_to_char_explicit, bcast_varbinary_to_varchar_explicit, bcast_varbinary_to_hex_char,
    bcast_varbinary_to_hex_varchar, bcast_varbinary_to_hex_varchar2;

/* Binary to numbers, as the services read the bytes. A float has to pass the service that knows what is too large */
bcast_plain_fn bcast_binary_to_tinyint, bcast_binary_to_smallint, bcast_binary_to_int, bcast_binary_to_int64,
    bcast_binary_to_float, bcast_binary_to_double;
bcast_length_fn bcast_binary_to_dec;
bcast_capture_fn bcast_varbinary_to_tinyint, bcast_varbinary_to_smallint, bcast_varbinary_to_int,
    bcast_varbinary_to_int64;
bcast_length_capture_fn bcast_varbinary_to_dec;

/* Binary to binary. A binary target is filled with zero bytes up to length, which is at most BCAST_BINARY_MAX; the
 * explicit form cuts. A varbinary target is written as a varchar one, counted blanks and copy_row included */
bcast_length_capture_fn bcast_binary_to_binary, bcast_binary_to_varbinary, bcast_varbinary_to_binary,
    bcast_varbinary_to_varbinary;
bcast_length_fn bcast_varbinary_to_binary_explicit;

/* Binary to text, in hexadecimal digits, and blob, as it is. Into text a value has at most BCAST_HEX_VALUE_MAX bytes,
 * which is not tested */
bcast_plain_fn bcast_binary_to_text, bcast_binary_to_blob;

/* Large objects to each other: one call of the source's copy_row copies the batch, flags included. text to blob is
 * refused, with nothing touched */
bcast_plain_fn bcast_text_to_text, bcast_text_to_blob, bcast_blob_to_blob;

/* dec, double and float to numbers. bcast_float_to_float and bcast_float_to_double write the elements of null rows too.
 *
 * A dec becomes an integer by a service, and what that gives and the target cannot hold is ERR_OVERFLOW; a float by way
 * of a double, which has to pass the service that knows what is too large for one.
 *
 * A double is judged by a service. Where that refuses it the code is the service's for float, int64 and dec, and
 * ERR_OVERFLOW for double and for the targets of other groups. For tinyint, smallint and int none is asked: what lies
 * beyond their limits is ERR_OVERFLOW, whatever it would round to. The service that rounds to an integer comes behind,
 * sees a NaN too, and its code is handed on.
 *
 * A float loses its fraction on the way to an integer, and what lies outside is ERR_OVERFLOW, but that a NaN becomes 0
 * and 2 to the 31st the largest int. For int64 a service judges it, whose code is not handed on. For dec no service is
 * asked but the one that makes it, which has to refuse infinity and NaN */
bcast_plain_fn bcast_dec_to_tinyint, bcast_dec_to_smallint, bcast_dec_to_int, bcast_dec_to_int64, bcast_dec_to_double,
    bcast_dec_to_float;
bcast_plain_fn bcast_double_to_tinyint, bcast_double_to_smallint, bcast_double_to_int, bcast_double_to_int64,
    bcast_double_to_double, bcast_double_to_float;
bcast_plain_fn bcast_float_to_tinyint, bcast_float_to_smallint, bcast_float_to_int, bcast_float_to_int64,
    bcast_float_to_double, bcast_float_to_float;
bcast_length_fn bcast_dec_to_dec;
bcast_length_fn bcast_double_to_dec;
bcast_length_fn bcast_float_to_dec;

/* dec, double and float to characters and text. What is too long for characters is ERR_TRUNCATED. length of the casts
 * from dec to characters holds the source's shape too, as BCAST_DEC_TEXT_LENGTH makes it; its len goes on as a signed
 * byte. Under BCAST_MODE_EMPTY_IS_NULL, and into text, a dec has no shape. bcast_dec_to_text does not look at the
 * result of the service that makes the large object. Of a double a service is asked first, and ERR_OVERFLOW where that
 * refuses it; of a float none */
bcast_length_fn bcast_dec_to_char, bcast_dec_to_varchar, bcast_dec_to_varchar2;
bcast_length_fn bcast_double_to_char, bcast_double_to_varchar, bcast_double_to_varchar2;
bcast_length_fn bcast_float_to_char, bcast_float_to_varchar, bcast_float_to_varchar2;
bcast_plain_fn bcast_dec_to_text;
bcast_plain_fn bcast_double_to_text;
bcast_plain_fn bcast_float_to_text;

/* Characters to temporal values. A text turns null also where the parser says that it denotes no value. The _fast casts
 * refuse a text of BCAST_DATE_TEXT_LIMIT bytes or more with ERR_BAD_DATETIME; the others, which have another parser,
 * take any length */
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

/* Between temporal types, rounded to the scale of the target where that is smaller. From a type with a zone to one
 * without it is dropped; the other way the current one is set, with the digits as they are; to tltz the value is moved
 * to the current one, also from TZ_NO_SHIFT.
 *
 * err_count may be null here. The element of a row that fails is what the service left. The result is that of the last
 * service that rounded or shifted, which is not negative where a later row succeeded: look at err_codes */
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

/* Temporal values to text; the fraction of a time_tz is not shown. bcast_datetime_to_varchar_ex refuses a text that is
 * too long with ERR_TARGET_TOO_SHORT, and counts no blanks */
bcast_plain_fn bcast_date_to_text, bcast_time_to_text, bcast_time_tz_to_text, bcast_datetime_to_text,
    bcast_datetime_tz_to_text;
bcast_length_fn bcast_datetime_to_varchar_ex;

/* To intervals.
 *
 * A number fills the one field of the target's shape; a shape of several fails with ERR_INTERVAL_FIELD, behind
 * ERR_OVERFLOW for an int64 or dec that is no int, and ahead of the service that judges the interval. A dec keeps its
 * fraction in seconds, where it wraps beyond about 2147 of them, and loses it in other fields.
 *
 * Interval text is shorter than BCAST_BINARY_MAX bytes, which is not tested, and ends at a NUL in it. The bytes behind
 * it can be read up to one that is no blank: the scan for blanks (bytes 7, 9, 10, 13 and 32) does not look at the
 * length, and text of blanks alone stands for 0 only if no blank follows it. A text that cannot be read fails with the
 * parser's code; but into ivdt, where there is no selection and the source's no_null is not set, with ERR_BAD_INTERVAL,
 * whatever the parser's code */
bcast_scaled_fn bcast_tinyint_to_ivym, bcast_tinyint_to_ivdt, bcast_smallint_to_ivym, bcast_smallint_to_ivdt,
    bcast_int_to_ivym, bcast_int_to_ivdt, bcast_int64_to_ivym, bcast_int64_to_ivdt, bcast_dec_to_ivym,
    bcast_dec_to_ivdt;
bcast_scaled_capture_fn bcast_char_to_ivym, bcast_char_to_ivdt, bcast_varchar_to_ivym, bcast_varchar_to_ivdt,
    bcast_varchar2_to_ivym, bcast_varchar2_to_ivdt;
bcast_scaled_fn bcast_iv_ym_to_ym, bcast_iv_dt_to_dt;

/* Intervals to characters. dst_prec is the length. A text that is too long fails with ERR_TARGET_TOO_SHORT, or under
 * BCAST_MODE_CUT_INTERVALS is cut, and then counts no blanks */
bcast_scaled_text_fn bcast_iv_ym_to_char, bcast_iv_ym_to_varchar, bcast_iv_ym_to_varchar2;
bcast_scaled_text_fn bcast_iv_dt_to_char, bcast_iv_dt_to_varchar, bcast_iv_dt_to_varchar2;

/* Intervals to numbers do not exist: these return BCAST_NO_SUCH_CAST and touch nothing */
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
