// Runs of the built tool.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace bcast::test {

// A directory of its own for the files of one test.
class temporary_directory {
public:
    temporary_directory();
    ~temporary_directory();
    temporary_directory(const temporary_directory &) = delete;
    temporary_directory &operator=(const temporary_directory &) = delete;

    std::string path(std::string_view name) const { return (directory_ / name).string(); }
    std::string write(std::string_view name, std::string_view content) const; // returns the path

private:
    std::filesystem::path directory_;
};

std::string content_of(const std::string &path);

// What a standard stream of the tool is.
struct stream {
    enum class kind { collected, file, closed, descriptor } is = kind::collected;
    std::string path = {}; // of a file; for standard input that is not told otherwise, /dev/null
    int descriptor = -1;
};
stream collected_stream();
stream to_file(std::string path);
stream from_file(std::string path);
stream closed_stream();
stream descriptor_stream(int descriptor);

struct run_result {
    int exit_status = -1; // or -1: ended by a signal
    std::string how = {}; // the run ended, for messages
    std::string output = {};
    std::string errors = {};
    long peak_kib = 0; // of resident memory
};

struct run_streams {
    stream input = from_file("/dev/null");
    stream output = collected_stream();
    stream errors = collected_stream();
};

// Runs bcast with these arguments. One that has not ended after a few minutes is ended.
run_result run_bcast(const std::vector<std::string> &arguments, const run_streams &streams = {});

} // namespace bcast::test
