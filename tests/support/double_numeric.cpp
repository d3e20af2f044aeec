#include "tests/support/double_numeric.h"

#include "tests/support/batch.h"
#include "tests/support/service_double.h"

#include <services/decimal.h>
#include <services/numeric.h>

#include <algorithm>
#include <bit>
#include <cstring>

namespace bcast::test {

namespace {

uint64_t hash_of(std::string_view bytes, uint64_t seed = 0)
{
    uint64_t hash = 0xCBF29CE484222325 + seed;
    for (const char byte : bytes) {
        hash ^= static_cast<unsigned char>(byte);
        hash *= 0x100000001B3;
    }
    hash ^= hash >> 29;
    return hash * 0xBF58476D1CE4E5B9 >> 8;
}

xdec decimal_from(std::string_view bytes, uint64_t seed)
{
    xdec made;
    for (uint64_t k = 0; k < sizeof made.bytes; k++)
        made.bytes[k] = static_cast<uint8_t>(hash_of(bytes, seed + 7919 * k));
    return made;
}

service_call takes_decimal(std::string_view service, const void *where, std::string image)
{
    return {.service = service, .text = where, .bytes = std::move(image)};
}

service_call shaped(service_call call, int32_t len, int32_t prec)
{
    call.shape_len = len;
    call.shape_prec = prec;
    return call;
}

const void *place_to_log(const xdec *decimal) { return services().numeric.logs_places ? decimal : nullptr; }

// Logs the call, and makes the decimal if it does not fail. out is written in any case.
template <class Value> int32_t make_decimal(service_call call, const Value &value, std::string_view source, xdec *out)
{
    const service_call made = services().record(std::move(call));
    std::memset(out, rubbish_byte, sizeof *out);
    const int32_t status = services().result_for(made.service, value);
    if (status >= 0)
        *out = made_decimal(source, made.shape_len, made.shape_prec);
    return status;
}

// The text with rubbish behind it up to the end of the room; its length, or what the test says in place of it.
int32_t write_text(const std::string &image, char *buf, size_t room)
{
    const std::string text = services().numeric.text_of(image);
    std::memset(buf, '9', room);
    std::memcpy(buf, text.data(), std::min(text.size(), room));
    const auto told = services().numeric.text_lengths.find(image);
    return told == services().numeric.text_lengths.end() ? static_cast<int32_t>(text.size()) : told->second;
}

} // namespace

int64_t numeric_answers::integer_of(std::string_view image) const
{
    const auto told = integers.find(image);
    return told == integers.end() ? static_cast<int64_t>(hash_of(image) % 201) - 100 : told->second;
}

double numeric_answers::double_of(std::string_view image) const
{
    const auto told = doubles.find(image);
    return told == doubles.end() ? (static_cast<double>(hash_of(image) % 20001) - 10000) / 8 : told->second;
}

std::string numeric_answers::text_of(std::string_view image) const
{
    const auto told = texts.find(image);
    return told == texts.end() ? std::to_string(hash_of(image)).substr(0, 1 + hash_of(image) % 9) : told->second;
}

xdec some_decimal(uint32_t number) { return decimal_from(image_of(number), 1); }

xdec made_decimal(std::string_view source, int32_t len, int32_t prec)
{
    return decimal_from(source, hash_of(image_of(len) + image_of(prec)));
}

service_call judges_float(double value)
{
    return {.service = "ntype_is_float_overflow", .number = std::bit_cast<int64_t>(value)};
}

service_call judges_int64(double value)
{
    return {.service = "ntype_is_lint64_overflow", .number = std::bit_cast<int64_t>(value)};
}

service_call rounds_double(double value) { return {.service = "dou2int64", .number = std::bit_cast<int64_t>(value)}; }

service_call formats_double(int32_t kind, double value)
{
    return {.service = "vq_dou2char", .number = std::bit_cast<int64_t>(value), .length = kind};
}

service_call makes_decimal_of_int64(int64_t value, int32_t len, int32_t prec)
{
    return shaped({.service = "xdec_from_int64_with_len_prec", .number = value}, len, prec);
}

service_call makes_decimal_of_text(const bdta3_str &element, int32_t text_len, int32_t len, int32_t prec)
{
    return shaped({.service = "xdec_from_char_with_len_prec",
                   .text = element.text,
                   .bytes = bytes_at(element.text, text_len),
                   .length = text_len},
                  len, prec);
}

service_call makes_decimal_of_double(double value, int32_t len, int32_t prec)
{
    return shaped({.service = "xdec_from_double_with_len_prec", .number = std::bit_cast<int64_t>(value)}, len, prec);
}

service_call makes_decimal_of_decimal(const void *where, std::string image, int32_t len, int32_t prec)
{
    return shaped(takes_decimal("xdec_from_xdec_with_len_prec", where, std::move(image)), len, prec);
}

service_call takes_double_of_decimal(const void *where, std::string image)
{
    return takes_decimal("xdec_get_double", where, std::move(image));
}

service_call takes_int64_of_decimal(const void *where, std::string image)
{
    return takes_decimal("xdec_get_int64", where, std::move(image));
}

service_call formats_decimal(const void *where, std::string image, int32_t buf_size, int32_t len, int32_t prec)
{
    service_call call = takes_decimal("xdec_to_char_with_zero", where, std::move(image));
    call.length = buf_size;
    return shaped(std::move(call), len, prec);
}

} // namespace bcast::test

