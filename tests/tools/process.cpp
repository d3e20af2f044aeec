#include "process.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bcast::test {

namespace {

constexpr unsigned seconds_to_end = 240;

[[noreturn]] void fail(const std::string &what) { throw std::system_error(errno, std::generic_category(), what); }

// The descriptor that a stream leads to, or -1 for a closed one.
int open_stream(const stream &s, int flags)
{
    int descriptor = -1;
    switch (s.is) {
    case stream::kind::closed:
        return -1;
    case stream::kind::collected:
        descriptor = memfd_create("collected", MFD_CLOEXEC);
        break;
    case stream::kind::file:
        descriptor = open(s.path.c_str(), flags | O_CLOEXEC, 0666);
        break;
    case stream::kind::descriptor:
        descriptor = fcntl(s.descriptor, F_DUPFD_CLOEXEC, 3);
        break;
    }
    if (descriptor < 0)
        fail("stream " + s.path);
    return descriptor;
}

std::string collected(int descriptor)
{
    std::string text;
    std::array<char, 65536> buffer;
    for (off_t at = 0;;) {
        const ssize_t got = pread(descriptor, buffer.data(), buffer.size(), at);
        if (got < 0)
            fail("reading what bcast wrote");
        if (got == 0)
            return text;
        text.append(buffer.data(), std::size_t(got));
        at += got;
    }
}

[[noreturn]] void become_bcast(const std::vector<std::string> &arguments, const std::array<int, 3> &streams)
{
    for (int number = 0; number < 3; number++) {
        if (streams[std::size_t(number)] >= 0)
            dup2(streams[std::size_t(number)], number);
        else
            close(number);
    }
    std::vector<char *> argv = {const_cast<char *>(BCAST_TOOL_FILE)};
    for (const std::string &argument : arguments)
        argv.push_back(const_cast<char *>(argument.c_str()));
    argv.push_back(nullptr);
    alarm(seconds_to_end);
    execv(BCAST_TOOL_FILE, argv.data());
    _exit(127);
}

} // namespace

temporary_directory::temporary_directory()
{
    std::string name = (std::filesystem::temp_directory_path() / "bcast_tool_test_XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        fail(name);
    directory_ = name;
}

temporary_directory::~temporary_directory()
{
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

std::string temporary_directory::write(std::string_view name, std::string_view content) const
{
    std::ofstream file(path(name), std::ios::binary);
    file << content;
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + path(name));
    return path(name);
}

std::string content_of(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot open " + path);
    return {std::istreambuf_iterator<char>(file), {}};
}

stream collected_stream() { return {}; }
stream to_file(std::string path) { return {stream::kind::file, std::move(path)}; }
stream from_file(std::string path) { return {stream::kind::file, std::move(path)}; }
stream closed_stream() { return {stream::kind::closed}; }
stream descriptor_stream(int descriptor) { return {stream::kind::descriptor, {}, descriptor}; }

run_result run_bcast(const std::vector<std::string> &arguments, const run_streams &streams)
{
    const std::array<int, 3> descriptors = {open_stream(streams.input, O_RDONLY),
                                            open_stream(streams.output, O_WRONLY | O_CREAT | O_TRUNC),
                                            open_stream(streams.errors, O_WRONLY | O_CREAT | O_TRUNC)};
    const pid_t child = fork();
    if (child < 0)
        fail("fork");
    if (child == 0)
        become_bcast(arguments, descriptors);

    int status = 0;
    struct rusage usage;
    while (wait4(child, &status, 0, &usage) < 0)
        if (errno != EINTR)
            fail("wait4");

    run_result result;
    result.peak_kib = usage.ru_maxrss;
    if (WIFEXITED(status))
        result.exit_status = WEXITSTATUS(status);
    result.how = WIFEXITED(status) ? "exit status " + std::to_string(WEXITSTATUS(status))
                                   : "signal " + std::to_string(WTERMSIG(status));
    if (streams.output.is == stream::kind::collected)
        result.output = collected(descriptors[1]);
    if (streams.errors.is == stream::kind::collected)
        result.errors = collected(descriptors[2]);
    for (const int descriptor : descriptors)
        if (descriptor >= 0)
            close(descriptor);
    return result;
}

} // namespace bcast::test
