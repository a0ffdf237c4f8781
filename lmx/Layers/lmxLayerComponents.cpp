
#include <lmx/Layers/Private/lmxLayerComponents.h>

#include <lmx/Controls/Legend/lmxBaseLegendControl.h>

#include <QPointer>

namespace lmx {

QObject* LegendControlObject(TBaseLegendControl* control) {
    return control;
}

void FreeLegendControl(TBaseLegendControl* control) {
    const QPointer<TBaseLegendControl> living(control); // the form that it leaves may delete it
    control->hide();
    if (living)
        control->setParent(nullptr);
    if (living)
        control->deleteLater();
}

} // namespace lmx
