#include <lmx/Layers/Objects/Private/lmxItemPicture.h>

#include <algorithm>

namespace lmx {

namespace {

TRect Common(const TRect& a, const TRect& b) {
    const TRect both(std::max(a.Left, b.Left), std::max(a.Top, b.Top), std::min(a.Right, b.Right),
                     std::min(a.Bottom, b.Bottom));
    return both.IsEmpty() ? TRect() : both;
}

} // namespace

std::array<TFloatPoint, 4> CornersOf(const TRect& rect) {
    const double left = rect.Left;
    const double top = rect.Top;
    const double right = rect.Right;
    const double bottom = rect.Bottom;
    return {TFloatPoint{left, top}, TFloatPoint{right, top}, TFloatPoint{right, bottom}, TFloatPoint{left, bottom}};
}

void FillCorners(TBitmap32& bitmap, const TRect& rect, TColor32 color) {
    bitmap.FillRectTS(std::min(rect.Left, rect.Right), std::min(rect.Top, rect.Bottom), std::max(rect.Left, rect.Right),
                      std::max(rect.Top, rect.Bottom), color);
}

TRect InsetRect(const TRect& rect, std::int32_t by) {
    return {SaturateToInt32(std::int64_t{rect.Left} + by), SaturateToInt32(std::int64_t{rect.Top} + by),
            SaturateToInt32(std::int64_t{rect.Right} - by), SaturateToInt32(std::int64_t{rect.Bottom} - by)};
}

TItemPicture::TItemPicture(const TRect& place, const TRect& visible, double deviceRatio, TDrawMode drawMode)
    : FPlace(place),
      FSeen(Common(place, visible)),
      FBitmap(FSeen.GetWidth(), FSeen.GetHeight()) {
    FBitmap.SetDeviceRatio(deviceRatio);
    FBitmap.GetFont().Ratio = deviceRatio;
    FBitmap.SetDrawMode(drawMode);
    FBitmap.SetCombineMode(TCombineMode::cmMerge);
}

TPoint TItemPicture::Origin() const {
    return {SaturateToInt32(std::int64_t{FSeen.Left} - FPlace.Left),
            SaturateToInt32(std::int64_t{FSeen.Top} - FPlace.Top)};
}

} // namespace lmx
