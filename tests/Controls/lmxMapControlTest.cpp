#include <lmx/Controls/lmxMapControl.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Controls/lmxMapViewRuler.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <tests/Support/GeometryPrinters.h>
#include <tests/Support/WidgetPictures.h>

#include <QCoreApplication>
#include <QPointer>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

struct MapControl : testing::Test {
    MapControl() {
        Control->resize(300, 200);
        tests::ShowActive(*Control);
    }
    void Resize(int width, int height) {
        Control->resize(width, height);
        QCoreApplication::processEvents();
    }
    QRect View() const { return Control->GetMapView()->geometry(); }
    QRect Horizontal() const { return Control->GetHRuler()->geometry(); }
    QRect Vertical() const { return Control->GetVRuler()->geometry(); }

    std::unique_ptr<TMapControl> Control = std::make_unique<TMapControl>();
};

TEST_F(MapControl, BeginsWithTheViewAlone) {
    EXPECT_FALSE(Control->GetShowRulers());
    EXPECT_EQ(View(), QRect(0, 0, 300, 200));
    EXPECT_TRUE(Control->GetMapView()->isVisible());
    EXPECT_FALSE(Control->GetHRuler()->isVisible());
    EXPECT_FALSE(Control->GetVRuler()->isVisible());
    EXPECT_EQ(Control->GetHRuler()->GetOrientation(), TMapRulerOrientation::roHorizontal);
    EXPECT_EQ(Control->GetVRuler()->GetOrientation(), TMapRulerOrientation::roVertical);
    EXPECT_EQ(Control->GetMapView()->parentWidget(), Control.get());
    Resize(310, 220);
    EXPECT_EQ(View(), QRect(0, 0, 310, 220));
}

TEST_F(MapControl, KeepsItsViewUpWithItsSizeWhileHidden) {
    TMapControl control;
    control.resize(100, 50);
    control.GetMapView()->CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
    control.resize(400, 200);
    EXPECT_EQ(control.GetMapView()->size(), QSize(400, 200));
    EXPECT_EQ(control.GetMapView()->GetViewport()->GetViewSize(), TSize(400, 200));
    control.SetShowRulers(true);
    control.resize(300, 100);
    EXPECT_EQ(control.GetMapView()->GetViewport()->GetViewSize(), TSize(280, 80));
}

TEST_F(MapControl, OutlivesItsView) {
    delete Control->GetMapView();
    EXPECT_EQ(Control->GetMapView(), nullptr);
    Control->SetShowRulers(true);
    Resize(200, 100);
    EXPECT_TRUE(Control->GetHRuler()->isVisible());
    EXPECT_FALSE(Control->sizeHint().isValid());
}

TEST_F(MapControl, ShowsItsStrips) {
    Control->SetShowRulers(true);
    EXPECT_TRUE(Control->GetShowRulers());
    EXPECT_EQ(Horizontal(), QRect(20, 0, 280, 20));
    EXPECT_EQ(Vertical(), QRect(0, 20, 20, 180));
    EXPECT_EQ(View(), QRect(20, 20, 280, 180));
    EXPECT_TRUE(Control->GetHRuler()->isVisible());
    EXPECT_TRUE(Control->GetVRuler()->isVisible());
    Resize(400, 100);
    EXPECT_EQ(Horizontal(), QRect(20, 0, 380, 20));
    EXPECT_EQ(Vertical(), QRect(0, 20, 20, 80));
    EXPECT_EQ(View(), QRect(20, 20, 380, 80));
}

TEST_F(MapControl, LeavesItsStripsWhenTheyAreSwitchedOff) {
    Control->SetShowRulers(true);
    Control->SetShowRulers(false);
    EXPECT_FALSE(Control->GetShowRulers());
    EXPECT_TRUE(Control->GetHRuler()->isVisible());
    EXPECT_TRUE(Control->GetVRuler()->isVisible());
    EXPECT_EQ(Horizontal(), QRect(20, 0, 280, 20));
    EXPECT_EQ(View(), QRect(20, 20, 280, 180));
    Resize(400, 300);
    EXPECT_EQ(Horizontal(), QRect(20, 0, 280, 20)) << "no longer follows";
    EXPECT_EQ(Vertical(), QRect(0, 20, 20, 180));
    EXPECT_EQ(View(), QRect(20, 20, 380, 280)) << "the view fills the rest";
    Control->SetShowRulers(true);
    EXPECT_EQ(Horizontal(), QRect(20, 0, 380, 20));
}

TEST_F(MapControl, StandsAnySize) {
    Control->SetShowRulers(true);
    Resize(10, 5);
    EXPECT_EQ(View().size(), QSize(0, 0));
    EXPECT_EQ(Horizontal().size(), QSize(0, 20));
    EXPECT_EQ(Vertical().size(), QSize(20, 0));
}

TEST_F(MapControl, GivesTheKeyboardToItsView) {
    Control->setFocus();
    EXPECT_TRUE(Control->GetMapView()->hasFocus());
}

TEST_F(MapControl, FreesItsView) {
    const auto manager = TLayerManagerFactory::GetObject();
    Control->GetMapView()->SetLayerManager(manager);
    const QPointer<TMapViewControl> view = Control->GetMapView();
    Control.reset();
    EXPECT_TRUE(view.isNull());
}

TEST(HiddenMapControl, IsLaidOutBeforeItIsShown) {
    TMapControl control;
    control.SetShowRulers(true);
    control.resize(120, 80);
    tests::ShowActive(control);
    EXPECT_EQ(control.GetMapView()->geometry(), QRect(20, 20, 100, 60));
    EXPECT_TRUE(control.GetHRuler()->isVisible());
}

} // namespace
} // namespace lmx