using namespace bcast::test;

extern "C" {

int32_t ntype_is_float_overflow(double value) { return services().judge("ntype_is_float_overflow", value); }

int32_t ntype_is_lint64_overflow(double value) { return services().judge("ntype_is_lint64_overflow", value); }

int32_t dou2int64(double value, int64_t *out)
{
    services().record(rounds_double(value));
    std::memset(out, rubbish_byte, sizeof *out);
    const int32_t status = services().result_for("dou2int64", value);
    if (status >= 0)
        *out = services().numeric.integer_of(image_of(value));
    return status;
}

int32_t vq_dou2char(int32_t kind, double value, char *buf)
{
    services().record(formats_double(kind, value));
    return write_text(image_of(value), buf, BCAST_TEXT_ROOM);
}

int32_t xdec_from_int64_with_len_prec(int64_t value, int32_t len, int32_t prec, xdec *out)
{
    return make_decimal(makes_decimal_of_int64(value, len, prec), std::to_string(value), image_of(value), out);
}

int32_t xdec_from_char_with_len_prec(const char *text, uint16_t text_len, int32_t len, int32_t prec, xdec *out)
{
    const std::string bytes = bytes_at(text, text_len);
    const bdta3_str element{text_len, 0, const_cast<char *>(text)};
    return make_decimal(makes_decimal_of_text(element, text_len, len, prec), bytes, bytes, out);
}

int32_t xdec_from_double_with_len_prec(double value, int32_t len, int32_t prec, xdec *out)
{
    return make_decimal(makes_decimal_of_double(value, len, prec), value, image_of(value), out);
}

int32_t xdec_from_xdec_with_len_prec(const xdec *src, int32_t len, int32_t prec, xdec *out)
{
    const std::string image = image_of(*src);
    return make_decimal(makes_decimal_of_decimal(src, image, len, prec), image, image, out);
}

double xdec_get_double(const xdec *src, int32_t *status)
{
    constexpr double unused = 77;
    const std::string image = image_of(*src);
    services().record(takes_double_of_decimal(place_to_log(src), image));
    *status = services().result_for("xdec_get_double", image);
    return *status < 0 ? unused : services().numeric.double_of(image);
}

int32_t xdec_get_int64(const xdec *src, int64_t *out)
{
    const std::string image = image_of(*src);
    services().record(takes_int64_of_decimal(place_to_log(src), image));
    std::memset(out, rubbish_byte, sizeof *out);
    const int32_t status = services().result_for("xdec_get_int64", image);
    if (status >= 0)
        *out = services().numeric.integer_of(image);
    return status;
}

int32_t xdec_to_char_with_zero(const xdec *src, char *buf, int32_t buf_size, uint16_t len, int32_t prec,
                               int32_t *out_len)
{
    constexpr int32_t unused = 0x7EAD;
    const std::string image = image_of(*src);
    services().numeric.on_text();
    services().record(formats_decimal(src, image, buf_size, len, prec));
    const int32_t status = services().result_for("xdec_to_char_with_zero", image);
    const int32_t length = write_text(image, buf, static_cast<size_t>(std::max(buf_size, 0)));
    if (services().numeric.stores_text_length)
        *out_len = status < 0 ? unused : length;
    return status;
}
}
