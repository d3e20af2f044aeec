// What casts from text to numbers make of an empty text, alike from all sources: a null, by the whole length word.
#pragma once

#include "tests/support/row_cast.h"
#include "tests/support/text_element.h"

namespace bcast::test {

inline const std::string empty_text = element_of_length(0);

inline void expect_empty_text_is_null(const row_cast &c)
{
    at_several_rows(c, empty_text, [&](const std::vector<batch_row> &rows) {
        for (const setup &how : all_setups())
            expect_batch(c, how, rows);
    });
    // Without a failure nothing is captured.
    if (c.captures())
        for (const setup &how : few_setups())
            expect_batch(c, how, {{1, c.samples.front()}, {1, empty_text}}, {.capture = true, .count_before = 65535});
}

inline void expect_empty_text_in_null_row_changes_nothing(const row_cast &given)
{
    row_cast c = given;
    c.null_element = element_of_length(0, nullptr);
    for (const setup &how : all_setups()) {
        if (c.converts_all(how))
            continue;
        expect_batch(c, how, sample_rows(c, {0, 0, 0}));
        expect_batch(c, how, sample_rows(c, {0, 1, 0}));
    }
}

// no_null is 0 by then and stays so.
inline void expect_failure_behind_empty_text(const row_cast &c)
{
    for (const setup &how : all_setups()) {
        std::vector<batch_row> rows = sample_rows(c, {1, 0x80, 3, 4});
        expect_batch(c, how, rows, {.results = {{0, -77}}});
        rows[0].element = rows[3].element = empty_text;
        expect_batch(c, how, rows, {.results = {{0, -77}}});
    }
}

// Neither is a success behind one, nor a failure.
inline void expect_empty_text_beside_captured_failures(const row_cast &c)
{
    std::vector<batch_row> rows = sample_rows(c, {1, 2, 3, 0, 4, 5});
    rows[1].element = rows[5].element = empty_text;
    for (const setup &how : all_setups()) {
        expect_batch(c, how, rows, {.results = {{0, -77}, {2, -78}}, .capture = true});
        expect_batch(c, how, rows, {.capture = true});
    }
}

} // namespace bcast::test
