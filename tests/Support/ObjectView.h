#pragma once

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxObjectMapLayer.h>
#include <tests/Support/TestLayer.h>

#include <memory>
#include <optional>

namespace lmx::tests {

/// An object layer that says what happens to it, and does nothing else.
class TTestObjectLayer : public TTestLayerOf<TObjectMapLayer> {
public:
    using TTestLayerOf::TTestLayerOf;
};

/// A view whose object layer is a test layer.
class TObjectView : public TMapViewControl {
public:
    using TMapViewControl::TMapViewControl;

    std::optional<bool> AllowsLegendOption; ///< what the layer was made with

protected:
    std::unique_ptr<TObjectMapLayer> CreateObjectLayer(const std::shared_ptr<ILayerManager>& manager,
                                                       bool allowLegendControlOption) override {
        AllowsLegendOption = allowLegendControlOption;
        return std::make_unique<TTestObjectLayer>(manager, allowLegendControlOption);
    }
};

} // namespace lmx::tests
