#pragma once

#include <lmx/Coordinates/wskWorld.h>
#include <lmx/Coordinates/wskWorldSystem.h>
#include <lmx/Graphics/lmxBitmap32.h>

namespace lmx::tests {

/// A world of longitudes -180 to 180 at one pixel a degree, a view that begins at its top left corner, and a white
/// bitmap of the view's size: longitude x and latitude y are at pixel (x + 180, 90 - y).
struct TTestMap {
    TTestMap(std::int32_t width, std::int32_t height) : Bitmap(width, height) {
        Viewport.SetViewSize({width, height});
        Viewport.SetTranslation({0, 0});
        Bitmap.Clear(clWhite32);
    }

    TWorld World{TLatLonWorldSystemFactory::GetObject()};
    TWorldViewport Viewport{&World};
    TBitmap32 Bitmap;
};

} // namespace lmx::tests
