#include "tests/support/batch.h"

#include "tests/support/call.h"
#include "tests/support/service_double.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <sstream>

namespace bcast::test {

namespace {

constexpr uint32_t most_column_rows = 65536;

// Rows outside the batch: present, out of every narrow range, and with a text that may not be read.
constexpr unsigned char unselected_byte = 0x7E;
constexpr uint8_t unselected_flag = 0xFF;

uint32_t column_rows_for(selection selected, uint32_t batch_rows)
{
    return selected == selection::scattered ? std::min(2 * batch_rows + 7, most_column_rows) : batch_rows;
}

std::vector<uint16_t> selection_vector(selection selected, uint32_t batch_rows)
{
    if (selected == selection::none)
        return {};
    std::vector<uint16_t> sel(column_rows_for(selected, batch_rows));
    std::iota(sel.begin(), sel.end(), uint16_t{0});
    if (selected == selection::reversed)
        std::reverse(sel.begin(), sel.end());
    else
        std::shuffle(sel.begin(), sel.end(), std::mt19937(batch_rows));
    sel.resize(batch_rows);
    return sel;
}

unsigned char pattern_byte(size_t k) { return static_cast<unsigned char>(0x51 + 37 * k + (k >> 8)); }

std::string hex(const unsigned char *bytes, size_t count)
{
    std::ostringstream out;
    for (size_t k = 0; k < count; k++)
        out << (k > 0 ? " " : "") << std::hex << (bytes[k] >> 4) << (bytes[k] & 0xF);
    return out.str();
}

template <class Record> std::vector<unsigned char> bytes_of(const Record &record)
{
    const auto *first = reinterpret_cast<const unsigned char *>(&record);
    return {first, first + sizeof record};
}

} // namespace

std::string describe(const setup &s)
{
    const char *sel = s.selected == selection::none       ? "no sel"
                      : s.selected == selection::reversed ? "reversed sel"
                                                          : "scattered sel";
    return std::string(sel) + ", source no_null " + std::to_string(s.no_null) + " over " +
           std::to_string(s.no_null_before) + (s.edge == guard_edge::end ? ", arrays end" : ", arrays start") +
           " at an inaccessible page";
}

const std::vector<setup> &all_setups()
{
    static const std::vector<setup> setups = [] {
        std::vector<setup> all;
        for (const selection selected : {selection::none, selection::reversed, selection::scattered})
            for (const int32_t no_null : {0, 1, 0x10000, -1})
                all.push_back({.selected = selected,
                               .no_null = no_null,
                               .edge = all.size() % 3 == 0 ? guard_edge::start : guard_edge::end,
                               .no_null_before = all.size() % 2 == 0 ? untouched_no_null : 0});
        return all;
    }();
    return setups;
}

const std::vector<setup> &few_setups()
{
    static const std::vector<setup> setups{{selection::none, 0, guard_edge::end},
                                           {selection::none, 0x10000, guard_edge::start},
                                           {selection::reversed, 1, guard_edge::end, 0},
                                           {selection::scattered, 0, guard_edge::end}};
    return setups;
}

column_records::column_records(guard_edge edge) : column_(1, edge), data_(1, edge) { column().data = &data(); }

void column_records::make_read_only()
{
    column_.make_read_only();
    data_.make_read_only();
}

source_column::source_column(size_t stride, uint32_t batch_rows, const setup &how)
    : source_column(stride, column_rows_for(how.selected, batch_rows), selection_vector(how.selected, batch_rows),
                    how.no_null, how.edge)
{
    // An empty batch leaves nothing to tell a selection from none by.
    if (how.selected != selection::none)
        records_.column().sel = sel_.data();
}

source_column::source_column(size_t stride, uint32_t column_rows, std::vector<uint16_t> sel, int32_t no_null,
                             guard_edge edge)
    : stride_(stride), sel_(std::span<const uint16_t>(sel), edge), flags_(column_rows, edge),
      values_(column_rows * stride, edge), records_(edge)
{
    std::ranges::fill(flags_, unselected_flag);
    std::ranges::fill(values_, unselected_byte);
    records_.data().copy_row = copy_row_of_source;
    records_.column().no_null = no_null;
    records_.column().sel = sel.empty() ? nullptr : sel_.data();
    records_.data().flags = flags_.data();
    records_.data().values = values_.data();
}

void source_column::hide_flags() { records_.data().flags = static_cast<uint8_t *>(inaccessible()); }

void source_column::hide_values() { records_.data().values = inaccessible(); }

const bdta3_col *source_column::sealed()
{
    sel_.make_read_only();
    flags_.make_read_only();
    values_.make_read_only();
    records_.make_read_only();
    return &records_.column();
}

uint8_t untouched_flag(uint32_t row) { return static_cast<uint8_t>(0xC0 + row % 61); }

target_column::target_column(size_t stride, uint32_t rows, guard_edge edge)
    : stride_(stride), flags_(rows, edge), values_(rows * stride, edge), records_(edge)
{
    for (uint32_t row = 0; row < rows; row++)
        flags_[row] = untouched_flag(row);
    for (size_t k = 0; k < values_.size(); k++)
        values_[k] = pattern_byte(k);
    records_.column().no_null = untouched_no_null;
    records_.column().sel = static_cast<const uint16_t *>(inaccessible()); // nothing that a cast may look at
    records_.data().copy_row = copy_row_of_target;
    records_.data().flags = flags_.data();
    records_.data().values = values_.data();
    data_before_ = bytes_of(records_.data());
}

target_column::target_column(size_t stride, uint32_t rows, const setup &how) : target_column(stride, rows, how.edge)
{
    records_.column().no_null = how.no_null_before;
}

target_image target_column::image() const
{
    return {.no_null = records_.column().no_null,
            .flags = {flags_.begin(), flags_.end()},
            .values = {values_.begin(), values_.end()},
            .texts = {},
            .stride = stride_};
}

testing::AssertionResult target_column::holds(const target_image &expected) const
{
    const bdta3_col &column = records_.column();
    const auto is_fill = [](char byte) { return static_cast<unsigned char>(byte) == guard_fill; };
    if (!std::ranges::all_of(column.owner_4, is_fill) || column.sel != inaccessible() ||
        column.data != &records_.data())
        return testing::AssertionFailure() << "the target's record was written beside no_null: "
                                           << hex(reinterpret_cast<const unsigned char *>(&column), sizeof column);
    if (bytes_of(records_.data()) != data_before_)
        return testing::AssertionFailure() << "the target's storage record was written: "
                                           << hex(bytes_of(records_.data()).data(), sizeof(bdta3_col_data));
    if (!flags_.slack_untouched() || !values_.slack_untouched())
        return testing::AssertionFailure()
               << "bytes beside the target's " << expected.flags.size() << " rows were written";
    if (column.no_null != expected.no_null)
        return testing::AssertionFailure() << "no_null is " << column.no_null << ", not " << expected.no_null
                                           << (column.no_null == untouched_no_null ? " (it was not written)" : "");
    for (uint32_t row = 0; row < flags_.size(); row++) {
        if (flags_[row] != expected.flags[row])
            return testing::AssertionFailure()
                   << "row " << row << " of " << flags_.size() << ": flag is " << int{flags_[row]} << ", not "
                   << int{expected.flags[row]} << (flags_[row] == untouched_flag(row) ? " (it was not written)" : "")
                   << (expected.flags[row] == untouched_flag(row) ? " (it was to stay)" : "");
        const unsigned char *element = values_.data() + row * stride_;
        if (const auto text = expected.texts.find(row); text != expected.texts.end()) {
            bdta3_str held;
            std::memcpy(&held, element, sizeof held);
            const auto &[bytes, pad_len] = text->second;
            if (held.length == static_cast<int32_t>(bytes.size()))
                if (const auto stored = services().handed_out(held.text, bytes.size()); !stored)
                    return testing::AssertionFailure() << "row " << row << ": " << stored.message();
            if (held.length != static_cast<int32_t>(bytes.size()) || held.pad_len != pad_len ||
                (!bytes.empty() && std::memcmp(held.text, bytes.data(), bytes.size()) != 0))
                return testing::AssertionFailure()
                       << "row " << row << ": element has length " << held.length << " and pad_len " << held.pad_len
                       << ", not \"" << bytes << "\", length " << bytes.size() << " and pad_len " << pad_len;
            continue;
        }
        const unsigned char *right = expected.values.data() + row * stride_;
        if (stride_ > 0 && std::memcmp(element, right, stride_) != 0) {
            size_t byte = 0;
            while (element[byte] == right[byte])
                byte++;
            const bool stays = right[byte] == pattern_byte(row * stride_ + byte);
            return testing::AssertionFailure()
                   << "row " << row << " of " << flags_.size() << ": element differs from byte " << byte << " on: is "
                   << hex(element, stride_) << ", not " << hex(right, stride_)
                   << (stays ? " (which it held before the call)" : "");
        }
    }
    return testing::AssertionSuccess();
}

namespace {

int32_t unwritten_code(size_t row) { return static_cast<int32_t>(0x40000000 + row); }

} // namespace

failure_record::failure_record(uint32_t rows, uint16_t count_before)
    : codes_(rows), count_(1), count_before_(count_before)
{
    for (size_t row = 0; row < rows; row++)
        codes_[row] = unwritten_code(row);
    count_[0] = count_before;
}

testing::AssertionResult failure_record::hold(const std::map<uint32_t, int32_t> &expected, bool counted) const
{
    for (uint32_t row = 0; row < codes_.size(); row++) {
        const auto failure = expected.find(row);
        if (failure == expected.end() && codes_[row] != unwritten_code(row))
            return testing::AssertionFailure()
                   << "err_codes[" << row << "] is " << codes_[row] << " although that row did not fail";
        if (failure != expected.end() && codes_[row] != failure->second)
            return testing::AssertionFailure()
                   << "err_codes[" << row << "] is "
                   << (codes_[row] == unwritten_code(row) ? "not written" : std::to_string(codes_[row])) << ", not "
                   << failure->second;
    }
    const auto count = static_cast<uint16_t>(count_before_ + (counted ? expected.size() : 0));
    if (count_[0] != count)
        return testing::AssertionFailure()
               << "*err_count went from " << count_before_ << " to " << count_[0] << ", not to " << count;
    return testing::AssertionSuccess();
}

} // namespace bcast::test
