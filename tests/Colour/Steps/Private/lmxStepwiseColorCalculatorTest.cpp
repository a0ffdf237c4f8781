#include <lmx/Colour/Steps/Private/lmxColorStepTable.h>
#include <lmx/Colour/Steps/Private/lmxLayerOpacity.h>
#include <lmx/Colour/Steps/Private/lmxStepwiseColorCalculator.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Graphics/lmxGradient.h>
#include <tests/Colour/StepwiseChecks.h>

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace lmx {
namespace {

using TStops = std::vector<TColorStop>;

class TStepsOf final : public TStepwiseColorCalculator {
public:
    std::shared_ptr<const TColorSteps> GetColorSteps() const override { return Steps; }

    std::shared_ptr<const TColorSteps> Steps;
};

class TPiecesOf final : public TStepwiseColorCalculator {
public:
    std::shared_ptr<const TColorSteps> GetColorSteps() const override { return nullptr; }
    std::shared_ptr<const TColorPieces> GetColorPieces() const override { return Pieces; }

    std::shared_ptr<const TColorPieces> Pieces;
};

std::shared_ptr<const TColorSteps> StepsWithStarts(std::size_t count) {
    TColorSteps steps(0);
    for (std::size_t i = 1; i < count; ++i)
        steps.Add(static_cast<float>(i), static_cast<TColor32>(i));
    return std::make_shared<const TColorSteps>(std::move(steps));
}

TColor32 ColorIn(const TColorTable& table, float value) {
    TColor32 color = 0;
    table.GetColors({&value, 1}, &color);
    return color;
}

TEST(StepwiseColorCalculator, KeepsTheTableForEqualStepsAndOpacity) {
    TStepsOf calculator;
    calculator.Steps = StepsWithStarts(10);
    const auto table = calculator.GetColorTable(TLayerOpacity(1));
    EXPECT_EQ(calculator.GetColorTable(TLayerOpacity(1)), table);
    calculator.Steps = StepsWithStarts(10);
    EXPECT_EQ(calculator.GetColorTable(TLayerOpacity(1)), table);
}

TEST(StepwiseColorCalculator, MakesAnotherTableForOtherStepsOrOpacity) {
    TStepsOf calculator;
    calculator.Steps = std::make_shared<const TColorSteps>(0xFF000001U);
    const auto table = calculator.GetColorTable(TLayerOpacity(1));
    EXPECT_EQ(ColorIn(*table, 0), 0xFF000001U);
    const auto faded = calculator.GetColorTable(TLayerOpacity(0.2F));
    EXPECT_EQ(ColorIn(*faded, 0), 0x33000001U);
    calculator.Steps = std::make_shared<const TColorSteps>(0xFF000002U);
    EXPECT_EQ(ColorIn(*calculator.GetColorTable(TLayerOpacity(0.2F)), 0), 0x33000002U);
    EXPECT_EQ(ColorIn(*table, 0), 0xFF000001U); // who holds one keeps it
}

TEST(StepwiseColorCalculator, HasNoTableWithoutSteps) {
    EXPECT_EQ(TStepsOf().GetColorTable(TLayerOpacity(1)), nullptr);
}

TEST(StepwiseColorCalculator, MakesATableOfPiecesWithoutSteps) {
    TPiecesOf calculator;
    calculator.Pieces = std::make_shared<const TColorPieces>(0xFF000001U);
    const auto table = calculator.GetColorTable(TLayerOpacity(0.2F));
    EXPECT_EQ(ColorIn(*table, 0), 0x33000001U);
    calculator.Pieces = std::make_shared<const TColorPieces>(0xFF000001U);
    EXPECT_EQ(calculator.GetColorTable(TLayerOpacity(0.2F)), table);
    calculator.Pieces = std::make_shared<const TColorPieces>(0xFF000002U);
    EXPECT_EQ(ColorIn(*calculator.GetColorTable(TLayerOpacity(0.2F)), 0), 0x33000002U);
    EXPECT_EQ(ColorIn(*table, 0), 0x33000001U); // who holds one keeps it
}

// What is kept must never outlive a change. Each change here is made to a calculator that has just rendered.

/// Colours of some values, after a comparison with the calculator's own.
std::vector<TColor32> ColorsShown(const IBaseColorCalculator& calculator) {
    const std::vector<float> values = {-5, 0, 1, 4, 5, 6, 9, 10, 14, 15, 20, 25, std::nanf("")};
    tests::ExpectTheCalculatorsColors(calculator, values);
    std::vector<TColor32> colors;
    for (float value : values)
        colors.push_back(calculator.GetColor(value));
    return colors;
}

template<class Calculator, class Change>
void ExpectAChangeToShow(Calculator& calculator, Change&& change) {
    const std::vector<TColor32> before = ColorsShown(calculator);
    EXPECT_EQ(ColorsShown(calculator), before);
    change();
    EXPECT_NE(ColorsShown(calculator), before);
}

std::shared_ptr<IGradientColorCalculator> Gradient(float min, float max) {
    return TGradientColorCalculatorFactory::GetObject(
        min, max, 0xFF000001U, TGradientFactory::GetObject(TStops{{0, 0xFF102030U}, {1, 0xFFF0E0D0U}}));
}

TEST(KeptColors, SeeEachChangeOfAGradient) {
    const auto calculator = Gradient(0, 10);
    ExpectAChangeToShow(*calculator, [&] { calculator->SetMinVal(3); });
    ExpectAChangeToShow(*calculator, [&] { calculator->SetMaxVal(8); });
    ExpectAChangeToShow(*calculator, [&] { calculator->SetDefaultColor(0xFF000002U); });
    ExpectAChangeToShow(*calculator, [&] { calculator->GetGradient()->GetColorStops().Set(0, {0, 0xFF000000U}); });
    ExpectAChangeToShow(*calculator, [&] { calculator->GetGradient()->GetColorStops().Set(1, {0.4, 0xFFF0E0D0U}); });
    ExpectAChangeToShow(*calculator, [&] { calculator->GetGradient()->GetColorStops().pop_back(); });
    ExpectAChangeToShow(*calculator, [&] { calculator->SetGradient(Gradient(0, 1)->GetGradient()); });
    ExpectAChangeToShow(*calculator, [&] { calculator->SetMinVal(8); }); // collapsed
}

TEST(KeptColors, SeeEachChangeOfGradientsInParts) {
    const auto first = Gradient(0, 10);
    const auto calculator =
        TMultipartGradientColorCalculatorFactory::GetObject(0, 20, std::vector{first, Gradient(10, 15)});
    ExpectAChangeToShow(*calculator, [&] { first->GetGradient()->GetColorStops().Set(0, {0, 0xFF000000U}); });
    ExpectAChangeToShow(*calculator, [&] { first->SetMaxVal(8); });
    ExpectAChangeToShow(*calculator, [&] { calculator->SetMinVal(2); });
    ExpectAChangeToShow(*calculator, [&] { calculator->SetMaxVal(14.5F); });
    ExpectAChangeToShow(*calculator, [&] { calculator->GetGradients().push_back(Gradient(8, 10)); });
    ExpectAChangeToShow(
        *calculator, [&] { calculator->GetGradients().insert(calculator->GetGradients().begin(), Gradient(0, 20)); });
    ExpectAChangeToShow(*calculator, [&] { calculator->GetGradients().clear(); });
}

TEST(KeptColors, OfAPartThatHasToBeAskedAreAskedFor) {
    const auto part = Gradient(0, 10);
    const auto calculator = TMultipartGradientColorCalculatorFactory::GetObject(0, 20, std::vector{part});
    const std::shared_ptr<IGradient> gradient = part->GetGradient();
    ColorsShown(*calculator);
    part->SetGradient(nullptr);
    EXPECT_EQ(dynamic_cast<const TStepwiseColorCalculator&>(*calculator).GetColorSteps(), nullptr);
    part->SetGradient(gradient);
    ColorsShown(*calculator);
}

TEST(KeptColors, SeeEachChangeOfClasses) {
    const auto classes = TColorClassesFactory::GetObject();
    classes->GetClasses().Add(std::make_unique<TColorClass>(QString(), 0.0F, 5.0F, 0xFF000001U));
    const auto calculator = TColorClassCalculatorFactory::GetObject(classes);
    ExpectAChangeToShow(*calculator, [&] { classes->GetClasses()[0]->SetColor(0xFF000002U); });
    ExpectAChangeToShow(*calculator, [&] { classes->GetClasses()[0]->SetMaxValue(9); });
    ExpectAChangeToShow(*calculator, [&] { calculator->SetOutOfRangePolicy(TOutOfRangePolicy::orpClosestMatch); });
    ExpectAChangeToShow(*calculator, [&] {
        classes->GetClasses().Add(std::make_unique<TColorClass>(QString(), 10.0F, 15.0F, 0xFF000003U));
    });
}

TEST(KeptColors, SeeEachChangeOfAPalette) {
    const std::vector<TColorKeyItem> items = {
        {QString(), 0xFF000001U}, {QString(), 0xFF000002U}, {QString(), 0xFF000003U}};
    const auto calculator = TBasicPaletteColorCalculatorFactory::GetObject(TValueRange(0, 10), items, false);
    ExpectAChangeToShow(*calculator, [&] { calculator->SetMaxVal(20); });
    ExpectAChangeToShow(*calculator, [&] { calculator->SetReserveFirstColorForNoData(true); });
    ExpectAChangeToShow(*calculator, [&] { calculator->GetColorKey()->GetColors()[1].Color = 0xFF000009U; });
}

TEST(KeptColors, AreOfEachCalculatorAlone) {
    const auto calculator = Gradient(0, 10);
    const std::vector<TColor32> colors = ColorsShown(*calculator);
    const auto copy = calculator->Clone(0, 5);
    EXPECT_NE(ColorsShown(*copy), colors);
    EXPECT_EQ(ColorsShown(*calculator), colors);
}

TEST(KeptColors, StayTheSameStepsWhereNothingChanges) {
    const auto calculator =
        TMultipartGradientColorCalculatorFactory::GetObject(0, 20, std::vector{Gradient(0, 10), Gradient(10, 20)});
    const auto& stepwise = dynamic_cast<const TStepwiseColorCalculator&>(*calculator);
    EXPECT_EQ(stepwise.GetColorSteps(), stepwise.GetColorSteps());
    EXPECT_EQ(stepwise.GetColorTable(TLayerOpacity(1)), stepwise.GetColorTable(TLayerOpacity(1)));
}

} // namespace
} // namespace lmx
