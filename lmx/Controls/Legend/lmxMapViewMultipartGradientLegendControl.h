#pragma once

#include <lmx/Controls/Legend/lmxBaseLegendControl.h>
#include <lmx/Runtime/lmxExport.h>

#include <QPointer>

#include <memory>
#include <vector>

namespace lmx {

class IMultipartGradientColorCalculator;
class TMapViewGradientLegendControl;

/// The legend of a gradient in parts: a legend for each part, stacked by its share of the values, highest on top. Parts
/// and ranges are those of the moment at which the calculator was set.
class LMX_EXPORT TMapViewMultipartGradientLegendControl : public TBaseLegendControl {
public:
    explicit TMapViewMultipartGradientLegendControl(QWidget* parent = nullptr);

    static TMapViewMultipartGradientLegendControl*
    CreateComp(QWidget* owner, std::shared_ptr<IMultipartGradientColorCalculator> multipartGradient);

    const std::shared_ptr<IMultipartGradientColorCalculator>& GetMultipartGradient() const {
        return FMultipartGradient;
    }
    void SetMultipartGradient(std::shared_ptr<IMultipartGradientColorCalculator> multipartGradient);

    /// The legend of a part, in the order of the calculator's list; nil for an index outside it.
    TMapViewGradientLegendControl* GetInnerLegend(int index) const;
    int GetInnerLegendCount() const { return static_cast<int>(FInnerLegends.size()); }

    QSize sizeHint() const override { return {120, 300}; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void CreateLegends();
    void Layout();

    std::shared_ptr<IMultipartGradientColorCalculator> FMultipartGradient;
    std::vector<QPointer<TMapViewGradientLegendControl>> FInnerLegends;
};

} // namespace lmx
