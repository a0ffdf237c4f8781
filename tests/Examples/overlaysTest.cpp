// Overlays of the viewer: opening files, both sides of the seam, colour, visibility, and the sign of drawing.

#include "Overlays.h"

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/ShapeBytes.h>
#include <tests/Support/ShownView.h>
#include <tests/Support/TestBufferedLayer.h>
#include <tests/Support/VectorBytes.h>

#include <QDropEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QStatusBar>

#include <gtest/gtest.h>

#include "ViewerWindow.h"

namespace lmx {
namespace {

using namespace tests;

constexpr TColor32 Red = 0xFFFF0000;
constexpr TColor32 Blue = 0xFF0000FF;
const QString DataFolder = QStringLiteral(LMX_EXAMPLE_DATA);

/// A view of the whole world at a pixel for each two degrees, and a folder with a line from 60 W to 40 W at 20 N.
class ViewerOverlays : public testing::Test {
protected:
    ViewerOverlays() {
        Folder.Write("line.shp", TShapeBytes().Lines(3, {{{-60, 20}, {-40, 20}}}).File(3));
        Folder.Write("line.vct", TVectorBytes(TVectorObjectType::vtLine).Line(1, {{-60, 20}, {-40, 20}}).File());
        Shown.View.SetBackgroundColor(0xFFFFFFFF);
    }

    void ShowWorld(const char* identifier) {
        Shown.View.ChangeWorldSystem(TWorldSystemFactory::GetObject(QString::fromLatin1(identifier)));
        Shown.View.GetViewport()->SetScale(0.5L);
        Shown.View.GetViewport()->SetTranslation({10, 5});
    }
    TColor32 FinishedPixelAt(extended longitude, extended latitude) {
        do
            Shown.View.grab();
        while (!PumpUntilRendersEnd() || IsDrawing(*Shown.Manager));
        const TPoint pixel = Shown.View.GetViewport()->MapPointToPoint({longitude, latitude}).ToPoint();
        return Shown.PixelAt(pixel.X, pixel.Y);
    }

    TImageFolder Folder;
    TShownView Shown;
};

TEST_F(ViewerOverlays, AreKnownByTheirSuffix) {
    for (const char* name : {"a.shp", "A.SHP", "a.vct", "a.vdc", "a.vec", "a.dvc"})
        EXPECT_TRUE(IsOverlayName(QString::fromLatin1(name))) << name;
    for (const char* name : {"a.rst", "a.asc", "shp", "a.shp.gz"})
        EXPECT_FALSE(IsOverlayName(QString::fromLatin1(name))) << name;
}

TEST_F(ViewerOverlays, AShapeFileIsDrawnOnBothSidesOfThePrimeMeridian) {
    TBaseShapeLayer* layer = AddOverlay(Shown.Manager, Folder.Path("line.shp"), Red);
    EXPECT_EQ(layer->GetLayerName(), "line");
    ASSERT_EQ(Shown.Manager->GetLayers().Count(), 1);
    ShowWorld("latlon");
    EXPECT_EQ(FinishedPixelAt(-50, 20), Red);
    EXPECT_NE(FinishedPixelAt(130, 20), Red);
    ShowWorld("latlonAntimerdian");
    EXPECT_EQ(FinishedPixelAt(310, 20), Red);
    EXPECT_NE(FinishedPixelAt(250, 20), Red);
}

TEST_F(ViewerOverlays, AVectorFileIsFoldedByItsLayer) {
    AddOverlay(Shown.Manager, Folder.Path("line.vct"), Red);
    ASSERT_EQ(Shown.Manager->GetLayers().Count(), 1);
    ShowWorld("latlonAntimerdian");
    EXPECT_EQ(FinishedPixelAt(310, 20), Red);
}

TEST_F(ViewerOverlays, ADamagedFileAddsNothing) {
    Folder.Write("cut.shp", TShapeBytes().Point(1, {1, 1}).File(1).chopped(1));
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { AddOverlay(Shown.Manager, Folder.Path("cut.shp"), Red); }),
              Folder.Path("cut.shp") + ": record 1 is cut short");
    EXPECT_EQ(Shown.Manager->GetLayers().Count(), 0);
}

TEST_F(ViewerOverlays, TheSamplesAreRiversAndCoasts) {
    AddSampleOverlays(Shown.Manager, DataFolder);
    EXPECT_NE(Shown.Manager->FindLayer(QStringLiteral("Rivers")), nullptr);
    auto* coasts = dynamic_cast<TShapeFileLayer*>(Shown.Manager->FindLayer(QStringLiteral("Coasts")));
    ASSERT_NE(coasts, nullptr);
    EXPECT_EQ(coasts->GetLayerArea().Area.Left, -180);
    EXPECT_EQ(coasts->GetLayerArea().Area.Right, 180);
    EXPECT_FALSE(coasts->GetShpFile() == nullptr);
}

TEST_F(ViewerOverlays, TheIndicatorTellsOfARender) {
    auto added = std::make_unique<TTestBufferedLayer>(Shown.Manager);
    const auto script = added->Script;
    script->IsOpen = false;
    added->SetLayerArea(LatLonArea({-180, 90, 180, -90}));
    added->SetIsReadyToDraw(true);
    Shown.Manager->GetLayers().Add(std::move(added));
    const TDrawingIndicator indicator(&Shown.View, nullptr);
    Shown.View.grab();
    EXPECT_TRUE(PumpUntil([&] { return indicator.text() == "Drawing..."; }));
    script->IsOpen = true;
    EXPECT_TRUE(PumpUntil([&] { return indicator.text().isEmpty(); }));
    EXPECT_TRUE(PumpUntilRendersEnd());
}

