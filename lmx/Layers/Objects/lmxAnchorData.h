#pragma once

#include <lmx/Runtime/lmxAnchors.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QString>

#include <cstdint>

namespace lmx {

/// The distances of an annotation from the four edges of its view, in pixels of the view's buffer.
struct LMX_EXPORT TAnchorData {
    std::int32_t Left = 0;
    std::int32_t Top = 0;
    std::int32_t Right = 0;  ///< from the view's right edge; negative beyond it
    std::int32_t Bottom = 0; ///< from the view's bottom edge

    TAnchorData() = default;
    TAnchorData(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom)
        : Left(left),
          Top(top),
          Right(right),
          Bottom(bottom) {}
    explicit TAnchorData(std::int32_t) {} ///< all zero, whatever the number
    /// The text of ToString; all zero if it is not four integers.
    explicit TAnchorData(const QString& text);

    QString ToString() const; ///< "Left,Top,Right,Bottom"

    friend bool operator==(const TAnchorData&, const TAnchorData&) = default;
};

/// The distances of `rect` in a view of that size.
LMX_EXPORT TAnchorData MeasureAnchors(const TRect& rect, TSize viewSize);

/// `rect` where its anchors keep it in a view of another size. On each axis: anchored at one edge it keeps its distance
/// to it and its length, at both it stretches, at none it stays.
LMX_EXPORT TRect AnchoredRect(const TRect& rect, TAnchors anchors, const TAnchorData& data, TSize viewSize);

} // namespace lmx
