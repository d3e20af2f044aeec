#include "tests/support/double_temporal.h"

#include "tests/support/batch.h"
#include "tests/support/call.h"
#include "tests/support/service_double.h"

#include <services/interval.h>
#include <services/temporal.h>

#include <algorithm>
#include <cstring>

namespace bcast::test {

namespace {

uint64_t scrambled(uint64_t number)
{
    number ^= number >> 30;
    number *= 0xBF58476D1CE4E5B9;
    number ^= number >> 27;
    number *= 0x94D049BB133111EB;
    return number ^ number >> 31;
}

std::string bytes_from(uint64_t seed, size_t bytes)
{
    std::string made;
    while (made.size() < bytes)
        made += image_of(scrambled(seed += 0x9E3779B97F4A7C15));
    made.resize(bytes);
    return made;
}

uint64_t number_from(std::string_view image) { return scrambled(std::hash<std::string_view>()(image)); }

template <class Record> std::string_view name_of(std::string_view of_ivym, std::string_view of_ivdt)
{
    return sizeof(Record) == sizeof(ivym) ? of_ivym : of_ivdt;
}

service_call takes(std::string_view service, std::string record, int64_t number = 0, int32_t length = 0)
{
    return {.service = service, .bytes = std::move(record), .number = number, .length = length};
}

void store(void *out, const std::string &image) { std::memcpy(out, image.data(), image.size()); }

// A service that cannot fail. out may be what the call was made with.
void make(service_call call, void *out, size_t bytes)
{
    store(out, made_by(services().record(std::move(call)), bytes));
}

// One that can. out is written in any case.
int32_t try_to_make(service_call call, void *out, size_t bytes)
{
    const service_call made = services().record(std::move(call));
    const int32_t status = services().result_for(made.service, made.bytes);
    store(out, status < 0 ? left_by_failure(bytes) : made_by(made, bytes));
    return status;
}

int32_t parse(service_call call, std::string_view text, void *out)
{
    const int32_t status = try_to_make(std::move(call), out, sizeof(vqtime));
    if (status < 0 || !services().temporal.null_texts.contains(text))
        return status;
    store(out, left_by_failure());
    return PARSE_NULL;
}

// 0 is the failure here, and every other result a success: a positive one that a test asks for becomes negative.
int32_t write(service_call call, char *text)
{
    services().temporal.on_text();
    const service_call made = services().record(std::move(call));
    const int32_t status = services().result_for(made.service, made.bytes);
    std::memset(text, status < 0 ? rubbish_byte : '9', BCAST_TEXT_ROOM - 1);
    text[BCAST_TEXT_ROOM - 1] = '\0';
    if (status < 0)
        return 0;
    const std::string written = services().temporal.text_of(made.bytes);
    std::memcpy(text, written.c_str(), std::min<size_t>(written.size() + 1, BCAST_TEXT_ROOM - 1));
    return status == 0 ? 1 : -status;
}

} // namespace

int16_t temporal_answers::zone_of(std::string_view image) const
{
    const auto told = zones.find(image);
    return told == zones.end() ? static_cast<int16_t>(number_from(image)) : told->second;
}

std::string temporal_answers::text_of(std::string_view image) const
{
    const auto told = texts.find(image);
    return told == texts.end() ? std::to_string(number_from(image)).substr(0, 1 + number_from(image) % 9)
                               : told->second;
}

std::string made_by(const service_call &call, size_t bytes)
{
    uint64_t seed = std::hash<std::string_view>()(call.service);
    seed = scrambled(seed ^ std::hash<std::string_view>()(call.bytes));
    return bytes_from(seed ^ scrambled(static_cast<uint64_t>(call.number)), bytes);
}

std::string left_by_failure(size_t bytes) { return std::string(bytes, rubbish_byte); }

std::string some_record(uint32_t number, size_t bytes) { return bytes_from(scrambled(number), bytes); }

service_call parses_date(const bdta3_str &element, uint16_t parse_word, const void *parse_ptr)
{
    return {.service = "char_to_date_simple_with_alen",
            .text = parse_ptr,
            .bytes = bytes_at(element.text, element.length) + '\0',
            .number = parse_word,
            .length = element.length};
}

service_call parses_datetime(const bdta3_str &element, int32_t type)
{
    return {.service = "vqtime_from_char_ex2",
            .text = element.text,
            .bytes = bytes_at(element.text, element.length),
            .number = type,
            .length = element.length};
}

service_call finishes(std::string record) { return takes("vqtime_glgl_adjust_ignore", std::move(record)); }
service_call makes_date_of(int64_t number) { return takes("vqtime_from_long", {}, number); }
service_call makes_time_of(int64_t number) { return takes("time_from_long", {}, number); }
service_call takes_zone(std::string record) { return takes("vqtime_get_tz", std::move(record)); }
service_call sets_zone(std::string record, int32_t zone) { return takes("vqtime_set_tz", std::move(record), zone); }

service_call shifts(std::string record, int64_t minutes)
{
    return takes("vqtime_add_by_fmt", std::move(record), minutes, FIELD_MINUTE);
}

service_call rounds(std::string record, uint16_t digits)
{
    return takes("vqtime_round_by_prec", std::move(record), digits);
}

service_call resets(std::string record, int32_t type) { return takes("vqtime_reset", std::move(record), type); }

service_call unpacks(std::string_view service, std::string record) { return takes(service, std::move(record)); }

service_call writes_decoded(std::string_view service, std::string decoded)
{
    return takes(service, std::move(decoded));
}

service_call writes_zoned(std::string record, int32_t type, int32_t digits)
{
    return takes("vqtime_tz_to_char", std::move(record), type, digits);
}

template <class Interval> service_call clears()
{
    return takes(name_of<Interval>("vqdt_clear_interval_ym_info", "vqdt_clear_interval_dt_info"), {});
}

template <class Interval> service_call validates(std::string record, uint16_t word)
{
    return takes(name_of<Interval>("interval_ym_validate", "interval_dt_validate"), std::move(record), word);
}

template <class Interval> service_call parses_interval(std::string_view text, uint16_t word)
{
    service_call call = takes(name_of<Interval>("vq_interval_ym_from_char", "vq_interval_dt_from_char"),
                              std::string(text) + '\0', word);
    call.env = env();
    return call;
}

template <class Interval> service_call writes_interval(std::string record, uint16_t word)
{
    return takes(name_of<Interval>("vq_interval_ym_to_char", "vq_interval_dt_to_char"), std::move(record), word);
}

template <class Interval> service_call reshapes(std::string record, uint16_t word)
{
    return takes(name_of<Interval>("cast_interval_ym", "cast_interval_dt"), std::move(record), word, 1);
}

#define OF_INTERVALS(Interval)                                                                                         \
    template service_call clears<Interval>();                                                                          \
    template service_call validates<Interval>(std::string record, uint16_t word);                                      \
    template service_call parses_interval<Interval>(std::string_view text, uint16_t word);                             \
    template service_call writes_interval<Interval>(std::string record, uint16_t word);                                \
    template service_call reshapes<Interval>(std::string record, uint16_t word);
OF_INTERVALS(ivym)
OF_INTERVALS(ivdt)
#undef OF_INTERVALS

namespace {

template <class Interval> int32_t read_interval(void *env, const char *text, Interval *interval, uint16_t word)
{
    service_call call = parses_interval<Interval>({}, word);
    call.env = env;
    call.bytes.assign(text, std::max(std::strlen(text) + 1, services().temporal.staged_bytes));
    return try_to_make(std::move(call), interval, sizeof *interval);
}

template <class Interval> int32_t reshape(Interval *result, const Interval *from, int32_t one)
{
    service_call call = reshapes<Interval>(image_of(*from), 0);
    call.number = result->iv_word;
    call.length = one;
    return try_to_make(std::move(call), result, sizeof *result);
}

template <class Interval> void clear(Interval *interval)
{
    services().record(clears<Interval>());
    *interval = {};
}

} // namespace

} // namespace bcast::test

