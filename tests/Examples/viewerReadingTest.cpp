// What the viewer says about the place under the mouse, and what becomes of marks: the status line is true at any time,
// the wheel keeps the place under it, and marks go and fold with the world.

#include "MapReading.h"

#include <lmx/Controls/lmxMapControl.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Controls/lmxMapViewRuler.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestLayer.h>

#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include "MeasureMode.h"
#include "Places.h"
#include "SampleMap.h"
#include "ViewerWindow.h"

namespace lmx {
namespace {

const QString DataFolder = QStringLiteral(LMX_EXAMPLE_DATA);

/// The viewer with its rasters and places, the whole world in a view of 480 x 270 logical pixels.
class ViewerReading : public testing::Test {
protected:
    ViewerReading() {
        AddSampleLayers(Window.GetLayerManager(), DataFolder);
        Window.AddPlaces(DataFolder + QStringLiteral("/places.csv"));
        View().setFixedSize(480, 270);
        Window.resize(800, 500);
        Window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Window));
        Settle();
        Window.ShowWholeWorld();
        Settle();
    }

    TMapViewControl& View() { return *Window.GetView(); }
    TWorldViewport& Viewport() { return *View().GetViewport(); }
    TBaseMapLayer& Layer(int index) { return *Window.GetLayerManager()->GetLayers()[index]; }
    static void Settle() {
        for (int i = 0; i < 4; ++i)
            QCoreApplication::processEvents();
    }
    void Send(QEvent::Type type, QPointF at, Qt::MouseButton button = Qt::NoButton, Qt::MouseButtons held = {}) {
        QMouseEvent event(type, at, View().mapToGlobal(at), button, held, {});
        QCoreApplication::sendEvent(&View(), &event);
    }
    void Hover(QPointF at) { Send(QEvent::MouseMove, at); }
    void Click(QPointF at) {
        Send(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
        Send(QEvent::MouseButtonRelease, at, Qt::LeftButton);
    }
    void Turn(QPointF at, int delta) {
        QWheelEvent wheel(at, View().mapToGlobal(at), {}, {0, delta}, {}, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&View(), &wheel);
    }
    QString Status(const char* name) {
        return Window.statusBar()->findChild<QLabel*>(QString::fromLatin1(name))->text();
    }
    QString Told() { return Status("Place") + u'|' + Status("Values"); }
    /// What is true of a place in the view's logical pixels now.
    QString True(QPointF at) {
        const TMapReading reading = ReadMap(View(), View().ToDevicePoint(at));
        return reading.Place + u'|' + reading.Values.join(QStringLiteral("   "));
    }
    /// The place in the view, in logical pixels.
    QPointF PositionOf(const TMapPoint& place) {
        const TMapPoint pixel = Viewport().MapPointToPoint(place);
        return QPointF(static_cast<double>(pixel.X) + 0.5, static_cast<double>(pixel.Y) + 0.5) /
               View().devicePixelRatioF();
    }
    void Trigger(int menu, const QString& text) {
        for (QAction* action : Window.menuBar()->actions().at(menu)->menu()->actions())
            if (action->text() == text) {
                action->trigger();
                return;
            }
        ADD_FAILURE() << "no entry " << text.toStdString();
    }

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    TViewerWindow Window;
};

enum { FileMenu, ModeMenu, LayerMenu, ViewMenu, HelpMenu };
const QPointF Rest(331, 153); // in the Indian Ocean, away from all names

TEST_F(ViewerReading, TheStatusFollowsEveryChangeUnderAMouseThatRests) {
    Hover(Rest);
    QString before = Told();
    EXPECT_EQ(before, True(Rest));
    EXPECT_TRUE(before.contains(QStringLiteral("Sea surface temperature, January: "))) << before.toStdString();
    const auto follows = [&](const char* what) {
        Settle();
        EXPECT_EQ(Told(), True(Rest)) << what;
        EXPECT_NE(Told(), before) << what;
        before = Told();
    };
    Window.ShowWholeWorld();
    Viewport().SetScale(Viewport().GetScale() * 3);
    follows("zoom");
    Viewport().SetTranslation({Viewport().GetTranslation().X + 40, Viewport().GetTranslation().Y + 30});
    follows("pan");
    Layer(1).SetIsVisible(false);
    follows("hidden");
    EXPECT_FALSE(before.contains(QStringLiteral("Sea surface"))) << before.toStdString();
    Layer(1).SetIsVisible(true);
    follows("shown");
    Layer(1).SetLayerName(QStringLiteral("Warmth"));
    follows("renamed");
    EXPECT_TRUE(before.contains(QStringLiteral("Warmth: "))) << before.toStdString();
    Window.GetLayerManager()->MoveLayer(0, 1);
    follows("moved");
    auto& relief = dynamic_cast<TIdrisiMapLayer&>(Layer(1));
    for (int row = 1; row <= relief.GetImage()->getHeader()->GetHeight(); ++row)
        for (int column = 1; column <= relief.GetImage()->getHeader()->GetWidth(); ++column)
            relief.GetImage()->SetCell(column, row, 4321);
    relief.Invalidate();
    follows("other data");
    EXPECT_TRUE(before.contains(QStringLiteral("Relief: 4321.0"))) << before.toStdString();
    Window.GetLayerManager()->GetLayers().Remove(&relief);
    follows("removed");
    Window.AddModelField();
    follows("added");
    EXPECT_TRUE(before.contains(QStringLiteral("Rossby"))) << before.toStdString();
    View().ChangeWorldSystem(TWorldSystemFactory::GetObject(QStringLiteral("latlonAntimerdian")));
    follows("another world");

    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&View(), &leave);
    Settle();
    EXPECT_EQ(Told(), QStringLiteral("|"));
    View().RepaintMap();
    Settle();
    EXPECT_EQ(Told(), QStringLiteral("|")) << "it stays so";
}

