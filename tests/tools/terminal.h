// A terminal for runs of the tool: what it was sent, and what one would see on it in the end.
#pragma once

#include <string>
#include <string_view>
#include <thread>

namespace bcast::test {

class terminal {
public:
    terminal();
    ~terminal();
    terminal(const terminal &) = delete;
    terminal &operator=(const terminal &) = delete;

    int descriptor() const { return program_side_; } // for a standard stream of the program

    // Everything that was sent, once all programs on it have ended.
    std::string received();

private:
    int program_side_;
    int our_side_;
    std::string received_;
    std::thread reader_;
};

// The lines that stand on the screen in the end: CR, LF and the sequence that erases the rest of a line are obeyed.
std::string screen_after(std::string_view sent);

} // namespace bcast::test
