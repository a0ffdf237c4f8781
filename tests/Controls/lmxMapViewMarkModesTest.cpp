// The modes that use the special layers, row by row, with real events. These tests hold at any device pixel ratio; they
// run at 1, 1.5 and 2.

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/ObjectView.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ShownView.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::TObjectView;
using tests::TTestLayer;
using tests::TTestObjectLayer;

/// A view in which the logical pixel (x, y) shows longitude x - 180 and latitude 90 - y. Positions in the tests are
/// even, so that they are whole device pixels at a ratio of 1.5, too.
class MapViewMarkModes : public testing::Test {
protected:
    MapViewMarkModes() {
        Shown.AddReadyLayer();
        Viewport().SetScale(Shown.View.GetDeviceRatio());
        Viewport().SetTranslation({0, 0});
    }

    TWorldViewport& Viewport() { return *Shown.View.GetViewport(); }
    TSelectionMapLayer& Selection() { return *Shown.View.GetSpSelectionLayer(); }
    TRulerMapLayer& Rulers() { return *Shown.View.GetSpRulersLayer(); }
    TObjectList<TInfoQueryPoint>& Points() { return Shown.View.GetSpInfoQueryPointsLayer()->GetPoints(); }
    void HoldSpace() { QTest::keyPress(&Shown.View, Qt::Key_Space); }
    void LetSpaceGo() { QTest::keyRelease(&Shown.View, Qt::Key_Space); }
    void RemoveSpecialLayers() { Shown.View.RegisterSpecialLayers(Shown.Manager, false); }

    static TMapPoint Place(int x, int y) { return {x - 180.0L, 90.0L - y}; }

    tests::TShownViewOf<TObjectView> Shown;
};

// --- Selection ---------------------------------------------------------------------------------------------------

TEST_F(MapViewMarkModes, ADragSelects) {
    Shown.View.SetMode(TMapMode::mdSelection);
    Shown.Press(Qt::LeftButton, {20, 10});
    EXPECT_TRUE(Shown.View.GetIsMouseDown());
    EXPECT_TRUE(Selection().GetEnabled());
    EXPECT_EQ(Selection().GetTopLeft(), Place(20, 10));
    EXPECT_EQ(Selection().GetBottomRight(), Place(20, 10));
    Shown.Move({60, 40});
    EXPECT_EQ(Selection().GetTopLeft(), Place(20, 10));
    EXPECT_EQ(Selection().GetBottomRight(), Place(60, 40));
    Shown.Release(Qt::LeftButton, {60, 40});
    EXPECT_FALSE(Shown.View.GetIsMouseDown());
    EXPECT_TRUE(Selection().GetEnabled()); // it stays for the host to read
    EXPECT_EQ(Selection().GetSelectedRect(), TMapArea(Place(20, 10), Place(60, 40)));
    Shown.Move({90, 90});
    EXPECT_EQ(Selection().GetBottomRight(), Place(60, 40));
}

TEST_F(MapViewMarkModes, ASelectionIsNotPutInOrder) {
    Shown.View.SetMode(TMapMode::mdSelection);
    Shown.Drag({60, 40}, {20, 10});
    EXPECT_EQ(Selection().GetSelectedRect(), TMapArea(Place(60, 40), Place(20, 10)));
}

TEST_F(MapViewMarkModes, WithoutTheLayerSelectingDoesNothing) {
    RemoveSpecialLayers();
    for (const TMapMode mode : {TMapMode::mdSelection, TMapMode::mdZoomToSelection}) {
        Shown.View.SetMode(mode);
        Shown.Press(Qt::LeftButton, {20, 10});
        EXPECT_FALSE(Shown.View.GetIsMouseDown());
        Shown.Move({60, 40});
        Shown.Release(Qt::LeftButton, {60, 40});
        EXPECT_EQ(Viewport().GetTranslation(), TPoint(0, 0));
    }
}

