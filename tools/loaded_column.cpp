#include "loaded_column.h"

namespace bcast::tool {

namespace {

constexpr declared_type text_of_a_field = {BCAST_VARCHAR};

} // namespace

// A binary value is filled up to its length.
loaded_column::loaded_column(const wanted_column &wanted, const date_reading &reading)
    : texts_(text_of_a_field.type),
      from_text_(text_of_a_field, casts_from_text(wanted.type, wanted.rule), wanted.type, reading),
      shown_(wanted.type), sums_{.column = wanted.name, .type = described(wanted.written)},
      bytes_per_row_(wanted.type.type == BCAST_BINARY ? std::size_t(wanted.type.length) : 0)
{}

void loaded_column::cast(pool &memory, std::uint16_t rows)
{
    failed_.reset();
    column &values = from_text_.run(memory, texts_, rows, failed_);
    shown_.take(memory, values, rows, failed_);

    sums_.rows += rows;
    for (std::uint32_t row = 0; row < rows; row++) {
        if (code(row) != 0)
            ++sums_.failures[code(row)];
        else if (shown_.is_null(row))
            ++sums_.nulls;
    }
}

} // namespace bcast::tool
