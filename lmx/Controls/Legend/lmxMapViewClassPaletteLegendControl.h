#pragma once

#include <lmx/Controls/Legend/lmxPaletteLegendControl.h>
#include <lmx/Runtime/lmxExport.h>

#include <memory>

namespace lmx {

class IColorClassCalculator;

/// The legend of colour classes: a row for each colour. The rows are those of the moment at which the calculator was
/// set.
class LMX_EXPORT TMapViewClassPaletteLegendControl : public TPaletteLegendControl {
public:
    explicit TMapViewClassPaletteLegendControl(QWidget* parent = nullptr);

    static TMapViewClassPaletteLegendControl* CreateComp(QWidget* owner,
                                                         std::shared_ptr<IColorClassCalculator> colorClasses);

    const std::shared_ptr<IColorClassCalculator>& GetColorClasses() const { return FColorClasses; }
    /// Takes the rows anew; nil leaves none, and then the control must not be shown.
    void SetColorClasses(std::shared_ptr<IColorClassCalculator> colorClasses);

private:
    std::shared_ptr<IColorClassCalculator> FColorClasses;
};

} // namespace lmx
