#include "tests/embedded/support.h"
#include "tests/support/guarded.h"

#include <services/column.h>

namespace bcast::test {

namespace {

// An nstr as a cast sets it up, with a pool.
struct working_value {
    pool_ptr pool = new_pool();
    nstr value = {};

    working_value()
    {
        std::memset(value.owner_8, 0x77, sizeof value.owner_8);
        value.outline = value.inline_bytes;
    }

    int32_t fill_blob(std::string_view bytes)
    {
        value.first_word = 0;
        return nblob_assign_const(nullptr, pool.get(), &value, bytes.data(), static_cast<int32_t>(bytes.size()));
    }

    void fill_text(const char *text)
    {
        value.first_word = 0;
        nstr_assign_const(nullptr, pool.get(), &value, text);
    }

    void clear() { nstr_clear(nullptr, pool.get(), &value); }

    bool is_inline() const { return value.outline == value.inline_bytes; }

    // The bytes, by the rule that readers follow.
    std::string bytes() const
    {
        return {value.length > NSTR_INLINE_MAX ? value.outline : value.inline_bytes, value.length};
    }

    std::string blob() const
    {
        const std::string constant = bytes();
        const char *at = nullptr;
        uint32_t len = 0;
        EXPECT_EQ(bcast_lob_read(constant.data(), static_cast<uint32_t>(constant.size()), &at, &len), 0);
        return {at, len};
    }
};

} // namespace

// ---- Constants in a working value --------------------------------------------

TEST(nblob_assign_const, puts_the_header_before_values_of_every_length)
{
    working_value v;
    for (size_t len = 0; len < 600; len++) {
        std::string value(len, '\0');
        for (size_t k = 0; k < len; k++)
            value[k] = static_cast<char>(k * 3 + len);
        ASSERT_EQ(v.fill_blob(value), 0) << "length " << len;
        ASSERT_EQ(v.value.length, len + 43) << "length " << len;
        ASSERT_EQ(v.blob(), value) << "length " << len;
        ASSERT_EQ(v.is_inline(), len <= 5) << "length " << len;
    }
}

TEST(nblob_assign_const, five_bytes_stay_inline_and_six_do_not)
{
    working_value v;
    ASSERT_EQ(v.fill_blob("12345"), 0);
    EXPECT_EQ(v.value.length, 48u);
    EXPECT_TRUE(v.is_inline());
    EXPECT_EQ(v.blob(), "12345");
    ASSERT_EQ(v.fill_blob("123456"), 0);
    EXPECT_EQ(v.value.length, 49u);
    EXPECT_FALSE(v.is_inline());
    EXPECT_EQ(v.blob(), "123456");
}

TEST(nblob_assign_const, can_be_refilled_in_every_way)
{
    const std::string values[] = {"", "inline", std::string(100, 'm'), std::string(5000, 'l'), std::string(70000, 'x')};
    for (const std::string &first : values) {
        for (const std::string &second : values) {
            for (const bool cleared : {false, true}) {
                SCOPED_TRACE(testing::Message() << first.size() << " bytes, " << (cleared ? "cleared, " : "")
                                                << second.size() << " bytes");
                working_value v;
                for (int round = 0; round < 3; round++) {
                    ASSERT_EQ(v.fill_blob(first), 0);
                    ASSERT_EQ(v.blob(), first);
                    if (cleared)
                        v.clear();
                    ASSERT_EQ(v.fill_blob(second), 0);
                    ASSERT_EQ(v.blob(), second);
                    if (cleared)
                        v.clear();
                }
                v.clear();
                EXPECT_TRUE(v.is_inline());
            }
        }
    }
}

TEST(nblob_assign_const, does_not_keep_the_callers_bytes)
{
    working_value v;
    for (const size_t len : {5u, 50u}) {
        std::string scratch(len, 'a');
        ASSERT_EQ(v.fill_blob(scratch), 0);
        scratch.assign(len, 'b');
        EXPECT_EQ(v.blob(), std::string(len, 'a'));
    }
}

TEST(nblob_assign_const, reads_no_byte_around_the_value)
{
    working_value v;
    for (const guard_edge edge : {guard_edge::end, guard_edge::start}) {
        for (size_t len = 0; len < 100; len++) {
            const guarded<char> value(len, edge);
            ASSERT_EQ(v.fill_blob({value.data(), len}), 0);
            ASSERT_EQ(v.blob(), std::string(value.begin(), value.end()));
        }
    }
}

TEST(nblob_assign_const, leaves_what_is_not_its_own)
{
    working_value v;
    ASSERT_EQ(v.fill_blob(std::string(1000, 'x')), 0);
    for (const char c : v.value.owner_8)
        EXPECT_EQ(c, 0x77);
}

TEST(nblob_assign_const, refuses_a_length_that_no_constant_has)
{
    working_value v;
    EXPECT_EQ(nblob_assign_const(nullptr, v.pool.get(), &v.value, "x", -1), ERR_BAD_CONVERSION);
    EXPECT_EQ(nblob_assign_const(nullptr, v.pool.get(), &v.value, "x", INT32_MAX), ERR_NO_MEMORY);
    EXPECT_EQ(nblob_assign_const(nullptr, v.pool.get(), &v.value, "x", INT32_MAX - 42), ERR_NO_MEMORY);
}

TEST(nblob_assign_const, a_short_value_needs_no_pool)
{
    nstr value = {};
    value.outline = value.inline_bytes;
    EXPECT_EQ(nblob_assign_const(nullptr, nullptr, &value, "12345", 5), 0);
    EXPECT_EQ(nblob_assign_const(nullptr, nullptr, &value, "123456", 6), ERR_NO_MEMORY);
}

TEST(nblob_assign_const, values_at_the_same_time_share_no_bytes)
{
    const pool_ptr pool = new_pool();
    std::vector<nstr> values(100);
    for (size_t i = 0; i < values.size(); i++) {
        values[i].outline = values[i].inline_bytes;
        const std::string bytes(i * 10, static_cast<char>('A' + i % 26));
        ASSERT_EQ(nblob_assign_const(nullptr, pool.get(), &values[i], bytes.data(), static_cast<int32_t>(i * 10)), 0);
        if (i % 3 == 0)
            nstr_clear(nullptr, pool.get(), &values[i]);
    }
    for (size_t i = 0; i < values.size(); i++) {
        if (i % 3 == 0)
            continue;
        const char *bytes = values[i].length > NSTR_INLINE_MAX ? values[i].outline : values[i].inline_bytes;
        ASSERT_EQ(std::string_view(bytes + 43, i * 10), std::string(i * 10, static_cast<char>('A' + i % 26)))
            << "value " << i;
    }
}

// ---- Texts in a working value ------------------------------------------------

TEST(nstr_assign_const, a_text_of_any_length_stands_behind_outline)
{
    working_value v;
    for (size_t len = 0; len < 300; len++) {
        const std::string text(len, static_cast<char>('a' + len % 26));
        v.fill_text(text.c_str());
        ASSERT_EQ(v.value.length, len);
        ASSERT_EQ(std::string(v.value.outline, v.value.length), text) << "length " << len;
        ASSERT_EQ(v.bytes(), text) << "length " << len;
    }
}

TEST(nstr_assign_const, reads_up_to_the_nul_and_no_further)
{
    working_value v;
    for (const size_t len : {0u, 1u, 48u, 49u, 500u}) {
        guarded<char> text(len + 1);
        text[len] = '\0';
        v.fill_text(text.data());
        EXPECT_EQ(v.bytes(), std::string(len, static_cast<char>(guard_fill)));
    }
}

TEST(nstr_assign_const, texts_and_constants_may_follow_one_another)
{
    working_value v;
    const std::string large(2000, 'x');
    v.fill_text(large.c_str());
    EXPECT_EQ(v.bytes(), large);
    ASSERT_EQ(v.fill_blob("abc"), 0);
    EXPECT_EQ(v.blob(), "abc");
    v.fill_text("short");
    EXPECT_EQ(v.bytes(), "short");
    ASSERT_EQ(v.fill_blob(large), 0);
    EXPECT_EQ(v.blob(), large);
}

// ---- Clearing ------------------------------------------------------------------

TEST(nstr_clear, leaves_the_outline_at_the_inline_bytes_and_nothing_held)
{
    working_value v;
    for (const size_t len : {0u, 5u, 6u, 1000u}) {
        ASSERT_EQ(v.fill_blob(std::string(len, 'x')), 0);
        v.clear();
        EXPECT_TRUE(v.is_inline());
        EXPECT_EQ(v.value.length, 0u);
        EXPECT_EQ(v.value.outline_state, 0u);
    }
}

TEST(nstr_clear, is_harmless_on_a_value_that_was_never_filled_and_twice)
{
    working_value v;
    v.clear();
    v.clear();
    EXPECT_TRUE(v.is_inline());
    ASSERT_EQ(v.fill_blob(std::string(100, 'x')), 0);
    v.clear();
    v.clear();
    EXPECT_TRUE(v.is_inline());
}

TEST(nstr_clear, bytes_that_were_given_back_are_used_again)
{
    working_value v;
    ASSERT_EQ(v.fill_blob(std::string(100, 'x')), 0);
    const char *bytes = v.value.outline;
    for (int i = 0; i < 1000; i++) {
        v.clear();
        ASSERT_EQ(v.fill_blob(std::string(90, 'y')), 0);
        ASSERT_EQ(v.value.outline, bytes);
    }
}

TEST(pool, a_value_that_becomes_short_or_long_gives_its_block_back)
{
    for (const size_t length : {6U, 32U, 33U, 85U, 1000U}) {
        for (const size_t next : {0U, 5U, 3000U}) {
            working_value v;
            ASSERT_EQ(v.fill_blob(std::string(length, 'x')), 0);
            const char *block = v.value.outline;
            ASSERT_EQ(v.fill_blob(std::string(next, 'y')), 0);
            ASSERT_NE(v.value.outline, block);
            nstr other = {};
            other.outline = other.inline_bytes;
            ASSERT_EQ(nblob_assign_const(nullptr, v.pool.get(), &other, std::string(length, 'z').data(),
                                         static_cast<int32_t>(length)),
                      0);
            EXPECT_EQ(other.outline, block) << length << " bytes, and then " << next;
        }
    }
}

TEST(pool, hands_the_same_memory_out_again_after_a_reset)
{
    working_value v;
    std::vector<const char *> first, second;
    for (std::vector<const char *> *outlines : {&first, &second}) {
        for (int i = 0; i < 100; i++) {
            // A value that is abandoned, as by a cast that fails.
            v.value.outline = v.value.inline_bytes;
            v.value.outline_state = 0;
            ASSERT_EQ(v.fill_blob(std::string(3000, 'x')), 0);
            outlines->push_back(v.value.outline);
        }
        bcast_pool_reset(v.pool.get());
    }
    EXPECT_EQ(first, second);
    v.value.outline = v.value.inline_bytes;
    v.value.outline_state = 0;
}

TEST(pool, a_block_given_back_before_a_reset_is_not_handed_out_twice_after_it)
{
    working_value v;
    ASSERT_EQ(v.fill_blob(std::string(3000, 'x')), 0);
    v.clear();
    bcast_pool_reset(v.pool.get());
    ASSERT_EQ(v.fill_blob(std::string(3000, 'a')), 0);
    nstr other = {};
    other.outline = other.inline_bytes;
    const std::string bytes(3000, 'b');
    ASSERT_EQ(nblob_assign_const(nullptr, v.pool.get(), &other, bytes.data(), 3000), 0);
    EXPECT_EQ(v.blob(), std::string(3000, 'a'));
    EXPECT_EQ(std::string_view(other.outline + 43, 3000), bytes);
}

TEST(pool, begins_with_the_time_zone)
{
    const pool_ptr pool = new_pool();
    const auto zone = [&] {
        int16_t minutes;
        std::memcpy(&minutes, pool.get(), sizeof minutes);
        return minutes;
    };
    EXPECT_EQ(zone(), 0);
    for (const int16_t minutes : std::initializer_list<int16_t>{60, -840, 840, INT16_MIN, INT16_MAX}) {
        bcast_pool_set_time_zone(pool.get(), minutes);
        EXPECT_EQ(zone(), minutes);
    }
    bcast_pool_reset(pool.get());
    EXPECT_EQ(zone(), INT16_MAX);
}

TEST(pool, null_may_be_freed) { bcast_pool_free(nullptr); }

// ---- Large-object constants ----------------------------------------------------

TEST(lob_read, the_header_is_as_documented)
{
    working_value v;
    ASSERT_EQ(v.fill_blob(std::string(0x010203, 'x')), 0);
    std::string expected("LOBC\x01\x00\x03\x02\x01\x00", 10);
    expected.append(33, '\0');
    EXPECT_EQ(v.bytes().substr(0, 43), expected);
}

TEST(lob_read, finds_the_value_without_reading_beyond_it)
{
    for (const size_t len : {0u, 1u, 5u, 6u, 4000u}) {
        working_value v;
        ASSERT_EQ(v.fill_blob(std::string(len, 'x')), 0);
        const std::string constant = v.bytes();
        const guarded<char> bytes(std::span<const char>(constant.data(), constant.size()));
        const char *value = nullptr;
        uint32_t value_len = 99;
        ASSERT_EQ(bcast_lob_read(bytes.data(), static_cast<uint32_t>(bytes.size()), &value, &value_len), 0);
        EXPECT_EQ(value, bytes.data() + 43);
        EXPECT_EQ(value_len, len);
    }
}

TEST(lob_read, refuses_every_broken_header_and_stores_nothing)
{
    working_value v;
    ASSERT_EQ(v.fill_blob("value"), 0);
    const std::string good = v.bytes();
    const auto expect_refused = [](const std::string &bytes, const std::string &what) {
        const guarded<char> constant(std::span<const char>(bytes.data(), bytes.size()));
        const char *value = "untouched";
        uint32_t len = 99;
        EXPECT_EQ(bcast_lob_read(constant.data(), static_cast<uint32_t>(constant.size()), &value, &len),
                  ERR_BAD_CONVERSION)
            << what;
        EXPECT_STREQ(value, "untouched") << what;
        EXPECT_EQ(len, 99u) << what;
    };
    for (size_t size = 0; size < good.size(); size++)
        expect_refused(good.substr(0, size), "cut to " + std::to_string(size) + " bytes");
    expect_refused(good + "x", "one byte too many");
    for (size_t k = 0; k < 43; k++) {
        std::string bad = good;
        bad[k] = static_cast<char>(bad[k] ^ 1);
        expect_refused(bad, "header byte " + std::to_string(k) + " changed");
    }
}

TEST(lob_read, takes_any_byte_in_the_value)
{
    working_value v;
    std::string value;
    for (int c = 0; c < 256; c++)
        value += static_cast<char>(c);
    ASSERT_EQ(v.fill_blob(value), 0);
    EXPECT_EQ(v.blob(), value);
}

} // namespace bcast::test
