#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Colour/StepwiseChecks.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx {
namespace {

using tests::MessageOf;

constexpr float Inf = std::numeric_limits<float>::infinity();
const float NaN = std::nanf("");
constexpr float Denormal = std::numeric_limits<float>::denorm_min();

/// A key whose entry i has the colour 100 + i.
std::vector<TColorKeyItem> Items(int count) {
    std::vector<TColorKeyItem> items;
    for (int i = 0; i < count; ++i)
        items.emplace_back(QString(), static_cast<TColor32>(100 + i));
    return items;
}

std::shared_ptr<IBasicPaletteColorCalculator> Calculator(float min, float max, int count, bool reserve) {
    return TBasicPaletteColorCalculatorFactory::GetObject(TValueRange(min, max), Items(count), reserve);
}

struct TBandRow {
    const char* Name;
    float Min;
    float Max;
    int Count;
    bool Reserve;
    float Value;
    TColor32 Color;
};

class PaletteColor : public testing::TestWithParam<TBandRow> {};

TEST_P(PaletteColor, OfAValue) {
    const TBandRow& row = GetParam();
    EXPECT_EQ(Calculator(row.Min, row.Max, row.Count, row.Reserve)->GetColor(row.Value), row.Color);
}

INSTANTIATE_TEST_SUITE_P(
    Values, PaletteColor,
    testing::Values(
        TBandRow{"LowEnd", 0, 10, 5, false, 0, 100}, TBandRow{"EndOfABand", 0, 10, 5, false, 1.99F, 100},
        TBandRow{"StartOfABand", 0, 10, 5, false, 2, 101}, TBandRow{"HighEnd", 0, 10, 5, false, 10, 104},
        TBandRow{"Above", 0, 10, 5, false, 10.1F, 0}, TBandRow{"Below", 0, 10, 5, false, -Denormal, 0},
        TBandRow{"NotANumber", 0, 10, 5, false, NaN, 0}, TBandRow{"Infinity", 0, 10, 5, false, Inf, 0},
        TBandRow{"NegativeZero", 0, 10, 5, false, -0.0F, 100}, TBandRow{"ReservedLowEnd", 0, 10, 5, true, 0, 101},
        TBandRow{"ReservedEndOfABand", 0, 10, 5, true, 2.4999F, 101},
        TBandRow{"ReservedStartOfABand", 0, 10, 5, true, 2.5F, 102},
        TBandRow{"ReservedHighEnd", 0, 10, 5, true, 10, 104}, TBandRow{"ReservedBelow", 0, 10, 5, true, -1, 100},
        TBandRow{"ReservedAbove", 0, 10, 5, true, 10.1F, 100}, TBandRow{"ReservedNotANumber", 0, 10, 5, true, NaN, 100},
        TBandRow{"OneEntry", 0, 10, 1, false, 10, 100}, TBandRow{"OneReservedEntryOutside", 0, 10, 1, true, 11, 100},
        TBandRow{"Inverted", 10, 0, 5, false, 5, 0}, TBandRow{"InvertedReserved", 10, 0, 5, true, 5, 100},
        TBandRow{"CollapsedOutside", 5, 5, 5, false, 6, 0},
        TBandRow{"StepRoundedDown", 0, 0.7F, 7, false, 0.7F, 106},              // 0.7 / step is above 7
        TBandRow{"AHairBelowABand", 0x1p-30F, 0x1p26F, 4, false, 0x1p24F, 100}, // 1 - 2^-54 bands from the low end
        TBandRow{"HugeRange", -3e38F, 3e38F, 4, false, 1, 102}, TBandRow{"EndlessTop", 0, Inf, 4, false, 1e38F, 100},
        TBandRow{"StepBeyondSingles", -3e38F, 3e38F, 1, false, 3e38F, 100},
        TBandRow{"MinNotANumberOutside", NaN, 10, 4, false, 11, 0}),
    [](const auto& row) { return row.param.Name; });

TEST(BasicPaletteColorCalculator, NeedsAColorKeyWithEntries) {
    const auto calculator = TBasicPaletteColorCalculatorFactory::GetObject();
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { calculator->GetColor(-1); }), "ColorKey not specified");
    calculator->SetColorKey(TColorKeyFactory::GetObject());
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { calculator->GetColor(-1); }), "ColorKey contains no entries");
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { calculator->GetColor(NaN); }), "ColorKey contains no entries");
}

TEST(BasicPaletteColorCalculator, OneReservedEntryLeavesNoBands) {
    EXPECT_EQ(MessageOf<EZeroDivide>([] { Calculator(0, 10, 1, true)->GetColor(5); }),
              "Floating point division by zero");
    EXPECT_EQ(MessageOf<EZeroDivide>([] { Calculator(5, 5, 1, true)->GetColor(5); }),
              "Floating point division by zero");
}

TEST(BasicPaletteColorCalculator, ARangeOfOneValueHasNoBandForIt) {
    EXPECT_EQ(MessageOf<EInvalidOp>([] { Calculator(5, 5, 3, false)->GetColor(5); }),
              "Invalid floating point operation");
    EXPECT_EQ(MessageOf<EInvalidOp>([] { Calculator(5, 5, 3, true)->GetColor(5); }),
              "Invalid floating point operation");
}

