// Documents of the viewer: what comes back, what is asked before anything is lost, and what is told of what did not
// arrive.

#include "MapDocument.h"

#include <lmx/Controls/Legend/lmxObjectLayerLegendControl.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Layers/Objects/lmxRectangleObjectTypeItem.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/MapDoc/lmxMapDocLayerPersist.h>
#include <lmx/MapDoc/lmxMapDocWriter.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Formats/ImageFiles.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/ShapeBytes.h>
#include <tests/Support/TestBufferedLayer.h>

#include <QCloseEvent>
#include <QFile>
#include <QMenuBar>
#include <QSettings>
#include <QTest>

#include <gtest/gtest.h>

#include "DocumentActions.h"
#include "Overlays.h"
#include "Places.h"
#include "SampleMap.h"
#include "ViewerWindow.h"

namespace lmx {
namespace {

using namespace tests;

const QString DataFolder = QStringLiteral(LMX_EXAMPLE_DATA);

/// The viewer with a raster layer, the whole world in a view of 480 x 300 pixels, and a folder.
class ViewerDocument : public testing::Test {
protected:
    ViewerDocument() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, Folder.Path("settings"));
        Window = MakeWindow();
        AddSampleLayers(Window->GetLayerManager(), DataFolder);
        Window->ShowWholeWorld();
        Document().MarkUnchanged();
    }

    static std::unique_ptr<TViewerWindow> MakeWindow() {
        auto window = std::make_unique<TViewerWindow>();
        window->GetView()->setFixedSize(480, 300);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        Settle();
        return window;
    }
    static void Settle() {
        for (int i = 0; i < 4; ++i)
            QCoreApplication::processEvents();
    }
    TMapDocument& Document() { return Window->GetDocuments()->GetDocument(); }
    TObjectList<TBaseMapLayer>& Layers() { return Window->GetLayerManager()->GetLayers(); }
    void Trigger(const QString& text) {
        for (QAction* action : Window->menuBar()->actions().at(0)->menu()->actions())
            if (action->text() == text)
                return action->trigger();
        ADD_FAILURE() << "no command " << text.toStdString();
    }

    const TFormatSettingsScope Point{{u'.'}}; // under a comma documents lose their layers
    TImageFolder Folder;
    std::unique_ptr<TViewerWindow> Window;
    TScriptedMsgBox Boxes;
    TScriptedFileDialog Dialogs;
};

TEST_F(ViewerDocument, IsChangedByWhatIsKeptAndNotByWhatIsLookedAt) {
    EXPECT_FALSE(Document().IsChanged());
    Window->GetView()->ZoomIn();
    Window->GetView()->setFixedSize(400, 250);
    Settle();
    EXPECT_FALSE(Document().IsChanged());
    dynamic_cast<TIdrisiMapLayer&>(*Layers()[1]).SetOpacity(100);
    EXPECT_TRUE(Document().IsChanged());
    Document().MarkUnchanged();
    Window->GetAnnotations()->GetAddMenu()->actions().at(4)->trigger();
    EXPECT_TRUE(Document().IsChanged());
    Document().MarkUnchanged();
    TBaseObjectLayerItem* const rectangle = Window->GetView()->GetSpObjectLayer()->GetObjects()[0];
    rectangle->SetRect({5, 6, 70, 80});
    EXPECT_TRUE(Document().IsChanged());
}