TEST_F(MapViewMarkModes, AChangeOfModeLeavesTheSelectionEnabled) {
    Shown.View.SetMode(TMapMode::mdSelection);
    Shown.Press(Qt::LeftButton, {20, 10});
    Shown.Move({60, 40});
    Shown.View.SetMode(TMapMode::mdPan);
    EXPECT_TRUE(Selection().GetEnabled());
    Shown.Move({80, 80}); // the button is down, but nothing is panned: no press began it
    EXPECT_EQ(Selection().GetBottomRight(), Place(60, 40));
    EXPECT_EQ(Viewport().GetTranslation(), TPoint(0, 0));
    Shown.Release(Qt::LeftButton, {80, 80});
    EXPECT_TRUE(Selection().GetEnabled());
}

// --- Zoom to the selection ---------------------------------------------------------------------------------------

struct TZoomRow {
    const char* Name;
    QPoint From;
    QPoint To;
};

class ZoomToSelection : public MapViewMarkModes, public testing::WithParamInterface<TZoomRow> {};

TEST_P(ZoomToSelection, ShowsTheSelectedAreaFromAnyCorner) {
    Shown.View.SetMode(TMapMode::mdZoomToSelection);
    Shown.Press(Qt::LeftButton, GetParam().From);
    EXPECT_TRUE(Shown.View.GetIsMouseDown());
    EXPECT_TRUE(Selection().GetEnabled());
    Shown.Move(GetParam().To);
    EXPECT_EQ(Selection().GetBottomRight(), Place(GetParam().To.x(), GetParam().To.y()));
    Shown.Release(Qt::LeftButton, GetParam().To);
    EXPECT_FALSE(Selection().GetEnabled());
    EXPECT_EQ(Viewport().GetScale(), 5 * static_cast<extended>(Shown.View.GetDeviceRatio())); // 40 degrees in 200
    const TMapPoint center = Viewport().GetCenter();
    EXPECT_NEAR(static_cast<double>(center.X), 40 - 180, 0.11); // within half a pixel
    EXPECT_NEAR(static_cast<double>(center.Y), 90 - 30, 0.11);
}

INSTANTIATE_TEST_SUITE_P(Corners, ZoomToSelection,
                         testing::Values(TZoomRow{"FromTheTopLeft", {20, 20}, {60, 40}},
                                         TZoomRow{"FromTheTopRight", {60, 20}, {20, 40}},
                                         TZoomRow{"FromTheBottomLeft", {20, 40}, {60, 20}},
                                         TZoomRow{"FromTheBottomRight", {60, 40}, {20, 20}}),
                         [](const auto& row) { return std::string(row.param.Name); });

TEST_F(MapViewMarkModes, AClickWithoutMovementZoomsNowhereAndEndsTheSelection) {
    const extended scale = Viewport().GetScale();
    Shown.View.SetMode(TMapMode::mdZoomToSelection);
    Shown.Press(Qt::LeftButton, {20, 20});
    EXPECT_TRUE(Selection().GetEnabled());
    Shown.Release(Qt::LeftButton, {20, 20});
    EXPECT_FALSE(Selection().GetEnabled());
    EXPECT_EQ(Viewport().GetScale(), scale);
    EXPECT_EQ(Viewport().GetTranslation(), TPoint(0, 0));
}

TEST_F(MapViewMarkModes, AReleaseWithoutAPressZoomsToTheLastSelection) {
    Shown.View.SetMode(TMapMode::mdSelection);
    Shown.Drag({20, 20}, {60, 40});
    Shown.View.SetMode(TMapMode::mdZoomToSelection);
    Shown.Release(Qt::LeftButton, {90, 90});
    EXPECT_EQ(Viewport().GetScale(), 5 * static_cast<extended>(Shown.View.GetDeviceRatio()));
    EXPECT_FALSE(Selection().GetEnabled());
}

TEST_F(MapViewMarkModes, AHostMayChangeTheManagerFromWithinTheZoom) {
    Shown.View.SetMode(TMapMode::mdZoomToSelection);
    Shown.View.SetOnViewportUpdated([](TMapViewControl* sender) { sender->SetLayerManager(nullptr); });
    Shown.Drag({20, 20}, {60, 40});
    EXPECT_EQ(Shown.View.GetSpSelectionLayer(), nullptr);
}

