#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Widgets/lmxDeviceGrid.h>

#include <QTransform>

#include <algorithm>

namespace lmx {

namespace {

QPointF Rounded(QPointF point) {
    return QPointF(RoundToPixel(point.x()), RoundToPixel(point.y()));
}

} // namespace

void DrawImageOnGrid(QPainter& painter, QPointF topLeft, const QImage& image) {
    const QTransform toDevice = painter.deviceTransform();
    painter.drawImage(toDevice.inverted().map(Rounded(toDevice.map(topLeft))), image);
}

void FillRectOnGrid(QPainter& painter, const QRectF& rect, const QColor& color) {
    if (rect.isEmpty())
        return;
    const QTransform toDevice = painter.deviceTransform();
    const QRectF exact = toDevice.mapRect(rect);
    const QPointF corner = Rounded(exact.topLeft());
    const QPointF sides = Rounded({exact.width(), exact.height()});
    const QSizeF size(std::max(sides.x(), 1.0), std::max(sides.y(), 1.0));
    painter.fillRect(toDevice.inverted().mapRect(QRectF(corner, size)), color);
}

} // namespace lmx
