// Which doubles an int64 can hold.
#pragma once

namespace embedded {

inline bool in_int64(double value) { return value >= -0x1p63 && value < 0x1p63; }

} // namespace embedded
