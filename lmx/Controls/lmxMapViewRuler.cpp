#include <lmx/Controls/lmxMapViewRuler.h>

#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Widgets/Private/lmxDeviceGrid.h>

#include <QColor>
#include <QPainter>

namespace lmx {

namespace {

constexpr int TickDistance = 15;
constexpr int TicksToAFullOne = 10;

} // namespace

TMapViewRuler::TMapViewRuler(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    resize(sizeHint());
}

void TMapViewRuler::SetOrientation(TMapRulerOrientation orientation) {
    if (orientation == FOrientation)
        return;
    FOrientation = orientation;
    update();
}

// A tick is a line from the edge that all ticks have in common, the one towards the map if horizontal and the outer one
// if vertical, across the strip or to its middle. Its end is left out.
void TMapViewRuler::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor::fromRgb(Color32(clBtnFace)));
    const QColor pen = QColor::fromRgb(Color32(clBtnShadow));
    const bool isHorizontal = FOrientation == TMapRulerOrientation::roHorizontal;
    const int count = (isHorizontal ? width() : height()) / TickDistance;
    for (int i = 0; i < count; ++i) {
        const bool isFull = i % TicksToAFullOne == 0;
        const int at = i * TickDistance;
        if (isHorizontal) {
            const int top = (isFull ? 0 : height() / 2) + 1;
            FillRectOnGrid(painter, QRectF(at, top, 1, height() - top), pen);
        } else {
            FillRectOnGrid(painter, QRectF(0, at, isFull ? width() : width() / 2, 1), pen);
        }
    }
}

} // namespace lmx
