#include <lmx/Widgets/Private/lmxColorField.h>

#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Widgets/Private/lmxSquaredGround.h>

#include <algorithm>

namespace lmx {

namespace {

constexpr int SquareSize = 4;

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
