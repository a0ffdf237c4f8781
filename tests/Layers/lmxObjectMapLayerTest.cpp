#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Layers/Objects/ObjectScene.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace lmx {
namespace {

using tests::MessageOf;
using tests::TObjectNews;
using tests::TObjectScene;
using tests::TTestItem;

constexpr TColor32 Red = 0xFFFF0000;
constexpr TColor32 Blue = 0xFF0000FF;

// ---- The layer

TEST(ObjectMapLayer, BeginsReadyAndEmpty) {
    const auto manager = TLayerManagerFactory::GetObject();
    TObjectMapLayer layer(manager, false);
    EXPECT_TRUE(layer.GetIsReadyToDraw());
    EXPECT_EQ(layer.GetLayerTypeName(), QStringLiteral("Objects"));
    EXPECT_EQ(layer.GetLayerClassName(), QStringLiteral("ObjectMapLayer"));
    EXPECT_TRUE(layer.GetObjects().IsEmpty());
    EXPECT_EQ(layer.GetSelectedObject(), nullptr);
    EXPECT_EQ(layer.GetPrevViewSize(), TSize());
    EXPECT_FALSE(layer.GetIsMouseDown());
    EXPECT_EQ(layer.GetDeviceRatio(), 1);
    EXPECT_EQ(layer.GetMouseSupport(),
              (TMouseSupport{TMouseSupportAction::msMouseDown, TMouseSupportAction::msMouseUp,
                             TMouseSupportAction::msMouseMove, TMouseSupportAction::msRightClick}));
    EXPECT_FALSE(layer.GetUseLegendControl());
    EXPECT_TRUE(TObjectMapLayer(manager, true).GetUseLegendControl());
}

TEST(ObjectMapLayer, NeedsAManager) {
    EXPECT_EQ(MessageOf<EExArgumentNilException>([] { const TObjectMapLayer layer(nullptr, false); }),
              EExArgumentNilException(QStringLiteral("TBaseLayerManagerLayer.Create"), QStringLiteral("LayerManager"))
                  .Message());
}

TEST(ObjectMapLayer, WithoutTheOptionHasNoLegendControl) {
    TObjectScene scene;
    scene.Layer->CreateLegendComponent();
    EXPECT_EQ(scene.Layer->GetLegendComponent(), nullptr);
}

TEST(ObjectMapLayer, HitTestsHaveTheirOrder) {
    using enum TObjectLayerItemHitTest;
    const std::vector<TObjectLayerItemHitTest> tests = {ohtNone,      ohtItem,      ohtGrabberTL,
                                                        ohtGrabberTR, ohtGrabberRB, ohtGrabberLB};
    for (std::size_t i = 0; i < tests.size(); ++i)
        EXPECT_EQ(static_cast<std::size_t>(tests[i]), i);
}

TEST(ObjectMapLayer, TellsWhatComesAndGoes) {
    TObjectScene scene;
    TObjectNews news(scene.Layer.Get());
    TTestItem* item = scene.Add();
    item->SetName(QStringLiteral("a"));
    EXPECT_EQ(news.Take(), QStringLiteral("added: 1"));
    const auto extracted = scene.Layer->GetObjects().Extract(item);
    EXPECT_EQ(news.Take(), QStringLiteral("removed:a 1"));
    scene.Add()->SetName(QStringLiteral("b"));
    news.Take();
    scene.Layer->GetObjects().Clear();
    EXPECT_EQ(news.Take(), QStringLiteral("removed:b 1"));
}

TEST(ObjectMapLayer, WhoTakesANewItemOutAgainIsTheLastToHearOfIt) {
    TObjectScene scene;
    const TSubscription first = scene.Layer->GetOnObjectAdded().Add(
        [](TObjectMapLayer* layer, TBaseObjectLayerItem* item) { layer->GetObjects().Remove(item); });
    TObjectNews news(scene.Layer.Get());
    EXPECT_EQ(scene.Add(), nullptr);
    EXPECT_EQ(news.Take(), QStringLiteral("removed: 2"));
}

TEST(ObjectMapLayer, ItemsGoBeforeTheLayerLosesItsManager) {
    TObjectScene scene;
    TTestItem* item = scene.Add();
    item->SetName(QStringLiteral("a"));
    bool hadManager = false;
    const TSubscription watch = scene.Layer->GetOnObjectRemoved().Add(
        [&](TObjectMapLayer* layer, TBaseObjectLayerItem*) { hadManager = layer->GetLayerManager() != nullptr; });
    scene.Manager->GetSpecialLayers().Clear();
    EXPECT_TRUE(hadManager);
    EXPECT_FALSE(scene.Layer);
}

TEST(ObjectMapLayer, TellsOfItsItemsWhenItGoes) {
    const auto manager = TLayerManagerFactory::GetObject();
    auto layer = std::make_unique<TObjectMapLayer>(manager, false);
    layer->GetObjects().Add(std::make_unique<TTestItem>(layer.get()));
    int removed = 0;
    const TSubscription watch = layer->GetOnObjectRemoved().Add([&](auto*, auto*) { ++removed; });
    layer.reset();
    EXPECT_EQ(removed, 1);
}

// ---- Painting

TEST(ObjectMapLayer, PaintsItemsInTheOrderOfTheList) {
    TObjectScene scene;
    TTestItem* lower = scene.AddAt({10, 10, 50, 50});
    TTestItem* upper = scene.AddAt({30, 30, 70, 70});
    for (auto [item, color] : {std::pair(lower, Red), std::pair(upper, Blue)}) {
        item->SetBackgroundColor(color);
        item->SetShowBackground(true);
    }
    EXPECT_EQ(scene.Painted().Pixel(20, 20), Red);
    EXPECT_EQ(scene.Map->Bitmap.Pixel(40, 40), Blue);
    scene.Layer->GetObjects().Move(0, 1);
    EXPECT_EQ(scene.Painted().Pixel(40, 40), Red);
    lower->SetIsVisible(false);
    EXPECT_EQ(scene.Painted().Pixel(40, 40), Blue);
    EXPECT_EQ(scene.Map->Bitmap.Pixel(20, 20), clWhite32);
    EXPECT_EQ(lower->Paints, 2); // an invisible one is not asked
}

TEST(ObjectMapLayer, APaintTakesTheSizeOfTheView) {
    TObjectScene scene;
    scene.Layer->SetPrevViewSize({});
    scene.Painted();
    EXPECT_EQ(scene.Layer->GetPrevViewSize(), TSize(200, 100));
}

// ---- The mouse

TEST(ObjectMapLayer, ThePressSelectsTheTopmostItemAndDeselectsTheOthers) {
    TObjectScene scene;
    TTestItem* lower = scene.AddAt({10, 10, 60, 60});
    TTestItem* upper = scene.AddAt({40, 40, 90, 90});
    lower->SetName(QStringLiteral("lower"));
    upper->SetName(QStringLiteral("upper"));
    TObjectNews news(scene.Layer.Get());
    scene.Press({20, 20});
    EXPECT_TRUE(scene.Layer->GetIsMouseDown());
    EXPECT_EQ(scene.Layer->GetSelectedObject(), lower);
    EXPECT_EQ(news.Take(), QStringLiteral("changed:lower selected:lower 2"));
    scene.Release({20, 20});
    EXPECT_FALSE(scene.Layer->GetIsMouseDown());
    EXPECT_EQ(news.Take(), QStringLiteral("0"));
    scene.Press({50, 50}); // on both
    EXPECT_EQ(scene.Layer->GetSelectedObject(), upper);
    EXPECT_FALSE(lower->GetIsSelected());
    EXPECT_EQ(lower->Presses, 1); // below the hit nobody is asked
    EXPECT_EQ(news.Take(), QStringLiteral("changed:upper changed:lower selected:upper 3"));
    scene.Press({50, 50}); // again: no change, but told
    EXPECT_EQ(news.Take(), QStringLiteral("selected:upper 1"));
    scene.Press({150, 5}); // on nothing
    EXPECT_EQ(scene.Layer->GetSelectedObject(), nullptr);
    EXPECT_EQ(news.Take(), QStringLiteral("changed:upper 2"));
}

TEST(ObjectMapLayer, ALockedItemIsNotSelectedByTheMouse) {
    TObjectScene scene;
    TTestItem* below = scene.AddAt({10, 10, 60, 60});
    TTestItem* locked = scene.AddAt({10, 10, 60, 60});
    locked->SetLocked(true);
    scene.Press({20, 20});
    EXPECT_EQ(scene.Layer->GetSelectedObject(), below);
    scene.Layer->SetSelectedObject(locked);
    EXPECT_TRUE(locked->GetIsSelected());
    scene.Press({20, 20}); // deselects it
    EXPECT_FALSE(locked->GetIsSelected());
}

TEST(ObjectMapLayer, AnInvisibleItemKeepsItsSelection) {
    TObjectScene scene;
    TTestItem* below = scene.AddAt({10, 10, 60, 60});
    TTestItem* invisible = scene.AddAt({10, 10, 60, 60});
    invisible->SetIsVisible(false);
    scene.Press({20, 20});
    EXPECT_EQ(scene.Layer->GetSelectedObject(), below);
    EXPECT_FALSE(invisible->GetIsSelected());
    scene.Layer->SetSelectedObject(invisible);
    scene.Press({20, 20}); // it is selected after the press was offered, so it is what was hit
    EXPECT_TRUE(invisible->GetIsSelected());
    EXPECT_FALSE(below->GetIsSelected());
    scene.Move({90, 90});
    EXPECT_EQ(invisible->GetRect(), TRect(10, 10, 60, 60));
}

TEST(ObjectMapLayer, EachMoveRepaintsAlsoWithoutAButton) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({10, 10, 60, 60});
    scene.Press({20, 20});
    TObjectNews news(scene.Layer.Get());
    scene.Move({30, 30}, false);
    EXPECT_EQ(item->GetRect(), TRect(10, 10, 60, 60));
    EXPECT_EQ(news.Take(), QStringLiteral("1"));
    scene.Move({30, 30}, true);
    EXPECT_EQ(item->GetRect(), TRect(20, 20, 70, 70));
    EXPECT_EQ(news.Take(), QStringLiteral("1")); // nobody is told of the rectangle
}

