#include "shown_values.h"

#include "columns.h"

#include <services/binary.h>

#include <utility>

namespace bcast::tool {

namespace {

// More than any text that a cast makes takes.
constexpr declared_type made_text = {BCAST_VARCHAR, 504};

} // namespace

shown_values::shown_values(const declared_type &type)
    : is_boolean_(type.type == BCAST_BOOLEAN),
      is_binary_(type.type == BCAST_BINARY || type.type == BCAST_VARBINARY || type.type == BCAST_BLOB),
      to_text_(type, casts_to_text(type.type), made_text)
{}

void shown_values::take(pool &memory, column &values, std::uint16_t rows, failures &failed)
{
    texts_ = &to_text_.run(memory, values, rows, failed);
}

bool shown_values::is_null(std::uint32_t row) { return is_boolean_ ? texts_->is_null(row) : !is_present(*texts_, row); }

std::string_view shown_values::text(std::uint32_t row)
{
    if (is_null(row))
        return {};
    if (is_boolean_)
        return texts_->int64(row) == BOOL_FALSE ? "0" : "1";
    if (texts_->type() == BCAST_TEXT || texts_->type() == BCAST_BLOB) {
        const std::string_view value = texts_->text(row).value_or(std::string_view());
        return is_binary_ ? digits_of(value) : value;
    }
    const bdta3_str &element = string_element(*texts_, row);
    const std::string_view stored(element.text, std::size_t(element.length));
    return is_binary_ ? digits_of(stored) : with_blanks(stored, std::size_t(element.pad_len));
}

std::string_view shown_values::with_blanks(std::string_view text, std::size_t blanks)
{
    if (blanks == 0)
        return text;
    made_.assign(text);
    made_.append(blanks, ' ');
    return made_;
}

std::string_view shown_values::digits_of(std::string_view bytes)
{
    made_.resize(2 * bytes.size() + 1); // and a NUL
    nbin_to_char_ex(bytes.data(), std::uint32_t(bytes.size()), made_.data(), 0);
    made_.pop_back();
    return made_;
}

} // namespace bcast::tool
