#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxEvent.h>

#include <memory>

class QObject;

// The one door from layers upwards: what a layer has made of the controls and dialogs that are about it. Where no
// QApplication exists there are no controls, and it answers nil.

namespace lmx {

class IBaseColorCalculator;
class TBaseLegendControl;
class TBaseMapLayer;
class TImageHeader;
class TLayerPropertiesDialog;
class TObjectMapLayer;
class TRasterMapLayer;
class TShpFile;

/// The object that a legend control is, to watch whether it still lives.
QObject* LegendControlObject(TBaseLegendControl* control);

/// Frees a legend control that a layer has taken off. It is often replaced from within one of its own events, so it
/// leaves its form now and goes when that event is over.
void FreeLegendControl(TBaseLegendControl* control);

/// The legend of a raster with that calculator: of a gradient, a basic palette, colour classes or a gradient in parts,
/// whichever it is first; nil for any other calculator.
TBaseLegendControl* CreateRasterLegendControl(const std::shared_ptr<IBaseColorCalculator>& calculator);

/// What a legend of one colour tells: itself, and the colour that the user has chosen.
using TLegendColorEvent = TEvent<TBaseLegendControl*, TColor>;

/// The legend of a shape file.
TBaseLegendControl* CreateShapeFileLegendControl(TShpFile* shpFile, TColor color, TLegendColorEvent onColorChanged);
/// What a host has supplied, if it is a legend of shape files, and tells the layer from now on; else nil.
TBaseLegendControl* TakeShapeFileLegendControl(TBaseLegendControl* supplied, TLegendColorEvent onColorChanged);
/// The legend of a vector file.
TBaseLegendControl* CreateVectorFileLegendControl(TColor color, TLegendColorEvent onColorChanged);
/// The legend of an object layer, in which its annotations are edited; nil where there is none of that kind.
TBaseLegendControl* CreateObjectLegendControl(TObjectMapLayer* layer);
/// Shows a colour in a legend of one colour.
void ShowLegendColor(TBaseLegendControl* legend, TColor color);

/// Append a page about a layer to its properties dialog. A page whose layer has gone applies nothing.
void AddBoundsPage(TLayerPropertiesDialog& dialog, TBaseMapLayer& layer);
void AddAttributesPage(TLayerPropertiesDialog& dialog, TBaseMapLayer& layer);
void AddDisplayPage(TLayerPropertiesDialog& dialog, TRasterMapLayer& layer); ///< raises without a calculator
void AddImageHeaderPage(TLayerPropertiesDialog& dialog, const TImageHeader& header);

} // namespace lmx