TEST(ObjectMapLayer, ADragMovesWhatWasTakenHoldOf) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({10, 10, 60, 60});
    scene.Drag({20, 30}, {50, 40});
    EXPECT_EQ(item->GetRect(), TRect(40, 20, 90, 70));
    EXPECT_EQ(item->GetSelectedElement(), TSelectedElement::soObject); // until the next press
    scene.Drag({89, 69}, {100, 80});
    EXPECT_EQ(item->GetRect(), TRect(40, 20, 100, 80));
    EXPECT_EQ(item->GetSelectedElement(), TSelectedElement::soBottomRightGrabber);
    scene.Drag({41, 50}, {150, 50}); // past the other side
    EXPECT_EQ(item->GetRect(), TRect(150, 20, 100, 80));
    scene.Press({190, 90});
    EXPECT_EQ(item->GetSelectedElement(), TSelectedElement::soNone);
}

TEST(ObjectMapLayer, OnACornerOfFixedAspectTheRightEdgeMoves) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({10, 10, 60, 60}, {TGrabberOption::goResizable, TGrabberOption::goFixedAspect});
    scene.Drag({11, 58}, {20, 90}); // bottom left
    EXPECT_EQ(item->GetRect(), TRect(20, 10, 100, 90));
    scene.Drag({60, 11}, {60, 5}); // no grabbers at the sides
    EXPECT_EQ(item->GetRect(), TRect(20, 4, 100, 84));
}

