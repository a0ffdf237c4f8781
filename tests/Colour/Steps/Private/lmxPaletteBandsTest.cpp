#include <lmx/Colour/Steps/Private/lmxPaletteBands.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Colour/StepwiseChecks.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

constexpr float Inf = std::numeric_limits<float>::infinity();
constexpr float Largest = std::numeric_limits<float>::max();
constexpr float Denormal = std::numeric_limits<float>::denorm_min();

std::shared_ptr<IBasicPaletteColorCalculator> Calculator(float min, float max, int count, bool reserve) {
    std::vector<TColorKeyItem> items;
    for (int i = 0; i < count; ++i)
        items.emplace_back(QString(), 0x80000000U + static_cast<TColor32>(i));
    return TBasicPaletteColorCalculatorFactory::GetObject(TValueRange(min, max), items, reserve);
}

bool HasSteps(const IBaseColorCalculator& calculator) {
    return dynamic_cast<const TStepwiseColorCalculator&>(calculator).GetColorSteps() != nullptr;
}

TEST(PaletteBands, CutTheRangeIntoEqualParts) {
    const TPaletteBands bands(0, 10, 4);
    EXPECT_EQ(bands.GetStarts(), (std::vector<float>{0, 2.5F, 5, 7.5F}));
    EXPECT_EQ(bands.GetBand(2.5F), 1U);
    EXPECT_EQ(bands.GetBand(std::nextafter(2.5F, 0.0F)), 0U);
    EXPECT_EQ(bands.GetBand(10), 3U);
}

TEST(PaletteBands, OfAnInvertedRangeHoldNothing) {
    EXPECT_EQ(TPaletteBands(10, 0, 4).GetStarts(), std::vector<float>());
    EXPECT_FALSE(TPaletteBands(10, 0, 4).Contains(5));
}

TEST(PaletteBands, ABandWithoutValuesStartsWithTheNext) {
    const auto starts = TPaletteBands(0, 2 * Denormal, 2).GetStarts();
    EXPECT_EQ(starts, (std::vector<float>{0, Denormal}));
    EXPECT_EQ(TPaletteBands(1, 1 + 0x1p-22F, 4).GetStarts(),
              (std::vector<float>{1, 1 + 0x1p-23F, 1 + 0x1p-23F, 1 + 0x1p-22F}));
}

TEST(PaletteBands, TellNothingWhereAValueInsideRaises) {
    EXPECT_EQ(TPaletteBands(0, 10, 0).GetStarts(), std::nullopt);
    EXPECT_EQ(TPaletteBands(5, 5, 3).GetStarts(), std::nullopt);
    EXPECT_EQ(TPaletteBands(std::nanf(""), 5, 3).GetStarts(), std::nullopt);
    EXPECT_EQ(TPaletteBands(0, std::nanf(""), 3).GetStarts(), std::nullopt);
    EXPECT_EQ(TPaletteBands(0, Inf, 3).GetStarts(), std::nullopt);
    EXPECT_EQ(TPaletteBands(-Inf, 0, 3).GetStarts(), std::nullopt);
    EXPECT_EQ(TPaletteBands(0, 5 * Denormal, 4).GetStarts(), std::nullopt);
    EXPECT_EQ(TPaletteBands(0, Denormal, 3).GetStarts(), std::nullopt);
}

struct TPaletteRow {
    const char* Name;
    float Min;
    float Max;
    int Count;
};

class StepsOfAPalette : public testing::TestWithParam<TPaletteRow> {};

TEST_P(StepsOfAPalette, AreTheColorsOfTheCalculator) {
    const TPaletteRow& row = GetParam();
    tests::ExpectStepsWithTheCalculatorsColors(*Calculator(row.Min, row.Max, row.Count, false), 50000, 1);
    tests::ExpectStepsWithTheCalculatorsColors(*Calculator(row.Min, row.Max, row.Count + 1, true), 50000, 2);
    tests::ExpectStepsWithTheCalculatorsColors(*Calculator(row.Max, row.Min, row.Count, true), 1000, 3);
}

INSTANTIATE_TEST_SUITE_P(
    Palettes, StepsOfAPalette,
    testing::Values(TPaletteRow{"Five", 0, 10, 5}, TPaletteRow{"Seven", 0, 0.7F, 7}, TPaletteRow{"One", -1, 1, 1},
                    TPaletteRow{"Bytes", 0, 255, 256}, TPaletteRow{"Thirds", 0.1F, 0.7F, 3},
                    TPaletteRow{"Kelvin", 223.15F, 323.15F, 40}, TPaletteRow{"Flux", 0, 5e-5F, 16},
                    TPaletteRow{"MoreBandsThanValues", 1, 1 + 0x1p-20F, 50}, TPaletteRow{"Thousands", -50, 50, 5000},
                    TPaletteRow{"AllFloats", -Largest, Largest, 3},
                    TPaletteRow{"OneOverAllFloats", -Largest, Largest, 1}, TPaletteRow{"Denormals", 0, 1e-42F, 7},
                    TPaletteRow{"UnequalEnds", -1e-30F, 1e30F, 9}),
    [](const auto& row) { return row.param.Name; });

TEST(PaletteSteps, EqualTheCalculatorForRandomRanges) {
    tests::TRandom random(9);
    for (int round = 0; round < 100; ++round) {
        const auto min = static_cast<float>(std::ldexp(random.Unit() - 0.5, random.Below(60) - 30));
        const auto size = static_cast<float>(std::ldexp(random.Unit() + 0.5, random.Below(60) - 30));
        const auto calculator = Calculator(min, min + size, 2 + random.Below(40), round % 2 == 0);
        if (min + size > min) {
            tests::ExpectStepsWithTheCalculatorsColors(*calculator, 10000, random.Bits());
        }
    }
}

TEST(PaletteSteps, APaletteThatMayRaiseIsAskedCellByCell) {
    EXPECT_FALSE(HasSteps(*TBasicPaletteColorCalculatorFactory::GetObject()));
    EXPECT_FALSE(HasSteps(*Calculator(0, 10, 0, false)));
    EXPECT_FALSE(HasSteps(*Calculator(0, 10, 1, true)));
    EXPECT_FALSE(HasSteps(*Calculator(5, 5, 3, false)));
    EXPECT_FALSE(HasSteps(*Calculator(0, 5 * Denormal, 4, false)));
    EXPECT_TRUE(HasSteps(*Calculator(0, 10, 1, false)));
}

} // namespace
} // namespace lmx
