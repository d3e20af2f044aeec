/* The named values in C. */
#include "tests/embedded/public_values.h"

#include <string.h>

/* A constant, as a table of types would have it. */
static const uint16_t day_to_second = BCAST_IV_WORD(IV_DAY_TO_SECOND, 2, 6);

int32_t read_day_to_second_in_c(const char *text, ivdt *value)
{
    bcast_pool *pool = bcast_pool_new();
    bcast_column *src = bcast_column_new(BCAST_VARCHAR);
    bcast_column *dst = bcast_column_new(BCAST_IVDT);
    int32_t status = ERR_NO_MEMORY;
    if (pool && src && dst && bcast_column_append_text(src, text, (uint32_t)strlen(text)) == 0 &&
        bcast_column_make_room(dst, 1) == 0)
        status = bcast_varchar_to_ivdt(NULL, pool, bcast_column_vector(src), bcast_column_vector(dst), 1, 0, 0, 0,
                                       day_to_second, NULL, NULL);
    if (status == 0)
        memcpy(value, bcast_column_value(dst, 0), sizeof *value);
    bcast_column_free(dst);
    bcast_column_free(src);
    bcast_pool_free(pool);
    return status;
}

void read_words_in_c(uint16_t iv_word, int32_t dec_shape, uint8_t parts[5])
{
    parts[0] = bcast_iv_shape(iv_word);
    parts[1] = bcast_iv_leading(iv_word);
    parts[2] = bcast_iv_fraction(iv_word);
    parts[3] = bcast_dec_len(dec_shape);
    parts[4] = bcast_dec_prec(dec_shape);
}
