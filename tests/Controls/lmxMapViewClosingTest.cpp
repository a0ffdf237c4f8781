// Views that go, or lose what they show, while somebody is being told or asked.

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/ShownView.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

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
    EXPECT_EQ(next->GetSpecialLayers().Count(), 4);
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

TEST_F(MapViewClosing, WhenASpecialLayerComesOrGoes) {
    const auto next = TLayerManagerFactory::GetObject();
    const TSubscription added = next->GetOnLayerAdded().Add([this](ILayerManager*, TBaseMapLayer*) { View.reset(); });
    View->SetLayerManager(next);
    EXPECT_EQ(View, nullptr);
    EXPECT_EQ(next->GetSpecialLayers().Count(), 1);
    View = std::make_unique<TMapViewControl>();
    View->SetLayerManager(Manager);
    const TSubscription removed =
        Manager->GetOnLayerRemoved().Add([this](ILayerManager*, TBaseMapLayer*) { View.reset(); });
    View->SetLayerManager(nullptr);
    EXPECT_EQ(View, nullptr);
    EXPECT_EQ(Manager->GetSpecialLayers().Count(), 3);
}

TEST_F(MapViewClosing, WhenTheFirstLayerMakesTheWorld) {
    View->resize(50, 40);
    View->SetOnViewportUpdated(Close());
    auto layer = std::make_unique<TTestLayer>(Manager);
    layer->SetLayerArea(LatLonArea({0, 10, 20, 0}));
    Manager->GetLayers().Add(std::move(layer));
    EXPECT_EQ(View, nullptr);
}

TEST_F(MapViewClosing, WhenTheMouseIsToldOfAndTheHandlerIsReplaced) {
    TShownView shown;
    shown.View.CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
    int first = 0;
    int second = 0;
    shown.View.SetOnMouseCursorLocationChanged([&](TMapViewControl* sender, const TPoint&, const TMapPoint&) {
        sender->SetOnMouseCursorLocationChanged([&](TMapViewControl*, const TPoint&, const TMapPoint&) { ++second; });
        ++first;
    });
    shown.Hover({5, 5});
    shown.Hover({6, 6});
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
}

TEST_F(MapViewClosing, WhenALayerPaints) {
    CreateWorld();
    View->resize(50, 40);
    View->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(View.get()));
    TTestLayer* layer = AddTestLayer(Manager);
    TTestLayer* above = AddTestLayer(Manager);
    layer->SetIsReadyToDraw(true);
    above->SetIsReadyToDraw(true);
    TShownView::Settle();
    above->Paints = 0;
    layer->OnPaint = [this](TWorld*, TWorldViewport*, TBitmap32&) { View.reset(); };
    View->RepaintMap();
    TShownView::Settle();
    EXPECT_EQ(View, nullptr);
    EXPECT_EQ(above->Paints, 0);
}

class TClosingMode final : public IMapViewControlCustomModeObject {
public:
    explicit TClosingMode(std::function<void()> close) : FClose(std::move(close)) {}
    void MouseUp(TMapViewControl*, const TPoint&, const TMapPoint&) override {}
    void MouseDown(TMapViewControl*, const TPoint&, const TMapPoint&) override {}
    void MouseMove(TMapViewControl*, const TPoint&, const TMapPoint&) override {}
    TCursor GetCursor() const override {
        FClose();
        return TCursor::crCross;
    }

private:
    std::function<void()> FClose;
};

TEST_F(MapViewClosing, WhenItsModeIsSetAndItsObjectIsAskedForACursor) {
    const TSubscription closing = View->GetOnModeChanged().Add([this](TMapViewControl*, TMapMode) { View.reset(); });
    View->SetMode(TMapMode::mdPan);
    EXPECT_EQ(View, nullptr);
    View = std::make_unique<TMapViewControl>();
    View->SetCustomModeObject(std::make_shared<TClosingMode>([this] { View.reset(); }));
    View->SetMode(TMapMode::mdCustom);
    EXPECT_EQ(View, nullptr);
}

