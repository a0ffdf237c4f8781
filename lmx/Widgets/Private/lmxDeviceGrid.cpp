#include <lmx/Widgets/Private/lmxDeviceGrid.h>

#include <lmx/Runtime/lmxExtended.h>

#include <QTransform>

#include <algorithm>
#include <cmath>

namespace lmx {

namespace {

// Halves go down and to the right, as Qt's clips do: what begins at a widget's edge is inside of it.
QPointF Rounded(QPointF point) {
    const auto nearest = [](double value) { return RoundToPixel(std::floor(value + 0.5)); };
    return QPointF(nearest(point.x()), nearest(point.y()));
}

/// A rectangle of whole device pixels.
QRectF OnGrid(const QTransform& toDevice, const QRectF& rect) {
    const QRectF exact = toDevice.mapRect(rect);
    const QPointF sides = Rounded({exact.width(), exact.height()});
    return {Rounded(exact.topLeft()), QSizeF(std::max(sides.x(), 1.0), std::max(sides.y(), 1.0))};
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
    painter.fillRect(toDevice.inverted().mapRect(OnGrid(toDevice, rect)), color);
}

void DrawBoxOnGrid(QPainter& painter, const QRectF& rect, const QColor& frame, const QColor& fill) {
    if (rect.isEmpty())
        return;
    const QTransform toDevice = painter.deviceTransform();
    const QRectF whole = OnGrid(toDevice, rect);
    const double line = OnGrid(toDevice, QRectF(0, 0, 1, 1)).width();
    const QTransform toPainter = toDevice.inverted();
    painter.fillRect(toPainter.mapRect(whole), frame);
    painter.fillRect(toPainter.mapRect(whole.adjusted(line, line, -line, -line)), fill);
}

} // namespace lmx