TEST_F(ViewerDocument, ComesBackInAFreshManager) {
    Window->GetLayerManager()->SetTitle(QStringLiteral("January"));
    Window->AddPlaces(DataFolder + QStringLiteral("/places.csv"));
    Folder.Write("line.shp", TShapeBytes().Lines(3, {{{-60, 20}, {-40, 20}}}).File(3));
    AddOverlay(Window->GetLayerManager(), Folder.Path("line.shp"), 0xFF112233);
    Dialogs->Answers = {Folder.Path("kept.lmx")};
    Trigger(QStringLiteral("Save &as..."));
    EXPECT_EQ(Boxes->Shown, std::vector<TShownMessage>());
    EXPECT_FALSE(Document().IsChanged());
    EXPECT_EQ(Window->windowTitle(), "kept.lmx - Climate Viewer");

    const auto fresh = MakeWindow();
    const auto before = fresh->GetLayerManager();
    fresh->OpenFile(Folder.Path("kept.lmx"));
    EXPECT_NE(fresh->GetLayerManager(), before);
    EXPECT_EQ(fresh->GetLayerManager()->GetTitle(), "January");
    EXPECT_FALSE(fresh->GetDocuments()->GetDocument().IsChanged());
    auto& layers = fresh->GetLayerManager()->GetLayers();
    ASSERT_EQ(layers.Count(), 4);
    for (int i = 0; i < layers.Count(); ++i)
        EXPECT_EQ(layers[i]->GetLayerID(), Layers()[i]->GetLayerID()) << i;
    const auto* places = dynamic_cast<TPlacesLayer*>(layers[2]);
    ASSERT_NE(places, nullptr);
    EXPECT_EQ(places->GetPins().Count(), dynamic_cast<TPlacesLayer&>(*Layers()[2]).GetPins().Count());
    const auto* shapes = dynamic_cast<TShapeFileLayer*>(layers[3]);
    ASSERT_NE(shapes, nullptr);
    EXPECT_EQ(shapes->GetColor(), 0xFF112233U);
    EXPECT_TRUE(shapes->GetFoldsAtSeam());
    EXPECT_TRUE(PumpUntilRendersEnd());
}

TEST_F(ViewerDocument, EmbedsDataWhereItIsAsked) {
    Dialogs->Answers = {Folder.Path("large.lmx"), Folder.Path("small.lmx")};
    Trigger(QStringLiteral("&Embed data in documents"));
    EXPECT_TRUE(Document().GetEmbedsData());
    Trigger(QStringLiteral("Save &as..."));
    Trigger(QStringLiteral("&Embed data in documents"));
    Trigger(QStringLiteral("Save &as..."));
    EXPECT_GT(QFile(Folder.Path("large.lmx")).size(), 10 * QFile(Folder.Path("small.lmx")).size());
}

TEST_F(ViewerDocument, WhatWouldBeLostIsAskedFirst) {
    dynamic_cast<TIdrisiMapLayer&>(*Layers()[0]).TakeImage(nullptr);
    Dialogs->Answers = {Folder.Path("kept.lmx")};
    Boxes->Answers = {false};
    Trigger(QStringLiteral("Save &as..."));
    ASSERT_EQ(Boxes->Shown.size(), 1U);
    EXPECT_EQ(Boxes->Shown[0].Kind, "YesNo");
    EXPECT_TRUE(Boxes->Shown[0].Text.startsWith("Not everything can be kept:\n"));
    EXPECT_TRUE(Boxes->Shown[0].Text.contains("Relief"));
    EXPECT_TRUE(Boxes->Shown[0].Text.endsWith("Save all the same?"));
    EXPECT_FALSE(QFile::exists(Folder.Path("kept.lmx")));
}

TEST_F(ViewerDocument, WhatDoesNotArriveIsTold) {
    Folder.Write("line.shp", TShapeBytes().Lines(3, {{{-60, 20}, {-40, 20}}}).File(3));
    AddOverlay(Window->GetLayerManager(), Folder.Path("line.shp"), 0xFF112233);
    Document().Save(Folder.Path("kept.lmx"));
    ASSERT_TRUE(QFile::remove(Folder.Path("line.shp")));
    Window->OpenFile(Folder.Path("kept.lmx"));
    ASSERT_EQ(Boxes->Shown.size(), 1U);
    EXPECT_EQ(Boxes->Shown[0].Kind, "Info");
    EXPECT_TRUE(Boxes->Shown[0].Text.startsWith("Not everything could be read:\nLayer \"line\" (ShapeFileLayer): "));
    EXPECT_EQ(Layers().Count(), 2);
    EXPECT_TRUE(PumpUntilRendersEnd());
}

