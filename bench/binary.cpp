// Binary values and large objects.

#include "bench/with_services.h"

#include "services/binary.h"
#include "services/column.h"

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

const bool added = [] {
    add_beside_bare(
        "hex_varchar_to_varbinary, 32 digits", BCAST_VARBINARY, hex_digits_32,
        [](const batch &b) {
            must_succeed(bcast_hex_varchar_to_varbinary(nullptr, b.heap, b.src, 16, b.dst, b.rows, nullptr, nullptr));
        },
        [](const bdta3_str &from, const bare_row &to) {
            static nbin value;
            must_succeed(nbin_from_char_ex(from.text, uint32_t(from.length), &value, 0));
            bdta3_col_assign_bin(nullptr, to.heap, to.dst, to.row, value.bytes, value.length);
        });
    add_beside_bare(
        "varbinary_to_varchar, 16 bytes", BCAST_VARCHAR, sixteen_bytes,
        [](const batch &b) {
            must_succeed(bcast_varbinary_to_varchar(nullptr, b.heap, b.src, 32, b.dst, b.rows, nullptr, nullptr));
        },
        [](const bdta3_str &from, const bare_row &to) {
            static char text[65536];
            must_succeed(nbin_to_char_ex(from.text, uint32_t(from.length), text, 0));
            bdta3_col_assign_str(nullptr, to.heap, to.dst, to.row, text, 2 * from.length, 0);
        });
    add_beside_bare(
        "varbinary_to_int", BCAST_INT, four_bytes,
        [](const batch &b) {
            must_succeed(bcast_varbinary_to_int(nullptr, b.heap, b.src, b.dst, b.rows, nullptr, nullptr));
        },
        [](const bdta3_str &from, const bare_row &to) {
            must_succeed(nbin_to_int_by_ntype_len(from.text, uint32_t(from.length), 4,
                                                  static_cast<int32_t *>(to.dst->data->values) + to.row));
        });
    add_beside_bare(
        "varbinary_to_binary", BCAST_BINARY, four_bytes,
        [](const batch &b) {
            must_succeed(bcast_varbinary_to_binary(nullptr, b.heap, b.src, 16, b.dst, b.rows, nullptr, nullptr));
        },
        [](const bdta3_str &from, const bare_row &to) {
            bdta3_col_assign_bin(nullptr, to.heap, to.dst, to.row, from.text, 16); // there are as many behind the four
        });
    add_beside_bare(
        "varchar_to_text, 16 bytes", BCAST_TEXT, sixteen_bytes,
        [](const batch &b) {
            must_succeed(bcast_varchar_to_text(nullptr, b.heap, b.src, b.dst, b.rows, nullptr, nullptr));
        },
        [working = nstr{}](const bdta3_str &from, const bare_row &to) mutable {
            if (to.row == 0)
                working.outline = working.inline_bytes;
            working.first_word = 0;
            must_succeed(nblob_assign_const(nullptr, to.heap, &working, from.text, from.length));
            bdta3_col_assign_bin(nullptr, to.heap, to.dst, to.row, working.outline, int32_t(working.length));
            nstr_clear(nullptr, to.heap, &working);
        });
    add_beside_bare(
        "int_to_varbinary", BCAST_VARBINARY,
        [] { return numbers([random = std::mt19937(11)](uint32_t) mutable { return int32_t(random()); }); },
        [](const batch &b) { must_succeed(bcast_int_to_varbinary(nullptr, b.heap, b.src, 4, b.dst, b.rows)); },
        [](int32_t value, const bare_row &to) { bdta3_col_assign_bin(nullptr, to.heap, to.dst, to.row, &value, 4); });
    return true;
}();

} // namespace
