#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/ShownView.h>

#include <QSplitter>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace lmx {
namespace {

using tests::LatLonArea;
using tests::TShownView;
using tests::TTestLayer;

std::shared_ptr<IWorldSystem> LatLon() {
    return TLatLonWorldSystemFactory::GetObject();
}

TEST(MapViewControl, BeginsWithoutWorldOrManager) {
    const TMapViewControl view(nullptr, {});
    EXPECT_FALSE(view.WorldCreated());
    EXPECT_EQ(view.GetWorld(), nullptr);
    EXPECT_EQ(view.GetViewport(), nullptr);
    EXPECT_EQ(view.GetLayerManager(), nullptr);
    EXPECT_EQ(view.GetMode(), TMapMode::mdNone);
    EXPECT_EQ(view.GetBackgroundColor(), 0xFFFFFFFFU);
    EXPECT_FALSE(view.GetShowCheckerboard());
    EXPECT_FALSE(view.GetShowCrosshair());
    EXPECT_FALSE(view.GetShowFocusedBorder());
    EXPECT_FALSE(view.GetAutoPan());
    EXPECT_EQ(view.GetZoomScale(), 0.04F);
    EXPECT_EQ(view.GetCrosshairThickness(), 1);
    EXPECT_EQ(view.GetCrosshairColor(), 0xFF000000U);
    EXPECT_FALSE(view.GetCrosshairHighlights());
    EXPECT_TRUE(view.GetCrosshairMapPoint().Equals(TMapPoint()));
}

TEST(MapViewControl, WhatNeedsAWorldSaysSo) {
    TMapViewControl view(nullptr, {});
    const QString message = QStringLiteral("World not created");
    EXPECT_EQ(tests::MessageOf<EInvalidOperation>([&] { view.GetWorldSystem(); }), message);
    EXPECT_EQ(tests::MessageOf<EInvalidOperation>([&] { view.SetCenter({1, 2}); }), message);
    EXPECT_EQ(tests::MessageOf<EInvalidOperation>([&] { view.GetMapPoint(); }), message);
    view.ZoomIn();
    view.ZoomOut();
    view.ZoomTo(nullptr);
    EXPECT_FALSE(view.WorldCreated());
}

TEST(MapViewControl, TheFirstOrdinaryLayerMakesTheWorld) {
    TShownView shown;
    shown.AddReadyLayer();
    ASSERT_TRUE(shown.View.WorldCreated());
    EXPECT_EQ(shown.View.GetWorldSystem(), LatLon());
    const TWorldViewport& viewport = *shown.View.GetViewport();
    EXPECT_EQ(viewport.GetScale(), 1);
    EXPECT_EQ(viewport.GetViewSize(), TSize(200, 100));
    EXPECT_EQ(viewport.GetMinScale(), 0.1L);
}

TEST(MapViewControl, ASpecialLayerMakesNoWorld) {
    TShownView shown;
    auto special = std::make_unique<TTestLayer>(shown.Manager);
    special->SetFlags({TLayerFlag::lfSpecial});
    special->SetLayerArea(LatLonArea({0, 10, 20, 0}));
    shown.Manager->GetSpecialLayers().Add(std::move(special));
    EXPECT_FALSE(shown.View.WorldCreated());
}

TEST(MapViewControl, ALayerWithoutWorldSystemLeavesTheChanceToTheNext) {
    TShownView shown;
    tests::AddTestLayer(shown.Manager);
    EXPECT_FALSE(shown.View.WorldCreated());
    shown.AddReadyLayer();
    EXPECT_TRUE(shown.View.WorldCreated());
}

TEST(MapViewControl, ALayerThatGoesMakesTheWorldIfThereIsNone) {
    TShownView shown;
    TTestLayer* layer = tests::AddTestLayer(shown.Manager);
    layer->SetLayerArea(LatLonArea({0, 10, 20, 0}));
    EXPECT_FALSE(shown.View.WorldCreated());
    shown.Manager->GetLayers().Remove(layer);
    EXPECT_TRUE(shown.View.WorldCreated());
}

TEST(MapViewControl, LaterLayersLeaveTheWorldAsItIs) {
    TShownView shown;
    shown.AddReadyLayer();
    const TWorld* world = shown.View.GetWorld();
    auto layer = std::make_unique<TTestLayer>(shown.Manager);
    layer->SetLayerArea({TMapArea(1900000, 7000000, 3100000, 5000000), TNZMGWorldSystemFactory::GetObject()});
    shown.Manager->GetLayers().Add(std::move(layer));
    EXPECT_EQ(shown.View.GetWorld(), world);
    EXPECT_EQ(shown.View.GetWorldSystem(), LatLon());
}

TEST(MapViewControl, ChangeWorldSystemMakesAWorldOrReplacesItsSystem) {
    TShownView shown;
    shown.View.ChangeWorldSystem(nullptr);
    EXPECT_FALSE(shown.View.WorldCreated());
    shown.View.ChangeWorldSystem(LatLon());
    ASSERT_TRUE(shown.View.WorldCreated());
    shown.View.GetViewport()->SetScale(3);
    const TPoint translation = shown.View.GetViewport()->GetTranslation();

    TTestLayer* layer = shown.AddReadyLayer();
    int invalidations = 0;
    const TSubscription watch = layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { ++invalidations; });
    shown.View.ChangeWorldSystem(LatLon());
    EXPECT_EQ(invalidations, 0);
    shown.View.ChangeWorldSystem(TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_EQ(invalidations, 1);
    EXPECT_EQ(shown.View.GetWorldSystem(), TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_EQ(shown.View.GetViewport()->GetScale(), 3);
    EXPECT_EQ(shown.View.GetViewport()->GetTranslation(), translation);
}

TEST(MapViewControl, ChangeWorldSystemLeavesSpecialLayersAlone) {
    TShownView shown;
    shown.AddReadyLayer();
    auto special = std::make_unique<TTestLayer>(shown.Manager);
    special->SetFlags({TLayerFlag::lfSpecial});
    TBaseMapLayer* layer = shown.Manager->GetSpecialLayers().Add(std::move(special));
    int invalidations = 0;
    const TSubscription watch = layer->GetOnInvalidated().Add([&](TBaseMapLayer*) { ++invalidations; });
    shown.View.ChangeWorldSystem(TLatLonAntimeridianWorldSystemFactory::GetObject());
    EXPECT_EQ(invalidations, 0);
}

TEST(MapViewControl, AWorldWithoutSystemFailsAtTheNextConversion) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.ChangeWorldSystem(nullptr);
    EXPECT_EQ(shown.View.GetWorldSystem(), nullptr);
    EXPECT_THROW(shown.View.GetMapPoint(), Exception);
    shown.View.ChangeWorldSystem(LatLon());
    EXPECT_NO_THROW(shown.View.GetMapPoint());
}

TEST(MapViewControl, SettingAManagerTellsBeforeAndAfter) {
    TMapViewControl view(nullptr, {});
    const auto manager = TLayerManagerFactory::GetObject();
    QString told;
    const auto tell = [&told](const char* word) {
        return [&told, word](TMapViewControl* sender) {
            told += QLatin1StringView(word) +
                    (sender->GetLayerManager() ? QStringLiteral(" set;") : QStringLiteral(" nil;"));
        };
    };
    view.SetOnBeforeLayerManagerChanged(tell("before"));
    view.SetOnAfterLayerManagerChanged(tell("after"));
    view.SetLayerManager(manager);
    view.SetLayerManager(manager);
    EXPECT_EQ(told, QStringLiteral("before nil;after set;"));
    view.SetLayerManager(nullptr);
    EXPECT_EQ(told, QStringLiteral("before nil;after set;before set;after nil;"));
}

TEST(MapViewControl, WorldAndViewportSurviveAChangeOfManager) {
    TShownView shown;
    shown.AddReadyLayer();
    const TWorldViewport* viewport = shown.View.GetViewport();
    shown.View.SetLayerManager(TLayerManagerFactory::GetObject());
    EXPECT_EQ(shown.View.GetViewport(), viewport);
}

TEST(MapViewControl, RegisteringNeedsAManager) {
    TMapViewControl view(nullptr, {});
    const auto nameOf = [](auto action) {
        try {
            action();
        } catch (const EExArgumentNilException& failure) {
            return failure.Routine() + u' ' + failure.Argument();
        }
        return QStringLiteral("no exception");
    };
    EXPECT_EQ(nameOf([&] { view.RegisterLayerManagerEvents(nullptr, true); }),
              QStringLiteral("TMapViewControl.RegisterLayerManagerEvents LayerManager"));
    EXPECT_EQ(nameOf([&] { view.RegisterSpecialLayers(nullptr, true); }),
              QStringLiteral("TMapViewControl.RegisterSpecialLayers LayerManager"));
}

struct TWiring {
    explicit TWiring(ILayerManager& manager)
        : Added(manager.GetOnLayerAdded().Count()),
          Removed(manager.GetOnLayerRemoved().Count()),
          Visibility(manager.GetOnLayerVisibilityChanged().Count()),
          Ready(manager.GetOnLayerReadyToDraw().Count()),
          Moved(manager.GetOnLayerMoved().Count()),
          Command(manager.GetOnMapCommand().Count()),
          Invalidated(manager.GetOnLayerInvalidated().Count()) {}
    TWiring(int added, int removed, int visibility, int ready, int moved, int command, int invalidated)
        : Added(added),
          Removed(removed),
          Visibility(visibility),
          Ready(ready),
          Moved(moved),
          Command(command),
          Invalidated(invalidated) {}
    friend bool operator==(const TWiring&, const TWiring&) = default;