TEST_F(ViewerReading, TheStatusFollowsAViewThatMovesUnderTheMouse) {
    Hover(Rest);
    const QPointF onScreen = View().mapToGlobal(Rest);
    const QString before = Told();
    Trigger(ViewMenu, QStringLiteral("&Tick strips"));
    Settle();
    const QPointF now = View().mapFromGlobal(onScreen);
    EXPECT_EQ(now, Rest - QPointF(20, 20));
    EXPECT_EQ(Told(), True(now));
    EXPECT_NE(Told(), before);
}

TEST_F(ViewerReading, NothingIsToldOfWhatIsNotInTheWorld) {
    Hover(PositionOf({10, 89.5L}));
    EXPECT_TRUE(Status("Place").endsWith(QStringLiteral(" N"))) << Status("Place").toStdString();
    Viewport().SetScale(Viewport().GetScale() / 2);
    Hover(PositionOf({10, 91}));
    EXPECT_EQ(Told(), QStringLiteral("|"));
    Hover(PositionOf({-181, 10}));
    EXPECT_EQ(Told(), QStringLiteral("|"));
    Hover({-1, 5});
    EXPECT_EQ(Told(), QStringLiteral("|")) << "a drag that has left the view";
}

TEST_F(ViewerReading, TheWheelKeepsThePlaceUnderIt) {
    const TMapPoint place = Viewport().PointToMapPoint(TMapPoint(View().ToDevicePoint(Rest)));
    const extended before = Viewport().GetScale();
    for (int i = 0; i < 5; ++i)
        Turn(Rest, 120);
    EXPECT_NEAR(static_cast<double>(Viewport().GetScale() / before), 1.61051, 1e-5);
    const TMapPoint now = Viewport().PointToMapPoint(TMapPoint(View().ToDevicePoint(Rest)));
    EXPECT_NEAR(static_cast<double>(now.X - place.X), 0, 3 / static_cast<double>(before));
    EXPECT_NEAR(static_cast<double>(now.Y - place.Y), 0, 3 / static_cast<double>(before));
}

TEST_F(ViewerReading, AFineWheelZoomsByWholeSteps) {
    const extended before = Viewport().GetScale();
    for (int i = 0; i < 3; ++i)
        Turn(Rest, 30);
    EXPECT_EQ(Viewport().GetScale(), before);
    Turn(Rest, 30);
    EXPECT_GT(Viewport().GetScale(), before);
}

