#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxExport.h>

#include <memory>

namespace lmx {

/// A finished picture and the map area that its full extent stands for.
struct TBufferedBitmap {
    TBitmap32 Bitmap;
    TMapArea MapArea;
};

/// An empty picture to draw into: fully transparent, in the draw mode dmTransparent.
LMX_EXPORT std::unique_ptr<TBufferedBitmap> CreateBufferedBitmap(TSize size, const TMapArea& mapArea);

} // namespace lmx
