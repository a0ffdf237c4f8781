#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestLayer.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using tests::AddTestLayer;
using tests::TTestLayer;

TEST(BaseLayerManagerLayer, NeedsAManager) {
    try {
        const TTestLayer layer(nullptr);
        FAIL() << "no exception";
    } catch (const EExArgumentNilException& failure) {
        EXPECT_EQ(failure.Routine(), QStringLiteral("TBaseLayerManagerLayer.Create"));
        EXPECT_EQ(failure.Argument(), QStringLiteral("LayerManager"));
    }
}

TEST(BaseLayerManagerLayer, DoesNotKeepItsManagerAlive) {
    auto manager = TLayerManagerFactory::GetObject();
    const TTestLayer layer(manager);
    EXPECT_EQ(layer.GetLayerManager(), manager);
    EXPECT_TRUE(layer.IsLMSet());
    manager.reset();
    EXPECT_EQ(layer.GetLayerManager(), nullptr);
    EXPECT_FALSE(layer.IsLMSet());
}

TEST(BaseLayerManagerLayer, RefusesDuplicationUnlessOverridden) {
    const auto manager = TLayerManagerFactory::GetObject();
    const TTestLayer layer(manager);
    EXPECT_EQ(tests::MessageOf<ENotSupportedException>([&] { static_cast<void>(layer.Duplicate()); }),
              QStringLiteral("This layer type does not support this type of layer duplication"));
    EXPECT_EQ(tests::MessageOf<ENotSupportedException>([&] { static_cast<void>(layer.Duplicate(manager)); }),
              QStringLiteral("Duplication method not provided"));
}

TEST(BaseLayerManagerLayer, HearsOfItsOwnRemovalOnly) {
    const auto manager = TLayerManagerFactory::GetObject();
    TTestLayer* kept = AddTestLayer(manager);
    TTestLayer* gone = AddTestLayer(manager);
    const std::unique_ptr<TBaseMapLayer> extracted = manager->GetLayers().Extract(gone);
    EXPECT_EQ(gone->Removals, 1);
    EXPECT_FALSE(gone->IsLMSet());
    EXPECT_EQ(kept->Removals, 0);
    EXPECT_TRUE(kept->IsLMSet());
}

/// Looks at its manager while it is being removed.
class TLeavingLayer : public TTestLayer {
public:
    using TTestLayer::TTestLayer;
    void BeforeLayerManagerRemoved(ILayerManager* manager) override {
        Left = manager;
        StillKnown = GetLayerManager().get();
    }
    ILayerManager* Left = nullptr;
    ILayerManager* StillKnown = nullptr;
};

TEST(BaseLayerManagerLayer, KnowsItsManagerUntilItHasLeft) {
    const auto manager = TLayerManagerFactory::GetObject();
    TLeavingLayer* layer = manager->GetLayers().Add(std::make_unique<TLeavingLayer>(manager));
    const auto extracted = manager->GetLayers().Extract(layer);
    EXPECT_EQ(layer->Left, manager.get());
    EXPECT_EQ(layer->StillKnown, manager.get());
    EXPECT_FALSE(layer->IsLMSet());
}

TEST(BaseLayerManagerLayer, HearsOfItsRemovalInTurnWithTheOtherSubscribers) {
    const auto manager = TLayerManagerFactory::GetObject();
    QString log;
    const auto write = [&log](QChar name) {
        return [&log, name](ILayerManager*, TBaseMapLayer* layer) {
            log += name;
            log += QString::fromLatin1(dynamic_cast<TTestLayer&>(*layer).IsLMSet() ? "+" : "-");
        };
    };
    const TSubscription before = manager->GetOnLayerRemoved().Add(write(u'a'));
    TTestLayer* layer = AddTestLayer(manager);
    const TSubscription after = manager->GetOnLayerRemoved().Add(write(u'b'));
    manager->GetLayers().Remove(layer);
    EXPECT_EQ(log, QStringLiteral("a+b-"));
}

TEST(BaseLayerManagerLayer, HearsNothingOfTheManagerThatItWasNotMadeFor) {
    const auto manager = TLayerManagerFactory::GetObject();
    const auto other = TLayerManagerFactory::GetObject();
    TTestLayer* layer = other->GetLayers().Add(std::make_unique<TTestLayer>(manager));
    const auto extracted = other->GetLayers().Extract(layer);
    EXPECT_EQ(layer->Removals, 0);
    EXPECT_EQ(layer->GetLayerManager(), manager);
}

TEST(BaseLayerManagerLayer, AStaleSubscriptionDoesNothing) {
    const auto manager = TLayerManagerFactory::GetObject();
    manager->GetLayers().Remove(AddTestLayer(manager));
    TTestLayer* other = AddTestLayer(manager);
    const auto extracted = manager->GetLayers().Extract(other);
    EXPECT_EQ(other->Removals, 1);
    EXPECT_EQ(manager->GetOnLayerRemoved().Count(), 1); // the one of `other`; the freed layer's is gone
}

TEST(BaseLayerManagerLayer, HearsNothingWhenNotificationIsPrevented) {
    const auto manager = TLayerManagerFactory::GetObject();
    TTestLayer* layer = AddTestLayer(manager);
    manager->PreventNotify();
    const auto extracted = manager->GetLayers().Extract(layer);
    EXPECT_EQ(layer->Removals, 0);
    EXPECT_TRUE(layer->IsLMSet());
}

} // namespace
} // namespace lmx
