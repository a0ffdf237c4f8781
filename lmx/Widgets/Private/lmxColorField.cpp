#include <lmx/Widgets/Private/lmxColorField.h>

#include <lmx/Runtime/lmxExtended.h>

#include <algorithm>

namespace lmx {

namespace {

constexpr int SquareSize = 4;
constexpr int LightGround = 255;
constexpr int DarkGround = 192;

/// A colour over a grey ground.
QRgb Over(TColor32 color, int ground) {
    const int alpha = qAlpha(color);
    const auto mixed = [&](int part) { return (part * alpha + ground * (255 - alpha) + 127) / 255; };
    return qRgb(mixed(qRed(color)), mixed(qGreen(color)), mixed(qBlue(color)));
}

} // namespace

QImage RenderColorField(QSize size, double ratio, TColor32 color, const QColor& frame) {
    if (size.isEmpty())
        return {};
    const auto pixels = [ratio](int logical) { return std::max(RoundToPixel(logical * ratio), 1); };
    QImage image(pixels(size.width()), pixels(size.height()), QImage::Format_RGB32);
    image.fill(frame);
    const int line = pixels(1);
    const int square = pixels(SquareSize);
    const QRgb light = Over(color, LightGround);
    const QRgb dark = Over(color, DarkGround);
    for (int y = line; y < image.height() - line; ++y)
        for (int x = line; x < image.width() - line; ++x)
            image.setPixel(x, y, ((x - line) / square + (y - line) / square) % 2 == 0 ? light : dark);
    image.setDevicePixelRatio(ratio);
    return image;
}

} // namespace lmx
