#include <lmx/Graphics/lmxFont32.h>

#include <lmx/Runtime/lmxExtended.h>

#include <QFont>
#include <QLatin1StringView>
#include <QStringList>

#include <algorithm>

namespace lmx {

namespace {

/// The family and what stands in for it. Tahoma and Arial are not on every system.
QStringList FamiliesOf(const QString& name) {
    for (const QLatin1StringView missing : {QLatin1StringView("Tahoma"), QLatin1StringView("Arial")})
        if (name.compare(missing, Qt::CaseInsensitive) == 0)
            return {name, QStringLiteral("DejaVu Sans")};
    return {name};
}

} // namespace

int FontPixels(int size) {
    return static_cast<int>(std::clamp<std::int64_t>((std::int64_t{size} * 8 + 3) / 6, 1, LargestFontPixels));
}

int FontPixels(const TFont32& font) {
    const int pixels = font.Height > 0 ? font.Height : FontPixels(font.Size);
    return std::clamp(RoundToPixel(pixels * static_cast<extended>(font.Ratio)), 1, LargestFontPixels);
}

QFont MakeFont(const TFont32& font, TFontSmoothing smoothing) {
    QFont result(FamiliesOf(font.Name));
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
