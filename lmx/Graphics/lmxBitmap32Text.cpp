// Text: Qt draws masks of letters, and the masks are blended here.

#include <lmx/Graphics/Private/lmxBlend.h>
#include <lmx/Graphics/Private/lmxPictureWindow.h>
#include <lmx/Graphics/Private/lmxPixelRows.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExtended.h>

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <array>

namespace lmx {

namespace {

/// The level that Textout draws with.
constexpr int SmoothLevel = 1;

QFont FontOfLevel(const TFont32& font, int aaLevel) {
    return MakeFont(font, aaLevel == 0 ? TFontSmoothing::fsHard : TFontSmoothing::fsGrey);
}

/// Qt counts widths in 64ths of a pixel and 32 bits, so longer texts are measured in pieces.
std::int32_t Advance(const QFont& font, const QString& text) {
    constexpr int widestPiece = 1 << 21;
    const QFontMetrics metrics(font);
    const qsizetype pieceLength = widestPiece / font.pixelSize();
    if (text.size() <= pieceLength)
        return metrics.horizontalAdvance(text);
    std::int64_t width = 0;
    for (qsizetype at = 0; at < text.size() && width < PixelLimit; at += pieceLength)
        width += metrics.horizontalAdvance(text.mid(at, pieceLength));
    return static_cast<std::int32_t>(std::min<std::int64_t>(width, PixelLimit));
}

/// Draws on a mask of that size, which begins empty: 255 where a letter covers the pixel whole.
template<class DrawLetters>
QImage MakeMask(QSize size, const QFont& font, DrawLetters drawLetters) {
    QImage mask(size, QImage::Format_Alpha8);
    if (mask.isNull())
        throw EOutOfMemory();
    mask.fill(0);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::TextAntialiasing, font.styleStrategy() != QFont::NoAntialias);
    painter.setFont(font);
    painter.setPen(Qt::black);
    drawLetters(painter);
    return mask;
}

/// Combines the colour with the pixels under the mask, whose top left corner stands at (left, top).
void CombineMask(TBitmap32& bitmap, int left, int top, const QImage& mask, TColor32 color) {
    const int begin = std::max(-left, 0);
    const int end = std::min(mask.width(), bitmap.GetWidth() - left);
    if (begin >= end)
        return;
    const auto combine = bitmap.GetCombineMode() == TCombineMode::cmMerge ? PixelRows::Merge : PixelRows::Blend;
    std::array<TColor32, 256> colors;
    for (int row = std::max(-top, 0); row < std::min(mask.height(), bitmap.GetHeight() - top); ++row) {
        const uchar* cover = mask.constScanLine(row) + begin;
        TColor32* pixels = bitmap.ScanLine(top + row) + left + begin;
        for (auto rest = static_cast<std::size_t>(end - begin); rest > 0;) {
            const std::size_t part = std::min(colors.size(), rest);
            for (std::size_t i = 0; i < part; ++i)
                colors[i] = ScaleColorAlpha(color, *cover++);
            combine(pixels, colors.data(), part);
            pixels += part;
            rest -= part;
        }
    }
}

std::int32_t Saturated(std::int32_t position) {
    return std::clamp(position, -PixelLimit, PixelLimit);
}

int QtTextFlags(unsigned flags) {
    int result = 0;
    const auto add = [&](bool condition, int whenTrue, int otherwise) { result |= condition ? whenTrue : otherwise; };
    add(flags & dtCenter, Qt::AlignHCenter, flags & dtRight ? Qt::AlignRight : Qt::AlignLeft);
    add((flags & dtVCenter) && (flags & dtSingleLine), Qt::AlignVCenter, Qt::AlignTop);
    add(flags & dtWordBreak, Qt::TextWordWrap, 0);
    add(flags & dtSingleLine, Qt::TextSingleLine, 0);
    add(flags & dtNoClip, Qt::TextDontClip, 0);
    add(flags & dtNoPrefix, 0, Qt::TextShowMnemonic);
    return result;
}

} // namespace

std::int32_t TBitmap32::TextWidth(const QString& text, int aaLevel) const {
    return Advance(FontOfLevel(FFont, aaLevel), text);
}

std::int32_t TBitmap32::TextHeight(const QString&, int aaLevel) const {
    return QFontMetrics(FontOfLevel(FFont, aaLevel)).height();
}

void TBitmap32::RenderText(std::int32_t x, std::int32_t y, const QString& text, int aaLevel, TColor32 color) {
    RenderTextWithin(*this, {x, y}, {GetWidth(), GetHeight()}, text, aaLevel, color);
}

// The mask is of what is seen alone.
void RenderTextWithin(TBitmap32& bitmap, TPoint place, TSize largest, const QString& text, int aaLevel,
                      TColor32 color) {
    if (place.X >= bitmap.GetWidth() || place.Y >= bitmap.GetHeight() || bitmap.IsEmpty())
        return;
    const QFont font = FontOfLevel(bitmap.GetFont(), aaLevel);
    const QFontMetrics metrics(font);
    const std::int64_t right = std::int64_t{place.X} + std::min(Advance(font, text), largest.cx);
    const std::int64_t bottom = std::int64_t{place.Y} + std::min(metrics.height(), largest.cy);
    const TRect seen(std::max(place.X, 0), std::max(place.Y, 0),
                     SaturateToInt32(std::min<std::int64_t>(right, bitmap.GetWidth())),
                     SaturateToInt32(std::min<std::int64_t>(bottom, bitmap.GetHeight())));
    if (seen.IsEmpty())
        return;
    const QImage mask = MakeMask({seen.GetWidth(), seen.GetHeight()}, font, [&](QPainter& painter) {
        painter.drawText(QPointF(place.X - 1.0 * seen.Left, place.Y - 1.0 * seen.Top + metrics.ascent()), text);
    });
    CombineMask(bitmap, seen.Left, seen.Top, mask, color);
}

void TBitmap32::Textout(const TRect& rect, unsigned flags, const QString& text) {
    const TRect bounds = GetBounds();
    TRect visible = bounds;
    if (!(flags & dtNoClip))
        visible = {std::max(rect.Left, 0), std::max(rect.Top, 0), std::min(rect.Right, GetWidth()),
                   std::min(rect.Bottom, GetHeight())};
    if (visible.IsEmpty() || rect.IsEmpty())
        return;
    const TRect box(Saturated(rect.Left), Saturated(rect.Top), Saturated(rect.Right), Saturated(rect.Bottom));
    QString lines = text;
    lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    const QFont font = FontOfLevel(FFont, SmoothLevel);
    CombineMask(*this, visible.Left, visible.Top,
                MakeMask({visible.GetWidth(), visible.GetHeight()}, font,
                         [&](QPainter& painter) {
                             painter.translate(-visible.Left, -visible.Top);
                             painter.drawText(box.ToQRect(), QtTextFlags(flags), lines);
                         }),
                Color32(FFont.Color));
}

} // namespace lmx
