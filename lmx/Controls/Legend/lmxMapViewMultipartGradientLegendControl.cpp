#include <lmx/Controls/Legend/lmxMapViewMultipartGradientLegendControl.h>

#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Controls/Legend/lmxMapViewGradientLegendControl.h>
#include <lmx/Runtime/lmxExtended.h>

#include <cmath>
#include <utility>

namespace lmx {

TMapViewMultipartGradientLegendControl::TMapViewMultipartGradientLegendControl(QWidget* parent)
    : TBaseLegendControl(parent, QStringLiteral("TMapViewMultipartGradientLegendControl")) {
    setAccessibleName(QStringLiteral("Legend"));
    resize(sizeHint());
}

TMapViewMultipartGradientLegendControl* TMapViewMultipartGradientLegendControl::CreateComp(
    QWidget* owner, std::shared_ptr<IMultipartGradientColorCalculator> multipartGradient) {
    auto* control = new TMapViewMultipartGradientLegendControl(owner);
    control->SetMultipartGradient(std::move(multipartGradient));
    return control;
}

void TMapViewMultipartGradientLegendControl::SetMultipartGradient(
    std::shared_ptr<IMultipartGradientColorCalculator> multipartGradient) {
    if (multipartGradient == FMultipartGradient)
        return;
    for (const auto& legend : std::exchange(FInnerLegends, {}))
        delete legend;
    FMultipartGradient = std::move(multipartGradient);
    if (!FMultipartGradient)
        return;
    CreateLegends();
    Layout();
}

void TMapViewMultipartGradientLegendControl::CreateLegends() {
    for (const auto& gradient : FMultipartGradient->GetGradients()) {
        if (!gradient)
            continue; // passed over in colouring, too
        auto* legend = TMapViewGradientLegendControl::CreateComp(this, gradient);
        legend->show();
        FInnerLegends.emplace_back(legend);
    }
}

TMapViewGradientLegendControl* TMapViewMultipartGradientLegendControl::GetInnerLegend(int index) const {
    return index >= 0 && index < GetInnerLegendCount() ? FInnerLegends[static_cast<std::size_t>(index)].data()
                                                       : nullptr;
}

void TMapViewMultipartGradientLegendControl::resizeEvent(QResizeEvent* event) {
    TBaseLegendControl::resizeEvent(event);
    Layout();
}

// Where the whole has no range to share, each part has the whole height.
void TMapViewMultipartGradientLegendControl::Layout() {
    if (!FMultipartGradient)
        return;
    const extended min = FMultipartGradient->GetMinVal();
    const extended range = static_cast<extended>(FMultipartGradient->GetMaxVal()) - min;
    const bool isShared = range != 0 && std::isfinite(range);
    const auto rowOf = [&](float value) { return RoundToPixel((1 - (value - min) / range) * height()); };
    for (const auto& legend : FInnerLegends) {
        if (!legend)
            continue;
        const IGradientColorCalculator& part = *legend->GetGradient();
        const int top = isShared ? rowOf(part.GetMaxVal()) : 0;
        const int bottom = isShared ? rowOf(part.GetMinVal()) : height();
        legend->setGeometry(0, top, width() - 1, bottom - top);
    }
}

} // namespace lmx