TEST(BasicPaletteColorCalculator, BoundsThatAreNoFiniteNumbersGiveNoBand) {
    EXPECT_EQ(MessageOf<EInvalidOp>([] { Calculator(NaN, 10, 3, false)->GetColor(5); }),
              "Invalid floating point operation");
    EXPECT_EQ(MessageOf<EInvalidOp>([] { Calculator(0, NaN, 3, false)->GetColor(5); }),
              "Invalid floating point operation");
    EXPECT_EQ(MessageOf<EInvalidOp>([] { Calculator(-Inf, 0, 3, false)->GetColor(0); }),
              "Invalid floating point operation");
    EXPECT_EQ(MessageOf<EInvalidOp>([] { Calculator(0, Inf, 3, false)->GetColor(Inf); }),
              "Invalid floating point operation");
}

TEST(BasicPaletteColorCalculator, AStepBelowTheSinglesIsADivisionByZero) {
    const auto calculator = Calculator(0, Denormal, 3, false);
    EXPECT_EQ(MessageOf<EZeroDivide>([&] { calculator->GetColor(Denormal); }), "Floating point division by zero");
    EXPECT_EQ(MessageOf<EInvalidOp>([&] { calculator->GetColor(0); }), "Invalid floating point operation");
}

TEST(BasicPaletteColorCalculator, NeverReadsPastTheKey) {
    const auto calculator = Calculator(0, 5 * Denormal, 4, false); // a step of 1.25 rounds to 1
    EXPECT_EQ(calculator->GetColor(3 * Denormal), 103U);
    EXPECT_EQ(calculator->GetColor(4 * Denormal), 103U);
    EXPECT_EQ(MessageOf<EArgumentException>([&] { calculator->GetColor(5 * Denormal); }), "Color index out of range");
}

TEST(BasicPaletteColorCalculator, AnEmptyOneHasNothingSet) {
    const auto calculator = TBasicPaletteColorCalculatorFactory::GetObject();
    EXPECT_EQ(calculator->GetColorKey(), nullptr);
    EXPECT_FALSE(calculator->GetReserveFirstColorForNoData());
    EXPECT_EQ(calculator->GetMinVal(), 0);
    EXPECT_EQ(calculator->GetMaxVal(), 0);
}

TEST(BasicPaletteColorCalculator, SettersChangeWhatItGives) {
    const auto calculator = TBasicPaletteColorCalculatorFactory::GetObject();
    const auto key = TColorKeyFactory::GetObject(Items(3));
    calculator->SetColorKey(key);
    calculator->SetMinVal(1);
    calculator->SetMaxVal(4);
    EXPECT_EQ(calculator->GetColor(2), 101U);
    calculator->SetReserveFirstColorForNoData(true);
    EXPECT_EQ(calculator->GetColor(2), 101U);
    EXPECT_EQ(calculator->GetColor(5), 100U);
    key->GetColors()[1].Color = 7;
    EXPECT_EQ(calculator->GetColor(2), 7U);
}

TEST(BasicPaletteColorCalculator, ClonesHaveAKeyOfTheirOwn) {
    const auto source = Calculator(0, 10, 5, true);
    const auto factoryCopy = TBasicPaletteColorCalculatorFactory::GetObject(source);
    const auto clone = std::dynamic_pointer_cast<IBasicPaletteColorCalculator>(source->Clone());
    const auto ranged = std::dynamic_pointer_cast<IBasicPaletteColorCalculator>(source->Clone(0, 100));
    source->GetColorKey()->GetColors().clear();
    for (const auto& copy : {factoryCopy, clone}) {
        EXPECT_EQ(copy->GetColor(10), 104U);
        EXPECT_EQ(copy->GetColor(11), 100U);
        EXPECT_EQ(copy->GetMinVal(), 0);
        EXPECT_EQ(copy->GetMaxVal(), 10);
    }
    EXPECT_EQ(ranged->GetColor(10), 101U);
    EXPECT_EQ(ranged->GetColor(101), 100U);
    EXPECT_TRUE(ranged->GetReserveFirstColorForNoData());
}

TEST(BasicPaletteColorCalculator, ACloneWithoutAKeyHasNone) {
    const auto clone = TBasicPaletteColorCalculatorFactory::GetObject()->Clone();
    EXPECT_EQ(std::dynamic_pointer_cast<IBasicPaletteColorCalculator>(clone)->GetColorKey(), nullptr);
}

TEST(BasicPaletteColorCalculator, ANilSourceIsRefused) {
    EXPECT_EQ(MessageOf<EExArgumentNilException>([] {
                  TBasicPaletteColorCalculatorFactory::GetObject(std::shared_ptr<IBasicPaletteColorCalculator>());
              }),
              "TBasicPaletteColorCalculatorFactory.GetObject: argument source is nil");
}

TEST(BasicPaletteColorCalculator, IsMadeOfAListInBraces) {
    const auto calculator =
        TBasicPaletteColorCalculatorFactory::GetObject({0, 10}, {{QStringLiteral("a"), 7}, {QString(), 8}}, false);
    EXPECT_EQ(calculator->GetColor(4), 7U);
    EXPECT_EQ(calculator->GetColor(10), 8U);
}

TEST(BasicPaletteColorCalculator, PicturesAreRightForManyEntries) {
    for (const int count : {66000, 100000}) {
        std::vector<TColorKeyItem> items;
        for (int i = 0; i < count; ++i)
            items.emplace_back(QString(), 0xFF000000U + static_cast<TColor32>(i) * 70001);
        const auto calculator = TBasicPaletteColorCalculatorFactory::GetObject({-50, 50}, items, true);
        tests::ExpectTheCalculatorsColors(*calculator, tests::TellingValues(*calculator, nullptr, 50000, 6));
    }
}

} // namespace
} // namespace lmx
