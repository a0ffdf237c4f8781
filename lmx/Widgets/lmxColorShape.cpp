#include <lmx/Widgets/lmxColorShape.h>

#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Widgets/Private/lmxColorField.h>
#include <lmx/Widgets/Private/lmxDeviceGrid.h>
#include <lmx/Widgets/lmxColorChooser.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QColor>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionFocusRect>

namespace lmx {

TColorShape::TColorShape(QWidget* parent) : QAbstractButton(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    SetColor(clWhite);
    GuardClick(this, [this] { SelectColor(); });
}

void TColorShape::SetColor(TColor color) {
    if (color == FColor)
        return;
    FColor = color;
    setAccessibleDescription(QColor::fromRgb(Color32(color)).name().toUpper());
    update();
}

void TColorShape::SelectColor() {
    const QPointer<TColorShape> self(this); // it may go while the user chooses
    const auto chooser = TColorChooserFactory::GetObject();
    chooser->SetColor(FColor);
    if (chooser->Execute(window()) && self)
        SetColor(chooser->GetColor());
}

void TColorShape::paintEvent(QPaintEvent*) {
    constexpr int FocusRoom = 3; // around the field, so that the mark stands off any colour
    QPainter painter(this);
    if (hasFocus()) {
        QStyleOptionFocusRect mark;
        mark.initFrom(this);
        mark.backgroundColor = palette().color(QPalette::Window);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &mark, &painter, this);
    }
    const QRect field = rect().adjusted(FocusRoom, FocusRoom, -FocusRoom, -FocusRoom);
    DrawImageOnGrid(
        painter, field.topLeft(),
        RenderColorField(field.size(), devicePixelRatioF(), Color32(FColor), palette().color(QPalette::WindowText)));
}

// The choice begins with the press, whichever button it is; the release belongs to what came up since.
void TColorShape::mousePressEvent(QMouseEvent* event) {
    event->accept();
    click();
}

void TColorShape::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
}

} // namespace lmx
