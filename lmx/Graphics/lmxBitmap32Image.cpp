// To and from Qt's pictures.

#include <lmx/Graphics/Private/lmxPixelRows.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <QImage>
#include <QPainter>

#include <algorithm>

namespace lmx {

namespace {

/// Sides of a picture that Qt can always make, and no paint device is larger.
constexpr std::int32_t LongestQtSide = 1 << 24;

} // namespace

QImage TBitmap32::ToQImage() const {
    if (IsEmpty())
        return {};
    QImage image(GetWidth(), GetHeight(), QImage::Format_ARGB32);
    if (image.isNull())
        throw EOutOfMemory();
    for (std::int32_t y = 0; y < GetHeight(); ++y)
        PixelRows::Copy(reinterpret_cast<TColor32*>(image.scanLine(y)), ScanLine(y),
                        static_cast<std::size_t>(GetWidth()));
    return image;
}

TBitmap32 TBitmap32::FromQImage(const QImage& image) {
    const QImage straight = image.convertToFormat(QImage::Format_ARGB32);
    if (straight.isNull() && !image.isNull())
        throw EOutOfMemory();
    TBitmap32 bitmap(straight.width(), straight.height());
    for (std::int32_t y = 0; y < bitmap.GetHeight(); ++y)
        PixelRows::Copy(bitmap.ScanLine(y), reinterpret_cast<const TColor32*>(straight.constScanLine(y)),
                        static_cast<std::size_t>(bitmap.GetWidth()));
    return bitmap;
}

void TBitmap32::PaintTo(QPainter& painter, double ratio) const {
    if (IsEmpty())
        return;
    QImage view(reinterpret_cast<const uchar*>(FMemory.GetPixels()), std::min(GetWidth(), LongestQtSide),
                std::min(GetHeight(), LongestQtSide),
                static_cast<qsizetype>(GetWidth()) * static_cast<qsizetype>(sizeof(TColor32)), QImage::Format_RGB32);
    view.setDevicePixelRatio(ratio);
    const QPainter::CompositionMode mode = painter.compositionMode();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(QPointF(0, 0), view);
    painter.setCompositionMode(mode);
}

} // namespace lmx
