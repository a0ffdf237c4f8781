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

#include <algorithm>

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

QSize TColorShape::sizeHint() const {
    return {60, std::max(22, fontMetrics().height() + 4)};
}

// The field reaches to the edges, as the fields above and below it do. The mark of the focus stands inside, on ground
// of the window's colour, so that it stands off any colour.
void TColorShape::paintEvent(QPaintEvent*) {
    constexpr int MarkRoom = 3;
    QPainter painter(this);
    QRect field = rect();
    if (hasFocus()) {
        DrawBoxOnGrid(painter, field, palette().color(QPalette::Highlight), palette().color(QPalette::Window));
        field.adjust(MarkRoom, MarkRoom, -MarkRoom, -MarkRoom);
    }
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
