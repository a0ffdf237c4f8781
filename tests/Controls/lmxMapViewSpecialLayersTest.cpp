// The layers that a view makes for itself: when they come and go, and where they lie in the picture.

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>
#include <tests/Support/ObjectView.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ShownView.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace lmx {
namespace {

using tests::TObjectView;
using tests::TShownView;
using tests::TTestLayer;
using tests::TTestObjectLayer;

constexpr TColor32 White = 0xFFFFFFFF;
constexpr TColor32 Cyan = 0xFF00FFFF;

const TSpecialLayerAccess Everything = {TSpecialLayers::slSelection, TSpecialLayers::slRulers,
                                        TSpecialLayers::slInfoQueryPointLayer, TSpecialLayers::slObject};

QStringList SpecialLayersOf(ILayerManager& manager) {
    QStringList names;
    for (const TBaseMapLayer* layer : manager.GetSpecialLayers())
        names += layer->GetLayerClassName();
    return names;
}

TEST(MapViewSpecialLayers, AreMadeInOrderOnTheManager) {
    const auto manager = TLayerManagerFactory::GetObject();
    TObjectView view(nullptr, Everything);
    EXPECT_EQ(view.GetSpRulersLayer(), nullptr);
    view.SetLayerManager(manager);
    EXPECT_EQ(SpecialLayersOf(*manager),
              (QStringList{"SelectionMapLayer", "RulerMapLayer", "InfoQueryPointLayer", "TestObjectLayer"}));
    EXPECT_EQ(manager->GetSpecialLayers()[0], view.GetSpSelectionLayer());
    EXPECT_EQ(manager->GetSpecialLayers()[1], view.GetSpRulersLayer());
    EXPECT_EQ(manager->GetSpecialLayers()[2], view.GetSpInfoQueryPointsLayer());
    EXPECT_EQ(manager->GetSpecialLayers()[3], static_cast<TBaseMapLayer*>(view.GetSpObjectLayer()));
    EXPECT_EQ(manager->GetSpecialLayerWithType(QStringLiteral("RulerMapLayer")), view.GetSpRulersLayer());
    for (const TBaseMapLayer* layer : manager->GetSpecialLayers())
        EXPECT_TRUE(layer->GetFlags().Contains(TLayerFlag::lfSpecial)) << layer->GetLayerClassName().toStdString();
    EXPECT_TRUE(manager->GetLayers().IsEmpty());
    view.SetLayerManager(nullptr);
}

TEST(MapViewSpecialLayers, AViewWithoutASetHasAllKinds) {
    const auto manager = TLayerManagerFactory::GetObject();
    TMapViewControl view;
    view.SetLayerManager(manager);
    EXPECT_EQ(SpecialLayersOf(*manager),
              (QStringList{"SelectionMapLayer", "RulerMapLayer", "InfoQueryPointLayer", "ObjectMapLayer"}));
    EXPECT_EQ(manager->GetSpecialLayers()[3], static_cast<TBaseMapLayer*>(view.GetSpObjectLayer()));
    EXPECT_TRUE(view.GetSpObjectLayer()->GetUseLegendControl());
    view.SetLayerManager(nullptr);
}

struct TAccessRow {
    TSpecialLayerAccess Access;
    QStringList Layers;
};

void PrintTo(const TAccessRow& row, std::ostream* stream) {
    *stream << row.Layers.join(u' ').toStdString();
}

class SpecialLayerAccess : public testing::TestWithParam<TAccessRow> {};

TEST_P(SpecialLayerAccess, MakesWhatIsAskedFor) {
    const auto manager = TLayerManagerFactory::GetObject();
    TObjectView view(nullptr, GetParam().Access);
    view.SetLayerManager(manager);
    EXPECT_EQ(SpecialLayersOf(*manager), GetParam().Layers);
    view.SetLayerManager(nullptr);
    EXPECT_TRUE(manager->GetSpecialLayers().IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Rows, SpecialLayerAccess,
                         testing::Values(TAccessRow{{}, {}}, //
                                         TAccessRow{{TSpecialLayers::slSelection}, {"SelectionMapLayer"}},
                                         TAccessRow{{TSpecialLayers::slRulers}, {"RulerMapLayer"}},
                                         TAccessRow{{TSpecialLayers::slInfoQueryPointLayer}, {"InfoQueryPointLayer"}},
                                         TAccessRow{{TSpecialLayers::slObject}, {"TestObjectLayer"}},
                                         TAccessRow{{TSpecialLayers::slDisableObjectLegendControlOption}, {}},
                                         TAccessRow{
                                             {TSpecialLayers::slInfoQueryPointLayer, TSpecialLayers::slSelection},
                                             {"SelectionMapLayer", "InfoQueryPointLayer"}}));

TEST(MapViewSpecialLayers, TheObjectLayerIsToldWhetherLegendsMayHaveOptions) {
    const auto manager = TLayerManagerFactory::GetObject();
    TObjectView allowing(nullptr, {TSpecialLayers::slObject});
    allowing.SetLayerManager(manager);
    EXPECT_EQ(allowing.AllowsLegendOption, true);
    TObjectView refusing(nullptr, {TSpecialLayers::slObject, TSpecialLayers::slDisableObjectLegendControlOption});
    refusing.SetLayerManager(manager);
    EXPECT_EQ(refusing.AllowsLegendOption, false);
}

TEST(MapViewSpecialLayers, AreFlaggedBeforeTheManagerTells) {
    const auto manager = TLayerManagerFactory::GetObject();
    int special = 0;
    const TSubscription watch = manager->GetOnLayerAdded().Add([&](ILayerManager*, TBaseMapLayer* layer) {
        special += layer->GetFlags().Contains(TLayerFlag::lfSpecial) ? 1 : 0;
    });
    TMapViewControl view;
    view.SetLayerManager(manager);
    EXPECT_EQ(special, 4);
    EXPECT_FALSE(view.WorldCreated());
    view.SetLayerManager(nullptr);
}

TEST(MapViewSpecialLayers, AreMadeBeforeTheEventThatTheManagerChanged) {
    const auto manager = TLayerManagerFactory::GetObject();
    TMapViewControl view;
    TRulerMapLayer* before = nullptr;
    TRulerMapLayer* after = nullptr;
    view.SetOnBeforeLayerManagerChanged([&](TMapViewControl* sender) { before = sender->GetSpRulersLayer(); });
    view.SetOnAfterLayerManagerChanged([&](TMapViewControl* sender) { after = sender->GetSpRulersLayer(); });
    view.SetLayerManager(manager);
    EXPECT_EQ(before, nullptr);
    EXPECT_NE(after, nullptr);
    TRulerMapLayer* rulers = after;
    view.SetLayerManager(nullptr);
    EXPECT_EQ(before, rulers); // still there when the change begins
    EXPECT_EQ(after, nullptr);
}

TEST(MapViewSpecialLayers, AnotherManagerTakesNothingOfTheOldOneAlong) {
    const auto first = TLayerManagerFactory::GetObject();
    const auto second = TLayerManagerFactory::GetObject();
    TMapViewControl view;
    view.SetLayerManager(first);
    view.GetSpRulersLayer()->Add(std::make_unique<TRulerItem>(TRulerOrientation::roVertical, 1, Cyan));
    view.GetSpRulersLayer()->StartPlacing(TPlacingMode::pmHorizontal, 7);
    view.GetSpSelectionLayer()->StartSelection({1, 2});
    view.GetSpInfoQueryPointsLayer()->GetPoints().Add(std::make_unique<TInfoQueryPoint>());
    int removed = 0;
    const TSubscription watch =
        view.GetSpRulersLayer()->GetOnRulerRemoved().Add([&](TRulerMapLayer*, TRulerItem*) { ++removed; });

    view.SetLayerManager(second);
    EXPECT_EQ(removed, 1);
    EXPECT_TRUE(first->GetSpecialLayers().IsEmpty());
    EXPECT_EQ(second->GetSpecialLayers().Count(), 4);
    EXPECT_TRUE(view.GetSpRulersLayer()->GetVRulers().IsEmpty());
    EXPECT_FALSE(view.GetSpRulersLayer()->GetIsPlacing());
    EXPECT_FALSE(view.GetSpSelectionLayer()->GetEnabled());
    EXPECT_TRUE(view.GetSpInfoQueryPointsLayer()->GetPoints().IsEmpty());

    view.SetLayerManager(first); // back again, and empty
    EXPECT_TRUE(view.GetSpRulersLayer()->GetVRulers().IsEmpty());
    EXPECT_TRUE(second->GetSpecialLayers().IsEmpty());
    view.SetLayerManager(nullptr);
    EXPECT_EQ(view.GetSpSelectionLayer(), nullptr);
    EXPECT_EQ(view.GetSpRulersLayer(), nullptr);
    EXPECT_EQ(view.GetSpInfoQueryPointsLayer(), nullptr);
}

TEST(MapViewSpecialLayers, AHostMayTakeOneOut) {
    TShownView shown;
    shown.AddReadyLayer();
    shown.Manager->GetSpecialLayers().Remove(shown.View.GetSpRulersLayer());
    EXPECT_EQ(shown.View.GetSpRulersLayer(), nullptr);
    shown.View.SetMode(TMapMode::mdPlaceRulerH);
    shown.Drag({10, 10}, {20, 20});
    EXPECT_EQ(shown.PixelAt(20, 50), White);
    shown.View.SetLayerManager(nullptr);
    EXPECT_TRUE(shown.Manager->GetSpecialLayers().IsEmpty());
}

TEST(MapViewSpecialLayers, TwoViewsOfOneManagerHaveTheirOwn) {
    const auto manager = TLayerManagerFactory::GetObject();
    TMapViewControl first;
    first.SetLayerManager(manager);
    {
        TMapViewControl second;
        second.SetLayerManager(manager);
        EXPECT_EQ(manager->GetSpecialLayers().Count(), 8);
        EXPECT_NE(first.GetSpRulersLayer(), second.GetSpRulersLayer());
        second.SetLayerManager(nullptr);
    }
    EXPECT_EQ(manager->GetSpecialLayers().Count(), 4);
    EXPECT_EQ(manager->GetSpecialLayers()[1], first.GetSpRulersLayer());
    first.SetLayerManager(nullptr);
}

TEST(MapViewSpecialLayers, AViewThatIsDestroyedLeavesItsLayersToTheManager) {
    auto manager = TLayerManagerFactory::GetObject();
    auto view = std::make_unique<TMapViewControl>();
    view->SetLayerManager(manager);
    view.reset();
    EXPECT_EQ(manager->GetSpecialLayers().Count(), 4);
    manager.reset(); // and they go with it, silently
}

TEST(MapViewSpecialLayers, RegisteringTwiceMakesTwoSets) {
    const auto manager = TLayerManagerFactory::GetObject();
    TMapViewControl view;
    view.RegisterSpecialLayers(manager, true);
    view.RegisterSpecialLayers(manager, true);
    EXPECT_EQ(manager->GetSpecialLayers().Count(), 8);
    view.RegisterSpecialLayers(manager, false); // takes its own, the later ones
    EXPECT_EQ(manager->GetSpecialLayers().Count(), 4);
    EXPECT_EQ(view.GetSpRulersLayer(), nullptr);
    view.RegisterSpecialLayers(manager, false);
    EXPECT_EQ(manager->GetSpecialLayers().Count(), 4);
}

TEST(MapViewSpecialLayers, TheirChangesRepaintTheView) {
    TShownView shown;
    shown.AddReadyLayer();
    const auto repaints = [&](const std::function<void()>& change) {
        shown.PixelAt(0, 0);
        EXPECT_TRUE(shown.View.IsBufferValid());
        change();
        return !shown.View.IsBufferValid();
    };
    EXPECT_TRUE(repaints([&] { shown.View.GetSpSelectionLayer()->StartSelection({1, 2}); }));
    EXPECT_TRUE(repaints([&] { shown.View.GetSpRulersLayer()->StartPlacing(TPlacingMode::pmVertical, 1); }));
    EXPECT_TRUE(repaints(
        [&] { shown.View.GetSpInfoQueryPointsLayer()->GetPoints().Add(std::make_unique<TInfoQueryPoint>()); }));
}

// --- The picture -------------------------------------------------------------------------------------------------

/// A view with a layer that fills its buffer with a colour, a ruler across the map and a query point, both at pixel
/// (100, 50), and an object layer that fills a square there when asked to.
struct TMarkedView : tests::TShownViewOf<TObjectView> {
    TMarkedView() {
        TTestLayer* layer = AddReadyLayer();
        layer->OnPaint = [](TWorld*, TWorldViewport*, TBitmap32& bitmap) { bitmap.Clear(0xFF112233); };
        View.GetViewport()->SetTranslation({0, 0});
        const TMapPoint place = View.GetViewport()->PointToMapPoint({100, 50});
        View.GetSpRulersLayer()->Add(std::make_unique<TRulerItem>(TRulerOrientation::roHorizontal, place.X, clBlack32));
        View.GetSpInfoQueryPointsLayer()->GetPoints().Add(
            std::make_unique<TInfoQueryPoint>(View.GetSpInfoQueryPointsLayer(), place, 0xFFFF0000));
    }
};

TEST(MapViewSpecialLayers, LieOnTheStackInOrder) {
    TMarkedView shown;
    EXPECT_EQ(shown.PixelAt(50, 50), 0xFF112233U); // the stack
    EXPECT_EQ(shown.PixelAt(98, 40), 0xFFFF0000U); // the query point on it
    EXPECT_EQ(shown.PixelAt(100, 40), clBlack32);  // the ruler on the point
    EXPECT_EQ(shown.PixelAt(100, 90), clBlack32);
    auto& objects = dynamic_cast<TTestObjectLayer&>(*shown.View.GetSpObjectLayer());
    objects.OnPaint = [](TWorld*, TWorldViewport*, TBitmap32& bitmap) {
        bitmap.FillRectS(95, 35, 105, 45, 0xFF00FF00);
    };
    shown.View.RepaintMap();
    EXPECT_EQ(shown.PixelAt(100, 40), 0xFF00FF00U); // the objects on both
    shown.View.SetCrosshairMapPoint(shown.View.GetViewport()->PointToMapPoint({100, 46}));
    shown.View.SetCrosshairThickness(2);
    shown.View.SetShowCrosshair(true);
    shown.View.RepaintMap();
    EXPECT_EQ(shown.PixelAt(99, 38), clBlack32); // the crosshair on all
}

TEST(MapViewSpecialLayers, TheSelectionLiesBelowPointsAndRulers) {
    TMarkedView shown;
    const auto at = [&](int x, int y) { return shown.View.GetViewport()->PointToMapPoint(TMapPoint(TPoint(x, y))); };
    shown.View.SetMode(TMapMode::mdSelection);
    shown.View.GetSpSelectionLayer()->StartSelection(at(90, 40));
    shown.View.GetSpSelectionLayer()->Adjust(at(110, 60));
    EXPECT_EQ(shown.PixelAt(90, 40), clBlack32);
    EXPECT_EQ(shown.PixelAt(91, 40), White);
    EXPECT_EQ(shown.PixelAt(98, 40), 0xFFFF0000U);
    EXPECT_EQ(shown.PixelAt(100, 60), clBlack32);
    EXPECT_EQ(shown.PixelAt(100, 59), clBlack32); // the ruler's, not a dash
}

TEST(MapViewSpecialLayers, TheSelectionIsPaintedInItsTwoModesOnly) {
    TMarkedView shown;
    const auto at = [&](int x, int y) { return shown.View.GetViewport()->PointToMapPoint(TMapPoint(TPoint(x, y))); };
    shown.View.GetSpSelectionLayer()->StartSelection(at(10, 10));
    shown.View.GetSpSelectionLayer()->Adjust(at(30, 30));
    for (const TMapMode mode : {TMapMode::mdPan, TMapMode::mdPlaceRulerH, TMapMode::mdPlaceRulerV,
                                TMapMode::mdInfoQuery, TMapMode::mdCustom, TMapMode::mdNone}) {
        shown.View.SetMode(mode);
        shown.View.RepaintMap();
        EXPECT_EQ(shown.PixelAt(10, 10), 0xFF112233U) << static_cast<int>(mode);
    }
    for (const TMapMode mode : {TMapMode::mdSelection, TMapMode::mdZoomToSelection}) {
        shown.View.SetMode(mode);
        shown.View.RepaintMap();
        EXPECT_EQ(shown.PixelAt(10, 10), clBlack32) << static_cast<int>(mode); // it stood all the time
    }
    shown.View.GetSpSelectionLayer()->SetEnabled(false);
    EXPECT_EQ(shown.PixelAt(10, 10), 0xFF112233U);
}

TEST(MapViewSpecialLayers, ArePaintedWhateverTheirFlagsSay) {
    TMarkedView shown;
    for (TBaseMapLayer* layer : shown.Manager->GetSpecialLayers()) {
        layer->SetIsVisible(false);
        layer->SetIsReadyToDraw(false);
    }
    auto& objects = dynamic_cast<TTestObjectLayer&>(*shown.View.GetSpObjectLayer());
    objects.HasContent = false;
    objects.Paints = 0;
    shown.View.RepaintMap();
    EXPECT_EQ(shown.PixelAt(98, 40), 0xFFFF0000U);
    EXPECT_EQ(shown.PixelAt(100, 90), clBlack32);
    EXPECT_EQ(objects.Paints, 1);
}

TEST(MapViewSpecialLayers, AreNotPaintedWithoutAWorld) {
    tests::TShownViewOf<TObjectView> shown;
    auto& objects = dynamic_cast<TTestObjectLayer&>(*shown.View.GetSpObjectLayer());
    shown.View.GetSpRulersLayer()->StartPlacing(TPlacingMode::pmVertical, 0);
    shown.View.RepaintMap();
    EXPECT_EQ(shown.PixelAt(50, 50), White);
    EXPECT_EQ(objects.Paints, 0);
}

} // namespace
} // namespace lmx
