// Loads of one column, by what each of its fields is to become.
#pragma once

#include "loaded.h"

#include <bcast/codes.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace bcast::test {

// A value by its text, a null, or a failure.
struct field {
    std::string text;
    std::string value = {};
    bool is_null = false;
    std::int32_t code = 0;
};
inline field gives(std::string text, std::string value) { return {.text = text, .value = value}; }
inline field as_it_is(std::string text) { return {.text = text, .value = text}; }
inline field null(std::string text) { return {.text = text, .is_null = true}; }
inline field overflows(std::string text) { return {.text = text, .code = ERR_OVERFLOW}; }
inline field is_too_long(std::string text) { return {.text = text, .code = ERR_TRUNCATED}; }
inline field is_none(std::string text) { return {.text = text, .code = ERR_BAD_CONVERSION}; }
inline field is_no_date(std::string text) { return {.text = text, .code = ERR_BAD_DATETIME}; }
inline field is_no_interval(std::string text) { return {.text = text, .code = ERR_BAD_INTERVAL}; }

// Of a file that has these fields as its column v, a column u of numbers beside it.
void expect_fields(const std::string &type, const std::vector<field> &fields,
                   const std::vector<std::string> &options = {});

// What a load of one column of a file is to write.
struct expectation {
    std::string table;
    std::string failures = no_failures;
    std::uint64_t failed = 0;
};

// Of a column by what each of its texts is to become.
expectation expect_column(const std::string &file, const std::string &name,
                          const std::function<field(const std::string &)> &becomes);
void expect_loaded(const loaded &l, const expectation &expected);

// Files of the world.
inline const std::string index_file = BCAST_SOURCE_DIR "/tests/data/sp500-2000.csv";
inline const std::string strikes_file = BCAST_SOURCE_DIR "/tests/data/birdstrikes.csv";

} // namespace bcast::test
