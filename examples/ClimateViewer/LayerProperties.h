#pragma once

#include <QString>

class QWidget;

namespace lmx {
class TBaseMapLayer;
} // namespace lmx

/// Lets the user look at the properties of a layer and change them. The layer may go while the dialog is open. `page`
/// is what the dialog opens on, if the layer has a page of that name; otherwise it is the first one. What fails is
/// shown in an error box.
void ShowLayerProperties(lmx::TBaseMapLayer* layer, const QString& page, QWidget* parent);
