// Views that go, or lose what they show, while somebody is being told or asked.

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/ShownView.h>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

using tests::AddTestLayer;
using tests::LatLonArea;
using tests::TShownView;
using tests::TTestLayer;

class MapViewClosing : public testing::Test {
protected:
    MapViewClosing() { View->SetLayerManager(Manager); }

    void CreateWorld() { View->CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject()); }
    TMapViewNotifyEvent Close() {
        return [this](TMapViewControl*) { View.reset(); };
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TMapViewControl> View = std::make_unique<TMapViewControl>();
};

TEST_F(MapViewClosing, BeforeItsManagerChanges) {
    View->SetOnBeforeLayerManagerChanged(Close());
    const auto next = TLayerManagerFactory::GetObject();
    View->SetLayerManager(next);
    EXPECT_EQ(View, nullptr);
    EXPECT_TRUE(next->GetSpecialLayers().IsEmpty());
}

TEST_F(MapViewClosing, AfterItsManagerHasChanged) {
    View->SetOnAfterLayerManagerChanged(Close());
    const auto next = TLayerManagerFactory::GetObject();
    View->SetLayerManager(next);
    EXPECT_EQ(View, nullptr);
    EXPECT_EQ(next->GetSpecialLayers().Count(), 3);
    EXPECT_TRUE(Manager->GetSpecialLayers().IsEmpty());
}

TEST_F(MapViewClosing, WhenItsViewportIsUpdated) {
    CreateWorld();
    View->SetOnViewportUpdated(Close());
    View->GetViewport()->SetScale(2);
    EXPECT_EQ(View, nullptr);
}

TEST_F(MapViewClosing, WhenItsWorldSystemChanges) {
    CreateWorld();
    int invalidations = 0;
    const TSubscription counted =
        AddTestLayer(Manager)->GetOnInvalidated().Add([&](TBaseMapLayer*) { ++invalidations; });
    View->SetOnViewportUpdated(Close());
    View->ChangeWorldSystem(TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_EQ(View, nullptr);
    EXPECT_EQ(invalidations, 0);
}

TEST_F(MapViewClosing, WhileSomebodyTypesATranslationOrAScale) {
    tests::TScriptedInputBox boxes;
    boxes->WhileOpen = [this] { View.reset(); };
    CreateWorld();
    boxes->Answers = {QStringLiteral("1,2")};
    View->PopupMenu_DbgTranslation();
    EXPECT_EQ(View, nullptr);
    View = std::make_unique<TMapViewControl>();
    CreateWorld();
    boxes->Answers = {QStringLiteral("3")};
    View->PopupMenu_DbgZoomScale();
    EXPECT_EQ(View, nullptr);
}

TEST_F(MapViewClosing, WhileSomebodyChoosesABackground) {
    tests::TScriptedColorChooser choosers;
    choosers->WhileOpen = [this] { View.reset(); };
    choosers->Answers = {0xFF123456U};
    View->PopupMenu_ChangeBackgroundColor_Click();
    EXPECT_EQ(View, nullptr);
}

TEST(MapViewReplacing, AHandlerMayReplaceItself) {
    TMapViewControl view;
    view.CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
    int first = 0;
    int second = 0;
    view.SetOnViewportUpdated([&](TMapViewControl* sender) {
        sender->SetOnViewportUpdated([&](TMapViewControl*) { ++second; });
        ++first; // what the handler holds is still there
    });
    view.GetViewport()->SetTranslation({1, 1});
    view.GetViewport()->SetTranslation({2, 2});
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
}

TEST(MapViewReplacing, APaintThatChangesTheManagerIsTheLastOfItsStack) {
    TShownView shown;
    TTestLayer* below = shown.AddReadyLayer();
    TTestLayer* above = shown.AddReadyLayer();
    TShownView::Settle();
    shown.View.grab();
    const int paintsBefore = above->Paints;
    const auto next = TLayerManagerFactory::GetObject();
    below->OnPaint = [&](TWorld*, TWorldViewport*, TBitmap32&) { shown.View.SetLayerManager(next); };
    shown.View.RepaintMap();
    TShownView::Settle();
    shown.View.grab();
    EXPECT_EQ(shown.View.GetLayerManager(), next);
    EXPECT_EQ(above->Paints, paintsBefore);
}

} // namespace
} // namespace lmx
