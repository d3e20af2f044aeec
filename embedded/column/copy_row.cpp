// Rows copied from one column into another, flags and all.
#include "embedded/column/copy_row.h"

#include "embedded/column/keep_bytes.h"

#include <cstring>

namespace embedded {

namespace {

// Calls copy_element(source row, target row) for the rows that hold a value, as
// long as it says true.
template <class CopyElement>
ALWAYS_INLINE int32_t copy_rows(const bdta3_col *src, uint32_t src_pos, bdta3_col *dst, uint32_t dst_pos,
                                uint32_t count, CopyElement copy_element)
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

template <level at>
ALWAYS_INLINE int32_t copy_strings(void *, void *, const bdta3_col *src, uint32_t src_pos, bdta3_col *dst,
                                   uint32_t dst_pos, void *, uint32_t count)
{
    bcast_column &target = column_of(dst->data);
    return copy_rows(src, src_pos, dst, dst_pos, count, [&](size_t from, size_t to) INLINED {
        const bdta3_str element = string_elements(*src->data)[from];
        const auto size = size_t(element.length);
        char *copy = keep_short<at>(target, element.text, size);
        if (copy == nullptr)
            copy = keep_bytes(target, element.text, size);
        if (copy == nullptr)
            return false;
        string_elements(*dst->data)[to] = {element.length, element.pad_len, copy};
        return true;
    });
}

template <size_t Stride>
int32_t copy_fixed_rows(void *, void *, const bdta3_col *src, uint32_t src_pos, bdta3_col *dst, uint32_t dst_pos,
                        void *, uint32_t count)
{
    const char *source = static_cast<const char *>(src->data->values);
    char *target = static_cast<char *>(dst->data->values);
    return copy_rows(src, src_pos, dst, dst_pos, count, [&](size_t from, size_t to) INLINED {
        memmove(target + to * Stride, source + from * Stride, Stride);
        return true;
    });
}

int32_t copy_flags(void *, void *, const bdta3_col *src, uint32_t src_pos, bdta3_col *dst, uint32_t dst_pos, void *,
                   uint32_t count)
{
    return copy_rows(src, src_pos, dst, dst_pos, count, [](size_t, size_t) INLINED { return true; });
}

} // namespace

bdta3_copy_row_fn *copy_row_of(bcast_type type)
{
    if (bcast_type_is_string(type))
        return best_of<copy_strings<level::any>, copy_strings<level::avx2>, copy_strings<level::avx512>>();
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
