// The viewer's window: opening files from the menu and by dropping them, the wheel, the status bar, the layers panel.

#include "ViewerWindow.h"

#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>

#include <QAction>
#include <QComboBox>
#include <QDockWidget>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QTest>
#include <QToolBar>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include "ModeActions.h"
#include "ModeIcons.h"
#include "OpenRaster.h"
#include "Overlays.h"
#include "Places.h"
#include "SampleMap.h"

namespace lmx {
namespace {

const QString DataFolder = QStringLiteral(LMX_EXAMPLE_DATA);

class ViewerWindow : public testing::Test {
protected:
    ViewerWindow() {
        AddSampleLayers(Window.GetLayerManager(), DataFolder);
        Window.resize(900, 500);
        Window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Window));
        QCoreApplication::processEvents();
        Window.ShowWholeWorld();
    }

    TMapViewControl& View() { return *Window.GetView(); }
    TObjectList<TBaseMapLayer>& Layers() { return Window.GetLayerManager()->GetLayers(); }
    /// Center of the view's device pixel that shows a place.
    QPointF PositionOf(extended longitude, extended latitude) {
        const TMapPoint pixel = View().GetViewport()->MapPointToPoint({longitude, latitude});
        return {static_cast<double>(pixel.X), static_cast<double>(pixel.Y)};
    }

    /// Where the layers panel gives a raster other colours, the top one first.
    QList<QComboBox*> ColourChoices() {
        QList<QComboBox*> choices = Window.findChildren<QComboBox*>();
        choices.removeIf(
            [](const QComboBox* box) { return !box->accessibleName().startsWith(QLatin1String("Colours of ")); });
        return choices;
    }

    QList<QAction*> MenuEntries(int menu) { return Window.menuBar()->actions().at(menu)->menu()->actions(); }

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    TViewerWindow Window;
};

TEST_F(ViewerWindow, OpensAnAsciiGridFromTheMenu) {
    tests::TScriptedFileDialog dialogs;
    dialogs->Answers = {DataFolder + QStringLiteral("/relief_newzealand.asc")};
    Window.menuBar()->actions().at(0)->menu()->actions().at(0)->trigger();
    ASSERT_EQ(dialogs->Opened.size(), 1U);
    ASSERT_EQ(Layers().Count(), 3);
    const auto& layer = dynamic_cast<TIdrisiMapLayer&>(*Layers()[2]);
    EXPECT_EQ(layer.GetLayerName(), QStringLiteral("relief_newzealand"));
    EXPECT_TRUE(layer.GetLayerArea().Area.Equals(TMapArea(160, -30, 180, -50)));
    EXPECT_TRUE(layer.GetIsReadyToDraw());
    // 20 x 20 degrees, as large as they fit
    EXPECT_EQ(View().GetViewport()->GetScale(), View().GetViewport()->GetViewSize().cy / 20.0L);
}

TEST_F(ViewerWindow, ACancelledDialogOpensNothing) {
    tests::TScriptedFileDialog dialogs;
    dialogs->Answers = {std::nullopt};
    Window.menuBar()->actions().at(0)->menu()->actions().at(0)->trigger();
    EXPECT_EQ(Layers().Count(), 2);
}

TEST_F(ViewerWindow, OpensWhatIsDroppedOnIt) {
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(DataFolder + QStringLiteral("/sst_january.rst")),
                   QUrl::fromLocalFile(DataFolder + QStringLiteral("/relief_newzealand.asc"))});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&Window, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({5, 5}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&Window, &drop);
    ASSERT_EQ(Layers().Count(), 4);
    EXPECT_EQ(Layers()[2]->GetLayerName(), QStringLiteral("sst_january"));
}

TEST_F(ViewerWindow, AFileThatCannotBeOpenedIsNamedInABox) {
    tests::TScriptedMsgBox boxes;
    Window.OpenFile(QStringLiteral("no-such-file.rst"));
    QCoreApplication::processEvents();
    ASSERT_EQ(boxes->Shown.size(), 1U);
    EXPECT_TRUE(boxes->Shown[0].Text.startsWith(QStringLiteral("no-such-file"))) << boxes->Shown[0].Text.toStdString();
    EXPECT_EQ(Layers().Count(), 2);
}

