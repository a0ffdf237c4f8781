// A whole session of the viewer in its window: pan, zoom to a rectangle, place two rulers and three points, measure in
// the host's own mode, select. It runs offscreen and in a real window of an X server, and ends with a look at the map.

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Controls/lmxMapViewRulersPanelControl.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/Objects/lmxBaseObjectLayerItem.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/CoordinatePrinters.h>
#include <tests/Support/GeometryPrinters.h>
#include <tests/Support/Printers.h>

#include <QAbstractItemView>
#include <QAction>
#include <QDockWidget>
#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>
#include <QToolButton>
#include <QToolTip>
#include <QWindow>

#include <gtest/gtest.h>

#include "Places.h"
#include "SampleMap.h"
#include "ViewerWindow.h"

namespace lmx {
namespace {

const QString DataFolder = QStringLiteral(LMX_EXAMPLE_DATA);

/// The viewer with its sample map, in a view of 480 x 270 pixels.
class ViewerSession : public testing::Test {
protected:
    ViewerSession() {
        AddSampleLayers(Window.GetLayerManager(), DataFolder);
        Window.AddPlaces(DataFolder + QStringLiteral("/places.csv"));
        View().setFixedSize(480, 270);
        View().SetShowFocusedBorder(false); // a window without a window manager is never active
        Window.resize(780, 420);
        for (QDockWidget* dock : Window.findChildren<QDockWidget*>())
            dock->setVisible(dock->windowTitle() != "Query points"); // the map as large as in the picture that is kept
        Window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Window));
        Settle();
        Window.ShowWholeWorld();
        Settle();
    }

    TMapViewControl& View() { return *Window.GetView(); }
    TWorldViewport& Viewport() { return *View().GetViewport(); }
    static void Settle() {
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
    }

    /// Clicks the button of a mode in the tool bar.
    void Choose(const QString& mode) {
        const QToolBar* bar = Window.findChild<QToolBar*>();
        for (QAction* action : bar->actions())
            if (action->text() == mode) {
                QTest::mouseClick(bar->widgetForAction(action), Qt::LeftButton);
                Settle();
                EXPECT_TRUE(action->isChecked()) << mode.toStdString();
                return;
            }
        ADD_FAILURE() << "no mode " << mode.toStdString();
    }
    QPoint InWindow(QPoint inView) { return View().mapTo(&Window, inView); }
    /// The window system's events, which find the view by themselves.
    void Drag(QPoint from, QPoint to) {
        QWindow* handle = Window.windowHandle();
        QTest::mousePress(handle, Qt::LeftButton, {}, InWindow(from));
        QTest::mouseMove(handle, InWindow((from + to) / 2));
        QTest::mouseMove(handle, InWindow(to));
        QTest::mouseRelease(handle, Qt::LeftButton, {}, InWindow(to));
        Settle();
    }
    void Click(QPoint at) { Drag(at, at); }
    /// Adds an annotation of a kind by the menu, as the topmost one.
    TBaseObjectLayerItem* Annotate(const QString& kind) {
        QMenu* menu = nullptr;
        for (QAction* action : Window.menuBar()->actions())
            if (action->text() == QStringLiteral("&Annotation"))
                menu = action->menu();
        for (QAction* action : menu ? menu->actions() : QList<QAction*>())
            if (action->text() == kind)
                action->trigger();
        Settle();
        const auto& objects = View().GetSpObjectLayer()->GetObjects();
        return objects.IsEmpty() ? nullptr : objects[objects.Count() - 1];
    }
    QImage Screen() {
        Window.repaint();
        Settle();
        const QPoint corner = View().mapToGlobal(QPoint(0, 0));
        return QGuiApplication::primaryScreen()
            ->grabWindow(0, corner.x(), corner.y(), 480, 270)
            .toImage()
            .convertToFormat(QImage::Format_RGB32);
    }
    QString StatusText() {
        QStringList texts;
        for (const QLabel* label : Window.statusBar()->findChildren<QLabel*>())
            texts += label->text();
        return texts.join(u'|');
    }

    void DoSession();
    QImage Picture() {
        View().RepaintMap();
        View().grab();
        return View().GetBuffer().ToQImage().convertToFormat(QImage::Format_RGB32);
    }

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    TViewerWindow Window;
};

