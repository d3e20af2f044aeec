// One column of a load: texts in, values and their texts out, a batch at a time.
#pragma once

#include "columns.h"
#include "report.h"
#include "shown_values.h"
#include "types.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace bcast::tool {

// A column as the command line asks for it.
struct wanted_column {
    std::string name;
    type_name written; // its type
    declared_type type;
    too_long rule = too_long::fails;
};

class loaded_column {
public:
    loaded_column(const wanted_column &wanted, const date_reading &reading);

    const std::string &name() const { return sums_.column; }
    const column_sums &sums() const { return sums_; }

    // Bytes that a row takes, however short its text.
    std::size_t bytes_per_row() const { return bytes_per_row_; }

    void append(std::string_view text) { texts_.append(text); }
    void clear() { texts_.clear(); }

    // Casts the first rows texts, and counts. What follows tells of these rows.
    void cast(pool &memory, std::uint16_t rows);
    bool any_failed() { return *failed_.count() > 0; }
    std::int32_t code(std::uint32_t row) { return failed_.codes()[row]; } // 0: the row did not fail
    std::string_view source_text(std::uint32_t row) { return stored_text(texts_, row); }

    // The text of the value; empty for a null or a failed row. Valid until the next call.
    std::string_view value_text(std::uint32_t row) { return shown_.text(row); }

private:
    column texts_;
    road from_text_;
    shown_values shown_;
    failures failed_;
    column_sums sums_;
    std::size_t bytes_per_row_;
};

} // namespace bcast::tool
