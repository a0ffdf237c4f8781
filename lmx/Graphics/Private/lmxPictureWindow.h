#pragma once

#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Graphics/lmxPolygons.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QString>

#include <cstdint>

namespace lmx {

/// A picture of which only a part is needed. What is drawn on it, in the coordinates of the whole, goes onto a bitmap
/// that holds the part alone, and has there the pixels that it would have in a bitmap of the whole.
class TPictureWindow {
public:
    /// The whole of `bitmap`.
    explicit TPictureWindow(TBitmap32& bitmap);
    /// `bitmap` holds what the picture of that size shows from `origin` on, and nothing beyond the picture.
    TPictureWindow(TBitmap32& bitmap, TSize size, TPoint origin);

    std::int32_t GetWidth() const { return FSize.cx; } ///< of the whole
    std::int32_t GetHeight() const { return FSize.cy; }
    const TRect& GetVisible() const { return FVisible; } ///< the part that the bitmap holds
    TBitmap32& GetBitmap() const { return FBitmap; }     ///< its font and device ratio are those of the picture

    void Clear(TColor32 color) const { FBitmap.Clear(color); }
    void FillRectS(const TRect& rect, TColor32 color) const { FBitmap.FillRectS(Moved(rect), color); }
    void FrameRectS(const TRect& rect, TColor32 color) const { FBitmap.FrameRectS(Moved(rect), color); }
    void LineS(TPoint from, TPoint to, TColor32 color) const;
    void PolygonFS(const TFloatPoints& points, TColor32 color) const;
    void PolylineFS(const TFloatPoints& points, TColor32 color, bool closed, const TStroke& stroke) const;
    /// With hard edges. No more of the text's cell is drawn than the width and height of the whole.
    void RenderText(std::int32_t x, std::int32_t y, const QString& text, TColor32 color) const;

private:
    TPoint Moved(TPoint point) const;
    TRect Moved(const TRect& rect) const;
    TFloatPoints Moved(const TFloatPoints& points) const;

    TBitmap32& FBitmap;
    TSize FSize;
    TRect FVisible;
};

/// TBitmap32::RenderText, where no more of the cell is drawn than `largest`, counted from its top left corner.
void RenderTextWithin(TBitmap32& bitmap, TPoint place, TSize largest, const QString& text, int aaLevel, TColor32 color);

} // namespace lmx