TEST_F(ViewerWindow, AddsAModelFieldInClasses) {
    Window.menuBar()->actions().at(0)->menu()->actions().at(1)->trigger();
    ASSERT_EQ(Layers().Count(), 3);
    auto& layer = dynamic_cast<TIdrisiMapLayer&>(*Layers()[2]);
    EXPECT_NE(std::dynamic_pointer_cast<IColorClassCalculator>(layer.GetColorCalc()), nullptr);
    EXPECT_TRUE(layer.GetIsReadyToDraw());
    EXPECT_EQ(layer.GetLayerName(), QStringLiteral("Rossby-Haurwitz wave, height in m"));
}

TEST_F(ViewerWindow, TheWheelZooms) {
    const extended before = View().GetViewport()->GetScale();
    const auto turn = [&](int delta) {
        QWheelEvent wheel({50, 50}, View().mapToGlobal(QPointF(50, 50)), {}, {0, delta}, {}, {}, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(&View(), &wheel);
    };
    turn(120);
    EXPECT_GT(View().GetViewport()->GetScale(), before);
    turn(-120);
    EXPECT_LT(View().GetViewport()->GetScale(), before);
}

TEST_F(ViewerWindow, TheStatusBarTellsPlaceAndValues) {
    const QPointF position = PositionOf(-150.25L, 0.25L); // 209.75 east in the temperatures
    QMouseEvent move(QEvent::MouseMove, position, View().mapToGlobal(position), Qt::NoButton, Qt::NoButton, {});
    QCoreApplication::sendEvent(&View(), &move);
    QString text;
    for (const QLabel* label : Window.statusBar()->findChildren<QLabel*>())
        text += label->text() + u'\n';
    EXPECT_TRUE(text.contains(QStringLiteral("W"))) << text.toStdString();
    const float temperature = dynamic_cast<TIdrisiMapLayer&>(*Layers()[1]).GetImage()->GetValue(209.75F, 0.25F);
    EXPECT_TRUE(
        text.contains(QStringLiteral("Sea surface temperature, January: %1").arg(double{temperature}, 0, 'f', 1)))
        << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("Relief: "))) << text.toStdString();
}

TEST_F(ViewerWindow, ThePanelRecoloursALayer) {
    const auto choices = ColourChoices();
    ASSERT_EQ(choices.size(), 2);
    EXPECT_EQ(choices[1]->accessibleName(), QStringLiteral("Colours of Relief"));
    auto& relief = dynamic_cast<TIdrisiMapLayer&>(*Layers()[0]);
    choices[1]->setFocus();
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(choices[1], Qt::Key_Down); // "Viridis", "Inferno", "Cividis"
    EXPECT_EQ(choices[1]->currentText(), QStringLiteral("Cividis"));
    EXPECT_EQ(relief.GetColorCalc()->GetColor(static_cast<float>(relief.GetValueRange().Low)), 0xFF00224EU);
    QTest::keyClick(choices[1], Qt::Key_End);
    EXPECT_EQ(choices[1]->currentText(), QStringLiteral("Two gradients"));
    EXPECT_TRUE(relief.GetIsReadyToDraw());
}

TEST_F(ViewerWindow, EveryModeHasAnIconAHintAndAKey) {
    const QList<QAction*> actions = Window.menuBar()->actions().at(1)->menu()->actions();
    const std::vector<TMapMode> modes = {
        TMapMode::mdNone,        TMapMode::mdPan,         TMapMode::mdSelection, TMapMode::mdZoomToSelection,
        TMapMode::mdPlaceRulerH, TMapMode::mdPlaceRulerV, TMapMode::mdInfoQuery, TMapMode::mdCustom};
    Window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&Window));
    for (std::size_t i = 0; i < modes.size(); ++i) {
        QAction* action = actions.at(static_cast<int>(i));
        QTest::keyClick(&Window, static_cast<Qt::Key>(Qt::Key_1 + i), Qt::ControlModifier);
        EXPECT_EQ(View().GetMode(), modes[i]) << action->text().toStdString();
        EXPECT_TRUE(action->isChecked());
        EXPECT_TRUE(action->toolTip().contains(QStringLiteral("Ctrl+%1").arg(i + 1)));
        EXPECT_EQ(Window.statusBar()->findChild<QLabel*>()->text(), TModeActions::HintOf(modes[i]));
        EXPECT_FALSE(TModeActions::HintOf(modes[i]).isEmpty());
        const QImage icon = action->icon().pixmap(QSize(24, 24), 2.0).toImage();
        EXPECT_EQ(icon.size(), QSize(48, 48));
        int inked = 0;
        for (int y = 0; y < 48; ++y)
            for (int x = 0; x < 48; ++x)
                inked += qAlpha(icon.pixel(x, y)) > 128 ? 1 : 0;
        EXPECT_GT(inked, 48 * 48 / 20) << action->text().toStdString();
    }
    View().SetMode(TMapMode::mdPan); // by whoever
    EXPECT_TRUE(actions.at(1)->isChecked());
}

