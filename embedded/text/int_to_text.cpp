// The decimal text of an int.
#include "embedded/text/written_digits.h"

#include <bcast/codes.h>
#include <services/text.h>

#include <cstdlib>

namespace embedded {

namespace {

// Signs are as good as random: no branch on them.
struct parts_of_int {
    bool negative;
    uint64_t magnitude;
    uint32_t count; // of digits

    explicit parts_of_int(int32_t value)
        : negative(value < 0), magnitude(uint64_t(std::abs(int64_t{value}))), count(digit_count(magnitude))
    {}

    int32_t give_length(int32_t limit, int32_t *out_len) const
    {
        *out_len = int32_t(count + negative);
        return *out_len > limit ? ERR_TARGET_TOO_SHORT : 0;
    }
};

template <level at> ALWAYS_INLINE int32_t int_to_text(int32_t value, int32_t limit, char *buffer, int32_t *out_len)
{
    const parts_of_int parts(value);
    written_digits<at>(parts.magnitude).write_integer(parts.negative, parts.count, buffer);
    return parts.give_length(limit, out_len);
}

} // namespace

} // namespace embedded

PICKED_AT_LOAD(str_from_int, embedded::int_to_text);
