#pragma once

#include <lmx/Graphics/Private/lmxPictureWindow.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxFloatPoint.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <array>
#include <cstdint>

namespace lmx {

/// Clockwise from the top left one.
std::array<TFloatPoint, 4> CornersOf(const TRect& rect);

/// Fills the polygon of the corners: whole corners fill their pixels whole, so that it is a rectangle.
void FillCorners(TBitmap32& bitmap, const TRect& rect, TColor32 color);

/// `rect`, smaller by `by` on every side; saturates.
TRect InsetRect(const TRect& rect, std::int32_t by);

/// A picture that an annotation makes of its content before it is drawn onto the view: fully transparent at first, and
/// no more of it than is seen there.
class TItemPicture {
public:
    /// For `place` on a bitmap of which `visible` is seen.
    TItemPicture(const TRect& place, const TRect& visible, double deviceRatio, TDrawMode drawMode);

    bool IsSeen() const { return !FBitmap.IsEmpty(); } ///< whether there is anything to draw
    TPictureWindow GetPicture() { return {FBitmap, {FPlace.GetWidth(), FPlace.GetHeight()}, Origin()}; }
    void DrawTo(TBitmap32& target) const { target.Draw(FSeen.Left, FSeen.Top, FBitmap); }

private:
    TPoint Origin() const;

    TRect FPlace;
    TRect FSeen;
    TBitmap32 FBitmap;
};

} // namespace lmx