using namespace bcast::test;

extern "C" {

int32_t char_to_date_simple_with_alen(const char *text, int32_t length, void *parse_ptr, uint16_t parse_word,
                                      vqtime *result, int32_t zero)
{
    const bdta3_str element{length, 0, const_cast<char *>(text)};
    service_call call = parses_date(element, parse_word, parse_ptr);
    if (length >= 0)
        call.bytes.back() = text[length];
    call.pad = zero;
    return parse(std::move(call), bytes_at(text, length), result);
}

int32_t vqtime_from_char_ex2(const char *text, int32_t length, int32_t type, vqtime *result, int32_t *aux)
{
    constexpr int32_t unused = 0x7EAD;
    *aux = unused;
    const bdta3_str element{length, 0, const_cast<char *>(text)};
    return parse(parses_datetime(element, type), bytes_at(text, length), result);
}

void vqtime_glgl_adjust_ignore(vqtime *value) { make(finishes(image_of(*value)), value, sizeof *value); }

int32_t vqtime_from_long(int64_t number, vqtime *result)
{
    return try_to_make(makes_date_of(number), result, sizeof *result);
}

int32_t time_from_long(int64_t number, vqtime *result)
{
    return try_to_make(makes_time_of(number), result, sizeof *result);
}

// Only the low 16 bits mean anything.
int32_t vqtime_get_tz(const vqtime *value)
{
    const std::string image = image_of(*value);
    services().record(takes_zone(image));
    return 0x5EED0000 | static_cast<uint16_t>(services().temporal.zone_of(image));
}

void vqtime_set_tz(vqtime *value, int32_t tz) { make(sets_zone(image_of(*value), tz), value, sizeof *value); }

int32_t vqtime_add_by_fmt(const vqtime *value, int32_t field, int64_t amount, vqtime *result)
{
    service_call call = shifts(image_of(*value), amount);
    call.length = field;
    return try_to_make(std::move(call), result, sizeof *result);
}

int32_t vqtime_round_by_prec(const vqtime *value, uint16_t digits, vqtime *result)
{
    return try_to_make(rounds(image_of(*value), digits), result, sizeof *result);
}

void vqtime_reset(vqtime *value, int32_t type) { make(resets(image_of(*value), type), value, sizeof *value); }

void vqdt_encode_fast(const vqtime *value, vqdt_decoded *decoded)
{
    make(unpacks("vqdt_encode_fast", image_of(*value)), decoded, sizeof *decoded);
}

void vqdt_date_encode_fast(const vqtime *value, vqdt_decoded *decoded)
{
    make(unpacks("vqdt_date_encode_fast", image_of(*value)), decoded, sizeof *decoded);
}

void vqdt_time_encode_fast(const vqtime *value, vqdt_decoded *decoded)
{
    make(unpacks("vqdt_time_encode_fast", image_of(*value)), decoded, sizeof *decoded);
}

int32_t vqdt_to_char(const vqdt_decoded *decoded, char *text, int32_t zero)
{
    service_call call = writes_decoded("vqdt_to_char", image_of(*decoded));
    call.pad = zero;
    return write(std::move(call), text);
}

int32_t vq_date_to_char(const vqdt_decoded *decoded, char *text)
{
    return write(writes_decoded("vq_date_to_char", image_of(*decoded)), text);
}

int32_t vq_time_to_char(const vqdt_decoded *decoded, char *text, int32_t zero)
{
    service_call call = writes_decoded("vq_time_to_char", image_of(*decoded));
    call.pad = zero;
    return write(std::move(call), text);
}

int32_t vqtime_tz_to_char(const vqtime *value, int32_t type, int32_t digits, char *text)
{
    return write(writes_zoned(image_of(*value), type, digits), text);
}

void vqdt_clear_interval_ym_info(ivym *interval) { clear(interval); }
void vqdt_clear_interval_dt_info(ivdt *interval) { clear(interval); }

int32_t interval_ym_validate(ivym *interval, uint16_t word)
{
    return try_to_make(validates<ivym>(image_of(*interval), word), interval, sizeof *interval);
}

int32_t interval_dt_validate(ivdt *interval, uint16_t word)
{
    return try_to_make(validates<ivdt>(image_of(*interval), word), interval, sizeof *interval);
}

int32_t vq_interval_ym_from_char(void *env, const char *text, ivym *interval, uint16_t word)
{
    return read_interval(env, text, interval, word);
}

int32_t vq_interval_dt_from_char(void *env, const char *text, ivdt *interval, uint16_t word)
{
    return read_interval(env, text, interval, word);
}

int32_t vq_interval_ym_to_char(const ivym *interval, char *text, uint16_t word)
{
    return write(writes_interval<ivym>(image_of(*interval), word), text);
}

int32_t vq_interval_dt_to_char(const ivdt *interval, char *text, uint16_t word)
{
    return write(writes_interval<ivdt>(image_of(*interval), word), text);
}

int32_t cast_interval_ym(ivym *result, const ivym *from, int32_t one) { return reshape(result, from, one); }
int32_t cast_interval_dt(ivdt *result, const ivdt *from, int32_t one) { return reshape(result, from, one); }
}
