// Binary values and large objects.

#include "bench/with_services.h"

#include <services/binary.h>

namespace {

using namespace bench;

source<bdta3_str> sixteen_bytes()
{
    std::mt19937_64 random(9);
    return texts(16, [&](uint32_t, char *bytes) {
        for (int k = 0; k < 16; k++)
            bytes[k] = char(random());
        return 16;
    });
}

source<bdta3_str> hex_digits_32()
{
    std::mt19937_64 random(10);
    return texts(32, [&](uint32_t, char *text) {
        for (int k = 0; k < 32; k++)
            text[k] = "0123456789ABCDEF"[random() % 16];
        return 32;
    });
}

source<bdta3_str> four_bytes()
{
    auto made = sixteen_bytes();
    for (bdta3_str &value : made.values)
        value.length = 4;
    return made;
}

// The bytes of 32 digits, of which so many are stored; there is room for any count of them behind.
auto read_hex(int32_t stored)
{
    return [stored](const batch &b) {
        nbin value;
        each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
            must_succeed(nbin_from_char_ex(from.text, uint32_t(from.length), &value, 0));
            bdta3_col_assign_bin(nullptr, b.heap, b.dst, row, value.bytes, stored);
        });
    };
}

// The digits of 16 bytes, of which so many are stored.
auto write_hex(int32_t stored, int32_t pad_len = 0)
{
    return [=](const batch &b) {
        char text[65536];
        each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
            must_succeed(nbin_to_char_ex(from.text, uint32_t(from.length), text, 0));
            bdta3_col_assign_str(nullptr, b.heap, b.dst, row, text, stored, pad_len);
        });
    };
}

// By way of a working value, as the casts to hex_char and hex_varchar.
auto write_hex_through_value(int32_t pad_len)
{
    return [pad_len](const batch &b) {
        char text[65536];
        nstr working{};
        working.outline = working.inline_bytes;
        each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
            nbin_to_char_ex(from.text, uint32_t(from.length), text, 0);
            working.first_word = 0;
            nstr_assign_const(nullptr, b.heap, &working, text);
            bdta3_col_assign_str(nullptr, b.heap, b.dst, row, working.outline, int32_t(working.length), pad_len);
        });
        nstr_clear(nullptr, b.heap, &working);
    };
}

// So many bytes from where a value starts.
auto store_bytes(int32_t stored)
{
    return [stored](const batch &b) {
        each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
            bdta3_col_assign_bin(nullptr, b.heap, b.dst, row, from.text, stored);
        });
    };
}

void store_large_objects(const batch &b)
{
    large_object object;
    each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
        object.store(b, row, from.text, from.length);
        object.clear(b);
    });
}

const bool added = [] {
    add_beside_bare("hex_varchar_to_varbinary, 32 digits", BCAST_VARBINARY, hex_digits_32,
                    stopping(bcast_hex_varchar_to_varbinary, 16), read_hex(16));
    add_beside_bare("hex_varchar_to_varbinary_explicit, 32 digits cut to 12 bytes", BCAST_VARBINARY, hex_digits_32,
                    stopping(bcast_hex_varchar_to_varbinary_explicit, 12), read_hex(12));
    // The cast fills up with zeros, which the bare calls do not.
    add_beside_bare("hex_char_to_binary, 32 digits filled to 24 bytes", BCAST_BINARY, hex_digits_32,
                    stopping(bcast_hex_char_to_binary, 24), read_hex(24));
    add_beside_bare("varbinary_to_varchar, 16 bytes", BCAST_VARCHAR, sixteen_bytes,
                    stopping(bcast_varbinary_to_varchar, 32), write_hex(32));
    add_beside_bare("varbinary_to_char, 16 bytes filled to 40", BCAST_CHAR, sixteen_bytes,
                    stopping(bcast_varbinary_to_char, 40), write_hex(32, 8));
    add_beside_bare("varbinary_to_varchar_explicit, 16 bytes cut to 20 digits", BCAST_VARCHAR, sixteen_bytes,
                    stopping(bcast_varbinary_to_varchar_explicit, 20), write_hex(20));
    add_beside_bare("varbinary_to_hex_char, 16 bytes filled to 40", BCAST_CHAR, sixteen_bytes,
                    stopping(bcast_varbinary_to_hex_char, 40), write_hex_through_value(8));
    add_beside_bare("varbinary_to_hex_varchar, 16 bytes", BCAST_VARCHAR, sixteen_bytes,
                    stopping(bcast_varbinary_to_hex_varchar, 32), write_hex_through_value(0));
    add_beside_bare("varbinary_to_int", BCAST_INT, four_bytes, stopping(bcast_varbinary_to_int), [](const batch &b) {
        auto *to = target_elements<int32_t>(b);
        each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
            must_succeed(nbin_to_int_by_ntype_len(from.text, uint32_t(from.length), 4, to + row));
        });
    });
    // There are as many bytes behind the four.
    add_beside_bare("varbinary_to_binary", BCAST_BINARY, four_bytes, stopping(bcast_varbinary_to_binary, 16),
                    store_bytes(16));
    add_beside_bare("varbinary_to_binary_explicit, 16 bytes cut to 12", BCAST_BINARY, sixteen_bytes,
                    stopping(bcast_varbinary_to_binary_explicit, 12), store_bytes(12));
    add_beside_bare("varchar_to_text, 16 bytes", BCAST_TEXT, sixteen_bytes, stopping(bcast_varchar_to_text),
                    store_large_objects);
    add_beside_bare("binary_to_blob, 16 bytes", BCAST_BLOB, sixteen_bytes, stopping(bcast_binary_to_blob),
                    store_large_objects);
    add_beside_bare("binary_to_text, 16 bytes", BCAST_TEXT, sixteen_bytes, stopping(bcast_binary_to_text),
                    [](const batch &b) {
                        char text[65536];
                        large_object object;
                        each_present<bdta3_str>(b, [&](const bdta3_str &from, int32_t row) {
                            must_succeed(nbin_to_char_ex(from.text, uint32_t(from.length), text, 0));
                            object.store(b, row, text, 2 * from.length);
                            object.clear(b);
                        });
                    });
    // The bytes where they lie: of such that were just written the service would have to wait for the store.
    add_beside_bare(
        "int_to_varbinary", BCAST_VARBINARY,
        [] { return numbers([random = std::mt19937(11)](uint32_t) mutable { return int32_t(random()); }); },
        stopping(bcast_int_to_varbinary, 4),
        [](const batch &b) {
            each_present<int32_t>(b, [&](const int32_t &value, int32_t row) {
                bdta3_col_assign_bin(nullptr, b.heap, b.dst, row, &value, 4);
            });
        });
    return true;
}();

} // namespace
