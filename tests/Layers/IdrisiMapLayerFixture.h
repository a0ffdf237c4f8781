#pragma once

#include <lmx/Colour/lmxBaseColorCalculator.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <tests/Support/NumberedImage.h>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

// Image layers whose pictures say the values of their cells.

namespace lmx::tests {

/// Says a value by an opaque colour: 0xFF000000 plus the value.
class TValueAsColor : public IBaseColorCalculator {
public:
    TColor32 GetColor(float value) const override { return 0xFF000000U + static_cast<TColor32>(value); }
    std::shared_ptr<IBaseColorCalculator> Clone() const override { return std::make_shared<TValueAsColor>(); }
};

class TCountingLayer : public TIdrisiMapLayer {
public:
    using TIdrisiMapLayer::TIdrisiMapLayer;
    void CreateLegendComponent() override {
        ++Legends;
        PixelAtLegend = GetBitmap() ? GetBitmap()->Pixel(0, 0) : 0;
        TIdrisiMapLayer::CreateLegendComponent();
    }
    int Legends = 0;
    TColor32 PixelAtLegend = 0; ///< of the picture, when the last legend was made
};

class TIdrisiMapLayerTest : public testing::Test {
protected:
    TCountingLayer& AddRendered(std::unique_ptr<TRealImage> image) {
        Layer.TakeImage(std::move(image));
        Layer.SetColorCalc(std::make_shared<TValueAsColor>());
        Layer.Render();
        return Layer;
    }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TCountingLayer Layer{Manager};
};

} // namespace lmx::tests