void ViewerSession::DoSession() {
    EXPECT_TRUE(StatusText().contains(QStringLiteral("Drag to pan"))) << StatusText().toStdString();
    const TPoint before = Viewport().GetTranslation();
    Choose(QStringLiteral("Pan"));
    Drag({240, 135}, {210, 150});
    EXPECT_EQ(Viewport().GetTranslation(), TPoint(before.X - 30, before.Y + 15));

    Choose(QStringLiteral("Zoom to a rectangle"));
    EXPECT_TRUE(StatusText().contains(QStringLiteral("Drag a rectangle"))) << StatusText().toStdString();
    const TMapPoint corner = Viewport().PointToMapPoint({320, 230});
    const TMapPoint opposite = Viewport().PointToMapPoint({160, 140});
    Drag({320, 230}, {160, 140});           // southern Africa, from the bottom right
    EXPECT_EQ(Viewport().GetScale(), 4.0L); // 480 pixels for the 120 degrees of 160 pixels
    EXPECT_NEAR(static_cast<double>(Viewport().GetCenter().X), static_cast<double>(corner.X + opposite.X) / 2, 0.13);
    EXPECT_NEAR(static_cast<double>(Viewport().GetCenter().Y), static_cast<double>(corner.Y + opposite.Y) / 2, 0.13);

    Choose(QStringLiteral("Place a meridian ruler"));
    Drag({100, 40}, {120, 60});
    Choose(QStringLiteral("Place a parallel ruler"));
    Drag({100, 40}, {110, 70});
    const TRulerMapLayer& rulers = *View().GetSpRulersLayer();
    ASSERT_EQ(rulers.GetHRulers().Count(), 1);
    ASSERT_EQ(rulers.GetVRulers().Count(), 1);
    EXPECT_EQ(rulers.GetHRulers()[0]->GetLocation(), Viewport().PointToMapPoint({120, 60}).X);
    EXPECT_EQ(rulers.GetVRulers()[0]->GetLocation(), Viewport().PointToMapPoint({110, 70}).Y);

    Choose(QStringLiteral("Mark a point"));
    auto& points = View().GetSpInfoQueryPointsLayer()->GetPoints();
    constexpr std::array<TColor32, 3> colors = {0xFFE69F00, 0xFF56B4E9, 0xFF009E73};
    for (int i = 0; i < 3; ++i) {
        Click({200 + 70 * i, 100 + 40 * i});
        ASSERT_EQ(points.Count(), i + 1);
        points[i]->SetColor(colors[static_cast<std::size_t>(i)]); // a new point's is any
    }

    Choose(QStringLiteral("Measure"));
    Drag({60, 220}, {420, 60});
    EXPECT_TRUE(StatusText().contains(QStringLiteral(" km"))) << StatusText().toStdString();

    Choose(QStringLiteral("Select"));
    Drag({300, 30}, {400, 120});
    EXPECT_TRUE(View().GetSpSelectionLayer()->GetEnabled());
    EXPECT_EQ(View().GetSpSelectionLayer()->GetTopLeft(), Viewport().PointToMapPoint({300, 30}));
}

/// How many pixels differ by more than 2 in a channel, labels and dots of places left out: text is another one with
/// another version of the fonts.
int DifferentPixels(const QImage& picture, const QImage& expected, const TPlacesLayer& places) {
    int different = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb a = picture.pixel(x, y);
            const QRgb b = expected.pixel(x, y);
            const int most =
                std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
            const auto covers = [&](const auto& drawn) {
                constexpr int spare = 40; // labels of another width
                return x >= drawn.second.Left - spare && x <= drawn.second.Right + spare && y >= drawn.second.Top - 4 &&
                       y <= drawn.second.Bottom + 4;
            };
            different += most > 2 && std::ranges::none_of(places.GetRenderRects(), covers) ? 1 : 0;
        }
    return different;
}

TEST_F(ViewerSession, EndsWithTheMapAsItIsKept) {
    DoSession();
    const QImage picture = Picture();
    ASSERT_EQ(picture.size(), QSize(480, 270));
    picture.save(QStringLiteral("viewerSession.png")); // in the folder of this run, to be looked at
    const QString kept = QStringLiteral(LMX_SOURCE_DIR "/tests/data/viewerSession.png");
    const QImage expected = QImage(kept).convertToFormat(QImage::Format_RGB32);
    ASSERT_TRUE(expected.size() == picture.size()) << kept.toStdString();
    const auto* places = dynamic_cast<const TPlacesLayer*>(Window.GetLayerManager()->GetLayers()[2]);
    ASSERT_NE(places, nullptr);
    EXPECT_EQ(DifferentPixels(picture, expected, *places), 0) << "compare viewerSession.png in the folder of this run";
}

