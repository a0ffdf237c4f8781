#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ShownView.h>

#include <QMouseEvent>

#include <gtest/gtest.h>

#include <vector>

namespace lmx {
namespace {

using tests::TShownView;
using tests::TTestLayer;

TPoint Translation(const TShownView& shown) {
    return shown.View.GetViewport()->GetTranslation();
}

struct TCursorRow {
    TMapMode Mode;
    Qt::CursorShape Shape;
};

class ModeCursor : public testing::TestWithParam<TCursorRow> {};

TEST_P(ModeCursor, ShowsWhatTheModeDoes) {
    TMapViewControl view(nullptr, {});
    view.SetMode(GetParam().Mode);
    EXPECT_EQ(view.cursor().shape(), GetParam().Shape);
}

INSTANTIATE_TEST_SUITE_P(Rows, ModeCursor,
                         testing::Values(TCursorRow{TMapMode::mdNone, Qt::ArrowCursor},
                                         TCursorRow{TMapMode::mdPan, Qt::SizeAllCursor},
                                         TCursorRow{TMapMode::mdSelection, Qt::CrossCursor},
                                         TCursorRow{TMapMode::mdPlaceRulerH, Qt::SplitHCursor},
                                         TCursorRow{TMapMode::mdPlaceRulerV, Qt::SplitVCursor},
                                         TCursorRow{TMapMode::mdZoomToSelection, Qt::CrossCursor},
                                         TCursorRow{TMapMode::mdInfoQuery, Qt::ArrowCursor},
                                         TCursorRow{TMapMode::mdCustom, Qt::ArrowCursor}));

/// Writes down what it is told.
class TCustomMode : public IMapViewControlCustomModeObject {
public:
    void MouseUp(TMapViewControl*, const TPoint& point, const TMapPoint&) override { Told += At("up", point); }
    void MouseDown(TMapViewControl* sender, const TPoint& point, const TMapPoint& mapPoint) override {
        Told += At("down", point);
        EXPECT_TRUE(mapPoint.Equals(sender->GetViewport()->PointToMapPoint(TMapPoint(point))));
    }
    void MouseMove(TMapViewControl*, const TPoint& point, const TMapPoint&) override { Told += At("move", point); }
    TCursor GetCursor() const override { return TCursor::crHandPoint; }

    QString Told;

private:
    static QString At(const char* word, TPoint point) {
        return QStringLiteral("%1 %2,%3;").arg(QLatin1StringView(word)).arg(point.X).arg(point.Y);
    }
};

TEST(MapViewModes, ACustomModeHasItsOwnCursor) {
    TMapViewControl view(nullptr, {});
    view.SetCustomModeObject(std::make_shared<TCustomMode>());
    view.SetMode(TMapMode::mdCustom);
    EXPECT_EQ(view.cursor().shape(), Qt::PointingHandCursor);
}

TEST(MapViewModes, AChangeOfModeIsToldOnce) {
    TMapViewControl view(nullptr, {});
    std::vector<TMapMode> modes;
    const TSubscription watch = view.GetOnModeChanged().Add([&](TMapViewControl* sender, TMapMode mode) {
        EXPECT_EQ(sender->GetMode(), mode);
        modes.push_back(mode);
    });
    view.SetMode(TMapMode::mdPan);
    view.SetMode(TMapMode::mdPan);
    view.SetMode(TMapMode::mdNone);
    EXPECT_EQ(modes, (std::vector<TMapMode>{TMapMode::mdPan, TMapMode::mdNone}));
}

TEST(MapViewModes, ADragInPanModeMovesTheMap) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.SetMode(TMapMode::mdPan);
    const TPoint before = Translation(shown);
    shown.Press(Qt::LeftButton, {10, 10});
    shown.Move({30, 15});
    shown.Move({40, 5});
    EXPECT_EQ(Translation(shown), TPoint(before.X + 30, before.Y - 5));
    shown.Release(Qt::LeftButton, {40, 5});
    shown.Move({90, 50});
    EXPECT_EQ(Translation(shown), TPoint(before.X + 30, before.Y - 5));
}

TEST(MapViewModes, TheMiddleButtonPansInAnyMode) {
    TShownView shown;
    shown.AddReadyLayer();
    const TPoint before = Translation(shown);
    shown.Press(Qt::MiddleButton, {10, 10});
    EXPECT_TRUE(shown.View.GetIsMouseDown());
    shown.Move({20, 30});
    EXPECT_EQ(Translation(shown), TPoint(before.X + 10, before.Y + 20));
    shown.Release(Qt::MiddleButton, {20, 30});
    shown.Move({60, 60});
    EXPECT_EQ(Translation(shown), TPoint(before.X + 10, before.Y + 20));
}

TEST(MapViewModes, ZoomDoesNothingWhileTheMiddleButtonIsHeld) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.Press(Qt::MiddleButton, {10, 10});
    shown.View.ZoomIn();
    shown.View.ZoomOut();
    EXPECT_EQ(shown.View.GetViewport()->GetScale(), 1);
    shown.Release(Qt::MiddleButton, {10, 10});
    shown.View.ZoomIn();
    EXPECT_GT(shown.View.GetViewport()->GetScale(), 1);
}

