#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPointF>
#include <QRectF>

namespace lmx {

/// Drawing that stays sharp at every device pixel ratio: what is given in the painter's units goes to whole pixels of
/// the device, so that nothing is smeared over two of them.

/// Draws an image of the device's ratio with its top left corner at the nearest pixel.
void DrawImageOnGrid(QPainter& painter, QPointF topLeft, const QImage& image);

/// Fills a rectangle whose corner goes to the nearest pixel and whose sides are whole pixels, at least one each. So
/// lines of equal thickness look equal wherever they stand. A rectangle without an area draws nothing.
void FillRectOnGrid(QPainter& painter, const QRectF& rect, const QColor& color);

/// Fills a rectangle likewise and draws a frame inside its edges, one logical pixel thick on all sides.
void DrawBoxOnGrid(QPainter& painter, const QRectF& rect, const QColor& frame, const QColor& fill);

} // namespace lmx
