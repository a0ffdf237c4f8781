// What the colours mean in the viewer: legends in the rows of the layers, the table of query points, and the attributes
// behind a coast.

#include "ViewerWindow.h"

#include <lmx/Controls/Legend/lmxMapViewGradientLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewShapeExplorerControl.h>
#include <lmx/Controls/Legend/lmxShapeFileLayerLegendControl.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Controls/lmxMapViewInfoQueryListControl.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <lmx/Widgets/lmxPngButton.h>
#include <tests/Support/ScriptedServices.h>

#include <QMouseEvent>
#include <QPointer>
#include <QTest>

#include <gtest/gtest.h>

#include "Overlays.h"
#include "SampleMap.h"

namespace lmx {
namespace {

const QString DataFolder = QStringLiteral(LMX_EXAMPLE_DATA);

class ViewerLegends : public testing::Test {
protected:
    ViewerLegends() {
        AddSampleLayers(Window.GetLayerManager(), DataFolder);
        Window.resize(1280, 760);
        Window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Window));
        QCoreApplication::processEvents();
        Window.ShowWholeWorld();
    }

    TMapViewControl& View() { return *Window.GetView(); }
    TMapViewInfoQueryListControl& Table() { return *Window.GetQueryTable(); }
    /// Moves the mouse to a place.
    void PointAt(extended longitude, extended latitude) {
        const TMapPoint pixel = View().GetViewport()->MapPointToPoint({longitude, latitude});
        const double ratio = View().GetDeviceRatio();
        const QPointF at(static_cast<double>(pixel.X) / ratio, static_cast<double>(pixel.Y) / ratio);
        QMouseEvent move(QEvent::MouseMove, at, View().mapToGlobal(at), Qt::NoButton, Qt::NoButton, {});
        QCoreApplication::sendEvent(&View(), &move);
    }

    const TFormatSettingsScope Point{TFormatSettings{u'.'}};
    TViewerWindow Window;
};

TEST_F(ViewerLegends, StandInTheRowsOfTheirLayers) {
    for (TBaseMapLayer* layer : Window.GetLayerManager()->GetLayers()) {
        TBaseLegendControl* legend = layer->GetLegendComponent();
        ASSERT_TRUE(legend) << layer->GetLayerName().toStdString();
        EXPECT_EQ(legend->window(), &Window);
        EXPECT_TRUE(legend->isVisible());
        EXPECT_GE(legend->height(), legend->GetSuggestedHeight());
    }
}

TEST_F(ViewerLegends, FollowTheirLayersColors) {
    auto* raster = dynamic_cast<TIdrisiMapLayer*>(Window.GetLayerManager()->GetLayers()[0]);
    ASSERT_TRUE(raster);
    const QPointer<QWidget> before = raster->GetLegendComponent();
    raster->SetColorCalc(raster->GetColorCalc()->Clone());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(before);
    EXPECT_EQ(raster->GetLegendComponent()->window(), &Window);
}

TEST_F(ViewerLegends, TheTableFollowsTheMouse) {
    ASSERT_GE(Table().GetRowCount(), 1);
    EXPECT_EQ(Table().GetRowPoint(0), Table().GetCursorInfoQueryPoint());
    PointAt(100, 0);
    const auto* raster = dynamic_cast<TIdrisiMapLayer*>(Window.GetLayerManager()->GetLayers()[0]);
    const TMapPoint place = Table().GetCursorInfoQueryPoint()->GetPoint();
    EXPECT_NEAR(static_cast<double>(place.X), 100, 1);
    const auto value = Table().GetRowValue(0, 0);
    ASSERT_TRUE(value);
    EXPECT_EQ(value->Value, raster->GetImage()->GetValue(static_cast<float>(place.X), static_cast<float>(place.Y)));
    EXPECT_EQ(value->Color, raster->GetColorCalc()->GetColor(value->Value));
}

TEST_F(ViewerLegends, TheTableListsThePointsOfTheMap) {
    View().GetSpInfoQueryPointsLayer()->GetPoints().Add(
        std::make_unique<TInfoQueryPoint>(View().GetSpInfoQueryPointsLayer(), TMapPoint(100, 0), 0xFFFF0000));
    ASSERT_EQ(Table().GetRowCount(), 2);
    EXPECT_TRUE(Table().GetRowValue(1, 0));
    Table().GetList()->SelectRow(1);
    Table().GetDeleteButton()->click();
    EXPECT_TRUE(View().GetSpInfoQueryPointsLayer()->GetPoints().IsEmpty());
}

TEST_F(ViewerLegends, TheTableOfACoastOpensFromItsLegend) {
    AddSampleOverlays(Window.GetLayerManager(), DataFolder);
    QCoreApplication::processEvents();
    TShapeFileLayerLegendControl* legend = nullptr;
    for (TBaseMapLayer* layer : Window.GetLayerManager()->GetLayers())
        if (!legend)
            legend = dynamic_cast<TShapeFileLayerLegendControl*>(layer->GetLegendComponent());
    ASSERT_TRUE(legend);
    tests::TScriptedMsgBox messages;
    QTest::mouseClick(legend->GetExploreButton(), Qt::LeftButton);
    QPointer<TMapViewShapeExplorerControl> explorer;
    for (QWidget* child : Window.findChildren<QWidget*>())
        if (auto* found = dynamic_cast<TMapViewShapeExplorerControl*>(child))
            explorer = found;
    EXPECT_TRUE(messages->Shown.empty());
    ASSERT_TRUE(explorer);
    EXPECT_TRUE(explorer->isVisible());
    EXPECT_GT(explorer->GetGrid()->GetRowCount(), 0);
    EXPECT_GT(explorer->GetGrid()->model()->columnCount(), 0);
    explorer->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(explorer);
}

} // namespace
} // namespace lmx
