#include "tests/support/service_double.h"

#include "tests/support/call.h"

#include <bcast/codes.h>
#include <services/column.h>
#include <services/numeric.h>
#include <services/text.h>

#include <bit>
#include <charconv>
#include <cstring>
#include <sstream>

namespace bcast::test {

namespace {

constexpr int32_t longest_logged_text = 1 << 20;
constexpr int32_t too_long_for_limit = -9149; // the double's own, so that a cast cannot have made it up
constexpr char rubbish = rubbish_byte;
constexpr size_t fence_bytes = 8; // on either side of stored bytes
constexpr char fence = '\xFE';

std::string printable(std::string_view bytes)
{
    constexpr size_t shown = 80;
    std::ostringstream out;
    out << '"';
    for (const char c : bytes.substr(0, shown)) {
        if (c >= ' ' && c <= '~')
            out << c;
        else
            out << "\\x" << std::hex << (c & 0xFF) << std::dec;
    }
    out << '"';
    if (bytes.size() > shown)
        out << "... (" << bytes.size() << " bytes)";
    return out.str();
}

} // namespace

std::string bytes_at(const void *text, int32_t length)
{
    if (length <= 0 || length > longest_logged_text)
        return {};
    return {static_cast<const char *>(text), static_cast<size_t>(length)};
}

std::string describe(const service_call &call)
{
    std::ostringstream out;
    out << call.service << '(';
    if (call.env || call.heap) {
        const auto name = [&](const void *got, const void *right, const char *word) {
            got == right ? out << word : out << word << "? " << got;
            out << ", ";
        };
        name(call.env, env(), "env");
        name(call.heap, heap(), "heap");
    }
    if (call.column)
        out << "column " << call.column << ", row " << call.row << ", ";
    if (call.text)
        out << "text at " << call.text << ", ";
    out << printable(call.bytes) << ", number " << call.number << ", length " << call.length << ", pad " << call.pad;
    if (!call.working_value.empty())
        out << ", working value: " << call.working_value;
    if (call.shape_len != 0 || call.shape_prec != 0)
        out << ", shape " << call.shape_len << ", " << call.shape_prec;
    out << ')';
    return out.str();
}

service_call parses(const bdta3_str &element, int32_t length)
{
    return {.service = "str2int64", .text = element.text, .bytes = bytes_at(element.text, length), .length = length};
}

service_call formats(int32_t value, int32_t limit)
{
    return {.service = "str_from_int", .number = value, .length = limit};
}

service_call assigns_text(const bdta3_col *target, uint32_t row, std::string text, int32_t pad)
{
    const auto length = static_cast<int32_t>(text.size());
    return {.service = "bdta3_col_assign_str",
            .env = env(),
            .heap = heap(),
            .column = target,
            .row = static_cast<int32_t>(row),
            .bytes = std::move(text),
            .length = length,
            .pad = pad};
}

service_call makes_constant(std::string value, std::string_view working_value)
{
    const auto length = static_cast<int32_t>(value.size());
    return {.service = "nblob_assign_const",
            .env = env(),
            .heap = heap(),
            .bytes = std::move(value),
            .length = length,
            .working_value = working_value};
}

service_call assigns_bytes(const bdta3_col *target, uint32_t row, std::string bytes)
{
    const auto length = static_cast<int32_t>(bytes.size());
    return {.service = "bdta3_col_assign_bin",
            .env = env(),
            .heap = heap(),
            .column = target,
            .row = static_cast<int32_t>(row),
            .bytes = std::move(bytes),
            .length = length};
}

service_call judges_double(double value)
{
    return {.service = "ntype_is_double_overflow", .number = std::bit_cast<int64_t>(value)};
}

service_call judges_int(int64_t value) { return {.service = "ntype_is_lint_overflow", .number = value}; }

service_call assigns_constant(const bdta3_col *target, uint32_t row, std::string_view value)
{
    std::string constant = constant_of(value);
    const auto length = static_cast<int32_t>(constant.size());
    return {.service = "bdta3_col_assign_bin",
            .env = env(),
            .heap = heap(),
            .column = target,
            .row = static_cast<int32_t>(row),
            .bytes = std::move(constant),
            .length = length,
            .working_value = length > NSTR_INLINE_MAX ? "outline" : "inline"};
}

std::string constant_of(std::string_view value)
{
    std::string constant(LOB_HEADER_SIZE, 'H');
    constant += value;
    return constant;
}

void service_double::reset() { *this = service_double(); }

void service_double::start_batch()
{
    log_.clear();
    failing_calls_.clear();
    calls_that_can_fail_ = 0;
    stored_.clear();
    value_ = nullptr;
    left_ = {};
}

void service_double::answer(std::string_view service, std::string value, int32_t result)
{
    answers_[std::string(service) + ' ' + value] = result;
}

void service_double::fail_call(size_t number, int32_t code) { failing_calls_[number] = code; }

void service_double::spell(int32_t value, std::string text) { spellings_[value] = std::move(text); }

testing::AssertionResult service_double::logged(const std::vector<service_call> &expected) const
{
    for (size_t k = 0; k < std::max(expected.size(), log_.size()); k++) {
        if (k < expected.size() && k < log_.size() && expected[k] == log_[k])
            continue;
        return testing::AssertionFailure()
               << "call " << k << " of " << log_.size() << " (expected " << expected.size() << ")\n"
               << "    expected " << (k < expected.size() ? describe(expected[k]) : "no further call") << '\n'
               << "    but got  " << (k < log_.size() ? describe(log_[k]) : "no further call");
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult service_double::handed_out(const char *text, size_t len) const
{
    if (!text && len == 0)
        return testing::AssertionSuccess();
    const auto found = stored_.find(text);
    if (found == stored_.end())
        return testing::AssertionFailure() << "text stands at " << static_cast<const void *>(text)
                                           << ", which is no space that a service handed out";
    if (found->second.len != len)
        return testing::AssertionFailure()
               << "text of " << len << " bytes stands in space for " << found->second.len << " bytes";
    const auto intact = [](const char *side) {
        return std::all_of(side, side + fence_bytes, [](char byte) { return byte == fence; });
    };
    if (!intact(text - fence_bytes) || !intact(text + len))
        return testing::AssertionFailure() << "bytes beside a text of " << len << " bytes were written";
    return testing::AssertionSuccess();
}

const service_call &service_double::record(service_call call) { return log_.emplace_back(std::move(call)); }

int32_t service_double::result_for(std::string_view service, const std::string &value)
{
    const size_t number = calls_that_can_fail_++;
    if (const auto failing = failing_calls_.find(number); failing != failing_calls_.end())
        return failing->second;
    if (answers_.empty())
        return 0;
    const auto answer = answers_.find(std::string(service) + ' ' + value);
    return answer == answers_.end() ? 0 : answer->second;
}

// The text of a great double takes long to make.
int32_t service_double::result_for(std::string_view service, double value)
{
    return result_for(service, answers_.empty() ? std::string() : std::to_string(value));
}

int32_t service_double::parse(const char *text, int32_t length, int64_t *result)
{
    const service_call &made = log_.emplace_back(
        service_call{.service = "str2int64", .text = text, .bytes = bytes_at(text, length), .length = length});
    *result = result_of_failed_parse;
    const int32_t status = result_for(made.service, made.bytes);
    if (status < 0)
        return status;
    const char *end = made.bytes.data() + made.bytes.size();
    int64_t value = 0;
    const auto [stopped, error] = std::from_chars(made.bytes.data(), end, value);
    if (error != std::errc() || stopped != end)
        return ERR_BAD_CONVERSION;
    *result = value;
    return status;
}

int32_t service_double::format(int32_t value, int32_t limit, char *buffer, int32_t *out_len)
{
    log_.push_back({.service = "str_from_int", .number = value, .length = limit});
    std::memset(buffer, rubbish, INT_TEXT_ROOM);
    *out_len = 0x7EAD;
    const auto spelling = spellings_.find(value);
    const std::string text = spelling == spellings_.end() ? std::to_string(value) : spelling->second;
    const int32_t status = result_for("str_from_int", std::to_string(value));
    if (status < 0)
        return status;
    if (status == 0 && static_cast<int64_t>(text.size()) > limit)
        return too_long_for_limit;
    std::memset(buffer, '9', size_t{INT_TEXT_ROOM}); // digits behind the text, for a cast that looks for its end
    std::memcpy(buffer, text.data(), text.size());
    *out_len = static_cast<int32_t>(text.size());
    return status;
}

int32_t service_double::judge(std::string_view service, int64_t number, const std::string &value)
{
    log_.push_back({.service = service, .number = number});
    return result_for(service, value);
}

int32_t service_double::judge(std::string_view service, double value)
{
    log_.push_back({.service = service, .number = std::bit_cast<int64_t>(value)});
    return result_for(service, value);
}

std::string_view service_double::state_of(const nstr &value)
{
    if (value.first_word != 0)
        return "first word not 0";
    if (!value_) {
        if (value.length != 0)
            return "length not 0 before the first use";
        if (value.outline != value.inline_bytes)
            return "outline not at the inline bytes before the first use";
        if (value.outline_state != 0)
            return "outline state not 0 before the first use";
        return fresh_value;
    }
    if (&value != value_)
        return "another value than before";
    if (value.length != left_.length || value.outline != left_.outline || value.outline_state != left_.outline_state)
        return "changed since its last use";
    return kept_value;
}

void service_double::leave(nstr &value)
{
    value_ = &value;
    left_ = value;
}

char *service_double::store(const void *bytes, size_t len)
{
    block made{std::make_unique_for_overwrite<char[]>(len + 2 * fence_bytes), len};
    std::memset(made.bytes.get(), fence, len + 2 * fence_bytes);
    char *text = made.bytes.get() + fence_bytes;
    if (len > 0)
        std::memcpy(text, bytes, len);
    stored_.emplace(text, std::move(made));
    return text;
}

int32_t service_double::make_constant(void *env, void *heap, nstr *value, const char *bytes, int32_t len)
{
    binary.constant_from = bytes;
    const service_call &made = log_.emplace_back(service_call{.service = "nblob_assign_const",
                                                              .env = env,
                                                              .heap = heap,
                                                              .bytes = bytes_at(bytes, len),
                                                              .length = len,
                                                              .working_value = state_of(*value)});
    const std::string constant = constant_of(made.bytes);
    const int32_t status = result_for(made.service, made.bytes);
    // Whichever place does not hold the constant holds rubbish, and neither word says where it is.
    value->first_word = 0x5EED;
    std::memset(value->inline_bytes, rubbish, NSTR_INLINE_MAX);
    const size_t outline_bytes = status < 0 ? length_of_failed_constant : constant.size();
    value->outline = store(std::string(outline_bytes, rubbish).data(), outline_bytes);
    value->outline_state++;
    value->length =
        status < 0 ? length_of_failed_constant : length_of_constants.value_or(static_cast<uint32_t>(constant.size()));
    if (status >= 0 && outline_stays_inline && value->length <= NSTR_INLINE_MAX)
        value->outline = value->inline_bytes;
    if (status >= 0)
        std::memcpy(value->length > NSTR_INLINE_MAX ? value->outline : value->inline_bytes, constant.data(),
                    constant.size());
    leave(*value);
    return status;
}

void service_double::make_text(void *env, void *heap, nstr *value, const char *text)
{
    log_.push_back({.service = "nstr_assign_const",
                    .env = env,
                    .heap = heap,
                    .bytes = text,
                    .length = static_cast<int32_t>(std::strlen(text)),
                    .working_value = state_of(*value)});
    const std::string held = binary.held_of(text);
    value->first_word = 0x5EED;
    std::memset(value->inline_bytes, rubbish, NSTR_INLINE_MAX);
    value->length = static_cast<uint32_t>(held.size());
    value->outline = store(held.c_str(), held.size() + 1);
    value->outline_state++;
    leave(*value);
}

void service_double::clear(void *env, void *heap, nstr *value)
{
    std::string_view state = {};
    if (value_)
        state = value == value_ ? "" : "another value than before";
    else if (const std::string_view unused = state_of(*value); unused != fresh_value)
        state = unused;
    log_.push_back({.service = "nstr_clear", .env = env, .heap = heap, .working_value = state});
    value->outline = value->inline_bytes;
    value->outline_state = 0;
    leave(*value);
}

void service_double::assign_text(void *env, void *heap, bdta3_col *col, int32_t row, const char *text, int32_t len,
                                 int32_t pad)
{
    const service_call &made = log_.emplace_back(service_call{.service = "bdta3_col_assign_str",
                                                              .env = env,
                                                              .heap = heap,
                                                              .column = col,
                                                              .row = row,
                                                              .bytes = bytes_at(text, len),
                                                              .length = len,
                                                              .pad = pad});
    static_cast<bdta3_str *>(col->data->values)[row] = {len, pad, store(made.bytes.data(), made.bytes.size())};
}

void service_double::assign_bytes(void *env, void *heap, bdta3_col *col, int32_t row, const void *bytes, int32_t len)
{
    binary.assigned_from = bytes;
    std::string_view part = {};
    if (value_)
        part = bytes == value_->inline_bytes ? "inline"
               : bytes == value_->outline    ? "outline"
                                             : "neither of its places";
    const service_call &made = log_.emplace_back(service_call{.service = "bdta3_col_assign_bin",
                                                              .env = env,
                                                              .heap = heap,
                                                              .column = col,
                                                              .row = row,
                                                              .bytes = bytes_at(bytes, len),
                                                              .length = len,
                                                              .working_value = part});
    static_cast<bdta3_str *>(col->data->values)[row] = {len, 0, store(made.bytes.data(), made.bytes.size())};
}

void *service_double::allocate(void *env, void *heap, bdta3_col_data *coldata, int32_t size)
{
    log_.push_back({.service = "bdta3_col_space_alloc", .env = env, .heap = heap, .column = coldata, .length = size});
    if (result_for("bdta3_col_space_alloc", std::to_string(size)) < 0)
        return nullptr;
    const std::string filling(static_cast<size_t>(std::max(size, 0)), rubbish);
    return store(filling.data(), filling.size());
}

int32_t service_double::copy_rows(void *env, void *heap, const bdta3_col *src, uint32_t src_pos, bdta3_col *dst,
                                  uint32_t dst_pos, void *reserved, uint32_t count)
{
    log_.push_back({.service = "copy_row",
                    .env = env,
                    .heap = heap,
                    .column = dst,
                    .row = static_cast<int32_t>(dst_pos),
                    .text = src,
                    .number = src_pos,
                    .length = static_cast<int32_t>(count),
                    .working_value = reserved ? "reserved argument not null" : ""});
    const int32_t status = result_for("copy_row", std::to_string(src_pos));
    auto *copies = static_cast<bdta3_str *>(dst->data->values) + dst_pos;
    for (uint32_t k = 0; k < count; k++) {
        const uint32_t row = src->sel ? src->sel[src_pos + k] : src_pos + k;
        if (status < 0) {
            copies[k] = failed_copy;
            continue;
        }
        dst->data->flags[dst_pos + k] = src->data->flags[row];
        if (src->data->flags[row] == 0)
            continue;
        const bdta3_str &from = static_cast<const bdta3_str *>(src->data->values)[row];
        copies[k] = {from.length, pad_len_of_copies, store(from.text, static_cast<size_t>(std::max(from.length, 0)))};
    }
    return status;
}

service_double &services()
{
    static thread_local service_double own;
    return own;
}

} // namespace bcast::test

using bcast::test::services;

extern "C" {

void bdta3_col_assign_str(void *env, void *heap, bdta3_col *col, int32_t row, const char *text, int32_t len,
                          int32_t pad)
{
    services().assign_text(env, heap, col, row, text, len, pad);
}

void bdta3_col_assign_bin(void *env, void *heap, bdta3_col *col, int32_t row, const void *bytes, int32_t len)
{
    services().assign_bytes(env, heap, col, row, bytes, len);
}

void *bdta3_col_space_alloc(void *env, void *heap, bdta3_col_data *coldata, int32_t size)
{
    return services().allocate(env, heap, coldata, size);
}

int32_t nblob_assign_const(void *env, void *heap, nstr *value, const char *bytes, int32_t len)
{
    return services().make_constant(env, heap, value, bytes, len);
}

void nstr_assign_const(void *env, void *heap, nstr *value, const char *text)
{
    services().make_text(env, heap, value, text);
}

void nstr_clear(void *env, void *heap, nstr *value) { services().clear(env, heap, value); }

int32_t str2int64(const char *text, int32_t length, int64_t *result) { return services().parse(text, length, result); }

int32_t str_from_int(int32_t value, int32_t limit, char *buffer, int32_t *out_len)
{
    return services().format(value, limit, buffer, out_len);
}

int32_t ntype_is_double_overflow(double value) { return services().judge("ntype_is_double_overflow", value); }

int32_t ntype_is_lint_overflow(int64_t value)
{
    return services().judge("ntype_is_lint_overflow", value, std::to_string(value));
}
}
