
#include <lmx/Layers/Private/lmxLayerComponents.h>

#include <lmx/Controls/Legend/lmxBaseLegendControl.h>

namespace lmx {

QObject* LegendControlObject(TBaseLegendControl* control) {
    return control;
}

void FreeLegendControl(TBaseLegendControl* control) {
    control->hide();
    control->setParent(nullptr);
    control->deleteLater();
}

} // namespace lmx
