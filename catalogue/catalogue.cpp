#include "catalogue/catalogue.h"

#include <services/binary.h>
#include <services/column.h>
#include <services/decimal.h>
#include <services/interval.h>
#include <services/numeric.h>
#include <services/temporal.h>
#include <services/text.h>

#include <algorithm>
#include <array>
#include <concepts>
#include <string_view>

namespace bcast::catalogue {

namespace {

// The pattern of a cast is read off its declaration; a function that has none of these types does not compile.
template <class Function> constexpr pattern pattern_of = Function::is_no_cast;
template <> constexpr pattern pattern_of<bcast_plain_fn> = pattern::plain;
template <> constexpr pattern pattern_of<bcast_capture_fn> = pattern::capture;
template <> constexpr pattern pattern_of<bcast_length_fn> = pattern::length;
template <> constexpr pattern pattern_of<bcast_length_capture_fn> = pattern::length_capture;
template <> constexpr pattern pattern_of<bcast_direct_fn> = pattern::direct;
template <> constexpr pattern pattern_of<bcast_int_low_fn> = pattern::int_low;
template <> constexpr pattern pattern_of<bcast_int64_low_fn> = pattern::int64_low;
template <> constexpr pattern pattern_of<bcast_date_fast_fn> = pattern::date_fast;
template <> constexpr pattern pattern_of<bcast_tltz_fast_fn> = pattern::tltz_fast;
template <> constexpr pattern pattern_of<bcast_tltz_fn> = pattern::tltz;
template <> constexpr pattern pattern_of<bcast_scaled_fn> = pattern::scaled;
template <> constexpr pattern pattern_of<bcast_scaled_capture_fn> = pattern::scaled_capture;
template <> constexpr pattern pattern_of<bcast_scaled_text_fn> = pattern::scaled_text;
template <> constexpr pattern pattern_of<bcast_precise_fn> = pattern::precise;
template <> constexpr pattern pattern_of<bcast_precise_typed_fn> = pattern::precise_typed;

// A form other than plain has an argument list of its own, but for cuts, which an entry tells.
constexpr form form_of(pattern arguments)
{
    switch (arguments) {
    case pattern::direct:
        return form::compares;
    case pattern::int_low:
    case pattern::int64_low:
        return form::compares_one;
    case pattern::precise:
    case pattern::precise_typed:
        return form::is_body;
    default:
        return form::plain;
    }
}

// By bcast_type. bcast_type_name has the same, in a library that the catalogue does without.
constexpr std::array<std::string_view, BCAST_TYPE_COUNT> type_names = {
    "tinyint",  "smallint", "int",         "int64", "float", "double", "dec",     "date", "time",
    "time_tz",  "datetime", "datetime_tz", "ivym",  "ivdt",  "bit",    "boolean", "char", "varchar",
    "varchar2", "binary",   "varbinary",   "text",  "blob",  "bfile",  "null"};

// A type as users name it, and what a column of it holds. Most have the name of the element.
struct sql_type {
    std::string_view name;
    bcast_type element;
    bool local_zone = false;

    constexpr sql_type(bcast_type type) : name(type_names[type]), element(type) {}
    constexpr sql_type(std::string_view n, bcast_type e, bool local = false) : name(n), element(e), local_zone(local) {}
};

constexpr sql_type varbit = {"varbit", BCAST_BIT};
constexpr sql_type hex_char = {"hex_char", BCAST_CHAR};
constexpr sql_type hex_varchar = {"hex_varchar", BCAST_VARCHAR};
constexpr sql_type hex_varchar2 = {"hex_varchar2", BCAST_VARCHAR2};
constexpr sql_type tltz = {"tltz", BCAST_DATETIME_TZ, true};
constexpr sql_type timestamp_local_time_zone = {"timestamp_local_time_zone", BCAST_DATETIME_TZ, true};

// Of the source, by what is made of it.
constexpr source_limit any_length = {};
constexpr source_limit integer_text = {65535, beyond::wraps};
constexpr source_limit literal_text = {65535, beyond::untested};
constexpr source_limit number_text = {BCAST_NUMBER_TEXT_MAX, beyond::ignores}; // a dec, float or double
constexpr source_limit fast_date_text = {BCAST_DATE_TEXT_LIMIT - 1, beyond::refuses};
constexpr source_limit interval_text = {32767, beyond::untested};
constexpr source_limit large_object_text = {BCAST_BINARY_MAX, beyond::untested_if_padded};
constexpr source_limit shown_binary = {BCAST_HEX_VALUE_MAX, beyond::refuses};
constexpr source_limit shown_large_binary = {BCAST_HEX_VALUE_MAX, beyond::untested};

// The names of services are read off their declarations, as the patterns are.
template <class> using checked_name = std::string_view;
#define SERVICE(name) constexpr checked_name<decltype(::name)> name = #name
SERVICE(bdta3_col_assign_str);
SERVICE(bdta3_col_assign_bin);
SERVICE(bdta3_col_space_alloc);
SERVICE(nblob_assign_const);
SERVICE(nstr_assign_const);
SERVICE(nstr_clear);
SERVICE(str2int64);
SERVICE(str_from_int);
SERVICE(str2int64_directly);
SERVICE(utl_digit_from_char);
SERVICE(vq_get_valid_chars);
SERVICE(utl_is_valid_bfile_str);
SERVICE(ntype_is_double_overflow);
SERVICE(ntype_is_float_overflow);
SERVICE(ntype_is_lint64_overflow);
SERVICE(ntype_is_lint_overflow);
SERVICE(dou2int64);
SERVICE(vq_dou2char);
SERVICE(xdec_from_int64_with_len_prec);
SERVICE(xdec_from_char_with_len_prec);
SERVICE(xdec_from_double_with_len_prec);
SERVICE(xdec_from_xdec_with_len_prec);
SERVICE(xdec_get_double);
SERVICE(xdec_get_int64);
SERVICE(xdec_to_char_with_zero);
SERVICE(nbin_from_char_ex);
SERVICE(nbin_to_char_ex);
SERVICE(nbin_to_int_by_ntype_len);
SERVICE(nbin_to_lint64);
SERVICE(char_to_date_simple_with_alen);
SERVICE(vqtime_from_char_ex2);
SERVICE(vqtime_glgl_adjust_ignore);
SERVICE(vqtime_from_long);
SERVICE(time_from_long);
SERVICE(vqtime_get_tz);
SERVICE(vqtime_set_tz);
SERVICE(vqtime_add_by_fmt);
SERVICE(vqtime_round_by_prec);
SERVICE(vqtime_reset);
SERVICE(vqdt_encode_fast);
SERVICE(vqdt_date_encode_fast);
SERVICE(vqdt_time_encode_fast);
SERVICE(vqdt_to_char);
SERVICE(vq_date_to_char);
SERVICE(vq_time_to_char);
SERVICE(vqtime_tz_to_char);
SERVICE(vqdt_clear_interval_ym_info);
SERVICE(vqdt_clear_interval_dt_info);
SERVICE(interval_ym_validate);
SERVICE(interval_dt_validate);
SERVICE(vq_interval_ym_from_char);
SERVICE(vq_interval_dt_from_char);
SERVICE(vq_interval_ym_to_char);
SERVICE(vq_interval_dt_to_char);
SERVICE(cast_interval_ym);
SERVICE(cast_interval_dt);
#undef SERVICE
constexpr std::string_view copy_row = "copy_row";

using enum protocol;
using enum no_null;
using enum form;

// What a cast calls.
struct calls {
    std::array<std::string_view, 5> names;
    size_t count;

    template <std::same_as<std::string_view>... Name>
    constexpr calls(Name... name) : names{name...}, count(sizeof...(name))
    {}
};

struct entry {
    std::string_view name;
    pattern arguments;
    sql_type from;
    sql_type to;
    catalogue::protocol protocol = {};
    catalogue::no_null no_null = {};
    catalogue::calls services = {};
    source_limit limit = {};
    catalogue::form form = {};
    std::string_view alias_of = {}; // an alias has all that stands behind the types from this cast