TEST(MapViewReplacing, AModeSetMeanwhileIsTheOneThatIsToldOf) {
    TMapViewControl view;
    std::vector<TMapMode> early;
    std::vector<TMapMode> late;
    const TSubscription first = view.GetOnModeChanged().Add([&](TMapViewControl* sender, TMapMode mode) {
        early.push_back(mode);
        if (mode == TMapMode::mdSelection)
            sender->SetMode(TMapMode::mdPan);
    });
    const TSubscription second =
        view.GetOnModeChanged().Add([&](TMapViewControl*, TMapMode mode) { late.push_back(mode); });
    view.SetMode(TMapMode::mdSelection);
    EXPECT_EQ(early, (std::vector<TMapMode>{TMapMode::mdSelection, TMapMode::mdPan}));
    EXPECT_EQ(late, (std::vector<TMapMode>{TMapMode::mdPan}));
    EXPECT_EQ(view.cursor().shape(), Qt::SizeAllCursor);
}

TEST(MapViewReplacing, AManagerTakenAwayWhileItsSpecialLayersComeLeavesNone) {
    TMapViewControl view;
    const auto manager = TLayerManagerFactory::GetObject();
    const TSubscription taking =
        manager->GetOnLayerAdded().Add([&](ILayerManager*, TBaseMapLayer*) { view.SetLayerManager(nullptr); });
    view.SetLayerManager(manager);
    EXPECT_EQ(view.GetLayerManager(), nullptr);
    EXPECT_TRUE(manager->GetSpecialLayers().IsEmpty());
    EXPECT_EQ(view.GetSpSelectionLayer(), nullptr);
    EXPECT_EQ(view.GetSpRulersLayer(), nullptr);
    EXPECT_EQ(view.GetSpInfoQueryPointsLayer(), nullptr);
}

TEST(MapViewReplacing, AManagerSetWhileTheLayersOfTheLastOneGoStays) {
    TMapViewControl view;
    const auto first = TLayerManagerFactory::GetObject();
    const auto second = TLayerManagerFactory::GetObject();
    const auto third = TLayerManagerFactory::GetObject();
    view.SetLayerManager(first);
    int changes = 0;
    view.SetOnBeforeLayerManagerChanged([&](TMapViewControl*) { ++changes; });
    view.SetOnAfterLayerManagerChanged([&](TMapViewControl*) { --changes; });
    const TSubscription replacing =
        first->GetOnLayerRemoved().Add([&](ILayerManager*, TBaseMapLayer*) { view.SetLayerManager(third); });
    view.SetLayerManager(second);
    EXPECT_EQ(view.GetLayerManager(), third);
    EXPECT_TRUE(first->GetSpecialLayers().IsEmpty());
    EXPECT_TRUE(second->GetSpecialLayers().IsEmpty());
    EXPECT_EQ(third->GetSpecialLayers().Count(), 4);
    EXPECT_EQ(view.GetSpRulersLayer(), third->GetSpecialLayers()[1]);
    EXPECT_EQ(changes, 0);
}

TEST(MapViewReplacing, AManagerTakenAwayByTheSelectionItself) {
    TShownView shown;
    shown.View.CreateWorldAndViewport(TLatLonWorldSystemFactory::GetObject());
    shown.View.SetMode(TMapMode::mdSelection);
    const TSubscription taking = shown.View.GetSpSelectionLayer()->GetOnInvalidated().Add(
        [&](TBaseMapLayer*) { shown.View.SetLayerManager(nullptr); });
    shown.Press(Qt::LeftButton, {20, 20});
    shown.Release(Qt::LeftButton, {30, 30});
    EXPECT_EQ(shown.View.GetLayerManager(), nullptr);
    EXPECT_TRUE(shown.Manager->GetSpecialLayers().IsEmpty());
}

TEST(MapViewReplacing, APaintThatMakesAnotherWorldIsFollowedByAnother) {
    TShownView shown;
    TTestLayer* below = shown.AddReadyLayer();
    TTestLayer* above = shown.AddReadyLayer();
    TShownView::Settle();
    above->Paints = 0;
    below->OnPaint = [&](TWorld*, TWorldViewport*, TBitmap32&) {
        below->OnPaint = {};
        shown.View.CreateWorldAndViewport(TLatLonAntimeridianWorldSystemFactory::GetObject());
    };
    shown.View.RepaintMap();
    TShownView::Settle();
    EXPECT_EQ(above->Paints, 1); // none in the first
    EXPECT_TRUE(shown.View.IsBufferValid());
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