TEST_F(ViewerOverlays, OpenFromTheMenuAndTakeAnotherColour) {
    TViewerWindow window;
    window.show();
    TScriptedFileDialog dialogs;
    dialogs->Answers = {Folder.Path("line.shp")};
    window.menuBar()->actions().at(0)->menu()->actions().at(0)->trigger();
    EXPECT_TRUE(window.IsBusy());
    EXPECT_EQ(window.statusBar()->currentMessage(), "Opening " + Folder.Path("line.shp") + "...");
    ASSERT_TRUE(PumpUntil([&] { return !window.IsBusy(); }));
    EXPECT_EQ(window.statusBar()->currentMessage(), "");
    ASSERT_EQ(window.GetLayerManager()->GetLayers().Count(), 1);
    const auto* layer = dynamic_cast<TShapeFileLayer*>(window.GetLayerManager()->GetLayers()[0]);
    ASSERT_NE(layer, nullptr);
    EXPECT_TRUE(PumpUntil([&] { return window.findChildren<QPushButton*>().size() == 1; })) << "its row in the panel";
    TScriptedColorChooser colors;
    colors->Answers = {Blue};
    window.findChildren<QPushButton*>().at(0)->click();
    EXPECT_EQ(layer->GetColor(), Blue);
    EXPECT_NE(window.statusBar()->findChild<QLabel*>(QStringLiteral("DrawingIndicator")), nullptr);
    EXPECT_TRUE(PumpUntilRendersEnd());
}

TEST_F(ViewerOverlays, OpenByDropping) {
    TViewerWindow window;
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(Folder.Path("line.shp")), QUrl::fromLocalFile(Folder.Path("line.vct"))});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&window, &enter);
    QDropEvent drop({5, 5}, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&window, &drop);
    ASSERT_TRUE(PumpUntil([&] { return !window.IsBusy(); }));
    EXPECT_EQ(window.GetLayerManager()->GetLayers().Count(), 2);
    EXPECT_TRUE(PumpUntilRendersEnd());
}

TEST_F(ViewerOverlays, ADamagedFileIsShownInABox) {
    Folder.Write("cut.shp", TShapeBytes().Point(1, {1, 1}).File(1).chopped(1));
    TViewerWindow window;
    TScriptedMsgBox boxes;
    window.OpenFile(Folder.Path("cut.shp"));
    ASSERT_TRUE(PumpUntil([&] { return !boxes->Shown.empty(); }));
    EXPECT_EQ(boxes->Shown[0].Text, Folder.Path("cut.shp") + ": record 1 is cut short");
    EXPECT_FALSE(window.IsBusy());
    EXPECT_EQ(window.GetLayerManager()->GetLayers().Count(), 0);
}

TEST_F(ViewerOverlays, TheRecordsThatAreWholeAreShownAndTheOthersCounted) {
    Folder.Write("cut.shp", TShapeBytes().Point(1, {1, 1}).Point(1, {2, 2}).File(1).chopped(1));
    TViewerWindow window;
    TScriptedMsgBox boxes;
    window.OpenFile(Folder.Path("cut.shp"));
    ASSERT_TRUE(PumpUntil([&] { return !boxes->Shown.empty(); }));
    EXPECT_EQ(boxes->Shown[0].Kind, "Info");
    EXPECT_EQ(boxes->Shown[0].Text, Folder.Path("cut.shp") + " is damaged. Records that were left out: 1.");
    ASSERT_EQ(window.GetLayerManager()->GetLayers().Count(), 1);
    const auto* layer = dynamic_cast<TShapeFileLayer*>(window.GetLayerManager()->GetLayers()[0]);
    ASSERT_NE(layer, nullptr);
    EXPECT_EQ(layer->GetShpFile()->GetPointCount(), 1U);
    EXPECT_TRUE(PumpUntilRendersEnd());
}

TEST_F(ViewerOverlays, CoordinatesThatNobodyKnowsAreTold) {
    Folder.Write("line.prj", "PROJCS[\"Nowhere\"]");
    TViewerWindow window;
    TScriptedMsgBox boxes;
    window.OpenFile(Folder.Path("line.shp"));
    ASSERT_TRUE(PumpUntil([&] { return !boxes->Shown.empty(); }));
    EXPECT_EQ(boxes->Shown[0].Text, "Nobody knows the coordinates that " + Folder.Path("line.prj") +
                                        " names, so they were taken as degrees: its place on the map may be wrong.");
    EXPECT_EQ(window.GetLayerManager()->GetLayers().Count(), 1);
    EXPECT_TRUE(PumpUntilRendersEnd());
}

TEST_F(ViewerOverlays, AWindowMayCloseWhileAFileIsRead) {
    auto window = std::make_unique<TViewerWindow>();
    const auto manager = window->GetLayerManager();
    window->OpenFile(DataFolder + QStringLiteral("/ne_50m_land.shp"));
    window = nullptr;
    EXPECT_TRUE(PumpUntilHandedOver());
    EXPECT_EQ(manager->GetLayers().Count(), 0);
}

} // namespace
} // namespace lmx
