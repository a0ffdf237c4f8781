// Rulers, points and selection are painted with each frame: each item may take the memory that its polygon calls need,
// and no more.

#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxPinMapLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <tests/Support/CountedMemory.h>
#include <tests/Support/TestMap.h>

#include <gtest/gtest.h>

#include <array>
#include <memory>

namespace lmx {
namespace {

constexpr int Count = 50;

class MarksAllocation : public testing::Test {
protected:
    long AllocationsOfPaint(TBaseMapLayer& layer) {
        return tests::AllocationsOf([&] { layer.Paint(&Map.World, &Map.Viewport, Map.Bitmap); });
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    tests::TTestMap Map{300, 150};
};

TEST_F(MarksAllocation, RulersTakeNone) {
    TRulerMapLayer layer(Manager);
    for (int i = 0; i < Count; ++i) {
        layer.Add(std::make_unique<TRulerItem>(TRulerOrientation::roVertical, 80 - i * 1.1L, clBlack32));
        layer.Add(std::make_unique<TRulerItem>(TRulerOrientation::roHorizontal, i * 3.3L - 170, 0x80FF0000));
    }
    layer.StartPlacing(TPlacingMode::pmVertical, 10.1L);
    EXPECT_EQ(AllocationsOfPaint(layer), 0);
}

TEST_F(MarksAllocation, TheSelectionTakesNoneOnceTheBitmapHasHeldItsStipple) {
    TSelectionMapLayer layer(Manager);
    layer.StartSelection({-170, 80});
    layer.Adjust({20.5L, -30.5L});
    AllocationsOfPaint(layer);
    EXPECT_EQ(AllocationsOfPaint(layer), 0);
}

TEST_F(MarksAllocation, PointsTakeWhatTheirPolygonsTake) {
    TInfoQueryPointLayer layer(Manager);
    for (int i = 0; i < Count; ++i)
        layer.GetPoints().Add(std::make_unique<TInfoQueryPoint>(&layer, TMapPoint(-150, 50), 0xFFFF0000));
    const long polygons = tests::AllocationsOf([&] {
        const std::array<TFloatPoint, 3> triangle = {TFloatPoint{30, 40}, TFloatPoint{20, 20}, TFloatPoint{40, 20}};
        for (int i = 0; i < Count; ++i) {
            PolygonFS(Map.Bitmap, triangle, 0xFFFF0000);
            PolylineFS(Map.Bitmap, triangle, 0x64000000, true, 3);
        }
    });
    EXPECT_GT(polygons, 0);
    EXPECT_EQ(AllocationsOfPaint(layer), polygons);
}

// Its dictionary holds an entry for each pin that was drawn.
TEST_F(MarksAllocation, PinsTakeWhatTheirDictionaryTakes) {
    class TSilentRenderer : public TPinMapLayerPinRenderer {
    public:
        bool RenderPin(TBitmap32&, TPinMapLayer*, TPin*, const TMapPoint&, TFloatRect&) override { return true; }
    } renderer;
    TPinMapLayer layer(Manager);
    layer.SetPinRenderer(&renderer);
    for (int i = 0; i < Count; ++i)
        layer.GetPins().Add(std::make_unique<TPin>(QString(), i, i));
    AllocationsOfPaint(layer); // the list makes room for a walk
    TDictionary<TPin*, TFloatRect> rectangles;
    const auto fill = [&] {
        rectangles.Clear();
        for (TPin* pin : layer.GetPins())
            rectangles.Add(pin, TFloatRect());
    };
    fill();
    const long filling = tests::AllocationsOf(fill);
    EXPECT_GT(filling, 0);
    EXPECT_EQ(AllocationsOfPaint(layer), filling);
}

} // namespace
} // namespace lmx
