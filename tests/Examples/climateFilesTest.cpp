// Climate files in the viewer: opened by a choice and by the dialog, played, and refused with a reason.

#include "ClimateFiles.h"

#include "ViewerWindow.h"

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/Threads.h>

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include "ColorSchemes.h"
#include "PictureExport.h"

#ifdef LMX_HAS_DATASOURCES
#include "ClimateFileDialog.h"
#endif

namespace lmx {
namespace {

using namespace tests;

QString Sample(const char* name) {
    return QStringLiteral(LMX_SOURCE_DIR "/tests/data/netcdf/") + QString::fromLatin1(name);
}

class ClimateFiles : public testing::Test {
protected:
    ClimateFiles() {
        Window.resize(900, 600);
        Window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Window));
        Window.ShowWholeWorld();
    }

    ILayerManager& Manager() { return *Window.GetLayerManager(); }
    TIdrisiMapLayer* TopRaster() {
        TIdrisiMapLayer* top = nullptr;
        for (TBaseMapLayer* layer : Manager().GetLayers())
            if (auto* raster = dynamic_cast<TIdrisiMapLayer*>(layer))
                top = raster;
        return top;
    }

    /// Opens a file as the menu does; what fails is shown a moment later.
    void Open(const QString& fileName) {
        Window.OpenFile(fileName);
        QCoreApplication::processEvents();
    }

    TScriptedMsgBox Messages;
    TViewerWindow Window;
};

#ifdef LMX_HAS_DATASOURCES

TEST_F(ClimateFiles, OpenWithoutAQuestionByAChoice) {
    Window.GetClimateFiles().SetChoice({QStringLiteral("SST"), 7});
    Open(Sample("coads_sst.nc"));
    ASSERT_TRUE(PumpUntil([&] { return !Window.IsBusy(); }));
    TIdrisiMapLayer* const layer = TopRaster();
    ASSERT_NE(layer, nullptr);
    EXPECT_TRUE(layer->GetLayerName().endsWith(QStringLiteral(", August"))) << layer->GetLayerName().toStdString();
    EXPECT_EQ(layer->GetImage()->getHeader()->GetValueUnits(), "°C");
    EXPECT_GT(layer->GetImage()->GetValue(180, 5), 20);
    EXPECT_EQ(Window.GetClimateFiles().GetTimeCaption(), "August");
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(ClimateFiles, StepThroughTheirTimes) {
    Window.GetClimateFiles().SetChoice({QStringLiteral("SST"), 0});
    Open(Sample("coads_sst.nc"));
    ASSERT_TRUE(Messages->Shown.empty()) << Messages->Shown[0].Text.toStdString();
    QWidget* const strip = Window.GetClimateFiles().GetTimeStrip();
    ASSERT_NE(strip, nullptr);
    EXPECT_TRUE(strip->isVisible());
    ASSERT_TRUE(PumpUntil([&] { return !Window.IsBusy(); }));
    TIdrisiMapLayer* const layer = TopRaster();
    const float january = layer->GetImage()->GetValue(180, 45);
    const auto colors = MakeColorScheme("Classes: six of viridis", {-2, 34});
    layer->SetColorCalc(colors);
    const QImage shown = Window.GetView()->grab().toImage();
    QTest::keyClick(strip, Qt::Key_Right);
    QTest::keyClick(strip, Qt::Key_Right);
    ASSERT_TRUE(PumpUntil([&] { return layer->GetLayerName().endsWith(QStringLiteral(", March")); }));
    EXPECT_NE(layer->GetImage()->GetValue(180, 45), january);
    EXPECT_EQ(layer->GetColorCalc(), colors); // what changes can be seen
    EXPECT_NE(layer->GetBitmap(), nullptr);
    EXPECT_NE(Window.GetView()->grab().toImage(), shown);
    Manager().GetLayers().Remove(layer);
    QTest::keyClick(strip, Qt::Key_End); // and nothing happens
    ASSERT_TRUE(PumpUntil([&] { return !Window.IsBusy(); }));
}

// What a step has beyond the range of the first one is seen, too.
TEST_F(ClimateFiles, ColorsThatTheViewerChoseGetWider) {
    Window.GetClimateFiles().SetChoice({QStringLiteral("SST"), 6});
    Open(Sample("coads_sst.nc"));
    ASSERT_TRUE(PumpUntil([&] { return !Window.IsBusy(); }));
    TIdrisiMapLayer* const layer = TopRaster();
    const auto rangeOf = [&] {
        const auto& colors = dynamic_cast<const IBaseMinMaxColorCalculator&>(*layer->GetColorCalc());
        return TValueRange(colors.GetMinVal(), colors.GetMaxVal());
    };
    const TValueRange july = rangeOf();
    EXPECT_EQ(july, layer->GetValueRange());
    QTest::keyClick(Window.GetClimateFiles().GetTimeStrip(), Qt::Key_Home);
    ASSERT_TRUE(PumpUntil([&] { return layer->GetLayerName().endsWith(QStringLiteral(", January")); }));
    EXPECT_LT(rangeOf().Low, july.Low);
    EXPECT_EQ(rangeOf().Low, layer->GetValueRange().Low);
    EXPECT_EQ(rangeOf().High, july.High);
}

// A grid of metres among degrees is nowhere near them.
TEST_F(ClimateFiles, TheWorldOfAGridIsOffered) {
    Window.AddModelField();
    Messages->Answers = {false, true};
    Open(Sample("nzmg.tif"));
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(Messages->Shown[0].Kind, "YesNo");
    const QString grid = TNZMGWorldSystemFactory::GetObject()->Name();
    const QString degrees = TLatLonAntimeridianWorldSystemFactory::GetObject()->Name(); // those of the model
    EXPECT_EQ(Messages->Shown[0].Text, TopRaster()->GetLayerName() + " lies in " + grid + ", and the map in " +
                                           degrees + ". Show the map in " + grid + ", where the layers of " + degrees +
                                           " are not seen?");
    EXPECT_EQ(Window.GetView()->GetWorldSystem(), TLatLonAntimeridianWorldSystemFactory::GetObject());
    Open(Sample("nzmg.tif"));
    EXPECT_EQ(Window.GetView()->GetWorldSystem(), TNZMGWorldSystemFactory::GetObject());
    const TMapPoint center = Window.GetView()->GetViewport()->GetCenter();
    EXPECT_TRUE(TopRaster()->GetLayerArea().Area.Contains(center)) << "the map shows it";
    Open(Sample("nzmg.tif"));
    EXPECT_EQ(Messages->Shown.size(), 2U) << "nothing to ask";
}

TEST_F(ClimateFiles, TitlesInCapitalsReadAsSentences) {
    Window.GetClimateFiles().SetChoice({QStringLiteral("SST"), 6});
    Open(Sample("coads_sst.nc"));
    EXPECT_EQ(TopRaster()->GetLayerName(), "Sea surface temperature, July");
}

TEST_F(ClimateFiles, LevelsAreChosenAsMapsNameThem) {
    const TModalAnswer<TClimateFileDialog> answer([](TClimateFileDialog& dialog) {
        auto* const levels = dialog.findChild<QComboBox*>("Level");
        ASSERT_EQ(levels->count(), 4);
        EXPECT_EQ(levels->itemText(2), "500 hPa");
        QTest::keyClick(levels, Qt::Key_End);
        EXPECT_EQ(dialog.GetSelection()->Level, 3U);
        QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open), Qt::LeftButton);
    });
    Open(Sample("levels_pressure.nc"));
    ASSERT_NE(TopRaster(), nullptr);
    EXPECT_EQ(TopRaster()->GetLayerName(), "ta, 200 hPa, January 1990");
}