TEST_F(ViewerDocument, WhatIsNoDocumentLeavesTheMap) {
    const auto manager = Window->GetLayerManager();
    Folder.Write("text.lmx", "no archive");
    Window->OpenFile(Folder.Path("text.lmx"));
    Settle();
    ASSERT_EQ(Boxes->Shown.size(), 1U);
    EXPECT_EQ(Boxes->Shown[0].Text, Folder.Path("text.lmx") + ": is no ZIP archive");

    const auto keepers = TMapDocLayerPersistFactory::GetObject();
    TMapDocWriter(QStringLiteral("Another"), keepers)
        .Write(Folder.Path("other.lmx"), Window->GetView(), TMapDocExternalResourcePolicy::erpKeepExternal);
    Window->OpenFile(Folder.Path("other.lmx"));
    Settle();
    ASSERT_EQ(Boxes->Shown.size(), 2U);
    EXPECT_EQ(Boxes->Shown[1].Text, Folder.Path("other.lmx") + ": is a document of another program");
    EXPECT_EQ(Window->GetLayerManager(), manager);
    EXPECT_EQ(Layers().Count(), 2);
}

TEST_F(ViewerDocument, ChangesAreNotDiscardedWithoutAQuestion) {
    Document().Save(Folder.Path("kept.lmx"));
    Layers().Remove(Layers()[1]);
    const auto manager = Window->GetLayerManager();
    Boxes->Answers = {false, false, false, true};
    Trigger(QStringLiteral("&New"));
    Window->OpenFile(Folder.Path("kept.lmx"));
    QCloseEvent close;
    QCoreApplication::sendEvent(Window.get(), &close);
    EXPECT_FALSE(close.isAccepted());
    EXPECT_EQ(Window->GetLayerManager(), manager);
    Trigger(QStringLiteral("&New"));
    EXPECT_EQ(Layers().Count(), 0);
    EXPECT_EQ(Window->windowTitle(), "Climate Viewer");
    const TShownMessage question = {"YesNo", "The map has changes that are not saved. Discard them?", "Unsaved changes",
                                    Window.get()};
    EXPECT_EQ(Boxes->Shown, std::vector<TShownMessage>(4, question));
    QCoreApplication::sendEvent(Window.get(), &close);
    EXPECT_TRUE(close.isAccepted()) << "an empty map has nothing to lose";
}

TEST_F(ViewerDocument, RecentDocumentsAreOfferedAsLongAsTheyAreThere) {
    Dialogs->Answers = {Folder.Path("first.lmx"), Folder.Path("second.lmx")};
    Trigger(QStringLiteral("Save &as..."));
    Trigger(QStringLiteral("Save &as..."));
    QMenu* recent = nullptr;
    for (QAction* action : Window->menuBar()->actions().at(0)->menu()->actions())
        if (action->menu())
            recent = action->menu();
    ASSERT_NE(recent, nullptr);
    emit recent->aboutToShow();
    ASSERT_EQ(recent->actions().size(), 2);
    EXPECT_EQ(recent->actions().at(0)->text(), Folder.Path("second.lmx"));
    EXPECT_EQ(recent->actions().at(1)->text(), Folder.Path("first.lmx"));
    ASSERT_TRUE(QFile::remove(Folder.Path("second.lmx")));
    emit recent->aboutToShow();
    ASSERT_EQ(recent->actions().size(), 1);
    recent->actions().at(0)->trigger();
    EXPECT_EQ(Document().GetFileName(), Folder.Path("first.lmx"));
    EXPECT_EQ(Layers().Count(), 2);
}

TEST_F(ViewerDocument, TheSampleMapIsASheet) {
    ComposeSampleMap(*Window->GetView());
    const TWorldViewport& viewport = *Window->GetView()->GetViewport();
    EXPECT_EQ(viewport.GetCenter(), TMapPoint(0, 0));
    const double percent = static_cast<double>(viewport.GetScale()) * 100;
    EXPECT_NEAR(percent, std::round(percent), 1e-9);
    const auto& items = Window->GetView()->GetSpObjectLayer()->GetObjects();
    ASSERT_EQ(items.Count(), 5);
    const TMapPoint corner = viewport.MapPointToPoint({180, 90});
    for (int i = 0; i < items.Count(); ++i) {
        const TRect rect = items[i]->GetRect();
        const bool isBeside = rect.Bottom <= corner.Y || rect.Top >= viewport.MapPointToPoint({0, -90}).Y ||
                              rect.Left >= corner.X || rect.Right <= viewport.MapPointToPoint({-180, 0}).X;
        EXPECT_TRUE(isBeside) << i << " stands on the map";
    }
}

} // namespace
} // namespace lmx