// --- Rulers ------------------------------------------------------------------------------------------------------

TEST_F(MapViewMarkModes, ADragPlacesAHorizontalRuler) {
    Shown.View.SetMode(TMapMode::mdPlaceRulerH);
    Shown.Press(Qt::LeftButton, {20, 10});
    EXPECT_TRUE(Shown.View.GetIsMouseDown());
    EXPECT_TRUE(Rulers().GetIsPlacing());
    EXPECT_EQ(Rulers().GetPlacingMode(), TPlacingMode::pmHorizontal);
    EXPECT_EQ(Rulers().GetPlacingValue(), -160);
    Shown.Move({60, 40});
    EXPECT_EQ(Rulers().GetPlacingValue(), -120);
    EXPECT_TRUE(Rulers().GetHRulers().IsEmpty());
    Shown.Release(Qt::LeftButton, {60, 40});
    EXPECT_FALSE(Rulers().GetIsPlacing());
    ASSERT_EQ(Rulers().GetHRulers().Count(), 1);
    EXPECT_EQ(Rulers().GetHRulers()[0]->GetLocation(), -120);
    EXPECT_TRUE(Rulers().GetVRulers().IsEmpty());
}

TEST_F(MapViewMarkModes, ADragPlacesAVerticalRuler) {
    Shown.View.SetMode(TMapMode::mdPlaceRulerV);
    Shown.Press(Qt::LeftButton, {20, 10});
    EXPECT_EQ(Rulers().GetPlacingMode(), TPlacingMode::pmVertical);
    EXPECT_EQ(Rulers().GetPlacingValue(), 80);
    Shown.Move({60, 40});
    EXPECT_EQ(Rulers().GetPlacingValue(), 50);
    Shown.Release(Qt::LeftButton, {60, 40});
    ASSERT_EQ(Rulers().GetVRulers().Count(), 1);
    EXPECT_EQ(Rulers().GetVRulers()[0]->GetLocation(), 50);
    EXPECT_TRUE(Rulers().GetHRulers().IsEmpty());
}

TEST_F(MapViewMarkModes, HoveringMovesNoRuler) {
    for (const TMapMode mode : {TMapMode::mdPlaceRulerH, TMapMode::mdPlaceRulerV}) {
        Shown.View.SetMode(mode);
        Rulers().StartPlacing(TPlacingMode::pmVertical, 3);
        Shown.Move({60, 40});
        EXPECT_EQ(Rulers().GetPlacingValue(), 3);
    }
}

TEST_F(MapViewMarkModes, AReleaseWithoutAPressAddsARuler) {
    Shown.View.SetMode(TMapMode::mdPlaceRulerH);
    Shown.Release(Qt::LeftButton, {60, 40});
    ASSERT_EQ(Rulers().GetVRulers().Count(), 1); // of the kind and at the place that no placing has set yet
    EXPECT_EQ(Rulers().GetVRulers()[0]->GetLocation(), 0);
    EXPECT_TRUE(Rulers().GetHRulers().IsEmpty());
}

TEST_F(MapViewMarkModes, APressForARulerCountsAlsoWithoutTheLayer) {
    RemoveSpecialLayers();
    for (const TMapMode mode : {TMapMode::mdPlaceRulerH, TMapMode::mdPlaceRulerV}) {
        Shown.View.SetMode(mode);
        Shown.Press(Qt::LeftButton, {20, 10});
        EXPECT_TRUE(Shown.View.GetIsMouseDown());
        Shown.Move({60, 40});
        Shown.Release(Qt::LeftButton, {60, 40});
        EXPECT_FALSE(Shown.View.GetIsMouseDown());
    }
}

