// Casts told by what one present row does: the services that it calls, and what becomes of the row. From that, whole
// batches are told: flags, no_null, failures that stop or are captured.
#pragma once

#include "tests/support/batch.h"
#include "tests/support/call.h"
#include "tests/support/element_cast.h"
#include "tests/support/service_double.h"

#include <bcast/codes.h>

#include <functional>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace bcast::test {

enum class row_flags {
    copied,              // row by row
    copied_ahead,        // as a block where there is no sel, else row by row
    copied_for_all,      // row by row, and null rows are converted as well
    filled_when_no_null, // with 1, and all rows converted; else row by row
};

// What a cast makes of a service that fails.
enum class service_failure {
    passes_its_code,
    is_overflow,
    is_to_char,
    is_bad_interval,
    is_not_looked_at,
    passes_overflow_only, // any other code is no failure
};

// One call, and what its failure means where the service can fail.
struct row_step {
    service_call call;
    std::optional<service_failure> failure = std::nullopt;
};

struct row_outcome {
    std::vector<row_step> steps = {};
    int32_t status = 0;                                    // the cast's own verdict behind the steps
    bool turns_null = false;                               // behind the steps
    std::string element = {};                              // of fixed width
    std::optional<target_image::text> text = std::nullopt; // or made by the services

    std::string failed_element = {}; // what a service leaves in the target when it fails, if it writes there

    // Of the values that services took from a failed call, the cast knows none; for service_failure::is_not_looked_at.
    std::function<void(row_outcome &)> behind_failure = nullptr;
};

struct row_input {
    std::string image; // of the source element
    const void *where; // it stands
    const bdta3_col *target;
    uint32_t row;
    bool first; // no present row has gone before
    const setup &how;

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
    bool status_is_last_result = false;          // of the services that can fail; a positive one as well

    size_t from_bytes() const { return samples.front().size(); }
    bool captures() const;
};

void PrintTo(const row_cast &c, std::ostream *out);

struct batch_row {
    uint8_t flag;
    std::string element;
};

struct batch_plan {
    std::map<size_t, int32_t> results = {}; // of the services that can fail, counted over the batch
    bool capture = false;                   // hands err_codes over
    bool counted = true;                    // and err_count with it
    uint16_t count_before = 7;
    bool wide_rows = false; // hands rows over in 32 bits
};

// Runs one batch and compares all that it left. What services().numeric was told holds, and outline_stays_inline.
void expect_batch(const row_cast &c, const setup &how, const std::vector<batch_row> &rows, const batch_plan &plan = {});

// A batch of samples, in which each flag of 0 makes a null row.
std::vector<batch_row> sample_rows(const row_cast &c, const std::vector<uint8_t> &flags);

// Everything that can be told of a cast whose services do not fail.
void expect_rows_and_null_rows(const row_cast &c);

// The largest batch, and rows at 16 bits.
void expect_row_counts(const row_cast &c);

// Each service fails at the first row, at the last and between them; without err_codes.
void expect_stops(const row_cast &c);

// The same with err_codes, several rows in one batch.
void expect_captures(const row_cast &c);

// One row with that element, and one before it that is converted.
void expect_element(const row_cast &c, const std::string &element);

} // namespace bcast::test
