#include <lmx/Climate/lmxFoundRange.h>

#include <lmx/Climate/lmxSpatialConst.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace lmx {
namespace {

TEST(FoundRange, HasNothingAtFirst) {
    TFoundRange range;
    EXPECT_FALSE(range.HasValues());
    range.Add({});
    EXPECT_FALSE(range.HasValues());
    EXPECT_EQ(range.GetLeast(), std::numeric_limits<float>::infinity());
    EXPECT_EQ(range.GetGreatest(), -std::numeric_limits<float>::infinity());
}

// Wherever in a row of any length the least and the greatest stand.
TEST(FoundRange, FindsThemAtEveryPlace) {
    for (const std::size_t length : {1U, 2U, 15U, 16U, 17U, 40U})
        for (std::size_t low = 0; low < length; ++low)
            for (std::size_t high = 0; high < length; ++high) {
                std::vector<float> numbers(length, 1);
                numbers[high] = 7;
                numbers[low] = -3;
                TFoundRange range;
                range.Add(numbers);
                ASSERT_TRUE(range.HasValues());
                ASSERT_EQ(range.GetLeast(), -3) << length << ' ' << low;
                ASSERT_EQ(range.GetGreatest(), length == 1 ? -3 : low == high ? 1 : 7) << length << ' ' << high;
            }
}

TEST(FoundRange, FlagsDoNotCount) {
    const float largest = std::nextafter(1e30F, 0.0F);
    const std::vector<float> flags{
        TSpatialConst::NoData, -9999, INFINITY, -INFINITY, std::numeric_limits<float>::quiet_NaN(), 1e30F, -1e30F};
    for (const float flag : flags) {
        ASSERT_TRUE(TSpatialConst::IsFlag(flag));
        TFoundRange range;
        range.Add(std::vector<float>(33, flag));
        EXPECT_FALSE(range.HasValues()) << flag;
        range.Add(std::vector<float>{flag, 5, flag});
        EXPECT_EQ(range.GetLeast(), 5) << flag;
        EXPECT_EQ(range.GetGreatest(), 5) << flag;
    }
    TFoundRange range;
    range.Add(std::vector<float>{-largest, largest, -10'376});
    EXPECT_EQ(range.GetLeast(), -largest);
    EXPECT_EQ(range.GetGreatest(), largest);
}

TEST(FoundRange, GoesOnFromRowToRow) {
    TFoundRange range;
    range.Add(std::vector<float>(20, 2));
    range.Add(std::vector<float>{-1});
    range.Add(std::vector<float>(17, 9));
    EXPECT_EQ(range.GetLeast(), -1);
    EXPECT_EQ(range.GetGreatest(), 9);
}

} // namespace
} // namespace lmx
