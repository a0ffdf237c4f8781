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
    Layout();
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
    Layout();
}

void TMapViewGradientLegendControl::SetTicks(TTicks ticks) {
    if (ticks == FTicks)
        return;
    FTicks = ticks;
    Layout();
}

void TMapViewGradientLegendControl::SetBorderColor(TColor color) {
    if (color == FBorderColor)
        return;
    FBorderColor = color;
    LegendChanged();
}

void TMapViewGradientLegendControl::resizeEvent(QResizeEvent* event) {
    TDrawnLegendControl::resizeEvent(event);
    Layout();
}

void TMapViewGradientLegendControl::Layout() {
    const int line = QFontMetrics(font()).height();
    const int half = line / 2;
    FBarRect = {0, FTicks.Contains(TTick::tkHigh) ? half : 0, FBarSize,
                FTicks.Contains(TTick::tkLow) ? height() - half : height()};
    const auto place = [&](TTick tick, int middle) {
        TRect& rect = FTickRects[static_cast<std::size_t>(tick)];
        rect = {};
        if (FTicks.Contains(tick))
            rect = {FBarRect.Right + LabelGap, middle - half, width(), middle - half + line};
    };
    place(TTick::tkLow, FBarRect.Bottom);
    place(TTick::tkMid, FBarRect.Top + FBarRect.GetHeight() / 2);
    place(TTick::tkHigh, FBarRect.Top);
    LegendChanged();
}

void TMapViewGradientLegendControl::DrawLegend(TBitmap32& bitmap) const {
    const std::int32_t barSize = RoundToPixel(FBarSize * static_cast<extended>(bitmap.GetDeviceRatio()));
    GradientLegendPainter_Paint(bitmap, TLegendOrientation::loVertical, barSize, FGradient.get(), FTicks,
                                Color32(clBtnFace), Color32(clBtnText), Color32(clBtnText), FontName(), FontSize(), {},
                                QStringLiteral("%.3f"));
}

} // namespace lmx
