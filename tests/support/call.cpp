#include "tests/support/call.h"

#include <new>

#include <sys/mman.h>

namespace bcast::test {

namespace {

int32_t plainly(bcast_plain_fn *cast, const call_arguments &a)
{
    return cast(env(), heap(), a.src, a.dst, static_cast<uint16_t>(a.rows));
}

int32_t plainly(bcast_capture_fn *cast, const call_arguments &a)
{
    return cast(env(), heap(), a.src, a.dst, static_cast<uint16_t>(a.rows), a.err_codes, a.err_count);
}

int32_t plainly(bcast_length_fn *cast, const call_arguments &a)
{
    return cast(env(), heap(), a.src, a.length, a.dst, static_cast<uint16_t>(a.rows));
}

int32_t plainly(bcast_length_capture_fn *cast, const call_arguments &a)
{
    return cast(env(), heap(), a.src, a.length, a.dst, static_cast<uint16_t>(a.rows), a.err_codes, a.err_count);
}

// The argument lists as a caller sees them that knows rows as a 32-bit number.
using wide_plain = int32_t(void *, void *, const bdta3_col *, bdta3_col *, uint32_t);
using wide_capture = int32_t(void *, void *, const bdta3_col *, bdta3_col *, uint32_t, int32_t *, uint16_t *);
using wide_length = int32_t(void *, void *, const bdta3_col *, int32_t, bdta3_col *, uint32_t);
using wide_length_capture = int32_t(void *, void *, const bdta3_col *, int32_t, bdta3_col *, uint32_t, int32_t *,
                                    uint16_t *);

template <class Wide, class Narrow> Wide *as(Narrow *cast)
{
    return reinterpret_cast<Wide *>(reinterpret_cast<void (*)()>(cast));
}

// The wrong prototype is what this is about, so the check of clang's that forbids it is off here.
#ifdef __clang__
#define CALLS_BY_ANOTHER_PROTOTYPE __attribute__((no_sanitize("function")))
#else
#define CALLS_BY_ANOTHER_PROTOTYPE
#endif

CALLS_BY_ANOTHER_PROTOTYPE int32_t wide(bcast_plain_fn *cast, const call_arguments &a)
{
    return as<wide_plain>(cast)(env(), heap(), a.src, a.dst, a.rows);
}

CALLS_BY_ANOTHER_PROTOTYPE int32_t wide(bcast_capture_fn *cast, const call_arguments &a)
{
    return as<wide_capture>(cast)(env(), heap(), a.src, a.dst, a.rows, a.err_codes, a.err_count);
}

CALLS_BY_ANOTHER_PROTOTYPE int32_t wide(bcast_length_fn *cast, const call_arguments &a)
{
    return as<wide_length>(cast)(env(), heap(), a.src, a.length, a.dst, a.rows);
}

CALLS_BY_ANOTHER_PROTOTYPE int32_t wide(bcast_length_capture_fn *cast, const call_arguments &a)
{
    return as<wide_length_capture>(cast)(env(), heap(), a.src, a.length, a.dst, a.rows, a.err_codes, a.err_count);
}

void *map_inaccessible()
{
    void *map = mmap(nullptr, 1 << 24, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (map == MAP_FAILED)
        throw std::bad_alloc();
    return map;
}

} // namespace

void *inaccessible()
{
    static void *const map = map_inaccessible();
    return map;
}

void *env() { return static_cast<char *>(inaccessible()) + 0x1000; }
void *heap() { return static_cast<char *>(inaccessible()) + 0x2000; }

std::optional<any_cast> cast_at(void *address, catalogue::pattern arguments)
{
    switch (arguments) {
    case catalogue::pattern::plain:
        return reinterpret_cast<bcast_plain_fn *>(address);
    case catalogue::pattern::capture:
        return reinterpret_cast<bcast_capture_fn *>(address);
    case catalogue::pattern::length:
        return reinterpret_cast<bcast_length_fn *>(address);
    case catalogue::pattern::length_capture:
        return reinterpret_cast<bcast_length_capture_fn *>(address);
    default:
        return std::nullopt;
    }
}

int32_t call(any_cast cast, const call_arguments &with)
{
    return std::visit([&](auto *function) { return plainly(function, with); }, cast);
}

int32_t call_with_wide_rows(any_cast cast, const call_arguments &with)
{
    return std::visit([&](auto *function) { return wide(function, with); }, cast);
}

} // namespace bcast::test
