// The columns that a program makes, fills, selects from and reads.
#include "embedded/column/copy_row.h"
#include "embedded/column/keep_bytes.h"
#include "embedded/column/large_object.h"
#include "embedded/column/record.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>

namespace {

constexpr uint32_t rows_max = BCAST_COLUMN_MAX_ROWS;
constexpr uint32_t first_capacity = 64;

bool holds_large_objects(const bcast_column &column) { return column.type == BCAST_TEXT || column.type == BCAST_BLOB; }

bool has_pad_len(const bcast_column &column)
{
    return column.type == BCAST_CHAR || column.type == BCAST_VARCHAR || column.type == BCAST_VARCHAR2;
}

bool takes_values(const bcast_column &column)
{
    return column.type != BCAST_NULL && !bcast_type_is_string(column.type);
}

char *element(const bcast_column &column, uint32_t row)
{
    return static_cast<char *>(column.data.values) + row * bcast_type_stride(column.type);
}

// Makes room for that many rows in all; rows that are there stay.
int32_t reserve(bcast_column &column, uint64_t rows)
{
    if (rows > rows_max)
        return ERR_OVERFLOW;
    if (rows <= column.capacity)
        return 0;
    const auto capacity = std::max(first_capacity, std::bit_ceil(uint32_t(rows)));
    const size_t stride = bcast_type_stride(column.type);
    // One byte more keeps the elements of a null column from being nothing at all.
    void *flags = malloc(capacity), *values = malloc(capacity * stride + 1);
    if (flags == nullptr || values == nullptr) {
        free(flags);
        free(values);
        return ERR_NO_MEMORY;
    }
    if (column.rows != 0) {
        memcpy(flags, column.data.flags, column.rows);
        memcpy(values, column.data.values, column.rows * stride);
    }
    free(column.data.flags);
    free(column.data.values);
    column.data.flags = static_cast<uint8_t *>(flags);
    column.data.values = values;
    column.capacity = capacity;
    return 0;
}

// The set_ functions write a row that is reserved and does not count yet.

void set_value(bcast_column &column, uint32_t row, const void *value)
{
    column.data.flags[row] = 1;
    memcpy(element(column, row), value, bcast_type_stride(column.type));
}

// A boolean keeps its null in the element, and its row is present.
void set_null(bcast_column &column, uint32_t row)
{
    if (column.type == BCAST_BOOLEAN) {
        const bool3 unknown = BOOL_UNKNOWN;
        set_value(column, row, &unknown);
        return;
    }
    column.data.flags[row] = 0;
    memset(element(column, row), 0, bcast_type_stride(column.type));
}

int32_t set_text(bcast_column &column, uint32_t row, const void *bytes, size_t len, uint32_t pad_len)
{
    const bool large_object = holds_large_objects(column);
    if (len > (large_object ? embedded::lob_value_max : INT32_MAX) || pad_len > INT32_MAX)
        return ERR_OVERFLOW;
    char *stored;
    if (large_object) {
        stored = embedded::arena_take(column.bytes, LOB_HEADER_SIZE + len + 1);
        if (stored == nullptr)
            return ERR_NO_MEMORY;
        embedded::write_lob_header(stored, uint32_t(len));
        if (len != 0)
            memcpy(stored + LOB_HEADER_SIZE, bytes, len);
        len += LOB_HEADER_SIZE;
        stored[len] = '\0';
    } else {
        stored = embedded::keep_bytes(column, bytes, len);
        if (stored == nullptr)
            return ERR_NO_MEMORY;
    }
    column.data.flags[row] = 1;
    embedded::string_elements(column.data)[row] = {int32_t(len), int32_t(pad_len), stored};
    return 0;
}

// Makes the rows count that were set behind the last one.
void add_rows(bcast_column &column, uint32_t rows)
{
    if (rows != 0 && memchr(column.data.flags + column.rows, 0, rows) != nullptr)
        column.vector.no_null = 0;
    column.rows += rows;
}

int32_t append_string(bcast_column &column, const void *bytes, size_t len, uint32_t pad_len)
{
    int32_t status = reserve(column, uint64_t{column.rows} + 1);
    if (status == 0)
        status = set_text(column, column.rows, bytes, len, pad_len);
    if (status == 0)
        add_rows(column, 1);
    return status;
}

void drop_selection(bcast_column &column)
{
    free(column.sel);
    column.sel = nullptr;
    column.vector.sel = nullptr;
}

} // namespace

bcast_column *bcast_column_new(bcast_type type)
{
    if (bcast_type_name(type) == nullptr)
        return nullptr;
    auto *column = static_cast<bcast_column *>(calloc(1, sizeof(bcast_column)));
    if (column == nullptr)
        return nullptr;
    column->type = type;
    column->data.copy_row = embedded::copy_row_of(type);
    column->vector.data = &column->data;
    column->vector.no_null = 1;
    // From the beginning there are arrays, for a batch of no rows has their addresses all the same.
    if (reserve(*column, 1) != 0) {
        free(column);
        return nullptr;
    }
    return column;
}

void bcast_column_free(bcast_column *column)
{
    if (column == nullptr)
        return;
    drop_selection(*column);
    embedded::arena_free(column->bytes);
    free(column->data.flags);
    free(column->data.values);
    free(column);
}

bcast_type bcast_column_type(const bcast_column *column) { return column->type; }

