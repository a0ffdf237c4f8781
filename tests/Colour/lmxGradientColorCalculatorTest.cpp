#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Graphics/lmxGradientSource.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lmx {
namespace {

using tests::MessageOf;

constexpr float Inf = std::numeric_limits<float>::infinity();
const float NaN = std::nanf("");
constexpr TColor32 First = 0xFF102030U;
constexpr TColor32 Last = 0xFF90A0B0U;
constexpr TColor32 Default = 0xFFABCDEFU;

std::shared_ptr<IGradient> TestGradient() {
    return TGradientFactory::GetObject(std::vector<TColorStop>{{0, First}, {1, Last}});
}

std::shared_ptr<IGradientColorCalculator> Calculator(float min, float max) {
    return TGradientColorCalculatorFactory::GetObject(min, max, Default, TestGradient());
}

std::shared_ptr<IGradientColorCalculator> AsGradient(const std::shared_ptr<IBaseColorCalculator>& calculator) {
    return std::dynamic_pointer_cast<IGradientColorCalculator>(calculator);
}

struct TValueRow {
    const char* Name;
    float Min;
    float Max;
    float Value;
    TColor32 Color;
};

class GradientColor : public testing::TestWithParam<TValueRow> {};

TEST_P(GradientColor, OfAValue) {
    const TValueRow& row = GetParam();
    EXPECT_EQ(Calculator(row.Min, row.Max)->GetColor(row.Value), row.Color);
}

constexpr float Below10 = 0x1.3ffffep3F;
constexpr float Above20 = 0x1.400002p4F;
constexpr float OneUp = 1 + std::numeric_limits<float>::epsilon();

INSTANTIATE_TEST_SUITE_P(
    Values, GradientColor,
    testing::Values(
        TValueRow{"LowEnd", 10, 20, 10, First}, TValueRow{"HighEnd", 10, 20, 20, Last},
        TValueRow{"Middle", 10, 20, 15, 0xFF506070U}, TValueRow{"Above", 10, 20, 20.0001F, Default},
        TValueRow{"Below", 10, 20, 9.9999F, Default}, TValueRow{"JustBelow", 10, 20, Below10, Default},
        TValueRow{"JustAbove", 10, 20, Above20, Default}, TValueRow{"NotANumber", 10, 20, NaN, Default},
        TValueRow{"Infinity", 10, 20, Inf, Default}, TValueRow{"MinusInfinity", 10, 20, -Inf, Default},
        TValueRow{"PositionRoundsToOne", -1e8F, 1, OneUp, Last}, TValueRow{"NegativeZero", 0, 1, -0.0F, First},
        TValueRow{"SmallestBelow", 0, 1, -std::numeric_limits<float>::denorm_min(), Default},
        TValueRow{"PositionVanishes", 0, 1e10F, -std::numeric_limits<float>::denorm_min(), First},
        TValueRow{"InvertedLow", 20, 10, 20, First}, TValueRow{"InvertedHigh", 20, 10, 10, Last},
        TValueRow{"InvertedOutside", 20, 10, 20.1F, Default}, TValueRow{"Collapsed", 5, 5, 1000, Last},
        TValueRow{"CollapsedNotANumber", 5, 5, NaN, Last}, TValueRow{"CollapsedAtZero", 0, 0, -7, Last},
        TValueRow{"CollapsedSignedZeros", -0.0F, 0, 3, Last}, TValueRow{"CollapsedInLastBits", 1, OneUp, -3, Last},
        TValueRow{"CollapsedWithinFourBits", 1, 1 + 4 * (OneUp - 1), -3, Last},
        TValueRow{"NotCollapsedBeyond", 1, 1 + 5 * (OneUp - 1), -3, Default},
        TValueRow{"TinyRangeLow", 0, 5e-5F, 0, First}, TValueRow{"TinyRangeHigh", 0, 5e-5F, 5e-5F, Last},
        TValueRow{"TinyRangeOutside", 0, 5e-5F, 6e-5F, Default}, TValueRow{"DenormalRange", 0, 1e-44F, 1e-44F, Last},
        TValueRow{"HugeRange", -3e38F, 3e38F, 3e38F, Last}, TValueRow{"HugeRangeMiddle", -3e38F, 3e38F, 0, 0xFF506070U},
        TValueRow{"MinIsNotANumber", NaN, 1, 0, Default}, TValueRow{"MaxIsNotANumber", 0, NaN, 0, Default},
        TValueRow{"EndlessTop", 0, Inf, 1e30F, First}, TValueRow{"EndlessTopBelow", 0, Inf, -1e30F, First},
        TValueRow{"EndlessBottom", -Inf, 0, 0, Default}, TValueRow{"EndlessBoth", -Inf, Inf, 0, Default},
        TValueRow{"CollapsedAtInfinity", Inf, Inf, 0, Last}),
    [](const auto& row) { return row.param.Name; });

TEST(GradientColorCalculator, GivesTheAlphaOfTheGradient) {
    const auto gradient = TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0x00000000U}, {1, 0x80FFFFFFU}});
    const auto calculator = TGradientColorCalculatorFactory::GetObject(0.0F, 1.0F, gradient);
    EXPECT_EQ(calculator->GetColor(1), 0x80FFFFFFU);
    EXPECT_EQ(calculator->GetColor(0.5F), 0x40808080U);
}

TEST(GradientColorCalculator, AnEmptyOneHasNeitherRangeNorGradient) {
    const auto calculator = TGradientColorCalculatorFactory::GetObject();
    EXPECT_EQ(calculator->GetMinVal(), 0);
    EXPECT_EQ(calculator->GetMaxVal(), 0);
    EXPECT_EQ(calculator->GetGradient(), nullptr);
    EXPECT_EQ(calculator->GetDefaultColor(), 0U);
}

