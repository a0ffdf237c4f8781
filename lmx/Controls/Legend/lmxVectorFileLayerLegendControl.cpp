#include <lmx/Controls/Legend/lmxVectorFileLayerLegendControl.h>

namespace lmx {

TVectorFileLayerLegendControl::TVectorFileLayerLegendControl(QWidget* parent)
    : TColorLegendControl(parent, QStringLiteral("TVectorFileLayerLegendControl")) {}

TVectorFileLayerLegendControl* TVectorFileLayerLegendControl::CreateComp(QWidget* owner, TColor color) {
    auto* control = new TVectorFileLayerLegendControl(owner);
    control->SetShapeColor(color);
    return control;
}

} // namespace lmx