TEST_F(ViewerReading, TheWheelDuringAPanDoesNothing) {
    const TPoint start = Viewport().GetTranslation();
    const extended scale = Viewport().GetScale();
    Send(QEvent::MouseButtonPress, {200, 100}, Qt::LeftButton, Qt::LeftButton);
    Send(QEvent::MouseMove, {210, 104}, Qt::NoButton, Qt::LeftButton);
    Turn({210, 104}, 120);
    Send(QEvent::MouseMove, {211, 104}, Qt::NoButton, Qt::LeftButton);
    const auto ratio = static_cast<std::int32_t>(View().devicePixelRatioF());
    EXPECT_EQ(Viewport().GetTranslation(), TPoint(start.X + 11 * ratio, start.Y + 4 * ratio));
    EXPECT_EQ(Viewport().GetScale(), scale);
    Send(QEvent::MouseButtonRelease, {211, 104}, Qt::LeftButton);
    Turn({210, 104}, 120);
    EXPECT_GT(Viewport().GetScale(), scale);
}

TEST_F(ViewerReading, ThePointerReadsTheMapAndSelectsALayer) {
    View().SetMode(TMapMode::mdNone);
    Click(Rest);
    QStringList lines = QToolTip::text().split(u'\n');
    ASSERT_EQ(lines.size(), 3) << QToolTip::text().toStdString();
    EXPECT_TRUE(lines[1].startsWith(QStringLiteral("Sea surface temperature, January: ")));
    EXPECT_TRUE(lines[2].startsWith(QStringLiteral("Relief: ")));
    EXPECT_EQ(Window.GetLayerManager()->GetSelLayer(), &Layer(1));
    Click(PositionOf({20, 25})); // on land
    EXPECT_EQ(Window.GetLayerManager()->GetSelLayer(), &Layer(0));
    EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("January: no data"))) << QToolTip::text().toStdString();
    View().grab();
    Click(PositionOf({18.4350L, -33.92L}));
    EXPECT_TRUE(QToolTip::text().startsWith(QStringLiteral("Cape Town, South Africa   ")));
    EXPECT_EQ(Window.GetLayerManager()->GetSelLayer(), &Layer(2));
    Viewport().SetScale(Viewport().GetScale() / 2);
    QToolTip::hideText();
    Window.GetLayerManager()->SetSelLayer(&Layer(0));
    Click({2, 2}); // beyond the world
    EXPECT_EQ(Window.GetLayerManager()->GetSelLayer(), &Layer(0));
    View().SetMode(TMapMode::mdPan);
    Click(PositionOf({0, 0}));
    EXPECT_EQ(Window.GetLayerManager()->GetSelLayer(), &Layer(0)) << "another mode";
}

TEST_F(ViewerReading, MarksStayOnTheEarthInTheOtherWorld) {
    auto& points = View().GetSpInfoQueryPointsLayer()->GetPoints();
    points.Add(std::make_unique<TInfoQueryPoint>(View().GetSpInfoQueryPointsLayer(), TMapPoint(-150, 20), 0xFFFF0000));
    View().GetSpRulersLayer()->Add(std::make_unique<TRulerItem>(TRulerOrientation::roHorizontal, -90, 0xFF00FF00));
    View().GetSpSelectionLayer()->StartSelection({-120, 40});
    View().GetSpSelectionLayer()->Adjust({-100, 30});
    Trigger(ViewMenu, QStringLiteral("Lat/lon (Antimeridian)"));
    EXPECT_EQ(points[0]->GetPoint(), TMapPoint(210, 20));
    EXPECT_EQ(View().GetSpRulersLayer()->GetHRulers()[0]->GetLocation(), 270);
    EXPECT_EQ(View().GetSpSelectionLayer()->GetTopLeft(), TMapPoint(240, 40));
    EXPECT_EQ(View().GetSpSelectionLayer()->GetBottomRight(), TMapPoint(260, 30));
    EXPECT_TRUE(View().GetSpSelectionLayer()->GetEnabled());
    View().grab();
    const TPoint marker = Viewport().MapPointToPoint({210, 20}).ToPoint();
    EXPECT_EQ(View().GetBuffer().Pixel(marker.X, marker.Y - static_cast<int>(12 * View().devicePixelRatioF())),
              0xFFFF0000U);

    View().GetSpSelectionLayer()->StartSelection({170, 40});
    View().GetSpSelectionLayer()->Adjust({190, 30});
    View().ChangeWorldSystem(TWorldSystemFactory::GetObject(QStringLiteral("latlon"))); // by whoever
    EXPECT_EQ(points[0]->GetPoint(), TMapPoint(-150, 20));
    EXPECT_FALSE(View().GetSpSelectionLayer()->GetEnabled()) << "it would reach over the seam";
    for (const TPin* pin : dynamic_cast<TPlacesLayer&>(Layer(2)).GetPins())
        EXPECT_LE(pin->GetLon(), 180) << pin->GetName().toStdString();
}

