#include "terminal.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace bcast::test {

namespace {

int checked(int result, const char *what)
{
    if (result < 0)
        throw std::system_error(errno, std::generic_category(), what);
    return result;
}

} // namespace

terminal::terminal() : our_side_(checked(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC), "posix_openpt"))
{
    checked(grantpt(our_side_), "grantpt");
    checked(unlockpt(our_side_), "unlockpt");
    program_side_ = checked(open(ptsname(our_side_), O_RDWR | O_NOCTTY | O_CLOEXEC), "terminal");
    reader_ = std::thread([this] {
        std::array<char, 4096> buffer;
        for (;;) {
            const ssize_t got = read(our_side_, buffer.data(), buffer.size());
            if (got > 0)
                received_.append(buffer.data(), std::size_t(got));
            else if (got == 0 || errno != EINTR) // EIO: nobody has the other side open any more
                return;
        }
    });
}

terminal::~terminal()
{
    received();
    close(our_side_);
}

std::string terminal::received()
{
    if (reader_.joinable()) {
        close(program_side_);
        reader_.join();
    }
    return received_;
}

std::string screen_after(std::string_view sent)
{
    static constexpr std::string_view erase_to_end_of_line = "\x1b[K";
    std::vector<std::string> lines(1);
    std::size_t column = 0;
    while (!sent.empty()) {
        std::string &line = lines.back();
        if (sent.starts_with(erase_to_end_of_line)) {
            line.resize(column);
            sent.remove_prefix(erase_to_end_of_line.size());
            continue;
        }
        if (sent[0] == '\r') {
            column = 0;
        } else if (sent[0] == '\n') {
            lines.emplace_back(column, ' '); // the column stays, as on a terminal
        } else {
            line.resize(std::max(line.size(), column + 1), ' ');
            line[column++] = sent[0];
        }
        sent.remove_prefix(1);
    }
    std::string screen;
    for (std::size_t k = 0; k < lines.size(); k++)
        screen += lines[k] + (k + 1 < lines.size() ? "\n" : "");
    return screen;
}

} // namespace bcast::test
