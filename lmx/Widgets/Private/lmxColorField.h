#pragma once

#include <lmx/Graphics/lmxColor32.h>

#include <QColor>
#include <QImage>
#include <QSize>

namespace lmx {

/// A field of a colour in a frame of one logical pixel. A colour that is not opaque lies over squares of white and
/// grey, four logical pixels wide. `size` is in logical pixels, of which the image, with `ratio` device pixels each,
/// carries the ratio. Null for a size without an area.
QImage RenderColorField(QSize size, double ratio, TColor32 color, const QColor& frame);

} // namespace lmx
