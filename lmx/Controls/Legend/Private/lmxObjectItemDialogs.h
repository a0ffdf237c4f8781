#pragma once

class QWidget;

// The dialogs of annotations, as their legend control opens them: by the door from controls to dialogs. Each asks and
// waits; a dialog belongs to `parent`, and nothing changes if it is cancelled or goes with it. The layer, the
// annotation and whoever asked may be gone afterwards: what is gone by the time of the answer is left alone.

namespace lmx {

class TBaseObjectLayerItem;
class TCompassRoseObjectLayerItem;
class TLegendObjectLayerItem;
class TObjectMapLayer;
class TRectangleObjectTypeItem;
class TTextBoxObjectLayerItem;

/// Asks for a text, and adds a text box of it.
void AddTextBox(QWidget* parent, TObjectMapLayer& layer);
/// Asks for one of the rasters of the layer's stack, and adds its legend.
void AddLegend(QWidget* parent, TObjectMapLayer& layer);

/// The annotation tells of all changes at once.
void EditAnnotation(QWidget* parent, TTextBoxObjectLayerItem& item);
/// The annotation tells of all changes at once.
void EditAnnotation(QWidget* parent, TLegendObjectLayerItem& item);
/// Colours become opaque. The layer repaints, and nobody is told of the annotation.
void EditAnnotation(QWidget* parent, TCompassRoseObjectLayerItem& item);
/// The options that all annotations have; the annotation tells of each that is new.
void EditAnnotation(QWidget* parent, TRectangleObjectTypeItem& item);

} // namespace lmx
