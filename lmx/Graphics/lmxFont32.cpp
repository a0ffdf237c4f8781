#include <lmx/Graphics/lmxFont32.h>

#include <lmx/Runtime/lmxExtended.h>

#include <QFont>

#include <algorithm>

namespace lmx {

namespace {

/// Families of which not every system has the first one.
bool RegisterSubstitutions() {
    for (const char* family : {"Tahoma", "Arial"})
        QFont::insertSubstitution(QString::fromLatin1(family), QStringLiteral("DejaVu Sans"));
    return true;
}

} // namespace

int FontPixels(int size) {
    return static_cast<int>(std::max<std::int64_t>((std::int64_t{size} * 8 + 3) / 6, 1)); // size * 96 / 72
}

int FontPixels(const TFont32& font) {
    const int pixels = font.Height > 0 ? font.Height : FontPixels(font.Size);
    return std::max(RoundToPixel(pixels * static_cast<extended>(font.Ratio)), 1);
}

QFont MakeFont(const TFont32& font, TFontSmoothing smoothing) {
    static const bool registered = RegisterSubstitutions();
    Q_UNUSED(registered);
    QFont result(font.Name);
    result.setPixelSize(FontPixels(font));
    result.setBold(font.Styles.Contains(TFontStyle::fsBold));
    result.setItalic(font.Styles.Contains(TFontStyle::fsItalic));
    result.setUnderline(font.Styles.Contains(TFontStyle::fsUnderline));
    result.setStrikeOut(font.Styles.Contains(TFontStyle::fsStrikeOut));
    result.setHintingPreference(QFont::PreferFullHinting);
    result.setStyleStrategy(smoothing == TFontSmoothing::fsHard ? QFont::NoAntialias : QFont::NoSubpixelAntialias);
    return result;
}

} // namespace lmx
