#pragma once

#include <lmx/Graphics/lmxColor32.h>

#include <QColor>

namespace lmx {

// The squares that show through a colour which is not opaque.
inline constexpr int LightGround = 255;
inline constexpr int DarkGround = 192;

/// A colour over a grey ground.
inline QRgb Over(TColor32 color, int ground) {
    const int alpha = qAlpha(color);
    const auto mixed = [&](int part) { return (part * alpha + ground * (255 - alpha) + 127) / 255; };
    return qRgb(mixed(qRed(color)), mixed(qGreen(color)), mixed(qBlue(color)));
}

} // namespace lmx