TEST_F(ViewerReading, AllMarksAndTheWayAreRemoved) {
    View().SetMode(TMapMode::mdCustom);
    Send(QEvent::MouseButtonPress, {100, 100}, Qt::LeftButton, Qt::LeftButton);
    Send(QEvent::MouseMove, {200, 120}, Qt::NoButton, Qt::LeftButton);
    Send(QEvent::MouseButtonRelease, {200, 120}, Qt::LeftButton);
    auto& layers = Window.GetLayerManager()->GetLayers();
    ASSERT_EQ(layers.Count(), 4);
    EXPECT_NE(dynamic_cast<TWayLayer*>(layers[3]), nullptr);
    EXPECT_TRUE(Status("Hint").endsWith(QStringLiteral(" km"))) << Status("Hint").toStdString();
    Trigger(ModeMenu, QStringLiteral("&Remove all marks"));
    EXPECT_EQ(layers.Count(), 3);
    EXPECT_EQ(Status("Hint"), QStringLiteral("Drag to measure the way over the earth"));
    Send(QEvent::MouseButtonPress, {100, 100}, Qt::LeftButton, Qt::LeftButton);
    EXPECT_EQ(layers.Count(), 4) << "and measured again";
}

TEST_F(ViewerReading, TheTickStripsComeAndGo) {
    View().setMinimumSize(0, 0);
    View().setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    TMapControl& map = *Window.GetMap();
    Trigger(ViewMenu, QStringLiteral("&Tick strips"));
    EXPECT_TRUE(map.GetHRuler()->isVisible());
    EXPECT_TRUE(map.GetVRuler()->isVisible());
    EXPECT_EQ(View().geometry(), map.rect().adjusted(20, 20, 0, 0));
    Trigger(ViewMenu, QStringLiteral("&Tick strips"));
    EXPECT_FALSE(map.GetHRuler()->isVisible());
    EXPECT_FALSE(map.GetVRuler()->isVisible());
    EXPECT_EQ(View().geometry(), map.rect());
    Window.resize(Window.width() + 50, Window.height() + 40);
    Settle();
    EXPECT_EQ(View().geometry(), map.rect());
}

TEST_F(ViewerReading, TheWindowFollowsItsViewToAnotherManager) {
    View().SetMode(TMapMode::mdCustom);
    Click({100, 100});
    const auto old = Window.GetLayerManager();
    const auto other = TLayerManagerFactory::GetObject();
    AddSampleLayers(other, DataFolder);
    View().SetLayerManager(other);
    EXPECT_EQ(Window.GetLayerManager(), other);
    Settle();
    Hover(Rest);
    Settle();
    EXPECT_EQ(Told(), True(Rest));
    Layer(1).SetLayerName(QStringLiteral("Warmth"));
    Settle();
    EXPECT_TRUE(Told().contains(QStringLiteral("Warmth"))) << Told().toStdString();
    Click({100, 100});
    EXPECT_NE(dynamic_cast<TWayLayer*>(other->GetLayers()[2]), nullptr) << "the way is on the map that is shown";
    EXPECT_EQ(old->GetLayers().Count(), 3);
    View().SetLayerManager(nullptr);
    Settle();
    EXPECT_EQ(Told(), QStringLiteral("|"));
}

} // namespace
} // namespace lmx
