#include "tests/support/call.h"

#include "tests/support/service_double.h"

#include <algorithm>
#include <new>
#include <span>
#include <string>
#include <unordered_map>

#include <dlfcn.h>
#include <sys/mman.h>

namespace bcast::test {

namespace {

// The wrong prototype is what call_with_wide_rows is about, so the check of clang's that forbids it is off here.
#ifdef __clang__
#define CALLS_BY_ANOTHER_PROTOTYPE __attribute__((no_sanitize("function")))
#else
#define CALLS_BY_ANOTHER_PROTOTYPE
#endif

// Calls a cast of the pattern that the first argument tells, by the prototype of the second.
template <class Cast, class Rows>
CALLS_BY_ANOTHER_PROTOTYPE int32_t apply(bcast_plain_fn *, Cast *cast, const call_arguments &a, Rows rows)
{
    return cast(env(), a.heap, a.src, a.dst, rows);
}

template <class Cast, class Rows>
CALLS_BY_ANOTHER_PROTOTYPE int32_t apply(bcast_capture_fn *, Cast *cast, const call_arguments &a, Rows rows)
{
    return cast(env(), a.heap, a.src, a.dst, rows, a.err_codes, a.err_count);
}

template <class Cast, class Rows>
CALLS_BY_ANOTHER_PROTOTYPE int32_t apply(bcast_length_fn *, Cast *cast, const call_arguments &a, Rows rows)
{
    return cast(env(), a.heap, a.src, a.length, a.dst, rows);
}

template <class Cast, class Rows>
CALLS_BY_ANOTHER_PROTOTYPE int32_t apply(bcast_length_capture_fn *, Cast *cast, const call_arguments &a, Rows rows)
{
    return cast(env(), a.heap, a.src, a.length, a.dst, rows, a.err_codes, a.err_count);
}

template <class Cast, class Rows>
CALLS_BY_ANOTHER_PROTOTYPE int32_t apply(bcast_direct_fn *, Cast *cast, const call_arguments &a, Rows rows)
{
    return cast(env(), a.heap, a.cmp_op, a.src, a.dst, rows);
}

template <class Cast, class Rows>
CALLS_BY_ANOTHER_PROTOTYPE int32_t apply(bcast_date_fast_fn *, Cast *cast, const call_arguments &a, Rows rows)
{
    return cast(env(), a.heap, a.src, a.dst, a.temporal.parse_word, a.temporal.parse_ptr, rows, a.err_codes,
                a.err_count);
}

template <class Cast, class Rows>
CALLS_BY_ANOTHER_PROTOTYPE int32_t apply(bcast_tltz_fast_fn *, Cast *cast, const call_arguments &a, Rows rows)
{
    return cast(env(), a.heap, a.src, a.dst, a.temporal.parse_word, a.temporal.parse_ptr, rows, a.err_codes,
                a.err_count, a.temporal.local_tz);
}

template <class Cast, class Rows>
CALLS_BY_ANOTHER_PROTOTYPE int32_t apply(bcast_tltz_fn *, Cast *cast, const call_arguments &a, Rows rows)
{
    return cast(env(), a.heap, a.src, a.dst, rows, a.err_codes, a.err_count, a.temporal.local_tz);
}

template <class Cast, class Rows>
CALLS_BY_ANOTHER_PROTOTYPE int32_t apply(bcast_scaled_fn *, Cast *cast, const call_arguments &a, Rows rows)
{
    const temporal_arguments &t = a.temporal;
    return cast(env(), a.heap, a.src, a.dst, rows, t.src_prec, t.src_scale, t.dst_prec, t.dst_scale);
}

template <class Cast, class Rows>
CALLS_BY_ANOTHER_PROTOTYPE int32_t apply(bcast_scaled_capture_fn *, Cast *cast, const call_arguments &a, Rows rows)
{
    const temporal_arguments &t = a.temporal;
    return cast(env(), a.heap, a.src, a.dst, rows, t.src_prec, t.src_scale, t.dst_prec, t.dst_scale, a.err_codes,
                a.err_count);
}

template <class Cast, class Rows>
CALLS_BY_ANOTHER_PROTOTYPE int32_t apply(bcast_scaled_text_fn *, Cast *cast, const call_arguments &a, Rows rows)
{
    const temporal_arguments &t = a.temporal;
    return cast(env(), a.heap, a.src, a.dst, rows, t.src_prec, t.src_scale, t.dst_prec);
}

template <class Cast, class Rows>
CALLS_BY_ANOTHER_PROTOTYPE int32_t apply(bcast_precise_fn *, Cast *cast, const call_arguments &a, Rows rows)
{
    const temporal_arguments &t = a.temporal;
    return cast(env(), a.heap, a.src, a.dst, rows, t.src_prec, t.src_scale, t.dst_prec, t.dst_scale, t.round_flag,
                a.err_codes, a.err_count);
}

template <class Cast, class Rows>
CALLS_BY_ANOTHER_PROTOTYPE int32_t apply(bcast_precise_typed_fn *, Cast *cast, const call_arguments &a, Rows rows)
{
    const temporal_arguments &t = a.temporal;
    return cast(env(), a.heap, a.src, a.dst, rows, t.src_prec, t.src_scale, t.dst_prec, t.dst_scale, t.round_flag,
                a.err_codes, a.err_count, t.type_code);
}

template <class T> struct widened {
    using type = T;
};
template <> struct widened<uint16_t> {
    using type = uint32_t;
};

// The cast as a caller sees it that knows its unsigned 16-bit arguments as 32-bit numbers.
template <class... Arguments> auto *widen(int32_t (*cast)(Arguments...))
{
    using wide = int32_t(typename widened<Arguments>::type...);
    return reinterpret_cast<wide *>(reinterpret_cast<void (*)()>(cast));
}

// The entry of the cast at that address, be it under this name or that of an alias.
const catalogue::cast &entry_at(const void *address)
{
    static const auto entries = [] {
        std::unordered_map<const void *, const catalogue::cast *> all;
        for (const catalogue::cast &entry : catalogue::casts())
            all.emplace(dlsym(RTLD_DEFAULT, std::string(entry.name).c_str()), &entry);
        return all;
    }();
    return *entries.at(address);
}

// Whatever a test calls a cast for, the cast is to call no service but those that the catalogue has for it.
void expect_known_services(any_cast cast, std::span<const service_call> made)
{
    const catalogue::cast &entry =
        entry_at(std::visit([](auto *function) { return reinterpret_cast<const void *>(function); }, cast));
    for (const service_call &each : made)
        if (std::ranges::find(entry.services, each.service) == entry.services.end()) {
            ADD_FAILURE() << entry.name << " calls " << each.service << ", which the catalogue does not have for it";
            return;
        }
}

std::span<const service_call> made_since(size_t calls) { return std::span(services().log()).subspan(calls); }

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
    case catalogue::pattern::direct:
        return reinterpret_cast<bcast_direct_fn *>(address);
    case catalogue::pattern::date_fast:
        return reinterpret_cast<bcast_date_fast_fn *>(address);
    case catalogue::pattern::tltz_fast:
        return reinterpret_cast<bcast_tltz_fast_fn *>(address);
    case catalogue::pattern::tltz:
        return reinterpret_cast<bcast_tltz_fn *>(address);
    case catalogue::pattern::scaled:
        return reinterpret_cast<bcast_scaled_fn *>(address);
    case catalogue::pattern::scaled_capture:
        return reinterpret_cast<bcast_scaled_capture_fn *>(address);
    case catalogue::pattern::scaled_text:
        return reinterpret_cast<bcast_scaled_text_fn *>(address);
    case catalogue::pattern::precise:
        return reinterpret_cast<bcast_precise_fn *>(address);
    case catalogue::pattern::precise_typed:
        return reinterpret_cast<bcast_precise_typed_fn *>(address);
    default:
        return std::nullopt;
    }
}

int32_t call(any_cast cast, const call_arguments &with)
{
    const size_t made_before = services().log().size();
    const int32_t status = std::visit(
        [&](auto *function) { return apply(function, function, with, static_cast<uint16_t>(with.rows)); }, cast);
    expect_known_services(cast, made_since(made_before));
    return status;
}

int32_t call_with_wide_rows(any_cast cast, const call_arguments &with)
{
    const size_t made_before = services().log().size();
    const int32_t status =
        std::visit([&](auto *function) { return apply(function, widen(function), with, with.rows); }, cast);
    expect_known_services(cast, made_since(made_before));
    return status;
}

} // namespace bcast::test
