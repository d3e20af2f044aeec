/* libbcast services: columns and working values.
 *
 * The library imports the operations of this folder and has no code of its own
 * for them; whoever loads it supplies them: an engine, or libbcast_embedded.so.
 * What stands here is all that a cast relies on.
 *
 * env and heap are the cast's own arguments, passed through.
 */
#ifndef BCAST_SERVICES_COLUMN_H
#define BCAST_SERVICES_COLUMN_H

#include <bcast/column.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* Makes the string element of row `row` of a target hold a copy of len bytes of
 * text, in storage that the column owns, with pad as its pad_len. The caller may
 * use text for something else afterwards. The row's flag is not touched. Has no
 * result: an implementation that runs out of memory needs a way out of its own. */
void bdta3_col_assign_str(void *env, void *heap, bdta3_col *col, int32_t row, const char *text, int32_t len,
                          int32_t pad);

/* The same for the bytes of a binary or large-object value; len may be 0. */
void bdta3_col_assign_bin(void *env, void *heap, bdta3_col *col, int32_t row, const void *bytes, int32_t len);

/* size bytes that live as long as the column's arena, or null when memory ran
 * out; anything, null included, for size 0. The casts
 * from varchar to varchar and to bfile do not test the result. The caller stores the pointer in an
 * element itself and never releases it. */
void *bdta3_col_space_alloc(void *env, void *heap, bdta3_col_data *coldata, int32_t size);

/* Makes value hold a large-object constant: LOB_HEADER_SIZE header bytes, then
 * len bytes of the caller's, which are not kept. The caller has set first_word to 0. Sets
 * length to len + LOB_HEADER_SIZE; the constant stands inline while that is at
 * most NSTR_INLINE_MAX, else behind outline, in memory from heap; outline is then,
 * and after nstr_clear, at the inline bytes where the value stands inline. value
 * may hold something from before that was not cleared. Returns a negative code on
 * failure, with outline and length still fit to be read: the cast from dec to text
 * does not look at the result. */
int32_t nblob_assign_const(void *env, void *heap, nstr *value, const char *bytes, int32_t len);

/* Makes value hold a NUL-terminated text, and sets length. Its bytes stand behind
 * outline, be they short or not. value may hold something from before that was not
 * cleared. */
void nstr_assign_const(void *env, void *heap, nstr *value, const char *text);

/* Releases what value holds behind outline, so that it can be filled again. Safe
 * on a value that stayed inline. */
void nstr_clear(void *env, void *heap, nstr *value);

/* bdta3_copy_row_fn, held in every column's bdta3_col_data; a cast calls the
 * source's. Makes batch positions dst_pos to dst_pos + count - 1 of dst hold
 * copies of the values at batch positions src_pos to src_pos + count - 1 of src,
 * in storage that dst owns. A position goes through src's sel. The rows' flags
 * are carried over, no_null is not touched. reserved is null. Returns a negative
 * code on failure. */

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
