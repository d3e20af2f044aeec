// The shortest digits of a float or double.
#include <services/numeric.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <string_view>

namespace embedded {

namespace {

int32_t write_text(std::string_view text, char *buf)
{
    memcpy(buf, text.data(), text.size());
    return int32_t(text.size());
}

// Makes d.ddde+xx, a whole number, fixed: 1.5e+08 to 150000000.
char *shift_point_out(char *first, char *end)
{
    const char *e = end - 4;
    const auto whole_count = size_t((e[2] - '0') * 10 + (e[3] - '0') + 1);
    const auto behind_point = size_t(std::max<std::ptrdiff_t>(e - first - 2, 0));
    memmove(first + 1, first + 2, behind_point);
    memset(first + 1 + behind_point, '0', whole_count - 1 - behind_point);
    return first + whole_count;
}

template <class Number> int32_t write_number(Number value, char *buf)
{
    if (std::isnan(value))
        return write_text("NaN", buf);
    if (std::isinf(value))
        return write_text(value < 0 ? "-Infinity" : "Infinity", buf);
    const Number magnitude = std::fabs(value);
    const bool fixed = magnitude == 0 || (magnitude >= Number(1e-5) && magnitude < Number(1e15));
    // Of a number that has no room for a fraction std::to_chars shows more digits than it takes.
    const bool long_whole = fixed && magnitude >= Number(uint64_t{1} << std::numeric_limits<Number>::digits);
    const auto format = fixed && !long_whole ? std::chars_format::fixed : std::chars_format::scientific;
    char *end = std::to_chars(buf, buf + BCAST_TEXT_ROOM, value, format).ptr;
    if (long_whole)
        end = shift_point_out(buf + std::signbit(value), end);
    return int32_t(end - buf);
}

} // namespace

} // namespace embedded

// The shortest digits that read back as the same float or double, and of those the closest. In fixed notation, which
// has a zero before the point and a point only where there is a digit behind it, from 1e-5 to below 1e15 (of a float:
// the floats of these two); otherwise like 1.5e+20 and 1e-07. The sign of -0 is shown, that of NaN is not.
int32_t vq_dou2char(int32_t kind, double value, char *buf)
{
    return kind == BCAST_WAS_FLOAT ? embedded::write_number(float(value), buf) : embedded::write_number(value, buf);
}