TEST_F(MapViewMarkModes, AChangeOfModeLeavesARulerInPlacing) {
    Shown.View.SetMode(TMapMode::mdPlaceRulerV);
    Shown.Press(Qt::LeftButton, {20, 10});
    Shown.View.SetMode(TMapMode::mdNone);
    Shown.Move({60, 40});
    Shown.Release(Qt::LeftButton, {60, 40});
    EXPECT_TRUE(Rulers().GetIsPlacing());
    EXPECT_EQ(Rulers().GetPlacingValue(), 80);
    EXPECT_TRUE(Rulers().GetVRulers().IsEmpty());
    Shown.View.SetMode(TMapMode::mdPlaceRulerV);
    Shown.Release(Qt::LeftButton, {60, 40}); // confirms what was left
    EXPECT_EQ(Rulers().GetVRulers().Count(), 1);
}

TEST_F(MapViewMarkModes, TheReleaseOfAnotherButtonEndsTheDragWithoutItsAction) {
    Shown.View.SetMode(TMapMode::mdPlaceRulerH);
    Shown.Press(Qt::LeftButton, {20, 10});
    Shown.Press(Qt::RightButton, {20, 10}); // ignored
    Shown.Release(Qt::RightButton, {20, 10});
    Shown.View.GetPopupMenu()->close();
    EXPECT_FALSE(Shown.View.GetIsMouseDown());
    EXPECT_TRUE(Rulers().GetIsPlacing());
    Shown.Move({60, 40});
    EXPECT_EQ(Rulers().GetPlacingValue(), -160);
    Shown.Release(Qt::LeftButton, {60, 40}); // no press is being handled, and yet
    ASSERT_EQ(Rulers().GetHRulers().Count(), 1);
    EXPECT_EQ(Rulers().GetHRulers()[0]->GetLocation(), -160);
}

TEST_F(MapViewMarkModes, ADoubleClickPlacesTwoRulers) {
    Shown.View.SetMode(TMapMode::mdPlaceRulerV);
    QTest::mouseClick(&Shown.View, Qt::LeftButton, Qt::NoModifier, {20, 10});
    QTest::mouseDClick(&Shown.View, Qt::LeftButton, Qt::NoModifier, {20, 10});
    QTest::mouseRelease(&Shown.View, Qt::LeftButton, Qt::NoModifier, {20, 10});
    EXPECT_EQ(Rulers().GetVRulers().Count(), 2);
}

// --- Query points ------------------------------------------------------------------------------------------------

TEST_F(MapViewMarkModes, APressMarksAPoint) {
    Shown.View.SetMode(TMapMode::mdInfoQuery);
    Shown.Press(Qt::LeftButton, {20, 10});
    EXPECT_FALSE(Shown.View.GetIsMouseDown());
    ASSERT_EQ(Points().Count(), 1);
    const TInfoQueryPoint& point = *Points()[0];
    EXPECT_EQ(point.GetPoint(), Place(20, 10));
    EXPECT_EQ(point.GetLayer(), Shown.View.GetSpInfoQueryPointsLayer());
    EXPECT_EQ(point.GetPointLabel(), QString());
    EXPECT_EQ(AlphaComponent(point.GetColor()), 255);
    EXPECT_EQ(Shown.View.GetMapPoint(), Place(20, 10)); // the place of the press is kept
    Shown.Move({60, 40});
    Shown.Release(Qt::LeftButton, {60, 40});
    EXPECT_EQ(Points().Count(), 1); // a drag adds no more
    EXPECT_EQ(point.GetPoint(), Place(20, 10));
}

TEST_F(MapViewMarkModes, PointsAreTakenWhileAButtonIsHeldThatDoesNothing) {
    Shown.View.SetMode(TMapMode::mdInfoQuery);
    Shown.Press(Qt::RightButton, {20, 10});
    EXPECT_EQ(Points().Count(), 0);
    Shown.Press(Qt::LeftButton, {30, 10});
    EXPECT_EQ(Points().Count(), 1);
    Shown.Release(Qt::LeftButton, {30, 10});
    Shown.Release(Qt::RightButton, {30, 10});
    Shown.View.GetPopupMenu()->close();
}

