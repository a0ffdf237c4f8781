#include "SampleMap.h"

#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorKey.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Formats/Idrisi/lmxAbstractImage.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/Objects/lmxCompassRoseObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxLegendObjectLayerItem.h>
#include <lmx/Layers/Objects/lmxTextBoxObjectLayerItem.h>
#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Layers/lmxObjectMapLayer.h>

#include <QRectF>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace {

const QString TemperatureName = QStringLiteral("Sea surface temperature, January");

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

/// Puts annotations on a view, at places in whole pixels to the eye, in which documents keep them.
class TSheet {
public:
    explicit TSheet(lmx::TMapViewControl& view) : FObjects(*view.GetSpObjectLayer()), FRatio(view.GetDeviceRatio()) {}

    template<class Item>
    void Add(std::unique_ptr<Item> item, QRectF place, lmx::TAnchors anchors) {
        const auto pixel = [this](double value) { return static_cast<int>(std::lround(std::round(value) * FRatio)); };
        item->SetRect({pixel(place.left()), pixel(place.top()), pixel(place.right()), pixel(place.bottom())});
        item->SetAnchors(anchors);
        FObjects.GetObjects().Add(std::move(item));
    }
    void AddText(const QString& text, int size, lmx::TFontStyles styles, QRectF place, lmx::TAnchors anchors,
                 lmx::TAlignment align = lmx::TAlignment::taCenter) {
        Add(std::make_unique<lmx::TTextBoxObjectLayerItem>(&FObjects, text, "Tahoma", size, lmx::clBlack, styles,
                                                           align),
            place, anchors);
    }
    lmx::TObjectMapLayer* GetLayer() const { return &FObjects; }

private:
    lmx::TObjectMapLayer& FObjects;
    double FRatio;
};

} // namespace

void AddSampleLayers(const std::shared_ptr<lmx::ILayerManager>& manager, const QString& folder) {
    AddLayer(manager, folder + "/relief20.rst", "Relief", ReliefColors(), 255);
    AddLayer(manager, folder + "/sst_january.rst", TemperatureName, TemperatureColors(), 215);
}

void ComposeSampleMap(lmx::TMapViewControl& view) {
    using enum lmx::TAnchorKind;
    constexpr double Side = 150;  // on the left and the right of the map, where labels of places reach into
    constexpr double Above = 60;  // and below
    constexpr double Legend = 88; // with a margin
    constexpr double Rose = 110;
    const double width = view.width();
    const double height = view.height();
    const double scale = std::min((width - 2 * Side) / 360, (height - 2 * Above) / 180);
    lmx::TWorldViewport& viewport = *view.GetViewport();
    const lmx::extended percent = std::floor(std::max(scale, 0.1) * view.GetDeviceRatio() * 100);
    viewport.SetScale(percent / 100); // to the last digit what its text says
    viewport.SetCenter({0, 0});

    const double map = 180 * static_cast<double>(viewport.GetScale()) / view.GetDeviceRatio();
    const double top = (height - map) / 2;
    TSheet sheet(view);
    sheet.AddText(QStringLiteral("Sea surface temperature in January"), 20, {lmx::TFontStyle::fsBold},
                  {0, top - 52, width, 40}, {akLeft, akTop, akRight});
    sheet.AddText(QStringLiteral("\u00B0C"), 9, {}, {width - Legend + 3, top, 60, 20}, {akTop, akRight},
                  lmx::TAlignment::taLeftJustify);
    sheet.Add(std::make_unique<lmx::TLegendObjectLayerItem>(sheet.GetLayer(),
                                                            view.GetLayerManager()->FindLayer(TemperatureName),
                                                            lmx::TLegendOrientation::loVertical),
              {width - Legend, top + 20, Legend - 4, map - 40}, {akTop, akRight});
    sheet.Add(std::make_unique<lmx::TCompassRoseObjectLayerItem>(sheet.GetLayer()), {20, top + map - Rose, Rose, Rose},
              {akLeft, akBottom});
    sheet.AddText(QStringLiteral("Relief and temperature: NOAA. Coasts, rivers and places: Natural Earth."), 8, {},
                  {0, top + map + 10, width, 20}, {akLeft, akBottom, akRight});
}
