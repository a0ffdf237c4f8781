#include <lmx/Graphics/Private/lmxPictureWindow.h>

namespace lmx {

namespace {

std::int32_t Difference(std::int32_t a, std::int32_t b) {
    return SaturateToInt32(std::int64_t{a} - b);
}

} // namespace

TPictureWindow::TPictureWindow(TBitmap32& bitmap)
    : TPictureWindow(bitmap, {bitmap.GetWidth(), bitmap.GetHeight()}, {0, 0}) {}

TPictureWindow::TPictureWindow(TBitmap32& bitmap, TSize size, TPoint origin)
    : FBitmap(bitmap),
      FSize(size),
      FVisible(origin.X, origin.Y, origin.X + bitmap.GetWidth(), origin.Y + bitmap.GetHeight()) {}

void TPictureWindow::LineS(TPoint from, TPoint to, TColor32 color) const {
    const TPoint begin = Moved(from);
    const TPoint end = Moved(to);
    FBitmap.SetPenColor(color);
    FBitmap.MoveTo(begin.X, begin.Y);
    FBitmap.LineToS(end.X, end.Y);
}

void TPictureWindow::PolygonFS(const TFloatPoints& points, TColor32 color) const {
    lmx::PolygonFS(FBitmap, Moved(points), color);
}

void TPictureWindow::PolylineFS(const TFloatPoints& points, TColor32 color, bool closed, const TStroke& stroke) const {
    lmx::PolylineFS(FBitmap, Moved(points), color, closed, stroke);
}

void TPictureWindow::RenderText(std::int32_t x, std::int32_t y, const QString& text, TColor32 color) const {
    RenderTextWithin(FBitmap, Moved(TPoint(x, y)), FSize, text, 0, color);
}

TPoint TPictureWindow::Moved(TPoint point) const {
    return {Difference(point.X, FVisible.Left), Difference(point.Y, FVisible.Top)};
}

TRect TPictureWindow::Moved(const TRect& rect) const {
    return {Difference(rect.Left, FVisible.Left), Difference(rect.Top, FVisible.Top),
            Difference(rect.Right, FVisible.Left), Difference(rect.Bottom, FVisible.Top)};
}

TFloatPoints TPictureWindow::Moved(const TFloatPoints& points) const {
    TFloatPoints moved = points;
    for (TFloatPoint& point : moved) {
        point.X -= FVisible.Left;
        point.Y -= FVisible.Top;
    }
    return moved;
}

} // namespace lmx
