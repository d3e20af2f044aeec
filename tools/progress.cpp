#include "progress.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include <unistd.h>

namespace bcast::tool {

namespace {

constexpr std::uint64_t large_input = std::uint64_t(32) << 20;
constexpr std::chrono::milliseconds wait_for_small_input(1000);
constexpr std::chrono::milliseconds between_drawings(100);

// A bar that cannot be drawn is no loss.
void draw(std::string_view text)
{
    [[maybe_unused]] const ssize_t ignored = write(STDERR_FILENO, text.data(), text.size());
}

// 1234567 as 1.23 M: three digits are enough for a rate.
std::string rounded(double count)
{
    static constexpr const char *units[] = {"", " k", " M", " G"};
    std::size_t unit = 0;
    for (; count >= 999.5 && unit < 3; unit++)
        count /= 1000;
    char text[32];
    std::snprintf(text, sizeof text, "%.*f%s",
                  unit == 0 || count >= 99.95 ? 0
                  : count >= 9.995            ? 1
                                              : 2,
                  count, units[unit]);
    return text;
}

} // namespace

progress::progress(bool wanted, std::uint64_t total)
    : wanted_(wanted), total_(total), start_(clock::now()),
      due_(total >= large_input ? start_ : start_ + wait_for_small_input)
{}

void progress::update(std::uint64_t bytes, std::uint64_t rows)
{
    if (!wanted_)
        return;
    const auto now = clock::now();
    if (now < due_)
        return;
    due_ = now + between_drawings;
    visible_ = true;
    draw("\r" + progress_line(bytes, total_, rows, std::chrono::duration<double>(now - start_).count()) + "\x1b[K");
}

void progress::hide()
{
    if (visible_)
        draw("\r\x1b[K");
    visible_ = false;
}

std::string progress_line(std::uint64_t bytes, std::uint64_t total, std::uint64_t rows, double seconds)
{
    static constexpr int width = 30;
    std::string line;
    if (total > 0) {
        const double done = std::min(1.0, double(bytes) / double(total));
        const auto filled = std::size_t(done * width);
        char percent[8];
        std::snprintf(percent, sizeof percent, "%3d%%", int(done * 100));
        line = "[" + std::string(filled, '#') + std::string(width - filled, '.') + "] " + percent + "  ";
    }
    line += rounded(double(rows)) + " rows";
    if (seconds > 0)
        line += "  " + rounded(double(rows) / seconds) + " rows/s";
    return line;
}

} // namespace bcast::tool
