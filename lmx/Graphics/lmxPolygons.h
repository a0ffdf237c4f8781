#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Graphics/lmxFloatPoint.h>
#include <lmx/Runtime/lmxExport.h>

#include <span>
#include <vector>

// Antialiased polygons and strokes. Coordinates name pixel edges: pixel (i, j) is the area from (i, j) to (i+1, j+1),
// so a rectangle with whole corners fills exactly its pixels. A pixel's alpha is the exact area of the shape in it
// times the colour's alpha; how it combines with the bitmap is the bitmap's combine mode. Points may lie far outside. A
// contour with a coordinate that is no number is left out. Safe in any thread, each on its own bitmap.

namespace lmx {

class TBitmap32;

using TFloatPoints = std::vector<TFloatPoint>;

/// What counts as inside where contours overlap.
enum class TPolyFillMode {
    pfAlternate, ///< what an odd number of contours goes around
    pfWinding,   ///< what the contours go around in sum
};

enum class TJoinStyle { jsMiter, jsBevel, jsRound };
enum class TEndStyle { esButt, esSquare, esRound };

/// The form of a stroke.
struct TStroke {
    double Width = 1;
    TJoinStyle Join = TJoinStyle::jsMiter;
    TEndStyle End = TEndStyle::esButt;
    double MiterLimit = 4; ///< longest miter, in stroke widths; sharper corners are bevelled
};

/// Fills a contour, which closes by itself. Fewer than three points draw nothing.
LMX_EXPORT void PolygonFS(TBitmap32& bitmap, std::span<const TFloatPoint> points, TColor32 color,
                          TPolyFillMode fillMode = TPolyFillMode::pfAlternate);

/// Fills several contours as one shape.
LMX_EXPORT void PolyPolygonFS(TBitmap32& bitmap, std::span<const TFloatPoints> contours, TColor32 color,
                              TPolyFillMode fillMode = TPolyFillMode::pfAlternate);

/// Strokes a line through the points; `closed` joins the last to the first.
LMX_EXPORT void PolylineFS(TBitmap32& bitmap, std::span<const TFloatPoint> points, TColor32 color, bool closed = false,
                           const TStroke& stroke = {});

/// The same with the stroke's form spelled out.
inline void PolylineFS(TBitmap32& bitmap, std::span<const TFloatPoint> points, TColor32 color, bool closed,
                       double width, TJoinStyle join = TJoinStyle::jsMiter, TEndStyle end = TEndStyle::esButt,
                       double miterLimit = 4) {
    PolylineFS(bitmap, points, color, closed, TStroke{width, join, end, miterLimit});
}

/// Strokes several lines as one shape: where they cross the colour is blended once.
LMX_EXPORT void PolyPolylineFS(TBitmap32& bitmap, std::span<const TFloatPoints> lines, TColor32 color,
                               bool closed = false, const TStroke& stroke = {});

/// A circle as a polygon whose edges leave it by about an eighth of a pixel; the first point is to the right of the
/// centre. Has fewer than three points, and so draws nothing, below a radius of an eighth of a pixel.
LMX_EXPORT TFloatPoints CirclePolygon(double centerX, double centerY, double radius);

} // namespace lmx
