#include <lmx/Layers/lmxLayerDuplicator.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestLayer.h>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

using namespace tests;

/// A layer with a manager that can be duplicated.
class TCopiedLayer : public TTestLayer {
public:
    using TTestLayer::Duplicate;
    using TTestLayer::TTestLayer;

    TLayerOptionFlags GetLayerOptionFlags() const override { return Flags; }
    std::unique_ptr<TBaseLayerManagerLayer> Duplicate(const std::shared_ptr<ILayerManager>& manager) const override {
        if (Fails)
            throw Exception(QStringLiteral("no copy today"));
        auto copy = std::make_unique<TCopiedLayer>(manager);
        UpdateDuplicateBaseMapLayer(copy.get());
        return copy;
    }

    TLayerOptionFlags Flags{TLayerOptionFlag::lofDuplicate};
    bool Fails = false;
};

/// A layer without a manager that can be duplicated.
class TPlainLayer : public TBaseMapLayer {
public:
    TLayerOptionFlags GetLayerOptionFlags() const override { return {TLayerOptionFlag::lofDuplicate}; }
    QString GetLayerTypeName() const override { return QStringLiteral("Plain"); }
    std::unique_ptr<TBaseMapLayer> Duplicate() const override {
        auto copy = std::make_unique<TPlainLayer>();
        copy->SetTag(GetTag() + 1);
        return copy;
    }
};

class LayerDuplicator : public testing::Test {
protected:
    LayerDuplicator() { Source.SetLayerName(QStringLiteral("Coast")); }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::shared_ptr<ILayerManager> Other = TLayerManagerFactory::GetObject();
    TCopiedLayer Source{Manager};
};

TEST_F(LayerDuplicator, BeginsEmptyAndKeepsWhatIsSet) {
    const auto duplicator = TLayerDuplicatorFactory::GetObject();
    EXPECT_NE(duplicator, TLayerDuplicatorFactory::GetObject());
    EXPECT_EQ(duplicator->GetSourceLayer(), nullptr);
    EXPECT_EQ(duplicator->GetDestLayerManager(), nullptr);
    duplicator->SetSourceLayer(&Source);
    duplicator->SetDestLayerManager(Other);
    EXPECT_EQ(duplicator->GetSourceLayer(), &Source);
    EXPECT_EQ(duplicator->GetDestLayerManager(), Other);
}

TEST_F(LayerDuplicator, BeginsWithBothIfTheyAreGiven) {
    const auto duplicator = TLayerDuplicatorFactory::GetObject(&Source, Other);
    EXPECT_EQ(duplicator->GetSourceLayer(), &Source);
    EXPECT_EQ(duplicator->GetDestLayerManager(), Other);
}

TEST_F(LayerDuplicator, ASourceIsNeededFirst) {
    EXPECT_EQ(MessageOf<EInvalidOperation>([] { TLayerDuplicatorFactory::GetObject()->Duplicate(); }),
              "SourceLayer is null");
}

TEST_F(LayerDuplicator, ThenADestination) {
    Source.Flags = {};
    EXPECT_EQ(
        MessageOf<EInvalidOperation>([this] { TLayerDuplicatorFactory::GetObject(&Source, nullptr)->Duplicate(); }),
        "DestLayerManager is null");
}

TEST_F(LayerDuplicator, ThenALayerThatCanBeDuplicated) {
    Source.Flags = {TLayerOptionFlag::lofDelete, TLayerOptionFlag::lofRename, TLayerOptionFlag::lofProperties};
    EXPECT_EQ(MessageOf<EInvalidOperation>([this] { TLayerDuplicatorFactory::GetObject(&Source, Other)->Duplicate(); }),
              "The specified layer does not support duplication");
    EXPECT_EQ(Other->GetLayers().Count(), 0);
}

TEST_F(LayerDuplicator, TheCopyIsMadeForTheDestinationAndStandsOnTopOfItsStack) {
    AddTestLayer(Other);
    int added = 0;
    const auto subscription = Other->GetOnLayerAdded().Add([&](ILayerManager*, TBaseMapLayer*) { ++added; });
    auto* const copy = dynamic_cast<TCopiedLayer*>(TLayerDuplicatorFactory::GetObject(&Source, Other)->Duplicate());
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, &Source);
    EXPECT_EQ(copy->GetLayerName(), "Coast");
    EXPECT_EQ(copy->GetLayerManager(), Other);
    EXPECT_EQ(Other->GetLayers().IndexOf(copy), 1);
    EXPECT_EQ(Manager->GetLayers().Count(), 0);
    EXPECT_EQ(added, 1);
}

TEST_F(LayerDuplicator, TheDestinationMayBeTheLayersOwnManager) {
    auto owned = std::make_unique<TCopiedLayer>(Manager);
    TBaseMapLayer* const layer = Manager->GetLayers().Add(std::move(owned));
    AddTestLayer(Manager);
    TBaseMapLayer* const copy = TLayerDuplicatorFactory::GetObject(layer, Manager)->Duplicate();
    EXPECT_EQ(Manager->GetLayers().IndexOf(copy), 2);
}

TEST_F(LayerDuplicator, ALayerWithoutAManagerCopiesItself) {
    TPlainLayer plain;
    plain.SetTag(4);
    EXPECT_EQ(TLayerDuplicatorFactory::GetObject(&plain, Other)->Duplicate()->GetTag(), 5);
    EXPECT_EQ(Other->GetLayers().Count(), 1);
}

TEST_F(LayerDuplicator, ACopyThatFailsLeavesTheStackAsItWas) {
    Source.Fails = true;
    EXPECT_EQ(MessageOf<Exception>([this] { TLayerDuplicatorFactory::GetObject(&Source, Other)->Duplicate(); }),
              "no copy today");
    EXPECT_EQ(Other->GetLayers().Count(), 0);
}

TEST_F(LayerDuplicator, ASourceThatHasGoneIsNull) {
    auto layer = std::make_unique<TCopiedLayer>(Manager);
    const auto duplicator = TLayerDuplicatorFactory::GetObject(layer.get(), Other);
    layer.reset();
    EXPECT_EQ(duplicator->GetSourceLayer(), nullptr);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { duplicator->Duplicate(); }), "SourceLayer is null");
}

} // namespace
} // namespace lmx
