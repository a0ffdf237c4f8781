#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <limits>

namespace lmx {
namespace {

TEST(ValueRange, HoldsLowAndHighInThisOrder) {
    const TValueRange range(10, 20);
    EXPECT_EQ(range.Low, 10);
    EXPECT_EQ(range.High, 20);
}

TEST(ValueRange, EqualsARangeOfTheSameEnds) {
    EXPECT_TRUE(TValueRange(1, 2).Equals({1, 2}));
    EXPECT_FALSE(TValueRange(1, 2).Equals({1, 2.0000000001}));
    EXPECT_FALSE(TValueRange(1, 2).Equals({0, 2}));
    EXPECT_FALSE(TValueRange(1, 2).Equals({2, 1}));
}

TEST(ValueRange, AnEndThatIsNoNumberEqualsNothing) {
    const TValueRange range(0, std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(range.Equals(range));
}

TEST(ValueRange, TheEmptyRangeIsZeroToZero) {
    EXPECT_TRUE(TValueRange::Empty().Equals({0, 0}));
    EXPECT_TRUE(TValueRange().Equals(TValueRange::Empty()));
}

struct TTextRow {
    float Low;
    float High;
    const char* Text;
};

class ValueRangeText : public testing::TestWithParam<TTextRow> {};

TEST_P(ValueRangeText, HasSevenDigits) {
    const TFormatSettingsScope scope({u'.'});
    EXPECT_EQ(TValueRange(GetParam().Low, GetParam().High).ToString(), GetParam().Text);
}

INSTANTIATE_TEST_SUITE_P(Ranges, ValueRangeText,
                         testing::Values(TTextRow{0, 50, "0 - 50"}, TTextRow{-10, -0.1F, "-10 - -0.1"},
                                         TTextRow{273.15F, 1013.25F, "273.15 - 1013.25"},
                                         TTextRow{5e-5F, 1e10F, "0.00005 - 1E10"}, TTextRow{20, 10, "20 - 10"},
                                         TTextRow{-std::numeric_limits<float>::infinity(), 5, "-INF - 5"}));

TEST(ValueRange, IsWrittenInTheCurrentFormatSettings) {
    const TFormatSettingsScope scope({u','});
    EXPECT_EQ(TValueRange(0.5, 1.25).ToString(), "0,5 - 1,25");
}

} // namespace
} // namespace lmx
