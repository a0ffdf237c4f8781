#include <lmx/Widgets/lmxGlyphPainter.h>

#include <lmx/Runtime/lmxExtended.h>

#include <QPen>
#include <QPolygonF>

#include <algorithm>

namespace lmx {

namespace {

QSize DeviceSize(TSize size, double ratio) {
    return {static_cast<int>(Ceil(size.cx * ratio)), static_cast<int>(Ceil(size.cy * ratio))};
}

} // namespace

TGlyphPainter::TGlyphPainter(QPainter& painter, TSize size, double ratio, const QColor& ink)
    : FPainter(painter),
      FSize(size),
      FRatio(ratio),
      FDeviceSize(DeviceSize(size, ratio)) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink, 1, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(ink);
    SetStrokeWidth(1.5);
}

QPointF TGlyphPainter::ToDevice(QPointF point) const {
    const auto snapped = [this](double logical, int side, int deviceSide) {
        return deviceSide / 2.0 + RoundToPixel((logical - side / 2.0) * FRatio);
    };
    return {snapped(point.x(), FSize.cx, FDeviceSize.width()), snapped(point.y(), FSize.cy, FDeviceSize.height())};
}

QPolygonF TGlyphPainter::ToDevice(std::initializer_list<QPointF> points) const {
    QPolygonF polygon;
    for (const QPointF& point : points)
        polygon.append(ToDevice(point));
    return polygon;
}

// Even where the middle of the picture lies between two pixels, odd where it lies on one.
double TGlyphPainter::WholePixels(double length) const {
    const int odd = FDeviceSize.width() % 2;
    return std::max(2 * RoundToPixel((length * FRatio - odd) / 2) + odd, 2 - odd);
}

void TGlyphPainter::SetStrokeWidth(double width) {
    QPen pen = FPainter.pen();
    pen.setWidthF(WholePixels(width));
    FPainter.setPen(pen);
}

void TGlyphPainter::Polyline(std::initializer_list<QPointF> points) {
    FPainter.drawPolyline(ToDevice(points));
}

void TGlyphPainter::Outline(std::initializer_list<QPointF> corners) {
    QPainterPath path;
    path.addPolygon(ToDevice(corners));
    path.closeSubpath();
    FPainter.strokePath(path, FPainter.pen());
}

void TGlyphPainter::Polygon(std::initializer_list<QPointF> corners) {
    QPainterPath path;
    path.addPolygon(ToDevice(corners));
    path.closeSubpath();
    FPainter.fillPath(path, FPainter.brush());
}

void TGlyphPainter::Circle(QPointF center, double radius) {
    QPainterPath path;
    const double whole = RoundToPixel(radius * FRatio);
    path.addEllipse(ToDevice(center), whole, whole);
    FPainter.strokePath(path, FPainter.pen());
}

void TGlyphPainter::Dot(QPointF center, double side) {
    const double whole = WholePixels(side);
    const QPointF half(whole / 2, whole / 2);
    FPainter.fillRect(QRectF(ToDevice(center) - half, QSizeF(whole, whole)), FPainter.brush());
}

void TGlyphPainter::Curve(const QPainterPath& path, double width) {
    FPainter.save();
    FPainter.scale(FRatio, FRatio);
    QPen pen = FPainter.pen();
    pen.setWidthF(width);
    pen.setCapStyle(Qt::RoundCap);
    FPainter.strokePath(path, pen);
    FPainter.restore();
}

void TGlyphPainter::Disc(QPointF center, double radius) {
    QPainterPath path;
    path.addEllipse(center * FRatio, radius * FRatio, radius * FRatio);
    FPainter.fillPath(path, FPainter.brush());
}

QImage RenderGlyph(TGlyph glyph, TSize size, double ratio, const QColor& ink) {
    if (!(ratio > 0))
        ratio = 1;
    QImage image(DeviceSize(size, ratio), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        TGlyphPainter pen(painter, size, ratio, ink);
        glyph(pen);
    }
    image.setDevicePixelRatio(ratio); // afterwards: the painter would count in logical pixels
    return image;
}

} // namespace lmx
