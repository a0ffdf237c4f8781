#pragma once

#include <memory>

class QObject;

// The one door from layers upwards: what a layer has made of the controls and dialogs that are about it. Where no
// QApplication exists there are no controls, and it answers nil.

namespace lmx {

class IBaseColorCalculator;
class TBaseLegendControl;

/// The object that a legend control is, to watch whether it still lives.
QObject* LegendControlObject(TBaseLegendControl* control);

/// Frees a legend control that a layer has taken off. It is often replaced from within one of its own events, so it
/// leaves its form now and goes when that event is over.
void FreeLegendControl(TBaseLegendControl* control);

/// The legend of a raster with that calculator: of a gradient, a basic palette, colour classes or a gradient in parts,
/// whichever it is first; nil for any other calculator.
TBaseLegendControl* CreateRasterLegendControl(const std::shared_ptr<IBaseColorCalculator>& calculator);

} // namespace lmx
