// Text: Qt draws masks of letters, and the masks are blended here.

#include <lmx/Graphics/Private/lmxBlend.h>
#include <lmx/Graphics/Private/lmxPictureWindow.h>
#include <lmx/Graphics/Private/lmxPixelRows.h>
#include <lmx/Graphics/Private/lmxSeenText.h>
#include <lmx/Graphics/Private/lmxTextCache.h>
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
    painter.setLayoutDirection(Qt::LeftToRight); // also where the application's own is another: left is left
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

/// Not of TTextFlags: one line, as RenderText draws it.
constexpr unsigned OneLine = 1U << 31;

TTextMeasures Measures(const TFont32& font, int aaLevel, const QString& text) {
    return TextMeasuresOf(font, aaLevel, text, [&] {
        const QFont qtFont = FontOfLevel(font, aaLevel);
        const QFontMetrics metrics(qtFont);
        return TTextMeasures{Advance(qtFont, text), metrics.height(), metrics.ascent()};
    });
}

/// `seen` and the corner of the box in pixels of the bitmap.
TTextKey KeyOf(const QString& text, const TFont32& font, int aaLevel, unsigned flags, TSize box, const TRect& seen,
               TPoint corner) {
    const auto from = [](std::int32_t position, std::int32_t origin) {
        return SaturateToInt32(std::int64_t{position} - origin);
    };
    TTextKey key{text,
                 font,
                 aaLevel,
                 flags,
                 box,
                 TRect(from(seen.Left, corner.X), from(seen.Top, corner.Y), from(seen.Right, corner.X),
                       from(seen.Bottom, corner.Y))};
    key.Font.Color = clBlack;
    return key;
}

/// Combines the colour with the pixels of `seen` under the letters of a text.
template<class DrawLetters>
void DrawText(TBitmap32& bitmap, const TTextKey& key, const TRect& seen, TColor32 color, DrawLetters drawLetters) {
    const TTextMask mask = TextMaskOf(key, [&] {
        return MakeMask({seen.GetWidth(), seen.GetHeight()}, FontOfLevel(key.Font, key.Level), drawLetters);
    });
    if (!mask.Cover.isNull())
        CombineMask(bitmap, seen.Left + mask.Place.X, seen.Top + mask.Place.Y, mask.Cover, color);
}

} // namespace

std::int32_t TBitmap32::TextWidth(const QString& text, int aaLevel) const {
    return Measures(FFont, aaLevel, text).Width;
}

std::int32_t TBitmap32::TextHeight(const QString&, int aaLevel) const {
    return Measures(FFont, aaLevel, QString()).Height;
}

void TBitmap32::RenderText(std::int32_t x, std::int32_t y, const QString& text, int aaLevel, TColor32 color) {
    RenderTextWithin(*this, {x, y}, {GetWidth(), GetHeight()}, text, aaLevel, color);
}

// The mask is of what is seen alone.
void RenderTextWithin(TBitmap32& bitmap, TPoint place, TSize largest, const QString& text, int aaLevel,
                      TColor32 color) {
    if (place.X >= bitmap.GetWidth() || place.Y >= bitmap.GetHeight() || bitmap.IsEmpty())
        return;
    const TTextMeasures measures = Measures(bitmap.GetFont(), aaLevel, text);
    const auto end = [](std::int32_t begin, std::int32_t length, std::int32_t limit) {
        return static_cast<std::int32_t>(std::min(std::int64_t{begin} + length, std::int64_t{limit}));
    };
    const TRect seen(std::max(place.X, 0), std::max(place.Y, 0),
                     end(place.X, std::min(measures.Width, largest.cx), bitmap.GetWidth()),
                     end(place.Y, std::min(measures.Height, largest.cy), bitmap.GetHeight()));
    if (seen.IsEmpty())
        return;
    const TTextKey key = KeyOf(text, bitmap.GetFont(), aaLevel, OneLine, {}, seen, place);
    DrawText(bitmap, key, seen, color, [&](QPainter& painter) {
        painter.drawText(QPointF(-1.0 * key.Seen.Left, measures.Ascent - 1.0 * key.Seen.Top), text);
    });
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
    const TSize size(box.GetWidth(), box.GetHeight());
    const TTextKey key = KeyOf(text, FFont, SmoothLevel, flags, size, visible, {box.Left, box.Top});
    DrawText(*this, key, visible, Color32(FFont.Color), [&](QPainter& painter) {
        painter.translate(-key.Seen.Left, -key.Seen.Top);
        if (text.size() >= LongText) {
            const TPoint seenEnd(key.Seen.Right, key.Seen.Bottom);
            return DrawLaidText(painter, SeenText(text, painter.font(), size.cx, flags, seenEnd), size, flags);
        }
        QString lines = text;
        lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
        painter.drawText(TRect(0, 0, size.cx, size.cy).ToQRect(), QtTextFlags(flags), lines);
    });
}

} // namespace lmx