TEST(MapViewModes, ASecondButtonDuringADragIsIgnored) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.SetMode(TMapMode::mdPan);
    const TPoint before = Translation(shown);
    shown.Press(Qt::LeftButton, {10, 10});
    shown.Press(Qt::MiddleButton, {50, 50});
    shown.Move({20, 10});
    EXPECT_EQ(Translation(shown), TPoint(before.X + 10, before.Y));
    shown.Release(Qt::LeftButton, {20, 10});
}

TEST(MapViewModes, WithoutWorldTheMouseDoesNothing) {
    TShownView shown;
    int locations = 0;
    shown.View.SetOnMouseCursorLocationChanged([&](TMapViewControl*, const TPoint&, const TMapPoint&) { ++locations; });
    shown.Press(Qt::LeftButton, {10, 10});
    shown.Move({20, 20});
    shown.Release(Qt::LeftButton, {20, 20});
    EXPECT_FALSE(shown.View.GetIsMouseDown());
    EXPECT_EQ(locations, 0);
}

TEST(MapViewModes, MovesTellTheLocationOfTheCursor) {
    TShownView shown;
    shown.AddReadyLayer();
    TPoint told;
    shown.View.SetOnMouseCursorLocationChanged(
        [&](TMapViewControl* sender, const TPoint& point, const TMapPoint& mapPoint) {
            told = point;
            EXPECT_TRUE(mapPoint.Equals(sender->GetViewport()->PointToMapPoint(TMapPoint(point))));
        });
    shown.Move({33, 44});
    EXPECT_EQ(told, TPoint(33, 44));
}

TEST(MapViewModes, APressSaysWhereTheMapWasPressed) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.Press(Qt::LeftButton, {33, 44});
    EXPECT_TRUE(shown.View.GetMapPoint().Equals(shown.View.GetViewport()->PointToMapPoint({33, 44})));
    shown.Release(Qt::LeftButton, {33, 44});
}

TEST(MapViewModes, TheSelectedLayerGetsTheMouseThatItWants) {
    TShownView shown;
    TTestLayer* layer = shown.AddReadyLayer();
    shown.Manager->SetSelLayer(layer);
    layer->MouseSupport = {TMouseSupportAction::msMouseDown, TMouseSupportAction::msMouseMove,
                           TMouseSupportAction::msMouseUp};
    shown.Move({5, 6});
    shown.Press(Qt::LeftButton, {10, 11});
    shown.Move({20, 21});
    shown.Release(Qt::LeftButton, {20, 21});
    EXPECT_EQ(layer->Mouse, QStringLiteral("move 5,6 0 down 10,11 move 20,21 1 up 20,21 1 "));
}

TEST(MapViewModes, ALayerThatWantsNoMouseGetsNone) {
    TShownView shown;
    TTestLayer* layer = shown.AddReadyLayer();
    shown.Manager->SetSelLayer(layer);
    shown.Press(Qt::LeftButton, {10, 11});
    EXPECT_TRUE(shown.View.GetSpObjectLayer()->GetIsMouseDown()); // the next one that is asked
    shown.Release(Qt::LeftButton, {10, 11});
    EXPECT_EQ(layer->Mouse, QString());
}

TEST(MapViewModes, ASelectedLayerThatWasFreedIsNotCalled) {
    TShownView shown;
    TTestLayer* layer = shown.AddReadyLayer();
    layer->MouseSupport = {TMouseSupportAction::msMouseDown};
    shown.Manager->SetSelLayer(layer);
    shown.Manager->GetLayers().Remove(layer);
    shown.Press(Qt::LeftButton, {10, 11});
    EXPECT_TRUE(shown.View.GetSpObjectLayer()->GetIsMouseDown());
    shown.Release(Qt::LeftButton, {10, 11});
}