    constexpr entry(std::string_view n, pattern a, sql_type f, sql_type t, catalogue::protocol p, catalogue::no_null nn,
                    catalogue::calls c = {}, source_limit l = any_length)
        : entry(n, a, f, t, p, nn, c, l, form_of(a))
    {}
    constexpr entry(std::string_view n, pattern a, sql_type f, sql_type t, catalogue::protocol p, catalogue::no_null nn,
                    catalogue::calls c, source_limit l, catalogue::form form_told)
        : name(n), arguments(a), from(f), to(t), protocol(p), no_null(nn), services(c), limit(l), form(form_told)
    {}
    constexpr entry(std::string_view n, pattern a, sql_type f, sql_type t, const char *of)
        : name(n), arguments(a), from(f), to(t), alias_of(of)
    {}
};

// clang-format off
#define CAST(name) #name, pattern_of<decltype(name)>
// clang-format on

constexpr auto entries = std::to_array<entry>({
    // Integers among themselves
    {CAST(bcast_tinyint_to_tinyint), BCAST_TINYINT, BCAST_TINYINT, never_fails, behind},
    {CAST(bcast_tinyint_to_smallint), BCAST_TINYINT, BCAST_SMALLINT, never_fails, behind},
    {CAST(bcast_tinyint_to_int), BCAST_TINYINT, BCAST_INT, never_fails, behind},
    {CAST(bcast_tinyint_to_int64), BCAST_TINYINT, BCAST_INT64, never_fails, behind},
    {CAST(bcast_smallint_to_tinyint), BCAST_SMALLINT, BCAST_TINYINT, stops, behind},
    {CAST(bcast_smallint_to_smallint), BCAST_SMALLINT, BCAST_SMALLINT, never_fails, behind},
    {CAST(bcast_smallint_to_int), BCAST_SMALLINT, BCAST_INT, never_fails, behind},
    {CAST(bcast_smallint_to_int64), BCAST_SMALLINT, BCAST_INT64, never_fails, behind},
    {CAST(bcast_int_to_tinyint), BCAST_INT, BCAST_TINYINT, stops, behind},
    {CAST(bcast_int_to_smallint), BCAST_INT, BCAST_SMALLINT, stops, behind},
    {CAST(bcast_int_to_int), BCAST_INT, BCAST_INT, never_fails, behind},
    {CAST(bcast_int_to_int64), BCAST_INT, BCAST_INT64, never_fails, behind},
    {CAST(bcast_int64_to_tinyint), BCAST_INT64, BCAST_TINYINT, stops, behind},
    {CAST(bcast_int64_to_smallint), BCAST_INT64, BCAST_SMALLINT, stops, behind},
    {CAST(bcast_int64_to_int), BCAST_INT64, BCAST_INT, stops, behind},
    {CAST(bcast_int64_to_int64), BCAST_INT64, BCAST_INT64, never_fails, behind},

    // Integers to characters
    {CAST(bcast_tinyint_to_char), BCAST_TINYINT, BCAST_CHAR, stops, ahead, calls(bdta3_col_assign_str)},
    {CAST(bcast_tinyint_to_varchar), BCAST_TINYINT, BCAST_VARCHAR, stops, ahead, calls(bdta3_col_assign_str)},
    {CAST(bcast_tinyint_to_varchar2), BCAST_TINYINT, BCAST_VARCHAR2, "bcast_tinyint_to_char"},
    {CAST(bcast_smallint_to_char), BCAST_SMALLINT, BCAST_CHAR, "bcast_int_to_char"},
    {CAST(bcast_smallint_to_varchar), BCAST_SMALLINT, BCAST_VARCHAR, "bcast_int_to_varchar"},
    {CAST(bcast_smallint_to_varchar2), BCAST_SMALLINT, BCAST_VARCHAR2, "bcast_int_to_char"},
    {CAST(bcast_int_to_char), BCAST_INT, BCAST_CHAR, stops, ahead, calls(str_from_int, bdta3_col_assign_str)},
    {CAST(bcast_int_to_varchar), BCAST_INT, BCAST_VARCHAR, stops, ahead, calls(str_from_int, bdta3_col_assign_str)},
    {CAST(bcast_int_to_varchar2), BCAST_INT, BCAST_VARCHAR2, "bcast_int_to_char"},
    {CAST(bcast_int64_to_char), BCAST_INT64, BCAST_CHAR, stops, ahead, calls(bdta3_col_assign_str)},
    {CAST(bcast_int64_to_varchar), BCAST_INT64, BCAST_VARCHAR, stops, ahead, calls(bdta3_col_assign_str)},
    {CAST(bcast_int64_to_varchar2), BCAST_INT64, BCAST_VARCHAR2, "bcast_int64_to_char"},

    // Integers to text
    {CAST(bcast_tinyint_to_text), BCAST_TINYINT, BCAST_TEXT, "bcast_int_to_text"},
    {CAST(bcast_smallint_to_text), BCAST_SMALLINT, BCAST_TEXT, "bcast_int_to_text"},
    {CAST(bcast_int_to_text), BCAST_INT, BCAST_TEXT, captures, ahead, calls(nblob_assign_const, bdta3_col_assign_bin)},
    {CAST(bcast_int64_to_text), BCAST_INT64, BCAST_TEXT, captures, ahead,
     calls(nblob_assign_const, bdta3_col_assign_bin)},

    // Integers to bytes, most significant first
    {CAST(bcast_tinyint_to_binary), BCAST_TINYINT, BCAST_BINARY, "bcast_int_to_binary"},
    {CAST(bcast_tinyint_to_varbinary), BCAST_TINYINT, BCAST_VARBINARY, stops, ahead,
     calls(ntype_is_lint_overflow, bdta3_col_assign_bin)},
    {CAST(bcast_smallint_to_binary), BCAST_SMALLINT, BCAST_BINARY, "bcast_int_to_binary"},
    {CAST(bcast_smallint_to_varbinary), BCAST_SMALLINT, BCAST_VARBINARY, never_fails, ahead,
     calls(bdta3_col_assign_bin)},
    {CAST(bcast_int_to_binary), BCAST_INT, BCAST_BINARY, never_fails, ahead, calls(bdta3_col_assign_bin)},
    {CAST(bcast_int_to_varbinary), BCAST_INT, BCAST_VARBINARY, never_fails, ahead, calls(bdta3_col_assign_bin)},
    {CAST(bcast_int64_to_binary), BCAST_INT64, BCAST_BINARY, never_fails, ahead, calls(bdta3_col_assign_bin)},
    {CAST(bcast_int64_to_varbinary), BCAST_INT64, BCAST_VARBINARY, never_fails, ahead, calls(bdta3_col_assign_bin)},

    // Integers to dec, float and double
    {CAST(bcast_tinyint_to_dec), BCAST_TINYINT, BCAST_DEC, stops, behind, calls(xdec_from_int64_with_len_prec)},
    {CAST(bcast_smallint_to_dec), BCAST_SMALLINT, BCAST_DEC, stops, behind, calls(xdec_from_int64_with_len_prec)},
    {CAST(bcast_int_to_dec), BCAST_INT, BCAST_DEC, stops, behind, calls(xdec_from_int64_with_len_prec)},
    {CAST(bcast_int64_to_dec), BCAST_INT64, BCAST_DEC, stops, behind, calls(xdec_from_int64_with_len_prec)},
    {CAST(bcast_tinyint_to_float), BCAST_TINYINT, BCAST_FLOAT, never_fails, behind},
    {CAST(bcast_tinyint_to_double), BCAST_TINYINT, BCAST_DOUBLE, never_fails, behind},
    {CAST(bcast_smallint_to_float), BCAST_SMALLINT, BCAST_FLOAT, never_fails, behind},
    {CAST(bcast_smallint_to_double), BCAST_SMALLINT, BCAST_DOUBLE, never_fails, behind},
    {CAST(bcast_int_to_float), BCAST_INT, BCAST_FLOAT, never_fails, behind},
    {CAST(bcast_int_to_double), BCAST_INT, BCAST_DOUBLE, never_fails, behind},
    {CAST(bcast_int64_to_float), BCAST_INT64, BCAST_FLOAT, never_fails, behind},
    {CAST(bcast_int64_to_double), BCAST_INT64, BCAST_DOUBLE, never_fails, behind},

    // To boolean
    {CAST(bcast_tinyint_to_boolean), BCAST_TINYINT, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_smallint_to_boolean), BCAST_SMALLINT, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_int_to_boolean), BCAST_INT, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_int64_to_boolean), BCAST_INT64, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_bit_to_boolean), BCAST_BIT, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_boolean_to_boolean), BCAST_BOOLEAN, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_null_to_boolean), BCAST_NULL, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_char_to_boolean), BCAST_CHAR, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_varchar_to_boolean), BCAST_VARCHAR, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_varbinary_to_boolean), BCAST_VARBINARY, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_dec_to_boolean), BCAST_DEC, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_float_to_boolean), BCAST_FLOAT, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_double_to_boolean), BCAST_DOUBLE, BCAST_BOOLEAN, stops, one, calls(ntype_is_double_overflow)},
    {CAST(bcast_date_to_boolean), BCAST_DATE, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_time_to_boolean), BCAST_TIME, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_datetime_to_boolean), BCAST_DATETIME, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_iv_ym_to_boolean), BCAST_IVYM, BCAST_BOOLEAN, never_fails, one},
    {CAST(bcast_iv_dt_to_boolean), BCAST_IVDT, BCAST_BOOLEAN, never_fails, one},

    // From boolean
    {CAST(bcast_boolean_to_tinyint), BCAST_BOOLEAN, BCAST_TINYINT, never_fails, behind},
    {CAST(bcast_boolean_to_smallint), BCAST_BOOLEAN, BCAST_SMALLINT, never_fails, behind},
    {CAST(bcast_boolean_to_int), BCAST_BOOLEAN, BCAST_INT, never_fails, behind},
    {CAST(bcast_boolean_to_int64), BCAST_BOOLEAN, BCAST_INT64, never_fails, behind},

    // To bit
    {CAST(bcast_tinyint_to_bit), BCAST_TINYINT, BCAST_BIT, never_fails, behind},
    {CAST(bcast_smallint_to_bit), BCAST_SMALLINT, BCAST_BIT, never_fails, behind},
    {CAST(bcast_int_to_bit), BCAST_INT, BCAST_BIT, never_fails, behind},
    {CAST(bcast_int_to_varbit), BCAST_INT, varbit, "bcast_int_to_bit"},
    {CAST(bcast_int64_to_bit), BCAST_INT64, BCAST_BIT, never_fails, behind},
    {CAST(bcast_bit_to_bit), BCAST_BIT, BCAST_BIT, never_fails, behind},
    {CAST(bcast_char_to_bit), BCAST_CHAR, BCAST_BIT, stops, ahead},
    {CAST(bcast_varchar2_to_bit), BCAST_VARCHAR2, BCAST_BIT, stops, kept},
    {CAST(bcast_dec_to_bit), BCAST_DEC, BCAST_BIT, never_fails, behind},
    {CAST(bcast_float_to_bit), BCAST_FLOAT, BCAST_BIT, never_fails, behind},
    {CAST(bcast_double_to_bit), BCAST_DOUBLE, BCAST_BIT, stops, behind, calls(ntype_is_double_overflow)},
    {CAST(bcast_varchar_to_bit), BCAST_VARCHAR, BCAST_BIT, captures, or_zero},

    // From bit
    {CAST(bcast_bit_to_tinyint), BCAST_BIT, BCAST_TINYINT, never_fails, behind},
    {CAST(bcast_bit_to_smallint), BCAST_BIT, BCAST_SMALLINT, never_fails, behind},
    {CAST(bcast_bit_to_int), BCAST_BIT, BCAST_INT, never_fails, behind},
    {CAST(bcast_bit_to_int64), BCAST_BIT, BCAST_INT64, never_fails, behind},
    {CAST(bcast_bit_to_float), BCAST_BIT, BCAST_FLOAT, never_fails, behind},
    {CAST(bcast_bit_to_double), BCAST_BIT, BCAST_DOUBLE, never_fails, behind},
    {CAST(bcast_bit_to_dec), BCAST_BIT, BCAST_DEC, stops, behind, calls(xdec_from_int64_with_len_prec)},
    {CAST(bcast_bit_to_char), BCAST_BIT, BCAST_CHAR, stops, ahead, calls(bdta3_col_assign_str)},
    {CAST(bcast_bit_to_varchar), BCAST_BIT, BCAST_VARCHAR, stops, ahead, calls(bdta3_col_assign_str)},
    {CAST(bcast_bit_to_varchar2), BCAST_BIT, BCAST_VARCHAR2, "bcast_bit_to_char"},

    // To null
    {CAST(bcast_tinyint_to_null), BCAST_TINYINT, BCAST_NULL, never_fails, zero},
    {CAST(bcast_smallint_to_null), BCAST_SMALLINT, BCAST_NULL, never_fails, zero},
    {CAST(bcast_int_to_null), BCAST_INT, BCAST_NULL, never_fails, zero},
    {CAST(bcast_int64_to_null), BCAST_INT64, BCAST_NULL, never_fails, zero},
    {CAST(bcast_bit_to_null), BCAST_BIT, BCAST_NULL, never_fails, zero},
    {CAST(bcast_boolean_to_null), BCAST_BOOLEAN, BCAST_NULL, never_fails, zero},
    {CAST(bcast_null_to_null), BCAST_NULL, BCAST_NULL, never_fails, zero},
    {CAST(bcast_char_to_null), BCAST_CHAR, BCAST_NULL, never_fails, zero},
    {CAST(bcast_varchar_to_null), BCAST_VARCHAR, BCAST_NULL, never_fails, zero},
    {CAST(bcast_varchar2_to_null), BCAST_VARCHAR2, BCAST_NULL, "bcast_varchar_to_null"},
    {CAST(bcast_binary_to_null), BCAST_BINARY, BCAST_NULL, never_fails, zero},
    {CAST(bcast_varbinary_to_null), BCAST_VARBINARY, BCAST_NULL, never_fails, zero},
    {CAST(bcast_text_to_null), BCAST_TEXT, BCAST_NULL, never_fails, zero},
    {CAST(bcast_blob_to_null), BCAST_BLOB, BCAST_NULL, never_fails, zero},
    {CAST(bcast_dec_to_null), BCAST_DEC, BCAST_NULL, never_fails, zero},
    {CAST(bcast_float_to_null), BCAST_FLOAT, BCAST_NULL, never_fails, zero},
    {CAST(bcast_double_to_null), BCAST_DOUBLE, BCAST_NULL, never_fails, zero},
    {CAST(bcast_date_to_null), BCAST_DATE, BCAST_NULL, never_fails, zero},
    {CAST(bcast_time_to_null), BCAST_TIME, BCAST_NULL, never_fails, kept},
    {CAST(bcast_time_tz_to_null), BCAST_TIME_TZ, BCAST_NULL, never_fails, zero},
    {CAST(bcast_datetime_to_null), BCAST_DATETIME, BCAST_NULL, never_fails, zero},
    {CAST(bcast_datetime_tz_to_null), BCAST_DATETIME_TZ, BCAST_NULL, never_fails, kept},
    {CAST(bcast_iv_ym_to_null), BCAST_IVYM, BCAST_NULL, never_fails, zero},
    {CAST(bcast_iv_dt_to_null), BCAST_IVDT, BCAST_NULL, never_fails, zero},

    // From null
    {CAST(bcast_null_to_tinyint), BCAST_NULL, BCAST_TINYINT, "bcast_null_to_int"},
    {CAST(bcast_null_to_smallint), BCAST_NULL, BCAST_SMALLINT, "bcast_null_to_int"},
    {CAST(bcast_null_to_int), BCAST_NULL, BCAST_INT, never_fails, zero},
    {CAST(bcast_null_to_int64), BCAST_NULL, BCAST_INT64, never_fails, zero},
    {CAST(bcast_null_to_bit), BCAST_NULL, BCAST_BIT, never_fails, zero},
    {CAST(bcast_null_to_float), BCAST_NULL, BCAST_FLOAT, never_fails, zero},
    {CAST(bcast_null_to_double), BCAST_NULL, BCAST_DOUBLE, never_fails, zero},
    {CAST(bcast_null_to_date), BCAST_NULL, BCAST_DATE, never_fails, zero},
    {CAST(bcast_null_to_time), BCAST_NULL, BCAST_TIME, "bcast_null_to_date"},
    {CAST(bcast_null_to_time_tz), BCAST_NULL, BCAST_TIME_TZ, "bcast_null_to_date"},
    {CAST(bcast_null_to_datetime), BCAST_NULL, BCAST_DATETIME, "bcast_null_to_date"},
    {CAST(bcast_null_to_datetime_tz), BCAST_NULL, BCAST_DATETIME_TZ, "bcast_null_to_date"},
    {CAST(bcast_null_to_ivym), BCAST_NULL, BCAST_IVYM, never_fails, zero},
    {CAST(bcast_null_to_ivdt), BCAST_NULL, BCAST_IVDT, never_fails, zero},
    {CAST(bcast_null_to_dec), BCAST_NULL, BCAST_DEC, never_fails, zero},
    {CAST(bcast_null_to_char), BCAST_NULL, BCAST_CHAR, never_fails, zero},
    {CAST(bcast_null_to_varchar), BCAST_NULL, BCAST_VARCHAR, "bcast_null_to_char"},
    {CAST(bcast_null_to_varchar2), BCAST_NULL, BCAST_VARCHAR2, "bcast_null_to_char"},
    {CAST(bcast_null_to_binary), BCAST_NULL, BCAST_BINARY, "bcast_null_to_char"},
    {CAST(bcast_null_to_varbinary), BCAST_NULL, BCAST_VARBINARY, "bcast_null_to_char"},
    {CAST(bcast_null_to_text), BCAST_NULL, BCAST_TEXT, "bcast_null_to_char"},
    {CAST(bcast_null_to_blob), BCAST_NULL, BCAST_BLOB, "bcast_null_to_char"},

    // Characters to characters
    {CAST(bcast_char_to_char), BCAST_CHAR, BCAST_CHAR, "bcast_varchar_to_char"},
    {CAST(bcast_char_to_varchar), BCAST_CHAR, BCAST_VARCHAR, "bcast_varchar_to_varchar"},
    {CAST(bcast_char_to_varchar2), BCAST_CHAR, BCAST_VARCHAR2, "bcast_varchar_to_char"},
    {CAST(bcast_varchar_to_char), BCAST_VARCHAR, BCAST_CHAR, captures, behind, calls(copy_row)},
    {CAST(bcast_varchar_to_varchar), BCAST_VARCHAR, BCAST_VARCHAR, captures, behind,
     calls(copy_row, bdta3_col_space_alloc)},
    {CAST(bcast_varchar_to_varchar2), BCAST_VARCHAR, BCAST_VARCHAR2, "bcast_varchar_to_char"},
    {CAST(bcast_varchar2_to_char), BCAST_VARCHAR2, BCAST_CHAR, "bcast_varchar_to_char"},
    {CAST(bcast_varchar2_to_varchar), BCAST_VARCHAR2, BCAST_VARCHAR, "bcast_varchar_to_varchar"},
    {CAST(bcast_varchar2_to_varchar2), BCAST_VARCHAR2, BCAST_VARCHAR2, "bcast_varchar_to_char"},
    {CAST(bcast_varchar_to_char_explicit), BCAST_VARCHAR, BCAST_CHAR, stops, ahead,
     calls(vq_get_valid_chars, bdta3_col_space_alloc), any_length, cuts},
    {CAST(bcast_varchar_to_varchar_explicit), BCAST_VARCHAR, BCAST_VARCHAR, stops, ahead,
     calls(vq_get_valid_chars, bdta3_col_space_alloc), any_length, cuts},

    // Characters to integers
    {CAST(bcast_char_to_tinyint), BCAST_CHAR, BCAST_TINYINT, stops, ahead, calls(str2int64), integer_text},
    {CAST(bcast_char_to_smallint), BCAST_CHAR, BCAST_SMALLINT, stops, ahead, calls(str2int64), integer_text},
    {CAST(bcast_char_to_int), BCAST_CHAR, BCAST_INT, stops, ahead, calls(str2int64), integer_text},
    {CAST(bcast_char_to_int64), BCAST_CHAR, BCAST_INT64, stops, ahead, calls(str2int64), integer_text},
    {CAST(bcast_varchar2_to_tinyint), BCAST_VARCHAR2, BCAST_TINYINT, stops, ahead, calls(str2int64), integer_text},
    {CAST(bcast_varchar2_to_smallint), BCAST_VARCHAR2, BCAST_SMALLINT, stops, ahead, calls(str2int64), integer_text},
    {CAST(bcast_varchar2_to_int), BCAST_VARCHAR2, BCAST_INT, stops, ahead, calls(str2int64), integer_text},
    {CAST(bcast_varchar2_to_int64), BCAST_VARCHAR2, BCAST_INT64, stops, ahead, calls(str2int64), integer_text},
    {CAST(bcast_varchar_to_tinyint), BCAST_VARCHAR, BCAST_TINYINT, captures, ahead, calls(str2int64)},
    {CAST(bcast_varchar_to_smallint), BCAST_VARCHAR, BCAST_SMALLINT, captures, ahead, calls(str2int64)},
    {CAST(bcast_varchar_to_int), BCAST_VARCHAR, BCAST_INT, captures, ahead, calls(str2int64)},
    {CAST(bcast_varchar_to_int64), BCAST_VARCHAR, BCAST_INT64, captures, ahead, calls(str2int64)},

    // Characters to integers, for a comparison
    {CAST(bcast_varchar_to_int_directly), BCAST_VARCHAR, BCAST_INT, stops, ahead, calls(str2int64_directly),
     integer_text},
    {CAST(bcast_varchar_to_int64_directly), BCAST_VARCHAR, BCAST_INT64, stops, ahead, calls(str2int64_directly),
     integer_text},
    {CAST(bcast_varchar_to_int_directly_low), BCAST_VARCHAR, BCAST_INT, stops, kept, calls(str2int64_directly),
     literal_text},
    {CAST(bcast_varchar_to_int64_directly_low), BCAST_VARCHAR, BCAST_INT64, stops, kept, calls(str2int64_directly),
     literal_text},

    // Characters to dec, float and double
    {CAST(bcast_char_to_dec), BCAST_CHAR, BCAST_DEC, stops, ahead, calls(xdec_from_char_with_len_prec), number_text},
    {CAST(bcast_varchar2_to_dec), BCAST_VARCHAR2, BCAST_DEC, stops, ahead, calls(xdec_from_char_with_len_prec),
     number_text},
    {CAST(bcast_char_to_float), BCAST_CHAR, BCAST_FLOAT, stops, ahead,
     calls(utl_digit_from_char, ntype_is_float_overflow), number_text},
    {CAST(bcast_char_to_double), BCAST_CHAR, BCAST_DOUBLE, stops, ahead, calls(utl_digit_from_char), number_text},
    {CAST(bcast_varchar2_to_float), BCAST_VARCHAR2, BCAST_FLOAT, stops, ahead,
     calls(utl_digit_from_char, ntype_is_float_overflow), number_text},
    {CAST(bcast_varchar2_to_double), BCAST_VARCHAR2, BCAST_DOUBLE, stops, ahead, calls(utl_digit_from_char),
     number_text},
    {CAST(bcast_varchar_to_dec), BCAST_VARCHAR, BCAST_DEC, captures, ahead, calls(xdec_from_char_with_len_prec),
     number_text},
    {CAST(bcast_varchar_to_float), BCAST_VARCHAR, BCAST_FLOAT, captures, ahead,
     calls(utl_digit_from_char, ntype_is_float_overflow), number_text},
    {CAST(bcast_varchar_to_double), BCAST_VARCHAR, BCAST_DOUBLE, captures, ahead,
     calls(utl_digit_from_char, ntype_is_double_overflow), number_text},

    // Characters to bfile
    {CAST(bcast_varchar_to_bfile), BCAST_VARCHAR, BCAST_BFILE, captures, ahead,
     calls(utl_is_valid_bfile_str, bdta3_col_space_alloc)},

    // Characters to text and blob
    {CAST(bcast_varchar_to_text), BCAST_VARCHAR, BCAST_TEXT, "bcast_varchar_to_blob"},
    {CAST(bcast_varchar_to_blob), BCAST_VARCHAR, BCAST_BLOB, captures, ahead,
     calls(nblob_assign_const, bdta3_col_assign_bin, nstr_clear), large_object_text},

    // Hexadecimal text to binary
    {CAST(bcast_char_to_binary), BCAST_CHAR, BCAST_BINARY, "bcast_hex_varchar_to_binary"},
    {CAST(bcast_char_to_varbinary), BCAST_CHAR, BCAST_VARBINARY, "bcast_hex_varchar_to_varbinary"},
    {CAST(bcast_varchar_to_binary), BCAST_VARCHAR, BCAST_BINARY, "bcast_hex_varchar_to_binary"},
    {CAST(bcast_varchar_to_varbinary), BCAST_VARCHAR, BCAST_VARBINARY, "bcast_hex_varchar_to_varbinary"},
    {CAST(bcast_varchar2_to_binary), BCAST_VARCHAR2, BCAST_BINARY, "bcast_hex_varchar_to_binary"},
    {CAST(bcast_varchar2_to_varbinary), BCAST_VARCHAR2, BCAST_VARBINARY, "bcast_hex_varchar_to_varbinary"},
    {CAST(bcast_hex_char_to_binary), hex_char, BCAST_BINARY, "bcast_hex_varchar_to_binary"},
    {CAST(bcast_hex_char_to_varbinary), hex_char, BCAST_VARBINARY, "bcast_hex_varchar_to_varbinary"},
    {CAST(bcast_hex_varchar_to_binary), hex_varchar, BCAST_BINARY, captures, ahead,
     calls(nbin_from_char_ex, bdta3_col_assign_bin)},
    {CAST(bcast_hex_varchar_to_binary_explicit), hex_varchar, BCAST_BINARY, captures, ahead,
     calls(nbin_from_char_ex, bdta3_col_assign_bin), any_length, cuts},
    {CAST(bcast_hex_varchar_to_varbinary), hex_varchar, BCAST_VARBINARY, captures, ahead,
     calls(nbin_from_char_ex, bdta3_col_assign_bin)},
    {CAST(bcast_hex_varchar_to_varbinary_explicit), hex_varchar, BCAST_VARBINARY, captures, ahead,
     calls(nbin_from_char_ex, bdta3_col_assign_bin), any_length, cuts},

    // Binary to hexadecimal text
    {CAST(bcast_binary_to_char), BCAST_BINARY, BCAST_CHAR, "bcast_varbinary_to_char"},
    {CAST(bcast_binary_to_varchar), BCAST_BINARY, BCAST_VARCHAR, "bcast_varbinary_to_varchar"},
    {CAST(bcast_binary_to_varchar2), BCAST_BINARY, BCAST_VARCHAR2, "bcast_varbinary_to_char"},
    {CAST(bcast_varbinary_to_char), BCAST_VARBINARY, BCAST_CHAR, captures, ahead,
     calls(nbin_to_char_ex, bdta3_col_assign_str), shown_binary},
    {CAST(bcast_varbinary_to_varchar), BCAST_VARBINARY, BCAST_VARCHAR, captures, ahead,
     calls(nbin_to_char_ex, bdta3_col_assign_str), shown_binary},
    {CAST(bcast_varbinary_to_varchar2), BCAST_VARBINARY, BCAST_VARCHAR2, "bcast_varbinary_to_char"},
    {CAST(bcast_binary_to_hex_char), BCAST_BINARY, hex_char, "bcast_varbinary_to_hex_char"},
    {CAST(bcast_binary_to_hex_varchar), BCAST_BINARY, hex_varchar, "bcast_varbinary_to_hex_varchar"},
    {CAST(bcast_binary_to_hex_varchar2), BCAST_BINARY, hex_varchar2, "bcast_varbinary_to_hex_char"},
    {CAST(bcast_varbinary_to_char_explicit), BCAST_VARBINARY, BCAST_CHAR, stops, ahead,
     calls(nbin_to_char_ex, bdta3_col_assign_str), shown_binary, cuts},
    {CAST(bcast_varbinary_to_varchar_explicit), BCAST_VARBINARY, BCAST_VARCHAR, stops, ahead,
     calls(nbin_to_char_ex, bdta3_col_assign_str), shown_binary, cuts},
    {CAST(bcast_varbinary_to_hex_char), BCAST_VARBINARY, hex_char, stops, ahead,
     calls(nbin_to_char_ex, nstr_assign_const, bdta3_col_assign_str, nstr_clear), shown_binary},
    {CAST(bcast_varbinary_to_hex_varchar), BCAST_VARBINARY, hex_varchar, stops, ahead,
     calls(nbin_to_char_ex, nstr_assign_const, bdta3_col_assign_str, nstr_clear), shown_binary},
    {CAST(bcast_varbinary_to_hex_varchar2), BCAST_VARBINARY, hex_varchar2, "bcast_varbinary_to_hex_char"},

    // Binary to numbers
    {CAST(bcast_binary_to_tinyint), BCAST_BINARY, BCAST_TINYINT, stops, behind, calls(nbin_to_int_by_ntype_len)},
    {CAST(bcast_binary_to_smallint), BCAST_BINARY, BCAST_SMALLINT, stops, behind, calls(nbin_to_int_by_ntype_len)},
    {CAST(bcast_binary_to_int), BCAST_BINARY, BCAST_INT, stops, behind, calls(nbin_to_int_by_ntype_len)},
    {CAST(bcast_binary_to_int64), BCAST_BINARY, BCAST_INT64, stops, behind, calls(nbin_to_int_by_ntype_len)},
    {CAST(bcast_binary_to_float), BCAST_BINARY, BCAST_FLOAT, stops, behind,
     calls(nbin_to_lint64, ntype_is_float_overflow)},
    {CAST(bcast_binary_to_double), BCAST_BINARY, BCAST_DOUBLE, stops, behind, calls(nbin_to_lint64)},
    {CAST(bcast_binary_to_dec), BCAST_BINARY, BCAST_DEC, stops, behind,
     calls(nbin_to_lint64, xdec_from_int64_with_len_prec)},
    {CAST(bcast_varbinary_to_tinyint), BCAST_VARBINARY, BCAST_TINYINT, captures, behind,
     calls(nbin_to_int_by_ntype_len)},
    {CAST(bcast_varbinary_to_smallint), BCAST_VARBINARY, BCAST_SMALLINT, captures, behind,
     calls(nbin_to_int_by_ntype_len)},
    {CAST(bcast_varbinary_to_int), BCAST_VARBINARY, BCAST_INT, captures, behind, calls(nbin_to_int_by_ntype_len)},
    {CAST(bcast_varbinary_to_int64), BCAST_VARBINARY, BCAST_INT64, captures, behind, calls(nbin_to_int_by_ntype_len)},
    {CAST(bcast_varbinary_to_dec), BCAST_VARBINARY, BCAST_DEC, captures, behind,
     calls(nbin_to_lint64, xdec_from_int64_with_len_prec)},

    // Binary to binary
    {CAST(bcast_binary_to_binary), BCAST_BINARY, BCAST_BINARY, "bcast_varbinary_to_binary"},
    {CAST(bcast_binary_to_varbinary), BCAST_BINARY, BCAST_VARBINARY, "bcast_varchar_to_varchar"},
    {CAST(bcast_varbinary_to_binary), BCAST_VARBINARY, BCAST_BINARY, captures, ahead, calls(bdta3_col_assign_bin)},
    {CAST(bcast_varbinary_to_varbinary), BCAST_VARBINARY, BCAST_VARBINARY, "bcast_varchar_to_varchar"},
    {CAST(bcast_varbinary_to_binary_explicit), BCAST_VARBINARY, BCAST_BINARY, never_fails, ahead,
     calls(bdta3_col_assign_bin), any_length, cuts},

    // Binary to text and blob
    {CAST(bcast_binary_to_text), BCAST_BINARY, BCAST_TEXT, stops, ahead,
     calls(nbin_to_char_ex, nblob_assign_const, bdta3_col_assign_bin, nstr_clear), shown_large_binary},
    {CAST(bcast_binary_to_blob), BCAST_BINARY, BCAST_BLOB, stops, ahead,
     calls(nblob_assign_const, bdta3_col_assign_bin, nstr_clear)},

    // Large objects to each other
    {CAST(bcast_text_to_text), BCAST_TEXT, BCAST_TEXT, stops, behind, calls(copy_row)},
    {CAST(bcast_text_to_blob), BCAST_TEXT, BCAST_BLOB, refused, kept},
    {CAST(bcast_blob_to_blob), BCAST_BLOB, BCAST_BLOB, stops, behind, calls(copy_row)},

    // dec, double and float to numbers
    {CAST(bcast_dec_to_tinyint), BCAST_DEC, BCAST_TINYINT, stops, behind, calls(xdec_get_int64)},
    {CAST(bcast_dec_to_smallint), BCAST_DEC, BCAST_SMALLINT, stops, behind, calls(xdec_get_int64)},
    {CAST(bcast_dec_to_int), BCAST_DEC, BCAST_INT, stops, behind, calls(xdec_get_int64)},
    {CAST(bcast_dec_to_int64), BCAST_DEC, BCAST_INT64, stops, behind, calls(xdec_get_int64)},
    {CAST(bcast_dec_to_double), BCAST_DEC, BCAST_DOUBLE, stops, behind, calls(xdec_get_double)},
    {CAST(bcast_dec_to_float), BCAST_DEC, BCAST_FLOAT, stops, behind, calls(xdec_get_double, ntype_is_float_overflow)},
    {CAST(bcast_double_to_tinyint), BCAST_DOUBLE, BCAST_TINYINT, stops, behind, calls(dou2int64)},
    {CAST(bcast_double_to_smallint), BCAST_DOUBLE, BCAST_SMALLINT, stops, behind, calls(dou2int64)},
    {CAST(bcast_double_to_int), BCAST_DOUBLE, BCAST_INT, stops, behind, calls(dou2int64)},
    {CAST(bcast_double_to_int64), BCAST_DOUBLE, BCAST_INT64, stops, behind, calls(ntype_is_lint64_overflow, dou2int64)},
    {CAST(bcast_double_to_double), BCAST_DOUBLE, BCAST_DOUBLE, stops, behind, calls(ntype_is_double_overflow)},
    {CAST(bcast_double_to_float), BCAST_DOUBLE, BCAST_FLOAT, stops, behind, calls(ntype_is_float_overflow)},
    {CAST(bcast_float_to_tinyint), BCAST_FLOAT, BCAST_TINYINT, stops, behind},
    {CAST(bcast_float_to_smallint), BCAST_FLOAT, BCAST_SMALLINT, stops, behind},
    {CAST(bcast_float_to_int), BCAST_FLOAT, BCAST_INT, stops, behind},
    {CAST(bcast_float_to_int64), BCAST_FLOAT, BCAST_INT64, stops, behind, calls(ntype_is_lint64_overflow)},
    {CAST(bcast_float_to_double), BCAST_FLOAT, BCAST_DOUBLE, never_fails, behind},
    {CAST(bcast_float_to_float), BCAST_FLOAT, BCAST_FLOAT, never_fails, behind},
    {CAST(bcast_dec_to_dec), BCAST_DEC, BCAST_DEC, stops, behind, calls(xdec_from_xdec_with_len_prec)},
    {CAST(bcast_double_to_dec), BCAST_DOUBLE, BCAST_DEC, stops, behind,
     calls(ntype_is_double_overflow, xdec_from_double_with_len_prec)},
    {CAST(bcast_float_to_dec), BCAST_FLOAT, BCAST_DEC, stops, behind, calls(xdec_from_double_with_len_prec)},

    // dec, double and float to characters and text
    {CAST(bcast_dec_to_char), BCAST_DEC, BCAST_CHAR, stops, ahead, calls(xdec_to_char_with_zero, bdta3_col_assign_str)},
    {CAST(bcast_dec_to_varchar), BCAST_DEC, BCAST_VARCHAR, stops, ahead,
     calls(xdec_to_char_with_zero, bdta3_col_assign_str)},
    {CAST(bcast_dec_to_varchar2), BCAST_DEC, BCAST_VARCHAR2, "bcast_dec_to_char"},
    {CAST(bcast_double_to_char), BCAST_DOUBLE, BCAST_CHAR, stops, ahead,
     calls(ntype_is_double_overflow, vq_dou2char, bdta3_col_assign_str)},
    {CAST(bcast_double_to_varchar), BCAST_DOUBLE, BCAST_VARCHAR, stops, ahead,
     calls(ntype_is_double_overflow, vq_dou2char, bdta3_col_assign_str)},
    {CAST(bcast_double_to_varchar2), BCAST_DOUBLE, BCAST_VARCHAR2, "bcast_double_to_char"},
    {CAST(bcast_float_to_char), BCAST_FLOAT, BCAST_CHAR, stops, ahead, calls(vq_dou2char, bdta3_col_assign_str)},
    {CAST(bcast_float_to_varchar), BCAST_FLOAT, BCAST_VARCHAR, stops, ahead, calls(vq_dou2char, bdta3_col_assign_str)},
    {CAST(bcast_float_to_varchar2), BCAST_FLOAT, BCAST_VARCHAR2, "bcast_float_to_char"},
    {CAST(bcast_dec_to_text), BCAST_DEC, BCAST_TEXT, stops, ahead,
     calls(xdec_to_char_with_zero, nblob_assign_const, bdta3_col_assign_bin, nstr_clear)},
    {CAST(bcast_double_to_text), BCAST_DOUBLE, BCAST_TEXT, stops, ahead,
     calls(ntype_is_double_overflow, vq_dou2char, nblob_assign_const, bdta3_col_assign_bin, nstr_clear)},
    {CAST(bcast_float_to_text), BCAST_FLOAT, BCAST_TEXT, stops, ahead,
     calls(vq_dou2char, nblob_assign_const, bdta3_col_assign_bin, nstr_clear)},

    // Characters to temporal values
    {CAST(bcast_char_to_date_fast), BCAST_CHAR, BCAST_DATE, captures, ahead,
     calls(char_to_date_simple_with_alen, vqtime_glgl_adjust_ignore), fast_date_text},
    {CAST(bcast_char_to_tltz_fast), BCAST_CHAR, tltz, captures, ahead,
     calls(char_to_date_simple_with_alen, vqtime_get_tz, vqtime_add_by_fmt, vqtime_glgl_adjust_ignore), fast_date_text},
    {CAST(bcast_varchar_to_timestamp_local_time_zone), BCAST_VARCHAR, timestamp_local_time_zone, captures, ahead,
     calls(vqtime_from_char_ex2, vqtime_get_tz, vqtime_add_by_fmt, vqtime_glgl_adjust_ignore)},
    {CAST(bcast_varchar2_to_date), BCAST_VARCHAR2, BCAST_DATE, stops, ahead,
     calls(vqtime_from_char_ex2, vqtime_glgl_adjust_ignore)},

    // Integers to temporal values
    {CAST(bcast_tinyint_to_date), BCAST_TINYINT, BCAST_DATE, stops, behind, calls(vqtime_from_long)},
    {CAST(bcast_tinyint_to_time), BCAST_TINYINT, BCAST_TIME, stops, behind, calls(time_from_long)},
    {CAST(bcast_tinyint_to_datetime), BCAST_TINYINT, BCAST_DATETIME, stops, behind, calls(time_from_long)},
    {CAST(bcast_smallint_to_date), BCAST_SMALLINT, BCAST_DATE, stops, behind, calls(vqtime_from_long)},
    {CAST(bcast_smallint_to_time), BCAST_SMALLINT, BCAST_TIME, stops, behind, calls(time_from_long)},
    {CAST(bcast_smallint_to_datetime), BCAST_SMALLINT, BCAST_DATETIME, stops, behind, calls(time_from_long)},
    {CAST(bcast_int_to_date), BCAST_INT, BCAST_DATE, stops, behind, calls(vqtime_from_long)},
    {CAST(bcast_int_to_time), BCAST_INT, BCAST_TIME, stops, behind, calls(time_from_long)},
    {CAST(bcast_int_to_datetime), BCAST_INT, BCAST_DATETIME, stops, behind, calls(time_from_long)},
    {CAST(bcast_int64_to_date), BCAST_INT64, BCAST_DATE, stops, behind, calls(vqtime_from_long)},
    {CAST(bcast_int64_to_time), BCAST_INT64, BCAST_TIME, stops, behind, calls(time_from_long)},
    {CAST(bcast_int64_to_datetime), BCAST_INT64, BCAST_DATETIME, stops, behind, calls(time_from_long)},

    // Between temporal types, at the precision that the value has
    {CAST(bcast_date_to_date), BCAST_DATE, BCAST_DATE, never_fails, behind},
    {CAST(bcast_date_to_time), BCAST_DATE, BCAST_TIME, "bcast_date_to_date"},
    {CAST(bcast_date_to_datetime), BCAST_DATE, BCAST_DATETIME, "bcast_date_to_date"},
    {CAST(bcast_date_to_datetime_tz), BCAST_DATE, BCAST_DATETIME_TZ, never_fails, behind, calls(vqtime_set_tz)},
    {CAST(bcast_datetime_to_date), BCAST_DATETIME, BCAST_DATE, never_fails, behind, calls(vqtime_reset)},
    {CAST(bcast_datetime_tz_to_date), BCAST_DATETIME_TZ, BCAST_DATE, "bcast_date_to_date"},

    // Between temporal types, rounded to the scale of the target
    {CAST(bcast_precise_time_to_datetime), BCAST_TIME, BCAST_DATETIME, captures, behind,
     calls(vqtime_round_by_prec, vqtime_reset)},
    {CAST(bcast_precise_time_to_datetime_tz), BCAST_TIME, BCAST_DATETIME_TZ, captures, behind,
     calls(vqtime_round_by_prec, vqtime_set_tz, vqtime_reset)},
    {CAST(bcast_precise_time_to_time), BCAST_TIME, BCAST_TIME, captures, behind,
     calls(vqtime_round_by_prec, vqtime_reset)},
    {CAST(bcast_precise_time_to_time_tz), BCAST_TIME, BCAST_TIME_TZ, captures, behind,
     calls(vqtime_round_by_prec, vqtime_set_tz, vqtime_reset)},
    {CAST(bcast_precise_time_tz_to_datetime), BCAST_TIME_TZ, BCAST_DATETIME, captures, behind,
     calls(vqtime_round_by_prec, vqtime_reset)},
    {CAST(bcast_precise_time_tz_to_time), BCAST_TIME_TZ, BCAST_TIME, captures, behind,
     calls(vqtime_round_by_prec, vqtime_reset)},
    {CAST(bcast_precise_time_tz_to_time_tz), BCAST_TIME_TZ, BCAST_TIME_TZ, captures, behind,
     calls(vqtime_round_by_prec)},
    {CAST(bcast_precise_time_tz_to_tltz), BCAST_TIME_TZ, tltz, captures, behind,
     calls(vqtime_get_tz, vqtime_add_by_fmt, vqtime_round_by_prec)},
    {CAST(bcast_precise_datetime_to_datetime), BCAST_DATETIME, BCAST_DATETIME, captures, behind,
     calls(vqtime_round_by_prec, vqtime_reset)},
    {CAST(bcast_precise_datetime_to_datetime_tz), BCAST_DATETIME, BCAST_DATETIME_TZ, captures, behind,
     calls(vqtime_round_by_prec, vqtime_set_tz, vqtime_reset)},
    {CAST(bcast_precise_datetime_to_time), BCAST_DATETIME, BCAST_TIME, captures, behind,
     calls(vqtime_round_by_prec, vqtime_reset)},
    {CAST(bcast_precise_datetime_to_time_tz), BCAST_DATETIME, BCAST_TIME_TZ, captures, behind,
     calls(vqtime_round_by_prec, vqtime_set_tz, vqtime_reset)},
    {CAST(bcast_precise_datetime_tz_to_datetime), BCAST_DATETIME_TZ, BCAST_DATETIME, captures, behind,
     calls(vqtime_round_by_prec, vqtime_reset)},
    {CAST(bcast_precise_datetime_tz_to_datetime_tz), BCAST_DATETIME_TZ, BCAST_DATETIME_TZ, captures, behind,
     calls(vqtime_round_by_prec)},
    {CAST(bcast_precise_datetime_tz_to_time), BCAST_DATETIME_TZ, BCAST_TIME, captures, behind,
     calls(vqtime_round_by_prec, vqtime_reset)},
    {CAST(bcast_precise_datetime_tz_to_tltz), BCAST_DATETIME_TZ, tltz, captures, behind,
     calls(vqtime_get_tz, vqtime_add_by_fmt, vqtime_round_by_prec)},
    {CAST(bcast_precise_dtz_to_dt_inner), BCAST_DATETIME_TZ, BCAST_DATETIME, captures, behind,
     calls(vqtime_round_by_prec, vqtime_reset)},
    {CAST(bcast_precise_dt_to_tz_inner), BCAST_DATETIME, BCAST_DATETIME_TZ, captures, behind,
     calls(vqtime_round_by_prec, vqtime_set_tz, vqtime_reset)},
    {CAST(bcast_precise_dtz_to_tltz_inner), BCAST_DATETIME_TZ, tltz, captures, behind,
     calls(vqtime_get_tz, vqtime_add_by_fmt, vqtime_round_by_prec)},
    {CAST(bcast_precise_dtz_to_tz_inner), BCAST_DATETIME_TZ, BCAST_DATETIME_TZ, captures, behind,
     calls(vqtime_round_by_prec)},

    // Temporal values to text
    {CAST(bcast_date_to_text), BCAST_DATE, BCAST_TEXT, stops, ahead,
     calls(vqdt_date_encode_fast, vq_date_to_char, nblob_assign_const, bdta3_col_assign_bin, nstr_clear)},
    {CAST(bcast_time_to_text), BCAST_TIME, BCAST_TEXT, stops, ahead,
     calls(vqdt_time_encode_fast, vq_time_to_char, nblob_assign_const, bdta3_col_assign_bin, nstr_clear)},
    {CAST(bcast_time_tz_to_text), BCAST_TIME_TZ, BCAST_TEXT, stops, ahead,
     calls(vqtime_tz_to_char, nblob_assign_const, bdta3_col_assign_bin, nstr_clear)},
    {CAST(bcast_datetime_to_text), BCAST_DATETIME, BCAST_TEXT, stops, ahead,
     calls(vqdt_encode_fast, vqdt_to_char, nblob_assign_const, bdta3_col_assign_bin, nstr_clear)},
    {CAST(bcast_datetime_tz_to_text), BCAST_DATETIME_TZ, BCAST_TEXT, stops, ahead,
     calls(vqtime_tz_to_char, nblob_assign_const, bdta3_col_assign_bin, nstr_clear)},
    {CAST(bcast_datetime_to_varchar_ex), BCAST_DATETIME, BCAST_VARCHAR, stops, ahead,
     calls(vqdt_encode_fast, vqdt_to_char, bdta3_col_assign_str)},

    // To intervals
    {CAST(bcast_tinyint_to_ivym), BCAST_TINYINT, BCAST_IVYM, "bcast_int_to_ivym"},
    {CAST(bcast_tinyint_to_ivdt), BCAST_TINYINT, BCAST_IVDT, "bcast_int_to_ivdt"},
    {CAST(bcast_smallint_to_ivym), BCAST_SMALLINT, BCAST_IVYM, "bcast_int_to_ivym"},
    {CAST(bcast_smallint_to_ivdt), BCAST_SMALLINT, BCAST_IVDT, "bcast_int_to_ivdt"},
    {CAST(bcast_int_to_ivym), BCAST_INT, BCAST_IVYM, stops, behind,
     calls(vqdt_clear_interval_ym_info, interval_ym_validate)},
    {CAST(bcast_int_to_ivdt), BCAST_INT, BCAST_IVDT, stops, behind,
     calls(vqdt_clear_interval_dt_info, interval_dt_validate)},
    {CAST(bcast_int64_to_ivym), BCAST_INT64, BCAST_IVYM, stops, behind,
     calls(ntype_is_lint_overflow, vqdt_clear_interval_ym_info, interval_ym_validate)},
    {CAST(bcast_int64_to_ivdt), BCAST_INT64, BCAST_IVDT, stops, behind,
     calls(ntype_is_lint_overflow, vqdt_clear_interval_dt_info, interval_dt_validate)},
    {CAST(bcast_dec_to_ivym), BCAST_DEC, BCAST_IVYM, stops, behind,
     calls(xdec_get_int64, ntype_is_lint_overflow, vqdt_clear_interval_ym_info, interval_ym_validate)},
    {CAST(bcast_dec_to_ivdt), BCAST_DEC, BCAST_IVDT, stops, behind,
     calls(xdec_get_double, xdec_get_int64, ntype_is_lint_overflow, vqdt_clear_interval_dt_info, interval_dt_validate)},
    {CAST(bcast_char_to_ivym), BCAST_CHAR, BCAST_IVYM, captures, or_zero, calls(vq_interval_ym_from_char),
     interval_text},
    {CAST(bcast_char_to_ivdt), BCAST_CHAR, BCAST_IVDT, captures, or_zero, calls(vq_interval_dt_from_char),
     interval_text},
    {CAST(bcast_varchar_to_ivym), BCAST_VARCHAR, BCAST_IVYM, "bcast_char_to_ivym"},
    {CAST(bcast_varchar_to_ivdt), BCAST_VARCHAR, BCAST_IVDT, "bcast_char_to_ivdt"},
    {CAST(bcast_varchar2_to_ivym), BCAST_VARCHAR2, BCAST_IVYM, "bcast_char_to_ivym"},
    {CAST(bcast_varchar2_to_ivdt), BCAST_VARCHAR2, BCAST_IVDT, "bcast_char_to_ivdt"},
    {CAST(bcast_iv_ym_to_ym), BCAST_IVYM, BCAST_IVYM, stops, behind, calls(cast_interval_ym)},
    {CAST(bcast_iv_dt_to_dt), BCAST_IVDT, BCAST_IVDT, stops, behind, calls(cast_interval_dt)},

    // Intervals to characters
    {CAST(bcast_iv_ym_to_char), BCAST_IVYM, BCAST_CHAR, stops, ahead,
     calls(vq_interval_ym_to_char, bdta3_col_assign_str)},
    {CAST(bcast_iv_ym_to_varchar), BCAST_IVYM, BCAST_VARCHAR, stops, ahead,
     calls(vq_interval_ym_to_char, bdta3_col_assign_str)},
    {CAST(bcast_iv_ym_to_varchar2), BCAST_IVYM, BCAST_VARCHAR2, "bcast_iv_ym_to_char"},
    {CAST(bcast_iv_dt_to_char), BCAST_IVDT, BCAST_CHAR, stops, ahead,
     calls(vq_interval_dt_to_char, bdta3_col_assign_str)},
    {CAST(bcast_iv_dt_to_varchar), BCAST_IVDT, BCAST_VARCHAR, stops, ahead,
     calls(vq_interval_dt_to_char, bdta3_col_assign_str)},
    {CAST(bcast_iv_dt_to_varchar2), BCAST_IVDT, BCAST_VARCHAR2, "bcast_iv_dt_to_char"},

    // Intervals to numbers do not exist
    {CAST(bcast_iv_ym_to_tinyint), BCAST_IVYM, BCAST_TINYINT, absent, kept},
    {CAST(bcast_iv_ym_to_smallint), BCAST_IVYM, BCAST_SMALLINT, absent, kept},
    {CAST(bcast_iv_ym_to_int), BCAST_IVYM, BCAST_INT, absent, kept},
    {CAST(bcast_iv_ym_to_int64), BCAST_IVYM, BCAST_INT64, absent, kept},
    {CAST(bcast_iv_ym_to_dec), BCAST_IVYM, BCAST_DEC, absent, kept},
    {CAST(bcast_iv_dt_to_tinyint), BCAST_IVDT, BCAST_TINYINT, absent, kept},
    {CAST(bcast_iv_dt_to_smallint), BCAST_IVDT, BCAST_SMALLINT, absent, kept},
    {CAST(bcast_iv_dt_to_int), BCAST_IVDT, BCAST_INT, absent, kept},
    {CAST(bcast_iv_dt_to_int64), BCAST_IVDT, BCAST_INT64, absent, kept},
    {CAST(bcast_iv_dt_to_dec), BCAST_IVDT, BCAST_DEC, absent, kept},
});

