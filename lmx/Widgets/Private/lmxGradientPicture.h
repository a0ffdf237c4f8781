#pragma once

#include <lmx/Graphics/lmxGradient.h>

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRect>
#include <QString>

#include <functional>
#include <vector>

// What a gradient editor shows, each piece on its own.

namespace lmx {

/// A bar of the colours from 0 at the left edge to 1 at the right one, in a frame of one logical pixel, over squares
/// of white and grey where they are not opaque. `size` is in logical pixels, of which the image, with `ratio` device
/// pixels each, carries the ratio. Null for a size without an area.
QImage RenderGradientBar(QSize size, double ratio, const IGradient& gradient, const QColor& frame);

/// Round numbers between two ends, in the order of the ends: steps of 1, 2 or 5 times a power of ten, at most `most`
/// of them and at least the ends themselves where no such step fits. None for ends that are not finite, one for equal
/// ends.
std::vector<double> RoundTicks(double from, double to, int most);

/// A number as an axis over such a range writes it: enough digits to tell a thousandth of the range, no more.
QString AxisText(double value, double low, double high);

/// A text where it stands.
struct TPlacedLabel {
    int Left = 0;
    int Width = 0;
    QString Text;
};

/// Places labels between two edges so that none comes closer than `gap` to another. They are given from left to right,
/// and one that has no room is left out; `first`, an index or -1, has its room before all others. A text is asked for
/// and measured only where the narrowest one so far has room, so thousands cost little.
std::vector<TPlacedLabel> PlaceLabels(const std::vector<double>& middles, int first, int left, int right, int gap,
                                      const std::function<QString(int index)>& text,
                                      const std::function<int(const QString& text)>& width);

/// A handle below the bar: a house whose roof ends at `tip`, `width` wide and `height` high.
void DrawGrabber(QPainter& painter, QPointF tip, double width, double height, TColor32 color, const QColor& outline,
                 double lineWidth);

} // namespace lmx
