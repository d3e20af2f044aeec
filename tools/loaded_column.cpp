#include "loaded_column.h"

#include <utility>

namespace bcast::tool {

loaded_column::loaded_column(std::string name, const column_type &type)
    : texts_(BCAST_VARCHAR), from_text_(type.from_text),
      to_text_(type.to_text), sums_{.column = std::move(name), .type = bcast_type_name(type.type)}
{}

void loaded_column::cast(pool &memory, std::uint16_t rows)
{
    failed_.reset();
    column &values = from_text_.run(memory, texts_, rows, failed_);
    value_texts_ = &to_text_.run(memory, values, rows, failed_);

    sums_.rows += rows;
    for (std::uint32_t row = 0; row < rows; row++) {
        if (code(row) != 0)
            ++sums_.failures[code(row)];
        else if (!is_present(values, row))
            ++sums_.nulls;
    }
}

} // namespace bcast::tool
