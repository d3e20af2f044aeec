// Casts told by what one present row does: the services that it calls, and what becomes of the row. From that, whole
// batches are told, run and compared: status, flags, every target byte, no_null, err_codes, err_count, and the calls in
// their order.
//
// How a family is told: a row_cast for each cast, in a list that a suite of the family is instantiated with. Its
// convert turns a present row's element into a row_outcome; the rest are words for what all rows of the cast have in
// common:
//
//     row_cast c{.name = "bcast_varchar_to_int", .cast = &bcast_varchar_to_int, .to_bytes = 4,
//                .flags = row_flags::copied, .no_null_ahead = true, .failure_clears_flag = false,
//                .samples = text_elements({"0", "7", "-128"}),
//                .convert = [](const row_input &input) -> row_outcome {
//                    const auto element = input.as<bdta3_str>();
//                    if (element.length == 0)
//                        return {.turns_null = true};
//                    const std::string text = bytes_at(element.text, element.length);
//                    return {.steps = {{parses(element, element.length), service_failure::passes_its_code}},
//                            .element = image_of(std::stoi(text))};
//                },
//                .null_element = element_of_length(5)};
//
// - A step is a call. Its failure says what the cast makes of a result below 0; none is for services that return
//   nothing, or that the double does not count among those that can fail. Its result is the double's own answer for
//   what it is handed; a batch_plan fails calls by their number in the batch.
// - An outcome's status is the cast's own code behind its steps: a limit, a length.
// - What depends on rows before goes by input.first, as the state of a working value does.
// - Rows and null rows, the largest batch, stops and captures are checked alike for each cast by the functions below;
//   what is peculiar to a cast, by expect_batch, expect_element and at_several_rows with elements of its own.
// - What the double is told (services().character, numeric, spell, ...) holds for all batches of a test, and SetUp
//   resets it. Once a batch differs, expect_batch does no more: the first bad batch is all that a test reports.
#pragma once

#include "tests/support/batch.h"
#include "tests/support/call.h"
#include "tests/support/service_double.h"

#include <bcast/codes.h>

#include <functional>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace bcast::test {

// What becomes of the flags, and which rows are converted: those with a flag, if nothing else is said.
enum class row_flags {
    copied,                   // row by row
    copied_ahead,             // as a block where there is no sel, else row by row
    copied_for_all,           // row by row, and null rows are converted as well
    converted_when_no_null,   // row by row; where no_null is set, null rows are converted as well
    filled_when_no_null,      // where no_null is set: 1, no flag is read and all rows are converted; else row by row
    set,                      // 1 ahead; no flag is read and all rows are converted
    set_and_null_in_element,  // 1 ahead; null rows hold null_result. Where no_null is set as above
    filled_or_copied_for_all, // where no_null is set: 1, and no flag is read; else row by row. All are converted
    cleared,                  // 0 ahead; no flag is read, no row converted, and no_null cleared if it does not stay
};

// What a cast reads of its source. The rest cannot be read in its batches.
enum class source_reading { everything, flags_alone, nothing };

// What a cast makes of a service that fails.
enum class service_failure {
    passes_its_code,
    is_overflow,
    is_to_char,
    is_bad_interval,
    is_no_memory,
    is_not_looked_at,
    passes_overflow_only, // any other code is no failure
    ends_cast,            // by its code, also where failures are captured; the row keeps its flag
};

// One call, and what its failure means where the service can fail.
struct row_step {
    service_call call;
    std::optional<service_failure> failure = std::nullopt;
    int32_t result = 0; // of a call that the plan does not fail
};

struct row_outcome {
    std::vector<row_step> steps = {};
    int32_t status = 0;                                    // the cast's own verdict behind the steps
    bool turns_null = false;                               // behind the steps; with its element, if it has one
    bool keeps_no_null = false;                            // although it turns null
    std::string element = {};                              // of fixed width; of no bytes if it stays as it was
    std::optional<target_image::text> text = std::nullopt; // or made by the services

    std::string failed_element = {}; // what a service leaves in the target when it fails, if it writes there

    // Of the values that services took from a failed call, the cast knows none; for service_failure::is_not_looked_at.
    // Without it the failure changes nothing.
    std::function<void(row_outcome &)> behind_failure = nullptr;

    std::optional<uint8_t> flag_over_element = std::nullopt; // a verdict in place of the flag; no_null is cleared
    bool failure_keeps_flag = false;                         // although those of the cast clear it
};

struct row_cast;

