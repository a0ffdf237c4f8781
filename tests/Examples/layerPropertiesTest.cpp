// The properties of a layer in the viewer by real events: opened with the mouse, from menus and by the keyboard, and
// what is applied is on the map.

#include <lmx/Dialogs/lmxLayerPropertiesDialog.h>

#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Colour/lmxColorPack.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Controls/Legend/lmxBaseLegendControl.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/ScriptedServices.h>

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSlider>
#include <QTabWidget>
#include <QTest>

#include <gtest/gtest.h>

#include "LayerRow.h"
#include "SampleMap.h"
#include "ViewerWindow.h"

namespace lmx {
namespace {

const QString DataFolder = QStringLiteral(LMX_EXAMPLE_DATA);

/// The viewer with the relief and, over it and selected, the temperature.
class LayerProperties : public testing::Test {
protected:
    LayerProperties() {
        AddSampleLayers(Manager(), DataFolder);
        Window.resize(1280, 760);
        Window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Window));
        QCoreApplication::processEvents();
        Window.ShowWholeWorld();
        Window.GetView()->SetShowFocusedBorder(false); // a dialog takes the keyboard
        Manager()->SetSelLayer(&Temperature());
        Settle();
    }

    const std::shared_ptr<ILayerManager>& Manager() { return Window.GetLayerManager(); }
    TIdrisiMapLayer& Temperature() { return dynamic_cast<TIdrisiMapLayer&>(*Manager()->GetLayers()[1]); }
    void Settle() {
        for (int i = 0; i < 3; ++i) {
            Window.grab();
            QCoreApplication::processEvents();
        }
    }
    QImage Map() {
        Settle();
        return Window.GetView()->grab().toImage();
    }
    TLayerRow* Row() {
        for (QWidget* widget : Window.findChildren<QWidget*>())
            if (auto* row = dynamic_cast<TLayerRow*>(widget); row && row->GetLayer() == &Temperature())
                return row;
        ADD_FAILURE() << "the layer has no row";
        return nullptr;
    }
    static QString PageOf(const TLayerPropertiesDialog& dialog) {
        return dialog.findChild<QLabel*>(QStringLiteral("lbPageTitle"))->text();
    }
    /// Presses "Button1" (OK), "Button2" (Cancel) or "Button3" (Apply), or a button of the page.
    static void Press(const QWidget& dialog, const char* name) {
        const auto* actions = dialog.findChild<QWidget*>(QStringLiteral("pnMainActions"));
        auto* button = actions->findChild<QPushButton*>(QString::fromLatin1(name)); // pages have a "Button2", too
        QTest::mouseClick(button ? button : dialog.findChild<QPushButton*>(QString::fromLatin1(name)), Qt::LeftButton);
    }
    /// The page that the dialog opens on, which `open` brings up.
    QString PageAfter(const std::function<void()>& open) {
        QString page;
        const tests::TModalAnswer<TLayerPropertiesDialog> answer([&page](TLayerPropertiesDialog& dialog) {
            page = PageOf(dialog);
            Press(dialog, "Button2");
        });
        open();
        return page;
    }
    QAction* Entry() { return Window.menuBar()->actions()[2]->menu()->actions().first(); }

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    TViewerWindow Window;
};

TEST_F(LayerProperties, OpenByADoubleClickOnTheHeading) {
    EXPECT_EQ(PageAfter([this] { QTest::mouseDClick(Row(), Qt::LeftButton, {}, {Row()->width() / 2, 12}); }), "Extent");
}

TEST_F(LayerProperties, OpenOnTheColoursByADoubleClickOnTheLegend) {
    QWidget* legend = Temperature().GetLegendComponent();
    ASSERT_TRUE(legend && legend->isVisible());
    EXPECT_EQ(PageAfter([legend] { QTest::mouseDClick(legend, Qt::LeftButton); }), "Raster display");
}

