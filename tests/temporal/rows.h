// Elements for batches of temporal values and intervals.
#pragma once

#include "tests/support/row_cast.h"
#include "tests/support/text_element.h"

#include <string>
#include <vector>

namespace bcast::test {

// Records that no rule is behind.
inline std::vector<std::string> some_records(size_t bytes = sizeof(vqtime))
{
    std::vector<std::string> records;
    for (uint32_t number = 0; number < 13; number++)
        records.push_back(some_record(number, bytes));
    return records;
}

} // namespace bcast::test
