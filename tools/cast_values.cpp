#include "cast_values.h"

#include "cast_way.h"
#include "errors.h"
#include "files.h"
#include "report.h"
#include "shown_values.h"
#include "types.h"

#include <unistd.h>

namespace bcast::tool {

namespace {

// These read the year first, whatever the order.
void refuse_order_that_is_not_read(const way &taken, const date_reading &reading)
{
    const std::string_view name = taken.casts.front();
    if (reading.order != date_reading().order &&
        (name == "bcast_varchar2_to_date" || name == "bcast_varchar_to_timestamp_local_time_zone"))
        throw tool_error("--date-order: " + std::string(name) + " reads dates with the year first");
}

type_name type_of_option(const char *option, const std::string &text)
{
    try {
        return parse_type(text);
    } catch (const tool_error &error) {
        throw tool_error(option + (" " + in_quotes(text)) + ": " + error.what());
    }
}

// A source without a length is as long as its values, but for a binary, which is filled up.
declared_type declare_option(const char *option, const type_name &name, bcast_type type, bool length_required)
{
    try {
        const declared_type declared = declare(type, name);
        if (length_required)
            require_length(declared, name);
        return declared;
    } catch (const tool_error &error) {
        throw tool_error(option + (" " + described(name)) + ": " + error.what());
    }
}

struct outcome {
    std::int32_t code = 0;
    bool in_source = false; // the failure: the text is no value of the source type
    std::string text = {};  // of the result
};

// A value made from a text. Characters of no declared length are the text itself.
class made_value {
public:
    made_value(const declared_type &type, const date_reading &reading)
        : text_(is_character(type.type) && type.length == 0 ? type.type : BCAST_VARCHAR),
          from_text_({text_.type()}, casts_from_text(type, too_long::fails), type, reading)
    {}

    column &make(pool &memory, const std::string &text, failures &failed)
    {
        text_.clear();
        text_.append(text);
        return from_text_.run(memory, text_, 1, failed);
    }

private:
    column text_;
    road from_text_;
};

// A cast with all that it takes to get a value from a text and to show what comes of it.
class value_cast {
public:
    value_cast(const way &taken, const declared_type &source, const declared_type &target, const date_reading &reading)
        : from_text_(source, reading), cast_(source, taken.casts, target, reading), shown_(target)
    {
        memory_.set_time_zone(reading.local_zone);
    }

    // In a batch of its own, so that a failure is this value's.
    outcome try_value(const std::string &value)
    {
        failed_.reset();
        memory_.reset();
        column &source = from_text_.make(memory_, value, failed_);
        if (*failed_.count() > 0)
            return {.code = failed_.codes()[0], .in_source = true};
        shown_.take(memory_, cast_.run(memory_, source, 1, failed_), 1, failed_);
        if (*failed_.count() > 0)
            return {.code = failed_.codes()[0]};
        return {.text = shown_.is_null(0) ? "NULL" : std::string(shown_.text(0))};
    }

private:
    made_value from_text_;
    road cast_;
    shown_values shown_;
    pool memory_;
    failures failed_;
};

} // namespace

int cast_values(const cast_options &options)
{
    const type_name from = type_of_option("--from", options.from);
    const type_name to = type_of_option("--to", options.to);
    const date_reading reading = parse_date_options(options.dates);
    const way taken = options.cut ? cutting_way_between(from, to) : way_between(from, to);
    refuse_order_that_is_not_read(taken, reading);
    value_cast values(taken, declare_option("--from", from, taken.source, taken.source == BCAST_BINARY),
                      declare_option("--to", to, taken.target, true), reading);

    output_file results(STDOUT_FILENO);
    output_file errors(STDERR_FILENO);
    bool any_failed = false;
    for (const std::string &value : options.values) {
        const outcome result = values.try_value(value);
        if (result.code == 0) {
            results.write(result.text + "\n");
            continue;
        }
        any_failed = true;
        results.flush(); // keeps the order where both streams lead to one place
        errors.write(in_quotes(value) + (result.in_source ? " is no value of " + described(from) : "") + ": " +
                     described(result.code) + "\n");
        errors.flush();
    }
    results.close();
    return any_failed ? 1 : 0;
}

} // namespace bcast::tool
