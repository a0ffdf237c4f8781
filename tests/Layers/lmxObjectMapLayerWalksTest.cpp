// What annotations, and whoever is told of them, do to the list, the layer and the view in the middle of a walk.

#include <lmx/Layers/lmxObjectMapLayer.h>
#include <tests/Layers/Objects/ObjectScene.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace lmx {
namespace {

using tests::TObjectScene;
using tests::TTestItem;

/// Something that calls every item.
struct TWalk {
    const char* Name;
    std::function<void()> TTestItem::*Place;
    std::function<void(TObjectScene&)> Run;
};

/// Something that an item does in its call.
struct TDeed {
    const char* Name;
    std::function<void(TObjectScene&, TTestItem*)> Do;
};

const TWalk Walks[] = {
    {"paint", &TTestItem::OnPaint, [](TObjectScene& s) { s.Painted(); }},
    {"press", &TTestItem::OnMouseDown,
     [](TObjectScene& s) {
         s.Press({15, 15});
     }},
    {"move", &TTestItem::OnMouseMove,
     [](TObjectScene& s) {
         s.Move({15, 15});
     }},
    {"layout", &TTestItem::OnSetRect, [](TObjectScene& s) { s.Layer->UpdateLayouts(s.Viewport()); }},
    {"ratio", &TTestItem::OnSetRect, [](TObjectScene& s) { s.Layer->SetDeviceRatio(2); }},
};

const TDeed Deeds[] = {
    {"free itself", [](TObjectScene& s, TTestItem* item) { s.Layer->GetObjects().Remove(item); }},
    {"free the first",
     [](TObjectScene& s, TTestItem*) {
         if (!s.Layer->GetObjects().IsEmpty())
             s.Layer->GetObjects().Remove(s.Layer->GetObjects()[0]);
     }},
    {"free the last",
     [](TObjectScene& s, TTestItem*) {
         if (!s.Layer->GetObjects().IsEmpty())
             s.Layer->GetObjects().Remove(s.Layer->GetObjects()[s.Layer->GetObjects().Count() - 1]);
     }},
    {"extract itself", [](TObjectScene& s, TTestItem* item) { s.Layer->GetObjects().Extract(item); }},
    {"free all", [](TObjectScene& s, TTestItem*) { s.Layer->GetObjects().Clear(); }},
    {"add one",
     [](TObjectScene& s, TTestItem*) {
         if (s.Layer->GetObjects().Count() < 9)
             s.Add();
     }},
    {"free the layer", [](TObjectScene& s, TTestItem*) { s.Manager->GetSpecialLayers().Clear(); }},
    {"free the view", [](TObjectScene& s, TTestItem*) { s.Map.reset(); }},
};

class ObjectWalks : public testing::TestWithParam<std::tuple<TWalk, TDeed, int>> {};

TEST_P(ObjectWalks, SurviveWhatAnItemDoes) {
    const auto& [walk, deed, which] = GetParam();
    TObjectScene scene;
    TTestItem* items[] = {scene.AddAt({10, 10, 40, 40}), scene.AddAt({10, 10, 40, 40}), scene.AddAt({10, 10, 40, 40})};
    TTestItem* const doer = items[which];
    bool isDone = false;
    const auto act = deed.Do;
    doer->*walk.Place = [&scene, &isDone, doer, act] {
        if (!isDone) {
            isDone = true;
            act(scene, doer);
        }
    };
    // Without a view left a paint has nothing to paint on, so what it gives is not looked at.
    if (scene.Layer)
        walk.Run(scene);
    const bool isReached = std::string(walk.Name) != "press" || which == 2; // a press ends at the topmost item
    EXPECT_EQ(isDone, isReached);
    if (scene.Layer && scene.Map) { // and the layer goes on
        scene.Painted();
        scene.Press({15, 15});
        scene.Move({20, 20});
        scene.Resize({180, 90});
    }
}

INSTANTIATE_TEST_SUITE_P(Everywhere, ObjectWalks,
                         testing::Combine(testing::ValuesIn(Walks), testing::ValuesIn(Deeds), testing::Range(0, 3)),
                         [](const auto& row) {
                             std::string name = std::string(std::get<0>(row.param).Name) + "_" +
                                                std::get<1>(row.param).Name + "_" +
                                                std::to_string(std::get<2>(row.param));
                             std::replace(name.begin(), name.end(), ' ', '_');
                             return name;
                         });

TEST(ObjectWalks, AnItemThatIsTakenOutIsNotPainted) {
    TObjectScene scene;
    TTestItem* first = scene.Add();
    TTestItem* second = scene.Add();
    TTestItem* third = scene.Add();
    first->OnPaint = [&] { scene.Layer->GetObjects().Remove(second); };
    scene.Painted();
    EXPECT_EQ(first->Paints, 1);
    EXPECT_EQ(third->Paints, 1);
    EXPECT_EQ(scene.Layer->GetObjects().Count(), 2);
}

TEST(ObjectWalks, AnItemThatComesDuringAPaintWaitsForTheNext) {
    TObjectScene scene;
    TTestItem* added = nullptr;
    scene.Add()->OnPaint = [&] {
        if (!added)
            added = scene.Add();
    };
    scene.Painted();
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(added->Paints, 0);
    scene.Painted();
    EXPECT_EQ(added->Paints, 1);
}

TEST(ObjectWalks, WhatWasHitAndFreedIsNotTold) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({10, 10, 40, 40});
    int selected = 0;
    const TSubscription watch = scene.Layer->GetOnObjectSelected().Add([&](auto*, auto*) { ++selected; });
    const TSubscription killer = scene.Layer->GetOnObjectChanged().Add(
        [&](TObjectMapLayer* layer, TBaseObjectLayerItem* changed) { layer->GetObjects().Remove(changed); });
    scene.Press({15, 15});
    EXPECT_EQ(selected, 0);
    EXPECT_TRUE(scene.Layer->GetObjects().IsEmpty());
    item = scene.Add();
    scene.Layer->SetSelectedObject(item);
    EXPECT_EQ(selected, 0);
}

TEST(ObjectWalks, AListenerMayFreeTheLayer) {
    for (int event = 0; event < 4; ++event) {
        TObjectScene scene;
        TTestItem* item = scene.AddAt({10, 10, 40, 40});
        TObjectLayerEventList* const events[] = {&scene.Layer->GetOnObjectChanged(), &scene.Layer->GetOnObjectAdded(),
                                                 &scene.Layer->GetOnObjectRemoved(),
                                                 &scene.Layer->GetOnObjectSelected()};
        const TSubscription watch =
            events[event]->Add([&](auto*, auto*) { scene.Manager->GetSpecialLayers().Clear(); });
        if (event == 1)
            EXPECT_EQ(scene.Add(), nullptr);
        else if (event == 2)
            scene.Layer->GetObjects().Remove(item);
        else
            scene.Press({15, 15});
        EXPECT_FALSE(scene.Layer) << event;
    }
}

TEST(ObjectWalks, AListenerOfAnInvalidationMayFreeTheLayer) {
    TObjectScene scene;
    TTestItem* item = scene.AddAt({10, 10, 40, 40});
    const TSubscription watch =
        scene.Layer->GetOnInvalidated().Add([&](auto*) { scene.Manager->GetSpecialLayers().Clear(); });
    item->SetShowBorder(true);
    EXPECT_FALSE(scene.Layer);
}

} // namespace
} // namespace lmx
