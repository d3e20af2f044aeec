// One column of a load: texts in, values and their texts out, a batch at a time.
#pragma once

#include "columns.h"
#include "report.h"
#include "types.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace bcast::tool {

class loaded_column {
public:
    loaded_column(std::string name, const column_type &type);

    const std::string &name() const { return sums_.column; }
    const column_sums &sums() const { return sums_; }

    void append(std::string_view text) { texts_.append(text); }
    void clear() { texts_.clear(); }

    // Casts the first rows texts, and counts. What follows tells of these rows.
    void cast(pool &memory, std::uint16_t rows);
    bool any_failed() { return *failed_.count() > 0; }
    std::int32_t code(std::uint32_t row) { return failed_.codes()[row]; } // 0: the row did not fail
    std::string_view source_text(std::uint32_t row) { return stored_text(texts_, row); }

    // The text of the value; empty for a null or a failed row.
    std::string_view value_text(std::uint32_t row)
    {
        return is_present(*value_texts_, row) ? stored_text(*value_texts_, row) : std::string_view();
    }

private:
    column texts_;
    road from_text_;
    road to_text_;
    column *value_texts_ = nullptr;
    failures failed_;
    column_sums sums_;
};

} // namespace bcast::tool