// A picture of the map says which step it shows, without being told.
TEST_F(ClimateFiles, AnExportedPictureHasTheTimeOfTheData) {
    const QTemporaryDir folder;
    Window.GetClimateFiles().SetChoice({QStringLiteral("SST"), 6});
    Open(Sample("coads_sst.nc"));
    TScriptedFileDialog files;
    files->Answers = {folder.filePath("map.png")};
    const TModalAnswer<TPictureDialog> answer([](TPictureDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QLineEdit*>("Time")->text(), "July");
        QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
    });
    for (QAction* action : Window.menuBar()->actions().at(0)->menu()->actions())
        if (action->shortcut() == QKeySequence("Ctrl+E"))
            action->trigger();
    EXPECT_EQ(QImage(folder.filePath("map.png")).text(QStringLiteral("Time")), "July");
}

TEST_F(ClimateFiles, AMapForPrintIsOfTheWholeWorld) {
    const QTemporaryDir folder;
    Window.GetClimateFiles().SetChoice({QStringLiteral("SST"), 6});
    Open(Sample("coads_sst.nc"));
    SaveSheet(*Window.GetView(), QStringLiteral("Sea"), Window.GetClimateFiles().GetTimeCaption(),
              folder.filePath("sheet.png"));
    const QImage sheet(folder.filePath("sheet.png"));
    EXPECT_EQ(sheet.size(), QSize(2400, 1280));
    EXPECT_EQ(sheet.text(QStringLiteral("Title")), "Sea");
    EXPECT_EQ(sheet.text(QStringLiteral("Time")), "July");
    EXPECT_EQ(sheet.text(QStringLiteral("Extent")), "west -180, south -90, east 180, north 90");
    EXPECT_TRUE(sheet.text(QStringLiteral("Layers")).contains(QStringLiteral("units °C")));
}