TEST(GradientColorCalculator, WithoutADefaultColorTheOutsideIsTransparent) {
    EXPECT_EQ(TGradientColorCalculatorFactory::GetObject(0.0F, 1.0F, TestGradient())->GetColor(2), 0U);
    const auto calculator = TGradientColorCalculatorFactory::GetObject(TValueRange(0.1, 1), TestGradient());
    EXPECT_EQ(calculator->GetMinVal(), 0.1F);
    EXPECT_EQ(calculator->GetMaxVal(), 1.0F);
    EXPECT_EQ(calculator->GetDefaultColor(), 0U);
}

TEST(GradientColorCalculator, SharesTheGradientItIsGiven) {
    const auto gradient = TestGradient();
    const auto calculator = TGradientColorCalculatorFactory::GetObject(0.0F, 1.0F, gradient);
    EXPECT_EQ(calculator->GetGradient(), gradient);
    gradient->GetColorStops().Set(0, {0, Default});
    EXPECT_EQ(calculator->GetColor(0), Default);
}

TEST(GradientColorCalculator, AsksForAGradientWhereItNeedsOne) {
    const auto calculator = TGradientColorCalculatorFactory::GetObject(0.0F, 1.0F, Default, nullptr);
    EXPECT_EQ(calculator->GetColor(2), Default);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { calculator->GetColor(0.5F); }), "Gradient not specified");
    EXPECT_EQ(MessageOf<EInvalidOperation>([] { TGradientColorCalculatorFactory::GetObject()->GetColor(0); }),
              "Gradient not specified");
}

TEST(GradientColorCalculator, SettersChangeWhatItGives) {
    const auto calculator = TGradientColorCalculatorFactory::GetObject();
    calculator->SetGradient(TestGradient());
    calculator->SetMinVal(3);
    calculator->SetMaxVal(4);
    calculator->SetDefaultColor(Default);
    EXPECT_EQ(calculator->GetColor(3), First);
    EXPECT_EQ(calculator->GetColor(4), Last);
    EXPECT_EQ(calculator->GetColor(5), Default);
}

TEST(GradientColorCalculator, ACloneKeepsTheDefaultColorAndCopiesTheGradient) {
    const auto source = Calculator(1, 2);
    for (const auto& clone : {AsGradient(source->Clone()), TGradientColorCalculatorFactory::GetObject(source)}) {
        ASSERT_NE(clone, nullptr);
        EXPECT_EQ(clone->GetDefaultColor(), Default);
        EXPECT_EQ(clone->GetMinVal(), 1);
        EXPECT_EQ(clone->GetMaxVal(), 2);
        source->GetGradient()->GetColorStops().Set(0, {0, 1});
        EXPECT_EQ(clone->GetColor(1), First);
        source->GetGradient()->GetColorStops().Set(0, {0, First});
    }
}

TEST(GradientColorCalculator, ACloneWithAnotherRangeResetsTheDefaultColor) {
    const auto source = Calculator(1, 2);
    const auto clone = AsGradient(source->Clone(0, 100));
    ASSERT_NE(clone, nullptr);
    EXPECT_EQ(clone->GetDefaultColor(), 0U);
    EXPECT_EQ(clone->GetMinVal(), 0);
    EXPECT_EQ(clone->GetMaxVal(), 100);
    EXPECT_NE(clone->GetGradient(), source->GetGradient());
    EXPECT_EQ(clone->GetColor(100), Last);
    EXPECT_EQ(source->GetDefaultColor(), Default);
}

TEST(GradientColorCalculator, ACloneWithoutAGradientHasNone) {
    const auto source = TGradientColorCalculatorFactory::GetObject();
    EXPECT_EQ(AsGradient(source->Clone())->GetGradient(), nullptr);
    EXPECT_EQ(AsGradient(source->Clone(0, 1))->GetGradient(), nullptr);
}

TEST(GradientColorCalculator, ANilSourceIsRefused) {
    EXPECT_EQ(MessageOf<EExArgumentNilException>(
                  [] { TGradientColorCalculatorFactory::GetObject(std::shared_ptr<IGradientColorCalculator>()); }),
              "TGradientColorCalculatorFactory.GetObject: argument source is nil");
}

/// An editor that holds a gradient from 2 to 7.1.
class TEditor : public IGradientSource {
public:
    std::shared_ptr<IGradient> GetGradient() const override { return Gradient; }
    double GetLowValue() const override { return 2; }
    double GetHighValue() const override { return 7.1; }

    std::shared_ptr<IGradient> Gradient =
        TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0xFF000000}, {1, 0xFFFFFFFF}});
};

TEST(GradientColorCalculator, TakesGradientAndRangeOfAnEditor) {
    const TEditor editor;
    const auto calculator = TGradientColorCalculatorFactory::GetObject(&editor);
    EXPECT_EQ(calculator->GetGradient(), editor.Gradient);
    EXPECT_EQ(calculator->GetMinVal(), 2.0F);
    EXPECT_EQ(calculator->GetMaxVal(), 7.1F);
    EXPECT_EQ(calculator->GetDefaultColor(), 0U);
    EXPECT_EQ(MessageOf<EExArgumentNilException>(
                  [] { TGradientColorCalculatorFactory::GetObject(static_cast<const IGradientSource*>(nullptr)); }),
              "TGradientColorCalculatorFactory.GetObject: argument editor is nil");
}

} // namespace
} // namespace lmx
