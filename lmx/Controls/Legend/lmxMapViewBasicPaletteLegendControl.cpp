#include <lmx/Controls/Legend/lmxMapViewBasicPaletteLegendControl.h>

#include <lmx/Colour/Legend/lmxPaletteLegendPainter.h>
#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>

#include <utility>

namespace lmx {

TMapViewBasicPaletteLegendControl::TMapViewBasicPaletteLegendControl(QWidget* parent)
    : TPaletteLegendControl(parent, QStringLiteral("TMapViewBasicPaletteLegendControl")) {}

TMapViewBasicPaletteLegendControl*
TMapViewBasicPaletteLegendControl::CreateComp(QWidget* owner, std::shared_ptr<IBasicPaletteColorCalculator> palette) {
    auto* control = new TMapViewBasicPaletteLegendControl(owner);
    control->SetPalette(std::move(palette));
    return control;
}

void TMapViewBasicPaletteLegendControl::SetPalette(std::shared_ptr<IBasicPaletteColorCalculator> palette) {
    if (palette == FPalette)
        return;
    FPalette = std::move(palette);
    SetItems(PaletteLegendPainter_GetItems(FPalette.get()));
}

} // namespace lmx
