#include <lmx/Controls/Legend/lmxMapViewGradientLegendControl.h>

#include <lmx/Colour/Legend/lmxGradientLegendPainter.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxExtended.h>

#include <QFontMetrics>

#include <utility>

namespace lmx {

namespace {

constexpr int LabelGap = 4;

} // namespace

TMapViewGradientLegendControl::TMapViewGradientLegendControl(QWidget* parent)
    : TDrawnLegendControl(parent, QStringLiteral("TMapViewGradientLegendControl")) {
    setAccessibleName(QStringLiteral("Legend"));
    resize(sizeHint());
}

TMapViewGradientLegendControl*
TMapViewGradientLegendControl::CreateComp(QWidget* owner, std::shared_ptr<IGradientColorCalculator> gradient) {
    auto* control = new TMapViewGradientLegendControl(owner);
    control->SetGradient(std::move(gradient));
    return control;
}

void TMapViewGradientLegendControl::SetGradient(std::shared_ptr<IGradientColorCalculator> gradient) {
    if (gradient == FGradient)
        return;
    FGradient = std::move(gradient);
    LegendChanged();
}

void TMapViewGradientLegendControl::SetBarSize(int size) {
    if (size == FBarSize)
        return;
    FBarSize = size;
    LegendChanged();
}

void TMapViewGradientLegendControl::SetTicks(TTicks ticks) {
    if (ticks == FTicks)
        return;
    FTicks = ticks;
    LegendChanged();
}

void TMapViewGradientLegendControl::SetBorderColor(TColor color) {
    if (color == FBorderColor)
        return;
    FBorderColor = color;
    LegendChanged();
}

TRect TMapViewGradientLegendControl::GetBarRect() const {
    const int half = QFontMetrics(font()).height() / 2;
    return {0, FTicks.Contains(TTick::tkHigh) ? half : 0, FBarSize,
            FTicks.Contains(TTick::tkLow) ? height() - half : height()};
}

TRect TMapViewGradientLegendControl::GetTickRect(TTick tick) const {
    const TRect bar = GetBarRect();
    const int line = QFontMetrics(font()).height();
    const auto around = [&](int middle) {
        const int top = middle - line / 2;
        return TRect(bar.Right + LabelGap, top, width(), top + line);
    };
    if (!FTicks.Contains(tick))
        return {};
    switch (tick) {
    case TTick::tkLow:
        return around(bar.Bottom);
    case TTick::tkMid:
        return around(bar.Top + bar.GetHeight() / 2);
    case TTick::tkHigh:
        return around(bar.Top);
    case TTick::tkLowMid:
    case TTick::tkMidHigh:
        break;
    }
    return {};
}

void TMapViewGradientLegendControl::DrawLegend(TBitmap32& bitmap) const {
    const std::int32_t barSize = RoundToPixel(FBarSize * static_cast<extended>(bitmap.GetDeviceRatio()));
    GradientLegendPainter_Paint(bitmap, TLegendOrientation::loVertical, barSize, FGradient.get(), FTicks,
                                Color32(clBtnFace), Color32(clBtnText), Color32(clBtnText), FontName(), FontSize(), {},
                                QStringLiteral("%.3f"));
}

} // namespace lmx
