#pragma once

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Formats/Idrisi/lmxVectorData.h>
#include <lmx/Formats/Shapes/lmxShpFile.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Layers/Render/lmxBufferedBitmap.h>
#include <lmx/Runtime/lmxExtended.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <span>

// Shapes and vectors drawn by the definition: every vertex in extended arithmetic, nothing passed over.

namespace lmx::tests {

inline TPoint PlainPixel(const TWorldViewportLocal& viewport, const TMapPoint& place) {
    return viewport.MapPointToPoint(place).ToPoint();
}

template<class Shape>
void DrawPlainShape(const Shape& shape, const TWorldViewportLocal& viewport, TBitmap32& bitmap) {
    for (std::size_t part = 0; part < shape.GetPartCount(); ++part) {
        bool isFirst = true;
        for (const TShpPoint& vertex : shape.GetPart(part)) {
            const TPoint pixel = PlainPixel(viewport, {vertex.X, vertex.Y});
            if (isFirst)
                bitmap.MoveTo(pixel.X, pixel.Y);
            else
                bitmap.LineToS(pixel.X, pixel.Y);
            isFirst = false;
        }
    }
}

inline void DrawPlainly(const TShpFile& file, const TWorldViewportLocal& viewport, TBitmap32& bitmap) {
    for (std::size_t i = 0; i < file.GetPointCount(); ++i) {
        const TPoint p = PlainPixel(viewport, {file.GetPoint(i).X, file.GetPoint(i).Y});
        bitmap.FillRectS(p.X - 2, p.Y - 2, p.X + 2, p.Y + 2, bitmap.GetPenColor());
    }
    for (std::size_t i = 0; i < file.GetPolygonCount(); ++i)
        DrawPlainShape(file.GetPolygon(i), viewport, bitmap);
    for (std::size_t i = 0; i < file.GetPolyLineCount(); ++i)
        DrawPlainShape(file.GetPolyLine(i), viewport, bitmap);
}

inline void DrawPlainly(const TVectorData& data, const TWorldViewportLocal& viewport, TBitmap32& bitmap) {
    const IWorldSystem& system = viewport.GetWorldSystem();
    for (std::size_t i = 0; i < data.Ids.size(); ++i) {
        const auto feature = data.GetFeature(i);
        bool penUp = true;
        for (std::size_t j = 0; j < feature.size(); ++j) {
            if (SameValue(feature[j].X, 0.0F) && SameValue(feature[j].Y, 0.0F)) {
                penUp = true;
                continue;
            }
            const TMapPoint place(feature[j]);
            if (!penUp && j > 0 && system.Wraps(place, TMapPoint(feature[j - 1])))
                penUp = true;
            const TPoint pixel = PlainPixel(viewport, system.ToWorldPoint(place));
            if (penUp)
                bitmap.MoveTo(pixel.X, pixel.Y);
            else
                bitmap.LineToS(pixel.X, pixel.Y);
            penUp = false;
        }
    }
}

/// Whether two pictures are the same, pixel for pixel.
inline testing::AssertionResult SamePixels(const TBitmap32& a, const TBitmap32& b) {
    if (a.GetWidth() != b.GetWidth() || a.GetHeight() != b.GetHeight())
        return testing::AssertionFailure() << "sizes differ";
    for (std::int32_t y = 0; y < a.GetHeight(); ++y)
        for (std::int32_t x = 0; x < a.GetWidth(); ++x)
            if (a.Pixel(x, y) != b.Pixel(x, y))
                return testing::AssertionFailure() << "pixel " << x << ", " << y << " differs";
    return testing::AssertionSuccess();
}

/// How many pixels are not transparent.
inline int CountPixels(const TBitmap32& bitmap) {
    int count = 0;
    for (std::int32_t y = 0; y < bitmap.GetHeight(); ++y)
        for (std::int32_t x = 0; x < bitmap.GetWidth(); ++x)
            count += bitmap.Pixel(x, y) != 0 ? 1 : 0;
    return count;
}

} // namespace lmx::tests
