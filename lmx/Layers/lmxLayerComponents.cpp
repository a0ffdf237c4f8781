
#include <lmx/Layers/Private/lmxLayerComponents.h>

#include <lmx/Controls/Legend/lmxBaseLegendControl.h>
#include <lmx/Controls/Legend/lmxObjectLayerLegendControl.h>
#include <lmx/Controls/Legend/lmxRasterLegendControl.h>
#include <lmx/Controls/Legend/lmxShapeFileLayerLegendControl.h>
#include <lmx/Controls/Legend/lmxVectorFileLayerLegendControl.h>
#include <lmx/Dialogs/lmxLayerPropertiesAttributesFrame.h>
#include <lmx/Dialogs/lmxLayerPropertiesBoundsFrame.h>
#include <lmx/Dialogs/lmxLayerPropertiesDialog.h>
#include <lmx/Dialogs/lmxLayerPropertiesDisplayFrame.h>
#include <lmx/Dialogs/lmxLayerPropertiesImageHeaderFrame.h>
#include <lmx/Layers/lmxBaseMapLayer.h>

#include <QApplication>
#include <QPointer>

#include <utility>

namespace lmx {

namespace {

// Widgets need an application of widgets.
bool CanHaveControls() {
    return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
}

} // namespace

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

TBaseLegendControl* CreateRasterLegendControl(const std::shared_ptr<IBaseColorCalculator>& calculator) {
    return CreateLegendControlOf(nullptr, calculator);
}

TBaseLegendControl* CreateShapeFileLegendControl(TShpFile* shpFile, TColor color, TLegendColorEvent onColorChanged) {
    if (!CanHaveControls())
        return nullptr;
    return TakeShapeFileLegendControl(TShapeFileLayerLegendControl::CreateComp(nullptr, shpFile, color),
                                      std::move(onColorChanged));
}

TBaseLegendControl* TakeShapeFileLegendControl(TBaseLegendControl* supplied, TLegendColorEvent onColorChanged) {
    auto* control = dynamic_cast<TShapeFileLayerLegendControl*>(supplied);
    if (control)
        control->SetOnColorChanged(std::move(onColorChanged));
    return control;
}

TBaseLegendControl* CreateVectorFileLegendControl(TColor color, TLegendColorEvent onColorChanged) {
    if (!CanHaveControls())
        return nullptr;
    auto* control = TVectorFileLayerLegendControl::CreateComp(nullptr, color);
    control->SetOnColorChanged(std::move(onColorChanged));
    return control;
}

TBaseLegendControl* CreateObjectLegendControl(TObjectMapLayer* layer) {
    return CanHaveControls() ? TObjectLayerLegendControl::CreateComp(nullptr, layer) : nullptr;
}

void ShowLegendColor(TBaseLegendControl* legend, TColor color) {
    if (auto* control = dynamic_cast<TColorLegendControl*>(legend))
        control->SetShapeColor(color);
}

void AddBoundsPage(TLayerPropertiesDialog& dialog, TBaseMapLayer& layer) {
    dialog.AddOptionFrame(std::make_unique<TLayerPropertiesBoundsOptionFrame>(&layer));
}

void AddAttributesPage(TLayerPropertiesDialog& dialog, TBaseMapLayer& layer) {
    dialog.AddOptionFrame(
        std::make_unique<TLayerPropertiesAttributesOptionFrame>(&layer.GetAttributes(), layer.GetLifetime().Watch()));
}

void AddDisplayPage(TLayerPropertiesDialog& dialog, TRasterMapLayer& layer) {
    dialog.AddOptionFrame(std::make_unique<TLayerPropertiesDisplayOptionFrame>(&layer));
}

void AddImageHeaderPage(TLayerPropertiesDialog& dialog, const TImageHeader& header) {
    dialog.AddOptionFrame(std::make_unique<TLayerPropertiesImageHeaderOptionFrame>(header));
}

} // namespace lmx
