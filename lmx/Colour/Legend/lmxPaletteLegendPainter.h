#pragma once

#include <lmx/Colour/Legend/lmxLegendTypes.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <cstdint>
#include <span>
#include <vector>

namespace lmx {

class IBasicPaletteColorCalculator;
class IColorClassCalculator;
class TBitmap32;

/// The rows of a palette's legend: "NODATA" for a reserved first colour, and for every other one its name or the text
/// "low - high" of its band with three decimals. Named colours count, too, in the run of the bands. No rows without a
/// calculator or a colour key.
LMX_EXPORT std::vector<TPaletteValueColorItem>
PaletteLegendPainter_GetItems(const IBasicPaletteColorCalculator* calculator);

/// One row for each class: its label and colour. No rows without a calculator or classes.
LMX_EXPORT std::vector<TPaletteValueColorItem> PaletteLegendPainter_GetItems(const IColorClassCalculator* calculator);

/// From one row to the next: boxSize + 2 * margin + itemSpacing. The spacing is between rows, and between the cells of
/// a horizontal legend.
LMX_EXPORT std::int32_t PaletteLegendPainter_GetItemHeight(std::int32_t boxSize, std::int32_t margin,
                                                           std::int32_t itemSpacing);

/// Draws coloured boxes with their texts. Vertically one row below the other from the top left corner, each text
/// `textGap` to the right of its box. Horizontally in cells that are as wide as the widest text or the box, centred in
/// the bitmap; the texts of even cells stand above the boxes and those of odd ones below, so that neighbours never
/// collide. What does not fit is cut off; nothing is cleared.
///
/// Sizes are pixels of the bitmap; the font (points) and the frame's thickness are times its device ratio. Boxes and
/// frames are written raw, alpha included; the frame lies inside its box. A filter keeps the rows for which it is true;
/// no rows draw nothing. Main thread only.
/// @throws EExArgumentNilException naming "PaletteLegendPainter_Paint" and "Bitmap" if `bitmap` is nil.
LMX_EXPORT void PaletteLegendPainter_Paint(TBitmap32* bitmap, TLegendOrientation orientation,
                                           std::span<const TPaletteValueColorItem> items, std::int32_t boxSize,
                                           std::int32_t textGap, std::int32_t itemSpacing, std::int32_t margin,
                                           TColor32 frameColor, const QString& fontName, int fontSize,
                                           TColor32 textColor, const TPalettePainterFilterCallback& filter = {});

} // namespace lmx