    int Added, Removed, Visibility, Ready, Moved, Command, Invalidated;
};

TEST(MapViewControl, IsWiredUnevenly) {
    const auto manager = TLayerManagerFactory::GetObject();
    {
        TMapViewControl view(nullptr, {});
        view.SetLayerManager(manager);
        EXPECT_EQ(TWiring(*manager), TWiring(1, 1, 1, 1, 1, 1, 0));
        view.SetLayerManager(nullptr);
        EXPECT_EQ(TWiring(*manager), TWiring(0, 1, 0, 1, 0, 0, 0));
        view.SetLayerManager(manager);
        EXPECT_EQ(TWiring(*manager), TWiring(1, 2, 1, 2, 1, 1, 0));
    }
    EXPECT_EQ(TWiring(*manager), TWiring(0, 0, 0, 0, 0, 0, 0)); // a destroyed view is not called
}

TEST(MapViewControl, AManagerThatWasLeftStillReachesTheView) {
    TShownView shown;
    shown.View.SetLayerManager(nullptr);
    TTestLayer* layer = tests::AddTestLayer(shown.Manager);
    layer->SetLayerArea(LatLonArea({0, 10, 20, 0}));
    EXPECT_FALSE(shown.View.WorldCreated());
    shown.Manager->GetLayers().Remove(layer);
    EXPECT_TRUE(shown.View.WorldCreated());
}

TEST(MapViewControl, ADestroyedViewIsNeverCalled) {
    const auto manager = TLayerManagerFactory::GetObject();
    auto view = std::make_unique<TMapViewControl>(nullptr, TSpecialLayerAccess{});
    view->SetLayerManager(manager);
    TTestLayer* layer = tests::AddTestLayer(manager);
    view.reset();
    layer->SetLayerArea(LatLonArea({0, 10, 20, 0}));
    layer->Invalidate();
    layer->SetIsVisible(false);
    layer->GotoExtendMenuItem_Click();
    manager->GetLayers().Remove(layer);
    EXPECT_EQ(manager->GetLayers().Count(), 0);
}

TEST(MapViewControl, TwoViewsShowOneManager) {
    TShownView shown;
    TMapViewControl second(nullptr, {});
    second.resize(300, 150);
    second.SetLayerManager(shown.Manager);
    second.show();
    TTestLayer* layer = shown.AddReadyLayer();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&second));
    TShownView::Settle();
    EXPECT_NE(second.GetWorld(), shown.View.GetWorld());
    EXPECT_GE(layer->Paints, 2);
    second.close();
    layer->Paints = 0;
    shown.View.RepaintMap();
    shown.View.grab();
    EXPECT_EQ(layer->Paints, 1);
}