struct row_input {
    const std::string &image; // of the source element
    const void *where;        // it stands
    const bdta3_col *target;
    uint32_t row;
    bool first; // no present row has gone before
    const setup &how;
    const bdta3_col *source;
    const row_cast &cast;  // with the arguments and modes of this batch
    bool captures = false; // failures, into err_codes

    template <class T> T as() const
    {
        T element;
        std::memcpy(&element, image.data(), sizeof element);
        return element;
    }
};

struct row_cast {
    const char *name;
    any_cast cast;
    size_t to_bytes;
    row_flags flags;
    bool no_null_ahead; // of the walk; else behind it
    bool failure_clears_flag;
    std::vector<std::string> samples; // elements that become values
    std::function<row_outcome(const row_input &)> convert;
    int32_t length = 0;
    std::string null_element = {}; // what rows hold that are not converted; what present ones do if it is empty
    temporal_arguments temporal = {};
    std::optional<uint16_t> zone = std::nullopt; // heap begins with it, and nothing else of heap can be read
    bool no_null_stays = false;                  // but for rows that turn null
    bool no_null_is_set = false;                 // to 1 ahead of the walk, whatever the source's
    bool status_is_last_result = false;          // of the services that can fail; a positive one as well
    std::string null_result = {};                // what a null row becomes where its element tells it
    uint16_t cmp_op = '=';
    std::optional<int32_t> compat_mode = std::nullopt, compat_mode2 = std::nullopt; // if not those of the test
    std::vector<service_call> at_end = {}; // behind the last row, if the cast gets there
    source_reading reads = source_reading::everything;

    size_t from_bytes() const { return samples.front().size(); }
    bool captures() const;
    bool converts_all(const setup &how) const;
};

void PrintTo(const row_cast &c, std::ostream *out);

struct sample {
    std::string from, to;
};

// A cast between elements of fixed width that calls no service: what becomes of each sample, and of no other element.
row_cast cast_of_samples(const char *name, any_cast cast, row_flags flags, const std::vector<sample> &samples);

// The casts of a list for which that holds.
template <class Holds> std::vector<row_cast> casts_where(const std::vector<row_cast> &casts, const Holds &holds)
{
    std::vector<row_cast> some;
    for (const row_cast &c : casts)
        if (std::invoke(holds, c))
            some.push_back(c);
    return some;
}

struct batch_row {
    uint8_t flag;
    std::string element;
};

struct batch_plan {
    std::map<size_t, int32_t> results = {}; // of the services that can fail, counted over the batch
    bool capture = false;                   // hands err_codes over
    bool counted = true;                    // and err_count with it
    uint16_t count_before = 7;
    bool wide_rows = false;       // hands rows over in 32 bits
    bool elements_hidden = false; // a cast that looks at an element ends the test
};

// What the cast is to make of an element by itself.
row_outcome outcome_alone(const row_cast &c, const std::string &element, const setup &how = few_setups().front());

// Runs one batch and compares all that it left. Does nothing once the test has failed.
void expect_batch(const row_cast &c, const setup &how, const std::vector<batch_row> &rows, const batch_plan &plan = {});

// A batch of samples, in which each flag of 0 makes a null row.
std::vector<batch_row> sample_rows(const row_cast &c, const std::vector<uint8_t> &flags);

// A batch of them in which rows are null here and there, and present by one number or another.
std::vector<batch_row> rows_with_some_null(const row_cast &c, uint32_t row_count);

// Everything that can be told of a cast whose services do not fail.
void expect_rows_and_null_rows(const row_cast &c);

// What a cast that works on blocks of rows can get wrong besides.
void expect_blocks(const row_cast &c);

// Of rows that are not converted no element is looked at.
void expect_null_rows_unread(const row_cast &c);

// The largest batch, and rows at 16 bits.
void expect_row_counts(const row_cast &c);

// Each service fails at the first row, at the last and between them; without err_codes.
void expect_stops(const row_cast &c);

// The same with err_codes, several rows in one batch.
void expect_captures(const row_cast &c);

// One row with that element, and one before it that is converted.
void expect_element(const row_cast &c, const std::string &element);

// Puts an element at several places of a batch of samples, one batch after the other, and in all of them.
void at_several_rows(const row_cast &c, const std::string &element,
                     const std::function<void(const std::vector<batch_row> &)> &check, uint8_t flag = 0x81);

// Elements that fail by themselves, at several rows: without err_codes, and with them if the cast has any.
void expect_bad_elements(const row_cast &c, const std::vector<std::string> &elements);

} // namespace bcast::test
