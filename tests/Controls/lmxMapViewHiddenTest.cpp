// A view that is not shown, as one on an inactive tab, or one that only makes pictures.

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <tests/Support/GeometryPrinters.h>
#include <tests/Support/TestLayer.h>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

struct HiddenMapView : testing::Test {
    HiddenMapView() {
        View.resize(100, 50);
        View.SetLayerManager(Manager);
        View.CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
        View.resize(400, 200);
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TMapViewControl View;
};

TEST_F(HiddenMapView, ZoomsForTheSizeThatItHas) {
    auto layer = std::make_unique<tests::TTestLayer>(Manager);
    layer->SetLayerArea(tests::LatLonArea({0, 10, 20, 0}));
    View.ZoomTo(Manager->GetLayers().Add(std::move(layer)));
    EXPECT_EQ(View.GetViewport()->GetScale(), 20);
    View.grab();
    EXPECT_EQ(View.GetViewport()->GetScale(), 20);
    EXPECT_EQ(View.GetViewport()->GetViewSize(), TSize(400, 200));
    EXPECT_EQ(View.GetViewport()->MapPointToPoint({10, 5}).ToPoint(), TPoint(200, 100));
}

TEST_F(HiddenMapView, ZoomsThroughItsViewportForTheSizeThatItHas) {
    View.GetViewport()->ZoomTo({0, 10, 20, 0});
    EXPECT_EQ(View.GetViewport()->GetScale(), 20);
}

TEST_F(HiddenMapView, CentersForTheSizeThatItHas) {
    View.SetCenter({10, 5});
    EXPECT_EQ(View.GetViewport()->MapPointToPoint({10, 5}).ToPoint(), TPoint(200, 100));
    View.resize(500, 300);
    View.ZoomIn();
    EXPECT_EQ(View.GetViewport()->MapPointToPoint({10, 5}).ToPoint(), TPoint(250, 150));
}

TEST_F(HiddenMapView, TellsOfItsSizeWhenItIsAskedForItsViewport) {
    int updates = 0;
    View.SetOnViewportUpdated([&](TMapViewControl*) { ++updates; });
    View.GetViewport();
    View.GetViewport();
    EXPECT_EQ(updates, 1);
    auto closing = std::make_unique<TMapViewControl>();
    closing->CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
    closing->SetOnViewportUpdated([&](TMapViewControl*) { closing.reset(); });
    closing->resize(70, 60);
    EXPECT_EQ(closing->GetViewport(), nullptr);
}

} // namespace
} // namespace lmx