TEST(ObjectMapLayer, ASelectionLastsWhileItsItemIsThere) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({10, 10, 60, 60});
    scene.Press({20, 20});
    scene.Layer->GetObjects().Remove(item);
    EXPECT_EQ(scene.Layer->GetSelectedObject(), nullptr);
    scene.Move({30, 30});
    scene.Release({30, 30});
}

TEST(ObjectMapLayer, SelectingTellsOfWhatChanges) {
    TObjectScene scene;
    TTestItem* a = scene.Add();
    TTestItem* b = scene.Add();
    a->SetName(QStringLiteral("a"));
    b->SetName(QStringLiteral("b"));
    TObjectNews news(scene.Layer.Get());
    scene.Layer->SetSelectedObject(b);
    EXPECT_EQ(scene.Layer->GetSelectedObject(), b);
    EXPECT_EQ(news.Take(), QStringLiteral("changed:b selected:b 2"));
    scene.Layer->SetSelectedObject(b);
    EXPECT_EQ(news.Take(), QStringLiteral("0"));
    scene.Layer->SetSelectedObject(a);
    EXPECT_EQ(news.Take(), QStringLiteral("changed:a changed:b selected:a 3"));
    b->SetIsSelected(true);
    news.Take();
    EXPECT_EQ(scene.Layer->GetSelectedObject(), a); // the first of the list
    scene.Layer->SetSelectedObject(a);              // the other changes, and it does not
    EXPECT_EQ(news.Take(), QStringLiteral("changed:b 2"));
    scene.Layer->SetSelectedObject(nullptr);
    EXPECT_EQ(scene.Layer->GetSelectedObject(), nullptr);
    EXPECT_EQ(news.Take(), QStringLiteral("changed:a 2"));
    TTestItem stranger(scene.Layer.Get());
    scene.Layer->SetSelectedObject(&stranger);
    EXPECT_FALSE(stranger.GetIsSelected());
    EXPECT_EQ(news.Take(), QStringLiteral("0"));
}

