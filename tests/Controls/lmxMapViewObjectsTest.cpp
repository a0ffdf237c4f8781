// Annotations on a view, with the mouse of the window system. These tests hold at any device pixel ratio.

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <tests/Support/GeometryPrinters.h>
#include <tests/Support/ShownView.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

/// A shown view with a world and an annotation of 60 x 40 pixels to the eye at (20, 10).
struct MapViewObjects : testing::Test {
    MapViewObjects() {
        Shown.AddReadyLayer();
        Item = Add<TRectangleObjectTypeItem>();
        Item->SetRect(Pixels({20, 10, 80, 50}));
        Shown.Settle();
    }

    template<class T>
    T* Add() {
        return Layer().GetObjects().Add(std::make_unique<T>(&Layer()));
    }
    TObjectMapLayer& Layer() { return *Shown.View.GetSpObjectLayer(); }
    /// Of pixels to the eye, those of the buffer. The ratios of the tests make whole numbers of even ones.
    TRect Pixels(const TRect& rect) const {
        const double ratio = Shown.View.GetDeviceRatio();
        return {ScaledPixels(rect.Left, ratio), ScaledPixels(rect.Top, ratio), ScaledPixels(rect.Right, ratio),
                ScaledPixels(rect.Bottom, ratio)};
    }

    tests::TShownView Shown;
    TRectangleObjectTypeItem* Item = nullptr;
};

TEST_F(MapViewObjects, TheLayerIsMadeWithTheViewsRatio) {
    EXPECT_EQ(Layer().GetDeviceRatio(), Shown.View.GetDeviceRatio());
    EXPECT_EQ(Layer().GetPrevViewSize(), Shown.View.GetDeviceSize());
    EXPECT_EQ(Add<TTextBoxObjectLayerItem>()->GetRect(), Pixels({0, 0, 120, 40}));
}

TEST_F(MapViewObjects, APressSelectsAndADragMoves) {
    Shown.Press(Qt::LeftButton, {50, 30});
    EXPECT_TRUE(Item->GetIsSelected());
    EXPECT_TRUE(Shown.View.GetIsMouseDown());
    EXPECT_TRUE(Layer().GetIsMouseDown());
    Shown.Move({70, 40});
    EXPECT_EQ(Item->GetRect(), Pixels({40, 20, 100, 60}));
    Shown.Release(Qt::LeftButton, {70, 40});
    EXPECT_FALSE(Layer().GetIsMouseDown());
    Shown.Hover({90, 50});
    EXPECT_EQ(Item->GetRect(), Pixels({40, 20, 100, 60}));
    Shown.Press(Qt::LeftButton, {190, 90});
    EXPECT_FALSE(Item->GetIsSelected());
    Shown.Release(Qt::LeftButton, {190, 90});
}

TEST_F(MapViewObjects, AGrabberResizes) {
    Shown.Drag({78, 48}, {120, 80});
    EXPECT_EQ(Item->GetSelectedElement(), TSelectedElement::soBottomRightGrabber);
    EXPECT_EQ(Item->GetRect(), Pixels({20, 10, 120, 80}));
    Shown.Drag({22, 44}, {10, 44}); // the middle of the left side
    EXPECT_EQ(Item->GetSelectedElement(), TSelectedElement::soMiddleLeftGrabber);
    EXPECT_EQ(Item->GetRect(), Pixels({10, 10, 120, 80}));
}

TEST_F(MapViewObjects, TheMapStaysWhereItIsWhileTheyAreDragged) {
    const TPoint translation = Shown.View.GetViewport()->GetTranslation();
    Shown.Drag({50, 30}, {90, 60});
    EXPECT_EQ(Shown.View.GetViewport()->GetTranslation(), translation);
    Shown.View.SetMode(TMapMode::mdPan); // and in another mode it is the map that moves
    const TRect rect = Item->GetRect();
    Shown.Drag({70, 40}, {80, 50});
    EXPECT_EQ(Item->GetRect(), rect);
    EXPECT_NE(Shown.View.GetViewport()->GetTranslation(), translation);
}

