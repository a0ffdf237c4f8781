#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRasterMapLayer.h>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

/// Counts what the base class asks of a concrete layer.
class TCountingLayer : public TRasterMapLayer {
public:
    using TRasterMapLayer::TRasterMapLayer;
    using TRasterMapLayer::UpdateDuplicateRasterMapLayer;

    QString GetLayerTypeName() const override { return QStringLiteral("Counting"); }
    void Render() override {
        ++Renders;
        EXPECT_FALSE(GetIsReadyToDraw());
        EXPECT_EQ(GetBitmap(), nullptr);
        SetBitmap(std::make_unique<TBitmap32>(1, 1));
    }
    void CreateLegendComponent() override { ++Legends; }

    int Renders = 0;
    int Legends = 0;
};

/// A calculator without a range.
class TOneColor : public IBaseColorCalculator {
public:
    TColor32 GetColor(float) const override { return 0xFF123456; }
    std::shared_ptr<IBaseColorCalculator> Clone() const override { return std::make_shared<TOneColor>(); }
};

std::shared_ptr<IGradientColorCalculator> OpaqueGradient() {
    return TGradientColorCalculatorFactory::GetObject(
        0, 10, 0xFF00FF00, TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0xFF000000}, {1, 0xFFFFFFFF}}));
}

