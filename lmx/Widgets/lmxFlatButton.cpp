#include <lmx/Widgets/lmxFlatButton.h>

#include <lmx/Widgets/lmxEventGuard.h>

#include <QEvent>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QStyleOptionToolButton>

namespace lmx {

TFlatButton::TFlatButton(QWidget* parent) : QAbstractButton(parent) {
    setAttribute(Qt::WA_Hover);
}

void TFlatButton::SetHint(const QString& hint) {
    setToolTip(hint);
    setAccessibleName(hint);
}

QColor TFlatButton::GetInk() const {
    return palette().color(QPalette::Active, QPalette::ButtonText);
}

void TFlatButton::PaintFace(QPainter& canvas) {
    QStyleOptionToolButton face;
    face.initFrom(this);
    face.state |= QStyle::State_AutoRaise;
    const bool isUnderMouse = isEnabled() && underMouse();
    if (isDown())
        face.state |= QStyle::State_Sunken;
    else if (isUnderMouse)
        face.state |= QStyle::State_Raised;
    if (isDown() || isUnderMouse)
        style()->drawPrimitive(QStyle::PE_PanelButtonTool, &face, &canvas, this);
    if (hasFocus()) {
        QStyleOptionFocusRect mark;
        mark.initFrom(this);
        mark.backgroundColor = palette().color(QPalette::Window);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &mark, &canvas, this);
    }
}

void TFlatButton::paintEvent(QPaintEvent*) {
    QPainter canvas(this);
    PaintFace(canvas);
    canvas.setOpacity(isEnabled() ? 1 : 0.4);
    if (!FPaintFailed)
        FPaintFailed = !GuardEvent(this, [&] { PaintContent(canvas); });
}

void TFlatButton::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        FPaintFailed = false;
    QAbstractButton::changeEvent(event);
}

} // namespace lmx
