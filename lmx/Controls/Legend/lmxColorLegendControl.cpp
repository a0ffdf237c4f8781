#include <lmx/Controls/Legend/lmxColorLegendControl.h>

#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Widgets/Private/lmxDeviceGrid.h>
#include <lmx/Widgets/lmxColorChooser.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QColor>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionFocusRect>

#include <algorithm>

namespace lmx {

namespace {

constexpr int Margin = 4;
constexpr int SwatchGap = 2;
constexpr int LeastHeight = 20;

QColor ToQColor(TColor color) {
    return QColor::fromRgb(Color32(color));
}

QRect ToQRect(const TRect& rect) {
    return {rect.Left, rect.Top, rect.GetWidth(), rect.GetHeight()};
}

} // namespace

TColorLegendControl::TColorLegendControl(QWidget* parent, const QString& className)
    : TBaseLegendControl(parent, className) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(QStringLiteral("Color"));
    setAccessibleDescription(ToQColor(FShapeColor).name().toUpper());
    TColorLegendControl::Layout();
}

void TColorLegendControl::SetColor(TColor color) {
    if (color == FColor)
        return;
    FColor = color;
    update();
}

void TColorLegendControl::SetShapeColor(TColor color) {
    if (color == FShapeColor)
        return;
    FShapeColor = color;
    setAccessibleDescription(ToQColor(color).name().toUpper());
    update();
}

void TColorLegendControl::SetColorLabelText(const QString& text) {
    if (text == FColorLabelText)
        return;
    FColorLabelText = text;
    Layout();
    updateGeometry();
    update();
}

void TColorLegendControl::Layout() {
    const QFontMetrics metrics(font());
    const int side = std::max(LeastHeight, metrics.height());
    FLabelRect = {Margin, Margin, Margin + metrics.horizontalAdvance(FColorLabelText), Margin + side};
    const int left = FLabelRect.Right + SwatchGap;
    FColorRect = {left, Margin, left + side, Margin + side};
}

int TColorLegendControl::HitTest(TPoint point) const {
    if (FLabelRect.Contains(point))
        return 1;
    return FColorRect.Contains(point) ? 2 : 0;
}

int TColorLegendControl::GetSuggestedHeight() const {
    return 2 * QFontMetrics(font()).height() + 10;
}

QSize TColorLegendControl::sizeHint() const {
    return {FColorRect.Right + Margin, GetSuggestedHeight()};
}

void TColorLegendControl::ChooseColor() {
    const QPointer<TColorLegendControl> self(this); // may be freed while somebody chooses, and while it tells
    const auto chooser = TColorChooserFactory::GetObject();
    chooser->SetColor(FShapeColor);
    if (chooser->Execute(window()) && self)
        FOnColorChanged(this, chooser->GetColor());
}

void TColorLegendControl::paintEvent(QPaintEvent*) {
    QPainter canvas(this);
    canvas.fillRect(rect(), ToQColor(FColor));
    canvas.setPen(ToQColor(clBtnText));
    canvas.drawText(ToQRect(FLabelRect), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, FColorLabelText);
    DrawBoxOnGrid(canvas, QRectF(ToQRect(FColorRect)), QColor(Qt::black), ToQColor(FShapeColor));
    if (!hasFocus())
        return;
    QStyleOptionFocusRect mark;
    mark.initFrom(this);
    mark.rect = ToQRect(FColorRect).adjusted(-2, -2, 2, 2);
    mark.backgroundColor = ToQColor(FColor);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &mark, &canvas, this);
}

void TColorLegendControl::resizeEvent(QResizeEvent* event) {
    TBaseLegendControl::resizeEvent(event);
    Layout();
}

void TColorLegendControl::mousePressEvent(QMouseEvent* event) {
    event->accept();
    const TPoint point(static_cast<std::int32_t>(Floor(event->position().x())),
                       static_cast<std::int32_t>(Floor(event->position().y())));
    if (HitTest(point) == 2)
        GuardEvent(this, [this] { ChooseColor(); });
}

void TColorLegendControl::keyPressEvent(QKeyEvent* event) {
    const bool isChoice =
        event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isChoice || event->isAutoRepeat()) {
        TBaseLegendControl::keyPressEvent(event);
        return;
    }
    event->accept();
    GuardEvent(this, [this] { ChooseColor(); });
}

void TColorLegendControl::focusInEvent(QFocusEvent* event) {
    TBaseLegendControl::focusInEvent(event);
    update();
}

void TColorLegendControl::focusOutEvent(QFocusEvent* event) {
    TBaseLegendControl::focusOutEvent(event);
    update();
}

} // namespace lmx
