#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace lmx {
namespace {

using tests::MessageOf;

constexpr extended Infinity = std::numeric_limits<extended>::infinity();
constexpr extended NaN = std::numeric_limits<extended>::quiet_NaN();

struct TRoundRow {
    extended Value;
    std::int64_t Rounded, Floored, Ceiled;
};

class Rounding : public testing::TestWithParam<TRoundRow> {};

TEST_P(Rounding, GivesIntegers) {
    const TRoundRow& row = GetParam();
    EXPECT_EQ(Round(row.Value), row.Rounded);
    EXPECT_EQ(Floor(row.Value), row.Floored);
    EXPECT_EQ(Ceil(row.Value), row.Ceiled);
}

constexpr std::int64_t Lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t Highest = std::numeric_limits<std::int64_t>::max();

INSTANTIATE_TEST_SUITE_P(
    Values, Rounding,
    testing::Values(TRoundRow{0, 0, 0, 0}, TRoundRow{0.5L, 0, 0, 1}, TRoundRow{1.5L, 2, 1, 2}, TRoundRow{2.5L, 2, 2, 3},
                    TRoundRow{-0.5L, 0, -1, 0}, TRoundRow{-1.5L, -2, -2, -1}, TRoundRow{-2.5L, -2, -3, -2},
                    TRoundRow{2.5000000000000001L, 3, 2, 3}, TRoundRow{1e-30L, 0, 0, 1},
                    TRoundRow{4503599627370497.5L, 4503599627370498, 4503599627370497, 4503599627370498},
                    TRoundRow{-0x1p63L, Lowest, Lowest, Lowest}, TRoundRow{0x1p63L - 1, Highest, Highest, Highest}));

class RoundingRefuses : public testing::TestWithParam<extended> {};

TEST_P(RoundingRefuses, WhatIsNoIntegerOf64Bits) {
    const extended value = GetParam();
    EXPECT_EQ(MessageOf<EInvalidOp>([=] { Round(value); }), "Invalid floating point operation");
    EXPECT_EQ(MessageOf<EInvalidOp>([=] { Floor(value); }), "Invalid floating point operation");
    EXPECT_EQ(MessageOf<EInvalidOp>([=] { Ceil(value); }), "Invalid floating point operation");
}

INSTANTIATE_TEST_SUITE_P(Values, RoundingRefuses,
                         testing::Values(NaN, Infinity, -Infinity, 0x1p63L, -0x1p63L - 1, 1e30L));

TEST(RoundToPixel, KeepsTheSideOfWhatIsFarAway) {
    EXPECT_EQ(RoundToPixel(2.5L), 2);
    EXPECT_EQ(RoundToPixel(-3.5L), -4);
    EXPECT_EQ(RoundToPixel(536870911.4L), 536870911);
    EXPECT_EQ(RoundToPixel(1e30L), 536870912);
    EXPECT_EQ(RoundToPixel(-Infinity), -536870912);
    EXPECT_EQ(RoundToPixel(NaN), 0);
}

TEST(SameValue, HasATolerancePerType) {
    EXPECT_TRUE(SameValue(1.0L, 1 + 9e-17L));
    EXPECT_FALSE(SameValue(1.0L, 1 + 3e-16L));
    EXPECT_TRUE(SameValue(1.0, 1 + 9e-13));
    EXPECT_FALSE(SameValue(1.0, 1 + 3e-12));
    EXPECT_TRUE(SameValue(1.0F, 1.00009F));
    EXPECT_FALSE(SameValue(1.0F, 1.0003F));
}

TEST(SameValue, ScalesWithTheSmallerMagnitudeAndNeverBelowItsResolution) {
    EXPECT_TRUE(SameValue(1e6, 1e6 + 9e-7));
    EXPECT_FALSE(SameValue(1e6, 1e6 + 3e-6));
    EXPECT_TRUE(SameValue(-1e6, -1e6 - 9e-7));
    EXPECT_TRUE(SameValue(0.0, 1e-12)) << "equal at exactly the tolerance";
    EXPECT_FALSE(SameValue(0.0, 1.01e-12));
    EXPECT_TRUE(SameValue(0.0F, 5e-5F)) << "small singles collapse";
}

TEST(SameValue, TakesAToleranceOfTheCaller) {
    EXPECT_TRUE(SameValue(1.0L, 1.5L, 0.5L));
    EXPECT_FALSE(SameValue(1.0L, 1.5L, 0.25L));
}

TEST(SameValue, IsFalseForWhatIsNoFiniteNumber) {
    EXPECT_FALSE(SameValue(NaN, NaN));
    EXPECT_FALSE(SameValue(NaN, 0.0L));
    EXPECT_FALSE(SameValue(Infinity, Infinity));
    EXPECT_FALSE(SameValue(Infinity, 0.0L));
}

TEST(IsZero, HasTheResolutionOfExtended) {
    EXPECT_TRUE(IsZero(-1e-16L));
    EXPECT_FALSE(IsZero(1.1e-16L));
    EXPECT_FALSE(IsZero(NaN));
}

TEST(Round, EqualsIntegerArithmeticOnHalves) {
    std::mt19937_64 random(2);
    std::uniform_int_distribution<std::int64_t> halves(-(std::int64_t{1} << 62), std::int64_t{1} << 62);
    for (int i = 0; i < 1'000'000; ++i) {
        const std::int64_t n = halves(random); // the value n / 2, exact in extended
        const std::int64_t below = n >= 0 ? n / 2 : -((-n + 1) / 2);
        const bool tie = n != below * 2;
        const std::int64_t expected = !tie || below % 2 == 0 ? below : below + 1;
        ASSERT_EQ(Round(static_cast<extended>(n) / 2), expected) << n;
    }
}

} // namespace
} // namespace lmx
