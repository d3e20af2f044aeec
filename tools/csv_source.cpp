#include "csv_source.h"

namespace bcast::tool {

namespace {

constexpr std::size_t read_size = std::size_t(256) << 10;
constexpr std::size_t most_header_fields = 65535;
constexpr std::size_t longest_header = std::size_t(16) << 20;

} // namespace

csv_source::csv_source(const std::string &path) : file_(path), buffer_(read_size) {}

std::vector<std::string> csv_source::read_header()
{
    std::vector<std::string> fields;
    std::size_t bytes = 0;
    for (;;) {
        switch (next()) {
        case csv_reader::event::field:
            fields.emplace_back(reader_.text());
            bytes += fields.back().size();
            if (fields.size() > most_header_fields || bytes > longest_header)
                throw input_error(file_.name() + ": line " + std::to_string(reader_.line()) +
                                  ": the header is longer than " + std::to_string(most_header_fields) + " fields or " +
                                  std::to_string(longest_header) + " bytes");
            break;
        case csv_reader::event::record:
            return fields;
        case csv_reader::event::exhausted:
            throw input_error(file_.name() + " is empty: there is no header line");
        }
    }
}

csv_reader::event csv_source::next()
{
    try {
        for (;;) {
            const csv_reader::event event = reader_.next();
            if (event != csv_reader::event::exhausted || ended_)
                return event;
            fill();
        }
    } catch (const csv_error &error) {
        throw input_error(file_.name() + ": " + error.what());
    }
}

void csv_source::fill()
{
    std::size_t got;
    try {
        got = file_.read(buffer_);
    } catch (const tool_error &error) {
        throw input_error(error.what());
    }
    bytes_ += got;
    ended_ = got == 0;
    if (ended_)
        reader_.finish();
    else
        reader_.feed({buffer_.data(), got});
}

} // namespace bcast::tool
