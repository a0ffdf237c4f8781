// Text: Qt draws masks of letters, and the masks are blended here.

#include <lmx/Graphics/Private/lmxBlend.h>
#include <lmx/Graphics/Private/lmxPixelRows.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Runtime/lmxExtended.h>

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <vector>

namespace lmx {

namespace {

/// Draws on a mask of that size, which begins empty: 255 where a letter covers the pixel whole.
template<class DrawLetters>
QImage MakeMask(QSize size, const QFont& font, DrawLetters drawLetters) {
    QImage mask(size, QImage::Format_Alpha8);
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
    std::vector<TColor32> line(static_cast<std::size_t>(end - begin));
    const auto combine = bitmap.GetCombineMode() == TCombineMode::cmMerge ? PixelRows::Merge : PixelRows::Blend;
    for (int row = std::max(-top, 0); row < std::min(mask.height(), bitmap.GetHeight() - top); ++row) {
        const uchar* cover = mask.constScanLine(row) + begin;
        for (TColor32& pixel : line)
            pixel = ScaleColorAlpha(color, *cover++);
        combine(bitmap.ScanLine(top + row) + left + begin, line.data(), line.size());
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

std::int32_t TBitmap32::TextWidth(const QString& text) const {
    return QFontMetrics(MakeFont(FFont, TFontSmoothing::fsHard)).horizontalAdvance(text);
}

std::int32_t TBitmap32::TextHeight(const QString&) const {
    return QFontMetrics(MakeFont(FFont, TFontSmoothing::fsHard)).height();
}

void TBitmap32::RenderText(std::int32_t x, std::int32_t y, const QString& text, int aaLevel, TColor32 color) {
    const QFont font = MakeFont(FFont, aaLevel == 0 ? TFontSmoothing::fsHard : TFontSmoothing::fsGrey);
    const QFontMetrics metrics(font);
    const QSize size(std::min(metrics.horizontalAdvance(text), FWidth), std::min(metrics.height(), FHeight));
    if (size.isEmpty() || x >= FWidth || y >= FHeight || x <= -size.width() || y <= -size.height())
        return;
    CombineMask(*this, x, y,
                MakeMask(size, font, [&](QPainter& painter) { painter.drawText(0, metrics.ascent(), text); }), color);
}

void TBitmap32::Textout(const TRect& rect, unsigned flags, const QString& text) {
    const TRect bounds = GetBounds();
    TRect visible = bounds;
    if (!(flags & dtNoClip))
        visible = {std::max(rect.Left, 0), std::max(rect.Top, 0), std::min(rect.Right, FWidth),
                   std::min(rect.Bottom, FHeight)};
    if (visible.IsEmpty() || rect.IsEmpty())
        return;
    const TRect box(Saturated(rect.Left), Saturated(rect.Top), Saturated(rect.Right), Saturated(rect.Bottom));
    QString lines = text;
    lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n');
    const QFont font = MakeFont(FFont, TFontSmoothing::fsGrey);
    CombineMask(*this, visible.Left, visible.Top,
                MakeMask({visible.GetWidth(), visible.GetHeight()}, font,
                         [&](QPainter& painter) {
                             painter.translate(-visible.Left, -visible.Top);
                             painter.drawText(box.ToQRect(), QtTextFlags(flags), lines);
                         }),
                Color32(FFont.Color));
}

} // namespace lmx