TEST_F(MapViewMarkModes, WithoutTheLayerNoPointIsMarked) {
    RemoveSpecialLayers();
    Shown.View.SetMode(TMapMode::mdInfoQuery);
    Shown.Drag({20, 10}, {40, 40});
    EXPECT_FALSE(Shown.View.GetIsMouseDown());
}

// --- Other buttons -----------------------------------------------------------------------------------------------

TEST_F(MapViewMarkModes, TheMiddleButtonPansInEveryModeAndTouchesNothingElse) {
    for (const TMapMode mode :
         {TMapMode::mdNone, TMapMode::mdPan, TMapMode::mdSelection, TMapMode::mdPlaceRulerH, TMapMode::mdPlaceRulerV,
          TMapMode::mdZoomToSelection, TMapMode::mdInfoQuery, TMapMode::mdCustom}) {
        Shown.View.SetMode(mode);
        Viewport().SetTranslation({0, 0});
        Shown.Press(Qt::MiddleButton, {20, 10});
        Shown.Move({60, 40});
        Shown.Release(Qt::MiddleButton, {60, 40});
        const extended ratio = Shown.View.GetDeviceRatio();
        EXPECT_EQ(Viewport().GetTranslation(), TMapPoint(40 * ratio, 30 * ratio).ToPoint()) << static_cast<int>(mode);
        EXPECT_FALSE(Shown.View.GetIsMouseDown());
        EXPECT_TRUE(Viewport().GetIsPanning()); // nothing ends it
        Shown.Move({80, 80});
        EXPECT_EQ(Viewport().GetTranslation(), TMapPoint(40 * ratio, 30 * ratio).ToPoint()) << static_cast<int>(mode);
    }
    EXPECT_FALSE(Selection().GetEnabled());
    EXPECT_FALSE(Rulers().GetIsPlacing());
    EXPECT_TRUE(Rulers().GetHRulers().IsEmpty());
    EXPECT_TRUE(Rulers().GetVRulers().IsEmpty());
    EXPECT_TRUE(Points().IsEmpty());
}

TEST_F(MapViewMarkModes, TheRightButtonTouchesNothing) {
    for (const TMapMode mode :
         {TMapMode::mdNone, TMapMode::mdPan, TMapMode::mdSelection, TMapMode::mdPlaceRulerH, TMapMode::mdPlaceRulerV,
          TMapMode::mdZoomToSelection, TMapMode::mdInfoQuery, TMapMode::mdCustom}) {
        Shown.View.SetMode(mode);
        Shown.Press(Qt::RightButton, {20, 10});
        EXPECT_FALSE(Shown.View.GetIsMouseDown()) << static_cast<int>(mode);
        EXPECT_EQ(Shown.View.GetMapPoint(), Place(20, 10));
        Shown.Move({60, 40});
        Shown.Release(Qt::RightButton, {60, 40});
        Shown.View.GetPopupMenu()->close();
        EXPECT_EQ(Viewport().GetTranslation(), TPoint(0, 0)) << static_cast<int>(mode);
    }
    EXPECT_FALSE(Selection().GetEnabled());
    EXPECT_FALSE(Rulers().GetIsPlacing());
    EXPECT_TRUE(Points().IsEmpty());
}

TEST_F(MapViewMarkModes, ALeftPressDuringAMiddleDragIsIgnored) {
    Shown.View.SetMode(TMapMode::mdSelection);
    Shown.Press(Qt::MiddleButton, {20, 10});
    Shown.Press(Qt::LeftButton, {50, 50});
    EXPECT_FALSE(Selection().GetEnabled());
    EXPECT_EQ(Shown.View.GetMapPoint(), Place(20, 10));
    Shown.Move({30, 10});
    EXPECT_NE(Viewport().GetTranslation(), TPoint(0, 0));
    const TPoint panned = Viewport().GetTranslation();
    Shown.Release(Qt::LeftButton, {30, 10}); // of a button that began nothing: it ends the drag
    EXPECT_FALSE(Shown.View.GetIsMouseDown());
    Shown.Move({90, 90});
    EXPECT_EQ(Viewport().GetTranslation(), panned);
    Shown.Release(Qt::MiddleButton, {90, 90});
}

