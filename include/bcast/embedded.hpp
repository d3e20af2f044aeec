// libbcast embedded services for C++: owners of pools, columns and captured
// failures, and views of what is in them. embedded.h has the whole contract.
//
//     bcast::pool pool;
//     bcast::column src(BCAST_VARCHAR), dst(BCAST_INT);
//     src.append("42");
//     src.append(std::nullopt);
//     dst.make_room(src.rows());
//     bcast_varchar_to_int(nullptr, pool.heap(), src.vector(), dst.vector(), 2, nullptr, nullptr);
//     std::optional<std::int64_t> value = dst.int64(0);
//
// Owners can be moved; one that was moved from can only be assigned to or
// destroyed. An operation that fails throws and leaves the column as it was:
// std::bad_alloc when memory ran out, std::invalid_argument when the operation
// does not suit the column's type, std::length_error when rows or bytes are more
// than a column takes, std::out_of_range for a row that is not there. Casts
// never throw.
#ifndef BCAST_EMBEDDED_HPP
#define BCAST_EMBEDDED_HPP

#include "embedded.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <stdexcept>
#include <string_view>
#include <type_traits>

namespace bcast {

namespace detail {

template <auto Free> struct deleter {
    template <typename T> void operator()(T *object) const { Free(object); }
};

template <typename T> T *made(T *object)
{
    if (object == nullptr)
        throw std::bad_alloc();
    return object;
}

} // namespace detail

class pool {
public:
    pool() : pool_(detail::made(bcast_pool_new())) {}

    // The heap argument of casts.
    bcast_pool *heap() { return pool_.get(); }
    void reset() { bcast_pool_reset(pool_.get()); }
    void set_time_zone(std::int16_t minutes) { bcast_pool_set_time_zone(pool_.get(), minutes); }

private:
    std::unique_ptr<bcast_pool, detail::deleter<bcast_pool_free>> pool_;
};

class column {
public:
    explicit column(bcast_type type) : column_(detail::made(bcast_column_new(checked(type)))) {}

    bcast_type type() const { return bcast_column_type(column_.get()); }
    std::uint32_t rows() const { return bcast_column_rows(column_.get()); }

    // The src or dst argument of casts.
    bdta3_col *vector() { return bcast_column_vector(column_.get()); }

    void clear() { bcast_column_clear(column_.get()); }
    void make_room(std::uint32_t rows) { check(bcast_column_make_room(column_.get(), rows)); }

    // Append a row: a text (string columns) or a null, an element (the others).
    void append(std::optional<std::string_view> text)
    {
        check(text ? bcast_column_append_text(column_.get(), text->data(), length32(text->size()))
                   : bcast_column_append_null(column_.get()));
    }
    void append_char(std::string_view text, std::uint32_t pad_len)
    {
        check(bcast_column_append_char(column_.get(), text.data(), length32(text.size()), pad_len));
    }
    template <typename T> void append_value(const T &value) { append_values(std::span<const T>(&value, 1)); }

    // Append a row for each value; present: one byte a row, 0 for a null row, or empty.
    template <typename T> void append_values(std::span<const T> values, std::span<const std::uint8_t> present = {})
    {
        check_element<T>();
        if (!present.empty() && present.size() != values.size())
            throw std::invalid_argument("bcast::column: values and present differ in size");
        check(bcast_column_append_values(column_.get(), values.data(), present.empty() ? nullptr : present.data(),
                                         length32(values.size())));
    }

    // Gives a source a selection: row numbers, copied. unselect takes it away.
    void select(std::span<const std::uint16_t> sel)
    {
        static constexpr std::uint16_t none = 0;
        for (const std::uint16_t row : sel)
            check_row(row);
        check(bcast_column_select(column_.get(), sel.empty() ? &none : sel.data(), length32(sel.size())));
    }
    void unselect() { check(bcast_column_select(column_.get(), nullptr, 0)); }

    bool is_null(std::uint32_t row) const
    {
        check_row(row);
        return bcast_column_is_null(column_.get(), row);
    }

    // The element of a row of a column whose elements are T; nothing for a null row.
    template <typename T> std::optional<T> value(std::uint32_t row) const
    {
        check_element<T>();
        if (is_null(row))
            return std::nullopt;
        T element;
        std::memcpy(&element, bcast_column_value(column_.get(), row), sizeof element);
        return element;
    }

    // The value of an integer, bit or boolean row; nothing for a null row.
    std::optional<std::int64_t> int64(std::uint32_t row) const
    {
        if (is_null(row))
            return std::nullopt;
        return bcast_column_int64(column_.get(), row);
    }

    // The bytes of a string row, valid until the column is cleared or destroyed;
    // nothing for a null row, other types and a broken large-object header.
    std::optional<std::string_view> text(std::uint32_t row) const
    {
        if (is_null(row))
            return std::nullopt;
        std::uint32_t len;
        const char *bytes = bcast_column_text(column_.get(), row, &len);
        return bytes != nullptr ? std::optional(std::string_view(bytes, len)) : std::nullopt;
    }

private:
    static bcast_type checked(bcast_type type)
    {
        if (bcast_type_name(type) == nullptr)
            throw std::invalid_argument("bcast::column: no such type");
        return type;
    }

    static std::uint32_t length32(std::size_t length)
    {
        if (length > std::numeric_limits<std::uint32_t>::max())
            throw std::length_error("bcast::column: too many rows or bytes");
        return static_cast<std::uint32_t>(length);
    }

    static void check(std::int32_t status)
    {
        if (status == ERR_NO_MEMORY)
            throw std::bad_alloc();
        if (status == ERR_OVERFLOW)
            throw std::length_error("bcast::column: too many rows or bytes");
        if (status < 0)
            throw std::invalid_argument("bcast::column: the operation does not suit the column's type");
    }

    void check_row(std::uint32_t row) const
    {
        if (row >= rows())
            throw std::out_of_range("bcast::column: no such row");
    }

    template <typename T> void check_element() const
    {
        static_assert(std::is_trivially_copyable_v<T>);
        if (sizeof(T) != bcast_type_stride(type()))
            throw std::invalid_argument("bcast::column: the column's elements are of another size");
    }

    std::unique_ptr<bcast_column, detail::deleter<bcast_column_free>> column_;
};

class failures {
public:
    failures() : failures_(detail::made(bcast_failures_new())) {}

    // The err_codes and err_count arguments of capturing casts.
    std::int32_t *codes() { return failures_->codes; }
    std::uint16_t *count() { return &failures_->count; }

    void reset() { bcast_failures_reset(failures_.get()); }

    // The first batch row from `from` on, below rows, that failed; rows if none did.
    std::uint32_t next(std::uint32_t from, std::uint32_t rows) const
    {
        return bcast_failures_next(failures_.get(), from, rows);
    }

private:
    std::unique_ptr<bcast_failures, detail::deleter<bcast_failures_free>> failures_;
};

} // namespace bcast

#endif
