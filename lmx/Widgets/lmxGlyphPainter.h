#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPointF>

#include <initializer_list>

namespace lmx {

/// Draws the small pictures of our own buttons. They are drawn and not stored, so they are sharp at every device pixel
/// ratio and take the colour of the text around them, on dark themes too.
///
/// Coordinates are logical pixels from the top left corner of the picture. Corners go to whole device pixels, counted
/// from the middle, and strokes have as many device pixels, even or odd, as fit that middle: what is symmetric stays
/// symmetric and no edge is smeared.
class LMX_EXPORT TGlyphPainter {
public:
    /// Draws on `painter`, whose units are device pixels.
    TGlyphPainter(QPainter& painter, TSize size, double ratio, const QColor& ink);

    void SetStrokeWidth(double width); ///< in logical pixels; 1.5 at first
    void Polyline(std::initializer_list<QPointF> points);
    void Outline(std::initializer_list<QPointF> corners); ///< a closed Polyline
    void Polygon(std::initializer_list<QPointF> corners); ///< filled
    void Circle(QPointF center, double radius);           ///< its outline
    void Dot(QPointF center, double side);                ///< a filled square
    void Curve(const QPainterPath& path, double width);   ///< stroked as it is, off the grid
    void Disc(QPointF center, double radius);             ///< filled, off the grid

private:
    QPointF ToDevice(QPointF point) const;
    QPolygonF ToDevice(std::initializer_list<QPointF> points) const;
    double WholePixels(double length) const;

    QPainter& FPainter;
    TSize FSize;
    double FRatio;
    QSize FDeviceSize;
};

/// What a picture shows.
using TGlyph = void (*)(TGlyphPainter&);

/// The picture of `size` logical pixels at that device pixel ratio, which the image carries. A ratio that is not above
/// 0 counts as 1.
LMX_EXPORT QImage RenderGlyph(TGlyph glyph, TSize size, double ratio, const QColor& ink);

} // namespace lmx