TEST(MapViewControl, RepaintsCoalesce) {
    TShownView shown;
    TTestLayer* layer = shown.AddReadyLayer();
    TShownView::Settle();
    layer->Paints = 0;
    for (int i = 0; i < 5; ++i)
        shown.View.RepaintMap();
    TShownView::Settle();
    EXPECT_EQ(layer->Paints, 1);
}

TEST(MapViewControl, LayerEventsRepaint) {
    TShownView shown;
    TTestLayer* layer = shown.AddReadyLayer();
    shown.AddReadyLayer();
    const auto paintsAfter = [&](auto action) {
        TShownView::Settle();
        layer->Paints = 0;
        action();
        TShownView::Settle();
        return layer->Paints;
    };
    EXPECT_EQ(paintsAfter([&] { layer->Invalidate(); }), 1);
    EXPECT_EQ(paintsAfter([&] { shown.Manager->GetLayers()[1]->SetIsVisible(false); }), 1);
    EXPECT_EQ(paintsAfter([&] { shown.Manager->MoveLayer(0, 1); }), 1);
    EXPECT_EQ(paintsAfter([&] { layer->DoNotifyInvalidated(); }), 0);
    EXPECT_EQ(paintsAfter([&] { layer->SetLayerName(QStringLiteral("other")); }), 0);
    EXPECT_EQ(paintsAfter([&] { shown.View.GetViewport()->SetScale(2); }), 1);
    EXPECT_EQ(paintsAfter([&] { shown.Manager->GetLayers().Remove(shown.Manager->GetLayers()[0]); }), 1);
}