// --- Space bar ---------------------------------------------------------------------------------------------------

TEST_F(MapViewMarkModes, TheHeldSpaceBarPansInEveryMode) {
    Shown.View.SetAutoPan(true);
    for (const TMapMode mode :
         {TMapMode::mdNone, TMapMode::mdSelection, TMapMode::mdPlaceRulerH, TMapMode::mdPlaceRulerV,
          TMapMode::mdZoomToSelection, TMapMode::mdInfoQuery, TMapMode::mdCustom}) {
        Shown.View.SetMode(mode);
        const Qt::CursorShape cursor = Shown.View.cursor().shape();
        Viewport().SetTranslation({0, 0});
        HoldSpace();
        EXPECT_EQ(Shown.View.cursor().shape(), cursor);
        Shown.Drag({20, 10}, {40, 10});
        LetSpaceGo();
        EXPECT_EQ(Viewport().GetTranslation(), TMapPoint(20 * Shown.View.GetDeviceRatio(), 0).ToPoint())
            << static_cast<int>(mode);
        EXPECT_FALSE(Viewport().GetIsPanning());
        EXPECT_EQ(Shown.View.GetMode(), mode);
    }
    EXPECT_FALSE(Selection().GetEnabled());
    EXPECT_FALSE(Rulers().GetIsPlacing());
    EXPECT_TRUE(Rulers().GetHRulers().IsEmpty());
    EXPECT_TRUE(Rulers().GetVRulers().IsEmpty());
    EXPECT_TRUE(Points().IsEmpty());
}

TEST_F(MapViewMarkModes, LettingTheSpaceBarGoInADragHandsTheMovesToTheMode) {
    Shown.View.SetAutoPan(true);
    Shown.View.SetMode(TMapMode::mdSelection);
    HoldSpace();
    Shown.Press(Qt::LeftButton, {20, 10});
    EXPECT_FALSE(Selection().GetEnabled());
    LetSpaceGo();
    Shown.Move({40, 20});
    EXPECT_EQ(Viewport().GetTranslation(), TPoint(0, 0));
    EXPECT_EQ(Selection().GetBottomRight(), Place(40, 20)); // a corner moves, though no press has set the other one
    EXPECT_FALSE(Selection().GetEnabled());
    Shown.Release(Qt::LeftButton, {40, 20});
    EXPECT_TRUE(Viewport().GetIsPanning()); // the release was the mode's, and nothing ended the panning
}

TEST_F(MapViewMarkModes, TheSpaceBarInARulersDragStopsIt) {
    Shown.View.SetAutoPan(true);
    Shown.View.SetMode(TMapMode::mdPlaceRulerV);
    Shown.Press(Qt::LeftButton, {20, 10});
    HoldSpace();
    Shown.Move({40, 20});
    EXPECT_EQ(Rulers().GetPlacingValue(), 80);
    EXPECT_EQ(Viewport().GetTranslation(), TPoint(0, 0)); // no press has begun a pan
    Shown.Release(Qt::LeftButton, {40, 20});
    EXPECT_TRUE(Rulers().GetIsPlacing()); // the release was the pan's
    EXPECT_TRUE(Rulers().GetVRulers().IsEmpty());
    LetSpaceGo();
    Shown.Release(Qt::LeftButton, {40, 20});
    EXPECT_EQ(Rulers().GetVRulers().Count(), 1);
}

