#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxRasterMapLayer.h>
#include <lmx/Layers/lmxSyncLayers.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <vector>

namespace lmx {
namespace {

using namespace tests;

class TLoggingLayer : public TRasterMapLayer {
public:
    TLoggingLayer(const std::shared_ptr<ILayerManager>& manager, const TValueRange& range, QString& log)
        : TRasterMapLayer(manager),
          FLog(log) {
        StoreValueRange(range);
    }
    QString GetLayerTypeName() const override { return QStringLiteral("Logging"); }
    void Invalidate() override {
        FLog += GetLayerName() + u'(' + Watched->GetValueRange().ToString() + QStringLiteral(") ");
    }

    const TRasterMapLayer* Watched = this;

private:
    QString& FLog;
};

class SyncLayers : public testing::Test {
protected:
    SyncLayers() {
        First.SetLayerName(QStringLiteral("first"));
        Second.SetLayerName(QStringLiteral("second"));
        First.Watched = &Second;
        Second.Watched = &First;
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    QString Log;
    TLoggingLayer First{Manager, {0, 10}, Log};
    TLoggingLayer Second{Manager, {5, 20}, Log};
    std::vector<TRasterMapLayer*> Both{&First, &Second};
    std::shared_ptr<ISyncLayers> Sync = TSyncLayersFactory::GetObject();
};

TEST_F(SyncLayers, GetObjectGivesANewOneEachTime) {
    EXPECT_NE(TSyncLayersFactory::GetObject(), Sync);
}

TEST_F(SyncLayers, TakeAListInBraces) {
    Sync->SyncLayers({&First, &Second});
    EXPECT_TRUE(First.GetValueRange().Equals({0, 20}));
    Sync->SyncLayers({&First, &Second}, 1, 2);
    EXPECT_TRUE(Second.GetValueRange().Equals({1, 2}));
}

TEST_F(SyncLayers, AllGetTheRangeThatHoldsEveryRange) {
    Sync->SyncLayers(Both);
    EXPECT_TRUE(First.GetValueRange().Equals({0, 20}));
    EXPECT_TRUE(Second.GetValueRange().Equals({0, 20}));
}

TEST_F(SyncLayers, AllGetTheRangeThatIsGiven) {
    Sync->SyncLayers(Both, -3, 4.5);
    EXPECT_TRUE(First.GetValueRange().Equals({-3, 4.5}));
    EXPECT_TRUE(Second.GetValueRange().Equals({-3, 4.5}));
}

TEST_F(SyncLayers, TheLayersMayBeWrittenInBraces) {
    Sync->SyncLayers({&First, &Second});
    EXPECT_TRUE(First.GetValueRange().Equals({0, 20}));
    Sync->SyncLayers({&First, &Second}, -3, 4.5);
    EXPECT_TRUE(Second.GetValueRange().Equals({-3, 4.5}));
}

// Each invalidation notes the range of the other layer.
TEST_F(SyncLayers, AllHaveTheRangeBeforeTheFirstIsInvalidatedInTheOrderOfTheArray) {
    Sync->SyncLayers(Both);
    EXPECT_EQ(Log, "first(0 - 20) second(0 - 20) ");
}

TEST_F(SyncLayers, LayersThatHaveTheRangeAlreadyAreInvalidatedToo) {
    Sync->SyncLayers(Both, 0, 10);
    EXPECT_EQ(Log, "first(0 - 10) second(0 - 10) ");
}

TEST_F(SyncLayers, CalculatorsFollowTheRange) {
    for (TRasterMapLayer* layer : Both)
        layer->SetColorCalc(TGradientColorCalculatorFactory::GetObject(
            0, 1, TGradientFactory::GetObject(std::vector<TColorStop>{{0, 0xFF000000}, {1, 0xFFFFFFFF}})));
    Sync->SyncLayers(Both);
    for (const TRasterMapLayer* layer : Both) {
        const auto calculator = std::dynamic_pointer_cast<IBaseMinMaxColorCalculator>(layer->GetColorCalc());
        ASSERT_NE(calculator, nullptr);
        EXPECT_EQ(calculator->GetColor(0), 0xFF000000U);
        EXPECT_EQ(calculator->GetColor(20), 0xFFFFFFFFU);
    }
}

TEST_F(SyncLayers, WhoHearsOfOneLayerMayDestroyAnother) {
    class TDestroyingLayer : public TRasterMapLayer {
    public:
        using TRasterMapLayer::TRasterMapLayer;
        QString GetLayerTypeName() const override { return QStringLiteral("Destroying"); }
        void Invalidate() override { Victim.reset(); }
        std::unique_ptr<TRasterMapLayer> Victim;
    };
    TDestroyingLayer layer(Manager);
    layer.Victim = std::make_unique<TLoggingLayer>(Manager, TValueRange(0, 1), Log);
    Sync->SyncLayers(std::vector<TRasterMapLayer*>{&layer, layer.Victim.get(), &First}, 0, 3);
    EXPECT_EQ(layer.Victim, nullptr);
    EXPECT_EQ(Log, "first(5 - 20) ");
    EXPECT_TRUE(First.GetValueRange().Equals({0, 3}));
}

TEST_F(SyncLayers, NoLayersAreRefused) {
    const QString message = QStringLiteral("TSyncLayers.SyncLayers: argument Layers is nil");
    EXPECT_EQ(MessageOf<EExArgumentNilException>([this] { Sync->SyncLayers({}); }), message);
    EXPECT_EQ(MessageOf<EExArgumentNilException>([this] { Sync->SyncLayers({}, 0, 1); }), message);
}

TEST_F(SyncLayers, OneLayerIsRefusedAlsoWithAGivenRange) {
    Both.pop_back();
    EXPECT_EQ(MessageOf<EArgumentException>([this] { Sync->SyncLayers(Both); }), "Layers");
    EXPECT_EQ(MessageOf<EArgumentException>([this] { Sync->SyncLayers(Both, 0, 1); }), "Layers");
    EXPECT_TRUE(First.GetValueRange().Equals({0, 10}));
    EXPECT_EQ(Log, "");
}

TEST_F(SyncLayers, ANilAmongTheLayersChangesNone) {
    Both.push_back(nullptr);
    EXPECT_EQ(MessageOf<EArgumentException>([this] { Sync->SyncLayers(Both); }), "Layers");
    EXPECT_EQ(MessageOf<EArgumentException>([this] { Sync->SyncLayers(Both, 0, 1); }), "Layers");
    EXPECT_TRUE(First.GetValueRange().Equals({0, 10}));
    EXPECT_EQ(Log, "");
}

} // namespace
} // namespace lmx
