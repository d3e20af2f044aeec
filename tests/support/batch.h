// Columns for tests of casts. Records and arrays stand beside inaccessible pages; a source cannot be written; of a
// target every byte is compared, those that must stay included.
#pragma once

#include "tests/support/guarded.h"

#include <bcast/column.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bcast::test {

// The bytes of an element.
template <class T> std::string image_of(const T &element)
{
    return {reinterpret_cast<const char *>(&element), sizeof element};
}

// How the rows of a batch lie in their column.
enum class selection {
    none,      // no sel: row i is column row i
    reversed,  // sel counts down
    scattered, // sel jumps about in a column of twice as many rows
};

// A target flag and a target no_null that no cast has written.
uint8_t untouched_flag(uint32_t row);
inline constexpr int32_t untouched_no_null = 0x5A5A5A5A;

// What every cast has to do alike under.
struct setup {
    selection selected;
    int32_t no_null;                            // the source's
    guard_edge edge;                            // of all arrays
    int32_t no_null_before = untouched_no_null; // the target's
};

std::string describe(const setup &s);

// Selections, values of no_null (0, 1 and others that are no 1) over set and clear ones, and both edges.
const std::vector<setup> &all_setups();

// One setup for each kind of selection, with no_null clear or set.
const std::vector<setup> &few_setups();

// The record and the storage record of a column. What belongs to their owner is filled with guard_fill.
class column_records {
public:
    explicit column_records(guard_edge edge);
    bdta3_col &column() { return column_[0]; }
    const bdta3_col &column() const { return column_[0]; }
    bdta3_col_data &data() { return data_[0]; }
    const bdta3_col_data &data() const { return data_[0]; }
    void make_read_only();

private:
    guarded<bdta3_col> column_;
    guarded<bdta3_col_data> data_;
};

class source_column {
public:
    // Room for the rows of a batch. Column rows outside the batch are present and hold what no cast can convert.
    source_column(size_t stride, uint32_t batch_rows, const setup &how);

    // A column of column_rows rows, of which the batch takes those in sel.
    source_column(size_t stride, uint32_t column_rows, std::vector<uint16_t> sel, int32_t no_null,
                  guard_edge edge = guard_edge::end);

    // By row of the batch. element is what the cast will read in the row.
    template <class T> void set(uint32_t row, uint8_t flag, const T &element)
    {
        flags_[column_row(row)] = flag;
        std::memcpy(values_.data() + column_row(row) * stride_, &element, sizeof element);
    }
    void set_bytes(uint32_t row, uint8_t flag, std::string_view element)
    {
        flags_[column_row(row)] = flag;
        std::memcpy(values_.data() + column_row(row) * stride_, element.data(), element.size());
    }
    void set_flag(uint32_t row, uint8_t flag) { flags_[column_row(row)] = flag; }
    // By row of the column, which a cast that goes through sel does not count by.
    void set_column_flag(uint32_t column_row, uint8_t flag) { flags_[column_row] = flag; }
    uint8_t column_flag(uint32_t column_row) const { return flags_[column_row]; }
    uint8_t flag(uint32_t row) const { return flags_[column_row(row)]; }
    template <class T> T element(uint32_t row) const
    {
        T element;
        std::memcpy(&element, values_.data() + column_row(row) * stride_, sizeof element);
        return element;
    }
    std::string element_bytes(uint32_t row) const
    {
        return {reinterpret_cast<const char *>(values_.data()) + column_row(row) * stride_, stride_};
    }

    // From here on a cast that looks at a flag, or at an element, ends the test.
    void hide_flags();
    void hide_values();

    // The column as a cast gets it. From here on nothing in it can be written.
    const bdta3_col *sealed();
    const bdta3_col *column() const { return &records_.column(); }

private:
    size_t column_row(uint32_t row) const { return sel_.size() > 0 ? sel_[row] : row; }

    size_t stride_;
    guarded<uint16_t> sel_;
    guarded<uint8_t> flags_;
    guarded<unsigned char> values_;
    column_records records_;
};

// What a target is to hold: what it held before the call, and what the test says has changed.
struct target_image {
    struct text {
        std::string bytes;
        int32_t pad_len;
    };

    int32_t no_null;
    std::vector<uint8_t> flags;
    std::vector<unsigned char> values;
    std::map<uint32_t, text> texts; // elements that the services made
    size_t stride;

    template <class T> void put(uint32_t row, const T &element)
    {
        std::memcpy(values.data() + row * stride, &element, sizeof element);
    }
    void put_bytes(uint32_t row, std::string_view element)
    {
        std::memcpy(values.data() + row * stride, element.data(), element.size());
    }
};

class target_column {
public:
    // Flags and values are filled with a pattern that no cast writes, no_null as well if not otherwise set up.
    target_column(size_t stride, uint32_t rows, const setup &how);
    target_column(size_t stride, uint32_t rows, guard_edge edge = guard_edge::end);

    bdta3_col *column() { return &records_.column(); }
    const uint8_t *flags() const { return flags_.data(); }
    target_image image() const;

    // True if the target holds just that, and nothing beside flags, values and no_null was written.
    testing::AssertionResult holds(const target_image &expected) const;

private:
    size_t stride_;
    guarded<uint8_t> flags_;
    guarded<unsigned char> values_;
    column_records records_;
    std::vector<unsigned char> data_before_;
};

// err_codes and err_count of one call. The codes are filled with a pattern, for a cast may write those of rows that
// fail only.
class failure_record {
public:
    explicit failure_record(uint32_t rows, uint16_t count_before = 0);
    int32_t *codes() { return codes_.data(); }
    uint16_t *count() { return count_.data(); }

    // True if these rows, and no others, have these codes, and the counter has gone up by their number; or not, for a
    // call that was handed no counter.
    testing::AssertionResult hold(const std::map<uint32_t, int32_t> &expected, bool counted = true) const;

private:
    guarded<int32_t> codes_;
    guarded<uint16_t> count_;
    uint16_t count_before_;
};

} // namespace bcast::test