TEST_F(MapViewObjects, ADragStepIsOnePaint) {
    tests::TTestLayer* layer = Shown.AddReadyLayer();
    Shown.Press(Qt::LeftButton, {50, 30});
    Shown.Settle();
    const int before = layer->Paints;
    QTest::mouseMove(&Shown.View, {60, 40});
    Shown.Settle();
    EXPECT_EQ(layer->Paints, before + 1);
    Shown.Release(Qt::LeftButton, {60, 40});
}

TEST_F(MapViewObjects, AResizedViewTakesThemAlongBeforeItTells) {
    Item->SetAnchors({TAnchorKind::akRight, TAnchorKind::akBottom});
    TRect told;
    Shown.View.SetOnViewportUpdated([&](TMapViewControl*) { told = Item->GetRect(); });
    Shown.View.resize(240, 160);
    Shown.Settle();
    EXPECT_EQ(Item->GetRect(), Pixels({60, 70, 120, 110}));
    EXPECT_EQ(told, Item->GetRect());
    Shown.View.resize(200, 100);
    Shown.Settle();
    EXPECT_EQ(Item->GetRect(), Pixels({20, 10, 80, 50}));
}

TEST_F(MapViewObjects, AreShownOnTheMap) {
    const TRect rect = Pixels({20, 10, 80, 50});
    EXPECT_EQ(Shown.PixelAt(rect.Left + 10, rect.Top + 10), 0xFF808080U);
    EXPECT_EQ(Shown.PixelAt(rect.Right + 10, rect.Top + 10), clWhite32);
    Item->SetBackgroundColor(0xFF00FF00); // repaints
    EXPECT_EQ(Shown.PixelAt(rect.Left + 10, rect.Top + 10), 0xFF00FF00U);
}

/// A view on a screen whose ratio can be changed.
class TDenseView final : public TMapViewControl {
public:
    using TMapViewControl::TMapViewControl;
    double GetDeviceRatio() const override { return Ratio; }
    void Follow() { Resize(); }
    double Ratio = 1;
};

TEST(MapViewObjectsOnAnotherScreen, AreScaledOnceAndStayAtTheirAnchors) {
    tests::TShownViewOf<TDenseView> shown;
    shown.AddReadyLayer();
    shown.Settle();
    TObjectMapLayer& layer = *shown.View.GetSpObjectLayer();
    auto* item = layer.GetObjects().Add(std::make_unique<TRectangleObjectTypeItem>(&layer));
    item->SetRect({100, 50, 180, 90});
    item->SetAnchors({TAnchorKind::akRight, TAnchorKind::akBottom});
    shown.View.Ratio = 2;
    shown.View.Follow();
    EXPECT_EQ(layer.GetDeviceRatio(), 2);
    EXPECT_EQ(shown.View.GetViewport()->GetViewSize(), TSize(400, 200));
    EXPECT_EQ(item->GetRect(), TRect(200, 100, 360, 180));
    shown.View.Ratio = 1;
    shown.View.Follow();
    EXPECT_EQ(item->GetRect(), TRect(100, 50, 180, 90));
}

TEST(MapViewObjectsOnAnotherScreen, AlsoBeforeThereIsAWorld) {
    TDenseView view;
    view.Ratio = 1.5;
    view.resize(200, 100);
    view.SetLayerManager(TLayerManagerFactory::GetObject());
    EXPECT_EQ(view.GetSpObjectLayer()->GetDeviceRatio(), 1.5);
    view.Ratio = 2;
    view.Follow();
    EXPECT_EQ(view.GetSpObjectLayer()->GetDeviceRatio(), 2);
    view.SetLayerManager(nullptr);
}

TEST(MapViewObjectLayer, MayBeTheHostsOwnOrNone) {
    class TNoObjects final : public TMapViewControl {
    public:
        using TMapViewControl::TMapViewControl;

    protected:
        std::unique_ptr<TObjectMapLayer> CreateObjectLayer(const std::shared_ptr<ILayerManager>&, bool) override {
            return nullptr;
        }
    };
    tests::TShownViewOf<TNoObjects> shown;
    shown.AddReadyLayer();
    EXPECT_EQ(shown.View.GetSpObjectLayer(), nullptr);
    EXPECT_EQ(shown.Manager->GetSpecialLayers().Count(), 3);
    shown.Drag({20, 20}, {40, 40});
    shown.View.resize(220, 120);
    shown.Settle();
}

} // namespace
} // namespace lmx
