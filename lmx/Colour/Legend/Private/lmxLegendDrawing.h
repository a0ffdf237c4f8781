#pragma once

#include <lmx/Graphics/Private/lmxPictureWindow.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxExtended.h>

#include <QString>

#include <algorithm>
#include <cstdint>

// What the legend painters share.

namespace lmx {

/// The text whose height is the height of a line.
inline QString LineHeightSample() {
    return QStringLiteral("Wg");
}

/// Pixels to the eye in pixels of the bitmap.
inline std::int32_t ToDevicePixels(int pixels, const TBitmap32& bitmap) {
    return RoundToPixel(pixels * static_cast<extended>(bitmap.GetDeviceRatio()));
}

inline void SetLegendFont(TBitmap32& bitmap, const QString& name, int size) {
    TFont32& font = bitmap.GetFont();
    font.Name = name;
    font.Size = size;
    font.Height = 0;
    font.Ratio = bitmap.GetDeviceRatio();
}

/// A line one pixel to the eye thick through the corners of the rectangle, right and bottom ones included, and inwards
/// from them.
inline void OutlineRect(const TPictureWindow& picture, const TRect& rect, TColor32 color) {
    for (std::int32_t inset = 0; inset < std::max(1, ToDevicePixels(1, picture.GetBitmap())); ++inset) {
        const TRect line(rect.Left + inset, rect.Top + inset, rect.Right - inset, rect.Bottom - inset);
        picture.LineS({line.Left, line.Top}, {line.Right, line.Top}, color);
        picture.LineS({line.Right, line.Top}, {line.Right, line.Bottom}, color);
        picture.LineS({line.Right, line.Bottom}, {line.Left, line.Bottom}, color);
        picture.LineS({line.Left, line.Bottom}, {line.Left, line.Top}, color);
    }
}

} // namespace lmx
