/* libbcast: failure codes.
 *
 * A cast that fails returns one of these, or passes on, unchanged, any negative
 * code of a service that it calls.
 */
#ifndef BCAST_CODES_H
#define BCAST_CODES_H

enum bcast_code {
    ERR_NO_MEMORY = -503,         /* column space could not be allocated */
    ERR_BAD_BFILE = -4556,        /* text is not a bfile locator, or longer than the target */
    ERR_OVERFLOW = -6102,         /* numeric value does not fit the target */
    ERR_INTERVAL_FIELD = -6105,   /* the target interval has no single field to take a number */
    ERR_TRUNCATED = -6108,        /* character or binary value, or the text of a number, longer than the target */
    ERR_BAD_CONVERSION = -6111,   /* text is no value of the target type, or the conversion is not allowed */
    ERR_BAD_INTERVAL = -6115,     /* interval text that cannot be read */
    ERR_BAD_DATETIME = -6118,     /* date text of 256 bytes or longer, or no date or time */
    ERR_TO_CHAR = -6139,          /* temporal or interval value that has no text */
    ERR_TARGET_TOO_SHORT = -6149, /* text of an integer, bit, datetime or interval longer than the target */
    ERR_ABOVE_RANGE = -6164,      /* literal above the int64 range; between services only */
    ERR_BELOW_RANGE = -6165       /* literal below the int64 range; between services only */
};

#endif