TEST(MapViewModes, AfterARightClickHoverMovesReachNoLayerUntilTheNextPress) {
    TShownView shown;
    TTestLayer* layer = shown.AddReadyLayer();
    layer->MouseSupport = {TMouseSupportAction::msMouseMove};
    shown.Manager->SetSelLayer(layer);
    int locations = 0;
    shown.View.SetOnMouseCursorLocationChanged([&](TMapViewControl*, const TPoint&, const TMapPoint&) { ++locations; });
    shown.Press(Qt::RightButton, {10, 10});
    shown.Release(Qt::RightButton, {10, 10});
    shown.View.GetPopupMenu()->close();
    shown.Move({20, 20});
    EXPECT_EQ(layer->Mouse, QString());
    EXPECT_EQ(locations, 1);
    shown.Press(Qt::LeftButton, {20, 20});
    shown.Release(Qt::LeftButton, {20, 20});
    shown.Move({30, 30});
    EXPECT_EQ(layer->Mouse, QStringLiteral("move 30,30 0 "));
}

TEST(MapViewModes, ACustomModeGetsEveryLeftMouseEvent) {
    TShownView shown;
    shown.AddReadyLayer();
    const auto mode = std::make_shared<TCustomMode>();
    shown.View.SetCustomModeObject(mode);
    shown.View.SetMode(TMapMode::mdCustom);
    shown.Hover({1, 2}); // wherever the pointer was left
    shown.Press(Qt::LeftButton, {3, 4});
    EXPECT_FALSE(shown.View.GetIsMouseDown());
    shown.Release(Qt::LeftButton, {3, 4});
    EXPECT_EQ(mode->Told, QStringLiteral("move 1,2;down 3,4;up 3,4;"));
}

TEST(MapViewModes, ACustomModeWithoutObjectDoesNothing) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.SetMode(TMapMode::mdCustom);
    const TPoint before = Translation(shown);
    shown.Press(Qt::LeftButton, {3, 4});
    shown.Move({9, 9});
    shown.Release(Qt::LeftButton, {9, 9});
    EXPECT_EQ(Translation(shown), before);
}

/// Takes itself out of the view from within an event, and goes on working.
class TLeavingMode : public TCustomMode {
public:
    void MouseUp(TMapViewControl* sender, const TPoint& point, const TMapPoint& mapPoint) override {
        Leave(sender);
        TCustomMode::MouseUp(sender, point, mapPoint);
    }
    void MouseDown(TMapViewControl* sender, const TPoint& point, const TMapPoint& mapPoint) override {
        Leave(sender);
        TCustomMode::MouseDown(sender, point, mapPoint);
    }
    void MouseMove(TMapViewControl* sender, const TPoint& point, const TMapPoint& mapPoint) override {
        Leave(sender);
        TCustomMode::MouseMove(sender, point, mapPoint);
    }

private:
    static void Leave(TMapViewControl* sender) { sender->SetCustomModeObject(nullptr); }
};

TEST(MapViewModes, ACustomModeMayTakeItselfOut) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.SetMode(TMapMode::mdCustom);
    const auto put = [&] { shown.View.SetCustomModeObject(std::make_shared<TLeavingMode>()); };
    put();
    shown.Hover({1, 2});
    EXPECT_EQ(shown.View.GetCustomModeObject(), nullptr);
    put();
    shown.Press(Qt::LeftButton, {3, 4});
    EXPECT_EQ(shown.View.GetCustomModeObject(), nullptr);
    put();
    shown.Release(Qt::LeftButton, {3, 4});
    EXPECT_EQ(shown.View.GetCustomModeObject(), nullptr);
}

TEST(MapViewModes, TheHeldSpaceBarPans) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.SetAutoPan(true);
    shown.View.SetMode(TMapMode::mdSelection);
    const TPoint before = Translation(shown);
    QTest::keyPress(&shown.View, Qt::Key_Space);
    shown.Press(Qt::LeftButton, {10, 10});
    shown.Move({25, 10});
    shown.Release(Qt::LeftButton, {25, 10});
    QTest::keyRelease(&shown.View, Qt::Key_Space);
    EXPECT_EQ(Translation(shown), TPoint(before.X + 15, before.Y));
    EXPECT_EQ(shown.View.GetMode(), TMapMode::mdSelection);
    shown.Press(Qt::LeftButton, {10, 10});
    shown.Move({25, 10});
    shown.Release(Qt::LeftButton, {25, 10});
    EXPECT_EQ(Translation(shown), TPoint(before.X + 15, before.Y));
}

