#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <memory>

class QWidget;

namespace lmx {

class IBaseColorCalculator;
class TBaseLegendControl;

/// The legend control of a calculator: of a gradient, a basic palette, colour classes or a gradient in parts, whichever
/// it is first; nil for any other calculator, and where there is no QApplication. For layers of hosts' own.
LMX_EXPORT TBaseLegendControl* CreateLegendControlOf(QWidget* owner,
                                                     const std::shared_ptr<IBaseColorCalculator>& calculator);

} // namespace lmx
