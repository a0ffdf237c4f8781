#include <lmx/Controls/Legend/lmxDrawnLegendControl.h>

#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QFontInfo>
#include <QPainter>

namespace lmx {

TDrawnLegendControl::TDrawnLegendControl(QWidget* parent, const QString& className)
    : TBaseLegendControl(parent, className) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void TDrawnLegendControl::SetColor(TColor color) {
    if (color == FColor)
        return;
    FColor = color;
    LegendChanged();
}

void TDrawnLegendControl::LegendChanged() {
    FHasFailed = false;
    update();
}

QString TDrawnLegendControl::FontName() const {
    return font().family();
}

// A font whose size was given in pixels has no points of its own.
int TDrawnLegendControl::FontSize() const {
    if (font().pointSize() > 0)
        return font().pointSize();
    constexpr extended PointsOfAPixel = 72.0L / 96;
    return static_cast<int>(Round(font().pixelSize() * PointsOfAPixel));
}

void TDrawnLegendControl::paintEvent(QPaintEvent*) {
    const double ratio = devicePixelRatioF();
    const auto pixels = [ratio](int units) { return RoundToPixel(units * static_cast<extended>(ratio)); };
    TBitmap32 bitmap(pixels(width()), pixels(height()));
    bitmap.SetDeviceRatio(ratio);
    bitmap.Clear(Color32(FColor));
    if (!FHasFailed)
        FHasFailed = !GuardEvent(this, [&] { DrawLegend(bitmap); });
    QPainter painter(this);
    bitmap.PaintTo(painter, ratio);
}

} // namespace lmx