TEST(MapViewModes, WithoutAutoPanTheSpaceBarDoesNothing) {
    TShownView shown;
    shown.AddReadyLayer();
    const TPoint before = Translation(shown);
    QTest::keyPress(&shown.View, Qt::Key_Space);
    shown.Press(Qt::LeftButton, {10, 10});
    shown.Move({25, 10});
    shown.Release(Qt::LeftButton, {25, 10});
    QTest::keyRelease(&shown.View, Qt::Key_Space);
    EXPECT_EQ(Translation(shown), before);
}

TEST(MapViewModes, ClearingAutoPanStopsTheDragOnly) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.SetAutoPan(true);
    const TPoint before = Translation(shown);
    QTest::keyPress(&shown.View, Qt::Key_Space);
    shown.View.SetAutoPan(false);
    shown.Press(Qt::LeftButton, {10, 10});
    EXPECT_TRUE(shown.View.GetViewport()->GetIsPanning());
    shown.Move({25, 10});
    EXPECT_EQ(Translation(shown), before);
    shown.Release(Qt::LeftButton, {25, 10});
    EXPECT_FALSE(shown.View.GetViewport()->GetIsPanning());
    QTest::keyRelease(&shown.View, Qt::Key_Space);
}

TEST(MapViewModes, ADoubleClickIsTwoPresses) {
    TShownView shown;
    TTestLayer* layer = shown.AddReadyLayer();
    layer->MouseSupport = {TMouseSupportAction::msMouseDown};
    shown.Manager->SetSelLayer(layer);
    QTest::mouseClick(&shown.View, Qt::LeftButton, Qt::NoModifier, {7, 8});
    QTest::mouseDClick(&shown.View, Qt::LeftButton, Qt::NoModifier, {7, 8});
    EXPECT_EQ(layer->Mouse, QStringLiteral("down 7,8 down 7,8 "));
}

TEST(MapViewModes, APressTakesTheFocus) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&shown.View));
    shown.View.clearFocus();
    shown.Press(Qt::LeftButton, {10, 10});
    EXPECT_TRUE(shown.View.hasFocus());
    shown.Release(Qt::LeftButton, {10, 10});
}

/// Closes a view from within its mouse event.
class TClosingMode : public IMapViewControlCustomModeObject {
public:
    explicit TClosingMode(std::unique_ptr<TMapViewControl>& view) : FView(view) {}
    void MouseUp(TMapViewControl*, const TPoint&, const TMapPoint&) override {}
    void MouseDown(TMapViewControl*, const TPoint&, const TMapPoint&) override {}
    void MouseMove(TMapViewControl*, const TPoint&, const TMapPoint&) override { FView.reset(); }
    TCursor GetCursor() const override { return TCursor::crDefault; }

private:
    std::unique_ptr<TMapViewControl>& FView;
};

TEST(MapViewModes, AHandlerMayCloseTheView) {
    const auto manager = TLayerManagerFactory::GetObject();
    auto view = std::make_unique<TMapViewControl>(nullptr, TSpecialLayerAccess{});
    view->SetLayerManager(manager);
    view->CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
    int locations = 0;
    view->SetOnMouseCursorLocationChanged([&](TMapViewControl*, const TPoint&, const TMapPoint&) { ++locations; });
    view->SetCustomModeObject(std::make_shared<TClosingMode>(view));
    view->SetMode(TMapMode::mdCustom);
    QMouseEvent move(QEvent::MouseMove, QPointF(5, 5), QPointF(5, 5), Qt::NoButton, Qt::NoButton, {});
    QCoreApplication::sendEvent(view.get(), &move);
    EXPECT_EQ(view, nullptr);
    EXPECT_EQ(locations, 0);
}

TEST(MapViewModes, PanningNeedsAWorld) {
    TMapViewControl view(nullptr, {});
    EXPECT_EQ(tests::MessageOf<EInvalidOperation>([&] { view.EnterPanMode(); }), QStringLiteral("World not created"));
    EXPECT_EQ(tests::MessageOf<EInvalidOperation>([&] { view.ExitPanMode(); }), QStringLiteral("World not created"));
    EXPECT_FALSE(view.GetIsMouseDown());
}

} // namespace
} // namespace lmx
