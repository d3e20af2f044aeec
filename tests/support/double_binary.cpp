#include "tests/support/double_binary.h"

#include "tests/support/call.h"
#include "tests/support/service_double.h"

#include <bcast/codes.h>
#include <services/binary.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <optional>

namespace bcast::test {

namespace {

constexpr uint8_t rubbish = 0xDB;
constexpr int32_t plausible_length = 0x5EED;

service_call takes_bytes(std::string_view service, const void *bytes, uint32_t len, int32_t number)
{
    const auto length = static_cast<int32_t>(len);
    return {.service = service, .text = bytes, .bytes = bytes_at(bytes, length), .number = number, .length = length};
}

service_call takes_element(std::string_view service, const bdta3_str &element, int32_t number)
{
    return takes_bytes(service, element.text, static_cast<uint32_t>(element.length), number);
}

std::optional<std::string> bytes_of_digits(std::string_view digits)
{
    std::string bytes(digits.size() / 2, '\0');
    for (size_t k = 0; k < bytes.size(); k++) {
        const char *pair = digits.data() + 2 * k;
        uint8_t byte = 0;
        if (std::from_chars(pair, pair + 2, byte, 16).ptr != pair + 2)
            return std::nullopt;
        bytes[k] = static_cast<char>(byte);
    }
    if (digits.size() % 2 != 0)
        return std::nullopt;
    return bytes;
}

// The low width bytes of the integer that the bytes stand for, or rubbish, in out.
int32_t read_integer(const service_call &made, size_t width, void *out)
{
    std::memset(out, rubbish, width);
    const int32_t status = services().result_for(made.service, made.bytes);
    if (status < 0)
        return status;
    const std::optional<int64_t> value = services().binary.integer_in(made.bytes);
    if (!value)
        return ERR_BAD_CONVERSION;
    std::memcpy(out, &*value, width);
    return status;
}

} // namespace

std::optional<std::string> binary_answers::bytes_of(const std::string &text, bool has_prefix) const
{
    if (const auto known = decoded.find(text); known != decoded.end())
        return known->second;
    return bytes_of_digits(has_prefix && text.size() >= 2 ? std::string_view(text).substr(2) : text);
}

std::string binary_answers::text_of(const std::string &bytes) const
{
    const auto known = spelled.find(bytes);
    return known == spelled.end() ? digits_of(bytes) : known->second;
}

std::string binary_answers::held_of(const std::string &text) const
{
    const auto known = held.find(text);
    return known == held.end() ? text : known->second;
}

std::optional<int64_t> binary_answers::integer_in(const std::string &bytes) const
{
    if (const auto known = integers.find(bytes); known != integers.end())
        return known->second;
    int64_t value = 0;
    const char *end = bytes.data() + bytes.size();
    const auto [stopped, error] = std::from_chars(bytes.data(), end, value);
    if (error != std::errc() || stopped != end)
        return std::nullopt;
    return value;
}

std::string digits_of(std::string_view bytes)
{
    std::string digits;
    for (const char byte : bytes) {
        digits += "0123456789ABCDEF"[byte >> 4 & 0xF];
        digits += "0123456789ABCDEF"[byte & 0xF];
    }
    return digits;
}

std::string digits_of_failure(size_t bytes) { return std::string(2 * bytes, '!'); }

service_call decodes(const bdta3_str &element, int32_t has_prefix)
{
    return takes_element("nbin_from_char_ex", element, has_prefix);
}

service_call spells(const bdta3_str &element) { return takes_element("nbin_to_char_ex", element, 0); }

service_call reads_integer(const bdta3_str &element, int32_t width)
{
    return takes_element("nbin_to_int_by_ntype_len", element, width);
}

service_call reads_int64(const bdta3_str &element) { return takes_element("nbin_to_lint64", element, 0); }

service_call holds_text(std::string text, std::string_view working_value)
{
    const auto length = static_cast<int32_t>(text.size());
    return {.service = "nstr_assign_const",
            .env = env(),
            .heap = heap(),
            .bytes = std::move(text),
            .length = length,
            .working_value = working_value};
}

service_call clears_value() { return {.service = "nstr_clear", .env = env(), .heap = heap()}; }

} // namespace bcast::test

using namespace bcast::test;

extern "C" {

int32_t nbin_from_char_ex(const char *text, uint32_t text_len, nbin *out, int32_t has_prefix)
{
    const service_call made = services().record(takes_bytes("nbin_from_char_ex", text, text_len, has_prefix));
    services().binary.on_decode();
    services().binary.decoded_to = out->bytes;
    // Behind that stands what the texts before left, for all of it in every row would take most of a test's time.
    constexpr size_t rubbish_bytes = 512;
    std::memset(out->bytes, rubbish, rubbish_bytes);
    out->length = plausible_length;
    const int32_t status = services().result_for(made.service, made.bytes);
    if (status < 0)
        return status;
    const std::optional<std::string> bytes = services().binary.bytes_of(made.bytes, has_prefix != 0);
    if (!bytes)
        return ERR_BAD_CONVERSION;
    out->length = static_cast<int32_t>(bytes->size());
    std::copy(bytes->begin(), bytes->end(), out->bytes);
    return status;
}

int32_t nbin_to_char_ex(const void *bytes, uint32_t len, char *buf, int32_t flag)
{
    const service_call made = services().record(takes_bytes("nbin_to_char_ex", bytes, len, flag));
    const int32_t status = services().result_for(made.service, made.bytes);
    const std::string text = status < 0 ? digits_of_failure(made.bytes.size()) : services().binary.text_of(made.bytes);
    std::memset(buf, '9',
                2 * made.bytes.size() + 1); // digits behind the text, for a cast that does not look for its end
    std::memcpy(buf, text.c_str(), text.size() + 1);
    return status;
}

int32_t nbin_to_int_by_ntype_len(const void *bytes, uint32_t len, int32_t width, void *out)
{
    const service_call made = services().record(takes_bytes("nbin_to_int_by_ntype_len", bytes, len, width));
    if (width != 1 && width != 2 && width != 4 && width != 8)
        return ERR_BAD_CONVERSION; // the log tells
    return read_integer(made, static_cast<size_t>(width), out);
}

int32_t nbin_to_lint64(const void *bytes, uint32_t len, int64_t *out)
{
    return read_integer(services().record(takes_bytes("nbin_to_lint64", bytes, len, 0)), sizeof *out, out);
}
}