TEST_F(LayerProperties, OpenFromTheMenus) {
    EXPECT_EQ(Entry()->text(), "Pr&operties...");
    EXPECT_EQ(PageAfter([this] { Entry()->trigger(); }), "Extent");

    Row()->setFocus();
    QContextMenuEvent request(QContextMenuEvent::Mouse, {5, 5}, Row()->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(Row(), &request);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    const QRect entry = menu->actionGeometry(Entry());
    ASSERT_FALSE(entry.isEmpty());
    EXPECT_EQ(PageAfter([&] { QTest::mouseClick(menu, Qt::LeftButton, {}, entry.center()); }), "Extent");
}

TEST_F(LayerProperties, OpenByAKey) {
    Row()->setFocus();
    EXPECT_EQ(PageAfter([this] { QTest::keyClick(Row(), Qt::Key_Return, Qt::AltModifier); }), "Extent");
}

TEST_F(LayerProperties, NeedALayer) {
    Manager()->SetSelLayer(nullptr);
    EXPECT_FALSE(Entry()->isEnabled());
}

TEST_F(LayerProperties, AreOnTheMapWhenTheyAreApplied) {
    const QImage before = Map();
    QImage colored;
    QImage faded;
    const tests::TModalAnswer<TLayerPropertiesDialog> answer([&](TLayerPropertiesDialog& dialog) {
        ASSERT_TRUE(dialog.SelectPage(QStringLiteral("Raster display")));
        Press(dialog, "btnNext");
        Press(dialog, "btnDel"); // the cold end
        EXPECT_EQ(Map(), before) << "nothing has been applied";
        Press(dialog, "Button3");
        colored = Map();
        auto* opacity = dialog.findChild<QLineEdit*>(QStringLiteral("edOpacity"));
        opacity->selectAll();
        QTest::keyClicks(opacity, QStringLiteral("40"));
        Press(dialog, "Button3");
        faded = Map();
        EXPECT_TRUE(dialog.isVisible());
        Press(dialog, "Button2"); // which takes nothing back
    });
    Entry()->trigger();
    EXPECT_NE(colored, before);
    EXPECT_NE(faded, colored);
    EXPECT_EQ(Map(), faded);
    EXPECT_EQ(Temperature().GetOpacity(), 40);
    const auto calculator = std::dynamic_pointer_cast<IGradientColorCalculator>(Temperature().GetColorCalc());
    ASSERT_NE(calculator, nullptr);
    EXPECT_EQ(calculator->GetGradient()->GetColorStops().size(), 6U);
}

TEST_F(LayerProperties, LoadAPaletteOfThePack) {
    const tests::TModalAnswer<TLayerPropertiesDialog> answer([&](TLayerPropertiesDialog& dialog) {
        ASSERT_TRUE(dialog.SelectPage(QStringLiteral("Raster display")));
        auto* tabs = dialog.findChild<QTabWidget*>(QStringLiteral("Pages"));
        tabs->setCurrentIndex(3);
        QCoreApplication::processEvents(); // which lays it out
        const tests::TModalAnswer<TModalDialog> choice([](TModalDialog& browser) {
            QTest::keyClicks(browser.focusWidget(), QStringLiteral("sea ice"));
            QTest::keyClick(browser.focusWidget(), Qt::Key_Return);
        });
        QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("btnBasicPalLoad")), Qt::LeftButton);
        Press(dialog, "Button1");
    });
    Entry()->trigger();
    const auto palette = std::dynamic_pointer_cast<IBasicPaletteColorCalculator>(Temperature().GetColorCalc());
    ASSERT_NE(palette, nullptr);
    std::vector<TColor32> colors;
    for (const TColorKeyItem& item : palette->GetColorKey()->GetColors())
        colors.push_back(item.Color);
    EXPECT_EQ(colors, TColorPack::Find(QStringLiteral("Sea ice"))->Colors);
}

TEST_F(LayerProperties, MayLoseTheirLayerWhileTheyAreOpen) {
    const tests::TModalAnswer<TLayerPropertiesDialog> answer([&](TLayerPropertiesDialog& dialog) {
        Manager()->GetLayers().Remove(&Temperature());
        Settle();
        Press(dialog, "Button1");
    });
    QTest::mouseDClick(Row(), Qt::LeftButton, {}, {Row()->width() / 2, 12});
    EXPECT_EQ(Manager()->GetLayers().Count(), 1);
}

TEST_F(LayerProperties, ThatCannotBeShownAreToldOfInABox) {
    Temperature().SetColorCalc(nullptr);
    tests::TScriptedMsgBox boxes;
    Entry()->trigger();
    EXPECT_TRUE(QTest::qWaitFor([&boxes] { return !boxes->Shown.empty(); }));
    const tests::TShownMessage expected{"Error", "ColorCalc is null", "Error", &Window};
    EXPECT_EQ(boxes->Shown, std::vector{expected});
}

} // namespace
} // namespace lmx
