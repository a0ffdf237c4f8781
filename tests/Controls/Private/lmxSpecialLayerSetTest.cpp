#include <lmx/Controls/Private/lmxSpecialLayerSet.h>
#include <lmx/Layers/lmxInfoQueryPointLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <lmx/Layers/lmxRulerMapLayer.h>
#include <lmx/Layers/lmxSelectionMapLayer.h>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

using enum TSpecialLayers;

struct SpecialLayerSet : testing::Test {
    void Add(TSpecialLayerAccess kinds = {slSelection, slRulers, slInfoQueryPointLayer, slObject}) {
        Layers->Add(Manager, kinds, [this] { return std::make_unique<TObjectMapLayer>(Manager, false); });
    }
    int Count() const { return Manager->GetSpecialLayers().Count(); }
    void ExpectNone() const {
        EXPECT_EQ(Layers->GetSelection(), nullptr);
        EXPECT_EQ(Layers->GetRulers(), nullptr);
        EXPECT_EQ(Layers->GetPoints(), nullptr);
        EXPECT_EQ(Layers->GetObjects(), nullptr);
        EXPECT_EQ(Count(), 0);
    }
    /// Runs `action` when the first layer is added, or removed.
    template<class Action>
    void AtFirst(TLayerManagerLayerEventList& event, Action action) {
        Subscription = event.Add([action, done = false](ILayerManager*, TBaseMapLayer*) mutable {
            if (!done) {
                done = true;
                action();
            }
        });
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::unique_ptr<TSpecialLayerSet> Layers = std::make_unique<TSpecialLayerSet>();
    TSubscription Subscription;
};

TEST_F(SpecialLayerSet, MakesWhatIsAskedForInOrder) {
    ExpectNone();
    Add();
    ASSERT_EQ(Count(), 4);
    EXPECT_EQ(Manager->GetSpecialLayers()[0], Layers->GetSelection());
    EXPECT_EQ(Manager->GetSpecialLayers()[1], Layers->GetRulers());
    EXPECT_EQ(Manager->GetSpecialLayers()[2], Layers->GetPoints());
    EXPECT_EQ(Manager->GetSpecialLayers()[3], static_cast<TBaseMapLayer*>(Layers->GetObjects()));
    for (TBaseMapLayer* layer : Manager->GetSpecialLayers())
        EXPECT_TRUE(layer->GetFlags().Contains(TLayerFlag::lfSpecial));
    Layers->Remove(Manager);
    ExpectNone();
    Add({slRulers});
    EXPECT_EQ(Count(), 1);
    EXPECT_EQ(Layers->GetSelection(), nullptr);
    EXPECT_NE(Layers->GetRulers(), nullptr);
}

TEST_F(SpecialLayerSet, ForgetsALayerThatLeavesItsList) {
    Add();
    Manager->GetSpecialLayers().Remove(Layers->GetRulers());
    EXPECT_EQ(Layers->GetRulers(), nullptr);
    EXPECT_NE(Layers->GetPoints(), nullptr);
}

TEST_F(SpecialLayerSet, StaysEmptyIfItIsEmptiedWhileItIsFilled) {
    AtFirst(Manager->GetOnLayerAdded(), [this] { Layers->Remove(Manager); });
    Add();
    ExpectNone();
}

TEST_F(SpecialLayerSet, StaysFilledIfItIsFilledWhileItIsEmptied) {
    Add();
    AtFirst(Manager->GetOnLayerRemoved(), [this] {
        Layers->Remove(Manager);
        Add();
    });
    Layers->Remove(Manager);
    EXPECT_EQ(Count(), 4);
    EXPECT_EQ(Layers->GetRulers(), Manager->GetSpecialLayers()[1]);
}

TEST_F(SpecialLayerSet, MayGoWhileItIsFilledAndEmptied) {
    AtFirst(Manager->GetOnLayerAdded(), [this] { Layers.reset(); });
    Add();
    EXPECT_EQ(Count(), 1);
    Manager->GetSpecialLayers().Clear();
    Layers = std::make_unique<TSpecialLayerSet>();
    Add();
    AtFirst(Manager->GetOnLayerRemoved(), [this] { Layers.reset(); });
    Layers->Remove(Manager);
    EXPECT_EQ(Count(), 3);
}

} // namespace
} // namespace lmx
