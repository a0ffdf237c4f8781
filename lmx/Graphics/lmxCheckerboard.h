#pragma once

#include <lmx/Graphics/lmxColor32.h>
#include <lmx/Runtime/lmxExport.h>

#include <cstdint>

namespace lmx {

class TBitmap32;

/// Covers the bitmap with squares of `size` pixels in two colours, raw. The first colour stands in the top left corner.
/// A size below 1 counts as 1.
LMX_EXPORT void DrawCheckerboard(TBitmap32& bitmap, TColor32 color1, TColor32 color2, std::int32_t size);

} // namespace lmx
