// Comma-separated values as RFC 4180 has them, read from pieces of any size.
//
// Fields stand between commas, records end in LF or CR LF. A field in quotes may hold commas, line ends and, doubled,
// quotes. A CR that stands in front of no LF is data, and so is a quote inside a field that does not begin with one.
// The last record needs no line end. A byte order mark at the very beginning is skipped. Bytes are not looked at in any
// other way: what a field holds need not be UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace bcast::tool {

// Input that breaks the format, with the line that it is in.
struct csv_error : std::runtime_error {
    csv_error(std::uint64_t line, const std::string &what)
        : std::runtime_error("line " + std::to_string(line) + ": " + what)
    {}
};

class csv_reader {
public:
    enum class event {
        field,    // field_index() and text() tell which and what
        record,   // the end of a record of field_count() fields
        exhausted // feed() more, or call finish(); behind finish(): the end
    };

    // The longest field that text() hands out, in bytes.
    static constexpr std::size_t longest_field = std::size_t(16) << 20;

    // Hands over bytes, which stay the caller's and must stay where they are until next() says exhausted.
    void feed(std::string_view bytes);

    // No more bytes will come.
    void finish();

    event next();

    // By field: whether it is reported. Other fields are neither reported nor stored, however long they are. Until
    // this is called, all are reported.
    void keep_only(const std::vector<bool> &fields);

    // Whether an empty line is a record of one empty field. If not, as at the beginning, it is no record.
    void count_empty_lines(bool count) { empty_lines_count_ = count; }

    std::size_t field_index() const { return field_ - 1; }
    std::string_view text() const { return text_; } // until next() is called again
    std::size_t field_count() const { return field_; }
    std::uint64_t line() const { return record_line_; } // in which the record at hand begins, from 1 on

private:
    enum class place { field_start, unquoted, quoted, behind_quote, behind_quote_and_cr };

    void skip_mark();
    bool more_bytes();
    bool read_field();
    bool read_unquoted();
    bool read_quoted();
    void end_field(std::string_view text);
    bool kept() const { return keeps_all_ || (field_ < kept_.size() && kept_[field_] != 0); }
    void store(std::string_view piece);
    std::string_view joined(std::string_view piece);
    void check_length(std::size_t length) const;

    const char *at_ = nullptr; // the bytes not yet read
    const char *end_ = nullptr;
    bool finished_ = false;
    bool past_mark_ = false;
    std::size_t mark_bytes_ = 0; // bytes of a mark that the input begins with

    bool keeps_all_ = true;
    std::vector<std::uint8_t> kept_;
    bool empty_lines_count_ = false;

    place place_ = place::field_start;
    bool record_begins_ = true;
    bool record_ends_ = false; // with the field that was read last
    std::size_t field_ = 0;    // fields of the record that have been read
    std::uint64_t line_ = 1;
    std::uint64_t record_line_ = 1;
    std::uint64_t field_line_ = 1;
    bool quoted_ = false; // the field at hand
    std::string stored_;  // of the field at hand: what is no longer among the bytes
    std::string_view text_;
};

} // namespace bcast::tool
