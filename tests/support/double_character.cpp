#include "tests/support/double_character.h"

#include "tests/support/call.h"
#include "tests/support/service_double.h"

#include <bcast/codes.h>
#include <services/text.h>

#include <charconv>

namespace bcast::test {

namespace {

constexpr uint32_t rubbish_word = 0xDBDBDBDB;

service_call takes_text(std::string_view service, const char *text, int32_t readable, int32_t length)
{
    return {.service = service, .text = text, .bytes = bytes_at(text, readable), .length = length};
}

template <class Value> bool read_digits(const std::string &text, Value &value)
{
    const char *end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stopped == end;
}

} // namespace

service_call parses_literal(const bdta3_str &element, int32_t length)
{
    return takes_text("str2int64_directly", element.text, length, length);
}

service_call parses_number(const bdta3_str &element, int32_t length)
{
    return takes_text("utl_digit_from_char", element.text, length, length);
}

service_call measures_characters(const bdta3_str &element, int32_t limit, int32_t charset)
{
    service_call call = takes_text("vq_get_valid_chars", element.text, limit, limit);
    call.number = charset;
    return call;
}

service_call validates_locator(const bdta3_str &element)
{
    return takes_text("utl_is_valid_bfile_str", element.text, element.length, element.length);
}

service_call copies_row(const bdta3_col *source, const bdta3_col *target, uint32_t row)
{
    return {.service = "copy_row",
            .env = env(),
            .heap = heap(),
            .column = target,
            .row = static_cast<int32_t>(row),
            .text = source,
            .number = row,
            .length = 1};
}

service_call allocates(const bdta3_col *target, int32_t size)
{
    return {.service = "bdta3_col_space_alloc", .env = env(), .heap = heap(), .column = target->data, .length = size};
}

int32_t copy_row_of_source(void *env, void *heap, const bdta3_col *src, uint32_t src_pos, bdta3_col *dst,
                           uint32_t dst_pos, void *reserved, uint32_t count)
{
    return services().copy_rows(env, heap, src, src_pos, dst, dst_pos, reserved, count);
}

int32_t copy_row_of_target(void *env, void *heap, const bdta3_col *src, uint32_t src_pos, bdta3_col *dst,
                           uint32_t dst_pos, void *, uint32_t)
{
    services().record({.service = "copy_row of the target",
                       .env = env,
                       .heap = heap,
                       .column = dst,
                       .row = static_cast<int32_t>(dst_pos),
                       .text = src,
                       .number = src_pos});
    return -1;
}

} // namespace bcast::test

using namespace bcast::test;

extern "C" {

int32_t str2int64_directly(const char *text, int32_t length, int64_t *result, char *sign)
{
    const service_call made = services().record(takes_text("str2int64_directly", text, length, length));
    const auto known = services().character.literals.find(made.bytes);
    literal_reading reading{services().result_for(made.service, made.bytes), 0, 'x'};
    if (known != services().character.literals.end())
        reading = known->second;
    else if (reading.status >= 0 && !read_digits(made.bytes, reading.value))
        reading.status = ERR_BAD_CONVERSION;
    *result = reading.value;
    *sign = reading.sign;
    return reading.status;
}

int32_t utl_digit_from_char(const char *text, uint16_t length, double *result)
{
    const service_call made = services().record(takes_text("utl_digit_from_char", text, length, length));
    int32_t status = services().result_for(made.service, made.bytes);
    const auto known = services().character.numbers.find(made.bytes);
    std::optional<double> number = 0.0;
    if (known != services().character.numbers.end())
        number = known->second;
    else if (status >= 0 && !read_digits(made.bytes, *number))
        status = ERR_BAD_CONVERSION;
    if (status < 0)
        number = services().character.result_of_failed_number;
    if (number)
        *result = *number;
    return status;
}

int32_t vq_get_valid_chars(const char *text, int32_t limit, int32_t charset, uint32_t *valid_chars,
                           uint32_t *valid_bytes)
{
    service_call call = takes_text("vq_get_valid_chars", text, limit, limit);
    call.number = charset;
    const service_call made = services().record(std::move(call));
    const auto &whole_characters = services().character.whole_characters;
    *valid_chars = rubbish_word;
    *valid_bytes = whole_characters ? whole_characters(made.bytes) : static_cast<uint32_t>(made.bytes.size());
    return -1; // which nobody reads
}

int32_t utl_is_valid_bfile_str(const char *text, uint32_t *length, int32_t *is_null)
{
    const auto given = static_cast<int32_t>(*length);
    const service_call made = services().record(takes_text("utl_is_valid_bfile_str", text, given, given));
    const auto known = services().character.locators.find(made.bytes);
    const locator_reading reading =
        known == services().character.locators.end() ? locator_reading{1, *length, 0} : known->second;
    *length = reading.length;
    *is_null = reading.is_null;
    return reading.valid;
}
}
