// Drags that leave the view, and drags whose end the view does not see.

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/ShownView.h>

#include <QDialog>
#include <QHBoxLayout>
#include <QWindow>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace lmx {
namespace {

using tests::TShownView;
using tests::TTestLayer;

/// Says which mouse events it gets.
class TNeighbour : public QWidget {
public:
    TNeighbour() { setMouseTracking(true); }
    int Events = 0;

protected:
    void mousePressEvent(QMouseEvent*) override { ++Events; }
    void mouseMoveEvent(QMouseEvent*) override { ++Events; }
    void mouseReleaseEvent(QMouseEvent*) override { ++Events; }
};

/// A window of 300 x 100 with a view at its left, 200 wide, and a neighbour. Mouse events go to the window, whose
/// business it is to find the widget.
class MapViewCapture : public testing::Test {
protected:
    MapViewCapture() {
        auto* row = new QHBoxLayout(&Window);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(0);
        View = new TMapViewControl(&Window);
        Neighbour = new TNeighbour;
        View->setFixedSize(200, 100);
        Neighbour->setFixedSize(100, 100);
        row->addWidget(View);
        row->addWidget(Neighbour);
        Window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Window));
        Window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&Window));
        View->SetLayerManager(Manager);
        View->CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
        View->GetViewport()->SetTranslation({0, 0});
        View->SetOnMouseCursorLocationChanged(
            [this](TMapViewControl*, const TPoint& point, const TMapPoint&) { Told.push_back(point); });
    }
    ~MapViewCapture() override { View->SetLayerManager(nullptr); }

    /// The window system's event at a place of the window, which may lie outside of it. QTest refuses such a place, so
    /// that the buttons held are kept here.
    void Send(QEvent::Type type, Qt::MouseButton button, QPoint at) {
        if (type == QEvent::MouseButtonPress)
            Held |= button;
        else if (type == QEvent::MouseButtonRelease)
            Held &= ~Qt::MouseButtons(button);
        QWindow* handle = Window.windowHandle();
        qt_handleMouseEvent(handle, at, handle->mapToGlobal(at), Held, button, type, Qt::NoModifier, Time += 1000);
        QCoreApplication::processEvents();
    }
    void Press(Qt::MouseButton button, QPoint at) { Send(QEvent::MouseButtonPress, button, at); }
    void Move(QPoint at) { Send(QEvent::MouseMove, Qt::NoButton, at); }
    void Release(Qt::MouseButton button, QPoint at) { Send(QEvent::MouseButtonRelease, button, at); }

    TRulerMapLayer& Rulers() { return *View->GetSpRulersLayer(); }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    QWidget Window;
    TMapViewControl* View;
    TNeighbour* Neighbour;
    Qt::MouseButtons Held;
    int Time = 100'000;
    std::vector<TPoint> Told;
};

TEST_F(MapViewCapture, AHoveringMouseIsNotCaptured) {
    Move({10, 10});
    Move({250, 10});
    EXPECT_EQ(Told, (std::vector<TPoint>{{10, 10}}));
    EXPECT_EQ(Neighbour->Events, 1);
}

TEST_F(MapViewCapture, AMiddleDragGoesOnOutside) {
    Press(Qt::MiddleButton, {100, 50});
    Move({250, 60}); // over the neighbour
    EXPECT_EQ(View->GetViewport()->GetTranslation(), TPoint(150, 10));
    Move({-400, 3000}); // out of the window
    EXPECT_EQ(View->GetViewport()->GetTranslation(), TPoint(-500, 2950));
    Release(Qt::MiddleButton, {-400, 3000});
    EXPECT_FALSE(View->GetIsMouseDown());
    EXPECT_EQ(Neighbour->Events, 0);
    Move({250, 60});
    EXPECT_EQ(Neighbour->Events, 1);
    EXPECT_EQ(View->GetViewport()->GetTranslation(), TPoint(-500, 2950));
}

TEST_F(MapViewCapture, ALeftDragGoesOnOutsideInEveryMode) {
    View->SetMode(TMapMode::mdPan);
    Press(Qt::LeftButton, {100, 50});
    Move({-50, -60});
    Release(Qt::LeftButton, {-50, -60});
    EXPECT_EQ(View->GetViewport()->GetTranslation(), TPoint(-150, -110));
    View->GetViewport()->SetTranslation({0, 0});

    View->SetMode(TMapMode::mdSelection);
    Press(Qt::LeftButton, {100, 50});
    Move({250, 160});
    Release(Qt::LeftButton, {250, 160});
    EXPECT_EQ(View->GetSpSelectionLayer()->GetSelectedRect(), TMapArea(-80, 40, 70, -70));

    View->SetMode(TMapMode::mdPlaceRulerV);
    Press(Qt::LeftButton, {100, 50});
    Move({100, 150});
    Release(Qt::LeftButton, {100, 150});
    ASSERT_EQ(Rulers().GetVRulers().Count(), 1);
    EXPECT_EQ(Rulers().GetVRulers()[0]->GetLocation(), -60);
    EXPECT_EQ(Neighbour->Events, 0);
}

