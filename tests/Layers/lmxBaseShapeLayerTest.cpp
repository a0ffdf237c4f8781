#include <tests/Support/Printers.h>
#include <tests/Support/TestBufferedLayer.h>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

using namespace tests;

class BaseShapeLayer : public testing::Test {
protected:
    BaseShapeLayer() {
        Layer.SetColor(0xFF0000FF);
        Layer.SetBufferedBitmap(CreateBufferedBitmap({2, 2}, {}));
        Layer.Legends = 0;
        FEvents = Layer.GetOnInvalidated().Add([this](TBaseMapLayer*) {
            ++Invalidations;
            LegendsWhenInvalidated = Layer.Legends;
        });
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TTestBufferedLayer Layer{Manager};
    int Invalidations = 0;
    int LegendsWhenInvalidated = -1;

private:
    TSubscription FEvents;
};

TEST_F(BaseShapeLayer, BeginsWithoutColour) {
    EXPECT_EQ(TTestBufferedLayer(Manager).GetColor(), 0U);
}

TEST_F(BaseShapeLayer, TheSameColourDoesNothing) {
    const TBufferedBitmap* picture = Layer.GetBufferedBitmap();
    Layer.SetColor(0xFF0000FF);
    EXPECT_EQ(Layer.GetBufferedBitmap(), picture);
    EXPECT_EQ(Invalidations, 0);
    EXPECT_EQ(Layer.Legends, 0);
}

TEST_F(BaseShapeLayer, AnotherColourDropsThePictureRepaintsAndThenMakesTheLegend) {
    Layer.SetColor(0xFF00FF00);
    EXPECT_EQ(Layer.GetColor(), 0xFF00FF00U);
    EXPECT_EQ(Layer.GetBufferedBitmap(), nullptr);
    EXPECT_EQ(Invalidations, 1);
    EXPECT_EQ(LegendsWhenInvalidated, 0);
    EXPECT_EQ(Layer.Legends, 1);
}

// The picture of the old colour is on its way when the colour changes.
TEST_F(BaseShapeLayer, APictureInTheOldColourIsNotTaken) {
    TWorld world(TLatLonWorldSystemFactory::GetObject());
    TWorldViewport viewport(&world);
    viewport.SetViewSize({2, 2});
    TBitmap32 target(2, 2);
    Layer.Invalidate(true);
    Layer.Paint(&world, &viewport, target);
    ASSERT_TRUE(WaitUntil([this] { return RenderThreadPool().GetRunningCount() == 0 && Layer.Script->Begun == 1; }));
    Layer.SetColor(0xFF00FF00);
    ASSERT_TRUE(PumpUntilHandedOver());
    EXPECT_EQ(Layer.GetBufferedBitmap(), nullptr);
    Layer.Paint(&world, &viewport, target);
    ASSERT_TRUE(PumpUntil([this] { return Layer.GetBufferedBitmap() != nullptr; }));
    EXPECT_EQ(Layer.GetBufferedBitmap()->Bitmap.Pixel(0, 0), 0xFF00FF00U);
}

TEST_F(BaseShapeLayer, WhoHearsOfANewColourMayDestroyTheLayer) {
    auto layer = std::make_unique<TTestBufferedLayer>(Manager);
    const auto subscription = layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { layer.reset(); });
    layer->SetColor(0xFF00FF00);
    EXPECT_EQ(layer, nullptr);
}

TEST_F(BaseShapeLayer, ADuplicateGetsWhatTheBaseCopiesAndTheColour) {
    Layer.SetLayerName(QStringLiteral("Coast"));
    Layer.SetTag(7);
    TTestBufferedLayer copy(Manager);
    Layer.UpdateDuplicateBaseShapeLayer(&copy);
    EXPECT_EQ(copy.GetLayerName(), "Coast");
    EXPECT_EQ(copy.GetTag(), 7);
    EXPECT_EQ(copy.GetColor(), 0xFF0000FFU);
    EXPECT_EQ(copy.GetBufferedBitmap(), nullptr);
    EXPECT_EQ(copy.Legends, 0);
}

} // namespace
} // namespace lmx