TEST_F(ViewerWindow, IconsFollowTheTheme) {
    const QPalette before = QGuiApplication::palette();
    QPalette dark = before;
    dark.setColor(QPalette::ButtonText, QColor(250, 240, 230));
    QGuiApplication::setPalette(dark);
    const QImage icon = ModeIcon(TMapMode::mdNone).pixmap(QSize(24, 24)).toImage();
    QGuiApplication::setPalette(before);
    EXPECT_EQ(icon.pixelColor(9, 10), QColor(250, 240, 230)); // in the middle of the arrow
}

TEST_F(ViewerWindow, TheStatusBarNamesThePlaceUnderTheCursor) {
    Window.AddPlaces(DataFolder + QStringLiteral("/places.csv"));
    View().grab(); // the places are drawn
    const QPointF position = PositionOf(18.4350L, -33.92L);
    QMouseEvent move(QEvent::MouseMove, position, View().mapToGlobal(position), Qt::NoButton, Qt::NoButton, {});
    QCoreApplication::sendEvent(&View(), &move);
    QString text;
    for (const QLabel* label : Window.statusBar()->findChildren<QLabel*>())
        text += label->text() + u'\n';
    EXPECT_TRUE(text.contains(QStringLiteral("Cape Town, South Africa"))) << text.toStdString();
}

TEST_F(ViewerWindow, ARasterGoesBelowTheLines) {
    AddSampleOverlays(Window.GetLayerManager(), DataFolder);
    const int count = Layers().Count();
    Window.AddModelField();
    ASSERT_EQ(Layers().Count(), count + 1);
    EXPECT_EQ(Layers()[2]->GetLayerName(), QStringLiteral("Rossby-Haurwitz wave, height in m"));
    EXPECT_EQ(Layers()[3]->GetLayerName(), QStringLiteral("Rivers"));
}

TEST_F(ViewerWindow, PlacesStayOnTopAndInsideTheWorld) {
    Window.AddPlaces(DataFolder + QStringLiteral("/places.csv"));
    const auto& places = dynamic_cast<TPlacesLayer&>(*Layers()[2]);
    Window.OpenFile(DataFolder + QStringLiteral("/relief_newzealand.asc"));
    ASSERT_EQ(Layers().Count(), 4);
    EXPECT_EQ(Layers()[3], &places);
    Window.AddModelField();
    EXPECT_EQ(Layers()[4], &places);
    const auto pacific = [](const QAction* action) {
        return action->text() == QStringLiteral("Lat/lon (Antimeridian)");
    };
    const QList<QAction*> actions = Window.findChild<QToolBar*>()->actions();
    const auto found = std::ranges::find_if(actions, pacific);
    ASSERT_NE(found, actions.end());
    (*found)->trigger();
    for (const TPin* pin : places.GetPins()) {
        EXPECT_GE(pin->GetLon(), 0) << pin->GetName().toStdString();
        EXPECT_LE(pin->GetLon(), 360) << pin->GetName().toStdString();
    }
}

TEST_F(ViewerWindow, EveryWorldHasAnEntryAKeyAndAButton) {
    const QList<QAction*> entries = MenuEntries(3);
    const QList<QAction*> buttons = Window.findChild<QToolBar*>()->actions();
    Window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&Window));
    int key = Qt::Key_F7; // the first one is shown
    for (const char* name : {"Lat/lon (Antimeridian)", "Lat/lon"}) {
        const auto isIt = [&](const QAction* action) { return action->text() == QString::fromLatin1(name); };
        const auto entry = std::ranges::find_if(entries, isIt);
        ASSERT_NE(entry, entries.end()) << name;
        EXPECT_TRUE(buttons.contains(*entry)) << name;
        EXPECT_FALSE((*entry)->isChecked()) << name;
        QTest::keyClick(&Window, static_cast<Qt::Key>(key--));
        EXPECT_EQ(View().GetWorldSystem()->Name(), (*entry)->text());
        EXPECT_TRUE((*entry)->isChecked()) << name;
    }
    View().ChangeWorldSystem(TWorldSystemFactory::GetObject(QStringLiteral("nzmg"))); // by whoever
    for (const QAction* entry : entries)
        EXPECT_FALSE(entry->isChecked() && entry->text().startsWith(QStringLiteral("Lat")));
}

