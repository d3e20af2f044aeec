// How many blanks a target counts behind a text of len bytes: a char target as many as its length leaves room for, a
// varchar target none.
#pragma once

#include <cstdint>

inline int32_t up_to_length(int32_t length, int32_t len) { return length - len; }
inline int32_t no_blanks(int32_t, int32_t) { return 0; }
using blanks_rule = int32_t(int32_t length, int32_t len);