uint32_t bcast_column_rows(const bcast_column *column) { return column->rows; }

bdta3_col *bcast_column_vector(bcast_column *column) { return &column->vector; }

void bcast_column_clear(bcast_column *column)
{
    drop_selection(*column);
    embedded::arena_empty(column->bytes);
    column->rows = 0;
    column->vector.no_null = 1;
}

int32_t bcast_column_append_null(bcast_column *column)
{
    const int32_t status = reserve(*column, uint64_t{column->rows} + 1);
    if (status != 0)
        return status;
    set_null(*column, column->rows);
    add_rows(*column, 1);
    return 0;
}

int32_t bcast_column_append_value(bcast_column *column, const void *element)
{
    if (!takes_values(*column))
        return ERR_BAD_CONVERSION;
    // A copy, for the element may be the column's own, which moves when the column grows.
    unsigned char own[sizeof(xdec)];
    memcpy(own, element, bcast_type_stride(column->type));
    return bcast_column_append_values(column, own, nullptr, 1);
}

int32_t bcast_column_append_text(bcast_column *column, const void *bytes, uint32_t len)
{
    if (!bcast_type_is_string(column->type))
        return ERR_BAD_CONVERSION;
    return append_string(*column, bytes, len, 0);
}

int32_t bcast_column_append_char(bcast_column *column, const void *bytes, uint32_t len, uint32_t pad_len)
{
    if (!has_pad_len(*column))
        return ERR_BAD_CONVERSION;
    return append_string(*column, bytes, len, pad_len);
}

int32_t bcast_column_append_values(bcast_column *column, const void *values, const uint8_t *present, uint32_t rows)
{
    if (!takes_values(*column))
        return ERR_BAD_CONVERSION;
    const int32_t status = reserve(*column, uint64_t{column->rows} + rows);
    if (status != 0)
        return status;
    const size_t stride = bcast_type_stride(column->type);
    for (uint32_t i = 0; i < rows; i++) {
        if (present == nullptr || present[i] != 0)
            set_value(*column, column->rows + i, static_cast<const char *>(values) + i * stride);
        else
            set_null(*column, column->rows + i);
    }
    add_rows(*column, rows);
    return 0;
}

int32_t bcast_column_append_texts(bcast_column *column, const char *const *texts, const uint32_t *lengths,
                                  uint32_t rows)
{
    if (!bcast_type_is_string(column->type))
        return ERR_BAD_CONVERSION;
    int32_t status = reserve(*column, uint64_t{column->rows} + rows);
    for (uint32_t i = 0; status == 0 && i < rows; i++) {
        const uint32_t row = column->rows + i;
        if (texts[i] == nullptr)
            set_null(*column, row);
        else
            status = set_text(*column, row, texts[i], lengths != nullptr ? lengths[i] : strlen(texts[i]), 0);
    }
    if (status == 0)
        add_rows(*column, rows);
    return status;
}

int32_t bcast_column_make_room(bcast_column *column, uint32_t rows)
{
    const int32_t status = reserve(*column, rows);
    if (status != 0)
        return status;
    bcast_column_clear(column);
    if (rows != 0) {
        memset(column->data.flags, 0, rows);
        memset(column->data.values, 0, rows * bcast_type_stride(column->type));
    }
    add_rows(*column, rows);
    return 0;
}

int32_t bcast_column_select(bcast_column *column, const uint16_t *sel, uint32_t count)
{
    if (sel == nullptr) {
        drop_selection(*column);
        return 0;
    }
    if (count > UINT16_MAX || std::any_of(sel, sel + count, [&](uint16_t row) { return row >= column->rows; }))
        return ERR_OVERFLOW;
    const size_t size = count * sizeof(uint16_t);
    // An empty selection is not none: it needs a pointer as well.
    auto *copy = static_cast<uint16_t *>(malloc(std::max(size, sizeof(uint16_t))));
    if (copy == nullptr)
        return ERR_NO_MEMORY;
    memcpy(copy, sel, size);
    drop_selection(*column);
    column->sel = copy;
    column->vector.sel = copy;
    return 0;
}

bool bcast_column_is_null(const bcast_column *column, uint32_t row)
{
    if (column->data.flags[row] == 0)
        return true;
    return column->type == BCAST_BOOLEAN && embedded::load<int32_t>(element(*column, row)) == BOOL_UNKNOWN;
}

const void *bcast_column_value(const bcast_column *column, uint32_t row) { return element(*column, row); }

int64_t bcast_column_int64(const bcast_column *column, uint32_t row)
{
    switch (column->type) {
    case BCAST_TINYINT:
    case BCAST_SMALLINT:
    case BCAST_INT:
    case BCAST_BIT:
    case BCAST_BOOLEAN:
        return embedded::load<int32_t>(element(*column, row));
    case BCAST_INT64:
        return embedded::load<int64_t>(element(*column, row));
    default:
        return 0;
    }
}

const char *bcast_column_text(const bcast_column *column, uint32_t row, uint32_t *len)
{
    *len = 0;
    if (!bcast_type_is_string(column->type))
        return nullptr;
    const bdta3_str element = embedded::string_elements(column->data)[row];
    const auto stored = uint32_t(element.length);
    if (!holds_large_objects(*column)) {
        *len = stored;
        return element.text;
    }
    const char *value = nullptr;
    bcast_lob_read(element.text, stored, &value, len);
    return value;
}
