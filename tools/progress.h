// A progress bar on standard error.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace bcast::tool {

class progress {
public:
    // total: bytes of the input, 0 where that is not known. A bar that is not wanted never appears.
    progress(bool wanted, std::uint64_t total);
    ~progress() { hide(); }
    progress(const progress &) = delete;
    progress &operator=(const progress &) = delete;

    // Draws the bar if it is due: at once for a large input, else when the work has taken a second.
    void update(std::uint64_t bytes, std::uint64_t rows);

    // Erases the bar, so that something else can be written. It comes back when it is due again.
    void hide();

private:
    using clock = std::chrono::steady_clock;

    bool wanted_;
    std::uint64_t total_;
    clock::time_point start_;
    clock::time_point due_;
    bool visible_ = false;
};

// The line that shows so much done after so many seconds.
std::string progress_line(std::uint64_t bytes, std::uint64_t total, std::uint64_t rows, double seconds);

} // namespace bcast::tool
