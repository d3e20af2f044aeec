// Kinds of characters, whatever the locale.
#pragma once

namespace embedded {

inline bool is_blank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

inline bool is_digit(char c) { return c >= '0' && c <= '9'; }

inline bool is_sign(char c) { return c == '-' || c == '+'; }

} // namespace embedded
