// Files and standard streams, read and written with every error noticed. An error is a tool_error that names the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace bcast::tool {

// Keeps the numbers of standard streams that are closed from being given to files, and lets writes to a closed pipe
// fail rather than end the process. At the start of the program.
void prepare_standard_streams();

class input_file {
public:
    explicit input_file(const std::string &path); // "-": standard input
    ~input_file();
    input_file(const input_file &) = delete;
    input_file &operator=(const input_file &) = delete;

    // Fills the buffer as far as one read goes; 0 at the end.
    std::size_t read(std::span<char> buffer);

    const std::string &name() const { return name_; } // for messages
    int descriptor() const { return descriptor_; }
    std::uint64_t size() const; // bytes, 0 where that is not known

private:
    std::string name_;
    int descriptor_;
};

class output_file {
public:
    // Opens path, which is to be no regular file among those in use; "-": the standard stream.
    output_file(const std::string &path, int standard_descriptor, std::span<const int> in_use);
    explicit output_file(int standard_descriptor);
    ~output_file(); // without close(): what is still buffered is lost
    output_file(const output_file &) = delete;
    output_file &operator=(const output_file &) = delete;

    void write(std::string_view bytes)
    {
        if (bytes.size() > buffer_.capacity() - buffer_.size())
            make_room(bytes);
        buffer_ += bytes;
    }
    void empty(); // takes away what an opened file held
    void flush();
    void close(); // flushes first

    int descriptor() const { return descriptor_; }
    bool is_terminal() const;

private:
    void make_room(std::string_view bytes);

    std::string name_;
    int descriptor_;
    std::string buffer_;
};

// A field of a record, in quotes where it has to be.
void write_csv_field(output_file &file, std::string_view text);

} // namespace bcast::tool
