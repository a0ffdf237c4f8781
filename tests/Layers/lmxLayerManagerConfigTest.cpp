#include <lmx/Controls/Legend/lmxBaseLegendControl.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxLayerManagerConfig.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

class TFactory : public ILayerComponentFactory {
public:
    bool GetLegendComponent(TBaseMapLayer*, TBaseLegendControl*& component) override {
        component = nullptr;
        return true;
    }
};

TEST(LayerManagerConfig, BeginsEmpty) {
    const auto config = TLayerManagerConfigFactory::GetObject();
    EXPECT_TRUE(config->PaletteSources().empty());
    EXPECT_EQ(config->GetLayerComponentFactory(), nullptr);
}

TEST(LayerManagerConfig, KeepsTheHostsFactory) {
    const auto config = TLayerManagerConfigFactory::GetObject();
    const auto factory = std::make_shared<TFactory>();
    config->SetLayerComponentFactory(factory);
    EXPECT_EQ(config->GetLayerComponentFactory(), factory);
}

TEST(LayerManagerConfig, HandsOutTheListItself) {
    const auto config = TLayerManagerConfigFactory::GetObject();
    config->PaletteSources().emplace_back();
    EXPECT_EQ(config->PaletteSources().size(), 1U);
}

TEST(LayerManagerConfig, EveryManagerHasItsOwn) {
    EXPECT_NE(TLayerManagerConfigFactory::GetObject(), TLayerManagerConfigFactory::GetObject());
    const auto first = TLayerManagerFactory::GetObject();
    const auto second = TLayerManagerFactory::GetObject();
    EXPECT_NE(first->GetConfig(), nullptr);
    EXPECT_NE(first->GetConfig(), second->GetConfig());
}

} // namespace
} // namespace lmx
