// nstr: values on their way into a column. outline_state is the capacity of the
// pool block that outline is at, or 0 while outline is at the inline bytes.
#include "embedded/base/out_of_memory.h"
#include "embedded/column/large_object.h"
#include "embedded/column/pool.h"

#include <bcast/codes.h>
#include <services/column.h>

#include <cstring>

namespace {

void go_inline(void *heap, nstr &value)
{
    if (value.outline_state != 0)
        embedded::pool_give_back(*static_cast<bcast_pool *>(heap), value.outline, value.outline_state);
    value.outline = value.inline_bytes;
    value.outline_state = 0;
}

// Room for size bytes at value.outline, inline or in the pool. Null, with the
// value empty, when memory ran out.
char *make_room(void *heap, nstr &value, size_t size, size_t inline_max)
{
    if (size <= inline_max) {
        go_inline(heap, value);
    } else if (size > value.outline_state) {
        go_inline(heap, value);
        value.length = 0;
        size_t capacity;
        char *block =
            heap != nullptr ? embedded::pool_take(*static_cast<bcast_pool *>(heap), size, &capacity) : nullptr;
        if (block == nullptr)
            return nullptr;
        value.outline = block;
        value.outline_state = capacity;
    }
    return value.outline;
}

[[gnu::noinline]] int32_t assign_lob(void *, void *heap, nstr *value, const char *bytes, int32_t len)
{
    if (len < 0)
        return ERR_BAD_CONVERSION;
    const auto value_len = uint32_t(len);
    if (value_len > embedded::lob_value_max)
        return ERR_NO_MEMORY;
    char *at = make_room(heap, *value, value_len + LOB_HEADER_SIZE, NSTR_INLINE_MAX);
    if (at == nullptr)
        return ERR_NO_MEMORY;
    embedded::write_lob_header(at, value_len);
    if (value_len != 0)
        memcpy(at + LOB_HEADER_SIZE, bytes, value_len);
    value->length = value_len + LOB_HEADER_SIZE;
    return 0;
}

#if defined(MACHINE_IS_X86_64)

using embedded::short_lob;

constexpr uint32_t inline_value_max = uint32_t{NSTR_INLINE_MAX} - uint32_t{LOB_HEADER_SIZE};

// For a short value in the smallest block there is, or inline, where that needs no more ado.
CODE_FOR_AVX512 inline int32_t assign_short_lob(void *env, void *heap, nstr *value, const char *bytes, int32_t len)
{
    const auto value_len = uint32_t(len);
    if (value_len > short_lob::value_max) [[unlikely]]
        return assign_lob(env, heap, value, bytes, len);
    char *block = value->outline;
    if (value_len <= inline_value_max) {
        // Writes over outline and its state, which are set behind it.
        static_assert(offsetof(nstr, inline_bytes) + short_lob::front_room <= sizeof(nstr));
        if (value->outline_state != 0)
            embedded::pool_give_back(*static_cast<bcast_pool *>(heap), block, value->outline_state);
        short_lob(bytes, value_len).write_front(reinterpret_cast<char *>(value) + offsetof(nstr, inline_bytes));
        value->outline = value->inline_bytes;
        value->outline_state = 0;
    } else {
        if (value->outline_state == 0) {
            block = heap != nullptr ? embedded::pool_take_smallest(*static_cast<bcast_pool *>(heap)) : nullptr;
            if (block == nullptr) [[unlikely]]
                return assign_lob(env, heap, value, bytes, len);
            value->outline = block;
            value->outline_state = embedded::pool_block_min;
        }
        static_assert(short_lob::room <= embedded::pool_block_min);
        short_lob(bytes, value_len).write(block);
    }
    value->length = value_len + LOB_HEADER_SIZE;
    return 0;
}

#endif

template <machine::level at>
ALWAYS_INLINE int32_t assign_constant(void *env, void *heap, nstr *value, const char *bytes, int32_t len)
{
#if defined(MACHINE_IS_X86_64)
    if constexpr (at == machine::level::avx512)
        return assign_short_lob(env, heap, value, bytes, len);
#endif
    return assign_lob(env, heap, value, bytes, len);
}

} // namespace

PICKED_AT_LOAD(nblob_assign_const, assign_constant);

// A short text stands inline with outline at it, so that a reader finds it by
// either way.
void nstr_assign_const(void *, void *heap, nstr *value, const char *text)
{
    const size_t len = strlen(text);
    char *at = len < UINT32_MAX ? make_room(heap, *value, len + 1, NSTR_INLINE_MAX + 1) : nullptr;
    if (at == nullptr)
        embedded::out_of_memory("a text on its way into a column", len);
    memcpy(at, text, len + 1);
    value->length = uint32_t(len);
}

void nstr_clear(void *, void *heap, nstr *value)
{
    go_inline(heap, *value);
    value->length = 0;
}