// ---- Layout

TEST(ObjectMapLayer, ALayoutKeepsItemsAtTheirAnchors) {
    using enum TAnchorKind;
    struct TRow {
        TAnchors Anchors;
        TRect Larger;
        TRect Smaller;
    };
    // A view of 200 x 100 becomes 260 x 150, and then 120 x 60.
    const TRow rows[] = {
        {{}, {20, 30, 80, 50}, {20, 30, 80, 50}},
        {{akLeft}, {20, 30, 80, 50}, {20, 30, 80, 50}},
        {{akTop}, {20, 30, 80, 50}, {20, 30, 80, 50}},
        {{akRight}, {80, 30, 140, 50}, {-60, 30, 0, 50}},
        {{akBottom}, {20, 80, 80, 100}, {20, -10, 80, 10}},
        {{akLeft, akTop}, {20, 30, 80, 50}, {20, 30, 80, 50}},
        {{akLeft, akRight}, {20, 30, 140, 50}, {20, 30, 0, 50}},
        {{akLeft, akBottom}, {20, 80, 80, 100}, {20, -10, 80, 10}},
        {{akTop, akRight}, {80, 30, 140, 50}, {-60, 30, 0, 50}},
        {{akTop, akBottom}, {20, 30, 80, 100}, {20, 30, 80, 10}},
        {{akRight, akBottom}, {80, 80, 140, 100}, {-60, -10, 0, 10}},
        {{akLeft, akTop, akRight}, {20, 30, 140, 50}, {20, 30, 0, 50}},
        {{akLeft, akTop, akBottom}, {20, 30, 80, 100}, {20, 30, 80, 10}},
        {{akLeft, akRight, akBottom}, {20, 80, 140, 100}, {20, -10, 0, 10}},
        {{akTop, akRight, akBottom}, {80, 30, 140, 100}, {-60, 30, 0, 10}},
        {{akLeft, akTop, akRight, akBottom}, {20, 30, 140, 100}, {20, 30, 0, 10}},
    };
    for (const TRow& row : rows) {
        TObjectScene scene;
        TTestItem* item = scene.AddAt({20, 30, 80, 50});
        item->SetAnchors(row.Anchors);
        TObjectNews news(scene.Layer.Get());
        scene.Resize({260, 150});
        EXPECT_EQ(item->GetRect(), row.Larger) << AnchorsToString(row.Anchors).toStdString();
        scene.Resize({120, 60}); // it may leave the view
        EXPECT_EQ(item->GetRect(), row.Smaller) << AnchorsToString(row.Anchors).toStdString();
        scene.Resize({200, 100}); // and comes back without a drift
        EXPECT_EQ(item->GetRect(), TRect(20, 30, 80, 50)) << AnchorsToString(row.Anchors).toStdString();
        EXPECT_EQ(item->GetAnchorData(), TAnchorData(20, 30, 120, 50));
        EXPECT_EQ(news.Take(), QStringLiteral("0"));
    }
}

