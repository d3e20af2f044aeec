/* libbcast: column vectors and the elements in them.
 *
 * A cast reads one column vector and writes another. The records below are a
 * binary interface: byte positions are fixed, all values are in native byte
 * order, pointers take eight bytes (64-bit little-endian Linux). Fields named
 * owner_* belong to whoever owns the record; the library neither reads nor
 * writes them.
 */
#ifndef BCAST_COLUMN_H
#define BCAST_COLUMN_H

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct bdta3_col bdta3_col;
typedef struct bdta3_col_data bdta3_col_data;

/* Copies rows between columns of one element kind; services/column.h has the contract. */
typedef int32_t bdta3_copy_row_fn(void *env, void *heap, const bdta3_col *src, uint32_t src_pos, bdta3_col *dst,
                                  uint32_t dst_pos, void *reserved, uint32_t count);

/* A column vector of one batch. Where a source has a selection vector, row i of
 * the batch is row sel[i] of the column; without one it is row i. A target is
 * always dense, and its sel is not looked at. */
struct bdta3_col {
    int32_t no_null; /* non-zero: no row of this batch is null; zero: flags tell */
    char owner_4[4];
    const uint16_t *sel; /* source only: row numbers, or null for a dense batch */
    bdta3_col_data *data;
};

/* The storage of a column. flags[r] is 0 for a null row and anything else for
 * a row that holds a value; flags have to be right whatever no_null says. */
struct bdta3_col_data {
    char owner_0[16];
    bdta3_copy_row_fn *copy_row;
    char owner_24[32];
    uint8_t *flags;
    char owner_64[8];
    void *values; /* one element per row */
};

/* The element of char, varchar, varchar2, binary, varbinary, bfile, text and
 * blob. The bytes are not terminated and belong to the column's arena. text and
 * blob bytes are a large-object constant: 43 header bytes, then the value. */
typedef struct bdta3_str {
    int32_t length;  /* bytes stored at text */
    int32_t pad_len; /* blanks that stand behind the text without being stored */
    char *text;
} bdta3_str;

/* The element of boolean, the one type that keeps its null in the element. */
typedef enum bool3 { BOOL_FALSE = 0, BOOL_TRUE = 1, BOOL_UNKNOWN = 2 } bool3;

/* The element of dec: 30 opaque bytes at stride 30, so never aligned. Byte 0 is
 * 0x80 and byte 1 is 0 for the value zero only. */
typedef struct xdec {
    uint8_t bytes[30];
} xdec;

/* The element of date, time, time_tz, datetime and datetime_tz: opaque. */
typedef struct vqtime {
    uint8_t bytes[12];
} vqtime;

/* The element of ivym, an interval from year to month. */
typedef struct ivym {
    int32_t year;
    int32_t month;
    uint32_t iv_word; /* the shape of the type, as BCAST_IV_WORD of values.h packs it */
} ivym;

/* The element of ivdt, an interval from day to second. */
typedef struct ivdt {
    int32_t day;
    int32_t hour;
    int32_t minute;
    int32_t second;
    int32_t fraction; /* millionths of a second */
    uint32_t iv_word;
} ivdt;

/* A value on its way into a column. Its bytes stand in inline_bytes while length
 * is at most 48, behind outline when it is more. Before the first use: length,
 * first_word and outline_state 0, outline at inline_bytes. */
enum { NSTR_INLINE_MAX = 48 };

typedef struct nstr {
    int32_t first_word; /* set to 0 before every fill */
    uint32_t length;
    char owner_8[4];
    char inline_bytes[52];
    char *outline;
    uint64_t outline_state;
} nstr;

/* Bytes in front of the value in a large-object constant. */
enum { LOB_HEADER_SIZE = 43 };

static_assert(offsetof(bdta3_col, no_null) == 0, "bdta3_col");
static_assert(offsetof(bdta3_col, sel) == 8, "bdta3_col");
static_assert(offsetof(bdta3_col, data) == 16, "bdta3_col");
static_assert(sizeof(bdta3_col) == 24, "bdta3_col");
static_assert(offsetof(bdta3_col_data, copy_row) == 16, "bdta3_col_data");
static_assert(offsetof(bdta3_col_data, flags) == 56, "bdta3_col_data");
static_assert(offsetof(bdta3_col_data, values) == 72, "bdta3_col_data");
static_assert(sizeof(bdta3_col_data) == 80, "bdta3_col_data");
static_assert(offsetof(bdta3_str, length) == 0, "bdta3_str");
static_assert(offsetof(bdta3_str, pad_len) == 4, "bdta3_str");
static_assert(offsetof(bdta3_str, text) == 8, "bdta3_str");
static_assert(sizeof(bdta3_str) == 16, "bdta3_str");
static_assert(sizeof(bool3) == 4, "bool3");
static_assert(sizeof(xdec) == 30, "xdec");
static_assert(sizeof(vqtime) == 12, "vqtime");
static_assert(offsetof(ivym, month) == 4 && offsetof(ivym, iv_word) == 8, "ivym");
static_assert(sizeof(ivym) == 12, "ivym");
static_assert(offsetof(ivdt, hour) == 4 && offsetof(ivdt, minute) == 8 && offsetof(ivdt, second) == 12, "ivdt");
static_assert(offsetof(ivdt, fraction) == 16 && offsetof(ivdt, iv_word) == 20, "ivdt");
static_assert(sizeof(ivdt) == 24, "ivdt");
static_assert(offsetof(nstr, length) == 4 && offsetof(nstr, inline_bytes) == 12, "nstr");
static_assert(offsetof(nstr, outline) == 64 && offsetof(nstr, outline_state) == 72, "nstr");
static_assert(sizeof(nstr) == 80, "nstr");

#ifdef __cplusplus
}
#endif

#endif
