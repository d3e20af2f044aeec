#include <services/column.h>

#include "embedded/by_machine.h"
#include "embedded/column.h"
#include "embedded/out_of_memory.h"

namespace embedded {

namespace {

[[gnu::noinline]] void assign_long(bdta3_col *col, int32_t row, const char *bytes, int32_t len, int32_t pad)
{
    // A negative length is more than any memory holds.
    char *copy = keep_bytes(column_of(col->data), bytes, static_cast<size_t>(len));
    if (copy == nullptr)
        out_of_memory("a column value", static_cast<size_t>(len));
    string_elements(*col->data)[row] = {len, pad, copy};
}

template <typename Machine>
[[gnu::always_inline]] inline void assign(bdta3_col *col, int32_t row, const char *bytes, int32_t len, int32_t pad)
{
    char *copy = keep_short<Machine>(column_of(col->data), bytes, static_cast<size_t>(len));
    if (copy == nullptr)
        return assign_long(col, row, bytes, len, pad);
    string_elements(*col->data)[row] = {len, pad, copy};
}

// The services, for each kind of machine.

void assign_str_any(void *, void *, bdta3_col *col, int32_t row, const char *text, int32_t len, int32_t pad)
{
    assign<any_machine>(col, row, text, len, pad);
}
BCAST_AVX512 void assign_str_avx512(void *, void *, bdta3_col *col, int32_t row, const char *text, int32_t len,
                                    int32_t pad)
{
    assign<avx512_machine>(col, row, text, len, pad);
}

void assign_bin_any(void *, void *, bdta3_col *col, int32_t row, const void *bytes, int32_t len)
{
    assign<any_machine>(col, row, static_cast<const char *>(bytes), len, 0);
}
BCAST_AVX512 void assign_bin_avx512(void *, void *, bdta3_col *col, int32_t row, const void *bytes, int32_t len)
{
    assign<avx512_machine>(col, row, static_cast<const char *>(bytes), len, 0);
}

// Calls copy_element(source row, target row) for the rows that hold a value, as
// long as it says true.
template <typename CopyElement>
int32_t copy_rows(const bdta3_col *src, uint32_t src_pos, bdta3_col *dst, uint32_t dst_pos, uint32_t count,
                  CopyElement copy_element)
{
    for (uint32_t i = 0; i < count; i++) {
        const size_t from = src->sel != nullptr ? src->sel[src_pos + i] : src_pos + i;
        const size_t to = dst_pos + i;
        const uint8_t flag = src->data->flags[from];
        dst->data->flags[to] = flag;
        if (flag != 0 && !copy_element(from, to))
            return ERR_NO_MEMORY;
    }
    return 0;
}

template <typename Machine>
[[gnu::always_inline]] inline int32_t copy_strings(const bdta3_col *src, uint32_t src_pos, bdta3_col *dst,
                                                   uint32_t dst_pos, uint32_t count)
{
    bcast_column &target = column_of(dst->data);
    return copy_rows(src, src_pos, dst, dst_pos, count, [&](size_t from, size_t to) {
        const bdta3_str element = string_elements(*src->data)[from];
        const auto size = static_cast<size_t>(element.length);
        char *copy = keep_short<Machine>(target, element.text, size);
        if (copy == nullptr)
            copy = keep_bytes(target, element.text, size);
        if (copy == nullptr)
            return false;
        string_elements(*dst->data)[to] = {element.length, element.pad_len, copy};
        return true;
    });
}

int32_t copy_string_rows(void *, void *, const bdta3_col *src, uint32_t src_pos, bdta3_col *dst, uint32_t dst_pos,
                         void *, uint32_t count)
{
    return copy_strings<any_machine>(src, src_pos, dst, dst_pos, count);
}

BCAST_AVX512 int32_t copy_string_rows_avx512(void *, void *, const bdta3_col *src, uint32_t src_pos, bdta3_col *dst,
                                             uint32_t dst_pos, void *, uint32_t count)
{
    return copy_strings<avx512_machine>(src, src_pos, dst, dst_pos, count);
}

template <size_t Stride>
int32_t copy_fixed_rows(void *, void *, const bdta3_col *src, uint32_t src_pos, bdta3_col *dst, uint32_t dst_pos,
                        void *, uint32_t count)
{
    const char *source = static_cast<const char *>(src->data->values);
    char *target = static_cast<char *>(dst->data->values);
    return copy_rows(src, src_pos, dst, dst_pos, count, [&](size_t from, size_t to) {
        std::memmove(target + to * Stride, source + from * Stride, Stride);
        return true;
    });
}

int32_t copy_flags(void *, void *, const bdta3_col *src, uint32_t src_pos, bdta3_col *dst, uint32_t dst_pos, void *,
                   uint32_t count)
{
    return copy_rows(src, src_pos, dst, dst_pos, count, [](size_t, size_t) { return true; });
}

} // namespace

bdta3_copy_row_fn *copy_row_of(bcast_type type)
{
    if (bcast_type_is_string(type))
        return has_avx512 ? copy_string_rows_avx512 : copy_string_rows;
    switch (bcast_type_stride(type)) {
    case 4:
        return copy_fixed_rows<4>;
    case 8:
        return copy_fixed_rows<8>;
    case 12:
        return copy_fixed_rows<12>;
    case 24:
        return copy_fixed_rows<24>;
    case 30:
        return copy_fixed_rows<30>;
    default:
        return copy_flags;
    }
}

} // namespace embedded

SERVICE_BY_MACHINE(bdta3_col_assign_str, embedded::assign_str_any, embedded::assign_str_avx512);
SERVICE_BY_MACHINE(bdta3_col_assign_bin, embedded::assign_bin_any, embedded::assign_bin_avx512);

void *bdta3_col_space_alloc(void *, void *, bdta3_col_data *coldata, int32_t size)
{
    if (size < 0)
        return nullptr;
    const auto bytes = static_cast<size_t>(size);
    char *space = embedded::arena_take(embedded::column_of(coldata).bytes, bytes + 1);
    if (space != nullptr)
        space[bytes] = '\0';
    return space;
}
