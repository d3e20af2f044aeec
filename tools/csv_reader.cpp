#include "csv_reader.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace bcast::tool {

namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

// A set high bit in the first byte of word, lowest first, that is c; bytes behind it may have theirs set, too.
template <char c> std::uint64_t bytes_equal(std::uint64_t word)
{
    constexpr std::uint64_t ones = 0x0101010101010101;
    const std::uint64_t differing = word ^ (ones * std::uint64_t(c));
    return (differing - ones) & ~differing & (ones << 7);
}

// The first comma or line feed, or end.
const char *find_separator(const char *at, const char *end)
{
    static_assert(std::endian::native == std::endian::little);
    for (; end - at >= 8; at += 8) {
        std::uint64_t word;
        std::memcpy(&word, at, sizeof word);
        const std::uint64_t found = bytes_equal<','>(word) | bytes_equal<'\n'>(word);
        if (found != 0)
            return at + std::countr_zero(found) / 8;
    }
    return std::find_if(at, end, [](char c) { return c == ',' || c == '\n'; });
}

std::string_view between(const char *begin, const char *end) { return {begin, std::size_t(end - begin)}; }

} // namespace

void csv_reader::feed(std::string_view bytes)
{
    at_ = bytes.data();
    end_ = at_ + bytes.size();
    if (!past_mark_)
        skip_mark();
}

void csv_reader::finish()
{
    finished_ = true;
    if (!past_mark_)
        skip_mark();
}

void csv_reader::skip_mark()
{
    while (at_ != end_ && mark_bytes_ < byte_order_mark.size() && *at_ == byte_order_mark[mark_bytes_]) {
        ++at_;
        ++mark_bytes_;
    }
    past_mark_ = mark_bytes_ == byte_order_mark.size();
    if (past_mark_ || (at_ == end_ && !finished_))
        return;
    past_mark_ = true;
    if (mark_bytes_ > 0) { // no mark after all, but the beginning of the first field
        stored_ = byte_order_mark.substr(0, mark_bytes_);
        record_begins_ = false;
        place_ = place::unquoted;
    }
}

void csv_reader::keep_only(const std::vector<bool> &fields)
{
    keeps_all_ = false;
    kept_.assign(fields.begin(), fields.end());
}

csv_reader::event csv_reader::next()
{
    for (;;) {
        if (record_ends_) {
            record_ends_ = false;
            record_begins_ = true;
            return event::record;
        }
        if (at_ == end_ && !more_bytes())
            return event::exhausted;
        if (record_begins_) {
            record_begins_ = false;
            record_line_ = line_;
            field_ = 0;
        }
        if (!read_field())
            continue;
        if (record_ends_ && field_ == 0 && text_.empty() && !quoted_ && !empty_lines_count_) {
            record_ends_ = false;
            record_begins_ = true;
            continue;
        }
        const bool report = kept();
        ++field_;
        if (report)
            return event::field;
    }
}

// When the bytes are used up: true if there are some yet.
bool csv_reader::more_bytes()
{
    static constexpr char line_end = '\n';
    if (!finished_)
        return false;
    if (place_ == place::quoted)
        throw csv_error(field_line_, "the input ends inside the quoted field that begins in this line");
    if (record_begins_)
        return false;
    at_ = &line_end; // the one that the last record lacks
    end_ = at_ + 1;
    return true;
}

// True with text_ and record_ends_ set, or false when the bytes were used up first.
bool csv_reader::read_field()
{
    if (place_ == place::field_start) {
        stored_.clear();
        field_line_ = line_;
        quoted_ = *at_ == '"';
        at_ += quoted_ ? 1 : 0;
        place_ = quoted_ ? place::quoted : place::unquoted;
    }
    return quoted_ ? read_quoted() : read_unquoted();
}

bool csv_reader::read_unquoted()
{
    const std::string_view piece = between(at_, find_separator(at_, end_));
    at_ += piece.size();
    if (at_ == end_) {
        store(piece);
        return false;
    }
    std::string_view text = joined(piece);
    if (*at_ == '\n' && text.ends_with('\r'))
        text.remove_suffix(1);
    end_field(text);
    return true;
}

bool csv_reader::read_quoted()
{
    std::string_view piece; // what stands in front of the quote that was read last, if that is among the bytes
    while (at_ != end_) {
        if (place_ == place::quoted) {
            const void *quote = std::memchr(at_, '"', std::size_t(end_ - at_));
            piece = between(at_, quote != nullptr ? static_cast<const char *>(quote) : end_);
            line_ += std::uint64_t(std::ranges::count(piece, '\n'));
            at_ += piece.size();
            if (quote != nullptr) {
                ++at_;
                place_ = place::behind_quote;
            }
        } else if (*at_ == '"' && place_ == place::behind_quote) { // doubled: one quote of the text
            store(piece);
            store("\"");
            piece = {};
            ++at_;
            place_ = place::quoted;
        } else if (*at_ == '\r' && place_ == place::behind_quote) {
            ++at_;
            place_ = place::behind_quote_and_cr;
        } else if (*at_ == '\n' || (*at_ == ',' && place_ == place::behind_quote)) {
            end_field(joined(piece));
            return true;
        } else {
            throw csv_error(line_, "bytes behind the closing quote of field " + std::to_string(field_ + 1));
        }
    }
    store(piece);
    return false;
}

// at_ is at the separator behind the field.
void csv_reader::end_field(std::string_view text)
{
    text_ = text;
    record_ends_ = *at_ == '\n';
    line_ += record_ends_ ? 1 : 0;
    place_ = place::field_start;
    ++at_;
}

// Puts a piece of the field aside. Of a field that is not kept two bytes are enough: they tell an empty line.
void csv_reader::store(std::string_view piece)
{
    if (kept())
        check_length(stored_.size() + piece.size());
    else
        piece = piece.substr(0, 2 - std::min<std::size_t>(stored_.size(), 2));
    stored_ += piece;
}

// The whole field, of which piece is the last.
std::string_view csv_reader::joined(std::string_view piece)
{
    if (!stored_.empty()) {
        store(piece);
        return stored_;
    }
    if (kept())
        check_length(piece.size());
    return piece;
}

void csv_reader::check_length(std::size_t length) const
{
    if (length > longest_field)
        throw csv_error(field_line_, "field " + std::to_string(field_ + 1) +
                                         ", which begins in this line, is longer than " +
                                         std::to_string(longest_field) + " bytes");
}

} // namespace bcast::tool
