#include "files.h"

#include "errors.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <optional>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace bcast::tool {

namespace {

constexpr std::size_t buffer_size = std::size_t(256) << 10;

[[noreturn]] void fail(const char *what, const std::string &name)
{
    const int error = errno;
    throw tool_error(std::string(what) + " " + name + ": " + std::generic_category().message(error));
}

std::string shown(const std::string &path, int standard_descriptor)
{
    if (path != "-")
        return in_quotes(path);
    return standard_descriptor == STDIN_FILENO    ? "standard input"
           : standard_descriptor == STDOUT_FILENO ? "standard output"
                                                  : "standard error";
}

std::optional<struct stat> regular_file(int descriptor)
{
    struct stat status;
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return status;
}

} // namespace

void prepare_standard_streams()
{
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF)
            // Opened the wrong way round, so that reads and writes fail as they would on the closed stream.
            (void)!open("/dev/null", (descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY) | O_CLOEXEC);
    }
    std::signal(SIGPIPE, SIG_IGN);
}

input_file::input_file(const std::string &path)
    : name_(shown(path, STDIN_FILENO)),
      descriptor_(path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC))
{
    if (descriptor_ < 0)
        fail("cannot open", name_);
}

input_file::~input_file()
{
    if (descriptor_ != STDIN_FILENO)
        ::close(descriptor_);
}

std::size_t input_file::read(std::span<char> buffer)
{
    for (;;) {
        const ssize_t got = ::read(descriptor_, buffer.data(), buffer.size());
        if (got >= 0)
            return std::size_t(got);
        if (errno != EINTR)
            fail("cannot read", name_);
    }
}

std::uint64_t input_file::size() const
{
    const auto status = regular_file(descriptor_);
    return status ? std::uint64_t(status->st_size) : 0;
}

output_file::output_file(int standard_descriptor) : output_file("-", standard_descriptor, {}) {}

output_file::output_file(const std::string &path, int standard_descriptor, std::span<const int> in_use)
    : name_(shown(path, standard_descriptor)),
      descriptor_(path == "-" ? standard_descriptor : open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666))
{
    if (descriptor_ < 0)
        fail("cannot open", name_);
    const auto own = regular_file(descriptor_);
    for (const int other : in_use) {
        const auto used = regular_file(other);
        if (own && used && own->st_dev == used->st_dev && own->st_ino == used->st_ino)
            throw tool_error(name_ + " is a file that this command reads or writes already");
    }
    buffer_.reserve(buffer_size);
}

void output_file::empty()
{
    if (descriptor_ > STDERR_FILENO && regular_file(descriptor_) && ftruncate(descriptor_, 0) != 0)
        fail("cannot empty", name_);
}

output_file::~output_file()
{
    if (descriptor_ > STDERR_FILENO)
        ::close(descriptor_);
}

void output_file::make_room(std::string_view bytes)
{
    flush();
    if (bytes.size() > buffer_.capacity())
        buffer_.reserve(bytes.size());
}

void output_file::flush()
{
    std::string_view left = buffer_;
    while (!left.empty()) {
        const ssize_t written = ::write(descriptor_, left.data(), left.size());
        if (written >= 0)
            left.remove_prefix(std::size_t(written));
        else if (errno != EINTR)
            fail("cannot write", name_);
    }
    buffer_.clear();
}

void output_file::close()
{
    flush();
    // Some file systems report a full disk only here.
    if (::close(std::exchange(descriptor_, -1)) != 0)
        fail("cannot write", name_);
}

bool output_file::is_terminal() const { return isatty(descriptor_) == 1; }

void write_csv_field(output_file &file, std::string_view text)
{
    const auto needs_quotes = [](char c) { return c == ',' || c == '"' || c == '\r' || c == '\n'; };
    if (std::ranges::none_of(text, needs_quotes)) {
        file.write(text);
        return;
    }
    file.write("\"");
    for (std::size_t quote; (quote = text.find('"')) != std::string_view::npos; text.remove_prefix(quote + 1)) {
        file.write(text.substr(0, quote + 1));
        file.write("\"");
    }
    file.write(text);
    file.write("\"");
}

} // namespace bcast::tool
