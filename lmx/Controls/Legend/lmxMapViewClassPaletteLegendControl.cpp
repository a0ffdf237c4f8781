#include <lmx/Controls/Legend/lmxMapViewClassPaletteLegendControl.h>

#include <lmx/Colour/Legend/lmxPaletteLegendPainter.h>
#include <lmx/Colour/lmxColorClassCalculator.h>

#include <utility>

namespace lmx {

TMapViewClassPaletteLegendControl::TMapViewClassPaletteLegendControl(QWidget* parent)
    : TPaletteLegendControl(parent, QStringLiteral("TMapViewClassPaletteLegendControl")) {}

TMapViewClassPaletteLegendControl*
TMapViewClassPaletteLegendControl::CreateComp(QWidget* owner, std::shared_ptr<IColorClassCalculator> colorClasses) {
    auto* control = new TMapViewClassPaletteLegendControl(owner);
    control->SetColorClasses(std::move(colorClasses));
    return control;
}

void TMapViewClassPaletteLegendControl::SetColorClasses(std::shared_ptr<IColorClassCalculator> colorClasses) {
    if (colorClasses == FColorClasses)
        return;
    FColorClasses = std::move(colorClasses);
    SetItems(PaletteLegendPainter_GetItems(FColorClasses.get()));
}

} // namespace lmx
