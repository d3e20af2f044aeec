#include "compare_literal.h"

#include "errors.h"
#include "files.h"
#include "loaded_cast.h"
#include "report.h"

#include <bcast/casts.h>

#include <algorithm>
#include <array>
#include <string_view>

#include <unistd.h>

namespace bcast::tool {

namespace {

struct comparison {
    std::string_view op;
    std::uint16_t code; // as the casts have it
};

constexpr auto comparisons = std::to_array<comparison>({{"<", BCAST_OP_LESS},
                                                        {"<=", BCAST_OP_LESS_EQUAL},
                                                        {"=", BCAST_OP_EQUAL},
                                                        {"<>", BCAST_OP_UNEQUAL},
                                                        {">=", BCAST_OP_GREATER_EQUAL},
                                                        {">", BCAST_OP_GREATER}});

const comparison &comparison_of(const std::string &op)
{
    const auto found = std::ranges::find(comparisons, op == "!=" ? "<>" : op, &comparison::op);
    if (found == comparisons.end())
        throw tool_error("OP " + in_quotes(op) + ": expected one of <, <=, =, <> (or !=), >=, >");
    return *found;
}

// What the casts make of a literal.
struct parsed {
    std::int32_t code = 0;
    std::int32_t verdict = 0;
    std::int64_t integer = 0; // where there is no verdict
};

template <class Function, class Int>
parsed parse_with(const char *name, const std::string &literal, const comparison &compared)
{
    const auto cast = find_cast(name);
    if (!cast)
        throw tool_error("the library that is loaded does not have " + std::string(name));
    if (literal.size() > std::size_t(cast->entry->limit.bytes))
        return {.code = ERR_TRUNCATED};
    parsed result;
    Int integer = 0;
    result.code = reinterpret_cast<Function *>(cast->address)(nullptr, literal.data(), std::int32_t(literal.size()),
                                                              compared.code, &result.verdict, &integer);
    result.integer = integer;
    return result;
}

parsed parse(const compare_options &options, const comparison &compared)
{
    if (options.type == "int")
        return parse_with<bcast_int_low_fn, std::int32_t>("bcast_varchar_to_int_directly_low", options.literal,
                                                          compared);
    if (options.type == "int64")
        return parse_with<bcast_int64_low_fn, std::int64_t>("bcast_varchar_to_int64_directly_low", options.literal,
                                                            compared);
    throw tool_error("--type " + in_quotes(options.type) + ": expected int or int64");
}

std::string meaning(const parsed &result, const comparison &compared, const compare_options &options)
{
    const std::string shown = "x " + std::string(compared.op) + " ";
    const std::string asked = shown + plain_or_in_quotes(options.literal) + " is ";
    if (result.verdict == VERDICT_NONE)
        return asked + shown + std::to_string(result.integer);
    if (compared.code == BCAST_OP_EQUAL)
        return "equal to no " + options.type + ": " + asked + "true for no row";
    if (compared.code == BCAST_OP_UNEQUAL)
        return "equal to no " + options.type + ": " + asked + "true for every row";
    const bool wants_less = compared.code == BCAST_OP_LESS || compared.code == BCAST_OP_LESS_EQUAL;
    return (result.verdict == VERDICT_ABOVE ? "above every " : "below every ") + options.type + ": " + asked +
           (wants_less == (result.verdict == VERDICT_ABOVE) ? "true for every row" : "true for no row");
}

} // namespace

int compare_literal(const compare_options &options)
{
    const comparison &compared = comparison_of(options.op);
    const parsed result = parse(options, compared);
    output_file stream(result.code < 0 ? STDERR_FILENO : STDOUT_FILENO);
    if (result.code < 0)
        stream.write(in_quotes(options.literal) + ": " + described(result.code) + "\n");
    else
        stream.write(meaning(result, compared, options) + "\n");
    stream.flush();
    return result.code < 0 ? 1 : 0;
}

} // namespace bcast::tool