TEST_F(MapViewMarkModes, WithAutoPanClearedAMoveIsTheModesAndPressAndReleaseAreThePans) {
    Shown.View.SetAutoPan(true);
    Shown.View.SetMode(TMapMode::mdPlaceRulerV);
    HoldSpace();
    Shown.View.SetAutoPan(false);
    Rulers().StartPlacing(TPlacingMode::pmVertical, 3);
    Shown.Press(Qt::LeftButton, {20, 10}); // pans: the key is held
    EXPECT_TRUE(Viewport().GetIsPanning());
    EXPECT_EQ(Rulers().GetPlacingValue(), 3);
    Shown.Move({40, 20}); // places: AutoPan is off
    EXPECT_EQ(Rulers().GetPlacingValue(), 70);
    EXPECT_EQ(Viewport().GetTranslation(), TPoint(0, 0));
    Shown.Release(Qt::LeftButton, {40, 20}); // pans
    EXPECT_FALSE(Viewport().GetIsPanning());
    EXPECT_TRUE(Rulers().GetIsPlacing());
    LetSpaceGo(); // counts also with AutoPan off
    Shown.Press(Qt::LeftButton, {20, 10});
    EXPECT_EQ(Rulers().GetPlacingValue(), 80);
    Shown.Release(Qt::LeftButton, {20, 10});
}

TEST_F(MapViewMarkModes, AKeyThatWasDownBeforeAutoPanPansFromItsNextRepeat) {
    HoldSpace();
    Shown.View.SetAutoPan(true);
    Shown.View.SetMode(TMapMode::mdInfoQuery);
    Shown.Drag({20, 10}, {40, 10});
    EXPECT_EQ(Points().Count(), 1);
    QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), true);
    QCoreApplication::sendEvent(&Shown.View, &repeat);
    Shown.Drag({20, 10}, {40, 10});
    EXPECT_EQ(Points().Count(), 1);
    LetSpaceGo();
}

TEST_F(MapViewMarkModes, OtherKeysPanNothing) {
    Shown.View.SetAutoPan(true);
    Shown.View.SetMode(TMapMode::mdInfoQuery);
    QTest::keyPress(&Shown.View, Qt::Key_Return);
    Shown.Drag({20, 10}, {40, 10});
    EXPECT_EQ(Points().Count(), 1);
    QTest::keyRelease(&Shown.View, Qt::Key_Return);
    HoldSpace();
    QTest::keyClick(&Shown.View, Qt::Key_Return); // nor does another key end the panning
    Shown.Drag({20, 10}, {40, 10});
    EXPECT_EQ(Points().Count(), 1);
    LetSpaceGo();
}

// --- Layers ------------------------------------------------------------------------------------------------------

/// A view with a selected layer and an object layer.
class MapViewLayerMouse : public MapViewMarkModes {
protected:
    MapViewLayerMouse() { Shown.Manager->SetSelLayer(Selected); }

    TTestLayer* Selected = Shown.AddReadyLayer();
    TTestObjectLayer* Objects = static_cast<TTestObjectLayer*>(Shown.View.GetSpObjectLayer());

    QString At(int x, int y) const {
        const double ratio = Shown.View.GetDeviceRatio();
        return QStringLiteral("%1,%2").arg(x * ratio).arg(y * ratio);
    }
};

const TMouseSupport AllMouse = {TMouseSupportAction::msMouseDown, TMouseSupportAction::msMouseMove,
                                TMouseSupportAction::msMouseUp};

TEST_F(MapViewLayerMouse, TheSelectedLayerComesFirst) {
    Selected->MouseSupport = AllMouse;
    Objects->MouseSupport = AllMouse;
    Shown.Drag({20, 10}, {40, 20});
    EXPECT_EQ(Selected->Mouse, QStringLiteral("down %1 move %2 1 up %2 1 ").arg(At(20, 10), At(40, 20)));
    EXPECT_EQ(Objects->Mouse, QString());
}

TEST_F(MapViewLayerMouse, TheObjectLayerGetsWhatTheSelectedOneDoesNotTake) {
    Selected->MouseSupport = {TMouseSupportAction::msMouseMove};
    Objects->MouseSupport = AllMouse;
    Shown.Drag({20, 10}, {40, 20});
    EXPECT_EQ(Selected->Mouse, QStringLiteral("move %1 1 ").arg(At(40, 20)));
    EXPECT_EQ(Objects->Mouse, QStringLiteral("down %1 up %2 1 ").arg(At(20, 10), At(40, 20)));
}

