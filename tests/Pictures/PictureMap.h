#pragma once

#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Pictures/lmxMapPicture.h>
#include <tests/Support/NumberedImage.h>
#include <tests/Support/TestBufferedLayer.h>

#include <QTemporaryDir>

#include <memory>
#include <utility>

namespace lmx::tests {

/// A manager with a raster of the whole world in two halves: blue to the west, red to the east.
struct TPictureMap {
    TPictureMap() {
        auto layer = std::make_unique<TIdrisiMapLayer>(Manager);
        auto image = NumberedImage(2, 1, {-180, 90, 180, -90}); // 11 and 12
        image->getHeader()->SetMinValue(11);
        image->getHeader()->SetMaxValue(12);
        image->getHeader()->SetValueUnits(QStringLiteral("K"));
        layer->SetLayerName(QStringLiteral("Halves"));
        layer->TakeImage(std::move(image));
        layer->SetColorCalc(
            TGradientColorCalculatorFactory::GetObject(11, 12, TGradientFactory::GetObject({{0, West}, {1, East}})));
        layer->Render();
        Raster = Manager->GetLayers().Add(std::move(layer));
    }

    TTestBufferedLayer* AddBuffered(const QString& name) {
        auto layer = std::make_unique<TTestBufferedLayer>(Manager);
        layer->SetLayerName(name);
        layer->SetColor(Drawn);
        layer->SetIsReadyToDraw(true);
        return Manager->GetLayers().Add(std::move(layer));
    }
    TMapPicture Picture(TMapPictureOptions options = {}) const {
        return {Manager, TLatLonWorldSystemFactory::GetObject(), std::move(options)};
    }
    /// The whole world at one pixel a degree.
    static TMapPictureOptions Plain() {
        TMapPictureOptions options;
        options.Size = {360, 180};
        return options;
    }

    static constexpr TColor32 West = 0xFF0000FF;
    static constexpr TColor32 East = 0xFFFF0000;
    static constexpr TColor32 Drawn = 0xFF100000;

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    TIdrisiMapLayer* Raster = nullptr;
    QTemporaryDir Folder;
};

} // namespace lmx::tests
