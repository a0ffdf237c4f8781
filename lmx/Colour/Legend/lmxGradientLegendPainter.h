#pragma once

#include <lmx/Colour/Legend/lmxLegendTypes.h>
#include <lmx/Runtime/lmxExport.h>

#include <QString>

#include <cstdint>

namespace lmx {

class IGradientColorCalculator;
class TBitmap32;

/// Draws the legend of a gradient into all of a bitmap: a bar along its left or upper edge, marks on it, its outline,
/// and labels beside it.
///
/// The bar is `barSize` pixels across. It shows the whole gradient, whatever the range: vertically with the end at the
/// top, one pixel shorter than the bitmap. Fill and outline are written raw, alpha included; the outline runs along the
/// corners of the bar's rectangle, so over the row and the column behind the fill. Labels are the values at the
/// quarters of the range, text that `valueFormat` makes of them (Format), 4 pixels from the bar.
///
/// Sizes are pixels of the bitmap; the font (points), the 4 pixels, the least radius of a mark and strokes are times
/// the bitmap's device ratio. A background of 0 leaves the bitmap as it is. The font that the bitmap has before counts
/// for the height of the labels, the new one for their widths. Without a gradient, or without a calculator, there is no
/// fill. Main thread only.
/// @throws EConvertError for a format that takes no number.
LMX_EXPORT void GradientLegendPainter_Paint(TBitmap32& bitmap, TLegendOrientation orientation, std::int32_t barSize,
                                            const IGradientColorCalculator* gradient, TTicks ticks,
                                            TColor32 backgroundColor, TColor32 borderColor, TColor32 textColor,
                                            const QString& fontName, int fontSize,
                                            const TGradientLegendMarkArray& marks, const QString& valueFormat);

} // namespace lmx
