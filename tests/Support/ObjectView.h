#pragma once

#include <lmx/Controls/lmxMapViewControl.h>
#include <tests/Support/TestLayer.h>

#include <memory>
#include <optional>

namespace lmx::tests {

/// A view whose object layer is a test layer.
class TObjectView : public TMapViewControl {
public:
    using TMapViewControl::TMapViewControl;

    std::optional<bool> AllowsLegendOption; ///< what the layer was made with

protected:
    std::unique_ptr<TBaseMapLayer> CreateObjectLayer(const std::shared_ptr<ILayerManager>& manager,
                                                     bool allowLegendControlOption) override {
        AllowsLegendOption = allowLegendControlOption;
        return std::make_unique<TTestLayer>(manager);
    }
};

} // namespace lmx::tests
