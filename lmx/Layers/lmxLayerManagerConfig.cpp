
#include <lmx/Layers/lmxLayerManagerConfig.h>

namespace lmx {

namespace {

class TLayerManagerConfig final : public ILayerManagerConfig {
public:
    std::vector<std::shared_ptr<IResBrowserSourceProvider>>& PaletteSources() override { return FPaletteSources; }
    std::shared_ptr<ILayerComponentFactory> GetLayerComponentFactory() const override { return FLayerComponentFactory; }
    void SetLayerComponentFactory(const std::shared_ptr<ILayerComponentFactory>& factory) override {
        FLayerComponentFactory = factory;
    }

private:
    std::vector<std::shared_ptr<IResBrowserSourceProvider>> FPaletteSources;
    std::shared_ptr<ILayerComponentFactory> FLayerComponentFactory;
};

} // namespace

std::shared_ptr<ILayerManagerConfig> TLayerManagerConfigFactory::GetObject() {
    return std::make_shared<TLayerManagerConfig>();
}

} // namespace lmx
