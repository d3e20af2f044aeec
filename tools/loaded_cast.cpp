#include "loaded_cast.h"

#include "columns.h"
#include "errors.h"

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>

#include <dlfcn.h>

namespace bcast::tool {

using catalogue::pattern;

namespace {

constexpr std::int32_t any_length = std::numeric_limits<std::int32_t>::max();

bool is_interval(bcast_type type) { return type == BCAST_IVYM || type == BCAST_IVDT; }

// The longest source value, in bytes, that the tool hands to a cast, so that none is taken for another one. What a cast
// refuses itself gets its own code, and no column here counts blanks of a varchar.
std::int32_t longest_source(const catalogue::cast &entry)
{
    using catalogue::beyond;
    if (entry.limit.beyond == beyond::refuses || entry.limit.beyond == beyond::untested_if_padded)
        return any_length;
    const bool has_longest = entry.source == BCAST_CHAR || entry.source == BCAST_VARCHAR2;
    return has_longest ? std::min(entry.limit.bytes, longest_characters) : entry.limit.bytes;
}

void record(failures &failed, std::uint32_t row, std::int32_t code)
{
    failed.codes()[row] = code;
    ++*failed.count();
}

// The text of an interval ends at a NUL.
void refuse_what_is_not_read_whole(const catalogue::cast &entry, column &source, std::uint32_t rows, failures &failed)
{
    const std::int32_t longest = longest_source(entry);
    if (longest == any_length)
        return;
    const auto ends_early = [&](std::string_view text) {
        return is_interval(entry.target) && text.find('\0') != std::string_view::npos;
    };
    for (std::uint32_t row = 0; row < rows; row++) {
        if (is_present(source, row) &&
            (string_element(source, row).length > longest || ends_early(stored_text(source, row)))) {
            make_null(source, row);
            record(failed, row, ERR_TRUNCATED);
        }
    }
}

std::int32_t call(const loaded_cast &cast, bcast_pool *heap, const bdta3_col *src, const cast_arguments &told,
                  bdta3_col *dst, std::uint16_t rows, std::int32_t *codes, std::uint16_t *count)
{
    // Casts do not read the precisions but for one, which is a length.
    constexpr std::uint16_t not_read = 0;
    switch (cast.entry->arguments) {
    case pattern::plain:
        return reinterpret_cast<bcast_plain_fn *>(cast.address)(nullptr, heap, src, dst, rows);
    case pattern::capture:
        return reinterpret_cast<bcast_capture_fn *>(cast.address)(nullptr, heap, src, dst, rows, codes, count);
    case pattern::length:
        return reinterpret_cast<bcast_length_fn *>(cast.address)(nullptr, heap, src, told.length, dst, rows);
    case pattern::length_capture:
        return reinterpret_cast<bcast_length_capture_fn *>(cast.address)(nullptr, heap, src, told.length, dst, rows,
                                                                         codes, count);
    case pattern::date_fast:
        return reinterpret_cast<bcast_date_fast_fn *>(cast.address)(nullptr, heap, src, dst, told.date_order, nullptr,
                                                                    rows, codes, count);
    case pattern::tltz_fast:
        return reinterpret_cast<bcast_tltz_fast_fn *>(cast.address)(nullptr, heap, src, dst, told.date_order, nullptr,
                                                                    rows, codes, count, told.local_zone);
    case pattern::tltz:
        return reinterpret_cast<bcast_tltz_fn *>(cast.address)(nullptr, heap, src, dst, rows, codes, count,
                                                               told.local_zone);
    case pattern::scaled:
        return reinterpret_cast<bcast_scaled_fn *>(cast.address)(nullptr, heap, src, dst, rows, not_read,
                                                                 told.src_scale, not_read, told.dst_scale);
    case pattern::scaled_capture:
        return reinterpret_cast<bcast_scaled_capture_fn *>(cast.address)(
            nullptr, heap, src, dst, rows, not_read, told.src_scale, not_read, told.dst_scale, codes, count);
    case pattern::scaled_text:
        return reinterpret_cast<bcast_scaled_text_fn *>(cast.address)(nullptr, heap, src, dst, rows, not_read,
                                                                      told.src_scale, std::uint16_t(told.length));
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

bool exists(const catalogue::cast &entry)
{
    return entry.protocol != catalogue::protocol::absent && address_of(entry) != nullptr;
}

bool can_run(const catalogue::cast &entry)
{
    switch (entry.arguments) {
    case pattern::plain:
    case pattern::capture:
    case pattern::length:
    case pattern::length_capture:
    case pattern::date_fast:
    case pattern::tltz_fast:
    case pattern::tltz:
    case pattern::scaled:
    case pattern::scaled_capture:
    case pattern::scaled_text:
        return true;
    default:
        return false;
    }
}

bool takes_length(const catalogue::cast &entry)
{
    return entry.arguments == pattern::length || entry.arguments == pattern::length_capture ||
           entry.arguments == pattern::scaled_text;
}

bool captures(const catalogue::cast &entry) { return entry.protocol == catalogue::protocol::captures; }

void run(const loaded_cast &cast, pool &memory, column &source, const cast_arguments &arguments, column &target,
         std::uint16_t rows, failures &failed)
{
    refuse_what_is_not_read_whole(*cast.entry, source, rows, failed);
    target.make_room(rows);
    const std::int32_t status =
        call(cast, memory.heap(), source.vector(), arguments, target.vector(), rows, failed.codes(), failed.count());
    // That is none of a row's data: a cast may end behind it, capturing or not.
    if (status == ERR_NO_MEMORY)
        throw std::bad_alloc();
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
