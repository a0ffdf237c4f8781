#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxSet.h>

#include <QString>

#include <functional>
#include <vector>

namespace lmx {

enum class TLegendOrientation { loHorizontal, loVertical };

/// The five places of a gradient legend that have a label: 0, 1/4, 1/2, 3/4 and all of the range.
enum class TTick { tkLow, tkLowMid, tkMid, tkMidHigh, tkHigh };
using TTicks = TSet<TTick>;

inline constexpr TTicks AllTicks{TTick::tkLow, TTick::tkLowMid, TTick::tkMid, TTick::tkMidHigh, TTick::tkHigh};

enum class TGradientLegendMarkType { mtCircle };

/// A mark on the bar of a gradient legend, at a value of the calculator's range.
struct TGradientLegendMark {
    TGradientLegendMarkType MarkType = TGradientLegendMarkType::mtCircle;
    float Value = 0; ///< shown if min <= Value < max
    TColor32 FillColor = 0;
    TColor32 StrokeColor = 0;
    float Spacing = 0; ///< pixels of the bitmap between the circle and the bar's edge
};
using TGradientLegendMarkArray = std::vector<TGradientLegendMark>;

/// A row of a palette legend.
struct TPaletteValueColorItem {
    QString Text;
    TColor32 Color = 0;

    friend bool operator==(const TPaletteValueColorItem&, const TPaletteValueColorItem&) = default;
};

/// Whether the row of that index is kept in the legend.
using TPalettePainterFilterCallback = std::function<bool(int index, const TPaletteValueColorItem& item)>;

} // namespace lmx