TEST_F(MapViewCapture, TheReleaseOfAnotherButtonGivesTheMouseUp) {
    View->SetMode(TMapMode::mdPan);
    Press(Qt::LeftButton, {100, 50});
    Press(Qt::MiddleButton, {100, 50});
    Release(Qt::MiddleButton, {100, 50});
    EXPECT_FALSE(View->GetIsMouseDown());
    Told.clear();
    Move({-20, 20});
    Move({200, 20}); // the first pixel beyond the right edge
    EXPECT_EQ(Told, std::vector<TPoint>());
    Move({199, 20});
    EXPECT_EQ(Told, (std::vector<TPoint>{{199, 20}}));
    Release(Qt::LeftButton, {199, 20});
    EXPECT_EQ(View->GetViewport()->GetTranslation(), TPoint(0, 0));
}

TEST_F(MapViewCapture, TheRightButtonCapturesNothing) {
    Press(Qt::RightButton, {100, 50});
    Told.clear();
    Move({-20, 20});
    EXPECT_EQ(Told, std::vector<TPoint>());
    Release(Qt::RightButton, {-20, 20});
    EXPECT_FALSE(View->GetPopupMenu()->isVisible());
}

// --- The focus goes in the middle of a drag ----------------------------------------------------------------------

TEST_F(MapViewCapture, ADragSurvivesTheLossOfTheFocus) {
    View->SetMode(TMapMode::mdPlaceRulerH);
    Press(Qt::LeftButton, {100, 50});
    EXPECT_TRUE(View->hasFocus());
    Neighbour->setFocus();
    EXPECT_FALSE(View->hasFocus());
    EXPECT_TRUE(View->GetIsMouseDown());
    Move({120, 50}); // the button is still held
    EXPECT_EQ(Rulers().GetPlacingValue(), -60);
    Release(Qt::LeftButton, {120, 50});
    EXPECT_EQ(Rulers().GetHRulers().Count(), 1);
    EXPECT_FALSE(View->GetIsMouseDown());
}

TEST_F(MapViewCapture, AMenuThatSwallowsTheReleaseLeavesNoDragBehind) {
    View->SetMode(TMapMode::mdPan);
    Press(Qt::LeftButton, {100, 50});
    View->GetPopupMenu()->popup(View->mapToGlobal(QPoint(50, 50)));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(View->GetPopupMenu()));
    Held = Qt::NoButton; // the menu had the release
    View->GetPopupMenu()->close();
    EXPECT_TRUE(View->GetIsMouseDown());
    Move({150, 50}); // with no button held
    EXPECT_FALSE(View->GetIsMouseDown());
    EXPECT_EQ(View->GetViewport()->GetTranslation(), TPoint(0, 0));
    Press(Qt::LeftButton, {100, 50}); // is taken
    Move({110, 50});
    Release(Qt::LeftButton, {110, 50});
    EXPECT_EQ(View->GetViewport()->GetTranslation(), TPoint(10, 0));
}

TEST_F(MapViewCapture, ADialogThatSwallowsTheReleaseLeavesNoDragBehind) {
    View->SetMode(TMapMode::mdPlaceRulerV);
    Press(Qt::LeftButton, {100, 50});
    QDialog dialog(&Window);
    dialog.setModal(true);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    Held = Qt::NoButton;
    dialog.close();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&Window));
    Press(Qt::LeftButton, {100, 20}); // not ignored as a second press would be
    EXPECT_EQ(Rulers().GetPlacingValue(), 70);
    Release(Qt::LeftButton, {100, 20});
    EXPECT_EQ(Rulers().GetVRulers().Count(), 1);
    EXPECT_FALSE(Rulers().GetIsPlacing());
}

TEST_F(MapViewCapture, ALostDragEndsAsByTheReleaseOfAnotherButton) {
    View->SetMode(TMapMode::mdPlaceRulerV);
    Press(Qt::LeftButton, {100, 50});
    Neighbour->setFocus();
    Held = Qt::NoButton;
    Move({100, 20});
    EXPECT_FALSE(View->GetIsMouseDown());
    EXPECT_TRUE(Rulers().GetIsPlacing()); // until something confirms or cancels it
    EXPECT_EQ(Rulers().GetPlacingValue(), 40);
    EXPECT_TRUE(Rulers().GetVRulers().IsEmpty());
}

TEST_F(MapViewCapture, TheSpaceBarEndsWithTheFocus) {
    View->SetAutoPan(true);
    View->SetMode(TMapMode::mdInfoQuery);
    View->setFocus();
    QTest::keyPress(View, Qt::Key_Space);
    Neighbour->setFocus();
    QTest::keyRelease(Neighbour, Qt::Key_Space); // goes elsewhere
    Press(Qt::LeftButton, {100, 50});
    Release(Qt::LeftButton, {100, 50});
    EXPECT_EQ(View->GetSpInfoQueryPointsLayer()->GetPoints().Count(), 1);
}

TEST_F(MapViewCapture, AManagerThatChangesInADragLeavesTheNextDragWhole) {
    View->SetMode(TMapMode::mdSelection);
    Press(Qt::LeftButton, {100, 50});
    Move({120, 60});
    const auto other = TLayerManagerFactory::GetObject();
    View->SetLayerManager(other);
    EXPECT_FALSE(View->GetSpSelectionLayer()->GetEnabled());
    Move({130, 70});
    EXPECT_FALSE(View->GetSpSelectionLayer()->GetEnabled());
    Release(Qt::LeftButton, {130, 70});
    Press(Qt::LeftButton, {10, 20});
    Move({30, 40});
    Release(Qt::LeftButton, {30, 40});
    EXPECT_TRUE(View->GetSpSelectionLayer()->GetEnabled());
    EXPECT_EQ(View->GetSpSelectionLayer()->GetSelectedRect(), TMapArea(-170, 70, -150, 50));
}

} // namespace
} // namespace lmx