TEST(MapViewControl, SettersRepaintOnRealChangesOnly) {
    TShownView shown;
    TTestLayer* layer = shown.AddReadyLayer();
    const auto paintsAfter = [&](auto action) {
        TShownView::Settle();
        layer->Paints = 0;
        action();
        TShownView::Settle();
        return layer->Paints;
    };
    TMapViewControl& view = shown.View;
    const auto setAll = [&] {
        view.SetShowCheckerboard(true);
        view.SetShowCrosshair(true);
        view.SetShowFocusedBorder(true);
        view.SetCrosshairMapPoint({5, 5});
        view.SetCrosshairColor(0xFF112233);
        view.SetCrosshairThickness(3);
        view.SetCrosshairHighlights(true);
        view.SetBackgroundColor(0xFF445566);
    };
    EXPECT_EQ(paintsAfter(setAll), 1);
    EXPECT_EQ(paintsAfter(setAll), 0);
    EXPECT_EQ(paintsAfter([&] { view.SetShowCheckerboard(false); }), 1);
    EXPECT_EQ(paintsAfter([&] { view.SetShowCrosshair(false); }), 1);
    EXPECT_EQ(paintsAfter([&] { view.SetShowFocusedBorder(false); }), 1);
    EXPECT_EQ(paintsAfter([&] { view.SetCrosshairMapPoint({6, 5}); }), 1);
    EXPECT_EQ(paintsAfter([&] { view.SetCrosshairColor(0xFF000000); }), 1);
    EXPECT_EQ(paintsAfter([&] { view.SetCrosshairThickness(1); }), 1);
    EXPECT_EQ(paintsAfter([&] { view.SetCrosshairHighlights(false); }), 1);
}

TEST(MapViewControl, ZoomsByTheFloatNearestFourPerCent) {
    TShownView shown;
    shown.AddReadyLayer();
    TWorldViewport& viewport = *shown.View.GetViewport();
    constexpr extended Step = 0.04F;
    shown.View.ZoomIn();
    EXPECT_EQ(viewport.GetScale(), 1 + Step);
    shown.View.ZoomOut();
    EXPECT_EQ(viewport.GetScale(), (1 + Step) - (1 + Step) * Step);
    EXPECT_NEAR(static_cast<double>(viewport.GetScale()), 0.9984, 1e-7);
}

TEST(MapViewControl, ZoomingKeepsTheCentre) {
    TShownView shown;
    shown.AddReadyLayer();
    TWorldViewport& viewport = *shown.View.GetViewport();
    viewport.SetScale(50);
    shown.View.SetCenter({10, 20});
    const TMapPoint before = viewport.GetCenter();
    shown.View.ZoomIn();
    EXPECT_NEAR(static_cast<double>(viewport.GetCenter().X), static_cast<double>(before.X), 0.02);
    EXPECT_NEAR(static_cast<double>(viewport.GetCenter().Y), static_cast<double>(before.Y), 0.02);
}

TEST(MapViewControl, ZoomStopsAtTheBoundsOfTheScale) {
    TShownView shown;
    shown.AddReadyLayer();
    TWorldViewport& viewport = *shown.View.GetViewport();
    viewport.SetScale(99999);
    shown.View.ZoomIn();
    EXPECT_EQ(viewport.GetScale(), 100000);
    viewport.SetScale(0.0001L);
    shown.View.ZoomOut();
    EXPECT_EQ(viewport.GetScale(), 0.0001L);
}

TEST(MapViewControl, ZoomToShowsALayerOfItsOwnStack) {
    TShownView shown;
    TTestLayer* layer = shown.AddReadyLayer(); // 20 x 10 degrees
    shown.View.ZoomTo(layer);
    EXPECT_EQ(shown.View.GetViewport()->GetScale(), 10);
}

