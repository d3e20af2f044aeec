// Text against an integer column: `x < 5.5` has no integer of its own, but `x < 6` is true for the same rows. So a
// literal becomes the integer that gives the same answer under the same comparison; or, where there is none, a verdict
// from which the caller can answer for all rows at once.

#include "src/frame/row_walk.h"

#include <bcast/casts.h>
#include <bcast/codes.h>
#include <services/text.h>

#include <limits>

namespace {

// Where a comparison wants a literal that lies between two integers. Under < and >= the next integer above gives the
// same answer, under > and <= the next one below, under = and <> none does.
enum class moves { up, down, nowhere, unknown };

moves moves_under(uint16_t cmp_op)
{
    switch (cmp_op) {
    case BCAST_OP_LESS:
    case BCAST_OP_GREATER_EQUAL:
        return moves::up;
    case BCAST_OP_GREATER:
    case BCAST_OP_LESS_EQUAL:
        return moves::down;
    case BCAST_OP_EQUAL:
    case BCAST_OP_UNEQUAL:
        return moves::nowhere;
    default:
        return moves::unknown;
    }
}

template <class Int>
int32_t read_literal(const char *text, int32_t length, uint16_t cmp_op, int32_t *verdict, Int *result)
{
    constexpr Int max = std::numeric_limits<Int>::max(), min = std::numeric_limits<Int>::min();

    *verdict = VERDICT_NONE;
    int64_t value; // cut toward zero where the literal is not whole, so that the sign of -0.5 is told apart
    char sign;
    int32_t status = str2int64_directly(text, length, &value, &sign);
    // An int64 that is no int lies out of range as well, exact or not.
    if (status >= 0 && value > max)
        status = ERR_ABOVE_RANGE;
    if (status >= 0 && value < min)
        status = ERR_BELOW_RANGE;

    if (status == 0) {
        *result = Int(value);
        return 0;
    }
    if (status < 0 && status != ERR_ABOVE_RANGE && status != ERR_BELOW_RANGE)
        return status;

    const moves move = moves_under(cmp_op);
    if (move == moves::unknown)
        return 0;
    if (status == ERR_ABOVE_RANGE || move == moves::nowhere)
        *verdict = VERDICT_ABOVE;
    else if (status == ERR_BELOW_RANGE)
        *verdict = VERDICT_BELOW;
    else if (move == moves::up && value == max)
        *verdict = VERDICT_ABOVE;
    else if (move == moves::down && value == min)
        *verdict = VERDICT_BELOW;
    else if (move == moves::up)
        *result = Int(value + (sign == '+'));
    else
        *result = Int(value - (sign == '-'));
    return 0;
}

// A verdict becomes the row's flag: not zero, but no 1 either. Empty is a text whose whole length word is
// 0, though the parser gets the low 16 bits of it.
template <class Int> int32_t read_literals(uint16_t cmp_op, const bdta3_col *src, bdta3_col *dst, uint16_t rows)
{
    const bdta3_str *from = elements<bdta3_str>(src);
    Int *to = elements<Int>(dst);
    Int result = 0; // an unknown comparison leaves the row before in it

    copy_no_null(src, dst);
    return walk_present_rows(src, dst, rows, stop{}, [&](uint32_t r, uint32_t i) {
        if (from[r].length == 0)
            return turn_null(dst, i);
        int32_t verdict;
        const int32_t status = read_literal(from[r].text, uint16_t(from[r].length), cmp_op, &verdict, &result);
        if (status < 0)
            return status;
        if (verdict == VERDICT_NONE) {
            to[i] = result;
        } else {
            dst->data->flags[i] = uint8_t(verdict);
            to[i] = 0;
            dst->no_null = 0;
        }
        return 0;
    });
}

} // namespace

int32_t bcast_varchar_to_int_directly_low(void *, const char *text, int32_t length, uint16_t cmp_op, int32_t *verdict,
                                          int32_t *result)
{
    return read_literal(text, length, cmp_op, verdict, result);
}

int32_t bcast_varchar_to_int64_directly_low(void *, const char *text, int32_t length, uint16_t cmp_op, int32_t *verdict,
                                            int64_t *result)
{
    return read_literal(text, length, cmp_op, verdict, result);
}

int32_t bcast_varchar_to_int_directly(void *, void *, uint16_t cmp_op, const bdta3_col *src, bdta3_col *dst,
                                      uint16_t rows)
{
    return read_literals<int32_t>(cmp_op, src, dst, rows);
}

int32_t bcast_varchar_to_int64_directly(void *, void *, uint16_t cmp_op, const bdta3_col *src, bdta3_col *dst,
                                        uint16_t rows)
{
    return read_literals<int64_t>(cmp_op, src, dst, rows);
}
