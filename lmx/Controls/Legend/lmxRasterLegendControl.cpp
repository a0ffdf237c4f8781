#include <lmx/Controls/Legend/lmxRasterLegendControl.h>

#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Controls/Legend/lmxMapViewBasicPaletteLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewClassPaletteLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewGradientLegendControl.h>
#include <lmx/Controls/Legend/lmxMapViewMultipartGradientLegendControl.h>

#include <QApplication>

namespace lmx {

TBaseLegendControl* CreateLegendControlOf(QWidget* owner, const std::shared_ptr<IBaseColorCalculator>& calculator) {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) // widgets need an application of widgets
        return nullptr;
    if (const auto gradient = std::dynamic_pointer_cast<IGradientColorCalculator>(calculator))
        return TMapViewGradientLegendControl::CreateComp(owner, gradient);
    if (const auto palette = std::dynamic_pointer_cast<IBasicPaletteColorCalculator>(calculator))
        return TMapViewBasicPaletteLegendControl::CreateComp(owner, palette);
    if (const auto classes = std::dynamic_pointer_cast<IColorClassCalculator>(calculator))
        return TMapViewClassPaletteLegendControl::CreateComp(owner, classes);
    if (const auto parts = std::dynamic_pointer_cast<IMultipartGradientColorCalculator>(calculator))
        return TMapViewMultipartGradientLegendControl::CreateComp(owner, parts);
    return nullptr;
}

} // namespace lmx
