/* libbcast: the SQL types, as a column knows them.
 *
 * The casts themselves never see a type tag: whoever calls one knows the types
 * of its columns. The tags serve the embedded columns and the tools.
 */
#ifndef BCAST_TYPE_H
#define BCAST_TYPE_H

#ifdef __cplusplus
extern "C" {
#endif

typedef enum bcast_type {
    BCAST_TINYINT,     /* int32, -128 to 127 */
    BCAST_SMALLINT,    /* int32, -32768 to 32767 */
    BCAST_INT,         /* int32 */
    BCAST_INT64,       /* int64 */
    BCAST_FLOAT,       /* IEEE 754 binary32 */
    BCAST_DOUBLE,      /* IEEE 754 binary64 */
    BCAST_DEC,         /* xdec */
    BCAST_DATE,        /* vqtime */
    BCAST_TIME,        /* vqtime */
    BCAST_TIME_TZ,     /* vqtime */
    BCAST_DATETIME,    /* vqtime */
    BCAST_DATETIME_TZ, /* vqtime */
    BCAST_IVYM,        /* ivym */
    BCAST_IVDT,        /* ivdt */
    BCAST_BIT,         /* int32, 0 or 1 */
    BCAST_BOOLEAN,     /* bool3 */
    BCAST_CHAR,        /* bdta3_str */
    BCAST_VARCHAR,     /* bdta3_str */
    BCAST_VARCHAR2,    /* bdta3_str */
    BCAST_BINARY,      /* bdta3_str */
    BCAST_VARBINARY,   /* bdta3_str */
    BCAST_TEXT,        /* bdta3_str, bytes are a large-object constant */
    BCAST_BLOB,        /* bdta3_str, bytes are a large-object constant */
    BCAST_BFILE,       /* bdta3_str, bytes are locator text */
    BCAST_NULL,        /* no elements */
    BCAST_TYPE_COUNT
} bcast_type;

#ifdef __cplusplus
}
#endif

#endif