TEST(MapViewControl, ZoomToIgnoresAnythingElse) {
    TShownView shown;
    shown.AddReadyLayer();
    const auto otherManager = TLayerManagerFactory::GetObject();
    TTestLayer* foreign = tests::AddTestLayer(otherManager);
    foreign->SetLayerArea(LatLonArea({0, 10, 20, 0}));
    auto special = std::make_unique<TTestLayer>(shown.Manager);
    special->SetLayerArea(LatLonArea({0, 10, 20, 0}));
    TBaseMapLayer* specialLayer = shown.Manager->GetSpecialLayers().Add(std::move(special));
    shown.View.ZoomTo(foreign);
    shown.View.ZoomTo(specialLayer);
    shown.View.ZoomTo(nullptr);
    EXPECT_EQ(shown.View.GetViewport()->GetScale(), 1);
}

TEST(MapViewControl, GotoExtentZoomsToTheLayer) {
    TShownView shown;
    shown.AddReadyLayer()->GotoExtendMenuItem_Click();
    EXPECT_EQ(shown.View.GetViewport()->GetScale(), 10);
}

TEST(MapViewControl, TellsOfViewportUpdates) {
    TShownView shown;
    shown.AddReadyLayer();
    int updates = 0;
    shown.View.SetOnViewportUpdated([&](TMapViewControl* sender) {
        EXPECT_EQ(sender, &shown.View);
        ++updates;
    });
    shown.View.GetViewport()->SetTranslation({5, 5});
    EXPECT_EQ(updates, 1);
}

TEST(MapViewControl, AResizeKeepsTheCentre) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.SetCenter({10, 20});
    shown.View.resize(400, 300);
    TShownView::Settle();
    EXPECT_EQ(shown.View.GetViewport()->GetViewSize(), TSize(400, 300));
    EXPECT_TRUE(shown.View.GetViewport()->GetCenter().Equals({10, 20}));
}

TEST(MapViewControl, MayBeHiddenShownAndMovedIntoAnotherWindow) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.View.hide();
    shown.View.RepaintMap();
    TShownView::Settle();
    {
        QSplitter other;
        other.addWidget(&shown.View);
        other.resize(320, 240);
        other.show();
        shown.View.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&other));
        TShownView::Settle();
        EXPECT_EQ(shown.View.GetViewport()->GetViewSize(), TSize(shown.View.width(), shown.View.height()));
        shown.View.setParent(nullptr);
    }
    shown.View.show();
    TShownView::Settle();
    EXPECT_TRUE(shown.View.isVisible());
}

TEST(MapViewControl, AHandlerMayCloseTheViewWhileEventsAreUnderWay) {
    const auto manager = TLayerManagerFactory::GetObject();
    auto view = std::make_unique<TMapViewControl>(nullptr, TSpecialLayerAccess{});
    const TSubscription close =
        manager->GetOnLayerReadyToDraw().Add([&](ILayerManager*, TBaseMapLayer*) { view.reset(); });
    view->SetLayerManager(manager);
    TTestLayer* layer = tests::AddTestLayer(manager);
    layer->SetLayerArea(LatLonArea({0, 10, 20, 0}));
    layer->SetIsReadyToDraw(true);
    EXPECT_EQ(view, nullptr);
}

TEST(MapViewControl, ALayerMayLeaveTheStackFromWithinAPaint) {
    TShownView shown;
    TTestLayer* first = shown.AddReadyLayer();
    TTestLayer* second = shown.AddReadyLayer();
    TTestLayer* third = shown.AddReadyLayer();
    first->OnPaint = [&](TWorld*, TWorldViewport*, TBitmap32&) {
        if (shown.Manager->GetLayers().Contains(second))
            shown.Manager->GetLayers().Remove(second);
    };
    TShownView::Settle();
    EXPECT_EQ(shown.Manager->GetLayers().Count(), 2);
    EXPECT_GE(third->Paints, 1);
}

/// A view whose invalidation fails.
class TFailingView : public TMapViewControl {
public:
    using TMapViewControl::TMapViewControl;
    void Invalidate() override {
        if (Fails)
            throw EInvalidOperation(QStringLiteral("no window"));
        TMapViewControl::Invalidate();
    }
    bool Fails = false;
};

TEST(MapViewControl, AFailedRepaintIsShownAndTheControlGoesOn) {
    tests::TScriptedMsgBox boxes;
    TFailingView view(nullptr, {});
    view.Fails = true;
    view.RepaintMap();
    EXPECT_TRUE(boxes->Shown.empty()); // not inside the event that caused it
    TShownView::Settle();
    ASSERT_EQ(boxes->Shown.size(), 1U);
    EXPECT_EQ(boxes->Shown[0], (tests::TShownMessage{"Message", "Error in RepaintMap()", {}, nullptr}));
}

} // namespace
} // namespace lmx
