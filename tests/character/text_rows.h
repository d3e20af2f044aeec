// A batch of texts on its way through a cast, and what the cast is to make of it.
#pragma once

#include "tests/support/batch.h"
#include "tests/support/call.h"
#include "tests/support/service_double.h"
#include "tests/support/text_element.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace bcast::test {

struct text_rows {
    text_rows(const setup &given, uint32_t row_count, size_t target_bytes)
        : how(given), rows(row_count), source(sizeof(bdta3_str), rows, how), target(target_bytes, rows, how),
          expected(target.image())
    {}

    const setup &how;
    uint32_t rows;
    source_column source;
    target_column target;
    target_image expected;
    std::vector<service_call> calls = {};
    std::vector<std::unique_ptr<guarded<char>>> texts = {};

    void set_element(uint32_t row, uint8_t flag, int32_t length, char *text, int32_t pad_len = unread_pad_len)
    {
        source.set(row, flag, bdta3_str{length, pad_len, text});
    }

    // A row with a text of its own, between whose one end and an inaccessible page there is nothing.
    void set_text(uint32_t row, uint8_t flag, const std::string &text, int32_t pad_len = unread_pad_len,
                  guard_edge edge = guard_edge::end)
    {
        texts.push_back(std::make_unique<guarded<char>>(std::span<const char>(text), edge));
        texts.back()->make_read_only();
        set_element(row, flag, static_cast<int32_t>(text.size()), texts.back()->data(), pad_len);
    }

    // A row that no cast may take a look at.
    void set_null(uint32_t row) { set_element(row, 0, 5, static_cast<char *>(inaccessible())); }

    bdta3_str element(uint32_t row) const { return source.element<bdta3_str>(row); }

    // True if the cast gave that status, left the target as expected, and made the calls.
    void expect(int32_t status, int32_t right_status)
    {
        EXPECT_EQ(status, right_status);
        EXPECT_TRUE(target.holds(expected));
        EXPECT_TRUE(services().logged(calls));
    }
};

// Texts that the rows of a batch share in turn.
class shared_texts {
public:
    explicit shared_texts(std::vector<std::string> texts) : texts_(std::move(texts)), bytes_(joined())
    {
        bytes_.make_read_only();
    }

    const std::string &text(uint32_t row) const { return texts_[row % texts_.size()]; }

    bdta3_str element(uint32_t row, int32_t pad_len = unread_pad_len)
    {
        size_t start = 0;
        for (size_t k = 0; k < row % texts_.size(); k++)
            start += texts_[k].size();
        return {static_cast<int32_t>(text(row).size()), pad_len, bytes_.data() + start};
    }

private:
    std::span<const char> joined()
    {
        for (const std::string &text : texts_)
            all_ += text;
        return all_;
    }

    std::vector<std::string> texts_;
    std::string all_;
    guarded<char> bytes_;
};

} // namespace bcast::test
