/* Casts selected rows of a varchar column to int and says what became of each. */
#include <bcast/bcast.h>
#include <bcast/embedded.h>

#include <inttypes.h>
#include <stdio.h>

static const char *const texts[] = {"42", "twelve", NULL, "", "-7.5", "99999999999", " 1e6 "};
static const uint16_t selected[] = {6, 5, 4, 3, 2, 1};
enum { TEXTS = sizeof texts / sizeof *texts, SELECTED = sizeof selected / sizeof *selected };

static void print_row(const bcast_column *src, const bcast_column *dst, const bcast_failures *failures, uint16_t row)
{
    uint32_t len;
    const char *text = bcast_column_text(src, selected[row], &len);
    if (text != NULL)
        printf("row %u, column row %u, \"%.*s\": ", row, selected[row], (int)len, text);
    else
        printf("row %u, column row %u, null: ", row, selected[row]);
    /* A row that failed looks present in a target of fixed width: ask the failures first. */
    if (failures->codes[row] != 0)
        printf("%s, %s\n", bcast_code_name(failures->codes[row]), bcast_code_text(failures->codes[row]));
    else if (bcast_column_is_null(dst, row))
        printf("null\n");
    else
        printf("%" PRId64 "\n", bcast_column_int64(dst, row));
}

int main(void)
{
    int result = 1;
    bcast_pool *pool = bcast_pool_new();
    bcast_column *src = bcast_column_new(BCAST_VARCHAR), *dst = bcast_column_new(BCAST_INT);
    bcast_failures *failures = bcast_failures_new();
    if (pool == NULL || src == NULL || dst == NULL || failures == NULL ||
        bcast_column_append_texts(src, texts, NULL, TEXTS) != 0 || bcast_column_select(src, selected, SELECTED) != 0 ||
        bcast_column_make_room(dst, SELECTED) != 0) {
        fputs("cast_batch: out of memory\n", stderr);
        goto free_all;
    }
    bcast_varchar_to_int(NULL, pool, bcast_column_vector(src), bcast_column_vector(dst), SELECTED, failures->codes,
                         &failures->count);
    for (uint16_t row = 0; row < SELECTED; row++)
        print_row(src, dst, failures, row);
    printf("%u of %d rows failed\n", failures->count, SELECTED);
    result = 0;

free_all:
    bcast_failures_free(failures);
    bcast_column_free(dst);
    bcast_column_free(src);
    bcast_pool_free(pool);
    return result;
}
