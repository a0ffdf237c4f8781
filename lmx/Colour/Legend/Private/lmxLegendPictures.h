#pragma once

#include <lmx/Colour/Legend/lmxLegendTypes.h>
#include <lmx/Graphics/Private/lmxPictureWindow.h>

#include <QString>

#include <cstdint>
#include <span>

// The legend painters on a picture of which only a part is needed.

namespace lmx {

class IGradientColorCalculator;

/// GradientLegendPainter_Paint into all of a picture. Rows and columns of the bar that are not needed are not asked of
/// the gradient.
void PaintGradientLegend(const TPictureWindow& picture, TLegendOrientation orientation, std::int32_t barSize,
                         const IGradientColorCalculator* gradient, TTicks ticks, TColor32 backgroundColor,
                         TColor32 borderColor, TColor32 textColor, const QString& fontName, int fontSize,
                         const TGradientLegendMarkArray& marks, const QString& valueFormat);

/// PaletteLegendPainter_Paint into all of a picture.
void PaintPaletteLegend(const TPictureWindow& picture, TLegendOrientation orientation,
                        std::span<const TPaletteValueColorItem> items, std::int32_t boxSize, std::int32_t textGap,
                        std::int32_t itemSpacing, std::int32_t margin, TColor32 frameColor, const QString& fontName,
                        int fontSize, TColor32 textColor, const TPalettePainterFilterCallback& filter = {});

} // namespace lmx