// An entry that does nothing and a button without an entry would be riddles.
TEST_F(ViewerWindow, EveryButtonHasAnEntryAndEveryEntryAKey) {
    QList<QAction*> all;
    for (int menu = 0; menu < Window.menuBar()->actions().size(); ++menu)
        all += MenuEntries(menu);
    for (QAction* button : Window.findChild<QToolBar*>()->actions()) {
        EXPECT_TRUE(button->isSeparator() || all.contains(button)) << button->text().toStdString();
        EXPECT_TRUE(button->isSeparator() || !button->shortcut().isEmpty()) << button->text().toStdString();
    }
    QStringList keys;
    for (const QAction* entry : all)
        if (!entry->shortcut().isEmpty())
            keys += entry->shortcut().toString();
    EXPECT_EQ(keys.removeDuplicates(), 0) << "two entries with one key";
}

TEST_F(ViewerWindow, TheHelpTellsTheVersion) {
    tests::TScriptedMsgBox boxes;
    MenuEntries(5).at(0)->trigger();
    ASSERT_EQ(boxes->Shown.size(), 1U);
    EXPECT_EQ(boxes->Shown[0].Title, QStringLiteral("About Climate Viewer"));
    EXPECT_TRUE(boxes->Shown[0].Text.startsWith(QStringLiteral("Climate Viewer 0.")))
        << boxes->Shown[0].Text.toStdString();
    EXPECT_TRUE(boxes->Shown[0].Text.contains(QStringLiteral("on Qt ") + qVersion()));
}

TEST_F(ViewerWindow, TakesOnlyFilesThatAreDropped) {
    QMimeData link;
    link.setUrls({QUrl(QStringLiteral("https://example.org/map.asc"))});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &link, Qt::LeftButton, {});
    enter.ignore();
    QCoreApplication::sendEvent(&Window, &enter);
    EXPECT_FALSE(enter.isAccepted());
}

TEST_F(ViewerWindow, TheLayerMenuWorksOnTheSelectedLayer) {
    for (const QAction* entry : MenuEntries(2))
        EXPECT_FALSE(entry->isEnabled()) << entry->text().toStdString();
    Window.GetLayerManager()->SetSelLayer(Layers()[1]);
    MenuEntries(2).last()->trigger();
    ASSERT_EQ(Layers().Count(), 1);
    EXPECT_EQ(Window.GetLayerManager()->GetSelLayer(), Layers()[0]);
}

TEST_F(ViewerWindow, RenamingFromTheMenuOpensThePanel) {
    auto* dock = Window.findChild<QDockWidget*>(); // the first one has the layers
    dock->close();
    Window.GetLayerManager()->SetSelLayer(Layers()[1]);
    MenuEntries(2)[1]->trigger();
    EXPECT_TRUE(dock->isVisible());
    const auto editors = dock->findChildren<QLineEdit*>();
    EXPECT_EQ(std::ranges::count_if(editors, [](const QLineEdit* editor) { return editor->isVisible(); }), 1);
}

TEST_F(ViewerWindow, IsNoTallerThanAScreenWithManyLayers) {
    for (int i = 0; i < 8; ++i)
        Window.AddModelField();
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
    EXPECT_EQ(ColourChoices().size(), 10);
    EXPECT_LT(Window.minimumSizeHint().height(), 500);
    EXPECT_EQ(Window.height(), 500);
    const QPointF position = PositionOf(10, 10);
    QMouseEvent move(QEvent::MouseMove, position, View().mapToGlobal(position), Qt::NoButton, Qt::NoButton, {});
    QCoreApplication::sendEvent(&View(), &move);
    QCoreApplication::processEvents();
    EXPECT_EQ(Window.width(), 900) << "nor wider, with a value of each in the status bar";
    EXPECT_LT(Window.minimumSizeHint().width(), 900);
}

} // namespace
} // namespace lmx
