#pragma once

#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>
#include <lmx/Runtime/lmxSet.h>

#include <cstdint>

// Where the grabbers of an annotation stand, what a press of the mouse takes hold of, and what a drag makes of its
// rectangle. Everything in pixels of the view's buffer; `ratio` is the number of them that make one pixel to the eye,
// and sizes that are fixed to the eye are multiplied by it and rounded. Rectangles may lie anywhere, sums saturate.

namespace lmx {

enum class TGrabberOption {
    goResizable,   ///< has grabbers at its corners and sides
    goFixedAspect, ///< at its corners only, and they keep its proportions
};
using TGrabberOptions = TSet<TGrabberOption>;

/// What a press of the mouse has taken hold of.
enum class TSelectedElement {
    soNone,
    soObject,
    soTopLeftGrabber,
    soTopCenterGrabber,
    soTopRightGrabber,
    soMiddleLeftGrabber,
    soMiddleRightGrabber,
    soBottomLeftGrabber,
    soBottomCenterGrabber,
    soBottomRightGrabber,
};

/// Squares of 8 pixels within the view rectangle of an annotation.
struct TGrabberRects {
    TRect TopLeft;
    TRect TopCenter;
    TRect TopRight;
    TRect MiddleLeft;
    TRect MiddleRight;
    TRect BottomLeft;
    TRect BottomCenter;
    TRect BottomRight;

    friend bool operator==(const TGrabberRects&, const TGrabberRects&) = default;
};

/// A length or a position at another ratio, rounded to the nearest even; saturates.
LMX_EXPORT std::int32_t ScaledPixels(std::int32_t pixels, double factor);

/// `rect`, made at least 26 pixels wide and high to the right and downwards, so that its grabbers have room.
LMX_EXPORT TRect GrabberArea(const TRect& rect, double ratio = 1);

/// The grabbers of an area: at its corners, and at the middles of its sides (half a pixel to the nearest even one).
LMX_EXPORT TGrabberRects PlaceGrabbers(const TRect& area, double ratio = 1);

/// What a press at `point` takes hold of: nothing outside `rect`; else the first of the grabbers whose square, 2 pixels
/// larger on every side, holds the point (corners first), and otherwise the object. An annotation that is not resizable
/// has no grabbers.
LMX_EXPORT TSelectedElement ElementAt(const TRect& rect, const TGrabberRects& grabbers, TGrabberOptions options,
                                      TPoint point, double ratio = 1);

/// The rectangle that a drag to `point` makes of `pressed`, the rectangle at the press. `offset` is where in it the
/// press was: the object follows the mouse by that point, a grabber's edges go to the mouse itself. With `fixedAspect`
/// the corners give the new height its width in the proportion of `pressed`, by the right edge, also when a left corner
/// is dragged; a `pressed` without height leaves the width. Nothing limits a negative size.
LMX_EXPORT TRect DraggedRect(const TRect& pressed, TPoint offset, TSelectedElement element, TPoint point,
                             bool fixedAspect);

} // namespace lmx
