// A map that is saved in the viewer, painted by the program for scripts.

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Pictures/PictureProgram.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/ShapeBytes.h>
#include <tests/Support/TestBufferedLayer.h>

#include <QFile>
#include <QImage>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QTest>

#include <gtest/gtest.h>

#include "Overlays.h"
#include "SampleMap.h"
#include "ViewerWindow.h"

namespace lmx {
namespace {

using namespace tests;

const QString DataFolder = QStringLiteral(LMX_EXAMPLE_DATA);

/// The sample map in a view of 900 x 480 pixels.
class ViewerPicture : public testing::Test {
protected:
    ViewerPicture() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, Folder.Path("settings"));
        AddSampleLayers(Window.GetLayerManager(), DataFolder);
        AddSampleOverlays(Window.GetLayerManager(), DataFolder);
        Window.AddPlaces(DataFolder + QStringLiteral("/places.csv"));
        View().setFixedSize(900, 480);
        View().SetShowFocusedBorder(false);
        Window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Window));
        for (int i = 0; i < 4; ++i)
            QCoreApplication::processEvents();
        ComposeSampleMap(View());
    }
    ~ViewerPicture() override { EXPECT_TRUE(PumpUntilRendersEnd()); }

    TMapViewControl& View() { return *Window.GetView(); }
    /// As a user does.
    QString Save() {
        TScriptedFileDialog dialogs;
        TScriptedMsgBox boxes;
        dialogs->Answers = {Folder.Path("map.lmx")};
        for (QAction* action : Window.menuBar()->actions().at(0)->menu()->actions())
            if (action->text() == QStringLiteral("Save &as..."))
                action->trigger();
        EXPECT_TRUE(boxes->Shown.empty());
        return Folder.Path("map.lmx");
    }
    QStringList ArgumentsOfTheView(const QString& document) {
        const TFormatSettings point{u'.'};
        const TMapPoint center = View().GetViewport()->GetCenter();
        return {document,           Folder.Path("map.png"),
                "--size",           "900x480",
                "--centre",         FloatToGeneral(center.X, 18, point) + u',' + FloatToGeneral(center.Y, 18, point),
                "--scale",          FloatToGeneral(View().GetViewport()->GetScale(), 18, point),
                "--map-background", "#EEF1F4"};
    }
    /// What the view shows without the places, which the program does not know.
    QImage MapOfTheView() {
        auto& layers = Window.GetLayerManager()->GetLayers();
        layers[layers.Count() - 1]->SetIsVisible(false);
        do
            View().grab();
        while (!PumpUntilRendersEnd() || IsDrawing(*Window.GetLayerManager()));
        return View().grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    QImage Picture() const { return QImage(Folder.Path("map.png")).convertToFormat(QImage::Format_RGB32); }

    const TFormatSettingsScope Point{{u'.'}}; // under a comma documents lose their layers
    TImageFolder Folder;
    TViewerWindow Window;
};

TEST_F(ViewerPicture, IsTheMapOfTheWindowWithoutWhatIsTheViewersOwn) {
    for (const auto& world :
         {TLatLonWorldSystemFactory::GetObject(), TLatLonAntimeridianWorldSystemFactory::GetObject()}) {
        View().ChangeWorldSystem(world);
        auto& layers = Window.GetLayerManager()->GetLayers();
        layers[layers.Count() - 1]->SetIsVisible(true);
        const QString document = Save();
        const TProgramOutcome outcome = RunPictureProgram(ArgumentsOfTheView(document));
        EXPECT_EQ(outcome.ExitCode, 0);
        EXPECT_EQ(outcome.Errors,
                  "lmx-picture: " + document + ": Layer \"Places\" (PlacesLayer): the type is unknown\n");
        const QImage picture = Picture();
        ASSERT_EQ(picture.size(), QSize(900, 480));
        EXPECT_TRUE(picture == MapOfTheView()) << world->Identifier().toStdString();
    }
}

TEST_F(ViewerPicture, IsRefusedWhereDataAreMissing) {
    Folder.Write("line.shp", TShapeBytes().Lines(3, {{{-60, 20}, {-40, 20}}}).File(3));
    AddOverlay(Window.GetLayerManager(), Folder.Path("line.shp"), 0xFF112233);
    const QString document = Save();
    ASSERT_EQ(RunPictureProgram({document, Folder.Path("map.png")}).ExitCode, 0);
    ASSERT_TRUE(QFile::remove(Folder.Path("map.png")) && QFile::remove(Folder.Path("line.shp")));
    const TProgramOutcome outcome = RunPictureProgram({document, Folder.Path("map.png")});
    EXPECT_EQ(outcome.ExitCode, 1);
    EXPECT_TRUE(outcome.Errors.endsWith("lmx-picture: nothing written; --allow-missing paints the map without\n"));
    EXPECT_FALSE(QFile::exists(Folder.Path("map.png")));
}

} // namespace
} // namespace lmx
