// A recording double of the services: logs every call with its arguments, answers as a test tells it to, and leaves
// rubbish in its outputs when it fails. One per thread.
#pragma once

#include "tests/support/double_binary.h"
#include "tests/support/double_character.h"
#include "tests/support/double_numeric.h"
#include "tests/support/double_temporal.h"

#include <bcast/column.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace bcast::test {

// One call, as it was made. A field that the service does not take stays as it is here.
struct service_call {
    std::string_view service;
    const void *env = nullptr;
    const void *heap = nullptr;
    const void *column = nullptr;
    int32_t row = 0;
    const void *text = nullptr; // where the text stood, for a service that is to get the source's own bytes
    std::string bytes = {};     // what stood there
    int64_t number = 0;         // the value or the limit handed over
    int32_t length = 0;
    int32_t pad = 0;
    std::string_view working_value = {}; // state or part of the nstr that was handed over
    int32_t shape_len = 0;               // a decimal's shape
    int32_t shape_prec = 0;

    friend bool operator==(const service_call &, const service_call &) = default;
};

std::string describe(const service_call &call);

// The bytes at text, as a call is logged with them: none of a length below 1 or of a very great one.
std::string bytes_at(const void *text, int32_t length);

// What a cast should have called. env and heap are the ones that call.h hands to casts.
service_call parses(const bdta3_str &element, int32_t length);
service_call formats(int32_t value, int32_t limit);
service_call assigns_text(const bdta3_col *target, uint32_t row, std::string text, int32_t pad);
service_call makes_constant(std::string value, std::string_view working_value);
service_call assigns_bytes(const bdta3_col *target, uint32_t row, std::string bytes);
service_call judges_double(double value); // its bits are the call's number
service_call judges_int(int64_t value);
service_call assigns_constant(const bdta3_col *target, uint32_t row, std::string_view value);

// The state of an nstr as it comes into nblob_assign_const.
inline constexpr std::string_view fresh_value = "fresh"; // set up, and not filled yet
inline constexpr std::string_view kept_value = "kept";   // as the service left it, but for the first word

// What stands where nobody may read, and how much of it a failing nblob_assign_const leaves behind outline.
inline constexpr char rubbish_byte = '\xDB';
inline constexpr uint32_t length_of_failed_constant = 0x7EAD;

// The bytes of a large-object constant, as the double makes it.
std::string constant_of(std::string_view value);

class service_double {
public:
    // Forgets the log, the answers and the stored elements.
    void reset();

    // The same between two batches of one test: what the test told stays, but for the calls that fail.
    void start_batch();

    // The result of a service for one value: the text that is parsed, the decimal text of the number that is
    // formatted or judged, the bytes of the constant. A positive result is a success.
    void answer(std::string_view service, std::string value, int32_t result);

    // The call of that number, counted from 0 over all calls that can fail, fails with that code.
    void fail_call(size_t number, int32_t code);

    // str_from_int writes this text for that value.
    void spell(int32_t value, std::string text);

    int64_t result_of_failed_parse = 42;         // what a failing str2int64 leaves in its result
    std::optional<uint32_t> length_of_constants; // what nblob_assign_const says, in place of the truth
    bool outline_stays_inline = false;           // beside an inline constant outline is at it, and not at rubbish
    character_answers character;
    numeric_answers numeric;
    binary_answers binary;
    temporal_answers temporal;

    const std::vector<service_call> &log() const { return log_; }

    // True if these calls were made, in this order, and no other.
    testing::AssertionResult logged(const std::vector<service_call> &expected) const;

    // True if text is space for that many bytes that a service handed out, and nothing was written beside it. Of no
    // bytes, it may be null.
    testing::AssertionResult handed_out(const char *text, size_t len) const;

    // For services: logs a call; and what the call has to give.
    const service_call &record(service_call call);
    int32_t result_for(std::string_view service, const std::string &value);
    int32_t result_for(std::string_view service, double value); // the same for its text as std::to_string has it

    // The services.
    int32_t parse(const char *text, int32_t length, int64_t *result);
    int32_t format(int32_t value, int32_t limit, char *buffer, int32_t *out_len);
    int32_t judge(std::string_view service, int64_t number, const std::string &value);
    int32_t judge(std::string_view service, double value);
    int32_t make_constant(void *env, void *heap, nstr *value, const char *bytes, int32_t len);
    void make_text(void *env, void *heap, nstr *value, const char *text);
    void clear(void *env, void *heap, nstr *value);
    void assign_text(void *env, void *heap, bdta3_col *col, int32_t row, const char *text, int32_t len, int32_t pad);
    void assign_bytes(void *env, void *heap, bdta3_col *col, int32_t row, const void *bytes, int32_t len);
    void *allocate(void *env, void *heap, bdta3_col_data *coldata, int32_t size);
    int32_t copy_rows(void *env, void *heap, const bdta3_col *src, uint32_t src_pos, bdta3_col *dst, uint32_t dst_pos,
                      void *reserved, uint32_t count);

private:
    struct block {
        std::unique_ptr<char[]> bytes; // fenced on both sides
        size_t len;
    };

    std::string_view state_of(const nstr &value);
    void leave(nstr &value);
    char *store(const void *bytes, size_t len);

    std::vector<service_call> log_;
    std::map<std::string, int32_t, std::less<>> answers_; // by service and value
    std::map<size_t, int32_t> failing_calls_;
    std::map<int32_t, std::string> spellings_;
    size_t calls_that_can_fail_ = 0;
    std::unordered_map<const char *, block> stored_; // by where the bytes stand
    nstr *value_ = nullptr; // the working value of the cast that runs, and its state when a service last left it
    nstr left_ = {};
};

// The double of this thread.
service_double &services();

} // namespace bcast::test