TEST_F(MapViewLayerMouse, TheObjectLayerGetsTheMouseWithoutASelectedLayer) {
    Shown.Manager->SetSelLayer(nullptr);
    Objects->MouseSupport = AllMouse;
    Shown.Hover({6, 6});
    Shown.Drag({20, 10}, {40, 20});
    EXPECT_EQ(Objects->Mouse,
              QStringLiteral("move %1 0 down %2 move %3 1 up %3 1 ").arg(At(6, 6), At(20, 10), At(40, 20)));
}

TEST_F(MapViewLayerMouse, APressThatNobodyTakesIsNotHandled) {
    Selected->MouseSupport = {TMouseSupportAction::msMouseMove, TMouseSupportAction::msMouseUp,
                              TMouseSupportAction::msRightClick};
    Shown.Press(Qt::LeftButton, {20, 10});
    EXPECT_FALSE(Shown.View.GetIsMouseDown());
    Shown.Move({40, 20});
    Shown.Release(Qt::LeftButton, {40, 20});
    EXPECT_EQ(Selected->Mouse, QStringLiteral("move %1 0 up %1 0 ").arg(At(40, 20)));
}

TEST_F(MapViewLayerMouse, ARightClickReachesNoLayer) {
    Selected->MouseSupport = AllMouse + TMouseSupport{TMouseSupportAction::msRightClick};
    Objects->MouseSupport = Selected->MouseSupport;
    Shown.Press(Qt::RightButton, {20, 10});
    Shown.Release(Qt::RightButton, {20, 10});
    Shown.View.GetPopupMenu()->close();
    Shown.Move({40, 20});
    EXPECT_EQ(Selected->Mouse + Objects->Mouse, QString());
}

TEST_F(MapViewLayerMouse, AfterAMiddleClickHoverMovesReachNoLayerEither) {
    Selected->MouseSupport = AllMouse;
    Shown.Press(Qt::MiddleButton, {20, 10});
    Shown.Release(Qt::MiddleButton, {20, 10});
    Shown.Move({40, 20});
    EXPECT_EQ(Selected->Mouse, QString());
    Shown.Press(Qt::LeftButton, {40, 20});
    Shown.Release(Qt::LeftButton, {40, 20});
    Shown.Hover({60, 20});
    EXPECT_TRUE(Selected->Mouse.endsWith(QStringLiteral("move %1 0 ").arg(At(60, 20))));
}

TEST_F(MapViewLayerMouse, LayersGetNothingInOtherModes) {
    Selected->MouseSupport = AllMouse;
    Objects->MouseSupport = AllMouse;
    for (const TMapMode mode :
         {TMapMode::mdPan, TMapMode::mdSelection, TMapMode::mdPlaceRulerH, TMapMode::mdPlaceRulerV,
          TMapMode::mdZoomToSelection, TMapMode::mdInfoQuery, TMapMode::mdCustom}) {
        Shown.View.SetMode(mode);
        Shown.Drag({20, 10}, {40, 20});
    }
    EXPECT_EQ(Selected->Mouse + Objects->Mouse, QString());
}

TEST_F(MapViewLayerMouse, ALayerSeesThatItsPressIsBeingHandled) {
    class TAskingLayer : public TTestLayer {
    public:
        using TTestLayer::TTestLayer;
        void MouseDown(TWorldViewport*, TPoint) override { WasDown = View->GetIsMouseDown(); }
        const TMapViewControl* View = nullptr;
        bool WasDown = false;
    };
    auto owned = std::make_unique<TAskingLayer>(Shown.Manager);
    TAskingLayer* layer = Shown.Manager->GetLayers().Add(std::move(owned));
    layer->View = &Shown.View;
    layer->MouseSupport = AllMouse;
    Shown.Manager->SetSelLayer(layer);
    Shown.Press(Qt::LeftButton, {20, 10});
    EXPECT_TRUE(layer->WasDown);
    Shown.Release(Qt::LeftButton, {20, 10});
}

} // namespace
} // namespace lmx