TEST(ObjectMapLayer, ALayoutMovesTheGrabbers) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({20, 30, 80, 60});
    item->SetAnchors({TAnchorKind::akRight, TAnchorKind::akBottom});
    scene.Resize({210, 120});
    EXPECT_EQ(item->GetGrabberRects(), PlaceGrabbers({30, 50, 90, 80}));
    EXPECT_EQ(scene.Layer->GetPrevViewSize(), TSize(210, 120));
}

TEST(ObjectMapLayer, AnItemPlacedBeforeTheFirstPaintIsMeasuredAgainstNothing) {
    TObjectScene scene;
    scene.Layer->SetPrevViewSize({});
    TTestItem* item = scene.AddAt({20, 30, 80, 50});
    EXPECT_EQ(item->GetAnchorData(), TAnchorData(20, 30, -80, -50));
    item->SetAnchors({TAnchorKind::akRight});
    scene.Painted();
    scene.Layer->UpdateLayouts(scene.Viewport());
    EXPECT_EQ(item->GetRect(), TRect(220, 30, 280, 50)); // beyond the right edge
    item->SetRect({20, 30, 80, 50});                     // placed again
    EXPECT_EQ(item->GetAnchorData(), TAnchorData(20, 30, 120, 50));
}

// ---- Dense screens

TEST(ObjectMapLayer, ANewRatioScalesItemsOnce) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({21, 30, 80, 51});
    item->SetAnchors({TAnchorKind::akRight, TAnchorKind::akBottom});
    scene.Layer->SetDeviceRatio(1.5);
    EXPECT_EQ(scene.Layer->GetDeviceRatio(), 1.5);
    EXPECT_EQ(item->GetRect(), TRect(32, 45, 120, 76)); // halves to the nearest even
    EXPECT_EQ(item->GetAnchorData(), TAnchorData(32, 45, 180, 74));
    EXPECT_EQ(item->GetGrabberRects(), PlaceGrabbers({32, 45, 120, 84}, 1.5));
    EXPECT_EQ(scene.Layer->GetPrevViewSize(), TSize(300, 150));
    scene.Layer->SetDeviceRatio(1.5);
    EXPECT_EQ(item->GetRect(), TRect(32, 45, 120, 76));
    scene.Resize({300, 150}); // the view in its new pixels
    EXPECT_EQ(item->GetRect(), TRect(32, 45, 120, 76));
}

TEST(ObjectMapLayer, ADragGoesOnOverANewRatio) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({20, 20, 80, 80});
    scene.Press({50, 50});
    scene.Layer->SetDeviceRatio(2);
    scene.Move({120, 110});
    EXPECT_EQ(item->GetRect(), TRect(60, 50, 180, 170));
}

TEST(ObjectMapLayer, ARatioThatIsNoneChangesNothing) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({20, 20, 80, 80});
    TObjectNews news(scene.Layer.Get());
    for (const double ratio :
         {0.0, -1.0, 1e-4, 1e4, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        scene.Layer->SetDeviceRatio(ratio);
        EXPECT_EQ(scene.Layer->GetDeviceRatio(), 1);
        EXPECT_EQ(item->GetRect(), TRect(20, 20, 80, 80));
    }
    EXPECT_EQ(news.Take(), QStringLiteral("0"));
}

} // namespace
} // namespace lmx