#undef CAST

consteval auto with_aliases_resolved()
{
    std::array<cast, entries.size()> all{};
    for (size_t k = 0; k < entries.size(); k++) {
        const entry &own = entries[k];
        const entry *body = &own;
        if (!own.alias_of.empty()) {
            body = std::find_if(entries.begin(), entries.end(), [&](const entry &e) { return e.name == own.alias_of; });
            if (body == entries.end() || !body->alias_of.empty() || body->arguments != own.arguments)
                throw "an alias leads to no cast of its own argument list";
        }
        all[k] = {.name = own.name,
                  .from = own.from.name,
                  .to = own.to.name,
                  .source = own.from.element,
                  .target = own.to.element,
                  .to_local_zone = own.to.local_zone,
                  .form = body->form,
                  .arguments = own.arguments,
                  .protocol = body->protocol,
                  .no_null = body->no_null,
                  .limit = body->limit,
                  .services = {body->services.names.data(), body->services.count},
                  .alias_of = own.alias_of};
    }
    return all;
}

constexpr auto all_casts = with_aliases_resolved();

constexpr bool takes_err_codes(pattern arguments)
{
    switch (arguments) {
    case pattern::capture:
    case pattern::length_capture:
    case pattern::date_fast:
    case pattern::tltz_fast:
    case pattern::tltz:
    case pattern::scaled_capture:
    case pattern::precise:
    case pattern::precise_typed:
        return true;
    default:
        return false;
    }
}
static_assert(std::ranges::all_of(all_casts, [](const cast &c) {
    return takes_err_codes(c.arguments) == (c.protocol == captures);
}));

constexpr auto others = std::to_array<std::string_view>({
    "bcast_dll_var_init",
    "bin_from_int_low",
    "bcast_varbinary_is_zero",
    "bcast_varbinary_is_zero2",
});

} // namespace

std::span<const cast> casts() { return all_casts; }

const cast *find(std::string_view name)
{
    const auto found = std::ranges::find(all_casts, name, &cast::name);
    return found == all_casts.end() ? nullptr : &*found;
}

const cast *find(std::string_view from, std::string_view to, form wanted)
{
    const auto found = std::ranges::find_if(
        all_casts, [&](const cast &c) { return c.from == from && c.to == to && c.form == wanted; });
    return found == all_casts.end() ? nullptr : &*found;
}

std::span<const std::string_view> other_functions() { return others; }

} // namespace bcast::catalogue
