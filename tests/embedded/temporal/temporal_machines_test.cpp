// What the reader of ISO texts and the writers of each level do, beside the reader of any text and each
// other.
#include "embedded/temporal/iso_text.h"
#include "embedded/temporal/temporal_reader.h"
#include "tests/embedded/temporal/temporal_support.h"
#include "tests/support/levels.h"

#include <random>
#include <string>

namespace bcast::test {

using namespace embedded;

namespace {

temporal_reading read_any(std::string_view text, uint16_t order = BCAST_YEAR_FIRST)
{
    temporal_text read;
    const int32_t status = read_temporal_text(text.data(), text.size(), order, &read);
    if (status != 0)
        return failed_reading(status);
    vqtime value;
    store_words(read.value, &value);
    return reading_of(value);
}

} // namespace

TEST(temporal_machines, the_reader_of_any_text_reads_what_the_slow_reading_reads)
{
    std::mt19937 random(1);
    const std::string bytes = "0123456789-/.:T Z+";
    const std::string texts[] = {"2023-07-14",
                                 "2023-07-14 12:34",
                                 "2024-02-29 12:34:56",
                                 "2023-07-14T12:34:56.1",
                                 "2023-07-14 12:34:56.123456",
                                 "12:34:56.789",
                                 "20230714T23:59:59.9999995+02:00"};
    for (const std::string &good : texts) {
        ASSERT_EQ(read_any(good), slow_read_temporal(good)) << good;
        ASSERT_EQ(read_any(good).status, 0) << good;
        for (int i = 0; i < 20000; i++) {
            std::string text = good;
            for (size_t changes = 1 + random() % 3; changes > 0; changes--)
                text[random() % text.size()] = bytes[random() % bytes.size()];
            ASSERT_EQ(read_any(text), slow_read_temporal(text)) << text;
        }
    }
}

TEST(temporal_machines, the_reader_of_any_text_knows_every_day)
{
    for (int year = 0; year <= 9999; year++) {
        for (int month = 0; month <= 13; month++) {
            for (const int day : {0, 1, 28, 29, 30, 31, 32}) {
                char text[64];
                std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month, day);
                const bool good = year > 0 && (std::chrono::year(year) / month / day).ok();
                ASSERT_EQ(read_any(text).status, good ? 0 : ERR_BAD_DATETIME) << text;
            }
        }
    }
}

TEST(temporal_any, writes_short_texts_of_any_bytes)
{
    std::mt19937 random(3);
    for (int i = 0; i < 20000; i++) {
        vqtime value;
        for (uint8_t &byte : value.bytes)
            byte = static_cast<uint8_t>(random());
        guarded<char> text(iso_room);
        iso_texts<level::any>::write_datetime(&value, 6, 0, text.data());
        ASSERT_LE(std::strlen(text.data()), iso_size);
    }
}

TEST(temporal_any, writes_texts)
{
    std::mt19937_64 random(2);
    for (int i = 0; i < 1000000; i++) {
        const temporal_reading reading = {.year = 1 + int(random() % 9999),
                                          .month = 1 + int(random() % 12),
                                          .day = 1 + int(random() % 28),
                                          .hour = int(random() % 24),
                                          .minute = int(random() % 60),
                                          .second = int(random() % 60),
                                          .millionths = i};
        const vqtime value = record_of(reading);
        const size_t digits = random() % 7;
        char text[iso_room];
        iso_texts<level::any>::write_date(&value, text);
        ASSERT_EQ(text, slow_date_text(reading));
        iso_texts<level::any>::write_time(&value, digits, 0, text);
        ASSERT_EQ(text, slow_time_text(reading, digits));
        iso_texts<level::any>::write_datetime(&value, digits, 0x005A5A5A5A5A5A5A, text);
        ASSERT_EQ(text, slow_datetime_text(reading, digits) + "ZZZZZZZ");
    }
}

#if defined(MACHINE_IS_X86_64)

namespace {

// Lambdas do not take over the instruction set, so the calls are functions of their own.
CODE_FOR_AVX512 bool read_avx512(std::string_view text, temporal_words *value)
{
    return iso_texts<level::avx512>::read(text.data(), text.size(), value);
}
CODE_FOR_AVX512 void write_datetime_avx512(const vqtime *value, size_t digits, uint64_t zone, char *text)
{
    iso_texts<level::avx512>::write_datetime(value, digits, zone, text);
}
CODE_FOR_AVX512 void write_time_avx512(const vqtime *value, size_t digits, uint64_t zone, char *text)
{
    iso_texts<level::avx512>::write_time(value, digits, zone, text);
}

using temporal_avx512 = level_test<at_level<level::avx512>>;

} // namespace

TEST_F(temporal_avx512, writes_what_any_level_writes)
{
    std::mt19937_64 random(4);
    for (int i = 0; i < 1000000; i++) {
        vqtime value;
        for (uint8_t &byte : value.bytes)
            byte = static_cast<uint8_t>(random() % 100);
        value.bytes[11] = static_cast<uint8_t>(random() % 3 == 0 ? 0 : value.bytes[11]);
        value.bytes[10] = static_cast<uint8_t>(random() % 3 == 0 ? 0 : value.bytes[10]);
        const size_t digits = random() % 7;
        const uint64_t zone = random() % 2 == 0 ? 0 : 0x30303A31322B;
        char expected[iso_room], text[iso_room];
        iso_texts<level::any>::write_datetime(&value, digits, zone, expected);
        write_datetime_avx512(&value, digits, zone, text);
        ASSERT_STREQ(text, expected);
        iso_texts<level::any>::write_time(&value, digits, zone, expected);
        write_time_avx512(&value, digits, zone, text);
        ASSERT_STREQ(text, expected);
    }
}

// Whatever it takes, it takes for the same value; and it takes every text of its shapes that is one, but a February 29.
TEST_F(temporal_avx512, reads_what_the_reader_of_any_text_reads)
{
    std::mt19937 random(6);
    const std::string bytes = "0123456789-/.:T Z+";
    const std::string texts[] = {"2023-07-14",
                                 "2023-07-14 12:34",
                                 "2024-02-29 12:34:56",
                                 "2023-07-14T12:34:56.1",
                                 "2023-07-14 12:34:56.12",
                                 "2023-07-14T12:34:56.123",
                                 "2023-07-14 12:34:56.1234",
                                 "2023-07-14 12:34:56.12345",
                                 "2023-07-14 12:34:56.123456"};
    for (const std::string &good : texts) {
        for (int i = 0; i < 200000; i++) {
            std::string text = good;
            for (size_t changes = i == 0 ? 0 : 1 + random() % 3; changes > 0; changes--)
                text[random() % text.size()] = bytes[random() % bytes.size()];
            text.resize(random() % 16 == 0 ? random() % (text.size() + 1) : text.size());

            const temporal_reading expected = read_any(text);
            temporal_words words{};
            const bool taken = read_avx512(text, &words);
            vqtime value;
            store_words(words, &value);
            if (taken) {
                ASSERT_EQ(reading_of(value), expected) << text;
            }
            if (text.size() == good.size() && picture_of(text) == picture_of(good)) {
                const bool february_29 = text.substr(5, 5) == "02-29";
                ASSERT_EQ(taken, expected.status == 0 && !february_29) << text;
            }
        }
    }
}

#endif

} // namespace bcast::test
