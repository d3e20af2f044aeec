#include "loaded_cast.h"

#include "columns.h"
#include "errors.h"

#include <limits>
#include <stdexcept>
#include <string>

#include <dlfcn.h>

namespace bcast::tool {

using catalogue::pattern;

namespace {

// The longest source text, in bytes, that is within the contract of a cast.
std::int32_t longest_source_text(const catalogue::cast &entry)
{
    // Of the length of a char or varchar2 the casts read 16 bits.
    if (entry.source == BCAST_CHAR || entry.source == BCAST_VARCHAR2)
        return std::numeric_limits<std::uint16_t>::max();
    return std::numeric_limits<std::int32_t>::max();
}

void record(failures &failed, std::uint32_t row, std::int32_t code)
{
    failed.codes()[row] = code;
    ++*failed.count();
}

void refuse_what_is_outside_the_contract(const catalogue::cast &entry, column &source, std::uint32_t rows,
                                         failures &failed)
{
    const std::int32_t longest = longest_source_text(entry);
    if (!bcast_type_is_string(entry.source) || longest == std::numeric_limits<std::int32_t>::max())
        return;
    for (std::uint32_t row = 0; row < rows; row++) {
        if (is_present(source, row) && string_element(source, row).length > longest) {
            make_null(source, row);
            record(failed, row, ERR_TRUNCATED);
        }
    }
}

std::int32_t call(const loaded_cast &cast, bcast_pool *heap, const bdta3_col *src, std::int32_t length, bdta3_col *dst,
                  std::uint16_t rows, std::int32_t *codes, std::uint16_t *count)
{
    switch (cast.entry->arguments) {
    case pattern::plain:
        return reinterpret_cast<bcast_plain_fn *>(cast.address)(nullptr, heap, src, dst, rows);
    case pattern::capture:
        return reinterpret_cast<bcast_capture_fn *>(cast.address)(nullptr, heap, src, dst, rows, codes, count);
    case pattern::length:
        return reinterpret_cast<bcast_length_fn *>(cast.address)(nullptr, heap, src, length, dst, rows);
    case pattern::length_capture:
        return reinterpret_cast<bcast_length_capture_fn *>(cast.address)(nullptr, heap, src, length, dst, rows, codes,
                                                                         count);
    default:
        throw std::logic_error("no way to call " + std::string(cast.entry->name));
    }
}

} // namespace

std::optional<loaded_cast> find_cast(std::string_view name)
{
    const catalogue::cast *entry = catalogue::find(name);
    void *address = entry != nullptr ? address_of(*entry) : nullptr;
    if (address == nullptr)
        return std::nullopt;
    return loaded_cast{entry, address};
}

void *address_of(const catalogue::cast &entry) { return dlsym(RTLD_DEFAULT, std::string(entry.name).c_str()); }

bool can_run(const catalogue::cast &entry)
{
    return entry.arguments == pattern::plain || entry.arguments == pattern::capture || takes_length(entry);
}

bool takes_length(const catalogue::cast &entry)
{
    return entry.arguments == pattern::length || entry.arguments == pattern::length_capture;
}

bool captures(const catalogue::cast &entry) { return entry.protocol == catalogue::protocol::captures; }

void run(const loaded_cast &cast, pool &memory, column &source, std::int32_t length, column &target, std::uint16_t rows,
         failures &failed)
{
    refuse_what_is_outside_the_contract(*cast.entry, source, rows, failed);
    target.make_room(rows);
    const std::int32_t status =
        call(cast, memory.heap(), source.vector(), length, target.vector(), rows, failed.codes(), failed.count());
    if (status < 0 && !captures(*cast.entry)) {
        if (rows != 1)
            throw tool_error(std::string(cast.entry->name) + " failed with code " + std::to_string(status));
        record(failed, 0, status);
    }
    if (*failed.count() == 0)
        return;
    // A row that failed need not look null: its flag may be set, with nothing in the element.
    for (std::uint32_t row = 0; (row = failed.next(row, rows)) < rows; row++)
        make_null(target, row);
}

} // namespace bcast::tool
