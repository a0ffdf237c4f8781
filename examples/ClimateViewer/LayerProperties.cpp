#include "LayerProperties.h"

#include <lmx/Dialogs/lmxLayerPropertiesDialog.h>
#include <lmx/Layers/lmxBaseMapLayer.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxOwnedDialog.h>

void ShowLayerProperties(lmx::TBaseMapLayer* layer, const QString& page, QWidget* parent) {
    lmx::GuardEvent(parent, [&] {
        lmx::TOwnedDialog<lmx::TLayerPropertiesDialog> dialog(parent);
        layer->InitPropertiesDialog(dialog.Get());
        dialog->SelectPage(page);
        dialog.Execute();
    });
}
