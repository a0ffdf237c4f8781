#include <lmx/Graphics/lmxCheckerboard.h>

#include <lmx/Graphics/Private/lmxPixelRows.h>
#include <lmx/Graphics/lmxBitmap32.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace lmx {

void DrawCheckerboard(TBitmap32& bitmap, TColor32 color1, TColor32 color2, std::int32_t size) {
    size = std::max(size, 1);
    const auto width = static_cast<std::size_t>(bitmap.GetWidth());
    std::array<std::vector<TColor32>, 2> rows; // one that begins with either colour
    for (std::int32_t x = 0; x < bitmap.GetWidth(); ++x) {
        const bool isEven = x / size % 2 == 0;
        rows[0].push_back(isEven ? color1 : color2);
        rows[1].push_back(isEven ? color2 : color1);
    }
    for (std::int32_t y = 0; y < bitmap.GetHeight(); ++y)
        PixelRows::Copy(bitmap.ScanLine(y), rows[y / size % 2 == 0 ? 0 : 1].data(), width);
}

} // namespace lmx