TEST_F(ClimateFiles, OpenWhenDroppedOnTheWindow) {
    Window.GetClimateFiles().SetChoice({QStringLiteral("SST"), 0});
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(Sample("coads_sst.nc"))});
    QDragEnterEvent enter(QPoint(100, 100), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&Window, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(100, 100), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&Window, &drop);
    ASSERT_NE(TopRaster(), nullptr);
    EXPECT_EQ(TopRaster()->GetLayerName(), "Sea surface temperature, January");
}

TEST_F(ClimateFiles, AreChosenInADialog) {
    const TModalAnswer<TClimateFileDialog> answer([](TClimateFileDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Open units_odd.nc");
        auto* const variables = dialog.findChild<QListWidget*>("Variables");
        ASSERT_GT(variables->count(), 2);
        ASSERT_TRUE(dialog.GetSelection().has_value());
        variables->setCurrentRow(1);
        EXPECT_EQ(dialog.GetSelection()->Variable, 1U);
        auto* const preview = dialog.findChild<QLabel*>("Preview");
        EXPECT_TRUE(PumpUntil([&] { return !preview->pixmap(Qt::ReturnByValue).isNull(); }));
        QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open), Qt::LeftButton);
    });
    Open(Sample("units_odd.nc"));
    EXPECT_NE(TopRaster(), nullptr);
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(ClimateFiles, ACancelledDialogOpensNothing) {
    const TModalAnswer<TClimateFileDialog> answer(
        [](TClimateFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    Open(Sample("variables.nc"));
    EXPECT_EQ(TopRaster(), nullptr);
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(ClimateFiles, WhatCannotBeShownIsListedWithTheReason) {
    const TModalAnswer<TClimateFileDialog> answer([](TClimateFileDialog& dialog) {
        EXPECT_FALSE(dialog.GetSelection().has_value());
        EXPECT_FALSE(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->isEnabled());
        EXPECT_TRUE(dialog.findChild<QLabel*>("Notes")->text().contains(QStringLiteral("cdo remapbil")));
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    Open(Sample("curvilinear.nc"));
    EXPECT_EQ(TopRaster(), nullptr);
}

TEST_F(ClimateFiles, WithoutAQuestionTheReasonIsTold) {
    Window.GetClimateFiles().SetChoice({});
    Open(Sample("curvilinear.nc"));
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_EQ(Messages->Shown[0].Text, Sample("curvilinear.nc") +
                                           ": holds nothing that can be shown; tos: Variable \"tos\" lies on a "
                                           "curvilinear grid. Regrid it first, for example: cdo remapbil,r360x180 in "
                                           "out");
}

TEST_F(ClimateFiles, TheDialogMayGoWhileAPreviewIsRead) {
    {
        TClimateFileDialog dialog(nullptr);
        dialog.SetDataset(std::make_shared<TClimateDataset>(Sample("coads_sst.nc")));
    }
    EXPECT_TRUE(PumpUntilHandedOver());
}

TEST_F(ClimateFiles, GeoTiffOpensToo) {
    Open(Sample("tiled_overviews.tif"));
    EXPECT_NE(TopRaster(), nullptr);
    EXPECT_TRUE(Messages->Shown.empty());
}

TEST_F(ClimateFiles, AWrongChoiceIsToldByName) {
    Window.GetClimateFiles().SetChoice({QStringLiteral("none"), 0});
    Open(Sample("coads_sst.nc"));
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_TRUE(Messages->Shown[0].Text.endsWith(QStringLiteral("coads_sst.nc: holds no variable none")));
    Window.GetClimateFiles().SetChoice({QStringLiteral("SST"), 12});
    Open(Sample("coads_sst.nc"));
    ASSERT_EQ(Messages->Shown.size(), 2U);
    EXPECT_TRUE(Messages->Shown[1].Text.endsWith(QStringLiteral("has no step 12")));
}

#else

TEST_F(ClimateFiles, AreRefusedByAViewerThatCannotReadThem) {
    EXPECT_FALSE(TClimateFiles::CanOpen());
    Open(Sample("coads_sst.nc"));
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_TRUE(Messages->Shown[0].Text.endsWith(
        QStringLiteral("coads_sst.nc: this viewer was built without what reads climate files")));
    EXPECT_EQ(Window.GetClimateFiles().GetTimeStrip(), nullptr);
}

#endif

TEST_F(ClimateFiles, ADamagedFileIsToldAndNothingChanges) {
    const QTemporaryDir folder;
    QFile file(folder.filePath("cut.nc"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("CDF\x01");
    file.close();
    Open(file.fileName());
    ASSERT_EQ(Messages->Shown.size(), 1U);
    EXPECT_TRUE(Messages->Shown[0].Text.startsWith(file.fileName() + ": ")) << Messages->Shown[0].Text.toStdString();
    EXPECT_EQ(TopRaster(), nullptr);
}

} // namespace
} // namespace lmx