TEST_F(ViewerSession, TheScreenShowsTheMap) {
    DoSession();
    const QImage picture = Picture();
    const QImage screen = Screen();
    ASSERT_EQ(screen.size(), picture.size());
    EXPECT_EQ(screen, picture);
}

/// The pixels of a rectangle that are of another colour.
int PixelsWithout(const QImage& picture, const TRect& rect, QRgb color) {
    int others = 0;
    for (int y = rect.Top; y < rect.Bottom; ++y)
        for (int x = rect.Left; x < rect.Right; ++x)
            others += picture.pixel(x, y) == color ? 0 : 1;
    return others;
}

TEST_F(ViewerSession, AnAnnotationIsMovedAndResizedByItsGrabbers) {
    constexpr QRgb Gray = 0xFF808080;
    constexpr QRgb White = 0xFFFFFFFF;
    Choose(QStringLiteral("Pointer"));
    TBaseObjectLayerItem* const plate = Annotate(QStringLiteral("Rectangle"));
    ASSERT_NE(plate, nullptr);
    const TPoint translation = Viewport().GetTranslation();
    Drag({50, 50}, {250, 150});
    EXPECT_TRUE(plate->GetIsSelected());
    EXPECT_EQ(plate->GetRect(), TRect(200, 100, 300, 200));
    const QImage moved = Screen();
    EXPECT_EQ(PixelsWithout(moved, {210, 110, 240, 190}, Gray), 0);
    EXPECT_EQ(PixelsWithout(moved, {294, 194, 299, 199}, White), 0); // within the grabber's frame
    EXPECT_GT(PixelsWithout(moved, {305, 110, 340, 220}, Gray), 3000);

    Drag({297, 197}, {350, 230});
    EXPECT_EQ(plate->GetSelectedElement(), TSelectedElement::soBottomRightGrabber);
    EXPECT_EQ(plate->GetRect(), TRect(200, 100, 350, 230));
    const QImage resized = Screen();
    EXPECT_EQ(resized, Picture());
    EXPECT_EQ(PixelsWithout(resized, {294, 194, 299, 199}, Gray), 0); // where the grabber was
    EXPECT_EQ(PixelsWithout(resized, {305, 110, 340, 160}, Gray), 0);
    EXPECT_EQ(PixelsWithout(resized, {344, 224, 349, 229}, White), 0);

    Drag({275, 104}, {275, 60}); // the middle of the upper side
    EXPECT_EQ(plate->GetRect(), TRect(200, 60, 350, 230));
    EXPECT_EQ(Viewport().GetTranslation(), translation);
    EXPECT_EQ(QToolTip::text(), QString()); // who drags an annotation does not read the map
    Click({100, 250});
    EXPECT_FALSE(plate->GetIsSelected());
    EXPECT_NE(QToolTip::text(), QString());
    QToolTip::hideText();
    EXPECT_EQ(PixelsWithout(Screen(), {340, 220, 349, 229}, Gray), 0);
}

TEST_F(ViewerSession, ACompassRoseStaysRound) {
    Choose(QStringLiteral("Pointer"));
    const TBaseObjectLayerItem* const rose = Annotate(QStringLiteral("Compass rose"));
    ASSERT_NE(rose, nullptr);
    const QImage large = Screen();
    Drag({128, 128}, {130, 129});
    Drag({255, 254}, {150, 101}); // the corner at the bottom right
    EXPECT_EQ(rose->GetRect(), TRect(2, 1, 102, 101));
    EXPECT_NE(Screen(), large);
    EXPECT_EQ(Screen(), Picture());
}

TEST_F(ViewerSession, ThePanelListsTheRulersAndTheMenuRemovesAllMarks) {
    DoSession();
    const TMapViewRulersPanelControl* panel = nullptr;
    for (const QWidget* widget : Window.findChildren<QWidget*>())
        if (const auto* found = dynamic_cast<const TMapViewRulersPanelControl*>(widget))
            panel = found;
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->GetRulersLayer(), View().GetSpRulersLayer());
    const auto* list = panel->findChild<QAbstractItemView*>();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->model()->rowCount(), 2);
    const QList<QAction*> modes = Window.menuBar()->actions().at(1)->menu()->actions();
    modes.last()->trigger();
    EXPECT_EQ(list->model()->rowCount(), 0);
    EXPECT_TRUE(View().GetSpInfoQueryPointsLayer()->GetPoints().IsEmpty());
    EXPECT_FALSE(View().GetSpSelectionLayer()->GetEnabled());
}

} // namespace
} // namespace lmx
