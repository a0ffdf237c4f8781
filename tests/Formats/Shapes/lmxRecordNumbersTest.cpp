#include <lmx/Formats/Shapes/lmxRecordNumbers.h>

#include <gtest/gtest.h>

#include <random>

namespace lmx::tests {

TEST(RecordNumbers, TellTheRecordOfEachItem) {
    std::mt19937 random(3);
    for (int round = 0; round < 200; ++round) {
        TRecordNumbers numbers;
        std::vector<std::uint32_t> records;
        std::uint32_t record = 0;
        for (int i = 0; i < 60; ++i) {
            record += 1 + static_cast<std::uint32_t>(random() % 4 == 0 ? random() % 5 : 0);
            const std::size_t count = random() % 3 == 0 ? random() % 4 : 1;
            numbers.Append(record, count);
            records.insert(records.end(), count, record);
        }
        for (std::size_t i = 0; i < records.size(); ++i)
            ASSERT_EQ(numbers.GetRecord(i), records[i]) << round << ' ' << i;
    }
}

TEST(RecordNumbers, AnUnbrokenRowTakesNoMemory) {
    TRecordNumbers numbers;
    EXPECT_EQ(numbers.GetMemorySize(), 0U);
    for (std::uint32_t record = 5; record < 100'000; ++record)
        numbers.Append(record);
    numbers.Append(200'000, 1'000'000);
    numbers.Shrink();
    EXPECT_EQ(numbers.GetMemorySize(), 16U);
    EXPECT_EQ(numbers.GetRecord(0), 5U);
    EXPECT_EQ(numbers.GetRecord(99'994), 99'999U);
    EXPECT_EQ(numbers.GetRecord(99'995), 200'000U);
    EXPECT_EQ(numbers.GetRecord(1'099'994), 200'000U);
}

} // namespace lmx::tests
