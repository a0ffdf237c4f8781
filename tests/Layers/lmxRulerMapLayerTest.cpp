#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Graphics/Pictures.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestMap.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

namespace lmx {
namespace {

using tests::TPicture;

constexpr TColor32 Cyan = 0xFF00FFFF;
constexpr TColor32 Red = 0xFFFF0000;
constexpr TColor32 Blue = 0xFF0000FF;
const tests::TLetters Letters = {{clWhite32, '.'}, {Cyan, 'c'}, {Red, 'r'}, {Blue, 'b'}};

/// A layer that counts its invalidations and writes its events down.
class RulerMapLayer : public testing::Test {
protected:
    RulerMapLayer() { Watch(); }

    void Watch() {
        FSubscriptions.push_back(Layer->GetOnInvalidated().Add([this](TBaseMapLayer*) { ++Invalidations; }));
        FSubscriptions.push_back(Layer->GetOnRulerAdded().Add([this](TRulerMapLayer* sender, TRulerItem* ruler) {
            EXPECT_EQ(sender, Sender);
            Events += QStringLiteral("+%1 ").arg(std::trunc(static_cast<double>(ruler->GetLocation())));
        }));
        FSubscriptions.push_back(Layer->GetOnRulerRemoved().Add([this](TRulerMapLayer* sender, TRulerItem* ruler) {
            EXPECT_EQ(sender, Sender);
            Events += QStringLiteral("-%1 ").arg(std::trunc(static_cast<double>(ruler->GetLocation())));
        }));
    }
    TRulerItem* AddRuler(TRulerOrientation orientation, extended location, TColor32 color = Red) {
        auto item = std::make_unique<TRulerItem>(orientation, location, color);
        TRulerItem* added = item.get();
        Layer->Add(std::move(item));
        return added;
    }
    TPicture Picture() {
        Map.Bitmap.Clear(clWhite32);
        Layer->Paint(&Map.World, &Map.Viewport, Map.Bitmap);
        return tests::Show(Map.Bitmap, Letters);
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TRulerMapLayer> Layer = std::make_unique<TRulerMapLayer>(Manager);
    const TRulerMapLayer* Sender = Layer.get();
    tests::TTestMap Map{6, 4};
    int Invalidations = 0;
    QString Events;

private:
    std::vector<TSubscription> FSubscriptions;
};

TEST_F(RulerMapLayer, ItsEnumerationsHaveTheirOrder) {
    EXPECT_EQ(static_cast<int>(TRulerOrientation::roVertical), 0);
    EXPECT_EQ(static_cast<int>(TRulerOrientation::roHorizontal), 1);
    EXPECT_EQ(static_cast<int>(TPlacingMode::pmVertical), 0);
    EXPECT_EQ(static_cast<int>(TPlacingMode::pmHorizontal), 1);
}

TEST_F(RulerMapLayer, ItsNamesAreThoseOfDocuments) {
    EXPECT_EQ(Layer->GetLayerTypeName(), QStringLiteral("Rulers"));
    EXPECT_EQ(Layer->GetLayerClassName(), QStringLiteral("RulerMapLayer"));
}

TEST_F(RulerMapLayer, BeginsEmptyAndIdle) {
    EXPECT_TRUE(Layer->GetVRulers().IsEmpty());
    EXPECT_TRUE(Layer->GetHRulers().IsEmpty());
    EXPECT_FALSE(Layer->GetIsPlacing());
    EXPECT_EQ(Picture(), TPicture(4, "......"));
}

TEST_F(RulerMapLayer, NeedsAManager) {
    EXPECT_THROW(TRulerMapLayer{nullptr}, EExArgumentNilException);
}

TEST_F(RulerMapLayer, AddTakesTheListOfTheOrientation) {
    TRulerItem* vertical = AddRuler(TRulerOrientation::roVertical, 1);
    TRulerItem* horizontal = AddRuler(TRulerOrientation::roHorizontal, 2);
    EXPECT_EQ(Layer->GetVRulers().Count(), 1);
    EXPECT_EQ(Layer->GetVRulers()[0], vertical);
    EXPECT_EQ(Layer->GetHRulers().Count(), 1);
    EXPECT_EQ(Layer->GetHRulers()[0], horizontal);
    EXPECT_EQ(Events, QStringLiteral("+1 +2 "));
    EXPECT_EQ(Invalidations, 2);
}

TEST_F(RulerMapLayer, AddRefusesNil) {
    try {
        Layer->Add(nullptr);
        FAIL() << "no exception";
    } catch (const EExArgumentNilException& failure) {
        EXPECT_EQ(failure.Routine(), QStringLiteral("TRulerMapLayer.Add"));
        EXPECT_EQ(failure.Argument(), QStringLiteral("Item"));
    }
    EXPECT_EQ(Invalidations, 0);
}

TEST_F(RulerMapLayer, DeleteTellsBeforeTheRulerIsFreed) {
    AddRuler(TRulerOrientation::roVertical, 1);
    TRulerItem* horizontal = AddRuler(TRulerOrientation::roHorizontal, 2);
    Events.clear();
    Invalidations = 0;
    Layer->Delete(horizontal);
    EXPECT_EQ(Events, QStringLiteral("-2 ")); // its location was still there to read
    EXPECT_TRUE(Layer->GetHRulers().IsEmpty());
    EXPECT_EQ(Layer->GetVRulers().Count(), 1);
    Layer->Delete(Layer->GetVRulers()[0]);
    EXPECT_EQ(Events, QStringLiteral("-2 -1 "));
    EXPECT_TRUE(Layer->GetVRulers().IsEmpty());
    EXPECT_EQ(Invalidations, 2);
}

TEST_F(RulerMapLayer, DeletingAStrangerDoesNothing) {
    AddRuler(TRulerOrientation::roVertical, 1);
    Events.clear();
    Invalidations = 0;
    const TRulerItem stranger;
    Layer->Delete(&stranger);
    Layer->Delete(nullptr);
    EXPECT_EQ(Layer->GetVRulers().Count(), 1);
    EXPECT_EQ(Events, QString());
    EXPECT_EQ(Invalidations, 0);
}

TEST_F(RulerMapLayer, OnesBehindASubscriberThatRemovesARulerAreNotToldThatItCame) {
    auto layer = std::make_unique<TRulerMapLayer>(Manager);
    const TSubscription refuse =
        layer->GetOnRulerAdded().Add([](TRulerMapLayer* sender, TRulerItem* ruler) { sender->Delete(ruler); });
    int told = 0;
    const TSubscription count = layer->GetOnRulerAdded().Add([&](TRulerMapLayer*, TRulerItem*) { ++told; });
    for (const TRulerOrientation orientation : {TRulerOrientation::roVertical, TRulerOrientation::roHorizontal})
        layer->Add(std::make_unique<TRulerItem>(orientation, 1, Red));
    EXPECT_EQ(told, 0);
    EXPECT_TRUE(layer->GetVRulers().IsEmpty());
    EXPECT_TRUE(layer->GetHRulers().IsEmpty());
}

TEST_F(RulerMapLayer, OnesBehindASubscriberThatMovesARulerAreToldOnceThatItCame) {
    auto layer = std::make_unique<TRulerMapLayer>(Manager);
    const TSubscription turn = layer->GetOnRulerAdded().Add([](TRulerMapLayer* sender, TRulerItem* ruler) {
        if (ruler->GetOrientation() == TRulerOrientation::roHorizontal)
            return;
        ruler->SetOrientation(TRulerOrientation::roHorizontal);
        sender->Add(sender->GetVRulers().Extract(ruler));
    });
    int told = 0;
    const TSubscription count = layer->GetOnRulerAdded().Add([&](TRulerMapLayer* sender, TRulerItem* ruler) {
        ++told;
        EXPECT_TRUE(sender->GetHRulers().Contains(ruler));
    });
    layer->Add(std::make_unique<TRulerItem>(TRulerOrientation::roVertical, 1, Red));
    EXPECT_EQ(told, 1);
    EXPECT_EQ(layer->GetHRulers().Count(), 1);
}

TEST_F(RulerMapLayer, OnesBehindASubscriberThatAddsAnotherRulerAreToldOfBoth) {
    auto layer = std::make_unique<TRulerMapLayer>(Manager);
    const TSubscription pair = layer->GetOnRulerAdded().Add([](TRulerMapLayer* sender, TRulerItem* ruler) {
        if (ruler->GetLocation() == 1)
            sender->Add(std::make_unique<TRulerItem>(TRulerOrientation::roVertical, 2, Red));
    });
    std::vector<extended> told;
    const TSubscription note =
        layer->GetOnRulerAdded().Add([&](TRulerMapLayer*, TRulerItem* ruler) { told.push_back(ruler->GetLocation()); });
    layer->Add(std::make_unique<TRulerItem>(TRulerOrientation::roVertical, 1, Red));
    EXPECT_EQ(told, (std::vector<extended>{2, 1}));
}

TEST_F(RulerMapLayer, ASubscriberMayDestroyTheLayerThatGetsARuler) {
    const TSubscription destroy = Layer->GetOnRulerAdded().Add([this](TRulerMapLayer*, TRulerItem*) { Layer.reset(); });
    Layer->ConfirmPlacing();
    EXPECT_EQ(Layer, nullptr);
}

TEST_F(RulerMapLayer, ExtractingARulerTellsThatItIsRemoved) {
    TRulerItem* ruler = AddRuler(TRulerOrientation::roVertical, 1);
    Invalidations = 0;
    const std::unique_ptr<TRulerItem> extracted = Layer->GetVRulers().Extract(ruler);
    EXPECT_EQ(extracted.get(), ruler);
    EXPECT_EQ(Events, QStringLiteral("+1 -1 "));
    EXPECT_EQ(Invalidations, 1);
}

TEST_F(RulerMapLayer, AChangedOrientationLeavesTheRulerInItsList) {
    TRulerItem* ruler = AddRuler(TRulerOrientation::roVertical, 88);
    ruler->SetOrientation(TRulerOrientation::roHorizontal);
    EXPECT_EQ(Picture(), (TPicture{"......", "......", "rrrrrr", "......"})); // still a Y
    Layer->Delete(ruler);
    EXPECT_TRUE(Layer->GetVRulers().IsEmpty());
}

TEST_F(RulerMapLayer, ItsEndTellsOfEveryRuler) {
    AddRuler(TRulerOrientation::roHorizontal, 3);
    AddRuler(TRulerOrientation::roVertical, 1);
    AddRuler(TRulerOrientation::roVertical, 2);
    Events.clear();
    Layer.reset();
    EXPECT_EQ(Events, QStringLiteral("-1 -2 -3 "));
}

TEST_F(RulerMapLayer, ASubscriberMayDestroyTheLayer) {
    const auto removed = Layer->GetOnRulerRemoved().Add([this](TRulerMapLayer*, TRulerItem*) { Layer.reset(); });
    TRulerItem* ruler = AddRuler(TRulerOrientation::roVertical, 1);
    Layer->Delete(ruler);
    EXPECT_EQ(Layer, nullptr);
}

// --- Placing -----------------------------------------------------------------------------------------------------

TEST_F(RulerMapLayer, PlacingAndConfirmingAddsACyanRuler) {
    Layer->StartPlacing(TPlacingMode::pmVertical, 10);
    EXPECT_TRUE(Layer->GetIsPlacing());
    EXPECT_EQ(Layer->GetPlacingMode(), TPlacingMode::pmVertical);
    Layer->SetPlacingValue(20);
    EXPECT_EQ(Layer->GetPlacingValue(), 20);
    EXPECT_EQ(Invalidations, 2);
    Layer->ConfirmPlacing();
    EXPECT_FALSE(Layer->GetIsPlacing());
    ASSERT_EQ(Layer->GetVRulers().Count(), 1);
    EXPECT_EQ(Layer->GetVRulers()[0]->GetLocation(), 20);
    EXPECT_EQ(Layer->GetVRulers()[0]->GetColor(), Cyan);
    EXPECT_EQ(Layer->GetVRulers()[0]->GetOrientation(), TRulerOrientation::roVertical);
    EXPECT_EQ(Events, QStringLiteral("+20 "));
    EXPECT_EQ(Invalidations, 3);
}

TEST_F(RulerMapLayer, AHorizontalPlacingGoesIntoTheOtherList) {
    Layer->StartPlacing(TPlacingMode::pmHorizontal, -7.5L);
    Layer->ConfirmPlacing();
    EXPECT_TRUE(Layer->GetVRulers().IsEmpty());
    ASSERT_EQ(Layer->GetHRulers().Count(), 1);
    EXPECT_EQ(Layer->GetHRulers()[0]->GetLocation(), -7.5L);
    EXPECT_EQ(Layer->GetHRulers()[0]->GetOrientation(), TRulerOrientation::roHorizontal);
}

TEST_F(RulerMapLayer, CancellingLeavesBothListsAsTheyWere) {
    Layer->StartPlacing(TPlacingMode::pmHorizontal, 10);
    Layer->CancelPlacing();
    EXPECT_FALSE(Layer->GetIsPlacing());
    EXPECT_TRUE(Layer->GetVRulers().IsEmpty());
    EXPECT_TRUE(Layer->GetHRulers().IsEmpty());
    EXPECT_EQ(Events, QString());
    EXPECT_EQ(Invalidations, 2);
    Layer->CancelPlacing();
    EXPECT_EQ(Invalidations, 3); // also while idle
}

TEST_F(RulerMapLayer, ThePlacingValueStaysWhileIdle) {
    Layer->SetPlacingValue(5);
    EXPECT_EQ(Layer->GetPlacingValue(), 0);
    EXPECT_EQ(Invalidations, 0);
}

TEST_F(RulerMapLayer, OnlyAnExactlyEqualPlacingValueIsNoChange) {
    Layer->StartPlacing(TPlacingMode::pmVertical, 1);
    Layer->SetPlacingValue(1);
    EXPECT_EQ(Invalidations, 1);
    const extended next = 1 + std::numeric_limits<extended>::epsilon();
    Layer->SetPlacingValue(next);
    EXPECT_EQ(Layer->GetPlacingValue(), next);
    EXPECT_EQ(Invalidations, 2);
}

TEST_F(RulerMapLayer, ConfirmingWithoutPlacingAddsARulerAtTheLastPlace) {
    Layer->ConfirmPlacing();
    ASSERT_EQ(Layer->GetVRulers().Count(), 1);
    EXPECT_EQ(Layer->GetVRulers()[0]->GetLocation(), 0);
    Layer->StartPlacing(TPlacingMode::pmHorizontal, 30);
    Layer->CancelPlacing();
    Layer->ConfirmPlacing();
    ASSERT_EQ(Layer->GetHRulers().Count(), 1);
    EXPECT_EQ(Layer->GetHRulers()[0]->GetLocation(), 30);
}

// --- Painting ----------------------------------------------------------------------------------------------------

TEST_F(RulerMapLayer, AVerticalRulerIsALineAcrossTheView) {
    AddRuler(TRulerOrientation::roVertical, 89);
    EXPECT_EQ(Picture(), (TPicture{"......", "rrrrrr", "......", "......"}));
}

TEST_F(RulerMapLayer, AHorizontalRulerIsALineDownTheView) {
    AddRuler(TRulerOrientation::roHorizontal, -178);
    EXPECT_EQ(Picture(), (TPicture{"..r...", "..r...", "..r...", "..r..."}));
}

TEST_F(RulerMapLayer, VerticalRulersLieOnHorizontalOnesAndThePlacedOneOnAll) {
    AddRuler(TRulerOrientation::roVertical, 89, Blue);
    AddRuler(TRulerOrientation::roHorizontal, -178);
    EXPECT_EQ(Picture(), (TPicture{"..r...", "bbbbbb", "..r...", "..r..."}));
    Layer->StartPlacing(TPlacingMode::pmHorizontal, -176);
    EXPECT_EQ(Picture(), (TPicture{"..r.c.", "bbbbcb", "..r.c.", "..r.c."}));
    Layer->StartPlacing(TPlacingMode::pmVertical, 87);
    EXPECT_EQ(Picture(), (TPicture{"..r...", "bbbbbb", "..r...", "cccccc"}));
}

TEST_F(RulerMapLayer, ALaterRulerOfAListLiesOnAnEarlierOne) {
    AddRuler(TRulerOrientation::roVertical, 89, Blue);
    AddRuler(TRulerOrientation::roVertical, 89, Red);
    EXPECT_EQ(Picture()[1], "rrrrrr");
}

TEST_F(RulerMapLayer, ThePlacedRulerIsPaintedInAnEmptyLayer) {
    Layer->StartPlacing(TPlacingMode::pmVertical, 90);
    EXPECT_EQ(Picture(), (TPicture{"cccccc", "......", "......", "......"}));
}

TEST_F(RulerMapLayer, AFractionIsSharedBetweenTwoRowsOfPixels) {
    AddRuler(TRulerOrientation::roVertical, 88.75L, clBlack32); // at 1.25: three quarters in row 1
    Layer->Paint(&Map.World, &Map.Viewport, Map.Bitmap);
    EXPECT_EQ(tests::Row(Map.Bitmap, 1), std::vector<TColor32>(6, 0xFF404040));
    EXPECT_EQ(tests::Row(Map.Bitmap, 2), std::vector<TColor32>(6, 0xFFBFBFBF));
}

TEST_F(RulerMapLayer, StaysAtItsPlaceAsTheMapMoves) {
    AddRuler(TRulerOrientation::roVertical, 89);
    Map.Viewport.SetTranslation({0, 2});
    EXPECT_EQ(Picture()[3], "rrrrrr");
    Map.Viewport.SetTranslation({50, -1});
    EXPECT_EQ(Picture()[0], "rrrrrr");
}

TEST_F(RulerMapLayer, SpansTheViewNotTheBitmap) {
    AddRuler(TRulerOrientation::roVertical, 89);
    Map.Viewport.SetViewSize({4, 4});
    Map.Viewport.SetTranslation({0, 0});
    EXPECT_EQ(Picture()[1], "rrrr..");
}

TEST_F(RulerMapLayer, ARulerOutsideTheViewDrawsNothing) {
    for (const extended location : {500.0L, -500.0L, 1e30L, std::numeric_limits<extended>::infinity(),
                                    std::numeric_limits<extended>::quiet_NaN()}) {
        AddRuler(TRulerOrientation::roVertical, location);
        AddRuler(TRulerOrientation::roHorizontal, location);
    }
    EXPECT_EQ(Picture(), TPicture(4, "......"));
}

TEST_F(RulerMapLayer, DoesNotFoldOverTheSeam) {
    AddRuler(TRulerOrientation::roHorizontal, 182); // 182 east is 178 west, which the view shows
    EXPECT_EQ(Picture(), TPicture(4, "......"));
}

} // namespace
} // namespace lmx
