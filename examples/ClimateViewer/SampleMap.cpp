#include "SampleMap.h"

#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>

#include <vector>

namespace {

// Seventeen bands of 1000 m from -10000 to 7000, so that a band begins at sea level.
std::shared_ptr<lmx::IBaseColorCalculator> ReliefColors() {
    const std::vector<lmx::TColorKeyItem> bands = {
        {"-10000 to -9000 m", 0xFF0B2545}, {"-9000 to -8000 m", 0xFF0F2D52}, {"-8000 to -7000 m", 0xFF14365F},
        {"-7000 to -6000 m", 0xFF1B416D},  {"-6000 to -5000 m", 0xFF234E7C}, {"-5000 to -4000 m", 0xFF2F5F8E},
        {"-4000 to -3000 m", 0xFF40739F},  {"-3000 to -2000 m", 0xFF578AB0}, {"-2000 to -1000 m", 0xFF75A4C3},
        {"-1000 to 0 m", 0xFFA3C6DA},      {"0 to 1000 m", 0xFFD9D8BE},      {"1000 to 2000 m", 0xFFC2B78F},
        {"2000 to 3000 m", 0xFFA9946B},    {"3000 to 4000 m", 0xFF917853},   {"4000 to 5000 m", 0xFF7D6448},
        {"5000 to 6000 m", 0xFFB9AFA5},    {"6000 to 7000 m", 0xFFF2F0EE},
    };
    return lmx::TBasicPaletteColorCalculatorFactory::GetObject(lmx::TValueRange(-10000, 7000), bands, false);
}

// From cold to warm through a light middle; every colour of the scale can be told apart by colour-blind readers.
std::shared_ptr<lmx::IBaseColorCalculator> TemperatureColors() {
    const auto gradient = lmx::TGradientFactory::GetObject(std::vector<lmx::TColorStop>{
        {0.00, 0xFF2C115F},
        {0.20, 0xFF3B5BA5},
        {0.40, 0xFF6FA8C9},
        {0.55, 0xFFE8E4C9},
        {0.70, 0xFFF4B860},
        {0.85, 0xFFDD6E42},
        {1.00, 0xFF8C1C13},
    });
    return lmx::TGradientColorCalculatorFactory::GetObject(lmx::TValueRange(-2, 32), gradient);
}

void AddLayer(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& fileName, const QString& name,
              const std::shared_ptr<lmx::IBaseColorCalculator>& colors, std::uint8_t opacity) {
    auto layer = std::make_unique<lmx::TIdrisiMapLayer>(manager);
    layer->SetLayerName(name);
    layer->TakeImage(lmx::TImageFactory::Load(fileName));
    layer->SetColorCalc(colors);
    layer->SetOpacity(opacity);
    layer->Render();
    manager->GetLayers().Add(std::move(layer));
}

} // namespace

void AddSampleLayers(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& folder) {
    AddLayer(manager, folder + "/relief20.rst", "Relief", ReliefColors(), 255);
    AddLayer(manager, folder + "/sst_january.rst", "Sea surface temperature, January", TemperatureColors(), 215);
}
