#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Graphics/lmxFontStyles.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

QT_BEGIN_NAMESPACE
class QFont;
QT_END_NAMESPACE

namespace lmx {

/// The font of a bitmap's text.
struct LMX_EXPORT TFont32 {
    QString Name = QStringLiteral("Tahoma");
    int Size = 8;       ///< points at 96 pixels to the inch
    int Height = 0;     ///< if positive, the height in pixels, and Size is ignored
    double Ratio = 1.0; ///< device pixels of a pixel: scales the text on dense screens
    TFontStyles Styles;
    TColor Color = clBlack; ///< used by Textout only

    friend bool operator==(const TFont32&, const TFont32&) = default;
};

/// How the edges of letters are drawn.
enum class TFontSmoothing {
    fsHard, ///< each pixel is set or not
    fsGrey, ///< antialiased, never by subpixels
};

/// The largest letters: measures of larger ones leave Qt's numbers.
inline constexpr int LargestFontPixels = 4096;

/// Pixels of a size in points, halves up; 1 .. LargestFontPixels.
LMX_EXPORT int FontPixels(int size);

/// Pixels of a font, its ratio included; 1 .. LargestFontPixels.
LMX_EXPORT int FontPixels(const TFont32& font);

/// The font that text is measured and drawn with. DejaVu Sans stands in for Tahoma and Arial where they are missing, in
/// this font alone: the substitutions of the application stay as they are. Needs a QGuiApplication.
LMX_EXPORT QFont MakeFont(const TFont32& font, TFontSmoothing smoothing);

} // namespace lmx
