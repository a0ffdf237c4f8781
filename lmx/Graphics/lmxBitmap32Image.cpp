// To and from Qt's pictures.

#include <lmx/Graphics/Private/lmxPixelRows.h>
#include <lmx/Graphics/lmxBitmap32.h>

#include <QImage>
#include <QPainter>

namespace lmx {

QImage TBitmap32::ToQImage() const {
    if (IsEmpty())
        return {};
    QImage image(FWidth, FHeight, QImage::Format_ARGB32);
    for (std::int32_t y = 0; y < FHeight; ++y)
        PixelRows::Copy(reinterpret_cast<TColor32*>(image.scanLine(y)), ScanLine(y), static_cast<std::size_t>(FWidth));
    return image;
}

TBitmap32 TBitmap32::FromQImage(const QImage& image) {
    const QImage straight = image.convertToFormat(QImage::Format_ARGB32);
    TBitmap32 bitmap(straight.width(), straight.height());
    for (std::int32_t y = 0; y < bitmap.FHeight; ++y)
        PixelRows::Copy(bitmap.ScanLine(y), reinterpret_cast<const TColor32*>(straight.constScanLine(y)),
                        static_cast<std::size_t>(bitmap.FWidth));
    return bitmap;
}

void TBitmap32::PaintTo(QPainter& painter, double ratio) const {
    if (IsEmpty())
        return;
    QImage view(reinterpret_cast<const uchar*>(FPixels.data()), FWidth, FHeight,
                static_cast<qsizetype>(FWidth) * static_cast<qsizetype>(sizeof(TColor32)), QImage::Format_RGB32);
    view.setDevicePixelRatio(ratio);
    const QPainter::CompositionMode mode = painter.compositionMode();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(QPointF(0, 0), view);
    painter.setCompositionMode(mode);
}

} // namespace lmx