class RasterMapLayer : public testing::Test {
protected:
    RasterMapLayer() {
        FInvalidated = Layer.GetOnInvalidated().Add([this](TBaseMapLayer*) { ++Invalidations; });
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TCountingLayer Layer{Manager};
    int Invalidations = 0;

private:
    TSubscription FInvalidated;
};

TEST_F(RasterMapLayer, BeginsOpaqueAndEmpty) {
    EXPECT_EQ(Layer.GetOpacity(), 255);
    EXPECT_EQ(Layer.GetBitmap(), nullptr);
    EXPECT_EQ(Layer.GetColorCalc(), nullptr);
    EXPECT_FALSE(Layer.GetClimateVariable().GetHasValue());
    EXPECT_TRUE(Layer.GetValueRange().Equals(TValueRange::Empty()));
    EXPECT_FALSE(Layer.GetIsReadyToDraw());
}

TEST_F(RasterMapLayer, ABitmapMakesItReady) {
    auto bitmap = std::make_unique<TBitmap32>(2, 3);
    const TBitmap32* address = bitmap.get();
    Layer.SetBitmap(std::move(bitmap));
    EXPECT_EQ(Layer.GetBitmap(), address);
    EXPECT_TRUE(Layer.GetIsReadyToDraw());
}

TEST_F(RasterMapLayer, NoBitmapLeavesTheReadyFlagAsItIs) {
    Layer.SetBitmap(std::make_unique<TBitmap32>(1, 1));
    Layer.SetBitmap(nullptr);
    EXPECT_EQ(Layer.GetBitmap(), nullptr);
    EXPECT_TRUE(Layer.GetIsReadyToDraw());
}

TEST_F(RasterMapLayer, DeletingTheBitmapLeavesTheReadyFlagAsItIs) {
    Layer.SetBitmap(std::make_unique<TBitmap32>(1, 1));
    Layer.DeleteBitmap();
    EXPECT_EQ(Layer.GetBitmap(), nullptr);
    EXPECT_TRUE(Layer.GetIsReadyToDraw());
}

TEST_F(RasterMapLayer, InvalidateBeforeTheFirstRenderDoesNothing) {
    Layer.Invalidate();
    EXPECT_EQ(Layer.Renders, 0);
    EXPECT_EQ(Invalidations, 0);
}

TEST_F(RasterMapLayer, InvalidateRendersAgain) {
    Layer.Render();
    Layer.Invalidate();
    EXPECT_EQ(Layer.Renders, 2);
    EXPECT_EQ(Invalidations, 1);
    EXPECT_TRUE(Layer.GetIsReadyToDraw());
}

TEST_F(RasterMapLayer, ANewOpacityRendersAgain) {
    Layer.Render();
    Layer.SetOpacity(100);
    EXPECT_EQ(Layer.GetOpacity(), 100);
    EXPECT_EQ(Layer.Renders, 2);
    EXPECT_EQ(Invalidations, 1);
}

TEST_F(RasterMapLayer, ThePresentOpacityDoesNothing) {
    Layer.Render();
    Layer.SetOpacity(255);
    EXPECT_EQ(Layer.Renders, 1);
    EXPECT_EQ(Invalidations, 0);
}

TEST_F(RasterMapLayer, OpacityBeforeTheFirstRenderIsStoredOnly) {
    Layer.SetOpacity(100);
    EXPECT_EQ(Layer.GetOpacity(), 100);
    EXPECT_EQ(Layer.Renders, 0);
}

TEST_F(RasterMapLayer, AnotherCalculatorRendersAgainAndMakesALegend) {
    const auto calculator = OpaqueGradient();
    Layer.Render();
    Layer.SetColorCalc(calculator);
    Layer.SetColorCalc(calculator);
    EXPECT_EQ(Layer.Renders, 2);
    EXPECT_EQ(Layer.Legends, 1);
}

TEST_F(RasterMapLayer, AnEqualValueRangeKeepsTheCalculator) {
    const auto calculator = OpaqueGradient();
    Layer.SetColorCalc(calculator);
    Layer.SetValueRange({0, 5});
    const auto replaced = Layer.GetColorCalc();
    EXPECT_NE(replaced, calculator);
    Layer.SetValueRange({0, 5});
    EXPECT_EQ(Layer.GetColorCalc(), replaced);
}

TEST_F(RasterMapLayer, AnotherValueRangeReplacesAGradientAndResetsItsDefaultColor) {
    const auto calculator = OpaqueGradient();
    Layer.SetColorCalc(calculator);
    Layer.SetValueRange({0.1, 20});
    const auto replaced = std::dynamic_pointer_cast<IGradientColorCalculator>(Layer.GetColorCalc());
    ASSERT_NE(replaced, nullptr);
    EXPECT_EQ(replaced->GetMinVal(), 0.1F);
    EXPECT_EQ(replaced->GetMaxVal(), 20.0F);
    EXPECT_EQ(replaced->GetDefaultColor(), 0U);
    EXPECT_EQ(calculator->GetMaxVal(), 10.0F);
    EXPECT_EQ(calculator->GetDefaultColor(), 0xFF00FF00U);
}

TEST_F(RasterMapLayer, AnotherValueRangeKeepsTheKeyOfAPalette) {
    const auto palette = TBasicPaletteColorCalculatorFactory::GetObject(
        TValueRange(0, 1), std::vector<TColorKeyItem>{{QStringLiteral("a"), 0xFF000001}}, true);
    Layer.SetColorCalc(palette);
    Layer.SetValueRange({5, 6});
    const auto replaced = std::dynamic_pointer_cast<IBasicPaletteColorCalculator>(Layer.GetColorCalc());
    ASSERT_NE(replaced, nullptr);
    EXPECT_EQ(replaced->GetColorKey()->GetColors().at(0).Name, QStringLiteral("a"));
    EXPECT_TRUE(replaced->GetReserveFirstColorForNoData());
}

TEST_F(RasterMapLayer, ACalculatorWithoutRangeStays) {
    const auto calculator = std::make_shared<TOneColor>();
    Layer.SetColorCalc(calculator);
    Layer.SetValueRange({1, 2});
    EXPECT_EQ(Layer.GetColorCalc(), calculator);
    EXPECT_TRUE(Layer.GetValueRange().Equals({1, 2}));
}

TEST_F(RasterMapLayer, AValueRangeWithoutCalculatorIsStored) {
    Layer.SetValueRange({1, 2});
    EXPECT_TRUE(Layer.GetValueRange().Equals({1, 2}));
    EXPECT_EQ(Layer.GetColorCalc(), nullptr);
}

TEST_F(RasterMapLayer, ADuplicateTakesVariableRangeAndACloneButNotTheOpacity) {
    Layer.SetLayerName(QStringLiteral("Rain"));
    Layer.SetClimateVariable(TClimateVariable::cvPr);
    Layer.SetColorCalc(OpaqueGradient());
    Layer.SetValueRange({1, 2});
    Layer.SetOpacity(100);
    TCountingLayer target(Manager);
    Layer.UpdateDuplicateRasterMapLayer(&target);
    EXPECT_EQ(target.GetLayerName(), QStringLiteral("Rain"));
    EXPECT_EQ(target.GetClimateVariable(), Layer.GetClimateVariable());
    EXPECT_TRUE(target.GetValueRange().Equals({1, 2}));
    EXPECT_EQ(target.GetOpacity(), 255);
    ASSERT_NE(target.GetColorCalc(), nullptr);
    EXPECT_NE(target.GetColorCalc(), Layer.GetColorCalc());
    EXPECT_EQ(target.Renders, 0);
    EXPECT_EQ(target.Legends, 0);
}

TEST_F(RasterMapLayer, ADuplicateOfALayerWithoutCalculatorHasNone) {
    TCountingLayer target(Manager);
    Layer.UpdateDuplicateRasterMapLayer(&target);
    EXPECT_EQ(target.GetColorCalc(), nullptr);
}

TEST_F(RasterMapLayer, AnUpdateDoesNotHoldItsInvalidationsBack) {
    Layer.Render();
    Layer.BeginUpdate();
    Layer.Invalidate();
    EXPECT_EQ(Layer.Renders, 2);
    Layer.EndUpdate();
    EXPECT_EQ(Layer.Renders, 2);
}

TEST(RasterMapLayerFreed, BySomebodyWhoIsToldThatItIsNotReady) {
    const auto manager = TLayerManagerFactory::GetObject();
    auto layer = std::make_unique<TCountingLayer>(manager);
    layer->SetBitmap(std::make_unique<TBitmap32>(1, 1));
    const TSubscription freed = layer->GetOnReadyToDrawChanged().Add([&](TBaseMapLayer*) { layer.reset(); });
    layer->SetColorCalc(std::make_shared<TOneColor>());
    EXPECT_EQ(layer, nullptr);
}

TEST(RasterMapLayerFreed, BySomebodyWhoIsToldThatItIsInvalidated) {
    const auto manager = TLayerManagerFactory::GetObject();
    auto layer = std::make_unique<TCountingLayer>(manager);
    layer->SetBitmap(std::make_unique<TBitmap32>(1, 1));
    const TSubscription freed = layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { layer.reset(); });
    layer->SetColorCalc(std::make_shared<TOneColor>());
    EXPECT_EQ(layer, nullptr);
}

} // namespace
} // namespace lmx
